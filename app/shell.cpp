#include "app/shell.h"

#include "app/menu_model.h"
#include "app/pane_commands.h"
#include "app/status_text.h"
#include "app/window_title.h"
#include "settings/settings_file.h"

#include <utility>

namespace kvx {

Shell::Shell(ShellHost& host, PaneHost& paneHost, HexView& view, FileLayer& files)
    : host_(host), view_(view), document_(files), panes_(paneHost) {}

void Shell::Load(std::u16string programFolder, std::u16string settingsPath) {
    strings_.SetBaseFolder(std::move(programFolder));
    settingsPath_ = std::move(settingsPath);
    LoadSettings(settingsPath_, settings_);
    strings_.SetLanguage(settings_.uiLanguage);
    const AppSettings defaults;
    if (!(settings_.fontSize > 0.0F)) settings_.fontSize = defaults.fontSize;
    if (settings_.fontFamily.empty()) settings_.fontFamily = defaults.fontFamily;
}

SaveChangesAnswer Shell::AskSaveChanges() {
    return WhileModal([this](ShellHost& host) {
        return host.AskSaveChanges(Text("confirm.save_changes"), Text("app.title"));
    });
}

void Shell::ShowError(const std::u16string& text, std::string_view captionKey) {
    WhileModal([&](ShellHost& host) { host.ShowError(text, Text(captionKey)); });
}

std::optional<std::u16string> Shell::ChooseFileToOpen() {
    return WhileModal(
        [this](ShellHost& host) { return host.ChooseFile(Text("dialog.open.title")); });
}

void Shell::ApplySettingsToView() {
    view_.SetEncoding(settings_.textEncoding);
    view_.SetTheme(settings_.theme);
    view_.SetFont(settings_.fontFamily, settings_.fontSize, settings_.bold, settings_.italic);
}

void Shell::AttachDocument() {
    view_.SetDocument(&document_, &document_);
}

void Shell::RebuildMenu() {
    host_.ShowMenu(BuildMenuBar(CurrentMenuState(), TextsByKey()));
}

void Shell::UpdateTitle() {
    host_.ShowTitle(WindowTitle(Text("app.title"),
                                document_.IsOpen() ? document_.GetPath() : std::u16string(),
                                document_.IsModified()));
}

void Shell::RefreshStatus() {
    host_.ShowStatus(StatusText(CurrentStatusState(), TextsByKey()),
                     flash_ ? StatusFlashColors() : StatusColorsOf(view_.State().theme));
}

void Shell::RefreshAll() {
    RebuildMenu();
    UpdateTitle();
    RefreshStatus();
    SchedulePaneUpdates(*this);
}

void Shell::ShowStatusBackground() {
    host_.SetStatusBackground(StatusColorsOf(view_.State().theme));
}

void Shell::SaveSettings() {
    settings_.appVersion = kAppVersionLabel;
    kvx::SaveSettings(settingsPath_, settings_);
}

void Shell::BeginSave() {
    BeginProgress("status.saving");
    saving_ = true;
    RebuildMenu();
    host_.EnableHexView(false);
    RefreshStatus();
    host_.PaintStatusNow();
    host_.PumpMessages();
}

// Showing progress must never break the save that it tells of.
void Shell::ReportSaveProgress(std::uint64_t done, std::uint64_t total) noexcept {
    try {
        ShowProgress("status.saving", done, total);
    } catch (...) {}
}

void Shell::EndSave() noexcept {
    host_.EnableHexView(true);
    progress_.reset();
    saving_ = false;
}

void Shell::BeginSearch() {
    BeginProgress("status.searching");
    RefreshStatus();
}

void Shell::ReportSearchProgress(std::uint64_t done, std::uint64_t total) {
    ShowProgress("status.searching", done, total);
}

void Shell::BeginProgress(std::string_view textKey) {
    progress_ = Text(textKey);
    throttle_ = {};
}

void Shell::ShowProgress(std::string_view textKey, std::uint64_t done, std::uint64_t total) {
    const auto percent = throttle_.Report(done, total, host_.Tick());
    if (!percent) return;
    const std::string number = std::to_string(*percent);
    progress_ = Text(textKey) + u" " + std::u16string(number.begin(), number.end()) + u"%";
    RefreshStatus();
    host_.PaintStatusNow();
    host_.PumpMessages();
}

void Shell::OnViewChanged() {
    UpdateTitle();
    RefreshStatus();
    SchedulePaneUpdates(*this);
}

void Shell::OnEditRefused() {
    flash_ = Text("status.readonly_blocked");
    host_.StartFlashTimer();
    host_.SoundWarning();
    RefreshStatus();
}

void Shell::OnFlashTimer() {
    host_.StopFlashTimer();
    flash_.reset();
    RefreshStatus();
}

MenuState Shell::CurrentMenuState() const {
    const HexViewState& view = view_.State();
    // The menu nests one level for every eight files, and the settings file may hold any number.
    std::vector<std::u16string> recentFiles = settings_.recentFiles;
    if (recentFiles.size() > kMaxRecentFiles) recentFiles.resize(kMaxRecentFiles);
    // A search greys nothing: its dialog keeps the menu out of reach, and nothing would build the
    // menu again at its end.
    return {.busy = saving_,
            .fileOpen = document_.IsOpen(),
            .editable = view.editable,
            .encoding = view.encoding,
            .favoriteEncodings = settings_.favoriteEncodings,
            .theme = view.theme,
            .language = strings_.Language(),
            .dataInspectorVisible = settings_.dataInspectorVisible,
            .structViewVisible = settings_.structViewVisible,
            .recentFiles = std::move(recentFiles)};
}

StatusState Shell::CurrentStatusState() const {
    StatusState state{flash_, progress_, std::nullopt};
    if (!document_.IsOpen()) return state;
    const HexViewState& view = view_.State();
    state.file = StatusFields{view.caret,
                              document_.GetSize(),
                              view.encoding,
                              view.editable,
                              view.insertMode == InsertMode::Insert,
                              document_.IsModified(),
                              view.zoom};
    return state;
}

} // namespace kvx
