// The numbers of the commands as menus, accelerators and WM_COMMAND carry them.
#pragma once

#include <cstdint>

namespace kvx {

enum class Command : std::uint32_t {
    None = 0,
    Open = 1001,
    Save = 1002,
    Close = 1003,
    ToggleReadOnly = 1004,
    ThemeLight = 1022, ///< the themes follow each other in the order of Theme
    ThemeDarkBlue = 1023,
    ThemeBlack = 1024,
    ZoomOut = 1025,
    ZoomIn = 1026,
    ZoomReset = 1027,
    Exit = 1031,
    LanguageSystem = 1032, ///< the languages follow each other in the order of UiLanguage
    LanguageEnglish = 1033,
    LanguageJapanese = 1034,
    RecentFirst = 4000, ///< newest recent file; every number above belongs to the recent files too
};

constexpr std::uint32_t CommandId(Command command) {
    return static_cast<std::uint32_t>(command);
}

/// `command` moved on by `steps`, within a group of commands that follow each other.
constexpr Command operator+(Command command, std::uint32_t steps) {
    return static_cast<Command>(CommandId(command) + steps);
}

} // namespace kvx
