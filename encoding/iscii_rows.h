// Rows and characters of ISCII Devanagari: syllables of up to eight bytes.
#pragma once

#include "encoding/character_decoder.h"
#include "encoding/row_cells.h"

namespace kvx {

/// A syllable shows at its first byte. Seven bytes on either side are needed for syllables that
/// cross the row's edges.
void DecodeIsciiRow(const RowContext& row, RowCells& cells);

std::optional<DecodedCharacter> DecodeIsciiCharacter(ByteView bytes);

} // namespace kvx
