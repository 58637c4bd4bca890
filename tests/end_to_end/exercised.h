// What the tests have used of the program, for the list at the end of the test report. It goes to
// the file that the environment variable KIVRA_EXERCISED names; without it, nothing is kept.
#pragma once

#include "catalogue.h"

namespace kvx::test {

/// To be told, from any thread, of what the program has taken. It counts if the test passes.
void Used(const Use& use);

} // namespace kvx::test
