#include "platform/iscii.h"

#include "tests/platform/code_page_inputs.h"

#include <gtest/gtest.h>

#include <string_view>

namespace kvx {
namespace {

using Text = std::optional<std::u16string>;

TEST(Iscii, ReadsAndWritesTheCharactersOfTheStandard) {
    struct Row {
        const char* what;
        Bytes bytes;
        std::u16string_view text;
    };
    const Row rows[] = {
        {"ASCII", {'A', '~', 0x7F, 0}, {u"A~\u007F\0", 4}},
        {"namaste", {0xC6, 0xCC, 0xD7, 0xE8, 0xC2, 0xE1}, u"\u0928\u092E\u0938\u094D\u0924\u0947"},
        {"hindi", {0xD8, 0xDB, 0xC6, 0xE8, 0xC4, 0xDC}, u"\u0939\u093F\u0928\u094D\u0926\u0940"},
        {"signs", {0xB3, 0xA1, 0xB3, 0xA2, 0xB3, 0xA3}, u"\u0915\u0901\u0915\u0902\u0915\u0903"},
        {"vowels in the order of the bytes",
         {0xA4, 0xAA, 0xAB, 0xAC, 0xAD, 0xAE, 0xAF, 0xB0, 0xB1, 0xB2},
         u"\u0905\u090B\u090E\u090F\u0910\u090D\u0912\u0913\u0914\u0911"},
        {"their signs in another order",
         {0xDA, 0xDF, 0xE0, 0xE1, 0xE2, 0xE3, 0xE4, 0xE5, 0xE6, 0xE7},
         u"\u093E\u0943\u0946\u0947\u0948\u0945\u094A\u094B\u094C\u0949"},
        {"letters of other scripts", {0xC7, 0xCE, 0xD0, 0xD3}, u"\u0929\u095F\u0931\u0934"},
        {"nukta letters", {0xB3, 0xE9, 0xC0, 0xE9, 0xC9, 0xE9}, u"\u0958\u095D\u095E"},
        {"long vocalics", {0xAA, 0xE9, 0xA6, 0xE9, 0xA7, 0xE9}, u"\u0960\u090C\u0961"},
        {"their signs", {0xDF, 0xE9, 0xDB, 0xE9, 0xDC, 0xE9}, u"\u0944\u0962\u0963"},
        {"a nukta that composes nothing", {0xCD, 0xE9, 0xE9}, u"\u092F\u093C\u093C"},
        {"om and avagraha", {0xA1, 0xE9, 0xEA, 0xE9}, u"\u0950\u093D"},
        {"explicit halant", {0xB3, 0xE8, 0xE8, 0xD6}, u"\u0915\u094D\u200C\u0937"},
        {"soft halant", {0xB3, 0xE8, 0xE9, 0xD6}, u"\u0915\u094D\u200D\u0937"},
        {"invisible consonant", {0xD9, 0xE8, 0xCF}, u"\u200D\u094D\u0930"},
        {"danda, double danda", {0xEA, ' ', 0xEA, 0xEA}, u"\u0964 \u0965"},
        {"digits", {0xF1, 0xF2, 0xFA}, u"\u0966\u0967\u096F"},
        {"extensions", {0xF0, 0xB8, 0xF0, 0xBF}, u"\u0952\u0970"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(DecodeIscii(row.bytes), Text(row.text)) << row.what;
        EXPECT_EQ(EncodeIscii(row.text), row.bytes) << row.what;
    }
    EXPECT_EQ(DecodeIscii(Bytes{0xEF, 0x42, 0xB3, 0xEF, 0x30, 0xB4}), u"\u0915\u0916");
    EXPECT_EQ(EncodeIscii(u"\u0915\u093C\u092B\u093C"), (Bytes{0xB3, 0xE9, 0xC9, 0xE9}))
        << "letters and their nuktas";
}

TEST(Iscii, RefusesWhatMeansNothingAndWhatWouldReadAsSomethingElse) {
    for (const Bytes& bytes :
         {Bytes{0x80}, Bytes{0xA0}, Bytes{0xEB}, Bytes{0xFB}, Bytes{0xB3, 0xFF}, Bytes{0xEF},
          Bytes{0xF0}, Bytes{0xEF, 0x43}, Bytes{0xF0, 0xA1}})
        EXPECT_EQ(DecodeIscii(bytes), std::nullopt) << InHex(bytes);
    const char16_t half[] = {0xD83D};
    for (const std::u16string_view text : {std::u16string_view(u"\u0904"),
                                           {u"\u0080"},
                                           {u"\u200C"},
                                           {half, 1},
                                           {u"\u094D\u094D"},  // an explicit halant
                                           {u"\u094D\u093C"},  // a soft one
                                           {u"\u0964\u0964"},  // a double danda
                                           {u"\u0964\u093C"},  // avagraha
                                           {u"\u0907\u093C"}}) // vocalic l
        EXPECT_EQ(EncodeIscii(text), std::nullopt) << InHex(text);
}

TEST(Iscii, WritesEveryTextThatItReadsSoThatItReadsTheSame) {
    unsigned count = 0;
    ForEveryShortInput([&](ByteView bytes) {
        const Text text = DecodeIscii(bytes);
        if (!text || text->empty()) return; // attributes alone
        const auto written = EncodeIscii(*text);
        EXPECT_TRUE(written && DecodeIscii(*written) == text) << InHex(bytes);
        ++count;
    });
    // Of ASCII and 84 bytes beyond it, their pairs, and two extensions.
    EXPECT_EQ(count, 212U + 212U * 212U + 2U);
}

} // namespace
} // namespace kvx
