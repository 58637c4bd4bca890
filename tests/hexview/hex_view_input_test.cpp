#include "hexview/hex_view.h"

#include "hexview/hex_view_layout.h"
#include "tests/hexview/view_stage.h"

#include <gtest/gtest.h>

namespace kvx {
namespace {

using enum HexViewNotification;
using Notifications = std::vector<HexViewNotification>;

struct MoveRow {
    const char* name;
    std::size_t size;
    std::uint64_t from;
    Key key;
    bool control;
    std::uint64_t overwriting; ///< where the caret goes in overwrite mode
    std::uint64_t inserting;   ///< and in insert mode
};

const MoveRow kMoves[] = {
    {"left", 20, 5, Key::Left, false, 4, 4},
    {"left at the start", 20, 0, Key::Left, false, 0, 0},
    {"right", 20, 5, Key::Right, false, 6, 6},
    {"right at the last byte", 20, 19, Key::Right, false, 19, 20},
    {"up", 40, 20, Key::Up, false, 4, 4},
    {"up from the first row", 40, 9, Key::Up, false, 0, 0},
    {"down", 40, 4, Key::Down, false, 20, 20},
    {"down past the end", 40, 30, Key::Down, false, 39, 40},
    {"page up", 1000, 500, Key::PageUp, false, 340, 340},
    {"page up past the start", 1000, 100, Key::PageUp, false, 0, 0},
    {"page down", 1000, 500, Key::PageDown, false, 660, 660},
    {"page down past the end", 1000, 900, Key::PageDown, false, 999, 1000},
    {"home", 40, 20, Key::Home, false, 16, 16},
    {"control home", 40, 20, Key::Home, true, 0, 0},
    {"end", 40, 3, Key::End, false, 15, 15},
    {"end in the last row", 20, 17, Key::End, false, 19, 20},
    {"end of a whole last row", 32, 20, Key::End, false, 31, 31},
    {"control end", 40, 3, Key::End, true, 39, 40},
    {"control end without bytes", 0, 0, Key::End, true, 0, 0},
    {"end without bytes", 0, 0, Key::End, false, 0, 0},
};

TEST(HexViewKeys, MoveTheCaretAndEndTheSelection) {
    for (const MoveRow& row : kMoves) {
        for (const InsertMode mode : {InsertMode::Overwrite, InsertMode::Insert}) {
            ViewStage stage(CountingBytes(row.size));
            stage.Enter(mode, row.from);
            stage.view.SetSelection(0, 1);
            EXPECT_EQ(stage.view.OnKeyDown(row.key, row.control), Handled::Yes) << row.name;
            const bool inserting = mode == InsertMode::Insert;
            EXPECT_EQ(stage.State().caret, inserting ? row.inserting : row.overwriting)
                << row.name << (inserting ? ", inserting" : ", overwriting");
            EXPECT_FALSE(stage.State().hasSelection) << row.name;
            EXPECT_EQ(stage.host.notifications, Notifications{StateChanged}) << row.name;
        }
    }
}

TEST(HexViewKeys, AreTheSystemsWithoutADocumentAndForAnyOtherKey) {
    ViewStage stage(CountingBytes(20));
    constexpr auto kTab = static_cast<Key>(0x09);
    EXPECT_EQ(stage.view.OnKeyDown(kTab, false), Handled::No);
    EXPECT_EQ(stage.view.OnKeyDown(Key::C, false), Handled::No);
    stage.document.open = false;
    for (const Key key : {Key::Left, Key::Home, Key::Insert, Key::Delete, Key::Escape, Key::C})
        EXPECT_EQ(stage.view.OnKeyDown(key, true), Handled::No) << static_cast<std::uint32_t>(key);
    EXPECT_EQ(stage.host.notifications, Notifications());
    EXPECT_EQ(stage.host.invalidations, 0);
}

TEST(HexViewKeys, ReachEveryRowOfAFileThatIsTooLongForItsScrollBar) {
    const HugeDocument document(1ULL << 40U); // 2^36 rows
    ViewStage stage(document);
    stage.view.OnKeyDown(Key::End, true);
    EXPECT_EQ(stage.State().topRow, (1ULL << 36U) - 10);
    EXPECT_EQ(stage.host.vertical, (ScrollBar{0x7FFFFFFF, 10, 0x7FFFFFFF}));
    stage.view.OnKeyDown(Key::PageUp, false);
    stage.view.OnKeyDown(Key::Up, false);
    EXPECT_EQ(stage.State().topRow, (1ULL << 36U) - 12);
}

TEST(HexViewKeys, EscapeEndsTheSelectionWithoutMovingTheCaret) {
    ViewStage stage(CountingBytes(64));
    stage.view.OnLeftButtonDown({140, 20});
    stage.host.Forget();
    EXPECT_EQ(stage.view.OnKeyDown(Key::Escape, false), Handled::Yes);
    EXPECT_FALSE(stage.State().hasSelection || stage.State().dragAnchorValid);
    EXPECT_EQ(stage.State().caret, 1U);
    EXPECT_EQ(stage.host.invalidations, 1);
    stage.view.OnMouseMove({200, 20}); // the button is still down
    EXPECT_FALSE(stage.State().hasSelection);
}

TEST(HexViewKeys, ControlCCopiesTheSelectionAndNothingWithoutOne) {
    ViewStage stage(Bytes{0x11, 0x00, 0xFF, 0x22});
    stage.view.OnKeyDown(Key::C, true);
    EXPECT_TRUE(stage.host.copies.empty());
    stage.view.SetSelection(2, 1);
    EXPECT_EQ(stage.view.OnKeyDown(Key::C, true), Handled::Yes);
    EXPECT_EQ(stage.host.copies, std::vector<std::u16string>{u"00 FF"});
    EXPECT_TRUE(stage.State().hasSelection);
}

TEST(HexViewMouse, AClickSelectsItsByteAndADragExtendsFromThereWhileTheCaretStays) {
    ViewStage stage(CountingBytes(64));
    stage.view.OnLeftButtonDown({142, 35}); // row 1, byte 1
    EXPECT_EQ(stage.State().caret, 17U);
    EXPECT_TRUE(stage.State().hasSelection && stage.host.captured);
    EXPECT_EQ(stage.host.focusRequests, 1);
    EXPECT_EQ(stage.host.notifications, Notifications{StateChanged});

    stage.view.OnMouseMove({602 + 8 * 3, 60}); // text of row 2, byte 3
    stage.view.OnMouseMove({5, 5});            // nothing there
    EXPECT_EQ(stage.State().selAnchor, 17U);
    EXPECT_EQ(stage.State().selEnd, 35U);
    EXPECT_EQ(stage.State().caret, 17U);

    stage.view.OnLeftButtonUp();
    EXPECT_FALSE(stage.host.captured);
    stage.view.OnMouseMove({110, 10});
    EXPECT_EQ(stage.State().selEnd, 35U);
}

TEST(HexViewMouse, AClickBesideTheBytesOnlyTakesTheFocus) {
    ViewStage stage(CountingBytes(64));
    stage.Enter(InsertMode::Overwrite, 5);
    stage.view.SetSelection(1, 2);
    stage.host.Forget();
    for (const PointPx point : {PointPx{50, 20}, PointPx{595, 20}, PointPx{110, 120}})
        stage.view.OnLeftButtonDown(point);
    EXPECT_EQ(stage.State().caret, 5U);
    EXPECT_TRUE(stage.State().hasSelection);
    EXPECT_FALSE(stage.State().dragging || stage.host.captured);
    EXPECT_EQ(stage.host.focusRequests, 3);
    EXPECT_EQ(stage.host.invalidations, 0);
}

TEST(HexViewMouse, LosingTheCaptureEndsTheDrag) {
    ViewStage stage(CountingBytes(64));
    stage.view.OnLeftButtonDown({110, 10});
    stage.view.OnCaptureLost();
    stage.view.OnMouseMove({200, 10});
    EXPECT_EQ(stage.State().selEnd, 0U);
    EXPECT_FALSE(stage.State().dragging || stage.State().dragAnchorValid);
}

TEST(HexViewMouse, TheWheelScrollsThreeRowsOrZoomsAStepWhateverItsDelta) {
    ViewStage stage(CountingBytes(1000));
    stage.view.OnWheel(-1200, false);
    stage.view.OnWheel(-1, false);
    EXPECT_EQ(stage.State().topRow, 6U);
    stage.view.OnWheel(120, false);
    stage.view.OnWheel(120, false);
    stage.view.OnWheel(120, false);
    EXPECT_EQ(stage.State().topRow, 0U);
    EXPECT_EQ(stage.State().zoom, 1.0F);
    stage.view.OnWheel(480, true);
    EXPECT_EQ(stage.State().zoom, 1.1F);
    stage.view.OnWheel(-480, true);
    stage.view.OnWheel(-120, true);
    EXPECT_EQ(stage.State().zoom, 0.9F);
}

TEST(HexViewScrollBars, StepByRowsAndPagesWithinTheDocument) {
    struct Row {
        const char* name;
        std::uint64_t from;
        ScrollRequest request;
        std::int32_t track;
        std::uint64_t to;
    };
    const Row rows[] = {
        {"line back", 5, ScrollRequest::LineBack, 0, 4},
        {"line back at the top", 0, ScrollRequest::LineBack, 0, 0},
        {"line forward", 5, ScrollRequest::LineForward, 0, 6},
        {"line forward at the bottom", 53, ScrollRequest::LineForward, 0, 53},
        {"page back", 15, ScrollRequest::PageBack, 0, 5},
        {"page back near the top", 5, ScrollRequest::PageBack, 0, 0},
        {"page forward", 15, ScrollRequest::PageForward, 0, 25},
        {"page forward near the bottom", 50, ScrollRequest::PageForward, 0, 53},
        {"thumb moved", 15, ScrollRequest::ThumbTrack, 30, 30},
        {"thumb dropped", 15, ScrollRequest::ThumbPosition, 2, 2},
        {"thumb below nothing", 15, ScrollRequest::ThumbTrack, -7, 0},
        {"top", 15, ScrollRequest::First, 0, 0},
        {"bottom", 15, ScrollRequest::Last, 0, 53},
        {"end of scrolling", 15, static_cast<ScrollRequest>(8), 40, 15},
    };
    ViewStage stage(CountingBytes(1000)); // 63 rows, 10 in sight
    for (const Row& row : rows) {
        stage.view.ScrollToRow(row.from);
        stage.view.OnVerticalScroll(row.request, row.track);
        EXPECT_EQ(stage.State().topRow, row.to) << row.name;
        EXPECT_EQ(stage.State().caret, 0U) << row.name;
    }
}

TEST(HexViewScrollBars, DoNotThrowAReaderBackBeyondTheRowsThatABarCanName) {
    const HugeDocument document(1ULL << 40U);
    ViewStage stage(document);
    constexpr std::uint64_t kFarRow = 0x9'0000'0000;
    constexpr std::int32_t kBarEnd = 0x7FFFFFFF - 10 + 1;
    stage.view.ScrollToRow(kFarRow);
    stage.view.OnVerticalScroll(ScrollRequest::LineForward, kBarEnd);
    EXPECT_EQ(stage.State().topRow, kFarRow + 1);
    stage.view.OnVerticalScroll(ScrollRequest::LineBack, kBarEnd);
    stage.view.OnVerticalScroll(ScrollRequest::PageBack, kBarEnd);
    EXPECT_EQ(stage.State().topRow, kFarRow - 10);
    stage.view.OnVerticalScroll(ScrollRequest::ThumbTrack, kBarEnd);
    EXPECT_EQ(stage.State().topRow, kFarRow - 10);
    stage.view.OnVerticalScroll(ScrollRequest::ThumbTrack, kBarEnd - 1);
    EXPECT_EQ(stage.State().topRow, static_cast<std::uint64_t>(kBarEnd) - 1);
    stage.view.OnVerticalScroll(ScrollRequest::ThumbTrack, kBarEnd);
    EXPECT_EQ(stage.State().topRow, static_cast<std::uint64_t>(kBarEnd));
    stage.view.OnVerticalScroll(ScrollRequest::Last, 0);
    EXPECT_EQ(stage.State().topRow, (1ULL << 36U) - 10);
}

TEST(HexViewScrollBars, ScrollSidewaysByACharacterAPageOrTheThumb) {
    ViewStage stage(CountingBytes(16));
    stage.view.SetClientSize(318, kStageHeight); // page 200, largest 420
    stage.host.Forget();
    const std::pair<ScrollRequest, std::int32_t> rows[] = {
        {ScrollRequest::LineForward, 10},  {ScrollRequest::PageForward, 210},
        {ScrollRequest::PageForward, 410}, {ScrollRequest::PageForward, 420},
        {ScrollRequest::LineBack, 410},    {ScrollRequest::PageBack, 210},
        {ScrollRequest::ThumbTrack, 77},   {ScrollRequest::First, 0},
        {ScrollRequest::PageBack, 0},      {ScrollRequest::Last, 420},
    };
    for (const auto& [request, scrollX] : rows) {
        stage.view.OnHorizontalScroll(request, 77);
        EXPECT_EQ(stage.State().scrollX, scrollX) << static_cast<std::uint32_t>(request);
        EXPECT_EQ(stage.host.horizontal.position, scrollX);
    }
    EXPECT_EQ(stage.host.invalidations, 10);
    EXPECT_EQ(stage.host.notifications, Notifications());
}

TEST(HexViewCaret, BlinksOnlyWhileInsertingWithTheFocus) {
    ViewStage stage(CountingBytes(16));
    stage.view.OnFocusGained();
    EXPECT_TRUE(stage.State().focused && stage.State().caretBlinkOn);
    EXPECT_FALSE(stage.host.blinking);
    stage.Enter(InsertMode::Insert);
    EXPECT_TRUE(stage.host.blinking);
    stage.view.OnBlinkTimer();
    EXPECT_FALSE(stage.State().caretBlinkOn);
    EXPECT_EQ(stage.host.invalidations, 1);
    stage.view.OnKeyDown(Key::Insert, false);
    EXPECT_FALSE(stage.host.blinking);
    EXPECT_TRUE(stage.State().caretBlinkOn);
    stage.view.OnKeyDown(Key::Insert, false);
    stage.view.OnFocusLost();
    EXPECT_FALSE(stage.State().focused || stage.State().caretBlinkOn || stage.host.blinking);
    stage.view.OnFocusGained();
    EXPECT_TRUE(stage.host.blinking);
}

} // namespace
} // namespace kvx
