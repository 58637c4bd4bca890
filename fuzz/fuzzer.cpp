// Hands each input of the fuzzer to one check, which the build names in KIVRA_FUZZ_CHECK. It gives
// what is wrong, empty when all is well.
#include "platform/bytes.h"

#include <cstdio>
#include <cstdlib>
#include <string>

namespace kvx {
std::string KIVRA_FUZZ_CHECK(ByteView input);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string problem = kvx::KIVRA_FUZZ_CHECK({data, size});
    if (problem.empty()) return 0;
    std::fprintf(stderr, "%s\n", problem.c_str());
    std::abort();
}
