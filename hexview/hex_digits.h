// Offsets in the hexadecimal digits in which they are shown everywhere.
#pragma once

#include "platform/number_text.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace kvx {

/// Digits of every offset shown for a document of `size` bytes: 8 below 4 GiB, else 16.
constexpr std::size_t OffsetDigits(std::uint64_t size) {
    return size < 0x1'0000'0000 ? 8 : 16;
}

/// `offset` padded with zeros to at least `digits` digits.
inline std::u16string FormatOffset(std::uint64_t offset, std::size_t digits) {
    std::u16string text;
    AppendHex(text, offset, digits);
    return text;
}

} // namespace kvx
