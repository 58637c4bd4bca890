// What the dialogs have in common: the keyboard and the DPI.
#include "dialog_user.h"
#include "waiting.h"

#include "app/dialog_layout.h"

#include <gtest/gtest.h>

namespace kvx::test {
namespace {

struct TabOrder {
    Command command;
    const wchar_t* className;
    const DialogLayout* layout;
    std::vector<int> ids; ///< from the one that has the focus at first
};

class DialogTest : public testing::TestWithParam<TabOrder> {};

TEST_P(DialogTest, ReachesEveryControlByTabAndEndsByEscapeAndItsCloseBox) {
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
    UseDialog(window, GetParam().command, GetParam().className, [](const Dialog& dialog) {
        dialog.Close();
        EXPECT_TRUE(dialog.WaitForEnd());
    });
    EXPECT_TRUE(::IsWindowEnabled(window.Main()));
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

/// Tells the dialog that its screen has this DPI now, and gives the place that it should take.
RECT MoveToDpi(const Dialog& dialog, std::uint32_t dpi) {
    SIZE size{1000, 700};
    ::SendMessageW(dialog.window, WM_GETDPISCALEDSIZE, dpi, reinterpret_cast<LPARAM>(&size));
    const RECT suggested{50, 50, 50 + size.cx, 50 + size.cy};
    ::SendMessageW(dialog.window, WM_DPICHANGED, MAKEWPARAM(dpi, dpi),
                   reinterpret_cast<LPARAM>(&suggested));
    return suggested;
}

/// In pixels, as the font was asked for.
LONG FontHeight(HWND control) {
    LOGFONTW font{};
    ::GetObjectW(reinterpret_cast<HFONT>(::SendMessageW(control, WM_GETFONT, 0, 0)), sizeof font,
                 &font);
    return std::abs(font.lfHeight);
}

DWORD Style(const Dialog& dialog, int kind) {
    return static_cast<DWORD>(::GetWindowLongW(dialog.window, kind));
}

bool CanBeResized(const Dialog& dialog) {
    return (Style(dialog, GWL_STYLE) & WS_THICKFRAME) != 0;
}

// The frame that the window really has is still that of the test's own screen.
void ExpectRoomFor(const DialogLayout& layout, const Dialog& dialog, const RECT& window,
                   std::uint32_t dpi) {
    RECT room{0, 0, ScaledPx(layout.width, dpi), ScaledPx(layout.height, dpi)};
    ::AdjustWindowRectExForDpi(&room, Style(dialog, GWL_STYLE), FALSE, Style(dialog, GWL_EXSTYLE),
                               dpi);
    EXPECT_EQ(window.right - window.left, room.right - room.left) << dpi;
    EXPECT_EQ(window.bottom - window.top, room.bottom - room.top) << dpi;
}

TEST_P(DialogTest, GrowsWithTheDpiOfItsScreen) {
    const ProgramCopy program;
    const TempFolder files;
    const InProcessWindow window(program, files.Write(u"data.bin", "content"));
    const DialogLayout& layout = *GetParam().layout;
    UseDialog(window, GetParam().command, GetParam().className, [&](const Dialog& dialog) {
        const LONG heightAt96 = FontHeight(dialog.Control(kDefaultButtonId));
        ASSERT_GT(heightAt96, 0);
        for (const std::uint32_t dpi : {144U, 96U}) {
            const RECT suggested = MoveToDpi(dialog, dpi);
            RECT taken{};
            ::GetWindowRect(dialog.window, &taken);
            EXPECT_NE(::EqualRect(&taken, &suggested), FALSE) << dpi;
            if (!CanBeResized(dialog)) ExpectRoomFor(layout, dialog, taken, dpi);
            RECT client{};
            ::GetClientRect(dialog.window, &client);
            for (const ControlLayout& control : layout.controls) {
                const RectPx place = PlaceOf(control, layout, client.right, client.bottom, dpi);
                EXPECT_TRUE(StandsAt(dialog, control, place)) << control.id << " at " << dpi;
                EXPECT_NEAR(FontHeight(dialog.Control(control.id)), ScaledPx(heightAt96, dpi), 1)
                    << control.id << " at " << dpi;
            }
        }
    });
}

INSTANTIATE_TEST_SUITE_P(
    Dialogs, DialogTest,
    testing::Values(TabOrder{Command::Find,
                             L"Kivra.SearchDialog",
                             &kSearchLayout,
                             {kSearchQueryId, kSearchPreviousId, kDefaultButtonId, kCancelButtonId,
                              kSearchTypeId}},
                    TabOrder{Command::GoTo,
                             L"Kivra.PromptDialog",
                             &kPromptLayout,
                             {kPromptAnswerId, kDefaultButtonId, kCancelButtonId}},
                    TabOrder{Command::Font,
                             L"Kivra.FontDialog",
                             &kFontLayout,
                             {kFontFamilyId, kFontSizeId, kFontBoldId, kFontItalicId,
                              kDefaultButtonId, kCancelButtonId}},
                    TabOrder{Command::About,
                             L"Kivra.AboutDialog",
                             &kAboutLayout,
                             {kDefaultButtonId, kAboutHomepageId, kAboutLicenseId}}),
    [](const auto& param) { return "Command" + std::to_string(CommandId(param.param.command)); });

TEST(DialogOwner, EndsItsDragUnderADialogAndKeepsTheSelectionWhileEscIsHeldDown) {
    const ProgramCopy program;
    const TempFolder files;
    InProcessWindow window(program, files.Write(u"data.bin", std::string(4096, 'x')));
    const HexViewState& state = window.State();
    const auto mouse = [&](UINT message, int x, int y) {
        ::SendMessageW(window.View(), message, MK_LBUTTON, MAKELPARAM(x, y));
    };
    mouse(WM_LBUTTONDOWN, 200, 60);
    ASSERT_EQ(::GetCapture(), window.View());
    mouse(WM_MOUSEMOVE, 200, 160);
    const std::uint64_t end = state.selEnd;
    ASSERT_NE(end, state.selAnchor);
    UseDialog(window, Command::GoTo, L"Kivra.PromptDialog", [&](const Dialog& dialog) {
        mouse(WM_MOUSEMOVE, 200, 260);
        dialog.Press(kCancelButtonId);
        EXPECT_TRUE(dialog.WaitForEnd());
    });
    for (const bool isHeld : {true, false}) {
        EXPECT_TRUE(state.hasSelection);
        EXPECT_EQ(state.selEnd, end);
        ::PostMessageW(window.View(), WM_KEYDOWN, VK_ESCAPE, isHeld ? LPARAM{1} << 30 : 0);
        window.Pump();
    }
    EXPECT_FALSE(state.hasSelection);
}

// The real keys, so that the accelerators and the focus take part.
class DialogKeysTest : public testing::Test {
protected:
    DialogKeysTest() { EXPECT_TRUE(kivra_.WaitForWindow()); }

    /// Opens a dialog by its key, types into the control with the focus and presses Enter.
    std::optional<Dialog> TypeInto(WORD key, std::wstring_view className, std::string_view digits) {
        EXPECT_TRUE(kivra_.Keys().TakeForeground());
        kivra_.Keys().PressWithControl(key);
        const auto dialog = WaitForDialog(kivra_.Id(), className);
        if (!dialog) return dialog;
        const Keyboard keys(dialog->window, ChildOf(dialog->window, L"Edit"));
        EXPECT_TRUE(keys.TakeForeground());
        keys.Type(digits);
        keys.Press(VK_RETURN);
        return dialog;
    }

    /// The caret, as the go-to dialog shows it.
    std::u16string Caret() {
        kivra_.Post(Command::GoTo);
        const auto dialog = WaitForDialog(kivra_.Id(), L"Kivra.PromptDialog");
        if (!dialog) return u"no dialog";
        const std::u16string text = dialog->Text(kPromptAnswerId);
        dialog->Press(kCancelButtonId);
        EXPECT_TRUE(dialog->WaitForEnd());
        return text;
    }

    ProgramCopy program_;
    TempFolder files_;
    KivraProcess kivra_{program_, Quoted(files_.Write(u"data.bin", "0123456789"))};
};

TEST_F(DialogKeysTest, SearchGoToAndTheEndNeedNoMouse) {
    const auto prompt = TypeInto('G', L"Kivra.PromptDialog", "3");
    ASSERT_TRUE(prompt && prompt->WaitForEnd());
    EXPECT_EQ(Caret(), u"3");
    const auto search = TypeInto('F', L"Kivra.SearchDialog", "3738");
    ASSERT_TRUE(search);
    EXPECT_TRUE(WaitUntil([&] { return search->Items(kSearchQueryId).size() == 1; }));
    EXPECT_TRUE(search->WaitForFocus(kSearchQueryId));
    search->Key(VK_ESCAPE);
    ASSERT_TRUE(search->WaitForEnd());
    EXPECT_EQ(Caret(), u"7");
    EXPECT_TRUE(kivra_.Keys().TakeForeground());
    kivra_.Keys().PressAltF4();
    EXPECT_EQ(kivra_.WaitForExit(), 0);
}

} // namespace
} // namespace kvx::test
