// A loaded pattern file: every struct laid out, ready to be laid over bytes. Never changed once
// built and shared by reference count between the main thread and the struct view's worker.
#pragma once

#include "pattern/built_in_types.h"
#include "pattern/pattern_settings.h"

#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace kvx {

struct PatternTexts;

/// "No struct" where an index into the file's structs is meant.
inline constexpr std::uint32_t kNoStruct = std::numeric_limits<std::uint32_t>::max();

/// One row of a laid-out struct: a member, or a gap that the layout filled. Its texts live as long
/// as the file that it belongs to. Sizes and offsets in bytes.
struct StructMemberLayout {
    std::u16string_view name;     ///< "<padding>" for a gap
    std::u16string_view typeName; ///< normalised; "padding" for a gap
    std::uint64_t offset = 0;     ///< from the start of the struct
    std::uint64_t elementSize = 0;
    std::uint64_t count = 1;               ///< 0 for a flexible array, the length for a gap
    std::uint32_t structIndex = kNoStruct; ///< the member's type among the file's structs
    MemberKind kind = MemberKind::Integer; ///< Struct for a gap
    bool isFlexibleArray : 1 = false;
    bool isPadding : 1 = false;
    bool isPointer : 1 = false;
    bool isSigned : 1 = false;

    /// 0 for a flexible array. Layout has made sure that it fits.
    std::uint64_t TotalSize() const { return elementSize * count; }

    friend bool operator==(const StructMemberLayout&, const StructMemberLayout&) = default;
};

/// One laid-out struct. Sizes in bytes.
struct ResolvedStructInfo {
    std::u16string_view name; ///< the tag as written; "<anonymous>" when there is none
    std::vector<StructMemberLayout> members; ///< members and gaps by offset
    std::uint64_t size = 0;                  ///< with the gap at the end
    std::uint64_t alignment = 1;

    friend bool operator==(const ResolvedStructInfo&, const ResolvedStructInfo&) = default;
};

/// Everything that loading a pattern file gives.
struct StructPatternFile {
    PatternSettings settings;
    std::u16string entryName;
    bool entryIsImplicit = false; ///< no `@entry`: the only struct was taken
    std::uint32_t entryIndex = kNoStruct;
    std::vector<ResolvedStructInfo> structs;   ///< in source order
    std::shared_ptr<const PatternTexts> texts; ///< what the names above point into

    /// The struct that is laid over the bytes; null when the file has none.
    const ResolvedStructInfo* Entry() const { return StructAt(entryIndex); }

    /// The struct of a member's `structIndex`; null for kNoStruct.
    const ResolvedStructInfo* StructAt(std::uint32_t index) const {
        return index < structs.size() ? &structs[index] : nullptr;
    }
};

/// A pattern file as it is shared between threads.
using SharedPattern = std::shared_ptr<const StructPatternFile>;

} // namespace kvx
