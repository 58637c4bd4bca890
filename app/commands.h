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
    Find = 1005,
    GoTo = 1006,
    EncodingFirst = 1007, ///< the encodings follow each other in the order of TextEncoding
    EncodingLast = 1018,
    FavoriteAdd = 1019,
    FavoriteRemove = 1020,
    FavoriteClear = 1021,
    ThemeLight = 1022, ///< the themes follow each other in the order of Theme
    ThemeDarkBlue = 1023,
    ThemeBlack = 1024,
    ZoomOut = 1025,
    ZoomIn = 1026,
    ZoomReset = 1027,
    Font = 1028,
    ToggleDataInspector = 1029,
    ToggleStructView = 1030,
    Exit = 1031,
    LanguageSystem = 1032, ///< the languages follow each other in the order of UiLanguage
    LanguageEnglish = 1033,
    LanguageJapanese = 1034,
    About = 1035,
    FavoriteFirst = 1200, ///< the favourite encodings in the order added
    FavoriteLast = 1202,
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
