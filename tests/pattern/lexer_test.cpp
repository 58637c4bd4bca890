// What the fuzz corpus cannot say about the lexer: there it is compared with a plain one.
#include "pattern/lexer.h"

#include <gtest/gtest.h>

#include <tuple>
#include <vector>

namespace kvx {
namespace {

using enum TokenKind;
using Lexed = std::tuple<std::u16string, TokenKind, std::uint32_t, std::uint32_t>;

/// Text, kind, line and column of every token.
std::vector<Lexed> Lex(std::u16string_view source) {
    std::vector<Lexed> tokens;
    PatternLexer lexer(source);
    for (;; lexer.Advance()) {
        const PatternToken& token = lexer.Current();
        tokens.emplace_back(token.text, token.kind, token.position.line, token.position.column);
        if (lexer.AtEnd()) return tokens;
    }
}

TEST(Lexer, TellsKindTextAndPlaceOfEveryToken) {
    EXPECT_EQ(Lex(u"@_a1;\n\t12ab[*]"), (std::vector<Lexed>{{u"@", Symbol, 1, 1},
                                                            {u"_a1", Identifier, 1, 2},
                                                            {u";", Symbol, 1, 5},
                                                            {u"12", Number, 2, 2},
                                                            {u"ab", Identifier, 2, 4},
                                                            {u"[", Symbol, 2, 6},
                                                            {u"*", Symbol, 2, 7},
                                                            {u"]", Symbol, 2, 8},
                                                            {u"", End, 2, 9}}));
    EXPECT_EQ(Lex(u"a // b\n/* c\n * d */ e /**/f /* // */g // h"),
              (std::vector<Lexed>{{u"a", Identifier, 1, 1},
                                  {u"e", Identifier, 3, 9},
                                  {u"f", Identifier, 3, 15},
                                  {u"g", Identifier, 3, 25},
                                  {u"", End, 3, 31}}));
}

TEST(Lexer, CrLfFilesReportTheSamePlacesAsLfFiles) {
    EXPECT_EQ(Lex(u"a\r\n b\r\n/*\r\n*/ c\r\n"), Lex(u"a\n b\n/*\n*/ c\n"));
    // Alone it takes a column inside a block comment only.
    EXPECT_EQ(Lex(u"\r\r/*\r*/"), (std::vector<Lexed>{{u"", End, 1, 6}}));
}

TEST(Lexer, LettersAndDigitsOfAllScriptsMakeIdentifiers) {
    EXPECT_EQ(Lex(u"\u00E9t\u00E9_1 \u5927\u304D\u3055\u3000x\u0663"),
              (std::vector<Lexed>{{u"\u00E9t\u00E9_1", Identifier, 1, 1},
                                  {u"\u5927\u304D\u3055", Identifier, 1, 7},
                                  {u"x\u0663", Identifier, 1, 11},
                                  {u"", End, 1, 13}}));
}

TEST(Lexer, StopsAtAnErrorAndStaysThere) {
    PatternLexer lexer(u"a = b");
    EXPECT_EQ(lexer.Error(), u"");
    lexer.Advance();
    EXPECT_TRUE(lexer.AtEnd());
    EXPECT_EQ(lexer.Error(),
              u"Line 1, Col 3: Unexpected character in definition file.\r\na = b\r\n  ^");
    lexer.Advance();
    EXPECT_TRUE(lexer.AtEnd());
    EXPECT_EQ(lexer.Current().position, (SourcePosition{1, 3}));
}

} // namespace
} // namespace kvx
