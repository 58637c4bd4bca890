#include "app/menu_model.h"

#include <algorithm>
#include <span>

namespace kvx {
namespace {

using Predicate = bool (*)(const MenuState&);
using Generator = void (*)(const MenuState&, const TextLookup&, std::vector<MenuItem>&);

// One row of a menu. Which of the fields count follows from those that are set: a generator stands
// for any number of items, children make a submenu, a command makes an item, none of them a
// separator.
struct MenuRow {
    Command command = Command::None;
    const char* key = "";
    Predicate greyed = nullptr;
    Predicate checked = nullptr;
    std::span<const MenuRow> children = {};
    Generator generator = nullptr;
};

bool WhenBusy(const MenuState& state) {
    return state.busy;
}

bool WithoutFile(const MenuState& state) {
    return state.busy || !state.fileOpen;
}

bool IsReadOnly(const MenuState& state) {
    return !state.editable;
}

template <Theme theme>
bool ThemeIs(const MenuState& state) {
    return state.theme == theme;
}

template <UiLanguage language>
bool LanguageIs(const MenuState& state) {
    return state.language == language;
}

template <TextEncoding encoding>
bool EncodingIs(const MenuState& state) {
    return state.encoding == encoding;
}

bool IsFavorite(const MenuState& state) {
    return std::ranges::count(state.favoriteEncodings, state.encoding) != 0;
}

bool CannotAddFavorite(const MenuState& state) {
    return state.busy || IsFavorite(state) ||
           state.favoriteEncodings.size() >= kMaxFavoriteEncodings;
}

bool CannotRemoveFavorite(const MenuState& state) {
    return state.busy || !IsFavorite(state);
}

bool CannotClearFavorites(const MenuState& state) {
    return state.busy || state.favoriteEncodings.empty();
}

bool DataInspectorVisible(const MenuState& state) {
    return state.dataInspectorVisible;
}

bool StructViewVisible(const MenuState& state) {
    return state.structViewVisible;
}

constexpr std::size_t kRecentFilesPerLevel = 8;

// A path is shown as it is: its ampersands are no mnemonics.
std::u16string RecentFileText(std::size_t index, const std::u16string& path) {
    const std::string number = std::to_string(index + 1);
    std::u16string text(number.begin(), number.end());
    text += u' ';
    for (const char16_t unit : path)
        text.append(unit == u'&' ? 2 : 1, unit);
    return text;
}

// Eight files to a level; those that are left go to a submenu of the same kind.
std::vector<MenuItem> RecentFileItems(const MenuState& state, const TextLookup& text,
                                      std::size_t first) {
    const std::size_t count = state.recentFiles.size();
    const std::size_t end = std::min(count, first + kRecentFilesPerLevel);
    std::vector<MenuItem> items;
    for (std::size_t index = first; index < end; ++index) {
        items.push_back({MenuItemKind::Command,
                         Command::RecentFirst + static_cast<std::uint32_t>(index),
                         RecentFileText(index, state.recentFiles[index]),
                         state.busy,
                         false,
                         {}});
    }
    if (end < count) {
        items.push_back({MenuItemKind::Submenu, Command::None, text("menu.file.more_recent"),
                         state.busy, false, RecentFileItems(state, text, end)});
    }
    return items;
}

void AppendRecentFiles(const MenuState& state, const TextLookup& text,
                       std::vector<MenuItem>& menu) {
    if (state.recentFiles.empty()) return;
    menu.emplace_back();
    for (MenuItem& item : RecentFileItems(state, text, 0))
        menu.push_back(std::move(item));
}

void AppendFavorites(const MenuState& state, const TextLookup&, std::vector<MenuItem>& menu) {
    const std::size_t count = std::min(state.favoriteEncodings.size(), kMaxFavoriteEncodings);
    for (std::size_t index = 0; index < count; ++index) {
        const TextEncoding encoding = state.favoriteEncodings[index];
        menu.push_back({MenuItemKind::Command,
                        Command::FavoriteFirst + static_cast<std::uint32_t>(index),
                        u"\u2605 " + std::u16string(EncodingDisplayName(encoding)),
                        state.busy,
                        encoding == state.encoding,
                        {}});
    }
}

constexpr MenuRow kSeparator{};

template <TextEncoding encoding>
consteval MenuRow EncodingRow(const char* key) {
    return {.command = Command::EncodingFirst + static_cast<std::uint32_t>(encoding),
            .key = key,
            .greyed = WhenBusy,
            .checked = EncodingIs<encoding>};
}

constexpr MenuRow kFileMenu[] = {
    {.command = Command::Open, .key = "menu.file.open", .greyed = WhenBusy},
    {.command = Command::Save, .key = "menu.file.save", .greyed = WithoutFile},
    {.command = Command::Close, .key = "menu.file.close", .greyed = WithoutFile},
    {.generator = AppendRecentFiles},
    kSeparator,
    {.command = Command::Exit, .key = "menu.file.exit", .greyed = WhenBusy},
};

constexpr MenuRow kEditMenu[] = {
    {.command = Command::ToggleReadOnly,
     .key = "menu.edit.readonly",
     .greyed = WhenBusy,
     .checked = IsReadOnly},
};

constexpr MenuRow kZoomMenu[] = {
    {.command = Command::ZoomOut, .key = "menu.view.zoom.out", .greyed = WhenBusy},
    {.command = Command::ZoomIn, .key = "menu.view.zoom.in", .greyed = WhenBusy},
    kSeparator,
    {.command = Command::ZoomReset, .key = "menu.view.zoom.reset", .greyed = WhenBusy},
};

constexpr MenuRow kViewMenu[] = {
    {.command = Command::Find, .key = "menu.view.find", .greyed = WhenBusy},
    {.command = Command::GoTo, .key = "menu.view.goto", .greyed = WhenBusy},
    kSeparator,
    {.key = "menu.view.zoom", .children = kZoomMenu},
};

constexpr MenuRow kFavoriteMenu[] = {
    {.command = Command::FavoriteAdd,
     .key = "menu.view.encoding.favorite.add_current",
     .greyed = CannotAddFavorite},
    {.command = Command::FavoriteRemove,
     .key = "menu.view.encoding.favorite.remove_current",
     .greyed = CannotRemoveFavorite},
    {.command = Command::FavoriteClear,
     .key = "menu.view.encoding.favorite.clear",
     .greyed = CannotClearFavorites},
};

constexpr MenuRow kJapaneseMenu[] = {
    EncodingRow<TextEncoding::ShiftJis>("menu.view.encoding.shiftjis"),
};
constexpr MenuRow kKoreanMenu[] = {
    EncodingRow<TextEncoding::Windows949>("menu.view.encoding.windows949"),
    EncodingRow<TextEncoding::EucKr>("menu.view.encoding.euckr"),
};
constexpr MenuRow kChineseMenu[] = {
    EncodingRow<TextEncoding::Big5>("menu.view.encoding.big5"),
    EncodingRow<TextEncoding::Gbk>("menu.view.encoding.gbk"),
};
constexpr MenuRow kThaiMenu[] = {
    EncodingRow<TextEncoding::Tis620>("menu.view.encoding.tis620"),
};
constexpr MenuRow kVietnameseMenu[] = {
    EncodingRow<TextEncoding::Windows1258>("menu.view.encoding.windows1258"),
};
constexpr MenuRow kIndicMenu[] = {
    EncodingRow<TextEncoding::IsciiDevanagari>("menu.view.encoding.iscii_devanagari"),
};

// Without favourites the menu begins with a separator, so that its first item never moves.
constexpr MenuRow kEncodingMenu[] = {
    {.generator = AppendFavorites},
    kSeparator,
    {.key = "menu.view.encoding.favorite", .children = kFavoriteMenu},
    kSeparator,
    EncodingRow<TextEncoding::Ascii>("menu.view.encoding.ascii"),
    EncodingRow<TextEncoding::Utf8>("menu.view.encoding.utf8"),
    EncodingRow<TextEncoding::Utf16Le>("menu.view.encoding.utf16le"),
    EncodingRow<TextEncoding::Utf16Be>("menu.view.encoding.utf16be"),
    kSeparator,
    {.key = "menu.view.encoding.japanese", .children = kJapaneseMenu},
    {.key = "menu.view.encoding.korean", .children = kKoreanMenu},
    {.key = "menu.view.encoding.chinese", .children = kChineseMenu},
    {.key = "menu.view.encoding.thai", .children = kThaiMenu},
    {.key = "menu.view.encoding.vietnamese", .children = kVietnameseMenu},
    {.key = "menu.view.encoding.indic", .children = kIndicMenu},
};

constexpr MenuRow kThemeMenu[] = {
    {.command = Command::ThemeLight,
     .key = "menu.view.theme.light",
     .greyed = WhenBusy,
     .checked = ThemeIs<Theme::Light>},
    {.command = Command::ThemeDarkBlue,
     .key = "menu.view.theme.darkblue",
     .greyed = WhenBusy,
     .checked = ThemeIs<Theme::DarkBlue>},
    {.command = Command::ThemeBlack,
     .key = "menu.view.theme.black",
     .greyed = WhenBusy,
     .checked = ThemeIs<Theme::Black>},
};

constexpr MenuRow kLanguageMenu[] = {
    {.command = Command::LanguageSystem,
     .key = "menu.view.language.system",
     .greyed = WhenBusy,
     .checked = LanguageIs<UiLanguage::System>},
    {.command = Command::LanguageEnglish,
     .key = "menu.view.language.english",
     .greyed = WhenBusy,
     .checked = LanguageIs<UiLanguage::English>},
    {.command = Command::LanguageJapanese,
     .key = "menu.view.language.japanese",
     .greyed = WhenBusy,
     .checked = LanguageIs<UiLanguage::Japanese>},
};

constexpr MenuRow kAnalysisMenu[] = {
    {.command = Command::ToggleDataInspector,
     .key = "menu.settings.analysis.data_inspector",
     .greyed = WhenBusy,
     .checked = DataInspectorVisible},
    {.command = Command::ToggleStructView,
     .key = "menu.settings.analysis.struct_view",
     .greyed = WhenBusy,
     .checked = StructViewVisible},
};

// The keys of encodings, themes and languages say "view" from the days when they stood there.
constexpr MenuRow kSettingsMenu[] = {
    {.key = "menu.view.encoding", .children = kEncodingMenu},
    {.key = "menu.view.theme", .children = kThemeMenu},
    {.key = "menu.view.language", .children = kLanguageMenu},
    {.key = "menu.settings.analysis", .children = kAnalysisMenu},
    kSeparator,
    {.command = Command::Font, .key = "menu.settings.font", .greyed = WhenBusy},
};

constexpr MenuRow kHelpMenu[] = {
    {.command = Command::About, .key = "menu.help.about", .greyed = WhenBusy},
};

constexpr MenuRow kMenuBar[] = {
    {.key = "menu.file", .children = kFileMenu},
    {.key = "menu.edit", .children = kEditMenu},
    {.key = "menu.view", .children = kViewMenu},
    {.key = "menu.settings", .children = kSettingsMenu},
    {.key = "menu.help", .children = kHelpMenu},
};

bool Holds(Predicate predicate, const MenuState& state) {
    return predicate != nullptr && predicate(state);
}

std::vector<MenuItem> BuildMenu(std::span<const MenuRow> rows, const MenuState& state,
                                const TextLookup& text) {
    std::vector<MenuItem> menu;
    for (const MenuRow& row : rows) {
        if (row.generator != nullptr) {
            row.generator(state, text, menu);
        } else if (!row.children.empty()) {
            menu.push_back({MenuItemKind::Submenu, Command::None, text(row.key), state.busy, false,
                            BuildMenu(row.children, state, text)});
        } else if (row.command != Command::None) {
            menu.push_back({MenuItemKind::Command,
                            row.command,
                            text(row.key),
                            Holds(row.greyed, state),
                            Holds(row.checked, state),
                            {}});
        } else {
            menu.emplace_back();
        }
    }
    return menu;
}

} // namespace

std::vector<MenuItem> BuildMenuBar(const MenuState& state, const TextLookup& text) {
    return BuildMenu(kMenuBar, state, text);
}

} // namespace kvx
