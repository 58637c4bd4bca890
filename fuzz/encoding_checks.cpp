#include "fuzz/encoding_checks.h"

#include "encoding/text_encoder.h"
#include "fuzz/text_units.h"
#include "platform/iscii.h"
#include "tests/encoding/row_model.h"
#include "tests/hexview/memory_document.h"

#include <algorithm>

namespace kvx {
namespace {

/// One value is no encoding.
TextEncoding EncodingOf(std::uint8_t choice) {
    return static_cast<TextEncoding>(choice % (kTextEncodingCount + 1));
}

Bytes Repeated(ByteView bytes, std::size_t times) {
    constexpr std::size_t kMost = 6000; // past the reach of the search for a row's first character
    Bytes result;
    for (; times > 0 && result.size() < kMost; --times)
        result.insert(result.end(), bytes.begin(), bytes.end());
    return result;
}

/// Some stand for bytes that are no characters: they are written and then not readable.
bool HasPrivateUnit(std::u16string_view text) {
    return std::ranges::any_of(text,
                               [](char16_t unit) { return unit >= 0xE000 && unit <= 0xF8FF; });
}

/// A letter and a nukta may come back as one letter, but then stay that.
std::string CheckIsciiText(std::u16string_view text) {
    const std::optional<Bytes> bytes = EncodeIscii(text);
    if (!bytes) return {};
    const std::optional<std::u16string> read = DecodeIscii(*bytes);
    if (!read) return "written and not readable";
    const bool hasNukta = text.find(u'\u093C') != text.npos;
    if (!hasNukta && *read != text) return "read as another text";
    return EncodeIscii(*read) == bytes ? "" : "other bytes the second time";
}

std::optional<std::u16string> ReadBack(TextEncoding encoding, ByteView bytes) {
    switch (encoding) {
    case TextEncoding::Utf8:
        return FromCodePage(CodePage::Utf8, bytes);
    case TextEncoding::Utf16Le:
    case TextEncoding::Utf16Be:
        return UnitsOf(bytes, encoding == TextEncoding::Utf16Be);
    default:
        if (encoding < TextEncoding::ShiftJis || encoding > TextEncoding::IsciiDevanagari)
            return std::u16string(bytes.begin(), bytes.end());
        return FromCodePage(model::PageOf(encoding), bytes);
    }
}

} // namespace

std::string CheckRows(ByteView input) {
    if (input.size() < 5) return {};
    const TextEncoding encoding = EncodingOf(input[0]);
    const std::size_t length = 1 + input[1] % 20;
    const MemoryDocument document(Repeated(input.subspan(5), 1 + input[4]));
    const Bytes& bytes = document.bytes;
    constexpr std::size_t kMostRows = 30;
    const std::size_t first = (input[2] + std::size_t{256} * input[3]) % (bytes.size() + 1);
    RowDecoder page(&document, encoding, first, length * kMostRows / 2);
    for (std::size_t row = 0; row < kMostRows; ++row) {
        const std::size_t start = first + row * length;
        if (start >= bytes.size()) break;
        const ByteView rest = ByteView(bytes).subspan(start);
        const ByteView cells = rest.first(std::min(length, rest.size()));
        if (page.Decode(start, cells) !=
            model::CellsInDocument(bytes, start, cells.size(), encoding))
            return "another row";
        if (DecodeRow(nullptr, start, cells, encoding) != model::CellsAlone(cells, encoding))
            return "another row without a document";
        if (DecodeCharAt(encoding, rest) != model::CharAt(encoding, rest))
            return "another character";
    }
    return {};
}

std::string CheckIscii(ByteView input) {
    if (input.empty()) return {};
    const ByteView rest = input.subspan(1);
    if (input[0] % 2 != 0) return CheckIsciiText(UnitsOf(rest));
    const std::optional<std::u16string> text = DecodeIscii(rest);
    return text ? CheckIsciiText(*text) : "";
}

std::string CheckTextEncoder(ByteView input) {
    if (input.empty()) return {};
    const TextEncoding encoding = EncodingOf(input[0]);
    if (encoding == TextEncoding::IsciiDevanagari) return CheckIsciiText(UnitsOf(input.subspan(1)));
    const std::u16string text = UnitsOf(input.subspan(1));
    const std::optional<Bytes> bytes = EncodeText(encoding, text);
    if (!bytes) return {};
    if (bytes->empty()) return "no bytes";
    const std::optional<std::u16string> read = ReadBack(encoding, *bytes);
    if (!read) return HasPrivateUnit(text) ? "" : "written and not readable";
    return *read == text ? "" : "read as another text";
}

} // namespace kvx
