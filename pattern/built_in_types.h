// The types that the pattern language knows by itself.
#pragma once

#include "pattern/pattern_settings.h"

#include <cstdint>
#include <string_view>

namespace kvx {

/// How a member's bytes are read.
enum class MemberKind : std::uint8_t { Integer = 0, Float = 1, Double = 2, Struct = 3 };

/// A built-in type. Its size is either fixed or a setting of the file.
struct BuiltInType {
    std::u16string_view name; ///< normalised
    MemberKind kind;
    std::uint64_t fixedSize; ///< bytes; used when `setting` is null
    std::uint64_t PatternSettings::*setting;

    std::uint64_t SizeUnder(const PatternSettings& settings) const {
        return setting != nullptr ? settings.*setting : fixedSize;
    }
};

/// The built-in type of exactly that normalised name; null when there is none.
const BuiltInType* FindBuiltInType(std::u16string_view typeName);

} // namespace kvx
