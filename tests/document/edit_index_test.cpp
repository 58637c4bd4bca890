// The tree of edits when it is large: thousands of runs, and runs of thousands of bytes.
#include "tests/document/edited_file.h"

#include <gtest/gtest.h>

#include <optional>
#include <random>
#include <string>

namespace kvx {
namespace {

void Compare(const EditedFile& file) {
    ASSERT_TRUE(file.document.Edits().IsSound());
    ASSERT_EQ(file.document.GetSize(), file.expected.size());
    ASSERT_TRUE(file.Shown() == file.expected);
}

TEST(EditIndex, StaysSoundWhileItGrowsToThousandsOfRunsAndShrinksAgain) {
    std::mt19937 random(5);
    // Of four letters, so that overwrites are often taken back.
    const auto letter = [&] { return std::string(1, static_cast<char>('a' + random() % 4)); };
    std::string content;
    while (content.size() < 9000)
        content += letter();
    EditedFile file(content);
    for (int edit = 0; edit < 14'000 && !HasFailure(); ++edit) {
        const std::size_t at = random() % file.expected.size();
        const auto kind = random() % 8;
        if (kind == 0) file.Delete(at, 1);
        if (kind >= 1 && kind <= 3) file.Insert(at, letter());
        if (kind >= 4) file.Overwrite(at, letter());
        if (edit % 500 == 0) Compare(file);
    }
    while (!file.expected.empty() && !HasFailure()) {
        file.Delete(random() % file.expected.size(), 1);
        if (file.expected.size() % 500 == 0) Compare(file);
    }
    EXPECT_EQ(file.Records(), "D0+9000");
}

// Each edit is near the one before, so that places are found from there, also over the borders of
// nodes that have just been split.
TEST(EditIndex, FindsItsWayWhenEditsMarchThroughTheDocument) {
    EditedFile file(Pattern(12'000));
    for (std::size_t at = 0; at + 3 < file.expected.size(); at += 6)
        file.Overwrite(at, "1");
    for (std::size_t at = 0; at + 3 < file.expected.size(); at += 4) {
        file.Delete(at + 1, 1);
        file.Overwrite(at + 2, "2");
    }
    Compare(file);
    for (std::size_t at = file.expected.size() - 1; at > 5; at -= 5) {
        file.Insert(at, "3");
        file.Delete(at - 2, 1);
    }
    Compare(file);
}

TEST(EditIndex, ALongInsertedRunIsOnePieceHoweverItWasWritten) {
    using Place = std::size_t (*)(std::size_t done); // of the next byte in the run
    const Place places[] = {[](std::size_t done) { return done; },
                            [](std::size_t) { return std::size_t{0}; },
                            [](std::size_t done) { return done / 2; },
                            [](std::size_t done) { return done > 1 ? done / 2 + 1 : 0; },
                            [](std::size_t done) { return done * 7919 % (done + 1); }};
    for (const Place place : places) {
        EditedFile file(Pattern(100));
        for (std::size_t done = 0; done < 5000; ++done)
            file.Insert(50 + place(done), std::string(1, static_cast<char>(done * 31)));
        Compare(file);
        EXPECT_EQ(file.Records(), "I50+5000");
        for (std::size_t left = 5000; left > 0; --left) {
            file.Delete(50 + place(left - 1), 1);
            if (left % 700 == 0) Compare(file);
        }
        EXPECT_TRUE(file.document.Edits().IsEmpty());
    }
}

TEST(EditIndex, ALongOverwrittenRunIsOnePieceThatCanBeTakenBackAndDeleted) {
    EditedFile file(std::string(6000, 'a'));
    for (std::size_t at = 0; at < 2000; ++at) {
        file.Overwrite(3000 + at, "1");
        file.Overwrite(2999 - at, "2");
    }
    Compare(file);
    for (std::size_t at = 0; at < 1000; ++at)
        file.Overwrite(at * 7 % 1000 + 4000, "a"); // taken back
    Compare(file);
    EXPECT_EQ(file.Records(), "O1000+3000");
    for (std::size_t count = 0; count < 1000; ++count) {
        file.Delete(1000, 1);                        // forwards from the front
        file.Delete(1000 + 3000 - 2 * count - 2, 1); // backwards from the end
    }
    Compare(file);
    EXPECT_EQ(file.Records(), "D1000+1000 O2000+1000 D3000+1000");
}

TEST(EditIndex, WorksAtTheTopOfTheAddressRange) {
    constexpr std::uint64_t kSize = ~std::uint64_t{0} - 1000;
    EditIndex edits;
    edits.DeleteByte(kSize - 1);
    edits.OverwriteByte(kSize - 3, 7);
    edits.InsertByte(kSize - 3, 8);
    edits.InsertByte(kSize, 9);
    EXPECT_EQ(edits.EditedSize(kSize), kSize + 1);
    EXPECT_EQ(edits.OnDiskPosition(kSize - 4), kSize - 4);
    EXPECT_EQ(edits.OnDiskPosition(kSize - 3), std::nullopt);
    EXPECT_EQ(edits.OnDiskPosition(kSize - 2), kSize - 3);
    EXPECT_EQ(edits.OnDiskPosition(kSize - 1), kSize - 2);
    EXPECT_EQ(edits.OnDiskPosition(kSize), std::nullopt);
    EXPECT_TRUE(edits.IsSound());
}

} // namespace
} // namespace kvx
