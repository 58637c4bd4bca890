#include "platform/iscii.h"

#include <algorithm>
#include <cstddef>

namespace kvx {
namespace {

constexpr char16_t kNonJoiner = 0x200C;
constexpr char16_t kJoiner = 0x200D;
constexpr char16_t kVirama = 0x094D;
constexpr char16_t kNuktaSign = 0x093C;
constexpr char16_t kDoubleDanda = 0x0965;

/// The bytes from A0 on; 0 where one means nothing by itself.
constexpr std::array<char16_t, 96> kLetters = {
    0,       0x0901,     0x0902, 0x0903, 0x0905, 0x0906, 0x0907, 0x0908, // A0: signs, vowels
    0x0909,  0x090A,     0x090B, 0x090E, 0x090F, 0x0910, 0x090D, 0x0912, //
    0x0913,  0x0914,     0x0911, 0x0915, 0x0916, 0x0917, 0x0918, 0x0919, // B0: consonants from B3
    0x091A,  0x091B,     0x091C, 0x091D, 0x091E, 0x091F, 0x0920, 0x0921, //
    0x0922,  0x0923,     0x0924, 0x0925, 0x0926, 0x0927, 0x0928, 0x0929, // C0
    0x092A,  0x092B,     0x092C, 0x092D, 0x092E, 0x092F, 0x095F, 0x0930, //
    0x0931,  0x0932,     0x0933, 0x0934, 0x0935, 0x0936, 0x0937, 0x0938, // D0
    0x0939,  kJoiner,    0x093E, 0x093F, 0x0940, 0x0941, 0x0942, 0x0943, // D9: invisible consonant
    0x0946,  0x0947,     0x0948, 0x0945, 0x094A, 0x094B, 0x094C, 0x0949, // E0
    kVirama, kNuktaSign, 0x0964, 0,      0,      0,      0,      0,      //
    0,       0x0966,     0x0967, 0x0968, 0x0969, 0x096A, 0x096B, 0x096C, // F0: digits
    0x096D,  0x096E,     0x096F, 0,      0,      0,      0,      0,
};

/// A byte and the unit that it means with a nukta or after the extension byte.
struct Entry {
    std::uint8_t byte;
    char16_t unit;
};

constexpr std::array kWithNukta = {
    Entry{0xA1, 0x0950},        // candrabindu: om
    Entry{0xA6, 0x090C},        // i: vocalic l
    Entry{0xA7, 0x0961},        // ii: vocalic ll
    Entry{0xAA, 0x0960},        // vocalic r: vocalic rr
    Entry{0xB3, 0x0958},        // ka: qa
    Entry{0xB4, 0x0959},        // kha: khha
    Entry{0xB5, 0x095A},        // ga: ghha
    Entry{0xBA, 0x095B},        // ja: za
    Entry{0xBF, 0x095C},        // dda: dddha
    Entry{0xC0, 0x095D},        // ddha: rha
    Entry{0xC9, 0x095E},        // pha: fa
    Entry{0xDB, 0x0962},        // the signs of the vowels above
    Entry{0xDC, 0x0963},        //
    Entry{0xDF, 0x0944},        //
    Entry{kIsciiDanda, 0x093D}, // avagraha
};

constexpr std::array kExtended = {
    Entry{0xB8, 0x0952}, // the stress sign anudatta
    Entry{0xBF, 0x0970}, // abbreviation
};

constexpr char16_t LetterOf(std::uint8_t byte) {
    return byte < 0xA0 ? char16_t{0} : kLetters[byte - 0xA0U];
}

/// 0 when the table has no such byte.
template <std::size_t Count>
char16_t UnitOf(const std::array<Entry, Count>& table, std::uint8_t byte) {
    const auto entry = std::find_if(table.begin(), table.end(),
                                    [byte](const Entry& each) { return each.byte == byte; });
    return entry == table.end() ? char16_t{0} : entry->unit;
}

/// 0 when the table has no such unit.
template <std::size_t Count>
std::uint8_t ByteOf(const std::array<Entry, Count>& table, char16_t unit) {
    const auto entry = std::find_if(table.begin(), table.end(),
                                    [unit](const Entry& each) { return each.unit == unit; });
    return entry == table.end() ? std::uint8_t{0} : entry->byte;
}

/// Bold to double height, the default script, Devanagari: all of them show as they are here.
constexpr bool IsKnownAttribute(std::uint8_t code) {
    return (code >= 0x30 && code <= 0x39) || code == 0x40 || code == 0x42;
}

constexpr IsciiCharacter OneUnit(char16_t unit, std::uint8_t length) {
    return unit == 0 ? IsciiCharacter{} : IsciiCharacter{{unit}, 1, length};
}

/// Nothing (length 0) where the two bytes do not belong together.
IsciiCharacter ReadPair(std::uint8_t first, std::uint8_t second) {
    if (first == kIsciiAttribute)
        return IsKnownAttribute(second) ? IsciiCharacter{{}, 0, 2} : IsciiCharacter{};
    if (first == kIsciiExtension) return OneUnit(UnitOf(kExtended, second), 2);
    if (first == kIsciiHalant && second == kIsciiHalant) return {{kVirama, kNonJoiner}, 2, 2};
    if (first == kIsciiHalant && second == kIsciiNukta) return {{kVirama, kJoiner}, 2, 2};
    if (first == kIsciiDanda && second == kIsciiDanda) return OneUnit(kDoubleDanda, 2);
    if (second == kIsciiNukta) return OneUnit(UnitOf(kWithNukta, first), 2);
    return {};
}

/// What the first units of a text become.
struct IsciiBytes {
    std::size_t unitCount = 0; ///< 0: ISCII lacks the character
    std::uint8_t first = 0;
    std::uint8_t second = 0; ///< 0: one byte is all
};

/// Of `text`, which is not empty.
IsciiBytes FirstBytes(std::u16string_view text) {
    const char16_t unit = text[0];
    if (unit < 0x80) return {1, static_cast<std::uint8_t>(unit)};
    const char16_t next = text.size() > 1 ? text[1] : char16_t{0};
    if (unit == kVirama && next == kNonJoiner) return {2, kIsciiHalant, kIsciiHalant};
    if (unit == kVirama && next == kJoiner) return {2, kIsciiHalant, kIsciiNukta};
    if (unit == kDoubleDanda) return {1, kIsciiDanda, kIsciiDanda};
    const auto letter = std::find(kLetters.begin(), kLetters.end(), unit);
    if (letter != kLetters.end())
        return {1, static_cast<std::uint8_t>(0xA0 + (letter - kLetters.begin()))};
    if (const std::uint8_t byte = ByteOf(kWithNukta, unit); byte != 0)
        return {1, byte, kIsciiNukta};
    if (const std::uint8_t byte = ByteOf(kExtended, unit); byte != 0)
        return {1, kIsciiExtension, byte};
    return {};
}

/// With the letters and nuktas that Unicode calls equivalent to one letter as that letter.
std::u16string ComposeNuktas(std::u16string_view text) {
    std::u16string composed;
    composed.reserve(text.size());
    for (const char16_t unit : text) {
        const auto entry =
            std::find_if(kWithNukta.begin(), kWithNukta.end(), [&](const Entry& each) {
                return each.unit >= 0x0958 && each.unit <= 0x095E && !composed.empty() &&
                       LetterOf(each.byte) == composed.back();
            });
        if (unit == kNuktaSign && entry != kWithNukta.end()) {
            composed.back() = entry->unit;
        } else {
            composed += unit;
        }
    }
    return composed;
}

} // namespace

IsciiCharacter ReadIscii(ByteView bytes) {
    if (bytes.empty()) return {};
    const std::uint8_t first = bytes[0];
    if (first < 0x80) return {{first}, 1, 1};
    if (bytes.size() > 1) {
        const IsciiCharacter pair = ReadPair(first, bytes[1]);
        if (pair.length != 0) return pair;
    }
    return OneUnit(LetterOf(first), 1);
}

std::optional<std::u16string> DecodeIscii(ByteView bytes) {
    std::u16string text;
    text.reserve(bytes.size());
    while (!bytes.empty()) {
        const IsciiCharacter character = ReadIscii(bytes);
        if (character.length == 0) return std::nullopt;
        text.append(character.units.data(), character.unitCount);
        bytes = bytes.subspan(character.length);
    }
    return text;
}

std::optional<Bytes> EncodeIscii(std::u16string_view text) {
    Bytes bytes;
    bytes.reserve(2 * text.size());
    for (std::u16string_view rest = text; !rest.empty();) {
        const IsciiBytes character = FirstBytes(rest);
        if (character.unitCount == 0) return std::nullopt;
        bytes.push_back(character.first);
        if (character.second != 0) bytes.push_back(character.second);
        rest.remove_prefix(character.unitCount);
    }
    // Two halants, a nukta behind other letters: in a row they mean something else.
    if (DecodeIscii(bytes) != ComposeNuktas(text)) return std::nullopt;
    return bytes;
}

} // namespace kvx
