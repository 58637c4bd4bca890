#include "app/file_commands.h"

#include "app/recent_files.h"

namespace kvx {
namespace {

// Ends the busy state however a save is left: also by an exception, also of its beginning.
class SaveScope {
public:
    explicit SaveScope(Shell& shell) : shell_(shell) {}
    ~SaveScope() { shell_.EndSave(); }
    SaveScope(const SaveScope&) = delete;
    SaveScope& operator=(const SaveScope&) = delete;

private:
    Shell& shell_;
};

bool SaveShowingProgress(Shell& shell) {
    const SaveScope busy(shell);
    shell.BeginSave();
    return shell.Document().Save([&shell](std::uint64_t done, std::uint64_t total) {
        shell.ReportSaveProgress(done, total);
    });
}

std::u16string SaveErrorText(const Shell& shell) {
    std::u16string text = shell.Text("error.save_failed");
    const std::u16string reason = shell.Document().GetLastErrorText();
    if (!reason.empty()) text += u"\r\n\r\n" + reason;
    return text;
}

void OpenInNewProcess(Shell& shell, const std::u16string& path) {
    if (path.empty()) return;
    if (!shell.Host().StartProcess(path)) {
        shell.ShowError(shell.Text("error.open_new_instance_failed"));
    }
}

} // namespace

bool ConfirmSaveChanges(Shell& shell) {
    if (!shell.Document().IsOpen() || !shell.Document().IsModified()) return true;
    switch (shell.AskSaveChanges()) {
    case SaveChangesAnswer::Yes:
        return SaveFile(shell);
    case SaveChangesAnswer::No:
        return true;
    case SaveChangesAnswer::Cancel:
        break;
    }
    return false;
}

void OpenWithDialog(Shell& shell) {
    if (!ConfirmSaveChanges(shell)) return;
    if (const auto path = shell.ChooseFileToOpen()) OpenFile(shell, *path);
}

bool OpenFile(Shell& shell, const std::u16string& path) {
    if (path.empty()) return false;
    const bool opened = shell.Document().Open(path);
    shell.AttachDocument();
    if (opened) {
        AddRecentFile(shell.Settings().recentFiles, path);
        shell.SaveSettings();
    }
    shell.RefreshAll();
    if (!opened) shell.ShowError(shell.Text("error.open_failed"));
    return opened;
}

void OpenRecentFile(Shell& shell, std::size_t index) {
    if (index >= shell.Settings().recentFiles.size()) return;
    if (!ConfirmSaveChanges(shell)) return;
    // A copy: opening moves the entries of the list.
    const std::u16string path = shell.Settings().recentFiles[index];
    OpenFile(shell, path);
}

bool SaveFile(Shell& shell) {
    if (shell.Busy()) return false;
    if (!shell.Document().IsOpen()) return true;
    const bool saved = SaveShowingProgress(shell);
    // What was opened again is what other programs have made of the file, if they left it at all.
    if (shell.Document().IsOpen())
        shell.View().FitDocument();
    else
        shell.AttachDocument();
    shell.RefreshAll();
    if (!saved) shell.ShowError(SaveErrorText(shell));
    return saved;
}

void CloseFile(Shell& shell) {
    if (!ConfirmSaveChanges(shell)) return;
    shell.Document().Close();
    shell.AttachDocument();
    shell.RefreshAll();
}

void Exit(Shell& shell) {
    if (!shell.AcceptsCommands()) return;
    if (ConfirmSaveChanges(shell)) shell.Host().DestroyMainWindow();
}

// A save comes first: it may be about to write into the file itself.
std::optional<std::u16string> ReasonToKeepSession(const Shell& shell) {
    if (shell.Saving()) return shell.Text("status.saving");
    if (shell.Document().IsModified()) return shell.Text("confirm.save_changes");
    return std::nullopt;
}

// Asked anew for each path: while a message box about the one before it waits, a second drop may
// have opened a document, which must not be replaced. Nor may one be opened in the middle of a
// save.
void OpenDroppedFiles(Shell& shell, const std::vector<std::u16string>& paths) {
    for (const std::u16string& path : paths) {
        if (shell.Busy() || shell.Document().IsOpen()) {
            OpenInNewProcess(shell, path);
        } else {
            OpenFile(shell, path);
        }
    }
}

} // namespace kvx
