// The edits of a document that are not saved yet, by their positions in the edited document. Every
// operation on one byte costs O(log n) in the number of edits, next to the last one even less.
//
// Positions of the edited document and on-disk positions are both unsigned 64-bit byte offsets.
#pragma once

#include "document/edit_tree.h"
#include "document/piece.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <utility>

namespace kvx {

/// The three edit records and the questions asked of them. Not synchronised. Positions given to it
/// lie inside the edited document, which the caller has made sure of. A call that runs out of
/// memory raises std::bad_alloc and leaves the document's content as it was.
class EditIndex {
public:
    /// True when nothing is edited.
    bool IsEmpty() const { return runs_.IsEmpty(); }

    /// Forgets every edit.
    void Clear() noexcept;

    /// Number of inserted bytes, and of on-disk bytes that are deleted.
    std::uint64_t InsertedCount() const { return insertedCount_; }
    std::uint64_t DeletedCount() const { return deletedCount_; }

    /// Size of the edited document in bytes over a file of `onDiskSize` bytes.
    std::uint64_t EditedSize(std::uint64_t onDiskSize) const {
        return onDiskSize + insertedCount_ - deletedCount_;
    }

    /// True when every inserted byte (there may be none) stands after the last on-disk byte.
    bool InsertsOnlyAtEnd(std::uint64_t onDiskSize) const;

    /// True when the deleted bytes (there may be none) are exactly the last ones of the file.
    bool DeletesOnlyTail(std::uint64_t onDiskSize) const;

    /// On-disk position of the byte at `position`; empty when that byte is an inserted one.
    std::optional<std::uint64_t> OnDiskPosition(std::uint64_t position) const;

    /// Inserts a byte before the one at `position`, which may be the edited size. Next to an
    /// inserted byte it joins that byte's anchor, before an on-disk byte it comes last at that
    /// byte's anchor.
    void InsertByte(std::uint64_t position, std::uint8_t value);

    /// Deletes the byte at `position`: an inserted one leaves no trace.
    void DeleteByte(std::uint64_t position);

    /// Gives the byte at `position` a value, which for an on-disk byte is not the file's.
    void OverwriteByte(std::uint64_t position, std::uint8_t value);

    /// Shows the on-disk byte at `position` as it is in the file.
    void RestoreByte(std::uint64_t position);

    /// Tells `sink` in order what the edited bytes [position, position + count) are made of:
    /// Unchanged(onDiskPosition, count), Overwritten(onDiskPosition, bytes) and Inserted(bytes).
    template <typename Sink>
    void Describe(std::uint64_t position, std::uint64_t count, Sink&& sink) const;

    /// Checks the structure inside; for tests.
    bool IsSound() const;

private:
    friend class PieceWalk;

    /// What stands at a position of the edited document.
    struct Place {
        const EditRun* run = nullptr; ///< the run that holds the byte; null: an unchanged byte
        std::size_t at = 0;           ///< index in the run
        std::uint64_t onDisk = 0;     ///< on-disk position of a byte that is not inserted
    };

    Place Find(std::uint64_t position) const;
    void SplitRunBefore(std::size_t at);
    void InsertIntoRunBefore(std::size_t at, std::uint8_t value);
    void DeleteInserted(std::uint64_t position, const Place& place);
    void DeleteUnchanged(std::uint64_t onDisk);
    void DeleteOverwritten(std::uint64_t position, const Place& place);
    bool MoveToDeletedNeighbour(const Place& place);
    void SeekOnDisk(std::uint64_t position, std::uint64_t onDisk);
    bool JoinAtCursor();
    void JoinAround(std::uint64_t position, std::uint64_t onDisk);

    template <typename Sink>
    static void DescribeRun(const EditRun& run, std::uint64_t from, std::uint64_t count,
                            Sink& sink);

    EditTree runs_;
    mutable EditTree::Cursor cursor_; ///< where the last question or edit was
    std::uint64_t insertedCount_ = 0;
    std::uint64_t deletedCount_ = 0;
};

/// Walks a whole document in on-disk order: every on-disk byte is in exactly one piece, insertions
/// come before the byte at their anchor. Pieces are as long as they can be: one piece holds all the
/// bytes of an anchor; a run of overwritten or deleted bytes ends only where an insertion anchor,
/// another kind of byte or the end of the file follows. The index must outlive the walk unchanged.
class PieceWalk {
public:
    PieceWalk(const EditIndex& edits, std::uint64_t onDiskSize);

    /// The next piece, empty after the last. `bytes` of a piece stays valid until the next call.
    std::optional<Piece> Next();

private:
    Piece TakeEdited(const EditRun& first);

    EditTree::Cursor cursor_;
    std::uint64_t onDiskSize_;
    std::uint64_t position_ = 0; ///< on-disk end of the pieces given so far
    Bytes gathered_;             ///< the bytes of a piece that lies in several runs
};

template <typename Sink>
void EditIndex::Describe(std::uint64_t position, std::uint64_t count, Sink&& sink) const {
    const std::uint64_t end = position + count;
    const Place first = Find(position);
    EditTree::Cursor cursor = cursor_;
    if (first.run) {
        const std::uint64_t taken = std::min(count, first.run->EditedCount() - first.at);
        DescribeRun(*first.run, first.at, taken, sink);
        position += taken;
    }
    while (position < end) {
        const std::uint64_t shift = cursor.Shift();
        const EditRun* run = cursor.MoveForward() ? cursor.Before() : nullptr;
        const std::uint64_t start = run ? std::min(end, run->Position() + shift) : end;
        if (position < start) sink.Unchanged(position - shift, start - position);
        const std::uint64_t taken = run ? std::min(end - start, run->EditedCount()) : 0;
        if (taken > 0) DescribeRun(*run, 0, taken, sink);
        position = start + taken;
    }
}

template <typename Sink>
void EditIndex::DescribeRun(const EditRun& run, std::uint64_t from, std::uint64_t count,
                            Sink& sink) {
    const ByteView bytes =
        run.NewBytes().subspan(static_cast<std::size_t>(from), static_cast<std::size_t>(count));
    if (run.Is(PieceKind::Inserted))
        sink.Inserted(bytes);
    else
        sink.Overwritten(run.Position() + from, bytes);
}

} // namespace kvx
