#include "pattern/lexer.h"

#include <gtest/gtest.h>

#include <vector>

namespace kvx {
namespace {

struct Lexed {
    std::u16string text;
    TokenKind kind;
    SourcePosition position;
    friend bool operator==(const Lexed&, const Lexed&) = default;
};

std::vector<Lexed> Lex(std::u16string_view source) {
    std::vector<Lexed> tokens;
    PatternLexer lexer(source);
    for (;; lexer.Advance()) {
        const PatternToken& token = lexer.Current();
        tokens.push_back({std::u16string(token.text), token.kind, token.position});
        if (lexer.AtEnd()) return tokens;
    }
}

using enum TokenKind;

TEST(Lexer, TellsKindTextAndPlaceOfEveryToken) {
    EXPECT_EQ(Lex(u"@entry _a1;\n\t12ab[*]"), (std::vector<Lexed>{
                                                  {u"@", Symbol, {1, 1}},
                                                  {u"entry", Identifier, {1, 2}},
                                                  {u"_a1", Identifier, {1, 8}},
                                                  {u";", Symbol, {1, 11}},
                                                  {u"12", Number, {2, 2}},
                                                  {u"ab", Identifier, {2, 4}},
                                                  {u"[", Symbol, {2, 6}},
                                                  {u"*", Symbol, {2, 7}},
                                                  {u"]", Symbol, {2, 8}},
                                                  {u"", End, {2, 9}},
                                              }));
}

TEST(Lexer, CommentsAreNoTokensButTakePlace) {
    EXPECT_EQ(Lex(u"a // b\n/* c\n * d */ e /**/f /* // */g // h"), (std::vector<Lexed>{
                                                                        {u"a", Identifier, {1, 1}},
                                                                        {u"e", Identifier, {3, 9}},
                                                                        {u"f", Identifier, {3, 15}},
                                                                        {u"g", Identifier, {3, 25}},
                                                                        {u"", End, {3, 31}},
                                                                    }));
}

TEST(Lexer, CrLfFilesReportTheSamePlacesAsLfFiles) {
    EXPECT_EQ(Lex(u"a\r\n b\r\n/*\r\n*/ c\r\n"), Lex(u"a\n b\n/*\n*/ c\n"));
}

TEST(Lexer, ACarriageReturnTakesAColumnInsideABlockCommentOnly) {
    const std::vector<Lexed> outside = Lex(u"\r\ra");
    EXPECT_EQ(outside[0].position, (SourcePosition{1, 1}));
    const std::vector<Lexed> inside = Lex(u"/*\r*/a");
    EXPECT_EQ(inside[0].position, (SourcePosition{1, 6}));
}

TEST(Lexer, LettersAndDigitsOfAllScriptsMakeIdentifiers) {
    EXPECT_EQ(Lex(u"\u00E9t\u00E9_1 \u5927\u304D\u3055\u3000x"),
              (std::vector<Lexed>{
                  {u"\u00E9t\u00E9_1", Identifier, {1, 1}},
                  {u"\u5927\u304D\u3055", Identifier, {1, 7}},
                  {u"x", Identifier, {1, 11}},
                  {u"", End, {1, 12}},
              }));
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

TEST(Lexer, ACopyReadsOnFromTheSamePlace) {
    PatternLexer lexer(u"a b c");
    lexer.Advance();
    PatternLexer copy = lexer;
    copy.Advance();
    EXPECT_EQ(copy.Current().text, u"c");
    EXPECT_EQ(lexer.Current().text, u"b");
}

} // namespace
} // namespace kvx
