#include "app/menu_model.h"

#include "tests/app/shell_fakes.h"

#include <gtest/gtest.h>

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

TEST(MenuModel, FollowsTheFileTheChoicesAndTheRecentFiles) {
    std::vector<std::u16string> paths(8, u"C:\\f");
    paths.emplace_back(u"C:\\R&D\\a&&b.bin");
    const MenuState state{.fileOpen = true,
                          .editable = true,
                          .theme = Theme::Black,
                          .language = UiLanguage::Japanese,
                          .recentFiles = paths};
    const std::vector<MenuItem> bar = BuildMenuBar(state, KeyAsText);
    EXPECT_FALSE(bar[1].children[0].checked);
    EXPECT_EQ(Drawn({bar[0], bar[3]}), R"(menu.file
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
menu.settings
  menu.view.theme
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
    const std::vector<std::u16string> paths(9, u"C:\\f");
    std::istringstream lines(
        Drawn(BuildMenuBar({.busy = true, .fileOpen = true, .recentFiles = paths}, KeyAsText)));
    for (std::string line; std::getline(lines, line);)
        EXPECT_TRUE(line.ends_with("----") || line.ends_with("(grey)")) << line;
}

} // namespace
} // namespace kvx
