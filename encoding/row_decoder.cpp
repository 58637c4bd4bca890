#include "encoding/row_decoder.h"

#include "encoding/double_byte_rows.h"
#include "encoding/iscii_rows.h"
#include "encoding/single_byte_rows.h"
#include "encoding/utf16_rows.h"
#include "encoding/utf8_rows.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace kvx {

/// How the rows of one encoding are decoded.
struct RowRules {
    /// Fills the cells, which are empty and one for each byte of the row.
    void (*decode)(const RowContext& row, RowCells& cells);
    std::uint64_t before = 0; ///< bytes before the row that the decoder looks at
    std::uint64_t after = 0;  ///< bytes behind the row
    /// Makes the table by which the context begins at the start of a character; null: it begins
    /// `before` bytes before the row.
    const DoubleByteTable& (*pairs)() = nullptr;
    bool needsDocument = false; ///< a row alone shows by the rule of ASCII
};

namespace {

void DecodeAsciiRow(const RowContext& row, RowCells& cells) {
    for (std::size_t at = row.rowBegin; at < row.rowEnd; ++at) {
        const std::uint8_t byte = row.bytes[at];
        ShowAt(row, at, byte >= 0x20 && byte <= 0x7E ? byte : kPlaceholder, cells);
    }
}

template <std::endian Order>
void DecodeUtf16(const RowContext& row, RowCells& cells) {
    DecodeUtf16Row(Order, row, cells);
}

template <const SingleByteTable& (*Table)()>
void DecodeSingleByte(const RowContext& row, RowCells& cells) {
    DecodeSingleByteRow(Table(), row, cells);
}

template <TextEncoding Encoding>
const DoubleByteTable& Pairs() {
    return TableOf(Encoding);
}

template <TextEncoding Encoding>
void DecodePairs(const RowContext& row, RowCells& cells) {
    DecodeDoubleByteRow(TableOf(Encoding), row, cells);
}

template <TextEncoding Encoding>
constexpr RowRules kPairRules = {.decode = &DecodePairs<Encoding>,
                                 .before = CharacterBoundary::kUsualReach,
                                 .after = 1,
                                 .pairs = &Pairs<Encoding>,
                                 .needsDocument = true};

constexpr RowRules kAsciiRules = {.decode = &DecodeAsciiRow};

/// In the order of the enumeration.
constexpr std::array<RowRules, kTextEncodingCount> kRules = {{
    kAsciiRules,
    {.decode = &DecodeUtf8Row, .before = 3, .after = 3, .needsDocument = true},
    {.decode = &DecodeUtf16<std::endian::little>},
    {.decode = &DecodeUtf16<std::endian::big>},
    {.decode = &DecodeShiftJisRow, .before = 1, .after = 1, .needsDocument = true},
    kPairRules<TextEncoding::Windows949>,
    kPairRules<TextEncoding::EucKr>,
    kPairRules<TextEncoding::Big5>,
    kPairRules<TextEncoding::Gbk>,
    {.decode = &DecodeSingleByte<&Tis620Table>, .before = 4},
    {.decode = &DecodeSingleByte<&Windows1258Table>, .before = 4},
    {.decode = &DecodeIsciiRow, .before = 7, .after = 7},
}};

const RowRules& RulesOf(const IReadOnlyDocument* document, TextEncoding encoding) {
    const auto index = static_cast<std::size_t>(encoding);
    if (index >= kRules.size()) return kAsciiRules;
    return document == nullptr && kRules[index].needsDocument ? kAsciiRules : kRules[index];
}

// `offset` moved on, at most to the last one there is.
std::uint64_t Behind(std::uint64_t offset, std::uint64_t count) {
    return count > UINT64_MAX - offset ? UINT64_MAX : offset + count;
}

} // namespace

RowDecoder::RowDecoder(const IReadOnlyDocument* document, TextEncoding encoding,
                       std::uint64_t start, std::uint64_t count)
    : rules_(RulesOf(document, encoding)) {
    if (document == nullptr || (rules_.before == 0 && rules_.after == 0)) return;
    window_.emplace(*document);
    window_->Load(start - std::min(start, rules_.before),
                  Behind(Behind(start, count), rules_.after));
}

std::uint64_t RowDecoder::ContextStart(std::uint64_t rowStart) {
    if (rules_.pairs != nullptr) return boundary_.Find(*window_, rules_.pairs(), rowStart);
    return rowStart - std::min(rowStart, rules_.before);
}

RowCells RowDecoder::Decode(std::uint64_t rowStart, ByteView rowBytes) {
    RowCells cells(rowBytes.size());
    RowContext row = RowAlone(rowBytes);
    if (window_ && !rowBytes.empty()) {
        const std::uint64_t from = ContextStart(rowStart);
        const std::uint64_t rowEnd = rowStart + rowBytes.size();
        const ByteView bytes = window_->View(from, Behind(rowEnd, rules_.after));
        // Where the surroundings cannot be read the row is all there is.
        if (bytes.size() >= rowEnd - from)
            row = {.bytes = bytes,
                   .rowBegin = static_cast<std::size_t>(rowStart - from),
                   .rowEnd = static_cast<std::size_t>(rowEnd - from)};
    }
    rules_.decode(row, cells);
    return cells;
}

RowCells DecodeRow(const IReadOnlyDocument* document, std::uint64_t rowStart, ByteView rowBytes,
                   TextEncoding encoding) {
    return RowDecoder(document, encoding, rowStart, rowBytes.size()).Decode(rowStart, rowBytes);
}

} // namespace kvx
