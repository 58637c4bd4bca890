#include "fuzz/encoding_checks.h"
#include "tests/support/fuzz_corpus.h"

namespace kvx {
namespace {

TEST(FuzzCorpus, Rows) {
    ReplayCorpus("rows", CheckRows);
}

TEST(FuzzCorpus, Iscii) {
    ReplayCorpus("iscii", CheckIscii);
}

TEST(FuzzCorpus, TextEncoder) {
    ReplayCorpus("text_encoder", CheckTextEncoder);
}

} // namespace
} // namespace kvx
