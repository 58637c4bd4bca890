#include "document/editable_document.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace kvx {
namespace {

constexpr std::uint64_t kSize = 0x1'4000'0000; // 5 GiB
constexpr std::uint64_t kFar = 0x1'2345'6789;

class LargeFile : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(document_.Open(path_)); }

    void Overwrite(std::uint64_t position, std::string_view text) {
        for (std::size_t i = 0; i < text.size(); ++i)
            ASSERT_TRUE(document_.OverwriteByte(position + i, static_cast<std::uint8_t>(text[i])));
    }

    void Append(std::string_view text) {
        for (const char c : text)
            ASSERT_TRUE(document_.InsertByte(document_.GetSize(), static_cast<std::uint8_t>(c)));
    }

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
    Overwrite(kFar, "far");
    Overwrite(2, "AD");
    Append("appended");
    EXPECT_EQ(document_.GetSize(), kSize + 8);
    EXPECT_EQ(Shown(kFar - 1, 5), std::string("\0far\0", 5));
    EXPECT_EQ(Shown(kSize - 4, 100), "tailappended");
    ASSERT_TRUE(document_.Save());
    EXPECT_EQ(document_.GetSize(), kSize + 8);
    EXPECT_EQ(std::filesystem::file_size(path_), kSize + 8);
    EXPECT_EQ(Disk(0, 4), "heAD");
    EXPECT_EQ(Disk(kFar - 1, 5), std::string("\0far\0", 5));
    EXPECT_EQ(Disk(kSize - 4, 100), "tailappended");
}

TEST_F(LargeFile, IsCutInPlaceBeyondFourGigabytes) {
    for (int i = 0; i < 5; ++i)
        ASSERT_TRUE(document_.DeleteByte(document_.GetSize() - 1));
    Overwrite(kSize - 6, "x");
    ASSERT_TRUE(document_.Save());
    EXPECT_EQ(std::filesystem::file_size(path_), kSize - 5);
    EXPECT_EQ(Disk(kSize - 7, 100), std::string("\0x", 2));
}

TEST_F(LargeFile, ShowsInsertionsAndDeletionsBeyondFourGigabytes) {
    ASSERT_TRUE(document_.InsertByte(kFar, 'i'));
    ASSERT_TRUE(document_.DeleteByte(1));
    EXPECT_EQ(Shown(0, 3), "had");
    EXPECT_EQ(Shown(kFar - 2, 3), std::string("\0i\0", 3));
    EXPECT_EQ(Shown(kSize - 4, 100), "tail");
}

} // namespace
} // namespace kvx
