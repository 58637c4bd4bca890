// Hands each input of the fuzzer to one check, which the build names in KIVRA_FUZZ_CHECK.
#include "fuzz/pattern_checks.h"

#include <cstdio>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string problem = kvx::KIVRA_FUZZ_CHECK({data, size});
    if (problem.empty()) return 0;
    std::fprintf(stderr, "%s\n", problem.c_str());
    std::abort();
}
