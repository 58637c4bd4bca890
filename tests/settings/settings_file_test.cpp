#include "settings/settings_file.h"

#include "platform/system.h"
#include "settings/file_text.h"
#include "tests/settings/settings_testing.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
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

/// Does what a test demands at each opening; nothing else is ever asked of it.
class ScriptedFiles final : public FileLayer {
public:
    std::function<std::unique_ptr<ReadableFile>(ErrorCode&)> read;
    std::function<std::unique_ptr<WritableFile>(ErrorCode&)> create;
    int openings = 0;

    std::unique_ptr<ReadableFile> OpenForReading(const std::u16string&, ErrorCode& error) override {
        return ++openings, read(error);
    }
    std::unique_ptr<WritableFile> CreateForWriting(const std::u16string&,
                                                   ErrorCode& error) override {
        return ++openings, create(error);
    }
    std::unique_ptr<WritableFile> OpenForWriting(const std::u16string&, ErrorCode&) override {
        return nullptr;
    }
    std::optional<std::u16string> MakeTempFile(const std::u16string&, std::u16string_view,
                                               ErrorCode&) override {
        return std::nullopt;
    }
    FileResult MoveOver(const std::u16string&, const std::u16string&) override { return {}; }
    FileResult Delete(const std::u16string&) override { return {}; }
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
    ScriptedFiles files;
    files.read = [](ErrorCode&) { return std::make_unique<FailsAmidReading>(); };
    EXPECT_EQ(Loaded(u"x", files), AppSettings{});
    files.read = [](ErrorCode&) -> std::unique_ptr<ReadableFile> { throw std::bad_alloc(); };
    EXPECT_EQ(Loaded(u"x", files), AppSettings{});
}

TEST(SettingsFile, TellsWhyWritingFailedAndLetsNoExceptionOut) {
    ScriptedFiles files;
    files.create = [](ErrorCode&) { return std::make_unique<FullDisk>(); };
    EXPECT_EQ(SaveSettings(u"x", kSample, files).message,
              u"Failed to save settings: " + Win32ErrorText(112));
    files.create = [](ErrorCode&) -> std::unique_ptr<WritableFile> {
        throw std::runtime_error("boom");
    };
    const SettingsSaveResult thrown = SaveSettings(u"x", kSample, files);
    EXPECT_FALSE(thrown.ok);
    EXPECT_EQ(thrown.message, u"Failed to save settings: boom");
}

TEST(SettingsFile, IsAwaitedWhileLockedButNotForLongNorAfterAnotherError) {
    ScriptedFiles files;
    ErrorCode code = 32;
    files.create = [&](ErrorCode& error) { return error = code, nullptr; };
    EXPECT_EQ(SaveSettings(u"C:\\x", kSample, files).message,
              u"Failed to open settings file for writing: C:\\x");
    EXPECT_EQ(files.openings, 11);
    code = 5;
    EXPECT_FALSE(SaveSettings(u"x", kSample, files).ok);
    EXPECT_EQ(files.openings, 12);
    const TempFolder folder;
    const std::u16string path = folder.Write(kName, WriteSettingsText(kSample));
    files.read = [&](ErrorCode& error) {
        error = 32;
        return files.openings < 15 ? nullptr : SystemFileLayer().OpenForReading(path, error);
    };
    EXPECT_EQ(Loaded(path, files), kSample);
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
}

} // namespace
} // namespace kvx::test
