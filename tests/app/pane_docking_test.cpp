#include "app/pane_docking.h"

#include <gtest/gtest.h>

namespace kvx {
namespace {

TEST(PaneDocking, PanesStandBesideTheMainWindowAtItsHeight) {
    const DockTarget main{{100, 50, 900, 650}, false};
    EXPECT_EQ(DockBeside(main, DockSide::Right, 320, false),
              (PaneDocking{true, RectPx{901, 50, 1221, 650}}));
    EXPECT_EQ(DockBeside(main, DockSide::Left, 520, false),
              (PaneDocking{true, RectPx{-421, 50, 99, 650}}));
    EXPECT_EQ(DockBeside(main, DockSide::Left, 520, true), (PaneDocking{true, std::nullopt}));
    for (const bool maximized : {false, true}) {
        EXPECT_EQ(DockBeside({main.place, true}, DockSide::Right, 320, maximized),
                  (PaneDocking{false, std::nullopt}));
    }
}

TEST(PaneDocking, ANewStructViewTakesTheRoomThatItCanUse) {
    EXPECT_EQ(StructViewStartWidth(-100), 520);
    EXPECT_EQ(StructViewStartWidth(601), 600);
    EXPECT_EQ(StructViewStartWidth(2000), 752);
}

} // namespace
} // namespace kvx
