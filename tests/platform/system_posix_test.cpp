#include "platform/system.h"

#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

namespace kvx {
namespace {

TEST(SystemPosix, CurrentFolderMayBeLongerThanOldLimits) {
    const std::filesystem::path before = std::filesystem::current_path();
    const TempFolder folder;
    std::filesystem::path deep = folder.Root();
    while (deep.native().size() < 600)
        deep /= std::string(100, 'd');
    std::filesystem::create_directories(deep);
    std::filesystem::current_path(deep);
    EXPECT_EQ(CurrentFolder(), deep.u16string());
    std::filesystem::current_path(before);
}

TEST(SystemPosix, AVanishedCurrentFolderRaisesTheLibrarysError) {
    const std::filesystem::path before = std::filesystem::current_path();
    {
        const TempFolder folder;
        std::filesystem::current_path(folder.Root());
    }
    std::string what;
    try {
        CurrentFolder();
    } catch (const std::filesystem::filesystem_error& error) {
        what = error.what();
    }
    std::filesystem::current_path(before);
    EXPECT_NE(what.find("current_path()"), std::string::npos) << what;
}

TEST(SystemPosix, LocaleComesFromTheFirstVariableThatIsSet) {
    struct Case {
        const char* all;
        const char* messages;
        const char* lang;
        std::optional<std::u16string> name;
    };
    const Case cases[] = {
        {"ja_JP.UTF-8", "de_DE", "fr_FR", u"ja-JP"},
        {"", "sr_RS@latin", "fr_FR", u"sr-RS"},
        {"", "", "en_GB", u"en-GB"},
        {"C.UTF-8", "", "en_GB", std::nullopt},
        {"", "", "", std::nullopt},
    };
    for (const Case& c : cases) {
        ::setenv("LC_ALL", c.all, 1);
        ::setenv("LC_MESSAGES", c.messages, 1);
        ::setenv("LANG", c.lang, 1);
        EXPECT_EQ(UserLocaleName(), c.name) << c.all << " " << c.messages << " " << c.lang;
    }
}

} // namespace
} // namespace kvx
