#include "app/window_placement.h"

#include <gtest/gtest.h>

namespace kvx {
namespace {

TEST(WindowPlacement, CentersInTheWorkAreaButNeverLeftOfOrAboveIt) {
    EXPECT_EQ(CenteredIn({0, 0, 1920, 1040}, 996, 799), (RectPx{462, 120, 1458, 919}));
    EXPECT_EQ(CenteredIn({-1280, 40, 0, 1024}, 1001, 800), (RectPx{-1141, 132, -140, 932}));
    EXPECT_EQ(CenteredIn({100, 50, 900, 650}, 996, 799), (RectPx{100, 50, 1096, 849}));
}

TEST(WindowPlacement, KeepsADialogOfAWindowAtTheEdgeOnTheScreen) {
    constexpr RectPx kWork{-1280, 40, 0, 1024};
    EXPECT_EQ(MovedInto(kWork, {-900, 400, -480, 600}), (RectPx{-900, 400, -480, 600}));
    EXPECT_EQ(MovedInto(kWork, {-100, 1000, 320, 1200}), (RectPx{-420, 824, 0, 1024}));
    EXPECT_EQ(MovedInto(kWork, {-1500, -20, 500, 180}), (RectPx{-1280, 40, 720, 240}));
}

} // namespace
} // namespace kvx
