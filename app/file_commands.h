// Opening, saving and closing files, and the question that guards what would drop changes.
#pragma once

#include "app/shell.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace kvx {

/// True when the caller may go on: nothing is modified, the user saved it, or gave the changes up.
bool ConfirmSaveChanges(Shell& shell);

/// Asks for a file and opens it in place of the open one.
void OpenWithDialog(Shell& shell);

/// Closes the open document, whatever its state, and opens `path`. False: the user was told, and no
/// document is open (with an empty path nothing happens at all).
bool OpenFile(Shell& shell, const std::u16string& path);

/// Opens the entry `index` of the recent files; nothing when the list is shorter.
void OpenRecentFile(Shell& shell, std::size_t index);

/// Saves with the window alive and showing progress. False: the user was told why.
bool SaveFile(Shell& shell);

void CloseFile(Shell& shell);

/// Destroys the main window, unless the user wants to keep unsaved changes or a command is running.
void Exit(Shell& shell);

/// Why the user's session must not end now, in words for the user; empty when nothing is at stake.
std::optional<std::u16string> ReasonToKeepSession(const Shell& shell);

/// Opens the first path that opens in this window if it has no document, the others in new
/// processes.
void OpenDroppedFiles(Shell& shell, const std::vector<std::u16string>& paths);

} // namespace kvx
