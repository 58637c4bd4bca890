#include "app/status_bar_window.h"

#include "platform/win32/wide.h"

#include <utility>

#include <commctrl.h>

namespace kvx {
namespace {

constexpr int kTextLeftPx = 6;
constexpr UINT kDrawFlags = DT_SINGLELINE | DT_VCENTER | DT_LEFT | DT_END_ELLIPSIS | DT_NOPREFIX;

COLORREF ToColorRef(const RgbColor& color) {
    return RGB(color.red, color.green, color.blue);
}

COLORREF BackgroundOf(const StatusColors& colors) {
    return colors.background ? ToColorRef(*colors.background) : ::GetSysColor(COLOR_BTNFACE);
}

} // namespace

bool StatusBarWindow::Create(HINSTANCE instance, HWND parent) {
    constexpr DWORD kStyle = WS_CHILD | WS_VISIBLE | SBARS_SIZEGRIP;
    window_ = ::CreateWindowExW(0, STATUSCLASSNAMEW, L"", kStyle, 0, 0, 0, 0, parent, nullptr,
                                instance, nullptr);
    if (window_ == nullptr) return false;
    TakeFont();
    return true;
}

void StatusBarWindow::Show(const std::u16string& text, const StatusColors& colors) {
    text_ = text;
    colors_ = colors;
    ::SendMessageW(window_, SB_SETTEXTW, SBT_OWNERDRAW, reinterpret_cast<LPARAM>(AsWide(text_)));
}

void StatusBarWindow::SetBackground(const StatusColors& colors) {
    ::SendMessageW(window_, SB_SETBKCOLOR, 0, static_cast<LPARAM>(BackgroundOf(colors)));
    ::InvalidateRect(window_, nullptr, TRUE);
    ::UpdateWindow(window_);
}

void StatusBarWindow::PaintNow() {
    ::UpdateWindow(window_);
}

// The bar keeps the font of the DPI at which it was made; a window that moves to another screen
// would be left with too small or too large a text.
void StatusBarWindow::TakeFont() {
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof(metrics);
    const UINT dpi = ::GetDpiForWindow(window_);
    if (!::SystemParametersInfoForDpi(SPI_GETNONCLIENTMETRICS, sizeof(metrics), &metrics, 0, dpi))
        return;
    UniqueFont font(::CreateFontIndirectW(&metrics.lfStatusFont));
    if (!font) return;
    ::SendMessageW(window_, WM_SETFONT, reinterpret_cast<WPARAM>(font.Get()), TRUE);
    font_ = std::move(font);
}

// Repainted whole: the grip at its old place would stay behind in a bar that grows.
void StatusBarWindow::FollowParent() {
    ::SendMessageW(window_, WM_SIZE, 0, 0);
    ::InvalidateRect(window_, nullptr, TRUE);
}

int StatusBarWindow::HeightPx() const {
    RECT place{};
    ::GetWindowRect(window_, &place);
    return place.bottom - place.top;
}

void StatusBarWindow::Draw(const DRAWITEMSTRUCT& item) const {
    ::SetDCBrushColor(item.hDC, BackgroundOf(colors_));
    ::FillRect(item.hDC, &item.rcItem, static_cast<HBRUSH>(::GetStockObject(DC_BRUSH)));
    ::SetBkMode(item.hDC, TRANSPARENT);
    ::SetTextColor(item.hDC, ToColorRef(colors_.text));
    RECT place = item.rcItem;
    place.left += kTextLeftPx;
    ::DrawTextW(item.hDC, AsWide(text_), static_cast<int>(text_.size()), &place, kDrawFlags);
}

} // namespace kvx
