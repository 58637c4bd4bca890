#include "encoding/double_byte_table.h"

#include "platform/code_pages.h"

#include <algorithm>

namespace kvx {
namespace {

struct ByteRange {
    std::uint8_t first;
    std::uint8_t last; ///< inclusive
};

struct PageRules {
    CodePage page;
    ByteRange leads;
    std::array<ByteRange, 3> trails; ///< those not needed repeat another
    bool highSingles;                ///< bytes from 0x80 on can be characters by themselves
};

constexpr auto kFirst = static_cast<std::size_t>(TextEncoding::ShiftJis);

/// In the order of the enumeration. The system tells which of Shift_JIS's bytes lead.
constexpr std::array<PageRules, 5> kPages = {{
    {CodePage::ShiftJis, {0x81, 0xFC}, {{{0x40, 0x7E}, {0x80, 0xFC}, {0x80, 0xFC}}}, true},
    {CodePage::Korean949, {0x81, 0xFE}, {{{0x41, 0x5A}, {0x61, 0x7A}, {0x81, 0xFE}}}, false},
    {CodePage::EucKr, {0xA1, 0xFE}, {{{0xA1, 0xFE}, {0xA1, 0xFE}, {0xA1, 0xFE}}}, false},
    {CodePage::Big5, {0x81, 0xFE}, {{{0x40, 0x7E}, {0xA1, 0xFE}, {0xA1, 0xFE}}}, false},
    {CodePage::Gbk, {0x81, 0xFE}, {{{0x40, 0x7E}, {0x80, 0xFE}, {0x80, 0xFE}}}, false},
}};

bool IsIn(const ByteRange& range, std::size_t byte) {
    return byte >= range.first && byte <= range.last;
}

/// The one unit that `bytes` are; 0 for none and for a control.
char16_t PrintableUnit(CodePage page, ByteView bytes) {
    const auto text = FromCodePage(page, bytes);
    // Every character of these pages is a single unit.
    if (!text || text->size() != 1 || IsControlCharacter(text->front())) return 0;
    return text->front();
}

void SetClasses(const PageRules& rules, DoubleByteTable& table) {
    for (std::size_t byte = 0; byte < 256; ++byte) {
        table.lead[byte] =
            IsIn(rules.leads, byte) && (rules.page != CodePage::ShiftJis ||
                                        IsShiftJisLeadByte(static_cast<std::uint8_t>(byte)));
        table.trail[byte] =
            std::any_of(rules.trails.begin(), rules.trails.end(),
                        [byte](const ByteRange& range) { return IsIn(range, byte); });
    }
}

DoubleByteTable MakeTable(const PageRules& rules) {
    DoubleByteTable table;
    SetClasses(rules, table);
    for (std::size_t first = 0; first < 256; ++first) {
        const auto lead = static_cast<std::uint8_t>(first);
        if (!table.lead[first]) {
            if (first < 0x80 || rules.highSingles)
                table.singles[first] = PrintableUnit(rules.page, ByteView(&lead, 1));
            continue;
        }
        for (std::size_t second = 0; second < 256; ++second) {
            if (!table.trail[second]) continue;
            const std::array pair = {lead, static_cast<std::uint8_t>(second)};
            table.pairs[(first & 0x7F) << 8U | second] = PrintableUnit(rules.page, pair);
        }
    }
    return table;
}

template <std::size_t Index>
const DoubleByteTable& Table() {
    static const DoubleByteTable table = MakeTable(kPages[Index]);
    return table;
}

constexpr std::array<const DoubleByteTable& (*)(), kPages.size()> kTables = {
    &Table<0>, &Table<1>, &Table<2>, &Table<3>, &Table<4>,
};

} // namespace

const DoubleByteTable& TableOf(TextEncoding doubleByteEncoding) {
    return kTables[static_cast<std::size_t>(doubleByteEncoding) - kFirst]();
}

} // namespace kvx
