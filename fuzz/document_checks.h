// What must hold for a document whatever is done to it.
#pragma once

#include "platform/bytes.h"

#include <string>

namespace kvx {

/// Edits, reads and saves, each the same as in the plain document. The input is the size of the
/// file, the most bytes that one read of it gives (0: all) and steps of four bytes: what to do and
/// how often, where (two bytes), and a value. Gives what is wrong, empty when all is well.
std::string CheckDocument(ByteView input);

} // namespace kvx
