#include "app/font_command.h"

#include "tests/app/shell_fakes.h"

#include <gtest/gtest.h>

namespace kvx {
namespace {

TEST(FontChoice, OffersEachFixedPitchFamilyOnceInAlphabeticalOrder) {
    const std::vector<InstalledFont> installed{
        {u"monaco", true}, {u"Arial", false},     {u"Zed", true},      {u"consolas", true},
        {u"", true},       {u"@MS Gothic", true}, {u"Consolas", true}, {u"Zed", true},
        {u"ZED_", true},   {u"ZEDa", true},
    };
    EXPECT_EQ(FixedPitchFamilies(installed),
              (std::vector<std::u16string>{u"consolas", u"monaco", u"Zed", u"ZED_", u"ZEDa"}));
}

TEST(FontChoice, PreselectsTheCurrentFontOrTheFirst) {
    const std::vector<std::u16string> families{u"Consolas", u"Monaco"};
    EXPECT_EQ(FamilyIndex(families, u"MONACO"), 1U);
    EXPECT_EQ(FamilyIndex(families, u"Courier"), 0U);
    const std::pair<float, int> sizes[] = {
        {12.4F, 12}, {12.5F, 13}, {15.0F, 8}, {28.0F, 28}, {48.0F, 8}};
    for (const auto& [points, preselected] : sizes)
        EXPECT_EQ(kFontPoints[PointsIndex(points)], preselected) << points;
}

TEST(FontCommand, ShowsAndStoresTheChoice) {
    ShellRig rig;
    rig.host.installedFonts = {{u"Monaco", true}, {u"Consolas", true}};
    rig.host.chosenFont = FontChoice{u"Monaco", 24.0F, true, true};
    ChooseHexViewFont(rig.shell);
    EXPECT_EQ(rig.host.fontDialog.families, (std::vector<std::u16string>{u"Consolas", u"Monaco"}));
    EXPECT_EQ(rig.host.fontDialog.current, (FontChoice{u"Consolas", 12.0F, false, false}));
    EXPECT_EQ(rig.stage.State().fontFamily, u"Monaco");
    EXPECT_FLOAT_EQ(rig.stage.State().fontSizeDip, 32.0F);
    AppSettings expected;
    expected.appVersion = kAppVersionLabel;
    expected.fontFamily = u"Monaco";
    expected.fontSize = 24.0F;
    expected.bold = true;
    expected.italic = true;
    EXPECT_EQ(rig.Stored(), expected);
    ChooseHexViewFont(rig.shell);
    EXPECT_EQ(rig.host.fontDialog.current, *rig.host.chosenFont);
}

TEST(FontCommand, LeavesEverythingAsItWasWhenCancelledOrWithoutAFont) {
    ShellRig rig;
    ChooseHexViewFont(rig.shell);
    EXPECT_EQ(rig.host.boxes, std::vector<std::u16string>{u"error.font_not_monospace|app.title"});
    rig.host.installedFonts = {{u"Monaco", true}};
    ChooseHexViewFont(rig.shell);
    EXPECT_EQ(rig.stage.State().fontFamily, u"Consolas");
    EXPECT_FALSE(std::filesystem::exists(rig.folder.Path(u"settings.json")));
}

} // namespace
} // namespace kvx
