#include "hexview/hex_view.h"

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

TEST(HexViewKeys, MoveTheCaretAndEndTheSelection) {
    for (const MoveRow& row : {
             MoveRow{"left at the start", 20, 0, Key::Left, false, 0, 0},
             {"right at the last byte", 20, 19, Key::Right, false, 19, 20},
             {"page up", 1000, 500, Key::PageUp, false, 340, 340},
             {"page down past the end", 1000, 900, Key::PageDown, false, 999, 1000},
             {"control home", 40, 20, Key::Home, true, 0, 0},
             {"end in the last row", 20, 17, Key::End, false, 19, 20},
             {"control end", 40, 3, Key::End, true, 39, 40},
             {"control end without bytes", 0, 0, Key::End, true, 0, 0},
         }) {
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
    for (const Key key : {static_cast<Key>(0x09), Key::C})
        EXPECT_EQ(stage.view.OnKeyDown(key, false), Handled::No);
    stage.document.open = false;
    for (const Key key : {Key::Left, Key::Home, Key::Insert, Key::Delete, Key::Escape, Key::C})
        EXPECT_EQ(stage.view.OnKeyDown(key, true), Handled::No) << static_cast<std::uint32_t>(key);
    EXPECT_EQ(stage.view.OnChar(u'4'), Handled::No);
    EXPECT_EQ(stage.host.notifications, Notifications());
    EXPECT_EQ(stage.host.invalidations, 0);
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
        EXPECT_EQ(stage.State().caret, 0U) << row.name;
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

} // namespace
} // namespace kvx
