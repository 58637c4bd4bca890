// Fourth step of reading a pattern file: offsets, gaps and sizes of every struct, as a C compiler
// would lay them out.
#pragma once

#include "pattern/outcome.h"
#include "pattern/parse_state.h"
#include "pattern/struct_pattern_file.h"

#include <vector>

namespace kvx {

/// Lays out all structs of a parsed file, used or not, in source order. The results point into the
/// state's texts.
Outcome<std::vector<ResolvedStructInfo>> ResolveStructs(ParseState& state);

} // namespace kvx
