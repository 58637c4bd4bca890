// From the number of a command to what it does.
#pragma once

#include "app/shell.h"

#include <cstdint>

namespace kvx {

/// Runs the command with the number `id`; a command that may not run now is dropped. False when
/// there is no such command.
bool DispatchCommand(Shell& shell, std::uint32_t id);

} // namespace kvx
