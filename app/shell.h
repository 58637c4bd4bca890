// The shell without its windows: the settings, the texts and the document, and the showing of their
// state in the title, the menu and the status bar. The commands (file_commands.h, view_commands.h)
// work on it. Owned by the application window; main thread only.
#pragma once

#include "app/panes.h"
#include "app/progress_throttle.h"
#include "app/shell_host.h"
#include "document/editable_document.h"
#include "hexview/hex_view.h"
#include "settings/app_settings.h"
#include "settings/string_table.h"

#include <cstdint>
#include <optional>
#include <string>

namespace kvx {

/// How long the read-only warning stays.
inline constexpr std::uint32_t kFlashMs = 900;

class Shell {
public:
    /// All of these must outlive the shell. Files are opened through `files`.
    Shell(ShellHost& host, PaneHost& paneHost, HexView& view, FileLayer& files = SystemFileLayer());

    /// Says where the string files (in resources/strings/ of `programFolder`) and the settings file
    /// are, and loads the settings.
    void Load(std::u16string programFolder, std::u16string settingsPath);

    ShellHost& Host() { return host_; }
    AnalysisPanes& Panes() { return panes_; }
    HexView& View() { return view_; }
    EditableDocument& Document() { return document_; }
    const EditableDocument& Document() const { return document_; }
    AppSettings& Settings() { return settings_; }
    const AppSettings& Settings() const { return settings_; }
    StringTable& Strings() { return strings_; }
    std::u16string Text(std::string_view key) const { return strings_.Get(key); }

    TextLookup TextsByKey() const {
        return [this](std::string_view key) { return Text(key); };
    }

    /// False while a save or a search runs or a question waits for its answer: commands that arrive
    /// meanwhile (by whatever way) are dropped, so that none runs inside another.
    bool AcceptsCommands() const { return !Busy() && modalDepth_ == 0; }

    /// True while a save or a search runs.
    bool Busy() const { return progress_.has_value(); }
    bool Saving() const { return saving_; }

    // Modal boxes; the caption is the program's title unless another key is given.
    SaveChangesAnswer AskSaveChanges();
    void ShowError(const std::u16string& text, std::string_view captionKey = "app.title");
    std::optional<std::u16string> ChooseFileToOpen();

    /// Gives what `ask` does, which shows something modal on the host.
    template <typename Ask>
    auto WhileModal(Ask ask) {
        const ModalScope modal(modalDepth_);
        return ask(host_);
    }

    // Showing the state.
    void ApplySettingsToView();
    void AttachDocument(); ///< to the view, which starts anew and read-only
    void RebuildMenu();
    void UpdateTitle();
    void RefreshStatus();
    void RefreshAll(); ///< menu, title, status and panes
    void ShowStatusBackground();

    /// Stores the version label and writes the settings file. A file that cannot be written is no
    /// reason to stop the user: the settings then last as long as the program.
    void SaveSettings();

    // A running save: between Begin and End the shell is busy and shows the progress.
    void BeginSave();
    void ReportSaveProgress(std::uint64_t done, std::uint64_t total) noexcept;
    void EndSave() noexcept;

    // The same of a running search.
    void BeginSearch();
    void ReportSearchProgress(std::uint64_t done, std::uint64_t total);
    void EndSearch() noexcept { progress_.reset(); }

    // Notifications.
    void OnViewChanged();
    void OnEditRefused();
    void OnFlashTimer();

private:
    // Counts a modal box while it is on the screen.
    class ModalScope {
    public:
        explicit ModalScope(int& depth) : depth_(depth) { ++depth_; }
        ~ModalScope() { --depth_; }
        ModalScope(const ModalScope&) = delete;
        ModalScope& operator=(const ModalScope&) = delete;

    private:
        int& depth_;
    };

    void BeginProgress(std::string_view textKey);
    void ShowProgress(std::string_view textKey, std::uint64_t done, std::uint64_t total);
    MenuState CurrentMenuState() const;
    StatusState CurrentStatusState() const;

    ShellHost& host_;
    HexView& view_;
    EditableDocument document_;
    AppSettings settings_;
    StringTable strings_;
    std::u16string settingsPath_;
    std::optional<std::u16string> flash_;    ///< the read-only warning while it is shown
    std::optional<std::u16string> progress_; ///< the progress text while a save or a search runs
    ProgressThrottle throttle_;
    int modalDepth_ = 0; ///< questions that wait for their answer
    bool saving_ = false;
    AnalysisPanes panes_;
};

} // namespace kvx
