#include "hexview/hex_view_window.h"

#include "hexview/frame.h"
#include "hexview/hex_view_layout.h"
#include "hexview/hex_view_renderer.h"
#include "platform/win32/clipboard.h"
#include "platform/win32/scoped.h"
#include "platform/win32/window_binding.h"

#include <algorithm>
#include <optional>

#include <imm.h>
#include <windowsx.h>

namespace kvx {
namespace {

constexpr wchar_t kClassName[] = L"Kivra.HexView";
constexpr UINT_PTR kBlinkTimerId = 1;
constexpr UINT kShortestBlinkMs = 200;
constexpr int kInitialSizePx = 100;

PointPx PointOf(LPARAM lParam) {
    return {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
}

bool ControlIsDown() {
    return ::GetKeyState(VK_CONTROL) < 0;
}

/// Where the thumb is dragged to; the message itself carries only 16 bits of it.
std::int32_t TrackPosition(HWND window, int bar) {
    SCROLLINFO info{};
    info.cbSize = sizeof(info);
    info.fMask = SIF_TRACKPOS;
    return ::GetScrollInfo(window, bar, &info) ? info.nTrackPos : 0;
}

void SetBar(HWND window, int bar, const ScrollBar& values, UINT flags) {
    SCROLLINFO info{};
    info.cbSize = sizeof(info);
    info.fMask = SIF_RANGE | SIF_PAGE | SIF_POS | flags;
    info.nMax = values.max;
    info.nPage = values.page;
    info.nPos = values.position;
    ::SetScrollInfo(window, bar, &info, TRUE);
}

} // namespace

class HexViewWindow::Impl final : public HexViewHost {
public:
    ~Impl() override {
        if (window_ != nullptr) ::DestroyWindow(window_);
    }

    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam,
                                      LPARAM lParam) noexcept;

    // HexViewHost. Without a window there is nothing to tell: many of the calls below would reach
    // something else if they were made with a null handle.
    void Invalidate() override;
    void NotifyParent(HexViewNotification notification) override;
    void SetScrollBars(const ScrollBar& vertical, const ScrollBar& horizontal) override;
    void CopyToClipboard(const std::u16string& text) override;
    void CaptureMouse() override;
    void ReleaseMouse() override;
    void TakeFocus() override;
    void StartBlinkTimer() override;
    void StopBlinkTimer() override;
    void ReleaseDeviceResources() override { renderer_.ReleaseDeviceResources(); }
    std::uint32_t WindowDpi() const override;

    HWND window_ = nullptr;
    HexViewRenderer renderer_;
    HexView view_{*this, renderer_};

private:
    LRESULT Dispatch(UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT Default(UINT message, WPARAM wParam, LPARAM lParam) {
        return ::DefWindowProcW(window_, message, wParam, lParam);
    }

    LRESULT OnCreate();
    LRESULT OnPaint();
    LRESULT OnSize(LPARAM lParam);
    LRESULT OnDpiChanged(std::uint32_t dpi);
    LRESULT OnKeyDown(WPARAM wParam, LPARAM lParam);
    LRESULT OnChar(WPARAM wParam, LPARAM lParam);
    LRESULT OnLeftButtonDown(LPARAM lParam);
    LRESULT OnMouseMove(LPARAM lParam);
    LRESULT OnLeftButtonUp();
    LRESULT OnCaptureChanged();
    LRESULT OnMouseWheel(WPARAM wParam);
    LRESULT OnVerticalScroll(WPARAM wParam);
    LRESULT OnHorizontalScroll(WPARAM wParam);
    LRESULT OnSetFocus();
    LRESULT OnKillFocus();
    LRESULT OnTimer(WPARAM wParam, LPARAM lParam);

    std::optional<ScrollBar> verticalBar_;   ///< as last set, to leave an unchanged bar alone
    std::optional<ScrollBar> horizontalBar_; ///< the same
    bool paintRetried_ = false;              ///< a failed paint was asked for once more
};

HexViewWindow::HexViewWindow() : impl_(std::make_unique<Impl>()) {}
HexViewWindow::~HexViewWindow() = default;

HWND HexViewWindow::Handle() const {
    return impl_->window_;
}

HexView& HexViewWindow::View() {
    return impl_->view_;
}

const HexView& HexViewWindow::View() const {
    return impl_->view_;
}

bool HexViewWindow::RegisterWindowClass(HINSTANCE instance) {
    WNDCLASSW windowClass{};
    windowClass.lpfnWndProc = &Impl::Procedure;
    windowClass.hInstance = instance;
    windowClass.hCursor = ::LoadCursorW(nullptr, IDC_ARROW);
    windowClass.hbrBackground = ::GetSysColorBrush(COLOR_WINDOW);
    windowClass.lpszClassName = kClassName;
    return ::RegisterClassW(&windowClass) != 0 || ::GetLastError() == ERROR_CLASS_ALREADY_EXISTS;
}

bool HexViewWindow::Create(HINSTANCE instance, HWND parent, int controlId) {
    constexpr DWORD kStyle = WS_CHILD | WS_VISIBLE | WS_VSCROLL | WS_HSCROLL | WS_TABSTOP;
    const auto menuOrId = reinterpret_cast<HMENU>(static_cast<INT_PTR>(controlId));
    return ::CreateWindowExW(0, kClassName, L"", kStyle, 0, 0, kInitialSizePx, kInitialSizePx,
                             parent, menuOrId, instance, impl_.get()) != nullptr;
}

LRESULT CALLBACK HexViewWindow::Impl::Procedure(HWND window, UINT message, WPARAM wParam,
                                                LPARAM lParam) noexcept {
    auto* const self = BoundObject<Impl>(window, message, lParam);
    if (self == nullptr && message == WM_NCCREATE) return FALSE;
    if (self == nullptr) return ::DefWindowProcW(window, message, wParam, lParam);
    if (message == WM_NCCREATE) self->window_ = window;
    if (message == WM_NCDESTROY) {
        ReleaseBoundObject(window);
        self->renderer_.ReleaseDeviceResources();
        self->window_ = nullptr;
        return ::DefWindowProcW(window, message, wParam, lParam);
    }
    try {
        return self->Dispatch(message, wParam, lParam);
    } catch (...) { // memory is short: the message is as good as not handled
        return ::DefWindowProcW(window, message, wParam, lParam);
    }
}

LRESULT HexViewWindow::Impl::Dispatch(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_CREATE:
        return OnCreate();
    case WM_PAINT:
        return OnPaint();
    case WM_ERASEBKGND:
        return 1; // painting covers everything; erasing first would only flicker
    case WM_SIZE:
        return OnSize(lParam);
    case WM_DPICHANGED:
        return OnDpiChanged(HIWORD(wParam));
    case WM_DPICHANGED_AFTERPARENT:
        return OnDpiChanged(WindowDpi());
    case WM_KEYDOWN:
        return OnKeyDown(wParam, lParam);
    case WM_CHAR:
        return OnChar(wParam, lParam);
    case WM_LBUTTONDOWN:
        return OnLeftButtonDown(lParam);
    case WM_MOUSEMOVE:
        return OnMouseMove(lParam);
    case WM_LBUTTONUP:
        return OnLeftButtonUp();
    case WM_CAPTURECHANGED:
        return OnCaptureChanged();
    case WM_MOUSEWHEEL:
        return OnMouseWheel(wParam);
    case WM_VSCROLL:
        return OnVerticalScroll(wParam);
    case WM_HSCROLL:
        return OnHorizontalScroll(wParam);
    case WM_SETFOCUS:
        return OnSetFocus();
    case WM_KILLFOCUS:
        return OnKillFocus();
    case WM_TIMER:
        return OnTimer(wParam, lParam);
    default:
        return Default(message, wParam, lParam);
    }
}

// Digits are keys here: an input method that is on would make a composition of them.
LRESULT HexViewWindow::Impl::OnCreate() {
    ::ImmAssociateContext(window_, nullptr);
    view_.SetDpi(WindowDpi());
    return 0;
}

LRESULT HexViewWindow::Impl::OnPaint() {
    const HexViewState& state = view_.State();
    const PaintScope paint(window_);
    const bool drawn = renderer_.Draw(window_, paint.Dc(), BuildFrame(state), state.theme,
                                      FontOf(state), state.dpi);
    // A lost device is made anew by the next paint, which nobody else would ask for. Once only: one
    // that keeps failing would have the window repaint without end.
    const bool retry = !drawn && !paintRetried_;
    paintRetried_ = !drawn;
    if (retry) Invalidate();
    return 0;
}

LRESULT HexViewWindow::Impl::OnSize(LPARAM lParam) {
    view_.SetClientSize(LOWORD(lParam), HIWORD(lParam));
    return 0;
}

LRESULT HexViewWindow::Impl::OnDpiChanged(std::uint32_t dpi) {
    view_.SetDpi(dpi);
    return 0;
}

LRESULT HexViewWindow::Impl::OnKeyDown(WPARAM wParam, LPARAM lParam) {
    const auto key = static_cast<Key>(wParam);
    if (view_.OnKeyDown(key, ControlIsDown()) == Handled::Yes) return 0;
    return Default(WM_KEYDOWN, wParam, lParam);
}

LRESULT HexViewWindow::Impl::OnChar(WPARAM wParam, LPARAM lParam) {
    if (view_.OnChar(static_cast<char16_t>(wParam)) == Handled::Yes) return 0;
    return Default(WM_CHAR, wParam, lParam);
}

LRESULT HexViewWindow::Impl::OnLeftButtonDown(LPARAM lParam) {
    view_.OnLeftButtonDown(PointOf(lParam));
    return 0;
}

LRESULT HexViewWindow::Impl::OnMouseMove(LPARAM lParam) {
    view_.OnMouseMove(PointOf(lParam));
    return 0;
}

LRESULT HexViewWindow::Impl::OnLeftButtonUp() {
    view_.OnLeftButtonUp();
    return 0;
}

LRESULT HexViewWindow::Impl::OnCaptureChanged() {
    view_.OnCaptureLost();
    return 0;
}

LRESULT HexViewWindow::Impl::OnMouseWheel(WPARAM wParam) {
    const bool control = (GET_KEYSTATE_WPARAM(wParam) & MK_CONTROL) != 0;
    view_.OnWheel(GET_WHEEL_DELTA_WPARAM(wParam), control);
    return 0;
}

LRESULT HexViewWindow::Impl::OnVerticalScroll(WPARAM wParam) {
    view_.OnVerticalScroll(static_cast<ScrollRequest>(LOWORD(wParam)),
                           TrackPosition(window_, SB_VERT));
    return 0;
}

LRESULT HexViewWindow::Impl::OnHorizontalScroll(WPARAM wParam) {
    view_.OnHorizontalScroll(static_cast<ScrollRequest>(LOWORD(wParam)),
                             TrackPosition(window_, SB_HORZ));
    return 0;
}

LRESULT HexViewWindow::Impl::OnSetFocus() {
    view_.OnFocusGained();
    return 0;
}

LRESULT HexViewWindow::Impl::OnKillFocus() {
    view_.OnFocusLost();
    return 0;
}

LRESULT HexViewWindow::Impl::OnTimer(WPARAM wParam, LPARAM lParam) {
    if (wParam != kBlinkTimerId) return Default(WM_TIMER, wParam, lParam);
    view_.OnBlinkTimer();
    return 0;
}

void HexViewWindow::Impl::Invalidate() {
    if (window_ != nullptr) ::InvalidateRect(window_, nullptr, FALSE);
}

void HexViewWindow::Impl::NotifyParent(HexViewNotification notification) {
    const HWND parent = window_ != nullptr ? ::GetParent(window_) : nullptr;
    if (parent == nullptr) return;
    const auto message = static_cast<UINT>(notification);
    if (notification == HexViewNotification::ZoomChanged) {
        ::SendMessageW(parent, message, 0, 0);
    } else {
        ::PostMessageW(parent, message, 0, 0);
    }
}

void HexViewWindow::Impl::SetScrollBars(const ScrollBar& vertical, const ScrollBar& horizontal) {
    if (window_ == nullptr) return;
    // The horizontal bar comes and goes with the need for it. That changes the height only, and the
    // vertical bar is always there, so the two never chase each other.
    if (horizontalBar_ != horizontal) {
        horizontalBar_ = horizontal;
        SetBar(window_, SB_HORZ, horizontal, 0);
    }
    if (verticalBar_ != vertical) {
        verticalBar_ = vertical;
        SetBar(window_, SB_VERT, vertical, SIF_DISABLENOSCROLL);
    }
}

void HexViewWindow::Impl::CopyToClipboard(const std::u16string& text) {
    if (window_ != nullptr) SetClipboardText(window_, text);
}

void HexViewWindow::Impl::CaptureMouse() {
    // Capturing again would tell the window that it lost the capture.
    if (window_ != nullptr && ::GetCapture() != window_) ::SetCapture(window_);
}

void HexViewWindow::Impl::ReleaseMouse() {
    if (window_ != nullptr && ::GetCapture() == window_) ::ReleaseCapture();
}

void HexViewWindow::Impl::TakeFocus() {
    if (window_ != nullptr) ::SetFocus(window_);
}

void HexViewWindow::Impl::StartBlinkTimer() {
    if (window_ == nullptr) return;
    const UINT period = ::GetCaretBlinkTime();
    if (period == INFINITE) { // the user wants carets that stay
        StopBlinkTimer();
    } else {
        ::SetTimer(window_, kBlinkTimerId, std::max(period, kShortestBlinkMs), nullptr);
    }
}

void HexViewWindow::Impl::StopBlinkTimer() {
    if (window_ != nullptr) ::KillTimer(window_, kBlinkTimerId);
}

std::uint32_t HexViewWindow::Impl::WindowDpi() const {
    const UINT dpi = window_ != nullptr ? ::GetDpiForWindow(window_) : 0;
    return dpi != 0 ? dpi : kDefaultDpi;
}

} // namespace kvx
