// One row of bytes to one display string per byte.
#pragma once

#include "document/read_only_document.h"
#include "encoding/text_encoding.h"

#include <cstdint>
#include <string>
#include <vector>

namespace kvx {

/// Display strings of one row, one per byte: the text of the character that starts at the byte, "."
/// for a byte that starts none, empty for a byte that continues one.
using RowCells = std::vector<std::u16string>;

/// Decodes the row at `rowStart`. With a document the decoder may look at bytes around the row;
/// `document` may be null.
RowCells DecodeRow(const IReadOnlyDocument* document, std::uint64_t rowStart, ByteView rowBytes,
                   TextEncoding encoding);

} // namespace kvx
