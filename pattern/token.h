// One lexeme of a pattern file.
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

/// One lexeme. `text` points into the source text, which outlives the token; it is the lexeme as
/// written, one character for a symbol and empty for the end token.
struct PatternToken {
    std::u16string_view text;
    SourcePosition position;
    TokenKind kind = TokenKind::End;

    bool IsSymbol(char16_t symbol) const {
        return kind == TokenKind::Symbol && text.front() == symbol;
    }
    friend bool operator==(const PatternToken&, const PatternToken&) = default;
};

} // namespace kvx
