// What the tests of the code pages share: every short input, and comparison with another converter.
#pragma once

#include "platform/code_pages.h"

#include <array>
#include <cstddef>
#include <cstdio>
#include <optional>
#include <string>
#include <vector>

namespace kvx {

/// Calls `use` with every single byte, then with every pair.
template <typename Use>
void ForEveryShortInput(Use use) {
    std::array<std::uint8_t, 2> bytes = {};
    for (unsigned byte = 0; byte < 0x100; ++byte) {
        bytes[0] = static_cast<std::uint8_t>(byte);
        use(ByteView(bytes).first(1));
    }
    for (unsigned pair = 0; pair < 0x10000; ++pair) {
        bytes = {static_cast<std::uint8_t>(pair >> 8), static_cast<std::uint8_t>(pair)};
        use(ByteView(bytes));
    }
}

/// "8140 U+3000" and the like.
template <typename Numbers>
std::string InHex(const Numbers& numbers) {
    std::string text;
    char digits[8];
    for (const unsigned number : numbers) {
        std::snprintf(digits, sizeof digits, sizeof numbers[0] == 1 ? "%02X" : " U+%04X", number);
        text += digits;
    }
    return text;
}

/// The first inputs that FromCodePage decodes otherwise than `expected`, a function of the bytes.
template <typename Expected>
std::vector<std::string> DecodedOtherwise(CodePage page, Expected expected) {
    constexpr std::size_t kMost = 40;
    const auto shown = [](const std::optional<std::u16string>& text) {
        return text ? InHex(*text) : std::string(" refused");
    };
    std::vector<std::string> lines;
    ForEveryShortInput([&](ByteView bytes) {
        const std::optional<std::u16string> text = FromCodePage(page, bytes);
        const std::optional<std::u16string> right = expected(bytes);
        if (text != right && lines.size() < kMost)
            lines.push_back(InHex(bytes) + shown(text) + ", not" + shown(right));
    });
    return lines;
}

} // namespace kvx
