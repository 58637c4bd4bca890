// The commands of the data inspector and the struct view, and what keeps both up to date.
#pragma once

#include "app/shell.h"

#include <cstdint>
#include <memory>
#include <string>

namespace kvx {

// The life of the panes, told by the main window.

/// Starts the threads, once the settings are loaded. Throws std::system_error when the system gives
/// no thread.
void StartPanes(Shell& shell);
void ShowPanes(Shell& shell); ///< those that the settings say
/// Ends windows and threads; nothing of them runs afterwards.
void StopPanes(Shell& shell);

// What they show.
void ScheduleInspectorUpdate(Shell& shell);
void ScheduleStructViewUpdate(Shell& shell);
void SchedulePaneUpdates(Shell& shell); ///< both: after a move of the caret, an edit, another file
/// Rows from the threads: dropped unless they answer the newest request of a pane that is there.
void ShowInspectorRows(Shell& shell, PostedInspectorRows rows);
void ShowStructRows(Shell& shell, PostedStructRows rows);
void RelabelPanes(Shell& shell); ///< in the language of the string table

// Commands.
void ToggleInspector(Shell& shell);
void ToggleStructView(Shell& shell);
void OnInspectorClosed(Shell& shell); ///< by the user
void OnStructViewClosed(Shell& shell);
void OpenStructPattern(Shell& shell); ///< asks for a file
void LoadStructPattern(Shell& shell, const std::u16string& path);
void ReloadStructPattern(Shell& shell); ///< from the stored path; nothing without one
void CloseStructPattern(Shell& shell);
/// Numbers of ValueFormatOption; others, and a choice that is made already, change nothing.
void ChooseValueFormat(Shell& shell, std::uint32_t option);

} // namespace kvx
