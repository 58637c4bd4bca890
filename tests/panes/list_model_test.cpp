#include "panes/list_model.h"

#include "panes/struct_view_model.h"

#include <gtest/gtest.h>

#include <functional>

namespace kvx {

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
    EXPECT_EQ(list.Dpi(), 144);
    EXPECT_EQ(list.CaptionBand(), (PaneRect{0, 93, 600, 144}));
    EXPECT_EQ(list.CellRect(1, 1), (PaneRect{150, 132, 480, 180}));
    EXPECT_EQ(list.SeparatorX(0), 138);
    EXPECT_EQ(Down(), (ListScrollRange{960, 450, 60}));
    EXPECT_EQ(ScaledToDpi(13, 120), 16);
    EXPECT_EQ(ScaleRounded(-3, 1, 2), -2); // halves away from zero on both sides
    EXPECT_EQ(ScaleRounded(3, 1, 2), 2);
}

TEST_F(ListModelTest, ScrollsByTheStepsOfKeysWheelAndBars) {
    using enum ListAxis;
    const auto key = [this](ListKey pressed) { return list.OnKey(pressed); };
    struct Case {
        std::function<ListEffect()> input;
        int x;
        int y;
    };
    // Each goes on from where the one before it has scrolled to; the ends are at 316 and 340.
    const Case cases[] = {
        {[&] { return list.OnWheel(-120); }, 0, 48},
        {[&] { return list.OnWheel(-1); }, 0, 96},
        {[&] { return list.OnWheel(250); }, 0, 0},
        {[&] { return list.OnScroll(Vertical, ListScroll::LineOn); }, 0, 32},
        {[&] { return list.OnScroll(Vertical, ListScroll::PageOn); }, 0, 332},
        {[&] { return list.OnScroll(Horizontal, ListScroll::LineOn); }, 24, 332},
        {[&] { return list.OnScroll(Horizontal, ListScroll::PageOn); }, 316, 332},
        {[&] { return key(ListKey::PageDown); }, 316, 340},
        {[&] { return key(ListKey::Home); }, 0, 0},
        {[&] { return key(ListKey::PageDown); }, 0, 300},
        {[&] { return key(ListKey::PageUp); }, 0, 0},
        {[&] { return key(ListKey::End); }, 316, 340},
        {[&] { return list.OnScroll(Vertical, ListScroll::PageBack); }, 316, 40},
        {[&] { return list.OnScrollTo(Vertical, 7); }, 316, 7},
        {[&] { return list.OnScroll(Horizontal, ListScroll::ToStart); }, 0, 7},
        {[&] { return list.OnScroll(Horizontal, ListScroll::ToEnd); }, 316, 7},
        {[&] { return list.OnScroll(Horizontal, ListScroll::PageBack); }, 0, 7},
    };
    for (const Case& each : cases) {
        EXPECT_EQ(each.input(), ListEffect::Repaint);
        EXPECT_EQ(Across().positionPx, each.x) << &each - cases;
        EXPECT_EQ(Down().positionPx, each.y) << &each - cases;
    }
    EXPECT_EQ(list.OnScroll(Horizontal, ListScroll::LineBack), ListEffect::None);
    EXPECT_EQ(list.OnWheel(0), ListEffect::None);
    EXPECT_EQ(key(ListKey::Copy), ListEffect::Copy);
    list.SetRowCount(10);
    EXPECT_EQ(Down(), (ListScrollRange{320, 300, 7}));
    list.SetArea({400, kTop + kListCaptionHeight + 10, kTop}); // less than a row to page by
    key(ListKey::PageDown);
    EXPECT_EQ(Down(), (ListScrollRange{320, 10, 39}));
}

TEST_F(ListModelTest, MovesTheSelectionIntoSight) {
    EXPECT_EQ(list.OnPress({50, 96 + 32}), ListEffect::Repaint);
    EXPECT_EQ(list.SelectedRow(), 1U);
    list.OnKey(ListKey::Up);
    EXPECT_EQ(list.OnKey(ListKey::Up), ListEffect::None);
    EXPECT_EQ(list.SelectedRow(), 0U);
    for (int i = 0; i < 9; ++i)
        list.OnKey(ListKey::Down);
    EXPECT_EQ(Down().positionPx, 20); // its end was out of sight
    list.OnKey(ListKey::End);
    list.OnKey(ListKey::Up);
    EXPECT_EQ(Down().positionPx, 8 * 32);
    for (int i = 0; i < 30; ++i)
        list.OnKey(ListKey::Down);
    EXPECT_EQ(list.SelectedRow(), 19U);
    list.SetRowCount(19);
    EXPECT_EQ(list.SelectedRow(), std::nullopt);
    list.OnKey(ListKey::Down);
    EXPECT_EQ(list.SelectedRow(), 0U);
    list.OnKey(ListKey::Down);
    list.SetRowCount(2);
    // Below the rows, on a caption, beside the list.
    for (const PanePoint point : {PanePoint{50, 96 + 64}, {50, 80}, {-1, 100}, {400, 100}})
        EXPECT_EQ(list.OnPress(point), ListEffect::None) << point.x << ", " << point.y;
    list.SetRowCount(0);
    EXPECT_EQ(list.OnKey(ListKey::Down), ListEffect::None);
}

TEST_F(ListModelTest, ResizesAColumnByItsDivider) {
    list.OnScrollTo(ListAxis::Horizontal, 100);
    const PanePoint divider = OnDivider(2);
    EXPECT_TRUE(list.IsOverDivider({divider.x + 4, divider.y}));
    EXPECT_FALSE(list.IsOverDivider({divider.x + 5, divider.y}));
    EXPECT_FALSE(list.IsOverDivider({divider.x, list.CaptionBand().bottom})); // in the rows

    list.OnPress({divider.x + 3, divider.y});
    EXPECT_TRUE(list.IsDragging());
    EXPECT_EQ(list.OnMove({divider.x + 3, 500}), ListEffect::None);
    EXPECT_EQ(list.OnMove({divider.x + 53, 500}), ListEffect::Repaint);
    EXPECT_EQ(list.SeparatorX(2), divider.x + 50);
    EXPECT_EQ(list.OnMove({0, 0}), ListEffect::Repaint);
    EXPECT_EQ(list.CaptionRect(2).Width(), 56);
    list.OnRelease();
    EXPECT_EQ(list.OnMove({300, 0}), ListEffect::None);
    EXPECT_EQ(list.OnDoubleClick(OnDivider(2)), ListEffect::Repaint);
    EXPECT_EQ(list.CaptionRect(2).Width(), 72);
    EXPECT_EQ(list.OnDoubleClick({5, 70}), ListEffect::None);
}

TEST_F(ListModelTest, ScrollsBackWhenThereIsLessToShowOrMoreRoomForIt) {
    list.OnKey(ListKey::End);
    list.SetRowCount(10);
    EXPECT_EQ(Down(), (ListScrollRange{320, 300, 20}));
    list.SetArea({600, kTop + kListCaptionHeight + 310, kTop});
    EXPECT_EQ(Down(), (ListScrollRange{320, 310, 10}));
    EXPECT_EQ(Across(), (ListScrollRange{716, 600, 116}));
    list.OnPress(OnDivider(1));
    list.OnMove({0, 0});
    EXPECT_EQ(Across(), (ListScrollRange{716 - 220 + 80, 600, 0}));
}

TEST(ListKeys, CopyOnlyWithControlAndLeaveOtherKeysAlone) {
    EXPECT_EQ(ListKeyOf('C', true), ListKey::Copy);
    EXPECT_EQ(ListKeyOf('C', false), std::nullopt);
    EXPECT_EQ(ListKeyOf(0x22, true), ListKey::PageDown);
    EXPECT_EQ(ListKeyOf(0x22, false), ListKey::PageDown);
    EXPECT_EQ(ListKeyOf(0x09, false), std::nullopt);
}

} // namespace
} // namespace kvx
