#include "encoding/utf8_rows.h"

#include "encoding/combining_marks.h"
#include "platform/code_pages.h"

#include <bitset>
#include <cstdint>
#include <memory>

namespace kvx {
namespace {

constexpr std::size_t kBasicUnits = 0x10000;

struct Sequence {
    char32_t character = 0;
    std::size_t length = 0; ///< in bytes; 0: not valid
};

/// By the lead byte: how many bytes, which bits of the lead count, and the first character that
/// needs so many.
struct Form {
    std::size_t length;
    std::uint8_t leadMask;
    char32_t first;
};

constexpr Form FormOf(std::uint8_t lead) {
    if (lead < 0x80) return {1, 0x7F, 0};
    if (lead < 0xC0 || lead >= 0xF8) return {0, 0, 0};
    if (lead < 0xE0) return {2, 0x1F, 0x80};
    if (lead < 0xF0) return {3, 0x0F, 0x800};
    return {4, 0x07, 0x10000};
}

/// The sequence that starts at the first of `bytes`, which are not empty.
Sequence ReadSequence(ByteView bytes) {
    const Form form = FormOf(bytes[0]);
    if (form.length == 0 || form.length > bytes.size()) return {};
    char32_t character = bytes[0] & form.leadMask;
    for (const std::uint8_t byte : bytes.subspan(1, form.length - 1)) {
        if ((byte & 0xC0U) != 0x80) return {};
        character = character << 6U | (byte & 0x3FU);
    }
    const bool surrogate = character >= 0xD800 && character <= 0xDFFF;
    if (character < form.first || character > 0x10FFFF || surrogate) return {};
    return {character, form.length};
}

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

void Append(char32_t character, std::u16string& text) {
    if (character < kBasicUnits) {
        text += static_cast<char16_t>(character);
        return;
    }
    text += static_cast<char16_t>(0xD7C0 + (character >> 10U));
    text += static_cast<char16_t>(0xDC00 + (character & 0x3FFU));
}

} // namespace

void DecodeUtf8Row(const RowContext& row, RowCells& cells) {
    std::u16string* lastCharacter = nullptr;
    for (std::size_t at = 0; at < row.rowEnd;) {
        const Sequence sequence = ReadSequence(row.bytes.subspan(at));
        const bool control = sequence.character < 0x20 || sequence.character == 0x7F;
        std::u16string* cell = CellAt(row, at, cells);
        at += sequence.length == 0 ? 1 : sequence.length;
        if (cell == nullptr) continue;
        if (sequence.length == 0 || control) {
            *cell = kPlaceholder;
        } else if (lastCharacter != nullptr && IsMark(sequence.character)) {
            Append(sequence.character, *lastCharacter);
        } else {
            Append(sequence.character, *cell);
            lastCharacter = cell;
        }
    }
}

} // namespace kvx
