#include "app/search_query.h"

#include "encoding/text_encoder.h"
#include "platform/characters.h"
#include "platform/number_text.h"

#include <algorithm>

namespace kvx {
namespace {

constexpr std::size_t kMaxHexQuery = 3 * kMaxPatternBytes - 1;

// Characters of a text query: in the double-byte encodings each may become two bytes.
constexpr std::size_t kMaxTextQuery = kMaxPatternBytes;
constexpr std::size_t kMaxDoubleByteQuery = kMaxPatternBytes / 2;

bool IsDoubleByte(TextEncoding encoding) {
    return encoding >= TextEncoding::Utf16Le && encoding <= TextEncoding::Gbk;
}

// Two characters as an unsigned number: a sign and one digit are a number too, and a negative one
// wraps around.
std::optional<std::uint8_t> HexByte(char16_t first, char16_t second) {
    const auto low = HexDigitValue(second);
    if (!low) return std::nullopt;
    if (first == u'+') return low;
    if (first == u'-') return static_cast<std::uint8_t>(0 - *low);
    const auto high = HexDigitValue(first);
    if (!high) return std::nullopt;
    return static_cast<std::uint8_t>(*high << 4 | *low);
}

std::optional<Bytes> ParseHex(std::u16string_view query) {
    std::u16string digits(query);
    std::erase_if(digits, IsSpace);
    if (digits.size() % 2 != 0) return std::nullopt;
    Bytes bytes;
    for (std::size_t i = 0; i < digits.size(); i += 2) {
        const auto byte = HexByte(digits[i], digits[i + 1]);
        if (!byte) return std::nullopt;
        bytes.push_back(*byte);
    }
    return bytes;
}

} // namespace

std::size_t MaxQueryLength(SearchType type, TextEncoding encoding) {
    if (type == SearchType::Hex) return kMaxHexQuery;
    return IsDoubleByte(encoding) ? kMaxDoubleByteQuery : kMaxTextQuery;
}

std::u16string_view TrimQuery(std::u16string_view query) {
    constexpr std::u16string_view kBlanks = u" \t\r\n";
    const std::size_t first = query.find_first_not_of(kBlanks);
    if (first == query.npos) return {};
    return query.substr(first, query.find_last_not_of(kBlanks) + 1 - first);
}

std::variant<Bytes, QueryError> BuildPattern(SearchType type, std::u16string_view query,
                                             TextEncoding encoding) {
    const bool isText = type == SearchType::Text;
    std::optional<Bytes> pattern = isText ? EncodeText(encoding, query) : ParseHex(query);
    if (!pattern || pattern->empty())
        return QueryError{isText ? "error.search_invalid_text" : "error.search_invalid_hex"};
    if (pattern->size() > kMaxPatternBytes) return QueryError{"error.search_too_long"};
    return *std::move(pattern);
}

std::optional<std::uint64_t> SearchStart(const HexViewState& view, std::uint64_t size,
                                         SearchDirection direction) {
    if (!view.hasSelection) return view.caret;
    const std::uint64_t first = std::min(view.selAnchor, view.selEnd);
    if (direction == SearchDirection::Previous)
        return first == 0 ? std::nullopt : std::optional(first - 1);
    return size == 0 || first >= size - 1 ? std::nullopt : std::optional(first + 1);
}

} // namespace kvx
