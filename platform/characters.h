// Classes and case of single UTF-16 units: ASCII here, all others by the system's tables, without
// regard to the locale. Half a surrogate pair is in no class. Callable from every thread.
#pragma once

namespace kvx {

/// The same questions for units above 007F, asked of the system.
bool IsSpaceBeyondAscii(char16_t unit);
bool IsLetterBeyondAscii(char16_t unit);
bool IsLetterOrDigitBeyondAscii(char16_t unit);
char16_t ToLowerBeyondAscii(char16_t unit);

/// White space of any script, the controls 0009 to 000D included.
constexpr bool IsSpace(char16_t unit) {
    if (unit >= 0x80) return IsSpaceBeyondAscii(unit);
    return unit == u' ' || (unit >= u'\t' && unit <= u'\r');
}

/// A letter, syllable or ideograph of any script.
constexpr bool IsLetter(char16_t unit) {
    if (unit >= 0x80) return IsLetterBeyondAscii(unit);
    const int lower = unit | 0x20;
    return lower >= u'a' && lower <= u'z';
}

/// A letter or a digit of any script.
constexpr bool IsLetterOrDigit(char16_t unit) {
    if (unit >= 0x80) return IsLetterOrDigitBeyondAscii(unit);
    return IsLetter(unit) || (unit >= u'0' && unit <= u'9');
}

/// The lower-case form; the unit itself when it has none.
constexpr char16_t ToLower(char16_t unit) {
    if (unit >= 0x80) return ToLowerBeyondAscii(unit);
    return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit | 0x20) : unit;
}

} // namespace kvx
