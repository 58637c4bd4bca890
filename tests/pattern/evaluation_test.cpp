// What the examples of the users' reference do not show; those are run as tests too.
#include "tests/pattern/pattern_testing.h"

#include <gtest/gtest.h>

#include <limits>
#include <numeric>

namespace kvx {
namespace {

StructEvalRequest Request(std::string_view pattern, Bytes bytes, ValueFormat format = {}) {
    StructEvalRequest request;
    request.pattern = LoadText(pattern).value.value_or(nullptr);
    EXPECT_NE(request.pattern, nullptr) << ErrorOf(pattern);
    request.bytes = std::move(bytes);
    request.format = format;
    return request;
}

std::string Rows(const StructEvalRequest& request) {
    return Describe(EvaluateStruct(request));
}

Bytes Counting(std::size_t count) {
    Bytes bytes(count);
    std::iota(bytes.begin(), bytes.end(), std::uint8_t{0});
    return bytes;
}

TEST(Evaluation, WithoutAPatternThereAreNoRows) {
    EXPECT_EQ(Rows({}), "");
    StructEvalRequest request;
    request.pattern = std::make_shared<StructPatternFile>();
    EXPECT_EQ(Rows(request), "");
}

TEST(Evaluation, EmbeddedStructsAreFollowedByTheirMembersAtEveryLevel) {
    EXPECT_EQ(Rows(Request("@entry A struct C { char x; int8_t y; };\n"
                           "struct B { char before; struct C c; struct C many[2]; };\n"
                           "struct A { struct B b; short last; struct C one[1];\n"
                           "           struct C rest[]; };",
                           Counting(11))),
              "b | 7 | 0x0 | struct b (7 bytes) | 00 01 02 03 04 05 06\n"
              "  before | 1 | 0x0 | char | 0x00\n"
              "  c | 2 | 0x1 | struct c (2 bytes) | 01 02\n"
              "    x | 1 | 0x1 | char | 0x01\n"
              "    y | 1 | 0x2 | int8_t | 0x02\n"
              "  many | 4 | 0x3 | struct c[2] | 03 04 05 06\n"
              "<padding> | 1 | 0x7 | padding | 07\n"
              "last | 2 | 0x8 | short | 0x0908\n"
              "one | 2 | 0xA | struct c (2 bytes) | -\n"
              "  x | 1 | 0xA | char | 0x0A\n"
              "  y | 1 | 0xB | int8_t | -\n"
              "rest | 2+ | 0xC | struct c[] | -");
    // Structs without a tag have the same name; what counts is which one the member really is.
    EXPECT_EQ(Rows(Request("typedef struct { char first; } One; typedef struct { char second; } "
                           "Two; @entry S struct S { Two two; One one; };",
                           Counting(2))),
              "two | 1 | 0x0 | two (1 bytes) | 00\n"
              "  second | 1 | 0x0 | char | 0x00\n"
              "one | 1 | 0x1 | one (1 bytes) | 01\n"
              "  first | 1 | 0x1 | char | 0x01");
}

TEST(Evaluation, OnlyArraysOfCharacterTypesAreText) {
    const std::pair<std::string_view, std::string_view> members[] = {
        {"char x[2]", "\"AA\""},
        {"signed char x[2]", "\"AA\""},
        {"unsigned char x[2]", "\"AA\""},
        {"int8_t x[2]", "\"AA\""},
        {"uint8_t x[2]", "\"AA\""},
        {"char x[]", "\"AAAA\""},
        {"Alias x[2]", "41 41"},
        {"int16_t x[2]", "41 41 41 41"},
        {"int16_t x[1]", "0x4141"},
        {"struct T x", "41 41"},
        {"char x", "0x41"},
        {"int* x[0]", ""}};
    for (const auto& [member, value] : members) {
        const std::string pattern = "@entry S typedef char Alias; struct T { char c[2]; };\n"
                                    "struct S { " +
                                    std::string(member) + "; };";
        const std::vector<StructViewRow> rows =
            EvaluateStruct(Request(pattern, Bytes(4, 0x41), {.byteArrays = ByteArrayStyle::Ascii}));
        ASSERT_FALSE(rows.empty()) << member;
        EXPECT_EQ(Utf16ToUtf8(rows[0].Value()), value) << member;
    }
}

TEST(Evaluation, MembersBeyondTheBytesShowTheUnavailableText) {
    StructEvalRequest request = Request("struct S { int a; int b; char data[]; };", Counting(7));
    request.unavailableText = u"(none)";
    EXPECT_EQ(Rows(request), "a | 4 | 0x0 | int | 0x03020100\n"
                             "b | 4 | 0x4 | int | (none)\n"
                             "data | 1+ | 0x8 | char[] | (none)");
    request.bytes = Counting(8);
    EXPECT_EQ(Rows(request), "a | 4 | 0x0 | int | 0x03020100\n"
                             "b | 4 | 0x4 | int | 0x07060504\n"
                             "data | 1+ | 0x8 | char[] | 0 bytes");
}

TEST(Evaluation, HugeMembersNeitherReadNorWrap) {
    StructEvalRequest request =
        Request("struct S { char a[18446744073709551608]; long tail[]; };", Counting(8));
    request.baseOffset = std::numeric_limits<std::uint64_t>::max();
    EXPECT_EQ(Rows(request),
              "a | 18446744073709551608 | 0xFFFFFFFFFFFFFFFF | char[18446744073709551608] | -\n"
              "tail | 8+ | 0xFFFFFFFFFFFFFFF7 | long[] | -");
}

TEST(Evaluation, StopsAfter256RowsWithAMarker) {
    std::string members;
    for (int i = 0; i < 256; ++i)
        members += " char m" + std::to_string(i) + ";";
    constexpr std::string_view kMarker = "... | ... |  | ... | ...";
    struct Case {
        std::string pattern;
        std::size_t rows;
        std::string_view last;
    };
    const Case cases[] = {
        {"struct S {" + members + " };", 256, "m255 | 1 | 0xFF | char | 0xFF"},
        {"struct S {" + members + " char more; };", 257, kMarker},
        {"@entry E struct S {" + members + " }; struct E { struct S s; };", 257, kMarker},
    };
    for (const Case& c : cases) {
        const std::vector<StructViewRow> rows = EvaluateStruct(Request(c.pattern, Counting(300)));
        ASSERT_EQ(rows.size(), c.rows);
        EXPECT_EQ(Describe({rows.back()}), c.last);
    }
}

TEST(Evaluation, VeryDeepStructsEndInTheMarker) {
    const std::string text = "@entry S0\n" + Repeat(1000, "struct S# { struct S$ s; };\n");
    const auto rows = EvaluateStruct(Request(text + "struct S1000 { char c; };", Counting(1)));
    ASSERT_EQ(rows.size(), 257U);
    EXPECT_EQ(rows[255].Name(), std::u16string(510, u' ') + u"s");
}

} // namespace
} // namespace kvx
