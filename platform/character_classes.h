// Classes of UTF-16 units as Windows answers them, for hosts that cannot ask it. No rule over
// Unicode properties gives them, so tools/write_character_classes.cpp writes them from the system's
// answers.
#pragma once

#include <span>

namespace kvx {

/// Units from `first` to `last`, both included.
struct UnitRange {
    char16_t first;
    char16_t last;
};

/// Where IsControlCharacter and IsCombiningCharacter hold: ascending, apart from each other.
extern const std::span<const UnitRange> kControlUnits;
extern const std::span<const UnitRange> kCombiningUnits;

} // namespace kvx
