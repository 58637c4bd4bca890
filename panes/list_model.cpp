#include "panes/list_model.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <utility>

namespace kvx {
namespace {

// Pixels at 96 DPI.
constexpr int kStartX = 12;
constexpr int kColumnGap = 16;
constexpr int kEndMargin = 12;
constexpr int kSeparatorOffset = 8; ///< from a column's right end
constexpr int kDividerReach = 4;    ///< to both sides of the separator
constexpr int kHorizontalStep = 24;
constexpr int kWheelStep = 48; ///< a notch

constexpr int kWheelNotch = 120;

struct KeyCode {
    std::uint32_t virtualKey;
    bool control; ///< whether Ctrl is to be down; for the others it does not matter
    ListKey key;
};

constexpr std::array<KeyCode, 8> kKeyCodes = {{
    {0x21, false, ListKey::PageUp},
    {0x22, false, ListKey::PageDown},
    {0x23, false, ListKey::End},
    {0x24, false, ListKey::Home},
    {0x26, false, ListKey::Up},
    {0x28, false, ListKey::Down},
    {0x2D, true, ListKey::Copy}, // Insert
    {u'C', true, ListKey::Copy},
}};

} // namespace

std::optional<ListKey> ListKeyOf(std::uint32_t virtualKey, bool controlDown) {
    for (const KeyCode& code : kKeyCodes) {
        if (code.virtualKey == virtualKey && (controlDown || !code.control)) return code.key;
    }
    return std::nullopt;
}

ListModel::ListModel(std::span<const ListColumn> columns) {
    for (const ListColumn& column : columns)
        columns_.push_back({column, column.defaultWidth});
}

void ListModel::SetDpi(int dpi) {
    view_.scrollXPx = ScaleRounded(view_.scrollXPx, dpi, dpi_);
    view_.scrollYPx = ScaleRounded(view_.scrollYPx, dpi, dpi_);
    dpi_ = dpi;
    ScrollTo(view_.scrollXPx, view_.scrollYPx);
}

void ListModel::SetArea(const ListArea& area) {
    area_ = area;
    ScrollTo(view_.scrollXPx, view_.scrollYPx);
}

void ListModel::SetRowCount(std::size_t rows) {
    rowCount_ = rows;
    if (view_.selectedRow && *view_.selectedRow >= rows) view_.selectedRow.reset();
    ScrollTo(view_.scrollXPx, view_.scrollYPx);
}

ListEffect ListModel::OnKey(ListKey key) {
    const View before = view_;
    switch (key) {
    case ListKey::Up:
        MoveSelection(-1);
        break;
    case ListKey::Down:
        MoveSelection(1);
        break;
    case ListKey::PageUp:
        ScrollTo(view_.scrollXPx, view_.scrollYPx - PageStep(ListAxis::Vertical));
        break;
    case ListKey::PageDown:
        ScrollTo(view_.scrollXPx, view_.scrollYPx + PageStep(ListAxis::Vertical));
        break;
    case ListKey::Home:
        ScrollTo(0, 0);
        break;
    case ListKey::End:
        ScrollTo(ContentWidth(), ContentHeight());
        break;
    case ListKey::Copy:
        return ListEffect::Copy;
    }
    return EffectSince(before);
}

ListEffect ListModel::OnWheel(int delta) {
    const View before = view_;
    // Fine wheels send parts of a notch, which would be lost otherwise.
    const int notches =
        std::abs(delta) < kWheelNotch ? (delta > 0) - (delta < 0) : delta / kWheelNotch;
    ScrollTo(view_.scrollXPx, view_.scrollYPx - notches * Scaled(kWheelStep));
    return EffectSince(before);
}

ListEffect ListModel::OnScroll(ListAxis axis, ListScroll step) {
    const ListScrollRange range = ScrollRange(axis);
    const int line = Scaled(axis == ListAxis::Vertical ? kListRowHeight : kHorizontalStep);
    switch (step) {
    case ListScroll::LineBack:
        return OnScrollTo(axis, range.positionPx - line);
    case ListScroll::LineOn:
        return OnScrollTo(axis, range.positionPx + line);
    case ListScroll::PageBack:
        return OnScrollTo(axis, range.positionPx - PageStep(axis));
    case ListScroll::PageOn:
        return OnScrollTo(axis, range.positionPx + PageStep(axis));
    case ListScroll::ToStart:
        return OnScrollTo(axis, 0);
    case ListScroll::ToEnd:
        break;
    }
    return OnScrollTo(axis, range.contentPx);
}

ListEffect ListModel::OnScrollTo(ListAxis axis, int positionPx) {
    const View before = view_;
    if (axis == ListAxis::Horizontal)
        ScrollTo(positionPx, view_.scrollYPx);
    else
        ScrollTo(view_.scrollXPx, positionPx);
    return EffectSince(before);
}

ListEffect ListModel::OnPress(PanePoint point) {
    if (const std::optional<std::size_t> column = DividerAt(point)) {
        drag_ = Drag{*column, point.x - SeparatorX(*column)};
        return ListEffect::None;
    }
    if (!RowsArea().Contains(point)) return ListEffect::None;
    const View before = view_;
    const auto row = static_cast<std::size_t>((point.y - RowRect(0).top) / Scaled(kListRowHeight));
    if (row < rowCount_) view_.selectedRow = row;
    return EffectSince(before);
}

ListEffect ListModel::OnMove(PanePoint point) {
    if (!drag_) return ListEffect::None;
    const int rightPx = point.x - drag_->grabPx - Scaled(kSeparatorOffset);
    const int widthPx = rightPx - CaptionRect(drag_->column).left;
    return SetWidth(drag_->column, ScaleRounded(widthPx, 96, dpi_));
}

ListEffect ListModel::OnDoubleClick(PanePoint point) {
    const std::optional<std::size_t> column = DividerAt(point);
    return column ? SetWidth(*column, columns_[*column].limits.defaultWidth) : ListEffect::None;
}

ListScrollRange ListModel::ScrollRange(ListAxis axis) const {
    if (axis == ListAxis::Horizontal) return {ContentWidth(), area_.widthPx, view_.scrollXPx};
    return {ContentHeight(), RowsArea().Height(), view_.scrollYPx};
}

PaneRect ListModel::CaptionBand() const {
    return {0, area_.topPx, area_.widthPx, area_.topPx + Scaled(kListCaptionHeight)};
}

PaneRect ListModel::RowsArea() const {
    const int top = CaptionBand().bottom;
    return {0, top, area_.widthPx, std::max(top, area_.heightPx)};
}

ListRowRange ListModel::VisibleRows() const {
    const int rowHeight = Scaled(kListRowHeight);
    const int bottom = view_.scrollYPx + RowsArea().Height();
    const auto begin = static_cast<std::size_t>(view_.scrollYPx / rowHeight);
    const auto end = static_cast<std::size_t>((bottom + rowHeight - 1) / rowHeight);
    return {std::min(begin, rowCount_), std::min(end, rowCount_)};
}

PaneRect ListModel::RowRect(std::size_t row) const {
    const int rowHeight = Scaled(kListRowHeight);
    const int top = CaptionBand().bottom - view_.scrollYPx + static_cast<int>(row) * rowHeight;
    return {0, top, area_.widthPx, top + rowHeight};
}

PaneRect ListModel::CellRect(std::size_t row, std::size_t column) const {
    const PaneRect rows = RowRect(row);
    const PaneRect caption = CaptionRect(column);
    return {caption.left, rows.top, caption.right, rows.bottom};
}

PaneRect ListModel::CaptionRect(std::size_t column) const {
    const PaneRect band = CaptionBand();
    const int left = ColumnLeft(column) - view_.scrollXPx;
    return {left, band.top, left + Scaled(columns_[column].width), band.bottom};
}

int ListModel::SeparatorX(std::size_t column) const {
    return CaptionRect(column).right + Scaled(kSeparatorOffset);
}

int ListModel::ColumnLeft(std::size_t column) const {
    int left = Scaled(kStartX);
    for (std::size_t i = 0; i < column; ++i)
        left += Scaled(columns_[i].width) + Scaled(kColumnGap);
    return left;
}

int ListModel::ContentWidth() const {
    return ColumnLeft(columns_.size()) - Scaled(kColumnGap) + Scaled(kEndMargin);
}

int ListModel::ContentHeight() const {
    return static_cast<int>(rowCount_) * Scaled(kListRowHeight);
}

int ListModel::PageStep(ListAxis axis) const {
    return std::max(ScrollRange(axis).pagePx, Scaled(kListRowHeight));
}

std::optional<std::size_t> ListModel::DividerAt(PanePoint point) const {
    if (!CaptionBand().Contains(point)) return std::nullopt;
    for (std::size_t column = 0; column < columns_.size(); ++column) {
        if (std::abs(point.x - SeparatorX(column)) <= Scaled(kDividerReach)) return column;
    }
    return std::nullopt;
}

void ListModel::ScrollTo(int xPx, int yPx) {
    view_.scrollXPx = std::clamp(xPx, 0, std::max(0, ContentWidth() - area_.widthPx));
    view_.scrollYPx = std::clamp(yPx, 0, std::max(0, ContentHeight() - RowsArea().Height()));
}

void ListModel::MoveSelection(int rows) {
    if (rowCount_ == 0) return;
    const auto last = static_cast<int>(rowCount_) - 1;
    const int from = view_.selectedRow ? static_cast<int>(*view_.selectedRow) + rows : 0;
    view_.selectedRow = static_cast<std::size_t>(std::clamp(from, 0, last));

    const PaneRect area = RowsArea();
    const PaneRect row = RowRect(*view_.selectedRow);
    const int below = std::max(0, row.bottom - area.bottom);
    const int above = std::max(0, area.top - row.top);
    ScrollTo(view_.scrollXPx, view_.scrollYPx + below - above);
}

ListEffect ListModel::SetWidth(std::size_t column, int width) {
    Column& target = columns_[column];
    const int allowed = std::max(width, target.limits.minimumWidth);
    if (std::exchange(target.width, allowed) == allowed) return ListEffect::None;
    ScrollTo(view_.scrollXPx, view_.scrollYPx);
    return ListEffect::Repaint;
}

} // namespace kvx
