#include "app/app_window.h"

#include "app/command_dispatch.h"
#include "app/commands.h"
#include "app/file_commands.h"
#include "app/modal_dialog_window.h"
#include "app/pane_commands.h"
#include "app/window_placement.h"
#include "platform/system.h"
#include "platform/win32/wide.h"
#include "platform/win32/window_binding.h"
#include "settings/settings_file.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include <commctrl.h>
#include <shellapi.h>

namespace kvx {
namespace {

constexpr wchar_t kClassName[] = L"Kivra.MainWindow";
constexpr wchar_t kFirstTitle[] = L"Kivra"; // until the texts are there
constexpr DWORD kWindowStyle = WS_OVERLAPPEDWINDOW;
constexpr WORD kIconId = 101;
constexpr int kHexViewId = 2001;
constexpr int kClientWidthPx = 980;
constexpr int kClientHeightPx = 760;

constexpr UINT kViewChanged = static_cast<UINT>(HexViewNotification::StateChanged);
constexpr UINT kEditRefused = static_cast<UINT>(HexViewNotification::EditRefused);
constexpr UINT kZoomChanged = static_cast<UINT>(HexViewNotification::ZoomChanged);

// No look-up: this is said when memory is short.
constexpr wchar_t kExceptionText[] =
    L"The last action could not be finished because of an unexpected error, most likely a shortage "
    L"of memory.\r\n\r\nThe document is still open with all its changes.";

struct KeyCommand {
    WORD key;
    Command command;
};

// All with the Control key.
constexpr KeyCommand kAccelerators[] = {
    {'R', Command::ToggleReadOnly},
    {'F', Command::Find},
    {'G', Command::GoTo},
};

struct DropTraits {
    using Value = HDROP;
    static Value Invalid() { return nullptr; }
    static void Close(Value value) { ::DragFinish(value); }
};
using UniqueDrop = UniqueHandle<DropTraits>;

UniqueAcceleratorTable CreateAccelerators() {
    ACCEL entries[std::size(kAccelerators)] = {};
    std::transform(std::begin(kAccelerators), std::end(kAccelerators), entries,
                   [](const KeyCommand& each) {
                       const auto id = static_cast<WORD>(CommandId(each.command));
                       return ACCEL{FVIRTKEY | FCONTROL, each.key, id};
                   });
    return UniqueAcceleratorTable(
        ::CreateAcceleratorTableW(entries, static_cast<int>(std::size(entries))));
}

HICON LoadProgramIcon(HINSTANCE instance, int widthMetric, int heightMetric) {
    return static_cast<HICON>(::LoadImageW(instance, MAKEINTRESOURCEW(kIconId), IMAGE_ICON,
                                           ::GetSystemMetrics(widthMetric),
                                           ::GetSystemMetrics(heightMetric), LR_SHARED));
}

RectPx ToRectPx(const RECT& rect) {
    return {rect.left, rect.top, rect.right, rect.bottom};
}

// Of the screen with the mouse; of the first screen where that is not known.
RectPx WorkArea() {
    POINT cursor{};
    MONITORINFO monitor{};
    monitor.cbSize = sizeof(monitor);
    if (::GetCursorPos(&cursor) &&
        ::GetMonitorInfoW(::MonitorFromPoint(cursor, MONITOR_DEFAULTTONEAREST), &monitor) &&
        ToRectPx(monitor.rcWork) != RectPx{}) {
        return ToRectPx(monitor.rcWork);
    }
    RECT work{};
    ::SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
    return ToRectPx(work);
}

RectPx InitialPlace() {
    RECT window{0, 0, kClientWidthPx, kClientHeightPx};
    ::AdjustWindowRectExForDpi(&window, kWindowStyle, FALSE, 0, ::GetDpiForSystem());
    const RectPx size = ToRectPx(window);
    return CenteredIn(WorkArea(), size.Width(), size.Height());
}

std::u16string DroppedPath(HDROP drop, UINT index) {
    std::u16string path(::DragQueryFileW(drop, index, nullptr, 0), u'\0');
    ::DragQueryFileW(drop, index, AsWideBuffer(path), static_cast<UINT>(path.size() + 1));
    return path;
}

std::vector<std::u16string> DroppedPaths(HDROP handle) {
    const UniqueDrop drop(handle);
    constexpr UINT kCount = 0xFFFFFFFF; // asks how many there are
    const UINT count = ::DragQueryFileW(drop.Get(), kCount, nullptr, 0);
    std::vector<std::u16string> paths;
    for (UINT index = 0; index < count; ++index)
        paths.push_back(DroppedPath(drop.Get(), index));
    return paths;
}

} // namespace

AppWindow::AppWindow(AppWindowOptions options)
    : options_(std::move(options)), shell_(host_, paneHost_, host_.HexViewPane().View()) {}

AppWindow::~AppWindow() {
    if (MainWindow() != nullptr) ::DestroyWindow(MainWindow());
}

bool AppWindow::Initialize(HINSTANCE instance, std::optional<std::u16string> startFile) {
    instance_ = instance;
    startFile_ = std::move(startFile);
    const std::u16string settingsError = LoadShell();
    StartPanes(shell_);

    INITCOMMONCONTROLSEX controls{sizeof(controls), ICC_BAR_CLASSES | ICC_STANDARD_CLASSES};
    ::InitCommonControlsEx(&controls);
    HexViewWindow::RegisterWindowClass(instance_);
    if (!RegisterWindowClass() || !CreateMainWindow()) return false;
    accelerators_ = CreateAccelerators();
    if (!settingsError.empty()) shell_.ShowError(settingsError);
    return static_cast<bool>(accelerators_);
}

// Gives why the settings have no folder; empty when they have one.
std::u16string AppWindow::LoadShell() {
    std::u16string error;
    const bool given = !options_.settingsPath.empty();
    std::u16string settingsPath = given ? options_.settingsPath : ResolveSettingsPath(error);
    const bool elsewhere = !options_.programFolder.empty();
    shell_.Load(elsewhere ? options_.programFolder : ProgramFolder(), std::move(settingsPath));
    return error;
}

bool AppWindow::RegisterWindowClass() const {
    WNDCLASSEXW windowClass{};
    windowClass.cbSize = sizeof(windowClass);
    windowClass.lpfnWndProc = &AppWindow::Procedure;
    windowClass.hInstance = instance_;
    windowClass.hIcon = LoadProgramIcon(instance_, SM_CXICON, SM_CYICON);
    windowClass.hIconSm = LoadProgramIcon(instance_, SM_CXSMICON, SM_CYSMICON);
    windowClass.hCursor = ::LoadCursorW(nullptr, IDC_ARROW);
    windowClass.hbrBackground = ::GetSysColorBrush(COLOR_WINDOW);
    windowClass.lpszClassName = kClassName;
    return ::RegisterClassExW(&windowClass) != 0 || ::GetLastError() == ERROR_CLASS_ALREADY_EXISTS;
}

bool AppWindow::CreateMainWindow() {
    const RectPx place = InitialPlace();
    return ::CreateWindowExW(0, kClassName, kFirstTitle, kWindowStyle | WS_VISIBLE, place.left,
                             place.top, place.Width(), place.Height(), nullptr, nullptr, instance_,
                             this) != nullptr;
}

int AppWindow::RunMessageLoop() {
    MSG message{};
    while (::GetMessageW(&message, nullptr, 0, 0) > 0)
        ProcessMessage(message);
    return static_cast<int>(message.wParam);
}

void AppWindow::ProcessMessage(MSG& message) {
    if (IsRepeatedEscape(message)) return; // it closed a dialog, and would end the selection
    if (accelerators_ && MainWindow() != nullptr &&
        ::TranslateAcceleratorW(MainWindow(), accelerators_.Get(), &message)) {
        return;
    }
    ::TranslateMessage(&message);
    ::DispatchMessageW(&message);
}

bool AppWindow::SaveFile() {
    return kvx::SaveFile(shell_);
}

void AppWindow::LoadPattern(const std::u16string& path) {
    LoadStructPattern(shell_, path);
}

LRESULT CALLBACK AppWindow::Procedure(HWND window, UINT message, WPARAM wParam,
                                      LPARAM lParam) noexcept {
    auto* const self = BoundObject<AppWindow>(window, message, lParam);
    if (self == nullptr) return ::DefWindowProcW(window, message, wParam, lParam);
    if (message == WM_NCCREATE) {
        self->host_.SetMainWindow(window);
        self->paneHost_.SetMainWindow(window);
    }
    if (message == WM_NCDESTROY) {
        ReleaseBoundObject(window);
        self->host_.SetMainWindow(nullptr);
        self->paneHost_.SetMainWindow(nullptr);
        return ::DefWindowProcW(window, message, wParam, lParam);
    }
    try {
        return self->Dispatch(message, wParam, lParam);
    } catch (...) {
        self->OnException();
        return message == WM_CREATE ? -1 : 0;
    }
}

LRESULT AppWindow::Dispatch(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_CREATE:
        return OnCreate();
    case WM_ERASEBKGND:
        return 1; // the children cover everything; erasing first would only flash in dark themes
    case WM_SIZE:
        return OnSize();
    case WM_MOVE:
        paneHost_.Dock();
        return 0;
    case WM_SETFOCUS:
        return OnSetFocus();
    case WM_CLOSE:
        return OnClose();
    case WM_QUERYENDSESSION:
        return OnQueryEndSession();
    case WM_ENDSESSION:
        return OnEndSession();
    case WM_DESTROY:
        return OnDestroy();
    case WM_DRAWITEM:
        return OnDrawItem(wParam, lParam);
    case WM_COMMAND:
        return OnCommand(wParam, lParam);
    case WM_TIMER:
        return OnTimer(wParam, lParam);
    case WM_DROPFILES:
        return OnDropFiles(wParam);
    case WM_DPICHANGED:
        return OnDpiChanged(HIWORD(wParam), *reinterpret_cast<const RECT*>(lParam));
    case kViewChanged:
        shell_.OnViewChanged();
        return 0;
    case kEditRefused:
        shell_.OnEditRefused();
        return 0;
    case kZoomChanged:
        shell_.RefreshStatus();
        return 0;
    default:
        return DispatchPaneMessage(message, wParam, lParam);
    }
}

LRESULT AppWindow::DispatchPaneMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (static_cast<PaneNotification>(message)) {
    case PaneNotification::InspectorResult:
        ShowInspectorRows(shell_, PaneHostWindow::TakeInspectorRows(lParam));
        return 0;
    case PaneNotification::InspectorClosed:
        OnInspectorClosed(shell_);
        return 0;
    case PaneNotification::StructViewClosed:
        OnStructViewClosed(shell_);
        return 0;
    case PaneNotification::OpenPattern:
        OpenStructPattern(shell_);
        return 0;
    case PaneNotification::StructViewResult:
        ShowStructRows(shell_, PaneHostWindow::TakeStructRows(lParam));
        return 0;
    case PaneNotification::ClosePattern:
        CloseStructPattern(shell_);
        return 0;
    case PaneNotification::ReloadPattern:
        ReloadStructPattern(shell_);
        return 0;
    case PaneNotification::ValueFormat:
        ChooseValueFormat(shell_, static_cast<std::uint32_t>(wParam));
        return 0;
    }
    return Default(message, wParam, lParam);
}

LRESULT AppWindow::Default(UINT message, WPARAM wParam, LPARAM lParam) {
    return ::DefWindowProcW(MainWindow(), message, wParam, lParam);
}

LRESULT AppWindow::OnCreate() {
    if (!CreateChildren()) return -1;
    shell_.AttachDocument();
    shell_.ApplySettingsToView();
    ShowPanes(shell_);
    shell_.ShowStatusBackground();
    shell_.RefreshAll();
    Layout();
    if (startFile_) OpenFile(shell_, *std::exchange(startFile_, std::nullopt));
    ::DragAcceptFiles(MainWindow(), TRUE);
    return 0;
}

// The menu comes first: it takes its share of the client area that the others fill.
bool AppWindow::CreateChildren() {
    shell_.RebuildMenu();
    return host_.StatusBar().Create(instance_, MainWindow()) &&
           host_.HexViewPane().Create(instance_, MainWindow(), kHexViewId);
}

void AppWindow::Layout() {
    host_.StatusBar().FollowParent();
    RECT client{};
    ::GetClientRect(MainWindow(), &client);
    const int height = std::max(0, static_cast<int>(client.bottom) - host_.StatusBar().HeightPx());
    ::MoveWindow(host_.HexViewPane().Handle(), 0, 0, client.right, height, TRUE);
    paneHost_.Dock();
}

LRESULT AppWindow::OnSize() {
    Layout();
    return 0;
}

LRESULT AppWindow::OnSetFocus() {
    const HWND view = host_.HexViewPane().Handle();
    if (view != nullptr) ::SetFocus(view);
    return 0;
}

LRESULT AppWindow::OnClose() {
    Exit(shell_);
    return 0;
}

// Nothing is asked here: nobody would see it while the session ends. The system shows the reason
// instead, and leaves it to the user to give the changes up.
LRESULT AppWindow::OnQueryEndSession() const {
    const auto reason = ReasonToKeepSession(shell_);
    if (!reason) return TRUE;
    ::ShutdownBlockReasonCreate(MainWindow(), AsWide(*reason));
    return FALSE;
}

// It ends, or it goes on after all.
LRESULT AppWindow::OnEndSession() {
    ::ShutdownBlockReasonDestroy(MainWindow());
    return 0;
}

LRESULT AppWindow::OnDestroy() {
    StopPanes(shell_);
    paneHost_.DropPostedRows();
    host_.MenuBar().Release();
    accelerators_.Reset();
    ::PostQuitMessage(0);
    return 0;
}

LRESULT AppWindow::OnDrawItem(WPARAM wParam, LPARAM lParam) {
    const auto& item = *reinterpret_cast<const DRAWITEMSTRUCT*>(lParam);
    if (item.hwndItem != host_.StatusBar().Handle()) return Default(WM_DRAWITEM, wParam, lParam);
    host_.StatusBar().Draw(item);
    return TRUE;
}

LRESULT AppWindow::OnCommand(WPARAM wParam, LPARAM lParam) {
    return DispatchCommand(shell_, LOWORD(wParam)) ? 0 : Default(WM_COMMAND, wParam, lParam);
}

LRESULT AppWindow::OnTimer(WPARAM wParam, LPARAM lParam) {
    if (wParam != kFlashTimerId) return Default(WM_TIMER, wParam, lParam);
    shell_.OnFlashTimer();
    return 0;
}

LRESULT AppWindow::OnDropFiles(WPARAM wParam) {
    OpenDroppedFiles(shell_, DroppedPaths(reinterpret_cast<HDROP>(wParam)));
    return 0;
}

LRESULT AppWindow::OnDpiChanged(std::uint32_t dpi, const RECT& suggested) {
    ::SetWindowPos(MainWindow(), nullptr, suggested.left, suggested.top,
                   suggested.right - suggested.left, suggested.bottom - suggested.top,
                   SWP_NOZORDER | SWP_NOACTIVATE);
    host_.HexViewPane().View().SetDpi(dpi);
    host_.StatusBar().TakeFont();
    Layout();
    return 0;
}

// Whatever went wrong went wrong inside one message: the document is untouched by it or holds what
// was done before. The user is told, once at a time, and what is shown is brought up to date.
void AppWindow::OnException() noexcept {
    if (std::exchange(tellingOfException_, true)) return;
    ::MessageBoxW(ModalDialogWindow::TopmostOver(MainWindow()), kExceptionText, kFirstTitle,
                  MB_OK | MB_ICONERROR);
    try {
        shell_.RefreshAll();
    } catch (...) { // shown by the next change instead
    }
    tellingOfException_ = false;
}

} // namespace kvx
