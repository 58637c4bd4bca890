#include "encoding/text_encoding.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kvx {
namespace {

TEST(TextEncoding, NamesEveryStoredNumberAndTakesOthersForAscii) {
    std::vector<std::u16string> names;
    for (std::uint32_t value = 0; value <= kTextEncodingCount; ++value)
        names.emplace_back(EncodingDisplayName(static_cast<TextEncoding>(value)));
    const std::vector<std::u16string> expected = {
        u"ASCII",  u"UTF-8", u"UTF-16 LE", u"UTF-16 BE", u"Shift_JIS",    u"Windows-949",
        u"EUC-KR", u"Big5",  u"GBK",       u"TIS-620",   u"Windows-1258", u"ISCII (Devanagari)",
        u"ASCII",
    };
    EXPECT_EQ(names, expected);
    EXPECT_EQ(EncodingDisplayName(static_cast<TextEncoding>(0xFFFFFFFF)), u"ASCII");
}

} // namespace
} // namespace kvx
