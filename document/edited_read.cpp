#include "document/edited_read.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <stdexcept>

namespace kvx {
namespace {

// From here on a span is worth a read of its own.
constexpr std::size_t kDirectBytes = std::size_t{48} << 10;

// Most file bytes of a shared read.
constexpr std::uint64_t kWindowBytes = std::uint64_t{1} << 20;

// A shared read lands half the slack past its place, clear of the places that its spans move to;
// these may differ by so much from where they would be without insertions and deletions. The half
// is no whole number of pages: moving bytes by nearly that is slow.
constexpr std::size_t kMostSlack = std::size_t{12} << 10;
constexpr std::size_t kLeastSlack = 64;
std::size_t LeadFor(std::size_t slack) {
    return slack / 2;
}

// Most bytes of one system read: every system takes so many in one call.
constexpr std::size_t kReadBytes = std::size_t{1} << 30;

void Copy(std::uint8_t* to, const std::uint8_t* from, std::size_t count) {
    if (count == 1) // most edits
        *to = *from;
    else
        std::memcpy(to, from, count);
}

std::size_t SlackNeeded(const EditIndex& edits, std::size_t count) {
    const bool moved = edits.InsertedCount() > 0 || edits.DeletedCount() > 0;
    return moved ? EditedRead::SlackFor(count) : 0;
}

// The block is longer than the result by the slack.
std::size_t ReadInBlock(const FileViewModel& file, const EditIndex& edits, std::uint64_t offset,
                        std::size_t count, std::span<std::uint8_t> block) {
    EditedRead read(file, block, count);
    edits.Describe(offset, count, read);
    return read.Finish();
}

// Calls `read`, which gives something empty when there is no memory for it.
template <typename Read>
auto WithinMemory(Read&& read) {
    try {
        return read();
    } catch (const std::bad_alloc&) {
    } catch (const std::length_error&) {}
    return decltype(read()){};
}

} // namespace

Bytes ReadEdited(const FileViewModel& file, const EditIndex& edits, std::uint64_t offset,
                 std::uint64_t count) {
    return WithinMemory([&] {
        const auto size = static_cast<std::size_t>(count);
        Bytes block(size + SlackNeeded(edits, size));
        block.resize(ReadInBlock(file, edits, offset, size, block));
        return block;
    });
}

// The end of the target serves as the slack for what comes before it and is read last, in a block
// of its own.
std::size_t ReadEditedInto(const FileViewModel& file, const EditIndex& edits, std::uint64_t offset,
                           std::span<std::uint8_t> target) {
    const std::size_t slack = SlackNeeded(edits, target.size());
    const std::size_t count = target.size() - std::min(slack, target.size());
    const std::size_t got = WithinMemory(
        [&] { return count > 0 ? ReadInBlock(file, edits, offset, count, target) : 0; });
    if (slack == 0 || got < count) return got;
    const Bytes rest = ReadEdited(file, edits, offset + count, target.size() - count);
    std::copy(rest.begin(), rest.end(), target.begin() + static_cast<std::ptrdiff_t>(count));
    return count + rest.size();
}

EditedRead::EditedRead(const FileViewModel& file, std::span<std::uint8_t> block, std::size_t count)
    : file_(file), block_(block.data()), slack_(block.size() - count), available_(count) {}

std::size_t EditedRead::SlackFor(std::size_t count) {
    return std::clamp(count, kLeastSlack, kMostSlack);
}

void EditedRead::Unchanged(std::uint64_t onDisk, std::uint64_t count) {
    if (!ContinuesSpan(onDisk)) {
        CloseSpan();
        span_ = parts_.size();
        parts_.push_back({nullptr, onDisk, filled_, 0});
    }
    parts_[span_].count += static_cast<std::size_t>(count);
    filled_ += static_cast<std::size_t>(count);
}

bool EditedRead::ContinuesSpan(std::uint64_t onDisk) const {
    if (!HasOpenSpan()) return false;
    const Part& span = parts_[span_];
    return onDisk == span.onDisk + span.count && filled_ == span.target + span.count;
}

// Read like the bytes around it, so that the span goes on, and so that a byte past the file's real
// end is missing whether it was replaced or not.
void EditedRead::Overwritten(std::uint64_t onDisk, ByteView bytes) {
    const std::size_t target = filled_;
    Unchanged(onDisk, bytes.size());
    parts_.push_back({bytes.data(), onDisk, target, bytes.size()});
}

void EditedRead::Inserted(ByteView bytes) {
    parts_.push_back({bytes.data(), 0, filled_, bytes.size()});
    filled_ += bytes.size();
}

std::size_t EditedRead::Finish() {
    CloseSpan();
    FillParts(parts_.size());
    return available_;
}

// The open span has its whole length now: reads it or lets it wait for others to share a read with.
void EditedRead::CloseSpan() {
    if (!HasOpenSpan()) return;
    const Part span = parts_[span_];
    const bool isLong = span.count >= kDirectBytes;
    if (isLong || (sharing_ > 0 && !FitsWindow(span))) {
        FillParts(span_);
        span_ = 0;
    }
    if (isLong) {
        ReadDirect(span);
        parts_[span_].count = 0;
    } else {
        if (sharing_++ == 0) window_ = span;
        window_.count = static_cast<std::size_t>(span.onDisk + span.count - window_.onDisk);
    }
    span_ = kNoSpan;
}

bool EditedRead::FitsWindow(const Part& span) const {
    if (span.onDisk + span.count - window_.onDisk > kWindowBytes) return false;
    const auto moved =
        static_cast<std::int64_t>((span.target - window_.target) - (span.onDisk - window_.onDisk));
    const auto lead = static_cast<std::int64_t>(LeadFor(slack_));
    return moved <= lead / 2 && -moved <= lead;
}

// Puts the first `count` parts into the block and forgets them.
void EditedRead::FillParts(std::size_t count) {
    const ByteView window = sharing_ > 1 ? ReadWindow() : ByteView{};
    for (std::size_t i = 0; i < count; ++i) {
        const Part& part = parts_[i];
        if (part.bytes)
            Copy(block_ + part.target, part.bytes, part.count);
        else if (sharing_ > 1)
            MoveFromWindow(part, window);
        else
            ReadDirect(part);
    }
    parts_.erase(parts_.begin(), parts_.begin() + static_cast<std::ptrdiff_t>(count));
    sharing_ = 0;
}

// What the file gives of the window's bytes.
ByteView EditedRead::ReadWindow() {
    if (window_.target >= available_) return {};
    std::uint8_t* place = block_ + window_.target + LeadFor(slack_);
    return {place, file_.ReadInto(window_.onDisk, {place, window_.count})};
}

void EditedRead::MoveFromWindow(const Part& span, ByteView window) {
    const auto from = static_cast<std::size_t>(span.onDisk - window_.onDisk);
    const std::size_t got = from < window.size() ? std::min(span.count, window.size() - from) : 0;
    if (got > 0) std::memmove(block_ + span.target, window.data() + from, got);
    NoteRead(span, got);
}

void EditedRead::ReadDirect(Part span) {
    while (span.count > 0 && span.target < available_) {
        const std::size_t asked = std::min(span.count, kReadBytes);
        const std::size_t got = file_.ReadInto(span.onDisk, {block_ + span.target, asked});
        if (got < asked) NoteRead(span, got);
        span = {nullptr, span.onDisk + asked, span.target + asked, span.count - asked};
    }
}

void EditedRead::NoteRead(const Part& span, std::size_t got) {
    if (got < span.count) available_ = std::min(available_, span.target + got);
}

} // namespace kvx
