// Going to an offset as a person does it.
#include "dialog_user.h"
#include "program_texts.h"

#include <gtest/gtest.h>

namespace kvx::test {
namespace {

constexpr std::wstring_view kPromptDialog = L"Kivra.PromptDialog";
constexpr int kAnswer = 3002;

class GoToTest : public testing::Test {
protected:
    ProgramCopy program_;
    ProgramTexts text_{program_};
    TempFolder files_;
    InProcessWindow window_{program_, files_.Write(u"data.bin", std::string(0x2000, 'x'))};
};

TEST_F(GoToTest, GoesToEveryFormOfAnOffset) {
    const struct {
        const char16_t* typed;
        std::uint64_t caret;
    } cases[] = {{u"1A2B", 0x1A2B},
                 {u"0x10", 0x10},
                 {u" 0X1a2b ", 0x1A2B},
                 {u"100", 0x100},
                 {u"FFFFFFFFFFFFFFFF", 0x1FFF}};
    for (const auto& each : cases) {
        UseDialog(window_, Command::GoTo, kPromptDialog, [&](const Dialog& dialog) {
            dialog.SetText(kAnswer, each.typed);
            dialog.Key(VK_RETURN);
            EXPECT_TRUE(dialog.WaitForEnd());
        });
        EXPECT_EQ(window_.State().caret, each.caret);
    }
    UseDialog(window_, Command::GoTo, kPromptDialog, [&](const Dialog& dialog) {
        EXPECT_EQ(TextOf(dialog.window), text_("dialog.goto.title"));
        EXPECT_EQ(dialog.Text(3001), text_("dialog.goto.prompt"));
        EXPECT_EQ(dialog.Text(kAnswer), u"1FFF");
        EXPECT_TRUE(dialog.WaitForFocus(kAnswer));
    });
}

TEST_F(GoToTest, StaysWhereItIsForAnInvalidOrCancelledAnswer) {
    for (const char16_t* typed : {u"", u"0x", u"12G", u"1 2", u"10000000000000000"}) {
        UseDialog(window_, Command::GoTo, kPromptDialog, [&](const Dialog& dialog) {
            dialog.SetText(kAnswer, typed);
            dialog.Press(IDOK);
            EXPECT_EQ(TakeBox(), text_("error.goto_invalid") + u"|" + text_("dialog.goto.title"));
        });
    }
    for (const bool byKey : {true, false}) {
        UseDialog(window_, Command::GoTo, kPromptDialog, [&](const Dialog& dialog) {
            dialog.SetText(kAnswer, u"12");
            byKey ? dialog.Key(VK_ESCAPE) : dialog.Press(IDCANCEL);
            EXPECT_TRUE(dialog.WaitForEnd());
        });
    }
    EXPECT_EQ(window_.State().caret, 0U);
}

} // namespace
} // namespace kvx::test
