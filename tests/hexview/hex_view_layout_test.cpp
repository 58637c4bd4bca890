#include "hexview/hex_view_layout.h"

#include "tests/hexview/view_stage.h"

#include <gtest/gtest.h>

#include <limits>

namespace kvx {
namespace {

constexpr std::uint64_t kGiB = 1ULL << 30U;
constexpr std::uint64_t kLargestSize = std::numeric_limits<std::uint64_t>::max();
constexpr std::int32_t kLargestPosition = 0x7FFFFFFF;

TEST(HexViewLayout, PlacesColumnsByTheMeasuredWidths) {
    const ViewStage stage(CountingBytes(100));
    const HexViewState& state = stage.State();
    EXPECT_FLOAT_EQ(state.rowHeight, 24.0F); // line height 21.6 and 0.15 of 16
    EXPECT_EQ(state.offsetWidth, 90.0F);
    EXPECT_EQ(ContentLeft(state), 110.0F);
    EXPECT_EQ(HexStart(state), 110.0F);
    EXPECT_EQ(state.hexWidth, 480.0F);
    EXPECT_EQ(TextStart(state), 602.0F);
    EXPECT_EQ(state.textWidth, 128.0F);
    EXPECT_EQ(ContentRight(state), 730.0F);
    EXPECT_EQ(VisibleRows(state), 10U);
}

TEST(HexViewLayout, NeverGoesBelowTheLeastRowHeightAndCharacterWidth) {
    ViewStage stage;
    stage.view.SetFont(u"Tiny", 1.0F, false, false); // counts as 6 points, 8 DIPs
    stage.view.SetZoom(-0.4F);
    EXPECT_FLOAT_EQ(stage.State().effectiveFontSize, 4.8F);
    EXPECT_EQ(stage.State().rowHeight, 17.0F);

    class NoWidth final : public TextMeasurer {
        float WidestCharacter(const FontSpec&, std::u16string_view) override { return 0.0F; }
        float LineHeight(const FontSpec&) override { return 0.0F; }
    } measurer;
    HexViewState state;
    MeasureFont(state, measurer);
    EXPECT_EQ(state.hexCharWidth, 1.0F);
    EXPECT_EQ(state.textCharWidth, 1.0F);
    EXPECT_FLOAT_EQ(state.rowHeight, 21.6F);
}

TEST(HexViewLayout, WidensTheOffsetColumnAtFourGibibytes) {
    EXPECT_EQ(ViewStage(HugeDocument(4 * kGiB - 1)).State().offsetWidth, 90.0F);
    EXPECT_EQ(ViewStage(HugeDocument(4 * kGiB)).State().offsetWidth, 170.0F);
}

struct BarRow {
    const char* name;
    std::uint64_t size;
    std::uint64_t total;
    std::uint64_t largestTop;
    std::int32_t max;
};

TEST(HexViewLayout, CountsRowsUnscaledAndStopsTheBarAtItsLargestPosition) {
    const BarRow rows[] = {
        {"empty", 0, 0, 0, 0},
        {"one byte", 1, 1, 0, 0},
        {"a whole row", 16, 1, 0, 0},
        {"a row and a byte", 17, 2, 0, 1},
        {"a page", 160, 10, 0, 9},
        {"a page and a byte", 161, 11, 1, 10},
        {"5 GiB", 5 * kGiB, 335'544'320, 335'544'310, 335'544'319},
        {"the last size that the bar covers", 32 * kGiB, 0x8000'0000, 0x7FFF'FFF6,
         kLargestPosition},
        {"one row more", 32 * kGiB + 1, 0x8000'0001, 0x7FFF'FFF7, kLargestPosition},
        {"16 EiB", kLargestSize, 1ULL << 60U, (1ULL << 60U) - 10, kLargestPosition},
    };
    for (const BarRow& row : rows) {
        const HugeDocument document(row.size);
        const ViewStage stage(document);
        EXPECT_EQ(TotalRows(stage.State()), row.total) << row.name;
        EXPECT_EQ(LargestTopRow(stage.State()), row.largestTop) << row.name;
        EXPECT_EQ(VerticalBar(stage.State()), (ScrollBar{row.max, 10, 0})) << row.name;
    }
}

TEST(HexViewLayout, AddsARowForTheInsertCaretBehindWholeRowsOnly) {
    struct Row {
        std::size_t size;
        std::uint64_t caret;
        std::uint64_t totalRows;
        std::optional<std::uint64_t> extraRow;
    };
    const Row rows[] = {{32, 32, 3, 2}, {32, 31, 2, {}}, {31, 31, 2, {}}, {0, 0, 0, 0}};
    for (const Row& row : rows) {
        ViewStage stage(CountingBytes(row.size));
        stage.Enter(InsertMode::Insert, row.caret);
        EXPECT_EQ(TotalRows(stage.State()), row.totalRows) << row.size;
        EXPECT_EQ(CaretExtraRow(stage.State()), row.extraRow) << row.size;
        stage.Enter(InsertMode::Overwrite, row.caret);
        EXPECT_EQ(CaretExtraRow(stage.State()), std::nullopt) << row.size;
    }
}

TEST(HexViewLayout, ScrollsSidewaysOnlyAsFarAsTheContentReaches) {
    ViewStage stage(CountingBytes(16));
    EXPECT_EQ(HorizontalBar(stage.State()), (ScrollBar{619, 620, 0}));
    EXPECT_EQ(LargestScrollX(stage.State()), 0);

    stage.view.SetClientSize(318, kStageHeight);
    EXPECT_EQ(HorizontalBar(stage.State()), (ScrollBar{619, 200, 0}));
    EXPECT_EQ(LargestScrollX(stage.State()), 420);

    stage.view.SetClientSize(50, kStageHeight); // narrower than the offset column
    EXPECT_EQ(HorizontalBar(stage.State()), (ScrollBar{619, 0, 0}));
    EXPECT_EQ(LargestScrollX(stage.State()), 620);
}

TEST(HexViewLayout, KeepsAtLeastOneRowInAWindowWithoutRoom) {
    ViewStage stage(CountingBytes(100));
    stage.view.SetClientSize(0, 0);
    EXPECT_EQ(VisibleRows(stage.State()), 1U);
    EXPECT_EQ(LargestTopRow(stage.State()), 6U);
}

struct HitRow {
    const char* name;
    PointPx point;
    std::optional<std::uint64_t> offset;
};

void ExpectHits(const HexViewState& state, std::initializer_list<HitRow> rows) {
    for (const HitRow& row : rows)
        EXPECT_EQ(HitTest(state, row.point), row.offset) << row.name;
}

TEST(HexViewLayout, HitsBytesOfBothColumnsAndNothingBesideThem) {
    const ViewStage stage(CountingBytes(36)); // two rows and four bytes
    ExpectHits(stage.State(), {
                                  {"first pixel of the hex column", {110, 8}, 0},
                                  {"blank behind the first pair", {139, 8}, 0},
                                  {"second pair", {140, 8}, 1},
                                  {"last pixel of the hex column", {589, 31}, 15},
                                  {"gap between the columns", {590, 8}, {}},
                                  {"last pixel of the gap", {601, 8}, {}},
                                  {"first pixel of the text column", {602, 33}, 16},
                                  {"last text cell", {729, 33}, 31},
                                  {"right margin", {730, 8}, {}},
                                  {"offset column", {50, 8}, {}},
                                  {"gap behind the offsets", {109, 8}, {}},
                                  {"left of the window", {-5, 8}, {}},
                                  {"top padding", {110, 7}, {}},
                                  {"last byte", {110 + 3 * 30, 60}, 35},
                                  {"behind the last byte", {110 + 4 * 30, 60}, {}},
                                  {"row behind the last one", {110, 82}, {}},
                              });
}

TEST(HexViewLayout, HitsNothingInTheBottomPadding) {
    const ViewStage stage(CountingBytes(1000));
    ExpectHits(
        stage.State(),
        {{"last line", {110, 251}, 160}, {"padding", {110, 252}, {}}, {"below", {110, 999}, {}}});
}

TEST(HexViewLayout, HitsOnlyWhatSidewaysScrollingLeavesInSight) {
    ViewStage stage(CountingBytes(64));
    stage.view.SetClientSize(318, kStageHeight); // content from 110 to 310
    stage.view.OnHorizontalScroll(ScrollRequest::ThumbTrack, 45);
    ExpectHits(stage.State(), {
                                  {"half of the second pair", {110, 8}, 1},
                                  {"hidden under the offset column", {109, 8}, {}},
                                  {"third pair", {125, 8}, 2},
                                  {"last pixel in sight", {309, 8}, 8},
                                  {"beyond the right margin", {310, 8}, {}},
                              });
    stage.view.OnHorizontalScroll(ScrollRequest::Last, 0); // 420
    ExpectHits(stage.State(),
               {{"gap", {171, 8}, {}}, {"text", {182, 8}, 0}, {"text end", {309, 8}, 15}});
}

TEST(HexViewLayout, HitsInPixelsOfTheWindowsDpi) {
    ViewStage stage(CountingBytes(64));
    stage.view.SetDpi(192);
    stage.view.SetClientSize(2 * kStageWidth, 2 * kStageHeight);
    ExpectHits(stage.State(), {{"second pair", {280, 16}, 1}, {"first pair", {279, 63}, 0}});
}

TEST(HexViewLayout, HitsNothingWithoutBytes) {
    EXPECT_EQ(HitTest(ViewStage().State(), {110, 8}), std::nullopt);
    ViewStage closed(CountingBytes(16));
    closed.document.open = false;
    EXPECT_EQ(HitTest(closed.State(), {110, 8}), std::nullopt);
    closed.view.SetDocument(nullptr, nullptr);
    EXPECT_EQ(HitTest(closed.State(), {110, 8}), std::nullopt);
}

TEST(HexViewLayout, HitsTheLastByteThatAnOffsetCanName) {
    const HugeDocument document(kLargestSize);
    ViewStage stage(document);
    stage.view.OnKeyDown(Key::End, true);
    EXPECT_EQ(stage.State().topRow, (1ULL << 60U) - 10);
    ExpectHits(stage.State(), {
                                  {"last byte", {190 + 14 * 30, 8 + 9 * 24 + 1}, kLargestSize - 1},
                                  {"behind it", {190 + 15 * 30, 8 + 9 * 24 + 1}, {}},
                                  {"row behind all rows", {190, 251}, {}},
                              });
}

} // namespace
} // namespace kvx
