#include "app/shell.h"

#include "app/file_commands.h"
#include "tests/app/shell_fakes.h"

#include <gtest/gtest.h>

namespace kvx {
namespace {

TEST(Shell, StartsFromTheSettingsFile) {
    const TempFolder folder;
    folder.Write(u"settings.json", R"({"theme": "Black", "language": "Japanese",
        "font": {"family": "", "size": 20, "bold": true}})");
    ShellRig rig;
    rig.shell.Load(folder.Root().u16string(), folder.Path(u"settings.json"));
    rig.shell.ApplySettingsToView();
    EXPECT_EQ(rig.shell.Strings().Language(), UiLanguage::Japanese);
    EXPECT_EQ(rig.view.State().theme, Theme::Black);
    EXPECT_EQ(rig.view.State().fontFamily, u"Consolas");
    EXPECT_TRUE(rig.view.State().bold);
    EXPECT_FLOAT_EQ(rig.view.State().fontSizeDip, 20.0F * 96.0F / 72.0F);
}

TEST(Shell, WarnsOfARefusedEditForAWhile) {
    ShellRig rig;
    ASSERT_TRUE(OpenFile(rig.shell, rig.folder.Write(u"data.bin", "content")));
    const std::u16string before = rig.host.status;
    rig.shell.OnEditRefused();
    EXPECT_EQ(rig.host.status, u"status.readonly_blocked");
    EXPECT_EQ(rig.host.colors, StatusFlashColors());
    EXPECT_TRUE(rig.host.flashTimerRuns);
    EXPECT_EQ(rig.host.warnings, 1);
    rig.shell.OnFlashTimer();
    EXPECT_EQ(rig.host.status, before);
    EXPECT_EQ(rig.host.colors, StatusColorsOf(Theme::DarkBlue));
    EXPECT_FALSE(rig.host.flashTimerRuns);
}

TEST(Shell, ShowsEditsInTheTitleAndTheStatus) {
    ShellRig rig;
    ASSERT_TRUE(OpenFile(rig.shell, rig.folder.Write(u"data.bin", "content")));
    rig.shell.Document().DeleteByte(0);
    rig.view.SetCaret(3);
    rig.shell.OnViewChanged();
    EXPECT_EQ(rig.host.title, u"app.title - data.bin *");
    EXPECT_EQ(rig.host.status, u"status.offset: 0x00000003  status.encoding: ASCII  "
                               u"status.readonly  status.modified  status.zoom: 100%");
}

TEST(Shell, GoesOnWhenTheSettingsFileCannotBeWritten) {
    ShellRig rig;
    rig.shell.Load(rig.folder.Root().u16string(), rig.folder.Path(u"no such folder/settings.json"));
    rig.shell.SaveSettings();
    EXPECT_TRUE(rig.host.boxes.empty());
}

} // namespace
} // namespace kvx
