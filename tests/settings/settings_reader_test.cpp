#include "fuzz/settings_checks.h"
#include "tests/settings/settings_testing.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <random>
#include <string>
#include <type_traits>
#include <vector>

namespace kvx::test {
namespace {

using Change = std::function<void(AppSettings&)>;

template <typename Value>
Change Set(Value AppSettings::*field, std::type_identity_t<Value> value) {
    return [=](AppSettings& settings) { settings.*field = value; };
}

/// Reads `text` into a record without any default and compares it with the changed record.
void ExpectChange(const std::string& text, const Change& change) {
    AppSettings actual = AllChanged(TextEncoding::Big5);
    AppSettings expected = actual;
    ReadSettingsText(text, actual);
    change(expected);
    EXPECT_EQ(actual, expected) << text;
}

using Rows = std::vector<std::pair<std::string, Change>>;

TEST(SettingsReader, LeavesWhatItCannotUseAsItWas) {
    for (const std::string text : {"",
                                   "{}",
                                   "not json at all \" [ { \\",
                                   R"({"Theme": "Light", "FONT": {"family": "x"}})",
                                   R"("font": {"family": "not closed)",
                                   R"("font": {"family": "not closed\")",
                                   R"("font": {"family": "not closed\)",
                                   R"("font": {"family": )",
                                   R"("font": {"family")",
                                   R"("font": {"italic": False})",
                                   R"("font": {"italic": 0})",
                                   R"("font": {"italic": "false"})",
                                   R"("font": {"italic": fals)",
                                   R"("theme": "")",
                                   R"("language": "")",
                                   R"("structView": {"endian": "little"})",
                                   R"("encoding": {"kind": "common"})",
                                   R"("encoding": {"kind": "charset", "code": "gbk"})",
                                   R"("encoding": {"kind": "other", "common": "utf8"})",
                                   R"("encoding": "utf8")",
                                   R"("kind": "common", "common": "utf8")",
                                   R"("encodingFavorites": ["gbk")",
                                   R"("encodingFavorites": ["gbk])",
                                   R"("encodingFavorites": ["gbk", ["big5"])",
                                   R"("recentFiles": ["C:\\a.bin", "D:\\d.bin")",
                                   R"("searchHistory": [{"kind": "a", "query": "b"}, {"kind": "c")",
                                   R"("searchHistory": [{"kind": "a", "query": "b"})",
                                   R"("searchHistory": [{"kind": "a", "query": "b"])"})
        ExpectChange(text, [](AppSettings&) {});
    for (const std::string size :
         {"0", "-3", "abc", "", "\"12\"", "1e999", "inf", "nan", "+", "+-5", ".", "e5", "[9]"})
        ExpectChange(R"("font": {"size": )" + size + R"(, "bold": false})",
                     Set(&AppSettings::bold, false));
}

TEST(SettingsReader, ReadsStringsNumbersAndWords) {
    const auto family = [](auto value) { return Set(&AppSettings::fontFamily, value); };
    const auto size = [](float value) { return Set(&AppSettings::fontSize, value); };
    const auto format = [](StructViewFormat value) {
        return Set(&AppSettings::structViewFormat, value);
    };
    for (
        const auto& [text, change] : Rows{
            {R"("font": {"family": "a\b\f\n\r\t\"\\\/z"})", family(u"a\b\f\n\r\t\"\\/z")},
            {R"("font": {"family": "\u0001\x日"})", family(u"u0001x日")},
            {"\"font\": {\"family\": \"\xFF\"}", family(u"\uFFFD")},
            {R"("font" "family" nonsense : nonsense "")", family(u"")},
            {"\"font\"\r\n\t\"family\"\r\n:\r\n\"two\nlines\"", family(u"two\nlines")},
            {R"("font": {"size":10.5})", size(10.5F)},
            {"\"font\": {\"size\": \t\r\n\v\f 9pt}", size(9)},
            {R"("font": {"size": +8.})", size(8)},
            {R"("font": {"size": .5e1})", size(5)},
            {"\"font\": {\"italic\" : \r\n\tfalse", Set(&AppSettings::italic, false)},
            {R"("dataInspector" "visible": false "analysis": {"dataInspector": {"visible":true)",
             Set(&AppSettings::dataInspectorVisible, true)},
            {"\xEF\xBB\xBF{\"theme\": \"Light\"", Set(&AppSettings::theme, Theme::Light)},
            {R"("theme": "light")", Set(&AppSettings::theme, Theme::DarkBlue)},
            {R"("language": "English")", Set(&AppSettings::uiLanguage, UiLanguage::English)},
            {R"("language": "english")", Set(&AppSettings::uiLanguage, UiLanguage::System)},
            {R"("analysis" "structView" "byteArrayFormat": "HEX", "endian": "", "numericBase": "8")",
             format({})},
        })
        ExpectChange(text, change);
}

TEST(SettingsReader, ReadsTheEncodingByItsKindAndItsLanguageAsTheInterfacesToo) {
    const auto encoding = [](TextEncoding value) { return Set(&AppSettings::textEncoding, value); };
    const auto system = [](AppSettings& settings) { settings.uiLanguage = UiLanguage::System; };
    const auto korean = [=](AppSettings& settings) {
        system(settings);
        settings.textEncoding = TextEncoding::EucKr;
    };
    const std::string charset = R"("encoding": {"kind": "charset", "charset": {"language": )";
    for (const auto& [text, change] : Rows{
             {R"("encoding": {"common": "UTF-16 LE", "kind": "common"})",
              encoding(TextEncoding::Utf16Le)},
             {R"("encoding": {"kind": "common", "common": "cp932"})",
              encoding(TextEncoding::ShiftJis)},
             {R"("encoding": {"kind": "common", "common": "latin1"})",
              encoding(TextEncoding::Ascii)},
             {charset + R"("korean", "code": "euc-kr"}}, "language": "Japanese")", korean},
             {charset + R"("korean", "code": "cp932"}}, "language": "Japanese")", system},
             {R"("language": "Japanese", )" + charset + R"("thai", "code": "cp874"}})",
              encoding(TextEncoding::Tis620)},
         })
        ExpectChange(text, change);
}

TEST(SettingsReader, ReadsLists) {
    using enum TextEncoding;
    const auto favorites = [](auto value) { return Set(&AppSettings::favoriteEncodings, value); };
    const auto recent = [](std::vector<std::u16string> value) {
        return Set(&AppSettings::recentFiles, value);
    };
    const auto history = [](std::vector<SearchHistoryEntry> value) {
        return Set(&AppSettings::searchHistory, value);
    };
    using Encodings = std::vector<TextEncoding>;
    for (
        const auto& [text, change] : Rows{
            {R"("encodingFavorites": [])", favorites(Encodings{})},
            {R"("encodingFavorites": ["gbk" \])", favorites(Encodings{Gbk})},
            {R"("encodingFavorites": ["utf8", "cp932", "sjis", "big5", "gbk"])",
             favorites(Encodings{Utf8, ShiftJis, Big5})},
            {R"("encodingFavorites": ["latin1", "ascii", "", 5, ["utf8"], "]["])",
             favorites(Encodings{Ascii, Utf8})},
            {R"("recentFiles": [])", recent({})},
            {R"("recentFiles": ["C:\\a.bin" "D:\\[b.bin", ""])",
             recent({u"C:\\a.bin", u"D:\\[b.bin", u""})},
            {R"("recentFiles": ["C:\\a.bin", "C:\\b]c.bin", "D:\\d.bin"])", recent({u"C:\\a.bin"})},
            {R"("searchHistory": [])", history({})},
            {R"("searchHistory": [{"kind": "hex"}, {"query": "[}]{", "kind": "text"}, {}, 7])",
             history({{u"text", u"[}]{"}})},
            {R"("searchHistory": [{"kind": "query", "query": "kind"}, {"kind": "\"", "query": "\\"}])",
             history({{u"query", u"kind"}, {u"\"", u"\\"}})},
            {R"("searchHistory": [{"kind": "a", "query": {"x": "b"}}, 7, "{"])",
             history({{u"a", u"x"}})},
        })
        ExpectChange(text, change);
}

/// Records with what can upset the file's text.
std::vector<AppSettings> WildSettings() {
    std::vector<AppSettings> all;
    for (std::uint32_t encoding = 0; encoding < kTextEncodingCount; ++encoding) {
        AppSettings settings = AllChanged(static_cast<TextEncoding>(encoding));
        settings.appVersion = std::u16string(u"\0\x1B\x7F\u0080\uFFFDé日😀", 9);
        settings.fontFamily = u"\"\\[{}:,]\b\t\n\f\r/'&=";
        settings.fontSize = std::exp2(0.7F * static_cast<float>(encoding)) / 100;
        settings.favoriteEncodings.push_back(static_cast<TextEncoding>(11 - encoding / 2));
        settings.recentFiles = {u"", {0xD83D, u'x', 0xDE00}, u"a\"[\\", u"b]c", u"d"};
        settings.searchHistory.push_back({u"\"}]", u"[{\\"});
        all.push_back(settings);
    }
    return all;
}

TEST(SettingsReader, GivesBackWrittenRecordsButForAFewConsequencesOfItsSearch) {
    for (const AppSettings& written : WildSettings()) {
        AppSettings read;
        ReadSettingsText(WriteSettingsText(written), read);
        EXPECT_EQ(read, AsReadBack(written));
    }
    AppSettings read = AllChanged(TextEncoding::Big5);
    ReadSettingsText(WriteSettingsText({}), read);
    EXPECT_EQ(read, AppSettings{});
}

TEST(SettingsReader, TakesOnlyValidValuesFromAFileWithFlippedBits) {
    std::mt19937 random(7);
    for (int step = 0; step < 400; ++step) {
        for (const AppSettings& settings : WildSettings()) {
            std::string text = WriteSettingsText(settings);
            for (auto flips = 1 + random() % 16; flips > 0; --flips) {
                char& hit = text[random() % text.size()];
                hit = static_cast<char>(hit ^ (1 << random() % 8));
            }
            const auto* const bytes = reinterpret_cast<const std::uint8_t*>(text.data());
            ASSERT_EQ(CheckSettings({bytes, text.size()}), "") << "step " << step << "\n" << text;
        }
    }
}

} // namespace
} // namespace kvx::test
