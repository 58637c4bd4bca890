#include "pattern/value_format.h"
#include "tests/pattern/pattern_testing.h"

#include <gtest/gtest.h>

#include <bit>
#include <limits>

namespace kvx {
namespace {

using namespace std::string_literals;
using enum ByteOrder;

/// What a formatter appends, in UTF-8.
template <typename... Parameters, typename... Arguments>
std::string Shown(void (*format)(std::u16string&, Parameters...), const Arguments&... arguments) {
    std::u16string text = u"before";
    format(text, arguments...);
    EXPECT_TRUE(text.starts_with(u"before"));
    return Utf16ToUtf8(std::u16string_view(text).substr(6));
}

TEST(ValueFormat, ArraysShowTheirFirstSixteenBytes) {
    const std::string sixteen = "AB AB AB AB AB AB AB AB AB AB AB AB AB AB AB AB";
    EXPECT_EQ(Shown(FormatByteArrayHex, ByteView()), "0 bytes");
    EXPECT_EQ(Shown(FormatByteArrayHex, Bytes(16, 0xAB)), sixteen);
    EXPECT_EQ(Shown(FormatByteArrayHex, Bytes(17, 0xAB)), sixteen + " ...");
}

TEST(ValueFormat, TextStopsAtNulOrAtWhatCannotBeShown) {
    const std::string sixtyFour(64, 'x');
    const std::pair<std::string, std::string> cases[] = {
        {"", "0 bytes"},
        {"ABC", "\"ABC\""},
        {"ABC\0DEF"s, "\"ABC\""},
        {"\0ABC"s, "\"\""},
        {"\nABC", "\"...\""},
        {"AB\x7F", "\"AB...\""},
        {"AB\x80", "\"AB...\""},
        {" ~", "\" ~\""},
        {sixtyFour, "\"" + sixtyFour + "\""},
        {sixtyFour + "\0x"s, "\"" + sixtyFour + "\""},
        {sixtyFour + "x", "\"" + sixtyFour + "...\""},
        {sixtyFour + "\x01", "\"" + sixtyFour + "...\""},
    };
    for (const auto& [bytes, shown] : cases)
        EXPECT_EQ(Shown(FormatByteArrayAscii, AsBytes(bytes)), shown);
}

TEST(ValueFormat, IntegersFollowByteOrderAndBase) {
    struct Case {
        Bytes bytes;
        std::string shown; ///< hexadecimal little and big, decimal little and big
    };
    const Case cases[] = {
        {HexBytes(""), ",,,"},
        {HexBytes("FF"), "0xFF,0xFF,255,255"},
        {HexBytes("FF 00"), "0x00FF,0xFF00,255,65280"},
        {HexBytes("01 02 03"), "0x030201,0x010203,197121,66051"},
        {HexBytes("00 00 00 80"), "0x80000000,0x00000080,2147483648,128"},
        {HexBytes("FF FF FF FF FF FF FF FE"),
         "0xFEFFFFFFFFFFFFFF,0xFFFFFFFFFFFFFFFE,18374686479671623679,18446744073709551614"},
        {HexBytes("01 02 03 04 05 06 07 08 09"),
         "0x01 02 03 04 05 06 07 08 09,0x01 02 03 04 05 06 07 08 09,"
         "0x01 02 03 04 05 06 07 08 09,0x01 02 03 04 05 06 07 08 09"},
    };
    for (const Case& c : cases) {
        const auto shown = [&](ByteOrder order, NumberBase base) {
            return Shown(FormatInteger, c.bytes, order, base);
        };
        EXPECT_EQ(shown(Little, NumberBase::Hex) + "," + shown(Big, NumberBase::Hex) + "," +
                      shown(Little, NumberBase::Decimal) + "," + shown(Big, NumberBase::Decimal),
                  c.shown);
    }
}

/// `number` as the C library prints it, and its bits.
template <typename Bits, typename Number>
void ExpectShownAsInC(MemberKind kind, Number number) {
    const auto bytes = std::bit_cast<std::array<std::uint8_t, sizeof number>>(number);
    char expected[64];
    std::snprintf(expected, sizeof expected, "%g (0x%0*llX)", static_cast<double>(number),
                  static_cast<int>(2 * sizeof number),
                  static_cast<unsigned long long>(std::bit_cast<Bits>(number)));
    EXPECT_EQ(Shown(FormatFloat, bytes, kind, ValueFormat()), expected);
}

TEST(ValueFormat, FloatsShowTheirNumberAsCPrintsItAndTheirBits) {
    for (const float number :
         {0.0F, -0.0F, 0.1F, -1.5F, 3.14159265F, 1e-5F, 123456.7F, 1234567.F, 1e20F, 1e-42F,
          3.4e38F, 100000.F, std::numeric_limits<float>::infinity()})
        ExpectShownAsInC<std::uint32_t>(MemberKind::Float, number);
    for (const double number : {2.5, -1e300, 5e-324, 0.000123456789, 1e6, 999999.5})
        ExpectShownAsInC<std::uint64_t>(MemberKind::Double, number);
    EXPECT_EQ(Shown(FormatFloat, HexBytes("00 00 C0 7F"), MemberKind::Float, ValueFormat()),
              "nan (0x7FC00000)");
}

TEST(ValueFormat, FloatsOfOtherSizesAreIntegers) {
    const ValueFormat decimal{ByteArrayStyle::Hex, Little, NumberBase::Decimal};
    EXPECT_EQ(Shown(FormatFloat, HexBytes("01 02"), MemberKind::Float, decimal), "513");
    EXPECT_EQ(Shown(FormatFloat, HexBytes("01 00 00 00"), MemberKind::Double, decimal), "1");
    EXPECT_EQ(Shown(FormatFloat, Bytes(8, 1), MemberKind::Float, decimal), "72340172838076673");
}

} // namespace
} // namespace kvx
