#include "platform/win32/clipboard.h"
#include "window_stage.h"

#include <gmock/gmock.h>

#include <future>
#include <memory>
#include <new>

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

/// Control counts as held for messages that this thread sends.
class ControlHeld {
public:
    ControlHeld() { Set(0x80); }
    ~ControlHeld() { Set(0); }
    ControlHeld(const ControlHeld&) = delete;
    ControlHeld& operator=(const ControlHeld&) = delete;

private:
    static void Set(BYTE state) {
        BYTE keys[256];
        ::GetKeyboardState(keys);
        keys[VK_CONTROL] = state;
        ::SetKeyboardState(keys);
    }
};

TEST(HexViewWindow, IsAChildWithBothScrollBarsATabStopAndItsControlId) {
    WindowStage stage;
    const HWND window = stage.window.Handle();
    wchar_t className[32] = {};
    ::GetClassNameW(window, className, 32);
    EXPECT_STREQ(className, L"Kivra.HexView");
    EXPECT_EQ(::GetParent(window), stage.parent);
    EXPECT_EQ(::GetDlgCtrlID(window), WindowStage::kControlId);
    const LONG_PTR style = ::GetWindowLongPtrW(window, GWL_STYLE);
    EXPECT_EQ(style & (WS_CHILD | WS_VISIBLE | WS_TABSTOP), WS_CHILD | WS_VISIBLE | WS_TABSTOP);
    EXPECT_EQ(::GetClassLongPtrW(window, GCL_STYLE), 0U);
    EXPECT_TRUE(HexViewWindow::RegisterWindowClass(::GetModuleHandleW(nullptr)));
}

TEST(HexViewWindow, TypedDigitsReachTheDocumentAndTheParentIsTold) {
    WindowStage stage;
    stage.View().ToggleEditable();
    stage.TakeNotifications();
    stage.Type(L"aB");
    EXPECT_EQ(stage.document.bytes[0], 0xAB);
    EXPECT_EQ(stage.State().caret, 1U);
    EXPECT_THAT(stage.notifications, IsEmpty()) << "posted, not sent";
    EXPECT_THAT(stage.TakeNotifications(),
                ElementsAre(HexViewNotification::StateChanged, HexViewNotification::StateChanged));
    stage.Send(WM_KEYDOWN, VK_INSERT);
    stage.Type(L"ff");
    stage.Send(WM_KEYDOWN, VK_BACK);
    stage.Type(L"7E");
    stage.Send(WM_KEYDOWN, VK_DELETE);
    const Bytes head(stage.document.bytes.begin(), stage.document.bytes.begin() + 4);
    EXPECT_EQ(head, (Bytes{0xAB, 0x7E, 0x02, 0x03}));
}

TEST(HexViewWindow, AnEditWhileReadOnlyIsReportedToTheParent) {
    WindowStage stage;
    stage.Type(L"1z");
    stage.Send(WM_KEYDOWN, VK_DELETE);
    EXPECT_THAT(stage.TakeNotifications(),
                ElementsAre(HexViewNotification::EditRefused, HexViewNotification::EditRefused));
    EXPECT_EQ(stage.document.bytes, CountingBytes(64));
}

TEST(HexViewWindow, ControlGivesKeysTheirOtherMeaning) {
    WindowStage stage;
    stage.View().SetCaret(0x25);
    stage.Send(WM_KEYDOWN, VK_HOME);
    EXPECT_EQ(stage.State().caret, 0x20U);
    const ControlHeld control;
    stage.Send(WM_KEYDOWN, VK_HOME);
    EXPECT_EQ(stage.State().caret, 0U);
    stage.Send(WM_KEYDOWN, VK_END);
    EXPECT_EQ(stage.State().caret, 0x3FU);
}

TEST(HexViewWindow, ADragSelectsUntilTheButtonIsReleased) {
    WindowStage stage;
    ::SetFocus(stage.parent);
    stage.Send(WM_LBUTTONDOWN, MK_LBUTTON, stage.PointOfByte(0x12));
    EXPECT_EQ(::GetFocus(), stage.window.Handle());
    EXPECT_EQ(::GetCapture(), stage.window.Handle());
    stage.Send(WM_MOUSEMOVE, MK_LBUTTON, stage.PointOfByte(0x3F));
    stage.Send(WM_LBUTTONUP, 0, stage.PointOfByte(0x3F));
    EXPECT_EQ(::GetCapture(), nullptr);
    stage.Send(WM_MOUSEMOVE, 0, stage.PointOfByte(0x20));
    EXPECT_TRUE(stage.State().hasSelection);
    EXPECT_EQ(stage.State().selAnchor, 0x12U);
    EXPECT_EQ(stage.State().selEnd, 0x3FU);
    EXPECT_EQ(stage.State().caret, 0x12U);
}

TEST(HexViewWindow, ACaptureThatIsTakenAwayEndsTheDrag) {
    WindowStage stage;
    stage.Send(WM_LBUTTONDOWN, MK_LBUTTON, stage.PointOfByte(1));
    ::SetCapture(stage.parent);
    stage.Send(WM_MOUSEMOVE, MK_LBUTTON, stage.PointOfByte(9));
    EXPECT_FALSE(stage.State().dragging);
    EXPECT_EQ(stage.State().selEnd, 1U);
    ::ReleaseCapture();
}

TEST(HexViewWindow, TheWheelScrollsAndWithControlZooms) {
    WindowStage stage(CountingBytes(16 * 1000));
    stage.Send(WM_MOUSEWHEEL, MAKEWPARAM(0, -WHEEL_DELTA));
    EXPECT_EQ(stage.State().topRow, 3U);
    stage.TakeNotifications();
    stage.Send(WM_MOUSEWHEEL, MAKEWPARAM(MK_CONTROL, WHEEL_DELTA));
    EXPECT_FLOAT_EQ(stage.State().zoom, 1.1F);
    EXPECT_THAT(stage.notifications, ElementsAre(HexViewNotification::ZoomChanged)) << "sent";
}

TEST(HexViewWindow, TheScrollBarsShowWhereTheViewStands) {
    WindowStage stage(CountingBytes(16 * 1000));
    const SCROLLINFO atTop = stage.Bar(SB_VERT);
    EXPECT_EQ(atTop.nMin, 0);
    EXPECT_EQ(atTop.nMax, 999);
    EXPECT_EQ(atTop.nPage, VisibleRows(stage.State()));
    EXPECT_EQ(atTop.nPos, 0);
    stage.Send(WM_VSCROLL, SB_LINEDOWN);
    stage.Send(WM_VSCROLL, SB_PAGEDOWN);
    EXPECT_EQ(stage.Bar(SB_VERT).nPos, static_cast<int>(atTop.nPage) + 1);
    stage.Send(WM_VSCROLL, SB_BOTTOM);
    EXPECT_EQ(stage.Bar(SB_VERT).nPos, 1000 - static_cast<int>(atTop.nPage));
    EXPECT_THAT(stage.TakeNotifications(), testing::Each(HexViewNotification::StateChanged));
}

TEST(HexViewWindow, AThumbBeyondSixteenBitsIsFollowed) {
    WindowStage stage;
    const HugeDocument huge(std::uint64_t{5} << 30U);
    stage.View().SetDocument(&huge, nullptr);
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
    RECT client{};
    ::GetClientRect(stage.window.Handle(), &client);
    EXPECT_EQ(stage.State().clientHeightPx, static_cast<std::uint32_t>(client.bottom));
    EXPECT_EQ(stage.Bar(SB_VERT).nPage, VisibleRows(stage.State()));
    stage.Send(WM_HSCROLL, SB_RIGHT);
    EXPECT_EQ(stage.State().scrollX, LargestScrollX(stage.State()));
    EXPECT_EQ(stage.Bar(SB_HORZ).nPos, stage.State().scrollX);
    stage.Resize(WindowStage::kWidth, WindowStage::kHeight);
    EXPECT_FALSE(isShown());
    EXPECT_EQ(stage.State().scrollX, 0);
}

TEST(HexViewWindow, ControlCCopiesTheSelectionToTheClipboard) {
    WindowStage stage({0x00, 0xFF, 0x1B});
    stage.View().SetSelection(0, 1);
    const ControlHeld control;
    stage.Send(WM_KEYDOWN, 'C');
    EXPECT_EQ(ClipboardText(), u"00 FF");
}

TEST(HexViewWindow, AClipboardHeldByAnotherProgramKeepsItsText) {
    WindowStage stage;
    ASSERT_TRUE(SetClipboardText(stage.parent, u"kept"));
    std::promise<void> release;
    std::promise<bool> held;
    // The clipboard is open for a thread: another thread's stands for another program's.
    auto holder = std::async(std::launch::async, [&] {
        held.set_value(::OpenClipboard(nullptr) != FALSE);
        release.get_future().wait();
        ::CloseClipboard();
    });
    ASSERT_TRUE(held.get_future().get());
    EXPECT_FALSE(SetClipboardText(stage.parent, u"lost"));
    release.set_value();
    holder.get();
    EXPECT_EQ(ClipboardText(), u"kept");
}

TEST(HexViewWindow, TheInsertCaretBlinksWhileTheWindowHasTheFocus) {
    WindowStage stage;
    stage.View().ToggleEditable();
    ::SetFocus(stage.window.Handle());
    ASSERT_TRUE(stage.State().focused);
    stage.Send(WM_KEYDOWN, VK_INSERT);
    EXPECT_TRUE(stage.State().caretBlinkOn);
    EXPECT_TRUE(WindowStage::PumpUntil([&] { return !stage.State().caretBlinkOn; }));
    ::SetFocus(stage.parent);
    EXPECT_FALSE(stage.State().focused);
    EXPECT_FALSE(::KillTimer(stage.window.Handle(), 1)) << "no timer is left running";
}

TEST(HexViewWindow, AnotherTimerIsNotTheBlinkTimer) {
    WindowStage stage;
    const bool phase = stage.State().caretBlinkOn;
    stage.Send(WM_TIMER, 2);
    EXPECT_EQ(stage.State().caretBlinkOn, phase);
    stage.Send(WM_TIMER, 1);
    EXPECT_NE(stage.State().caretBlinkOn, phase);
}

TEST(HexViewWindow, ADpiChangeIsTakenOverAndZeroCountsAs96) {
    WindowStage stage;
    stage.Send(WM_DPICHANGED, MAKEWPARAM(144, 144));
    EXPECT_EQ(stage.State().dpi, 144U);
    stage.Send(WM_DPICHANGED, 0);
    EXPECT_EQ(stage.State().dpi, 96U);
}

TEST(HexViewWindow, AnExceptionStaysInsideAndDoesNotRepaintForEver) {
    class FailingDocument final : public IReadOnlyDocument {
    public:
        bool IsOpen() const override { return true; }
        std::uint64_t GetSize() const override { return 100; }
        std::u16string GetPath() const override { return {}; }
        Bytes ReadBytes(std::uint64_t, std::uint64_t) const override { throw std::bad_alloc(); }
    };
    WindowStage stage;
    const FailingDocument failing;
    stage.View().SetDocument(&failing, nullptr);
    ::UpdateWindow(stage.window.Handle());
    EXPECT_FALSE(::GetUpdateRect(stage.window.Handle(), nullptr, FALSE));
    stage.View().SetDocument(nullptr, nullptr);
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
