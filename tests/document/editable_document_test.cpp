#include "document/editable_document.h"
#include "tests/document/edited_file.h"
#include "tests/document/plain_document.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <limits>
#include <random>
#include <string>

namespace kvx {
namespace {

/// The edit records in short: "I3:ab D5 O7:x".
std::string RecordsOf(const EditableDocument& document, std::uint64_t onDiskSize) {
    std::string text;
    PieceWalk walk(document.Edits(), onDiskSize);
    while (const auto piece = walk.Next()) {
        if (piece->kind == PieceKind::Unchanged) continue;
        const bool deleted = piece->kind == PieceKind::Deleted;
        text += text.empty() ? "" : " ";
        text += deleted ? "D" : piece->kind == PieceKind::Inserted ? "I" : "O";
        text += std::to_string(piece->position) + ":";
        text += deleted ? std::to_string(piece->count)
                        : std::string(piece->bytes.begin(), piece->bytes.end());
    }
    return text;
}

TEST(EditableDocument, KeepsEditsByTheirPlacesInTheFile) {
    struct Case {
        const char* name;
        void (*edit)(EditedFile&);
        const char* shown;
        const char* records;
    };
    const Case cases[] = {
        {"insert before the first byte", [](EditedFile& f) { f.Insert(0, "x"); }, "xabcdef",
         "I0:x"},
        {"typing keeps its order", [](EditedFile& f) { f.Insert(2, "xyz"); }, "abxyzcdef",
         "I2:xyz"},
        {"before a byte: behind what stands before it already",
         [](EditedFile& f) { f.Insert(2, "x"), f.Insert(3, "y"); }, "abxycdef", "I2:xy"},
        {"before an inserted byte", [](EditedFile& f) { f.Insert(2, "xz"), f.Insert(3, "y"); },
         "abxyzcdef", "I2:xyz"},
        {"append", [](EditedFile& f) { f.Append("x"), f.Append("y"); }, "abcdefxy", "I6:xy"},
        {"append after the end was cut", [](EditedFile& f) { f.DeleteLast(2), f.Append("x"); },
         "abcdx", "D4:2 I6:x"},
        {"insert after deleted bytes", [](EditedFile& f) { f.Delete(2, 2), f.Insert(2, "x"); },
         "abxef", "D2:2 I4:x"},
        {"an anchor outlives its byte", [](EditedFile& f) { f.Insert(2, "x"), f.Delete(3, 2); },
         "abxef", "I2:x D2:2"},
        {"bytes on both sides of a deleted one",
         [](EditedFile& f) { f.Insert(2, "x"), f.Delete(3, 1), f.Insert(3, "y"); }, "abxydef",
         "I2:x D2:1 I3:y"},
        {"replace an inserted byte", [](EditedFile& f) { f.Insert(2, "xy"), f.Overwrite(3, "z"); },
         "abxzcdef", "I2:xz"},
        {"insert between overwritten bytes",
         [](EditedFile& f) { f.Overwrite(2, "CD"), f.Insert(3, "x"); }, "abCxDef",
         "O2:C I3:x O3:D"},
        {"insert in front of overwritten bytes",
         [](EditedFile& f) { f.Overwrite(2, "CD"), f.Insert(2, "x"), f.Insert(3, "y"); },
         "abxyCDef", "I2:xy O2:CD"},
        {"replace the middle and take it back",
         [](EditedFile& f) { f.Overwrite(1, "BCD"), f.Overwrite(2, "c"); }, "aBcDef", "O1:B O3:D"},
        {"take every replacement back",
         [](EditedFile& f) { f.Overwrite(1, "BCD"), f.Overwrite(1, "bcd"); }, "abcdef", ""},
        {"a value that the file has is no edit", [](EditedFile& f) { f.Overwrite(0, "abc"); },
         "abcdef", ""},
        {"delete an overwritten byte", [](EditedFile& f) { f.Overwrite(1, "BCD"), f.Delete(2, 1); },
         "aBDef", "O1:B D2:1 O3:D"},
        {"delete what was inserted", [](EditedFile& f) { f.Insert(2, "xy"), f.Delete(2, 2); },
         "abcdef", ""},
        {"delete everything", [](EditedFile& f) { f.Append("x"), f.Delete(0, 7); }, "", "D0:6"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EditedFile file("abcdef");
        c.edit(file);
        EXPECT_EQ(file.Shown(), c.shown);
        EXPECT_EQ(RecordsOf(file.document, 6), c.records);
        EXPECT_EQ(file.document.IsModified(), *c.records != '\0');
        EXPECT_EQ(file.document.GetSize(), file.Shown().size());
    }
}

TEST(EditableDocument, RefusesPositionsOutsideTheDocument) {
    EditedFile file("abc");
    file.Append("d");
    EXPECT_FALSE(file.document.OverwriteByte(4, 'x'));
    EXPECT_FALSE(file.document.InsertByte(5, 'x'));
    EXPECT_FALSE(file.document.DeleteByte(4));
    EXPECT_FALSE(file.document.DeleteByte(~std::uint64_t{0}));
    EXPECT_EQ(RecordsOf(file.document, 3), "I3:d");
}

TEST(EditableDocument, OfAnEmptyFileCanOnlyBeAppendedTo) {
    EditedFile file("");
    EXPECT_FALSE(file.document.OverwriteByte(0, 'x'));
    EXPECT_FALSE(file.document.DeleteByte(0));
    EXPECT_FALSE(file.document.InsertByte(1, 'x'));
    EXPECT_TRUE(file.document.InsertByte(0, 'x'));
    EXPECT_EQ(file.Shown(), "x");
}

TEST(EditableDocument, WithoutAFileRefusesEverything) {
    EditedFile file("abc");
    file.Overwrite(1, "x");
    file.document.Close();
    EXPECT_FALSE(file.document.IsOpen());
    EXPECT_FALSE(file.document.IsModified());
    EXPECT_EQ(file.document.GetSize(), 0u);
    EXPECT_EQ(file.document.GetPath(), u"");
    EXPECT_EQ(file.document.ReadBytes(0, 1), Bytes{});
    EXPECT_FALSE(file.document.InsertByte(0, 'x'));
    EXPECT_FALSE(file.document.OverwriteByte(0, 'x'));
    EXPECT_FALSE(file.document.DeleteByte(0));
}

TEST(EditableDocument, OpeningDropsTheEditsEvenWhenItFails) {
    EditedFile file("abc");
    file.Append("d");
    EXPECT_TRUE(file.document.Open(file.document.GetPath()));
    EXPECT_EQ(file.Shown(), "abc");

    file.document.InsertByte(0, 'x');
    EXPECT_FALSE(file.document.Open(file.folder.Path(u"missing")));
    EXPECT_FALSE(file.document.IsOpen());
    EXPECT_EQ(file.document.GetEditedSize(), 0u);
    EXPECT_FALSE(file.document.IsModified());
}

TEST(EditableDocument, CutsReadsAtItsEnd) {
    EditedFile file("abcdef");
    file.Insert(3, "xyz");
    file.Delete(0, 1);
    const auto read = [&](std::uint64_t offset, std::uint64_t count) {
        const Bytes bytes = file.document.ReadBytes(offset, count);
        return std::string(bytes.begin(), bytes.end());
    };
    constexpr std::uint64_t kAll = std::numeric_limits<std::uint64_t>::max();
    EXPECT_EQ(read(0, kAll), "bcxyzdef");
    EXPECT_EQ(read(3, 2), "yz");
    EXPECT_EQ(read(5, kAll - 3), "def");
    EXPECT_EQ(read(7, 2), "f");
    EXPECT_EQ(read(8, 1), "");
    EXPECT_EQ(read(kAll, kAll), "");
    EXPECT_EQ(read(0, 0), "");
}

// Long stretches, short ones, runs of inserted and deleted bytes, far more than one read can share.
TEST(EditableDocument, ReadsLargeMixturesAsTheyAre) {
    const std::string content = Pattern(3'000'000);
    EditedFile file(content);
    std::mt19937 random(11);
    std::size_t at = 0;
    while (at < file.expected.size()) {
        const std::size_t length = 1 + random() % (random() % 8 == 0 ? 9000 : 12);
        const std::size_t left = std::min(length, file.expected.size() - at);
        switch (random() % 3) {
        case 0:
            file.Insert(at, Pattern(length, 1)), at += length;
            break;
        case 1:
            file.Delete(at, left);
            break;
        default:
            file.Overwrite(at, Pattern(left, 2)), at += left;
            break;
        }
        at += random() % (random() % 8 == 0 ? 150'000 : 3000);
    }
    EXPECT_TRUE(file.Shown() == file.expected);
    for (int i = 0; i < 200; ++i) {
        const std::size_t offset = random() % file.expected.size();
        const std::size_t count = random() % (i % 2 == 0 ? 300 : 400'000);
        const Bytes bytes = file.document.ReadBytes(offset, count);
        ASSERT_TRUE(std::string(bytes.begin(), bytes.end()) == file.expected.substr(offset, count))
            << count << " at " << offset;
    }
}

TEST(EditableDocument, ReadsAMebibyteAmongEditsWithAFewFileReads) {
    EditedFile file(Pattern(1'100'000));
    for (std::size_t at = 0; at < 1'000'000; at += 1000) {
        file.Insert(at, "x");
        file.Overwrite(at + 300, "y");
        file.Delete(at + 600, 1);
    }
    file.files.ResetCounts();
    EXPECT_EQ(file.document.ReadBytes(50, 1 << 20).size(), std::size_t{1} << 20);
    EXPECT_LE(file.files.Count(Call::Read), 3);
}

TEST(EditableDocument, OverwritesInARowReadTheFileByBlocks) {
    EditedFile file(Pattern(40'000));
    file.Delete(20'000, 1);
    file.files.ResetCounts();
    for (std::uint64_t at = 0; at < 10'000; ++at)
        ASSERT_TRUE(file.document.OverwriteByte(at, 'x'));
    for (std::uint64_t at = 39'998; at >= 30'000; --at)
        ASSERT_TRUE(file.document.OverwriteByte(at, 'x'));
    EXPECT_LE(file.files.Count(Call::Read), 12);
}

TEST(EditableDocument, ComparesWithTheFileOfTheMomentAfterAnyOtherOperation) {
    const auto reads = [](EditedFile& f) { f.document.ReadBytes(0, 1); };
    const auto inserts = [](EditedFile& f) { f.document.InsertByte(90, 'x'); };
    const auto deletes = [](EditedFile& f) { f.document.DeleteByte(80); };
    const auto jumps = [](EditedFile& f) { f.document.OverwriteByte(50, 'x'); };
    for (void (*other)(EditedFile&) : {+reads, +inserts, +deletes, +jumps}) {
        EditedFile file(std::string(100, 'a'));
        for (std::uint64_t at = 0; at < 3; ++at)
            file.document.OverwriteByte(at, 'b');
        // Another program writes where the document has read ahead.
        std::fstream(file.folder.Root() / EditedFile::kName, std::ios::in | std::ios::out)
            .seekp(3)
            .put('c');
        other(file);
        EXPECT_TRUE(file.document.OverwriteByte(3, 'c'));
        const auto piece = PieceWalk(file.document.Edits(), 100).Next();
        EXPECT_EQ(piece->count, 3u) << "the byte is the file's own: no edit";
    }
}

TEST(EditableDocument, OfAFileThatShrankEndsAtTheFirstMissingByte) {
    EditedFile file("abcdefghij");
    file.Overwrite(1, "B");
    const std::filesystem::path path = file.folder.Root() / EditedFile::kName;

    std::filesystem::resize_file(path, 6);
    EXPECT_EQ(file.Shown(), "aBcdef");

    file.Insert(3, "xyz");
    file.Delete(7, 1); // e
    EXPECT_EQ(file.Shown(), "aBcxyzdf");
    file.document.InsertByte(10, '!'); // among the bytes that are missing
    file.document.DeleteByte(9);
    EXPECT_EQ(file.Shown(), "aBcxyzdf");
    EXPECT_EQ(file.document.ReadBytes(8, 1), Bytes{});
    EXPECT_EQ(file.document.ReadBytes(9, 1), Bytes{'!'}) << "an inserted byte needs no file";
    EXPECT_FALSE(file.document.OverwriteByte(8, 'x'));
}

TEST(EditableDocument, OfAFileThatCannotBeReadShowsNothingPastTheFailure) {
    EditedFile file(Pattern(100));
    file.Insert(50, "x");
    file.files.ResetCounts();
    file.files.Arm({Call::Read, 1, Failing::WithCode, 5});
    EXPECT_EQ(file.Shown(), "");
    file.files.Disarm();
    EXPECT_EQ(file.Shown(), file.expected);
}

} // namespace
} // namespace kvx
