// Choosing the hex view's font as a person does it.
#include "dialog_user.h"
#include "program_texts.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace kvx::test {
namespace {

constexpr std::wstring_view kFontDialog = L"Kivra.FontDialog";
constexpr int kFamily = 3302;
constexpr int kSize = 3304;
constexpr int kBold = 3305;
constexpr int kItalic = 3306;

class FontTest : public testing::Test {
protected:
    /// What the dialog shows as chosen.
    struct Shown {
        std::u16string family;
        std::u16string size;
        bool bold = false;
        bool italic = false;
        friend bool operator==(const Shown&, const Shown&) = default;
    };
    static Shown Read(const Dialog& dialog) {
        return {dialog.Text(kFamily), dialog.Text(kSize), IsChecked(dialog, kBold),
                IsChecked(dialog, kItalic)};
    }
    static bool IsChecked(const Dialog& dialog, int box) {
        return ::SendMessageW(dialog.Control(box), BM_GETCHECK, 0, 0) == BST_CHECKED;
    }
    static int IndexOf(const std::vector<std::u16string>& items, std::u16string_view item) {
        return static_cast<int>(std::find(items.begin(), items.end(), item) - items.begin());
    }

    ProgramCopy program_;
    ProgramTexts text_{program_};
};

TEST_F(FontTest, IsShownAtOnceAndComesBackWithTheNextRun) {
    constexpr char16_t kOther[] = u"DejaVu Sans Mono";
    {
        InProcessWindow window(program_);
        UseDialog(window, Command::Font, kFontDialog, [&](const Dialog& dialog) {
            EXPECT_EQ(Read(dialog), (Shown{u"Consolas", u"12", false, false}));
            const auto families = dialog.Items(kFamily);
            EXPECT_EQ(std::count_if(families.begin(), families.end(),
                                    [](const auto& each) { return each.front() == u'@'; }),
                      0);
            dialog.Select(kFamily, IndexOf(families, kOther));
            dialog.Select(kSize, IndexOf(dialog.Items(kSize), u"20"));
            dialog.Mnemonic(u'b');
            dialog.Mnemonic(u'i');
            dialog.Key(VK_RETURN);
            EXPECT_TRUE(dialog.WaitForEnd());
        });
        EXPECT_EQ(window.State().fontFamily, kOther);
        EXPECT_FLOAT_EQ(window.State().fontSizeDip, 20.0F * 96.0F / 72.0F);
        EXPECT_TRUE(window.State().bold && window.State().italic);
    }
    InProcessWindow next(program_);
    EXPECT_EQ(next.State().fontFamily, kOther);
    EXPECT_TRUE(next.State().bold && next.State().italic);
    const std::string settings = program_.SettingsText();
    EXPECT_NE(settings.find("DejaVu Sans Mono"), std::string::npos);
    UseDialog(next, Command::Font, kFontDialog, [&](const Dialog& dialog) {
        EXPECT_EQ(Read(dialog), (Shown{kOther, u"20", true, true}));
        dialog.Select(kFamily, 0);
        dialog.Select(kSize, 0);
        dialog.Press(IDCANCEL);
        EXPECT_TRUE(dialog.WaitForEnd());
    });
    EXPECT_EQ(next.State().fontFamily, kOther);
    EXPECT_EQ(program_.SettingsText(), settings);
    UseDialog(next, Command::Font, kFontDialog, [&](const Dialog& dialog) {
        dialog.Press(kBold);
        dialog.Press(kItalic);
        dialog.Press(IDOK);
        EXPECT_TRUE(dialog.WaitForEnd());
    });
    EXPECT_FALSE(next.State().bold || next.State().italic);
}

} // namespace
} // namespace kvx::test
