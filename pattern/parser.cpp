#include "pattern/parser.h"

#include "pattern/declaration.h"
#include "pattern/directives.h"
#include "pattern/names.h"

#include <optional>

namespace kvx {
namespace {

bool IsKeyword(const PatternToken& token, std::u16string_view keyword) {
    return token.IsIdentifier() && WordMatches(token.text, keyword);
}

/// The messages are plain literals here: only a failure takes their length.
bool FailHere(ParseState& state, const char16_t* message) {
    return FailAt(state, state.tokens.Current().position, message);
}

/// Takes the symbol at the current token or fails there with `message`.
bool ExpectSymbol(ParseState& state, char16_t symbol, const char16_t* message) {
    if (!state.tokens.Current().IsSymbol(symbol)) return FailHere(state, message);
    state.tokens.Advance();
    return true;
}

/// Takes the identifier at the current token into `text` or fails there with `message`.
bool ExpectIdentifier(ParseState& state, std::u16string_view& text, const char16_t* message) {
    if (!state.tokens.Current().IsIdentifier()) return FailHere(state, message);
    text = state.tokens.Current().text;
    state.tokens.Advance();
    return true;
}

bool ExpectKeyword(ParseState& state, std::u16string_view keyword, const char16_t* message) {
    if (!IsKeyword(state.tokens.Current(), keyword)) return FailHere(state, message);
    state.tokens.Advance();
    return true;
}

bool ParseEntry(ParseState& state) {
    std::u16string entryName;
    const char16_t* message = u"Expected type name after @entry.";
    if (IsKeyword(state.tokens.Current(), u"struct")) {
        state.tokens.Advance();
        entryName = u"struct ";
        message = u"Expected struct name after @entry struct.";
    }
    std::u16string_view name;
    if (!ExpectIdentifier(state, name, message)) return false;
    state.entryName = entryName.append(name);
    return true;
}

bool ParseMember(ParseState& state) {
    const DeclarationOutline outline = OutlineDeclaration(state.tokens);
    if (outline.openingBrace)
        return FailAt(state, *outline.openingBrace,
                      u"Inline nested struct declarations are not supported.");
    if (!ExpectSymbol(state, u';', u"Expected ';' after member declaration.")) return false;
    MemberDecl member;
    const std::u16string_view problem = ParseMemberDeclaration(state, outline, member);
    if (!problem.empty()) return FailAt(state, outline.start, problem);
    state.members.push_back(member);
    return true;
}

/// The members up to and including the closing brace; the opening one has been taken.
bool ParseStructBody(ParseState& state, StructDefinition& definition) {
    state.members.clear();
    while (!state.tokens.Current().IsSymbol(u'}')) {
        if (state.tokens.AtEnd()) return FailHere(state, u"Expected '}' to close struct body.");
        if (!ParseMember(state)) return false;
    }
    definition.members.assign(state.members.begin(), state.members.end());
    state.tokens.Advance();
    return true;
}

/// Adds the struct, and its name when it has a tag.
bool RegisterStruct(ParseState& state, StructDefinition definition) {
    if (!definition.name.empty()) {
        TypeName& name = state.texts->typeNames.Enter(NormalizeName(definition.name));
        if (name.structIndex)
            return Fail(state,
                        std::u16string(u"Duplicate struct type name: ").append(definition.name));
        name.structIndex = state.structs.size();
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
    head.definition.position = state.tokens.Current().position;
    if (!ExpectKeyword(state, u"struct", u"Expected 'struct'.")) return false;
    if (state.tokens.Current().IsIdentifier()) {
        head.definition.name = state.tokens.Current().text;
        state.tokens.Advance();
    }
    head.hasBody = state.tokens.Current().IsSymbol(u'{');
    if (!head.hasBody) return true;
    state.tokens.Advance();
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
    const DeclarationOutline outline = OutlineDeclaration(state.tokens);
    if (!ExpectSymbol(state, u';', u"Expected ';' after typedef declaration.")) return false;
    MemberDecl target;
    const std::u16string_view problem = ParseMemberDeclaration(state, outline, target);
    if (!problem.empty()) {
        const bool isEmpty = outline.length == 0;
        return FailAt(state, isEmpty ? start : outline.start, problem);
    }
    if (target.count != 1) return FailAt(state, start, u"Typedef arrays are not supported.");
    return RegisterAlias(state, target.name, target.Type());
}

} // namespace

bool ParseTopLevel(ParseState& state) {
    const PatternToken& token = state.tokens.Current();
    if (token.IsSymbol(u'@')) return ParseDirective(state);
    if (IsKeyword(token, u"typedef")) return ParseTypedef(state);
    if (IsKeyword(token, u"struct")) return ParseStruct(state);
    return FailHere(state, u"Unsupported top-level declaration.");
}

bool ParseDirective(ParseState& state) {
    const SourcePosition start = state.tokens.Current().position;
    if (!ExpectSymbol(state, u'@', u"Expected '@' for directive.")) return false;
    if (!state.tokens.Current().IsIdentifier())
        return FailAt(state, start, u"Expected directive name.");
    const std::u16string name = NormalizeName(state.tokens.Current().text);
    state.tokens.Advance();
    if (name == u"entry") return ParseEntry(state);

    const PatternToken number = state.tokens.Current();
    if (number.kind != TokenKind::Number)
        return FailHere(state, u"Expected numeric directive value.");
    const std::optional<std::uint64_t> value = ParseUnsigned(number.text);
    if (!value) return FailHere(state, u"Invalid directive number.");
    state.tokens.Advance();

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
    const SourcePosition start = state.tokens.Current().position;
    if (!ExpectKeyword(state, u"typedef", u"Expected 'typedef'.")) return false;
    if (IsKeyword(state.tokens.Current(), u"struct")) return ParseStructTypedef(state);
    return ParseSimpleTypedef(state, start);
}

} // namespace kvx
