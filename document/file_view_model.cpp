#include "document/file_view_model.h"

#include <algorithm>
#include <utility>

namespace kvx {

bool FileViewModel::Open(const std::u16string& path) {
    // `path` may be this model's own, which closing clears.
    std::u16string kept = path;
    Close();
    ErrorCode error = 0;
    std::unique_ptr<ReadableFile> file = files_->OpenForReading(kept, error);
    if (!file) return false;
    const std::optional<std::uint64_t> size = file->Size();
    if (!size) return false;
    file_ = std::move(file);
    size_ = *size;
    path_ = std::move(kept);
    return true;
}

bool FileViewModel::Reopen(const std::u16string& path, std::uint64_t size) {
    if (!Open(path)) return false;
    size_ = size;
    return true;
}

void FileViewModel::Close() {
    file_.reset();
    size_ = 0;
    path_.clear();
}

Bytes FileViewModel::ReadBytes(std::uint64_t offset, std::uint64_t count) const {
    if (!IsOpen() || offset >= size_) return {};
    Bytes bytes(static_cast<std::size_t>(std::min(count, size_ - offset)));
    bytes.resize(ReadInto(offset, bytes));
    return bytes;
}

std::size_t FileViewModel::ReadInto(std::uint64_t offset, std::span<std::uint8_t> target) const {
    ErrorCode ignored = 0;
    return ReadInto(offset, target, ignored);
}

std::size_t FileViewModel::ReadInto(std::uint64_t offset, std::span<std::uint8_t> target,
                                    ErrorCode& error) const {
    error = 0;
    if (!IsOpen() || offset >= size_) return 0;
    // A file that grew since it was opened is still read as it was.
    target = target.first(
        static_cast<std::size_t>(std::min<std::uint64_t>(target.size(), size_ - offset)));
    // Network drives may give less than they have; only nothing at all is the end.
    std::size_t filled = 0;
    while (filled < target.size()) {
        const auto got = file_->ReadAt(offset + filled, target.subspan(filled), error);
        if (got.value_or(0) == 0) break;
        filled += *got;
    }
    return filled;
}

} // namespace kvx
