#include "settings/stored_names.h"

#include <gtest/gtest.h>

#include <vector>

namespace kvx::test {
namespace {

TEST(EncodingIdentifiers, AreReadInEverySpelling) {
    struct Row {
        TextEncoding encoding;
        std::vector<std::string_view> spellings;
    };
    const std::vector<Row> rows = {
        {TextEncoding::Ascii, {"ascii", "latin1", "", "-", "utf-32", "日本語"}},
        {TextEncoding::Utf8, {"utf8", "UTF-8", "utf_8"}},
        {TextEncoding::Utf16Le, {"utf16le", "UTF-16 LE"}},
        {TextEncoding::Utf16Be, {"utf16be", "UTF-16BE"}},
        {TextEncoding::ShiftJis,
         {"cp932", "CP-932", "windows-31j", "Shift-JIS", "shift_jis", "SJIS"}},
        {TextEncoding::Windows949, {"cp949", "windows-949", "windows31k"}},
        {TextEncoding::EucKr, {"euc-kr", "EUC_KR"}},
        {TextEncoding::Big5, {"big5", "Big-5"}},
        {TextEncoding::Gbk, {"gbk", "GBK", "cp936"}},
        {TextEncoding::Tis620, {"tis-620", "ISO 8859-11", "cp874", "windows-874"}},
        {TextEncoding::Windows1258, {"windows-1258", "cp1258"}},
        {TextEncoding::IsciiDevanagari, {"iscii-devanagari", "ISCII91 Devanagari", "iscii"}},
    };
    for (const Row& row : rows) {
        for (const std::string_view spelling : row.spellings)
            EXPECT_EQ(EncodingOfIdentifier(spelling), row.encoding) << spelling;
    }
}

TEST(EncodingIdentifiers, WrittenOnesAreReadBack) {
    for (std::uint32_t value = 0; value < kTextEncodingCount; ++value) {
        const auto encoding = static_cast<TextEncoding>(value);
        const std::string_view group = EncodingLanguageGroup(encoding);
        EXPECT_EQ(EncodingOfIdentifier(EncodingIdentifier(encoding)), encoding);
        EXPECT_EQ(group.empty(), value < 4);
        EXPECT_EQ(EncodingOfCharset(group, EncodingIdentifier(encoding)),
                  group.empty() ? std::nullopt : std::optional(encoding));
    }
}

TEST(EncodingIdentifiers, OfACharsetMustBelongToTheirLanguage) {
    struct Row {
        std::string_view language;
        std::string_view code;
        std::optional<TextEncoding> encoding;
    };
    const std::vector<Row> rows = {
        {"japanese", "sjis", TextEncoding::ShiftJis},
        {"JAPA-NESE", "Shift_JIS", TextEncoding::ShiftJis},
        {"korean", "cp949", TextEncoding::Windows949},
        {"korean", "euc-kr", TextEncoding::EucKr},
        {"chinese", "cp936", TextEncoding::Gbk},
        {"japanese", "gbk", std::nullopt},
        {"japanese", "utf8", std::nullopt},
        {"klingon", "cp932", std::nullopt},
        {"", "utf8", std::nullopt},
        {"--", "ascii", std::nullopt},
        {"japanese", "", std::nullopt},
    };
    for (const Row& row : rows)
        EXPECT_EQ(EncodingOfCharset(row.language, row.code), row.encoding)
            << row.language << " " << row.code;
}

TEST(EncodingIdentifiers, CountUnknownEncodingsAsAscii) {
    EXPECT_EQ(EncodingIdentifier(static_cast<TextEncoding>(12)), "ascii");
    EXPECT_EQ(EncodingLanguageGroup(static_cast<TextEncoding>(0xFFFFFFFF)), "");
}

} // namespace
} // namespace kvx::test
