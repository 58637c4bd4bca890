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

struct TabOrder {
    UINT command;
    const wchar_t* className;
    const DialogLayout* layout;
    std::vector<int> ids; ///< from the one that has the focus at first
};

class DialogTest : public testing::TestWithParam<TabOrder> {};

TEST_P(DialogTest, ReachesEveryControlByTabAndEndsByEscape) {
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

// A list that drops down is as high as its font makes it.
bool StandsAt(const Dialog& dialog, const ControlLayout& control, const RectPx& place) {
    RECT shown{};
    ::GetWindowRect(dialog.Control(control.id), &shown);
    ::MapWindowPoints(nullptr, dialog.window, reinterpret_cast<POINT*>(&shown), 2);
    const bool isList =
        control.kind == ControlKind::DropDownList || control.kind == ControlKind::EditableList;
    return shown.left == place.left && shown.top == place.top && shown.right == place.right &&
           (isList || shown.bottom == place.bottom);
}

TEST_P(DialogTest, GrowsWithTheDpiOfItsScreen) {
    const ProgramCopy program;
    const TempFolder files;
    const InProcessWindow window(program, files.Write(u"data.bin", "content"));
    const DialogLayout& layout = *GetParam().layout;
    UseDialog(window, GetParam().command, GetParam().className, [&](const Dialog& dialog) {
        for (const std::uint32_t dpi : {144U, 96U}) {
            SIZE size{1000, 700};
            ::SendMessageW(dialog.window, WM_GETDPISCALEDSIZE, dpi,
                           reinterpret_cast<LPARAM>(&size));
            const RECT suggested{50, 50, 50 + size.cx, 50 + size.cy};
            ::SendMessageW(dialog.window, WM_DPICHANGED, MAKEWPARAM(dpi, dpi),
                           reinterpret_cast<LPARAM>(&suggested));
            RECT client{};
            ::GetClientRect(dialog.window, &client);
            for (const ControlLayout& control : layout.controls) {
                const RectPx place = PlaceOf(control, layout, client.right, client.bottom, dpi);
                EXPECT_TRUE(StandsAt(dialog, control, place)) << control.id << " at " << dpi;
            }
        }
    });
}

INSTANTIATE_TEST_SUITE_P(
    Dialogs, DialogTest,
    testing::Values(TabOrder{kCommandFind,
                             L"Kivra.SearchDialog",
                             &kSearchLayout,
                             {kSearchQueryId, kSearchPreviousId, kDefaultButtonId, kCancelButtonId,
                              kSearchTypeId}},
                    TabOrder{kCommandGoTo,
                             L"Kivra.PromptDialog",
                             &kPromptLayout,
                             {kPromptAnswerId, kDefaultButtonId, kCancelButtonId}},
                    TabOrder{kCommandFont,
                             L"Kivra.FontDialog",
                             &kFontLayout,
                             {kFontFamilyId, kFontSizeId, kFontBoldId, kFontItalicId,
                              kDefaultButtonId, kCancelButtonId}},
                    TabOrder{kCommandAbout,
                             L"Kivra.AboutDialog",
                             &kAboutLayout,
                             {kDefaultButtonId, kAboutHomepageId, kAboutLicenseId}}),
    [](const auto& param) { return "Command" + std::to_string(param.param.command); });

} // namespace
} // namespace kvx::test
