#include "hexview/hex_digits.h"

#include <gtest/gtest.h>

namespace kvx {
namespace {

TEST(HexDigits, OffsetsTakeSixteenDigitsFromFourGibibytesOn) {
    EXPECT_EQ(OffsetDigits(0), 8U);
    EXPECT_EQ(OffsetDigits(0xFFFFFFFF), 8U);
    EXPECT_EQ(OffsetDigits(0x1'0000'0000), 16U);
    EXPECT_EQ(FormatOffset(0xABC0, 8), u"0000ABC0");
    EXPECT_EQ(FormatOffset(0, 8), u"00000000");
    EXPECT_EQ(FormatOffset(0xFFFFFFFFFFFFFFF0, 16), u"FFFFFFFFFFFFFFF0");
    EXPECT_EQ(FormatOffset(0x123456789A, 8), u"123456789A");
}

TEST(HexDigits, ReadsDigitsOfBothCasesAndNothingElse) {
    std::u16string digits;
    for (std::uint32_t unit = 0; unit <= 0xFFFF; ++unit) {
        const auto character = static_cast<char16_t>(unit);
        const auto value = HexDigitValue(character);
        if (!value) continue;
        digits += character;
        const char16_t shown = kHexDigits[*value];
        EXPECT_TRUE(shown == character || shown + 0x20 == character) << unit;
    }
    EXPECT_EQ(digits, u"0123456789ABCDEFabcdef");
}

} // namespace
} // namespace kvx
