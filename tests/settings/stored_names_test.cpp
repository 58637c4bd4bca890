#include "settings/stored_names.h"

#include <gtest/gtest.h>

#include <vector>

namespace kvx::test {
namespace {

TEST(EncodingNames, AreWrittenInOneWayAndReadInEverySpelling) {
    struct Row {
        std::string_view group;
        std::string_view written;
        std::vector<std::string_view> others;
    };
    const std::vector<Row> rows = {
        {"", "ascii", {"latin1", "", "-", "utf-32", "日本語"}},
        {"", "utf8", {"UTF-8", "utf_8"}},
        {"", "utf16le", {"UTF-16 LE"}},
        {"", "utf16be", {"UTF-16BE"}},
        {"japanese", "cp932", {"windows-31j", "Shift-JIS", "shift_jis", "SJIS"}},
        {"korean", "cp949", {"windows-949", "windows31k"}},
        {"korean", "euc-kr", {"EUC_KR"}},
        {"chinese", "big5", {"Big-5"}},
        {"chinese", "gbk", {"GBK", "cp936"}},
        {"thai", "tis-620", {"ISO 8859-11", "cp874", "windows-874"}},
        {"vietnamese", "windows-1258", {"cp1258"}},
        {"indic", "iscii-devanagari", {"ISCII91 Devanagari", "iscii"}},
    };
    ASSERT_EQ(rows.size(), kTextEncodingCount);
    for (std::uint32_t value = 0; value < kTextEncodingCount; ++value) {
        const auto encoding = static_cast<TextEncoding>(value);
        const auto& [group, written, others] = rows[value];
        EXPECT_EQ(EncodingLanguageGroup(encoding), group);
        EXPECT_EQ(EncodingIdentifier(encoding), written);
        EXPECT_EQ(EncodingOfIdentifier(written), encoding) << written;
        for (const std::string_view spelling : others)
            EXPECT_EQ(EncodingOfIdentifier(spelling), encoding) << spelling;
    }
}

TEST(EncodingNames, OfACharsetMustBelongToTheirLanguage) {
    EXPECT_EQ(EncodingOfCharset("JAPA-NESE", "Shift_JIS"), TextEncoding::ShiftJis);
    for (const auto& [group, code] : {std::pair("japanese", "gbk"),
                                      {"japanese", "utf8"},
                                      {"klingon", "cp932"},
                                      {"", "utf8"},
                                      {"japanese", ""}})
        EXPECT_EQ(EncodingOfCharset(group, code), std::nullopt) << group << " " << code;
}

} // namespace
} // namespace kvx::test
