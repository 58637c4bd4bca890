// Replays what the fuzzers have collected.
#include "fuzz/pattern_checks.h"
#include "tests/pattern/sample_testing.h"

#include <gtest/gtest.h>

namespace kvx {
namespace {

void Replay(const std::string& corpus, std::string (*check)(ByteView)) {
    int count = 0;
    for (const auto& entry :
         std::filesystem::directory_iterator(SourceRoot() / "fuzz" / "corpus" / corpus)) {
        EXPECT_EQ(check(AsBytes(ReadText(entry.path()))), "") << entry.path();
        ++count;
    }
    EXPECT_GE(count, 20);
}

TEST(FuzzCorpus, Parser) {
    Replay("pattern_parser", CheckParser);
}

TEST(FuzzCorpus, Loader) {
    Replay("pattern_loader", CheckLoader);
}

TEST(FuzzCorpus, Evaluator) {
    Replay("pattern_evaluator", CheckEvaluator);
}

} // namespace
} // namespace kvx
