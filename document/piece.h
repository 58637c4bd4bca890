// The vocabulary of edits over a file: what became of a stretch of on-disk bytes.
#pragma once

#include "platform/bytes.h"

#include <cstdint>

namespace kvx {

enum class PieceKind : std::uint8_t {
    Unchanged,   ///< on-disk bytes as they are
    Inserted,    ///< new bytes before the on-disk byte at `position` (at the file's end: after it)
    Overwritten, ///< on-disk bytes replaced one for one
    Deleted,     ///< on-disk bytes removed
};

/// A stretch of one kind.
struct Piece {
    PieceKind kind = PieceKind::Unchanged;
    std::uint64_t position = 0; ///< on-disk position of the first byte; of Inserted the anchor
    std::uint64_t count = 0;    ///< bytes; never 0
    ByteView bytes = {};        ///< the new bytes of Inserted and Overwritten, else empty
};

} // namespace kvx
