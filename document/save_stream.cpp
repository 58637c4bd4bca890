#include "document/save_stream.h"

#include <cstring>

namespace kvx {
namespace {

constexpr std::size_t kBufferSize = 1024 * 1024;
constexpr std::size_t kPage = 4096;
constexpr std::uint64_t kWriteBackStep = 8 * 1024 * 1024;

std::uint8_t* FirstPage(Bytes& storage) {
    void* place = storage.data();
    std::size_t room = storage.size();
    return static_cast<std::uint8_t*>(std::align(kPage, kBufferSize + kPage, place, room));
}

} // namespace

SaveStream::SaveStream(const FileViewModel& source, WritableFile& target, SaveProgress& progress)
    : source_(source), target_(target), progress_(progress), storage_(kBufferSize + 2 * kPage),
      page_(FirstPage(storage_)) {}

FileResult SaveStream::Append(ByteView bytes) {
    while (!bytes.empty()) {
        const std::span<std::uint8_t> room = Room();
        const std::size_t count = std::min(room.size(), bytes.size());
        std::memcpy(room.data(), bytes.data(), count);
        bytes = bytes.subspan(count);
        const FileResult taken = Take(count);
        if (!taken) return taken;
    }
    return FileResult::Success();
}

FileResult SaveStream::AppendFromSource(std::uint64_t offset, std::uint64_t count) {
    while (count > 0) {
        if (filled_ == 0) Align(offset);
        std::span<std::uint8_t> room = Room();
        if (count < room.size()) room = room.first(static_cast<std::size_t>(count));
        ErrorCode error = 0;
        if (source_.ReadInto(offset, room, error) < room.size()) return FileResult::Failure(error);
        offset += room.size();
        count -= room.size();
        const FileResult taken = Take(room.size());
        if (!taken) return taken;
    }
    return FileResult::Success();
}

FileResult SaveStream::Finish() {
    return filled_ > 0 ? WriteBuffer() : FileResult::Success();
}

std::span<std::uint8_t> SaveStream::Room() const {
    return {page_ + shift_ + filled_, kBufferSize - filled_};
}

FileResult SaveStream::Take(std::size_t count) {
    filled_ += count;
    return filled_ == kBufferSize ? WriteBuffer() : FileResult::Success();
}

FileResult SaveStream::WriteBuffer() {
    const FileResult result = WriteAll(target_, {page_ + shift_, filled_});
    if (!result) return result;
    written_ += filled_;
    filled_ = 0;
    if (written_ % kWriteBackStep == 0) target_.StartWriteBack();
    progress_.Report(written_);
    return result;
}

// A copy that ends up a few bytes further in its page than it came from is several times slower
// than any other. Writes leave at page boundaries, so only the read decides: it keeps its place in
// the page or goes half a page (or a quarter) away.
void SaveStream::Align(std::uint64_t sourceOffset) {
    constexpr std::size_t kMargin = 512;
    shift_ = 0;
    const std::size_t inPage = static_cast<std::size_t>(sourceOffset % kPage);
    if (inPage == 0) return;
    const std::size_t distance = (kPage / 2 - inPage) % kPage;
    const bool tooClose = distance < kMargin || distance > kPage - kMargin;
    shift_ = tooClose ? kPage / 4 : kPage / 2;
}

} // namespace kvx
