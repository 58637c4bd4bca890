#include "app/command_dispatch.h"

#include "app/commands.h"
#include "app/file_commands.h"
#include "tests/app/shell_fakes.h"

#include <gtest/gtest.h>

namespace kvx {
namespace {

class CommandDispatch : public testing::Test {
protected:
    CommandDispatch() { OpenFile(rig.shell, rig.folder.Write(u"data.bin", "content")); }

    bool Run(Command command) { return DispatchCommand(rig.shell, CommandId(command)); }

    ShellRig rig;
};

TEST_F(CommandDispatch, ShowsTheDialogOfACommand) {
    rig.host.installedFonts = {{.family = u"Mono", .fixedPitch = true}};
    const std::pair<Command, std::u16string> rows[] = {
        {Command::Open, u"dialog.open.title"},
        {Command::Find, u"search dialog"},
        {Command::GoTo, u"dialog.goto.prompt|dialog.goto.title|"},
        {Command::Font, u"font dialog"},
        {Command::About, u"about box"}};
    for (const auto& [command, box] : rows) {
        rig.host.boxes.clear();
        EXPECT_TRUE(Run(command));
        ASSERT_EQ(rig.host.boxes.size(), 1U) << CommandId(command);
        EXPECT_TRUE(rig.host.boxes[0].starts_with(box)) << CommandId(command);
    }
}

TEST_F(CommandDispatch, EditsSavesAndClosesTheFileAndEndsTheProgram) {
    EXPECT_TRUE(Run(Command::ToggleReadOnly));
    EXPECT_TRUE(rig.stage.State().editable);
    EXPECT_TRUE(rig.shell.Document().OverwriteByte(0, 'C'));
    EXPECT_TRUE(Run(Command::Save));
    EXPECT_EQ(rig.folder.Read(u"data.bin"), "Content");
    EXPECT_TRUE(Run(Command::Close));
    EXPECT_FALSE(rig.shell.Document().IsOpen());
    EXPECT_TRUE(Run(Command::Exit));
    EXPECT_TRUE(rig.host.destroyed);
    EXPECT_FALSE(DispatchCommand(rig.shell, 1));
}

TEST_F(CommandDispatch, ARefusedEditShowsAWarningForAWhile) {
    const std::u16string before = rig.host.status;
    rig.shell.OnEditRefused();
    EXPECT_EQ(rig.host.status, u"status.readonly_blocked");
    rig.shell.OnFlashTimer();
    EXPECT_EQ(rig.host.status, before);
}

} // namespace
} // namespace kvx
