#include "app/goto_command.h"

#include "app/goto_offset.h"
#include "tests/app/shell_fakes.h"

#include <gtest/gtest.h>

namespace kvx {
namespace {

using namespace std::string_literals;

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

TEST(GoToCommand, MovesTheCaretAndEndsTheSelectionUnlessTheAnswerIsNone) {
    ShellRig rig;
    const HexViewState& state = rig.stage.State();
    const auto goTo = [&](std::optional<std::u16string> typed) {
        rig.host.typedLine = std::move(typed);
        rig.host.boxes.clear();
        GoToOffset(rig.shell);
        return std::pair(state.caret, state.hasSelection);
    };
    goTo(u"1");
    EXPECT_TRUE(rig.host.boxes.empty()) << "nothing is open";
    rig.Open(std::string(100, 'x'));
    rig.stage.view.SetCaret(31);
    rig.stage.view.SetSelection(3, 5);
    const std::u16string prompt = u"dialog.goto.prompt|dialog.goto.title|1F";
    EXPECT_EQ(goTo(std::nullopt), std::pair(std::uint64_t{31}, true));
    EXPECT_EQ(rig.host.boxes, std::vector{prompt});
    EXPECT_EQ(goTo(u"12G"), std::pair(std::uint64_t{31}, true));
    EXPECT_EQ(rig.host.boxes, (std::vector{prompt, u"error.goto_invalid|dialog.goto.title"s}));
    EXPECT_EQ(goTo(u"0x1e"), std::pair(std::uint64_t{30}, false));
    EXPECT_TRUE(rig.host.status.starts_with(u"status.offset: 0x0000001E"));
    EXPECT_EQ(goTo(u"FFFFFFFFFFFF"), std::pair(std::uint64_t{99}, false));
}

} // namespace
} // namespace kvx
