// Rows of bytes to one display string per byte.
#pragma once

#include "document/read_only_document.h"
#include "encoding/character_boundary.h"
#include "encoding/document_window.h"
#include "encoding/row_cells.h"
#include "encoding/text_encoding.h"

#include <cstdint>
#include <optional>

namespace kvx {

struct RowRules;

/// Decodes the rows of one page with a single look at the bytes around the page. The document must
/// outlive the decoder and stay as it is meanwhile. For one thread.
class RowDecoder {
public:
    /// The page is the `count` bytes from `start` on; rows outside of it decode as well, but
    /// slower. `document` may be null: then no row knows the bytes around it.
    RowDecoder(const IReadOnlyDocument* document, TextEncoding encoding, std::uint64_t start,
               std::uint64_t count);

    /// The cells of the row at `rowStart`, whatever was decoded before; fastest when rows come in
    /// order. `rowBytes` are the row's bytes as the document holds them.
    RowCells Decode(std::uint64_t rowStart, ByteView rowBytes);

private:
    std::uint64_t ContextStart(std::uint64_t rowStart);

    const RowRules& rules_;
    std::optional<DocumentWindow> window_; ///< unset: rows are decoded alone
    CharacterBoundary boundary_;
};

/// Decodes the one row at `rowStart`; `document` may be null.
RowCells DecodeRow(const IReadOnlyDocument* document, std::uint64_t rowStart, ByteView rowBytes,
                   TextEncoding encoding);

} // namespace kvx
