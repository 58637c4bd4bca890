// The bytes at the caret read in twelve ways. Pure: runs on the data inspector's worker.
#pragma once

#include "document/read_only_document.h"
#include "encoding/text_encoding.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace kvx {

/// So many bytes are read at the caret, whatever the document's size.
inline constexpr std::size_t kInspectorBytes = 96;
inline constexpr std::size_t kInspectorRows = 12;

/// Keys of the rows' names. Only the values are computed: the window looks the names up when it
/// shows them, so that another language needs no new computation.
inline constexpr std::array<std::string_view, kInspectorRows> kInspectorRowKeys = {
    "inspector.data.row.binary",    "inspector.data.row.uint8_dec",
    "inspector.data.row.uint16_le", "inspector.data.row.uint16_be",
    "inspector.data.row.uint32_le", "inspector.data.row.uint32_be",
    "inspector.data.row.uint64_le", "inspector.data.row.uint64_be",
    "inspector.data.row.utf8",      "inspector.data.row.utf16le",
    "inspector.data.row.utf16be",   "inspector.data.row.current_encoding_char"};

/// Everything that a computation needs; owns its bytes.
struct InspectorRequest {
    std::uint64_t caretOffset = 0; ///< document offset of the first byte
    TextEncoding encoding = TextEncoding::Ascii;
    Bytes bytes;                    ///< from the caret on, at most kInspectorBytes
    std::u16string unavailableText; ///< localised; for what has too few bytes or is no character
};

struct InspectorRow {
    std::string_view nameKey; ///< of kInspectorRowKeys
    std::u16string value;

    friend bool operator==(const InspectorRow&, const InspectorRow&) = default;
};

using InspectorRows = std::array<InspectorRow, kInspectorRows>;

/// Reads the bytes at the caret. Without an open document there are none.
InspectorRequest MakeInspectorRequest(const IReadOnlyDocument& document, std::uint64_t caretOffset,
                                      TextEncoding encoding, std::u16string unavailableText);

InspectorRows ComputeInspectorRows(const InspectorRequest& request);

} // namespace kvx
