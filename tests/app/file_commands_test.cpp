#include "app/file_commands.h"

#include "tests/app/shell_fakes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kvx {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Texts = std::vector<std::u16string>;

constexpr char16_t kQuestion[] = u"confirm.save_changes|app.title";
constexpr char16_t kOpenFailed[] = u"error.open_failed|app.title";
constexpr ErrorCode kAccessDenied = 5;

class FileCommands : public testing::Test {
protected:
    // Opens a file and changes its first byte to '!'.
    std::u16string OpenModified(const std::string& content = "content") {
        const std::u16string path = rig.Open(content);
        EXPECT_TRUE(shell.Document().OverwriteByte(0, '!'));
        shell.OnViewChanged();
        rig.files.ResetCounts();
        return path;
    }

    bool SaveIsGrey() const { return host.menu[0].children[1].greyed; }

    void ExpectIdle() const {
        EXPECT_TRUE(shell.AcceptsCommands());
        EXPECT_TRUE(host.viewEnabled);
    }

    ShellRig rig;
    Shell& shell = rig.shell;
    RecordingShellHost& host = rig.host;
};

TEST_F(FileCommands, OpeningShowsTheChosenFileReadOnlyAndRemembersIt) {
    OpenWithDialog(shell);
    EXPECT_FALSE(shell.Document().IsOpen()) << "nothing was chosen";
    host.chosenFile = rig.folder.Write(u"data.bin", "content");
    shell.View().ToggleEditable();
    OpenWithDialog(shell);
    EXPECT_THAT(host.boxes, ElementsAre(u"dialog.open.title", u"dialog.open.title"));
    EXPECT_EQ(host.title, u"app.title - data.bin");
    EXPECT_FALSE(SaveIsGrey());
    EXPECT_FALSE(shell.View().State().editable);
    EXPECT_EQ(rig.Stored().recentFiles, Texts{*host.chosenFile});
}

TEST_F(FileCommands, AFailedOpenLeavesNoDocumentAndSaysSo) {
    OpenModified();
    EXPECT_FALSE(OpenFile(shell, u""));
    EXPECT_TRUE(shell.Document().IsModified()) << "an empty path changes nothing";
    EXPECT_FALSE(OpenFile(shell, rig.folder.Path(u"missing.bin")));
    EXPECT_THAT(host.boxes, ElementsAre(kOpenFailed));
    EXPECT_FALSE(shell.Document().IsOpen());
    EXPECT_EQ(host.title, u"app.title");
    EXPECT_EQ(host.status, u"status.no_file");
    EXPECT_TRUE(SaveIsGrey());
    EXPECT_EQ(shell.Settings().recentFiles.size(), 1U);
}

TEST_F(FileCommands, AQuestionKeepsCommandsOutAndItsCancelKeepsEverything) {
    const std::u16string path = OpenModified();
    host.chosenFile = rig.folder.Write(u"other.bin", "other");
    shell.Settings().recentFiles.push_back(*host.chosenFile);
    void (*const actions[])(Shell&) = {OpenWithDialog, CloseFile, Exit,
                                       [](Shell& each) { OpenRecentFile(each, 1); }};
    host.duringModal = [this] {
        rig.Run(Command::Close);
        Exit(shell);
    };
    for (const auto action : actions) {
        host.boxes.clear();
        host.answers = {SaveChangesAnswer::Cancel};
        action(shell);
        EXPECT_THAT(host.boxes, ElementsAre(kQuestion));
        EXPECT_EQ(shell.Document().GetPath(), path);
        EXPECT_EQ(host.title, u"app.title - data.bin *");
        EXPECT_FALSE(host.destroyed);
    }
    EXPECT_EQ(rig.folder.Read(u"data.bin"), "content");
}

TEST_F(FileCommands, TheQuestionIsOnlyAskedAboutChangesAndDoesWhatIsAnswered) {
    CloseFile(shell);
    OpenModified();
    host.answers = {SaveChangesAnswer::No, SaveChangesAnswer::Yes};
    CloseFile(shell);
    EXPECT_EQ(rig.folder.Read(u"data.bin"), "content");
    EXPECT_EQ(host.title, u"app.title");
    OpenModified();
    CloseFile(shell);
    EXPECT_EQ(rig.folder.Read(u"data.bin"), "!ontent");
    EXPECT_FALSE(shell.Document().IsOpen());
    EXPECT_TRUE(SaveIsGrey());
    Exit(shell);
    EXPECT_TRUE(host.destroyed);
    EXPECT_THAT(host.boxes, ElementsAre(kQuestion, kQuestion));
}

TEST_F(FileCommands, AFailedSaveAtTheQuestionStopsTheAction) {
    OpenModified();
    rig.files.Arm({.call = Call::OpenForWriting, .code = kAccessDenied});
    host.answers = {SaveChangesAnswer::Yes};
    Exit(shell);
    EXPECT_FALSE(host.destroyed);
    const std::u16string reason = Win32ErrorText(kAccessDenied);
    EXPECT_THAT(host.boxes,
                ElementsAre(kQuestion, u"error.save_failed\r\n\r\n" + reason + u"|app.title"));
    EXPECT_EQ(host.title, u"app.title - data.bin *");
    EXPECT_FALSE(SaveIsGrey());
    ExpectIdle();
}

TEST_F(FileCommands, EverySaveShowsItsProgressAnewWithTheViewAndTheMenuOff) {
    EXPECT_TRUE(SaveFile(shell)) << "without a file there is nothing to save or show";
    rig.Open("content");
    host.tickStep = 0;
    host.duringPump = [this] {
        EXPECT_TRUE(host.menu[0].greyed);
        EXPECT_FALSE(host.viewEnabled);
    };
    for (const char last : {'T', '!'}) {
        EXPECT_TRUE(shell.Document().OverwriteByte(6, static_cast<std::uint8_t>(last)));
        EXPECT_TRUE(SaveFile(shell));
    }
    EXPECT_EQ(rig.folder.Read(u"data.bin"), "conten!");
    EXPECT_THAT(host.painted, ElementsAre(u"status.saving", u"status.saving 100%", u"status.saving",
                                          u"status.saving 100%"));
    EXPECT_FALSE(host.menu[0].greyed);
    EXPECT_TRUE(host.status.starts_with(u"status.offset"));
    ExpectIdle();
}

TEST_F(FileCommands, TheSessionGoesOnWhileChangesAreUnsavedOrBeingSaved) {
    EXPECT_EQ(ReasonToKeepSession(shell), std::nullopt);
    OpenModified();
    EXPECT_EQ(ReasonToKeepSession(shell), u"confirm.save_changes");
    host.duringPump = [this] { EXPECT_EQ(ReasonToKeepSession(shell), u"status.saving"); };
    EXPECT_TRUE(SaveFile(shell));
    EXPECT_EQ(ReasonToKeepSession(shell), std::nullopt);
}

TEST_F(FileCommands, ASaveThatCannotBeginLeavesTheShellUsableAndOneThatCannotTellGoesOn) {
    OpenModified();
    host.duringPump = [] { throw std::bad_alloc(); };
    EXPECT_THROW(SaveFile(shell), std::bad_alloc);
    ExpectIdle();
    host.duringPump = [this] {
        if (host.painted.size() > 2) throw std::bad_alloc(); // in the midst of the next one
    };
    EXPECT_TRUE(SaveFile(shell));
    EXPECT_EQ(rig.folder.Read(u"data.bin"), "!ontent");
}

TEST_F(FileCommands, AFileThatCannotBeOpenedAgainAfterItsSaveIsShownNoLonger) {
    OpenModified();
    shell.View().ToggleEditable();
    shell.View().SetCaret(5);
    rig.files.Arm({.call = Call::OpenForReading, .code = kAccessDenied});
    EXPECT_FALSE(SaveFile(shell));
    ASSERT_EQ(host.boxes.size(), 1U);
    EXPECT_TRUE(host.boxes[0].starts_with(u"error.save_failed")) << "whatever the reason";
    EXPECT_EQ(rig.folder.Read(u"data.bin"), "!ontent");
    EXPECT_EQ(host.title, u"app.title");
    EXPECT_EQ(shell.View().State().caret, 0U);
    EXPECT_FALSE(shell.View().State().editable);
}

TEST_F(FileCommands, AFileThatAnotherProgramResizedIsShownInItsSizeAfterASave) {
    const std::filesystem::path path = OpenModified();
    std::filesystem::resize_file(path, 160);
    EXPECT_TRUE(SaveFile(shell));
    EXPECT_EQ(rig.stage.host.vertical.max, 9);
    shell.View().SetCaret(159);
    shell.View().SetSelection(100, 159);
    std::filesystem::resize_file(path, 3);
    EXPECT_TRUE(shell.Document().OverwriteByte(0, '?'));
    EXPECT_TRUE(SaveFile(shell));
    const HexViewState& view = shell.View().State();
    EXPECT_EQ((std::array{view.caret, view.selAnchor, view.selEnd}),
              (std::array<std::uint64_t, 3>{2, 2, 2}));
    EXPECT_EQ(rig.folder.Read(u"data.bin"), "?on");
}

TEST_F(FileCommands, CommandsThatArriveDuringASaveAreDropped) {
    OpenModified();
    host.chosenFile = rig.folder.Write(u"other.bin", "other");
    host.duringPump = [&] {
        for (const Command command : {Command::Open, Command::Save, Command::Close, Command::Exit,
                                      Command::ToggleReadOnly, Command::RecentFirst})
            rig.Run(command);
        Exit(shell); // the window's close button
        EXPECT_FALSE(SaveFile(shell));
        OpenDroppedFiles(shell, {*host.chosenFile});
    };
    EXPECT_TRUE(SaveFile(shell));
    EXPECT_THAT(host.boxes, IsEmpty());
    EXPECT_FALSE(host.destroyed);
    EXPECT_FALSE(shell.View().State().editable);
    EXPECT_EQ(host.processes.size(), host.painted.size()) << "each drop opened elsewhere";
    EXPECT_EQ(rig.folder.Read(u"data.bin"), "!ontent");
    EXPECT_EQ(host.title, u"app.title - data.bin");
}

TEST_F(FileCommands, ARecentFileMovesToTheFrontAndOnePastTheEndIsIgnored) {
    const std::u16string first = rig.folder.Write(u"first.bin", "1");
    OpenFile(shell, first);
    const std::u16string second = OpenModified();
    OpenRecentFile(shell, 2);
    EXPECT_THAT(host.boxes, IsEmpty());
    host.answers = {SaveChangesAnswer::No};
    OpenRecentFile(shell, 1);
    EXPECT_EQ(shell.Document().GetPath(), first);
    EXPECT_EQ(shell.Settings().recentFiles, (Texts{first, second}));
    EXPECT_EQ(host.menu[0].children[4].text, u"1 " + first);
}

TEST_F(FileCommands, OfDroppedFilesTheFirstThatOpensStaysHere) {
    const std::u16string missing = rig.folder.Path(u"missing.bin");
    const std::u16string second = rig.folder.Write(u"second.bin", "2");
    OpenDroppedFiles(shell, {missing, second, u"third", u"", missing});
    EXPECT_EQ(shell.Document().GetPath(), second);
    EXPECT_THAT(host.processes, ElementsAre(u"third", missing));
    host.processesStart = false;
    OpenDroppedFiles(shell, {u"fourth"});
    EXPECT_THAT(host.boxes, ElementsAre(kOpenFailed, u"error.open_new_instance_failed|app.title"));
}

TEST_F(FileCommands, ADropDuringAnErrorBoxIsNotReplacedByTheRestOfTheFirst) {
    const std::u16string inBetween = rig.folder.Write(u"between.bin", "between");
    const std::u16string rest = rig.folder.Write(u"rest.bin", "rest");
    host.duringModal = [&] { OpenDroppedFiles(shell, {inBetween}); };
    OpenDroppedFiles(shell, {rig.folder.Path(u"missing.bin"), rest});
    EXPECT_EQ(shell.Document().GetPath(), inBetween);
    EXPECT_THAT(host.processes, ElementsAre(rest));
}

} // namespace
} // namespace kvx
