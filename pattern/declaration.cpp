#include "pattern/declaration.h"

#include "pattern/names.h"

#include <algorithm>
#include <array>
#include <span>
#include <utility>

namespace kvx {
namespace {

/// Reads an outlined declaration from its start.
class OutlinedTokens {
public:
    explicit OutlinedTokens(const DeclarationOutline& outline)
        : first_(outline.first), rest_(outline.rest) {}

    /// The current token. Not called at the end of the declaration.
    const Lexeme& Current() const {
        return index_ < first_.size() ? first_[index_] : rest_->Current();
    }
    void Advance() {
        if (index_ < first_.size())
            ++index_;
        else
            rest_->Advance();
    }

private:
    std::span<const Lexeme> first_;
    std::optional<PatternLexer> rest_;
    std::size_t index_ = 0;
};

/// Reads the tokens up to the name at index `end` as type words and stars into `member`; gives the
/// message when there is more.
std::u16string_view ParseType(ParseState& state, OutlinedTokens& tokens, std::size_t end,
                              MemberDecl& member) {
    std::u16string& typeName = state.typeName;
    typeName.clear();
    bool supported = true;
    for (std::size_t index = 0; index < end; ++index, tokens.Advance()) {
        const Lexeme& token = tokens.Current();
        if (token.IsIdentifier()) {
            if (!typeName.empty()) typeName += u' ';
            AppendNormalized(typeName, token.text);
        } else if (token.IsSymbol(u'*')) {
            ++member.pointerDepth;
        } else {
            supported = false;
        }
    }
    if (!supported) return u"Unsupported declaration syntax.";
    if (typeName.empty()) return u"Type specifier was not found.";
    member.typeName = &state.texts->typeNames.Enter(typeName);
    return {};
}

/// Reads the `length` tokens behind the name into `member`; gives the message when they are not an
/// array suffix.
std::u16string_view ParseArraySuffix(OutlinedTokens& tokens, std::size_t length,
                                     MemberDecl& member) {
    std::array<Lexeme, 3> first;
    for (Lexeme& token : std::span(first).first(std::min(length, first.size()))) {
        token = tokens.Current();
        tokens.Advance();
    }
    if (length == 0) return {};
    if (!first[0].IsSymbol(u'[')) return u"Unexpected tokens after declaration name.";
    if (first[1].IsSymbol(u']')) {
        if (length > 2) return u"Unexpected tokens after flexible array declaration.";
        member.count = 0;
        member.isFlexibleArray = true;
        return {};
    }
    if (!first[2].IsSymbol(u']')) return u"Invalid array declaration.";
    const std::optional<std::uint64_t> count = ParseUnsigned(first[1].text);
    if (!count) return u"Invalid array count.";
    if (length > 3) return u"Unexpected tokens after array declaration.";
    member.count = *count;
    return {};
}

} // namespace

DeclarationOutline OutlineDeclaration(PatternLexer& tokens) {
    DeclarationOutline outline(tokens.Current().position);
    std::optional<std::size_t> openingBracket;
    std::optional<std::size_t> nameBefore; // the last identifier but one
    bool closes = false;
    for (; !tokens.AtEnd() && !tokens.Current().IsSymbol(u';'); tokens.Advance()) {
        const PatternToken& token = tokens.Current();
        if (outline.length < DeclarationOutline::kKept)
            outline.first[outline.length] = {token.text, token.kind};
        else if (!outline.rest)
            outline.rest = tokens;
        closes = token.IsSymbol(u']');
        if (token.IsIdentifier()) nameBefore = std::exchange(outline.name, outline.length);
        if (token.IsSymbol(u'[')) openingBracket = outline.length;
        if (token.IsSymbol(u',')) outline.hasComma = true;
        if (token.IsSymbol(u'{') && !outline.openingBrace) outline.openingBrace = token.position;
        ++outline.length;
    }
    // A word in the brackets that close the declaration is a count, though a wrong one, not the
    // name.
    const bool closesWithCount = closes && openingBracket && *openingBracket + 3 == outline.length;
    if (closesWithCount && outline.name == *openingBracket + 1) outline.name = nameBefore;
    return outline;
}

std::u16string_view ParseMemberDeclaration(ParseState& state, const DeclarationOutline& outline,
                                           MemberDecl& member) {
    if (outline.length == 0) return u"Empty declaration.";
    if (outline.hasComma) return u"Multiple declarators are not supported in v1.";
    if (!outline.name) return u"Declaration name was not found.";

    OutlinedTokens tokens(outline);
    member.position = outline.start;
    const std::u16string_view typeProblem = ParseType(state, tokens, *outline.name, member);
    member.name = tokens.Current().text;
    tokens.Advance();
    const std::u16string_view suffixProblem =
        ParseArraySuffix(tokens, outline.length - *outline.name - 1, member);
    return suffixProblem.empty() ? typeProblem : suffixProblem;
}

} // namespace kvx
