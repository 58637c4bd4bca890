#include "panes/error_text.h"

#include <algorithm>

namespace kvx {
namespace {

constexpr std::u16string_view kRowEnd = u"\r\n";
constexpr char16_t kFullWidthBlank = 0x3000;

/// A longer line, of a file that is no pattern, is cut: a text box takes seconds to paint
/// megabytes.
constexpr std::size_t kMostColumns = 1000;
constexpr std::u16string_view kCut = u"...";

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

std::u16string WithCaretInPlace(std::u16string_view error) {
    const std::size_t lineEnd = error.rfind(kRowEnd);
    if (!error.ends_with(u'^') || lineEnd == error.npos || lineEnd == 0)
        return std::u16string(error);
    const std::size_t messageEnd = error.rfind(kRowEnd, lineEnd - 1);
    if (messageEnd == error.npos) return std::u16string(error);

    const std::size_t lineStart = messageEnd + kRowEnd.size();
    const std::u16string_view line = error.substr(lineStart, lineEnd - lineStart);
    const std::size_t column = error.size() - lineEnd - kRowEnd.size() - 1;
    const std::size_t from = std::min(line.size() - std::min(line.size(), kMostColumns),
                                      column - std::min(column, kMostColumns / 2));
    const std::u16string_view part = line.substr(from, kMostColumns);

    std::u16string shown(error.substr(0, lineStart));
    if (from > 0) shown += kCut;
    for (const char16_t unit : part)
        shown += unit < u' ' ? u' ' : unit;
    if (from + part.size() < line.size()) shown += kCut;
    shown += kRowEnd;
    if (from > 0) shown.append(kCut.size(), u' ');
    for (std::size_t i = 0; i < std::min(column - from, kMostColumns); ++i)
        shown += i < part.size() && IsFullWidth(part[i]) ? kFullWidthBlank : u' ';
    return shown += u'^';
}

} // namespace kvx
