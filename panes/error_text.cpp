#include "panes/error_text.h"

#include <algorithm>

namespace kvx {
namespace {

constexpr char16_t kFullWidthBlank = 0x3000;

struct Range {
    char16_t first;
    char16_t last;
};

// Those beyond the BMP are two units, and so two columns, anyhow.
constexpr Range kFullWidth[] = {
    {0x1100, 0x115F}, // Hangul letters that begin a syllable
    {0x2E80, 0x303E}, // radicals, ideographic signs
    {0x3041, 0xA4CF}, // kana to Yi, with all ideographs
    {0xA960, 0xA97F}, // more Hangul letters
    {0xAC00, 0xD7A3}, // Hangul syllables
    {0xF900, 0xFAFF}, // compatibility ideographs
    {0xFE30, 0xFE6F}, // vertical and small forms
    {0xFF01, 0xFF60}, // full-width forms of ASCII
    {0xFFE0, 0xFFE6}, // full-width signs
};

bool IsFullWidth(char16_t unit) {
    return std::ranges::any_of(kFullWidth, [unit](const Range& range) {
        return range.first <= unit && unit <= range.last;
    });
}

} // namespace

bool HasFullWidth(std::u16string_view text) {
    return std::ranges::any_of(text, IsFullWidth);
}

std::u16string WithCaretInPlace(std::u16string error) {
    if (!error.ends_with(u'^')) return error;
    const std::size_t rowEnd = error.rfind(u"\r\n");
    if (rowEnd == std::u16string::npos || rowEnd == 0) return error;
    const std::size_t before = error.rfind(u'\n', rowEnd - 1);
    if (before == std::u16string::npos) return error;
    const std::size_t line = before + 1;
    const std::size_t caretRow = rowEnd + 2;
    std::replace(error.begin() + static_cast<std::ptrdiff_t>(line),
                 error.begin() + static_cast<std::ptrdiff_t>(rowEnd), u'\t', u' ');
    for (std::size_t i = 0; caretRow + i + 1 < error.size() && line + i < rowEnd; ++i) {
        if (IsFullWidth(error[line + i])) error[caretRow + i] = kFullWidthBlank;
    }
    return error;
}

} // namespace kvx
