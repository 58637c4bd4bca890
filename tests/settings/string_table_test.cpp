#include "settings/string_table.h"

#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

#include <vector>

namespace kvx::test {
namespace {

LocaleQuery UserLocale(std::optional<std::u16string> name) {
    return [name] { return name; };
}

TEST(LocaleName, FollowsTheChoiceAndElseTheUsersLocale) {
    struct Row {
        UiLanguage choice;
        std::optional<std::u16string> userLocale;
        UiLanguage effective;
    };
    const std::vector<Row> rows = {
        {UiLanguage::English, u"ja-JP", UiLanguage::English},
        {UiLanguage::Japanese, u"en-US", UiLanguage::Japanese},
        {UiLanguage::System, u"ja", UiLanguage::Japanese},
        {UiLanguage::System, u"javanese", UiLanguage::Japanese}, // only two letters count
        {UiLanguage::System, u"JA-jp", UiLanguage::English},
        {UiLanguage::System, u"j", UiLanguage::English},
        {UiLanguage::System, std::nullopt, UiLanguage::English},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::PrintToString(row.userLocale));
        const LocaleQuery query = UserLocale(row.userLocale);
        const bool japanese = row.effective == UiLanguage::Japanese;
        EXPECT_EQ(ResolveEffectiveLanguage(row.choice, query), row.effective);
        EXPECT_EQ(ResolveLocaleName(row.choice, query), japanese ? u"ja-JP" : u"en-US");
    }
}

TEST(StringFile, GivesOneTextPerLine) {
    const std::vector<std::pair<std::string, StringMap>> rows = {
        {"\n\r\n\n", {}},
        {"\xEF\xBB\xBF#x=1\r\na=1\r\nb=2", {{"a", u"1"}, {"b", u"2"}}},
        {" \t a\t = \t 1 = 2 \t\r\n", {{"a", u"1 = 2"}}},
        {"a=\nno equals sign\n  # note = x\n", {{"a", u""}, {"# note", u"x"}}},
        {"a=1\na=2\n", {{"a", u"1"}}},
        {"a=&Find...\tCtrl+F\\n\n", {{"a", u"&Find...\tCtrl+F\\n"}}},
        {"é日😀=日本語(&J)\n", {{"????", u"日本語(&J)"}}}, // a question mark per 16-bit unit
        {"a=\xFFx\xE3\x81\n", {{"a", u"\uFFFDx\uFFFD\uFFFD"}}},
        {std::string("a=1\0b\n", 6), {{"a", std::u16string(u"1\0b", 3)}}},
    };
    for (const auto& [text, table] : rows)
        EXPECT_EQ(ParseStringFile(text), table) << testing::PrintToString(text);
}

TEST(StringTableTest, ReadsTheFileOfTheLanguageOnceAndShowsTheKeyOfAMissingText) {
    const TempFolder folder;
    const auto english = folder.Root() / "resources" / "strings" / "en-US.txt";
    std::filesystem::create_directories(english.parent_path());
    folder.Write(u"resources/strings/ja-JP.txt", "a=ファイル(&F)\n");
    std::u16string userLocale = u"ja-JP";
    StringTable table([&] { return userLocale; });
    table.SetBaseFolder(folder.Root().u16string());
    EXPECT_EQ(table.Get("a"), u"ファイル(&F)");
    userLocale = u"en-US";
    EXPECT_EQ(table.Get("a"), u"ファイル(&F)"); // until a language is chosen
    table.SetLanguage(UiLanguage::English);
    EXPECT_EQ(table.Get("a"), u"a"); // never another language's
    EXPECT_EQ(table.Get("\xE9"), u"\u00E9");
    folder.Write(u"resources/strings/en-US.txt", "a=too late\n");
    folder.Write(u"resources/strings/ja-JP.txt", "a=too late\n");
    EXPECT_EQ(table.Get("a"), u"a");
    table.SetLanguage(UiLanguage::Japanese);
    EXPECT_EQ(table.Get("a"), u"ファイル(&F)");
}

} // namespace
} // namespace kvx::test
