#include "platform/file_layer.h"
#include "platform/posix/errors.h"

#include <gtest/gtest.h>

#include <cerrno>

namespace kvx {
namespace {

TEST(FileLayerPosix, AFullDiskIsReportedAsSuch) {
    ErrorCode error = 0;
    const auto file = SystemFileLayer().OpenForWriting(u"/dev/full", error);
    if (!file) GTEST_SKIP() << "no /dev/full here";
    const std::uint8_t byte = 0;
    EXPECT_EQ(WriteAll(*file, {&byte, 1}), FileResult::Failure(112));
}

TEST(FileLayerPosix, ErrorNumbersBecomeTheCodesOfWindows) {
    EXPECT_EQ(Win32CodeOf(ENOENT), 2U);
    EXPECT_EQ(Win32CodeOf(EPERM), 5U);
    EXPECT_EQ(Win32CodeOf(EROFS), 19U);
    EXPECT_EQ(Win32CodeOf(ETXTBSY), 32U);
    EXPECT_EQ(Win32CodeOf(ENOSPC), 112U);
    EXPECT_EQ(Win32CodeOf(EDOM), 31U);
}

} // namespace
} // namespace kvx
