#include "fuzz/app_checks.h"

#include "app/search_query.h"
#include "encoding/text_encoder.h"
#include "fuzz/text_units.h"
#include "platform/characters.h"

#include <algorithm>
#include <cstdlib>

namespace kvx {
namespace {

/// Pairs of characters, each by the C library's own conversion.
std::optional<Bytes> PlainHex(std::u16string_view query) {
    Bytes bytes;
    std::string pair;
    for (const char16_t unit : query) {
        if (IsSpace(unit)) continue;
        pair += unit > 0 && unit < 0x80 ? static_cast<char>(unit) : '?';
        if (pair.size() < 2) continue;
        char* end = nullptr;
        bytes.push_back(static_cast<std::uint8_t>(std::strtoul(pair.c_str(), &end, 16)));
        if (end != pair.data() + 2) return std::nullopt;
        pair.clear();
    }
    if (!pair.empty() || bytes.empty()) return std::nullopt;
    return bytes;
}

std::string CheckTrimmed(std::u16string_view query, std::u16string_view trimmed) {
    constexpr std::u16string_view kBlanks = u" \t\r\n";
    const auto isBlank = [&](char16_t unit) { return kBlanks.find(unit) != kBlanks.npos; };
    if (!trimmed.empty() && (isBlank(trimmed.front()) || isBlank(trimmed.back())))
        return "a blank is left";
    const std::size_t at = query.find(trimmed);
    const std::u16string_view before = query.substr(0, at);
    const std::u16string_view behind = query.substr(at + trimmed.size());
    return std::ranges::all_of(before, isBlank) && std::ranges::all_of(behind, isBlank)
               ? ""
               : "more than blanks went";
}

} // namespace

std::string CheckQuery(ByteView input) {
    if (input.empty()) return {};
    const auto type = input[0] >= 0x80 ? SearchType::Text : SearchType::Hex;
    const auto encoding = static_cast<TextEncoding>(input[0] % 0x80 % (kTextEncodingCount + 1));
    const std::u16string query = UnitsOf(input.subspan(1));
    const std::u16string_view trimmed = TrimQuery(query);
    if (std::string problem = CheckTrimmed(query, trimmed); !problem.empty()) return problem;
    const auto pattern = BuildPattern(type, trimmed, encoding);
    const std::optional<Bytes> plain =
        type == SearchType::Text ? EncodeText(encoding, trimmed) : PlainHex(trimmed);
    if (!plain || plain->size() > kMaxPatternBytes)
        return std::holds_alternative<Bytes>(pattern) ? "bytes of an invalid query" : "";
    return std::holds_alternative<Bytes>(pattern) && std::get<Bytes>(pattern) == *plain
               ? ""
               : "other bytes";
}

} // namespace kvx
