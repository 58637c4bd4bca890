// What a row's decoder gets and gives.
#pragma once

#include "platform/bytes.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace kvx {

/// Display strings of one row, one per byte: the text of the character that starts at the byte, "."
/// for a byte that starts none, empty for a byte that continues one.
using RowCells = std::vector<std::u16string>;

/// Shown for a byte that starts no printable character.
inline constexpr char16_t kPlaceholder = u'.';

/// A row together with the bytes around it that its decoder may look at.
struct RowContext {
    ByteView bytes;           ///< the row with its surroundings
    std::size_t rowBegin = 0; ///< index of the row's first byte in `bytes`
    std::size_t rowEnd = 0;   ///< index behind the row's last byte
};

/// A row without surroundings.
inline RowContext RowAlone(ByteView rowBytes) {
    return {.bytes = rowBytes, .rowBegin = 0, .rowEnd = rowBytes.size()};
}

/// The cell of the byte at index `at` of the context; null when it lies before the row. `cells` has
/// one cell per byte of the row.
inline std::u16string* CellAt(const RowContext& row, std::size_t at, RowCells& cells) {
    return at < row.rowBegin ? nullptr : &cells[at - row.rowBegin];
}

/// Puts `unit` into the cell of the byte at `at` if that is in the row.
inline void ShowAt(const RowContext& row, std::size_t at, char16_t unit, RowCells& cells) {
    if (std::u16string* cell = CellAt(row, at, cells)) cell->push_back(unit);
}

} // namespace kvx
