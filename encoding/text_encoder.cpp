#include "encoding/text_encoder.h"

#include "platform/code_pages.h"
#include "platform/code_point.h"
#include "platform/iscii.h"

#include <algorithm>
#include <bit>

namespace kvx {
namespace {

std::optional<Bytes> EncodeAscii(std::u16string_view text) {
    Bytes bytes;
    bytes.reserve(text.size());
    for (const char16_t unit : text) {
        if (unit > 0x7F) return std::nullopt;
        bytes.push_back(static_cast<std::uint8_t>(unit));
    }
    return bytes;
}

/// True when every surrogate is half of a pair.
bool IsWellFormed(std::u16string_view text) {
    while (!text.empty()) {
        const std::optional<CodePoint> character = ReadUtf16(text);
        if (!character) return false;
        text.remove_prefix(character->length);
    }
    return true;
}

std::optional<Bytes> EncodeUtf16(std::endian order, std::u16string_view text) {
    if (!IsWellFormed(text)) return std::nullopt;
    Bytes bytes;
    bytes.reserve(2 * text.size());
    for (const char16_t unit : text) {
        const auto low = static_cast<std::uint8_t>(unit & 0xFFU);
        const auto high = static_cast<std::uint8_t>(unit >> 8U);
        bytes.push_back(order == std::endian::little ? low : high);
        bytes.push_back(order == std::endian::little ? high : low);
    }
    return bytes;
}

} // namespace

std::optional<Bytes> EncodeText(TextEncoding encoding, std::u16string_view text) {
    if (text.empty()) return std::nullopt;
    switch (encoding) {
    case TextEncoding::Utf8:
        return ToCodePage(CodePage::Utf8, text);
    case TextEncoding::Utf16Le:
        return EncodeUtf16(std::endian::little, text);
    case TextEncoding::Utf16Be:
        return EncodeUtf16(std::endian::big, text);
    case TextEncoding::ShiftJis:
        return ToCodePage(CodePage::ShiftJis, text);
    case TextEncoding::Windows949:
        return ToCodePage(CodePage::Korean949, text);
    case TextEncoding::EucKr:
        return ToCodePage(CodePage::EucKr, text);
    case TextEncoding::Big5:
        return ToCodePage(CodePage::Big5, text);
    case TextEncoding::Gbk:
        return ToCodePage(CodePage::Gbk, text);
    case TextEncoding::Tis620:
        return ToCodePage(CodePage::Thai, text);
    case TextEncoding::Windows1258:
        return ToCodePage(CodePage::Vietnamese, text);
    case TextEncoding::IsciiDevanagari:
        return EncodeIscii(text);
    default:
        return EncodeAscii(text);
    }
}

} // namespace kvx
