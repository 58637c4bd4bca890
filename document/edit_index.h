// The edits of a document that are not saved yet, in one balanced tree over on-disk positions.
// Positions in the edited document and on-disk positions are both unsigned 64-bit byte offsets; S
// is the on-disk size. Every operation on one byte costs O(log n) in the number of edits.
#pragma once

#include "platform/bytes.h"

#include <cstdint>
#include <optional>

namespace kvx {

/// What became of a stretch of the file.
enum class PieceKind : std::uint8_t {
    Unchanged,   ///< on-disk bytes as they are
    Inserted,    ///< new bytes before the on-disk byte at `position` (S: after the last)
    Overwritten, ///< on-disk bytes replaced one for one
    Deleted,     ///< on-disk bytes removed
};

/// One stretch of the walk over a document.
struct Piece {
    PieceKind kind = PieceKind::Unchanged;
    std::uint64_t position = 0; ///< on-disk position of the first byte; of Inserted the anchor
    std::uint64_t count = 0;    ///< bytes; never 0
    ByteView bytes = {};        ///< the new bytes of Inserted and Overwritten, else empty
};

/// The edit records and the questions asked of them. Not synchronised.
class EditIndex {
public:
    /// True when nothing is edited.
    bool IsEmpty() const;

    /// Forgets every edit.
    void Clear();

    /// Number of inserted bytes, and of on-disk bytes that are deleted.
    std::uint64_t InsertedCount() const;
    std::uint64_t DeletedCount() const;

    /// Size of the edited document in bytes over a file of `onDiskSize` bytes.
    std::uint64_t EditedSize(std::uint64_t onDiskSize) const;

    /// True when every inserted byte (there may be none) stands after the last on-disk byte.
    bool InsertsOnlyAtEnd(std::uint64_t onDiskSize) const;

    /// True when the deleted bytes (there may be none) are exactly the last ones of the file.
    bool DeletesOnlyTail(std::uint64_t onDiskSize) const;
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
};

} // namespace kvx
