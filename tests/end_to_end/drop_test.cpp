// Files dropped on the real window, and the processes that it starts for them.
#include "file_bytes.h"
#include "file_drop.h"
#include "kivra_process.h"
#include "program_texts.h"
#include "waiting.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace kvx::test {
namespace {

/// The running programs of one program folder, by their main windows.
struct MainWindows {
    std::filesystem::path program;
    std::vector<HWND> windows;
};

std::filesystem::path ProgramOf(HWND window) {
    DWORD id = 0;
    ::GetWindowThreadProcessId(window, &id);
    const UniqueKernelHandle process(::OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, id));
    wchar_t path[1024] = {};
    DWORD length = 1024;
    ::QueryFullProcessImageNameW(process.Get(), 0, path, &length);
    return std::wstring(path, length);
}

BOOL CALLBACK CollectMainWindow(HWND window, LPARAM parameter) {
    auto& search = *reinterpret_cast<MainWindows*>(parameter);
    wchar_t name[64] = {};
    ::GetClassNameW(window, name, 64);
    if (std::wstring_view(name) == L"Kivra.MainWindow" && ProgramOf(window) == search.program)
        search.windows.push_back(window);
    return TRUE;
}

class DropTest : public testing::Test {
protected:
    void TearDown() override {
        for (const HWND window : Windows())
            ::PostMessageW(window, WM_CLOSE, 0, 0);
        EXPECT_TRUE(WaitUntil([this] { return Windows().empty(); }));
    }

    std::vector<HWND> Windows() const {
        MainWindows search{program_.Program(), {}};
        ::EnumWindows(CollectMainWindow, reinterpret_cast<LPARAM>(&search));
        return search.windows;
    }

    std::vector<std::u16string> Titles() const {
        std::vector<std::u16string> titles;
        for (const HWND window : Windows())
            titles.push_back(TextOf(window));
        std::sort(titles.begin(), titles.end());
        return titles;
    }

    std::filesystem::path File(const std::string& name) const {
        const std::filesystem::path path = files_.Root() / name;
        WriteFileBytes(path, name);
        return path;
    }

    ProgramCopy program_;
    TempFolder files_;
    ProgramTexts text_{program_};
};

TEST_F(DropTest, ThreeFilesOnAnEmptyWindowGiveOneDocumentHereAndTwoNewProcesses) {
    KivraProcess kivra(program_, L"");
    ASSERT_TRUE(kivra.WaitForWindow());
    const FileDrop drop(kivra, {File("a.bin"), File("b b.bin"), File("c.bin")});
    EXPECT_TRUE(kivra.WaitForTitle(text_.Title(u"a.bin")));
    const std::vector<std::u16string> expected{text_.Title(u"a.bin"), text_.Title(u"b b.bin"),
                                               text_.Title(u"c.bin")};
    EXPECT_TRUE(WaitUntil([&] { return Titles() == expected; }));
}

TEST_F(DropTest, AnOpenDocumentIsNeverReplaced) {
    KivraProcess kivra(program_, Quoted(File("open.bin")));
    ASSERT_TRUE(kivra.WaitForWindow());
    ASSERT_TRUE(kivra.WaitForTitle(text_.Title(u"open.bin")));
    const FileDrop drop(kivra, {File("dropped.bin")});
    const std::vector<std::u16string> expected{text_.Title(u"dropped.bin"),
                                               text_.Title(u"open.bin")};
    EXPECT_TRUE(WaitUntil([&] { return Titles() == expected; }));
    EXPECT_EQ(kivra.Title(), text_.Title(u"open.bin"));
}

TEST_F(DropTest, AFileThatGetsNoProcessOfItsOwnIsToldOf) {
    KivraProcess kivra(program_, Quoted(File("open.bin")));
    ASSERT_TRUE(kivra.WaitForWindow());
    std::filesystem::rename(program_.Program(), program_.Folder() / "renamed.exe");
    const FileDrop drop(kivra, {File("dropped.bin")});
    const auto box = kivra.WaitForBox();
    ASSERT_TRUE(box);
    EXPECT_EQ(box->Text(), text_("error.open_new_instance_failed"));
    ASSERT_TRUE(box->Press(IDOK));
    EXPECT_EQ(kivra.Title(), text_.Title(u"open.bin"));
}

TEST_F(DropTest, AFileThatDoesNotOpenLeavesTheWindowToTheNextOne) {
    KivraProcess kivra(program_, L"");
    ASSERT_TRUE(kivra.WaitForWindow());
    const FileDrop drop(kivra, {files_.Root() / "missing.bin", File("here.bin")});
    const auto box = kivra.WaitForBox();
    ASSERT_TRUE(box);
    EXPECT_EQ(box->Text(), text_("error.open_failed"));
    ASSERT_TRUE(box->Press(IDOK));
    EXPECT_TRUE(kivra.WaitForTitle(text_.Title(u"here.bin")));
    EXPECT_EQ(Windows().size(), 1U);
}

} // namespace
} // namespace kvx::test
