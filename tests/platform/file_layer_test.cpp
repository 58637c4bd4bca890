#include "platform/file_layer.h"

#include "platform/system.h"
#include "platform/temp_file.h"
#include "tests/support/mock_files.h"
#include "tests/support/temp_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <utility>
#include <vector>

namespace kvx {
namespace {

constexpr ErrorCode kFileNotFound = 2;
constexpr ErrorCode kAccessDenied = 5;
constexpr ErrorCode kFileExists = 80;

ByteView Borrow(std::string_view text) {
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

std::optional<std::string> ReadText(const ReadableFile& file, std::uint64_t offset,
                                    std::size_t count) {
    Bytes target(count);
    ErrorCode error = 0;
    const std::optional<std::size_t> got = file.ReadAt(offset, target, error);
    if (!got) return std::nullopt;
    return std::string(target.begin(), target.begin() + static_cast<std::ptrdiff_t>(*got));
}

class FileLayerTest : public testing::Test {
protected:
    std::unique_ptr<ReadableFile> Read(const std::u16string& path) {
        return layer_.OpenForReading(path, error_);
    }

    TempFolder folder_;
    FileLayer& layer_ = SystemFileLayer();
    ErrorCode error_ = 0;
};

TEST_F(FileLayerTest, NeitherAMissingFileNorAFolderOpens) {
    const std::u16string missing = folder_.Path(u"missing");
    for (const auto& [path, code] :
         {std::pair(missing, kFileNotFound), {folder_.Root().u16string(), kAccessDenied}}) {
        EXPECT_EQ(layer_.OpenForReading(path, error_), nullptr);
        EXPECT_EQ(std::exchange(error_, 0), code);
        EXPECT_EQ(layer_.OpenForWriting(path, error_), nullptr);
        EXPECT_EQ(std::exchange(error_, 0), code);
    }
    EXPECT_EQ(layer_.MoveOver(missing, folder_.Path(u"to")), FileResult::Failure(kFileNotFound));
    EXPECT_EQ(layer_.Delete(missing), FileResult::Failure(kFileNotFound));
    EXPECT_EQ(layer_.MakeTempFile(missing, u"KVT", error_), std::nullopt);
    EXPECT_NE(error_, 0U);
    EXPECT_TRUE(folder_.Names().empty());
}

TEST_F(FileLayerTest, ReadsAtPositionsAndStopsAtTheEnd) {
    const auto file = Read(folder_.Write(u"f", "0123456789"));
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(file->Size(), 10U);
    EXPECT_EQ(ReadText(*file, 7, 2), "78");
    EXPECT_EQ(ReadText(*file, 7, 100), "789");
    EXPECT_EQ(ReadText(*file, 10, 1), "");
    EXPECT_EQ(ReadText(*file, 1'000'000, 1), "");
    EXPECT_EQ(Read(folder_.Write(u"empty", ""))->Size(), 0U);
}

TEST_F(FileLayerTest, ReadsAndWritesBeyondFourGigabytes) {
    constexpr std::uint64_t kSize = 0x1'4000'0000;
    const std::u16string path = folder_.WriteSparse(u"big", kSize, "head", "tail");
    const auto reader = Read(path);
    ASSERT_NE(reader, nullptr);
    EXPECT_EQ(reader->Size(), kSize);
    EXPECT_EQ(ReadText(*reader, kSize - 4, 100), "tail");

    const auto writer = layer_.OpenForWriting(path, error_);
    ASSERT_NE(writer, nullptr);
    ASSERT_TRUE(writer->Seek(kSize - 2));
    ASSERT_TRUE(WriteAll(*writer, Borrow("XYZ")));
    EXPECT_EQ(ReadText(*reader, kSize - 4, 100), "taXYZ");
}

TEST_F(FileLayerTest, WritesFromThePositionAndSetsTheEndThere) {
    const std::u16string path = folder_.Write(u"f", "0123456789");
    const auto file = layer_.OpenForWriting(path, error_);
    ASSERT_NE(file, nullptr);
    std::uint64_t written = 0;
    EXPECT_TRUE(file->Write(Borrow("ab"), written));
    EXPECT_EQ(written, 2U);
    EXPECT_TRUE(file->Seek(12));
    EXPECT_TRUE(WriteAll(*file, Borrow("end")));
    file->StartWriteBack();
    file->StartWriteBack(); // nothing new
    EXPECT_TRUE(file->Flush());
    EXPECT_EQ(folder_.Read(u"f"), std::string("ab23456789\0\0end", 15));
    EXPECT_FALSE(file->Seek(~std::uint64_t{0}));
    EXPECT_TRUE(file->Seek(4));
    EXPECT_TRUE(file->SetEnd());
    EXPECT_EQ(folder_.Read(u"f"), "ab23");
}

TEST_F(FileLayerTest, CreatingEmptiesWhatIsThere) {
    const std::u16string path = folder_.Write(u"f", "old content");
    {
        const auto file = layer_.CreateForWriting(path, error_);
        ASSERT_NE(file, nullptr);
        EXPECT_TRUE(WriteAll(*file, Borrow("new")));
    }
    EXPECT_EQ(folder_.Read(u"f"), "new");
}

TEST_F(FileLayerTest, TempFilesAreEmptyNewAndNamedByThePrefix) {
    const auto first = layer_.MakeTempFile(folder_.Root().u16string(), u"KVT", error_);
    const auto second = layer_.MakeTempFile(folder_.Root().u16string(), u"KVT", error_);
    ASSERT_TRUE(first && second);
    EXPECT_NE(*first, *second);
    const std::set<std::u16string> names = folder_.Names();
    EXPECT_EQ(names.size(), 2U);
    for (const std::u16string& name : names) {
        EXPECT_TRUE(name.starts_with(u"KVT"));
        EXPECT_EQ(folder_.Read(name), "");
    }
    EXPECT_TRUE(names.contains(std::filesystem::path(*first).filename().u16string()));
}

TEST_F(FileLayerTest, MovesAFileOverAnotherOrLeavesBoth) {
    const std::u16string from = folder_.Write(u"from", "new");
    std::filesystem::create_directory(folder_.Root() / "folder");
    EXPECT_EQ(layer_.MoveOver(from, folder_.Path(u"folder")), FileResult::Failure(kAccessDenied));
    EXPECT_EQ(folder_.Names(), (std::set<std::u16string>{u"from", u"folder"}));
    EXPECT_TRUE(layer_.MoveOver(from, folder_.Write(u"to", "the old file")));
    EXPECT_EQ(folder_.Read(u"to"), "new");
    EXPECT_EQ(folder_.Names(), (std::set<std::u16string>{u"to", u"folder"}));
}

TEST_F(FileLayerTest, NamesOfEveryScriptAndLengthWork) {
    const std::u16string deep = folder_.MakeDeepFolder(400);
    const std::u16string target = JoinPath(deep, u"\U0001F600.bin");

    ASSERT_NE(layer_.CreateForWriting(target, error_), nullptr);
    const auto temp = layer_.MakeTempFile(deep, u"KVT", error_);
    ASSERT_TRUE(temp) << error_;
    {
        const auto file = layer_.CreateForWriting(*temp, error_);
        ASSERT_NE(file, nullptr) << error_;
        ASSERT_TRUE(WriteAll(*file, Borrow("deep")));
    }
    EXPECT_TRUE(layer_.MoveOver(*temp, target));
    const auto reader = Read(target);
    ASSERT_NE(reader, nullptr);
    EXPECT_EQ(ReadText(*reader, 0, 100), "deep");
    EXPECT_EQ(layer_.Delete(*temp), FileResult::Failure(kFileNotFound));
}

TEST(MakeUniqueFile, SkipsTakenNamesAndGoesAround) {
    std::vector<std::u16string> tried;
    ErrorCode error = 0;
    const auto path = MakeUniqueFile(
        u"/d", u"KVT", 0xFFFE,
        [&](const std::u16string& candidate) {
            tried.push_back(std::filesystem::path(candidate).filename().u16string());
            return tried.size() < 3 ? kFileExists : 0;
        },
        error);
    EXPECT_TRUE(path);
    EXPECT_THAT(tried, testing::ElementsAre(u"KVTFFFE.tmp", u"KVTFFFF.tmp", u"KVT0000.tmp"));
}

TEST(MakeUniqueFile, GivesUpOnAnotherErrorAndWhenAllNamesAreTaken) {
    std::size_t calls = 0;
    ErrorCode error = 0;
    EXPECT_FALSE(MakeUniqueFile(
        u"/d", u"KVT", 0, [&](const auto&) { return ++calls == 2 ? kAccessDenied : kFileExists; },
        error));
    EXPECT_EQ(calls, 2U);
    EXPECT_EQ(error, kAccessDenied);
    calls = 0;
    EXPECT_FALSE(MakeUniqueFile(
        u"/d", u"KVT", 7, [&](const auto&) { return ++calls, kFileExists; }, error));
    EXPECT_EQ(calls, 0x10000U);
    EXPECT_EQ(error, kFileExists);
}

TEST(WriteAll, FailsOnceOnAShortOrFailedWriteAndWritesNothingOfNothing) {
    for (const FileResult& told : {FileResult::Success(), FileResult::Failure(112)}) {
        MockWritableFile file;
        EXPECT_CALL(file, Write).WillOnce([&](ByteView data, std::uint64_t& written) {
            written = data.size() / 2;
            return told;
        });
        EXPECT_EQ(WriteAll(file, {}), FileResult::Success());
        EXPECT_EQ(WriteAll(file, Borrow("0123")), FileResult::Failure(told.error));
    }
}

} // namespace
} // namespace kvx
