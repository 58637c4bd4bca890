#include "app/recent_files.h"

#include "settings/app_settings.h"

#include <gtest/gtest.h>

namespace kvx {
namespace {

using List = std::vector<std::u16string>;

// Stands for the file system: drops "x\..\" and leaves everything else.
std::u16string WithoutDetour(const std::u16string& path) {
    const std::size_t detour = path.find(u"x\\..\\");
    return detour == std::u16string::npos ? path : path.substr(0, detour) + path.substr(detour + 5);
}

List After(List list, const std::u16string& path) {
    AddRecentFile(list, path, WithoutDetour);
    return list;
}

TEST(RecentFiles, KeepOneSpellingOfAFileTheLatestInFront) {
    EXPECT_EQ(After({u"C:\\a"}, u""), (List{u"C:\\a"}));
    const List list{u"C:\\a", u"C:\\Data\\B.bin", u"C:\\data\\x\\..\\b.bin"};
    EXPECT_EQ(After(list, u"c:\\DATA\\b.BIN"), (List{u"c:\\DATA\\b.BIN", u"C:\\a"}));
    EXPECT_EQ(After({u"C:\\a", u"C:\\data"}, u"C:\\x\\..\\data"),
              (List{u"C:\\x\\..\\data", u"C:\\a"}));
}

TEST(RecentFiles, PushTheOldestOutPastSixteen) {
    List list;
    for (char16_t name = u'a'; name <= u'q'; ++name)
        AddRecentFile(list, std::u16string(1, name), WithoutDetour);
    EXPECT_EQ(list.size(), kMaxRecentFiles);
    EXPECT_EQ(list.front(), u"q");
    EXPECT_EQ(list.back(), u"b");
}

TEST(RecentFiles, FindEquivalentSpellingsOfAnyLengthThroughTheFileSystem) {
    const std::u16string deep = std::u16string(200, u'd') + u"/" + std::u16string(200, u'e');
    List list{u"other", deep + u"/../" + std::u16string(200, u'E') + u"/f"};
    AddRecentFile(list, deep + u"/f");
    EXPECT_EQ(list, (List{deep + u"/f", u"other"}));
}

} // namespace
} // namespace kvx
