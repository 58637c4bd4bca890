#include "fuzz/pattern_checks.h"
#include "tests/support/fuzz_corpus.h"

namespace kvx {
namespace {

TEST(FuzzCorpus, Parser) {
    ReplayCorpus("pattern_parser", CheckParser);
}

TEST(FuzzCorpus, Loader) {
    ReplayCorpus("pattern_loader", CheckLoader);
}

TEST(FuzzCorpus, Evaluator) {
    ReplayCorpus("pattern_evaluator", CheckEvaluator);
}

} // namespace
} // namespace kvx
