#include "app/search_commands.h"

#include "app/pane_commands.h"
#include "tests/app/shell_fakes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kvx {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::size_t kMiB = std::size_t{1} << 20;

class RecordingSearchDialog final : public SearchDialogHost {
public:
    void ShowError(const std::u16string& text, const std::u16string& caption) override {
        boxes.push_back(u"error " + text + u"|" + caption);
    }
    void ShowInformation(const std::u16string& text, const std::u16string& caption) override {
        boxes.push_back(u"information " + text + u"|" + caption);
    }
    void ShowHistory(const std::vector<SearchHistoryEntry>& shown) override { history = shown; }
    bool IsEscapeDown() const override { return escapeDown; }
    void RequestCancel() override { cancelRequested = true; }
    bool IsCancelRequested() const override { return cancelRequested; }

    std::vector<std::u16string> boxes;
    std::vector<SearchHistoryEntry> history;
    bool escapeDown = false;
    bool cancelRequested = false;
};

class SearchCommands : public testing::Test {
protected:
    void Next(const std::u16string& query, SearchType type = SearchType::Text) {
        RunSearch(shell, dialog, {type, query}, SearchDirection::Next);
    }
    void Previous(const std::u16string& query) {
        RunSearch(shell, dialog, {SearchType::Text, query}, SearchDirection::Previous);
    }

    // "caret: first-last" of the selection, or the boxes shown since the last call.
    std::string Shown() {
        const HexViewState& view = shell.View().State();
        if (const auto boxes = std::exchange(dialog.boxes, {}); !boxes.empty())
            return {boxes[0].begin(), boxes[0].end()};
        return std::to_string(view.caret) + ": " + std::to_string(view.selAnchor) + "-" +
               std::to_string(view.selEnd);
    }

    ShellRig rig;
    Shell& shell = rig.shell;
    RecordingShellHost& host = rig.host;
    RecordingSearchDialog dialog;
};

constexpr char kNotFound[] = "information error.search_not_found|dialog.search.title";

TEST_F(SearchCommands, HitsAreSelectedOneAfterTheOtherAlsoWhereTheyOverlap) {
    rig.Open("aaa-aa");
    for (const char* shown : {"0: 0-1", "1: 1-2", "4: 4-5", kNotFound}) {
        Next(u" aa\n");
        EXPECT_EQ(Shown(), shown);
    }
    for (const char* shown : {"1: 1-2", "0: 0-1", kNotFound}) {
        Previous(u"aa");
        EXPECT_EQ(Shown(), shown);
    }
    EXPECT_TRUE(host.status.starts_with(u"status.offset: 0x00000000"));
}

TEST_F(SearchCommands, AnErrorIsShownAndLeavesEverythingAsItWas) {
    rig.Open("ab");
    Next(u"123", SearchType::Hex);
    EXPECT_EQ(Shown(), "error error.search_invalid_hex|dialog.search.title");
    Next(u"\u3042");
    EXPECT_EQ(Shown(), "error error.search_invalid_text|dialog.search.title");
    Next(std::u16string(4097, u'a'));
    EXPECT_EQ(Shown(), "error error.search_too_long|dialog.search.title");
    EXPECT_THAT(shell.Settings().searchHistory, IsEmpty());
    EXPECT_FALSE(shell.View().State().hasSelection);
}

TEST_F(SearchCommands, SearchesAreRememberedTrimmedWhateverTheyFind) {
    rig.Open("ab");
    Next(u" zz ");
    Next(u"61\t", SearchType::Hex);
    const std::vector<SearchHistoryEntry> expected = {{u"hex", u"61"}, {u"text", u"zz"}};
    EXPECT_EQ(dialog.history, expected);
    EXPECT_EQ(rig.Stored().searchHistory, expected);
}

TEST_F(SearchCommands, ProgressIsShownWhileMessagesAreDispatchedAndNoCommandIsTaken) {
    rig.Open(std::string(3 * kMiB, '-'));
    host.painted.clear();
    bool accepted = false;
    host.duringPump = [&] {
        accepted = accepted || shell.AcceptsCommands();
        OnInspectorClosed(shell); // its window takes input meanwhile, and the menu shows it
    };
    Next(u"x");
    EXPECT_FALSE(host.menu[0].greyed) << "nothing would build the menu again";
    EXPECT_THAT(host.painted, ElementsAre(u"status.searching 0%", u"status.searching 33%",
                                          u"status.searching 66%"));
    EXPECT_FALSE(accepted);
    EXPECT_TRUE(shell.AcceptsCommands());
    EXPECT_EQ(Shown(), kNotFound);
}

TEST_F(SearchCommands, EscAndCloseEndASearchBeforeItsNextBlockWithoutAWord) {
    rig.Open(std::string(3 * kMiB, '-') + "x");
    for (bool RecordingSearchDialog::*const pressed :
         {&RecordingSearchDialog::escapeDown, &RecordingSearchDialog::cancelRequested}) {
        dialog.escapeDown = dialog.cancelRequested = false;
        host.painted.clear();
        host.duringPump = [&] {
            if (host.painted.size() == 2) dialog.*pressed = true;
        };
        Next(u"x");
        EXPECT_THAT(host.painted, ElementsAre(u"status.searching 0%", u"status.searching 33%"));
        EXPECT_EQ(Shown(), "0: 0-0");
        EXPECT_FALSE(shell.View().State().hasSelection);
        EXPECT_TRUE(shell.AcceptsCommands());
        EXPECT_TRUE(host.status.starts_with(u"status.offset"));
    }
}

TEST_F(SearchCommands, NothingIsSearchedWithoutAFileOrInsideAnotherSearch) {
    Next(u"a");
    EXPECT_THAT(shell.Settings().searchHistory, IsEmpty());
    rig.Open("ab");
    host.duringPump = [this] { Next(u"b"); };
    Next(u"a");
    EXPECT_EQ(Shown(), "0: 0-0");
    EXPECT_EQ(shell.Settings().searchHistory.size(), 1U);
}

} // namespace
} // namespace kvx
