#include "encoding/utf16_rows.h"

#include "encoding/combining_marks.h"

namespace kvx {
namespace {

constexpr bool IsShown(char16_t unit) {
    const bool printable = (unit >= 0x20 && unit <= 0x7E) || (unit >= 0x80 && unit <= 0xD7FF) ||
                           (unit >= 0xE000 && unit <= 0xFFFD);
    return printable && !IsInCombiningBlock(unit);
}

} // namespace

void DecodeUtf16Row(std::endian order, const RowContext& row, RowCells& cells) {
    const std::size_t low = order == std::endian::little ? 0 : 1;
    std::size_t at = row.rowBegin;
    for (; at + 1 < row.rowEnd; at += 2) {
        const auto unit =
            static_cast<char16_t>(row.bytes[at + low] | row.bytes[at + 1 - low] << 8U);
        ShowAt(row, at, IsShown(unit) ? unit : kPlaceholder, cells);
    }
    if (at < row.rowEnd) ShowAt(row, at, kPlaceholder, cells);
}

} // namespace kvx
