#include "pattern/number_text.h"

#include <algorithm>
#include <string_view>

namespace kvx {
namespace {

constexpr std::u16string_view kDigits = u"0123456789ABCDEF";

template <std::uint64_t Base>
void AppendNumber(std::u16string& text, std::uint64_t value, std::size_t minimum) {
    std::size_t digits = 1;
    for (std::uint64_t rest = value / Base; rest != 0; rest /= Base)
        ++digits;
    digits = std::max(digits, minimum);
    text.resize(text.size() + digits);
    for (auto place = text.rbegin(); digits > 0; --digits, value /= Base)
        *place++ = kDigits[value % Base];
}

} // namespace

void AppendDecimal(std::u16string& text, std::uint64_t value) {
    AppendNumber<10>(text, value, 1);
}

void AppendHex(std::u16string& text, std::uint64_t value, std::size_t digits) {
    AppendNumber<16>(text, value, digits);
}

} // namespace kvx
