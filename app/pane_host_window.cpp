#include "app/pane_host_window.h"

#include "app/open_file_dialog.h"

#include <string_view>
#include <utility>

namespace kvx {
namespace {

using namespace std::string_view_literals;

constexpr auto kPatternFilters = u"Kivra Struct Pattern (*.kvpat)\0*.kvpat\0"
                                 u"All Files (*.*)\0*.*\0"sv;

constexpr UINT kInspectorResult = static_cast<UINT>(PaneNotification::InspectorResult);
constexpr UINT kStructViewResult = static_cast<UINT>(PaneNotification::StructViewResult);

RectPx PlaceOf(HWND window) {
    RECT place{};
    ::GetWindowRect(window, &place);
    return {place.left, place.top, place.right, place.bottom};
}

// A message owns the rows that it carries until somebody takes it.
template <typename Posted>
bool PostRows(HWND window, UINT message, std::unique_ptr<Posted>&& rows) {
    if (!::PostMessageW(window, message, 0, reinterpret_cast<LPARAM>(rows.get()))) return false;
    static_cast<void>(rows.release());
    return true;
}

template <typename Posted>
Posted TakeRows(LPARAM lParam) {
    const std::unique_ptr<Posted> rows(reinterpret_cast<Posted*>(lParam));
    return rows ? std::move(*rows) : Posted(); // of no request: those are numbered from 1
}

int WorkAreaLeft(HWND window) {
    MONITORINFO monitor{};
    monitor.cbSize = sizeof(monitor);
    ::GetMonitorInfoW(::MonitorFromWindow(window, MONITOR_DEFAULTTONEAREST), &monitor);
    return monitor.rcWork.left;
}

// The window that the user worked in before a dialog works on after it.
class FocusScope {
public:
    FocusScope() : focus_(::GetFocus()) {}
    ~FocusScope() {
        if (focus_ == nullptr) return;
        const HWND window = ::GetAncestor(focus_, GA_ROOT);
        ::SetActiveWindow(window);
        ::SetForegroundWindow(window);
        ::SetFocus(focus_);
    }
    FocusScope(const FocusScope&) = delete;
    FocusScope& operator=(const FocusScope&) = delete;

private:
    HWND focus_;
};

/// A window takes no input for as long as the scope lasts.
class DisableScope {
public:
    explicit DisableScope(HWND window) : window_(window) { ::EnableWindow(window_, FALSE); }
    ~DisableScope() { ::EnableWindow(window_, TRUE); }
    DisableScope(const DisableScope&) = delete;
    DisableScope& operator=(const DisableScope&) = delete;

private:
    HWND window_;
};

} // namespace

PaneHostWindow::PaneHostWindow() {
    inspector_.SetDock([this] { Dock(); });
    structView_.SetDock([this] { Dock(); });
}

HINSTANCE PaneHostWindow::Instance() const {
    return reinterpret_cast<HINSTANCE>(::GetWindowLongPtrW(main_, GWLP_HINSTANCE));
}

bool PaneHostWindow::CreateInspector(const InspectorModel& model, const TextLookup& text,
                                     Theme theme) {
    if (!inspector_.Create(Instance(), main_, model, text, theme)) return false;
    Dock();
    return true;
}

bool PaneHostWindow::CreateStructView(StructViewModel& model, const TextLookup& text, Theme theme) {
    const int roomPx = PlaceOf(main_).left - WorkAreaLeft(main_);
    const int room =
        ScaleRounded(roomPx, USER_DEFAULT_SCREEN_DPI, static_cast<int>(::GetDpiForWindow(main_)));
    if (!structView_.Create(Instance(), main_, model, text, theme, StructViewStartWidth(room)))
        return false;
    Dock();
    return true;
}

DockTarget PaneHostWindow::Target() const {
    return {PlaceOf(main_), ::IsIconic(main_) != FALSE};
}

// A pane that docking moves to a screen of another DPI changes its size and asks to be docked
// again, from within. That is done once: its place by the new size may lie on the first screen.
void PaneHostWindow::Dock() {
    dockAgain_ = true;
    if (main_ == nullptr || docking_) return;
    docking_ = true;
    for (int pass = 0; pass < 2 && std::exchange(dockAgain_, false); ++pass) {
        if (HasInspector()) DockPane(inspector_.Handle(), DockSide::Right);
        if (HasStructView()) DockPane(structView_.Handle(), DockSide::Left);
    }
    docking_ = false;
}

void PaneHostWindow::DockPane(HWND pane, DockSide side) const {
    constexpr UINT kFlags = SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOOWNERZORDER;
    const RectPx before = PlaceOf(pane);
    const PaneDocking docking =
        DockBeside(Target(), side, before.Width(), ::IsZoomed(pane) != FALSE);
    const UINT show = docking.shown ? SWP_SHOWWINDOW : SWP_HIDEWINDOW;
    if (!docking.place) {
        ::SetWindowPos(pane, nullptr, 0, 0, 0, 0, kFlags | show | SWP_NOMOVE | SWP_NOSIZE);
        return;
    }
    const RectPx& place = *docking.place;
    ::SetWindowPos(pane, nullptr, place.left, place.top, place.Width(), place.Height(),
                   kFlags | show);
}

PostedInspectorRows PaneHostWindow::TakeInspectorRows(LPARAM lParam) {
    return TakeRows<PostedInspectorRows>(lParam);
}

PostedStructRows PaneHostWindow::TakeStructRows(LPARAM lParam) {
    return TakeRows<PostedStructRows>(lParam);
}

void PaneHostWindow::DropPostedRows() {
    MSG message{};
    while (::PeekMessageW(&message, main_, kInspectorResult, kInspectorResult, PM_REMOVE))
        TakeInspectorRows(message.lParam);
    while (::PeekMessageW(&message, main_, kStructViewResult, kStructViewResult, PM_REMOVE))
        TakeStructRows(message.lParam);
}

bool PaneHostWindow::PostInspectorRows(std::unique_ptr<PostedInspectorRows>&& rows) {
    return PostRows(main_, kInspectorResult, std::move(rows));
}

bool PaneHostWindow::PostStructRows(std::unique_ptr<PostedStructRows>&& rows) {
    return PostRows(main_, kStructViewResult, std::move(rows));
}

void PaneHostWindow::ShowTexts() {
    inspector_.ShowTexts();
    structView_.ShowTexts();
}

void PaneHostWindow::ShowTheme(Theme theme) {
    inspector_.SetTheme(theme);
    structView_.SetTheme(theme);
}

std::optional<std::u16string> PaneHostWindow::ChoosePattern(const std::u16string& title,
                                                            const std::u16string& folder) {
    const FocusScope giveFocusBack;
    const DisableScope mainWaits(main_); // the dialog itself holds up its owner only
    const HWND owner = HasStructView() ? structView_.Handle() : main_;
    return ChooseExistingFile(
        owner, {.title = title, .filters = std::u16string(kPatternFilters), .folder = folder});
}

} // namespace kvx
