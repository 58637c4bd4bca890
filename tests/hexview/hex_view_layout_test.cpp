#include "hexview/hex_view_layout.h"

#include "tests/hexview/view_stage.h"

#include <gtest/gtest.h>

namespace kvx {
namespace {

constexpr std::uint64_t kGiB = 1ULL << 30U;
constexpr std::int32_t kLargestPosition = 0x7FFFFFFF;

TEST(HexViewLayout, NeverGoesBelowTheLeastRowHeightCharacterWidthAndNumberOfRows) {
    ViewStage stage(CountingBytes(100));
    EXPECT_FLOAT_EQ(stage.State().rowHeight, 24.0F); // line height 21.6 and 0.15 of 16
    stage.view.SetFont(u"Tiny", 6.0F, false, false);
    EXPECT_EQ(stage.State().rowHeight, 17.0F);
    stage.measurer.scale = 0.0F;
    stage.view.SetFont(u"No width", 6.0F, false, false);
    EXPECT_EQ(stage.State().hexCharWidth + stage.State().textCharWidth, 2.0F);
    stage.view.SetClientSize(0, 0);
    EXPECT_EQ(VerticalBar(stage.State()), (ScrollBar{6, 1, 0}));
}

struct BarRow {
    const char* name;
    std::uint64_t size;
    std::uint64_t largestTop;
    std::int32_t max;
    float offsetWidth;
};

TEST(HexViewLayout, CountsRowsUnscaledAndStopsTheBarAtItsLargestPosition) {
    for (const BarRow& row : {
             BarRow{"empty", 0, 0, 0, 90},
             {"a whole row", 16, 0, 0, 90},
             {"a row and a byte", 17, 0, 1, 90},
             {"a page and a byte", 161, 1, 10, 90},
             {"the last size of short offsets", 4 * kGiB - 1, (1 << 28) - 10, (1 << 28) - 1, 90},
             {"the first size of long ones", 4 * kGiB, (1 << 28) - 10, (1 << 28) - 1, 170},
             {"the bar's last size", 32 * kGiB, 0x7FFF'FFF6, kLargestPosition, 170},
             {"one row more", 32 * kGiB + 1, 0x7FFF'FFF7, kLargestPosition, 170},
             {"16 EiB", ~0ULL, (1ULL << 60U) - 10, kLargestPosition, 170},
         }) {
        const ViewStage stage({}, row.size);
        EXPECT_EQ(LargestTopRow(stage.State()), row.largestTop) << row.name;
        EXPECT_EQ(VerticalBar(stage.State()), (ScrollBar{row.max, 10, 0})) << row.name;
        EXPECT_EQ(stage.State().offsetWidth, row.offsetWidth) << row.name;
    }
}

struct HitRow {
    const char* name;
    PointPx point;
    std::optional<std::uint64_t> offset;
};

void ExpectHits(const ViewStage& stage, std::initializer_list<HitRow> rows) {
    for (const HitRow& row : rows)
        EXPECT_EQ(HitTest(stage.State(), row.point), row.offset) << row.name;
}

TEST(HexViewLayout, HitsBytesOfBothColumnsAndNothingBesideThem) {
    ViewStage stage(CountingBytes(36)); // two rows and four bytes
    ExpectHits(stage, {
                          {"first pixel of the hex column", {110, 8}, 0},
                          {"blank behind the first pair", {139, 8}, 0},
                          {"last pixel of the hex column", {589, 31}, 15},
                          {"gap between the columns", {590, 8}, {}},
                          {"first pixel of the text column", {602, 33}, 16},
                          {"last text cell", {729, 33}, 31},
                          {"right margin", {730, 8}, {}},
                          {"gap behind the offsets", {109, 8}, {}},
                          {"top padding", {110, 7}, {}},
                          {"last byte", {110 + 3 * 30, 60}, 35},
                          {"behind the last byte", {110 + 4 * 30, 60}, {}},
                      });
    stage.document.open = false;
    ExpectHits(stage, {{"closed", {110, 8}, {}}});
}

TEST(HexViewLayout, HitsOnlyWhatScrollingLeavesInSight) {
    ViewStage stage(CountingBytes(1000));
    ExpectHits(stage, {{"last line", {110, 251}, 160}, {"bottom padding", {110, 252}, {}}});
    stage.view.SetClientSize(318, kStageHeight); // content from 110 to 310
    stage.view.OnHorizontalScroll(ScrollRequest::ThumbTrack, 45);
    ExpectHits(stage, {
                          {"half of the second pair", {110, 8}, 1},
                          {"hidden under the offset column", {109, 8}, {}},
                          {"third pair", {125, 8}, 2},
                          {"last pixel in sight", {309, 8}, 8},
                          {"beyond the right margin", {310, 8}, {}},
                      });
    stage.view.OnHorizontalScroll(ScrollRequest::Last, 0); // 420
    ExpectHits(stage, {{"gap", {171, 8}, {}}, {"text", {182, 8}, 0}, {"text end", {309, 8}, 15}});
    stage.view.SetDpi(192);
    stage.view.SetClientSize(2 * kStageWidth, 2 * kStageHeight);
    ExpectHits(stage, {{"at 192 DPI", {280, 16}, 1}, {"row end at 192 DPI", {279, 63}, 0}});
}

} // namespace
} // namespace kvx
