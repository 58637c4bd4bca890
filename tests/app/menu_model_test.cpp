#include "app/menu_model.h"

#include "settings/string_table.h"
#include "tests/app/shell_fakes.h"
#include "tests/settings/mnemonics.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>

namespace kvx {
namespace {

// One line per item, indented by depth: "[x] " checked, "(grey)" behind the text, "id text".
void Draw(const std::vector<MenuItem>& items, const std::string& indent, std::string& drawing) {
    for (const MenuItem& item : items) {
        drawing += indent;
        if (item.kind == MenuItemKind::Separator) {
            drawing += "----";
        } else {
            if (item.checked) drawing += "[x] ";
            if (item.command != Command::None) {
                drawing += std::to_string(CommandId(item.command)) + " ";
            }
            for (const char16_t unit : item.text)
                drawing += unit == u'\u2605' ? '*' : static_cast<char>(unit);
            if (item.greyed) drawing += " (grey)";
        }
        drawing += "\n";
        Draw(item.children, indent + "  ", drawing);
    }
}

std::string Drawn(const std::vector<MenuItem>& items) {
    std::string drawing;
    Draw(items, "", drawing);
    return drawing;
}

TEST(MenuModel, ShowsTheWholeTree) {
    std::vector<std::u16string> paths(8, u"C:\\f");
    paths.emplace_back(u"C:\\R&D\\a&&b.bin");
    const MenuState state{.fileOpen = true,
                          .editable = true,
                          .encoding = TextEncoding::Gbk,
                          .favoriteEncodings = {TextEncoding::IsciiDevanagari, TextEncoding::Gbk},
                          .theme = Theme::Black,
                          .language = UiLanguage::Japanese,
                          .dataInspectorVisible = true,
                          .structViewVisible = true,
                          .recentFiles = paths};
    EXPECT_EQ(Drawn(BuildMenuBar(state, KeyAsText)), R"(menu.file
  1001 menu.file.open
  1002 menu.file.save
  1003 menu.file.close
  ----
  4000 1 C:\f
  4001 2 C:\f
  4002 3 C:\f
  4003 4 C:\f
  4004 5 C:\f
  4005 6 C:\f
  4006 7 C:\f
  4007 8 C:\f
  menu.file.more_recent
    4008 9 C:\R&&D\a&&&&b.bin
  ----
  1031 menu.file.exit
menu.edit
  1004 menu.edit.readonly
menu.view
  1005 menu.view.find
  1006 menu.view.goto
  ----
  menu.view.zoom
    1025 menu.view.zoom.out
    1026 menu.view.zoom.in
    ----
    1027 menu.view.zoom.reset
menu.settings
  menu.view.encoding
    1200 * ISCII (Devanagari)
    [x] 1201 * GBK
    ----
    menu.view.encoding.favorite
      1019 menu.view.encoding.favorite.add_current (grey)
      1020 menu.view.encoding.favorite.remove_current
      1021 menu.view.encoding.favorite.clear
    ----
    1007 menu.view.encoding.ascii
    1008 menu.view.encoding.utf8
    1009 menu.view.encoding.utf16le
    1010 menu.view.encoding.utf16be
    ----
    menu.view.encoding.japanese
      1011 menu.view.encoding.shiftjis
    menu.view.encoding.korean
      1012 menu.view.encoding.windows949
      1013 menu.view.encoding.euckr
    menu.view.encoding.chinese
      1014 menu.view.encoding.big5
      [x] 1015 menu.view.encoding.gbk
    menu.view.encoding.thai
      1016 menu.view.encoding.tis620
    menu.view.encoding.vietnamese
      1017 menu.view.encoding.windows1258
    menu.view.encoding.indic
      1018 menu.view.encoding.iscii_devanagari
  menu.view.theme
    1022 menu.view.theme.light
    1023 menu.view.theme.darkblue
    [x] 1024 menu.view.theme.black
  menu.view.language
    1032 menu.view.language.system
    1033 menu.view.language.english
    [x] 1034 menu.view.language.japanese
  menu.settings.analysis
    [x] 1029 menu.settings.analysis.data_inspector
    [x] 1030 menu.settings.analysis.struct_view
  ----
  1028 menu.settings.font
menu.help
  1035 menu.help.about
)");
}

// The lines that are checked or greyed.
std::string Marked(const MenuState& state) {
    std::istringstream lines(Drawn(BuildMenuBar(state, KeyAsText)));
    std::string marked;
    for (std::string line; lines >> std::ws && std::getline(lines, line);) {
        if (line.starts_with("[x]") || line.ends_with("(grey)")) marked += line + "\n";
    }
    return marked;
}

TEST(MenuModel, ChecksTheChoicesAndGreysWhatHasNothingToWorkOn) {
    EXPECT_EQ(Marked({}), R"(1002 menu.file.save (grey)
1003 menu.file.close (grey)
[x] 1004 menu.edit.readonly
1020 menu.view.encoding.favorite.remove_current (grey)
1021 menu.view.encoding.favorite.clear (grey)
[x] 1007 menu.view.encoding.ascii
[x] 1023 menu.view.theme.darkblue
[x] 1032 menu.view.language.system
)");
    EXPECT_EQ(Marked({.fileOpen = true,
                      .encoding = TextEncoding::Utf8,
                      .favoriteEncodings = {TextEncoding::ShiftJis, TextEncoding::Ascii,
                                            TextEncoding::Gbk},
                      .theme = Theme::Light,
                      .language = UiLanguage::English}),
              R"([x] 1004 menu.edit.readonly
1019 menu.view.encoding.favorite.add_current (grey)
1020 menu.view.encoding.favorite.remove_current (grey)
[x] 1008 menu.view.encoding.utf8
[x] 1022 menu.view.theme.light
[x] 1033 menu.view.language.english
)");
}

TEST(MenuModel, NeedsNoSeparatorForRecentFilesButKeepsThatOfFavourites) {
    const std::vector<MenuItem> bar = BuildMenuBar({}, KeyAsText);
    EXPECT_EQ(bar[0].children.size(), 5U);
    EXPECT_EQ(bar[3].children[0].children[0].kind, MenuItemKind::Separator);
}

TEST(MenuModel, GreysEverythingWhileASaveRuns) {
    const std::vector<std::u16string> paths(9, u"C:\\f");
    std::istringstream lines(
        Drawn(BuildMenuBar({.busy = true, .fileOpen = true, .recentFiles = paths}, KeyAsText)));
    for (std::string line; std::getline(lines, line);)
        EXPECT_TRUE(line.ends_with("----") || line.ends_with("(grey)")) << line;
}

// Favourites and recent files begin with a star or a number instead.
bool HasMnemonic(const MenuItem& item) {
    return item.kind == MenuItemKind::Submenu ||
           (item.command != Command::None && item.command < Command::FavoriteFirst);
}

void ExpectMnemonicsIn(const std::vector<MenuItem>& menu) {
    std::vector<std::u16string> texts;
    for (const MenuItem& item : menu) {
        if (HasMnemonic(item)) texts.push_back(item.text);
        ExpectMnemonicsIn(item.children);
    }
    test::ExpectOneMnemonicEach(texts);
}

TEST(MenuModel, EachMenuUsesEachMnemonicOnceInEveryLanguage) {
    const std::vector<std::u16string> paths(9, u"C:\\f");
    for (const UiLanguage language : {UiLanguage::English, UiLanguage::Japanese}) {
        StringTable table;
        table.SetBaseFolder(
            std::filesystem::path(__FILE__).parent_path().parent_path().parent_path().u16string());
        table.SetLanguage(language);
        ExpectMnemonicsIn(
            BuildMenuBar({.favoriteEncodings = {TextEncoding::Gbk}, .recentFiles = paths},
                         [&](std::string_view key) { return table.Get(key); }));
    }
}

} // namespace
} // namespace kvx
