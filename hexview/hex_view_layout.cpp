#include "hexview/hex_view_layout.h"

#include "hexview/hex_digits.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string_view>

namespace kvx {
namespace {

constexpr float kMinCharWidth = 1.0F;
constexpr float kMinRowHeight = 17.0F;
constexpr float kCharsPerHexCell = 3.0F;
constexpr std::int32_t kLargestBarPosition = std::numeric_limits<std::int32_t>::max();

constexpr std::u16string_view kHexColumnChars = u"0123456789ABCDEF:";
constexpr std::u16string_view kTextColumnChars = u" !\"#$%&'()*+,-./0123456789:;<=>?"
                                                 u"@ABCDEFGHIJKLMNOPQRSTUVWXYZ[\\]^_"
                                                 u"`abcdefghijklmnopqrstuvwxyz{|}~";
static_assert(kTextColumnChars.size() == 95);

float ToDip(double pixels, const HexViewState& state) {
    return static_cast<float>(pixels * kDefaultDpi / state.dpi);
}

/// A length as scroll bars count it: whole, not negative.
std::int32_t BarUnits(float length) {
    const double units = std::clamp<double>(static_cast<double>(length), 0.0, kLargestBarPosition);
    return static_cast<std::int32_t>(units);
}

std::int32_t BarPosition(std::uint64_t row) {
    return static_cast<std::int32_t>(std::min<std::uint64_t>(row, kLargestBarPosition));
}

/// Rows that hold bytes.
std::uint64_t FilledRows(std::uint64_t size) {
    return size / kBytesPerRow + (size % kBytesPerRow == 0 ? 0 : 1);
}

/// Width of what scrolls sideways.
std::int32_t ContentWidth(const HexViewState& state) {
    return BarUnits(std::ceil(state.hexWidth + state.columnGap + state.textWidth));
}

/// Index of the cell at `x` in a column of sixteen cells that starts at `start`.
std::optional<std::uint64_t> CellAt(float x, float start, float columnWidth, float cellWidth) {
    if (x < start || x >= start + columnWidth) return std::nullopt;
    return std::min(static_cast<std::uint64_t>((x - start) / cellWidth), kBytesPerRow - 1);
}

std::optional<std::uint64_t> ByteColumnAt(const HexViewState& state, float x) {
    if (x < ContentLeft(state) || x >= ContentRight(state)) return std::nullopt;
    if (const auto cell = CellAt(x, HexStart(state), state.hexWidth, HexCellWidth(state)))
        return cell;
    return CellAt(x, TextStart(state), state.textWidth, state.textCharWidth);
}

} // namespace

FontSpec FontOf(const HexViewState& state) {
    return {state.fontFamily, state.effectiveFontSize, state.bold, state.italic};
}

void MeasureFont(HexViewState& state, TextMeasurer& measurer) {
    state.effectiveFontSize = state.fontSizeDip * state.zoom;
    const FontSpec font = FontOf(state);
    state.textCharWidth = std::max(kMinCharWidth, measurer.WidestCharacter(font, kTextColumnChars));
    state.hexCharWidth = std::max(kMinCharWidth, measurer.WidestCharacter(font, kHexColumnChars));
    state.hexWidth = HexCellWidth(state) * static_cast<float>(kBytesPerRow);
    state.textWidth = state.textCharWidth * static_cast<float>(kBytesPerRow);
    const float leading = std::max(font.sizeDip * 0.15F, 0.75F);
    state.rowHeight =
        std::max({kMinRowHeight, font.sizeDip * 1.35F, measurer.LineHeight(font) + leading});
    FitOffsetColumn(state);
}

void FitOffsetColumn(HexViewState& state) {
    const std::size_t digits = OffsetDigits(DocumentSize(state));
    state.offsetWidth = state.hexCharWidth * static_cast<float>(digits + 1);
}

bool HasOpenDocument(const HexViewState& state) {
    return state.document != nullptr && state.document->IsOpen();
}

std::uint64_t DocumentSize(const HexViewState& state) {
    return HasOpenDocument(state) ? state.document->GetSize() : 0;
}

SelectedRange SelectionOf(const HexViewState& state) {
    return {.first = std::min(state.selAnchor, state.selEnd),
            .last = std::max(state.selAnchor, state.selEnd)};
}

std::uint64_t LastCaretOffset(const HexViewState& state) {
    const std::uint64_t size = DocumentSize(state);
    return state.insertMode == InsertMode::Insert || size == 0 ? size : size - 1;
}

std::optional<std::uint64_t> CaretExtraRow(const HexViewState& state) {
    if (state.insertMode != InsertMode::Insert || !HasOpenDocument(state)) return std::nullopt;
    const std::uint64_t size = DocumentSize(state);
    if (state.caret != size || size % kBytesPerRow != 0) return std::nullopt;
    return size / kBytesPerRow;
}

float ClientWidth(const HexViewState& state) {
    return ToDip(state.clientWidthPx, state);
}

float ClientHeight(const HexViewState& state) {
    return ToDip(state.clientHeightPx, state);
}

float ContentLeft(const HexViewState& state) {
    return state.padding + state.offsetWidth + state.columnGap;
}

float ContentRight(const HexViewState& state) {
    return ClientWidth(state) - state.padding;
}

float HexCellWidth(const HexViewState& state) {
    return state.hexCharWidth * kCharsPerHexCell;
}

float HexStart(const HexViewState& state) {
    return ContentLeft(state) - static_cast<float>(state.scrollX);
}

float TextStart(const HexViewState& state) {
    return HexStart(state) + state.hexWidth + state.columnGap;
}

std::uint64_t VisibleRows(const HexViewState& state) {
    const float rows = (ClientHeight(state) - 2.0F * state.padding) / state.rowHeight;
    return rows < 1.0F ? 1 : static_cast<std::uint64_t>(rows);
}

std::uint64_t TotalRows(const HexViewState& state) {
    const std::uint64_t rows = FilledRows(DocumentSize(state));
    // A document without bytes has nothing to scroll to, though a caret is drawn in its row 0.
    return rows != 0 && CaretExtraRow(state) ? rows + 1 : rows;
}

std::uint64_t LargestTopRow(const HexViewState& state) {
    const std::uint64_t total = TotalRows(state);
    return total - std::min(total, VisibleRows(state));
}

std::int32_t HorizontalPage(const HexViewState& state) {
    return BarUnits(std::floor(ContentRight(state) - ContentLeft(state)));
}

std::int32_t LargestScrollX(const HexViewState& state) {
    return std::max(0, ContentWidth(state) - HorizontalPage(state));
}

ScrollBar VerticalBar(const HexViewState& state) {
    const std::uint64_t total = TotalRows(state);
    return {.max = total == 0 ? 0 : BarPosition(total - 1),
            .page = static_cast<std::uint32_t>(BarPosition(VisibleRows(state))),
            .position = BarPosition(state.topRow)};
}

ScrollBar HorizontalBar(const HexViewState& state) {
    return {.max = ContentWidth(state) - 1,
            .page = static_cast<std::uint32_t>(HorizontalPage(state)),
            .position = state.scrollX};
}

void ClampPositions(HexViewState& state) {
    // The caret first: whether it stands past the last row decides how many rows there are.
    state.caret = std::min(state.caret, LastCaretOffset(state));
    state.topRow = std::min(state.topRow, LargestTopRow(state));
    state.scrollX = std::clamp(state.scrollX, 0, LargestScrollX(state));
}

void ScrollToCaret(HexViewState& state) {
    const std::uint64_t row = state.caret / kBytesPerRow;
    const std::uint64_t visible = VisibleRows(state);
    if (row < state.topRow)
        state.topRow = row;
    else if (row - state.topRow >= visible)
        state.topRow = row - visible + 1;

    const auto column = static_cast<float>(state.caret % kBytesPerRow);
    const std::int32_t left = BarUnits(std::floor(HexCellWidth(state) * column));
    const std::int32_t right =
        BarUnits(std::ceil(static_cast<float>(left) + 2.0F * state.hexCharWidth));
    const std::int32_t page = HorizontalPage(state);
    if (left < state.scrollX)
        state.scrollX = left;
    else if (right - state.scrollX > page)
        state.scrollX = right - page;
}

std::optional<std::uint64_t> HitTest(const HexViewState& state, PointPx point) {
    const std::uint64_t size = DocumentSize(state);
    const float y = ToDip(point.y, state);
    if (size == 0 || y < state.padding || y >= ClientHeight(state) - state.padding)
        return std::nullopt;
    const std::uint64_t row =
        state.topRow + static_cast<std::uint64_t>((y - state.padding) / state.rowHeight);
    const auto column = ByteColumnAt(state, ToDip(point.x, state));
    if (row >= FilledRows(size) || !column) return std::nullopt;
    const std::uint64_t offset = row * kBytesPerRow + *column;
    return offset < size ? std::optional(offset) : std::nullopt;
}

} // namespace kvx
