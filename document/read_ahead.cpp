#include "document/read_ahead.h"

#include <algorithm>
#include <span>

namespace kvx {

std::optional<std::uint8_t> ReadAhead::ByteAt(const FileViewModel& file, std::uint64_t position) {
    const bool beside = previous_ && position - *previous_ + 1 <= 2;
    if (!beside) Drop();
    if (position - start_ >= count_) Read(file, position);
    previous_ = position;
    if (position - start_ >= count_) return std::nullopt;
    return block_[static_cast<std::size_t>(position - start_)];
}

void ReadAhead::Drop() {
    previous_.reset();
    count_ = 0;
}

// One byte at first; a whole block, in the direction of travel, from the second in a row on.
void ReadAhead::Read(const FileViewModel& file, std::uint64_t position) {
    std::size_t count = previous_ ? kBlockBytes : 1;
    start_ = position;
    if (previous_ && position < *previous_) {
        count = static_cast<std::size_t>(std::min<std::uint64_t>(position + 1, kBlockBytes));
        start_ = position + 1 - count;
    }
    count_ = file.ReadInto(start_, std::span(block_).first(count));
}

} // namespace kvx
