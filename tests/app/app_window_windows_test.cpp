#include "app/app_window.h"

#include "app/commands.h"
#include "tests/support/temp_folder.h"

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <new>

#include <gtest/gtest.h>

#include <shellapi.h>
#include <shlobj.h>

namespace kvx {
namespace {

using namespace std::chrono_literals;

// The allocation after so many fails, alone; below zero, none does.
std::atomic<int> allocationsUntilFailure = -1;

int boxesClosed = 0;
HWND boxOwner = nullptr; // of the last box closed

// Presses the button of the program's message box as soon as one is on the screen.
void CALLBACK CloseBox(HWND, UINT, UINT_PTR, DWORD) {
    const HWND box = ::FindWindowW(L"#32770", L"Kivra");
    if (box == nullptr) return;
    boxOwner = ::GetWindow(box, GW_OWNER);
    if (::SendMessageW(box, WM_COMMAND, IDOK, 0) == 0) ++boxesClosed;
}

/// A main window in this process, with texts that are their keys.
class AppWindowTest : public testing::Test {
protected:
    // Without a pane, whose thread would take a failing allocation upon itself.
    AppWindowTest() {
        folder_.Write(u"settings.json",
                      std::string_view(R"({"analysis": {"dataInspector": {"visible": false}}})"));
    }
    ~AppWindowTest() override {
        window_.reset();
        MSG message{};
        while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        } // also WM_QUIT, which would end the next test's loop
    }

    void Start(std::optional<std::u16string> startFile) {
        window_ = std::make_unique<AppWindow>(
            AppWindowOptions{folder_.Root().u16string(), folder_.Path(u"settings.json")});
        ASSERT_TRUE(window_->Initialize(::GetModuleHandleW(nullptr), std::move(startFile)));
        Until([] { return false; }, 50ms);
    }

    /// Deals with messages until `done`; false when that takes too long.
    bool Until(const std::function<bool()>& done, std::chrono::milliseconds limit = 20s) {
        const auto end = std::chrono::steady_clock::now() + limit;
        while (!done()) {
            if (std::chrono::steady_clock::now() > end) return false;
            ::MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_ALLINPUT);
            MSG message{};
            while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
                window_->ProcessMessage(message);
        }
        return true;
    }

    HWND Main() const { return window_->MainWindow(); }
    HWND Hex() const { return window_->View().Handle(); }

    void Run(Command command) { ::SendMessageW(Main(), WM_COMMAND, CommandId(command), 0); }
    void Type(std::string_view digits) {
        for (const char digit : digits)
            ::SendMessageW(Hex(), WM_CHAR, static_cast<WPARAM>(digit), 0);
        ::SendMessageW(Main(), WM_APP + 1, 0, 0);
    }

    /// Runs a command, and `meanwhile` over and over; gives how many message boxes it closed.
    int BoxesOf(
        Command command, TIMERPROC meanwhile = [](HWND, UINT, UINT_PTR, DWORD) {}) {
        boxesClosed = 0;
        const UINT_PTR timers[] = {::SetTimer(nullptr, 0, 50, CloseBox),
                                   ::SetTimer(nullptr, 0, 50, meanwhile)};
        Run(command);
        for (const UINT_PTR timer : timers)
            ::KillTimer(nullptr, timer);
        return boxesClosed;
    }

    TempFolder folder_;
    std::unique_ptr<AppWindow> window_;
};

RECT PlaceOf(HWND window) {
    RECT place{};
    ::GetWindowRect(window, &place);
    return place;
}

// What a drop sends; the receiver frees it.
HDROP DropOf(const std::u16string& path) {
    const SIZE_T textBytes = (path.size() + 2) * sizeof(char16_t);
    const HGLOBAL memory = ::GlobalAlloc(GHND, sizeof(DROPFILES) + textBytes);
    auto* const drop = static_cast<DROPFILES*>(::GlobalLock(memory));
    drop->pFiles = sizeof(DROPFILES);
    drop->fWide = TRUE;
    std::memcpy(drop + 1, path.c_str(), (path.size() + 1) * sizeof(char16_t));
    ::GlobalUnlock(memory);
    return static_cast<HDROP>(memory);
}

TEST_F(AppWindowTest, RefusesToEndTheSessionUntilChangesAreSaved) {
    Start(folder_.Write(u"data.bin", "content"));
    EXPECT_NE(::SendMessageW(Main(), WM_QUERYENDSESSION, 0, 0), 0);
    Run(Command::ToggleReadOnly);
    Type("41");
    EXPECT_EQ(::SendMessageW(Main(), WM_QUERYENDSESSION, 0, 0), 0);
    ::SendMessageW(Main(), WM_ENDSESSION, FALSE, 0);
    EXPECT_TRUE(window_->SaveFile());
    EXPECT_NE(::SendMessageW(Main(), WM_QUERYENDSESSION, 0, 0), 0);
}

TEST_F(AppWindowTest, WarnsOfTypingWhileReadOnlyForAWhile) {
    Start(folder_.Write(u"data.bin", "content"));
    const std::u16string before = window_->StatusBar().Text();
    Type("4");
    EXPECT_TRUE(Until([&] { return window_->StatusBar().Colors() == StatusFlashColors(); }));
    EXPECT_EQ(window_->StatusBar().Text(), u"status.readonly_blocked");
    EXPECT_TRUE(Until([&] { return window_->StatusBar().Text() == before; }));
    EXPECT_EQ(window_->StatusBar().Colors(), StatusColorsOf(Theme::DarkBlue));
    EXPECT_FALSE(window_->Document().IsModified());
}

TEST_F(AppWindowTest, TakesADroppedFileOfAnyPathLength) {
    Start(std::nullopt);
    const std::u16string path = folder_.MakeDeepFolder(400) + u"\\data.bin";
    std::ofstream(std::filesystem::path(u"\\\\?\\" + path), std::ios::binary) << "content";
    ::SendMessageW(Main(), WM_DROPFILES, reinterpret_cast<WPARAM>(DropOf(path)), 0);
    EXPECT_EQ(window_->Document().GetPath(), path);
    EXPECT_EQ(window_->Document().GetSize(), 7U);
}

TEST_F(AppWindowTest, FollowsTheDpiItIsTold) {
    Start(std::nullopt);
    const RECT suggested{30, 40, 830, 640};
    for (const UINT dpi : {144U, 0U}) {
        ::SendMessageW(Main(), WM_DPICHANGED, MAKEWPARAM(dpi, dpi),
                       reinterpret_cast<LPARAM>(&suggested));
        EXPECT_EQ(window_->View().View().State().dpi, dpi == 0 ? 96U : dpi);
        const RECT place = PlaceOf(Main());
        EXPECT_NE(::EqualRect(&place, &suggested), FALSE);
        RECT client{};
        ::GetClientRect(Main(), &client);
        const RECT view = PlaceOf(Hex());
        const RECT bar = PlaceOf(window_->StatusBar().Handle());
        EXPECT_EQ(view.right - view.left, client.right);
        EXPECT_EQ(view.bottom, bar.top);
        EXPECT_EQ(bar.bottom - view.top, client.bottom);
    }
}

TEST_F(AppWindowTest, SaysWhenMemoryRanOutAndGoesOn) {
    Start(folder_.Write(u"data.bin", "content"));
    Run(Command::ToggleReadOnly);
    Type("41");
    for (const int succeeding : {0, 12}) { // before the save is busy, and while the menu is built
        allocationsUntilFailure = succeeding;
        EXPECT_EQ(BoxesOf(Command::Save), 1);
        EXPECT_FALSE(window_->Busy());
        EXPECT_TRUE(window_->Document().IsModified());
    }
    ::SetFocus(Hex());
    EXPECT_TRUE(window_->SaveFile());
    EXPECT_EQ(folder_.Read(u"data.bin"), "Aontent");
    EXPECT_EQ(::GetFocus(), Hex()) << "which the view lost while the save had it disabled";
}

// Has the search dialog, once it is there, run out of memory while it fills its list.
void CALLBACK ExhaustDialog(HWND, UINT, UINT_PTR, DWORD) {
    const HWND dialog = ::FindWindowW(L"Kivra.SearchDialog", nullptr);
    if (dialog == nullptr) return;
    constexpr int kType = 3102;
    constexpr int kQuery = 3104;
    ::SetDlgItemTextW(dialog, kQuery, L"longer than a text that needs no memory");
    allocationsUntilFailure = 0;
    ::SendMessageW(dialog, WM_COMMAND, MAKEWPARAM(kType, CBN_SELCHANGE), 0);
}

TEST_F(AppWindowTest, ClosesADialogThatRunsOutOfMemory) {
    Start(folder_.Write(u"data.bin", "content"));
    EXPECT_EQ(BoxesOf(Command::Find, ExhaustDialog), 1);
    EXPECT_EQ(::FindWindowW(L"Kivra.SearchDialog", nullptr), nullptr);
    EXPECT_NE(::IsWindowEnabled(Main()), FALSE);
}

int allocationsLeft = -1;

// Has the link of the about box paint its focus while no memory can be had.
void CALLBACK PaintLink(HWND, UINT, UINT_PTR, DWORD) {
    const HWND about = ::FindWindowW(L"Kivra.AboutDialog", nullptr);
    if (about == nullptr) return;
    constexpr int kLink = 3205;
    const HWND link = ::GetDlgItem(about, kLink);
    ::SetFocus(link);
    allocationsUntilFailure = 0;
    ::RedrawWindow(link, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
    allocationsLeft = allocationsUntilFailure.exchange(-1);
    ::PostMessageW(about, WM_CLOSE, 0, 0);
}

TEST_F(AppWindowTest, PaintsALinkWithoutMemory) {
    Start(std::nullopt);
    EXPECT_EQ(BoxesOf(Command::About, PaintLink), 0);
    EXPECT_EQ(allocationsLeft, 0);
}

HWND prompt = nullptr;

// Has the main window run out of memory below the go-to dialog.
void CALLBACK ExhaustOwner(HWND, UINT, UINT_PTR timer, DWORD) {
    prompt = ::FindWindowW(L"Kivra.PromptDialog", nullptr);
    if (prompt == nullptr) return;
    ::KillTimer(nullptr, timer);
    allocationsUntilFailure = 0;
    ::SendMessageW(::GetWindow(prompt, GW_OWNER), WM_APP + 1, 0, 0);
    ::PostMessageW(prompt, WM_CLOSE, 0, 0);
}

TEST_F(AppWindowTest, ShowsAMessageBoxOverTheDialogThatIsOpen) {
    Start(folder_.Write(u"data.bin", "content"));
    EXPECT_EQ(BoxesOf(Command::GoTo, ExhaustOwner), 1);
    EXPECT_NE(prompt, nullptr);
    EXPECT_EQ(boxOwner, prompt);
}

} // namespace
} // namespace kvx

// The program's allocation functions; those for arrays come to the same.
void* operator new(std::size_t size) {
    if (kvx::allocationsUntilFailure-- == 0) throw std::bad_alloc();
    if (void* const block = std::malloc(size > 0 ? size : 1)) return block;
    throw std::bad_alloc();
}
void operator delete(void* block) noexcept {
    std::free(block);
}
void operator delete(void* block, std::size_t) noexcept {
    std::free(block);
}
