#include "pattern/declaration.h"

#include "pattern/names.h"

#include <algorithm>

namespace kvx {
namespace {

using Tokens = std::span<const PatternToken>;

bool IsIdentifier(const PatternToken& token) {
    return token.kind == TokenKind::Identifier;
}

/// Index of the name: the last identifier, but not the count in a closing `[count]`.
std::optional<std::size_t> FindName(Tokens tokens) {
    std::size_t end = tokens.size();
    if (end >= 3 && tokens[end - 3].IsSymbol(u'[') && tokens[end - 1].IsSymbol(u']')) end -= 3;
    while (end > 0) {
        if (IsIdentifier(tokens[--end])) return end;
    }
    return std::nullopt;
}

/// Reads what follows the name into `member`; gives the message when it is not an array suffix.
std::u16string_view ParseArraySuffix(Tokens suffix, MemberDecl& member) {
    if (suffix.empty()) return {};
    if (!suffix[0].IsSymbol(u'[')) return u"Unexpected tokens after declaration name.";
    if (suffix.size() >= 2 && suffix[1].IsSymbol(u']')) {
        if (suffix.size() > 2) return u"Unexpected tokens after flexible array declaration.";
        member.count = 0;
        member.isFlexibleArray = true;
        return {};
    }
    if (suffix.size() < 3 || !suffix[2].IsSymbol(u']')) return u"Invalid array declaration.";
    const std::optional<std::uint64_t> count = ParseUnsigned(suffix[1].text);
    if (!count) return u"Invalid array count.";
    if (suffix.size() > 3) return u"Unexpected tokens after array declaration.";
    member.count = *count;
    return {};
}

/// Reads the words and stars before the name into `member`; gives the message when there is more.
std::u16string_view ParseType(TypeNames& typeNames, Tokens words, MemberDecl& member) {
    std::u16string typeName;
    for (const PatternToken& token : words) {
        if (token.IsSymbol(u'*')) {
            ++member.type.pointerDepth;
        } else if (IsIdentifier(token)) {
            if (!typeName.empty()) typeName += u' ';
            typeName += token.text;
        } else {
            return u"Unsupported declaration syntax.";
        }
    }
    if (typeName.empty()) return u"Type specifier was not found.";
    member.type.name = &typeNames.Enter(NormalizeName(typeName));
    return {};
}

} // namespace

Outcome<MemberDecl> ParseMemberDeclaration(TypeNames& typeNames, Tokens tokens) {
    using Result = Outcome<MemberDecl>;
    if (tokens.empty()) return Result::Failure(u"Empty declaration.");
    if (std::ranges::any_of(tokens, [](const auto& token) { return token.IsSymbol(u','); }))
        return Result::Failure(u"Multiple declarators are not supported in v1.");
    const std::optional<std::size_t> name = FindName(tokens);
    if (!name) return Result::Failure(u"Declaration name was not found.");

    MemberDecl member;
    member.name = tokens[*name].text;
    member.position = tokens.front().position;
    std::u16string_view problem = ParseArraySuffix(tokens.subspan(*name + 1), member);
    if (problem.empty()) problem = ParseType(typeNames, tokens.first(*name), member);
    if (!problem.empty()) return Result::Failure(std::u16string(problem));
    return Result::Success(member);
}

} // namespace kvx
