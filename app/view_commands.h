// The commands that change how the document is shown, not what it holds.
#pragma once

#include "app/shell.h"

namespace kvx {

/// Lets the open file be edited or no more; not stored, every file opens read-only.
void ToggleReadOnly(Shell& shell);

/// Shows the theme everywhere and stores it, also when it is the same.
void SelectTheme(Shell& shell, Theme theme);

/// Shows every text in the language and stores it.
void SelectLanguage(Shell& shell, UiLanguage language);

// A tenth less or more, between 0.6 and 2.5, and back to 1; not stored.
void ZoomOut(Shell& shell);
void ZoomIn(Shell& shell);
void ResetZoom(Shell& shell);

} // namespace kvx
