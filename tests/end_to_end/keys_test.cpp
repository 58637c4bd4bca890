// The keys of the hex view and of the panes' lists, each with what it does.
#include "file_bytes.h"
#include "in_process.h"
#include "pane_driver.h"
#include "program_texts.h"

#include "hexview/hex_digits.h"
#include "hexview/hex_view_layout.h"
#include "panes/pane_colors.h"
#include "panes/struct_view_layout.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <ostream>
#include <ranges>

namespace kvx::test {
namespace {

struct KeyRow {
    WORD key = 0;
    bool control = false;
};

std::ostream& operator<<(std::ostream& out, const KeyRow& row) {
    return out << KeyName(row.key, row.control);
}

class KeysTest : public testing::Test {
protected:
    InProcessWindow Show(const std::string& bytes) const {
        WriteFileBytes(path_, bytes);
        return InProcessWindow(program_, path_.u16string());
    }

    ProgramCopy program_;
    TempFolder files_;
    ProgramTexts text_{program_};
    std::filesystem::path path_ = files_.Root() / "data.bin";
};

TEST_F(KeysTest, EachMovementShowsItsOffset) {
    InProcessWindow window = Show(std::string(1600, 'x'));
    const std::uint64_t page = 16 * VisibleRows(window.State());
    const std::pair<KeyRow, std::uint64_t> moves[] = {
        {{VK_RIGHT}, 1},  {{VK_DOWN}, 17},        {{VK_LEFT}, 16},      {{VK_END}, 31},
        {{VK_UP}, 15},    {{VK_HOME}, 0},         {{VK_NEXT}, page},    {{VK_DOWN}, page + 16},
        {{VK_PRIOR}, 16}, {{VK_END, true}, 1599}, {{VK_HOME, true}, 0},
    };
    for (const auto& [press, offset] : moves) {
        window.Key(press.key, press.control);
        EXPECT_TRUE(window.Status().starts_with(text_("status.offset") + u": 0x" +
                                                FormatOffset(offset, 8) + u' '))
            << press;
    }
}

TEST_F(KeysTest, EachEditReachesTheFile) {
    std::string expected = KnownBytes(64);
    InProcessWindow window = Show(expected);
    window.Run(Command::ToggleReadOnly);
    window.Type("0123456789abcdefABCDEF");
    expected.replace(0, 11, "\x01\x23\x45\x67\x89\xAB\xCD\xEF\xAB\xCD\xEF");
    window.Key(VK_INSERT);
    window.Type("4b76");
    expected.insert(11, "Kv");
    window.Key(VK_BACK);
    window.Key(VK_DELETE);
    expected.erase(12, 2).insert(12, 1, '\x11');
    window.Type("11");
    window.Run(Command::Save);
    EXPECT_TRUE(FileEquals(path_, expected));
}

TEST_F(KeysTest, TheSelectionIsCopiedAndEnded) {
    InProcessWindow window = Show("\x01\xFF\x02");
    const HexViewState& state = window.State();
    const auto mouse = [&](UINT message, float columns) {
        const auto x = std::lround(HexStart(state) + 3 * columns * state.hexCharWidth);
        ::SendMessageW(window.View(), message, MK_LBUTTON,
                       MAKELPARAM(x + 2, std::lround(state.padding) + 2));
    };
    mouse(WM_LBUTTONDOWN, 0);
    mouse(WM_MOUSEMOVE, 1);
    mouse(WM_LBUTTONUP, 1);
    ClearClipboard();
    window.Key('C', true);
    EXPECT_EQ(ClipboardText(), u"01 FF");
    window.Key(VK_ESCAPE);
    EXPECT_FALSE(state.hasSelection);
    ClearClipboard();
    window.Key('C', true);
    EXPECT_EQ(ClipboardText(), u"");
}

// Both panes beside a main window so low that their lists do not fit.
class PaneKeysTest : public KeysTest {
protected:
    PaneKeysTest() {
        program_.WriteSettings(PaneSettings(true, true));
        WriteFileBytes(path_, std::string(64, 'x'));
        window_.emplace(program_, path_.u16string());
        std::string pattern = "struct A {";
        for (int member = 0; member < 20; ++member)
            pattern += " uint8_t m" + std::to_string(member) + ";";
        window_->LoadPattern(files_.Write(u"many.kvpat", pattern + " };"));
        // All of them on the screen, of which nothing beyond its edge can be read.
        ::MoveWindow(::FindWindowW(kInspectorClass, nullptr), 0, 0, 320, 330, TRUE);
        ::MoveWindow(window_->Main(), 540, 30, 420, 330, TRUE);
    }

    bool Until(const std::function<bool()>& done) {
        return WaitUntil([&] {
            window_->Pump();
            return done();
        });
    }

    static SCROLLINFO Scroll(HWND pane) {
        SCROLLINFO info{};
        info.cbSize = sizeof info;
        info.fMask = SIF_ALL;
        ::GetScrollInfo(pane, SB_VERT, &info);
        return info;
    }

    /// Client pixels from the top to the row in the colour of the selection; -1 without one.
    static int SelectionY(HWND pane) {
        ::RedrawWindow(pane, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
        ::GdiFlush();
        const Picture picture = ClientPicture(pane);
        for (int y = 0; y < picture.height; ++y) {
            if (picture.At(2, y) == PaneColorsOf(Theme::DarkBlue).selectedRow) return y;
        }
        return -1;
    }

    std::optional<InProcessWindow> window_;
};

TEST_F(PaneKeysTest, MoveTheSelectionScrollAndCopy) {
    const std::pair<const wchar_t*, const char*> panes[] = {
        {kInspectorClass, "inspector.data.column.name"},
        {kStructViewClass, "structview.column.offset"}};
    for (const auto& [className, firstCaption] : panes) {
        SCOPED_TRACE(firstCaption);
        const HWND pane = ::FindWindowW(className, nullptr);
        ASSERT_TRUE(Until([&] { return Scroll(pane).nMax > 300; }));
        ::SetForegroundWindow(pane);
        EXPECT_EQ(SelectionY(pane), -1);
        PressIn(pane, VK_DOWN);
        int first = 0;
        EXPECT_TRUE(Until([&] { return (first = SelectionY(pane)) > 0; }));
        PressIn(pane, VK_DOWN);
        EXPECT_TRUE(Until([&] { return SelectionY(pane) == first + 32; }));
        PressIn(pane, VK_UP);
        EXPECT_TRUE(Until([&] { return SelectionY(pane) == first; }));

        const SCROLLINFO start = Scroll(pane);
        const int page = static_cast<int>(start.nPage);
        const std::pair<WORD, int> moves[] = {{VK_END, start.nMax + 1 - page},
                                              {VK_HOME, 0},
                                              {VK_NEXT, std::min(page, start.nMax + 1 - page)},
                                              {VK_PRIOR, 0}};
        for (const auto& [key, position] : moves) {
            PressIn(pane, key);
            EXPECT_EQ(Scroll(pane).nPos, position) << KeyName(key);
        }
        for (const WORD key : {WORD{'C'}, WORD{VK_INSERT}}) {
            ClearClipboard();
            PressIn(pane, key, true);
            EXPECT_TRUE(ClipboardText().starts_with(text_(firstCaption) + u'\t')) << KeyName(key);
        }
    }
}

TEST_F(PaneKeysTest, TabAndEnterUseTheButtons) {
    const HWND pane = ::FindWindowW(kStructViewClass, nullptr);
    ::SetForegroundWindow(pane);
    ::SetFocus(pane);
    for (const StructViewButton& button : std::views::reverse(kStructViewButtons)) {
        PressIn(::GetFocus(), VK_TAB);
        EXPECT_EQ(::GetFocus(), ::GetDlgItem(pane, static_cast<int>(button.command)));
    }
    const auto shownText = [&] { return ::IsWindowVisible(ChildOf(pane, L"Edit")) != FALSE; };
    EXPECT_FALSE(shownText());
    PressIn(::GetFocus(), VK_RETURN);
    EXPECT_TRUE(Until(shownText));
}

} // namespace
} // namespace kvx::test
