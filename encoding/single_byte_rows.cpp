#include "encoding/single_byte_rows.h"

#include "platform/code_pages.h"

namespace kvx {
namespace {

/// TIS-620 has less than the code page: no currency signs or quotes from 0x80 to 0xA0.
bool IsInTis620(std::uint8_t byte) {
    return byte < 0x80 || (byte >= 0xA1 && byte <= 0xDA) || (byte >= 0xDF && byte <= 0xFB);
}

bool IsInWindows1258(std::uint8_t /*byte*/) {
    return true;
}

SingleByteTable MakeTable(CodePage page, bool (*isDecoded)(std::uint8_t)) {
    SingleByteTable table;
    for (std::size_t i = 0; i < table.units.size(); ++i) {
        const auto byte = static_cast<std::uint8_t>(i);
        if (!isDecoded(byte)) continue;
        const auto text = FromCodePage(page, ByteView(&byte, 1));
        // Every character of these pages is a single unit.
        if (!text || text->size() != 1 || IsControlCharacter(text->front())) continue;
        table.units[i] = text->front();
        table.kinds[i] = IsCombiningCharacter(text->front()) ? ByteKind::Mark : ByteKind::Base;
    }
    return table;
}

} // namespace

const SingleByteTable& Tis620Table() {
    static const SingleByteTable table = MakeTable(CodePage::Thai, IsInTis620);
    return table;
}

const SingleByteTable& Windows1258Table() {
    static const SingleByteTable table = MakeTable(CodePage::Vietnamese, IsInWindows1258);
    return table;
}

void DecodeSingleByteRow(const SingleByteTable& table, const RowContext& row, RowCells& cells) {
    std::u16string* base = nullptr;
    bool baseBeforeRow = false;
    for (std::size_t at = 0; at < row.rowEnd; ++at) {
        const std::uint8_t byte = row.bytes[at];
        const ByteKind kind = table.kinds[byte];
        std::u16string* cell = CellAt(row, at, cells);
        if (kind == ByteKind::Mark) {
            if (cell == nullptr) continue;
            if (base != nullptr) {
                base->push_back(table.units[byte]);
            } else if (!baseBeforeRow) {
                cell->push_back(kPlaceholder);
            }
            continue;
        }
        const bool isBase = kind == ByteKind::Base;
        base = isBase ? cell : nullptr;
        baseBeforeRow = isBase && cell == nullptr;
        if (cell != nullptr) cell->push_back(isBase ? table.units[byte] : kPlaceholder);
    }
}

std::optional<DecodedCharacter> DecodeSingleByteCharacter(const SingleByteTable& table,
                                                          ByteView bytes) {
    if (bytes.empty() || table.kinds[bytes[0]] != ByteKind::Base) return std::nullopt;
    DecodedCharacter character;
    do {
        character.text += table.units[bytes[character.length]];
        ++character.length;
    } while (character.length < bytes.size() &&
             table.kinds[bytes[character.length]] == ByteKind::Mark);
    return character;
}

} // namespace kvx
