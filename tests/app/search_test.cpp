#include "app/search.h"

#include "document/editable_document.h"
#include "tests/hexview/memory_document.h"
#include "tests/support/temp_folder.h"

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
              OutcomeOf(Text(bytes).find(Text(pattern), start)))
        << pattern.size() << " bytes from " << start << " in blocks of " << blockSize;
    ASSERT_EQ(SearchBackward(document, pattern, start, {}, {}, blockSize),
              OutcomeOf(Text(bytes).rfind(Text(pattern), start)))
        << pattern.size() << " bytes back from " << start << " in blocks of " << blockSize;
}

TEST(Search, FindsWhatTheStandardLibraryFindsFromEveryStartInBlocksOfAnySize) {
    Dice dice(1);
    for (int round = 0; round < 120 && !HasFailure(); ++round) {
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

TEST(Search, FindsTheSameInLargeEditedDocuments) {
    Dice dice(2);
    TempFolder folder;
    for (int round = 0; round < 12 && !HasFailure(); ++round) {
        SCOPED_TRACE("round " + std::to_string(round));
        const std::size_t letters = 1 + dice.Below(3);
        const Bytes file = RepetitiveBytes(dice, 60'000 + dice.Below(20'000), letters);
        EditableDocument document;
        ASSERT_TRUE(document.Open(folder.Write(u"data", std::string(file.begin(), file.end()))));
        for (std::size_t edits = round % 3 == 0 ? 0 : dice.Below(500); edits > 0; --edits) {
            const std::uint64_t at = dice.Below(document.GetSize());
            const std::size_t kind = dice.Below(3);
            if (kind == 0) document.InsertByte(at, dice.Letter(letters));
            if (kind == 1) document.DeleteByte(at);
            if (kind == 2) document.OverwriteByte(at, dice.Letter(letters));
        }
        const Bytes bytes = document.ReadBytes(0, document.GetSize());
        for (int each = 0; each < 10 && !HasFailure(); ++each)
            CompareAt(document, bytes, PatternFor(dice, bytes, letters + 1),
                      dice.Below(bytes.size()), 30'000);
    }
}

// What a search told and asked, and how many blocks it had read before.
class Journal {
public:
    explicit Journal(std::size_t size) : document_(Bytes(size, 0)) {}

    std::vector<std::string> OfForward(Bytes pattern, std::uint64_t start, std::size_t blocks) {
        entries_.clear();
        status_ = SearchForward(document_, pattern, start, Progress(), Check(blocks), 10).status;
        return entries_;
    }
    std::vector<std::string> OfBackward(Bytes pattern, std::uint64_t start, std::size_t blocks) {
        entries_.clear();
        status_ = SearchBackward(document_, pattern, start, Progress(), Check(blocks), 10).status;
        return entries_;
    }
    SearchStatus Status() const { return status_; }

private:
    ProgressCallback Progress() {
        return [this](std::uint64_t done, std::uint64_t total) {
            entries_.push_back(std::to_string(done) + " of " + std::to_string(total));
        };
    }
    ContinueCheck Check(std::size_t blocks) {
        return [this, blocks]() mutable {
            entries_.push_back("? after " + std::to_string(document_.reads));
            return blocks-- > 0;
        };
    }

    MemoryDocument document_;
    std::vector<std::string> entries_;
    SearchStatus status_ = SearchStatus::Found;
};

TEST(Search, ReportsAndAsksBeforeItReadsEachBlock) {
    EXPECT_THAT(
        Journal(25).OfForward({1, 2}, 3, 9),
        ElementsAre("3 of 25", "? after 0", "13 of 25", "? after 1", "23 of 25", "? after 2"));
    EXPECT_THAT(Journal(25).OfBackward({1, 2}, 99, 9),
                ElementsAre("1 of 25", "? after 0", "11 of 25", "? after 1", "21 of 25",
                            "? after 2", "25 of 25"));
    EXPECT_THAT(Journal(25).OfForward({1}, 25, 9), IsEmpty()) << "starts at the end";
    EXPECT_THAT(Journal(2).OfBackward({1, 2, 3}, 0, 9), IsEmpty()) << "is too long";
    EXPECT_THAT(Journal(2).OfForward({}, 0, 9), IsEmpty()) << "is empty";
}

TEST(Search, EndsBeforeTheBlockThatIsRefused) {
    Journal journal(25);
    EXPECT_THAT(journal.OfForward({1}, 0, 1),
                ElementsAre("0 of 25", "? after 0", "10 of 25", "? after 1"));
    EXPECT_EQ(journal.Status(), SearchStatus::Cancelled);
    EXPECT_THAT(Journal(25).OfBackward({1}, 24, 0), ElementsAre("0 of 25", "? after 0"));
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
