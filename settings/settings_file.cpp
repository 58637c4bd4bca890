#include "settings/settings_file.h"

#include "platform/system.h"
#include "platform/text.h"
#include "settings/file_text.h"

#include <chrono>
#include <exception>
#include <filesystem>
#include <memory>
#include <optional>
#include <system_error>
#include <thread>

namespace kvx {
namespace {

constexpr ErrorCode kSharingViolation = 32;
constexpr int kOpenTries = 11;
constexpr std::chrono::milliseconds kPauseBetweenTries{20};

/// Opens a file by `open(error)`, trying again while another program has it locked. That is most
/// often a second window of this one amid its own save, and giving up on its settings would end in
/// saving the defaults over them. Null on failure.
template <typename Open>
auto OpenPatiently(Open open) {
    ErrorCode error = 0;
    auto file = open(error);
    for (int tries = 1; file == nullptr && error == kSharingViolation && tries < kOpenTries;
         ++tries) {
        std::this_thread::sleep_for(kPauseBetweenTries);
        file = open(error);
    }
    return file;
}

SettingsSaveResult SaveFailure(std::u16string_view what, std::u16string_view reason) {
    return {false, std::u16string(what).append(reason)};
}

constexpr std::u16string_view kOpenFailed = u"Failed to open settings file for writing: ";
constexpr std::u16string_view kSaveFailed = u"Failed to save settings: ";
constexpr std::u16string_view kFolderFailed = u"Failed to create packaged settings directory: ";

/// The text is complete before the file is touched.
SettingsSaveResult WriteFile(const std::u16string& path, const AppSettings& settings,
                             FileLayer& files) {
    const std::string text = WriteSettingsText(settings);
    const std::unique_ptr<WritableFile> file =
        OpenPatiently([&](ErrorCode& error) { return files.CreateForWriting(path, error); });
    if (!file) return SaveFailure(kOpenFailed, path);

    const ByteView bytes(reinterpret_cast<const std::uint8_t*>(text.data()), text.size());
    const FileResult written = WriteAll(*file, bytes);
    if (!written) return SaveFailure(kSaveFailed, Win32ErrorText(written.error));
    return {};
}

} // namespace

std::u16string ResolveSettingsPath(std::u16string& error) {
    error.clear();
    const std::optional<std::u16string> family = PackageFamilyName();
    const std::u16string folder =
        family ? MakePackagedSettingsFolder(LocalAppDataFolder(), *family, error) : ProgramFolder();
    return JoinPath(folder, u"kivra.settings.json");
}

std::u16string MakePackagedSettingsFolder(const std::optional<std::u16string>& localAppData,
                                          const std::u16string& packageFamily,
                                          std::u16string& error) {
    error.clear();
    if (!localAppData) {
        error = std::u16string(kFolderFailed) + u"no local application data folder";
        return ProgramFolder();
    }
    const std::u16string packages = JoinPath(*localAppData, u"Packages");
    std::u16string folder = JoinPath(JoinPath(packages, packageFamily), u"LocalState");
    std::error_code failure;
    std::filesystem::create_directories(std::filesystem::path(folder), failure);
    if (failure) error = std::u16string(kFolderFailed) + Utf8ToUtf16(failure.message());
    return folder;
}

void LoadSettings(const std::u16string& path, AppSettings& settings, FileLayer& files) {
    try {
        const std::unique_ptr<ReadableFile> file =
            OpenPatiently([&](ErrorCode& error) { return files.OpenForReading(path, error); });
        if (!file) return;
        const std::optional<std::string> text = ReadWholeFile(*file);
        if (!text) return;
        AppSettings loaded = settings;
        ReadSettingsText(*text, loaded);
        settings = std::move(loaded);
    } catch (const std::exception&) {
        // A file too large for the memory counts as unreadable.
    }
}

SettingsSaveResult SaveSettings(const std::u16string& path, const AppSettings& settings,
                                FileLayer& files) noexcept {
    try {
        try {
            return WriteFile(path, settings, files);
        } catch (const std::exception& exception) {
            return SaveFailure(kSaveFailed, Utf8ToUtf16(exception.what()));
        }
    } catch (...) {
        return {false, {}}; // not even the message could be made
    }
}

} // namespace kvx
