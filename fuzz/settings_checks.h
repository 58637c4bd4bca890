// What must hold for the settings and the string files whatever is in them. Each check gives what
// is wrong, empty when all is well.
#pragma once

#include "platform/bytes.h"

#include <string>

namespace kvx {

/// Only valid values come out of any text, and they come out again when they are written and read.
std::string CheckSettings(ByteView input);

/// The lines of a string file, read the plain way.
std::string CheckStringFile(ByteView input);

} // namespace kvx
