// Reads one member declaration, the part between two semicolons.
#pragma once

#include "pattern/outcome.h"
#include "pattern/parse_state.h"

#include <span>

namespace kvx {

/// Reads `tokens` (without the semicolon) as `type words and * ... name [count]`. A failure is the
/// message alone; the caller knows where to point.
Outcome<MemberDecl> ParseMemberDeclaration(TypeNames& typeNames,
                                           std::span<const PatternToken> tokens);

} // namespace kvx
