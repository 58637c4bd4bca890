#include "panes/inspector_rows.h"

#include "encoding/character_decoder.h"
#include "panes/character_display.h"
#include "pattern/number_text.h"
#include "pattern/value_format.h"
#include "platform/text.h"

#include <bit>
#include <optional>
#include <utility>

namespace kvx {
namespace {

/// Empty where the bytes do not give one.
using Value = std::optional<std::u16string>;

Value BinaryValue(ByteView bytes) {
    if (bytes.empty()) return std::nullopt;
    std::u16string text = u"0b";
    for (int bit = 7; bit >= 0; --bit) {
        text += (bytes.front() >> bit & 1) != 0 ? u'1' : u'0';
        if (bit == 4) text += u'_';
    }
    return text;
}

Value UnsignedValue(ByteView bytes, std::size_t size, ByteOrder order) {
    if (bytes.size() < size) return std::nullopt;
    std::uint64_t number = 0;
    for (std::size_t i = 0; i < size; ++i)
        number = number << 8U | bytes[order == ByteOrder::Big ? i : size - 1 - i];
    std::u16string text;
    AppendDecimal(text, number);
    text += u" / 0x";
    AppendHex(text, number, 2 * size);
    return text;
}

/// One character of UTF-8. How many bytes it has stands in the first; whether they are well formed
/// says the strict conversion.
Value Utf8Character(ByteView bytes) {
    if (bytes.empty()) return std::nullopt;
    const int leadingOnes = std::countl_one(bytes.front());
    const std::size_t length = leadingOnes == 0 ? 1 : static_cast<std::size_t>(leadingOnes);
    if (leadingOnes == 1 || length > 4 || length > bytes.size()) return std::nullopt;
    return StrictUtf8ToUtf16({reinterpret_cast<const char*>(bytes.data()), length});
}

std::optional<char16_t> Utf16Unit(ByteView bytes, std::size_t index, ByteOrder order) {
    if (bytes.size() < 2 * index + 2) return std::nullopt;
    const std::uint8_t first = bytes[2 * index];
    const std::uint8_t second = bytes[2 * index + 1];
    return static_cast<char16_t>(order == ByteOrder::Little ? second << 8 | first
                                                            : first << 8 | second);
}

bool IsHighSurrogate(char16_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}
bool IsLowSurrogate(char16_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

Value Utf16Character(ByteView bytes, ByteOrder order) {
    const std::optional<char16_t> first = Utf16Unit(bytes, 0, order);
    if (!first || IsLowSurrogate(*first)) return std::nullopt;
    if (!IsHighSurrogate(*first)) return std::u16string{*first};
    const std::optional<char16_t> second = Utf16Unit(bytes, 1, order);
    if (!second || !IsLowSurrogate(*second)) return std::nullopt;
    return std::u16string{*first, *second};
}

/// The code pages agree on ASCII controls, which their decoder leaves out as not printable.
Value CodePageCharacter(ByteView bytes, TextEncoding encoding) {
    if (bytes.empty()) return std::nullopt;
    const std::uint8_t first = bytes.front();
    if (first < 0x20 || first == 0x7F) return std::u16string{char16_t{first}};
    std::optional<DecodedCharacter> character = DecodeCharAt(encoding, bytes);
    if (!character) return std::nullopt;
    return std::move(character->text);
}

Value EncodedCharacter(ByteView bytes, TextEncoding encoding) {
    switch (encoding) {
    case TextEncoding::Utf8:
        return Utf8Character(bytes);
    case TextEncoding::Utf16Le:
        return Utf16Character(bytes, ByteOrder::Little);
    case TextEncoding::Utf16Be:
        return Utf16Character(bytes, ByteOrder::Big);
    default:
        return CodePageCharacter(bytes, encoding);
    }
}

Value CharacterValue(ByteView bytes, TextEncoding encoding) {
    Value character = EncodedCharacter(bytes, encoding);
    if (character) character = FormatCharacterDisplay(*character);
    return character;
}

} // namespace

InspectorRequest MakeInspectorRequest(const IReadOnlyDocument& document, std::uint64_t caretOffset,
                                      TextEncoding encoding, std::u16string unavailableText) {
    return {.caretOffset = caretOffset,
            .encoding = encoding,
            .bytes = document.IsOpen() ? document.ReadBytes(caretOffset, kInspectorBytes) : Bytes(),
            .unavailableText = std::move(unavailableText)};
}

InspectorRows ComputeInspectorRows(const InspectorRequest& request) {
    const ByteView bytes = request.bytes;
    std::array<Value, kInspectorRows> values = {
        BinaryValue(bytes),
        UnsignedValue(bytes, 1, ByteOrder::Little),
        UnsignedValue(bytes, 2, ByteOrder::Little),
        UnsignedValue(bytes, 2, ByteOrder::Big),
        UnsignedValue(bytes, 4, ByteOrder::Little),
        UnsignedValue(bytes, 4, ByteOrder::Big),
        UnsignedValue(bytes, 8, ByteOrder::Little),
        UnsignedValue(bytes, 8, ByteOrder::Big),
        CharacterValue(bytes, TextEncoding::Utf8),
        CharacterValue(bytes, TextEncoding::Utf16Le),
        CharacterValue(bytes, TextEncoding::Utf16Be),
        CharacterValue(bytes, request.encoding),
    };
    InspectorRows rows;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        rows[i].nameKey = kInspectorRowKeys[i];
        rows[i].value = std::move(values[i]).value_or(request.unavailableText);
    }
    return rows;
}

} // namespace kvx
