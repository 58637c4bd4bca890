#include "tests/document/edited_file.h"

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <sys/resource.h>
#include <unistd.h>

namespace kvx {
namespace {

/// Without the superuser's rights for its life: those would write anywhere.
class OrdinaryUser {
public:
    OrdinaryUser() : before_(::geteuid()) {
        constexpr uid_t kNobody = 65534;
        if (before_ == 0 && ::seteuid(kNobody) != 0) throw std::logic_error("seteuid");
    }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;
    ~OrdinaryUser() { [[maybe_unused]] const int restored = ::seteuid(before_); }

private:
    uid_t before_;
};

void ExpectAccessDeniedTo(EditedFile& file) {
    bool saved = true;
    {
        const OrdinaryUser user;
        saved = file.document.Save();
    }
    EXPECT_FALSE(saved);
    EXPECT_EQ(file.document.GetLastErrorText(), Win32ErrorText(5));
    EXPECT_EQ(file.Disk(), file.onDisk);
    EXPECT_EQ(file.Shown(), file.expected);
}

/// With a limit on the size of files for its life, which the system keeps like the size of a disk.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes) : signal_(std::signal(SIGXFSZ, SIG_IGN)) {
        ::getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit limit{bytes, before_.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;
    ~FileSizeLimit() {
        ::setrlimit(RLIMIT_FSIZE, &before_);
        std::signal(SIGXFSZ, signal_);
    }

private:
    rlimit before_{};
    void (*signal_)(int);
};

TEST(SavingPosix, AFolderThatMayNotBeWrittenRefusesTheTempFile) {
    EditedFile file("0123456789");
    file.Insert(5, "inserted");
    using std::filesystem::perms;
    const perms readOnly =
        perms::owner_read | perms::owner_exec | perms::others_read | perms::others_exec;
    std::filesystem::permissions(file.folder.Root(), readOnly);
    ExpectAccessDeniedTo(file);
    std::filesystem::permissions(file.folder.Root(), perms::owner_all);
    EXPECT_TRUE(file.document.Save());
    EXPECT_EQ(file.Disk(), file.expected);
}

TEST(SavingPosix, AFileThatMayNotBeWrittenIsNotSavedInPlace) {
    EditedFile file("0123456789");
    file.Overwrite(5, "over");
    using std::filesystem::perms;
    std::filesystem::permissions(file.document.GetPath(), perms::owner_read | perms::others_read);
    std::filesystem::permissions(file.folder.Root(), perms::all);
    ExpectAccessDeniedTo(file);
}

TEST(SavingPosix, AFileThatHitsTheLimitOfTheDiskHalfwayIsNotReplaced) {
    EditedFile file(Pattern(3'000'000));
    file.Insert(5, "inserted");
    bool saved = true;
    {
        const FileSizeLimit limit(2'000'000);
        saved = file.document.Save();
    }
    EXPECT_FALSE(saved);
    EXPECT_EQ(file.document.GetLastErrorText(), Win32ErrorText(223));
    EXPECT_TRUE(file.Disk() == file.onDisk);
    EXPECT_TRUE(file.IsAlone());
    EXPECT_TRUE(file.Shown() == file.expected);
    EXPECT_TRUE(file.document.Save());
    EXPECT_TRUE(file.Disk() == file.expected);
}

TEST(SavingPosix, ADeletedFileIsNotSavedInPlaceButWrittenAnewAsAWhole) {
    EditedFile file("0123456789");
    file.Overwrite(0, "x");
    std::filesystem::remove(file.folder.Path(EditedFile::kName));
    EXPECT_FALSE(file.document.Save());
    EXPECT_EQ(file.document.GetLastErrorText(), Win32ErrorText(2));
    EXPECT_EQ(file.Shown(), "x123456789");
    file.Insert(5, "inserted");
    EXPECT_TRUE(file.document.Save());
    EXPECT_EQ(file.Disk(), "x1234inserted56789");
}

} // namespace
} // namespace kvx
