// The first character of a text in UTF-8 or UTF-16, strictly, and its UTF-16 form. Inline because
// rows of bytes are decoded with it at every repaint.
#pragma once

#include "platform/bytes.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kvx {

struct CodePoint {
    char32_t value = 0;
    std::size_t length = 0; ///< bytes or UTF-16 units that it took
};

constexpr bool IsSurrogate(char32_t value) {
    return value >= 0xD800 && value <= 0xDFFF;
}

/// The first character of `bytes`, which are not empty; nullopt when they do not begin with a whole
/// and well-formed one: overlong spellings and surrogates are not.
inline std::optional<CodePoint> ReadUtf8(ByteView bytes) {
    // By the lead byte: the number of bytes, the bits of the lead that count, and the smallest
    // character that needs so many bytes.
    struct Form {
        std::size_t length;
        std::uint8_t leadMask;
        char32_t smallest;
    };
    constexpr auto formOf = [](std::uint8_t lead) -> Form {
        if (lead < 0x80) return {1, 0x7F, 0};
        if (lead < 0xC0 || lead >= 0xF8) return {0, 0, 0};
        if (lead < 0xE0) return {2, 0x1F, 0x80};
        if (lead < 0xF0) return {3, 0x0F, 0x800};
        return {4, 0x07, 0x10000};
    };
    const Form form = formOf(bytes[0]);
    if (form.length == 0 || form.length > bytes.size()) return std::nullopt;
    char32_t value = bytes[0] & form.leadMask;
    for (const std::uint8_t byte : bytes.subspan(1, form.length - 1)) {
        if ((byte & 0xC0U) != 0x80) return std::nullopt;
        value = value << 6U | (byte & 0x3FU);
    }
    if (value < form.smallest || value > 0x10FFFF || IsSurrogate(value)) return std::nullopt;
    return CodePoint{value, form.length};
}

/// The first character of `text`, which is not empty; nullopt for half a surrogate pair.
inline std::optional<CodePoint> ReadUtf16(std::u16string_view text) {
    const char32_t first = text[0];
    if (!IsSurrogate(first)) return CodePoint{first, 1};
    const bool pair = first < 0xDC00 && text.size() > 1 && text[1] >= 0xDC00 && text[1] <= 0xDFFF;
    if (!pair) return std::nullopt;
    return CodePoint{0x10000 + ((first - 0xD800) << 10U) + (text[1] - 0xDC00U), 2};
}

inline void AppendUtf16(std::u16string& text, char32_t value) {
    if (value < 0x10000) {
        text += static_cast<char16_t>(value);
        return;
    }
    text += static_cast<char16_t>(0xD800 + ((value - 0x10000) >> 10U));
    text += static_cast<char16_t>(0xDC00 + ((value - 0x10000) & 0x3FFU));
}

} // namespace kvx
