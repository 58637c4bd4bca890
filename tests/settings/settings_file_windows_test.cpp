// What only Windows enforces: locks and the read-only attribute.
#include "platform/win32/handle.h"
#include "settings/settings_file.h"
#include "tests/settings/settings_printer.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <chrono>
#include <thread>

namespace kvx::test {
namespace {

class OnDisk : public testing::Test {
protected:
    const TempFolder folder;
    const std::u16string path = folder.Path(u"kivra.settings.json");
    const std::filesystem::path name = path;

    void SetUp() override { ASSERT_TRUE(SaveSettings(path, {}).ok); }
    void TearDown() override { ::SetFileAttributesW(name.c_str(), FILE_ATTRIBUTE_NORMAL); }

    /// Opens the file as a program does that lets nobody else in.
    UniqueFileHandle Lock() const {
        UniqueFileHandle handle(::CreateFileW(name.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING,
                                              FILE_ATTRIBUTE_NORMAL, nullptr));
        EXPECT_TRUE(handle);
        return handle;
    }
};

AppSettings Changed() {
    AppSettings settings;
    settings.theme = Theme::Black;
    return settings;
}

TEST_F(OnDisk, LockedSettingsKeepTheRunningOnesAndTheFile) {
    AppSettings running = Changed();
    {
        const UniqueFileHandle lock = Lock();
        LoadSettings(path, running);
        EXPECT_EQ(running, Changed());
        const SettingsSaveResult result = SaveSettings(path, running);
        EXPECT_FALSE(result.ok);
        EXPECT_EQ(result.message, u"Failed to open settings file for writing: " + path);
    }
    LoadSettings(path, running);
    EXPECT_EQ(running, AppSettings{});
}

TEST_F(OnDisk, SettingsLockedForAMomentAreLoaded) {
    AppSettings running = Changed();
    std::thread holder(
        [lock = Lock()] { std::this_thread::sleep_for(std::chrono::milliseconds(60)); });
    LoadSettings(path, running);
    holder.join();
    EXPECT_EQ(running, AppSettings{});
}

TEST_F(OnDisk, ReadOnlySettingsAreLoadedButNotWritten) {
    ASSERT_TRUE(::SetFileAttributesW(name.c_str(), FILE_ATTRIBUTE_READONLY));
    AppSettings running = Changed();
    LoadSettings(path, running);
    EXPECT_EQ(running, AppSettings{});

    const UniqueFileHandle probe(::CreateFileW(name.c_str(), GENERIC_WRITE, 0, nullptr,
                                               OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (probe) GTEST_SKIP() << "this user may write to read-only files (root under Wine)";
    const SettingsSaveResult result = SaveSettings(path, Changed());
    EXPECT_FALSE(result.ok);
    EXPECT_EQ(result.message, u"Failed to open settings file for writing: " + path);
    LoadSettings(path, running);
    EXPECT_EQ(running, AppSettings{});
}

} // namespace
} // namespace kvx::test
