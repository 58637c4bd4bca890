#include "platform/characters.h"

#include <gtest/gtest.h>

#include <cctype>
#include <utility>

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

TEST(Characters, OfOtherScriptsHaveTheirClassesAndLowerCases) {
    for (const auto& [letter, lower] : {std::pair(u'\u00C9', u'\u00E9'),
                                        {u'\u0416', u'\u0436'},
                                        {u'\u03A9', u'\u03C9'},
                                        {u'\u0E01', u'\u0E01'},
                                        {u'\u3042', u'\u3042'},
                                        {u'\u6F22', u'\u6F22'},
                                        {u'\uAC00', u'\uAC00'}}) {
        EXPECT_TRUE(IsLetter(letter) && IsLetterOrDigit(letter)) << int{letter};
        EXPECT_FALSE(IsSpace(letter)) << int{letter};
        EXPECT_EQ(ToLower(letter), lower) << int{letter};
    }
    EXPECT_TRUE(IsSpace(u'\u3000') && IsSpace(u'\u2003'));
    for (const char16_t half : {char16_t{0xD800}, char16_t{0xDBFF}, char16_t{0xDC00}}) {
        EXPECT_FALSE(IsLetterOrDigit(half) || IsSpace(half)) << int{half};
        EXPECT_EQ(ToLower(half), half);
    }
}

} // namespace
} // namespace kvx
