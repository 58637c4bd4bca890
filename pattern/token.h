// The words of a pattern file.
#pragma once

#include <cstdint>
#include <string_view>

namespace kvx {

enum class TokenKind : std::uint8_t { Identifier = 0, Number = 1, Symbol = 2, End = 3 };

/// A place in a pattern file. Both are 1-based; columns count UTF-16 units.
struct SourcePosition {
    std::uint32_t line = 1;
    std::uint32_t column = 1;
    friend bool operator==(const SourcePosition&, const SourcePosition&) = default;
};

/// What was written. `text` points into the source text, which outlives the lexeme; it is as
/// written, one character for a symbol and empty for the end token.
struct Lexeme {
    std::u16string_view text;
    TokenKind kind = TokenKind::End;

    bool IsIdentifier() const { return kind == TokenKind::Identifier; }
    bool IsSymbol(char16_t symbol) const {
        return kind == TokenKind::Symbol && text.front() == symbol;
    }
    friend bool operator==(const Lexeme&, const Lexeme&) = default;
};

/// One lexeme and where it stands.
struct PatternToken : Lexeme {
    SourcePosition position;

    friend bool operator==(const PatternToken&, const PatternToken&) = default;
};

} // namespace kvx
