#include "app/goto_command.h"

#include "app/command_dispatch.h"
#include "app/file_commands.h"
#include "app/goto_offset.h"
#include "tests/app/shell_fakes.h"

#include <gtest/gtest.h>

namespace kvx {
namespace {

TEST(GoToOffset, ReadsEveryFormOfAHexadecimalNumberAndNothingElse) {
    const struct {
        std::u16string_view typed;
        std::optional<std::uint64_t> offset;
    } cases[] = {
        {u"1A2B", 0x1A2B},
        {u"0x1A2B", 0x1A2B},
        {u"0X1a2b", 0x1A2B},
        {u" \t1a2b\r\n", 0x1A2B},
        {u"100", 0x100},
        {u"0", 0},
        {u"00000000000000001", 1},
        {u"FFFFFFFFFFFFFFFF", 0xFFFF'FFFF'FFFF'FFFF},
        {u"10000000000000000", std::nullopt},
        {u"", std::nullopt},
        {u"  ", std::nullopt},
        {u"0x", std::nullopt},
        {u"12G", std::nullopt},
        {u"12 34", std::nullopt},
        {u"1\uFF12", std::nullopt},
        {std::u16string_view(u"1\0", 2), std::nullopt},
    };
    for (const auto& each : cases)
        EXPECT_EQ(ParseHexOffset(each.typed), each.offset)
            << std::string(each.typed.begin(), each.typed.end());
}

class GoToCommand : public testing::Test {
protected:
    void GoTo(std::optional<std::u16string> typed) {
        rig.host.typedLine = std::move(typed);
        rig.host.boxes.clear();
        GoToOffset(rig.shell);
    }
    std::uint64_t Caret() const { return rig.stage.State().caret; }

    ShellRig rig;
};

TEST_F(GoToCommand, MovesTheCaretAndEndsTheSelection) {
    GoTo(u"1");
    EXPECT_TRUE(rig.host.boxes.empty()) << "nothing is open";
    OpenFile(rig.shell, rig.folder.Write(u"data.bin", std::string(100, 'x')));
    rig.stage.view.SetSelection(3, 5);
    GoTo(u"0x1f");
    EXPECT_EQ(Caret(), 0x1FU);
    EXPECT_FALSE(rig.stage.State().hasSelection);
    GoTo(u"FFFFFFFFFFFF");
    EXPECT_EQ(rig.host.boxes.front(), u"dialog.goto.prompt|dialog.goto.title|1F");
    EXPECT_EQ(Caret(), 99U);
}

TEST_F(GoToCommand, ChangesNothingForACancelledOrInvalidAnswer) {
    OpenFile(rig.shell, rig.folder.Write(u"data.bin", std::string(100, 'x')));
    rig.stage.view.SetCaret(7);
    rig.stage.view.SetSelection(3, 5);
    GoTo(std::nullopt);
    EXPECT_EQ(rig.host.boxes.size(), 1U);
    GoTo(u"12G");
    EXPECT_EQ(rig.host.boxes.back(), u"error.goto_invalid|dialog.goto.title");
    EXPECT_EQ(Caret(), 7U);
    EXPECT_TRUE(rig.stage.State().hasSelection);
}

TEST_F(GoToCommand, KeepsOtherCommandsOutWhileTheQuestionWaits) {
    OpenFile(rig.shell, rig.folder.Write(u"data.bin", "content"));
    rig.host.duringModal = [this] {
        EXPECT_FALSE(rig.shell.AcceptsCommands());
        Exit(rig.shell);
        DispatchCommand(rig.shell, CommandId(Command::Close));
    };
    GoTo(u"2");
    EXPECT_FALSE(rig.host.destroyed);
    EXPECT_TRUE(rig.shell.Document().IsOpen());
    EXPECT_TRUE(rig.shell.AcceptsCommands());
}

} // namespace
} // namespace kvx
