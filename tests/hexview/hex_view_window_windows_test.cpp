#include "window_stage.h"

#include <gmock/gmock.h>

#include <memory>

namespace kvx {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::u16string ClipboardText() {
    std::u16string text;
    if (!::OpenClipboard(nullptr)) return u"(cannot be opened)";
    if (const HANDLE data = ::GetClipboardData(CF_UNICODETEXT)) {
        if (const void* const start = ::GlobalLock(data))
            text = static_cast<const char16_t*>(start);
        ::GlobalUnlock(data);
    }
    ::CloseClipboard();
    return text;
}

/// Whether Control counts as held for messages that this thread sends.
void HoldControl(bool held) {
    BYTE keys[256];
    ::GetKeyboardState(keys);
    keys[VK_CONTROL] = held ? 0x80 : 0;
    ::SetKeyboardState(keys);
}

TEST(HexViewWindow, PostsToTheParentThatDigitsReachTheDocumentOrAreRefused) {
    using enum HexViewNotification;
    WindowStage stage;
    stage.Type(L"1z");
    stage.View().ToggleEditable();
    stage.Type(L"aB");
    EXPECT_THAT(stage.notifications, IsEmpty()) << "posted, not sent";
    EXPECT_THAT(stage.TakeNotifications(),
                ElementsAre(EditRefused, StateChanged, StateChanged, StateChanged));
    stage.Send(WM_KEYDOWN, VK_INSERT);
    stage.Type(L"ff");
    stage.Send(WM_KEYDOWN, VK_BACK);
    stage.Type(L"7E");
    stage.Send(WM_KEYDOWN, VK_DELETE);
    const Bytes head(stage.document.bytes.begin(), stage.document.bytes.begin() + 4);
    EXPECT_EQ(head, (Bytes{0xAB, 0x7E, 0x02, 0x03}));
}

TEST(HexViewWindow, ControlMovesFartherAndCopiesToTheClipboard) {
    WindowStage stage({0x00, 0xFF, 0x1B});
    HoldControl(true);
    stage.Send(WM_KEYDOWN, VK_END);
    EXPECT_EQ(stage.State().caret, 2U);
    stage.View().SetSelection(0, 1);
    stage.Send(WM_KEYDOWN, 'C');
    HoldControl(false);
    EXPECT_EQ(ClipboardText(), u"00 FF");
}

TEST(HexViewWindow, ADragSelectsUntilTheButtonIsReleasedOrTheCaptureTakenAway) {
    WindowStage stage;
    stage.Send(WM_LBUTTONDOWN, MK_LBUTTON, stage.PointOfByte(0x12));
    EXPECT_EQ(::GetCapture(), stage.window.Handle());
    stage.Send(WM_MOUSEMOVE, MK_LBUTTON, stage.PointOfByte(0x3F));
    stage.Send(WM_LBUTTONUP, 0, stage.PointOfByte(0x3F));
    EXPECT_EQ(::GetCapture(), nullptr);
    stage.Send(WM_MOUSEMOVE, 0, stage.PointOfByte(0x20));
    EXPECT_EQ(stage.State().selAnchor, 0x12U);
    EXPECT_EQ(stage.State().selEnd, 0x3FU);
    stage.Send(WM_LBUTTONDOWN, MK_LBUTTON, stage.PointOfByte(1));
    ::SetCapture(stage.parent);
    stage.Send(WM_MOUSEMOVE, MK_LBUTTON, stage.PointOfByte(9));
    EXPECT_EQ(stage.State().selEnd, 1U);
    ::ReleaseCapture();
}

TEST(HexViewWindow, TheScrollBarsShowWhereTheViewStands) {
    WindowStage stage(CountingBytes(16 * 1000));
    const SCROLLINFO atTop = stage.Bar(SB_VERT);
    EXPECT_EQ(atTop.nMax, 999);
    EXPECT_EQ(atTop.nPage, VisibleRows(stage.State()));
    stage.Send(WM_MOUSEWHEEL, MAKEWPARAM(0, -WHEEL_DELTA));
    stage.Send(WM_VSCROLL, SB_PAGEDOWN);
    EXPECT_EQ(stage.Bar(SB_VERT).nPos, 3 + static_cast<int>(atTop.nPage));
    stage.TakeNotifications();
    stage.Send(WM_MOUSEWHEEL, MAKEWPARAM(MK_CONTROL, WHEEL_DELTA));
    EXPECT_THAT(stage.notifications, ElementsAre(HexViewNotification::ZoomChanged)) << "sent";
}

TEST(HexViewWindow, AThumbBeyondSixteenBitsIsFollowed) {
    WindowStage stage;
    stage.document.zerosBehind = 5ULL << 30U;
    stage.View().SetDocument(&stage.document, nullptr);
    SCROLLINFO thumb{};
    thumb.cbSize = sizeof(thumb);
    thumb.fMask = SIF_POS;
    thumb.nPos = 0x123456;
    ::SetScrollInfo(stage.window.Handle(), SB_VERT, &thumb, FALSE);
    stage.Send(WM_VSCROLL, MAKEWPARAM(SB_THUMBTRACK, 0x3456));
    EXPECT_EQ(stage.State().topRow, 0x123456U);
}

TEST(HexViewWindow, TheHorizontalBarComesOnlyWhenTheWindowIsNarrow) {
    WindowStage stage(CountingBytes(16 * 100));
    const auto isShown = [&] {
        return (::GetWindowLongPtrW(stage.window.Handle(), GWL_STYLE) & WS_HSCROLL) != 0;
    };
    EXPECT_FALSE(isShown());
    stage.Resize(400, WindowStage::kHeight);
    EXPECT_TRUE(isShown());
    EXPECT_EQ(stage.Bar(SB_VERT).nPage, VisibleRows(stage.State()));
    stage.Send(WM_HSCROLL, SB_RIGHT);
    EXPECT_EQ(stage.Bar(SB_HORZ).nPos, LargestScrollX(stage.State()));
    stage.Resize(WindowStage::kWidth, WindowStage::kHeight);
    EXPECT_FALSE(isShown());
    EXPECT_EQ(stage.State().scrollX, 0);
}

TEST(HexViewWindow, TheBlinkTimerRunsWhileInsertingWithTheFocus) {
    WindowStage stage;
    const HWND window = stage.window.Handle();
    stage.View().ToggleEditable();
    stage.Send(WM_KEYDOWN, VK_INSERT);
    stage.Send(WM_SETFOCUS);
    stage.Send(WM_TIMER, 2); // some other timer
    EXPECT_TRUE(stage.State().caretBlinkOn);
    stage.Send(WM_TIMER, 1);
    EXPECT_FALSE(stage.State().caretBlinkOn);
    // Killing a timer tells whether it ran.
    EXPECT_EQ(::KillTimer(window, 1) != FALSE, ::GetCaretBlinkTime() != INFINITE);
    stage.Send(WM_SETFOCUS);
    stage.Send(WM_KILLFOCUS);
    EXPECT_FALSE(::KillTimer(window, 1));
}

TEST(HexViewWindow, AnExceptionStaysInsideAndDoesNotRepaintForEver) {
    WindowStage stage;
    stage.document.outOfMemory = true;
    stage.View().SetCaret(1);
    ::UpdateWindow(stage.window.Handle());
    EXPECT_FALSE(::GetUpdateRect(stage.window.Handle(), nullptr, FALSE));
}

TEST(HexViewWindow, TheViewOutlivesItsWindowAndAWindowNeverItsView) {
    WindowStage stage;
    ::DestroyWindow(stage.parent);
    EXPECT_EQ(stage.window.Handle(), nullptr);
    stage.View().SetCaret(7);
    stage.View().SetZoom(0.5F);
    EXPECT_EQ(stage.State().caret, 7U);
    WindowStage other;
    auto second = std::make_unique<HexViewWindow>();
    ASSERT_TRUE(second->Create(::GetModuleHandleW(nullptr), other.parent, 3));
    const HWND handle = second->Handle();
    second.reset();
    EXPECT_FALSE(::IsWindow(handle));
}

} // namespace
} // namespace kvx
