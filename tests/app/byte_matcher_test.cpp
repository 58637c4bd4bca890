#include "app/byte_matcher.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>
#include <string_view>

namespace kvx {
namespace {

std::string_view Text(const Bytes& bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

std::optional<std::size_t> Place(std::size_t found) {
    return found == std::string_view::npos ? std::nullopt : std::optional(found);
}

// Without a filter, with that of every processor and with that of newer ones, where there is one.
class EveryFilter : public testing::TestWithParam<const ByteFilter*> {
protected:
    void ExpectFound(const Bytes& window, const Bytes& pattern) {
        ByteMatcher matcher(pattern, GetParam());
        const std::string_view text = Text(window);
        ASSERT_EQ(matcher.FindFirst(window), Place(text.find(Text(pattern)))) << pattern.size();
        ASSERT_EQ(matcher.FindLast(window), Place(text.rfind(Text(pattern)))) << pattern.size();
    }

    Bytes Letters(std::size_t count, std::size_t letters) {
        Bytes bytes(count, 0);
        for (std::uint8_t& byte : bytes)
            byte = static_cast<std::uint8_t>(random_() % letters);
        return bytes;
    }

    std::mt19937 random_{7};
};

INSTANTIATE_TEST_SUITE_P(ByteMatcher, EveryFilter,
                         testing::Values(nullptr, Sse2Filter(), Avx2Filter()));

TEST_P(EveryFilter, FindsAHitAtEveryPlaceOfAGroup) {
    for (const std::size_t length : {1U, 2U, 3U, 17U, 70U}) {
        const Bytes pattern(length, 1);
        for (std::size_t at = 0; at < 200; ++at) {
            Bytes window(200 + length, 0);
            std::copy(pattern.begin(), pattern.end(),
                      window.begin() + static_cast<std::ptrdiff_t>(at));
            ExpectFound(window, pattern);
        }
    }
}

// Long enough to make the matcher learn and to make the automaton take over.
TEST_P(EveryFilter, FindsWhatIsThereWhereNearlyEveryPlaceFits) {
    for (int round = 0; round < 40 && !HasFatalFailure(); ++round) {
        const std::size_t length = 2 + random_() % 300;
        Bytes window = Letters(20'000, 2 + random_() % 2);
        Bytes pattern = Letters(length, 2);
        if (round % 2 == 0) { // runs of all lengths up to one less than the pattern's
            for (std::size_t i = 0; i < window.size(); ++i)
                window[i] = i % length == 0 || random_() % length == 0 ? 1 : 0;
            std::fill(pattern.begin(), pattern.end(), std::uint8_t{0});
        }
        if (round % 4 > 1) {
            const auto at = static_cast<std::ptrdiff_t>(random_() % (window.size() - length));
            std::copy(pattern.begin(), pattern.end(), window.begin() + at);
        }
        ExpectFound(window, pattern);
    }
}

} // namespace
} // namespace kvx
