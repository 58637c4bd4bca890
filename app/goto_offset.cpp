#include "app/goto_offset.h"

#include "app/search_query.h"
#include "hexview/hex_digits.h"

#include <cerrno>
#include <cwchar>

namespace kvx {

// The C library's conversion decides what a number is: it also takes a sign, and blanks or another
// "0x" behind the first one.
std::optional<std::uint64_t> ParseHexOffset(std::u16string_view text) {
    text = TrimQuery(text);
    if (text.starts_with(u"0x") || text.starts_with(u"0X")) text.remove_prefix(2);
    if (text.empty()) return std::nullopt;
    const std::wstring digits(text.begin(), text.end());
    wchar_t* end = nullptr;
    errno = 0;
    const std::uint64_t offset = std::wcstoull(digits.c_str(), &end, 16);
    const bool whole = end == digits.c_str() + digits.size();
    return whole && errno != ERANGE ? std::optional(offset) : std::nullopt;
}

std::u16string HexOffsetText(std::uint64_t offset) {
    return FormatOffset(offset, 1);
}

} // namespace kvx
