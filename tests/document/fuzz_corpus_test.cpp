#include "fuzz/document_checks.h"
#include "tests/support/fuzz_corpus.h"

namespace kvx {
namespace {

TEST(FuzzCorpus, EditingSessions) {
    ReplayCorpus("document", CheckDocument);
}

} // namespace
} // namespace kvx
