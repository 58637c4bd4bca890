// The settings record on disk: kivra.settings.json, read at start and rewritten whole at each
// change.
#pragma once

#include "platform/file_layer.h"
#include "settings/app_settings.h"

#include <optional>
#include <string>
#include <string_view>

namespace kvx {

/// Result of a save; `message` says what failed and is empty on success.
struct SettingsSaveResult {
    bool ok = true;
    std::u16string message;
};

/// Full path of the settings file: in the package's LocalState folder (created if missing) when the
/// program runs packaged, else beside the program. `error` receives the reason when that folder
/// cannot be made, else it is emptied.
std::u16string ResolveSettingsPath(std::u16string& error);

/// Folder of a packaged program's settings under the user's local application data, created with
/// the folders above it if missing; the program's own without such data. `error` as above; the
/// folder is named even when it cannot be made.
std::u16string MakePackagedSettingsFolder(const std::optional<std::u16string>& localAppData,
                                          const std::u16string& packageFamily,
                                          std::u16string& error);

/// The file's text for `settings`: UTF-8, lines ending in CR LF.
std::string WriteSettingsText(const AppSettings& settings);

/// Takes over into `settings` every value found in `text`; what is absent or unusable stays as it
/// was.
void ReadSettingsText(std::string_view text, AppSettings& settings);

/// Reads the file at `path` into `settings`; a missing or unreadable file changes nothing. Waits a
/// fifth of a second for a file that another program has locked.
void LoadSettings(const std::u16string& path, AppSettings& settings,
                  FileLayer& files = SystemFileLayer());

/// Writes the whole file. Never throws. Waits for a locked file as LoadSettings does.
SettingsSaveResult SaveSettings(const std::u16string& path, const AppSettings& settings,
                                FileLayer& files = SystemFileLayer()) noexcept;

} // namespace kvx
