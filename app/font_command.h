// Choosing the hex view's font.
#pragma once

#include "app/shell.h"

namespace kvx {

/// Lets the user choose among the fixed-pitch fonts; the choice is shown and stored.
void ChooseHexViewFont(Shell& shell);

} // namespace kvx
