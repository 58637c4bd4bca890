// Where the characters of a double-byte text begin.
#pragma once

#include "encoding/document_window.h"
#include "encoding/double_byte_table.h"

#include <cstdint>

namespace kvx {

/// Finds the character that a row's first byte belongs to, as a walk over the characters from 4096
/// bytes before the row would. In a run of bytes that can all begin and end a pair only the parity
/// counts, so there is no walk: it looks backwards for the start of the run, and remembers it from
/// row to row.
class CharacterBoundary {
public:
    /// How far before a row the walk begins. A longer run is split at an arbitrary place.
    static constexpr std::uint64_t kReach = 4096;

    /// How far most searches go, in bytes; worth loading together with a row.
    static constexpr std::uint64_t kUsualReach = 64;

    /// The offset where the character of the byte at `rowStart` starts: there or one byte before.
    /// `rowStart` itself where the bytes before it cannot be read.
    std::uint64_t Find(DocumentWindow& window, const DoubleByteTable& table,
                       std::uint64_t rowStart);

private:
    /// Start of the run that the byte at searchedAt_ is in, or where the walk for it began.
    std::uint64_t runStart_ = 0;
    std::uint64_t searchedAt_ = 0;
};

} // namespace kvx
