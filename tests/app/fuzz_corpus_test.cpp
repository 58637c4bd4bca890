#include "fuzz/app_checks.h"
#include "tests/support/fuzz_corpus.h"

namespace kvx {
namespace {

TEST(FuzzCorpus, Queries) {
    ReplayCorpus("query", CheckQuery);
}

} // namespace
} // namespace kvx
