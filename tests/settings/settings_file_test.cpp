#include "settings/settings_file.h"

#include "platform/system.h"
#include "settings/file_text.h"
#include "tests/settings/settings_testing.h"
#include "tests/support/mock_files.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <stdexcept>

namespace kvx::test {
namespace {

const std::u16string kName = u"kivra.settings.json";
const AppSettings kSample = AllChanged(TextEncoding::Utf8);

AppSettings Loaded(const std::u16string& path, FileLayer& files = SystemFileLayer()) {
    AppSettings settings;
    LoadSettings(path, settings, files);
    return settings;
}

TEST(SettingsFile, ReplacesALongerFileWholeAndIsReadBack) {
    const TempFolder folder;
    const std::u16string path = folder.Write(kName, std::string(100000, 'x'));
    const SettingsSaveResult result = SaveSettings(path, kSample);
    EXPECT_TRUE(result.ok);
    EXPECT_EQ(result.message, u"");
    EXPECT_EQ(folder.Read(kName), WriteSettingsText(kSample));
    EXPECT_EQ(Loaded(path), kSample);
}

TEST(SettingsFile, ThatIsMissingOrAFolderOrTooLargeChangesNothing) {
    const TempFolder folder;
    std::filesystem::create_directory(folder.Root() / "folder");
    const std::filesystem::path large = folder.Write(u"large", WriteSettingsText(kSample));
    for (const char16_t* name : {u"missing", u"folder", u"large/below"})
        EXPECT_EQ(Loaded(folder.Path(name)), AppSettings{});
    std::filesystem::resize_file(large, kMaxTextFileBytes / 4);
    EXPECT_EQ(Loaded(folder.Path(u"large")), kSample);
    std::filesystem::resize_file(large, kMaxTextFileBytes + 1);
    EXPECT_EQ(Loaded(folder.Path(u"large")), AppSettings{});
}

/// Gives the first half of the sample, then an error or the end.
class HalfOfTheSample : public ReadableFile {
public:
    explicit HalfOfTheSample(std::optional<std::size_t> then) : then_(then) {}
    std::optional<std::uint64_t> Size() const override { return 1000; }
    std::optional<std::size_t> ReadAt(std::uint64_t offset, std::span<std::uint8_t> target,
                                      ErrorCode&) const override {
        if (offset > 0) return then_;
        return WriteSettingsText(kSample).copy(reinterpret_cast<char*>(target.data()), 500);
    }

private:
    std::optional<std::size_t> then_;
};

TEST(SettingsFile, ThatFailsAmidReadingChangesNothingAndOneThatBecameShorterIsReadSoFar) {
    MockFileLayer files;
    const auto half = [](std::optional<std::size_t> then) {
        return testing::Return(testing::ByMove(std::make_unique<HalfOfTheSample>(then)));
    };
    EXPECT_CALL(files, OpenForReading)
        .WillOnce(half(std::nullopt))
        .WillOnce(testing::Throw(std::bad_alloc()))
        .WillOnce(half(0));
    EXPECT_EQ(Loaded(u"x", files), AppSettings{});
    EXPECT_EQ(Loaded(u"x", files), AppSettings{});
    AppSettings soFar;
    ReadSettingsText(WriteSettingsText(kSample).substr(0, 500), soFar);
    EXPECT_EQ(Loaded(u"x", files), soFar);
    EXPECT_NE(soFar, AppSettings{});
}

TEST(SettingsFile, TellsWhyWritingFailedAndLetsNoExceptionOut) {
    auto fullDisk = std::make_unique<MockWritableFile>();
    EXPECT_CALL(*fullDisk, Write).WillOnce(testing::Return(FileResult::Failure(112)));
    MockFileLayer files;
    EXPECT_CALL(files, CreateForWriting)
        .WillOnce(testing::Return(testing::ByMove(std::move(fullDisk))))
        .WillOnce(testing::Throw(std::runtime_error("boom")))
        .WillOnce(testing::Throw(7));
    EXPECT_EQ(SaveSettings(u"x", kSample, files).message,
              u"Failed to save settings: " + Win32ErrorText(112));
    EXPECT_EQ(SaveSettings(u"x", kSample, files).message, u"Failed to save settings: boom");
    EXPECT_FALSE(SaveSettings(u"x", kSample, files).ok);
}

TEST(SettingsFile, IsAwaitedWhileLockedButNotForLongNorAfterAnotherError) {
    const TempFolder folder;
    const std::u16string path = folder.Write(kName, WriteSettingsText(kSample));
    MockFileLayer files;
    int tries = 0;
    EXPECT_CALL(files, OpenForReading).WillRepeatedly([&](const auto& name, ErrorCode& error) {
        error = 32;
        return ++tries < 3 ? nullptr : SystemFileLayer().OpenForReading(name, error);
    });
    EXPECT_EQ(Loaded(path, files), kSample);
    EXPECT_CALL(files, CreateForWriting)
        .Times(11 + 1)
        .WillRepeatedly([&](const auto&, ErrorCode& error) {
            error = ++tries == 3 + 12 ? 5 : 32;
            return nullptr;
        });
    EXPECT_EQ(SaveSettings(path, kSample, files).message,
              u"Failed to open settings file for writing: " + path);
    EXPECT_FALSE(SaveSettings(path, kSample, files).ok);
}

TEST(SettingsPath, IsBesideAnUnpackagedProgram) {
    std::u16string error = u"old";
    EXPECT_EQ(ResolveSettingsPath(error), JoinPath(ProgramFolder(), kName));
    EXPECT_EQ(error, u"");
}

TEST(SettingsPath, OfAPackageIsCreatedOrItsFailureTold) {
    const TempFolder folder;
    std::u16string error = u"old";
    const std::filesystem::path made =
        MakePackagedSettingsFolder(folder.Path(u"data"), u"Kivra_1", error);
    EXPECT_EQ(error, u"");
    EXPECT_EQ(made, folder.Root() / "data" / "Packages" / "Kivra_1" / "LocalState");
    EXPECT_TRUE(std::filesystem::is_directory(made));

    folder.Write(u"Packages", "a file where a folder should be");
    MakePackagedSettingsFolder(folder.Root().u16string(), u"Kivra_1", error);
    const std::u16string_view beginning = u"Failed to create packaged settings directory: ";
    EXPECT_TRUE(error.starts_with(beginning));
    EXPECT_GT(error.size(), beginning.size());

    EXPECT_EQ(MakePackagedSettingsFolder(std::nullopt, u"Kivra_1", error), ProgramFolder());
    EXPECT_EQ(error, std::u16string(beginning) + u"no local application data folder");
}

} // namespace
} // namespace kvx::test
