// A shell without windows: a host that records what it is asked for, a hex view without a window,
// and a folder of real files.
#pragma once

#include "app/shell.h"
#include "tests/document/faulty_file_layer.h"
#include "tests/hexview/view_stage.h"
#include "tests/support/temp_folder.h"

#include <deque>
#include <functional>
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
    bool processesStart = true;
    std::function<void()> duringModal; ///< runs while a box is shown
    std::function<void()> duringPump;

    // What was shown.
    std::vector<std::u16string> boxes; ///< "text|caption", dialogs by their title
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

/// A started shell with nothing open; texts are their keys.
struct ShellRig {
    ShellRig() {
        shell.Load(folder.Root().u16string(), folder.Path(u"settings.json"));
        shell.ApplySettingsToView();
        shell.AttachDocument();
        shell.RefreshAll();
    }

    TempFolder folder;
    FaultyFileLayer files;
    ViewStage stage;
    RecordingShellHost host;
    Shell shell{host, stage.view, files};
};

} // namespace kvx
