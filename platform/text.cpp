#include "platform/text.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace kvx {
namespace {

constexpr char16_t kReplacement = 0xFFFD;

/// A code point and how many units of its text it took.
struct Decoded {
    char32_t point;
    std::size_t length;
};

/// The forms of UTF-8 by lead byte: data bits of the lead and the smallest code point of that
/// length (a smaller one is an overlong spelling).
struct Form {
    std::uint8_t mask;
    std::uint8_t lead;
    std::size_t length;
    char32_t smallest;
};
constexpr std::array kForms = {Form{0x80, 0x00, 1, 0x00}, Form{0xE0, 0xC0, 2, 0x80},
                               Form{0xF0, 0xE0, 3, 0x800}, Form{0xF8, 0xF0, 4, 0x10000}};

bool IsSurrogate(char32_t point) {
    return point >= 0xD800 && point <= 0xDFFF;
}

std::optional<Decoded> DecodeForm(std::string_view text, const Form& form) {
    if (text.size() < form.length) return std::nullopt;
    char32_t point = static_cast<std::uint8_t>(text[0]) & static_cast<std::uint8_t>(~form.mask);
    for (std::size_t i = 1; i < form.length; ++i) {
        const auto byte = static_cast<std::uint8_t>(text[i]);
        if ((byte & 0xC0) != 0x80) return std::nullopt;
        point = point << 6 | (byte & 0x3FU);
    }
    if (point < form.smallest || point > 0x10FFFF || IsSurrogate(point)) return std::nullopt;
    return Decoded{point, form.length};
}

std::optional<Decoded> DecodeUtf8(std::string_view text) {
    const auto lead = static_cast<std::uint8_t>(text[0]);
    for (const Form& form : kForms) {
        if ((lead & form.mask) == form.lead) return DecodeForm(text, form);
    }
    return std::nullopt;
}

void AppendUtf16(std::u16string& out, char32_t point) {
    if (point < 0x10000) {
        out.push_back(static_cast<char16_t>(point));
        return;
    }
    out.push_back(static_cast<char16_t>(0xD800 + ((point - 0x10000) >> 10)));
    out.push_back(static_cast<char16_t>(0xDC00 + ((point - 0x10000) & 0x3FF)));
}

Decoded DecodeUtf16(std::u16string_view text) {
    const char32_t first = text[0];
    if (!IsSurrogate(first)) return {first, 1};
    const bool pair = first < 0xDC00 && text.size() > 1 && text[1] >= 0xDC00 && text[1] <= 0xDFFF;
    if (!pair) return {kReplacement, 1};
    return {0x10000 + ((first - 0xD800) << 10) + (text[1] - 0xDC00U), 2};
}

void AppendUtf8(std::string& out, char32_t point) {
    std::size_t length = 1;
    while (length < kForms.size() && point >= kForms[length].smallest)
        ++length;
    const Form& form = kForms[length - 1];
    out.push_back(static_cast<char>(form.lead | point >> (6 * (length - 1))));
    for (std::size_t rest = length - 1; rest-- > 0;)
        out.push_back(static_cast<char>(0x80 | (point >> (6 * rest) & 0x3F)));
}

} // namespace

std::u16string Utf8ToUtf16(std::string_view text) {
    std::u16string out;
    out.reserve(text.size());
    while (!text.empty()) {
        const Decoded next = DecodeUtf8(text).value_or(Decoded{kReplacement, 1});
        AppendUtf16(out, next.point);
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
        const std::optional<Decoded> next = DecodeUtf8(text);
        if (!next) return std::nullopt;
        AppendUtf16(out, next->point);
        text.remove_prefix(next->length);
    }
    return out;
}

std::string Utf16ToUtf8(std::u16string_view text) {
    std::string out;
    out.reserve(text.size());
    while (!text.empty()) {
        const Decoded next = DecodeUtf16(text);
        AppendUtf8(out, next.point);
        text.remove_prefix(next.length);
    }
    return out;
}

} // namespace kvx
