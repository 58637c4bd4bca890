// The about box.
#include "dialog_user.h"
#include "program_texts.h"

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
        for (const int id : {kDefaultButtonId, kAboutHomepageId}) {
            EXPECT_TRUE(dialog.WaitForFocus(id));
            dialog.Key(VK_TAB);
        }
        EXPECT_TRUE(dialog.WaitForFocus(kAboutLicenseId));
        EXPECT_EQ(::SendMessageW(dialog.Control(kAboutLicenseId), EM_GETSEL, 0, 0), 0);
        dialog.Key(VK_RETURN); // closes from within the text too
        EXPECT_TRUE(dialog.WaitForEnd());
    });
    EXPECT_TRUE(::IsWindowEnabled(main));
}

} // namespace
} // namespace kvx::test
