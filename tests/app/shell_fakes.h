// A shell without windows: a host that records what it is asked for, a hex view without a window,
// and a folder of real files.
#pragma once

#include "app/command_dispatch.h"
#include "app/file_commands.h"
#include "app/shell.h"
#include "settings/settings_file.h"
#include "tests/document/faulty_file_layer.h"
#include "tests/hexview/view_stage.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <stdexcept>
#include <string>
#include <vector>

namespace kvx {

/// Texts of a string table without string files.
inline std::u16string KeyAsText(std::string_view key) {
    return {key.begin(), key.end()};
}

/// Answers questions from a list and keeps what was shown last.
class RecordingShellHost final : public ShellHost {
public:
    SaveChangesAnswer AskSaveChanges(const std::u16string& text,
                                     const std::u16string& caption) override {
        OnModal(text + u"|" + caption);
        const SaveChangesAnswer answer = answers.front();
        answers.pop_front();
        return answer;
    }
    void ShowError(const std::u16string& text, const std::u16string& caption) override {
        OnModal(text + u"|" + caption);
    }
    std::optional<std::u16string> ChooseFile(const std::u16string& dialogTitle) override {
        OnModal(dialogTitle);
        return chosenFile;
    }
    std::optional<std::u16string> Prompt(const PromptContent& content) override {
        OnModal(content.prompt + u"|" + content.title + u"|" + content.initialText);
        return typedLine;
    }
    void ShowSearchDialog(const SearchDialogContent& content, const TextLookup&) override {
        OnModal(u"search dialog");
        searchDialog = content;
    }
    std::optional<FontChoice> AskForFont(const FontDialogContent& content,
                                         const TextLookup&) override {
        OnModal(u"font dialog");
        fontDialog = content;
        return chosenFont;
    }
    void ShowAboutBox(const AboutContent& content, const TextLookup&) override {
        OnModal(u"about box");
        aboutBox = content;
    }
    std::vector<InstalledFont> InstalledFonts() override { return installedFonts; }
    bool StartProcess(const std::u16string& file) override {
        processes.push_back(file);
        return processesStart;
    }
    void ShowTitle(const std::u16string& text) override { title = text; }
    void ShowMenu(const std::vector<MenuItem>& menuBar) override { menu = menuBar; }
    void ShowStatus(const std::u16string& text, const StatusColors&) override { status = text; }
    void SetStatusBackground(const StatusColors& shown) override { background = shown; }
    void PaintStatusNow() override { painted.push_back(status); }
    void EnableHexView(bool enabled) override { viewEnabled = enabled; }
    void PumpMessages() override {
        if (duringPump) duringPump();
    }
    void StartFlashTimer() override {}
    void StopFlashTimer() override {}
    void SoundWarning() override {}
    std::uint64_t Tick() override { return tick += tickStep; }
    void DestroyMainWindow() override { destroyed = true; }

    // What the user does.
    std::deque<SaveChangesAnswer> answers;
    std::optional<std::u16string> chosenFile;
    std::optional<std::u16string> typedLine;
    std::optional<FontChoice> chosenFont;
    std::vector<InstalledFont> installedFonts;
    bool processesStart = true;
    std::function<void()> duringModal; ///< runs while a box is shown
    std::function<void()> duringPump;

    // What was shown.
    std::vector<std::u16string> boxes; ///< "text|caption", dialogs by their title
    SearchDialogContent searchDialog;
    FontDialogContent fontDialog;
    AboutContent aboutBox;
    std::vector<std::u16string> processes;
    std::u16string title;
    std::vector<MenuItem> menu;
    std::u16string status;
    StatusColors background;
    std::vector<std::u16string> painted; ///< status texts that were painted at once
    bool viewEnabled = true;
    std::uint64_t tick = 0;        ///< milliseconds
    std::uint64_t tickStep = 1000; ///< by which each look at the clock finds it moved
    bool destroyed = false;

private:
    void OnModal(const std::u16string& box) {
        boxes.push_back(box);
        if (duringModal) duringModal();
    }
};

/// What other threads leave for the test.
template <typename T>
class Mailbox {
public:
    void Put(T item) {
        const std::lock_guard lock(mutex_);
        items_.push_back(std::move(item));
        arrived_.notify_one();
    }
    /// Waits for the next one; throws when none comes.
    T Take() {
        std::unique_lock lock(mutex_);
        if (!arrived_.wait_for(lock, std::chrono::seconds(10), [this] { return !items_.empty(); }))
            throw std::runtime_error("Nothing came");
        T item = std::move(items_.front());
        items_.pop_front();
        return item;
    }

private:
    std::mutex mutex_;
    std::condition_variable arrived_;
    std::deque<T> items_;
};

/// Panes without windows. Rows from the workers wait until a test takes them.
class RecordingPaneHost final : public PaneHost {
public:
    bool CreateInspector(const InspectorModel&, const TextLookup&, Theme shownTheme) override {
        theme = shownTheme;
        return hasInspector = windowsCanBeMade;
    }
    void DestroyInspector() override { hasInspector = false; }
    bool HasInspector() const override { return hasInspector; }
    bool CreateStructView(StructViewModel&, const TextLookup&, Theme shownTheme) override {
        theme = shownTheme;
        return hasStructView = windowsCanBeMade;
    }
    void DestroyStructView() override { hasStructView = false; }
    bool HasStructView() const override { return hasStructView; }
    void ShowInspectorRows() override { ++inspectorShows; }
    void ShowStructRows() override { ++structShows; }
    void ShowStructPattern() override { ++patternShows; }
    void ShowTexts() override { ++textShows; }
    void ShowTheme(Theme shownTheme) override { theme = shownTheme; }
    std::optional<std::u16string> ChoosePattern(const std::u16string& title,
                                                const std::u16string& folder) override {
        dialogs.push_back(title + u"|" + folder);
        return chosenPattern;
    }
    bool IsStructViewActive() const override { return structViewActive; }
    void ActivateStructView() override { ++activations; }
    bool PostInspectorRows(std::unique_ptr<PostedInspectorRows>&& rows) override {
        inspectorRows.Put(std::move(*rows));
        return true;
    }
    bool PostStructRows(std::unique_ptr<PostedStructRows>&& rows) override {
        structRows.Put(std::move(*rows));
        return true;
    }

    bool windowsCanBeMade = true;
    std::optional<std::u16string> chosenPattern;
    bool structViewActive = false;
    bool hasInspector = false;
    bool hasStructView = false;

    // What was shown, and how often.
    Theme theme = Theme::Light;
    int inspectorShows = 0;
    int structShows = 0;
    int patternShows = 0;
    int textShows = 0;
    int activations = 0;
    std::vector<std::u16string> dialogs; ///< "title|folder"

    Mailbox<PostedInspectorRows> inspectorRows;
    Mailbox<PostedStructRows> structRows;
};

/// A started shell with nothing open; texts are their keys.
struct ShellRig {
    ShellRig() {
        shell.Load(folder.Root().u16string(), folder.Path(u"settings.json"));
        shell.ApplySettingsToView();
        shell.AttachDocument();
        shell.RefreshAll();
    }

    /// Opens a file of this content and gives its path.
    std::u16string Open(const std::string& content) {
        const std::u16string path = folder.Write(u"data.bin", content);
        EXPECT_TRUE(OpenFile(shell, path));
        return path;
    }
    void Run(Command command) { EXPECT_TRUE(DispatchCommand(shell, CommandId(command))); }

    /// What the settings file holds.
    AppSettings Stored() const {
        AppSettings stored;
        LoadSettings(folder.Path(u"settings.json"), stored);
        return stored;
    }

    TempFolder folder;
    FaultyFileLayer files;
    ViewStage stage;
    RecordingShellHost host;
    RecordingPaneHost paneHost;
    Shell shell{host, paneHost, stage.view, files};
};

} // namespace kvx
