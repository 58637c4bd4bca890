#include "app/search.h"

#include "app/byte_matcher.h"

#include <algorithm>
#include <utility>

namespace kvx {
namespace {

constexpr std::size_t kPageSize = 4096;

bool CanMatch(const IReadOnlyDocument& document, ByteView pattern) {
    return document.IsOpen() && !pattern.empty() && pattern.size() <= document.GetSize();
}

// Reads the blocks of a document, by turns to two places: where bytes were looked at just now,
// reading is slower.
class BlockReader {
public:
    // Blocks of at most `blockSize` bytes, with at most `overlap` of the bytes before in front.
    BlockReader(const IReadOnlyDocument& document, std::size_t overlap, std::size_t blockSize)
        : document_(document), room_((overlap + kPageSize - 1) / kPageSize * kPageSize),
          storages_{Bytes(room_ + kPageSize + blockSize), Bytes(room_ + kPageSize + blockSize)} {}

    // Reads at most `count` bytes from `offset` on; gives their number. The window becomes these
    // bytes, behind at most `overlap` bytes of the end of the window before.
    std::size_t Read(std::uint64_t offset, std::size_t count, std::size_t overlap) {
        std::swap(storages_[0], storages_[1]);
        std::uint8_t* const place = PlaceFor(offset);
        const ByteView carry = window_.last(std::min(overlap, window_.size()));
        std::uint8_t* const front = place - carry.size();
        std::copy(carry.begin(), carry.end(), front);
        const std::size_t got = document_.ReadInto(offset, {place, count});
        window_ = {front, carry.size() + got};
        return got;
    }

    ByteView Window() const { return window_; }

private:
    // Copying is slow to a place that lies a few bytes further in its page than the source. Half a
    // page away it is not, not even where edits have moved the bytes a little.
    std::uint8_t* PlaceFor(std::uint64_t offset) {
        return storages_[0].data() + room_ + static_cast<std::size_t>(offset % kPageSize);
    }

    const IReadOnlyDocument& document_;
    std::size_t room_;  ///< bytes in front of the first place of a block
    Bytes storages_[2]; ///< large ones start in the middle of a page
    ByteView window_;
};

// Tells how far the search is; false when it shall end.
bool GoOn(const ProgressCallback& progress, std::uint64_t done, std::uint64_t size,
          const ContinueCheck& mayContinue) {
    if (progress) progress(done, size);
    return !mayContinue || mayContinue();
}

// The bytes of the rest or as many as fit.
std::size_t Portion(std::uint64_t rest, std::size_t most) {
    return static_cast<std::size_t>(std::min<std::uint64_t>(rest, most));
}

} // namespace

SearchOutcome SearchForward(const IReadOnlyDocument& document, ByteView pattern,
                            std::uint64_t start, const ProgressCallback& progress,
                            const ContinueCheck& mayContinue, std::size_t blockSize) {
    const std::uint64_t size = document.GetSize();
    if (!CanMatch(document, pattern) || start >= size) return {};
    const std::size_t overlap = pattern.size() - 1;
    BlockReader reader(document, overlap, Portion(size - start, blockSize));
    ByteMatcher matcher(pattern);
    for (std::uint64_t offset = start; offset < size;) {
        if (!GoOn(progress, offset, size, mayContinue)) return {SearchStatus::Cancelled};
        const std::size_t got = reader.Read(offset, Portion(size - offset, blockSize), overlap);
        if (got == 0) break;
        offset += got;
        const ByteView window = reader.Window();
        if (const auto hit = matcher.FindFirst(window))
            return {SearchStatus::Found, offset - window.size() + *hit};
    }
    return {};
}

SearchOutcome SearchBackward(const IReadOnlyDocument& document, ByteView pattern,
                             std::uint64_t start, const ProgressCallback& progress,
                             const ContinueCheck& mayContinue, std::size_t blockSize) {
    if (!CanMatch(document, pattern)) return {};
    const std::uint64_t size = document.GetSize();
    const std::size_t overlap = pattern.size() - 1;
    std::uint64_t end = std::min(size - pattern.size(), start) + 1; // where no match may begin
    BlockReader reader(document, 0, Portion(end, blockSize) + overlap);
    ByteMatcher matcher(pattern);
    while (end > 0) {
        if (!GoOn(progress, size - end, size, mayContinue)) return {SearchStatus::Cancelled};
        const std::size_t count = Portion(end, blockSize);
        end -= count;
        reader.Read(end, count + overlap, 0);
        if (const auto hit = matcher.FindLast(reader.Window()))
            return {SearchStatus::Found, end + *hit};
    }
    if (progress) progress(size, size);
    return {};
}

} // namespace kvx
