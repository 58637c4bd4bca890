#include "panes/pane_window.h"

#include "platform/win32/wide.h"
#include "platform/win32/window_binding.h"

#include <algorithm>

namespace kvx {
namespace {

// No button for minimising: the window goes and comes with the main window.
constexpr DWORD kStyle = WS_CAPTION | WS_SYSMENU | WS_THICKFRAME | WS_MAXIMIZEBOX |
                         WS_CLIPCHILDREN | WS_VSCROLL | WS_HSCROLL;

} // namespace

PaneWindow::PaneWindow(const PaneKind& kind) : list_(kind.columns, kind.rowFont), kind_(kind) {}

PaneWindow::~PaneWindow() {
    Destroy();
}

// With the icons of the main window.
bool PaneWindow::RegisterWindowClass(HINSTANCE instance, HWND owner) const {
    WNDCLASSEXW windowClass{};
    windowClass.cbSize = sizeof(windowClass);
    windowClass.style = CS_DBLCLKS;
    windowClass.lpfnWndProc = &PaneWindow::Procedure;
    windowClass.hInstance = instance;
    windowClass.hIcon = reinterpret_cast<HICON>(::GetClassLongPtrW(owner, GCLP_HICON));
    windowClass.hIconSm = reinterpret_cast<HICON>(::GetClassLongPtrW(owner, GCLP_HICONSM));
    windowClass.hCursor = ::LoadCursorW(nullptr, IDC_ARROW);
    windowClass.lpszClassName = kind_.className;
    return ::RegisterClassExW(&windowClass) != 0 || ::GetLastError() == ERROR_CLASS_ALREADY_EXISTS;
}

bool PaneWindow::Create(HINSTANCE instance, HWND owner, const IListContent& content, Theme theme,
                        int startWidth) {
    if (window_ != nullptr) return true;
    if (!RegisterWindowClass(instance, owner)) return false;
    content_ = &content;
    colors_ = PaneColorsOf(theme);
    const int dpi = static_cast<int>(::GetDpiForWindow(owner));
    const int width = std::max(width_ != 0 ? width_ : startWidth, kind_.minimumWidth);
    return ::CreateWindowExW(0, kind_.className, L"", kStyle, 0, 0, ScaledToDpi(width, dpi),
                             ScaledToDpi(kind_.minimumHeight, dpi), owner, nullptr, instance,
                             this) != nullptr;
}

void PaneWindow::Destroy() {
    if (window_ != nullptr) ::DestroyWindow(window_);
}

void PaneWindow::SetTheme(Theme theme) {
    if (window_ == nullptr) return;
    colors_ = PaneColorsOf(theme);
    OnColors();
    Repaint();
}

void PaneWindow::SetTitle(const std::u16string& title) {
    ::SetWindowTextW(window_, AsWide(title));
}

void PaneWindow::Notify(PaneNotification notification, WPARAM wParam) const {
    ::PostMessageW(Owner(), static_cast<UINT>(notification), wParam, 0);
}

LRESULT CALLBACK PaneWindow::Procedure(HWND window, UINT message, WPARAM wParam,
                                       LPARAM lParam) noexcept {
    auto* const self = BoundObject<PaneWindow>(window, message, lParam);
    if (self == nullptr) return ::DefWindowProcW(window, message, wParam, lParam);
    if (message == WM_NCCREATE) self->window_ = window;
    if (message == WM_NCDESTROY) {
        ReleaseBoundObject(window);
        self->list_.Detach();
        self->OnDestroyed();
        self->window_ = nullptr;
        return ::DefWindowProcW(window, message, wParam, lParam);
    }
    try {
        return self->Dispatch(message, wParam, lParam);
    } catch (...) { // memory is short: the message is as good as not handled
        return ::DefWindowProcW(window, message, wParam, lParam);
    }
}

LRESULT PaneWindow::Dispatch(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_CREATE:
        return OnCreate();
    case WM_ERASEBKGND:
        return 1; // painting covers everything; erasing first would only flicker
    case WM_PAINT: {
        const BufferedPaint paint(window_);
        Draw(paint.Dc());
        return 0;
    }
    case WM_ACTIVATE:
        return OnActivate(wParam, lParam);
    case WM_SIZE:
        OnSize(wParam);
        return 0;
    case WM_ENTERSIZEMOVE:
        widthBefore_ = Width();
        return 0;
    case WM_EXITSIZEMOVE:
        OnUserSized();
        return 0;
    case WM_GETMINMAXINFO:
        return OnMinimumSize(*reinterpret_cast<MINMAXINFO*>(lParam));
    case WM_DPICHANGED:
        return OnDpiChanged(HIWORD(wParam), *reinterpret_cast<const RECT*>(lParam));
    case WM_CLOSE:
        Notify(kind_.closed);
        return 0;
    default:
        break;
    }
    if (const auto answer = OnMessage(message, wParam, lParam)) return *answer;
    if (const auto answer = list_.OnMessage(message, wParam, lParam)) return *answer;
    return ::DefWindowProcW(window_, message, wParam, lParam);
}

LRESULT PaneWindow::OnCreate() {
    maximized_ = false;
    lastFocus_ = nullptr;
    list_.SetDpi(static_cast<int>(::GetDpiForWindow(window_)));
    list_.Attach(window_, *content_);
    OnCreated();
    return 0;
}

// A window that becomes active takes the focus itself, whichever of its controls had it before.
LRESULT PaneWindow::OnActivate(WPARAM wParam, LPARAM lParam) {
    const bool active = LOWORD(wParam) != WA_INACTIVE;
    if (!active) lastFocus_ = ::GetFocus();
    const LRESULT answer = ::DefWindowProcW(window_, WM_ACTIVATE, wParam, lParam);
    if (active && ::IsChild(window_, lastFocus_) && ::IsWindowVisible(lastFocus_))
        ::SetFocus(lastFocus_);
    return answer;
}

// Of the whole window, pixels at 96 DPI.
int PaneWindow::Width() const {
    RECT place{};
    ::GetWindowRect(window_, &place);
    return ScaleRounded(place.right - place.left, USER_DEFAULT_SCREEN_DPI, Dpi());
}

// The main window may have moved while this one was maximised.
void PaneWindow::OnSize(WPARAM wParam) {
    Layout();
    const bool maximized = wParam == SIZE_MAXIMIZED;
    if (std::exchange(maximized_, maximized) && !maximized) Dock();
}

void PaneWindow::OnUserSized() {
    if (Width() != widthBefore_) width_ = Width();
    Dock();
}

void PaneWindow::Dock() const {
    if (dock_) dock_();
}

LRESULT PaneWindow::OnMinimumSize(MINMAXINFO& limits) const {
    limits.ptMinTrackSize = {ScaledToDpi(kind_.minimumWidth, Dpi()),
                             ScaledToDpi(kind_.minimumHeight, Dpi())};
    return 0;
}

LRESULT PaneWindow::OnDpiChanged(int dpi, const RECT& suggested) {
    list_.SetDpi(dpi);
    OnDpi();
    ::SetWindowPos(window_, nullptr, suggested.left, suggested.top,
                   suggested.right - suggested.left, suggested.bottom - suggested.top,
                   SWP_NOZORDER | SWP_NOACTIVATE);
    Layout();
    Dock();
    return 0;
}

void PaneWindow::Layout() {
    if (window_ == nullptr) return;
    RECT client{};
    ::GetClientRect(window_, &client);
    const int listTop = PlaceControls(client.right, client.bottom);
    list_.SetArea({client.right, client.bottom, listTop});
    Repaint();
}

int PaneWindow::PlaceControls(int, int) {
    return 0;
}

void PaneWindow::Draw(HDC dc) const {
    list_.Draw(dc, colors_, {});
}

std::optional<LRESULT> PaneWindow::OnMessage(UINT, WPARAM, LPARAM) {
    return std::nullopt;
}

} // namespace kvx
