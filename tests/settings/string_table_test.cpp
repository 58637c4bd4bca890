#include "settings/string_table.h"

#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

#include <optional>
#include <vector>

namespace kvx::test {
namespace {

LocaleQuery UserLocale(std::optional<std::u16string> name) {
    return [name] { return name; };
}

void WriteStrings(const TempFolder& folder, const std::u16string& locale, std::string_view text) {
    std::filesystem::create_directories(folder.Root() / "resources" / "strings");
    folder.Write(u"resources/strings/" + locale + u".txt", text);
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
        {UiLanguage::System, u"ja-JP", UiLanguage::Japanese},
        {UiLanguage::System, u"ja", UiLanguage::Japanese},
        {UiLanguage::System, u"javanese", UiLanguage::Japanese}, // only two letters count
        {UiLanguage::System, u"JA-jp", UiLanguage::English},
        {UiLanguage::System, u"Ja-JP", UiLanguage::English},
        {UiLanguage::System, u"j", UiLanguage::English},
        {UiLanguage::System, u"", UiLanguage::English},
        {UiLanguage::System, u"en-GB", UiLanguage::English},
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

TEST(LocaleName, AsksTheSystemOnlyForTheSystemLanguage) {
    int asked = 0;
    const LocaleQuery counting = [&asked]() -> std::optional<std::u16string> {
        ++asked;
        return u"ja-JP";
    };
    ResolveLocaleName(UiLanguage::English, counting);
    ResolveEffectiveLanguage(UiLanguage::Japanese, counting);
    EXPECT_EQ(asked, 0);
    ResolveLocaleName(UiLanguage::System, counting);
    EXPECT_EQ(asked, 1);
}

TEST(StringFile, GivesOneTextPerLine) {
    const std::vector<std::pair<std::string, StringMap>> rows = {
        {"", {}},
        {"\n\r\n\n", {}},
        {"a=1", {{"a", u"1"}}},
        {"a=1\nb=2\n", {{"a", u"1"}, {"b", u"2"}}},
        {"a=1\r\nb=2\r\n", {{"a", u"1"}, {"b", u"2"}}},
        {"\xEF\xBB\xBF"
         "a=1\n",
         {{"a", u"1"}}},
        {" \t a\t = \t 1 \t\r\n", {{"a", u"1"}}},
        {"key = value = more\n", {{"key", u"value = more"}}},
        {"a=\n", {{"a", u""}}},
        {"a==\n", {{"a", u"="}}},
        {"no equals sign\n", {}},
        {"#comment = 1\n", {}},
        {"  # note = x\n", {{"# note", u"x"}}},
        {"a=1\na=2\n", {{"a", u"1"}}},
        {"a=&Find...\tCtrl+F\\n\n", {{"a", u"&Find...\tCtrl+F\\n"}}},
        {"a=日本語(&J)\n", {{"a", u"日本語(&J)"}}},
        {"é日😀=x\n", {{"????", u"x"}}}, // one question mark per 16-bit unit
        {"a=\xFFx\xE3\x81\n", {{"a", u"\uFFFDx\uFFFD\uFFFD"}}},
        {std::string("a=1\0b\n", 6), {{"a", std::u16string(u"1\0b", 3)}}},
    };
    for (const auto& [text, table] : rows)
        EXPECT_EQ(ParseStringFile(text), table) << testing::PrintToString(text);
}

TEST(StringTableTest, GivesTheTextOfTheCurrentLanguage) {
    const TempFolder folder;
    WriteStrings(folder, u"en-US", "menu.file=&File\n");
    WriteStrings(folder, u"ja-JP", "menu.file=ファイル(&F)\n");
    StringTable table(UserLocale(u"ja-JP"));
    table.SetBaseFolder(folder.Root().u16string());
    EXPECT_EQ(table.Get("menu.file"), u"ファイル(&F)");
    table.SetLanguage(UiLanguage::English);
    EXPECT_EQ(table.Get("menu.file"), u"&File");
    table.SetLanguage(UiLanguage::Japanese);
    EXPECT_EQ(table.Get("menu.file"), u"ファイル(&F)");
}

TEST(StringTableTest, ShowsTheKeyForAMissingTextAndNeverAnotherLanguages) {
    const TempFolder folder;
    WriteStrings(folder, u"en-US", "menu.file.open=&Open...\n");
    WriteStrings(folder, u"ja-JP", "menu.file.save=上書き保存(&S)\n");
    StringTable table;
    table.SetBaseFolder(folder.Root().u16string());
    table.SetLanguage(UiLanguage::Japanese);
    EXPECT_EQ(table.Get("menu.file.open"), u"menu.file.open");
    EXPECT_EQ(table.Get("\xE9"), u"\u00E9"); // widened byte by byte, not decoded
}

TEST(StringTableTest, ReadsEachFileOnce) {
    const TempFolder folder;
    WriteStrings(folder, u"en-US", "a=first\n");
    StringTable table;
    table.SetBaseFolder(folder.Root().u16string());
    table.SetLanguage(UiLanguage::English);
    EXPECT_EQ(table.Get("a"), u"first");
    WriteStrings(folder, u"en-US", "a=second\n");
    EXPECT_EQ(table.Get("a"), u"first");
}

TEST(StringTableTest, LooksForAMissingFileOnce) {
    const TempFolder folder;
    StringTable table;
    table.SetBaseFolder(folder.Root().u16string());
    table.SetLanguage(UiLanguage::Japanese);
    EXPECT_EQ(table.Get("a"), u"a");
    WriteStrings(folder, u"ja-JP", "a=too late\n");
    EXPECT_EQ(table.Get("a"), u"a");
    table.SetLanguage(UiLanguage::English);
    EXPECT_EQ(table.Get("a"), u"a");
}

} // namespace
} // namespace kvx::test
