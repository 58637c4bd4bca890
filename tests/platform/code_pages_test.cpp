#include "platform/code_pages.h"

#include "tests/platform/code_page_inputs.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string_view>
#include <utility>

namespace kvx {
namespace {

Bytes BytesOf(std::string_view text) {
    Bytes bytes;
    for (const char c : text)
        bytes.push_back(static_cast<std::uint8_t>(c));
    return bytes;
}

/// FNV-1a over 16-bit values.
struct Hash {
    std::uint64_t value = 0xCBF29CE484222325;

    void Add(unsigned number) {
        for (const unsigned part : {number & 0xFF, number >> 8 & 0xFF})
            value = (value ^ part) * 0x100000001B3;
    }
};

std::uint64_t WritingHash(CodePage page) {
    Hash hash;
    for (unsigned unit = 0; unit < 0x10000; ++unit) {
        const char16_t text[] = {static_cast<char16_t>(unit)};
        const Bytes bytes = ToCodePage(page, {text, 1}).value_or(Bytes());
        hash.Add(static_cast<unsigned>(bytes.size()));
        for (const std::uint8_t byte : bytes)
            hash.Add(byte);
    }
    return hash.value;
}

/// Inputs that decode but are written as other bytes of the same text.
unsigned CountOfSecondSpellings(CodePage page) {
    unsigned count = 0;
    ForEveryShortInput([&](ByteView bytes) {
        const std::optional<std::u16string> text = FromCodePage(page, bytes);
        if (!text) return;
        const std::optional<Bytes> written = ToCodePage(page, *text);
        if (!written) ADD_FAILURE() << InHex(bytes) << " is not written at all";
        if (!written || std::ranges::equal(*written, bytes)) return;
        EXPECT_EQ(FromCodePage(page, *written), text) << InHex(bytes);
        ++count;
    });
    return count;
}

TEST(CodePages, WriteTheSameOnEveryHostAndReadItAgain) {
    struct Row {
        CodePage page;
        std::uint64_t writingHash;
        unsigned secondSpellings;
    };
    const Row rows[] = {
        {CodePage::Thai, 0xD5CF327950C9AC0D, 0},  {CodePage::ShiftJis, 0x7016BC8C8409B776, 398},
        {CodePage::Gbk, 0x867058A5D2667AC2, 0},   {CodePage::Korean949, 0xC657B1E8A65D4B05, 0},
        {CodePage::Big5, 0xA87DE69CF0424591, 10}, {CodePage::Vietnamese, 0x7ED9164EF33B5995, 0},
        {CodePage::Utf8, 0x4861D48F975DF0A5, 0},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(static_cast<unsigned>(row.page));
        EXPECT_EQ(WritingHash(row.page), row.writingHash);
        EXPECT_EQ(CountOfSecondSpellings(row.page), row.secondSpellings);
    }
}

// Where a system has EUC-KR itself, it may leave the rows C9 and FE, meant for users' own
// characters, undefined.
TEST(CodePages, EucKrIsAsciiAndTheSquareOfKorean949) {
    const auto isUserRow = [](ByteView bytes) { return bytes[0] == 0xC9 || bytes[0] == 0xFE; };
    const auto expected = [&](ByteView bytes) -> std::optional<std::u16string> {
        if (isUserRow(bytes)) return FromCodePage(CodePage::EucKr, bytes);
        const bool isAscii = bytes[0] < 0x80 && bytes.back() < 0x80;
        const bool inSquare = bytes[0] >= 0xA1 && bytes.back() >= 0xA1 && bytes.back() <= 0xFE;
        if (!isAscii && !inSquare) return std::nullopt;
        return FromCodePage(CodePage::Korean949, bytes);
    };
    EXPECT_EQ(DecodedOtherwise(CodePage::EucKr, expected), std::vector<std::string>());
    EXPECT_EQ(ToCodePage(CodePage::Korean949, u"\uAC02"), BytesOf("\x81\x41"));
    EXPECT_EQ(ToCodePage(CodePage::EucKr, u"\uAC02"), std::nullopt);
}

TEST(CodePages, ConvertWholeTextsBothWays) {
    struct Row {
        CodePage page;
        std::string_view bytes;
        std::u16string_view text;
    };
    const Row rows[] = {
        {CodePage::ShiftJis, "\x93\xFA\x96\x7B\x8C\xEA \xB6\xC5",
         u"\u65E5\u672C\u8A9E \uFF76\uFF85"},
        {CodePage::Gbk, "\xD6\xD0\xCE\xC4 1\x80", u"\u4E2D\u6587 1\u20AC"},
        {CodePage::EucKr, "\xC7\xD1\xB1\xB9\xBE\xEE\r\n", u"\uD55C\uAD6D\uC5B4\r\n"},
        {CodePage::Vietnamese, "Vi\xEA\xF2t", u"Vi\u00EA\u0323t"},
        {CodePage::IsciiDevanagari, "\xB3\xDA", u"\u0915\u093E"},
        {CodePage::Utf8, "\xEF\xBF\xBD\xF0\x9F\x98\x80", u"\uFFFD\U0001F600"},
        {CodePage::ShiftJis, {"a\0b", 3}, {u"a\0b", 3}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(static_cast<unsigned>(row.page));
        EXPECT_EQ(FromCodePage(row.page, BytesOf(row.bytes)), row.text);
        EXPECT_EQ(ToCodePage(row.page, row.text), BytesOf(row.bytes));
        EXPECT_EQ(FromCodePage(row.page, {}), u"");
        EXPECT_EQ(ToCodePage(row.page, u""), std::nullopt);
    }
}

TEST(CodePages, RefuseWholeTextsForOneFault) {
    const std::pair<CodePage, std::string_view> unreadable[] = {
        {CodePage::Thai, "\xA1\xFC\xA1"},  {CodePage::ShiftJis, "\x93\xFA\x96"},
        {CodePage::ShiftJis, "a\xA0z"},    {CodePage::EucKr, "\xC7\xD1\x81\x41"},
        {CodePage::EucKr, "\xC7\xD1\xB1"}, {CodePage::Utf8, "a\xED\xA0\x80"},
        {CodePage::Utf8, "\xE3\x81"},
    };
    for (const auto& [page, bytes] : unreadable)
        EXPECT_EQ(FromCodePage(page, BytesOf(bytes)), std::nullopt) << InHex(BytesOf(bytes));

    const char16_t half[] = {u'a', 0xD83D};
    const std::pair<CodePage, std::u16string_view> unwritable[] = {
        {CodePage::ShiftJis, u"\u65E5\u00A5"}, // looks like 5C, which is another character
        {CodePage::Vietnamese, u"Vi\u1EC7t"},  // has its letters and marks apart only
        {CodePage::Gbk, u"\u4E2D\U0001F600"},  {CodePage::Big5, {half, 2}},
        {CodePage::Utf8, {half, 2}},
    };
    for (const auto& [page, text] : unwritable)
        EXPECT_EQ(ToCodePage(page, text), std::nullopt) << static_cast<unsigned>(page);
}

TEST(CodePages, ShiftJisPairsBeginInTwoRanges) {
    for (unsigned byte = 0; byte < 0x100; ++byte) {
        const bool begins = (byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xFC);
        EXPECT_EQ(IsShiftJisLeadByte(static_cast<std::uint8_t>(byte)), begins) << byte;
    }
}

TEST(CharacterClasses, AreThoseOfTheSystemAndNotOfUnicode) {
    for (const char16_t unit : std::u16string_view(u"\0\x1F\x7F\u009F\u00AD\u200D\u202E\uFEFF", 8))
        EXPECT_TRUE(IsControlCharacter(unit)) << InHex(std::u16string(1, unit));
    for (const char16_t unit : std::u16string_view(u" A\u00A0\u3000\uE000\uFFFD"))
        EXPECT_FALSE(IsControlCharacter(unit)) << InHex(std::u16string(1, unit));
    for (const char16_t unit : std::u16string_view(u"^`\u00A8\u00C0\u0301\u0439\u0E31\u093C\u30AC"))
        EXPECT_TRUE(IsCombiningCharacter(unit)) << InHex(std::u16string(1, unit));
    for (const char16_t unit : std::u16string_view(u"~A\u0438\u0E01\u0E30\u0915\u30AB\u30FC"))
        EXPECT_FALSE(IsCombiningCharacter(unit)) << InHex(std::u16string(1, unit));
    EXPECT_FALSE(IsControlCharacter(0xD800) || IsCombiningCharacter(0xDC00));
}

} // namespace
} // namespace kvx
