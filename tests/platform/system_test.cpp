#include "platform/system.h"

#include "platform/text.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace kvx {
namespace {

TEST(System, JoinsAFolderAndANameWithOneSeparator) {
    const std::u16string separator = std::filesystem::path("/").make_preferred().u16string();
    EXPECT_EQ(JoinPath(u"folder", u"name"), u"folder" + separator + u"name");
    EXPECT_EQ(JoinPath(u"folder/", u"name"), u"folder/name");
    EXPECT_EQ(JoinPath(u"C:\\", u"name"), u"C:\\name");
    EXPECT_EQ(JoinPath(u"", u"name"), u"name");
}

TEST(System, TakesTheFileNameAfterTheLastSeparatorOfEitherKind) {
    EXPECT_EQ(FileNameOf(u"C:\\data\\a.bin"), u"a.bin");
    EXPECT_EQ(FileNameOf(u"/data\\x/a.bin"), u"a.bin");
    EXPECT_EQ(FileNameOf(u"a.bin"), u"a.bin");
    EXPECT_EQ(FileNameOf(u"folder/"), u"");
}

TEST(System, ParentFolderIsWhatTheFileSystemLibrarySays) {
    for (const char16_t* path : {u"a.bin", u"/a.bin", u"/x/a.bin", u"x/y/", u"", u"C:\\a.bin",
                                 u"C:a.bin", u"\\\\server\\share\\a.bin", u"/\u65E5/\U0001F600"})
        EXPECT_EQ(ParentFolder(path), std::filesystem::path(path).parent_path().u16string());
}

TEST(System, KnowsTheRunningProgramAndItsSurroundings) {
    EXPECT_TRUE(FileNameOf(ProgramPath()).starts_with(u"kivra_platform_tests"));
    EXPECT_TRUE(std::filesystem::exists(ProgramPath()));
    EXPECT_EQ(JoinPath(ProgramFolder(), FileNameOf(ProgramPath())), ProgramPath());
    EXPECT_EQ(CurrentFolder(), std::filesystem::current_path().u16string());
    EXPECT_EQ(PackageFamilyName(), std::nullopt);
    const std::u16string locale = UserLocaleName().value_or(u"en-US");
    EXPECT_EQ(locale.find(u'_'), std::u16string::npos);
    EXPECT_GE(locale.size(), 2U);
    const std::uint64_t before = TickCount();
    EXPECT_GT(before, 0U);
    EXPECT_LT(TickCount() - before, 60'000U);
}

} // namespace
} // namespace kvx
