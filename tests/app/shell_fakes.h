// A shell without windows: a host that records what it is asked for, a hex view without a window,
// and a folder of real files.
#pragma once

#include "app/shell.h"
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
class RecordingHost final : public ShellHost {
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
    void ShowMenu(const std::vector<MenuItem>& menuBar) override {
        menu = menuBar;
        ++menusShown;
    }
    void ShowStatus(const std::u16string& text, const StatusColors& shown) override {
        status = text;
        colors = shown;
    }
    void SetStatusBackground(const StatusColors& shown) override { background = shown; }
    void PaintStatusNow() override { painted.push_back(status); }
    void EnableHexView(bool enabled) override { viewEnabled = enabled; }
    void PumpMessages() override {
        if (duringPump) duringPump();
    }
    void StartFlashTimer() override { flashTimerRuns = true; }
    void StopFlashTimer() override { flashTimerRuns = false; }
    void SoundWarning() override { ++warnings; }
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
    int menusShown = 0;
    std::u16string status;
    StatusColors colors;
    StatusColors background;
    std::vector<std::u16string> painted; ///< status texts that were painted at once
    bool viewEnabled = true;
    bool flashTimerRuns = false;
    int warnings = 0;
    std::uint64_t tick = 0;        ///< milliseconds
    std::uint64_t tickStep = 1000; ///< by which each look at the clock finds it moved
    bool destroyed = false;

private:
    void OnModal(const std::u16string& box) {
        boxes.push_back(box);
        if (duringModal) duringModal();
    }
};

/// A hex view's window that is not there.
class NoHexViewWindow final : public HexViewHost {
public:
    void Invalidate() override {}
    void NotifyParent(HexViewNotification) override {}
    void SetScrollBars(const ScrollBar&, const ScrollBar&) override {}
    void CopyToClipboard(const std::u16string&) override {}
    void CaptureMouse() override {}
    void ReleaseMouse() override {}
    void TakeFocus() override {}
    void StartBlinkTimer() override {}
    void StopBlinkTimer() override {}
    void ReleaseDeviceResources() override {}
    std::uint32_t WindowDpi() const override { return 96; }
};

class FixedMeasurer final : public TextMeasurer {
public:
    float WidestCharacter(const FontSpec&, std::u16string_view) override { return 8.0F; }
    float LineHeight(const FontSpec&) override { return 16.0F; }
};

/// The system's files, of which none can be opened while that is refused.
class RefusingFiles final : public FileLayer {
public:
    std::unique_ptr<ReadableFile> OpenForReading(const std::u16string& path,
                                                 ErrorCode& error) override {
        if (!refusesReading) return SystemFileLayer().OpenForReading(path, error);
        error = kAccessDenied;
        return nullptr;
    }
    std::unique_ptr<WritableFile> OpenForWriting(const std::u16string& path,
                                                 ErrorCode& error) override {
        if (!refusesWriting) return SystemFileLayer().OpenForWriting(path, error);
        error = kAccessDenied;
        return nullptr;
    }
    std::unique_ptr<WritableFile> CreateForWriting(const std::u16string& path,
                                                   ErrorCode& error) override {
        return SystemFileLayer().CreateForWriting(path, error);
    }
    std::optional<std::u16string> MakeTempFile(const std::u16string& folder,
                                               std::u16string_view prefix,
                                               ErrorCode& error) override {
        return SystemFileLayer().MakeTempFile(folder, prefix, error);
    }
    FileResult MoveOver(const std::u16string& from, const std::u16string& to) override {
        return SystemFileLayer().MoveOver(from, to);
    }
    FileResult Delete(const std::u16string& path) override {
        return SystemFileLayer().Delete(path);
    }

    static constexpr ErrorCode kAccessDenied = 5;
    bool refusesReading = false;
    bool refusesWriting = false;
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
    RefusingFiles files;
    NoHexViewWindow viewWindow;
    FixedMeasurer measurer;
    HexView view{viewWindow, measurer};
    RecordingHost host;
    Shell shell{host, view, files};
};

} // namespace kvx
