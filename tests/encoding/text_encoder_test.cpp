#include "encoding/text_encoder.h"

#include <gtest/gtest.h>

namespace kvx {
namespace {

using enum TextEncoding;

TEST(TextEncoder, WritesTextExactlyOrNotAtAll) {
    struct Row {
        TextEncoding encoding;
        std::u16string_view text;
        Bytes bytes; ///< empty: refused
    };
    const char16_t half[] = {u'a', 0xD83D, u'b'};
    const char16_t swapped[] = {0xDE00, 0xD83D};
    const Row rows[] = {
        {Ascii, u"a\u007F", {0x61, 0x7F}},
        {Ascii, u"\u0080", {}},
        {static_cast<TextEncoding>(99), u"a", {0x61}},
        {Utf8, u"\u3042\U0001F600", {0xE3, 0x81, 0x82, 0xF0, 0x9F, 0x98, 0x80}},
        {Utf8, {half, 3}, {}},
        {Utf16Le, u"a\U0001F600", {0x61, 0, 0x3D, 0xD8, 0x00, 0xDE}},
        {Utf16Be, u"a\U0001F600", {0, 0x61, 0xD8, 0x3D, 0xDE, 0x00}},
        {Utf16Le, {half, 3}, {}},
        {Utf16Be, {half, 2}, {}},
        {Utf16Be, {swapped, 2}, {}},
        {ShiftJis, u"\u3042\uFF71", {0x82, 0xA0, 0xB1}},
        {Windows949, u"\uAC02", {0x81, 0x41}},
        {EucKr, u"\uAC00", {0xB0, 0xA1}},
        {EucKr, u"\uAC02", {}},
        {Big5, u"\u4E00", {0xA4, 0x40}},
        {Gbk, u"\u4E02", {0x81, 0x40}},
        {Tis620, u"\u0E01\u0E49", {0xA1, 0xE9}},
        {Tis620, u"\u00E9", {}},
        {Windows1258, u"a\u0301", {0x61, 0xEC}},
        {IsciiDevanagari, u"\u0915\u093F", {0xB3, 0xDB}},
        {IsciiDevanagari, u"\u0905\u0904", {}},
    };
    for (const Row& row : rows) {
        const auto expected = row.bytes.empty() ? std::nullopt : std::optional(row.bytes);
        EXPECT_EQ(EncodeText(row.encoding, row.text), expected)
            << &row - rows << ": " << static_cast<unsigned>(row.encoding);
        EXPECT_EQ(EncodeText(row.encoding, u""), std::nullopt);
    }
}

} // namespace
} // namespace kvx
