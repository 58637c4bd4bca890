// Every message of the pattern language, by every way that leads to it.
#include "pattern/parser.h"
#include "pattern/type_resolution.h"
#include "tests/pattern/pattern_testing.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace kvx {
namespace {

using namespace std::string_view_literals;

/// A faulty file. The `^` in it is not part of it but the place at which the message points;
/// without one the message has no place.
struct Case {
    std::string_view marked;
    std::string_view message;
};

void ExpectMessage(const Case& c) {
    std::u16string source = Utf8ToUtf16(c.marked);
    std::string expected(c.message);
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
    EXPECT_EQ(ErrorOf(Utf16ToUtf8(source)), expected) << "for the file\n" << c.marked;
}

void ExpectMessages(std::initializer_list<Case> cases) {
    for (const Case& c : cases)
        ExpectMessage(c);
}

TEST(Diagnostics, TellThePlaceQuoteTheLineAndPointAtTheColumn) {
    EXPECT_EQ(ErrorOf("struct A {\n  int x;\n    $ y;\n};"),
              "Line 3, Col 5: Unexpected character in definition file.\r\n    $ y;\r\n    ^");
    EXPECT_EQ(ErrorOf("struct A {\r\n\tint a, b;\r\n};"),
              "Line 2, Col 2: Multiple declarators are not supported in v1.\r\n\tint a, b;\r\n ^");
    EXPECT_EQ(ErrorOf("@entry\n"), "Line 2, Col 1: Expected type name after @entry.");
}

TEST(Diagnostics, Lexer) {
    constexpr std::string_view kUnexpected = "Unexpected character in definition file.";
    ExpectMessages({
        {"struct A { int x; };\n/* no end", "Unterminated block comment."},
        {"/*", "Unterminated block comment."},
        {"/*/", "Unterminated block comment."},
        {"^#include", kUnexpected},
        {"^/ /", kUnexpected},
        {"struct A { int x^(1); };", kUnexpected},
        {"x^\0y"sv, kUnexpected},
        // A byte-order mark is one only at the start of the file.
        {"a ^\xEF\xBB\xBF", kUnexpected},
        // A character beyond the basic plane takes two columns and begins no name.
        {"/*\xF0\x9F\x98\x80*/ ^\xF0\x9F\x98\x80", kUnexpected},
        // What is no token is told before all other mistakes.
        {"nonsense\n^=", kUnexpected},
    });
}

TEST(Diagnostics, TopLevelAndDirectives) {
    constexpr std::string_view kNoNumber = "Expected numeric directive value.";
    constexpr std::string_view kNoForm = "Unsupported top-level declaration.";
    constexpr std::string_view kNotAllowed = "Directive value is not allowed.";
    ExpectMessages({
        {"^int x;", kNoForm},
        {"^12", kNoForm},
        {"@sizeof_int 4^;", kNoForm},
        {"struct A { int x; };^;", kNoForm},
        {"^@", "Expected directive name."},
        {"  ^@ 12", "Expected directive name."},
        {"@entry struct^", "Expected struct name after @entry struct."},
        {"@entry struct ^{", "Expected struct name after @entry struct."},
        {"@entry ^5", "Expected type name after @entry."},
        {"@entry\n^", "Expected type name after @entry."},
        {"@sizeof_int ^x", kNoNumber},
        {"@sizeof_int^", kNoNumber},
        {"@unknown ^x", kNoNumber},
        {"@unknown ^18446744073709551616", "Invalid directive number."},
        {"^@sizeof_char 1", "Unknown directive."},
        {"/**/ ^@member_align 2", kNotAllowed},
        {"^@sizeof_double 2", kNotAllowed},
        {"^@pointer_size 18446744073709551615", kNotAllowed},
    });
}

TEST(Diagnostics, Structs) {
    ExpectMessages({
        {"struct A { int x; }^", "Expected ';' after struct declaration."},
        {"struct A { int x; } ^a;", "Expected ';' after struct declaration."},
        {"^struct A;", "Unsupported struct declaration."},
        {"\n ^struct", "Unsupported struct declaration."},
        {"struct A {^", "Expected '}' to close struct body."},
        {"struct A { int x;^", "Expected '}' to close struct body."},
        {"struct B { struct ^{ int a; } inner; };",
         "Inline nested struct declarations are not supported."},
        {"struct A { int x }^", "Expected ';' after member declaration."},
        {"struct A { int x; };\nstruct a { int y; };", "Duplicate struct type name: a"},
        {"struct A { int x; };\ntypedef struct A { int y; } B;", "Duplicate struct type name: A"},
    });
}

TEST(Diagnostics, Members) {
    constexpr std::string_view kAfterFlexible =
        "Unexpected tokens after flexible array declaration.";
    constexpr std::string_view kAfterArray = "Unexpected tokens after array declaration.";
    constexpr std::string_view kAfterName = "Unexpected tokens after declaration name.";
    static constexpr Case kMembers[] = {
        {";", "Empty declaration."},
        {"int a, b;", "Multiple declarators are not supported in v1."},
        {"5;", "Declaration name was not found."},
        {"[N];", "Declaration name was not found."},
        {"char d[][2];", kAfterFlexible},
        {"char d[]];", kAfterFlexible},
        {"int a[N];", "Invalid array count."},
        {"int a[*];", "Invalid array count."},
        {"int a[18446744073709551616];", "Invalid array count."},
        {"int a[* ] 3;", "Invalid array count."},
        {"int a[2][N];", kAfterArray},
        {"int a[2][3];", kAfterArray},
        {"int a[2] 3;", kAfterArray},
        {"a b c d e f g h i j k[2][3];", kAfterArray},
        {"int a[;", "Invalid array declaration."},
        {"int a[2;", "Invalid array declaration."},
        {"int a[1 2];", "Invalid array declaration."},
        {"int x[0x10];", kAfterName},
        {"int x];", kAfterName},
        {"int x *;", kAfterName},
        {"5 x *;", kAfterName},
        {"int 5 x;", "Unsupported declaration syntax."},
        {"@ int x;", "Unsupported declaration syntax."},
        {"x;", "Type specifier was not found."},
        {"* x[2];", "Type specifier was not found."},
    };
    for (const Case& c : kMembers)
        ExpectMessage({"struct A {\n  ^" + std::string(c.marked) + "\n};", c.message});
}

TEST(Diagnostics, Typedefs) {
    ExpectMessages({
        {"typedef struct A^;", "Expected typedef alias name."},
        {"typedef struct A^* B;", "Expected typedef alias name."},
        {"typedef struct { int x; }^;", "Expected typedef alias name."},
        {"typedef ^struct;", "Unsupported struct declaration."},
        {"typedef struct A B^", "Expected ';' after typedef."},
        {"typedef struct A B ^C;", "Expected ';' after typedef."},
        {"typedef struct A { int x; } B ^C;", "Expected ';' after typedef."},
        {"typedef int x^", "Expected ';' after typedef declaration."},
        {"\t ^typedef ;", "Empty declaration."},
        {"typedef\n^int a, b;", "Multiple declarators are not supported in v1."},
        {"typedef ^int;", "Type specifier was not found."},
        {" ^typedef int A[2];", "Typedef arrays are not supported."},
        {"^typedef int A[0];", "Typedef arrays are not supported."},
        {"^typedef int A[];", "Typedef arrays are not supported."},
        {"typedef int A;\ntypedef char a;", "Duplicate typedef name: a"},
        {"typedef int A;\ntypedef struct { int x; } A;", "Duplicate typedef name: A"},
    });
}

TEST(Diagnostics, Resolution) {
    constexpr std::string_view kRecursive = "Direct recursive struct embedding is not allowed.";
    constexpr std::string_view kNotLast = "Flexible array member must be the last member.";
    constexpr std::string_view kNoStruct = "No struct definition was found.";
    constexpr std::string_view kUndefined = "@entry refers to an undefined struct.";
    ExpectMessages({
        {"", kNoStruct},
        {"\xEF\xBB\xBF", kNoStruct},
        {"@entry A typedef int B; // nothing else", kNoStruct},
        {"struct A { Unknown  u; };", "Unknown type: unknown"},
        {"struct A { unsigned u; };", "Unknown type: unsigned"},
        {"struct A { short int u; };", "Unknown type: short int"},
        {"struct A { a B c d e f g h i j k l x; };", "Unknown type: a b c d e f g h i j k l"},
        {"struct A { int x; }; struct B { Nothing n; };", "Unknown type: nothing"},
        {"typedef struct Gone Alias; struct A { Alias a; };", "Unknown type: struct gone"},
        {"typedef A B; typedef B A; struct S { int i; A x; };", "Unknown type: a"},
        {"typedef A A; struct A { int x; }; struct S { A a; };", "Unknown type: a"},
        {"struct A { struct A inner; };", kRecursive},
        {"struct A { struct B b; }; struct B { struct A a[2]; };", kRecursive},
        {"struct A { int n; struct A more[]; };", kRecursive},
        {"struct A {\n  ^char data[];\n  int n;\n};", kNotLast},
        {"struct A {\n  ^Gone data[];\n  int n;\n};", kNotLast},
        {"struct A { ^VOID v; };", "Unsupported zero-sized member type: void"},
        {"struct A { ^int a[0]; };", "Unsupported zero-sized member type: int"},
        {"struct E { }; struct A { ^struct  E e; };",
         "Unsupported zero-sized member type: struct e"},
        {"struct A { int x; }; struct B { int y; };",
         "@entry is required when multiple structs are defined."},
        {"@entry C struct A { int x; };", kUndefined},
        {"@entry B struct A { int x; }; typedef struct A B;", kUndefined},
        {"@entry int struct A { int x; };", kUndefined},
        {"@entry C struct A { Gone x; };", "Unknown type: gone"},
    });
}

TEST(Diagnostics, SizesThatLeave64Bits) {
    static constexpr std::string_view kStructs[] = {
        "struct A { ^long a[2305843009213693952]; };",
        "struct A {\n char a[18446744073709551615];\n ^char b;\n};",
        "struct A {\n char a[18446744073709551615];\n ^int b[];\n};",
        "struct A {\n int i;\n ^char a[18446744073709551611];\n};",
        "struct A {\n int i;\n ^char a[18446744073709551609];\n};", // with the gap at the end
        "struct A { char a[9223372036854775808]; };\n@entry B\n"
        "struct B {\n  ^struct A pair[2];\n};",
    };
    for (const std::string_view marked : kStructs)
        ExpectMessage({marked, "Struct size exceeds 64 bits."});
}

TEST(Diagnostics, FileLevel) {
    for (const std::string_view bytes : {"struct A { int x; };\xFF", "\xC0\x80", "\xEF\xBB"})
        EXPECT_EQ(ErrorOf(bytes), "Definition file must be UTF-8.");
    EXPECT_EQ(Utf16ToUtf8(LoadStructPatternFile(u"no/such/file.kvpat").error),
              "Failed to open definition file.");
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
