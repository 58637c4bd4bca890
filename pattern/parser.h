// Second step of reading a pattern file: tokens to directive values, structs and typedefs.
//
// Each function reads one form at the current token and moves past it. On failure it gives false
// and leaves the message in the state's `error`.
#pragma once

#include "pattern/parse_state.h"

namespace kvx {

/// One top-level form, whichever the current token begins.
bool ParseTopLevel(ParseState& state);

/// `@name value` or `@entry name`; no semicolon belongs to it.
bool ParseDirective(ParseState& state);

/// `struct Tag { members };`
bool ParseStruct(ParseState& state);

/// `typedef type Alias;` or `typedef struct Tag { members } Alias;`
bool ParseTypedef(ParseState& state);

} // namespace kvx
