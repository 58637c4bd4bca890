#include "app/goto_command.h"

#include "app/goto_offset.h"

namespace kvx {

void GoToOffset(Shell& shell) {
    if (!shell.Document().IsOpen()) return;
    const PromptContent content{shell.Text("dialog.goto.title"), shell.Text("dialog.goto.prompt"),
                                HexOffsetText(shell.View().State().caret)};
    const auto answer = shell.WhileModal([&](ShellHost& host) { return host.Prompt(content); });
    if (!answer) return;
    const auto offset = ParseHexOffset(*answer);
    if (!offset) {
        shell.ShowError(shell.Text("error.goto_invalid"), "dialog.goto.title");
        return;
    }
    shell.View().SetCaret(*offset);
    shell.RefreshStatus();
}

} // namespace kvx
