#include "panes/character_display.h"

#include "platform/code_point.h"
#include "platform/number_text.h"

#include <algorithm>
#include <array>

namespace kvx {
namespace {

struct NamedCharacter {
    char16_t character;
    std::u16string_view name;
};

/// What shows as nothing, or breaks the line.
constexpr std::array<NamedCharacter, 9> kNamedCharacters = {{{0x09, u"TAB"},
                                                             {0x0A, u"LF"},
                                                             {0x0B, u"VT"},
                                                             {0x0C, u"FF"},
                                                             {0x0D, u"CR"},
                                                             {0x20, u"Space"},
                                                             {0x85, u"NEL"},
                                                             {0xA0, u"NBSP"},
                                                             {0x3000, u"Ideographic Space"}}};

std::u16string_view DisplayPart(std::u16string_view text) {
    if (text.size() != 1) return text;
    const auto named =
        std::ranges::find(kNamedCharacters, text.front(), &NamedCharacter::character);
    return named == kNamedCharacters.end() ? text : named->name;
}

/// Takes the first code point off `text`; half a surrogate pair stands for itself.
std::uint32_t TakeCodePoint(std::u16string_view& text) {
    const CodePoint first = ReadUtf16(text).value_or(CodePoint{text.front(), 1});
    text.remove_prefix(first.length);
    return first.value;
}

} // namespace

std::u16string FormatCharacterDisplay(std::u16string_view text) {
    if (text.empty()) return {};
    std::u16string display(DisplayPart(text));
    std::u16string_view separator = u" (";
    while (!text.empty()) {
        display += separator;
        display += u"U+";
        AppendHex(display, TakeCodePoint(text), 4);
        separator = u" ";
    }
    return display + u')';
}

} // namespace kvx
