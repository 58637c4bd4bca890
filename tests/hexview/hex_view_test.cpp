#include "hexview/hex_view.h"

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
        EXPECT_FLOAT_EQ(stage.State().fontSizeDip, dips) << points;
        EXPECT_EQ(stage.host.notifications, Notifications{StateChanged}) << points;
    }
}

TEST(HexView, ClampsSelectionsAndSelectsNothingWhereThereAreNoBytes) {
    ViewStage stage(CountingBytes(20));
    stage.view.SetSelection(30, 5);
    EXPECT_TRUE(stage.State().hasSelection);
    EXPECT_EQ(stage.State().selAnchor, 19U);
    EXPECT_EQ(stage.State().selEnd, 5U);
    ViewStage empty;
    empty.view.SetSelection(0, 0);
    EXPECT_FALSE(empty.State().hasSelection);
}

TEST(HexView, BlinksWhileInsertingWithTheFocusOnly) {
    ViewStage stage(CountingBytes(16));
    stage.Enter(InsertMode::Overwrite);
    stage.view.OnFocusGained();
    EXPECT_FALSE(stage.host.blinking);
    stage.view.OnKeyDown(Key::Insert, false);
    EXPECT_TRUE(stage.host.blinking && stage.State().caretBlinkOn);
    stage.view.OnKeyDown(Key::Insert, false);
    EXPECT_FALSE(stage.host.blinking);
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
    EXPECT_EQ(stage.view.OnKeyDown(Key::Left, false), Handled::Yes);
    EXPECT_EQ(stage.host.notifications, Notifications(6, StateChanged));
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

TEST(HexViewKeys, AreTheSystemsWithoutADocumentAndForAnyOtherKey) {
    ViewStage stage(CountingBytes(20));
    for (const Key key : {static_cast<Key>(0x09), Key::C})
        EXPECT_EQ(stage.view.OnKeyDown(key, false), Handled::No);
    stage.document.open = false;
    for (const Key key : {Key::Left, Key::Home, Key::Insert, Key::Delete, Key::Escape, Key::C})
        EXPECT_EQ(stage.view.OnKeyDown(key, true), Handled::No) << static_cast<std::uint32_t>(key);
    EXPECT_EQ(stage.view.OnChar(u'4'), Handled::No);
    EXPECT_EQ(stage.host.notifications, Notifications());
    EXPECT_EQ(stage.host.invalidations, 0);
}

TEST(HexViewKeys, CopyTheSelectionIfThereIsOne) {
    ViewStage stage(CountingBytes(20));
    EXPECT_EQ(stage.view.OnKeyDown(Key::C, true), Handled::Yes);
    stage.view.SetSelection(17, 18);
    EXPECT_EQ(stage.view.OnKeyDown(Key::C, true), Handled::Yes);
    EXPECT_EQ(stage.host.copied, std::vector<std::u16string>{u"11 12"});
}

TEST(HexViewMouse, ADragEndsWithItsSelectionByEscapeAndWithoutItWhenTheCaptureIsLost) {
    ViewStage stage(CountingBytes(64));
    for (const bool escape : {true, false}) {
        stage.view.OnLeftButtonDown({142, 35}); // row 1, byte 1
        EXPECT_TRUE(stage.host.captured);
        stage.view.OnMouseMove({602 + 8 * 3, 60}); // text of row 2, byte 3
        if (escape)
            stage.view.OnKeyDown(Key::Escape, false);
        else
            stage.view.OnCaptureLost();
        stage.view.OnMouseMove({110, 10});
        EXPECT_EQ(stage.State().hasSelection, !escape);
        EXPECT_EQ(stage.State().caret, 17U);
    }
    EXPECT_EQ(stage.State().selEnd, 35U);
}

struct ScrollRow {
    const char* name;
    std::uint64_t from;
    ScrollRequest request;
    std::int32_t track;
    std::uint64_t to;
};

void ExpectScrolls(ViewStage& stage, std::initializer_list<ScrollRow> rows) {
    for (const ScrollRow& row : rows) {
        stage.view.ScrollToRow(row.from);
        stage.view.OnVerticalScroll(row.request, row.track);
        EXPECT_EQ(stage.State().topRow, row.to) << row.name;
    }
}

TEST(HexViewScrollBars, StepByRowsAndPagesWithinTheDocument) {
    ViewStage stage(CountingBytes(1000)); // 63 rows, 10 in sight
    ExpectScrolls(stage, {
                             {"line back", 5, ScrollRequest::LineBack, 0, 4},
                             {"line back at the top", 0, ScrollRequest::LineBack, 0, 0},
                             {"line forward", 5, ScrollRequest::LineForward, 0, 6},
                             {"page back near the top", 5, ScrollRequest::PageBack, 0, 0},
                             {"page forward", 15, ScrollRequest::PageForward, 0, 25},
                             {"thumb moved", 15, ScrollRequest::ThumbTrack, 30, 30},
                             {"thumb below nothing", 15, ScrollRequest::ThumbTrack, -7, 0},
                             {"bottom", 15, ScrollRequest::Last, 0, 53},
                             {"end of scrolling", 15, static_cast<ScrollRequest>(8), 40, 15},
                         });
    stage.view.OnWheel(1200, false);
    EXPECT_EQ(stage.State().topRow, 12U);
    stage.view.OnWheel(-1, false);
    EXPECT_EQ(stage.State().topRow, 15U);
    stage.view.OnWheel(480, true);
    EXPECT_EQ(stage.State().zoom, 1.1F);
}

TEST(HexViewScrollBars, DoNotThrowAReaderBackBeyondTheRowsThatABarCanName) {
    constexpr std::uint64_t kFar = 0x9'0000'0000;
    constexpr std::int32_t kEnd = 0x7FFFFFFF - 10 + 1;
    ViewStage stage({}, 1ULL << 40U);
    ExpectScrolls(stage, {
                             {"line forward", kFar, ScrollRequest::LineForward, kEnd, kFar + 1},
                             {"page back", kFar, ScrollRequest::PageBack, kEnd, kFar - 10},
                             {"thumb at its end", kFar, ScrollRequest::ThumbTrack, kEnd, kFar},
                             {"thumb before", kFar, ScrollRequest::ThumbTrack, kEnd - 1, kEnd - 1},
                             {"thumb to its end", 5, ScrollRequest::ThumbTrack, kEnd, kEnd},
                             {"bottom", 5, ScrollRequest::Last, 0, (1ULL << 36U) - 10},
                         });
    EXPECT_EQ(stage.host.vertical, (ScrollBar{0x7FFFFFFF, 10, 0x7FFFFFFF}));
}

TEST(HexViewDigits, LeaveEverythingAsItWasWhenTheDocumentRefuses) {
    for (const InsertMode mode : {InsertMode::Overwrite, InsertMode::Insert}) {
        ViewStage stage(Bytes{0x7F, 0x10});
        stage.document.refuses = [](std::uint64_t) { return true; };
        stage.Enter(mode);
        const bool inserting = mode == InsertMode::Insert;
        if (inserting) stage.Type(u"4");
        stage.host.Forget();
        EXPECT_EQ(stage.view.OnChar(u'1'), Handled::No);
        EXPECT_EQ(stage.State().nibblePending, inserting);
        EXPECT_EQ(stage.State().caret, 0U);
        EXPECT_EQ(stage.host.invalidations, 0);
    }
}

TEST(HexViewDigits, WidenTheOffsetsWhenTheyCarryTheDocumentOverFourGibibytes) {
    ViewStage stage({}, 0xFFFF'FFFF);
    stage.Enter(InsertMode::Insert);
    const int measured = stage.measurer.measured;
    stage.Type(u"41");
    EXPECT_EQ(stage.State().offsetWidth, 170.0F);
    stage.view.OnKeyDown(Key::Backspace, false);
    EXPECT_EQ(stage.State().offsetWidth, 90.0F);
    EXPECT_EQ(stage.measurer.measured, measured); // the font is the same: no text is laid out again
}

TEST(HexViewEditing, IsReportedAsRefusedWhileReadOnlyForDigitsOfBothCasesAndNothingElse) {
    ViewStage stage(CountingBytes(4));
    std::u16string digits;
    for (std::uint32_t unit = 0; unit <= 0xFFFF; ++unit)
        if (stage.view.OnChar(static_cast<char16_t>(unit)) == Handled::Yes)
            digits += static_cast<char16_t>(unit);
    EXPECT_EQ(digits, u"0123456789ABCDEFabcdef");
    for (const Key key : {Key::Insert, Key::Delete, Key::Backspace})
        EXPECT_EQ(stage.view.OnKeyDown(key, false), Handled::Yes);
    EXPECT_EQ(stage.host.notifications, Notifications(22 + 3, EditRefused));
    EXPECT_EQ(stage.document.bytes, CountingBytes(4));
    EXPECT_EQ(stage.State().insertMode, InsertMode::Overwrite);
}

struct RefusalRow {
    const char* name;
    std::uint64_t refused; ///< offset of the byte that the document keeps
    std::optional<std::pair<std::uint64_t, std::uint64_t>> selection;
    Bytes left; ///< of 0 1 2 3
    std::uint64_t caretAfter;
};

TEST(HexViewRemoval, GoesAsFarAsTheDocumentLetsIt) {
    for (const RefusalRow& row : {
             RefusalRow{"the byte at the caret", 3, {}, {0, 1, 2, 3}, 3},
             {"the selection's last byte", 3, {{1, 3}}, {0, 1, 2, 3}, 3},
             {"a byte amid the selection", 2, {{3, 1}}, {0, 1, 2}, 1},
         }) {
        ViewStage stage(CountingBytes(4));
        stage.Enter(InsertMode::Overwrite, 3);
        if (row.selection) stage.view.SetSelection(row.selection->first, row.selection->second);
        stage.document.refuses = [&](std::uint64_t offset) { return offset == row.refused; };
        EXPECT_EQ(stage.view.OnKeyDown(Key::Delete, false), Handled::No) << row.name;
        EXPECT_EQ(stage.document.bytes, row.left) << row.name;
        EXPECT_EQ(stage.State().caret, row.caretAfter) << row.name;
        const std::size_t changes = row.left.size() == 4 ? 0 : 1;
        EXPECT_EQ(stage.State().hasSelection, row.selection && changes == 0) << row.name;
        EXPECT_EQ(stage.host.notifications, Notifications(changes, StateChanged)) << row.name;
    }
}

TEST(HexViewRemoval, IsHandledAndChangesNothingAtTheEnds) {
    ViewStage stage(CountingBytes(4));
    for (const auto& [caret, key] : {std::pair(4, Key::Delete), std::pair(0, Key::Backspace)}) {
        stage.Enter(InsertMode::Insert, static_cast<std::uint64_t>(caret));
        EXPECT_EQ(stage.view.OnKeyDown(key, false), Handled::Yes);
        EXPECT_EQ(stage.host.notifications, Notifications());
    }
    stage.view.OnKeyDown(Key::Delete, false);
    EXPECT_EQ(stage.host.notifications, Notifications{StateChanged});
}

} // namespace
} // namespace kvx
