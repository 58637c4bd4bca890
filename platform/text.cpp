#include "platform/text.h"

#include "platform/code_point.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace kvx {
namespace {

constexpr char16_t kReplacement = 0xFFFD;

ByteView AsBytes(std::string_view text) {
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

void AppendUtf8(std::string& out, char32_t point) {
    constexpr std::array<char32_t, 4> kSmallest = {0, 0x80, 0x800, 0x10000};
    constexpr std::array<std::uint8_t, 4> kLeads = {0x00, 0xC0, 0xE0, 0xF0};
    std::size_t rest = 0;
    while (rest + 1 < kSmallest.size() && point >= kSmallest[rest + 1])
        ++rest;
    out.push_back(static_cast<char>(kLeads[rest] | point >> (6 * rest)));
    while (rest-- > 0)
        out.push_back(static_cast<char>(0x80 | (point >> (6 * rest) & 0x3F)));
}

} // namespace

std::u16string Utf8ToUtf16(std::string_view text) {
    std::u16string out;
    out.reserve(text.size());
    while (!text.empty()) {
        const CodePoint next = ReadUtf8(AsBytes(text)).value_or(CodePoint{kReplacement, 1});
        AppendUtf16(out, next.value);
        text.remove_prefix(next.length);
    }
    return out;
}

std::optional<std::u16string> StrictUtf8ToUtf16(std::string_view text) {
    std::u16string out;
    out.reserve(text.size());
    while (!text.empty()) {
        const auto ascii = std::ranges::find_if(text, [](char byte) { return (byte & 0x80) != 0; });
        const std::size_t converted = out.size();
        out.resize(converted + static_cast<std::size_t>(ascii - text.begin()));
        std::copy(text.begin(), ascii, out.begin() + static_cast<std::ptrdiff_t>(converted));
        text = {ascii, text.end()};
        if (text.empty()) break;
        const std::optional<CodePoint> next = ReadUtf8(AsBytes(text));
        if (!next) return std::nullopt;
        AppendUtf16(out, next->value);
        text.remove_prefix(next->length);
    }
    return out;
}

std::string Utf16ToUtf8(std::u16string_view text) {
    std::string out;
    out.reserve(text.size());
    while (!text.empty()) {
        const CodePoint next = ReadUtf16(text).value_or(CodePoint{kReplacement, 1});
        AppendUtf8(out, next.value);
        text.remove_prefix(next.length);
    }
    return out;
}

} // namespace kvx
