// Saving: what comes out when nothing goes wrong, and what is left whichever step does.
#include "tests/document/edited_file.h"

#include "platform/system.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <new>
#include <stdexcept>
#include <utility>
#include <vector>

namespace kvx {
namespace {

constexpr std::size_t kMiB = 1024 * 1024;
constexpr ErrorCode kDiskFull = 112;

/// Edits to be saved, and by which of the two ways that is.
struct EditState {
    const char* name;
    std::size_t size; ///< of the file before
    void (*edit)(EditedFile&);
    bool inPlace;
};

const EditState kStates[] = {
    {"Overwrites", 100, [](EditedFile& f) { f.Overwrite(90, "two"), f.Overwrite(0, "one"); }, true},
    {"AppendToAnEmptyFile", 0, [](EditedFile& f) { f.Append("appended"); }, true},
    {"OverwriteAndAppend", 100,
     [](EditedFile& f) { f.Append("appended"), f.Overwrite(98, "over"); }, true},
    {"OverwriteAndCut", 100, [](EditedFile& f) { f.Overwrite(68, "over"), f.DeleteLast(30); },
     true},
    {"CutToNothing", 100, [](EditedFile& f) { f.Delete(0, 100); }, true},
    {"InsertBeforeTheLastByte", 100, [](EditedFile& f) { f.Insert(99, "x"); }, false},
    {"DeleteTheByteBeforeTheLast", 100, [](EditedFile& f) { f.Delete(98, 1); }, false},
    {"DeleteInsideAndAtTheEnd", 100, [](EditedFile& f) { f.Delete(20, 5), f.DeleteLast(5); },
     false},
    {"ReplaceAllByInsertedBytes", 100, [](EditedFile& f) { f.Insert(0, "new"), f.Delete(3, 100); },
     false},
    {"InsertALongRun", 100, [](EditedFile& f) { f.Insert(50, Pattern(20'000, 7)); }, false},
    {"EverythingInALargeFile", kMiB + 100,
     [](EditedFile& f) {
         f.Overwrite(10, "one"), f.Insert(kMiB, "inserted");
         f.Delete(500, 2), f.Append("appended");
     },
     false},
};

/// The saved file opens again as the very last step; by then all is done.
void ExpectSavedButClosed(const EditedFile& file) {
    EXPECT_TRUE(file.Disk() == file.expected);
    EXPECT_FALSE(file.document.IsOpen());
    EXPECT_FALSE(file.document.IsModified());
    EXPECT_EQ(file.document.GetLastErrorText(), u"");
}

/// What was not being written in place is as it was; else each byte is the old or the new one.
void ExpectOldOrNewBytes(const EditedFile& file, bool inPlace) {
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

/// Whatever failed, the document is as it was before.
void ExpectNothingLost(const EditedFile& file, bool inPlace) {
    EXPECT_TRUE(file.document.IsOpen());
    EXPECT_TRUE(file.document.IsModified());
    EXPECT_TRUE(file.Shown() == file.expected);
    ExpectOldOrNewBytes(file, inPlace);
}

void ExpectALaterSaveSucceeds(EditedFile& file) {
    file.files.Disarm();
    EXPECT_TRUE(file.document.Save());
    EXPECT_EQ(file.document.GetLastErrorText(), u"");
    EXPECT_TRUE(file.Disk() == file.expected);
    EXPECT_TRUE(file.IsAlone());
}

class SavingTest : public testing::TestWithParam<EditState> {
protected:
    /// The document to be saved, with the calls that opening it took forgotten.
    EditedFile& Edited() {
        file_.emplace(Pattern(GetParam().size));
        GetParam().edit(*file_);
        file_->files.ResetCounts();
        return *file_;
    }

    /// Runs `check` once for each call that the save makes.
    template <typename Check>
    void ForEachCall(Check check) {
        EditedFile clean(Pattern(GetParam().size));
        GetParam().edit(clean);
        clean.files.ResetCounts();
        ASSERT_TRUE(clean.document.Save());
        for (std::size_t call = 0; call < kCallNames.size(); ++call)
            for (int number = 1; number <= clean.files.Count(Call{call}); ++number) {
                SCOPED_TRACE(testing::Message() << kCallNames[call] << " " << number);
                check(Call{call}, number);
            }
    }

private:
    std::optional<EditedFile> file_;
};

TEST_P(SavingTest, TheFileBecomesTheDocument) {
    EditedFile& file = Edited();
    ASSERT_EQ(file.document.GetSize(), file.expected.size());
    EXPECT_TRUE(file.document.Save());
    EXPECT_TRUE(file.Disk() == file.expected);
    EXPECT_EQ(file.files.Count(Call::OpenForWriting), GetParam().inPlace ? 1 : 0);
    EXPECT_EQ(file.files.Count(Call::TempName), GetParam().inPlace ? 0 : 1);
    EXPECT_EQ(file.files.Count(Call::Flush), 1);
    EXPECT_TRUE(file.IsAlone());
    EXPECT_EQ(file.document.GetLastErrorText(), u"");
    EXPECT_FALSE(file.document.IsModified());
    EXPECT_EQ(file.document.GetPath(), file.folder.Path(EditedFile::kName));
    EXPECT_TRUE(file.Shown() == file.expected);
}

TEST_P(SavingTest, AFailingCallLosesNothingAndItsReasonIsTold) {
    constexpr std::pair<Failing, ErrorCode> kFailures[] = {{Failing::WithCode, kDiskFull},
                                                           {Failing::WithCode, 0},
                                                           {Failing::CutShort, kDiskFull},
                                                           {Failing::Short, 0},
                                                           {Failing::Throwing, 0}};
    ForEachCall([&](Call call, int number) {
        for (const auto& [failing, code] : kFailures) {
            const bool half = failing == Failing::Short || failing == Failing::CutShort;
            if (half && call != Call::Write) continue;
            EditedFile& file = Edited();
            file.files.Arm({call, number, failing, code});
            if (failing == Failing::Throwing)
                EXPECT_THROW(file.document.Save(), std::bad_alloc);
            else
                EXPECT_FALSE(file.document.Save());
            EXPECT_TRUE(file.IsAlone());
            if (call == Call::OpenForReading) {
                ExpectSavedButClosed(file);
                continue;
            }
            EXPECT_EQ(file.document.GetLastErrorText(), code ? Win32ErrorText(code) : u"");
            ExpectNothingLost(file, GetParam().inPlace);
            ExpectALaterSaveSucceeds(file);
        }
    });
}

TEST_P(SavingTest, AKilledProcessLeavesTheOldBytesOrTheNewOnesAndAtMostATempFile) {
    ForEachCall([&](Call call, int number) {
        EditedFile& file = Edited();
        file.files.Arm({.call = call, .number = number, .failing = Failing::Killing});
        EXPECT_FALSE(file.document.Save());
        if (call == Call::OpenForReading)
            EXPECT_TRUE(file.Disk() == file.expected);
        else
            ExpectOldOrNewBytes(file, GetParam().inPlace);
        EXPECT_LE(file.folder.Names().size(), GetParam().inPlace ? 1U : 2U);

        const std::string left = file.Disk();
        file.document.Close(); // as the system does for the dead
        EditableDocument later;
        ASSERT_TRUE(later.Open(file.folder.Path(EditedFile::kName)));
        ASSERT_TRUE(later.InsertByte(0, 'x'));
        EXPECT_TRUE(later.Save());
        EXPECT_TRUE(file.Disk() == "x" + left);
    });
}

TEST_P(SavingTest, ReadsThatGiveLessThanAskedAreGoneOnWith) {
    EditedFile& file = Edited();
    file.files.LimitReads(1000);
    EXPECT_TRUE(file.Shown() == file.expected);
    EXPECT_TRUE(file.document.Save());
    EXPECT_TRUE(file.Disk() == file.expected);
    EXPECT_TRUE(file.Shown() == file.expected);
}

TEST_P(SavingTest, AnExceptionOfTheProgressCallbackLosesNothing) {
    EditedFile& file = Edited();
    const auto stop = [](std::uint64_t, std::uint64_t) { throw std::runtime_error("stop"); };
    EXPECT_THROW(file.document.Save(stop), std::runtime_error);
    EXPECT_TRUE(file.IsAlone());
    ExpectNothingLost(file, GetParam().inPlace);
    ExpectALaterSaveSucceeds(file);
}

INSTANTIATE_TEST_SUITE_P(Edits, SavingTest, testing::ValuesIn(kStates),
                         [](const auto& state) { return std::string(state.param.name); });

TEST(Saving, AFailedMoveIsToldEvenWhenWhatFollowsFailsToo) {
    for (const Call second : {Call::Delete, Call::OpenForReading}) {
        EditedFile file("0123456789");
        file.Insert(5, "inserted");
        file.files.ResetCounts();
        file.files.Arm({.call = Call::Move, .code = 5}, Fault{.call = second, .code = 32});
        EXPECT_FALSE(file.document.Save());
        EXPECT_EQ(file.document.GetLastErrorText(), Win32ErrorText(5));
        EXPECT_EQ(file.Disk(), file.onDisk);
        EXPECT_TRUE(file.document.IsModified());
        EXPECT_EQ(file.document.IsOpen(), second == Call::Delete);
        EXPECT_EQ(file.document.GetSize(), second == Call::Delete ? file.expected.size() : 0);
        EXPECT_EQ(file.IsAlone(), second != Call::Delete);
    }
}

TEST(Saving, AFailedMoveOverASmallerFileOfAnotherProgramKeepsTheEditsInTheirPlaces) {
    EditedFile file("0123456789");
    file.Delete(2, 5);
    std::filesystem::rename(file.folder.Path(EditedFile::kName), file.folder.Path(u"backup"));
    file.folder.Write(EditedFile::kName, "abc");
    file.files.Arm({.call = Call::Move, .code = 5});
    EXPECT_FALSE(file.document.Save());
    EXPECT_EQ(file.document.GetSize(), file.expected.size());
    EXPECT_EQ(file.Shown(), "ab");
    EXPECT_FALSE(file.document.Save()) << "half of the document is missing";
    EXPECT_EQ(file.Disk(), "abc");
    file.folder.Write(EditedFile::kName, file.onDisk);
    EXPECT_TRUE(file.document.Save());
    EXPECT_EQ(file.Disk(), file.expected);
}

TEST(Saving, WithNoFileOpenFailsWithAText) {
    EditableDocument document;
    EXPECT_FALSE(document.Save());
    EXPECT_EQ(document.GetLastErrorText(), u"No file is open.");
}

TEST(Saving, AnUnmodifiedDocumentTouchesNothing) {
    EditedFile file("content");
    file.Overwrite(0, "C");
    file.Overwrite(0, "c");
    file.files.ResetCounts();
    EXPECT_TRUE(file.document.Save());
    for (std::size_t call = 0; call < kCallNames.size(); ++call)
        EXPECT_EQ(file.files.Count(Call{call}), 0) << kCallNames[call];
}

// Kept on purpose: the appended bytes go behind the old end, then the cut comes at the edited size.
TEST(Saving, CuttingTheEndAndAppendingInOneGoKeepsTheOldBytesThere) {
    EditedFile shorter("0123456789");
    shorter.Append("ab");
    shorter.Delete(6, 4);
    EXPECT_EQ(shorter.Shown(), "012345ab");
    EXPECT_TRUE(shorter.document.Save());
    EXPECT_EQ(shorter.Disk(), "01234567");

    EditedFile longer("0123456789");
    longer.Append("abcdef");
    longer.Delete(6, 4);
    EXPECT_TRUE(longer.document.Save());
    EXPECT_EQ(longer.Disk(), "0123456789ab");
}

TEST(Saving, APathWithoutAFolderIsSavedInTheCurrentOne) {
    EditedFile file("0123456789");
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(file.folder.Root());
    ASSERT_TRUE(file.document.Open(EditedFile::kName));
    file.Insert(5, "inserted");
    EXPECT_TRUE(file.document.Save());
    EXPECT_TRUE(file.IsAlone());
    std::filesystem::current_path(before);
    EXPECT_EQ(file.Disk(), "01234inserted56789");
}

using Reports = std::vector<std::pair<std::uint64_t, std::uint64_t>>;

Reports ReportsOf(EditedFile& file) {
    Reports reports;
    EXPECT_TRUE(file.document.Save(
        [&](std::uint64_t done, std::uint64_t total) { reports.emplace_back(done, total); }));
    return reports;
}

TEST(Saving, InPlaceTellsTheEndOfEachRunThenTheWhole) {
    EditedFile file(Pattern(100));
    file.Overwrite(70, "run");
    file.Overwrite(10, "another");
    EXPECT_EQ(ReportsOf(file), (Reports{{17, 100}, {73, 100}}));
    file.Overwrite(10, "again");
    file.Append("appended");
    EXPECT_EQ(ReportsOf(file), (Reports{{15, 108}, {108, 108}}));
    file.DeleteLast(8);
    EXPECT_EQ(ReportsOf(file), (Reports{{100, 100}}));
    file.DeleteLast(100);
    EXPECT_EQ(ReportsOf(file), (Reports{{1, 1}})) << "a total of nothing counts as one";
}

TEST(Saving, ThroughATempFileTellsEachWriteAndEndsAtTheWhole) {
    EditedFile file(Pattern(3 * kMiB));
    file.Overwrite(kMiB - 10, Pattern(kMiB + 100, 3));
    file.Insert(kMiB / 2, Pattern(kMiB + 3, 4));
    file.Delete(5, 2);
    constexpr std::uint64_t kTotal = 4 * kMiB + 1;
    EXPECT_EQ(ReportsOf(file), (Reports{{kMiB, kTotal},
                                        {2 * kMiB, kTotal},
                                        {3 * kMiB, kTotal},
                                        {4 * kMiB, kTotal},
                                        {kTotal, kTotal}}));
    EXPECT_TRUE(file.Disk() == file.expected);

    EditedFile oneBuffer(Pattern(kMiB - 1));
    oneBuffer.Insert(0, "x");
    EXPECT_EQ(ReportsOf(oneBuffer), (Reports{{kMiB, kMiB}}));
}

} // namespace
} // namespace kvx
