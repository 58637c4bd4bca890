#include "tests/pattern/pattern_testing.h"

#include <gtest/gtest.h>

#include <limits>

namespace kvx {
namespace {

constexpr ValueFormat kText{ByteArrayStyle::Ascii, ByteOrder::Little, NumberBase::Hex};

StructEvalRequest Request(std::string_view pattern, Bytes bytes, ValueFormat format = {}) {
    StructEvalRequest request;
    request.pattern = LoadText(pattern).value.value_or(nullptr);
    EXPECT_NE(request.pattern, nullptr) << ErrorOf(pattern);
    request.bytes = std::move(bytes);
    request.format = format;
    return request;
}

std::string Rows(std::string_view pattern, Bytes bytes, ValueFormat format = {}) {
    return Describe(EvaluateStruct(Request(pattern, std::move(bytes), format)));
}

Bytes Counting(int count) {
    Bytes bytes;
    for (int i = 0; i < count; ++i)
        bytes.push_back(static_cast<std::uint8_t>(i));
    return bytes;
}

TEST(Evaluation, ShowsNameSizeOffsetTypeAndValueOfEveryMember) {
    StructEvalRequest request =
        Request("struct S { char name[8]; uint16_t n; };",
                MakeBytes({0x41, 0x42, 0x43, 0, 0x58, 0x58, 0x58, 0x58, 0x34, 0x12}), kText);
    request.baseOffset = 256;
    EXPECT_EQ(Describe(EvaluateStruct(request)), "name | 8 | 0x100 | char[8] | \"ABC\"\n"
                                                 "n | 2 | 0x108 | uint16_t | 0x1234");
    request.format.byteOrder = ByteOrder::Big;
    EXPECT_EQ(EvaluateStruct(request)[1].Value(), u"0x3412");
    request.format = {ByteArrayStyle::Hex, ByteOrder::Little, NumberBase::Decimal};
    EXPECT_EQ(Describe(EvaluateStruct(request)),
              "name | 8 | 0x100 | char[8] | 41 42 43 00 58 58 58 58\n"
              "n | 2 | 0x108 | uint16_t | 4660");
}

TEST(Evaluation, WithoutAPatternThereAreNoRows) {
    EXPECT_TRUE(EvaluateStruct({}).empty());
    StructEvalRequest request;
    request.pattern = std::make_shared<StructPatternFile>();
    EXPECT_TRUE(EvaluateStruct(request).empty());
}

TEST(Evaluation, EmbeddedStructsAreFollowedByTheirMembersAtEveryLevel) {
    EXPECT_EQ(Rows("@entry A struct C { char x; int8_t y; };\n"
                   "struct B { char before; struct C c; struct C many[2]; };\n"
                   "struct A { struct B b; short last; struct B one[1]; };",
                   Counting(17)),
              "b | 7 | 0x0 | struct b (7 bytes) | 00 01 02 03 04 05 06\n"
              "  before | 1 | 0x0 | char | 0x00\n"
              "  c | 2 | 0x1 | struct c (2 bytes) | 01 02\n"
              "    x | 1 | 0x1 | char | 0x01\n"
              "    y | 1 | 0x2 | int8_t | 0x02\n"
              "  many | 4 | 0x3 | struct c[2] | 03 04 05 06\n"
              "<padding> | 1 | 0x7 | padding | 07\n"
              "last | 2 | 0x8 | short | 0x0908\n"
              "one | 7 | 0xA | struct b (7 bytes) | 0A 0B 0C 0D 0E 0F 10\n"
              "  before | 1 | 0xA | char | 0x0A\n"
              "  c | 2 | 0xB | struct c (2 bytes) | 0B 0C\n"
              "    x | 1 | 0xB | char | 0x0B\n"
              "    y | 1 | 0xC | int8_t | 0x0C\n"
              "  many | 4 | 0xD | struct c[2] | 0D 0E 0F 10\n"
              "<padding> | 1 | 0x11 | padding | -");
}

TEST(Evaluation, StructsWithoutATagAreExpandedByWhatEachMemberReallyIs) {
    EXPECT_EQ(Rows("typedef struct { char first; } One; typedef struct { int8_t second; } Two;\n"
                   "@entry S struct S { Two two; One one; };",
                   Counting(2)),
              "two | 1 | 0x0 | two (1 bytes) | 00\n"
              "  second | 1 | 0x0 | int8_t | 0x00\n"
              "one | 1 | 0x1 | one (1 bytes) | 01\n"
              "  first | 1 | 0x1 | char | 0x01");
}

TEST(Evaluation, GapsAreAlwaysBytes) {
    EXPECT_EQ(Rows("struct S { char c; int i; };", MakeBytes({0x41, 0x42, 0x43, 0x44, 1, 0, 0, 0}),
                   {ByteArrayStyle::Ascii, ByteOrder::Little, NumberBase::Decimal}),
              "c | 1 | 0x0 | char | 65\n"
              "<padding> | 3 | 0x1 | padding | 42 43 44\n"
              "i | 4 | 0x4 | int | 1");
}

TEST(Evaluation, OnlyArraysOfCharacterTypesAreText) {
    constexpr std::string_view kPattern =
        "@member_align 0 typedef char Letter;\n"
        "struct S { char a[2]; signed char b[2]; unsigned char c[2]; int8_t d[2]; uint8_t e[2];\n"
        "           Letter f[2]; int16_t g[1]; int16_t h[2]; char i; };";
    EXPECT_EQ(Rows(kPattern, Bytes(19, 0x41), kText), "a | 2 | 0x0 | char[2] | \"AA\"\n"
                                                      "b | 2 | 0x2 | signed char[2] | \"AA\"\n"
                                                      "c | 2 | 0x4 | unsigned char[2] | \"AA\"\n"
                                                      "d | 2 | 0x6 | int8_t[2] | \"AA\"\n"
                                                      "e | 2 | 0x8 | uint8_t[2] | \"AA\"\n"
                                                      "f | 2 | 0xA | letter[2] | 41 41\n"
                                                      "g | 2 | 0xC | int16_t | 0x4141\n"
                                                      "h | 4 | 0xE | int16_t[2] | 41 41 41 41\n"
                                                      "i | 1 | 0x12 | char | 0x41");
}

TEST(Evaluation, AFlexibleArrayTakesTheBytesThatAreLeft) {
    constexpr std::string_view kPattern = "struct S { int n; char data[]; };";
    EXPECT_EQ(Rows(kPattern, Counting(10)), "n | 4 | 0x0 | int | 0x03020100\n"
                                            "data | 1+ | 0x4 | char[] | 04 05 06 07 08 09");
    EXPECT_EQ(Rows(kPattern, Counting(4)), "n | 4 | 0x0 | int | 0x03020100\n"
                                           "data | 1+ | 0x4 | char[] | 0 bytes");
    EXPECT_EQ(Rows(kPattern, Counting(3)), "n | 4 | 0x0 | int | -\n"
                                           "data | 1+ | 0x4 | char[] | -");
}

TEST(Evaluation, MembersBeyondTheBytesShowTheUnavailableText) {
    StructEvalRequest request = Request("struct S { int a; int b; int c; };", Counting(7));
    request.unavailableText = u"(none)";
    EXPECT_EQ(Describe(EvaluateStruct(request)), "a | 4 | 0x0 | int | 0x03020100\n"
                                                 "b | 4 | 0x4 | int | (none)\n"
                                                 "c | 4 | 0x8 | int | (none)");
    request.bytes = Counting(12);
    EXPECT_EQ(EvaluateStruct(request)[2].Value(), u"0x0B0A0908");
}

TEST(Evaluation, HugeMembersNeitherReadNorWrap) {
    StructEvalRequest request =
        Request("struct S { char a[18446744073709551608]; long tail[]; };", Counting(8));
    request.baseOffset = std::numeric_limits<std::uint64_t>::max();
    EXPECT_EQ(Describe(EvaluateStruct(request)),
              "a | 18446744073709551608 | 0xFFFFFFFFFFFFFFFF | char[18446744073709551608] | -\n"
              "tail | 8+ | 0xFFFFFFFFFFFFFFF7 | long[] | -");
}

TEST(Evaluation, LargeNumbersPointersAndFloats) {
    EXPECT_EQ(
        Rows("@sizeof_long_long 16 struct S { long long wide; char* text; float f; double d;\n"
             "int* none[0]; };",
             MakeBytes({0, 1, 2, 3, 4, 5,    6,    7, 8, 9, 10, 11, 12, 13, 14, 15, 1, 2, 0,   0, 0,
                        0, 0, 0, 0, 0, 0x80, 0x3F, 9, 9, 9, 9,  0,  0,  0,  0,  0,  0, 0, 0x40})),
        "wide | 16 | 0x0 | long long | 0x00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F\n"
        "text | 8 | 0x10 | char | 0x0000000000000201\n"
        "f | 4 | 0x18 | float | 1 (0x3F800000)\n"
        "<padding> | 4 | 0x1C | padding | 09 09 09 09\n"
        "d | 8 | 0x20 | double | 2 (0x4000000000000000)\n"
        "none | 0 | 0x28 | int | ");
}

TEST(Evaluation, StopsAfter256RowsWithAMarker) {
    const auto structOf = [](int members) {
        std::string text = "struct S {";
        for (int i = 0; i < members; ++i)
            text += " char m" + std::to_string(i) + ";";
        return text + " };";
    };
    constexpr std::string_view kMarker = "... | ... |  | ... | ...";
    const auto last = [](const std::vector<StructViewRow>& rows) {
        return Describe({rows.back()});
    };
    const std::vector<StructViewRow> all = EvaluateStruct(Request(structOf(256), Counting(256)));
    EXPECT_EQ(all.size(), 256U);
    EXPECT_EQ(last(all), "m255 | 1 | 0xFF | char | 0xFF");
    const std::vector<StructViewRow> cut = EvaluateStruct(Request(structOf(300), Counting(300)));
    EXPECT_EQ(cut.size(), 257U);
    EXPECT_EQ(cut[255], all[255]);
    EXPECT_EQ(last(cut), kMarker);
    const std::vector<StructViewRow> nested = EvaluateStruct(
        Request("@entry E struct E { struct S s; }; " + structOf(256), Counting(256)));
    EXPECT_EQ(nested.size(), 257U);
    EXPECT_EQ(nested[255].Name(), u"  m254");
    EXPECT_EQ(last(nested), kMarker);
}

TEST(Evaluation, VeryDeepStructsEndInTheMarker) {
    std::string text = "@entry S0\n";
    for (int i = 0; i < 1000; ++i)
        text += "struct S" + std::to_string(i) + " { struct S" + std::to_string(i + 1) + " s; };\n";
    const auto rows = EvaluateStruct(Request(text + "struct S1000 { char c; };", Counting(1)));
    EXPECT_EQ(rows.size(), 257U);
    EXPECT_EQ(rows[255].Name(), std::u16string(510, u' ') + u"s");
}

} // namespace
} // namespace kvx
