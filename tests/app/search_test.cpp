#include "app/search.h"

#include "tests/hexview/memory_document.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace kvx {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::size_t kBlockSizes[] = {1, 2, 3, 7, 16, 64, 100, 257, kSearchBlockSize};

SearchOutcome FoundAt(std::uint64_t offset) {
    return {SearchStatus::Found, offset};
}

std::string_view Text(const Bytes& bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

SearchOutcome OutcomeOf(std::size_t found) {
    return found == std::string_view::npos ? SearchOutcome{} : FoundAt(found);
}

// Of few letters, so that near misses are many.
Bytes RandomBytes(std::mt19937& random, std::size_t count) {
    Bytes bytes(count, 0);
    for (std::uint8_t& byte : bytes)
        byte = static_cast<std::uint8_t>(random() % 5 / 2);
    return bytes;
}

// A piece of the bytes, as it is or with a byte changed.
Bytes PatternFor(std::mt19937& random, const Bytes& bytes) {
    const std::size_t most = std::min<std::size_t>(bytes.size(), random() % 2 == 0 ? 8 : 600);
    const std::size_t length = 1 + random() % most;
    const auto from = static_cast<std::ptrdiff_t>(random() % (bytes.size() - length + 1));
    Bytes pattern(bytes.begin() + from, bytes.begin() + from + static_cast<std::ptrdiff_t>(length));
    if (random() % 2 == 0) pattern[random() % length] ^= 1;
    return pattern;
}

TEST(Search, FindsWhatTheStandardLibraryFindsFromEveryStartInBlocksOfAnySize) {
    std::mt19937 random(1);
    for (int round = 0; round < 120; ++round) {
        const bool isLarge = round % 10 == 0;
        const MemoryDocument document(RandomBytes(random, 1 + random() % (isLarge ? 20'000 : 400)));
        const Bytes pattern = PatternFor(random, document.bytes);
        const std::size_t blockSize =
            isLarge ? 5'000 : kBlockSizes[random() % std::size(kBlockSizes)];
        const std::uint64_t size = document.bytes.size();
        for (std::uint64_t at = 0; at <= size + 3; at += 1 + size / 400) {
            const std::uint64_t start = at < size ? at : UINT64_MAX - (at - size);
            ASSERT_EQ(SearchForward(document, pattern, start, {}, {}, blockSize),
                      OutcomeOf(Text(document.bytes).find(Text(pattern), start)))
                << pattern.size() << " bytes from " << start << " in blocks of " << blockSize;
            ASSERT_EQ(SearchBackward(document, pattern, start, {}, {}, blockSize),
                      OutcomeOf(Text(document.bytes).rfind(Text(pattern), start)))
                << pattern.size() << " bytes back from " << start << " in blocks of " << blockSize;
        }
    }
}

// What a search of zeros in blocks of ten tells and asks, with the number of blocks it has read by
// then. It is let go on so many times.
std::vector<std::string> JournalOf(decltype(&SearchForward) search, std::size_t size,
                                   const Bytes& pattern, std::uint64_t start, int times = 9) {
    const MemoryDocument document(Bytes(size, 0));
    std::vector<std::string> entries;
    const SearchOutcome outcome = search(
        document, pattern, start,
        [&](std::uint64_t done, std::uint64_t total) {
            entries.push_back(std::to_string(done) + " of " + std::to_string(total));
        },
        [&] {
            entries.push_back("? after " + std::to_string(document.reads));
            return times-- > 0;
        },
        10);
    if (outcome.status == SearchStatus::Cancelled) entries.emplace_back("cancelled");
    return entries;
}

TEST(Search, ReportsAndAsksBeforeItReadsEachBlock) {
    EXPECT_THAT(
        JournalOf(SearchForward, 25, {1, 2}, 3),
        ElementsAre("3 of 25", "? after 0", "13 of 25", "? after 1", "23 of 25", "? after 2"));
    EXPECT_THAT(JournalOf(SearchBackward, 25, {1, 2}, 99),
                ElementsAre("1 of 25", "? after 0", "11 of 25", "? after 1", "21 of 25",
                            "? after 2", "25 of 25"));
    EXPECT_THAT(JournalOf(SearchForward, 25, {1}, 0, 1),
                ElementsAre("0 of 25", "? after 0", "10 of 25", "? after 1", "cancelled"));
    EXPECT_THAT(JournalOf(SearchBackward, 25, {1}, 24, 0),
                ElementsAre("0 of 25", "? after 0", "cancelled"));
    EXPECT_THAT(JournalOf(SearchForward, 25, {1}, 25), IsEmpty()) << "starts at the end";
    EXPECT_THAT(JournalOf(SearchBackward, 2, {1, 2, 3}, 0), IsEmpty()) << "is too long";
    EXPECT_THAT(JournalOf(SearchForward, 2, {}, 0), IsEmpty()) << "is empty";
}

TEST(Search, FindsNothingInWhatCannotBeRead) {
    MemoryDocument document(Bytes{1, 2, 3, 4, 5, 6});
    const auto forward = [&](Bytes pattern) {
        return SearchForward(document, pattern, 0, {}, {}, 2);
    };
    document.badFrom = 4;
    EXPECT_EQ(forward({3, 4}), FoundAt(2));
    EXPECT_EQ(forward({6}), SearchOutcome{});
    EXPECT_EQ(SearchBackward(document, Bytes{1}, 9, {}, {}, 2), FoundAt(0));
    document.open = false;
    EXPECT_EQ(forward({3}), SearchOutcome{});
}

TEST(Search, GoesOnWhereReadsGiveLessThanABlock) {
    MemoryDocument document(CountingBytes(20));
    document.mostAtOnce = 3;
    std::vector<int> forward;
    std::vector<int> backward; // reads each block once: what it was not given is not there
    for (std::uint8_t first = 0; first < 19; ++first) {
        const Bytes pattern{first, static_cast<std::uint8_t>(first + 1)};
        if (SearchForward(document, pattern, 0, {}, {}, 8) == FoundAt(first))
            forward.push_back(first);
        if (SearchBackward(document, pattern, 99, {}, {}, 5) == FoundAt(first))
            backward.push_back(first);
    }
    EXPECT_THAT(forward,
                ElementsAre(0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18));
    EXPECT_THAT(backward, ElementsAre(0, 1, 4, 5, 9, 10, 14, 15));
}

} // namespace
} // namespace kvx
