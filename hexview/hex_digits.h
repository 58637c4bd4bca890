// Hexadecimal as the program shows and reads it: upper case out, either case in.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kvx {

inline constexpr std::u16string_view kHexDigits = u"0123456789ABCDEF";

/// Digits of every offset shown for a document of `size` bytes: 8 below 4 GiB, else 16.
constexpr std::size_t OffsetDigits(std::uint64_t size) {
    return size < 0x1'0000'0000 ? 8 : 16;
}

/// `offset` padded with zeros to at least `digits` digits.
inline std::u16string FormatOffset(std::uint64_t offset, std::size_t digits) {
    std::u16string text;
    for (; offset != 0 || text.size() < digits; offset >>= 4)
        text.push_back(kHexDigits[offset & 0xF]);
    return {text.rbegin(), text.rend()};
}

/// The two digits of a byte.
constexpr std::array<char16_t, 2> HexPair(std::uint8_t byte) {
    return {kHexDigits[byte >> 4U], kHexDigits[byte & 0xFU]};
}

/// Value of one digit of either case; nothing for any other character.
constexpr std::optional<std::uint8_t> HexDigitValue(char16_t character) {
    if (character >= u'0' && character <= u'9') return static_cast<std::uint8_t>(character - u'0');
    const auto lower = static_cast<char16_t>(character | 0x20U);
    if (lower >= u'a' && lower <= u'f') return static_cast<std::uint8_t>(lower - u'a' + 10);
    return std::nullopt;
}

} // namespace kvx
