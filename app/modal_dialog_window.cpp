#include "app/modal_dialog_window.h"

#include "platform/win32/gdi.h"
#include "platform/win32/wide.h"
#include "platform/win32/window_binding.h"

#include <map>
#include <utility>

namespace kvx {
namespace {

struct ControlClass {
    ControlKind kind;
    const wchar_t* name;
    DWORD style;
    DWORD extendedStyle;
};

constexpr DWORD kList = WS_TABSTOP | WS_VSCROLL;
constexpr DWORD kTextBox = kList | ES_MULTILINE | ES_READONLY | ES_AUTOVSCROLL;

constexpr ControlClass kControlClasses[] = {
    {ControlKind::Label, L"STATIC", SS_LEFT, 0},
    {ControlKind::Link, L"STATIC", SS_LEFT | SS_NOTIFY | SS_NOPREFIX | WS_TABSTOP, 0},
    {ControlKind::LineEdit, L"EDIT", ES_AUTOHSCROLL | WS_TABSTOP, WS_EX_CLIENTEDGE},
    {ControlKind::TextBox, L"EDIT", kTextBox, WS_EX_CLIENTEDGE},
    {ControlKind::DropDownList, L"COMBOBOX", CBS_DROPDOWNLIST | kList, 0},
    {ControlKind::EditableList, L"COMBOBOX", CBS_DROPDOWN | CBS_AUTOHSCROLL | kList,
     WS_EX_CLIENTEDGE},
    {ControlKind::CheckBox, L"BUTTON", BS_AUTOCHECKBOX | WS_TABSTOP, 0},
    {ControlKind::Button, L"BUTTON", BS_PUSHBUTTON | WS_TABSTOP, 0},
};

const ControlClass& ClassOf(ControlKind kind) {
    return kControlClasses[static_cast<std::size_t>(kind)];
}

const ModalDialogWindow* topmost = nullptr; // of the dialogs that are running

// One font for all dialogs on screens with this DPI, kept for the life of the process.
HFONT SharedDialogFont(std::uint32_t dpi) {
    static std::map<std::uint32_t, UniqueFont> fonts;
    UniqueFont& font = fonts[dpi];
    if (!font) {
        NONCLIENTMETRICSW metrics{};
        metrics.cbSize = sizeof(metrics);
        ::SystemParametersInfoForDpi(SPI_GETNONCLIENTMETRICS, sizeof(metrics), &metrics, 0, dpi);
        font.Reset(::CreateFontIndirectW(&metrics.lfMessageFont));
    }
    return font.Get();
}

HINSTANCE InstanceOf(HWND window) {
    return reinterpret_cast<HINSTANCE>(::GetWindowLongPtrW(window, GWLP_HINSTANCE));
}

RectPx ToRectPx(const RECT& rect) {
    return {rect.left, rect.top, rect.right, rect.bottom};
}

// In the middle of the owner, as far as its screen allows.
RectPx PlaceOver(HWND owner, SIZE size) {
    RECT over{};
    ::GetWindowRect(owner, &over);
    const RectPx place = CenteredIn(ToRectPx(over), size.cx, size.cy);
    MONITORINFO monitor{};
    monitor.cbSize = sizeof(monitor);
    const HMONITOR screen = ::MonitorFromWindow(owner, MONITOR_DEFAULTTONEAREST);
    return ::GetMonitorInfoW(screen, &monitor) ? MovedInto(ToRectPx(monitor.rcWork), place) : place;
}

bool RegisterDialogClass(HINSTANCE instance, const wchar_t* name, WNDPROC procedure) {
    WNDCLASSEXW windowClass{};
    windowClass.cbSize = sizeof(windowClass);
    windowClass.lpfnWndProc = procedure;
    windowClass.hInstance = instance;
    windowClass.hCursor = ::LoadCursorW(nullptr, IDC_ARROW);
    windowClass.hbrBackground = ::GetSysColorBrush(COLOR_BTNFACE);
    windowClass.lpszClassName = name;
    return ::RegisterClassExW(&windowClass) != 0 || ::GetLastError() == ERROR_CLASS_ALREADY_EXISTS;
}

} // namespace

bool IsRepeatedEscape(const MSG& message) {
    constexpr LPARAM kWasDown = LPARAM{1} << 30;
    return message.message == WM_KEYDOWN && message.wParam == VK_ESCAPE &&
           (message.lParam & kWasDown) != 0;
}

void ModalDialogWindow::Run(HWND owner, const std::u16string& title, const TextLookup& text) {
    struct CloseScope {
        ModalDialogWindow& dialog;
        const ModalDialogWindow* const below = std::exchange(topmost, &dialog);
        ~CloseScope() {
            dialog.Close();
            topmost = below;
        }
    };
    {
        const CloseScope closeAtTheEnd{*this};
        if (!Create(owner, title)) return;
        CreateControls(text);
        OnCreated();
        ::ReleaseCapture(); // a drag in the owner would go on below the dialog
        ::EnableWindow(owner, FALSE);
        ::ShowWindow(window_, SW_SHOW);
        FocusOn(FirstFocus());
        RunLoop();
    }
    ::SetFocus(owner);
    if (failure_) std::rethrow_exception(std::exchange(failure_, nullptr));
}

HWND ModalDialogWindow::TopmostOver(HWND window) {
    return topmost != nullptr && topmost->Window() != nullptr ? topmost->Window() : window;
}

bool ModalDialogWindow::Create(HWND owner, const std::u16string& title) {
    const HINSTANCE instance = InstanceOf(owner);
    if (!RegisterDialogClass(instance, frame_.className, &ModalDialogWindow::Procedure))
        return false;
    owner_ = owner;
    dpi_ = ::GetDpiForWindow(owner);
    const RectPx place = PlaceOver(owner, OuterSizePx(dpi_));
    if (::CreateWindowExW(frame_.extendedStyle, frame_.className, AsWide(title), frame_.style,
                          place.left, place.top, place.Width(), place.Height(), owner, nullptr,
                          instance, this) == nullptr) {
        return false;
    }
    // It may have come up on another screen than its owner's.
    dpi_ = ::GetDpiForWindow(window_);
    const SIZE fitting = OuterSizePx(dpi_);
    return ::SetWindowPos(window_, nullptr, 0, 0, fitting.cx, fitting.cy,
                          SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE) != FALSE;
}

void ModalDialogWindow::CreateControls(const TextLookup& text) {
    for (const ControlLayout& control : layout_.controls) {
        const ControlClass& of = ClassOf(control.kind);
        const DWORD isDefault = control.id == kDefaultButtonId ? BS_DEFPUSHBUTTON : 0;
        const auto id = reinterpret_cast<HMENU>(static_cast<INT_PTR>(control.id));
        const std::u16string label =
            control.textKey.empty() ? std::u16string() : text(control.textKey);
        ::CreateWindowExW(of.extendedStyle, of.name, AsWide(label),
                          WS_CHILD | WS_VISIBLE | of.style | isDefault, 0, 0, 0, 0, window_, id,
                          InstanceOf(window_), nullptr);
    }
    TakeDpi(dpi_);
    PlaceControls();
}

void ModalDialogWindow::TakeDpi(std::uint32_t dpi) {
    dpi_ = dpi == 0 ? USER_DEFAULT_SCREEN_DPI : dpi;
    for (const ControlLayout& control : layout_.controls)
        ::SendMessageW(Control(control.id), WM_SETFONT, reinterpret_cast<WPARAM>(Font()), TRUE);
    OnFontChanged();
}

void ModalDialogWindow::PlaceControls() const {
    RECT client{};
    ::GetClientRect(window_, &client);
    for (const ControlLayout& control : layout_.controls) {
        const RectPx place = PlaceOf(control, layout_, client.right, client.bottom, dpi_);
        ::MoveWindow(Control(control.id), place.left, place.top, place.Width(), place.Height(),
                     TRUE);
    }
}

SIZE ModalDialogWindow::OuterSizePx(std::uint32_t dpi) const {
    RECT window{0, 0, ScaledPx(layout_.width, dpi), ScaledPx(layout_.height, dpi)};
    ::AdjustWindowRectExForDpi(&window, frame_.style, FALSE, frame_.extendedStyle, dpi);
    return {window.right - window.left, window.bottom - window.top};
}

void ModalDialogWindow::RunLoop() {
    MSG message{};
    while (window_ != nullptr) {
        if (::GetMessageW(&message, nullptr, 0, 0) <= 0) {
            ::PostQuitMessage(static_cast<int>(message.wParam)); // for the loop around this one
            return;
        }
        if (IsRepeatedEscape(message)) continue;
        if (!::IsDialogMessageW(window_, &message)) {
            ::TranslateMessage(&message);
            ::DispatchMessageW(&message);
        }
        if (window_ != nullptr) AfterMessage();
    }
}

// The owner comes first: while it is disabled, the system would activate the window of another
// program in place of the dialog.
void ModalDialogWindow::Close() {
    if (window_ == nullptr) return;
    ::EnableWindow(owner_, TRUE);
    ::DestroyWindow(window_);
    WakeLoop();
}

// A message that another thread sent is dealt with while the loop goes on waiting for the next.
void ModalDialogWindow::WakeLoop() {
    ::PostMessageW(nullptr, WM_NULL, 0, 0);
}

// A button that was reached by the Tab key looks like the one that Enter presses, and would go on
// looking so.
void ModalDialogWindow::FocusOn(int id) const {
    ::SetFocus(Control(id));
    for (const ControlLayout& control : layout_.controls) {
        if (control.kind != ControlKind::Button) continue;
        const bool isDefault = control.id == kDefaultButtonId;
        ::SendMessageW(Control(control.id), BM_SETSTYLE,
                       isDefault ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON, TRUE);
    }
}

std::u16string ModalDialogWindow::ControlText(int id) const {
    const HWND control = Control(id);
    std::u16string text(static_cast<std::size_t>(::GetWindowTextLengthW(control)), u'\0');
    const int copied =
        ::GetWindowTextW(control, AsWideBuffer(text), static_cast<int>(text.size()) + 1);
    text.resize(static_cast<std::size_t>(copied));
    return text;
}

void ModalDialogWindow::SetControlText(int id, const std::u16string& text) const {
    ::SetWindowTextW(Control(id), AsWide(text));
}

HFONT ModalDialogWindow::Font() const {
    return SharedDialogFont(dpi_);
}

LRESULT CALLBACK ModalDialogWindow::Procedure(HWND window, UINT message, WPARAM wParam,
                                              LPARAM lParam) noexcept {
    auto* const self = BoundObject<ModalDialogWindow>(window, message, lParam);
    if (self == nullptr) return ::DefWindowProcW(window, message, wParam, lParam);
    if (message == WM_NCCREATE) self->window_ = window;
    if (message == WM_NCDESTROY) {
        ReleaseBoundObject(window);
        self->window_ = nullptr;
        return ::DefWindowProcW(window, message, wParam, lParam);
    }
    try {
        return self->Dispatch(message, wParam, lParam);
    } catch (...) {
        self->failure_ = std::current_exception();
        self->Close();
        return 0;
    }
}

LRESULT ModalDialogWindow::Dispatch(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_COMMAND:
        OnCommand(LOWORD(wParam), HIWORD(wParam));
        return 0;
    case WM_CLOSE:
        OnCloseRequest();
        return 0;
    case WM_SIZE:
        PlaceControls();
        return 0;
    case WM_ACTIVATE:
        return OnActivate(wParam, lParam);
    case WM_SETFOCUS:
        return OnSetFocus();
    case WM_NEXTDLGCTL:
        return OnNextControl(wParam, lParam);
    case WM_GETMINMAXINFO:
        return OnMinMaxInfo(lParam);
    case WM_GETDPISCALEDSIZE:
        return OnGetDpiScaledSize(wParam, lParam);
    case WM_DPICHANGED:
        return OnDpiChanged(HIWORD(wParam), *reinterpret_cast<const RECT*>(lParam));
    case DM_GETDEFID:
        return MAKELRESULT(kDefaultButtonId, DC_HASDEFID);
    default:
        const std::optional<LRESULT> answer = OnMessage(message, wParam, lParam);
        return answer ? *answer : ::DefWindowProcW(window_, message, wParam, lParam);
    }
}

std::optional<LRESULT> ModalDialogWindow::OnMessage(UINT, WPARAM, LPARAM) {
    return std::nullopt;
}

// A plain window forgets which of its controls had the focus when another program comes forward.
LRESULT ModalDialogWindow::OnActivate(WPARAM wParam, LPARAM lParam) {
    if (LOWORD(wParam) == WA_INACTIVE) lastFocus_ = ::GetFocus();
    return ::DefWindowProcW(window_, WM_ACTIVATE, wParam, lParam);
}

LRESULT ModalDialogWindow::OnSetFocus() {
    if (::IsChild(window_, lastFocus_)) ::SetFocus(lastFocus_);
    return 0;
}

// Sent by a text box of many lines, which gets the Tab key itself.
LRESULT ModalDialogWindow::OnNextControl(WPARAM wParam, LPARAM lParam) {
    const bool named = LOWORD(lParam) != 0;
    ::SetFocus(named ? reinterpret_cast<HWND>(wParam)
                     : ::GetNextDlgTabItem(window_, ::GetFocus(), wParam != 0 ? TRUE : FALSE));
    return 0;
}

LRESULT ModalDialogWindow::OnMinMaxInfo(LPARAM lParam) const {
    const SIZE size = OuterSizePx(dpi_);
    reinterpret_cast<MINMAXINFO*>(lParam)->ptMinTrackSize = {size.cx, size.cy};
    return 0;
}

// A frame does not grow in step with the DPI. What the user has resized does.
LRESULT ModalDialogWindow::OnGetDpiScaledSize(WPARAM wParam, LPARAM lParam) const {
    if ((frame_.style & WS_THICKFRAME) != 0) return FALSE;
    *reinterpret_cast<SIZE*>(lParam) = OuterSizePx(static_cast<std::uint32_t>(wParam));
    return TRUE;
}

// Taken in this order the new size is not refused for the sake of the old DPI.
LRESULT ModalDialogWindow::OnDpiChanged(std::uint32_t dpi, const RECT& suggested) {
    TakeDpi(dpi);
    ::SetWindowPos(window_, nullptr, suggested.left, suggested.top,
                   suggested.right - suggested.left, suggested.bottom - suggested.top,
                   SWP_NOZORDER | SWP_NOACTIVATE);
    PlaceControls();
    return 0;
}

} // namespace kvx
