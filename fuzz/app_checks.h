// What must hold for the queries of the search dialog. Gives what is wrong, empty when all is well.
#pragma once

#include "platform/bytes.h"

#include <string>

namespace kvx {

/// Bytes come out of a query exactly where the plain rules give these bytes. The input is the
/// encoding (the highest bit: text, not hexadecimal bytes) and UTF-16 units, low byte first.
std::string CheckQuery(ByteView input);

} // namespace kvx
