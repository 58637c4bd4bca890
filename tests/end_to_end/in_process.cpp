#include "in_process.h"

#include "exercised.h"
#include "platform/win32/wide.h"

#include <array>
#include <optional>
#include <stdexcept>

namespace kvx::test {
namespace {

std::vector<ShownItem> ItemsOf(HMENU menu);

ShownItem ItemAt(HMENU menu, UINT position) {
    wchar_t text[512] = {};
    MENUITEMINFOW info{};
    info.cbSize = sizeof info;
    info.fMask = MIIM_ID | MIIM_STATE | MIIM_STRING | MIIM_SUBMENU | MIIM_FTYPE;
    info.dwTypeData = text;
    info.cch = 512;
    ::GetMenuItemInfoW(menu, position, TRUE, &info);
    ShownItem item;
    item.text = FromWide(text);
    item.greyed = (info.fState & MFS_GRAYED) != 0;
    item.checked = (info.fState & MFS_CHECKED) != 0;
    if (info.hSubMenu != nullptr)
        item.children = ItemsOf(info.hSubMenu);
    else if ((info.fType & MFT_SEPARATOR) == 0)
        item.id = info.wID;
    return item;
}

std::vector<ShownItem> ItemsOf(HMENU menu) {
    std::vector<ShownItem> items;
    const int count = ::GetMenuItemCount(menu);
    for (int position = 0; position < count; ++position)
        items.push_back(ItemAt(menu, static_cast<UINT>(position)));
    return items;
}

} // namespace

void PressIn(HWND window, WORD virtualKey, bool control) {
    std::array<BYTE, 256> keys{};
    keys[VK_CONTROL] = control ? 0x80 : 0;
    ::SetKeyboardState(keys.data());
    ::SendMessageW(window, WM_KEYDOWN, virtualKey, 0);
    keys[VK_CONTROL] = 0;
    ::SetKeyboardState(keys.data());
    Used(KeyUse(window, KeyName(virtualKey, control)));
}

InProcessWindow::InProcessWindow(const ProgramCopy& program, const std::u16string& startFile) {
    AppWindowOptions options;
    options.programFolder = program.Folder().u16string();
    options.settingsPath = program.SettingsFile().u16string();
    app_ = std::make_unique<AppWindow>(options);
    const auto start = startFile.empty() ? std::nullopt : std::optional(startFile);
    if (!app_->Initialize(::GetModuleHandleW(nullptr), start))
        throw std::runtime_error("the main window cannot be made");
    Pump();
}

InProcessWindow::~InProcessWindow() {
    app_.reset();
    MSG message{};
    while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) {}
}

void InProcessWindow::Paint() {
    ::RedrawWindow(View(), nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
    ::GdiFlush();
}

void InProcessWindow::Pump() {
    MSG message{};
    while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE)
        app_->ProcessMessage(message);
}

void InProcessWindow::Run(Command command) {
    ::SendMessageW(app_->MainWindow(), WM_COMMAND, CommandId(command), 0);
    Used(CommandUse(CommandId(command)));
    Pump();
}

void InProcessWindow::Key(WORD virtualKey, bool control) {
    PressIn(View(), virtualKey, control);
    Pump();
}

void InProcessWindow::Zoom(bool in) {
    const int notch = in ? WHEEL_DELTA : -WHEEL_DELTA;
    ::SendMessageW(View(), WM_MOUSEWHEEL, MAKEWPARAM(MK_CONTROL, notch), 0);
    Used(KeyUse(View(), in ? "Ctrl+Wheel Up" : "Ctrl+Wheel Down"));
    Pump();
}

void InProcessWindow::Type(std::string_view characters) {
    for (const char character : characters) {
        ::SendMessageW(View(), WM_CHAR, static_cast<WPARAM>(character), 0);
        Used(KeyUse(View(), {&character, 1}));
    }
    Pump();
}

std::vector<ShownItem> InProcessWindow::Menu() const {
    return ItemsOf(::GetMenu(app_->MainWindow()));
}

const ShownItem* InProcessWindow::Find(const std::vector<ShownItem>& items, Command command) {
    for (const ShownItem& item : items) {
        if (item.id == CommandId(command)) return &item;
        if (const ShownItem* found = Find(item.children, command)) return found;
    }
    return nullptr;
}

} // namespace kvx::test
