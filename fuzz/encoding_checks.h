// What must hold for the text encodings whatever the bytes and the text. Each check gives what is
// wrong, empty when all is well.
#pragma once

#include "platform/bytes.h"

#include <string>

namespace kvx {

/// Rows and the characters at their starts, each the same as by the plain rules. The input is the
/// encoding, the length of a row, where the first row starts, how often the bytes are repeated, and
/// the bytes of the document.
std::string CheckRows(ByteView input);

/// What is text by ISCII stays that text when it is written and read again. The input is a choice
/// (odd: text, even: bytes) and UTF-16 units, low byte first, or the bytes.
std::string CheckIscii(ByteView input);

/// Text that can be written reads back. The input is the encoding and UTF-16 units, low byte first.
std::string CheckTextEncoder(ByteView input);

} // namespace kvx
