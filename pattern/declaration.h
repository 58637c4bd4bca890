// Reads one member declaration, the part between two semicolons.
//
// The name is the last identifier, so the end must be seen before anything has a meaning: the
// declaration is looked over first and then read from its start. Its first words are kept for that,
// the others are lexed again, so that memory does not grow however long a declaration goes on.
#pragma once

#include "pattern/parse_state.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

namespace kvx {

/// What looking over a declaration has told. Indices count its tokens from 0.
struct DeclarationOutline {
    static constexpr std::size_t kKept = 8; ///< enough for nearly all

    explicit DeclarationOutline(SourcePosition place) : start(place) {}

    SourcePosition start; ///< of the first token, or of what follows when there is none
    std::array<Lexeme, kKept> first;
    std::optional<PatternLexer> rest; ///< at the first token that is not kept, if there is one
    std::size_t length = 0;
    std::optional<std::size_t> name;
    std::optional<SourcePosition> openingBrace; ///< of the first one
    bool hasComma = false;
};

/// Looks over the tokens up to, not including, the next semicolon or the end, and moves there.
DeclarationOutline OutlineDeclaration(PatternLexer& tokens);

/// Reads the outlined declaration as `type words and * ... name [count]` into `member`. Gives the
/// message when it is not one, empty otherwise; the caller knows where to point.
std::u16string_view ParseMemberDeclaration(ParseState& state, const DeclarationOutline& outline,
                                           MemberDecl& member);

} // namespace kvx
