#pragma once

#include "encoding/row_cells.h"

#include <bit>

namespace kvx {

/// A UTF-16 row, one unit for every two bytes from the row's start on. Surrogates and marks show as
/// placeholders.
void DecodeUtf16Row(std::endian order, const RowContext& row, RowCells& cells);

} // namespace kvx
