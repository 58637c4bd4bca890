#include "tests/settings/settings_testing.h"

#include <gtest/gtest.h>
#ifndef _WIN32 // the parser is only on the development host
#include <nlohmann/json.hpp>
#endif

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

#ifndef _WIN32
using nlohmann::json;

json Encoding(TextEncoding encoding) {
    static constexpr const char* kGroups[] = {"japanese", "korean", "korean",     "chinese",
                                              "chinese",  "thai",   "vietnamese", "indic"};
    static constexpr const char* kWords[] = {
        "ascii",  "utf8", "utf16le", "utf16be", "cp932",        "cp949",
        "euc-kr", "big5", "gbk",     "tis-620", "windows-1258", "iscii-devanagari"};
    const auto index = static_cast<std::uint32_t>(encoding);
    if (index < 4) return {{"kind", "common"}, {"common", kWords[index]}};
    return {{"kind", "charset"},
            {"charset", {{"language", kGroups[index - 4]}, {"code", kWords[index]}}}};
}

/// What the file is to say, built without the writer.
json Document(const AppSettings& settings) {
    const auto word = [](auto choice, std::initializer_list<const char*> words) {
        return std::data(words)[static_cast<std::uint32_t>(choice)];
    };
    json favorites = json::array();
    for (const TextEncoding encoding : settings.favoriteEncodings) {
        const json block = Encoding(encoding);
        favorites.push_back(block.contains("common") ? block["common"] : block["charset"]["code"]);
    }
    json recent = json::array();
    for (const std::u16string& path : settings.recentFiles)
        recent.push_back(Utf16ToUtf8(path));
    json history = json::array();
    for (const SearchHistoryEntry& entry : settings.searchHistory)
        history.push_back({{"kind", Utf16ToUtf8(entry.kind)}, {"query", Utf16ToUtf8(entry.query)}});
    const StructViewFormat& format = settings.structViewFormat;
    return {
        {"appVersion", Utf16ToUtf8(settings.appVersion)},
        {"encoding", Encoding(settings.textEncoding)},
        {"encodingFavorites", favorites},
        {"theme", word(settings.theme, {"Light", "DarkBlue", "Black"})},
        {"language", word(settings.uiLanguage, {"System", "English", "Japanese"})},
        {"font",
         {{"family", Utf16ToUtf8(settings.fontFamily)},
          {"size", json::parse(InSixDigits(settings.fontSize))},
          {"bold", settings.bold},
          {"italic", settings.italic}}},
        {"analysis",
         {{"dataInspector", {{"visible", settings.dataInspectorVisible}}},
          {"structView",
           {{"visible", settings.structViewVisible},
            {"byteArrayFormat", word(format.byteArrayFormat, {"hex", "ascii"})},
            {"endian", word(format.endian, {"little", "big"})},
            {"numericBase", word(format.numericBase, {"hex", "dec"})}}}}},
        {"recentFiles", recent},
        {"searchHistory", history},
    };
}

TEST(SettingsWriter, SaysTheSameToAGeneralParser) {
    RandomSettings random(31415);
    for (int step = 0; step < 1500; ++step) {
        const AppSettings settings = random.Next();
        ASSERT_EQ(json::parse(WriteSettingsText(settings)), Document(settings)) << step;
    }
}
#endif

} // namespace
} // namespace kvx::test
