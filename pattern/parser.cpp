#include "pattern/parser.h"

#include "pattern/declaration.h"
#include "pattern/directives.h"
#include "pattern/names.h"

#include <span>

namespace kvx {
namespace {

bool IsIdentifier(const PatternToken& token) {
    return token.kind == TokenKind::Identifier;
}

bool IsKeyword(const PatternToken& token, std::u16string_view keyword) {
    return IsIdentifier(token) && NamesMatch(token.text, keyword);
}

bool FailHere(ParseState& state, std::u16string_view message) {
    return FailAt(state, state.Current().position, message);
}

/// Takes the symbol at the current token or fails there with `message`.
bool ExpectSymbol(ParseState& state, char16_t symbol, std::u16string_view message) {
    if (!state.Current().IsSymbol(symbol)) return FailHere(state, message);
    state.Advance();
    return true;
}

/// Takes the identifier at the current token into `text` or fails there with `message`.
bool ExpectIdentifier(ParseState& state, std::u16string_view& text, std::u16string_view message) {
    if (!IsIdentifier(state.Current())) return FailHere(state, message);
    text = state.Current().text;
    state.Advance();
    return true;
}

bool ExpectKeyword(ParseState& state, std::u16string_view keyword, std::u16string_view message) {
    if (!IsKeyword(state.Current(), keyword)) return FailHere(state, message);
    state.Advance();
    return true;
}

bool ParseEntry(ParseState& state) {
    std::u16string entryName;
    std::u16string_view message = u"Expected type name after @entry.";
    if (IsKeyword(state.Current(), u"struct")) {
        state.Advance();
        entryName = u"struct ";
        message = u"Expected struct name after @entry struct.";
    }
    std::u16string_view name;
    if (!ExpectIdentifier(state, name, message)) return false;
    state.entryName = entryName.append(name);
    return true;
}

/// Tokens from the current one up to, not including, the next semicolon or the end; moves to it.
std::span<const PatternToken> CollectDeclaration(ParseState& state) {
    const std::size_t first = state.position;
    while (!state.AtEnd() && !state.Current().IsSymbol(u';'))
        state.Advance();
    return std::span(state.tokens).subspan(first, state.position - first);
}

bool ParseMember(ParseState& state, StructDefinition& definition) {
    const SourcePosition start = state.Current().position;
    const std::span<const PatternToken> tokens = CollectDeclaration(state);
    for (const PatternToken& token : tokens) {
        if (token.IsSymbol(u'{'))
            return FailAt(state, token.position,
                          u"Inline nested struct declarations are not supported.");
    }
    if (!ExpectSymbol(state, u';', u"Expected ';' after member declaration.")) return false;
    const Outcome<MemberDecl> member = ParseMemberDeclaration(state.texts->typeNames, tokens);
    if (!member) return FailAt(state, start, member.error);
    definition.members.push_back(*member.value);
    return true;
}

/// The members up to and including the closing brace; the opening one has been taken.
bool ParseStructBody(ParseState& state, StructDefinition& definition) {
    while (!state.Current().IsSymbol(u'}')) {
        if (state.AtEnd()) return FailHere(state, u"Expected '}' to close struct body.");
        if (!ParseMember(state, definition)) return false;
    }
    state.Advance();
    return true;
}

/// Adds the struct, findable as "Tag" and "struct Tag" when it has a tag.
bool RegisterStruct(ParseState& state, StructDefinition definition) {
    const std::size_t index = state.structs.size();
    if (!definition.name.empty()) {
        TypeNames& names = state.texts->typeNames;
        const std::u16string tag = NormalizeName(definition.name);
        TypeName& name = names.Enter(tag);
        if (name.structIndex)
            return Fail(state,
                        std::u16string(u"Duplicate struct type name: ").append(definition.name));
        name.structIndex = index;
        names.Enter(u"struct " + tag).structIndex = index;
    }
    state.structs.push_back(std::move(definition));
    return true;
}

bool RegisterAlias(ParseState& state, std::u16string_view alias, TypeReference target) {
    TypeName& name = state.texts->typeNames.Enter(NormalizeName(alias));
    if (name.alias) return Fail(state, std::u16string(u"Duplicate typedef name: ").append(alias));
    name.alias = target;
    return true;
}

/// `struct`, an optional tag and an optional body in braces.
struct StructHead {
    StructDefinition definition;
    bool hasBody = false;
};

bool ParseStructHead(ParseState& state, StructHead& head) {
    head.definition.position = state.Current().position;
    if (!ExpectKeyword(state, u"struct", u"Expected 'struct'.")) return false;
    if (IsIdentifier(state.Current())) {
        head.definition.name = state.Current().text;
        state.Advance();
    }
    head.hasBody = state.Current().IsSymbol(u'{');
    if (!head.hasBody) return true;
    state.Advance();
    return ParseStructBody(state, head.definition);
}

bool FailUnsupportedStruct(ParseState& state, const StructHead& head) {
    return FailAt(state, head.definition.position, u"Unsupported struct declaration.");
}

/// `struct Tag { ... } Alias;` or `struct Tag Alias;`, after the keyword `typedef`.
bool ParseStructTypedef(ParseState& state) {
    StructHead head;
    if (!ParseStructHead(state, head)) return false;
    const std::u16string_view tag = head.definition.name;
    if (!head.hasBody && tag.empty()) return FailUnsupportedStruct(state, head);

    std::u16string_view alias;
    if (!ExpectIdentifier(state, alias, u"Expected typedef alias name.") ||
        !ExpectSymbol(state, u';', u"Expected ';' after typedef."))
        return false;

    const std::size_t index = state.structs.size();
    if (head.hasBody && !RegisterStruct(state, std::move(head.definition))) return false;
    TypeNames& names = state.texts->typeNames;
    TypeName& target = tag.empty() ? names.EnterUnnamedStruct(index)
                                   : names.Enter(u"struct " + NormalizeName(tag));
    return RegisterAlias(state, alias, {&target, 0});
}

/// `type Alias;`, after the keyword `typedef` at `start`.
bool ParseSimpleTypedef(ParseState& state, SourcePosition start) {
    const std::span<const PatternToken> tokens = CollectDeclaration(state);
    if (!ExpectSymbol(state, u';', u"Expected ';' after typedef declaration.")) return false;
    const Outcome<MemberDecl> target = ParseMemberDeclaration(state.texts->typeNames, tokens);
    if (!target)
        return FailAt(state, tokens.empty() ? start : tokens.front().position, target.error);
    if (target.value->count != 1) return FailAt(state, start, u"Typedef arrays are not supported.");
    return RegisterAlias(state, target.value->name, target.value->type);
}

} // namespace

bool ParseTopLevel(ParseState& state) {
    const PatternToken& token = state.Current();
    if (token.IsSymbol(u'@')) return ParseDirective(state);
    if (IsKeyword(token, u"typedef")) return ParseTypedef(state);
    if (IsKeyword(token, u"struct")) return ParseStruct(state);
    return FailHere(state, u"Unsupported top-level declaration.");
}

bool ParseDirective(ParseState& state) {
    const SourcePosition start = state.Current().position;
    if (!ExpectSymbol(state, u'@', u"Expected '@' for directive.")) return false;
    if (!IsIdentifier(state.Current())) return FailAt(state, start, u"Expected directive name.");
    const std::u16string name = NormalizeName(state.Current().text);
    state.Advance();
    if (name == u"entry") return ParseEntry(state);

    const PatternToken& number = state.Current();
    if (number.kind != TokenKind::Number)
        return FailHere(state, u"Expected numeric directive value.");
    const std::optional<std::uint64_t> value = ParseUnsigned(number.text);
    if (!value) return FailHere(state, u"Invalid directive number.");
    state.Advance();

    const Directive* directive = FindDirective(name);
    if (directive == nullptr) return FailAt(state, start, u"Unknown directive.");
    if (!directive->Allows(*value)) return FailAt(state, start, u"Directive value is not allowed.");
    state.settings.*directive->setting = *value;
    return true;
}

bool ParseStruct(ParseState& state) {
    StructHead head;
    if (!ParseStructHead(state, head)) return false;
    if (!head.hasBody) return FailUnsupportedStruct(state, head);
    if (!ExpectSymbol(state, u';', u"Expected ';' after struct declaration.")) return false;
    return RegisterStruct(state, std::move(head.definition));
}

bool ParseTypedef(ParseState& state) {
    const SourcePosition start = state.Current().position;
    if (!ExpectKeyword(state, u"typedef", u"Expected 'typedef'.")) return false;
    if (IsKeyword(state.Current(), u"struct")) return ParseStructTypedef(state);
    return ParseSimpleTypedef(state, start);
}

} // namespace kvx
