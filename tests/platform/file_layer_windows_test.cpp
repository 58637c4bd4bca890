#include "platform/file_layer.h"
#include "platform/win32/handle.h"
#include "platform/win32/long_path.h"
#include "platform/win32/wide.h"

#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

namespace kvx {
namespace {

constexpr DWORD kFullSharing = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

UniqueFileHandle OpenAs(const std::u16string& path, DWORD access, DWORD sharing) {
    return UniqueFileHandle(
        ::CreateFileW(AsWide(path), access, sharing, nullptr, OPEN_EXISTING, 0, nullptr));
}

class FileLayerWindows : public testing::Test {
protected:
    TempFolder folder_;
    std::u16string path_ = folder_.Write(u"f", "content");
    FileLayer& layer_ = SystemFileLayer();
    ErrorCode error_ = 0;
};

TEST_F(FileLayerWindows, ALockedFileDoesNotOpen) {
    const UniqueFileHandle lock = OpenAs(path_, GENERIC_READ, 0);
    ASSERT_TRUE(lock);
    EXPECT_EQ(layer_.OpenForReading(path_, error_), nullptr);
    EXPECT_EQ(error_, static_cast<ErrorCode>(ERROR_SHARING_VIOLATION));
    error_ = 0;
    EXPECT_EQ(layer_.OpenForWriting(path_, error_), nullptr);
    EXPECT_EQ(error_, static_cast<ErrorCode>(ERROR_SHARING_VIOLATION));
}

TEST_F(FileLayerWindows, AFileOpenForReadingMayBeWrittenRenamedAndDeletedByOthers) {
    const auto reader = layer_.OpenForReading(path_, error_);
    ASSERT_NE(reader, nullptr);
    EXPECT_TRUE(OpenAs(path_, GENERIC_READ | GENERIC_WRITE | DELETE, kFullSharing));
    EXPECT_NE(layer_.OpenForWriting(path_, error_), nullptr);
    EXPECT_NE(::MoveFileW(AsWide(path_), AsWide(folder_.Path(u"renamed"))), FALSE);
    EXPECT_TRUE(layer_.Delete(folder_.Path(u"renamed")));
}

TEST_F(FileLayerWindows, AFileOpenForWritingMayOnlyBeReadByOthers) {
    const auto writer = layer_.OpenForWriting(path_, error_);
    ASSERT_NE(writer, nullptr);
    EXPECT_TRUE(OpenAs(path_, GENERIC_READ, kFullSharing));
    EXPECT_FALSE(OpenAs(path_, GENERIC_WRITE, kFullSharing));
    EXPECT_FALSE(OpenAs(path_, DELETE, kFullSharing));
}

TEST_F(FileLayerWindows, ACreatedFileIsNotShared) {
    const auto writer = layer_.CreateForWriting(path_, error_);
    ASSERT_NE(writer, nullptr);
    EXPECT_FALSE(OpenAs(path_, GENERIC_READ, kFullSharing));
}

TEST(ExtendedPath, ChangesOnlyPathsOverTheClassicLimit) {
    const std::u16string tail(300, u'x');
    EXPECT_EQ(ExtendedPath(u"C:\\a\\b.bin"), u"C:\\a\\b.bin");
    EXPECT_EQ(ExtendedPath(u"b.bin"), u"b.bin");
    EXPECT_EQ(ExtendedPath(u"C:\\a/./" + tail), u"\\\\?\\C:\\a\\" + tail);
    EXPECT_EQ(ExtendedPath(u"\\\\server\\share\\" + tail), u"\\\\?\\UNC\\server\\share\\" + tail);
    EXPECT_EQ(ExtendedPath(u"\\\\?\\C:\\" + tail), u"\\\\?\\C:\\" + tail);
}

TEST(UniqueHandle, ClosesOnceAndKeepsTheLastError) {
    UniqueKernelHandle event(::CreateEventW(nullptr, TRUE, FALSE, nullptr));
    const HANDLE raw = event.Get();
    UniqueKernelHandle moved(std::move(event));
    EXPECT_EQ(moved.Get(), raw);
    ::SetLastError(ERROR_DISK_FULL);
    moved.Reset();
    EXPECT_EQ(::GetLastError(), static_cast<DWORD>(ERROR_DISK_FULL));
    EXPECT_EQ(::SetEvent(raw), FALSE);
    EXPECT_FALSE(UniqueFileHandle());
    EXPECT_EQ(UniqueFileHandle().Get(), INVALID_HANDLE_VALUE);
}

} // namespace
} // namespace kvx
