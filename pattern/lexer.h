// First step of reading a pattern file: text to tokens.
#pragma once

#include "pattern/outcome.h"
#include "pattern/token.h"

#include <string_view>
#include <vector>

namespace kvx {

/// Splits `source` into tokens that point into it, in order, with one end token last. Fails at the
/// first character that begins no token and at a block comment that does not end.
Outcome<std::vector<PatternToken>> Tokenize(std::u16string_view source);

} // namespace kvx
