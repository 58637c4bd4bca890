// Third step of reading a pattern file: what a declaration's type is.
#pragma once

#include "pattern/outcome.h"
#include "pattern/parse_state.h"
#include "pattern/struct_pattern_file.h"

#include <functional>

namespace kvx {

/// Size and alignment of a laid-out struct, in bytes.
struct StructExtent {
    std::uint64_t size = 0;
    std::uint64_t alignment = 1;
};

/// Gives the extent of a struct of the state; empty when it cannot, with the reason, if there is
/// one, in the state's `error`.
using StructResolver = std::function<std::optional<StructExtent>(std::size_t structIndex)>;

/// One element of a declared member. Sizes in bytes.
struct ResolvedType {
    std::uint64_t size = 0;
    std::uint64_t alignment = 1;
    MemberKind kind = MemberKind::Integer;
    bool isSigned = false;
    bool isPointer = false; ///< declared with `*`, or an alias of such a type
    std::uint32_t structIndex = kNoStruct;

    friend bool operator==(const ResolvedType&, const ResolvedType&) = default;
};

/// The type of `declaration`. What a pointer points to is never looked up, so it need not exist.
Outcome<ResolvedType> ResolveType(ParseState& state, const MemberDecl& declaration,
                                  const StructResolver& resolver);

} // namespace kvx
