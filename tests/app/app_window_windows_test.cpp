#include "app/app_window.h"

#include "app/commands.h"
#include "platform/win32/wide.h"
#include "tests/support/temp_folder.h"

#include <chrono>
#include <cstring>
#include <functional>

#include <gtest/gtest.h>

#include <shellapi.h>
#include <shlobj.h>

namespace kvx {
namespace {

using namespace std::chrono_literals;

/// A main window in this process, with texts that are their keys.
class AppWindowTest : public testing::Test {
protected:
    ~AppWindowTest() override {
        window_.reset();
        MSG message{};
        while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        } // also WM_QUIT, which would end the next test's loop
    }

    void Start(std::optional<std::u16string> startFile = std::nullopt) {
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
    const HexViewState& ViewState() const { return window_->View().View().State(); }

    void Run(Command command) { ::SendMessageW(Main(), WM_COMMAND, CommandId(command), 0); }
    void Type(std::string_view digits) {
        for (const char digit : digits)
            ::SendMessageW(Hex(), WM_CHAR, static_cast<WPARAM>(digit), 0);
        ::SendMessageW(Main(), WM_APP + 1, 0, 0);
    }

    std::u16string Title() const {
        wchar_t text[1000] = {};
        ::GetWindowTextW(Main(), text, 1000);
        return FromWide(text);
    }
    UINT MenuStateOf(Command command) const {
        return ::GetMenuState(::GetMenu(Main()), CommandId(command), MF_BYCOMMAND);
    }
    std::u16string MenuText(Command command) const {
        wchar_t text[1000] = {};
        ::GetMenuStringW(::GetMenu(Main()), CommandId(command), text, 1000, MF_BYCOMMAND);
        return FromWide(text);
    }

    TempFolder folder_;
    std::unique_ptr<AppWindow> window_;
};

RECT PlaceOf(HWND window) {
    RECT place{};
    ::GetWindowRect(window, &place);
    return place;
}

// Presses a button of the message box that is on the screen, as often as one is there.
void CALLBACK PressCancel(HWND, UINT, UINT_PTR, DWORD) {
    const HWND box = ::FindWindowW(L"#32770", L"app.title");
    if (box != nullptr) ::PostMessageW(::GetDlgItem(box, IDCANCEL), BM_CLICK, 0, 0);
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

TEST_F(AppWindowTest, StartsWithTheFileReadOnly) {
    const std::u16string path = folder_.Write(u"data.bin", "content");
    Start(path);
    EXPECT_EQ(Title(), u"app.title - data.bin");
    EXPECT_EQ(MenuStateOf(Command::Save) & MF_GRAYED, 0U);
    EXPECT_EQ(MenuStateOf(Command::ToggleReadOnly) & MF_CHECKED, MF_CHECKED);
    EXPECT_EQ(MenuText(Command::RecentFirst), u"1 " + path);
    EXPECT_EQ(window_->StatusBar().Text(), u"status.offset: 0x00000000  status.encoding: ASCII  "
                                           u"status.readonly  status.zoom: 100%");
}

TEST_F(AppWindowTest, FillsItsClientAreaWithTheViewAboveTheStatusBar) {
    Start();
    ::SetWindowPos(Main(), nullptr, 10, 20, 700, 500, SWP_NOZORDER);
    RECT client{};
    ::GetClientRect(Main(), &client);
    const RECT view = PlaceOf(Hex());
    const RECT bar = PlaceOf(window_->StatusBar().Handle());
    EXPECT_EQ(view.right - view.left, client.right);
    EXPECT_EQ(view.bottom, bar.top);
    EXPECT_EQ(bar.bottom - view.top, client.bottom);
}

TEST_F(AppWindowTest, SavesWhatWasTypedAndKeepsTheFocusInTheView) {
    Start(folder_.Write(u"data.bin", "content"));
    Run(Command::ToggleReadOnly);
    Type("4142");
    EXPECT_EQ(Title(), u"app.title - data.bin *");
    ::SetFocus(Hex());
    Run(Command::Save);
    EXPECT_EQ(folder_.Read(u"data.bin"), "ABntent");
    EXPECT_EQ(Title(), u"app.title - data.bin");
    EXPECT_EQ(::GetFocus(), Hex());
    EXPECT_NE(::IsWindowEnabled(Hex()), FALSE);
}

TEST_F(AppWindowTest, DropsCommandsAndTheCloseButtonDuringASave) {
    Start(folder_.Write(u"data.bin", "content"));
    Run(Command::ToggleReadOnly);
    Type("41");
    ::PostMessageW(Main(), WM_CLOSE, 0, 0);
    for (const Command command :
         {Command::Close, Command::Save, Command::Exit, Command::RecentFirst})
        ::PostMessageW(Main(), WM_COMMAND, CommandId(command), 0);
    EXPECT_TRUE(window_->SaveFile()); // pumps what was posted
    EXPECT_NE(::IsWindow(Main()), FALSE);
    EXPECT_TRUE(window_->Document().IsOpen());
    EXPECT_EQ(folder_.Read(u"data.bin"), "Aontent");
}

TEST_F(AppWindowTest, WarnsOfTypingWhileReadOnlyForAWhile) {
    Start(folder_.Write(u"data.bin", "content"));
    const std::u16string before = window_->StatusBar().Text();
    Type("4");
    EXPECT_TRUE(Until([&] { return window_->StatusBar().Colors() == StatusFlashColors(); }));
    EXPECT_EQ(window_->StatusBar().Text(), u"status.readonly_blocked");
    EXPECT_TRUE(Until([&] { return window_->StatusBar().Text() == before; }));
    EXPECT_FALSE(window_->Document().IsModified());
}

TEST_F(AppWindowTest, TakesADroppedFileOfAnyPathLength) {
    Start();
    std::filesystem::path deep = folder_.Root();
    for (int level = 0; level < 3; ++level)
        deep /= std::string(100, 'd');
    std::filesystem::create_directories(deep);
    const std::u16string name(100, u'f');
    const std::u16string path = (deep / name).u16string();
    std::ofstream(deep / name, std::ios::binary) << "content";
    ::SendMessageW(Main(), WM_DROPFILES, reinterpret_cast<WPARAM>(DropOf(path)), 0);
    EXPECT_EQ(window_->Document().GetPath(), path);
    EXPECT_EQ(Title(), u"app.title - " + name);
    EXPECT_EQ(MenuText(Command::RecentFirst), u"1 " + path);
}

TEST_F(AppWindowTest, FollowsTheDpiItIsTold) {
    Start(folder_.Write(u"data.bin", "content"));
    const RECT suggested{30, 40, 830, 640};
    ::SendMessageW(Main(), WM_DPICHANGED, MAKEWPARAM(144, 144),
                   reinterpret_cast<LPARAM>(&suggested));
    EXPECT_EQ(ViewState().dpi, 144U);
    const RECT place = PlaceOf(Main());
    EXPECT_NE(::EqualRect(&place, &suggested), FALSE);
    ::SendMessageW(Main(), WM_DPICHANGED, 0, reinterpret_cast<LPARAM>(&suggested));
    EXPECT_EQ(ViewState().dpi, 96U);
}

TEST_F(AppWindowTest, StaysOpenWithItsChangesAfterCancelAtTheQuestion) {
    Start(folder_.Write(u"data.bin", "content"));
    Run(Command::ToggleReadOnly);
    Type("41");
    const UINT_PTR timer = ::SetTimer(nullptr, 0, 50, PressCancel);
    ::SendMessageW(Main(), WM_CLOSE, 0, 0);
    ::KillTimer(nullptr, timer);
    EXPECT_NE(::IsWindow(Main()), FALSE);
    EXPECT_TRUE(window_->Document().IsModified());
}

TEST_F(AppWindowTest, EndsTheMessageLoopWhenItIsClosed) {
    Start(folder_.Write(u"data.bin", "content"));
    ::PostMessageW(Main(), WM_CLOSE, 0, 0);
    EXPECT_EQ(window_->RunMessageLoop(), 0);
    EXPECT_EQ(Main(), nullptr);
}

} // namespace
} // namespace kvx
