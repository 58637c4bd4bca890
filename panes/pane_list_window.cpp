#include "panes/pane_list_window.h"

#include "platform/win32/clipboard.h"
#include "platform/win32/wide.h"

#include <algorithm>
#include <utility>

#include <windowsx.h>

namespace kvx {
namespace {

constexpr wchar_t kCaptionFontName[] = L"Segoe UI";
constexpr int kMessageMargin = 12; ///< pixels at 96 DPI
constexpr int kSideGap = 8;        ///< pixels at 96 DPI, between a cell's two texts

PanePoint PointOf(LPARAM lParam) {
    return {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
}

int TextWidthPx(HDC dc, std::u16string_view text) {
    SIZE size{};
    ::GetTextExtentPoint32W(dc, WideData(text), static_cast<int>(text.size()), &size);
    return size.cx;
}

void DrawHorizontalLine(HDC dc, int left, int right, int y, COLORREF color) {
    FillSolid(dc, {left, y, right, y + 1}, color);
}

int BarOf(ListAxis axis) {
    return axis == ListAxis::Horizontal ? SB_HORZ : SB_VERT;
}

std::optional<ListScroll> ScrollOf(UINT request) {
    switch (request) {
    case SB_LINEUP:
        return ListScroll::LineBack;
    case SB_LINEDOWN:
        return ListScroll::LineOn;
    case SB_PAGEUP:
        return ListScroll::PageBack;
    case SB_PAGEDOWN:
        return ListScroll::PageOn;
    case SB_TOP:
        return ListScroll::ToStart;
    case SB_BOTTOM:
        return ListScroll::ToEnd;
    default:
        return std::nullopt;
    }
}

/// Where the scroll box is dragged to; the message itself carries only 16 bits of it.
int TrackPosition(HWND window, int bar) {
    SCROLLINFO info{};
    info.cbSize = sizeof(info);
    info.fMask = SIF_TRACKPOS;
    return ::GetScrollInfo(window, bar, &info) ? info.nTrackPos : 0;
}

void SetBar(HWND window, int bar, const ListScrollRange& range) {
    SCROLLINFO info{};
    info.cbSize = sizeof(info);
    info.fMask = SIF_RANGE | SIF_PAGE | SIF_POS;
    info.nMax = range.contentPx - 1;
    info.nPage = static_cast<UINT>(range.pagePx);
    info.nPos = range.positionPx;
    ::SetScrollInfo(window, bar, &info, TRUE);
}

} // namespace

bool IsAscii(std::u16string_view text) {
    return std::ranges::all_of(text, [](char16_t unit) { return unit < 0x80; });
}

void DrawLine(HDC dc, std::u16string_view text, const PaneRect& area, UINT alignment) {
    RECT place = ToRect(area);
    ::DrawTextW(dc, WideData(text), static_cast<int>(text.size()), &place,
                alignment | DT_SINGLELINE | DT_VCENTER | DT_END_ELLIPSIS | DT_NOPREFIX);
}

PaneList::PaneList(std::span<const ListColumn> columns, const wchar_t* rowFont)
    : model_(columns), rowFontName_(rowFont) {}

void PaneList::Attach(HWND window, const IListContent& content) {
    window_ = window;
    content_ = &content;
    shownRanges_ = {};
    model_.SetRowCount(content.RowCount());
}

void PaneList::Detach() {
    window_ = nullptr;
    rowFont_.Reset();
    captionFont_.Reset();
}

void PaneList::SetDpi(int dpi) {
    model_.SetDpi(dpi);
    const int heightPx = ScaledToDpi(kListFontSize, dpi);
    rowFont_ = MakeFont(rowFontName_, heightPx);
    captionFont_ = MakeFont(kCaptionFontName, heightPx);
}

void PaneList::SetArea(const ListArea& area) {
    model_.SetArea(area);
    UpdateScrollBars();
}

void PaneList::ShowContent() {
    if (window_ == nullptr) return;
    model_.SetRowCount(content_->RowCount());
    Apply(ListEffect::Repaint);
}

std::optional<LRESULT> PaneList::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_KEYDOWN:
        return OnKeyDown(wParam, lParam);
    case WM_LBUTTONDOWN:
        return OnPress(PointOf(lParam), false);
    case WM_LBUTTONDBLCLK:
        return OnPress(PointOf(lParam), true);
    case WM_MOUSEMOVE:
        return OnMove(PointOf(lParam));
    case WM_LBUTTONUP:
        if (model_.IsDragging()) ::ReleaseCapture();
        return 0;
    case WM_CAPTURECHANGED:
        model_.OnRelease();
        return 0;
    case WM_SETCURSOR:
        if (LOWORD(lParam) == HTCLIENT && ShowResizeCursor()) return TRUE;
        return std::nullopt;
    case WM_MOUSEWHEEL:
        Apply(model_.OnWheel(GET_WHEEL_DELTA_WPARAM(wParam)));
        return 0;
    case WM_MOUSEHWHEEL:
        Apply(model_.OnScroll(ListAxis::Horizontal, GET_WHEEL_DELTA_WPARAM(wParam) < 0
                                                        ? ListScroll::LineBack
                                                        : ListScroll::LineOn));
        return 0;
    case WM_VSCROLL:
        return OnScroll(ListAxis::Vertical, LOWORD(wParam));
    case WM_HSCROLL:
        return OnScroll(ListAxis::Horizontal, LOWORD(wParam));
    default:
        return std::nullopt;
    }
}

LRESULT PaneList::OnKeyDown(WPARAM key, LPARAM lParam) {
    const auto known = ListKeyOf(static_cast<std::uint32_t>(key), ::GetKeyState(VK_CONTROL) < 0);
    if (!known) return ::DefWindowProcW(window_, WM_KEYDOWN, key, lParam);
    Apply(model_.OnKey(*known));
    return 0;
}

LRESULT PaneList::OnPress(PanePoint point, bool twice) {
    ::SetFocus(window_); // a control beside the list may have had it
    Apply(twice && model_.IsOverDivider(point) ? model_.OnDoubleClick(point)
                                               : model_.OnPress(point));
    if (model_.IsDragging()) ::SetCapture(window_);
    return 0;
}

LRESULT PaneList::OnMove(PanePoint point) {
    Apply(model_.OnMove(point));
    return 0;
}

LRESULT PaneList::OnScroll(ListAxis axis, UINT request) {
    if (request == SB_THUMBTRACK || request == SB_THUMBPOSITION) {
        Apply(model_.OnScrollTo(axis, TrackPosition(window_, BarOf(axis))));
    } else if (const auto step = ScrollOf(request)) {
        Apply(model_.OnScroll(axis, *step));
    }
    return 0;
}

void PaneList::Apply(ListEffect effect) {
    switch (effect) {
    case ListEffect::None:
        break;
    case ListEffect::Repaint:
        UpdateScrollBars();
        ::InvalidateRect(window_, nullptr, FALSE);
        break;
    case ListEffect::Copy:
        SetClipboardText(window_, ListCopyText(*content_));
        break;
    }
}

bool PaneList::ShowResizeCursor() const {
    POINT pointer{};
    if (!::GetCursorPos(&pointer) || !::ScreenToClient(window_, &pointer)) return false;
    if (!model_.IsOverDivider({pointer.x, pointer.y})) return false;
    ::SetCursor(::LoadCursorW(nullptr, IDC_SIZEWE));
    return true;
}

// A bar that appears or goes takes from or gives to the area, which comes back here through
// SetArea. Each bar that appears only makes the other one more needed, so this ends.
void PaneList::UpdateScrollBars() {
    scrollBarsStale_ = true;
    if (std::exchange(updatingScrollBars_, true)) return;
    while (std::exchange(scrollBarsStale_, false)) {
        for (const ListAxis axis : {ListAxis::Horizontal, ListAxis::Vertical}) {
            const ListScrollRange range = model_.ScrollRange(axis);
            auto& shown = shownRanges_[static_cast<std::size_t>(axis)];
            if (std::exchange(shown, range) != range) SetBar(window_, BarOf(axis), range);
        }
    }
    updatingScrollBars_ = false;
}

void PaneList::Draw(HDC dc, const PaneColors& colors, std::u16string_view message) const {
    FillSolid(dc, ToRect(model_.RowsArea()), ToColorRef(colors.background));
    ::SetBkMode(dc, TRANSPARENT);
    if (message.empty()) {
        DrawRows(dc, colors);
    } else {
        DrawMessage(dc, colors, message);
    }
    DrawCaptions(dc, colors);
    const PaneRect lined = message.empty() ? model_.RowsArea() : model_.CaptionBand();
    DrawSeparators(dc, colors, lined.bottom);
}

void PaneList::DrawRows(HDC dc, const PaneColors& colors) const {
    const ClipScope clip(dc, ToRect(model_.RowsArea()));
    const SelectScope font(dc, rowFont_.Get());
    const ListRowRange rows = model_.VisibleRows();
    for (std::size_t row = rows.begin; row < rows.end; ++row) {
        const PaneRect place = model_.RowRect(row);
        if (row == model_.SelectedRow())
            FillSolid(dc, ToRect(place), ToColorRef(colors.selectedRow));
        for (std::size_t column = 0; column < content_->ColumnCount(); ++column)
            DrawCell(dc, colors, row, column);
        DrawHorizontalLine(dc, place.left, place.right, place.bottom - 1,
                           ToColorRef(colors.gridLine));
    }
}

void PaneList::DrawCell(HDC dc, const PaneColors& colors, std::size_t row,
                        std::size_t column) const {
    const PaneRect cell = model_.CellRect(row, column);
    DrawTexts(dc, colors, content_->Text(row, column), content_->SideText(row, column), cell,
              cell.right);
}

// The row font may have no link to others; that of the captions shows every script. The side text
// is drawn only where it leaves the text whole.
void PaneList::DrawTexts(HDC dc, const PaneColors& colors, std::u16string_view text,
                         std::u16string_view side, const PaneRect& area, int sideRight) const {
    ::SetTextColor(dc, ToColorRef(colors.text));
    int widthPx = ScaledToDpi(kSideGap, model_.Dpi());
    {
        const SelectScope font(dc, IsAscii(text) ? ::GetCurrentObject(dc, OBJ_FONT)
                                                 : captionFont_.Get());
        DrawLine(dc, text, area);
        if (!side.empty()) widthPx += TextWidthPx(dc, text);
    }
    if (side.empty() || widthPx + TextWidthPx(dc, side) > sideRight - area.left) return;
    ::SetTextColor(dc, ToColorRef(colors.DimmedText()));
    DrawLine(dc, side, {area.left, area.top, sideRight, area.bottom}, DT_RIGHT);
}

void PaneList::DrawMessage(HDC dc, const PaneColors& colors, std::u16string_view message) const {
    const SelectScope font(dc, captionFont_.Get());
    ::SetTextColor(dc, ToColorRef(colors.DimmedText()));
    RECT place = ToRect(model_.RowsArea());
    const int margin = ScaledToDpi(kMessageMargin, model_.Dpi());
    ::InflateRect(&place, -margin, -margin);
    ::DrawTextW(dc, WideData(message), static_cast<int>(message.size()), &place,
                DT_WORDBREAK | DT_NOPREFIX);
}

void PaneList::DrawCaptions(HDC dc, const PaneColors& colors) const {
    const PaneRect band = model_.CaptionBand();
    FillSolid(dc, ToRect(band), ToColorRef(colors.headerBand));
    DrawHorizontalLine(dc, band.left, band.right, band.bottom - 1, ToColorRef(colors.gridLine));
    const ClipScope clip(dc, ToRect(band));
    const SelectScope font(dc, captionFont_.Get());
    for (std::size_t column = 0; column < content_->ColumnCount(); ++column) {
        const PaneRect place = model_.CaptionRect(column);
        const int room = column == captionRoom_.column ? captionRoom_.width : 0;
        DrawTexts(dc, colors, content_->Caption(column), content_->SideCaption(column), place,
                  place.right - ScaledToDpi(room, model_.Dpi()));
    }
}

void PaneList::DrawSeparators(HDC dc, const PaneColors& colors, int bottom) const {
    const int top = model_.CaptionBand().top;
    for (std::size_t column = 0; column < content_->ColumnCount(); ++column) {
        const int x = model_.SeparatorX(column);
        FillSolid(dc, {x, top, x + 1, bottom}, ToColorRef(colors.gridLine));
    }
}

} // namespace kvx
