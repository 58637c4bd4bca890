#include "settings/settings_file.h"

#include "platform/system.h"
#include "settings/file_text.h"
#include "tests/settings/settings_testing.h"
#include "tests/support/temp_folder.h"

#include <gmock/gmock.h>
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

TEST(SettingsFile, NamesThePathThatCannotBeWritten) {
    const TempFolder folder;
    std::filesystem::create_directory(folder.Root() / "folder");
    for (const char16_t* name : {u"no such folder/x.json", u"folder"}) {
        const SettingsSaveResult result = SaveSettings(folder.Path(name), kSample);
        EXPECT_FALSE(result.ok);
        EXPECT_EQ(result.message,
                  u"Failed to open settings file for writing: " + folder.Path(name));
    }
}

/// Files that fail, throw or are locked as a test demands.
class MockFileLayer : public FileLayer {
public:
    MOCK_METHOD(std::unique_ptr<ReadableFile>, OpenForReading, (const std::u16string&, ErrorCode&),
                (override));
    MOCK_METHOD(std::unique_ptr<WritableFile>, OpenForWriting, (const std::u16string&, ErrorCode&),
                (override));
    MOCK_METHOD(std::unique_ptr<WritableFile>, CreateForWriting,
                (const std::u16string&, ErrorCode&), (override));
    MOCK_METHOD(std::optional<std::u16string>, MakeTempFile,
                (const std::u16string&, std::u16string_view, ErrorCode&), (override));
    MOCK_METHOD(FileResult, MoveOver, (const std::u16string&, const std::u16string&), (override));
    MOCK_METHOD(FileResult, Delete, (const std::u16string&), (override));
};

class FullDisk : public WritableFile {
public:
    FileResult Seek(std::uint64_t) override { return FileResult::Success(); }
    FileResult Write(ByteView, std::uint64_t&) override { return FileResult::Failure(112); }
    FileResult SetEnd() override { return FileResult::Success(); }
    FileResult Flush() override { return FileResult::Success(); }
};

class FailsAmidReading : public ReadableFile {
public:
    std::optional<std::uint64_t> Size() const override { return 1000; }
    std::optional<std::size_t> ReadAt(std::uint64_t offset, std::span<std::uint8_t> target,
                                      ErrorCode&) const override {
        if (offset > 0) return std::nullopt;
        return WriteSettingsText(kSample).copy(reinterpret_cast<char*>(target.data()), 500);
    }
};

TEST(SettingsFile, ThatFailsAmidReadingChangesNothing) {
    MockFileLayer files;
    EXPECT_CALL(files, OpenForReading)
        .WillOnce(testing::Return(testing::ByMove(std::make_unique<FailsAmidReading>())))
        .WillOnce(testing::Throw(std::bad_alloc()));
    EXPECT_EQ(Loaded(u"x", files), AppSettings{});
    EXPECT_EQ(Loaded(u"x", files), AppSettings{});
}

TEST(SettingsFile, TellsWhyWritingFailedAndLetsNoExceptionOut) {
    MockFileLayer files;
    EXPECT_CALL(files, CreateForWriting)
        .WillOnce(testing::Return(testing::ByMove(std::make_unique<FullDisk>())))
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
