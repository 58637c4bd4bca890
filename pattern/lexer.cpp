#include "pattern/lexer.h"

#include "pattern/source_text.h"
#include "platform/characters.h"

#include <algorithm>
#include <array>
#include <utility>

namespace kvx {
namespace {

// What a character may be, as bits.
constexpr unsigned kBlank = 1;
constexpr unsigned kDigit = 2; ///< part of a number
constexpr unsigned kStart = 4; ///< begins an identifier
constexpr unsigned kWord = 8;  ///< continues an identifier
constexpr unsigned kSymbol = 16;

constexpr unsigned ClassifyAscii(char16_t unit) {
    if (IsSpace(unit)) return kBlank;
    if (IsLetter(unit) || unit == u'_') return kStart | kWord;
    if (IsLetterOrDigit(unit)) return kDigit | kWord;
    return std::u16string_view(u"@{}[];,*").find(unit) != std::u16string_view::npos ? kSymbol : 0;
}

constexpr std::array<std::uint8_t, 128> kAsciiClasses = [] {
    std::array<std::uint8_t, 128> classes{};
    for (char16_t unit = 0; unit < classes.size(); ++unit)
        classes[unit] = static_cast<std::uint8_t>(ClassifyAscii(unit));
    return classes;
}();

unsigned ClassOf(char16_t unit) {
    if (unit < kAsciiClasses.size()) return kAsciiClasses[unit];
    if (IsLetter(unit)) return kStart | kWord;
    if (IsLetterOrDigit(unit)) return kWord;
    return IsSpace(unit) ? kBlank : 0;
}

} // namespace

void PatternLexer::Advance() {
    SkipBlanksAndComments();
    if (offset_ == source_.size()) return Take(TokenKind::End, 0);
    const unsigned classes = ClassOf(source_[offset_]);
    if ((classes & kStart) != 0) return Take(TokenKind::Identifier, RunLength(kWord));
    if ((classes & kDigit) != 0) return Take(TokenKind::Number, RunLength(kDigit));
    if ((classes & kSymbol) != 0) return Take(TokenKind::Symbol, 1);
    return Stop(
        FormatPositionedMessage(source_, Position(), u"Unexpected character in definition file."));
}

void PatternLexer::SkipBlanksAndComments() {
    while (offset_ < source_.size()) {
        const char16_t unit = source_[offset_];
        if (unit == u'\n') {
            PassLineFeed();
        } else if (unit == u'\r') {
            ++columnOrigin_; // takes no column, so that CR LF and LF files report the same places
            ++offset_;
        } else if (ClassOf(unit) == kBlank) {
            ++offset_;
        } else if (unit == u'/' && StartsWith(u"//")) {
            SkipLineComment();
        } else if (unit == u'/' && StartsWith(u"/*")) {
            SkipBlockComment();
        } else {
            return;
        }
    }
}

void PatternLexer::PassLineFeed() {
    columnOrigin_ = ++offset_;
    ++line_;
}

void PatternLexer::SkipLineComment() {
    offset_ = std::min(source_.find(u'\n', offset_), source_.size());
}

void PatternLexer::SkipBlockComment() {
    const std::size_t end = source_.find(u"*/", offset_ + 2);
    if (end == std::u16string_view::npos) {
        Stop(u"Unterminated block comment.");
        return;
    }
    while (offset_ < end) {
        if (source_[offset_] == u'\n')
            PassLineFeed();
        else
            ++offset_;
    }
    offset_ = end + 2;
}

/// Length of the run of characters from here on that have one of `classes`.
std::size_t PatternLexer::RunLength(unsigned classes) const {
    std::size_t end = offset_ + 1;
    while (end < source_.size() && (ClassOf(source_[end]) & classes) != 0)
        ++end;
    return end - offset_;
}

void PatternLexer::Take(TokenKind kind, std::size_t length) {
    current_.text = source_.substr(offset_, length);
    current_.position = Position();
    current_.kind = kind;
    offset_ += length;
}

/// Ends the text here, so that nothing but the end token follows.
void PatternLexer::Stop(std::u16string error) {
    error_ = std::move(error);
    source_ = source_.substr(0, offset_);
    Take(TokenKind::End, 0);
}

} // namespace kvx
