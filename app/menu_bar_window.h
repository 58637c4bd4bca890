// The main window's menu bar: the tree of the menu model as menu handles.
#pragma once

#include "app/menu_model.h"
#include "platform/win32/handle.h"

#include <vector>

#include <windows.h>

namespace kvx {

struct MenuTraits {
    using Value = HMENU;
    static Value Invalid() { return nullptr; }
    static void Close(Value value) { ::DestroyMenu(value); } // with its submenus
};
using UniqueMenu = UniqueHandle<MenuTraits>;

/// Main thread only.
class MenuBarWindow {
public:
    /// Puts a new bar into `window` and destroys the one before it.
    void Show(HWND window, const std::vector<MenuItem>& items);

    /// Forgets the bar, which the window destroys with itself.
    void Release() { static_cast<void>(bar_.Release()); }

private:
    UniqueMenu bar_;
};

} // namespace kvx
