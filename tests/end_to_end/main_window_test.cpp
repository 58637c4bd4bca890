// What the main window shows while the document changes: menu, status text, title.
#include "file_bytes.h"
#include "in_process.h"
#include "program_texts.h"

#include "settings/settings_file.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace kvx::test {
namespace {

class MainWindowTest : public testing::Test {
protected:
    InProcessWindow Show(const std::string& bytes) {
        return InProcessWindow(program_, files_.Write(u"data.bin", bytes));
    }

    /// The status text for a caret and mode, at 100 %.
    std::u16string Status(std::u16string_view offset, std::string_view modeKey, bool modified) {
        std::u16string status = text_("status.offset") + u": 0x";
        status += offset;
        status += u"  " + text_("status.encoding") + u": ASCII  ";
        if (modeKey != "status.readonly") status += text_("status.mode") + u": ";
        status += text_(modeKey);
        if (modified) status += u"  " + text_("status.modified");
        return status + u"  " + text_("status.zoom") + u": 100%";
    }

    static bool IsChecked(const InProcessWindow& window, Command command) {
        const auto menu = window.Menu();
        const ShownItem* item = InProcessWindow::Find(menu, command);
        return item != nullptr && item->checked;
    }

    static bool IsGrey(const InProcessWindow& window, Command command) {
        const auto menu = window.Menu();
        const ShownItem* item = InProcessWindow::Find(menu, command);
        return item == nullptr || item->greyed;
    }

    ProgramCopy program_;
    TempFolder files_;
    ProgramTexts text_{program_};
};

TEST_F(MainWindowTest, TheMenuFollowsTheDocumentAndTheChoices) {
    InProcessWindow window(program_);
    EXPECT_TRUE(IsGrey(window, Command::Save));
    EXPECT_TRUE(IsGrey(window, Command::Close));
    EXPECT_EQ(InProcessWindow::Find(window.Menu(), Command::RecentFirst), nullptr);
    EXPECT_TRUE(IsChecked(window, Command::ToggleReadOnly));
    EXPECT_TRUE(IsChecked(window, Command::ThemeDarkBlue));
    EXPECT_EQ(window.Status(), text_("status.no_file"));

    window.Run(Command::ThemeBlack);
    EXPECT_FALSE(IsChecked(window, Command::ThemeDarkBlue));
    EXPECT_TRUE(IsChecked(window, Command::ThemeBlack));
    window.Run(Command::LanguageJapanese);
    const ProgramTexts japanese(program_, UiLanguage::Japanese);
    EXPECT_EQ(window.Menu().front().text, japanese("menu.file"));
    EXPECT_EQ(window.Status(), japanese("status.no_file"));
}

TEST_F(MainWindowTest, TheStatusTextFollowsCaretModeAndChanges) {
    InProcessWindow window = Show(std::string(100, 'x'));
    EXPECT_EQ(window.Status(), Status(u"00000000", "status.readonly", false));
    window.Key(VK_DOWN);
    window.Key(VK_RIGHT);
    EXPECT_EQ(window.Status(), Status(u"00000011", "status.readonly", false));
    window.Run(Command::ToggleReadOnly);
    EXPECT_FALSE(IsChecked(window, Command::ToggleReadOnly));
    EXPECT_EQ(window.Status(), Status(u"00000011", "status.mode.overwrite", false));
    window.Key(VK_INSERT);
    window.Type("41");
    EXPECT_EQ(window.Status(), Status(u"00000012", "status.mode.insert", true));
    window.Run(Command::Save);
    EXPECT_EQ(window.Status(), Status(u"00000012", "status.mode.insert", false));
}

TEST_F(MainWindowTest, OffsetsHaveSixteenDigitsFromFourGibibytesOn) {
    const std::u16string path = files_.WriteSparse(u"data.bin", 1ULL << 32, "", "");
    const InProcessWindow window(program_, path);
    EXPECT_EQ(window.Status(), Status(u"0000000000000000", "status.readonly", false));
}

TEST_F(MainWindowTest, ManyRecentFilesContinueInASubmenu) {
    AppSettings settings;
    for (char16_t letter = u'a'; letter < u'q'; ++letter)
        settings.recentFiles.push_back(files_.Path(std::u16string(1, letter)));
    ASSERT_TRUE(SaveSettings(program_.SettingsFile().u16string(), settings).ok);
    const InProcessWindow last(program_);
    const auto menu = last.Menu();
    const ShownItem& file = menu.front();
    std::vector<UINT> first;
    std::vector<UINT> more;
    for (const ShownItem& item : file.children) {
        if (item.id >= CommandId(Command::RecentFirst)) first.push_back(item.id);
        for (const ShownItem& child : item.children)
            more.push_back(child.id);
    }
    EXPECT_EQ(first, (std::vector<UINT>{4000, 4001, 4002, 4003, 4004, 4005, 4006, 4007}));
    EXPECT_EQ(more, (std::vector<UINT>{4008, 4009, 4010, 4011, 4012, 4013, 4014, 4015}));
    EXPECT_EQ(InProcessWindow::Find(menu, Command::RecentFirst)->text, u"1 " + files_.Path(u"a"));
    EXPECT_EQ(InProcessWindow::Find(menu, Command::RecentFirst + 15)->text,
              u"16 " + files_.Path(u"p"));
}

TEST_F(MainWindowTest, EachRecentFileOpensByItsNumberAndComesFirst) {
    AppSettings settings;
    for (char16_t letter = u'a'; letter < u'q'; ++letter)
        settings.recentFiles.push_back(files_.Write(std::u16string(1, letter), "content"));
    ASSERT_TRUE(SaveSettings(program_.SettingsFile().u16string(), settings).ok);
    InProcessWindow window(program_);
    for (UINT number = 0; number < kMaxRecentFiles; ++number) {
        auto& files = settings.recentFiles;
        std::rotate(files.begin(), files.begin() + number, files.begin() + number + 1);
        window.Run(Command::RecentFirst + number);
        EXPECT_EQ(TextOf(window.Main()),
                  text_.Title(std::filesystem::path(files[0]).filename().u16string()));
    }
    AppSettings stored;
    LoadSettings(program_.SettingsFile().u16string(), stored);
    EXPECT_EQ(stored.recentFiles, settings.recentFiles);
}

} // namespace
} // namespace kvx::test
