// The text encodings that the text column can show. The numbers are stored in the settings file and
// sent in commands: they never change.
#pragma once

#include <cstdint>
#include <string_view>

namespace kvx {

enum class TextEncoding : std::uint32_t {
    Ascii = 0,
    Utf8 = 1,
    Utf16Le = 2,
    Utf16Be = 3,
    ShiftJis = 4,
    Windows949 = 5,
    EucKr = 6,
    Big5 = 7,
    Gbk = 8,
    Tis620 = 9,
    Windows1258 = 10,
    IsciiDevanagari = 11,
};

inline constexpr std::uint32_t kTextEncodingCount = 12;

/// The name shown to the user; values outside the enumeration are "ASCII".
std::u16string_view EncodingDisplayName(TextEncoding encoding);

} // namespace kvx
