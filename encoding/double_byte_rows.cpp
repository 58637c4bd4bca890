#include "encoding/double_byte_rows.h"

namespace kvx {

void DecodeDoubleByteRow(const DoubleByteTable& table, const RowContext& row, RowCells& cells) {
    for (std::size_t at = 0; at < row.rowEnd;) {
        const DoubleByteCharacter character = CharacterAt(table, row.bytes, at);
        const bool shown = character.unit != 0;
        ShowAt(row, at, shown ? character.unit : kPlaceholder, cells);
        at += shown ? character.length : 1;
    }
}

void DecodeShiftJisRow(const RowContext& row, RowCells& cells) {
    const DoubleByteTable& table = TableOf(TextEncoding::ShiftJis);
    for (std::size_t at = 0; at < row.rowEnd;) {
        const DoubleByteCharacter character = CharacterAt(table, row.bytes, at);
        ShowAt(row, at, character.unit != 0 ? character.unit : kPlaceholder, cells);
        at += character.length;
    }
}

std::optional<DecodedCharacter> DecodeDoubleByteCharacter(const DoubleByteTable& table,
                                                          ByteView bytes) {
    if (bytes.empty()) return std::nullopt;
    const DoubleByteCharacter character = CharacterAt(table, bytes, 0);
    if (character.unit == 0) return std::nullopt;
    return DecodedCharacter{std::u16string(1, character.unit), character.length};
}

} // namespace kvx
