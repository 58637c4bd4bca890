#include "pattern/number_text.h"

#include <array>
#include <string_view>

namespace kvx {
namespace {

constexpr std::u16string_view kDigits = u"0123456789ABCDEF";

template <std::uint64_t Base>
void AppendNumber(std::u16string& text, std::uint64_t value, std::size_t minimum) {
    std::array<char16_t, 20> buffer; // 2^64 - 1 has 20 decimal digits
    std::size_t used = 0;
    do {
        buffer[buffer.size() - ++used] = kDigits[value % Base];
        value /= Base;
    } while (value != 0 || used < minimum);
    text.append(buffer.data() + buffer.size() - used, used);
}

} // namespace

void AppendDecimal(std::u16string& text, std::uint64_t value) {
    AppendNumber<10>(text, value, 1);
}

void AppendHex(std::u16string& text, std::uint64_t value, std::size_t digits) {
    AppendNumber<16>(text, value, digits);
}

} // namespace kvx
