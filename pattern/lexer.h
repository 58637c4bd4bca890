// First step of reading a pattern file: text to tokens, one at a time.
#pragma once

#include "pattern/token.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace kvx {

/// Splits a text into tokens, in order, without keeping those that it has passed. A copy reads on
/// from the same place.
class PatternLexer {
public:
    /// Stands at the first token of `source`, which must outlive the tokens.
    explicit PatternLexer(std::u16string_view source) : source_(source), end_(source.size()) {
        Advance();
    }

    /// The current token. The end token follows the last one, or stands where an error stopped the
    /// lexer.
    const PatternToken& Current() const { return current_; }
    bool AtEnd() const { return current_.kind == TokenKind::End; }

    /// Moves to the next token; stays at the end token.
    void Advance();

    /// The message of a character that begins no token, or of a comment that does not end; empty
    /// while there is no error.
    std::u16string Error() const;

private:
    enum class Problem : std::uint8_t { None, UnexpectedCharacter, UnterminatedComment };

    void SkipBlanksAndComments();
    bool SkipComment();
    void SkipBlockComment();
    void PassLineFeed();
    std::size_t RunLength(unsigned classes) const;
    void Take(TokenKind kind, std::size_t length);
    void Stop(Problem problem);

    std::u16string_view source_;
    std::size_t end_;              ///< of what is read
    std::size_t offset_ = 0;       ///< behind the current token
    std::size_t columnOrigin_ = 0; ///< offset of the column 1 of the line
    std::uint32_t line_ = 1;
    Problem problem_ = Problem::None;
    PatternToken current_;
};

} // namespace kvx
