#include "tests/document/edited_file.h"

#include "platform/win32/handle.h"
#include "platform/win32/wide.h"

#include <gtest/gtest.h>

namespace kvx {
namespace {

TEST(SavingWindows, AFileThatAnotherProgramHoldsOpenIsNotChangedUntilItIsLetGo) {
    struct Case {
        void (*edit)(EditedFile&);
        DWORD access;
        DWORD sharing;
    };
    const Case cases[] = {
        {[](EditedFile& f) { f.Overwrite(5, "over"); }, GENERIC_WRITE,
         FILE_SHARE_READ | FILE_SHARE_WRITE},
        {[](EditedFile& f) { f.Insert(5, "inserted"); }, GENERIC_READ, FILE_SHARE_READ},
    };
    for (const Case& c : cases) {
        EditedFile file("0123456789");
        c.edit(file);
        UniqueFileHandle other(::CreateFileW(AsWide(file.document.GetPath()), c.access, c.sharing,
                                             nullptr, OPEN_EXISTING, 0, nullptr));
        ASSERT_TRUE(other);
        EXPECT_FALSE(file.document.Save());
        EXPECT_NE(file.document.GetLastErrorText(), u"");
        EXPECT_TRUE(file.IsAlone());
        EXPECT_EQ(file.Shown(), file.expected);
        other.Reset();
        EXPECT_EQ(file.Disk(), file.onDisk);
        EXPECT_TRUE(file.document.Save());
        EXPECT_EQ(file.Disk(), file.expected);
    }
}

} // namespace
} // namespace kvx
