#include "platform/text.h"

#include <algorithm>
#include <cwctype>
#include <locale.h>
#include <wctype.h>

namespace kvx {
namespace {

// Unit by unit, as the Windows comparison does; letters outside the basic plane keep their case.
std::wint_t Upper(char16_t unit) {
    static const locale_t locale = ::newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    return locale != nullptr ? ::towupper_l(unit, locale) : std::towupper(unit);
}

} // namespace

int CompareIgnoringCase(std::u16string_view left, std::u16string_view right) {
    const std::size_t common = std::min(left.size(), right.size());
    for (std::size_t i = 0; i < common; ++i) {
        const std::wint_t l = Upper(left[i]);
        const std::wint_t r = Upper(right[i]);
        if (l != r) return l < r ? -1 : 1;
    }
    if (left.size() == right.size()) return 0;
    return left.size() < right.size() ? -1 : 1;
}

} // namespace kvx
