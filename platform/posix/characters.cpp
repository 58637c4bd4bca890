#include "platform/characters.h"

#include <cwctype>
#include <locale.h>

namespace kvx {
namespace {

/// The C library's own Unicode tables, which need no installed locale; freed by the system at exit.
locale_t UnicodeLocale() {
    static const locale_t locale = ::newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    return locale;
}

} // namespace

bool IsSpaceBeyondAscii(char16_t unit) {
    return ::iswspace_l(unit, UnicodeLocale()) != 0;
}

bool IsLetterBeyondAscii(char16_t unit) {
    return ::iswalpha_l(unit, UnicodeLocale()) != 0;
}

bool IsLetterOrDigitBeyondAscii(char16_t unit) {
    return ::iswalnum_l(unit, UnicodeLocale()) != 0;
}

char16_t ToLowerBeyondAscii(char16_t unit) {
    return static_cast<char16_t>(::towlower_l(unit, UnicodeLocale()));
}

} // namespace kvx
