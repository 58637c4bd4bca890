#include "document/editable_document.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <fstream>

namespace kvx {
namespace {

constexpr std::uint64_t kSize = 0x1'4000'0000; // 5 GiB
constexpr std::uint64_t kFar = 0x1'2345'6789;

class LargeFile : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(document_.Open(path_)); }

    std::string Shown(std::uint64_t position, std::uint64_t count) const {
        const Bytes bytes = document_.ReadBytes(position, count);
        return {bytes.begin(), bytes.end()};
    }

    std::string Disk(std::uint64_t position, std::size_t count) const {
        std::ifstream in(std::filesystem::path(path_), std::ios::binary);
        in.seekg(static_cast<std::streamoff>(position));
        std::string text(count, '\0');
        in.read(text.data(), static_cast<std::streamsize>(count));
        text.resize(static_cast<std::size_t>(in.gcount()));
        return text;
    }

    TempFolder folder_;
    std::u16string path_ = folder_.WriteSparse(u"f.bin", kSize, "head", "tail");
    EditableDocument document_;
};

TEST_F(LargeFile, IsEditedAndSavedInPlaceBeyondFourGigabytes) {
    EXPECT_TRUE(document_.OverwriteByte(kFar, 'f'));
    EXPECT_TRUE(document_.OverwriteByte(3, 'D'));
    EXPECT_TRUE(document_.InsertByte(kSize, '+'));
    EXPECT_EQ(Shown(kFar - 1, 3), std::string("\0f\0", 3));
    EXPECT_EQ(Shown(kSize - 4, 100), "tail+");
    ASSERT_TRUE(document_.Save());
    EXPECT_EQ(std::filesystem::file_size(path_), kSize + 1);
    EXPECT_EQ(Disk(0, 4), "heaD");
    EXPECT_EQ(Disk(kFar - 1, 3), std::string("\0f\0", 3));
    EXPECT_EQ(Disk(kSize - 4, 100), "tail+");

    for (const std::uint64_t last : {kSize, kSize - 1, kSize - 2})
        EXPECT_TRUE(document_.DeleteByte(last));
    ASSERT_TRUE(document_.Save());
    EXPECT_EQ(std::filesystem::file_size(path_), kSize - 2);
    EXPECT_EQ(Disk(kSize - 4, 100), "ta");
}

TEST_F(LargeFile, ShowsInsertionsAndDeletionsBeyondFourGigabytes) {
    ASSERT_TRUE(document_.InsertByte(kFar, 'i'));
    ASSERT_TRUE(document_.DeleteByte(1));
    EXPECT_EQ(Shown(0, 3), "had");
    EXPECT_EQ(Shown(kFar - 2, 3), std::string("\0i\0", 3));
    EXPECT_EQ(Shown(kSize - 4, 100), "tail");
}

/// A file of 5 GiB that exists only as a rule: every 4 KiB begin with their own position, the rest
/// of what a read gives is whatever was there before.
class RuledFile final : public ReadableFile {
public:
    static constexpr std::uint64_t kStep = 4096;

    std::optional<std::uint64_t> Size() const override { return kSize; }

    std::optional<std::size_t> ReadAt(std::uint64_t offset, std::span<std::uint8_t> target,
                                      ErrorCode&) const override {
        const std::uint64_t end = offset + target.size();
        for (std::uint64_t at = (offset + kStep - 1) / kStep * kStep; at + 8 <= end; at += kStep)
            std::memcpy(target.data() + (at - offset), &at, 8);
        return target.size();
    }
};

struct Checked {
    std::uint64_t size = 0;  ///< bytes written
    std::uint64_t right = 0; ///< positions found where they belong
};

/// Takes that file with one byte inserted at its start and compares every position in it.
class CheckingFile final : public WritableFile {
public:
    explicit CheckingFile(Checked& checked) : checked_(checked) {}

    FileResult Seek(std::uint64_t) override { return FileResult::Failure(0); }
    FileResult SetEnd() override { return FileResult::Failure(0); }
    FileResult Flush() override { return FileResult::Success(); }

    FileResult Write(ByteView data, std::uint64_t& written) override {
        constexpr std::uint64_t kStep = RuledFile::kStep;
        const std::uint64_t start = checked_.size;
        checked_.size = start + data.size();
        for (std::uint64_t at = (start + kStep - 2) / kStep * kStep + 1; at + 8 <= checked_.size;
             at += kStep) {
            std::uint64_t position = 0;
            std::memcpy(&position, data.data() + (at - start), 8);
            if (position == at - 1) ++checked_.right;
        }
        written = data.size();
        return FileResult::Success();
    }

private:
    Checked& checked_;
};

class RuledFileLayer final : public FileLayer {
public:
    std::unique_ptr<ReadableFile> OpenForReading(const std::u16string&, ErrorCode&) override {
        return std::make_unique<RuledFile>();
    }
    std::unique_ptr<WritableFile> OpenForWriting(const std::u16string&, ErrorCode&) override {
        return nullptr;
    }
    std::unique_ptr<WritableFile> CreateForWriting(const std::u16string&, ErrorCode&) override {
        return std::make_unique<CheckingFile>(checked);
    }
    std::optional<std::u16string> MakeTempFile(const std::u16string&, std::u16string_view,
                                               ErrorCode&) override {
        return u"temp";
    }
    FileResult MoveOver(const std::u16string&, const std::u16string&) override {
        return FileResult::Success();
    }
    FileResult Delete(const std::u16string&) override { return FileResult::Success(); }

    Checked checked;
};

TEST(LargeFileSave, CopiesBeyondFourGigabytesThroughATempFile) {
    RuledFileLayer files;
    EditableDocument document(files);
    ASSERT_TRUE(document.Open(u"folder/f.bin"));
    ASSERT_TRUE(document.InsertByte(0, 'x'));
    std::uint64_t last = 0;
    ASSERT_TRUE(document.Save([&](std::uint64_t done, std::uint64_t) { last = done; }));
    EXPECT_EQ(files.checked.size, kSize + 1);
    EXPECT_EQ(last, kSize + 1);
    EXPECT_EQ(files.checked.right, kSize / RuledFile::kStep);
}

} // namespace
} // namespace kvx
