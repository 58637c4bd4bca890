// Geometry and scrolling of the hex view as functions of its state: where columns and rows stand,
// how far it scrolls, which byte is under a point. Nothing here reads bytes or talks to a window.
//
// Lengths are DIPs unless they say pixels. Rows are counted, never scaled, in 64 bits; a document
// may be as large as 2^64 - 1 bytes.
#pragma once

#include "hexview/hex_view_host.h"
#include "hexview/hex_view_state.h"
#include "hexview/text_measurer.h"

#include <cstdint>
#include <optional>

namespace kvx {

/// The font that text is drawn with now, zoom included.
FontSpec FontOf(const HexViewState& state);

// Metrics. Both leave the positions alone: clamp or scroll afterwards.
void MeasureFont(HexViewState& state, TextMeasurer& measurer); ///< after a change of font or zoom
void FitOffsetColumn(HexViewState& state);                     ///< after a change of the size alone

// The document.
bool HasOpenDocument(const HexViewState& state);
std::uint64_t DocumentSize(const HexViewState& state); ///< bytes; 0 when none is open

/// Offsets of the selection in ascending order, both included. Meaningless without a selection.
struct SelectedRange {
    std::uint64_t first = 0;
    std::uint64_t last = 0;
};
SelectedRange SelectionOf(const HexViewState& state);

/// Largest legal caret: one past the last byte in insert mode, else the last byte; 0 without bytes.
std::uint64_t LastCaretOffset(const HexViewState& state);

/// The empty row that an inserting caret at the end of whole rows (or of no rows) stands in.
std::optional<std::uint64_t> CaretExtraRow(const HexViewState& state);

// Columns. The hex and text columns start left of ContentLeft when they are scrolled sideways and
// are seen only from ContentLeft to ContentRight.
float ClientWidth(const HexViewState& state);
float ClientHeight(const HexViewState& state);
float ContentLeft(const HexViewState& state);
float ContentRight(const HexViewState& state);
float HexCellWidth(const HexViewState& state); ///< two digits and a blank
float HexStart(const HexViewState& state);
float TextStart(const HexViewState& state);

// Scrolling.
std::uint64_t VisibleRows(const HexViewState& state); ///< at least 1
std::uint64_t TotalRows(const HexViewState& state);   ///< rows that can be scrolled to
std::uint64_t LargestTopRow(const HexViewState& state);
std::int32_t HorizontalPage(const HexViewState& state);
std::int32_t LargestScrollX(const HexViewState& state);
ScrollBar VerticalBar(const HexViewState& state);
ScrollBar HorizontalBar(const HexViewState& state);

/// Brings caret, topRow and scrollX into their legal ranges.
void ClampPositions(HexViewState& state);

/// Scrolls as little as brings the caret's row and its hex digits into sight.
void ScrollToCaret(HexViewState& state);

/// Offset of the byte seen at `point`; nothing beside the two columns or beyond the last byte.
std::optional<std::uint64_t> HitTest(const HexViewState& state, PointPx point);

} // namespace kvx
