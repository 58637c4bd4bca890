#include "tests/document/edited_file.h"

#include "platform/system.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <utility>
#include <vector>

namespace kvx {
namespace {

constexpr std::size_t kMiB = 1024 * 1024;

class SavingTest : public testing::TestWithParam<EditState> {};

TEST_P(SavingTest, TheFileBecomesTheDocument) {
    const EditState& state = GetParam();
    EditedFile file(Pattern(state.size));
    state.edit(file);
    ASSERT_EQ(file.document.GetSize(), file.expected.size());
    EXPECT_TRUE(file.document.Save());

    EXPECT_TRUE(file.Disk() == file.expected);
    EXPECT_EQ(file.files.Count(Call::OpenForWriting), state.inPlace ? 1 : 0);
    EXPECT_EQ(file.files.Count(Call::TempName), state.inPlace ? 0 : 1);
    EXPECT_TRUE(file.IsAlone());
    EXPECT_EQ(file.document.GetLastErrorText(), u"");
    EXPECT_TRUE(file.document.IsOpen());
    EXPECT_FALSE(file.document.IsModified());
    EXPECT_EQ(file.document.GetPath(), file.folder.Path(EditedFile::kName));
    EXPECT_TRUE(file.Shown() == file.expected);
}

const EditState kStates[] = {
    {"OneOverwrite", 100, [](EditedFile& f) { f.Overwrite(50, "x"); }, true},
    {"OverwritesHereAndThere", 100,
     [](EditedFile& f) {
         f.Overwrite(96, "last");
         f.Overwrite(0, "first");
         f.Overwrite(40, "in a row");
     },
     true},
    {"OverwriteOfAllOfALargeFile", 2 * kMiB + 7,
     [](EditedFile& f) { f.Overwrite(0, Pattern(2 * kMiB + 7, 1)); }, true},
    {"Append", 100, [](EditedFile& f) { f.Append("appended"); }, true},
    {"AppendToAnEmptyFile", 0, [](EditedFile& f) { f.Append("appended"); }, true},
    {"OverwriteAndAppend", 100,
     [](EditedFile& f) {
         f.Append("appended");
         f.Overwrite(98, "over");
     },
     true},
    {"CutAtTheEnd", 100, [](EditedFile& f) { f.DeleteLast(30); }, true},
    {"CutToNothing", 100, [](EditedFile& f) { f.DeleteLast(100); }, true},
    {"DeleteAllFromTheTop", 100, [](EditedFile& f) { f.Delete(0, 100); }, true},
    {"OverwriteAndCut", 100,
     [](EditedFile& f) {
         f.Overwrite(60, "gone with the rest");
         f.Overwrite(5, "stays");
         f.DeleteLast(40);
     },
     true},
    {"InsertAtTheTop", 100, [](EditedFile& f) { f.Insert(0, "x"); }, false},
    {"InsertBeforeTheLastByte", 100, [](EditedFile& f) { f.Insert(99, "x"); }, false},
    {"InsertAndAppend", 100,
     [](EditedFile& f) {
         f.Insert(10, "inserted");
         f.Append("appended");
     },
     false},
    {"DeleteAllButTheLastByte", 100, [](EditedFile& f) { f.Delete(0, 99); }, false},
    {"DeleteTheByteBeforeTheLast", 100, [](EditedFile& f) { f.Delete(98, 1); }, false},
    {"DeleteInsideAndAtTheEnd", 100,
     [](EditedFile& f) {
         f.Delete(20, 5);
         f.DeleteLast(5);
     },
     false},
    {"ReplaceAllByInsertedBytes", 100,
     [](EditedFile& f) {
         f.Insert(0, "all new");
         f.Delete(7, 100);
     },
     false},
    {"EverythingAtOnePlace", 100,
     [](EditedFile& f) {
         f.Overwrite(10, "0123456789");
         f.Delete(12, 3);
         f.Insert(12, "abc");
         f.Overwrite(13, "B");
         f.Insert(9, "start");
         f.Append("end");
     },
     false},
    {"PiecesLargerThanTheBuffer", 3 * kMiB + 5,
     [](EditedFile& f) {
         f.Overwrite(kMiB - 10, Pattern(kMiB + 100, 3));
         f.Insert(2 * kMiB + 1, Pattern(2 * kMiB + 3, 4));
         f.Delete(5, kMiB / 2);
     },
     false},
    {"ExactlyOneBufferFull", kMiB - 1, [](EditedFile& f) { f.Insert(0, "x"); }, false},
    {"ManySmallPieces", kMiB + 77,
     [](EditedFile& f) {
         for (std::size_t i = 0; i < 3000; ++i) {
             const std::size_t position = i * 7919 % (f.expected.size() - 20);
             if (i % 3 == 0) f.Insert(position, "ins");
             if (i % 3 == 1) f.Overwrite(position, "over");
             if (i % 3 == 2) f.Delete(position, 2);
         }
     },
     false},
};

INSTANTIATE_TEST_SUITE_P(Edits, SavingTest, testing::ValuesIn(kStates), StateName);

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
    for (const Call call : kCalls)
        EXPECT_EQ(file.files.Count(call), 0) << kCallNames[static_cast<std::size_t>(call)];
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

TEST(Saving, SavesAgainAndAgain) {
    EditedFile file(Pattern(1000));
    for (std::size_t i = 0; i < 10; ++i) {
        file.Insert(i * 90, "inserted");
        file.Overwrite(i * 100 + 1, "over");
        ASSERT_TRUE(file.document.Save());
        file.Append("appended");
        ASSERT_TRUE(file.document.Save());
        ASSERT_TRUE(file.Disk() == file.expected);
    }
    EXPECT_TRUE(file.IsAlone());
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

TEST(Saving, WorksOnPathsBeyondTheClassicLimit) {
    TempFolder folder;
    const std::u16string path = JoinPath(folder.MakeDeepFolder(400), u"f.bin");
    ErrorCode error = 0;
    ASSERT_NE(SystemFileLayer().CreateForWriting(path, error), nullptr);
    EditableDocument document;
    ASSERT_TRUE(document.Open(path));
    ASSERT_TRUE(document.InsertByte(0, 'a')); // an append: in place
    EXPECT_TRUE(document.Save());
    ASSERT_TRUE(document.InsertByte(0, 'b')); // through a temporary file
    EXPECT_TRUE(document.Save());
    EXPECT_EQ(document.ReadBytes(0, 10), (Bytes{'b', 'a'}));
}

TEST(Saving, AFileThatShrankCannotBeCopiedAndStaysAsItIs) {
    EditedFile file("0123456789");
    file.Insert(5, "inserted");
    std::filesystem::resize_file(file.folder.Path(EditedFile::kName), 8);
    EXPECT_FALSE(file.document.Save());
    EXPECT_EQ(file.document.GetLastErrorText(), u"");
    EXPECT_EQ(file.Disk(), "01234567");
    EXPECT_TRUE(file.IsAlone());
    EXPECT_TRUE(file.document.IsModified());
}

using Reports = std::vector<std::pair<std::uint64_t, std::uint64_t>>;

Reports ReportsOf(EditedFile& file) {
    Reports reports;
    EXPECT_TRUE(file.document.Save(
        [&](std::uint64_t done, std::uint64_t total) { reports.emplace_back(done, total); }));
    return reports;
}

TEST(SavingProgress, InPlaceTellsTheEndOfEachRunThenTheWhole) {
    EditedFile file(Pattern(100));
    file.Overwrite(70, "run");
    file.Overwrite(10, "another");
    EXPECT_EQ(ReportsOf(file), (Reports{{17, 100}, {73, 100}}));
    file.Overwrite(10, "again");
    file.Append("appended");
    EXPECT_EQ(ReportsOf(file), (Reports{{15, 108}, {108, 108}}));
    file.DeleteLast(8);
    EXPECT_EQ(ReportsOf(file), (Reports{{100, 100}}));
}

TEST(SavingProgress, AnEmptyResultCountsAgainstATotalOfOne) {
    EditedFile file("0123456789");
    file.DeleteLast(10);
    EXPECT_EQ(ReportsOf(file), (Reports{{1, 1}}));
    EXPECT_EQ(file.Disk(), "");
}

TEST(SavingProgress, ThroughATempFileTellsEachWriteAndEndsAtTheWhole) {
    EditedFile file(Pattern(3 * kMiB));
    file.Insert(kMiB / 2, "x");
    EXPECT_EQ(ReportsOf(file), (Reports{{kMiB, 3 * kMiB + 1},
                                        {2 * kMiB, 3 * kMiB + 1},
                                        {3 * kMiB, 3 * kMiB + 1},
                                        {3 * kMiB + 1, 3 * kMiB + 1}}));
}

} // namespace
} // namespace kvx
