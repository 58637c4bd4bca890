// The texts that ship with the program.
#include "platform/text.h"
#include "settings/string_table.h"
#include "tests/settings/string_keys.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <regex>
#include <set>

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

/// Upper-case letters after each "&"; "&&" stands for the character itself.
std::u16string MnemonicsOf(const std::u16string& text) {
    std::u16string letters;
    for (std::size_t i = text.find(u'&'); i != std::u16string::npos; i = text.find(u'&', i + 2)) {
        const char16_t letter = i + 1 < text.size() ? text[i + 1] : u' ';
        if (letter != u'&') letters += letter >= u'a' && letter <= u'z' ? letter - 32 : letter;
    }
    return letters;
}

TEST_P(StringFiles, UsesEachMnemonicOnceInAMenuAndNoneElsewhere) {
    std::set<std::string> withMnemonic;
    for (const std::vector<std::string>& keys : KeyGroups()) {
        withMnemonic.insert(keys.begin(), keys.end());
        std::map<char16_t, std::string> owners;
        for (const std::string& key : keys) {
            const std::u16string letters = MnemonicsOf(table.at(key));
            ASSERT_EQ(letters.size(), 1U) << key;
            const auto [owner, isNew] = owners.try_emplace(letters.front(), key);
            EXPECT_TRUE(isNew) << key << " and " << owner->second;
        }
    }
    for (const auto& [key, value] : table) {
        if (withMnemonic.contains(key)) continue;
        EXPECT_EQ(value.find_first_of(u"&\t"), std::u16string::npos) << key;
    }
}

} // namespace
} // namespace kvx::test
