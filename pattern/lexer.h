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
    explicit PatternLexer(std::u16string_view source) : source_(source) { Advance(); }

    /// The current token. The end token follows the last one, or stands where an error stopped the
    /// lexer.
    const PatternToken& Current() const { return current_; }
    bool AtEnd() const { return current_.kind == TokenKind::End; }

    /// Moves to the next token; stays at the end token.
    void Advance();

    /// The message of a character that begins no token, or of a comment that does not end; empty
    /// while there is no error.
    const std::u16string& Error() const { return error_; }

private:
    void SkipBlanksAndComments();
    void SkipLineComment();
    void SkipBlockComment();
    void PassLineFeed();
    std::size_t RunLength(unsigned classes) const;
    void Take(TokenKind kind, std::size_t length);
    void Stop(std::u16string error);
    SourcePosition Position() const {
        return {line_, static_cast<std::uint32_t>(offset_ - columnOrigin_ + 1)};
    }
    bool StartsWith(std::u16string_view text) const {
        return source_.substr(offset_).starts_with(text);
    }

    std::u16string_view source_;
    std::size_t offset_ = 0; ///< behind the current token
    std::uint32_t line_ = 1;
    std::size_t columnOrigin_ = 0; ///< offset of the column 1 of the line
    PatternToken current_;
    std::u16string error_;
};

} // namespace kvx
