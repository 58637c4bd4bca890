// Lays the entry struct of a loaded pattern over bytes and gives the rows of the struct view. Pure:
// touches neither the document nor any window, so it runs on the struct view's worker.
#pragma once

#include "pattern/struct_pattern_file.h"
#include "pattern/struct_view_row.h"
#include "pattern/value_format.h"
#include "platform/bytes.h"

#include <optional>
#include <string>
#include <vector>

namespace kvx {

/// At most so many rows, then one marker row of "...".
inline constexpr std::size_t kMaxStructRows = 256;

/// Everything that an evaluation needs; owns its bytes.
struct StructEvalRequest {
    std::uint64_t baseOffset = 0; ///< document offset of the first byte
    Bytes bytes;                  ///< from there on, as many as could be read
    ValueFormat format;
    SharedPattern pattern;                         ///< null gives no rows
    std::optional<std::u16string> unavailableText; ///< value of a member beyond the bytes; else "-"
};

/// The rows of the entry struct. An embedded struct is followed by the rows of its members, two
/// blanks further in for each level.
std::vector<StructViewRow> EvaluateStruct(const StructEvalRequest& request);

} // namespace kvx
