#include "document/editable_document.h"
#include "tests/support/mock_files.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <utility>

namespace kvx {
namespace {

constexpr std::uint64_t kSize = 0x1'4000'0000; // 5 GiB
constexpr std::uint64_t kFar = 0x1'2345'6789;

TEST(LargeFile, IsEditedAndSavedInPlaceBeyondFourGigabytes) {
    TempFolder folder;
    const std::u16string path = folder.WriteSparse(u"f.bin", kSize, "head", "tail");
    EditableDocument document;
    const auto shown = [&](std::uint64_t position, std::uint64_t count) {
        const Bytes bytes = document.ReadBytes(position, count);
        return std::string(bytes.begin(), bytes.end());
    };
    ASSERT_TRUE(document.Open(path));
    EXPECT_TRUE(document.OverwriteByte(kFar, 'f'));
    EXPECT_TRUE(document.OverwriteByte(3, 'D'));
    EXPECT_TRUE(document.InsertByte(kSize, '+'));
    for (const bool saved : {false, true}) {
        ASSERT_TRUE(!saved || document.Save());
        EXPECT_EQ(shown(0, 4), "heaD");
        EXPECT_EQ(shown(kFar - 1, 3), std::string("\0f\0", 3));
        EXPECT_EQ(shown(kSize - 4, 100), "tail+");
    }
    for (const std::uint64_t last : {kSize, kSize - 1, kSize - 2})
        EXPECT_TRUE(document.DeleteByte(last));
    ASSERT_TRUE(document.Save());
    EXPECT_EQ(std::filesystem::file_size(path), kSize - 2);
    EXPECT_EQ(shown(kSize - 4, 100), "ta");

    EXPECT_TRUE(document.InsertByte(kFar, 'i'));
    EXPECT_TRUE(document.DeleteByte(1));
    EXPECT_EQ(shown(kFar - 2, 4), std::string("\0if\0", 4));
    EXPECT_EQ(shown(kSize - 4, 100), "ta");
}

constexpr std::uint64_t kStep = 4096;

/// A file of 5 GiB that exists only as a rule: every 4 KiB begin with their own position, the rest
/// of what a read gives is whatever was there before.
class RuledFile final : public ReadableFile {
public:
    std::optional<std::uint64_t> Size() const override { return kSize; }

    std::optional<std::size_t> ReadAt(std::uint64_t offset, std::span<std::uint8_t> target,
                                      ErrorCode&) const override {
        const std::uint64_t end = offset + target.size();
        for (std::uint64_t at = (offset + kStep - 1) / kStep * kStep; at + 8 <= end; at += kStep)
            std::memcpy(target.data() + (at - offset), &at, 8);
        return target.size();
    }
};

TEST(LargeFile, IsCopiedThroughATempFileBeyondFourGigabytes) {
    std::uint64_t size = 0;
    std::uint64_t rightPlaces = 0; // of the positions, behind one inserted byte
    const auto takePiece = [&](ByteView data, std::uint64_t& written) {
        written = data.size();
        const std::uint64_t start = std::exchange(size, size + written);
        for (std::uint64_t at = (start + kStep - 2) / kStep * kStep + 1; at + 8 <= size;
             at += kStep) {
            std::uint64_t position = 0;
            std::memcpy(&position, data.data() + (at - start), 8);
            if (position == at - 1) ++rightPlaces;
        }
        return FileResult::Success();
    };
    testing::NiceMock<MockFileLayer> files;
    ON_CALL(files, OpenForReading).WillByDefault([] { return std::make_unique<RuledFile>(); });
    ON_CALL(files, MakeTempFile).WillByDefault(testing::Return(u"temp"));
    ON_CALL(files, CreateForWriting).WillByDefault([&] {
        auto file = std::make_unique<testing::NiceMock<MockWritableFile>>();
        ON_CALL(*file, Write).WillByDefault(takePiece);
        return file;
    });

    EditableDocument document(files);
    ASSERT_TRUE(document.Open(u"folder/f.bin"));
    ASSERT_TRUE(document.InsertByte(0, 'x'));
    EXPECT_TRUE(document.Save());
    EXPECT_EQ(size, kSize + 1);
    EXPECT_EQ(rightPlaces, kSize / kStep);
}

} // namespace
} // namespace kvx
