#include "pattern/lexer.h"

#include "pattern/source_text.h"
#include "platform/characters.h"

namespace kvx {
namespace {

constexpr std::u16string_view kSymbols = u"@{}[];,*";

bool IsDigit(char16_t unit) {
    return unit >= u'0' && unit <= u'9';
}

bool StartsIdentifier(char16_t unit) {
    return unit == u'_' || IsLetter(unit);
}

bool ContinuesIdentifier(char16_t unit) {
    return unit == u'_' || IsLetterOrDigit(unit);
}

class Lexer {
public:
    explicit Lexer(std::u16string_view source) : source_(source) {}

    Outcome<std::vector<PatternToken>> Run() {
        while (error_.empty() && offset_ < source_.size())
            Next();
        if (!error_.empty()) return Outcome<std::vector<PatternToken>>::Failure(std::move(error_));
        Add(TokenKind::End, 0);
        return Outcome<std::vector<PatternToken>>::Success(std::move(tokens_));
    }

private:
    void Next() {
        const char16_t unit = source_[offset_];
        if (unit == u'\r') { // takes no column, so that CR LF and LF files report the same places
            ++offset_;
        } else if (unit == u'\n') {
            Skip(1);
        } else if (IsSpace(unit)) {
            Skip(1);
        } else if (StartsWith(u"//")) {
            SkipLineComment();
        } else if (StartsWith(u"/*")) {
            SkipBlockComment();
        } else if (StartsIdentifier(unit)) {
            AddRun(TokenKind::Identifier, ContinuesIdentifier);
        } else if (IsDigit(unit)) {
            AddRun(TokenKind::Number, IsDigit);
        } else if (kSymbols.find(unit) != std::u16string_view::npos) {
            Add(TokenKind::Symbol, 1);
        } else {
            error_ = FormatPositionedMessage(source_, position_,
                                             u"Unexpected character in definition file.");
        }
    }

    bool StartsWith(std::u16string_view text) const {
        return source_.substr(offset_).starts_with(text);
    }

    /// Passes `count` characters; a line feed starts a new line, any other takes one column.
    void Skip(std::size_t count) {
        for (const char16_t unit : source_.substr(offset_, count)) {
            if (unit == u'\n')
                position_ = {position_.line + 1, 1};
            else
                ++position_.column;
        }
        offset_ += count;
    }

    void SkipLineComment() {
        const std::size_t end = source_.find(u'\n', offset_);
        Skip(std::min(end, source_.size()) - offset_);
    }

    void SkipBlockComment() {
        const std::size_t end = source_.find(u"*/", offset_ + 2);
        if (end == std::u16string_view::npos)
            error_ = u"Unterminated block comment.";
        else
            Skip(end + 2 - offset_);
    }

    template <typename Continues>
    void AddRun(TokenKind kind, Continues continues) {
        std::size_t end = offset_ + 1;
        while (end < source_.size() && continues(source_[end]))
            ++end;
        Add(kind, end - offset_);
    }

    void Add(TokenKind kind, std::size_t length) {
        tokens_.push_back({source_.substr(offset_, length), position_, kind});
        offset_ += length;
        position_.column += static_cast<std::uint32_t>(length);
    }

    std::u16string_view source_;
    std::size_t offset_ = 0;
    SourcePosition position_;
    std::vector<PatternToken> tokens_;
    std::u16string error_;
};

} // namespace

Outcome<std::vector<PatternToken>> Tokenize(std::u16string_view source) {
    return Lexer(source).Run();
}

} // namespace kvx
