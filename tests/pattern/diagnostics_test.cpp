// Every message of the pattern language, by every way that leads to it: the whole text with its
// place, the quoted line and the caret.
#include "pattern/layout.h"
#include "pattern/parser.h"
#include "pattern/type_resolution.h"
#include "tests/pattern/pattern_testing.h"

#include <gtest/gtest.h>

namespace kvx {
namespace {

struct Case {
    std::string_view source;
    std::string_view message; ///< rows joined by LF here, by CR LF in the program
};

std::string WithCrLf(std::string_view text) {
    std::string result;
    for (const char character : text)
        result += character == '\n' ? "\r\n" : std::string(1, character);
    return result;
}

void ExpectMessages(std::span<const Case> cases) {
    for (const Case& c : cases)
        EXPECT_EQ(ErrorOf(c.source), WithCrLf(c.message)) << "for the file\n" << c.source;
}

TEST(Diagnostics, Lexer) {
    using namespace std::string_view_literals;
    ExpectMessages(std::array{
        Case{"struct A { int x; };\n/* no end", "Unterminated block comment."},
        Case{"/*", "Unterminated block comment."},
        Case{"/*/", "Unterminated block comment."},
        Case{"#include", "Line 1, Col 1: Unexpected character in definition file.\n#include\n^"},
        Case{"struct A {\n  int x;\n    $ y;\n};",
             "Line 3, Col 5: Unexpected character in definition file.\n    $ y;\n    ^"},
        Case{"/ /", "Line 1, Col 1: Unexpected character in definition file.\n/ /\n^"},
        Case{"struct A { int x(1); };", "Line 1, Col 17: Unexpected character in definition "
                                        "file.\nstruct A { int x(1); };\n                ^"},
        Case{"x\0y"sv, "Line 1, Col 2: Unexpected character in definition file.\nx\0y\n ^"sv},
        // A byte-order mark is one only at the start of the file.
        Case{"a \xEF\xBB\xBF", "Line 1, Col 3: Unexpected character in definition file.\n"
                               "a \xEF\xBB\xBF\n  ^"},
        // A character beyond the basic plane takes two columns and begins no name.
        Case{"/*\xF0\x9F\x98\x80*/ \xF0\x9F\x98\x80",
             "Line 1, Col 8: Unexpected character in definition file.\n"
             "/*\xF0\x9F\x98\x80*/ \xF0\x9F\x98\x80\n       ^"},
        // The lexer has read all of the file before the parser begins.
        Case{"nonsense\n=", "Line 2, Col 1: Unexpected character in definition file.\n=\n^"},
    });
}

TEST(Diagnostics, TopLevel) {
    ExpectMessages(std::array{
        Case{"int x;", "Line 1, Col 1: Unsupported top-level declaration.\nint x;\n^"},
        Case{"12", "Line 1, Col 1: Unsupported top-level declaration.\n12\n^"},
        Case{"@sizeof_int 4;",
             "Line 1, Col 14: Unsupported top-level declaration.\n@sizeof_int 4;\n             ^"},
        Case{"struct A { int x; };;", "Line 1, Col 21: Unsupported top-level declaration.\n"
                                      "struct A { int x; };;\n                    ^"},
    });
}

TEST(Diagnostics, Directives) {
    ExpectMessages(std::array{
        Case{"@", "Line 1, Col 1: Expected directive name.\n@\n^"},
        Case{"  @ 12", "Line 1, Col 3: Expected directive name.\n  @ 12\n  ^"},
        Case{"@entry struct",
             "Line 1, Col 14: Expected struct name after @entry struct.\n@entry struct\n"
             "             ^"},
        Case{"@entry struct {", "Line 1, Col 15: Expected struct name after @entry struct.\n"
                                "@entry struct {\n              ^"},
        Case{"@entry 5", "Line 1, Col 8: Expected type name after @entry.\n@entry 5\n       ^"},
        Case{"@entry\n", "Line 2, Col 1: Expected type name after @entry."},
        Case{"@sizeof_int x",
             "Line 1, Col 13: Expected numeric directive value.\n@sizeof_int x\n            ^"},
        Case{"@sizeof_int", "Line 1, Col 12: Expected numeric directive value.\n@sizeof_int\n"
                            "           ^"},
        Case{"@unknown x",
             "Line 1, Col 10: Expected numeric directive value.\n@unknown x\n         ^"},
        Case{"@sizeof_int 18446744073709551616",
             "Line 1, Col 13: Invalid directive number.\n@sizeof_int 18446744073709551616\n"
             "            ^"},
        Case{"@sizeof_char 1", "Line 1, Col 1: Unknown directive.\n@sizeof_char 1\n^"},
        Case{"/**/ @member_align 2",
             "Line 1, Col 6: Directive value is not allowed.\n/**/ @member_align 2\n     ^"},
        Case{"@sizeof_double 2",
             "Line 1, Col 1: Directive value is not allowed.\n@sizeof_double 2\n^"},
        Case{"@pointer_size 18446744073709551615",
             "Line 1, Col 1: Directive value is not allowed.\n"
             "@pointer_size 18446744073709551615\n^"},
    });
}

TEST(Diagnostics, Structs) {
    ExpectMessages(std::array{
        Case{"struct A { int x; }",
             "Line 1, Col 20: Expected ';' after struct declaration.\nstruct A { int x; }\n"
             "                   ^"},
        Case{"struct A { int x; } a;", "Line 1, Col 21: Expected ';' after struct declaration.\n"
                                       "struct A { int x; } a;\n                    ^"},
        Case{"struct A;", "Line 1, Col 1: Unsupported struct declaration.\nstruct A;\n^"},
        Case{"\n struct", "Line 2, Col 2: Unsupported struct declaration.\n struct\n ^"},
        Case{"struct A {", "Line 1, Col 11: Expected '}' to close struct body.\nstruct A {\n"
                           "          ^"},
        Case{"struct A { int x;",
             "Line 1, Col 18: Expected '}' to close struct body.\nstruct A { int x;\n"
             "                 ^"},
        Case{"struct B { struct { int a; } inner; };",
             "Line 1, Col 19: Inline nested struct declarations are not supported.\n"
             "struct B { struct { int a; } inner; };\n                  ^"},
        Case{"struct A { int x }",
             "Line 1, Col 19: Expected ';' after member declaration.\nstruct A { int x }\n"
             "                  ^"},
        Case{"struct A { int x; };\nstruct a { int y; };", "Duplicate struct type name: a"},
        Case{"struct A { int x; };\ntypedef struct A { int y; } B;",
             "Duplicate struct type name: A"},
    });
}

TEST(Diagnostics, Members) {
    // Each row is one member on a line of its own.
    static constexpr Case kMembers[] = {
        {";", "Empty declaration.\n  ;\n  ^"},
        {"int a, b;", "Multiple declarators are not supported in v1.\n  int a, b;\n  ^"},
        {"5;", "Declaration name was not found.\n  5;\n  ^"},
        {"[N];", "Declaration name was not found.\n  [N];\n  ^"},
        {"char d[][2];",
         "Unexpected tokens after flexible array declaration.\n  char d[][2];\n  ^"},
        {"char d[]];", "Unexpected tokens after flexible array declaration.\n  char d[]];\n  ^"},
        {"int a[N];", "Invalid array count.\n  int a[N];\n  ^"},
        {"int a[*];", "Invalid array count.\n  int a[*];\n  ^"},
        {"int a[18446744073709551616];",
         "Invalid array count.\n  int a[18446744073709551616];\n  ^"},
        {"int a[2][N];", "Unexpected tokens after array declaration.\n  int a[2][N];\n  ^"},
        {"int a[2][3];", "Unexpected tokens after array declaration.\n  int a[2][3];\n  ^"},
        {"int a[2] 3;", "Unexpected tokens after array declaration.\n  int a[2] 3;\n  ^"},
        {"int a[;", "Invalid array declaration.\n  int a[;\n  ^"},
        {"int a[2;", "Invalid array declaration.\n  int a[2;\n  ^"},
        {"int a[1 2];", "Invalid array declaration.\n  int a[1 2];\n  ^"},
        {"int x[0x10];", "Unexpected tokens after declaration name.\n  int x[0x10];\n  ^"},
        {"int x];", "Unexpected tokens after declaration name.\n  int x];\n  ^"},
        {"int x *;", "Unexpected tokens after declaration name.\n  int x *;\n  ^"},
        {"a b c d e f g h i j k[2][3];",
         "Unexpected tokens after array declaration.\n  a b c d e f g h i j k[2][3];\n  ^"},
        {"int 5 x;", "Unsupported declaration syntax.\n  int 5 x;\n  ^"},
        {"@ int x;", "Unsupported declaration syntax.\n  @ int x;\n  ^"},
        {"x;", "Type specifier was not found.\n  x;\n  ^"},
        {"* x[2];", "Type specifier was not found.\n  * x[2];\n  ^"},
    };
    for (const Case& c : kMembers) {
        const std::string source = "struct A {\n  " + std::string(c.source) + "\n};";
        EXPECT_EQ(ErrorOf(source), WithCrLf("Line 2, Col 3: " + std::string(c.message)));
    }
}

TEST(Diagnostics, Typedefs) {
    ExpectMessages(std::array{
        Case{"typedef struct A;",
             "Line 1, Col 17: Expected typedef alias name.\ntypedef struct A;\n"
             "                ^"},
        Case{"typedef struct A* B;",
             "Line 1, Col 17: Expected typedef alias name.\ntypedef struct A* B;\n"
             "                ^"},
        Case{"typedef struct { int x; };", "Line 1, Col 26: Expected typedef alias name.\n"
                                           "typedef struct { int x; };\n"
                                           "                         ^"},
        Case{"typedef struct;", "Line 1, Col 9: Unsupported struct declaration.\n"
                                "typedef struct;\n        ^"},
        Case{"typedef struct A B", "Line 1, Col 19: Expected ';' after typedef.\n"
                                   "typedef struct A B\n                  ^"},
        Case{"typedef struct A B C;", "Line 1, Col 20: Expected ';' after typedef.\n"
                                      "typedef struct A B C;\n                   ^"},
        Case{"typedef int x", "Line 1, Col 14: Expected ';' after typedef declaration.\n"
                              "typedef int x\n             ^"},
        Case{"\t typedef ;", "Line 1, Col 3: Empty declaration.\n\t typedef ;\n  ^"},
        Case{"typedef\nint a, b;",
             "Line 2, Col 1: Multiple declarators are not supported in v1.\nint a, b;\n^"},
        Case{"typedef int;", "Line 1, Col 9: Type specifier was not found.\ntypedef int;\n"
                             "        ^"},
        Case{" typedef int A[2];",
             "Line 1, Col 2: Typedef arrays are not supported.\n typedef int A[2];\n ^"},
        Case{"typedef int A[0];",
             "Line 1, Col 1: Typedef arrays are not supported.\ntypedef int A[0];\n^"},
        Case{"typedef int A[];",
             "Line 1, Col 1: Typedef arrays are not supported.\ntypedef int A[];\n^"},
        Case{"typedef int A;\ntypedef char a;", "Duplicate typedef name: a"},
        Case{"typedef int A;\ntypedef struct { int x; } A;", "Duplicate typedef name: A"},
    });
}

TEST(Diagnostics, Resolution) {
    ExpectMessages(std::array{
        Case{"", "No struct definition was found."},
        Case{"\xEF\xBB\xBF", "No struct definition was found."},
        Case{"@entry A typedef int B; // nothing else", "No struct definition was found."},
        Case{"struct A { Unknown  u; };", "Unknown type: unknown"},
        Case{"struct A { unsigned u; };", "Unknown type: unsigned"},
        Case{"struct A { short int u; };", "Unknown type: short int"},
        Case{"struct A { a B c d e f g h i j k l x; };", "Unknown type: a b c d e f g h i j k l"},
        Case{"struct A { int x; }; struct B { Nothing n; };", "Unknown type: nothing"},
        Case{"typedef struct Gone Alias; struct A { Alias a; };", "Unknown type: struct gone"},
        Case{"typedef A B; typedef B A; struct S { int i; A x; };", "Unknown type: a"},
        Case{"typedef A A; struct A { int x; }; struct S { A a; };", "Unknown type: a"},
        Case{"struct A { struct A inner; };", "Direct recursive struct embedding is not allowed."},
        Case{"struct A { struct B b; }; struct B { struct A a[2]; };",
             "Direct recursive struct embedding is not allowed."},
        Case{"struct A { int n; struct A more[]; };",
             "Direct recursive struct embedding is not allowed."},
        Case{"struct A {\n  char data[];\n  int n;\n};",
             "Line 2, Col 3: Flexible array member must be the last member.\n  char data[];\n  ^"},
        Case{"struct A {\n  Gone data[];\n  int n;\n};",
             "Line 2, Col 3: Flexible array member must be the last member.\n  Gone data[];\n  ^"},
        Case{"struct A { VOID v; };", "Line 1, Col 12: Unsupported zero-sized member type: void\n"
                                      "struct A { VOID v; };\n           ^"},
        Case{"struct A { int a[0]; };", "Line 1, Col 12: Unsupported zero-sized member type: int\n"
                                        "struct A { int a[0]; };\n           ^"},
        Case{"struct E { }; struct A { struct  E e; };",
             "Line 1, Col 26: Unsupported zero-sized member type: struct e\n"
             "struct E { }; struct A { struct  E e; };\n                         ^"},
        Case{"struct A { int x; }; struct B { int y; };",
             "@entry is required when multiple structs are defined."},
        Case{"@entry C struct A { int x; };", "@entry refers to an undefined struct."},
        Case{"@entry B struct A { int x; }; typedef struct A B;",
             "@entry refers to an undefined struct."},
        Case{"@entry int struct A { int x; };", "@entry refers to an undefined struct."},
        Case{"@entry C struct A { Gone x; };", "Unknown type: gone"},
    });
}

TEST(Diagnostics, SizesThatLeave64Bits) {
    ExpectMessages(std::array{
        Case{"struct A { long a[2305843009213693952]; };",
             "Line 1, Col 12: Struct size exceeds 64 bits.\n"
             "struct A { long a[2305843009213693952]; };\n           ^"},
        Case{"struct A {\n char a[18446744073709551615];\n char b;\n};",
             "Line 3, Col 2: Struct size exceeds 64 bits.\n char b;\n ^"},
        Case{"struct A {\n char a[18446744073709551615];\n int b[];\n};",
             "Line 3, Col 2: Struct size exceeds 64 bits.\n int b[];\n ^"},
        Case{"struct A {\n int i;\n char a[18446744073709551611];\n};",
             "Line 3, Col 2: Struct size exceeds 64 bits.\n char a[18446744073709551611];\n ^"},
        Case{"struct A { char a[9223372036854775808]; };\n@entry B\n"
             "struct B {\n  struct A pair[2];\n};",
             "Line 4, Col 3: Struct size exceeds 64 bits.\n  struct A pair[2];\n  ^"},
    });
}

TEST(Diagnostics, FileLevel) {
    EXPECT_EQ(ErrorOf("struct A { int x; };\xFF"), "Definition file must be UTF-8.");
    EXPECT_EQ(ErrorOf("\xC0\x80"), "Definition file must be UTF-8.");
    EXPECT_EQ(ErrorOf("\xEF\xBB"), "Definition file must be UTF-8.");
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
