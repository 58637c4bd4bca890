// The directives that set a number, as one table: reading checks against it, the summary lists it.
#pragma once

#include "pattern/pattern_settings.h"

#include <span>
#include <string_view>

namespace kvx {

/// One directive. Bit n of `allowedValues` is set when the value n may be given.
struct Directive {
    std::u16string_view name; ///< normalised
    std::uint64_t PatternSettings::*setting;
    std::uint32_t allowedValues;

    bool Allows(std::uint64_t value) const {
        return value < 32 && (allowedValues >> value & 1) != 0;
    }
};

/// All of them, in the order of PatternSettings.
std::span<const Directive> NumericDirectives();

/// The directive of that normalised name; null when there is none.
const Directive* FindDirective(std::u16string_view name);

} // namespace kvx
