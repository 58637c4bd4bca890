#include "encoding/row_decoder.h"

#include "encoding/text_encoder.h"
#include "fuzz/encoding_checks.h"
#include "platform/text.h"
#include "tests/encoding/row_model.h"
#include "tests/hexview/memory_document.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace kvx {
namespace {

using enum TextEncoding;

constexpr auto kUnknown = static_cast<TextEncoding>(kTextEncodingCount);
constexpr TextEncoding kAll[] = {Ascii,   Utf8, Utf16Le, Utf16Be, ShiftJis,    Windows949,
                                 EucKr,   Big5, Gbk,     Tis620,  Windows1258, IsciiDevanagari,
                                 kUnknown};

std::string NameOf(TextEncoding encoding) {
    return Utf16ToUtf8(EncodingDisplayName(encoding));
}

/// The cells with a bar between any two.
std::string Shown(const RowCells& cells) {
    std::string shown;
    for (const std::u16string& cell : cells)
        shown += (&cell == cells.data() ? "" : "|") + Utf16ToUtf8(cell);
    return shown;
}

Bytes BytesOf(std::string_view text) {
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    return {bytes, bytes + text.size()};
}

RowCells DecodeFrom(const MemoryDocument& document, std::size_t start, std::size_t length,
                    TextEncoding encoding) {
    return DecodeRow(&document, start, ByteView(document.bytes).subspan(start, length), encoding);
}

TEST(RowDecoder, ShowsCharactersAtTheirFirstByteAndFullStopsForTheRest) {
    struct Row {
        TextEncoding encoding;
        std::string_view bytes;
        std::string_view cells;
    };
    const Row rows[] = {
        {Ascii, "a\x1F ~\x7F\x80", "a|.| |~|.|."},
        {Utf8, "\xE3\x81\x82\x41", "\u3042|||A"},
        {Utf8, "\xF0\x9F\x98\x80", "\U0001F600|||"},
        {Utf8, "E\xCC\x81", "E\u0301||"},
        {Utf8, "\xCC\x81x", "\u0301||x"},        // nothing to join
        {Utf8, "a\xFF\xCC\x81", "a\u0301|.||"},  // joins across a byte that is nothing
        {Utf8, "a^b", "a^||b"},                  // the system calls it a diacritic
        {Utf8, "\t\x7F\xC2\x80", ".|.|\u0080|"}, // only the controls of ASCII are hidden
        {Utf16Be, {"\x30\x42\0A", 4}, "\u3042||A|"},
        {Utf16Le, {"\x01\x03\x0D\x20\x7F\0", 6}, ".||.||.|"}, // marks do not join
        {Utf16Be, {"\xD8\x3D\xDE\0\xFF\xFE\xFF\xFD", 8}, ".||.||.||\uFFFD|"},
        {ShiftJis, "\x82\xA0\xB1\x5C\x80", "\u3042||\uFF71|\\|."},
        {ShiftJis, "\xEB\x40\x82 a", ".||.| |a"}, // no such character: both bytes of it are skipped
        {Gbk, "\x81\x40\x80\xFF", "\u4E02||.|."},
        {Windows949, "\x81\x41\xB0\xA1\x81\x5B", "\uAC02||\uAC00||.|["},
        {EucKr, "\x81\x41\xB0\xA1", ".|A|\uAC00|"},
        {Big5, "\xA4\x40\xA4\x80", "\u4E00||.|."},
        {Tis620, "\xA1\xE9\xD1\x80\xE9", "\u0E01\u0E49\u0E31|||.|."},
        {Windows1258, "a\xEC\xCC\x80\xD2", "a\u0301\u0300|||\u20AC\u0309|"},
        {IsciiDevanagari, "\xB3\xDBz", "\u0915\u093F||z"},
        {IsciiDevanagari, "\xB3\xE8\xC2\xDA\xEA", "\u0915\u094D\u0924\u093E||||\u0964"},
        {IsciiDevanagari, "\xA1\xE9z\xA1\xE9", "\u0950||z\u0901||."}, // z and the half of om
        {IsciiDevanagari, "\xE8\xDA\x80\xD9", ".|.|.|."},             // signs without a letter
    };
    for (const Row& row : rows) {
        const MemoryDocument document(BytesOf(row.bytes));
        EXPECT_EQ(Shown(DecodeFrom(document, 0, row.bytes.size(), row.encoding)), row.cells)
            << NameOf(row.encoding);
    }
}

// Every byte and every pair, each behind a letter that ends what came before.
TEST(RowDecoder, DecodesEveryByteAndPairByTheRules) {
    Bytes bytes;
    for (unsigned pair = 0; pair < 0x10000; ++pair)
        for (const unsigned byte : {pair >> 8, pair & 0xFFU, 0x7AU, 0x7AU})
            bytes.push_back(static_cast<std::uint8_t>(byte));
    const MemoryDocument document(bytes);
    for (const TextEncoding encoding : kAll) {
        SCOPED_TRACE(NameOf(encoding));
        EXPECT_TRUE(DecodeFrom(document, 0, bytes.size(), encoding) ==
                    model::CellsInDocument(bytes, 0, bytes.size(), encoding));
        for (std::size_t at = 0; at < bytes.size(); at += 4) {
            const ByteView pair = ByteView(bytes).subspan(at, 2);
            ASSERT_TRUE(DecodeCharAt(encoding, pair) == model::CharAt(encoding, pair)) << at / 4;
        }
        for (std::size_t at = 0; at < bytes.size(); at += 4 * 0x100) {
            const ByteView byte = ByteView(bytes).subspan(at, 1);
            ASSERT_EQ(DecodeCharAt(encoding, byte), model::CharAt(encoding, byte)) << at;
        }
        EXPECT_EQ(DecodeCharAt(encoding, {}), std::nullopt);
    }
}

// The first five bytes choose the encoding, the rows and how often the rest stands in the document.
TEST(RowDecoder, DecodesRandomRowsByTheRulesOneByOneAndPageByPage) {
    std::mt19937 random(1);
    for (unsigned round = 0; round < 3000; ++round) {
        Bytes input(6 + random() % 60);
        const auto kind = random() % 3; // any bytes, mostly high ones, only such as make pairs
        for (std::uint8_t& byte : input) {
            byte = static_cast<std::uint8_t>(random());
            if (kind > random() % 3) byte = static_cast<std::uint8_t>(0xA1 + byte % 0x5A);
        }
        input[0] = static_cast<std::uint8_t>(round % std::size(kAll));
        ASSERT_EQ(CheckRows(input), "") << round << ", " << NameOf(kAll[input[0]]);
    }
}

TEST(RowDecoder, DecodesRowsInAnyOrderAlsoOutsideOfThePage) {
    std::mt19937 random(3);
    MemoryDocument document(Bytes(6000, 0xB0));
    for (std::size_t at = 700; at < 6000; at += 1401)
        document.bytes[at] = 'a';
    for (const TextEncoding encoding : kAll) {
        RowDecoder page(&document, encoding, 5000, 500);
        for (int row = 0; row < 100; ++row) {
            const std::size_t start = random() % 5990;
            ASSERT_EQ(page.Decode(start, ByteView(document.bytes).subspan(start, 9)),
                      model::CellsInDocument(document.bytes, start, 9, encoding))
                << NameOf(encoding) << " at " << start;
        }
    }
}

/// The bytes of all characters that show the same in a row alone and in one that begins anywhere
/// inside of them: marks and what can be mistaken for the start of a pair do not.
std::vector<Bytes> PlainCharacters(TextEncoding encoding) {
    constexpr std::uint8_t kHalant = 0xE8;
    std::vector<Bytes> characters;
    for (unsigned unit = 0x20; unit < 0xFFFE; ++unit) {
        const auto character = static_cast<char16_t>(unit);
        const auto bytes = EncodeText(encoding, {&character, 1});
        if (!bytes || model::IsListedMark(unit) || IsCombiningCharacter(character)) continue;
        const auto shown = model::CharAt(encoding, *bytes);
        if (!model::IsUnicode(encoding) && (!shown || shown->length != bytes->size())) continue;
        if (encoding == ShiftJis && IsShiftJisLeadByte(bytes->back())) continue;
        if (encoding == IsciiDevanagari && bytes->back() == kHalant) continue;
        characters.push_back(*bytes);
    }
    return characters;
}

TEST(RowDecoder, DecodesTextRowByRowAsTheWholeWhereverCharactersCrossRows) {
    std::mt19937 random(2);
    for (const TextEncoding encoding : kAll) {
        const auto characters = PlainCharacters(encoding);
        MemoryDocument document;
        while (document.bytes.size() < 20000) {
            const Bytes& next = characters[random() % characters.size()];
            document.bytes.insert(document.bytes.end(), next.begin(), next.end());
        }
        RowCells rowByRow;
        for (std::size_t start = 0; start < document.bytes.size(); start += 16) {
            const std::size_t length = std::min<std::size_t>(16, document.bytes.size() - start);
            const RowCells row = DecodeFrom(document, start, length, encoding);
            rowByRow.insert(rowByRow.end(), row.begin(), row.end());
        }
        EXPECT_TRUE(rowByRow == DecodeFrom(document, 0, document.bytes.size(), encoding))
            << NameOf(encoding);
    }
}

// Where two rows differ from one that holds the same bytes.
TEST(RowDecoder, CutsWhatJoinsOrIsAmbiguousAtARowsEdge) {
    struct Row {
        const char* why;
        TextEncoding encoding;
        std::string_view bytes;
        std::size_t cut;
        std::string_view whole;
        std::string_view rows;
    };

    const Row rows[] = {
        {"a mark that begins a row stands alone", Utf8, "e\xCC\x81", 1, "e\u0301||", "e/\u0301|"},
        {"units count from the start of a row", Utf16Be, {"\0A\0B", 4}, 1, "A||B|", "./\u4100||."},
        {"the byte before a row is taken for a lead byte", ShiftJis, "\x88\x9F\x41", 2, "\u4E9C||A",
         "\u4E9C|/"},
        {"a base shows without the marks of the next row", Tis620, "\xA1\xE9\xE9", 2,
         "\u0E01\u0E49\u0E49||", "\u0E01\u0E49|/"},
        {"a base more than four bytes before is forgotten", Windows1258, "a\xEC\xEC\xEC\xEC\xEC", 5,
         "a\u0301\u0301\u0301\u0301\u0301|||||", "a\u0301\u0301\u0301\u0301||||/."},
        {"a syllable is read anew from seven bytes before a row", IsciiDevanagari,
         "\xB3\xE8\xC2\xE8\xC2\xE8\xC2\xDA"
         "\xA2",
         8, "\u0915\u094D\u0924\u094D\u0924\u094D\u0924\u093E||||||||.",
         "\u0915\u094D\u0924\u094D\u0924\u094D\u0924\u093E|||||||/"},
    };
    for (const Row& row : rows) {
        const MemoryDocument document(BytesOf(row.bytes));
        const std::size_t rest = row.bytes.size() - row.cut;
        EXPECT_EQ(Shown(DecodeFrom(document, 0, row.bytes.size(), row.encoding)), row.whole)
            << row.why;
        EXPECT_EQ(Shown(DecodeFrom(document, 0, row.cut, row.encoding)) + "/" +
                      Shown(DecodeFrom(document, row.cut, rest, row.encoding)),
                  row.rows)
            << row.why;
    }
}

// Pairs are told apart by the parity of their distance to the start of the run, up to 4096 bytes.
TEST(RowDecoder, SplitsRunsOfPairsLongerThanTheLookBackAtAnArbitraryPlace) {
    MemoryDocument document(Bytes(5000, 0xB0));
    EXPECT_EQ(Shown(DecodeFrom(document, 4095, 1, Gbk)), "");
    EXPECT_EQ(Shown(DecodeFrom(document, 4097, 1, Gbk)), "\u978D");
    document.bytes[1] = 'a';
    EXPECT_EQ(Shown(DecodeFrom(document, 4095, 1, Gbk)), "");
    EXPECT_EQ(Shown(DecodeFrom(document, 4096, 1, Gbk)), "\u978D");
}

TEST(RowDecoder, ReadsThePageOnceAndFarBeforeItOnlyInALongRun) {
    for (const TextEncoding encoding : kAll) {
        MemoryDocument document(Bytes(6000, 0xB0));
        const auto readsOf = [&](std::size_t first) {
            document.reads = 0;
            RowDecoder page(&document, encoding, first, 960);
            for (std::size_t start = first; start < first + 960; start += 16)
                page.Decode(start, ByteView(document.bytes).subspan(start, 16));
            return document.reads;
        };
        const bool pairs = encoding >= Windows949 && encoding <= Gbk;
        const bool rowsAlone = model::IsUnicode(encoding)
                                   ? encoding != Utf8
                                   : encoding == Ascii || encoding == kUnknown;
        EXPECT_EQ(readsOf(5000), rowsAlone ? 0U : pairs ? 2U : 1U) << NameOf(encoding);
        document.bytes[4990] = 'a';
        EXPECT_EQ(readsOf(5000), rowsAlone ? 0U : 1U) << NameOf(encoding);
    }
}

TEST(RowDecoder, DecodesARowAloneWhereWhatIsAroundItCannotBeRead) {
    MemoryDocument document(BytesOf("0123456789abcdef..............."));
    document.badFrom = 16;
    for (const TextEncoding encoding : {Ascii, Utf8, ShiftJis, Gbk, Tis620, IsciiDevanagari}) {
        RowDecoder page(&document, encoding, 0, 31);
        for (const std::size_t start : {std::size_t{0}, std::size_t{8}, std::size_t{14}})
            EXPECT_EQ(page.Decode(start, ByteView(document.bytes).subspan(start, 2)),
                      model::CellsAlone(ByteView(document.bytes).subspan(start, 2), Ascii))
                << NameOf(encoding);
        EXPECT_TRUE(page.Decode(16, {}).empty());
    }
}

} // namespace
} // namespace kvx
