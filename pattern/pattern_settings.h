// What the directives of a pattern file set: the sizes of the built-in types and the alignment cap.
#pragma once

#include <cstdint>

namespace kvx {

/// Sizes in bytes, with the values of a file without directives. `long` has 8 bytes on purpose.
struct PatternSettings {
    std::uint64_t sizeofShort = 2;
    std::uint64_t sizeofInt = 4;
    std::uint64_t sizeofLong = 8;
    std::uint64_t sizeofLongLong = 8;
    std::uint64_t sizeofFloat = 4;
    std::uint64_t sizeofDouble = 8;
    std::uint64_t pointerSize = 8;
    std::uint64_t memberAlign = 8; ///< largest alignment of a member; 0 packs without padding

    friend bool operator==(const PatternSettings&, const PatternSettings&) = default;
};

} // namespace kvx
