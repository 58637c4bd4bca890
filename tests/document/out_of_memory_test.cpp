// Edits and reads for which there is no memory are refused and change nothing.
#include "tests/document/edited_file.h"
#include "tests/document/scarce_memory.h"

#include <gtest/gtest.h>

#include <random>

namespace kvx {
namespace {

// Edits somewhere in the document with memory for at most two allocations. True when the edit was
// done; the string follows it.
bool EditScarcely(EditedFile& file, std::mt19937& random) {
    EditableDocument& document = file.document;
    const std::size_t at = random() % 400;
    const auto value = static_cast<std::uint8_t>(random());
    const auto shown = static_cast<char>(value);
    const auto kind = random() % 5;
    bool done = false;
    {
        const ScarceMemory scarce(static_cast<int>(random() % 3));
        done = kind == 0  ? document.DeleteByte(at)
               : kind < 3 ? document.OverwriteByte(at, value)
                          : document.InsertByte(at, value);
    }
    if (!done) return false;
    if (kind == 0)
        file.expected.erase(at, 1);
    else if (kind < 3)
        file.expected[at] = shown;
    else
        file.expected.insert(at, 1, shown);
    return true;
}

TEST(OutOfMemory, AnEditIsDoneWhollyOrNotAtAll) {
    std::mt19937 random(3);
    int refused = 0;
    for (int session = 0; session < 20; ++session) {
        EditedFile file(Pattern(1000));
        for (int step = 0; step < 800; ++step) {
            if (EditScarcely(file, random)) continue;
            ++refused;
            ASSERT_TRUE(file.document.Edits().IsSound()) << session << ", step " << step;
            ASSERT_TRUE(file.Shown() == file.expected) << session << ", step " << step;
        }
        ASSERT_TRUE(file.Shown() == file.expected) << session;
    }
    EXPECT_GT(refused, 100);
}

TEST(OutOfMemory, AReadGivesNothing) {
    EditedFile file(Pattern(4000));
    file.Insert(2000, "x");
    const auto scarcely = [&](int allocations) {
        const ScarceMemory scarce(allocations);
        return file.document.ReadBytes(0, 4000);
    };
    EXPECT_EQ(scarcely(0), Bytes{});
    EXPECT_EQ(scarcely(1), Bytes{});
    EXPECT_EQ(file.Shown(), file.expected);
}

} // namespace
} // namespace kvx
