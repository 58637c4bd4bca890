#include "panes/inspector_rows.h"

#include "encoding/character_decoder.h"
#include "panes/character_display.h"
#include "pattern/value_format.h"
#include "platform/code_point.h"
#include "platform/number_text.h"

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

std::optional<std::u16string> TextOf(const std::optional<CodePoint>& character) {
    if (!character) return std::nullopt;
    std::u16string text;
    AppendUtf16(text, character->value);
    return text;
}

Value Utf8Character(ByteView bytes) {
    return bytes.empty() ? std::nullopt : TextOf(ReadUtf8(bytes));
}

std::optional<char16_t> Utf16Unit(ByteView bytes, std::size_t index, ByteOrder order) {
    if (bytes.size() < 2 * index + 2) return std::nullopt;
    const std::uint8_t first = bytes[2 * index];
    const std::uint8_t second = bytes[2 * index + 1];
    return static_cast<char16_t>(order == ByteOrder::Little ? second << 8 | first
                                                            : first << 8 | second);
}

Value Utf16Character(ByteView bytes, ByteOrder order) {
    std::u16string units;
    for (std::size_t index = 0; index < 2; ++index) {
        if (const auto unit = Utf16Unit(bytes, index, order)) units += *unit;
    }
    return units.empty() ? std::nullopt : TextOf(ReadUtf16(units));
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
