// Searching in files as a person does it with the search dialog.
#include "dialog_user.h"
#include "exercised.h"
#include "program_texts.h"
#include "waiting.h"

#include "settings/settings_file.h"

#include <gtest/gtest.h>

#include <chrono>
#include <fstream>

namespace kvx::test {
namespace {

constexpr std::wstring_view kSearchDialog = L"Kivra.SearchDialog";
constexpr int kType = 3102;
constexpr int kQuery = 3104;
constexpr int kPrevious = 3105;
constexpr int kNext = 1;
constexpr int kClose = 2;
constexpr int kHex = 0;
constexpr int kText = 1;

constexpr std::uint64_t kMebi = 1 << 20;

class SearchDialogTest : public testing::Test {
protected:
    /// A file of zeros but for `text` at each of `offsets`.
    std::u16string FileWith(std::uint64_t size, std::string_view text,
                            const std::vector<std::uint64_t>& offsets) {
        const std::u16string path = files_.WriteSparse(u"data.bin", size, "", "");
        std::fstream file(std::filesystem::path(path),
                          std::ios::binary | std::ios::in | std::ios::out);
        for (const std::uint64_t offset : offsets) {
            file.seekp(static_cast<std::streamoff>(offset));
            file.write(text.data(), static_cast<std::streamsize>(text.size()));
        }
        return path;
    }

    void Search(const std::function<void(const Dialog& dialog)>& user) {
        UseDialog(*window_, Command::Find, kSearchDialog, user);
    }

    static void Count(const Dialog& dialog, int button, const char* outcome) {
        const std::string direction = button == kPrevious ? "previous" : "next";
        Used(PathUse(dialog.caption, direction + outcome));
    }

    /// Presses a button and takes the box that says that there is nothing more.
    void FindsNothing(const Dialog& dialog, int button) const {
        dialog.Press(button);
        EXPECT_EQ(TakeBox(), Box("error.search_not_found"));
        Count(dialog, button, " not found");
    }

    /// Presses a button and waits until `length` bytes at `offset` are selected.
    bool Finds(const Dialog& dialog, int button, std::uint64_t offset, std::uint64_t length) {
        dialog.Press(button);
        const HexViewState& state = window_->State();
        const bool found = WaitUntil([&] {
            return state.hasSelection && state.selAnchor == offset &&
                   state.selEnd == offset + length - 1 && state.caret == offset &&
                   dialog.IsEnabled(kQuery);
        });
        if (found) Count(dialog, button, " found");
        return found;
    }

    static void SendKey(WORD virtualKey, DWORD flags) {
        INPUT input{};
        input.type = INPUT_KEYBOARD;
        input.ki.wVk = virtualKey;
        input.ki.dwFlags = flags;
        ::SendInput(1, &input, sizeof(input));
    }

    std::u16string Box(std::string_view key) const {
        return text_(key) + u"|" + text_("dialog.search.title");
    }

    ProgramCopy program_;
    ProgramTexts text_{program_};
    TempFolder files_;
    std::unique_ptr<InProcessWindow> window_;
};

TEST_F(SearchDialogTest, FindsEveryHitOfALargeFileInBothDirections) {
    const std::vector<std::uint64_t> hits{0, kMebi - 2, 32 * kMebi - 5, 64 * kMebi - 6};
    const std::pair<int, std::u16string> queries[] = {{kHex, u"6e 65\t65646C65 "},
                                                      {kText, u"needle"}};
    window_ = std::make_unique<InProcessWindow>(program_, FileWith(64 * kMebi, "needle", hits));
    for (const auto& [type, query] : queries) {
        Search([&](const Dialog& dialog) {
            dialog.Select(kType, type);
            dialog.SetText(kQuery, query);
            for (const std::uint64_t hit : hits)
                EXPECT_TRUE(Finds(dialog, kNext, hit, 6)) << hit;
            FindsNothing(dialog, kNext);
            for (std::size_t left = hits.size() - 1; left > 0; --left)
                EXPECT_TRUE(Finds(dialog, kPrevious, hits[left - 1], 6)) << left;
            FindsNothing(dialog, kPrevious);
            EXPECT_TRUE(dialog.WaitForFocus(kQuery));
        });
        EXPECT_EQ(window_->State().selEnd, 5U);
        window_->Key(VK_ESCAPE); // so that the next search starts at the caret
    }
}

TEST_F(SearchDialogTest, TakesNoLongerQueryThanItsTypeAllows) {
    window_ = std::make_unique<InProcessWindow>(program_, files_.Write(u"data.bin", "content"));
    constexpr Command kUtf16Le = Command::EncodingFirst + 2;
    const std::pair<Command, LRESULT> cases[] = {{Command::EncodingFirst, 4096}, {kUtf16Le, 2048}};
    for (const auto& [encoding, textLimit] : cases) {
        window_->Run(encoding);
        Search([&, limit = textLimit](const Dialog& dialog) {
            const HWND edit = ChildOf(dialog.Control(kQuery), L"Edit");
            for (const auto& [type, expected] :
                 {std::pair<int, LRESULT>{kHex, 12287}, {kText, limit}, {kHex, 12287}}) {
                dialog.Select(kType, type);
                EXPECT_EQ(::SendMessageW(edit, EM_GETLIMITTEXT, 0, 0), expected) << type;
            }
        });
    }
}

TEST_F(SearchDialogTest, StepsThroughHitsThatOverlap) {
    window_ = std::make_unique<InProcessWindow>(program_, files_.Write(u"data.bin", "xaaaaax"));
    Search([&](const Dialog& dialog) {
        dialog.Select(kType, kText);
        dialog.SetText(kQuery, u"aaa");
        for (const std::uint64_t hit : {1U, 2U, 3U})
            EXPECT_TRUE(Finds(dialog, kNext, hit, 3)) << hit;
        for (const std::uint64_t hit : {2U, 1U})
            EXPECT_TRUE(Finds(dialog, kPrevious, hit, 3)) << hit;
        dialog.Key(VK_RETURN); // means Next
        EXPECT_TRUE(WaitUntil([&] { return window_->State().selAnchor == 2; }));
    });
}

TEST_F(SearchDialogTest, SaysWhyAQueryCannotBeSearchedFor) {
    window_ = std::make_unique<InProcessWindow>(program_, files_.Write(u"data.bin", "content"));
    std::u16string tooLong;
    for (int byte = 0; byte < 4097; ++byte)
        tooLong += u"41";
    const struct {
        int type;
        std::u16string query;
        const char* textKey;
    } cases[] = {
        {kHex, u"ABC", "error.search_invalid_hex"},
        {kHex, u"4G", "error.search_invalid_hex"},
        {kHex, u"", "error.search_invalid_hex"},
        {kHex, tooLong, "error.search_too_long"},
        {kText, u"caf\u00E9", "error.search_invalid_text"},
        {kText, u" ", "error.search_invalid_text"},
    };
    Search([&](const Dialog& dialog) {
        for (const auto& each : cases) {
            dialog.Select(kType, each.type);
            dialog.SetText(kQuery, each.query);
            dialog.Press(kNext);
            EXPECT_EQ(TakeBox(), Box(each.textKey));
        }
    });
    EXPECT_FALSE(window_->State().hasSelection);
    EXPECT_FALSE(std::filesystem::exists(program_.SettingsFile()) &&
                 program_.SettingsText().find("4G") != std::string::npos);
}

TEST_F(SearchDialogTest, OffersPastQueriesOfTheTypeNewestFirstAndStoresThem) {
    window_ = std::make_unique<InProcessWindow>(program_, files_.Write(u"data.bin", "0123"));
    using Queries = std::vector<std::u16string>;
    Search([&](const Dialog& dialog) {
        EXPECT_EQ(dialog.Items(kType),
                  (Queries{text_("dialog.search.type.hex"), text_("dialog.search.type.text")}));
        const struct {
            const char16_t* query;
            int button;
            std::uint64_t hit;
        } steps[] = {{u"31", kNext, 1}, {u" 32 ", kNext, 2}, {u"31", kPrevious, 1}};
        for (const auto& step : steps) {
            dialog.SetText(kQuery, step.query);
            EXPECT_TRUE(Finds(dialog, step.button, step.hit, 1));
        }
        EXPECT_EQ(dialog.Items(kQuery), (Queries{u"31", u"32"}));
        dialog.Select(kType, kText);
        EXPECT_EQ(dialog.Items(kQuery), Queries{});
        EXPECT_EQ(dialog.Text(kQuery), u"31") << "what was typed stays";
        FindsNothing(dialog, kNext);
        EXPECT_EQ(dialog.Items(kQuery), Queries{u"31"});
    });
    AppSettings stored;
    LoadSettings(program_.SettingsFile().u16string(), stored);
    EXPECT_EQ(stored.searchHistory, (std::vector<SearchHistoryEntry>{
                                        {u"text", u"31"}, {u"hex", u"31"}, {u"hex", u"32"}}));
    window_ = std::make_unique<InProcessWindow>(program_, files_.Path(u"data.bin"));
    Search([&](const Dialog& dialog) { EXPECT_EQ(dialog.Items(kQuery), (Queries{u"31", u"32"})); });
}

struct SearchEnd {
    const char* by;
    int button; ///< that starts the search
};

class LongSearchTest : public SearchDialogTest, public testing::WithParamInterface<SearchEnd> {};

TEST_P(LongSearchTest, EndsAtOnceAndLeavesTheDialogReadyForTheNext) {
    constexpr std::uint64_t kSize = 4ULL << 40; // minutes, at the speed of memory
    window_ =
        std::make_unique<InProcessWindow>(program_, files_.WriteSparse(u"data.bin", kSize, "", ""));
    if (GetParam().button == kPrevious) window_->Key(VK_END, true);
    const std::u16string idle = window_->Status();
    Search([&](const Dialog& dialog) {
        dialog.SetText(kQuery, u"12");
        dialog.Press(GetParam().button);
        ASSERT_TRUE(WaitUntil([&] {
            return !dialog.IsEnabled(kQuery) && !dialog.IsEnabled(kNext) &&
                   !dialog.IsEnabled(kPrevious) && !dialog.IsEnabled(kType);
        }));
        ASSERT_TRUE(
            WaitUntil([&] { return window_->Status().find(u'%') != std::u16string::npos; }));
        ::PostMessageW(::GetAncestor(window_->View(), GA_ROOT), WM_CLOSE, 0, 0); // is refused
        ASSERT_TRUE(Keyboard(dialog.window, dialog.Control(kClose)).TakeForeground());
        const auto start = std::chrono::steady_clock::now();
        if (GetParam().by == std::string("Close")) {
            dialog.Press(kClose);
        } else {
            SendKey(VK_ESCAPE, 0); // held down, as a person does for about a tenth of a second
        }
        EXPECT_TRUE(WaitUntil([&] { return dialog.IsEnabled(kQuery); }));
        const auto taken = std::chrono::steady_clock::now() - start;
        SendKey(VK_ESCAPE, KEYEVENTF_KEYUP);
        RecordProperty("milliseconds", static_cast<int>(taken / std::chrono::milliseconds(1)));
        EXPECT_LT(taken, std::chrono::seconds(1)); // far less on a machine with nothing else to do
        EXPECT_TRUE(dialog.WaitForFocus(kQuery));
        EXPECT_TRUE(WindowsOf(::GetCurrentProcessId(), L"#32770").empty());
        Count(dialog, GetParam().button, " cancelled");
        dialog.SetText(kQuery, u"00");
        EXPECT_TRUE(Finds(dialog, GetParam().button, window_->State().caret, 1));
    });
    EXPECT_EQ(window_->Status(), idle);
}

INSTANTIATE_TEST_SUITE_P(By, LongSearchTest,
                         testing::Values(SearchEnd{"Close", kNext}, SearchEnd{"Escape", kPrevious}),
                         [](const auto& param) { return std::string(param.param.by); });

} // namespace
} // namespace kvx::test
