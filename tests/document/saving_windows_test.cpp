#include "tests/document/edited_file.h"

#include "platform/win32/handle.h"
#include "platform/win32/wide.h"

#include <gtest/gtest.h>

namespace kvx {
namespace {

UniqueFileHandle Lock(const EditedFile& file, DWORD access, DWORD sharing) {
    return UniqueFileHandle(::CreateFileW(AsWide(file.document.GetPath()), access, sharing, nullptr,
                                          OPEN_EXISTING, 0, nullptr));
}

TEST(SavingWindows, AFileThatAnotherProgramWritesIsNotSavedInPlace) {
    EditedFile file("0123456789");
    file.Overwrite(5, "over");
    UniqueFileHandle writer = Lock(file, GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE);
    ASSERT_TRUE(writer);
    EXPECT_FALSE(file.document.Save());
    EXPECT_EQ(file.document.GetLastErrorText(), Win32ErrorText(ERROR_SHARING_VIOLATION));
    EXPECT_EQ(file.Shown(), file.expected);
    writer.Reset();
    EXPECT_EQ(file.Disk(), "0123456789");
    EXPECT_TRUE(file.document.Save());
    EXPECT_EQ(file.Disk(), file.expected);
}

TEST(SavingWindows, AFileThatAnotherProgramHoldsOpenIsNotReplaced) {
    EditedFile file("0123456789");
    file.Insert(5, "inserted");
    UniqueFileHandle reader = Lock(file, GENERIC_READ, FILE_SHARE_READ);
    ASSERT_TRUE(reader);
    EXPECT_FALSE(file.document.Save());
    EXPECT_NE(file.document.GetLastErrorText(), u"");
    EXPECT_TRUE(file.IsAlone());
    EXPECT_EQ(file.Disk(), "0123456789");
    EXPECT_EQ(file.Shown(), file.expected);
    reader.Reset();
    EXPECT_TRUE(file.document.Save());
    EXPECT_EQ(file.Disk(), file.expected);
}

} // namespace
} // namespace kvx
