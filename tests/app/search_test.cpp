#include "app/search.h"

#include "document/editable_document.h"
#include "tests/hexview/memory_document.h"
#include "tests/support/temp_folder.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

namespace kvx {
namespace {

using testing::ElementsAre;

constexpr std::size_t kBlockSizes[] = {1, 2, 3, 7, 16, 64, 100, 257, kSearchBlockSize};

SearchOutcome FoundAt(std::uint64_t offset) {
    return {SearchStatus::Found, offset};
}

std::uint64_t Position(const Bytes& bytes, Bytes::const_iterator hit) {
    return static_cast<std::uint64_t>(std::distance(bytes.begin(), hit));
}

// By the standard library, over all bytes at once.
SearchOutcome ExpectedForward(const Bytes& bytes, const Bytes& pattern, std::uint64_t start) {
    if (start >= bytes.size()) return {};
    const auto from = std::next(bytes.begin(), static_cast<std::ptrdiff_t>(start));
    const auto hit = std::search(from, bytes.end(), pattern.begin(), pattern.end());
    return hit == bytes.end() ? SearchOutcome{} : FoundAt(Position(bytes, hit));
}

SearchOutcome ExpectedBackward(const Bytes& bytes, const Bytes& pattern, std::uint64_t start) {
    const std::uint64_t length = pattern.size();
    if (length > bytes.size()) return {};
    const std::uint64_t end = std::min(start, bytes.size() - length) + length;
    const auto to = std::next(bytes.begin(), static_cast<std::ptrdiff_t>(end));
    const auto hit = std::find_end(bytes.begin(), to, pattern.begin(), pattern.end());
    return hit == to ? SearchOutcome{} : FoundAt(Position(bytes, hit));
}

class Dice {
public:
    explicit Dice(std::uint32_t seed) : engine_(seed) {}
    std::size_t Below(std::size_t limit) { return engine_() % limit; }
    std::uint8_t Letter(std::size_t letters) { return static_cast<std::uint8_t>(Below(letters)); }
    Bytes Letters(std::size_t count, std::size_t letters) {
        Bytes bytes(count, 0);
        for (std::uint8_t& byte : bytes)
            byte = Letter(letters);
        return bytes;
    }

private:
    std::mt19937_64 engine_;
};

// Few letters, and pieces repeated with changes, so that near misses are many.
Bytes RepetitiveBytes(Dice& dice, std::size_t count, std::size_t letters) {
    const std::size_t period = 1 + dice.Below(dice.Below(3) == 0 ? 200 : 8);
    const std::size_t changes = dice.Below(1 + count / 8);
    const Bytes piece = dice.Letters(period, letters);
    Bytes bytes(count, 0);
    for (std::size_t i = 0; i < count; ++i)
        bytes[i] = piece[i % period];
    for (std::size_t i = 0; i < changes && count > 0; ++i)
        bytes[dice.Below(count)] = dice.Letter(letters);
    return bytes;
}

// A piece of the bytes, as it is or with a byte changed, or something else.
Bytes PatternFor(Dice& dice, const Bytes& bytes, std::size_t letters) {
    const std::size_t most = std::min<std::size_t>(bytes.size(), dice.Below(2) == 0 ? 8 : 600);
    const std::size_t length = 1 + dice.Below(most + 1);
    if (length > bytes.size() || dice.Below(6) == 0) return dice.Letters(length, letters);
    const auto from = static_cast<std::ptrdiff_t>(dice.Below(bytes.size() - length + 1));
    Bytes pattern(bytes.begin() + from, bytes.begin() + from + static_cast<std::ptrdiff_t>(length));
    if (dice.Below(2) == 0) pattern[dice.Below(length)] = dice.Letter(letters);
    return pattern;
}

void CompareAt(const IReadOnlyDocument& document, const Bytes& bytes, const Bytes& pattern,
               std::uint64_t start, std::size_t blockSize) {
    ASSERT_EQ(SearchForward(document, pattern, start, {}, {}, blockSize),
              ExpectedForward(bytes, pattern, start))
        << pattern.size() << " bytes from " << start << " in blocks of " << blockSize;
    ASSERT_EQ(SearchBackward(document, pattern, start, {}, {}, blockSize),
              ExpectedBackward(bytes, pattern, start))
        << pattern.size() << " bytes back from " << start << " in blocks of " << blockSize;
}

TEST(Search, FindsWhatTheStandardLibraryFindsFromEveryStartInBlocksOfAnySize) {
    Dice dice(1);
    for (int round = 0; round < 400 && !HasFailure(); ++round) {
        SCOPED_TRACE("round " + std::to_string(round));
        const std::size_t letters = 2 + dice.Below(3);
        MemoryDocument document(RepetitiveBytes(dice, dice.Below(400), letters));
        const Bytes pattern = PatternFor(dice, document.bytes, letters);
        const std::size_t blockSize = kBlockSizes[dice.Below(std::size(kBlockSizes))];
        const std::size_t step = 1 + dice.Below(1 + document.bytes.size() / 16);
        for (std::size_t start = 0; start < document.bytes.size() + 3; start += step)
            CompareAt(document, document.bytes, pattern, start, blockSize);
        CompareAt(document, document.bytes, pattern, UINT64_MAX, blockSize);
    }
}

TEST(Search, FindsTheSameInLargeRepetitiveDocuments) {
    Dice dice(2);
    for (int round = 0; round < 60 && !HasFailure(); ++round) {
        SCOPED_TRACE("round " + std::to_string(round));
        const std::size_t letters = 1 + dice.Below(3);
        MemoryDocument document(RepetitiveBytes(dice, 20'000 + dice.Below(20'000), letters));
        const Bytes pattern = PatternFor(dice, document.bytes, letters + 1);
        CompareAt(document, document.bytes, pattern, dice.Below(document.bytes.size()), 16'000);
    }
}

} // namespace
} // namespace kvx
