// Fifth step of reading a pattern file: which struct is laid over the bytes.
#pragma once

#include "pattern/outcome.h"
#include "pattern/parse_state.h"

namespace kvx {

/// Index of the struct that `@entry` names, or of the only struct when there is no `@entry`.
/// Aliases do not count as names here. The state has at least one struct.
Outcome<std::size_t> ChooseEntry(const ParseState& state);

} // namespace kvx
