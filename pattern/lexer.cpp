#include "pattern/lexer.h"

#include "pattern/source_text.h"
#include "platform/characters.h"

#include <algorithm>
#include <array>

namespace kvx {
namespace {

// What a character may be, as bits.
constexpr unsigned kBlank = 1;
constexpr unsigned kDigit = 2; ///< part of a number
constexpr unsigned kStart = 4; ///< begins an identifier
constexpr unsigned kWord = 8;  ///< continues an identifier
constexpr unsigned kSymbol = 16;

consteval unsigned ClassifyAscii(char16_t unit) {
    if (IsSpace(unit)) return kBlank;
    if (IsLetter(unit) || unit == u'_') return kStart | kWord;
    if (IsLetterOrDigit(unit)) return kDigit | kWord;
    return std::u16string_view(u"@{}[];,*").find(unit) != std::u16string_view::npos ? kSymbol : 0;
}

consteval std::array<std::uint8_t, 128> ClassifyAscii() {
    std::array<std::uint8_t, 128> classes{};
    for (char16_t unit = 0; unit < classes.size(); ++unit)
        classes[unit] = static_cast<std::uint8_t>(ClassifyAscii(unit));
    return classes;
}

constexpr std::array kAsciiClasses = ClassifyAscii();

unsigned ClassOf(char16_t unit) {
    if (unit < kAsciiClasses.size()) return kAsciiClasses[unit];
    if (IsLetter(unit)) return kStart | kWord;
    if (IsLetterOrDigit(unit)) return kWord;
    return IsSpace(unit) ? kBlank : 0;
}

} // namespace

void PatternLexer::Advance() {
    SkipBlanksAndComments();
    if (offset_ == end_) return Take(TokenKind::End, 0);
    const unsigned classes = ClassOf(source_[offset_]);
    if ((classes & kStart) != 0) return Take(TokenKind::Identifier, RunLength(kWord));
    if ((classes & kDigit) != 0) return Take(TokenKind::Number, RunLength(kDigit));
    if ((classes & kSymbol) != 0) return Take(TokenKind::Symbol, 1);
    Stop(Problem::UnexpectedCharacter);
    Take(TokenKind::End, 0);
}

std::u16string PatternLexer::Error() const {
    if (problem_ == Problem::UnterminatedComment) return u"Unterminated block comment.";
    if (problem_ == Problem::None) return {};
    return FormatPositionedMessage(source_, current_.position,
                                   u"Unexpected character in definition file.");
}

void PatternLexer::SkipBlanksAndComments() {
    while (offset_ < end_) {
        const char16_t unit = source_[offset_];
        if (unit == u' ') {
            ++offset_;
        } else if (unit == u'\n') {
            PassLineFeed();
        } else if (unit == u'/') {
            if (!SkipComment()) return;
        } else if (ClassOf(unit) != kBlank) {
            return;
        } else {
            // A carriage return takes no column: CR LF and LF files report the same places.
            if (unit == u'\r') ++columnOrigin_;
            ++offset_;
        }
    }
}

/// Passes the comment that begins here; false when it is none.
bool PatternLexer::SkipComment() {
    const std::u16string_view start = source_.substr(offset_, 2);
    if (start == u"//")
        offset_ = std::min(source_.find(u'\n', offset_), end_);
    else if (start == u"/*")
        SkipBlockComment();
    else
        return false;
    return true;
}

void PatternLexer::SkipBlockComment() {
    const std::size_t close = source_.find(u"*/", offset_ + 2);
    if (close == std::u16string_view::npos) return Stop(Problem::UnterminatedComment);
    while (offset_ < close) {
        if (source_[offset_] == u'\n')
            PassLineFeed();
        else
            ++offset_;
    }
    offset_ = close + 2;
}

void PatternLexer::PassLineFeed() {
    columnOrigin_ = ++offset_;
    ++line_;
}

/// Length of the run of characters from here on that have one of `classes`.
std::size_t PatternLexer::RunLength(unsigned classes) const {
    std::size_t run = offset_ + 1;
    while (run < end_ && (ClassOf(source_[run]) & classes) != 0)
        ++run;
    return run - offset_;
}

void PatternLexer::Take(TokenKind kind, std::size_t length) {
    current_.text = source_.substr(offset_, length);
    current_.position = {line_, static_cast<std::uint32_t>(offset_ - columnOrigin_ + 1)};
    current_.kind = kind;
    offset_ += length;
}

/// Ends the text here.
void PatternLexer::Stop(Problem problem) {
    problem_ = problem;
    end_ = offset_;
}

} // namespace kvx
