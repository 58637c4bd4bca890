#include "tests/settings/settings_testing.h"

#include <gtest/gtest.h>

#include <string>

namespace kvx::test {
namespace {

/// `text` with the line ends of the file.
std::string WithCrLf(std::string_view text) {
    std::string lines;
    for (const char c : text)
        lines += c == '\n' ? "\r\n" : std::string(1, c);
    return lines;
}

TEST(SettingsWriter, WritesOneTemplate) {
    EXPECT_EQ(WriteSettingsText(AllChanged(TextEncoding::ShiftJis)), WithCrLf(R"({
  "appVersion": "v1.04",
  "encoding": {
    "kind": "charset",
    "charset": {
      "language": "japanese",
      "code": "cp932"
    }
  },
  "encodingFavorites": ["utf8", "cp932"],
  "theme": "Black",
  "language": "Japanese",
  "font": {
    "family": "ＭＳ ゴシック",
    "size": 14.5,
    "bold": true,
    "italic": true
  },
  "analysis": {
    "dataInspector": {
      "visible": false
    },
    "structView": {
      "visible": true,
      "byteArrayFormat": "ascii",
      "endian": "big",
      "numericBase": "dec"
    }
  },
  "recentFiles": ["C:\\data\\a.bin", "D:\\日本.img"],
  "searchHistory": [{"kind": "hex", "query": "4D 5A"}, {"kind": "text", "query": "{[\"}"}]
}
)"));
}

TEST(SettingsWriter, WritesDefaultsAlsoForValuesOutsideTheEnumerations) {
    AppSettings odd;
    odd.theme = static_cast<Theme>(3);
    odd.uiLanguage = static_cast<UiLanguage>(99);
    odd.textEncoding = static_cast<TextEncoding>(12);
    odd.structViewFormat = {static_cast<ByteArrayFormat>(2), static_cast<Endian>(2),
                            static_cast<NumericBase>(0xFFFFFFFF)};
    const std::string text = WriteSettingsText(odd);
    EXPECT_EQ(text, WriteSettingsText({}));
    EXPECT_TRUE(text.starts_with(WithCrLf(R"({
  "appVersion": "",
  "encoding": {
    "kind": "common",
    "common": "ascii"
  },
  "encodingFavorites": [],
  "theme": "DarkBlue",
)"))) << text;
}

TEST(SettingsWriter, EscapesWhatJsonDoesNotTakeAsItIs) {
    AppSettings settings;
    settings.fontFamily = std::u16string(u"\b\t\n\f\r\"\\/\0\x1F\x7Fé", 12);
    settings.fontSize = 1234567.0F;
    EXPECT_NE(WriteSettingsText(settings).find(R"("family": "\b\t\n\f\r\"\\/\u0000\u001F)"
                                               "\x7Fé\",\r\n    \"size\": 1.23457e+06,\r\n"),
              std::string::npos);
}

} // namespace
} // namespace kvx::test
