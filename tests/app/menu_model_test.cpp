#include "app/menu_model.h"

#include "tests/app/shell_fakes.h"

#include <gtest/gtest.h>

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
            drawing += std::string(item.text.begin(), item.text.end());
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

std::vector<std::u16string> Paths(int count) {
    std::vector<std::u16string> paths;
    for (int index = 1; index <= count; ++index) {
        const std::string number = std::to_string(index);
        paths.push_back(u"C:\\f" + std::u16string(number.begin(), number.end()));
    }
    return paths;
}

void ExpectAllGrey(const std::vector<MenuItem>& items) {
    for (const MenuItem& item : items) {
        if (item.kind != MenuItemKind::Separator) {
            EXPECT_TRUE(item.greyed) << Drawn({item});
        }
        ExpectAllGrey(item.children);
    }
}

TEST(MenuModel, ShowsTheWholeTreeWithoutAFile) {
    EXPECT_EQ(Drawn(BuildMenuBar({}, KeyAsText)), R"(menu.file
  1001 menu.file.open
  1002 menu.file.save (grey)
  1003 menu.file.close (grey)
  ----
  1031 menu.file.exit
menu.edit
  [x] 1004 menu.edit.readonly
menu.view
  menu.view.zoom
    1025 menu.view.zoom.out
    1026 menu.view.zoom.in
    ----
    1027 menu.view.zoom.reset
menu.settings
  menu.view.theme
    1022 menu.view.theme.light
    [x] 1023 menu.view.theme.darkblue
    1024 menu.view.theme.black
  menu.view.language
    [x] 1032 menu.view.language.system
    1033 menu.view.language.english
    1034 menu.view.language.japanese
)");
}

TEST(MenuModel, OpensUpSaveAndCloseWithAFileAndFollowsTheChoices) {
    const MenuState state{.fileOpen = true,
                          .editable = true,
                          .theme = Theme::Black,
                          .language = UiLanguage::Japanese,
                          .recentFiles = {}};
    const std::vector<MenuItem> bar = BuildMenuBar(state, KeyAsText);
    EXPECT_FALSE(bar[0].children[1].greyed);
    EXPECT_FALSE(bar[0].children[2].greyed);
    EXPECT_FALSE(bar[1].children[0].checked);
    EXPECT_EQ(Drawn(bar[3].children), R"(menu.view.theme
  1022 menu.view.theme.light
  1023 menu.view.theme.darkblue
  [x] 1024 menu.view.theme.black
menu.view.language
  1032 menu.view.language.system
  1033 menu.view.language.english
  [x] 1034 menu.view.language.japanese
)");
}

TEST(MenuModel, GreysEverythingWhileASaveRuns) {
    ExpectAllGrey(
        BuildMenuBar({.busy = true, .fileOpen = true, .recentFiles = Paths(9)}, KeyAsText));
}

TEST(MenuModel, ListsEightRecentFilesToALevel) {
    const std::vector<MenuItem> bar = BuildMenuBar({.recentFiles = Paths(9)}, KeyAsText);
    EXPECT_EQ(Drawn(bar[0].children), R"(1001 menu.file.open
1002 menu.file.save (grey)
1003 menu.file.close (grey)
----
4000 1 C:\f1
4001 2 C:\f2
4002 3 C:\f3
4003 4 C:\f4
4004 5 C:\f5
4005 6 C:\f6
4006 7 C:\f7
4007 8 C:\f8
menu.file.more_recent
  4008 9 C:\f9
----
1031 menu.file.exit
)");
}

TEST(MenuModel, KeepsEightRecentFilesOnOneLevel) {
    const std::vector<MenuItem> file =
        BuildMenuBar({.recentFiles = Paths(8)}, KeyAsText)[0].children;
    EXPECT_EQ(file.size(), 14U);
    EXPECT_EQ(file[11].text, u"8 C:\\f8");
    EXPECT_EQ(file[12].kind, MenuItemKind::Separator);
}

TEST(MenuModel, ShowsTheAmpersandsOfAPath) {
    const MenuState state{.recentFiles = {u"C:\\R&D\\a&&b.bin"}};
    EXPECT_EQ(BuildMenuBar(state, KeyAsText)[0].children[4].text, u"1 C:\\R&&D\\a&&&&b.bin");
}

} // namespace
} // namespace kvx
