// Going to an offset that the user types.
#pragma once

#include "app/shell.h"

namespace kvx {

/// Asks for an offset and moves the caret there; nothing while no file is open.
void GoToOffset(Shell& shell);

} // namespace kvx
