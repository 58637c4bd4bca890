#pragma once

#include "encoding/row_cells.h"

namespace kvx {

/// A UTF-8 row; marks join the character before them within the row. Three bytes on either side are
/// needed for characters that cross the row's edges.
void DecodeUtf8Row(const RowContext& row, RowCells& cells);

} // namespace kvx
