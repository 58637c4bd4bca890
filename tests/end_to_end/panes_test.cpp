// The tool windows beside the real main window, and the data inspector's values.
#include "file_bytes.h"
#include "in_process.h"
#include "pane_driver.h"
#include "program_texts.h"

#include "encoding/text_encoding.h"
#include "panes/inspector_model.h"
#include "panes/pane_colors.h"
#include "panes/struct_view_layout.h"
#include "platform/text.h"

#include <gtest/gtest.h>

#include <commctrl.h>

namespace kvx::test {
namespace {

struct Place {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;

    friend bool operator==(const Place&, const Place&) = default;
};

Place PlaceOf(HWND window) {
    RECT place{};
    ::GetWindowRect(window, &place);
    return {place.left, place.top, place.right, place.bottom};
}

/// A pane on the edge between two screens: wherever it is docked, its DPI changes. `data` counts.
LRESULT CALLBACK BetweenScreens(HWND pane, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                                DWORD_PTR data) {
    constexpr int kSuggestedLeft = 10;
    const LRESULT answer = ::DefSubclassProc(pane, message, wParam, lParam);
    if (message != WM_WINDOWPOSCHANGED) return answer;
    const auto& moved = *reinterpret_cast<const WINDOWPOS*>(lParam);
    int& changes = *reinterpret_cast<int*>(data);
    if ((moved.flags & SWP_NOMOVE) != 0 || moved.x == kSuggestedLeft || changes == 20)
        return answer;
    const int dpi = ++changes % 2 == 0 ? 96 : 144;
    const RECT suggested{kSuggestedLeft, 20, kSuggestedLeft + 6 * dpi, 620};
    ::SendMessageW(pane, WM_DPICHANGED, MAKEWPARAM(dpi, dpi), reinterpret_cast<LPARAM>(&suggested));
    return answer;
}

class PanesTest : public testing::Test {
protected:
    std::unique_ptr<KivraProcess> Start(const std::string& settings, const std::string& bytes) {
        if (!settings.empty()) program_.WriteSettings(settings);
        WriteFileBytes(path_, bytes);
        auto kivra = std::make_unique<KivraProcess>(program_, Quoted(path_));
        EXPECT_TRUE(kivra->WaitForWindow());
        return kivra;
    }

    /// The text that the inspector copies with `bytes` at the caret.
    std::u16string InspectorText(ByteView bytes) const {
        InspectorModel model;
        model.SetTexts(text_);
        InspectorRequest request;
        request.bytes.assign(bytes.begin(), bytes.end());
        request.unavailableText = text_("inspector.data.value.unavailable");
        model.SetRows(ComputeInspectorRows(request));
        return ListCopyText(model);
    }

    ProgramCopy program_;
    TempFolder files_;
    ProgramTexts text_{program_};
    std::filesystem::path path_ = files_.Root() / "data.bin";
};

TEST_F(PanesTest, BothTravelWithTheMainWindowAndGoWithIt) {
    const auto kivra = Start(PaneSettings(true, true), "content");
    const HWND main = kivra->MainWindow();
    const HWND inspector = WaitForPane(*kivra, kInspectorClass);
    const HWND structView = WaitForPane(*kivra, kStructViewClass);
    ASSERT_TRUE(inspector != nullptr && structView != nullptr);
    const auto docked = [&] {
        const Place middle = PlaceOf(main);
        const Place right = PlaceOf(inspector);
        const Place left = PlaceOf(structView);
        return right.left == middle.right + 1 && left.right == middle.left - 1 &&
               right.top == middle.top && right.bottom == middle.bottom && left.top == middle.top &&
               left.bottom == middle.bottom;
    };
    EXPECT_TRUE(WaitUntil(docked));
    ::MoveWindow(main, 540, 30, 420, 600, TRUE);
    EXPECT_TRUE(WaitUntil(docked));
    EXPECT_EQ(::GetForegroundWindow(), main);

    const HWND panes[] = {inspector, structView};
    const auto shown = [&](bool expected) {
        return WaitUntil([&] {
            return std::ranges::all_of(
                panes, [&](HWND pane) { return (::IsWindowVisible(pane) != FALSE) == expected; });
        });
    };
    ::ShowWindow(main, SW_MINIMIZE);
    EXPECT_TRUE(shown(false));
    ::ShowWindow(main, SW_RESTORE);
    EXPECT_TRUE(shown(true));
    EXPECT_TRUE(WaitUntil(docked));
    kivra->RequestClose();
    EXPECT_EQ(kivra->WaitForExit(), 0);
}

TEST_F(PanesTest, TheyTakeTheSizeOfAnotherDpiAndStayInTheirPlace) {
    program_.WriteSettings(PaneSettings(true, true));
    const InProcessWindow window(program_);
    const HWND main = ::GetAncestor(window.View(), GA_ROOT);
    const HWND structView = ::FindWindowW(kStructViewClass, nullptr);
    ASSERT_NE(structView, nullptr);
    const RECT suggested{10, 20, 790, 620};
    for (const int dpi : {144, 96}) {
        ::SendMessageW(structView, WM_DPICHANGED, MAKEWPARAM(dpi, dpi),
                       reinterpret_cast<LPARAM>(&suggested));
        const Place button = PlaceOf(::GetDlgItem(structView, 4104));
        EXPECT_EQ(button.right - button.left, 128 * dpi / 96);
        const Place pane = PlaceOf(structView);
        EXPECT_EQ(pane.right - pane.left, 780);
        EXPECT_EQ(pane.right, PlaceOf(main).left - 1);
    }
}

TEST_F(PanesTest, DockingEndsWhereTheDpiChangesWithEachPlace) {
    program_.WriteSettings(PaneSettings(false, true));
    const InProcessWindow window(program_);
    int changes = 0;
    ::SetWindowSubclass(::FindWindowW(kStructViewClass, nullptr), &BetweenScreens, 0,
                        reinterpret_cast<DWORD_PTR>(&changes));
    ::MoveWindow(::GetAncestor(window.View(), GA_ROOT), 540, 30, 420, 600, TRUE);
    EXPECT_GT(changes, 0);
    EXPECT_LT(changes, 10);
}

TEST_F(PanesTest, TheyReturnToTheirPlaceWhenTheUserHasMovedSizedOrRestoredThem) {
    program_.WriteSettings(PaneSettings(true, false));
    const InProcessWindow window(program_);
    const HWND main = ::GetAncestor(window.View(), GA_ROOT);
    const HWND inspector = ::FindWindowW(kInspectorClass, nullptr);
    const auto expectDocked = [&] {
        const Place beside = PlaceOf(main);
        EXPECT_EQ(PlaceOf(inspector),
                  (Place{beside.right + 1, beside.top, beside.right + 401, beside.bottom}));
    };
    ::SendMessageW(inspector, WM_ENTERSIZEMOVE, 0, 0);
    ::MoveWindow(inspector, 10, 10, 400, 300, TRUE);
    ::SendMessageW(inspector, WM_EXITSIZEMOVE, 0, 0);
    expectDocked();
    ::ShowWindow(inspector, SW_MAXIMIZE);
    ::MoveWindow(main, 40, 30, 420, 600, TRUE);
    ::ShowWindow(inspector, SW_RESTORE);
    expectDocked();
}

TEST_F(PanesTest, ClosingByTheUserIsRemembered) {
    {
        const auto kivra = Start({}, "content");
        const HWND inspector = WaitForPane(*kivra, kInspectorClass);
        ASSERT_NE(inspector, nullptr) << "it is there from the first start";
        EXPECT_FALSE(IsShown(*kivra, kStructViewClass));
        kivra->Run(Command::ToggleStructView);
        EXPECT_NE(WaitForPane(*kivra, kStructViewClass), nullptr);
        CloseByUser(inspector);
        EXPECT_TRUE(WaitForEnd(*kivra, kInspectorClass));
        kivra->RequestClose();
        EXPECT_EQ(kivra->WaitForExit(), 0);
    }
    const auto kivra = Start({}, "content");
    const HWND structView = WaitForPane(*kivra, kStructViewClass);
    EXPECT_NE(structView, nullptr);
    EXPECT_FALSE(IsShown(*kivra, kInspectorClass));
    kivra->Run(Command::ToggleDataInspector);
    EXPECT_NE(WaitForPane(*kivra, kInspectorClass), nullptr);
    kivra->Run(Command::ToggleDataInspector);
    EXPECT_FALSE(IsShown(*kivra, kInspectorClass));
    CloseByUser(structView);
    EXPECT_TRUE(WaitForEnd(*kivra, kStructViewClass));
}

TEST_F(PanesTest, BothEndOnTheLastOfAThousandMoves) {
    const std::string bytes = KnownBytes(20'000);
    const auto kivra = Start(PaneSettings(true, true), bytes);
    const HWND inspector = WaitForPane(*kivra, kInspectorClass);
    const HWND structView = WaitForPane(*kivra, kStructViewClass);
    files_.Write(u"byte.kvpat", std::string_view("struct A { uint8_t a; };"));
    Click(structView, kStructViewOpenCommand);
    EXPECT_TRUE(ChooseInFileDialog(kivra->Id(), (files_.Root() / "byte.kvpat").wstring()));
    for (int move = 0; move < 1000; ++move)
        ::PostMessageW(kivra->View(), WM_KEYDOWN, VK_DOWN, 0);
    const auto* const data = reinterpret_cast<const std::uint8_t*>(bytes.data());
    const std::u16string last = InspectorText({data + 16'000, 96});
    EXPECT_EQ(WaitForList(inspector, last), last);
    EXPECT_EQ(WaitForList(inspector, last, VK_INSERT), last);
    char row[16] = {};
    std::snprintf(row, sizeof row, "\t0x%02X", data[16'000]);
    std::u16string members;
    EXPECT_TRUE(WaitUntil([&] {
        members = CopiedList(structView);
        return members.ends_with(std::u16string(row, row + 5));
    })) << Utf16ToUtf8(members);
    kivra->Run(Command::Close);
    const std::u16string nothing = InspectorText({});
    EXPECT_EQ(WaitForList(inspector, nothing), nothing);
}

TEST_F(PanesTest, ThemeAndLanguageReachBothPanes) {
    const auto kivra = Start(PaneSettings(true, true), "content");
    const HWND inspector = WaitForPane(*kivra, kInspectorClass);
    const HWND structView = WaitForPane(*kivra, kStructViewClass);
    kivra->Run(Command::LanguageJapanese);
    const ProgramTexts japanese(program_, UiLanguage::Japanese);
    EXPECT_EQ(TextOf(inspector), japanese("inspector.data.title"));
    EXPECT_EQ(TextOf(structView), japanese("structview.title"));
    EXPECT_EQ(TextOf(::GetDlgItem(structView, 4104)), japanese("structview.reload.button"));
    // All of both on the screen, of which nothing beyond its edge can be read.
    ::MoveWindow(inspector, 0, 0, 320, 600, TRUE);
    ::MoveWindow(kivra->MainWindow(), 540, 30, 420, 600, TRUE);
    const std::pair<Command, Theme> themes[] = {{Command::ThemeLight, Theme::Light},
                                                {Command::ThemeBlack, Theme::Black},
                                                {Command::ThemeDarkBlue, Theme::DarkBlue}};
    for (const auto& [command, theme] : themes) {
        kivra->Run(command);
        const PaneColors colors = PaneColorsOf(theme);
        for (const HWND pane : {inspector, structView}) {
            EXPECT_TRUE(WaitUntil([&] {
                const Picture picture = ClientPicture(pane);
                return picture.Count(colors.background) > 20'000 &&
                       picture.Count(colors.headerBand) > 5'000;
            })) << CommandId(command);
        }
    }
}

} // namespace
} // namespace kvx::test
