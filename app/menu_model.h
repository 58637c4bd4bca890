// The menu bar as a tree of items, computed whole from the state that it shows. A window turns the
// tree into menu handles without deciding anything.
#pragma once

#include "app/commands.h"
#include "settings/app_settings.h"
#include "settings/text_lookup.h"

#include <cstdint>
#include <string>
#include <vector>

namespace kvx {

/// All that the menu shows.
struct MenuState {
    bool busy = false; ///< a save runs: everything is grey
    bool fileOpen = false;
    bool editable = false;
    TextEncoding encoding = TextEncoding::Ascii;
    std::vector<TextEncoding> favoriteEncodings{}; ///< at most kMaxFavoriteEncodings, as added
    Theme theme = Theme::DarkBlue;
    UiLanguage language = UiLanguage::System;
    bool dataInspectorVisible = false;
    bool structViewVisible = false;
    std::vector<std::u16string> recentFiles{}; ///< paths, newest first
};

enum class MenuItemKind : std::uint8_t { Command, Separator, Submenu };

struct MenuItem {
    MenuItemKind kind = MenuItemKind::Separator;
    Command command = Command::None;
    std::u16string
        text; ///< '&' marks the mnemonic, "&&" is an ampersand, a tab starts the key hint
    bool greyed = false;
    bool checked = false;
    std::vector<MenuItem> children; ///< of a submenu

    friend bool operator==(const MenuItem&, const MenuItem&) = default;
};

/// The top-level menus from left to right.
std::vector<MenuItem> BuildMenuBar(const MenuState& state, const TextLookup& text);

} // namespace kvx
