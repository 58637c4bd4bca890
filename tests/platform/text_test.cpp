#include "platform/text.h"

#include <gtest/gtest.h>

namespace kvx {
namespace {

TEST(Text, ConvertsUtf8ToUtf16MalformedByteByByte) {
    struct Case {
        std::string_view utf8;
        std::u16string_view utf16;
    };
    const Case cases[] = {
        {"", u""},
        {"plain", u"plain"},
        {"\xC3\xA9\xE6\x97\xA5\xF0\x9F\x98\x80", u"\u00E9\u65E5\U0001F600"},
        {"\xF4\x8F\xBF\xBF", u"\U0010FFFF"},
        {"a\x80z", u"a\uFFFDz"},
        {"\xE6\x97z", u"\uFFFD\uFFFDz"},
        {"\xE6\x97", u"\uFFFD\uFFFD"},
        {"\xC0\xAF", u"\uFFFD\uFFFD"},
        {"\xE0\x80\x80", u"\uFFFD\uFFFD\uFFFD"},
        {"\xED\xA0\x80", u"\uFFFD\uFFFD\uFFFD"},
        {"\xF4\x90\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD"},
        {"\xFF", u"\uFFFD"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(Utf8ToUtf16(c.utf8), c.utf16) << c.utf8;
        const bool malformed = c.utf16.find(u'\uFFFD') != std::u16string_view::npos;
        EXPECT_EQ(StrictUtf8ToUtf16(c.utf8),
                  malformed ? std::nullopt : std::optional<std::u16string>(c.utf16))
            << c.utf8;
    }
}

TEST(Text, ReplacesLoneSurrogates) {
    const char16_t lone[] = {u'a', 0xD83D, u'b', 0xDE00, 0xD83D};
    EXPECT_EQ(Utf16ToUtf8({lone, 5}), "a\xEF\xBF\xBD"
                                      "b\xEF\xBF\xBD\xEF\xBF\xBD");
}

TEST(Text, EveryCodePointSurvivesBothConversions) {
    std::u16string all;
    for (char32_t point = 1; point <= 0x10FFFF; ++point) {
        if (point >= 0xD800 && point <= 0xDFFF) continue;
        if (point >= 0x10000) {
            all.push_back(static_cast<char16_t>(0xD7C0 + (point >> 10)));
            all.push_back(static_cast<char16_t>(0xDC00 + (point & 0x3FF)));
        } else {
            all.push_back(static_cast<char16_t>(point));
        }
    }
    EXPECT_TRUE(Utf8ToUtf16(Utf16ToUtf8(all)) == all);
}

TEST(Text, ComparesWithoutRegardToCase) {
    struct Case {
        std::u16string_view left;
        std::u16string_view right;
        int sign;
    };
    const Case cases[] = {
        {u"", u"", 0},
        {u"C:\\Data\\A.BIN", u"c:\\dATA\\a.bin", 0},
        {u"\u00C9\u0416\u03A9", u"\u00E9\u0436\u03C9", 0},
        {u"a", u"B", -1},
        {u"B", u"a", 1},
        {u"abc", u"ABCD", -1},
        {u"abc_", u"ABCD", 1},
        {u"\u65E5", u"\u672C", -1},
    };
    for (const Case& c : cases) {
        const int order = CompareIgnoringCase(c.left, c.right);
        EXPECT_EQ((order > 0) - (order < 0), c.sign)
            << Utf16ToUtf8(c.left) << " " << Utf16ToUtf8(c.right);
    }
}

} // namespace
} // namespace kvx
