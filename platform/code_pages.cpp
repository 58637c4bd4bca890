#include "platform/code_pages.h"

#include "platform/host_code_pages.h"
#include "platform/iscii.h"
#include "platform/text.h"

#include <cstddef>

namespace kvx {
namespace {

/// ASCII and pairs of the square A1 to FE. The host's page may be larger: some systems lack EUC-KR,
/// and page 949, which contains it, stands in.
bool IsEucKr(ByteView bytes) {
    const auto inSquare = [](std::uint8_t byte) { return byte >= 0xA1 && byte <= 0xFE; };
    for (std::size_t at = 0; at < bytes.size(); ++at) {
        if (bytes[at] < 0x80) continue;
        if (!inSquare(bytes[at]) || ++at == bytes.size() || !inSquare(bytes[at])) return false;
    }
    return true;
}

std::optional<Bytes> ToUtf8(std::u16string_view text) {
    const std::string utf8 = Utf16ToUtf8(text);
    // A lone surrogate was replaced, so it does not come back.
    if (StrictUtf8ToUtf16(utf8) != text) return std::nullopt;
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(utf8.data());
    return Bytes(bytes, bytes + utf8.size());
}

std::optional<Bytes> ToEucKr(std::u16string_view text) {
    std::optional<Bytes> bytes = ToHostPage(CodePage::EucKr, text);
    if (bytes && !IsEucKr(*bytes)) return std::nullopt;
    return bytes;
}

} // namespace

std::optional<std::u16string> FromCodePage(CodePage page, ByteView bytes) {
    if (bytes.empty()) return std::u16string();
    switch (page) {
    case CodePage::Utf8:
        return StrictUtf8ToUtf16({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
    case CodePage::IsciiDevanagari:
        return DecodeIscii(bytes);
    case CodePage::EucKr:
        if (!IsEucKr(bytes)) return std::nullopt;
        break;
    default:
        break;
    }
    return FromHostPage(page, bytes);
}

std::optional<Bytes> ToCodePage(CodePage page, std::u16string_view text) {
    if (text.empty()) return std::nullopt;
    switch (page) {
    case CodePage::Utf8:
        return ToUtf8(text);
    case CodePage::IsciiDevanagari:
        return EncodeIscii(text);
    case CodePage::EucKr:
        return ToEucKr(text);
    default:
        return ToHostPage(page, text);
    }
}

} // namespace kvx
