// What the struct view tells about a loaded pattern file.
#pragma once

#include "pattern/struct_pattern_file.h"

#include <string>

namespace kvx {

/// The entry struct and every directive value, one "name = value" a line, joined by CR LF.
std::u16string FormatPatternSummary(const StructPatternFile& pattern);

} // namespace kvx
