#include "app/window_placement.h"

#include <gtest/gtest.h>

namespace kvx {
namespace {

TEST(WindowPlacement, CentersInTheWorkAreaButNeverLeftOfOrAboveIt) {
    EXPECT_EQ(CenteredIn({0, 0, 1920, 1040}, 996, 799), (RectPx{462, 120, 1458, 919}));
    EXPECT_EQ(CenteredIn({-1280, 40, 0, 1024}, 1001, 800), (RectPx{-1141, 132, -140, 932}));
    EXPECT_EQ(CenteredIn({100, 50, 900, 650}, 996, 799), (RectPx{100, 50, 1096, 849}));
}

} // namespace
} // namespace kvx
