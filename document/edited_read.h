// A read of the edited document: file bytes gathered by as few reads as it takes, new bytes laid
// between and over them.
#pragma once

#include "document/edit_index.h"
#include "document/file_view_model.h"
#include "platform/bytes.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace kvx {

/// Bytes [offset, offset + count) of the edited document, which lie inside it: cut before the first
/// byte that the file does not give, empty when there is no memory for so many.
Bytes ReadEdited(const FileViewModel& file, const EditIndex& edits, std::uint64_t offset,
                 std::uint64_t count);

/// The same into `target`; gives the number of bytes read.
std::size_t ReadEditedInto(const FileViewModel& file, const EditIndex& edits, std::uint64_t offset,
                           std::span<std::uint8_t> target);

/// Takes what EditIndex::Describe tells about one read and fills a block with it.
///
/// A long span of file bytes is read straight to its place. Shorter ones share one read, which goes
/// to the place of the first of them and some way further on; from there each is moved down to its
/// own place, front to back. That is why the block has to be longer than the result.
class EditedRead {
public:
    /// `count` is the size of the result, which starts at the front of the block. `file` and
    /// `block` must outlive the read.
    EditedRead(const FileViewModel& file, std::span<std::uint8_t> block, std::size_t count);

    /// How much longer than the result the block has to be.
    static std::size_t SlackFor(std::size_t count);

    void Unchanged(std::uint64_t onDisk, std::uint64_t count);
    void Overwritten(std::uint64_t onDisk, ByteView bytes);
    void Inserted(ByteView bytes);

    /// To be called after everything was told. Gives the size of the result up to the first byte
    /// that the file does not give.
    std::size_t Finish();

private:
    /// A stretch of the result. They follow each other, except that replaced bytes lie over those
    /// of the span before them.
    struct Part {
        const std::uint8_t* bytes = nullptr; ///< new bytes; null: a span of file bytes
        std::uint64_t onDisk = 0;
        std::size_t target = 0; ///< place in the block
        std::size_t count = 0;
    };

    static constexpr std::size_t kNoSpan = ~std::size_t{0};

    bool HasOpenSpan() const { return span_ != kNoSpan; }
    bool ContinuesSpan(std::uint64_t onDisk) const;
    void CloseSpan();
    bool FitsWindow(const Part& span) const;
    void FillParts(std::size_t count);
    ByteView ReadWindow();
    void ReadDirect(Part span);
    void MoveFromWindow(const Part& span, ByteView window);
    void NoteRead(const Part& span, std::size_t got);

    const FileViewModel& file_;
    std::uint8_t* block_;
    std::size_t slack_;
    std::size_t available_;      ///< bytes of the result before the first that is missing
    std::size_t filled_ = 0;     ///< bytes of the result told so far
    std::vector<Part> parts_;    ///< told and not in the block yet
    std::size_t span_ = kNoSpan; ///< the span in parts_ that may still go on
    std::size_t sharing_ = 0;    ///< closed spans in parts_, which share the next read
    Part window_;                ///< from the first of them to the end of the last
};

} // namespace kvx
