// The texts that ship with the program.
#include "platform/text.h"
#include "settings/string_table.h"
#include "tests/settings/mnemonics.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>
#include <sstream>

namespace kvx::test {
namespace {

const std::filesystem::path kRoot =
    std::filesystem::path(__FILE__).parent_path().parent_path().parent_path();

std::string ReadText(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// Every quoted text in the program's code that has the form of a key.
std::set<std::string> KeysInTheCode() {
    const std::regex key(
        R"re("((?:app|menu|dialog|about|confirm|error|status|inspector|structview)\.[a-z0-9_.]+)")re");
    std::set<std::string> keys;
    for (const char* folder : {"app", "panes", "hexview", "encoding", "settings"}) {
        for (const auto& entry : std::filesystem::directory_iterator(kRoot / folder)) {
            const std::string code = ReadText(entry.path());
            for (std::sregex_iterator match(code.begin(), code.end(), key), end; match != end;
                 ++match)
                keys.insert((*match)[1]);
        }
    }
    return keys;
}

class StringFiles : public testing::TestWithParam<std::string> {
protected:
    const std::string text = ReadText(kRoot / "resources" / "strings" / (GetParam() + ".txt"));
    const StringMap table = ParseStringFile(text);
};

INSTANTIATE_TEST_SUITE_P(Locales, StringFiles, testing::Values("en-US", "ja-JP"),
                         [](const auto& param) { return param.param.substr(0, 2); });

TEST_P(StringFiles, HoldsExactlyTheKeysThatTheCodeUsesOnceEach) {
    std::vector<std::string> actual;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        if (!line.empty() && line.front() != '#') actual.push_back(line.substr(0, line.find('=')));
    }
    EXPECT_THAT(actual, testing::UnorderedElementsAreArray(KeysInTheCode()));
}

TEST_P(StringFiles, IsPlainUtf8WithUnixLineEndsAndNoEmptyText) {
    EXPECT_FALSE(text.starts_with("\xEF\xBB\xBF"));
    EXPECT_EQ(text.find('\r'), std::string::npos);
    EXPECT_NE(StrictUtf8ToUtf16(text), std::nullopt);
    for (const auto& [key, value] : table)
        EXPECT_FALSE(value.empty()) << key;
}

TEST_P(StringFiles, UsesEachMnemonicOnceInADialogAndNoneElsewhere) {
    std::set<std::string> inDialogs;
    for (const std::vector<std::string>& keys : KeyGroups()) {
        inDialogs.insert(keys.begin(), keys.end());
        std::vector<std::u16string> texts;
        for (const std::string& key : keys)
            texts.push_back(table.at(key));
        ExpectOneMnemonicEach(texts);
    }
    for (const auto& [key, value] : table) {
        if (inDialogs.contains(key)) continue;
        const bool inMenu = key.starts_with("menu.");
        EXPECT_EQ(MnemonicsOf(value).size(), inMenu ? 1U : 0U) << key;
        EXPECT_TRUE(inMenu || value.find_first_of(u"&\t") == std::u16string::npos) << key;
    }
}

} // namespace
} // namespace kvx::test
