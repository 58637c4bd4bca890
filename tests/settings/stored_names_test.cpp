#include "settings/stored_names.h"

#include <gtest/gtest.h>

#include <vector>

namespace kvx::test {
namespace {

TEST(EncodingIdentifiers, AreReadInEverySpelling) {
    const std::vector<std::pair<TextEncoding, std::vector<std::string_view>>> rows = {
        {TextEncoding::Ascii, {"ascii", "latin1", "", "-", "utf-32", "日本語"}},
        {TextEncoding::Utf8, {"utf8", "UTF-8", "utf_8"}},
        {TextEncoding::Utf16Le, {"utf16le", "UTF-16 LE"}},
        {TextEncoding::Utf16Be, {"utf16be", "UTF-16BE"}},
        {TextEncoding::ShiftJis, {"cp932", "windows-31j", "Shift-JIS", "shift_jis", "SJIS"}},
        {TextEncoding::Windows949, {"cp949", "windows-949", "windows31k"}},
        {TextEncoding::EucKr, {"euc-kr", "EUC_KR"}},
        {TextEncoding::Big5, {"big5", "Big-5"}},
        {TextEncoding::Gbk, {"gbk", "GBK", "cp936"}},
        {TextEncoding::Tis620, {"tis-620", "ISO 8859-11", "cp874", "windows-874"}},
        {TextEncoding::Windows1258, {"windows-1258", "cp1258"}},
        {TextEncoding::IsciiDevanagari, {"iscii-devanagari", "ISCII91 Devanagari", "iscii"}},
    };
    for (const auto& [encoding, spellings] : rows) {
        for (const std::string_view spelling : spellings)
            EXPECT_EQ(EncodingOfIdentifier(spelling), encoding) << spelling;
    }
}

TEST(EncodingIdentifiers, OfACharsetMustBelongToTheirLanguage) {
    EXPECT_EQ(EncodingOfCharset("JAPA-NESE", "Shift_JIS"), TextEncoding::ShiftJis);
    for (const auto& [language, code] : {std::pair("japanese", "gbk"),
                                         {"japanese", "utf8"},
                                         {"klingon", "cp932"},
                                         {"", "utf8"},
                                         {"japanese", ""}})
        EXPECT_EQ(EncodingOfCharset(language, code), std::nullopt) << language << " " << code;
}

} // namespace
} // namespace kvx::test
