// The written file read by a general JSON parser, which knows nothing of the reader's search rules.
// Only on the development host: the Windows build has no such library.
#ifndef _WIN32
#include "platform/text.h"
#include "settings/settings_file.h"
#include "tests/settings/random_settings.h"
#include "tests/settings/settings_model.h"
#include "tests/settings/settings_printer.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <array>

namespace kvx::test {
namespace {

using nlohmann::json;

std::u16string Text(const json& value) {
    return Utf8ToUtf16(value.get_ref<const std::string&>());
}

template <typename Enum>
Enum Choice(const json& value, std::initializer_list<const char*> words) {
    std::uint32_t index = 0;
    for (const char* word : words) {
        if (value == word) return static_cast<Enum>(index);
        ++index;
    }
    ADD_FAILURE() << "unknown word " << value;
    return {};
}

TextEncoding EncodingWord(const json& word) {
    return Choice<TextEncoding>(word,
                                {"ascii", "utf8", "utf16le", "utf16be", "cp932", "cp949", "euc-kr",
                                 "big5", "gbk", "tis-620", "windows-1258", "iscii-devanagari"});
}

TextEncoding Encoding(const json& block) {
    static constexpr std::array kGroups = {"japanese", "korean", "korean",     "chinese",
                                           "chinese",  "thai",   "vietnamese", "indic"};
    if (block.at("kind") == "common") return EncodingWord(block.at("common"));
    const TextEncoding encoding = EncodingWord(block.at("charset").at("code"));
    EXPECT_EQ(block.at("charset").at("language"),
              kGroups.at(static_cast<std::uint32_t>(encoding) - 4U));
    return encoding;
}

AppSettings Parsed(const std::string& text) {
    const json root = json::parse(text);
    const json& font = root.at("font");
    const json& structView = root.at("analysis").at("structView");
    AppSettings settings;
    settings.appVersion = Text(root.at("appVersion"));
    settings.textEncoding = Encoding(root.at("encoding"));
    for (const json& word : root.at("encodingFavorites"))
        settings.favoriteEncodings.push_back(EncodingWord(word));
    settings.theme = Choice<Theme>(root.at("theme"), {"Light", "DarkBlue", "Black"});
    settings.uiLanguage =
        Choice<UiLanguage>(root.at("language"), {"System", "English", "Japanese"});
    settings.fontFamily = Text(font.at("family"));
    settings.fontSize = font.at("size").get<float>();
    settings.bold = font.at("bold").get<bool>();
    settings.italic = font.at("italic").get<bool>();
    settings.dataInspectorVisible =
        root.at("analysis").at("dataInspector").at("visible").get<bool>();
    settings.structViewVisible = structView.at("visible").get<bool>();
    settings.structViewFormat = {
        Choice<ByteArrayFormat>(structView.at("byteArrayFormat"), {"hex", "ascii"}),
        Choice<Endian>(structView.at("endian"), {"little", "big"}),
        Choice<NumericBase>(structView.at("numericBase"), {"hex", "dec"})};
    for (const json& path : root.at("recentFiles"))
        settings.recentFiles.push_back(Text(path));
    for (const json& entry : root.at("searchHistory"))
        settings.searchHistory.push_back({Text(entry.at("kind")), Text(entry.at("query"))});
    return settings;
}

TEST(SettingsJson, HoldsEveryValueForAGeneralParser) {
    RandomSettings random(31415);
    for (int step = 0; step < 1500; ++step) {
        const AppSettings written = random.Next();
        ASSERT_EQ(Parsed(WriteSettingsText(written)), AsStored(written)) << "step " << step;
    }
}

} // namespace
} // namespace kvx::test
#endif
