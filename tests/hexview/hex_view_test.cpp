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
    stage.host.dpi = 144;

    MemoryDocument next(CountingBytes(5));
    stage.view.SetDocument(&next, &next);
    const HexViewState& state = stage.State();
    EXPECT_EQ(state.caret + state.topRow + state.selAnchor + state.selEnd + state.dragAnchor, 0U);
    EXPECT_FALSE(state.hasSelection || state.dragging || state.dragAnchorValid);
    EXPECT_FALSE(state.nibblePending || state.editable || stage.host.captured);
    EXPECT_EQ(state.insertMode, InsertMode::Insert);
    EXPECT_EQ(state.dpi, 144U);
    EXPECT_EQ(stage.host.vertical.max, 0);
    EXPECT_EQ(stage.host.focusRequests, 1);
    EXPECT_GT(stage.host.invalidations, 0);
    EXPECT_EQ(stage.host.resourceReleases, 1);
}

TEST(HexView, ZoomsInExactTenthsWithinItsLimitsAndReportsOnlyChanges) {
    ViewStage stage(CountingBytes(16));
    const auto zoom = [&](int steps, float step) {
        stage.host.Forget();
        for (int i = 0; i < steps; ++i)
            stage.view.SetZoom(step);
        return std::pair(stage.State().zoom, stage.host.notifications.size());
    };
    EXPECT_EQ(zoom(30, 0.1F), std::pair(2.5F, std::size_t{15}));
    EXPECT_EQ(stage.State().hexCharWidth, 25.0F);
    EXPECT_EQ(zoom(30, -0.1F), std::pair(0.6F, std::size_t{19}));
    EXPECT_EQ(zoom(1, 0.0005F), std::pair(0.6F, std::size_t{0}));
    for (int round = 0; round < 1000; ++round) {
        ASSERT_EQ(zoom(4, 0.1F).first, 1.0F) << round;
        ASSERT_EQ(zoom(4, -0.1F).first, 0.6F) << round;
    }
    stage.view.ResetZoom();
    EXPECT_EQ(stage.State().zoom, 1.0F);
    stage.view.ResetZoom();
    EXPECT_EQ(stage.host.notifications, Notifications(5, ZoomChanged));
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
        EXPECT_EQ(FontOf(stage.State()), (FontSpec{u"Courier New", dips, true, false})) << points;
        EXPECT_EQ(stage.host.notifications, Notifications{StateChanged}) << points;
        EXPECT_EQ(stage.host.resourceReleases, 1) << points;
    }
}

TEST(HexView, MovesTheCaretByAnyDistanceWithoutWrappingAround) {
    ViewStage stage({}, ~0ULL);
    const auto move = [&](std::int64_t delta) {
        stage.view.MoveCaretBy(delta);
        return stage.State().caret;
    };
    EXPECT_EQ(move(-1), 0U);
    EXPECT_EQ(move(std::numeric_limits<std::int64_t>::max()), 0x7FFF'FFFF'FFFF'FFFFU);
    EXPECT_EQ(move(std::numeric_limits<std::int64_t>::min()), 0U);
    stage.view.SetCaret(~0ULL - 4);
    EXPECT_EQ(move(100), ~0ULL - 1);
}

struct CaretRow {
    std::uint64_t caret;
    std::uint64_t topRow;
    std::int32_t scrollX;
};

TEST(HexView, ScrollsTheCaretIntoSightByTheLeastDistance) {
    ViewStage stage(CountingBytes(1000));
    stage.view.SetClientSize(318, kStageHeight); // 200 DIPs of content
    for (const auto& [caret, topRow, scrollX] : {
             CaretRow{9 * 16, 0, 0},
             {10 * 16, 1, 0},
             {11 * 16 + 6, 2, 0},
             {11 * 16 + 7, 2, 30},
             {2 * 16 + 15, 2, 270},
             {2 * 16 + 9, 2, 270},
             {1 * 16 + 8, 1, 240},
             {999, 53, 210},
             {0, 0, 0},
         }) {
        stage.view.SetCaret(caret);
        EXPECT_EQ(stage.State().topRow, topRow) << caret;
        EXPECT_EQ(stage.State().scrollX, scrollX) << caret;
    }
}

TEST(HexView, FollowsAWindowThatResizesItselfAndADocumentThatShrinks) {
    ViewStage stage(CountingBytes(1000));
    int rounds = 0;
    // The horizontal bar appears and takes the room of one row.
    stage.host.onSetScrollBars = [&] {
        if (++rounds == 1) stage.view.SetClientSize(kStageWidth, kStageHeight - 24);
    };
    stage.view.SetCaret(9 * 16);
    EXPECT_EQ(stage.State().topRow, 1U);
    EXPECT_EQ(stage.host.vertical, (ScrollBar{62, 9, 1}));
    stage.host.onSetScrollBars = {};
    stage.document.bytes.resize(40);
    stage.view.SetClientSize(kStageWidth, kStageHeight);
    EXPECT_EQ(stage.State().caret, 39U);
    EXPECT_EQ(stage.State().topRow, 0U);
}

} // namespace
} // namespace kvx
