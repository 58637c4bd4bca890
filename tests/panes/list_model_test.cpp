#include "panes/list_model.h"

#include "panes/struct_view_model.h"

#include <gtest/gtest.h>

#include <ostream>
#include <random>

namespace kvx {

static void PrintTo(const PaneRect& rect, std::ostream* out) {
    *out << "{" << rect.left << ", " << rect.top << ", " << rect.right << ", " << rect.bottom << "}";
}

static void PrintTo(const ListScrollRange& range, std::ostream* out) {
    *out << "{" << range.contentPx << ", " << range.pagePx << ", " << range.positionPx << "}";
}

namespace {

constexpr int kTop = 62;

/// The struct view's list with 20 rows, 300 pixels of which are rows at 96 DPI.
class ListModelTest : public testing::Test {
protected:
    ListModelTest() {
        list.SetArea({400, kTop + kListCaptionHeight + 300, kTop});
        list.SetRowCount(20);
    }

    ListScrollRange Across() const { return list.ScrollRange(ListAxis::Horizontal); }
    ListScrollRange Down() const { return list.ScrollRange(ListAxis::Vertical); }
    PanePoint OnDivider(std::size_t column) const {
        return {list.SeparatorX(column), list.CaptionBand().top + 5};
    }

    ListModel list{kStructViewColumns};
};

TEST_F(ListModelTest, PlacesCaptionsRowsAndSeparators) {
    EXPECT_EQ(list.CaptionBand(), (PaneRect{0, 62, 400, 96}));
    EXPECT_EQ(list.RowsArea(), (PaneRect{0, 96, 400, 396}));
    EXPECT_EQ(list.CaptionRect(0), (PaneRect{12, 62, 84, 96}));
    EXPECT_EQ(list.CellRect(2, 1), (PaneRect{100, 160, 320, 192}));
    EXPECT_EQ(list.RowRect(2), (PaneRect{0, 160, 400, 192}));
    EXPECT_EQ(list.CellRect(0, 3), (PaneRect{424, 96, 704, 128}));
    EXPECT_EQ(list.SeparatorX(3), 712);
    EXPECT_EQ(Across(), (ListScrollRange{72 + 220 + 72 + 280 + 72, 400, 0}));
    EXPECT_EQ(Down(), (ListScrollRange{20 * 32, 300, 0}));
    EXPECT_EQ(list.VisibleRows(), (ListRowRange{0, 10}));

    EXPECT_EQ(list.OnScrollTo(ListAxis::Vertical, 40), ListEffect::Repaint);
    EXPECT_EQ(list.OnScrollTo(ListAxis::Horizontal, 20), ListEffect::Repaint);
    EXPECT_EQ(list.CellRect(2, 1), (PaneRect{80, 120, 300, 152}));
    EXPECT_EQ(list.VisibleRows(), (ListRowRange{1, 11}));
}

TEST_F(ListModelTest, ScalesEverythingWithTheResolution) {
    list.SetArea({600, 594, 93});
    list.OnScrollTo(ListAxis::Vertical, 40);
    list.SetDpi(144);
    EXPECT_EQ(list.CaptionBand(), (PaneRect{0, 93, 600, 144}));
    EXPECT_EQ(list.CellRect(1, 1), (PaneRect{150, 132, 480, 180}));
    EXPECT_EQ(list.SeparatorX(0), 138);
    EXPECT_EQ(Down(), (ListScrollRange{960, 450, 60}));
    EXPECT_EQ(ScaledToDpi(13, 120), 16);
    EXPECT_EQ(ScaleRounded(-3, 1, 2), -2); // halves away from zero on both sides
    EXPECT_EQ(ScaleRounded(3, 1, 2), 2);
}

TEST_F(ListModelTest, ScrollsByTheStepsOfKeysWheelAndBars) {
    struct Case {
        ListEffect effect;
        int x;
        int y;
    };
    // One after another: each goes on from where the one before it has scrolled to.
    const Case cases[] = {
        {list.OnWheel(-120), 0, 0},
    };
    EXPECT_EQ(cases[0].effect, ListEffect::Repaint);
}

} // namespace
} // namespace kvx
