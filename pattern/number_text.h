// Numbers appended to UTF-16 text, without locale and without a temporary string.
#pragma once

#include <cstdint>
#include <string>

namespace kvx {

/// Appends `value` in decimal.
void AppendDecimal(std::u16string& text, std::uint64_t value);

/// Appends `value` in upper-case hexadecimal, zero-padded to at least `digits` (0 to 16).
void AppendHex(std::u16string& text, std::uint64_t value, std::size_t digits = 1);

} // namespace kvx
