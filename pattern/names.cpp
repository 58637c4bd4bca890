#include "pattern/names.h"

#include "platform/characters.h"

#include <algorithm>
#include <limits>

namespace kvx {

std::u16string NormalizeName(std::u16string_view name) {
    std::u16string normalized;
    normalized.reserve(name.size());
    bool blankPending = false;
    for (const char16_t unit : name) {
        if (IsSpace(unit)) {
            blankPending = !normalized.empty();
            continue;
        }
        if (blankPending) normalized.push_back(u' ');
        blankPending = false;
        normalized.push_back(ToLower(unit));
    }
    return normalized;
}

void AppendNormalized(std::u16string& text, std::u16string_view word) {
    const std::size_t start = text.size();
    text += word;
    for (std::size_t i = start; i < text.size(); ++i)
        text[i] = ToLower(text[i]);
}

bool WordMatches(std::u16string_view word, std::u16string_view normalized) {
    return std::ranges::equal(word, normalized, {}, ToLower);
}

bool IsSignedTypeName(std::u16string_view typeName) {
    return !typeName.starts_with(u"uint") && !typeName.starts_with(u"unsigned") &&
           typeName != u"float" && typeName != u"double" && typeName != u"void";
}

std::optional<std::uint64_t> ParseUnsigned(std::u16string_view text) {
    constexpr std::uint64_t kLimit = std::numeric_limits<std::uint64_t>::max();
    if (text.empty()) return std::nullopt;
    std::uint64_t value = 0;
    for (const char16_t unit : text) {
        if (unit < u'0' || unit > u'9') return std::nullopt;
        const std::uint64_t digit = unit - u'0';
        if (value > (kLimit - digit) / 10) return std::nullopt;
        value = value * 10 + digit;
    }
    return value;
}

} // namespace kvx
