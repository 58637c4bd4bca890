// Opening the search dialog.
#pragma once

#include "app/shell.h"

namespace kvx {

/// Shows the search dialog, whose searches run in it; nothing while no file is open.
void FindInFile(Shell& shell);

} // namespace kvx
