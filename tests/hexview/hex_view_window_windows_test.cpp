#include "window_stage.h"

#include <gtest/gtest.h>

#include <imm.h>

namespace kvx {
namespace {

TEST(HexViewWindow, TheScrollBarsShowWhereTheViewStands) {
    WindowStage stage(CountingBytes(16 * 1000));
    const SCROLLINFO atTop = stage.Bar(SB_VERT);
    EXPECT_EQ(atTop.nMax, 999);
    EXPECT_EQ(atTop.nPage, VisibleRows(stage.State()));
    stage.Send(WM_MOUSEWHEEL, MAKEWPARAM(0, -WHEEL_DELTA));
    stage.Send(WM_VSCROLL, SB_PAGEDOWN);
    EXPECT_EQ(stage.Bar(SB_VERT).nPos, 3 + static_cast<int>(atTop.nPage));
    stage.Send(WM_MOUSEWHEEL, MAKEWPARAM(MK_CONTROL, WHEEL_DELTA));
    EXPECT_EQ(stage.sent, std::vector{HexViewNotification::ZoomChanged}) << "others are posted";
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

TEST(HexViewWindow, NoInputMethodComesBetweenItAndTheKeys) {
    WindowStage stage;
    EXPECT_NE(::ImmGetContext(stage.parent), nullptr);
    EXPECT_EQ(::ImmGetContext(stage.window.Handle()), nullptr);
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

TEST(HexViewWindow, TheViewOutlivesItsWindow) {
    WindowStage stage;
    ::DestroyWindow(stage.parent);
    EXPECT_EQ(stage.window.Handle(), nullptr);
    stage.View().SetCaret(7);
    stage.View().SetZoom(0.5F);
    EXPECT_EQ(stage.State().caret, 7U);
}

} // namespace
} // namespace kvx
