#include "hexview/hex_view.h"

#include "hexview/hex_view_layout.h"
#include "tests/hexview/view_stage.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace kvx {
namespace {

using enum HexViewNotification;
using Notifications = std::vector<HexViewNotification>;

TEST(HexView, StartsANewDocumentFromItsFirstByteReadOnlyInTheModeItWasIn) {
    ViewStage stage(CountingBytes(1000));
    stage.Enter(InsertMode::Insert, 900);
    stage.view.OnLeftButtonDown({140, 20});
    stage.view.OnMouseMove({200, 60});
    stage.Type(u"4");
    ASSERT_TRUE(stage.host.captured);
    stage.host.Forget();

    MemoryDocument next(CountingBytes(5));
    stage.view.SetDocument(&next, &next);
    const HexViewState& state = stage.State();
    EXPECT_EQ(state.document, &next);
    EXPECT_EQ(state.editableDocument, &next);
    EXPECT_EQ(state.caret + state.topRow + state.selAnchor + state.selEnd + state.dragAnchor, 0U);
    EXPECT_FALSE(state.hasSelection || state.dragging || state.dragAnchorValid);
    EXPECT_FALSE(state.nibblePending || state.editable);
    EXPECT_EQ(state.insertMode, InsertMode::Insert);
    EXPECT_FALSE(stage.host.captured);
    EXPECT_EQ(stage.host.vertical, (ScrollBar{0, 10, 0}));
    EXPECT_EQ(stage.host.focusRequests, 1);
    EXPECT_GT(stage.host.invalidations, 0);
    EXPECT_EQ(stage.host.resourceReleases, 1);
}

TEST(HexView, TakesTheDpiOfItsWindowWithADocumentAndNeverZero) {
    ViewStage stage(CountingBytes(1));
    stage.host.dpi = 144;
    stage.view.SetDocument(&stage.document, nullptr);
    EXPECT_EQ(stage.State().dpi, 144U);
    EXPECT_FLOAT_EQ(ClientWidth(stage.State()), 492.0F);
    stage.view.SetDpi(0);
    EXPECT_EQ(stage.State().dpi, 96U);
}

TEST(HexView, ZoomsInTenthsWithinItsLimitsAndReportsOnlyChanges) {
    ViewStage stage(CountingBytes(16));
    for (int i = 0; i < 30; ++i)
        stage.view.SetZoom(0.1F);
    EXPECT_EQ(stage.State().zoom, 2.5F);
    EXPECT_EQ(stage.host.notifications, Notifications(15, ZoomChanged));
    EXPECT_FLOAT_EQ(stage.State().effectiveFontSize, 40.0F);
    EXPECT_EQ(stage.State().hexCharWidth, 25.0F);

    stage.host.Forget();
    for (int i = 0; i < 30; ++i)
        stage.view.SetZoom(-0.1F);
    EXPECT_EQ(stage.State().zoom, 0.6F);
    EXPECT_EQ(stage.host.notifications, Notifications(19, ZoomChanged));

    stage.host.Forget();
    stage.view.SetZoom(0.0005F);
    EXPECT_EQ(stage.State().zoom, 0.6F);
    EXPECT_EQ(stage.host.notifications, Notifications());
    EXPECT_EQ(stage.host.invalidations, 0);
}

TEST(HexView, ComesBackToTheSameZoomAfterAnyNumberOfSteps) {
    ViewStage stage(CountingBytes(16));
    for (int round = 0; round < 1000; ++round) {
        for (int i = 0; i < 4; ++i)
            stage.view.SetZoom(-0.1F);
        ASSERT_EQ(stage.State().zoom, 0.6F) << round;
        for (int i = 0; i < 4; ++i)
            stage.view.SetZoom(0.1F);
        ASSERT_EQ(stage.State().zoom, 1.0F) << round;
    }
    stage.host.Forget();
    stage.view.ResetZoom();
    EXPECT_EQ(stage.host.notifications, Notifications());
    stage.view.SetZoom(1.45F);
    stage.view.SetZoom(0.1F);
    EXPECT_EQ(stage.State().zoom, 2.5F);
    stage.view.ResetZoom();
    EXPECT_EQ(stage.State().zoom, 1.0F);
    EXPECT_EQ(stage.host.notifications, Notifications(3, ZoomChanged));
}

TEST(HexView, KeepsTheCaretInSightWhenZoomLeavesFewerRows) {
    ViewStage stage(CountingBytes(1000));
    stage.view.SetCaret(9 * 16);
    EXPECT_EQ(stage.State().topRow, 0U);
    stage.view.SetZoom(1.0F);
    EXPECT_EQ(VisibleRows(stage.State()), 5U);
    EXPECT_EQ(stage.State().topRow, 5U);
}

TEST(HexView, ClampsFontSizesAndIgnoresAFontThatLooksTheSame) {
    ViewStage stage;
    stage.view.SetFont(u"CONSOLAS", 12.0F, false, false);
    EXPECT_EQ(stage.host.notifications, Notifications());
    const std::pair<float, float> rows[] = {
        {100.0F, 64.0F}, {2.0F, 8.0F}, {12.0F, 16.0F}, {std::nanf(""), 8.0F}};
    for (const auto& [points, dips] : rows) {
        stage.host.Forget();
        stage.view.SetFont(u"Courier New", points, true, false);
        EXPECT_FLOAT_EQ(stage.State().fontSizeDip, dips) << points;
        EXPECT_EQ(stage.host.notifications, Notifications{StateChanged}) << points;
        EXPECT_EQ(stage.host.resourceReleases, 1) << points;
    }
    EXPECT_EQ(FontOf(stage.State()), (FontSpec{u"Courier New", 8.0F, true, false}));
}

TEST(HexView, MovesTheCaretByAnyDistanceWithoutWrappingAround) {
    const HugeDocument document(std::numeric_limits<std::uint64_t>::max());
    ViewStage stage(document);
    const std::uint64_t last = document.GetSize() - 1;
    stage.view.MoveCaretBy(-1);
    EXPECT_EQ(stage.State().caret, 0U);
    stage.view.MoveCaretBy(std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(stage.State().caret, 0x7FFF'FFFF'FFFF'FFFFU);
    stage.view.MoveCaretBy(std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(stage.State().caret, 0U);
    stage.view.SetCaret(last - 3);
    stage.view.MoveCaretBy(100);
    EXPECT_EQ(stage.State().caret, last);
}

TEST(HexView, ClampsSelectionsAndSelectsNothingWhereThereAreNoBytes) {
    ViewStage stage(CountingBytes(20));
    stage.view.SetSelection(30, 5);
    EXPECT_TRUE(stage.State().hasSelection);
    EXPECT_EQ(stage.State().selAnchor, 19U);
    EXPECT_EQ(stage.State().selEnd, 5U);
    EXPECT_EQ(stage.State().caret, 0U);
    stage.view.SetCaret(3);
    EXPECT_FALSE(stage.State().hasSelection);

    ViewStage empty;
    empty.view.SetSelection(0, 0);
    EXPECT_FALSE(empty.State().hasSelection);
}

TEST(HexView, ScrollsTheCaretIntoSightByTheLeastDistance) {
    ViewStage stage(CountingBytes(1000));
    stage.view.SetClientSize(318, kStageHeight); // 200 DIPs of content
    struct Row {
        std::uint64_t caret;
        std::uint64_t topRow;
        std::int32_t scrollX;
    };
    const Row rows[] = {
        {9 * 16, 0, 0},       {10 * 16, 1, 0},       {11 * 16 + 6, 2, 0},
        {11 * 16 + 7, 2, 30}, {2 * 16 + 15, 2, 270}, {2 * 16 + 9, 2, 270},
        {1 * 16 + 8, 1, 240}, {999, 53, 210},        {0, 0, 0},
    };
    for (const Row& row : rows) {
        stage.view.SetCaret(row.caret);
        EXPECT_EQ(stage.State().topRow, row.topRow) << row.caret;
        EXPECT_EQ(stage.State().scrollX, row.scrollX) << row.caret;
        EXPECT_EQ(stage.host.vertical.position, static_cast<std::int32_t>(row.topRow));
        EXPECT_EQ(stage.host.horizontal.position, row.scrollX);
    }
}

TEST(HexView, ScrollingLeavesTheCaretAloneAndStopsAtTheLastPage) {
    ViewStage stage(CountingBytes(1000)); // 63 rows
    stage.view.ScrollToRow(1000);
    EXPECT_EQ(stage.State().topRow, 53U);
    EXPECT_EQ(stage.State().caret, 0U);
    EXPECT_EQ(stage.host.vertical, (ScrollBar{62, 10, 53}));
    EXPECT_EQ(stage.host.notifications, Notifications{StateChanged});
}

TEST(HexView, BringsPositionsBackWhenTheDocumentHasShrunkUnderneath) {
    ViewStage stage(CountingBytes(1000));
    stage.view.SetCaret(999);
    stage.document.bytes.resize(40);
    stage.view.SetClientSize(kStageWidth, kStageHeight);
    EXPECT_EQ(stage.State().caret, 39U);
    EXPECT_EQ(stage.State().topRow, 0U);
}

TEST(HexView, FollowsAWindowThatResizesItselfWhileItsScrollBarsAreSet) {
    ViewStage stage(CountingBytes(1000));
    int rounds = 0;
    // The horizontal bar appears and takes the room of one row.
    stage.host.onSetScrollBars = [&] {
        if (++rounds == 1) stage.view.SetClientSize(kStageWidth, kStageHeight - 24);
    };
    stage.view.SetCaret(9 * 16);
    EXPECT_EQ(VisibleRows(stage.State()), 9U);
    EXPECT_EQ(stage.State().topRow, 1U);
    EXPECT_EQ(stage.host.vertical, (ScrollBar{62, 9, 1}));
}

TEST(HexView, GivesUpOnAWindowThatNeverSettles) {
    ViewStage stage(CountingBytes(1000));
    std::uint32_t rounds = 0;
    stage.host.onSetScrollBars = [&] {
        stage.view.SetClientSize(kStageWidth, kStageHeight - 24 * (++rounds % 2));
    };
    stage.view.SetCaret(500);
    EXPECT_LE(rounds, 16U);
}

TEST(HexView, TogglingReadOnlyDropsAHalfTypedByte) {
    ViewStage stage(CountingBytes(16));
    stage.Enter(InsertMode::Insert);
    stage.Type(u"4");
    stage.host.Forget();
    stage.view.ToggleEditable();
    EXPECT_FALSE(stage.State().editable || stage.State().nibblePending);
    EXPECT_EQ(stage.host.notifications, Notifications{StateChanged});
    EXPECT_EQ(stage.host.invalidations, 1);
}

} // namespace
} // namespace kvx
