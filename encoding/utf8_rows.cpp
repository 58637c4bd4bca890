#include "encoding/utf8_rows.h"

#include "encoding/combining_marks.h"
#include "platform/code_pages.h"
#include "platform/code_point.h"

#include <bitset>
#include <cstdint>
#include <memory>
#include <optional>

namespace kvx {
namespace {

constexpr std::size_t kBasicUnits = 0x10000;

/// Marks by the blocks or by the system's classes, asked once.
std::unique_ptr<std::bitset<kBasicUnits>> MakeMarks() {
    auto marks = std::make_unique<std::bitset<kBasicUnits>>();
    for (std::size_t unit = 0; unit < kBasicUnits; ++unit)
        marks->set(unit, IsInCombiningBlock(static_cast<char32_t>(unit)) ||
                             IsCombiningCharacter(static_cast<char16_t>(unit)));
    return marks;
}

bool IsMark(char32_t character) {
    static const auto marks = MakeMarks();
    // The system has no supplementary character in those classes.
    return character < kBasicUnits ? (*marks)[character] : IsInCombiningBlock(character);
}

} // namespace

void DecodeUtf8Row(const RowContext& row, RowCells& cells) {
    std::u16string* lastCharacter = nullptr;
    for (std::size_t at = 0; at < row.rowEnd;) {
        const std::optional<CodePoint> character = ReadUtf8(row.bytes.subspan(at));
        std::u16string* cell = CellAt(row, at, cells);
        at += character ? character->length : 1;
        if (cell == nullptr) continue;
        if (!character || character->value < 0x20 || character->value == 0x7F) {
            *cell = kPlaceholder;
        } else if (lastCharacter != nullptr && IsMark(character->value)) {
            AppendUtf16(*lastCharacter, character->value);
        } else {
            AppendUtf16(*cell, character->value);
            lastCharacter = cell;
        }
    }
}

} // namespace kvx
