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
    /// In place of `bytes`, for a large struct: what ShownMembers names, nullopt where it is not
    /// all there. Empty: not used.
    std::vector<std::optional<Bytes>> memberBytes{};
};

/// What one row shows, in bytes.
struct ShownMember {
    std::uint64_t offset = 0; ///< from the start of the entry struct
    std::uint64_t size = 0;   ///< that must be there; 0 for a flexible array
    std::uint64_t shown = 0;  ///< from the start of the member, at most so many count
};

/// The members in the order of their rows, without the marker. Of a large array only the beginning
/// is shown, so the bytes of a struct of many gigabytes need not be read to see its members.
std::vector<ShownMember> ShownMembers(const StructPatternFile& pattern);

/// The rows of the entry struct. An embedded struct is followed by the rows of its members, two
/// blanks further in for each level.
std::vector<StructViewRow> EvaluateStruct(const StructEvalRequest& request);

} // namespace kvx
