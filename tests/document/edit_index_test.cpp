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

TEST(EditIndex, ALongRunInsertedInItsMiddleIsOnePiece) {
    for (const std::size_t behind : {std::size_t{0}, std::size_t{1}}) {
        EditedFile file(Pattern(100));
        for (std::size_t done = 0; done < 3000; ++done)
            file.Insert(50 + done / 2 + (done > 1 ? behind : 0),
                        std::string(1, static_cast<char>(done)));
        Compare(file);
        EXPECT_EQ(file.Records(), "I50+3000");
    }
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
