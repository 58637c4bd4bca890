// Edits and reads for which there is no memory are refused and change nothing.
#include "tests/document/edited_file.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <new>
#include <random>

namespace {

/// Allocations that still succeed; below zero: all of them.
int allocationsLeft = -1;

void* Allocate(std::size_t size) noexcept {
    if (allocationsLeft == 0) return nullptr;
    if (allocationsLeft > 0) --allocationsLeft;
    return std::malloc(size > 0 ? size : 1);
}

void* AllocateOrThrow(std::size_t size) {
    void* block = Allocate(size);
    if (!block) throw std::bad_alloc();
    return block;
}

} // namespace

// The program's allocation functions, all but those for over-aligned blocks.
void* operator new(std::size_t size) {
    return AllocateOrThrow(size);
}
void* operator new[](std::size_t size) {
    return AllocateOrThrow(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return Allocate(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return Allocate(size);
}
void operator delete(void* block) noexcept {
    std::free(block);
}
void operator delete[](void* block) noexcept {
    std::free(block);
}
void operator delete(void* block, std::size_t) noexcept {
    std::free(block);
}
void operator delete[](void* block, std::size_t) noexcept {
    std::free(block);
}

namespace kvx {
namespace {

/// What `action` gives when it may allocate so many times.
template <typename Action>
auto WithAllocations(int count, Action action) {
    struct Relief {
        ~Relief() { allocationsLeft = -1; }
    } relief;
    allocationsLeft = count;
    return action();
}

// Edits somewhere in the document with memory for at most two allocations, and the string alike.
bool EditScarcely(EditedFile& file, std::mt19937& random) {
    EditableDocument& document = file.document;
    const std::size_t at = random() % 400;
    const auto value = static_cast<std::uint8_t>(random());
    const auto kind = random() % 5;
    const bool done = WithAllocations(static_cast<int>(random() % 3), [&] {
        if (kind == 0) return document.DeleteByte(at);
        return kind < 3 ? document.OverwriteByte(at, value) : document.InsertByte(at, value);
    });
    if (done)
        file.expected.replace(at, kind < 3 ? 1 : 0, kind > 0 ? 1 : 0, static_cast<char>(value));
    return done;
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

TEST(OutOfMemory, DeletingInsertedBytesNeedsNone) {
    EditedFile file(Pattern(100));
    file.Insert(50, Pattern(600)); // more than one run holds, which become one again
    WithAllocations(0, [&] { file.Delete(60, 580); });
    EXPECT_TRUE(file.document.Edits().IsSound());
    EXPECT_EQ(file.Shown(), file.expected);
    EXPECT_EQ(file.Records(), "I50+20");
}

TEST(OutOfMemory, AReadGivesNothing) {
    EditedFile file(Pattern(4000));
    file.Insert(2000, "x");
    for (const int allocations : {0, 1})
        EXPECT_EQ(WithAllocations(allocations, [&] { return file.document.ReadBytes(0, 4000); }),
                  Bytes{});
    EXPECT_EQ(file.Shown(), file.expected);
}

TEST(OutOfMemory, ASaveLeavesTheOldFileOrTheWholeNewOne) {
    bool saved = false;
    for (int allocations = 0; !saved; ++allocations) {
        SCOPED_TRACE(allocations);
        EditedFile file("0123456789");
        file.Insert(5, "inserted");
        try {
            saved = WithAllocations(allocations, [&] { return file.document.Save(); });
        } catch (const std::bad_alloc&) {}
        EXPECT_EQ(file.Disk(), file.document.IsModified() ? file.onDisk : file.expected);
        ASSERT_LT(allocations, 1000);
    }
}

} // namespace
} // namespace kvx
