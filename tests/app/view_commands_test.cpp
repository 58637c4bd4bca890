#include "app/view_commands.h"

#include "app/command_dispatch.h"
#include "settings/settings_file.h"
#include "tests/app/shell_fakes.h"

#include <gtest/gtest.h>

namespace kvx {
namespace {

class ViewCommands : public testing::Test {
protected:
    void Run(Command command) { EXPECT_TRUE(DispatchCommand(rig.shell, CommandId(command))); }

    AppSettings Stored() const {
        AppSettings stored;
        LoadSettings(rig.folder.Path(u"settings.json"), stored);
        return stored;
    }

    ShellRig rig;
    RecordingHost& host = rig.host;
    const HexViewState& view = rig.view.State();
};

TEST_F(ViewCommands, AThemeChangesTheViewTheStatusBarAndTheSettings) {
    Run(Command::ThemeBlack);
    EXPECT_EQ(view.theme, Theme::Black);
    EXPECT_EQ(host.background, StatusColorsOf(Theme::Black));
    EXPECT_EQ(host.colors, StatusColorsOf(Theme::Black));
    EXPECT_EQ(Stored().theme, Theme::Black);
    EXPECT_TRUE(host.menu[3].children[0].children[2].checked);
}

TEST_F(ViewCommands, TheThemeOfTheSettingsIsStoredAgainWhenItIsChosenAgain) {
    EXPECT_EQ(Stored().appVersion, u"");
    Run(Command::ThemeDarkBlue);
    EXPECT_EQ(Stored().appVersion, u"v1.04");
}

TEST_F(ViewCommands, ALanguageChangesTheTextsAndTheSettings) {
    std::filesystem::create_directories(rig.folder.Root() / "resources" / "strings");
    rig.folder.Write(u"resources/strings/ja-JP.txt",
                     "app.title=\xE3\x82\xAD\xE3\x83\x96\xE3\x83\xA9\n");
    Run(Command::LanguageJapanese);
    EXPECT_EQ(host.title, u"\u30AD\u30D6\u30E9");
    EXPECT_EQ(Stored().uiLanguage, UiLanguage::Japanese);
    EXPECT_TRUE(host.menu[3].children[1].children[2].checked);
}

TEST_F(ViewCommands, ZoomStepsStayWithinTheirLimits) {
    for (int step = 0; step < 20; ++step)
        Run(Command::ZoomIn);
    EXPECT_FLOAT_EQ(view.zoom, 2.5F);
    for (int step = 0; step < 30; ++step)
        Run(Command::ZoomOut);
    EXPECT_FLOAT_EQ(view.zoom, 0.6F);
    Run(Command::ZoomReset);
    EXPECT_EQ(view.zoom, 1.0F);
    EXPECT_EQ(Stored().appVersion, u"") << "zoom is not a setting";
}

TEST_F(ViewCommands, ReadOnlyIsTurnedOffAndOnAgain) {
    EXPECT_TRUE(host.menu[1].children[0].checked);
    Run(Command::ToggleReadOnly);
    EXPECT_TRUE(view.editable);
    EXPECT_FALSE(host.menu[1].children[0].checked);
    Run(Command::ToggleReadOnly);
    EXPECT_FALSE(view.editable);
    EXPECT_TRUE(host.menu[1].children[0].checked);
}

TEST_F(ViewCommands, NumbersWithoutACommandAreLeftToTheSystem) {
    for (const std::uint32_t id : {0U, 1000U, 1019U, 1203U, 3999U})
        EXPECT_FALSE(DispatchCommand(rig.shell, id)) << id;
    EXPECT_TRUE(DispatchCommand(rig.shell, 65'535)) << "a recent file, though none is there";
}

} // namespace
} // namespace kvx
