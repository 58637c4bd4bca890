// The struct view with real pattern files over real documents.
#include "file_bytes.h"
#include "pane_driver.h"
#include "program_texts.h"

#include "panes/list_model.h"
#include "panes/struct_view_layout.h"
#include "panes/value_format_menu.h"
#include "platform/text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kvx::test {
namespace {

class StructViewTest : public testing::Test {
protected:
    void Start(const std::filesystem::path& document) {
        kivra_ = std::make_unique<KivraProcess>(program_, Quoted(document));
        ASSERT_TRUE(kivra_->WaitForWindow());
        pane_ = WaitForPane(*kivra_, kStructViewClass);
        ASSERT_NE(pane_, nullptr);
    }
    void StartOnBytes(const std::string& bytes) {
        program_.WriteSettings(PaneSettings(false, true));
        WriteFileBytes(files_.Root() / "data.bin", bytes);
        Start(files_.Root() / "data.bin");
    }

    void Click(std::uint32_t button) const { test::Click(pane_, button); }
    void Open(const std::wstring& path) const {
        Click(kStructViewOpenCommand);
        EXPECT_TRUE(ChooseInFileDialog(kivra_->Id(), path));
        EXPECT_TRUE(WaitUntil([&] { return IsActive(pane_); }));
    }
    void PressF5() const { PostKey(pane_, VK_F5); }
    void WritePattern(std::string_view text) const { files_.Write(u"own.kvpat", text); }
    std::wstring PatternPath() const { return (files_.Root() / "own.kvpat").wstring(); }

    std::u16string List(std::u16string_view rows) const {
        std::u16string list =
            text_("structview.column.offset") + u'\t' + text_("structview.column.name") + u'\t' +
            text_("structview.column.type") + u'\t' + text_("structview.column.value");
        return list.append(rows);
    }
    void ExpectList(std::u16string_view rows) const {
        const std::u16string list = List(rows);
        EXPECT_EQ(WaitForList(pane_, list), list);
    }

    std::size_t Menus() const { return WindowsOf(kivra_->Id(), L"#32768").size(); }

    // The menu takes the keys of its window.
    void OpenFormatMenu() const {
        ::PostMessageW(pane_, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(pane_), -1);
        ASSERT_TRUE(WaitUntil([&] { return Menus() == 1; }));
        Used(PathUse(TextOf(pane_), "menu by key"));
    }

    /// Group and item by number, from 1.
    void Choose(int group, int item) const {
        OpenFormatMenu();
        for (int step = 0; step < group; ++step)
            ::PostMessageW(pane_, WM_KEYDOWN, VK_DOWN, 0);
        ::PostMessageW(pane_, WM_KEYDOWN, VK_RIGHT, 0);
        ASSERT_TRUE(WaitUntil([&] { return Menus() == 2; }));
        for (int step = 1; step < item; ++step)
            ::PostMessageW(pane_, WM_KEYDOWN, VK_DOWN, 0);
        ::PostMessageW(pane_, WM_KEYDOWN, VK_RETURN, 0);
        ASSERT_TRUE(WaitUntil([&] { return Menus() == 0; }));
        const auto& chosen = kValueFormatMenu.at(static_cast<std::size_t>(group - 1))
                                 .items.at(static_cast<std::size_t>(item - 1));
        Used(ControlUse(TextOf(pane_), static_cast<int>(chosen.command)));
    }

    /// The text box that is shown; empty when none is.
    std::u16string ShownText() const {
        const HWND box = VisibleEdit();
        return box == nullptr ? std::u16string() : TextOf(box);
    }
    bool WaitForText(const std::u16string& text) const {
        return WaitUntil([&] { return ShownText() == text; });
    }
    HWND VisibleEdit() const {
        for (HWND child = nullptr;
             (child = ::FindWindowExW(pane_, child, L"Edit", nullptr)) != nullptr;) {
            if (::IsWindowVisible(child) != FALSE) return child;
        }
        return nullptr;
    }

    ProgramCopy program_;
    TempFolder files_;
    ProgramTexts text_{program_};
    std::unique_ptr<KivraProcess> kivra_;
    HWND pane_ = nullptr;
};

TEST_F(StructViewTest, APatternIsEditedBrokenDeletedAndClosed) {
    StartOnBytes("ABCD");
    WritePattern("struct A { uint8_t a; };");
    Open(PatternPath());
    ExpectList(u"\r\n0x0\ta\tuint8_t\t0x41");
    WritePattern("struct A { uint16_t b; };");
    PressF5();
    ExpectList(u"\r\n0x0\tb\tuint16_t\t0x4241");
    kivra_->Key(VK_RIGHT);
    ExpectList(u"\r\n0x1\tb\tuint16_t\t0x4342");

    WritePattern("struct A {\n  uint8_t a\n};");
    PressF5();
    const std::u16string prefix = text_("structview.error.prefix");
    ASSERT_TRUE(WaitUntil([&] { return ShownText().starts_with(prefix); }));
    EXPECT_THAT(Utf16ToUtf8(ShownText()), testing::HasSubstr("Line 2, Col 3: "));
    EXPECT_THAT(Utf16ToUtf8(ShownText()), testing::EndsWith("\r\n  uint8_t a\r\n  ^"));
    ExpectList(u"\r\n0x1\tb\tuint16_t\t0x4342");
    std::filesystem::remove(PatternPath());
    Click(kStructViewReloadCommand);
    EXPECT_TRUE(WaitUntil([&] { return IsActive(pane_); }));
    EXPECT_TRUE(WaitForText(prefix + u"\r\nFailed to open definition file."));
    ExpectList(u"\r\n0x1\tb\tuint16_t\t0x4342");
    Click(kStructViewCloseCommand);
    ExpectList(u"");
    EXPECT_EQ(ShownText(), u"");
}

TEST_F(StructViewTest, EachFormatIsChosenInTheMenuAndSurvivesARestart) {
    StartOnBytes("AB\x01\x02");
    WritePattern("struct A { char text[2]; uint16_t number; };");
    Open(PatternPath());
    const auto rows = [](std::u16string_view text, std::u16string_view number) {
        return std::u16string(u"\r\n0x0\ttext\tchar[2]\t").append(text) +
               std::u16string(u"\r\n0x2\tnumber\tuint16_t\t").append(number);
    };
    ExpectList(rows(u"41 42", u"0x0201"));

    Choose(1, 2);
    ExpectList(rows(u"\"AB\"", u"0x0201"));
    Choose(2, 2);
    ExpectList(rows(u"\"AB\"", u"0x0102"));
    Choose(3, 2);
    ExpectList(rows(u"\"AB\"", u"258"));
    Choose(1, 1);
    Choose(2, 1);
    Choose(3, 1);
    ExpectList(rows(u"41 42", u"0x0201"));
    Choose(1, 2);
    Choose(3, 2);
    ExpectList(rows(u"\"AB\"", u"513"));

    // By the box in the caption; left without a choice.
    ListModel list(kStructViewColumns);
    list.SetArea({520, 400, kStructViewHeaderHeight + 1});
    const PaneRect box = ValueFormatBox(list.CaptionRect(kStructNameColumn), 96);
    ::PostMessageW(pane_, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(box.left + 5, box.top + 5));
    ASSERT_TRUE(WaitUntil([&] { return Menus() == 1; }));
    Used(PathUse(TextOf(pane_), "menu by mouse"));
    ::PostMessageW(pane_, WM_KEYDOWN, VK_ESCAPE, 0);
    ASSERT_TRUE(WaitUntil([&] { return Menus() == 0; }));
    Used(PathUse(TextOf(pane_), "menu left by Esc"));
    ExpectList(rows(u"\"AB\"", u"513"));

    // No file is chosen.
    Click(kStructViewOpenCommand);
    EXPECT_TRUE(CancelFileDialog(kivra_->Id()));
    EXPECT_TRUE(WaitUntil([&] { return IsActive(pane_); }));
    ExpectList(rows(u"\"AB\"", u"513"));

    kivra_->RequestClose();
    EXPECT_EQ(kivra_->WaitForExit(), 0);
    Start(files_.Root() / "data.bin");
    Open(PatternPath());
    ExpectList(rows(u"\"AB\"", u"513"));
}

TEST_F(StructViewTest, TheDialogStartsAtTheSamplesAndThenWhereTheLastPatternWas) {
    program_.AddPatterns();
    program_.WriteSettings(PaneSettings(false, true));
    Start(program_.Program());
    Open(L"pe_dos_header.kvpat");
    const std::string program = ReadFileBytes(program_.Program());
    ASSERT_EQ(program.substr(0, 2), "MZ");
    std::u16string list;
    ASSERT_TRUE(WaitUntil([&] {
        list = CopiedList(pane_);
        return list.find(u"e_lfanew") != std::u16string::npos;
    }));
    EXPECT_NE(list.find(u"\te_magic\tchar[2]\t4D 5A\r\n"), std::u16string::npos);
    char expected[16] = {};
    std::snprintf(expected, sizeof expected, "\t0x%08X", static_cast<unsigned char>(program[60]));
    EXPECT_TRUE(list.ends_with(std::u16string(expected, expected + 11))) << "e_lfanew";

    Click(kStructViewInfoCommand);
    EXPECT_TRUE(WaitUntil([&] { return ShownText().find(u"entry") != std::u16string::npos; }));
    Click(kStructViewInfoCommand);
    EXPECT_TRUE(WaitForText(u""));

    WritePattern("struct A { uint8_t a; };");
    files_.Write(u"other.kvpat", std::string_view("struct A { uint8_t other; };"));
    Open(PatternPath());
    ExpectList(u"\r\n0x0\ta\tuint8_t\t0x4D");
    Open(L"other.kvpat");
    ExpectList(u"\r\n0x0\tother\tuint8_t\t0x4D");
}

} // namespace
} // namespace kvx::test
