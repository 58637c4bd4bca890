#include "platform/characters.h"

#include <windows.h>

namespace kvx {
namespace {

bool HasClass(char16_t unit, unsigned classes) {
    const auto character = static_cast<wchar_t>(unit);
    WORD type = 0;
    return ::GetStringTypeW(CT_CTYPE1, &character, 1, &type) != 0 && (type & classes) != 0;
}

} // namespace

bool IsSpaceBeyondAscii(char16_t unit) {
    return HasClass(unit, C1_SPACE);
}

bool IsLetterBeyondAscii(char16_t unit) {
    return HasClass(unit, C1_ALPHA);
}

bool IsLetterOrDigitBeyondAscii(char16_t unit) {
    return HasClass(unit, C1_ALPHA | C1_DIGIT);
}

char16_t ToLowerBeyondAscii(char16_t unit) {
    const auto character = static_cast<wchar_t>(unit);
    wchar_t lower = character;
    ::LCMapStringEx(LOCALE_NAME_INVARIANT, LCMAP_LOWERCASE, &character, 1, &lower, 1, nullptr,
                    nullptr, 0);
    return static_cast<char16_t>(lower);
}

} // namespace kvx
