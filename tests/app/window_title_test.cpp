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

TEST(WindowTitle, TakesPathsOfAnyLength) {
    const std::u16string folders = std::u16string(400, u'd') + u"\\";
    EXPECT_EQ(WindowTitle(u"Kivra", folders + std::u16string(250, u'f'), false),
              u"Kivra - " + std::u16string(250, u'f'));
}

} // namespace
} // namespace kvx
