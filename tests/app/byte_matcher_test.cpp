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

TEST_P(EveryFilter, FindsWhatIsThereAmongRunsThatAreNearlyLongEnough) {
    for (const std::size_t length : {4U, 7U, 8U, 16U, 17U, 64U, 65U, 300U}) {
        Bytes window(5'000, 0);
        for (std::size_t i = 0; i < window.size(); ++i)
            window[i] = i % length == 0 || random_() % length == 0 ? 1 : 0;
        ExpectFound(window, Bytes(length, 0));
        std::fill_n(window.begin() + 3'000, length, std::uint8_t{0});
        ExpectFound(window, Bytes(length, 0));
    }
}

// Nearly every place fits for a while, and so long that the automaton takes over where nothing is
// filtered.
TEST_P(EveryFilter, FindsWhatIsThereAmongNearMisses) {
    constexpr std::size_t kSize = 70'000;
    for (int round = 0; round < 12 && !HasFatalFailure(); ++round) {
        const std::size_t length = 20 + random_() % 60;
        const std::size_t period = 1 + random_() % 4;
        Bytes pattern = Letters(length, 2);
        for (std::size_t i = period; i < length; ++i)
            pattern[i] = pattern[i - period];
        pattern[random_() % length] ^= 1;
        Bytes window(kSize, 0);
        for (std::size_t i = 0; i < kSize; ++i)
            window[i] = random_() % 40 == 0 ? 2 : pattern[i % period];
        const auto plant = [&](std::size_t at, std::size_t count) {
            std::copy_n(pattern.begin(), count, window.begin() + static_cast<std::ptrdiff_t>(at));
        };
        ExpectFound(window, pattern);
        plant(31'000 + random_() % 1'000, length);
        plant(33'000 + random_() % 1'000, length);
        ExpectFound(window, pattern);
        window.resize(30'000);
        plant(round % 2 == 0 ? 0 : window.size() - length, length);
        ExpectFound(window, pattern);
    }
}

// The automaton becomes due with the comparison that rules out all that is left.
TEST_P(EveryFilter, LooksAtNothingBehindTheWindow) {
    Bytes pattern(8, 'a');
    pattern.front() = 'b';
    for (const std::size_t count : {4'735U, 4'742U, 4'743U}) {
        Bytes window(count, 'a');
        window.back() = 'z';
        window.shrink_to_fit();
        ExpectFound(window, pattern);
    }
}

} // namespace
} // namespace kvx
