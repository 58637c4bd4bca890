#include "tests/document/edited_file.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <unistd.h>

namespace kvx {
namespace {

// The superuser would be allowed to write anywhere.
bool SaveAsOrdinaryUser(EditableDocument& document) {
    constexpr uid_t kNobody = 65534;
    const uid_t before = ::geteuid();
    if (before == 0 && ::seteuid(kNobody) != 0) throw std::logic_error("seteuid");
    const bool saved = document.Save();
    if (::seteuid(before) != 0) throw std::logic_error("seteuid");
    return saved;
}

// The folder refuses the temporary file of the one, the file itself the other.
TEST(SavingPosix, WhatMayNotBeWrittenIsToldAndStaysAsItIs) {
    using std::filesystem::perms;
    constexpr perms kReadOnly =
        perms::owner_read | perms::owner_exec | perms::others_read | perms::others_exec;
    for (const bool inPlace : {false, true}) {
        EditedFile file("0123456789");
        if (inPlace)
            file.Overwrite(5, "over");
        else
            file.Insert(5, "inserted");
        std::filesystem::permissions(file.document.GetPath(), inPlace ? kReadOnly : perms::all);
        std::filesystem::permissions(file.folder.Root(), inPlace ? perms::all : kReadOnly);
        EXPECT_FALSE(SaveAsOrdinaryUser(file.document));
        EXPECT_EQ(file.document.GetLastErrorText(), Win32ErrorText(5));
        EXPECT_EQ(file.Disk(), file.onDisk);
        EXPECT_EQ(file.Shown(), file.expected);
        std::filesystem::permissions(file.folder.Root(), perms::all);
    }
}

} // namespace
} // namespace kvx
