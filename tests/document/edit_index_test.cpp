#include "document/edit_index.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <ostream>
#include <random>
#include <string>
#include <vector>

namespace kvx {
namespace {

/// One byte of an edited document, as far as the index knows it.
struct Cell {
    PieceKind kind = PieceKind::Unchanged;
    std::uint64_t onDisk = 0; ///< 0 for an inserted byte
    std::uint8_t value = 0;   ///< 0 for an unchanged byte

    friend bool operator==(const Cell&, const Cell&) = default;
};

std::ostream& operator<<(std::ostream& out, const Cell& cell) {
    return out << static_cast<int>(cell.kind) << '@' << cell.onDisk << '=' << int{cell.value};
}

/// The obvious model: every byte of the document side by side.
class Cells {
public:
    explicit Cells(std::uint64_t onDiskSize) {
        for (std::uint64_t at = 0; at < onDiskSize; ++at)
            cells_.push_back({PieceKind::Unchanged, at, 0});
    }

    std::uint64_t Size() const { return cells_.size(); }
    const std::vector<Cell>& All() const { return cells_; }

    void Insert(std::uint64_t at, std::uint8_t value) {
        cells_.insert(At(at), {PieceKind::Inserted, 0, value});
    }
    void Delete(std::uint64_t at) { cells_.erase(At(at)); }
    void Overwrite(std::uint64_t at, std::uint8_t value) {
        At(at)->value = value;
        if (At(at)->kind == PieceKind::Unchanged) At(at)->kind = PieceKind::Overwritten;
    }
    void Restore(std::uint64_t at) { *At(at) = {PieceKind::Unchanged, At(at)->onDisk, 0}; }

private:
    std::vector<Cell>::iterator At(std::uint64_t at) {
        return cells_.begin() + static_cast<std::ptrdiff_t>(at);
    }

    std::vector<Cell> cells_;
};

/// Turns what the index describes into cells.
struct CellSink {
    void Unchanged(std::uint64_t onDisk, std::uint64_t count) {
        for (std::uint64_t i = 0; i < count; ++i)
            cells.push_back({PieceKind::Unchanged, onDisk + i, 0});
    }
    void Overwritten(std::uint64_t onDisk, ByteView bytes) {
        for (const std::uint8_t byte : bytes)
            cells.push_back({PieceKind::Overwritten, onDisk++, byte});
    }
    void Inserted(ByteView bytes) {
        for (const std::uint8_t byte : bytes)
            cells.push_back({PieceKind::Inserted, 0, byte});
    }

    std::vector<Cell> cells;
};

std::vector<Cell> Described(const EditIndex& edits, std::uint64_t position, std::uint64_t count) {
    CellSink sink;
    edits.Describe(position, count, sink);
    return sink.cells;
}

/// The pieces that are not unchanged, in short: "I 7 3" is three bytes inserted at anchor 7.
std::string EditsOf(const EditIndex& edits, std::uint64_t onDiskSize) {
    constexpr char kLetters[] = {'U', 'I', 'O', 'D'};
    std::string text;
    PieceWalk walk(edits, onDiskSize);
    while (const auto piece = walk.Next()) {
        if (piece->kind == PieceKind::Unchanged) continue;
        text += text.empty() ? "" : ", ";
        text += kLetters[static_cast<std::size_t>(piece->kind)];
        text += " " + std::to_string(piece->position) + " " + std::to_string(piece->count);
    }
    return text;
}

/// An index and the model beside it, edited alike.
class IndexAndModel {
public:
    explicit IndexAndModel(std::uint64_t onDiskSize) : cells(onDiskSize), onDiskSize_(onDiskSize) {}

    void EditSomewhere() {
        const std::uint64_t at = random_() % cells.Size();
        const auto value = static_cast<std::uint8_t>(random_());
        switch (random_() % 8) {
        case 0:
            Delete(at);
            break;
        case 1:
            Restore(at);
            break;
        case 2:
        case 3:
        case 4:
            Insert(at, value);
            break;
        default:
            Overwrite(at, value);
            break;
        }
    }
    void DeleteSomewhere() { Delete(random_() % cells.Size()); }

    void Insert(std::uint64_t at, std::uint8_t value) {
        edits.InsertByte(at, value);
        cells.Insert(at, value);
    }
    void Delete(std::uint64_t at) {
        edits.DeleteByte(at);
        cells.Delete(at);
    }
    void Overwrite(std::uint64_t at, std::uint8_t value) {
        edits.OverwriteByte(at, value);
        cells.Overwrite(at, value);
    }
    void Restore(std::uint64_t at) {
        if (cells.All()[at].kind == PieceKind::Inserted) return;
        edits.RestoreByte(at);
        cells.Restore(at);
    }

    void Compare() {
        ASSERT_TRUE(edits.IsSound());
        ASSERT_EQ(edits.EditedSize(onDiskSize_), cells.Size());
        ASSERT_EQ(Described(edits, 0, cells.Size()), cells.All());
    }

    EditIndex edits;
    Cells cells;

private:
    std::mt19937_64 random_{5};
    std::uint64_t onDiskSize_;
};

TEST(EditIndex, StaysSoundWhileItGrowsToThousandsOfRunsAndShrinksAgain) {
    constexpr std::uint64_t kOnDisk = 9000;
    IndexAndModel both(kOnDisk);
    for (int edit = 0; edit < 14'000 && !HasFailure(); ++edit) {
        both.EditSomewhere();
        if (edit % 500 == 0) both.Compare();
    }
    for (int edit = 0; both.cells.Size() > 0 && !HasFailure(); ++edit) {
        both.DeleteSomewhere();
        if (edit % 500 == 0) both.Compare();
    }
    EXPECT_EQ(EditsOf(both.edits, kOnDisk), "D 0 9000");
}

// Each edit is near the one before, so that places are found from there, also over the borders of
// nodes that have just been split.
TEST(EditIndex, FindsItsWayWhenEditsMarchThroughTheDocument) {
    IndexAndModel both(12'000);
    for (std::uint64_t at = 0; at + 3 < both.cells.Size(); at += 6)
        both.Overwrite(at, 1);
    for (std::uint64_t at = 0; at + 3 < both.cells.Size(); at += 4) {
        both.Delete(at + 1);
        both.Overwrite(at + 2, 2);
    }
    both.Compare();
    for (std::uint64_t at = both.cells.Size() - 1; at > 5; at -= 5) {
        both.Insert(at, 3);
        both.Delete(at - 2);
    }
    both.Compare();
}

TEST(EditIndex, OverwritesThatAreAllTakenBackLeaveNothing) {
    IndexAndModel both(8000);
    for (std::uint64_t at = 0; at < 8000; at += 2)
        both.Overwrite(at * 3 % 8000, 1);
    both.Compare();
    for (std::uint64_t at = 0; at < 8000; ++at)
        both.Restore(at * 7 % 8000);
    both.Compare();
    EXPECT_TRUE(both.edits.IsEmpty());
}

// Long runs of new bytes, written from every side, among other edits.
struct LongRun {
    const char* name;
    std::uint64_t (*place)(std::uint64_t done); ///< where the next byte goes, from the run's start
};
const LongRun kLongRuns[] = {
    {"at the end", [](std::uint64_t done) { return done; }},
    {"in front", [](std::uint64_t) { return std::uint64_t{0}; }},
    {"in the middle", [](std::uint64_t done) { return done / 2; }},
    {"all over", [](std::uint64_t done) { return done * 7919 % (done + 1); }},
};

TEST(EditIndex, ALongInsertedRunIsOnePieceHoweverItWasWritten) {
    for (const LongRun& run : kLongRuns) {
        SCOPED_TRACE(run.name);
        IndexAndModel both(100);
        for (std::uint64_t done = 0; done < 5000; ++done)
            both.Insert(50 + run.place(done), static_cast<std::uint8_t>(done * 31));
        both.Compare();
        EXPECT_EQ(EditsOf(both.edits, 100), "I 50 5000");

        for (std::uint64_t left = 5000; left > 0; --left) {
            both.Delete(50 + run.place(left - 1));
            if (left % 700 == 0) both.Compare();
        }
        both.Compare();
        EXPECT_TRUE(both.edits.IsEmpty());
    }
}

TEST(EditIndex, ALongOverwrittenRunIsOnePieceAndCanBeDeletedFromBothEnds) {
    IndexAndModel both(6000);
    for (std::uint64_t at = 0; at < 2000; ++at) {
        both.Overwrite(3000 + at, 1);
        both.Overwrite(2999 - at, 2);
    }
    both.Compare();
    EXPECT_EQ(EditsOf(both.edits, 6000), "O 1000 4000");

    for (std::uint64_t count = 0; count < 1500; ++count) {
        both.Delete(1000);                        // forwards from the front
        both.Delete(1000 + 4000 - 2 * count - 2); // backwards from the end
    }
    both.Compare();
    EXPECT_EQ(EditsOf(both.edits, 6000), "D 1000 1500, O 2500 1000, D 3500 1500");
}

TEST(EditIndex, DeletedRunsGrowTogether) {
    EditIndex edits;
    const auto remove = [&](std::uint64_t at, int times) {
        for (int i = 0; i < times; ++i)
            edits.DeleteByte(at);
    };
    remove(10, 5); // [10, 15)
    remove(15, 5); // [20, 25), with five bytes between them
    EXPECT_EQ(EditsOf(edits, 100), "D 10 5, D 20 5");
    remove(14, 1);
    remove(10, 1);
    EXPECT_EQ(EditsOf(edits, 100), "D 10 6, D 19 6");
    remove(10, 3);
    EXPECT_EQ(EditsOf(edits, 100), "D 10 15");

    edits.InsertByte(10, 'x'); // before the byte after the run
    remove(9, 1);
    remove(10, 1);
    EXPECT_EQ(EditsOf(edits, 100), "D 9 16, I 25 1, D 25 1");
    remove(9, 1); // the inserted byte that kept the runs apart
    EXPECT_EQ(EditsOf(edits, 100), "D 9 17");
    EXPECT_TRUE(edits.IsSound());
}

TEST(EditIndex, KnowsWhetherTheFilesEndIsAllThatChanges) {
    struct Case {
        const char* name;
        void (*edit)(EditIndex&);
        bool insertsOnlyAtEnd;
        bool deletesOnlyTail;
    };
    const Case cases[] = {
        {"nothing", [](EditIndex&) {}, true, true},
        {"overwritten", [](EditIndex& e) { e.OverwriteByte(3, 1); }, true, true},
        {"appended", [](EditIndex& e) { e.InsertByte(10, 1); }, true, true},
        {"inserted", [](EditIndex& e) { e.InsertByte(9, 1); }, false, true},
        {"inserted and appended", [](EditIndex& e) { e.InsertByte(9, 1), e.InsertByte(11, 1); },
         false, true},
        {"last two deleted", [](EditIndex& e) { e.DeleteByte(9), e.DeleteByte(8); }, true, true},
        {"one before the last deleted", [](EditIndex& e) { e.DeleteByte(8); }, true, false},
        {"the last and an earlier one", [](EditIndex& e) { e.DeleteByte(9), e.DeleteByte(2); },
         true, false},
        {"cut and appended", [](EditIndex& e) { e.DeleteByte(9), e.InsertByte(9, 1); }, true, true},
        {"inserted inside the cut end",
         [](EditIndex& e) { e.InsertByte(9, 1), e.DeleteByte(10), e.DeleteByte(8); }, false, true},
        {"overwritten after a deleted one",
         [](EditIndex& e) { e.OverwriteByte(9, 1), e.DeleteByte(8); }, true, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EditIndex edits;
        c.edit(edits);
        EXPECT_EQ(edits.InsertsOnlyAtEnd(10), c.insertsOnlyAtEnd);
        EXPECT_EQ(edits.DeletesOnlyTail(10), c.deletesOnlyTail);
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
    EXPECT_EQ(Described(edits, kSize - 4, 5),
              (std::vector<Cell>{{PieceKind::Unchanged, kSize - 4, 0},
                                 {PieceKind::Inserted, 0, 8},
                                 {PieceKind::Overwritten, kSize - 3, 7},
                                 {PieceKind::Unchanged, kSize - 2, 0},
                                 {PieceKind::Inserted, 0, 9}}));
    EXPECT_TRUE(edits.IsSound());
}

} // namespace
} // namespace kvx
