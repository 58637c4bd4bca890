// What the fuzz corpus cannot say about the lexer: there it is compared with a plain one.
#include "pattern/lexer.h"
#include "tests/pattern/pattern_testing.h"

#include <gtest/gtest.h>

namespace kvx {
namespace {

/// Text, kind (I, N, S, E), line and column of every token.
std::string Lex(std::u16string_view source) {
    std::string tokens;
    PatternLexer lexer(source);
    for (;; lexer.Advance()) {
        const PatternToken& token = lexer.Current();
        tokens += Utf16ToUtf8(token.text) + " " + "INSE"[static_cast<int>(token.kind)] +
                  std::to_string(token.position.line) + ":" + std::to_string(token.position.column);
        if (lexer.AtEnd()) return tokens;
        tokens += ", ";
    }
}

TEST(Lexer, TellsKindTextAndPlaceOfEveryToken) {
    EXPECT_EQ(Lex(u"@_a1;\n\t12ab[*]"),
              "@ S1:1, _a1 I1:2, ; S1:5, 12 N2:2, ab I2:4, [ S2:6, * S2:7, ] S2:8,  E2:9");
    EXPECT_EQ(Lex(u"a // b\n/* c\n * d */ e /**/f /* // */g // h"),
              "a I1:1, e I3:9, f I3:15, g I3:25,  E3:31");
    // Letters and digits of all scripts make identifiers, blanks of all scripts part them.
    EXPECT_EQ(Lex(u"\u00E9t\u00E9_1 \u5927\u304D\u3055\u3000x\u0663"),
              "\u00E9t\u00E9_1 I1:1, \u5927\u304D\u3055 I1:7, x\u0663 I1:11,  E1:13");
}

TEST(Lexer, CrLfFilesReportTheSamePlacesAsLfFiles) {
    EXPECT_EQ(Lex(u"a\r\n b\r\n/*\r\n*/ c\r\n"), Lex(u"a\n b\n/*\n*/ c\n"));
    // Alone it takes a column inside a block comment only.
    EXPECT_EQ(Lex(u"\r\r/*\r*/"), " E1:6");
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
