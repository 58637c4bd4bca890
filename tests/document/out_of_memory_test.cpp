// Edits and reads for which there is no memory are refused and change nothing.
#include "tests/document/edited_file.h"
#include "tests/document/scarce_memory.h"

#include <gtest/gtest.h>

#include <random>

namespace kvx {
namespace {

TEST(OutOfMemory, AnEditIsDoneWhollyOrNotAtAll) {
    EditedFile file(Pattern(4000));
    EditableDocument& document = file.document;
    std::mt19937 random(3);
    int refused = 0;
    const auto scarcely = [&](auto edit) {
        const ScarceMemory scarce(static_cast<int>(random() % 3));
        return edit();
    };
    for (int step = 0; step < 12'000; ++step) {
        const std::size_t at = random() % (random() % 4 == 0 ? 4000 : 800);
        const auto value = static_cast<std::uint8_t>(random());
        const auto shown = static_cast<char>(value);
        const auto kind = random() % 5;
        bool done = false;
        if (kind == 0) {
            done = scarcely([&] { return document.DeleteByte(at); });
            if (done) file.expected.erase(at, 1);
        } else if (kind < 3) {
            done = scarcely([&] { return document.OverwriteByte(at, value); });
            if (done) file.expected[at] = shown;
        } else {
            done = scarcely([&] { return document.InsertByte(at, value); });
            if (done) file.expected.insert(at, 1, shown);
        }
        refused += done ? 0 : 1;
        if (done && step % 100 != 0) continue;
        ASSERT_TRUE(document.Edits().IsSound()) << "step " << step;
        ASSERT_TRUE(file.Shown() == file.expected) << "step " << step;
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
