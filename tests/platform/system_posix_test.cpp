#include "platform/system.h"

#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace kvx {
namespace {

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

} // namespace
} // namespace kvx
