#include "platform/characters.h"

#include <gtest/gtest.h>

#include <cctype>

namespace kvx {
namespace {

TEST(Characters, AsciiFollowsTheCLibrary) {
    for (char16_t unit = 0; unit < 0x80; ++unit) {
        EXPECT_EQ(IsSpace(unit), std::isspace(unit) != 0) << int{unit};
        EXPECT_EQ(IsLetter(unit), std::isalpha(unit) != 0) << int{unit};
        EXPECT_EQ(IsLetterOrDigit(unit), std::isalnum(unit) != 0) << int{unit};
        EXPECT_EQ(ToLower(unit), std::tolower(unit)) << int{unit};
    }
}

TEST(Characters, LettersOfOtherScriptsAreLetters) {
    for (const char16_t letter : u"\u00E9\u0416\u03A9\u0E01\u3042\u6F22\uAC00") {
        if (letter == 0) continue;
        EXPECT_TRUE(IsLetter(letter)) << int{letter};
        EXPECT_TRUE(IsLetterOrDigit(letter)) << int{letter};
        EXPECT_FALSE(IsSpace(letter)) << int{letter};
    }
    EXPECT_TRUE(IsSpace(u'\u3000'));
    EXPECT_TRUE(IsSpace(u'\u2003'));
}

TEST(Characters, HalfASurrogatePairIsInNoClass) {
    for (const char16_t half : {char16_t{0xD800}, char16_t{0xDBFF}, char16_t{0xDC00}}) {
        EXPECT_FALSE(IsLetterOrDigit(half));
        EXPECT_FALSE(IsSpace(half));
        EXPECT_EQ(ToLower(half), half);
    }
}

TEST(Characters, LowerCaseCoversOtherScripts) {
    EXPECT_EQ(ToLower(u'\u00C9'), u'\u00E9');
    EXPECT_EQ(ToLower(u'\u0416'), u'\u0436');
    EXPECT_EQ(ToLower(u'\u03A9'), u'\u03C9');
    EXPECT_EQ(ToLower(u'\u3042'), u'\u3042');
}

} // namespace
} // namespace kvx
