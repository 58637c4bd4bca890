#include "panes/inspector_rows.h"

#include "panes/character_display.h"
#include "panes/inspector_model.h"
#include "platform/code_pages.h"
#include "platform/text.h"
#include "tests/hexview/memory_document.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <optional>
#include <random>
#include <string>
#include <vector>

namespace kvx {
namespace {

using Values = std::vector<std::string>;
using Text = std::optional<std::u16string>;

/// The values of the rows in UTF-8; "-" for what is unavailable.
Values ValuesOf(Bytes bytes, TextEncoding encoding = TextEncoding::Ascii) {
    const InspectorRows rows = ComputeInspectorRows(
        {.encoding = encoding, .bytes = std::move(bytes), .unavailableText = u"-"});
    Values values;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        EXPECT_EQ(rows[i].nameKey, kInspectorRowKeys[i]);
        values.push_back(Utf16ToUtf8(rows[i].value));
    }
    return values;
}

// The expected values, computed another way: numbers by the C library, characters by trying which
// code point encodes to the bytes.

std::string PrintedNumber(const Bytes& bytes, std::size_t size, bool bigEndian) {
    if (bytes.size() < size) return "-";
    unsigned long long number = 0;
    for (std::size_t i = 0; i < size; ++i)
        number += static_cast<unsigned long long>(bytes[i]) << 8 * (bigEndian ? size - 1 - i : i);
    char text[64];
    std::snprintf(text, sizeof text, "%llu / 0x%0*llX", number, static_cast<int>(2 * size), number);
    return text;
}

std::string PrintedBits(const Bytes& bytes) {
    if (bytes.empty()) return "-";
    std::string text = "0b0000_0000";
    for (std::size_t bit = 0; bit < 8; ++bit)
        text[text.size() - 1 - bit - (bit > 3 ? 1 : 0)] = (bytes[0] & 1U << bit) != 0 ? '1' : '0';
    return text;
}

std::string Encoded(char32_t point) {
    const auto tail = [&](int shift) { return static_cast<char>(0x80 | (point >> shift & 0x3F)); };
    if (point < 0x80) return {static_cast<char>(point)};
    if (point < 0x800) return {static_cast<char>(0xC0 | point >> 6), tail(0)};
    if (point < 0x10000) return {static_cast<char>(0xE0 | point >> 12), tail(6), tail(0)};
    return {static_cast<char>(0xF0 | point >> 18), tail(12), tail(6), tail(0)};
}

bool IsScalar(char32_t point) {
    return point < 0xD800 || (point > 0xDFFF && point <= 0x10FFFF);
}

std::u16string Units(char32_t point) {
    if (point < 0x10000) return {static_cast<char16_t>(point)};
    return {static_cast<char16_t>(0xD7C0 + (point >> 10)),
            static_cast<char16_t>(0xDC00 + (point & 0x3FF))};
}

std::size_t CountUpTo(const Bytes& bytes, std::size_t most) {
    return std::min(bytes.size(), most);
}

Text ExpectedUtf8(const Bytes& bytes) {
    static constexpr unsigned kLeadMasks[] = {0x7F, 0x1F, 0x0F, 0x07};
    std::string sequence;
    for (std::size_t size = 1; size <= CountUpTo(bytes, 4); ++size) {
        sequence += static_cast<char>(bytes[size - 1]);
        char32_t point = bytes[0] & kLeadMasks[size - 1];
        for (std::size_t i = 1; i < size; ++i)
            point = point << 6 | (bytes[i] & 0x3FU);
        if (IsScalar(point) && Encoded(point) == sequence) return Units(point);
    }
    return std::nullopt;
}

Text ExpectedUtf16(const Bytes& bytes, std::size_t high) {
    std::u16string units;
    for (std::size_t i = 0; i + 1 < CountUpTo(bytes, 4); i += 2)
        units += static_cast<char16_t>(bytes[i + high] << 8 | bytes[i + 1 - high]);
    for (std::size_t size = 1; size <= units.size(); ++size) {
        const std::u16string character = units.substr(0, size);
        const std::string bytesOfIt = Utf16ToUtf8(character); // U+FFFD for half a pair
        if (StrictUtf8ToUtf16(bytesOfIt) == character) return character;
    }
    return std::nullopt;
}

/// The code page is asked for one byte, then for two. Bytes beyond ASCII are no characters alone in
/// the pages of pairs, whatever the page defines, but in Shift_JIS.
Text ExpectedInPage(const Bytes& bytes, CodePage page, bool pairsOnly = false) {
    const bool isAscii = bytes[0] < 0x80;
    Text text = FromCodePage(page, ByteView(bytes).first(1));
    if (text && pairsOnly && !isAscii) return std::nullopt;
    if (!text && bytes.size() > 1) text = FromCodePage(page, ByteView(bytes).first(2));
    if (text && IsControlCharacter(text->front()) && !isAscii) return std::nullopt;
    return text;
}

/// The character of a page whose characters take the marks behind them.
Text ExpectedWithMarks(const Bytes& bytes, CodePage page) {
    Text text = ExpectedInPage({bytes[0]}, page);
    const bool isControl = text && IsControlCharacter(text->front());
    if (!text || isControl) return text;
    if (IsCombiningCharacter(text->front())) return std::nullopt;
    for (std::size_t i = 1; i < bytes.size(); ++i) {
        const Text mark = FromCodePage(page, ByteView(bytes).subspan(i, 1));
        if (!mark || !IsCombiningCharacter(mark->front())) break;
        *text += *mark;
    }
    return text;
}

Text ExpectedCharacter(const Bytes& bytes, TextEncoding encoding) {
    if (bytes.empty()) return std::nullopt;
    switch (encoding) {
    case TextEncoding::Utf8:
        return ExpectedUtf8(bytes);
    case TextEncoding::Utf16Le:
        return ExpectedUtf16(bytes, 1);
    case TextEncoding::Utf16Be:
        return ExpectedUtf16(bytes, 0);
    case TextEncoding::ShiftJis:
        return ExpectedInPage(bytes, CodePage::ShiftJis);
    case TextEncoding::Windows949:
        return ExpectedInPage(bytes, CodePage::Korean949, true);
    case TextEncoding::EucKr:
        return ExpectedInPage(bytes, CodePage::EucKr, true);
    case TextEncoding::Big5:
        return ExpectedInPage(bytes, CodePage::Big5, true);
    case TextEncoding::Gbk:
        return ExpectedInPage(bytes, CodePage::Gbk, true);
    case TextEncoding::Tis620:
        // The page defines more than the standard.
        if (bytes[0] >= 0x80 && (bytes[0] <= 0xA0 || bytes[0] > 0xFB)) return std::nullopt;
        return ExpectedWithMarks(bytes, CodePage::Thai);
    case TextEncoding::Windows1258:
        return ExpectedWithMarks(bytes, CodePage::Vietnamese);
    default:
        return bytes[0] < 0x80 ? Text{{char16_t{bytes[0]}}} : std::nullopt;
    }
}

std::string Displayed(const Text& text) {
    return text ? Utf16ToUtf8(FormatCharacterDisplay(*text)) : "-";
}

Values ExpectedValues(const Bytes& bytes, TextEncoding encoding) {
    Values values = {PrintedBits(bytes), PrintedNumber(bytes, 1, false)};
    for (const std::size_t size : {2U, 4U, 8U}) {
        values.push_back(PrintedNumber(bytes, size, false));
        values.push_back(PrintedNumber(bytes, size, true));
    }
    for (const TextEncoding each :
         {TextEncoding::Utf8, TextEncoding::Utf16Le, TextEncoding::Utf16Be, encoding})
        values.push_back(Displayed(ExpectedCharacter(bytes, each)));
    return values;
}

/// Random bytes, half of them of the kinds that begin and continue longer characters.
Bytes RandomBytes(std::mt19937& random) {
    static constexpr std::uint8_t kTelling[] = {0x0A, 0x20, 0x7F, 0x80, 0x9F, 0xA0, 0xBF, 0xC0,
                                                0xC2, 0xD8, 0xDB, 0xDC, 0xDF, 0xE0, 0xED, 0xEF,
                                                0xF0, 0xF4, 0xF5, 0xF8, 0xFF, 0xCC, 0xD1, 0xE9};
    Bytes bytes(random() % 10, 0);
    for (std::uint8_t& byte : bytes)
        byte = random() % 2 == 0 ? kTelling[random() % std::size(kTelling)]
                                 : static_cast<std::uint8_t>(random());
    return bytes;
}

TEST(InspectorRows, AreThoseOfIndependentConversionsForRandomBytesInAllEncodings) {
    std::mt19937 random(62);
    for (int round = 0; round < 8'000; ++round) {
        const Bytes bytes = RandomBytes(random);
        // Its syllables have a table of their own below.
        const auto encoding = static_cast<TextEncoding>(random() % (kTextEncodingCount - 1));
        ASSERT_EQ(ValuesOf(bytes, encoding), ExpectedValues(bytes, encoding))
            << "encoding " << static_cast<int>(encoding) << testing::PrintToString(bytes);
    }
}

TEST(InspectorRows, ReadOneCharacterOfTheCurrentEncoding) {
    struct Case {
        TextEncoding encoding;
        Bytes bytes;
        std::string value;
    };
    const Case cases[] = {
        {TextEncoding::Ascii, {0x41}, "A (U+0041)"},
        {TextEncoding::Ascii, {0x80}, "-"},
        {static_cast<TextEncoding>(99), {0x41, 0xE3}, "A (U+0041)"},
        {TextEncoding::ShiftJis, {0x82, 0xA0, 0x41}, "\u3042 (U+3042)"},
        {TextEncoding::ShiftJis, {0x81, 0x40}, "Ideographic Space (U+3000)"},
        {TextEncoding::ShiftJis, {0x82}, "-"},
        {TextEncoding::Tis620, {0xA1, 0xD4, 0xE8}, "\u0E01\u0E34\u0E48 (U+0E01 U+0E34 U+0E48)"},
        {TextEncoding::Windows1258, {0x61, 0xEC}, "a\u0301 (U+0061 U+0301)"},
        {TextEncoding::Windows1258, {0xA0}, "NBSP (U+00A0)"},
        {TextEncoding::IsciiDevanagari, {0xB3, 0xDA}, "\u0915\u093E (U+0915 U+093E)"},
        {TextEncoding::IsciiDevanagari, {0xDA}, "-"},
        {TextEncoding::IsciiDevanagari, {0x0A}, "LF (U+000A)"},
        {TextEncoding::Utf8, {0xC2, 0x85}, "NEL (U+0085)"},
    };
    for (const Case& each : cases)
        EXPECT_EQ(ValuesOf(each.bytes, each.encoding).back(), each.value);
}

/// The rows from the ninth on: UTF-8, UTF-16 LE, UTF-16 BE.
Values Unicode(Bytes bytes) {
    const Values all = ValuesOf(std::move(bytes));
    return {all.begin() + 8, all.begin() + 11};
}

TEST(InspectorRows, ShowOnlyWellFormedCharacters) {
    EXPECT_EQ(Unicode({0x20}), (Values{"Space (U+0020)", "-", "-"}));
    EXPECT_EQ(Unicode({0x3D, 0xD8, 0x00, 0xDE}),
              (Values{"= (U+003D)", "\U0001F600 (U+1F600)", "\u3DD8 (U+3DD8)"}));
    EXPECT_EQ(Unicode({0xDC, 0x41, 0xDC, 0x00}), (Values{"-", "\u41DC (U+41DC)", "-"}));
    for (const Bytes& malformed : {Bytes{0xE3},
                                   {0xE3, 0x81},
                                   {0xC0, 0x80},
                                   {0xC1, 0xBF},
                                   {0xE0, 0x9F, 0xBF},
                                   {0xED, 0xA0, 0x80},
                                   {0xF0, 0x8F, 0xBF, 0xBF},
                                   {0xF4, 0x90, 0x80, 0x80},
                                   {0xF8, 0x88, 0x80, 0x80, 0x80},
                                   {0x80},
                                   {0xC3, 0x41}})
        EXPECT_EQ(Unicode(malformed).front(), "-") << testing::PrintToString(malformed);
}

TEST(InspectorRows, ShowWhatTheBytesSufficeFor) {
    EXPECT_EQ(ValuesOf({0x41}, TextEncoding::Utf8),
              (Values{"0b0100_0001", "65 / 0x41", "-", "-", "-", "-", "-", "-", "A (U+0041)", "-",
                      "-", "A (U+0041)"}));
    EXPECT_EQ(ValuesOf({}), Values(kInspectorRows, "-"));
}

TEST(InspectorRows, AreAskedForWithAtMost96BytesAtTheCaret) {
    MemoryDocument document(CountingBytes(200));
    const auto read = [&](std::uint64_t caret) {
        return MakeInspectorRequest(document, caret, TextEncoding::Gbk, u"N/A").bytes;
    };
    EXPECT_EQ(read(50).size(), 96U);
    EXPECT_EQ(read(198), (Bytes{198, 199}));
    EXPECT_EQ(read(200), Bytes());
    document.open = false;
    EXPECT_EQ(read(50), Bytes());
}

TEST(InspectorModel, PutsTheLocalisedNamesBesideTheValues) {
    InspectorModel model;
    model.SetTexts([](std::string_view key) { return std::u16string(key.begin(), key.end()); });
    model.SetRows(ComputeInspectorRows({.bytes = {0x41}, .unavailableText = u"N/A"}));
    const std::string copied = Utf16ToUtf8(ListCopyText(model));
    EXPECT_THAT(copied, testing::StartsWith("inspector.data.column.name\t"
                                            "inspector.data.column.value\r\n"
                                            "inspector.data.row.binary\t0b0100_0001\r\n"));
    EXPECT_THAT(copied, testing::EndsWith("\r\ninspector.data.row.current_encoding_char\t"
                                          "A (U+0041)"));
    EXPECT_EQ(std::ranges::count(copied, '\n'), 12);
    model.SetRows(ComputeInspectorRows({.bytes = {0x00}, .unavailableText = u"N/A"}));
    EXPECT_EQ(ListCopyText(model).find(u'\0'), std::u16string::npos) << "ends the text there";
}

TEST(CharacterDisplay, NamesWhatShowsAsNothingAndTellsTheCodePoints) {
    const std::pair<std::u16string, std::u16string> cases[] = {
        {u"A", u"A (U+0041)"},
        {u"\t", u"TAB (U+0009)"},
        {u"\n", u"LF (U+000A)"},
        {u"\v", u"VT (U+000B)"},
        {u"\f", u"FF (U+000C)"},
        {u"\r", u"CR (U+000D)"},
        {u" ", u"Space (U+0020)"},
        {u"\u0085", u"NEL (U+0085)"},
        {u"\u00A0", u"NBSP (U+00A0)"},
        {u"\u3000", u"Ideographic Space (U+3000)"},
        {u"\U0010FFFF", u"\U0010FFFF (U+10FFFF)"},
        {u"a\u0301", u"a\u0301 (U+0061 U+0301)"},
        {std::u16string{0xDC00, 0xD800}, std::u16string{0xDC00, 0xD800} + u" (U+DC00 U+D800)"},
        {u"", u""},
    };
    for (const auto& [text, display] : cases)
        EXPECT_EQ(FormatCharacterDisplay(text), display);
}

} // namespace
} // namespace kvx
