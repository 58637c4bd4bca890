// Random editing sessions on small files: the document against its plain definition.
#include "fuzz/document_checks.h"

#include <gtest/gtest.h>

#include <random>

namespace kvx {
namespace {

/// As CheckDocument reads it. People edit in bursts: typing on, deleting on, and again from where
/// they began; now and then they save.
Bytes RandomSession(std::mt19937& random) {
    constexpr unsigned kFileSizes[] = {0, 1, 3, 16, 60, 200, 255};
    constexpr unsigned kSave = 7;
    const auto below = [&](std::size_t end) { return static_cast<unsigned>(random() % end); };
    Bytes session;
    const auto append = [&](unsigned value) {
        session.push_back(static_cast<std::uint8_t>(value));
    };
    append(kFileSizes[below(std::size(kFileSizes))]);
    append(0);
    const unsigned longestBurst = below(4) == 0 ? 32 : 6; // the root of it
    unsigned at = 0;
    for (int step = 0; step < 120; ++step) {
        if (below(3) > 0) at = below(below(2) == 0 ? 60 : 0x10000);
        append((below(40) == 0 ? kSave : below(kSave)) | below(longestBurst) << 3U);
        append(at);
        append(at >> 8U);
        append(below(256));
    }
    return session;
}

TEST(DocumentOracle, RandomSessionsGiveWhatThePlainDefinitionGives) {
    std::mt19937 random(1);
    for (int session = 0; session < 600; ++session)
        ASSERT_EQ(CheckDocument(RandomSession(random)), "") << session;
}

} // namespace
} // namespace kvx
