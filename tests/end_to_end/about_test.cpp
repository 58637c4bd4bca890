// The about box, and what all dialogs have in common.
#include "dialog_user.h"
#include "program_texts.h"
#include "waiting.h"

#include "app/about_command.h"
#include "app/dialog_layout.h"
#include "app/license_text.h"

#include <gtest/gtest.h>

namespace kvx::test {
namespace {

TEST(AboutTest, SaysWhatTheProgramIsAndUnderWhichLicence) {
    const ProgramCopy program;
    const ProgramTexts text(program);
    const InProcessWindow window(program);
    const HWND main = ::GetAncestor(window.View(), GA_ROOT);
    UseDialog(window, kCommandAbout, L"Kivra.AboutDialog", [&](const Dialog& dialog) {
        EXPECT_EQ(TextOf(dialog.window), text("dialog.about.title"));
        const std::pair<int, std::u16string> texts[] = {
            {kAboutProductId, u"Binary Editor Kivra"},
            {kAboutVersionId, text("about.version_label") + u" v1.04"},
            {kAboutHomepageId, kHomepage},
            {kAboutLicenseId, WithWholeParagraphs(kLicenseText)},
        };
        for (const auto& [id, shown] : texts)
            EXPECT_EQ(dialog.Text(id), shown);
        EXPECT_FALSE(::IsWindowEnabled(main));
        ::SendMessageW(main, WM_CLOSE, 0, 0);
        EXPECT_TRUE(::IsWindow(main));
        dialog.Key(VK_ESCAPE);
        EXPECT_TRUE(dialog.WaitForEnd());
    });
    EXPECT_TRUE(::IsWindowEnabled(main));
}

struct TabOrder {
    UINT command;
    const wchar_t* className;
    std::vector<int> ids; ///< from the one that has the focus at first
};

class DialogKeyboardTest : public testing::TestWithParam<TabOrder> {};

TEST_P(DialogKeyboardTest, ReachesEveryControlByTabAndEndsByEscape) {
    const ProgramCopy program;
    const TempFolder files;
    const InProcessWindow window(program, files.Write(u"data.bin", "content"));
    UseDialog(window, GetParam().command, GetParam().className, [&](const Dialog& dialog) {
        for (const int id : GetParam().ids) {
            EXPECT_TRUE(dialog.WaitForFocus(id)) << id;
            dialog.Key(VK_TAB);
        }
        EXPECT_TRUE(dialog.WaitForFocus(GetParam().ids.front()));
        dialog.Key(VK_ESCAPE);
        EXPECT_TRUE(dialog.WaitForEnd());
    });
}

INSTANTIATE_TEST_SUITE_P(
    Dialogs, DialogKeyboardTest,
    testing::Values(TabOrder{kCommandFind,
                             L"Kivra.SearchDialog",
                             {kSearchQueryId, kSearchPreviousId, kDefaultButtonId, kCancelButtonId,
                              kSearchTypeId}},
                    TabOrder{kCommandGoTo,
                             L"Kivra.PromptDialog",
                             {kPromptAnswerId, kDefaultButtonId, kCancelButtonId}},
                    TabOrder{kCommandFont,
                             L"Kivra.FontDialog",
                             {kFontFamilyId, kFontSizeId, kFontBoldId, kFontItalicId,
                              kDefaultButtonId, kCancelButtonId}},
                    TabOrder{kCommandAbout,
                             L"Kivra.AboutDialog",
                             {kDefaultButtonId, kAboutHomepageId, kAboutLicenseId}}),
    [](const auto& param) { return "Command" + std::to_string(param.param.command); });

} // namespace
} // namespace kvx::test
