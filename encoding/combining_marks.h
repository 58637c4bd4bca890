// The marks of the Unicode encodings that join the character before them.
#pragma once

namespace kvx {

/// The combining blocks, the variation selectors and the zero width joiner.
constexpr bool IsInCombiningBlock(char32_t character) {
    struct Range {
        char32_t first;
        char32_t last; // inclusive
    };
    constexpr Range kRanges[] = {
        {0x0300, 0x036F}, {0x0483, 0x0489}, {0x1AB0, 0x1AFF}, {0x1DC0, 0x1DFF}, {0x200D, 0x200D},
        {0x20D0, 0x20FF}, {0x3099, 0x309A}, {0xFE00, 0xFE0F}, {0xFE20, 0xFE2F}, {0xE0100, 0xE01EF},
    };
    for (const Range& range : kRanges)
        if (character >= range.first && character <= range.last) return true;
    return false;
}

} // namespace kvx
