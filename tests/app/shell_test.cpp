#include "app/shell.h"

#include "app/view_commands.h"
#include "tests/app/shell_fakes.h"

#include <gtest/gtest.h>

namespace kvx {
namespace {

TEST(Shell, StartsFromTheSettingsFile) {
    ShellRig rig;
    rig.folder.Write(u"settings.json", R"({"theme": "Black", "language": "Japanese",
        "font": {"family": "", "size": 20, "bold": true}})");
    rig.shell.Load(rig.folder.Root().u16string(), rig.folder.Path(u"settings.json"));
    rig.shell.ApplySettingsToView();
    EXPECT_EQ(rig.shell.Strings().Language(), UiLanguage::Japanese);
    EXPECT_EQ(rig.stage.State().theme, Theme::Black);
    EXPECT_EQ(rig.stage.State().fontFamily, u"Consolas");
    EXPECT_TRUE(rig.stage.State().bold);
    EXPECT_FLOAT_EQ(rig.stage.State().fontSizeDip, 20.0F * 96.0F / 72.0F);
}

TEST(Shell, KeepsAChoiceThatCannotBeWrittenAndAsksNothing) {
    ShellRig rig;
    rig.shell.Load(rig.folder.Root().u16string(), rig.folder.Path(u"missing") + u"/settings.json");
    SelectTheme(rig.shell, Theme::Black);
    EXPECT_EQ(rig.shell.Settings().theme, Theme::Black);
    EXPECT_EQ(rig.stage.State().theme, Theme::Black);
    EXPECT_TRUE(rig.host.boxes.empty());
}

TEST(Shell, ShowsOnlyTheNewestOfTooManyRecentFilesAndLosesNone) {
    ShellRig rig;
    AppSettings stored;
    for (char16_t name = u'a'; name <= u'z'; ++name)
        stored.recentFiles.emplace_back(1, name);
    ASSERT_TRUE(SaveSettings(rig.folder.Path(u"settings.json"), stored).ok);
    rig.shell.Load(rig.folder.Root().u16string(), rig.folder.Path(u"settings.json"));
    EXPECT_EQ(rig.shell.Settings().recentFiles, stored.recentFiles);
    rig.shell.RebuildMenu();
    const std::vector<MenuItem>& fileMenu = rig.host.menu[0].children;
    const MenuItem& more = fileMenu[fileMenu.size() - 3];
    EXPECT_EQ(more.children.back().text, u"16 p");
}

} // namespace
} // namespace kvx
