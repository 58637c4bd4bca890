#include "encoding/character_decoder.h"

#include "encoding/double_byte_rows.h"
#include "encoding/iscii_rows.h"
#include "encoding/single_byte_rows.h"

namespace kvx {
namespace {

std::optional<DecodedCharacter> DecodeAsciiCharacter(ByteView bytes) {
    if (bytes.empty() || bytes[0] < 0x20 || bytes[0] > 0x7E) return std::nullopt;
    return DecodedCharacter{std::u16string(1, bytes[0]), 1};
}

} // namespace

std::optional<DecodedCharacter> DecodeCharAt(TextEncoding encoding, ByteView bytes) {
    switch (encoding) {
    case TextEncoding::Utf8:
    case TextEncoding::Utf16Le:
    case TextEncoding::Utf16Be:
        return std::nullopt;
    case TextEncoding::ShiftJis:
    case TextEncoding::Windows949:
    case TextEncoding::EucKr:
    case TextEncoding::Big5:
    case TextEncoding::Gbk:
        return DecodeDoubleByteCharacter(TableOf(encoding), bytes);
    case TextEncoding::Tis620:
        return DecodeSingleByteCharacter(Tis620Table(), bytes);
    case TextEncoding::Windows1258:
        return DecodeSingleByteCharacter(Windows1258Table(), bytes);
    case TextEncoding::IsciiDevanagari:
        return DecodeIsciiCharacter(bytes);
    default:
        return DecodeAsciiCharacter(bytes);
    }
}

} // namespace kvx
