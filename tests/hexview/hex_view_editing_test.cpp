#include "hexview/hex_view.h"

#include "tests/hexview/view_stage.h"

#include <gtest/gtest.h>

namespace kvx {
namespace {

using enum HexViewNotification;
using Notifications = std::vector<HexViewNotification>;

TEST(HexViewDigits, LeaveEverythingAsItWasWhenTheDocumentRefuses) {
    for (const InsertMode mode : {InsertMode::Overwrite, InsertMode::Insert}) {
        ViewStage stage(Bytes{0x7F, 0x10});
        stage.document.refuses = [](std::uint64_t) { return true; };
        stage.Enter(mode);
        const bool inserting = mode == InsertMode::Insert;
        if (inserting) stage.Type(u"4");
        stage.host.Forget();
        EXPECT_EQ(stage.view.OnChar(u'1'), Handled::No);
        EXPECT_EQ(stage.State().nibblePending, inserting);
        EXPECT_EQ(stage.State().caret, 0U);
        EXPECT_EQ(stage.host.invalidations, 0);
    }
}

TEST(HexViewDigits, WidenTheOffsetsWhenTheyCarryTheDocumentOverFourGibibytes) {
    ViewStage stage({}, 0xFFFF'FFFF);
    stage.Enter(InsertMode::Insert);
    const int measured = stage.measurer.measured;
    stage.Type(u"41");
    EXPECT_EQ(stage.State().offsetWidth, 170.0F);
    stage.view.OnKeyDown(Key::Backspace, false);
    EXPECT_EQ(stage.State().offsetWidth, 90.0F);
    EXPECT_EQ(stage.measurer.measured, measured); // the font is the same: no text is laid out again
}

TEST(HexViewEditing, IsReportedAsRefusedWhileReadOnlyForDigitsOfBothCasesAndNothingElse) {
    ViewStage stage(CountingBytes(4));
    std::u16string digits;
    for (std::uint32_t unit = 0; unit <= 0xFFFF; ++unit)
        if (stage.view.OnChar(static_cast<char16_t>(unit)) == Handled::Yes)
            digits += static_cast<char16_t>(unit);
    EXPECT_EQ(digits, u"0123456789ABCDEFabcdef");
    for (const Key key : {Key::Insert, Key::Delete, Key::Backspace})
        EXPECT_EQ(stage.view.OnKeyDown(key, false), Handled::Yes);
    EXPECT_EQ(stage.host.notifications, Notifications(22 + 3, EditRefused));
    EXPECT_EQ(stage.document.bytes, CountingBytes(4));
    EXPECT_EQ(stage.State().insertMode, InsertMode::Overwrite);
}

struct RemovalRow {
    const char* name;
    InsertMode mode;
    std::uint64_t caret;
    std::optional<std::pair<std::uint64_t, std::uint64_t>> selection;
    std::uint64_t refused; ///< offset of the byte that the document keeps
    Key key;
    Handled handled;
    Bytes left; ///< of 0 1 2 3
    std::uint64_t caretAfter;
};

TEST(HexViewRemoval, TakesTheSelectionOrTheByteAtOrBeforeTheCaret) {
    using enum InsertMode;
    using enum Handled;
    for (const RemovalRow& row : {
             RemovalRow{"delete", Overwrite, 1, {}, 9, Key::Delete, Yes, {0, 2, 3}, 1},
             {"last byte", Overwrite, 3, {}, 9, Key::Delete, Yes, {0, 1, 2}, 2},
             {"last byte, inserting", Insert, 3, {}, 9, Key::Delete, Yes, {0, 1, 2}, 3},
             {"at the end", Insert, 4, {}, 9, Key::Delete, Yes, {0, 1, 2, 3}, 4},
             {"backspace", Overwrite, 2, {}, 9, Key::Backspace, Yes, {0, 2, 3}, 1},
             {"at the start", Overwrite, 0, {}, 9, Key::Backspace, Yes, {0, 1, 2, 3}, 0},
             {"selection", Overwrite, 3, {{2, 1}}, 9, Key::Delete, Yes, {0, 3}, 1},
             {"backspaced", Insert, 0, {{1, 2}}, 9, Key::Backspace, Yes, {0, 3}, 1},
             {"all", Overwrite, 3, {{0, 3}}, 9, Key::Delete, Yes, {}, 0},
             {"refused", Overwrite, 3, {}, 3, Key::Delete, No, {0, 1, 2, 3}, 3},
             {"refused at once", Overwrite, 0, {{1, 3}}, 3, Key::Delete, No, {0, 1, 2, 3}, 0},
             {"refused midway", Overwrite, 0, {{1, 3}}, 2, Key::Delete, No, {0, 1, 2}, 1},
         }) {
        ViewStage stage(CountingBytes(4));
        stage.Enter(row.mode, row.caret);
        if (row.selection) stage.view.SetSelection(row.selection->first, row.selection->second);
        stage.host.Forget();
        stage.document.refuses = [&](std::uint64_t offset) { return offset == row.refused; };
        EXPECT_EQ(stage.view.OnKeyDown(row.key, false), row.handled) << row.name;
        EXPECT_EQ(stage.document.bytes, row.left) << row.name;
        EXPECT_EQ(stage.State().caret, row.caretAfter) << row.name;
        const std::size_t changes = row.left.size() == 4 ? 0 : 1;
        EXPECT_EQ(stage.State().hasSelection, row.selection && changes == 0) << row.name;
        EXPECT_EQ(stage.host.notifications, Notifications(changes, StateChanged)) << row.name;
    }
}

TEST(HexViewInsertMode, SwitchingBackGivesUpTheRowBehindTheEndAtOnce) {
    ViewStage stage(CountingBytes(160));
    stage.Enter(InsertMode::Insert, 160);
    EXPECT_EQ(stage.host.vertical, (ScrollBar{10, 10, 1}));
    EXPECT_EQ(stage.view.OnKeyDown(Key::Insert, false), Handled::Yes);
    EXPECT_EQ(stage.State().caret, 159U);
    EXPECT_EQ(stage.host.vertical, (ScrollBar{9, 10, 0}));
    EXPECT_EQ(stage.host.notifications, Notifications{StateChanged});
}

} // namespace
} // namespace kvx
