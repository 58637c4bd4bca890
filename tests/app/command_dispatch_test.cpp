#include "app/command_dispatch.h"

#include "app/commands.h"
#include "tests/app/shell_fakes.h"

#include <gtest/gtest.h>

namespace kvx {
namespace {

TEST(CommandDispatch, ShowsTheDialogOfACommandAndKeepsOthersOut) {
    ShellRig rig;
    rig.Open("content");
    rig.host.installedFonts = {{.family = u"Mono", .fixedPitch = true}};
    rig.host.duringModal = [&rig] {
        rig.Run(Command::Close);
        Exit(rig.shell); // the window's close button
    };
    const std::pair<Command, std::u16string> rows[] = {
        {Command::Open, u"dialog.open.title"},
        {Command::Find, u"search dialog"},
        {Command::GoTo, u"dialog.goto.prompt|dialog.goto.title|"},
        {Command::Font, u"font dialog"},
        {Command::About, u"about box"}};
    for (const auto& [command, box] : rows) {
        rig.host.boxes.clear();
        rig.Run(command);
        ASSERT_EQ(rig.host.boxes.size(), 1U) << CommandId(command);
        EXPECT_TRUE(rig.host.boxes[0].starts_with(box)) << CommandId(command);
        EXPECT_TRUE(rig.shell.AcceptsCommands());
    }
    EXPECT_TRUE(rig.shell.Document().IsOpen());
    EXPECT_FALSE(rig.host.destroyed);
}

TEST(CommandDispatch, EditsSavesAndClosesTheFileAndEndsTheProgram) {
    ShellRig rig;
    rig.Open("content");
    rig.Run(Command::ToggleReadOnly);
    EXPECT_TRUE(rig.stage.State().editable);
    EXPECT_TRUE(rig.shell.Document().OverwriteByte(0, 'C'));
    rig.Run(Command::Save);
    EXPECT_EQ(rig.folder.Read(u"data.bin"), "Content");
    rig.Run(Command::Close);
    EXPECT_FALSE(rig.shell.Document().IsOpen());
    rig.Run(Command::Exit);
    EXPECT_TRUE(rig.host.destroyed);
}

TEST(CommandDispatch, LeavesNumbersWithoutACommandToTheSystem) {
    ShellRig rig;
    for (const std::uint32_t id : {0U, 1U, 1000U, 1036U, 1199U, 1203U, 3999U})
        EXPECT_FALSE(DispatchCommand(rig.shell, id)) << id;
    EXPECT_TRUE(DispatchCommand(rig.shell, 65'535)) << "a recent file, though none is there";
}

} // namespace
} // namespace kvx
