// Strict conversion between code pages and UTF-16, and the classes of UTF-16 units that decide what
// a decoded character looks like: everywhere the results that Windows' own tables give. Callable
// from every thread; what is slow to set up is set up once per page.
#pragma once

#include "platform/bytes.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kvx {

/// The code pages that the program knows, by the numbers that Windows gives them.
enum class CodePage : std::uint32_t {
    Thai = 874,
    ShiftJis = 932,
    Gbk = 936,
    Korean949 = 949,
    Big5 = 950,
    Vietnamese = 1258,
    EucKr = 51949,
    IsciiDevanagari = 57002,
    Utf8 = 65001
};

/// The text of `bytes`; nullopt when they hold an invalid or unfinished character or one that the
/// page does not define. Empty input gives empty text.
std::optional<std::u16string> FromCodePage(CodePage page, ByteView bytes);

/// The bytes of `text`, exactly: no similar character, no replacement, no lone surrogate. nullopt
/// when the page cannot express the text, and for an empty result.
std::optional<Bytes> ToCodePage(CodePage page, std::u16string_view text);

/// A control or format character.
bool IsControlCharacter(char16_t unit);

/// What Windows calls nonspacing or diacritic: marks, but also letters that carry one, `^` and
/// others.
bool IsCombiningCharacter(char16_t unit);

/// A byte that begins a pair in page 932, whether or not all its pairs are defined.
bool IsShiftJisLeadByte(std::uint8_t byte);

} // namespace kvx
