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

namespace kvx::test {
namespace {

class StringFiles : public testing::TestWithParam<std::string> {
protected:
    static std::string FileText() {
        const auto root = std::filesystem::path(__FILE__).parent_path().parent_path().parent_path();
        std::ifstream file(root / "resources" / "strings" / (GetParam() + ".txt"),
                           std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    const std::string text = FileText();
    const StringMap table = ParseStringFile(text);
};

INSTANTIATE_TEST_SUITE_P(Locales, StringFiles, testing::Values("en-US", "ja-JP"),
                         [](const auto& param) { return param.param.substr(0, 2); });

TEST_P(StringFiles, HoldsExactlyTheKeysOfTheUserInterfaceOnceEach) {
    std::vector<std::string> expected;
    for (const char* lines : {kKeysWithMnemonics, kPlainKeys}) {
        for (const std::vector<std::string>& keys : KeyGroups(lines))
            expected.insert(expected.end(), keys.begin(), keys.end());
    }
    std::vector<std::string> actual;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        if (!line.empty() && line.front() != '#') actual.push_back(line.substr(0, line.find('=')));
    }
    EXPECT_THAT(actual, testing::UnorderedElementsAreArray(expected));
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
    for (const std::vector<std::string>& keys : KeyGroups(kKeysWithMnemonics)) {
        std::map<char16_t, std::string> owners;
        for (const std::string& key : keys) {
            const std::u16string letters = MnemonicsOf(table.at(key));
            ASSERT_EQ(letters.size(), 1U) << key;
            const auto [owner, isNew] = owners.try_emplace(letters.front(), key);
            EXPECT_TRUE(isNew) << key << " and " << owner->second;
        }
    }
    for (const std::vector<std::string>& keys : KeyGroups(kPlainKeys)) {
        for (const std::string& key : keys)
            EXPECT_EQ(table.at(key).find_first_of(u"&\t"), std::u16string::npos) << key;
    }
}

} // namespace
} // namespace kvx::test
