#include "document/edited_read.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <span>
#include <stdexcept>

namespace kvx {
namespace {

// A stretch from here on is worth a read of its own straight into the result; shorter ones share a
// read through the scratch memory and are copied from there.
constexpr std::size_t kDirectBytes = std::size_t{48} << 10;

// Most file bytes that spans share one read of, and most bytes between two of them.
constexpr std::size_t kWindowBytes = std::size_t{1} << 20;
constexpr std::size_t kHoleBytes = std::size_t{16} << 10;

// Most bytes of one system read: every system takes so many in one call.
constexpr std::size_t kReadBytes = std::size_t{1} << 30;

// The system copies two to five times slower when the target lies 1 to 31 bytes past the source,
// seen within a page. File bytes lie in the system's pages as they lie in the file.
constexpr std::size_t kPageBytes = 4096;
bool IsSlowTarget(const std::uint8_t* target, std::uint64_t onDisk) {
    const std::uint64_t distance = reinterpret_cast<std::uintptr_t>(target) - onDisk;
    return distance % kPageBytes - 1 < 31;
}

} // namespace

/// One read under way: takes what EditIndex::Describe tells and fills the result.
class EditedReader::Gathering {
public:
    Gathering(EditedReader& reader, const FileViewModel& file, Bytes& result)
        : reader_(reader), file_(file), result_(result), available_(result.size()) {
        reader_.spans_.clear();
        reader_.patches_.clear();
    }

    void Unchanged(std::uint64_t onDisk, std::uint64_t count) {
        if (open_.count == 0 || onDisk != open_.onDisk + open_.count ||
            filled_ != open_.target + open_.count) {
            CloseSpan();
            open_ = {onDisk, filled_, 0};
        }
        open_.count += static_cast<std::size_t>(count);
        filled_ += static_cast<std::size_t>(count);
    }

    // Read like the bytes around it, so that a span goes on and a byte past the file's real end is
    // missing whether it was replaced or not.
    void Overwritten(std::uint64_t onDisk, ByteView bytes) {
        reader_.patches_.push_back({filled_, bytes});
        Unchanged(onDisk, bytes.size());
    }

    void Inserted(ByteView bytes) {
        std::memcpy(result_.data() + filled_, bytes.data(), bytes.size());
        filled_ += bytes.size();
    }

    /// To be called after everything was told.
    void Finish() {
        CloseSpan();
        ReadSharedWindow();
        for (const Patch& patch : reader_.patches_)
            std::memcpy(result_.data() + patch.target, patch.bytes.data(), patch.bytes.size());
        result_.resize(available_);
    }

private:
    void CloseSpan() {
        while (open_.count > 0) {
            Span part = open_;
            if (part.count < kDirectBytes || IsSlowTarget(Target(part), part.onDisk)) {
                part.count = std::min(part.count, kWindowBytes);
                Share(part);
            } else {
                part.count = std::min(part.count, kReadBytes);
                ReadDirect(part);
            }
            open_ = {part.onDisk + part.count, part.target + part.count, open_.count - part.count};
        }
    }

    // Adds the span to those that share the next read.
    void Share(const Span& span) {
        auto& spans = reader_.spans_;
        if (!spans.empty()) {
            const std::uint64_t lastEnd = spans.back().onDisk + spans.back().count;
            const std::uint64_t end = span.onDisk + span.count;
            if (span.onDisk - lastEnd > kHoleBytes || end - spans.front().onDisk > kWindowBytes)
                ReadSharedWindow();
        }
        spans.push_back(span);
    }

    void ReadSharedWindow() {
        auto& spans = reader_.spans_;
        if (spans.size() == 1 && !IsSlowTarget(Target(spans[0]), spans[0].onDisk)) {
            ReadDirect(spans[0]);
        } else if (!spans.empty()) {
            const std::uint64_t start = spans.front().onDisk;
            const std::uint64_t end = spans.back().onDisk + spans.back().count;
            CopySpans(start, ReadIntoScratch(start, static_cast<std::size_t>(end - start)));
        }
        spans.clear();
    }

    void CopySpans(std::uint64_t start, ByteView window) {
        for (const Span& span : reader_.spans_) {
            const auto from = static_cast<std::size_t>(span.onDisk - start);
            const std::size_t got =
                std::min(span.count, window.size() - std::min(window.size(), from));
            std::memcpy(Target(span), window.data() + from, got);
            NoteRead(span, got);
        }
    }

    // The bytes that the file gives from `start` on. They lie in a page as they lie in the file.
    ByteView ReadIntoScratch(std::uint64_t start, std::size_t count) {
        if (reader_.spans_.front().target >= available_) return {};
        Bytes& scratch = reader_.scratch_;
        if (scratch.size() < count + 2 * kPageBytes) {
            scratch.clear();
            scratch.resize(count + 2 * kPageBytes);
        }
        const auto address = reinterpret_cast<std::uintptr_t>(scratch.data());
        std::uint8_t* place = scratch.data() + (start - address) % kPageBytes;
        return {place, file_.ReadInto(start, {place, count})};
    }

    void ReadDirect(const Span& span) {
        if (span.target >= available_) return; // an earlier byte is missing already
        NoteRead(span, file_.ReadInto(span.onDisk, {Target(span), span.count}));
    }

    void NoteRead(const Span& span, std::size_t got) {
        if (got < span.count) available_ = std::min(available_, span.target + got);
    }

    std::uint8_t* Target(const Span& span) const { return result_.data() + span.target; }

    EditedReader& reader_;
    const FileViewModel& file_;
    Bytes& result_;
    Span open_;              ///< the stretch that may still go on; not read yet
    std::size_t filled_ = 0; ///< bytes of the result told so far
    std::size_t available_;  ///< bytes of the result before the first one that is missing
};

Bytes EditedReader::Read(const FileViewModel& file, const EditIndex& edits, std::uint64_t offset,
                         std::uint64_t count) {
    try {
        Bytes result(static_cast<std::size_t>(count));
        Gathering gathering(*this, file, result);
        edits.Describe(offset, count, gathering);
        gathering.Finish();
        return result;
    } catch (const std::bad_alloc&) {
    } catch (const std::length_error&) {}
    return {};
}

} // namespace kvx
