#include "encoding/row_decoder.h"

#include <algorithm>
#include <array>

namespace kvx {
namespace {

using RowDecoder = RowCells (*)(const IReadOnlyDocument* document, std::uint64_t rowStart,
                                ByteView rowBytes);

struct DecoderEntry {
    TextEncoding encoding;
    RowDecoder decode;
};

/// Each byte for itself: printable ASCII shows, everything else is a full stop.
RowCells DecodeAsciiRow(const IReadOnlyDocument* /*document*/, std::uint64_t /*rowStart*/,
                        ByteView rowBytes) {
    RowCells cells;
    cells.reserve(rowBytes.size());
    for (const std::uint8_t byte : rowBytes) {
        const bool printable = byte >= 0x20 && byte <= 0x7E;
        cells.emplace_back(1, printable ? static_cast<char16_t>(byte) : u'.');
    }
    return cells;
}

/// An encoding without a row here shows by the ASCII rule.
constexpr std::array kRowDecoders = {
    DecoderEntry{TextEncoding::Ascii, &DecodeAsciiRow},
};

} // namespace

RowCells DecodeRow(const IReadOnlyDocument* document, std::uint64_t rowStart, ByteView rowBytes,
                   TextEncoding encoding) {
    const auto entry = std::find_if(
        kRowDecoders.begin(), kRowDecoders.end(),
        [encoding](const DecoderEntry& candidate) { return candidate.encoding == encoding; });
    const RowDecoder decode = entry == kRowDecoders.end() ? &DecodeAsciiRow : entry->decode;
    return decode(document, rowStart, rowBytes);
}

} // namespace kvx
