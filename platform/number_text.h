// Numbers as UTF-16 text, without locale and without a temporary string. Hexadecimal goes out in
// upper case and comes in in either.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kvx {

inline constexpr std::u16string_view kHexDigits = u"0123456789ABCDEF";

/// Appends `value` in decimal.
void AppendDecimal(std::u16string& text, std::uint64_t value);

/// Appends `value` in hexadecimal, zero-padded to at least `digits` (0 to 16).
void AppendHex(std::u16string& text, std::uint64_t value, std::size_t digits = 1);

/// The two digits of a byte.
constexpr std::array<char16_t, 2> HexPair(std::uint8_t byte) {
    return {kHexDigits[byte >> 4U], kHexDigits[byte & 0xFU]};
}

/// Value of one hexadecimal digit; nothing for any other character.
constexpr std::optional<std::uint8_t> HexDigitValue(char16_t character) {
    if (character >= u'0' && character <= u'9') return static_cast<std::uint8_t>(character - u'0');
    const auto lower = static_cast<char16_t>(character | 0x20U);
    if (lower >= u'a' && lower <= u'f') return static_cast<std::uint8_t>(lower - u'a' + 10);
    return std::nullopt;
}

} // namespace kvx
