// Rows and characters of the East Asian code pages.
#pragma once

#include "encoding/character_decoder.h"
#include "encoding/double_byte_table.h"
#include "encoding/row_cells.h"

namespace kvx {

/// The context must begin where a character does. The byte behind the row is needed for a pair that
/// begins in its last byte.
void DecodeDoubleByteRow(const DoubleByteTable& table, const RowContext& row, RowCells& cells);

/// Shift_JIS takes the byte before the row for the start of a character, without a search, and
/// skips both bytes of a pair that is not defined.
void DecodeShiftJisRow(const RowContext& row, RowCells& cells);

std::optional<DecodedCharacter> DecodeDoubleByteCharacter(const DoubleByteTable& table,
                                                          ByteView bytes);

} // namespace kvx
