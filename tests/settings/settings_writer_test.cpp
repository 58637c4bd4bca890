#include "settings/settings_file.h"
#include "tests/settings/settings_model.h"

#include <gtest/gtest.h>

#include <limits>
#include <locale>
#include <string>
#include <utility>
#include <vector>

namespace kvx::test {
namespace {

/// Lines joined as the file has them.
std::string Lines(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines)
        text += line + "\r\n";
    return text;
}

/// What the writer puts on the line that starts with `start`, without the line end.
std::string LineOf(const AppSettings& settings, const std::string& start) {
    const std::string text = WriteSettingsText(settings);
    const std::size_t at = text.find("\n" + start);
    EXPECT_NE(at, std::string::npos) << start;
    return text.substr(at + 1, text.find("\r\n", at) - at - 1);
}

TEST(SettingsWriter, WritesTheDefaults) {
    EXPECT_EQ(WriteSettingsText({}), Lines({
                                         R"({)",
                                         R"(  "appVersion": "",)",
                                         R"(  "encoding": {)",
                                         R"(    "kind": "common",)",
                                         R"(    "common": "ascii")",
                                         R"(  },)",
                                         R"(  "encodingFavorites": [],)",
                                         R"(  "theme": "DarkBlue",)",
                                         R"(  "language": "System",)",
                                         R"(  "font": {)",
                                         R"(    "family": "Consolas",)",
                                         R"(    "size": 12,)",
                                         R"(    "bold": false,)",
                                         R"(    "italic": false)",
                                         R"(  },)",
                                         R"(  "analysis": {)",
                                         R"(    "dataInspector": {)",
                                         R"(      "visible": true)",
                                         R"(    },)",
                                         R"(    "structView": {)",
                                         R"(      "visible": false,)",
                                         R"(      "byteArrayFormat": "hex",)",
                                         R"(      "endian": "little",)",
                                         R"(      "numericBase": "hex")",
                                         R"(    })",
                                         R"(  },)",
                                         R"(  "recentFiles": [],)",
                                         R"(  "searchHistory": [])",
                                         R"(})",
                                     }));
}

TEST(SettingsWriter, WritesACharsetEncodingListsAndEveryOtherChoice) {
    EXPECT_EQ(
        WriteSettingsText(AllChanged(TextEncoding::ShiftJis)),
        Lines({
            R"({)",
            R"(  "appVersion": "v1.04",)",
            R"(  "encoding": {)",
            R"(    "kind": "charset",)",
            R"(    "charset": {)",
            R"(      "language": "japanese",)",
            R"(      "code": "cp932")",
            R"(    })",
            R"(  },)",
            R"(  "encodingFavorites": ["utf8", "cp932"],)",
            R"(  "theme": "Black",)",
            R"(  "language": "Japanese",)",
            R"(  "font": {)",
            R"(    "family": "ＭＳ ゴシック",)",
            R"(    "size": 14.5,)",
            R"(    "bold": true,)",
            R"(    "italic": true)",
            R"(  },)",
            R"(  "analysis": {)",
            R"(    "dataInspector": {)",
            R"(      "visible": false)",
            R"(    },)",
            R"(    "structView": {)",
            R"(      "visible": true,)",
            R"(      "byteArrayFormat": "ascii",)",
            R"(      "endian": "big",)",
            R"(      "numericBase": "dec")",
            R"(    })",
            R"(  },)",
            R"(  "recentFiles": ["C:\\data\\a.bin", "D:\\日本.img"],)",
            R"(  "searchHistory": [{"kind": "hex", "query": "4D 5A"}, {"kind": "text", "query": "{[\"}"}])",
            R"(})",
        }));
}

TEST(SettingsWriter, EscapesWhatAStringCannotHold) {
    const std::vector<std::pair<std::u16string, std::string>> rows = {
        {u"\b\t\n\f\r\"\\", R"("\b\t\n\f\r\"\\")"},
        {std::u16string(u"\0\x01\x0B\x1F", 4), R"("\u0000\u0001\u000B\u001F")"},
        {u" /\x7F~", "\" /\x7F~\""},
        {u"é日😀", R"("é日😀")"},
        {{u'a', char16_t{0xD800}, u'b'},
         "\"a\xEF\xBF\xBD"
         "b\""},
    };
    for (const auto& [text, written] : rows) {
        AppSettings settings;
        settings.recentFiles = {text};
        EXPECT_EQ(LineOf(settings, R"(  "recentFiles")"), R"(  "recentFiles": [)" + written + "],");
    }
}

TEST(SettingsWriter, PrintsTheFontSizeInSixDigits) {
    const std::vector<std::pair<float, std::string>> rows = {
        {12.0F, "12"},
        {10.5F, "10.5"},
        {0.1F, "0.1"},
        {12.3456789F, "12.3457"},
        {1234567.0F, "1.23457e+06"},
        {0.00001F, "1e-05"},
        {100000.0F, "100000"},
    };
    for (const auto& [size, written] : rows) {
        AppSettings settings;
        settings.fontSize = size;
        EXPECT_EQ(LineOf(settings, R"(    "size")"), R"(    "size": )" + written + ",");
    }
}

TEST(SettingsWriter, PrintsValuesOutsideTheEnumerationsAsDefaults) {
    AppSettings odd;
    odd.theme = static_cast<Theme>(3);
    odd.uiLanguage = static_cast<UiLanguage>(99);
    odd.textEncoding = static_cast<TextEncoding>(12);
    odd.structViewFormat = {static_cast<ByteArrayFormat>(2), static_cast<Endian>(2),
                            static_cast<NumericBase>(0xFFFFFFFF)};
    EXPECT_EQ(WriteSettingsText(odd), WriteSettingsText({}));
}

/// Swaps the global locale for one that writes a comma in numbers.
class CommaLocale {
public:
    CommaLocale() : before_(std::locale::global(std::locale(std::locale::classic(), new Comma))) {}
    CommaLocale(const CommaLocale&) = delete;
    CommaLocale& operator=(const CommaLocale&) = delete;
    ~CommaLocale() { std::locale::global(before_); }

private:
    struct Comma : std::numpunct<char> {
        char do_decimal_point() const override { return ','; }
    };
    std::locale before_;
};

TEST(SettingsWriter, WritesAndReadsAPointInEveryLocale) {
    const CommaLocale locale;
    AppSettings settings;
    settings.fontSize = 10.5F;
    EXPECT_EQ(LineOf(settings, R"(    "size")"), R"(    "size": 10.5,)");
    AppSettings read;
    ReadSettingsText(WriteSettingsText(settings), read);
    EXPECT_EQ(read.fontSize, 10.5F);
}

} // namespace
} // namespace kvx::test
