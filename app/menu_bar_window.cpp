#include "app/menu_bar_window.h"

#include "platform/win32/wide.h"

#include <utility>

namespace kvx {
namespace {

void AppendItems(HMENU menu, const std::vector<MenuItem>& items);

void AppendSubmenu(HMENU menu, const MenuItem& item, UINT flags) {
    UniqueMenu submenu(::CreatePopupMenu());
    if (!submenu) return;
    AppendItems(submenu.Get(), item.children);
    const auto handle = reinterpret_cast<UINT_PTR>(submenu.Get());
    if (::AppendMenuW(menu, MF_POPUP | flags, handle, AsWide(item.text))) {
        static_cast<void>(submenu.Release()); // the menu above owns it now
    }
}

void AppendItem(HMENU menu, const MenuItem& item) {
    const UINT grey = item.greyed ? MF_GRAYED : MF_ENABLED;
    const UINT check = item.checked ? MF_CHECKED : MF_UNCHECKED;
    switch (item.kind) {
    case MenuItemKind::Command:
        ::AppendMenuW(menu, MF_STRING | grey | check, CommandId(item.command), AsWide(item.text));
        break;
    case MenuItemKind::Separator:
        ::AppendMenuW(menu, MF_SEPARATOR, 0, nullptr);
        break;
    case MenuItemKind::Submenu:
        AppendSubmenu(menu, item, grey);
        break;
    }
}

void AppendItems(HMENU menu, const std::vector<MenuItem>& items) {
    for (const MenuItem& item : items)
        AppendItem(menu, item);
}

} // namespace

void MenuBarWindow::Show(HWND window, const std::vector<MenuItem>& items) {
    UniqueMenu bar(::CreateMenu());
    if (!bar) return;
    AppendItems(bar.Get(), items);
    if (!::SetMenu(window, bar.Get())) return;
    bar_ = std::move(bar);
    ::DrawMenuBar(window);
}

} // namespace kvx
