#include "pattern/value_format.h"
#include "tests/pattern/pattern_testing.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstring>
#include <limits>

namespace kvx {
namespace {

/// What a formatter appends, in UTF-8.
template <typename... Parameters, typename... Arguments>
std::string Shown(void (*format)(std::u16string&, Parameters...), const Arguments&... arguments) {
    std::u16string text = u"before";
    format(text, arguments...);
    EXPECT_TRUE(text.starts_with(u"before"));
    return Utf16ToUtf8(std::u16string_view(text).substr(6));
}

TEST(ValueFormat, HexBytesAreTwoUpperCaseDigitsEach) {
    EXPECT_EQ(Shown(FormatHexBytes, ByteView()), "");
    EXPECT_EQ(Shown(FormatHexBytes, MakeBytes({0x0A, 0x1B, 0xFF})), "0A 1B FF");
}

TEST(ValueFormat, ArraysShowTheirFirstSixteenBytes) {
    Bytes bytes(20, 0xAB);
    const std::string sixteen = "AB AB AB AB AB AB AB AB AB AB AB AB AB AB AB AB";
    EXPECT_EQ(Shown(FormatByteArrayHex, ByteView()), "0 bytes");
    EXPECT_EQ(Shown(FormatByteArrayHex, ByteView(bytes).first(16)), sixteen);
    EXPECT_EQ(Shown(FormatByteArrayHex, ByteView(bytes).first(17)), sixteen + " ...");
    EXPECT_EQ(Shown(FormatByteArrayHex, bytes), sixteen + " ...");
}

TEST(ValueFormat, TextStopsAtNulOrAtWhatCannotBeShown) {
    struct Case {
        std::string bytes;
        std::string shown;
    };
    using namespace std::string_literals;
    const std::string sixtyFour(64, 'x');
    const Case cases[] = {
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
    for (const Case& c : cases)
        EXPECT_EQ(Shown(FormatByteArrayAscii, AsBytes(c.bytes)), c.shown);
}

TEST(ValueFormat, IntegersFollowByteOrderAndBase) {
    struct Case {
        Bytes bytes;
        std::string littleHex, bigHex, littleDecimal, bigDecimal;
    };
    const Case cases[] = {
        {MakeBytes({}), "", "", "", ""},
        {MakeBytes({0xFF}), "0xFF", "0xFF", "255", "255"},
        {MakeBytes({0xFF, 0x00}), "0x00FF", "0xFF00", "255", "65280"},
        {MakeBytes({1, 2, 3}), "0x030201", "0x010203", "197121", "66051"},
        {MakeBytes({0, 0, 0, 0x80}), "0x80000000", "0x00000080", "2147483648", "128"},
        {MakeBytes({0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFE}), "0xFEFFFFFFFFFFFFFF",
         "0xFFFFFFFFFFFFFFFE", "18374686479671623679", "18446744073709551614"},
        {MakeBytes({1, 2, 3, 4, 5, 6, 7, 8, 9}), "0x01 02 03 04 05 06 07 08 09",
         "0x01 02 03 04 05 06 07 08 09", "0x01 02 03 04 05 06 07 08 09",
         "0x01 02 03 04 05 06 07 08 09"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(Shown(FormatInteger, c.bytes, ByteOrder::Little, NumberBase::Hex), c.littleHex);
        EXPECT_EQ(Shown(FormatInteger, c.bytes, ByteOrder::Big, NumberBase::Hex), c.bigHex);
        EXPECT_EQ(Shown(FormatInteger, c.bytes, ByteOrder::Little, NumberBase::Decimal),
                  c.littleDecimal);
        EXPECT_EQ(Shown(FormatInteger, c.bytes, ByteOrder::Big, NumberBase::Decimal), c.bigDecimal);
    }
}

template <typename Number>
Bytes BytesOf(Number number) {
    Bytes bytes(sizeof number);
    std::memcpy(bytes.data(), &number, sizeof number);
    return bytes;
}

TEST(ValueFormat, FloatsShowTheirNumberAsCPrintsItAndTheirBits) {
    EXPECT_EQ(Shown(FormatFloat, MakeBytes({0, 0, 0x80, 0x3F}), MemberKind::Float, ValueFormat()),
              "1 (0x3F800000)");
    const float numbers[] = {0.0F,
                             -0.0F,
                             0.1F,
                             -1.5F,
                             3.14159265F,
                             1e-5F,
                             123456.7F,
                             1234567.F,
                             1e20F,
                             1e-42F,
                             3.4e38F,
                             100000.F,
                             std::numeric_limits<float>::infinity()};
    for (const float number : numbers) {
        char expected[64];
        std::snprintf(expected, sizeof expected, "%g (0x%08X)", static_cast<double>(number),
                      std::bit_cast<std::uint32_t>(number));
        EXPECT_EQ(Shown(FormatFloat, BytesOf(number), MemberKind::Float, ValueFormat()), expected);
    }
    const double doubles[] = {2.5, -1e300, 5e-324, 0.000123456789, 1e6, 999999.5};
    for (const double number : doubles) {
        char expected[64];
        std::snprintf(expected, sizeof expected, "%g (0x%016llX)", number,
                      static_cast<unsigned long long>(std::bit_cast<std::uint64_t>(number)));
        EXPECT_EQ(Shown(FormatFloat, BytesOf(number), MemberKind::Double, ValueFormat()), expected);
    }
    EXPECT_EQ(Shown(FormatFloat, MakeBytes({0, 0, 0xC0, 0x7F}), MemberKind::Float, ValueFormat()),
              "nan (0x7FC00000)");
}

TEST(ValueFormat, TheByteOrderChangesTheBitsOfAFloatButNotItsNumber) {
    const ValueFormat big{ByteArrayStyle::Hex, ByteOrder::Big, NumberBase::Decimal};
    EXPECT_EQ(Shown(FormatFloat, MakeBytes({0, 0, 0x80, 0x3F}), MemberKind::Float, big),
              "1 (0x0000803F)");
}

TEST(ValueFormat, FloatsOfOtherSizesAreIntegers) {
    const ValueFormat decimal{ByteArrayStyle::Hex, ByteOrder::Little, NumberBase::Decimal};
    EXPECT_EQ(Shown(FormatFloat, MakeBytes({1, 2}), MemberKind::Float, decimal), "513");
    EXPECT_EQ(Shown(FormatFloat, BytesOf(1.0F), MemberKind::Double, ValueFormat()), "0x3F800000");
    EXPECT_EQ(Shown(FormatFloat, BytesOf(1.0), MemberKind::Float, ValueFormat()),
              "0x3FF0000000000000");
}

TEST(ValueFormat, TypeTextTellsCountAndSizeOfAnEmbeddedStruct) {
    StructMemberLayout member;
    member.typeName = u"header";
    member.elementSize = 16;
    EXPECT_EQ(Shown(FormatTypeText, member), "header");
    member.kind = MemberKind::Struct;
    EXPECT_EQ(Shown(FormatTypeText, member), "header (16 bytes)");
    member.count = 3;
    EXPECT_EQ(Shown(FormatTypeText, member), "header[3]");
    member.count = 0;
    member.isFlexibleArray = true;
    EXPECT_EQ(Shown(FormatTypeText, member), "header[]");

    StructMemberLayout gap;
    gap.typeName = u"padding";
    gap.kind = MemberKind::Struct;
    gap.isPadding = true;
    gap.elementSize = 1;
    EXPECT_EQ(Shown(FormatTypeText, gap), "padding");
}

} // namespace
} // namespace kvx
