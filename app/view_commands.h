// The commands that change how the document is shown, not what it holds.
#pragma once

#include "app/shell.h"

namespace kvx {

void ToggleReadOnly(Shell& shell);
void SelectTheme(Shell& shell, Theme theme);
void SelectLanguage(Shell& shell, UiLanguage language);
void ZoomOut(Shell& shell);
void ZoomIn(Shell& shell);
void ResetZoom(Shell& shell);

} // namespace kvx
