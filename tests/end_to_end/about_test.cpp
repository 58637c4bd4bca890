// The about box.
#include "dialog_user.h"
#include "program_texts.h"
#include "replaced_import.h"
#include "waiting.h"

#include "app/about_command.h"
#include "app/dialog_layout.h"
#include "app/license_text.h"
#include "platform/win32/wide.h"

#include <gtest/gtest.h>

#include <shellapi.h>

KIVRA_IMPORT(ShellExecuteW);

namespace kvx::test {
namespace {

TEST(AboutTest, SaysWhatTheProgramIsAndUnderWhichLicence) {
    const ProgramCopy program;
    const ProgramTexts text(program);
    const InProcessWindow window(program);
    const HWND main = ::GetAncestor(window.View(), GA_ROOT);
    UseDialog(window, Command::About, L"Kivra.AboutDialog", [&](const Dialog& dialog) {
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

std::wstring opened;

HINSTANCE WINAPI OpenedIn(HWND, LPCWSTR verb, LPCWSTR file, LPCWSTR, LPCWSTR, INT) {
    opened = std::wstring(verb) + L" " + file;
    return nullptr;
}

TEST(AboutTest, AClickOpensTheHomePageAndCloseEndsIt) {
    const ProgramCopy program;
    const InProcessWindow window(program);
    const ReplacedImport browser(__imp_ShellExecuteW, OpenedIn);
    opened.clear();
    UseDialog(window, Command::About, L"Kivra.AboutDialog", [&](const Dialog& dialog) {
        ASSERT_TRUE(dialog.WaitForFocus(kDefaultButtonId));
        dialog.Click(kAboutHomepageId);
        EXPECT_TRUE(WaitUntil([] { return !opened.empty(); }));
        dialog.Press(kDefaultButtonId);
        EXPECT_TRUE(dialog.WaitForEnd());
    });
    EXPECT_EQ(FromWide(opened), u"open " + std::u16string(kHomepage));
}

} // namespace
} // namespace kvx::test
