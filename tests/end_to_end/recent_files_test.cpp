// The recent files and the other choices live on from one run to the next.
#include "file_bytes.h"
#include "kivra_process.h"
#include "program_texts.h"
#include "waiting.h"

#include "settings/settings_file.h"

#include <gtest/gtest.h>

namespace kvx::test {
namespace {

AppSettings SettingsOf(const ProgramCopy& program) {
    AppSettings settings;
    LoadSettings(program.SettingsFile().u16string(), settings);
    return settings;
}

TEST(RecentFilesTest, AnOpenedFileIsOfferedByTheNextRun) {
    const ProgramCopy program;
    const ProgramTexts text(program);
    const TempFolder files;
    const std::u16string first = files.Write(u"first.bin", "one");
    const std::u16string second = files.Write(u"second.bin", "two");
    for (const std::u16string& path : {first, second}) {
        KivraProcess kivra(program, Quoted(path));
        ASSERT_TRUE(kivra.WaitForWindow());
        kivra.RequestClose();
        ASSERT_EQ(kivra.WaitForExit(), 0);
    }
    EXPECT_EQ(SettingsOf(program).recentFiles, (std::vector<std::u16string>{second, first}));

    KivraProcess kivra(program, L"");
    ASSERT_TRUE(kivra.WaitForWindow());
    kivra.Run(Command::RecentFirst + 1);
    EXPECT_TRUE(kivra.WaitForTitle(text.Title(u"first.bin")));
    EXPECT_EQ(SettingsOf(program).recentFiles, (std::vector<std::u16string>{first, second}));
    kivra.Run(Command::RecentFirst + 2); // beyond the list
    EXPECT_EQ(kivra.Title(), text.Title(u"first.bin"));
    kivra.Run(Command::Close);
    EXPECT_TRUE(kivra.WaitForTitle(text("app.title")));
}

TEST(RecentFilesTest, ARelativePathMeansTheSameFileAfterTheOpenDialog) {
    const ProgramCopy program;
    const ProgramTexts text(program);
    const TempFolder here;
    const TempFolder elsewhere;
    here.Write(u"near.bin", "near");
    elsewhere.Write(u"far.bin", "far");
    KivraProcess kivra(program, L"near.bin", here.Root());
    ASSERT_TRUE(kivra.WaitForWindow());
    ASSERT_TRUE(kivra.WaitForTitle(text.Title(u"near.bin")));
    kivra.Post(Command::Open);
    ASSERT_TRUE(ChooseInFileDialog(kivra.Id(), (elsewhere.Root() / "far.bin").wstring()));
    ASSERT_TRUE(kivra.WaitForTitle(text.Title(u"far.bin")));
    kivra.Post(Command::RecentFirst + 1);
    EXPECT_TRUE(kivra.WaitForTitle(text.Title(u"near.bin")));
}

TEST(RecentFilesTest, ThemeAndLanguageSurviveARestart) {
    const ProgramCopy program;
    {
        KivraProcess kivra(program, L"");
        ASSERT_TRUE(kivra.WaitForWindow());
        kivra.Run(Command::ThemeLight);
        kivra.Run(Command::LanguageJapanese);
        kivra.RequestClose();
        ASSERT_EQ(kivra.WaitForExit(), 0);
    }
    const AppSettings settings = SettingsOf(program);
    EXPECT_EQ(settings.theme, Theme::Light);
    EXPECT_EQ(settings.uiLanguage, UiLanguage::Japanese);
    EXPECT_EQ(settings.appVersion, kAppVersionLabel);

    KivraProcess kivra(program, L"");
    ASSERT_TRUE(kivra.WaitForWindow());
    const ProgramTexts japanese(program, UiLanguage::Japanese);
    EXPECT_TRUE(kivra.WaitForTitle(japanese("app.title")));
    ASSERT_TRUE(kivra.Keys().TakeForeground());
    EXPECT_TRUE(WaitUntil([&] {
        const Picture picture = ClientPicture(kivra.View());
        return picture.Count(0xF6F4EF) == picture.pixels.size();
    }));
}

TEST(RecentFilesTest, ADamagedSettingsFileStartsWithTheDefaults) {
    const ProgramCopy program;
    const ProgramTexts text(program);
    program.WriteSettings(KnownBytes(100'000));
    KivraProcess kivra(program, L"");
    ASSERT_TRUE(kivra.WaitForWindow());
    EXPECT_TRUE(kivra.WaitForTitle(text("app.title")));
}

} // namespace
} // namespace kvx::test
