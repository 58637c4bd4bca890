#include "fuzz/settings_checks.h"
#include "tests/support/fuzz_corpus.h"

namespace kvx {
namespace {

TEST(FuzzCorpus, SettingsFiles) {
    ReplayCorpus("settings", CheckSettings);
}

TEST(FuzzCorpus, StringFiles) {
    ReplayCorpus("string_file", CheckStringFile);
}

} // namespace
} // namespace kvx
