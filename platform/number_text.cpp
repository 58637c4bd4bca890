#include "platform/number_text.h"

#include <algorithm>
#include <bit>

namespace kvx {
namespace {

/// Makes room for `digits` more characters and writes the lowest digits of `value` there.
template <std::uint64_t Base>
void AppendDigits(std::u16string& text, std::uint64_t value, std::size_t digits) {
    text.resize(text.size() + digits);
    char16_t* place = text.data() + text.size();
    for (; digits > 0; --digits, value /= Base)
        *--place = kHexDigits[value % Base];
}

} // namespace

void AppendDecimal(std::u16string& text, std::uint64_t value) {
    std::size_t digits = 1;
    for (std::uint64_t rest = value / 10; rest != 0; rest /= 10)
        ++digits;
    AppendDigits<10>(text, value, digits);
}

void AppendHex(std::u16string& text, std::uint64_t value, std::size_t digits) {
    const auto needed = static_cast<std::size_t>(std::bit_width(value) + 3) / 4;
    AppendDigits<16>(text, value, std::max(digits, needed));
}

} // namespace kvx
