#include "panes/inspector_rows.h"

#include "panes/character_display.h"
#include "panes/inspector_model.h"
#include "platform/text.h"
#include "tests/hexview/memory_document.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace kvx {
namespace {

using Values = std::vector<std::string>;

/// The values of the rows in UTF-8; "-" for what is unavailable.
Values ValuesOf(Bytes bytes, TextEncoding encoding) {
    Values values;
    for (const InspectorRow& row : ComputeInspectorRows(
             {.encoding = encoding, .bytes = std::move(bytes), .unavailableText = u"-"}))
        values.push_back(Utf16ToUtf8(row.value));
    return values;
}

TEST(InspectorRows, AreNumbersAndCharactersAsFarAsTheBytesSuffice) {
    const Bytes bytes{0xF1, 0x90, 0x8D, 0x88, 0x05, 0x06, 0x07, 0xA8};
    const std::pair<std::string, std::size_t> rows[] = {
        // each with the bytes that it needs
        {"0b1111_0001", 1},
        {"241 / 0xF1", 1},
        {"37105 / 0x90F1", 2},
        {"61840 / 0xF190", 2},
        {"2290979057 / 0x888D90F1", 4},
        {"4052782472 / 0xF1908D88", 4},
        {"12107652744044450033 / 0xA8070605888D90F1", 8},
        {"17406568175126316968 / 0xF1908D88050607A8", 8},
        {"\U00050348 (U+50348)", 4},
        {"\u90F1 (U+90F1)", 2},
        {"\uF190 (U+F190)", 2},
        {"\u99E9 (U+99E9)", 2},
    };
    for (std::size_t count = 0; count <= bytes.size(); ++count) {
        Values values;
        for (const auto& [value, needed] : rows)
            values.push_back(needed <= count ? value : "-");
        EXPECT_EQ(ValuesOf({bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(count)},
                           TextEncoding::Gbk),
                  values)
            << count << " bytes";
    }
}

TEST(InspectorRows, ReadOneCharacterOfTheCurrentEncoding) {
    struct Case {
        TextEncoding encoding;
        Bytes bytes;
        std::string value;
    };
    using enum TextEncoding;
    const Case cases[] = {
        {Ascii, {0x41}, "A (U+0041)"},
        {Ascii, {0x7F}, "\x7F (U+007F)"},
        {Ascii, {0x80}, "-"},
        {static_cast<TextEncoding>(99), {0x41, 0xE3}, "A (U+0041)"},
        {Utf8, {0xC2, 0x85}, "NEL (U+0085)"},
        {Utf8, {0xE3, 0x81}, "-"},
        {Utf16Le, {0x3D, 0xD8, 0x00, 0xDE}, "\U0001F600 (U+1F600)"},
        {Utf16Le, {0x3D, 0xD8, 0x00}, "-"},
        {Utf16Be, {0xD8, 0x3D, 0xDE, 0x00}, "\U0001F600 (U+1F600)"},
        {Utf16Be, {0xDC, 0x00, 0x00, 0x41}, "-"},
        {ShiftJis, {0x81, 0x40}, "Ideographic Space (U+3000)"},
        {ShiftJis, {0x82}, "-"},
        {Tis620, {0xA1, 0xD4, 0xE8}, "\u0E01\u0E34\u0E48 (U+0E01 U+0E34 U+0E48)"},
        {Windows1258, {0xA0}, "NBSP (U+00A0)"},
        {IsciiDevanagari, {0xDA}, "-"},
        {IsciiDevanagari, {0x0A}, "LF (U+000A)"},
    };
    for (const Case& each : cases)
        EXPECT_EQ(ValuesOf(each.bytes, each.encoding).back(), each.value);
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
    model.SetRows(ComputeInspectorRows({.bytes = {0x00}, .unavailableText = u"N/A"}));
    const std::string copied = Utf16ToUtf8(ListCopyText(model));
    EXPECT_THAT(copied, testing::StartsWith("inspector.data.column.name\t"
                                            "inspector.data.column.value\r\n"
                                            "inspector.data.row.binary\t0b0000_0000\r\n"));
    EXPECT_THAT(copied, testing::EndsWith("\r\ninspector.data.row.current_encoding_char\t"
                                          " (U+0000)"))
        << "without the NUL, which would end the text";
    EXPECT_EQ(std::ranges::count(copied, '\n'), 12);
}

TEST(CharacterDisplay, NamesWhatShowsAsNothingAndTellsTheCodePoints) {
    const std::pair<std::u16string, std::u16string> cases[] = {
        {u"\t", u"TAB (U+0009)"},
        {u"\v", u"VT (U+000B)"},
        {u"\f", u"FF (U+000C)"},
        {u"\r", u"CR (U+000D)"},
        {u" ", u"Space (U+0020)"},
        {u"\U0010FFFF", u"\U0010FFFF (U+10FFFF)"},
        {u"a\u0301", u"a\u0301 (U+0061 U+0301)"},
        {u"\t ", u"\t  (U+0009 U+0020)"},
        {std::u16string{0xDC00, 0xD800}, std::u16string{0xDC00, 0xD800} + u" (U+DC00 U+D800)"},
        {u"", u""},
    };
    for (const auto& [text, display] : cases)
        EXPECT_EQ(FormatCharacterDisplay(text), display);
}

} // namespace
} // namespace kvx
