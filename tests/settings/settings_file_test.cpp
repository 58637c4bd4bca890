#include "settings/settings_file.h"

#include "platform/system.h"
#include "settings/file_text.h"
#include "tests/settings/settings_printer.h"
#include "tests/support/temp_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <memory>
#include <random>
#include <stdexcept>

namespace kvx::test {
namespace {

const std::u16string kName = u"kivra.settings.json";

AppSettings Sample() {
    AppSettings settings;
    settings.appVersion = kAppVersionLabel;
    settings.theme = Theme::Light;
    settings.recentFiles = {u"C:\\日本.bin"};
    return settings;
}

AppSettings Loaded(const std::u16string& path, FileLayer& files = SystemFileLayer()) {
    AppSettings settings = Sample();
    settings.fontFamily = u"as it was";
    LoadSettings(path, settings, files);
    return settings;
}

AppSettings Untouched() {
    return Loaded(u"");
}

TEST(SettingsFile, GivesBackWhatWasSaved) {
    const TempFolder folder;
    const SettingsSaveResult result = SaveSettings(folder.Path(kName), Sample());
    EXPECT_TRUE(result.ok);
    EXPECT_EQ(result.message, u"");
    EXPECT_EQ(folder.Read(kName), WriteSettingsText(Sample()));
    EXPECT_EQ(Loaded(folder.Path(kName)), Sample());
}

TEST(SettingsFile, ReplacesALongerFileWhole) {
    const TempFolder folder;
    folder.Write(kName, std::string(100000, 'x'));
    EXPECT_TRUE(SaveSettings(folder.Path(kName), Sample()).ok);
    EXPECT_EQ(folder.Read(kName), WriteSettingsText(Sample()));
}

TEST(SettingsFile, ThatIsMissingOrAFolderOrEmptyChangesNothing) {
    const TempFolder folder;
    folder.Write(u"empty", "");
    std::filesystem::create_directory(folder.Root() / "folder");
    for (const char16_t* name : {u"missing", u"folder", u"empty", u"empty/below"})
        EXPECT_EQ(Loaded(folder.Path(name)), Untouched());
}

TEST(SettingsFile, OfRandomBytesChangesNothing) {
    const TempFolder folder;
    std::mt19937 random(3);
    std::string bytes(1 << 20, '\0');
    for (char& byte : bytes)
        byte = static_cast<char>(random());
    folder.Write(kName, bytes);
    EXPECT_EQ(Loaded(folder.Path(kName)), Untouched());
}

TEST(SettingsFile, OfAHundredMebibytesIsReadToItsEnd) {
    const TempFolder folder;
    const std::filesystem::path file = folder.Write(kName, R"("theme": "Black")");
    std::filesystem::resize_file(file, 100U << 20U);
    std::ofstream(file, std::ios::binary | std::ios::app) << R"("recentFiles": [])";
    AppSettings expected = Untouched();
    expected.theme = Theme::Black;
    expected.recentFiles.clear();
    EXPECT_EQ(Loaded(folder.Path(kName)), expected);
}

TEST(SettingsFile, TooLargeToBeSettingsChangesNothing) {
    const TempFolder folder;
    const std::filesystem::path file = folder.Write(kName, R"("theme": "Black")");
    std::filesystem::resize_file(file, kMaxTextFileBytes + 1);
    EXPECT_EQ(Loaded(folder.Path(kName)), Untouched());
}

TEST(SettingsFile, NamesThePathThatCannotBeWritten) {
    const TempFolder folder;
    std::filesystem::create_directory(folder.Root() / "folder");
    for (const char16_t* name : {u"no such folder/x.json", u"folder"}) {
        const SettingsSaveResult result = SaveSettings(folder.Path(name), Sample());
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

class Unreadable : public ReadableFile {
public:
    std::optional<std::uint64_t> Size() const override { return 100; }
    std::optional<std::size_t> ReadAt(std::uint64_t, std::span<std::uint8_t>,
                                      ErrorCode& error) const override {
        error = 23;
        return std::nullopt;
    }
};

/// Gives a few bytes per read, and none past a size that it claims too large.
class Trickling : public ReadableFile {
public:
    explicit Trickling(std::string text) : text_(std::move(text)) {}
    std::optional<std::uint64_t> Size() const override { return text_.size() + 1000; }
    std::optional<std::size_t> ReadAt(std::uint64_t offset, std::span<std::uint8_t> target,
                                      ErrorCode&) const override {
        return text_.copy(reinterpret_cast<char*>(target.data()),
                          std::min<std::size_t>(target.size(), 7), offset);
    }

private:
    std::string text_;
};

TEST(SettingsFile, IsReadInAsManyPiecesAsItComesAndMayShrink) {
    MockFileLayer files;
    EXPECT_CALL(files, OpenForReading)
        .WillOnce(testing::Return(
            testing::ByMove(std::make_unique<Trickling>(WriteSettingsText(Sample())))));
    EXPECT_EQ(Loaded(u"x", files), Sample());
}

TEST(SettingsFile, TellsWhyWritingFailed) {
    MockFileLayer files;
    EXPECT_CALL(files, CreateForWriting)
        .WillOnce(testing::Return(testing::ByMove(std::make_unique<FullDisk>())))
        .WillOnce(testing::Throw(std::runtime_error("boom")));
    const SettingsSaveResult full = SaveSettings(u"x", Sample(), files);
    EXPECT_FALSE(full.ok);
    EXPECT_EQ(full.message, u"Failed to save settings: " + Win32ErrorText(112));
    const SettingsSaveResult thrown = SaveSettings(u"x", Sample(), files);
    EXPECT_FALSE(thrown.ok);
    EXPECT_EQ(thrown.message, u"Failed to save settings: boom");
}

TEST(SettingsFile, NeverLetsAnExceptionOutOfASave) {
    MockFileLayer files;
    EXPECT_CALL(files, CreateForWriting).WillOnce(testing::Throw(7));
    EXPECT_FALSE(SaveSettings(u"x", Sample(), files).ok);
}

TEST(SettingsFile, ThatFailsAmidReadingChangesNothing) {
    MockFileLayer files;
    EXPECT_CALL(files, OpenForReading)
        .WillOnce(testing::Return(testing::ByMove(std::make_unique<Unreadable>())))
        .WillOnce(testing::Throw(std::bad_alloc()));
    EXPECT_EQ(Loaded(u"x", files), Untouched());
    EXPECT_EQ(Loaded(u"x", files), Untouched());
}

TEST(SettingsFile, WaitsForAnotherProgramToUnlockIt) {
    const TempFolder folder;
    const std::u16string path = folder.Path(kName);
    MockFileLayer files;
    int tries = 0;
    EXPECT_CALL(files, CreateForWriting)
        .Times(3)
        .WillRepeatedly([&tries](const std::u16string& name, ErrorCode& error) {
            error = 32;
            return ++tries < 3 ? nullptr : SystemFileLayer().CreateForWriting(name, error);
        });
    EXPECT_CALL(files, OpenForReading)
        .Times(3)
        .WillRepeatedly([&tries](const std::u16string& name, ErrorCode& error) {
            error = 32;
            return --tries > 0 ? nullptr : SystemFileLayer().OpenForReading(name, error);
        });
    EXPECT_TRUE(SaveSettings(path, Sample(), files).ok);
    EXPECT_EQ(Loaded(path, files), Sample());
}

TEST(SettingsFile, GivesUpOnALockAndAtOnceOnOtherErrors) {
    const auto refuse = [](ErrorCode code) {
        return [code](const std::u16string&, ErrorCode& error) {
            error = code;
            return nullptr;
        };
    };
    MockFileLayer locked;
    EXPECT_CALL(locked, CreateForWriting).Times(11).WillRepeatedly(refuse(32));
    EXPECT_EQ(SaveSettings(u"C:\\x", Sample(), locked).message,
              u"Failed to open settings file for writing: C:\\x");
    MockFileLayer denied;
    EXPECT_CALL(denied, CreateForWriting).Times(1).WillRepeatedly(refuse(5));
    EXPECT_FALSE(SaveSettings(u"C:\\x", Sample(), denied).ok);
}

TEST(SettingsPath, IsBesideAnUnpackagedProgram) {
    std::u16string error = u"old";
    EXPECT_EQ(ResolveSettingsPath(error), JoinPath(ProgramFolder(), u"kivra.settings.json"));
    EXPECT_EQ(error, u"");
}

TEST(SettingsPath, OfAPackageIsCreatedOrItsFailureTold) {
    const TempFolder folder;
    std::u16string error = u"old";
    const std::u16string made = MakePackagedSettingsFolder(folder.Path(u"data"), u"Kivra_1", error);
    EXPECT_EQ(error, u"");
    const std::filesystem::path expected =
        folder.Root() / "data" / "Packages" / "Kivra_1" / "LocalState";
    EXPECT_TRUE(std::filesystem::is_directory(expected));
    EXPECT_EQ(std::filesystem::path(made), expected);

    folder.Write(u"Packages", "a file where a folder should be");
    MakePackagedSettingsFolder(folder.Root().u16string(), u"Kivra_1", error);
    const std::u16string_view beginning = u"Failed to create packaged settings directory: ";
    EXPECT_TRUE(error.starts_with(beginning));
    EXPECT_GT(error.size(), beginning.size());
}

} // namespace
} // namespace kvx::test
