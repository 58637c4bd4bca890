#include "tests/document/edited_file.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <string>

namespace kvx {
namespace {

// By both ways of reading.
std::string Read(const EditedFile& file, std::uint64_t offset, std::uint64_t count) {
    const Bytes bytes = file.document.ReadBytes(offset, count);
    Bytes target(std::min<std::uint64_t>(count, bytes.size() + 100));
    target.resize(file.document.ReadInto(offset, target));
    EXPECT_TRUE(target == bytes) << count << " at " << offset;
    return {bytes.begin(), bytes.end()};
}

TEST(EditableDocument, RefusesWhatIsFarOutsideAndWithoutAFileEverything) {
    constexpr std::uint64_t kFarOff = ~std::uint64_t{0};
    EditedFile file("abcdef");
    EditableDocument& document = file.document;
    const auto expectRefusals = [&](std::uint64_t offset) {
        EXPECT_FALSE(document.OverwriteByte(offset, 'x'));
        EXPECT_FALSE(document.InsertByte(offset, 'x'));
        EXPECT_FALSE(document.DeleteByte(offset));
        EXPECT_EQ(Read(file, offset, kFarOff), "");
    };
    file.Append("x");
    EXPECT_TRUE(document.Open(document.GetPath()));
    EXPECT_EQ(Read(file, 2, kFarOff), "cdef") << "opening dropped the edits";
    expectRefusals(kFarOff);

    EXPECT_TRUE(document.InsertByte(0, 'x'));
    EXPECT_FALSE(document.Open(file.folder.Path(u"missing")));
    EXPECT_FALSE(document.IsOpen() || document.IsModified());
    EXPECT_EQ(document.GetSize(), 0U);
    EXPECT_EQ(document.GetPath(), u"");
    expectRefusals(0);
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
        const auto kind = random() % 3;
        if (kind == 0) file.Insert(at, Pattern(length, 1)), at += length;
        if (kind == 1) file.Delete(at, left);
        if (kind == 2) file.Overwrite(at, Pattern(left, 2)), at += left;
        at += random() % (random() % 8 == 0 ? 150'000 : 3000);
    }
    EXPECT_TRUE(file.Shown() == file.expected);
    for (int i = 0; i < 200; ++i) {
        const std::size_t offset = random() % file.expected.size();
        const std::size_t count = random() % (i % 2 == 0 ? 300 : 400'000);
        ASSERT_TRUE(Read(file, offset, count) == file.expected.substr(offset, count))
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
    using Operation = void (*)(EditableDocument&);
    const Operation others[] = {[](EditableDocument& d) { d.ReadBytes(0, 1); },
                                [](EditableDocument& d) { d.InsertByte(90, 'x'); },
                                [](EditableDocument& d) { d.DeleteByte(80); },
                                [](EditableDocument& d) { d.OverwriteByte(50, 'x'); }};
    for (const Operation other : others) {
        EditedFile file(std::string(100, 'a'));
        for (std::uint64_t at = 0; at < 3; ++at)
            file.document.OverwriteByte(at, 'b');
        // Another program writes where the document has read ahead.
        std::fstream(file.folder.Root() / EditedFile::kName, std::ios::in | std::ios::out)
            .seekp(3)
            .put('c');
        other(file.document);
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
    file.Insert(3, "xyz");
    file.Delete(7, 1); // e
    EXPECT_EQ(file.Shown(), "aBcxyzdf");
    file.document.InsertByte(10, '!'); // among the bytes that are missing
    file.document.DeleteByte(9);
    EXPECT_EQ(file.Shown(), "aBcxyzdf");
    EXPECT_EQ(Read(file, 8, 1), "");
    EXPECT_EQ(Read(file, 9, 1), "!") << "an inserted byte needs no file";
    EXPECT_FALSE(file.document.OverwriteByte(8, 'x'));

    EditedFile larger(Pattern(40'000)); // than what one block needs beside it
    larger.Insert(39'000, "x");
    std::filesystem::resize_file(larger.document.GetPath(), 5'000);
    Bytes target(40'001);
    EXPECT_EQ(larger.document.ReadInto(0, target), 5'000U);
}

TEST(EditableDocument, OfAFileThatCannotBeReadShowsNothingPastTheFailure) {
    EditedFile file(Pattern(100));
    file.Insert(50, "x");
    file.files.ResetCounts();
    file.files.Arm({Call::Read, 1, Failing::WithCode, 5});
    EXPECT_EQ(file.Shown(), "");
    EXPECT_EQ(file.Shown(), file.expected);
}

} // namespace
} // namespace kvx
