#include "app/find_command.h"

#include "app/search_commands.h"

namespace kvx {

void FindInFile(Shell& shell) {
    if (!shell.Document().IsOpen()) return;
    const SearchDialogContent content{
        shell.View().State().encoding, shell.Settings().searchHistory,
        [&shell](SearchDialogHost& dialog, const SearchDialogResult& request,
                 SearchDirection direction) { RunSearch(shell, dialog, request, direction); }};
    shell.WhileModal([&](ShellHost& host) { host.ShowSearchDialog(content, shell.TextsByKey()); });
}

} // namespace kvx
