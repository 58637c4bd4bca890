// Every message of the pattern language, by every way that leads to it.
#include "pattern/parser.h"
#include "pattern/type_resolution.h"
#include "tests/pattern/pattern_testing.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace kvx {
namespace {

using namespace std::string_view_literals;

/// The message of a load of `marked`. A `^` in it is not part of the file but the place at which
/// the message points; without one the message has no place.
void ExpectMessage(std::string_view marked, std::string_view message) {
    std::u16string source = Utf8ToUtf16(marked);
    std::string expected(message);
    if (const std::size_t mark = source.find(u'^'); mark != std::u16string::npos) {
        source.erase(mark, 1);
        const std::u16string_view before = std::u16string_view(source).substr(0, mark);
        const std::size_t start = before.rfind(u'\n') + 1;
        const std::u16string line =
            source.substr(start, source.find_first_of(u"\r\n", start) - start);
        expected = "Line " + std::to_string(1 + std::ranges::count(before, u'\n')) + ", Col " +
                   std::to_string(mark - start + 1) + ": " + expected;
        if (!line.empty())
            expected += "\r\n" + Utf16ToUtf8(line) + "\r\n" + std::string(mark - start, ' ') + "^";
    }
    EXPECT_EQ(ErrorOf(Utf16ToUtf8(source)), expected) << "for the file\n" << marked;
}

TEST(Diagnostics, TellThePlaceQuoteTheLineAndPointAtTheColumn) {
    EXPECT_EQ(ErrorOf("struct A {\n  int x;\n    $ y;\n};"),
              "Line 3, Col 5: Unexpected character in definition file.\r\n    $ y;\r\n    ^");
    EXPECT_EQ(ErrorOf("struct A {\r\n\tint a, b;\r\n};"),
              "Line 2, Col 2: Multiple declarators are not supported in v1.\r\n\tint a, b;\r\n ^");
    EXPECT_EQ(ErrorOf("@entry\n"), "Line 2, Col 1: Expected type name after @entry.");
}

/// A message and all ways that lead to it.
struct Row {
    std::string_view message;
    std::vector<std::string_view> files;
};

const Row kRows[] = {
    {"Unterminated block comment.", {"struct A { int x; };\n/* no end", "/*", "/*/"}},
    // A byte-order mark is one only at the start of the file. A character beyond the basic plane
    // takes two columns. What is no token is told before all other mistakes.
    {"Unexpected character in definition file.",
     {"^#include", "^/ /", "struct A { int x^(1); };", "x^\0y"sv, "a ^\xEF\xBB\xBF",
      "/*\xF0\x9F\x98\x80*/ ^\xF0\x9F\x98\x80", "nonsense\n^="}},

    {"Unsupported top-level declaration.",
     {"^int x;", "^12", "@sizeof_int 4^;", "struct A { int x; };^;"}},
    {"Expected directive name.", {"^@", "  ^@ 12"}},
    {"Expected struct name after @entry struct.", {"@entry struct^", "@entry struct ^{"}},
    {"Expected type name after @entry.", {"@entry ^5", "@entry\n^"}},
    {"Expected numeric directive value.", {"@sizeof_int ^x", "@sizeof_int^", "@unknown ^x"}},
    {"Invalid directive number.", {"@unknown ^18446744073709551616"}},
    {"Unknown directive.", {"^@sizeof_char 1"}},
    {"Directive value is not allowed.",
     {"/**/ ^@member_align 2", "^@sizeof_double 2", "^@pointer_size 18446744073709551615"}},

    {"Expected ';' after struct declaration.", {"struct A { int x; }^", "struct A { int x; } ^a;"}},
    {"Unsupported struct declaration.", {"^struct A;", "\n ^struct", "typedef ^struct;"}},
    {"Expected '}' to close struct body.", {"struct A {^", "struct A { int x;^"}},
    {"Inline nested struct declarations are not supported.",
     {"struct B { struct ^{ int a; } inner; };"}},
    {"Expected ';' after member declaration.", {"struct A { int x }^"}},
    {"Duplicate struct type name: a", {"struct A { int x; };\nstruct a { int y; };"}},
    {"Duplicate struct type name: A", {"struct A { int x; };\ntypedef struct A { int y; } B;"}},

    {"Expected typedef alias name.",
     {"typedef struct A^;", "typedef struct A^* B;", "typedef struct { int x; }^;"}},
    {"Expected ';' after typedef.",
     {"typedef struct A B^", "typedef struct A B ^C;", "typedef struct A { int x; } B ^C;"}},
    {"Expected ';' after typedef declaration.", {"typedef int x^"}},
    {"Typedef arrays are not supported.",
     {" ^typedef int A[2];", "^typedef int A[0];", "^typedef int A[];"}},
    {"Duplicate typedef name: a", {"typedef int A;\ntypedef char a;"}},
    {"Duplicate typedef name: A", {"typedef int A;\ntypedef struct { int x; } A;"}},

    {"Empty declaration.", {"struct A {\n ^; int x; };", "\t ^typedef ;"}},
    {"Multiple declarators are not supported in v1.",
     {"struct A { ^int a, b; };", "typedef\n^int a, b;"}},
    {"Declaration name was not found.", {"struct A { ^5; };", "struct A { ^[N]; };"}},
    {"Unexpected tokens after flexible array declaration.",
     {"struct A { ^char d[][2]; };", "struct A { ^char d[]]; };"}},
    {"Invalid array count.",
     {"struct A { ^int a[N]; };", "struct A { ^int a[*]; };", "struct A { ^int a[*] 3; };",
      "struct A { ^int a[18446744073709551616]; };"}},
    {"Unexpected tokens after array declaration.",
     {"struct A { ^int a[2][N]; };", "struct A { ^int a[2][3]; };", "struct A { ^int a[2] 3; };",
      "struct A { ^a b c d e f g h i j k[2][3]; };"}},
    {"Invalid array declaration.",
     {"struct A { ^int a[; };", "struct A { ^int a[2; };", "struct A { ^int a[1 2]; };"}},
    {"Unexpected tokens after declaration name.",
     {"struct A { ^int x[0x10]; };", "struct A { ^int x]; };", "struct A { ^int x *; };",
      "struct A { ^5 x *; };"}},
    {"Unsupported declaration syntax.", {"struct A { ^int 5 x; };", "struct A { ^@ int x; };"}},
    {"Type specifier was not found.",
     {"struct A { ^x; };", "struct A { ^* x[2]; };", "typedef ^int;"}},

    {"Unknown type: unknown", {"struct A { Unknown  u; };"}},
    {"Unknown type: short int", {"struct A { short int u; };"}},
    {"Unknown type: a b c d e f g h i j k l", {"struct A { a B c d e f g h i j k l x; };"}},
    {"Unknown type: nothing", {"@entry C struct A { int x; }; struct B { Nothing n; };"}},
    {"Unknown type: struct gone", {"typedef struct Gone Alias; struct A { Alias a; };"}},
    {"Unknown type: a",
     {"typedef A B; typedef B A; struct S { int i; A x; };",
      "typedef A A; struct A { int x; }; struct S { A a; };"}},
    {"Direct recursive struct embedding is not allowed.",
     {"struct A { struct A inner; };", "struct A { int n; struct A more[]; };",
      "struct A { struct B b; }; struct B { struct A a[2]; };"}},
    {"Flexible array member must be the last member.",
     {"struct A {\n  ^char data[];\n  int n;\n};", "struct A { ^Gone data[]; int n; };"}},
    {"Unsupported zero-sized member type: void", {"struct A { ^VOID v; };"}},
    {"Unsupported zero-sized member type: int", {"struct A { ^int a[0]; };"}},
    {"Unsupported zero-sized member type: struct e", {"struct E { }; struct A { ^struct  E e; };"}},
    {"Struct size exceeds 64 bits.", // the last but one with the gap at its end
     {"struct A { ^long a[2305843009213693952]; };",
      "struct A {\n char a[18446744073709551615];\n ^char b;\n};",
      "struct A {\n char a[18446744073709551615];\n ^int b[];\n};",
      "struct A {\n int i;\n ^char a[18446744073709551611];\n};",
      "struct A {\n int i;\n ^char a[18446744073709551609];\n};",
      "struct A { char a[9223372036854775808]; };\nstruct B {\n  ^struct A pair[2];\n};"}},

    {"No struct definition was found.", {"", "\xEF\xBB\xBF", "@entry A typedef int B; // alone"}},
    {"@entry is required when multiple structs are defined.",
     {"struct A { int x; }; struct B { int y; };"}},
    {"@entry refers to an undefined struct.",
     {"@entry C struct A { int x; };", "@entry B struct A { int x; }; typedef struct A B;",
      "@entry int struct A { int x; };"}},
};

TEST(Diagnostics, AreTheSameByEveryWayThatLeadsToThem) {
    for (const Row& row : kRows)
        for (const std::string_view file : row.files)
            ExpectMessage(file, row.message);
    for (const std::string_view bytes : {"struct A { int x; };\xFF", "\xC0\x80", "\xEF\xBB"})
        EXPECT_EQ(ErrorOf(bytes), "Definition file must be UTF-8.");
}

TEST(Diagnostics, FormsReadAtTheWrongToken) {
    ParseState state(u"x");
    EXPECT_FALSE(ParseDirective(state));
    EXPECT_EQ(state.error, u"Line 1, Col 1: Expected '@' for directive.\r\nx\r\n^");
    EXPECT_FALSE(ParseStruct(state));
    EXPECT_EQ(state.error, u"Line 1, Col 1: Expected 'struct'.\r\nx\r\n^");
    EXPECT_FALSE(ParseTypedef(state));
    EXPECT_EQ(state.error, u"Line 1, Col 1: Expected 'typedef'.\r\nx\r\n^");
}

TEST(Diagnostics, AResolverWithoutAnAnswerOrAReason) {
    ParseState state(u"struct A { int x; }; struct B { struct A a; };");
    ASSERT_TRUE(ParseTopLevel(state) && ParseTopLevel(state));
    const MemberDecl& member = state.structs[1].members[0];
    const StructResolver silent = [](std::size_t) { return std::nullopt; };
    EXPECT_EQ(ResolveType(state, member, silent).error,
              u"Failed to resolve struct size for type: struct a");
    state.error = u"The reason.";
    EXPECT_EQ(ResolveType(state, member, silent).error, u"The reason.");
}

} // namespace
} // namespace kvx
