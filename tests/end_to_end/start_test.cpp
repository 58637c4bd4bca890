// Starting the program: its window, its arguments, and files that cannot be opened.
#include "file_bytes.h"
#include "kivra_process.h"
#include "program_texts.h"
#include "waiting.h"

#include <gtest/gtest.h>

namespace kvx::test {
namespace {

class StartTest : public testing::Test {
protected:
    std::filesystem::path File(const std::string& name, const std::string& bytes) const {
        const std::filesystem::path path = files_.Root() / name;
        WriteFileBytes(path, bytes);
        return path;
    }

    ProgramCopy program_;
    TempFolder files_;
    ProgramTexts text_{program_};
};

TEST_F(StartTest, WithoutArgumentsOpensAnEmptyWindowCentredOnTheScreen) {
    KivraProcess kivra(program_, L"");
    ASSERT_TRUE(kivra.WaitForWindow());
    EXPECT_TRUE(kivra.WaitForTitle(text_("app.title")));

    RECT window{};
    RECT work{};
    ::GetWindowRect(kivra.MainWindow(), &window);
    ::SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
    RECT expected{0, 0, 980, 760};
    ::AdjustWindowRectExForDpi(&expected, WS_OVERLAPPEDWINDOW, FALSE, 0, ::GetDpiForSystem());
    EXPECT_EQ(window.right - window.left, expected.right - expected.left);
    EXPECT_EQ(window.bottom - window.top, expected.bottom - expected.top);
    EXPECT_EQ(window.left, work.left + (work.right - work.left - (window.right - window.left)) / 2);

    kivra.RequestClose();
    EXPECT_EQ(kivra.WaitForExit(), 0);
}

TEST_F(StartTest, OpensOnlyTheFirstArgument) {
    const auto first = File("first.bin", "first");
    const auto second = File("second.bin", "second");
    KivraProcess kivra(program_, Quoted(first) + L" " + Quoted(second));
    ASSERT_TRUE(kivra.WaitForWindow());
    EXPECT_TRUE(kivra.WaitForTitle(text_.Title(u"first.bin")));
}

TEST_F(StartTest, AnEmptyFirstArgumentOpensNothing) {
    const auto second = File("second.bin", "second");
    KivraProcess kivra(program_, L"\"\" " + Quoted(second));
    ASSERT_TRUE(kivra.WaitForWindow());
    EXPECT_TRUE(kivra.WaitForTitle(text_("app.title")));
}

TEST_F(StartTest, OpensNamesWithBlanksAndOtherScripts) {
    const std::filesystem::path path = files_.Root() / u"ファイル 1 é.bin";
    WriteFileBytes(path, "data");
    KivraProcess kivra(program_, Quoted(path));
    ASSERT_TRUE(kivra.WaitForWindow());
    EXPECT_TRUE(kivra.WaitForTitle(text_.Title(u"ファイル 1 é.bin")));
}

TEST_F(StartTest, ShowsTheFileInTheColoursOfEachTheme) {
    const auto path = File("data.bin", KnownBytes(4096));
    KivraProcess kivra(program_, Quoted(path));
    ASSERT_TRUE(kivra.WaitForWindow());
    ASSERT_TRUE(kivra.WaitForTitle(text_.Title(u"data.bin")));
    ASSERT_TRUE(kivra.Keys().TakeForeground());

    struct Row {
        Command command;
        std::uint32_t background;
        std::uint32_t text;
    };
    for (const Row& row : {Row{Command::ThemeLight, 0xF6F4EF, 0x202020},
                           Row{Command::ThemeDarkBlue, 0x0D1B2A, 0xE6EDF3},
                           Row{Command::ThemeBlack, 0x111111, 0xF3F3F3}}) {
        kivra.Run(row.command);
        // Letters are drawn with soft edges, yet some pixel of a page of digits is all text.
        EXPECT_TRUE(WaitUntil([&] {
            const Picture picture = ClientPicture(kivra.View());
            return picture.Count(row.background) > picture.pixels.size() / 2 &&
                   picture.Count(row.text) > 100;
        })) << "theme command "
            << CommandId(row.command);
    }
}

TEST_F(StartTest, AFileThatCannotBeOpenedIsNamedAsAFailureAndLeavesAnEmptyWindow) {
    const auto locked = File("locked.bin", "locked");
    const UniqueFileHandle lock(::CreateFileW(locked.c_str(), GENERIC_READ | GENERIC_WRITE, 0,
                                              nullptr, OPEN_EXISTING, 0, nullptr));
    ASSERT_TRUE(lock);
    for (const std::filesystem::path& path :
         {files_.Root() / "missing.bin", locked, files_.Root()}) {
        KivraProcess kivra(program_, Quoted(path));
        const auto box = kivra.WaitForBox();
        ASSERT_TRUE(box) << path;
        EXPECT_EQ(box->Text(), text_("error.open_failed"));
        EXPECT_EQ(box->Caption(), text_("app.title"));
        ASSERT_TRUE(box->Press(IDOK));
        ASSERT_TRUE(kivra.WaitForWindow());
        EXPECT_TRUE(kivra.WaitForTitle(text_("app.title")));
    }
}

} // namespace
} // namespace kvx::test
