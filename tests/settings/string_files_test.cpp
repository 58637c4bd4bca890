// The texts that ship with the program.
#include "platform/text.h"
#include "settings/string_table.h"
#include "tests/settings/string_keys.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>

namespace kvx::test {
namespace {

std::string FileText(const std::string& locale) {
    const auto root = std::filesystem::path(__FILE__).parent_path().parent_path().parent_path();
    std::ifstream file(root / "resources" / "strings" / (locale + ".txt"), std::ios::binary);
    EXPECT_TRUE(file.is_open()) << "no string file for " << locale;
    return {std::istreambuf_iterator<char>(file), {}};
}

/// Keys in the order of the file's lines.
std::vector<std::string> KeysInOrder(const std::string& text) {
    std::vector<std::string> keys;
    for (std::size_t start = 0; start < text.size(); start = text.find('\n', start) + 1) {
        const std::string line = text.substr(start, text.find('\n', start) - start);
        if (!line.starts_with('#') && !line.empty()) keys.push_back(line.substr(0, line.find('=')));
    }
    return keys;
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

class StringFiles : public testing::TestWithParam<std::string> {
protected:
    const std::string text = FileText(GetParam());
    const StringMap table = ParseStringFile(text);
};

INSTANTIATE_TEST_SUITE_P(Locales, StringFiles, testing::Values("en-US", "ja-JP"),
                         [](const auto& param) { return param.param.substr(0, 2); });

TEST_P(StringFiles, HoldsExactlyTheKeysOfTheUserInterfaceOnceEach) {
    const std::set<std::string> keys = AllKeys();
    EXPECT_THAT(KeysInOrder(text), testing::UnorderedElementsAreArray(keys));
}

TEST_P(StringFiles, IsPlainUtf8WithUnixLineEnds) {
    EXPECT_FALSE(text.starts_with("\xEF\xBB\xBF"));
    EXPECT_EQ(text.find('\r'), std::string::npos);
    EXPECT_TRUE(text.ends_with('\n'));
    EXPECT_EQ(Utf16ToUtf8(Utf8ToUtf16(text)), text);
    EXPECT_EQ(text.find("\xEF\xBF\xBD"), std::string::npos); // U+FFFD
}

TEST_P(StringFiles, HoldsNoEmptyText) {
    for (const auto& [key, value] : table)
        EXPECT_FALSE(value.empty()) << key;
}

TEST_P(StringFiles, UsesEachMnemonicOnceInAMenu) {
    for (const KeyGroup& group : GroupsWithMnemonics()) {
        std::map<char16_t, std::string> owners;
        for (const std::string& key : group.keys) {
            const std::u16string letters = MnemonicsOf(table.at(key));
            ASSERT_EQ(letters.size(), 1U) << key;
            const auto [owner, isNew] = owners.try_emplace(letters.front(), key);
            EXPECT_TRUE(isNew) << group.name << ": " << key << " and " << owner->second;
        }
    }
}

TEST_P(StringFiles, PutsMnemonicsAndShortcutsNowhereElse) {
    for (const KeyGroup& group : PlainGroups()) {
        for (const std::string& key : group.keys)
            EXPECT_EQ(table.at(key).find_first_of(u"&\t"), std::u16string::npos) << key;
    }
}

TEST_P(StringFiles, ShowsTheShortcutsOfTheProgram) {
    const std::map<std::string, std::u16string> shortcuts = {{"menu.edit.readonly", u"\tCtrl+R"},
                                                             {"menu.view.find", u"\tCtrl+F"},
                                                             {"menu.view.goto", u"\tCtrl+G"},
                                                             {"menu.file.exit", u"\tAlt+F4"}};
    for (const auto& [key, shortcut] : shortcuts)
        EXPECT_TRUE(table.at(key).ends_with(shortcut)) << key;
}

TEST_P(StringFiles, MarksTheItemsThatAskForMoreWithAnEllipsis) {
    for (const char* key : {"menu.file.open", "menu.view.find", "menu.view.goto",
                            "menu.settings.font", "structview.open.button"}) {
        const std::u16string& item = table.at(key);
        EXPECT_TRUE(item.substr(0, item.find(u'\t')).ends_with(u"...")) << key;
    }
}

TEST(StringFilesTogether, ListTheSameKeysInTheSameOrder) {
    EXPECT_EQ(KeysInOrder(FileText("en-US")), KeysInOrder(FileText("ja-JP")));
}

} // namespace
} // namespace kvx::test
