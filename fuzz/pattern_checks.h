// What must hold for the pattern language whatever the input. Shared by the fuzzers and by the
// tests that replay their corpora. Each check gives what is wrong, empty when all is well.
#pragma once

#include "platform/bytes.h"

#include <string>

namespace kvx {

/// Tokens and declarations of any text: the lexer agrees with a plain one, the parser ends with a
/// message or at the end.
std::string CheckParser(ByteView input);

/// The whole load of any bytes: a message or a file whose structs are laid out without holes.
std::string CheckLoader(ByteView input);

/// Evaluation of any pattern over any bytes. The input is one byte of options, the pattern up to a
/// zero byte, and the bytes to be read.
std::string CheckEvaluator(ByteView input);

} // namespace kvx
