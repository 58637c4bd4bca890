#include "settings/settings_file.h"
#include "tests/settings/settings_printer.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace kvx::test {
namespace {

using Change = std::function<void(AppSettings&)>;

/// A text, and what reading it does to a record of defaults.
struct Row {
    std::string text;
    Change change;
};

void ExpectChanges(const std::vector<Row>& rows, const AppSettings& before = {}) {
    for (const Row& row : rows) {
        AppSettings actual = before;
        ReadSettingsText(row.text, actual);
        AppSettings expected = before;
        row.change(expected);
        EXPECT_EQ(actual, expected) << row.text;
    }
}

void Nothing(AppSettings&) {}

Change Encoding(TextEncoding encoding) {
    return [encoding](AppSettings& settings) { settings.textEncoding = encoding; };
}

Change Favorites(std::vector<TextEncoding> favorites) {
    return [favorites](AppSettings& settings) { settings.favoriteEncodings = favorites; };
}

Change FontSize(float size) {
    return [size](AppSettings& settings) { settings.fontSize = size; };
}

Change FontFamily(std::u16string family) {
    return [family](AppSettings& settings) { settings.fontFamily = family; };
}

Change Recent(std::vector<std::u16string> paths) {
    return [paths](AppSettings& settings) { settings.recentFiles = paths; };
}

Change History(std::vector<SearchHistoryEntry> entries) {
    return [entries](AppSettings& settings) { settings.searchHistory = entries; };
}

TEST(SettingsReader, LeavesWhatIsAbsentAsItWas) {
    AppSettings before;
    before.fontFamily = u"Courier New";
    before.theme = Theme::Black;
    before.recentFiles = {u"a"};
    ExpectChanges({{"", Nothing},
                   {"{}", Nothing},
                   {"\xEF\xBB\xBF{}", Nothing},
                   {"not json at all \" [ { \\", Nothing},
                   {R"({"Theme": "Light", "FONT": {"family": "x"}})", Nothing}},
                  before);
}

TEST(SettingsReader, UnescapesStrings) {
    ExpectChanges({
        {R"("font": {"family": "a\b\f\n\r\t\"\\\/z"})", FontFamily(u"a\b\f\n\r\t\"\\/z")},
        {R"("font": {"family": "\u0001\x"})", FontFamily(u"u0001x")},
        {R"("font": {"family": "日本語 😀"})", FontFamily(u"日本語 😀")},
        {"\"font\": {\"family\": \"\xFF\"}", FontFamily(u"\uFFFD")},
        {R"("font": {"family": ""})", FontFamily(u"")},
        {R"("font" "family" nonsense : nonsense "x")", FontFamily(u"x")},
        {"\"font\"\r\n\t\"family\"\r\n:\r\n\"two\nlines\"", FontFamily(u"two\nlines")},
        {R"("font": {"family": "not closed)", Nothing},
        {R"("font": {"family": "not closed\")", Nothing},
        {R"("font": {"family": "not closed\)", Nothing},
        {R"("font": {"family": )", Nothing},
        {R"("font": {"family")", Nothing},
    });
}

TEST(SettingsReader, ReadsTheLeadingNumberOfTheFontSize) {
    ExpectChanges({
        {R"("font": {"size": 9})", FontSize(9)},
        {R"("font": {"size":10.5})", FontSize(10.5F)},
        {"\"font\": {\"size\": \t\r\n\v\f 14pt}", FontSize(14)},
        {R"("font": {"size": +8.})", FontSize(8)},
        {R"("font": {"size": .5e1})", FontSize(5)},
        {R"("font": {"size": 1e1, "bold": true})",
         [](AppSettings& s) { s.fontSize = 10, s.bold = true; }},
    });
}

TEST(SettingsReader, IgnoresAFontSizeThatIsNoPositiveNumberAndReadsOn) {
    const auto bold = [](AppSettings& settings) { settings.bold = true; };
    for (const char* size : {"0", "-3", "-0", "abc", "", "\"12\"", "1e999", "-1e999", "inf", "nan",
                             "+", "+-5", ".", "e5", "true", "[9]"}) {
        ExpectChanges({{R"("font": {"size": )" + std::string(size) + R"(, "bold": true})", bold}});
    }
}

TEST(SettingsReader, ReadsOnlyTheWordsTrueAndFalse) {
    const auto italic = [](AppSettings& settings) { settings.italic = true; };
    ExpectChanges({{R"("font": {"italic":true})", italic},
                   {"\"font\": {\"italic\" : \r\n\ttrue", italic},
                   {R"("font": {"italic": True})", Nothing},
                   {R"("font": {"italic": 1})", Nothing},
                   {R"("font": {"italic": "true"})", Nothing},
                   {R"("font": {"italic": tru)", Nothing},
                   {R"("analysis": {"dataInspector": {"visible": false)",
                    [](AppSettings& s) { s.dataInspectorVisible = false; }}});
}

TEST(SettingsReader, TakesUnknownWordsForTheDefaultChoice) {
    AppSettings before;
    before.theme = Theme::Black;
    before.uiLanguage = UiLanguage::Japanese;
    before.structViewFormat = {ByteArrayFormat::Ascii, Endian::Big, NumericBase::Dec};
    const auto theme = [](Theme value) { return [value](AppSettings& s) { s.theme = value; }; };
    const auto language = [](UiLanguage value) {
        return [value](AppSettings& s) { s.uiLanguage = value; };
    };
    ExpectChanges(
        {
            {R"("theme": "Light")", theme(Theme::Light)},
            {R"("theme": "light")", theme(Theme::DarkBlue)},
            {R"("theme": "")", Nothing},
            {R"("language": "English")", language(UiLanguage::English)},
            {R"("language": "english")", language(UiLanguage::System)},
            {R"("language": "")", Nothing},
            {R"("analysis" "structView" "byteArrayFormat": "HEX")",
             [](AppSettings& s) { s.structViewFormat.byteArrayFormat = ByteArrayFormat::Hex; }},
            {R"("analysis" "structView" "endian": "")",
             [](AppSettings& s) { s.structViewFormat.endian = Endian::Little; }},
            {R"("analysis" "structView" "numericBase": "octal")",
             [](AppSettings& s) { s.structViewFormat.numericBase = NumericBase::Hex; }},
            {R"("structView": {"endian": "little"})", Nothing}, // outside of "analysis"
        },
        before);
}

TEST(SettingsReader, ReadsTheEncodingByItsKind) {
    AppSettings before;
    before.textEncoding = TextEncoding::Big5;
    ExpectChanges(
        {
            {R"("encoding": {"kind": "common", "common": "utf8"})", Encoding(TextEncoding::Utf8)},
            {R"("encoding": {"common": "UTF-16 LE", "kind": "common"})",
             Encoding(TextEncoding::Utf16Le)},
            {R"("encoding": {"kind": "common", "common": "cp932"})",
             Encoding(TextEncoding::ShiftJis)},
            {R"("encoding": {"kind": "common", "common": "latin1"})",
             Encoding(TextEncoding::Ascii)},
            {R"("encoding": {"kind": "common"})", Nothing},
            {R"("encoding": {"kind": "charset", "code": "gbk"})", Nothing},
            {R"("encoding": {"kind": "other", "common": "utf8"})", Nothing},
            {R"("encoding": "utf8")", Nothing},
            {R"("kind": "common", "common": "utf8")", Nothing},
        },
        before);
}

TEST(SettingsReader, ReadsTheFirstLanguageOfTheFileAsTheInterfacesToo) {
    AppSettings before;
    before.uiLanguage = UiLanguage::English;
    const auto system = [](TextEncoding encoding) {
        return [encoding](AppSettings& settings) {
            settings.textEncoding = encoding;
            settings.uiLanguage = UiLanguage::System;
        };
    };
    ExpectChanges(
        {
            {R"("encoding": {"kind": "charset", "charset": {"language": "korean",
                "code": "euc-kr"}}, "language": "Japanese")",
             system(TextEncoding::EucKr)},
            {R"("encoding": {"kind": "charset", "charset": {"language": "korean",
                "code": "cp932"}}, "language": "Japanese")",
             [](AppSettings& settings) { settings.uiLanguage = UiLanguage::System; }},
            {R"("language": "English", "encoding": {"kind": "charset",
                "charset": {"language": "thai", "code": "cp874"}})",
             Encoding(TextEncoding::Tis620)},
        },
        before);
}

TEST(SettingsReader, KeepsTheFirstThreeDistinctFavorites) {
    AppSettings before;
    before.favoriteEncodings = {TextEncoding::EucKr};
    ExpectChanges(
        {
            {R"("encodingFavorites": [])", Favorites({})},
            {R"("encodingFavorites": ["utf8", "cp932", "sjis", "big5", "gbk"])",
             Favorites({TextEncoding::Utf8, TextEncoding::ShiftJis, TextEncoding::Big5})},
            {R"("encodingFavorites": ["latin1", "ascii", "", 5, ["utf8"], "]["])",
             Favorites({TextEncoding::Ascii, TextEncoding::Utf8})},
            {R"("encodingFavorites": ["utf8", "gbk")", Nothing},
            {R"("encodingFavorites": ["utf8", "gbk])", Nothing},
            {R"("encodingFavorites": ["utf8", ["gbk"])", Nothing},
        },
        before);
}

TEST(SettingsReader, EndsTheRecentFilesAtTheFirstClosingBracket) {
    AppSettings before;
    before.recentFiles = {u"old"};
    ExpectChanges(
        {
            {R"("recentFiles": [])", Recent({})},
            {R"("recentFiles": ["C:\\a.bin" "D:\\[b.bin", ""])",
             Recent({u"C:\\a.bin", u"D:\\[b.bin", u""})},
            {R"("recentFiles": ["C:\\a.bin", "C:\\b]c.bin", "D:\\d.bin"])", Recent({u"C:\\a.bin"})},
            {R"("recentFiles": ["C:\\b]c.bin", "D:\\d.bin"])", Recent({})},
            {R"("recentFiles": ["C:\\a.bin", "D:\\d.bin")", Nothing},
        },
        before);
}

TEST(SettingsReader, ReadsWholeHistoryEntries) {
    AppSettings before;
    before.searchHistory = {{u"hex", u"00"}};
    ExpectChanges(
        {
            {R"("searchHistory": [])", History({})},
            {R"("searchHistory": [{"kind": "hex", "query": "4D"}, {"query": "[}]{", "kind": "text"}])",
             History({{u"hex", u"4D"}, {u"text", u"[}]{"}})},
            {R"("searchHistory": [{"kind": "hex"}, {"query": "x"}, {}, {"kind": "a", "query": ""}])",
             History({{u"a", u""}})},
            {R"("searchHistory": [{"kind": "query", "query": "kind"}, {"kind": "\"", "query": "\\"}])",
             History({{u"query", u"kind"}, {u"\"", u"\\"}})},
            {R"("searchHistory": [{"kind": "a", "query": {"x": "b"}}, 7, "{"])",
             History({{u"a", u"x"}})},
            {R"("searchHistory": [{"kind": "a", "query": "b"}, {"kind": "c")", Nothing},
            {R"("searchHistory": [{"kind": "a", "query": "b"})", Nothing},
            {R"("searchHistory": [{"kind": "a", "query": "b"])", Nothing},
        },
        before);
}

TEST(SettingsReader, ReadsAFileWithAByteOrderMarkLikeOneWithout) {
    AppSettings settings;
    settings.appVersion = u"v1.04";
    settings.theme = Theme::Light;
    AppSettings read;
    ReadSettingsText("\xEF\xBB\xBF" + WriteSettingsText(settings), read);
    EXPECT_EQ(read, settings);
}

} // namespace
} // namespace kvx::test
