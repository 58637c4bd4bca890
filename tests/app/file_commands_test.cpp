#include "app/file_commands.h"

#include "app/command_dispatch.h"
#include "settings/settings_file.h"
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

class FileCommands : public testing::Test {
protected:
    // Opens a file and changes its first byte to '!'.
    std::u16string OpenModified(const std::u16string& name, const std::string& content) {
        const std::u16string path = rig.folder.Write(name, content);
        EXPECT_TRUE(OpenFile(rig.shell, path));
        EXPECT_TRUE(rig.shell.Document().OverwriteByte(0, '!'));
        rig.shell.OnViewChanged();
        return path;
    }

    bool SaveIsGrey() const { return rig.host.menu[0].children[1].greyed; }
    bool FileMenuIsGrey() const { return rig.host.menu[0].greyed; }

    ShellRig rig;
    Shell& shell = rig.shell;
    RecordingHost& host = rig.host;
};

TEST_F(FileCommands, OpeningShowsTheFileReadOnlyAndRemembersIt) {
    const std::u16string path = rig.folder.Write(u"data.bin", "content");
    shell.View().ToggleEditable();
    EXPECT_TRUE(OpenFile(shell, path));
    EXPECT_EQ(host.title, u"app.title - data.bin");
    EXPECT_FALSE(SaveIsGrey());
    EXPECT_FALSE(shell.View().State().editable);
    EXPECT_EQ(host.status, u"status.offset: 0x00000000  status.encoding: ASCII  status.readonly  "
                           u"status.zoom: 100%");
    AppSettings stored;
    LoadSettings(rig.folder.Path(u"settings.json"), stored);
    EXPECT_EQ(stored.recentFiles, Texts{path});
    EXPECT_EQ(stored.appVersion, u"v1.04");
}

TEST_F(FileCommands, AFailedOpenLeavesNoDocumentAndSaysSo) {
    OpenModified(u"data.bin", "content");
    EXPECT_FALSE(OpenFile(shell, rig.folder.Path(u"missing.bin")));
    EXPECT_THAT(host.boxes, ElementsAre(kOpenFailed));
    EXPECT_FALSE(shell.Document().IsOpen());
    EXPECT_EQ(host.title, u"app.title");
    EXPECT_EQ(host.status, u"status.no_file");
    EXPECT_TRUE(SaveIsGrey());
    EXPECT_EQ(shell.Settings().recentFiles.size(), 1U);
}

TEST_F(FileCommands, AnEmptyPathChangesNothing) {
    OpenModified(u"data.bin", "content");
    EXPECT_FALSE(OpenFile(shell, u""));
    EXPECT_TRUE(shell.Document().IsModified());
    EXPECT_THAT(host.boxes, IsEmpty());
}

TEST_F(FileCommands, TheDialogOpensWhatTheUserChooses) {
    OpenWithDialog(shell);
    EXPECT_FALSE(shell.Document().IsOpen());
    host.chosenFile = rig.folder.Write(u"data.bin", "content");
    OpenWithDialog(shell);
    EXPECT_EQ(shell.Document().GetPath(), *host.chosenFile);
    EXPECT_THAT(host.boxes, ElementsAre(u"dialog.open.title", u"dialog.open.title"));
}

TEST_F(FileCommands, CancelAtTheQuestionKeepsEverything) {
    const std::u16string path = OpenModified(u"data.bin", "content");
    host.chosenFile = rig.folder.Write(u"other.bin", "other");
    shell.Settings().recentFiles.push_back(*host.chosenFile);
    void (*const actions[])(Shell&) = {OpenWithDialog, CloseFile, Exit,
                                       [](Shell& each) { OpenRecentFile(each, 1); }};
    for (const auto action : actions) {
        host.boxes.clear();
        host.answers = {SaveChangesAnswer::Cancel};
        action(shell);
        EXPECT_THAT(host.boxes, ElementsAre(kQuestion));
        EXPECT_EQ(shell.Document().GetPath(), path);
        EXPECT_EQ(shell.Document().ReadBytes(0, 1)[0], '!');
        EXPECT_EQ(host.title, u"app.title - data.bin *");
        EXPECT_FALSE(host.destroyed);
    }
    EXPECT_EQ(rig.folder.Read(u"data.bin"), "content");
}

TEST_F(FileCommands, NoAtTheQuestionDropsTheChanges) {
    OpenModified(u"data.bin", "content");
    host.answers = {SaveChangesAnswer::No};
    CloseFile(shell);
    EXPECT_FALSE(shell.Document().IsOpen());
    EXPECT_EQ(host.title, u"app.title");
    EXPECT_TRUE(SaveIsGrey());
    EXPECT_EQ(rig.folder.Read(u"data.bin"), "content");
}

TEST_F(FileCommands, YesAtTheQuestionSavesAndGoesOn) {
    OpenModified(u"data.bin", "content");
    host.answers = {SaveChangesAnswer::Yes};
    Exit(shell);
    EXPECT_TRUE(host.destroyed);
    EXPECT_EQ(rig.folder.Read(u"data.bin"), "!ontent");
}

TEST_F(FileCommands, AFailedSaveAtTheQuestionStopsTheAction) {
    OpenModified(u"data.bin", "content");
    rig.files.refusesWriting = true;
    host.answers = {SaveChangesAnswer::Yes};
    Exit(shell);
    EXPECT_FALSE(host.destroyed);
    EXPECT_TRUE(shell.Document().IsModified());
    EXPECT_THAT(host.boxes,
                ElementsAre(kQuestion, u"error.save_failed\r\n\r\n" +
                                           Win32ErrorText(RefusingFiles::kAccessDenied) +
                                           u"|app.title"));
    EXPECT_EQ(host.title, u"app.title - data.bin *");
    EXPECT_FALSE(FileMenuIsGrey());
    EXPECT_TRUE(host.viewEnabled);
}

TEST_F(FileCommands, ClosingAsksNothingWithoutChanges) {
    CloseFile(shell);
    OpenFile(shell, rig.folder.Write(u"data.bin", "content"));
    CloseFile(shell);
    Exit(shell);
    EXPECT_TRUE(host.destroyed);
    EXPECT_THAT(host.boxes, IsEmpty());
}

TEST_F(FileCommands, SavingWithoutAFileSucceedsWithoutASave) {
    host.duringPump = [] { FAIL() << "nothing to save"; };
    EXPECT_TRUE(SaveFile(shell));
}

TEST_F(FileCommands, SavingAnUnmodifiedFileStillRuns) {
    OpenFile(shell, rig.folder.Write(u"data.bin", "content"));
    EXPECT_TRUE(SaveFile(shell));
    EXPECT_THAT(host.painted, ElementsAre(u"status.saving"));
}

TEST_F(FileCommands, ASaveShowsItsProgressAndKeepsTheViewAndTheMenuOff) {
    OpenModified(u"data.bin", std::string(3 << 20, 'x'));
    EXPECT_TRUE(shell.Document().InsertByte(1, '?')); // through a temporary file
    host.duringPump = [this] {
        EXPECT_TRUE(FileMenuIsGrey());
        EXPECT_FALSE(host.viewEnabled);
    };
    EXPECT_TRUE(SaveFile(shell));
    EXPECT_EQ(rig.folder.Read(u"data.bin"), "!?" + std::string((3 << 20) - 1, 'x'));
    EXPECT_EQ(host.painted.front(), u"status.saving");
    EXPECT_EQ(host.painted.back(), u"status.saving 100%");
    EXPECT_GE(host.painted.size(), 4U);
    EXPECT_FALSE(FileMenuIsGrey());
    EXPECT_TRUE(host.viewEnabled);
    EXPECT_EQ(host.title, u"app.title - data.bin");
    EXPECT_TRUE(host.status.starts_with(u"status.offset"));
}

TEST_F(FileCommands, EverySaveShowsItsProgressAnew) {
    OpenFile(shell, rig.folder.Write(u"data.bin", "content"));
    host.tickStep = 0;
    for (int save = 0; save < 2; ++save) {
        EXPECT_TRUE(shell.Document().OverwriteByte(6, save == 0 ? 'T' : 't'));
        EXPECT_TRUE(SaveFile(shell));
    }
    EXPECT_THAT(host.painted, ElementsAre(u"status.saving", u"status.saving 100%", u"status.saving",
                                          u"status.saving 100%"));
}

TEST_F(FileCommands, AFileThatCannotBeOpenedAgainAfterItsSaveIsShownNoLonger) {
    OpenModified(u"data.bin", "content");
    shell.View().ToggleEditable();
    shell.View().SetCaret(5);
    rig.files.refusesReading = true;
    EXPECT_FALSE(SaveFile(shell));
    ASSERT_EQ(host.boxes.size(), 1U);
    EXPECT_TRUE(host.boxes[0].starts_with(u"error.save_failed")) << "whatever the reason";
    EXPECT_EQ(rig.folder.Read(u"data.bin"), "!ontent");
    EXPECT_EQ(host.title, u"app.title");
    EXPECT_TRUE(SaveIsGrey());
    EXPECT_EQ(shell.View().State().caret, 0U);
    EXPECT_FALSE(shell.View().State().editable);
}

TEST_F(FileCommands, CommandsThatArriveDuringASaveAreDropped) {
    OpenModified(u"data.bin", "content");
    const std::u16string other = rig.folder.Write(u"other.bin", "other");
    host.chosenFile = other;
    host.duringPump = [&] {
        for (const Command command : {Command::Open, Command::Save, Command::Close, Command::Exit,
                                      Command::ToggleReadOnly, Command::RecentFirst}) {
            EXPECT_TRUE(DispatchCommand(shell, CommandId(command)));
        }
        Exit(shell); // the window's close button
        EXPECT_FALSE(SaveFile(shell));
        OpenDroppedFiles(shell, {other});
    };
    EXPECT_TRUE(SaveFile(shell));
    EXPECT_THAT(host.boxes, IsEmpty());
    EXPECT_FALSE(host.destroyed);
    EXPECT_FALSE(shell.View().State().editable);
    EXPECT_EQ(host.processes.size(), host.painted.size()) << "each drop opened elsewhere";
    EXPECT_EQ(rig.folder.Read(u"data.bin"), "!ontent");
    EXPECT_EQ(host.title, u"app.title - data.bin");
}

TEST_F(FileCommands, CommandsThatArriveWhileAQuestionWaitsAreDropped) {
    const std::u16string path = OpenModified(u"data.bin", "content");
    host.answers = {SaveChangesAnswer::Cancel};
    host.duringModal = [this] {
        EXPECT_TRUE(DispatchCommand(shell, CommandId(Command::Close)));
        Exit(shell);
    };
    CloseFile(shell);
    EXPECT_THAT(host.boxes, ElementsAre(kQuestion));
    EXPECT_EQ(shell.Document().GetPath(), path);
    EXPECT_FALSE(host.destroyed);
}

TEST_F(FileCommands, ARecentFilePastTheEndOfTheListIsIgnored) {
    OpenModified(u"data.bin", "content");
    OpenRecentFile(shell, 1);
    EXPECT_THAT(host.boxes, IsEmpty());
    EXPECT_TRUE(shell.Document().IsModified());
}

TEST_F(FileCommands, ARecentFileMovesToTheFront) {
    const std::u16string first = rig.folder.Write(u"first.bin", "1");
    const std::u16string second = rig.folder.Write(u"second.bin", "2");
    OpenFile(shell, first);
    OpenFile(shell, second);
    OpenRecentFile(shell, 1);
    EXPECT_EQ(shell.Document().GetPath(), first);
    EXPECT_EQ(shell.Settings().recentFiles, (Texts{first, second}));
    EXPECT_EQ(host.menu[0].children[4].text, u"1 " + first);
}

TEST_F(FileCommands, OfDroppedFilesTheFirstThatOpensStaysHere) {
    const std::u16string missing = rig.folder.Path(u"missing.bin");
    const std::u16string second = rig.folder.Write(u"second.bin", "2");
    OpenDroppedFiles(shell, {missing, second, u"third", missing});
    EXPECT_EQ(shell.Document().GetPath(), second);
    EXPECT_THAT(host.processes, ElementsAre(u"third", missing));
    EXPECT_THAT(host.boxes, ElementsAre(kOpenFailed));
}

TEST_F(FileCommands, DropsNeverReplaceAnOpenDocument) {
    const std::u16string path = OpenModified(u"data.bin", "content");
    OpenDroppedFiles(shell, {u"other", u"", u"another"});
    EXPECT_EQ(shell.Document().GetPath(), path);
    EXPECT_TRUE(shell.Document().IsModified());
    EXPECT_THAT(host.processes, ElementsAre(u"other", u"another"));
    EXPECT_THAT(host.boxes, IsEmpty());
}

TEST_F(FileCommands, ADropDuringAnErrorBoxIsNotReplacedByTheRestOfTheFirst) {
    const std::u16string inBetween = rig.folder.Write(u"between.bin", "between");
    const std::u16string rest = rig.folder.Write(u"rest.bin", "rest");
    host.duringModal = [&] { OpenDroppedFiles(shell, {inBetween}); };
    OpenDroppedFiles(shell, {rig.folder.Path(u"missing.bin"), rest});
    EXPECT_EQ(shell.Document().GetPath(), inBetween);
    EXPECT_THAT(host.processes, ElementsAre(rest));
}

TEST_F(FileCommands, AProcessThatCannotStartIsReported) {
    OpenModified(u"data.bin", "content");
    host.processesStart = false;
    OpenDroppedFiles(shell, {u"other"});
    EXPECT_THAT(host.boxes, ElementsAre(u"error.open_new_instance_failed|app.title"));
}

} // namespace
} // namespace kvx
