#include "tests/document/edited_file.h"
#include "tests/document/scarce_memory.h"

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>

namespace kvx {
namespace {

constexpr std::size_t kMiB = 1024 * 1024;
constexpr ErrorCode kDiskFull = 112;

const EditState kStates[] = {
    {"Overwrites", 100,
     [](EditedFile& f) {
         f.Overwrite(10, "one");
         f.Overwrite(90, "two");
     },
     true},
    {"OverwriteAndAppend", 100,
     [](EditedFile& f) {
         f.Overwrite(10, "one");
         f.Append("appended");
     },
     true},
    {"OverwriteAndCut", 100,
     [](EditedFile& f) {
         f.Overwrite(10, "one");
         f.DeleteLast(30);
     },
     true},
    {"Insert", 100, [](EditedFile& f) { f.Insert(50, "inserted"); }, false},
    {"EverythingInALargeFile", kMiB + 100,
     [](EditedFile& f) {
         f.Overwrite(10, "one");
         f.Insert(kMiB, "inserted");
         f.Delete(500, 2);
         f.Append("appended");
     },
     false},
};

/// How often a save of `state` makes each call when nothing goes wrong.
std::array<int, kCalls.size()> CallsOfACleanSave(const EditState& state) {
    EditedFile file(Pattern(state.size));
    state.edit(file);
    file.files.ResetCounts();
    EXPECT_TRUE(file.document.Save());
    std::array<int, kCalls.size()> counts{};
    for (const Call call : kCalls)
        counts[static_cast<std::size_t>(call)] = file.files.Count(call);
    return counts;
}

/// The saved file opens again as the very last step; by then all is done.
void ExpectSavedButClosed(const EditedFile& file) {
    EXPECT_TRUE(file.Disk() == file.expected);
    EXPECT_FALSE(file.document.IsOpen());
    EXPECT_FALSE(file.document.IsModified());
    EXPECT_EQ(file.document.GetLastErrorText(), u"");
}

/// Whatever failed, the document is as it was before, and the file on disk too unless it was being
/// written in place; then each of its bytes is the old or the new one.
void ExpectNothingLost(const EditedFile& file, bool inPlace) {
    EXPECT_TRUE(file.document.IsOpen());
    EXPECT_TRUE(file.document.IsModified());
    EXPECT_TRUE(file.Shown() == file.expected);
    const std::string disk = file.Disk();
    if (!inPlace) {
        EXPECT_TRUE(disk == file.onDisk);
        return;
    }
    EXPECT_GE(disk.size(), std::min(file.onDisk.size(), file.expected.size()));
    for (std::size_t i = 0; i < disk.size(); ++i) {
        const bool isOld = i < file.onDisk.size() && disk[i] == file.onDisk[i];
        const bool isNew = i < file.expected.size() && disk[i] == file.expected[i];
        ASSERT_TRUE(isOld || isNew) << i;
    }
}

void ExpectALaterSaveSucceeds(EditedFile& file) {
    file.files.Disarm();
    EXPECT_TRUE(file.document.Save());
    EXPECT_EQ(file.document.GetLastErrorText(), u"");
    EXPECT_TRUE(file.Disk() == file.expected);
    EXPECT_TRUE(file.IsAlone());
}

class SavingFaultTest : public testing::TestWithParam<EditState> {
protected:
    /// Runs `check` for a document of the state and a fault on each call that its save makes.
    template <typename Check>
    void ForEachCall(Failing failing, ErrorCode code, Check check) {
        const auto counts = CallsOfACleanSave(GetParam());
        for (const Call call : kCalls) {
            const bool partial = call == Call::Read || call == Call::Write;
            if (failing == Failing::Short && !partial) continue;
            for (int number = 1; number <= counts[static_cast<std::size_t>(call)]; ++number) {
                SCOPED_TRACE(testing::Message()
                             << kCallNames[static_cast<std::size_t>(call)] << " " << number);
                EditedFile file(Pattern(GetParam().size));
                GetParam().edit(file);
                file.files.ResetCounts();
                file.files.Arm({call, number, failing, code});
                check(file, call);
            }
        }
    }
};

TEST_P(SavingFaultTest, AFailingCallLosesNothingAndItsReasonIsTold) {
    ForEachCall(Failing::WithCode, kDiskFull, [](EditedFile& file, Call call) {
        EXPECT_FALSE(file.document.Save());
        EXPECT_TRUE(file.IsAlone());
        if (call == Call::OpenForReading) return ExpectSavedButClosed(file);
        EXPECT_EQ(file.document.GetLastErrorText(), Win32ErrorText(kDiskFull));
        ExpectNothingLost(file, GetParam().inPlace);
        ExpectALaterSaveSucceeds(file);
    });
}

TEST_P(SavingFaultTest, AFailureWithoutAReasonHasNoText) {
    ForEachCall(Failing::WithCode, 0, [](EditedFile& file, Call) {
        EXPECT_FALSE(file.document.Save());
        EXPECT_EQ(file.document.GetLastErrorText(), u"");
    });
}

TEST_P(SavingFaultTest, AShortReadOrWriteIsAFailureWithoutAReason) {
    ForEachCall(Failing::Short, 0, [](EditedFile& file, Call) {
        EXPECT_FALSE(file.document.Save());
        EXPECT_EQ(file.document.GetLastErrorText(), u"");
        EXPECT_TRUE(file.IsAlone());
        ExpectNothingLost(file, GetParam().inPlace);
        ExpectALaterSaveSucceeds(file);
    });
}

TEST_P(SavingFaultTest, RunningOutOfMemoryLosesNothing) {
    ForEachCall(Failing::Throwing, 0, [](EditedFile& file, Call call) {
        EXPECT_THROW(file.document.Save(), std::bad_alloc);
        EXPECT_TRUE(file.IsAlone());
        if (call == Call::OpenForReading) return ExpectSavedButClosed(file);
        ExpectNothingLost(file, GetParam().inPlace);
        ExpectALaterSaveSucceeds(file);
    });
}

TEST_P(SavingFaultTest, AnExceptionOfTheProgressCallbackLosesNothing) {
    EditedFile file(Pattern(GetParam().size));
    GetParam().edit(file);
    const auto stop = [](std::uint64_t, std::uint64_t) { throw std::runtime_error("stop"); };
    EXPECT_THROW(file.document.Save(stop), std::runtime_error);
    EXPECT_TRUE(file.IsAlone());
    ExpectNothingLost(file, GetParam().inPlace);
    ExpectALaterSaveSucceeds(file);
}

INSTANTIATE_TEST_SUITE_P(Edits, SavingFaultTest, testing::ValuesIn(kStates), StateName);

TEST(SavingFaults, AFailedMoveIsUndoneEvenWhenTheTempFileCannotBeDeleted) {
    EditedFile file("0123456789");
    file.Insert(5, "inserted");
    file.files.ResetCounts();
    file.files.Arm({.call = Call::Move, .code = 5}, Fault{.call = Call::Delete, .code = 32});
    EXPECT_FALSE(file.document.Save());
    EXPECT_EQ(file.document.GetLastErrorText(), Win32ErrorText(5));
    ExpectNothingLost(file, false);
}

TEST(SavingFaults, AFileThatDoesNotOpenAfterAFailedMoveKeepsItsEditsPending) {
    EditedFile file("0123456789");
    file.Insert(5, "inserted");
    file.files.ResetCounts();
    file.files.Arm({.call = Call::Move, .code = 5},
                   Fault{.call = Call::OpenForReading, .code = 32});
    EXPECT_FALSE(file.document.Save());
    EXPECT_EQ(file.document.GetLastErrorText(), Win32ErrorText(5));
    EXPECT_FALSE(file.document.IsOpen());
    EXPECT_TRUE(file.document.IsModified());
    EXPECT_EQ(file.Disk(), "0123456789");
    EXPECT_TRUE(file.IsAlone());
}

TEST(SavingFaults, NoAllocationLeftAtAnyMomentLeavesTheOldFileOrTheWholeNewOne) {
    bool saved = false;
    for (int allocations = 0; !saved; ++allocations) {
        SCOPED_TRACE(allocations);
        EditedFile file("0123456789");
        file.Insert(5, "inserted");
        try {
            const ScarceMemory scarce(allocations);
            saved = file.document.Save();
        } catch (const std::bad_alloc&) {}
        const std::string disk = file.Disk();
        EXPECT_EQ(disk, file.document.IsModified() ? file.onDisk : file.expected);
        ASSERT_LT(allocations, 1000);
    }
}

} // namespace
} // namespace kvx
