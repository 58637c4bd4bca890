// All that there is to use in the program's windows: commands, keys, ways through dialogs and
// panes, message boxes. It comes from the program's own tables and texts, so that what is new there
// is missed until a test uses it.
#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <utility>

#include <windows.h>

namespace kvx::test {

/// A kind and a name within it.
using Use = std::pair<std::string, std::string>;

std::set<Use> AllThereIs();

// One of them, or what nobody has listed.

Use CommandUse(std::uint32_t id);
/// A key or character that `window`, or a button in it, gets; see KeyName.
Use KeyUse(HWND window, std::string_view key);
/// A control of a dialog or pane, which is known by its caption, or an item of its menu.
Use ControlUse(std::u16string_view caption, int id);
/// Another way through a dialog or a pane, such as the key that ends it.
Use PathUse(std::u16string_view caption, std::string_view path);
/// The button that ends a message box (IDCLOSE: its close box).
Use BoxUse(std::u16string_view text, int button);

/// "Left", "Ctrl+C".
std::string KeyName(WORD virtualKey, bool control = false);

} // namespace kvx::test
