#include "app/window_title.h"

#include <gtest/gtest.h>

namespace kvx {
namespace {

TEST(WindowTitle, NamesTheFileAndMarksChanges) {
    EXPECT_EQ(WindowTitle(u"Kivra", u"", false), u"Kivra");
    EXPECT_EQ(WindowTitle(u"Kivra", u"C:\\dir\\data.bin", false), u"Kivra - data.bin");
    EXPECT_EQ(WindowTitle(u"Kivra", u"C:/dir/data.bin", true), u"Kivra - data.bin *");
    EXPECT_EQ(WindowTitle(u"Kivra", u"data.bin", false), u"Kivra - data.bin");
}

} // namespace
} // namespace kvx
