#include "hexview/hex_view.h"

#include "hexview/hex_view_layout.h"
#include "tests/hexview/view_stage.h"

#include <gtest/gtest.h>

namespace kvx {
namespace {

using enum HexViewNotification;
using Notifications = std::vector<HexViewNotification>;

TEST(HexViewDigits, OverwriteTheHighThenTheLowHalfAndGoOn) {
    ViewStage stage(Bytes{0x7F, 0x10});
    stage.Enter(InsertMode::Overwrite);
    stage.Type(u"4");
    EXPECT_EQ(stage.document.bytes, (Bytes{0x4F, 0x10}));
    EXPECT_EQ(stage.State().caret, 0U);
    stage.Type(u"1");
    EXPECT_EQ(stage.document.bytes, (Bytes{0x41, 0x10}));
    EXPECT_EQ(stage.State().caret, 1U);
    EXPECT_EQ(stage.host.notifications, Notifications(2, StateChanged));

    stage.Type(u"aBCd"); // the last byte takes them all
    EXPECT_EQ(stage.document.bytes, (Bytes{0x41, 0xCD}));
    EXPECT_EQ(stage.State().caret, 1U);
    EXPECT_FALSE(stage.State().nibblePending);
}

TEST(HexViewDigits, InsertAByteOnceBothHalvesAreTyped) {
    ViewStage stage(Bytes{0x7F});
    stage.Enter(InsertMode::Insert, 1);
    stage.Type(u"4");
    EXPECT_EQ(stage.document.bytes, (Bytes{0x7F}));
    stage.Type(u"12");
    EXPECT_EQ(stage.document.bytes, (Bytes{0x7F, 0x41}));
    EXPECT_EQ(stage.State().caret, 2U);
    EXPECT_EQ(stage.State().pendingNibble, 2);
    EXPECT_EQ(stage.host.notifications, Notifications(3, StateChanged));
}

TEST(HexViewDigits, AreForgottenWhenTheCaretMovesInBetween) {
    ViewStage inserting(Bytes{0x7F, 0x10});
    inserting.Enter(InsertMode::Insert);
    inserting.Type(u"4");
    inserting.view.OnKeyDown(Key::Right, false);
    inserting.Type(u"1");
    EXPECT_EQ(inserting.document.bytes, (Bytes{0x7F, 0x10}));

    ViewStage overwriting(Bytes{0x7F, 0x10});
    overwriting.Enter(InsertMode::Overwrite);
    overwriting.Type(u"4");
    overwriting.view.OnKeyDown(Key::Right, false);
    overwriting.Type(u"2");
    EXPECT_EQ(overwriting.document.bytes, (Bytes{0x4F, 0x20}));
}

TEST(HexViewDigits, FillAnEmptyDocumentByInsertionOnly) {
    ViewStage stage;
    stage.Enter(InsertMode::Overwrite);
    EXPECT_EQ(stage.view.OnChar(u'4'), Handled::No);
    EXPECT_FALSE(stage.State().nibblePending);
    stage.Enter(InsertMode::Insert);
    stage.Type(u"4142");
    EXPECT_EQ(stage.document.bytes, (Bytes{0x41, 0x42}));
}

TEST(HexViewDigits, LeaveEverythingAsItWasWhenTheDocumentRefuses) {
    ViewStage stage(Bytes{0x7F, 0x10});
    stage.document.refuseOverwrite = true;
    stage.document.refuseInsert = true;
    stage.Enter(InsertMode::Overwrite);
    EXPECT_EQ(stage.view.OnChar(u'4'), Handled::No);
    EXPECT_FALSE(stage.State().nibblePending);
    stage.Enter(InsertMode::Insert);
    stage.Type(u"4");
    stage.host.Forget();
    EXPECT_EQ(stage.view.OnChar(u'1'), Handled::No);
    EXPECT_TRUE(stage.State().nibblePending);
    EXPECT_EQ(stage.State().caret, 0U);
    EXPECT_EQ(stage.host.notifications, Notifications());
    EXPECT_EQ(stage.host.invalidations, 0);
}

TEST(HexViewDigits, WidenTheOffsetsWhenTheyCarryTheDocumentOverFourGibibytes) {
    class Growing final : public IEditableDocument {
    public:
        std::uint64_t size = 0xFFFF'FFFF;
        bool IsOpen() const override { return true; }
        std::uint64_t GetSize() const override { return size; }
        std::u16string GetPath() const override { return {}; }
        Bytes ReadBytes(std::uint64_t, std::uint64_t) const override { return {}; }
        bool OverwriteByte(std::uint64_t, std::uint8_t) override { return false; }
        bool InsertByte(std::uint64_t, std::uint8_t) override { return ++size != 0; }
        bool DeleteByte(std::uint64_t) override { return --size != 0; }
        bool IsModified() const override { return true; }
        std::uint64_t GetEditedSize() const override { return size; }
    } document;
    ViewStage stage;
    stage.view.SetDocument(&document, &document);
    stage.Enter(InsertMode::Insert, 5);
    const int measured = stage.measurer.measured;
    stage.Type(u"41");
    EXPECT_EQ(stage.State().offsetWidth, 170.0F);
    stage.view.OnKeyDown(Key::Backspace, false);
    EXPECT_EQ(stage.State().offsetWidth, 90.0F);
    EXPECT_EQ(stage.measurer.measured, measured); // the font is the same: no text is laid out again
}

TEST(HexViewEditing, IsReportedAsRefusedWhileReadOnly) {
    ViewStage stage(CountingBytes(4));
    const Bytes before = stage.document.bytes;
    EXPECT_EQ(stage.view.OnChar(u'F'), Handled::Yes);
    EXPECT_EQ(stage.view.OnChar(u'g'), Handled::No);
    for (const Key key : {Key::Insert, Key::Delete, Key::Backspace})
        EXPECT_EQ(stage.view.OnKeyDown(key, false), Handled::Yes);
    EXPECT_EQ(stage.host.notifications, Notifications(4, EditRefused));
    EXPECT_EQ(stage.document.bytes, before);
    EXPECT_EQ(stage.State().insertMode, InsertMode::Overwrite);
}

TEST(HexViewEditing, DoesAndSaysNothingWithoutADocument) {
    ViewStage stage(CountingBytes(4));
    stage.document.open = false;
    for (const bool editable : {false, true}) {
        EXPECT_EQ(stage.State().editable, editable);
        EXPECT_EQ(stage.view.OnChar(u'4'), Handled::No);
        EXPECT_EQ(stage.view.OnKeyDown(Key::Delete, false), Handled::No);
        EXPECT_EQ(stage.host.notifications, Notifications());
        stage.view.ToggleEditable();
        stage.host.Forget();
    }
}

TEST(HexViewEditing, NeedsADocumentThatCanBeEdited) {
    const HugeDocument document(100);
    ViewStage stage(document);
    stage.Enter(InsertMode::Insert);
    EXPECT_EQ(stage.view.OnChar(u'4'), Handled::No);
    EXPECT_EQ(stage.view.OnKeyDown(Key::Delete, false), Handled::No);
}

struct RemovalRow {
    const char* name;
    InsertMode mode;
    std::uint64_t caret;
    Key key;
    Bytes left;
    std::uint64_t caretAfter;
};

TEST(HexViewRemoval, TakesTheByteAtOrBeforeTheCaret) {
    using enum InsertMode;
    const RemovalRow rows[] = {
        {"delete", Overwrite, 1, Key::Delete, {0, 2, 3}, 1},
        {"delete the last byte", Overwrite, 3, Key::Delete, {0, 1, 2}, 2},
        {"delete the last byte, inserting", Insert, 3, Key::Delete, {0, 1, 2}, 3},
        {"delete at the end", Insert, 4, Key::Delete, {0, 1, 2, 3}, 4},
        {"backspace", Overwrite, 2, Key::Backspace, {0, 2, 3}, 1},
        {"backspace at the end", Insert, 4, Key::Backspace, {0, 1, 2}, 3},
        {"backspace at the start", Overwrite, 0, Key::Backspace, {0, 1, 2, 3}, 0},
    };
    for (const RemovalRow& row : rows) {
        ViewStage stage(CountingBytes(4));
        stage.Enter(row.mode, row.caret);
        EXPECT_EQ(stage.view.OnKeyDown(row.key, false), Handled::Yes) << row.name;
        EXPECT_EQ(stage.document.bytes, row.left) << row.name;
        EXPECT_EQ(stage.State().caret, row.caretAfter) << row.name;
        const std::size_t changes = row.left.size() == 4 ? 0 : 1;
        EXPECT_EQ(stage.host.notifications, Notifications(changes, StateChanged)) << row.name;
    }
}

TEST(HexViewRemoval, TakesTheWholeSelectionWhicheverKeyAndDirection) {
    for (const Key key : {Key::Delete, Key::Backspace}) {
        ViewStage stage(CountingBytes(8));
        stage.Enter(InsertMode::Overwrite, 7);
        stage.view.SetSelection(6, 2);
        EXPECT_EQ(stage.view.OnKeyDown(key, false), Handled::Yes);
        EXPECT_EQ(stage.document.bytes, (Bytes{0, 1, 7}));
        EXPECT_EQ(stage.State().caret, 2U);
        EXPECT_FALSE(stage.State().hasSelection);
        EXPECT_EQ(stage.host.notifications, Notifications{StateChanged});
    }
}

TEST(HexViewRemoval, OfAllBytesLeavesAnEmptyDocumentWithTheCaretAtItsStart) {
    ViewStage stage(CountingBytes(200));
    stage.Enter(InsertMode::Overwrite, 199);
    stage.view.SetSelection(0, 199);
    stage.view.OnKeyDown(Key::Delete, false);
    EXPECT_TRUE(stage.document.bytes.empty());
    EXPECT_EQ(stage.State().caret + stage.State().topRow, 0U);
    EXPECT_EQ(stage.host.vertical, (ScrollBar{0, 10, 0}));
    EXPECT_EQ(stage.view.OnKeyDown(Key::Delete, false), Handled::No);
}

TEST(HexViewRemoval, RefusedMidwayShowsWhatIsGone) {
    ViewStage stage(CountingBytes(8));
    stage.Enter(InsertMode::Overwrite);
    stage.view.SetSelection(2, 6);
    stage.document.refuseDelete = [](std::uint64_t offset) { return offset == 4; };
    EXPECT_EQ(stage.view.OnKeyDown(Key::Delete, false), Handled::No);
    EXPECT_EQ(stage.document.bytes, (Bytes{0, 1, 2, 3, 4, 7}));
    EXPECT_EQ(stage.State().caret, 2U);
    EXPECT_FALSE(stage.State().hasSelection);
    EXPECT_EQ(stage.host.notifications, Notifications{StateChanged});
}

TEST(HexViewRemoval, RefusedAtOnceChangesNothing) {
    ViewStage stage(CountingBytes(8));
    stage.Enter(InsertMode::Overwrite, 3);
    stage.document.refuseDelete = [](std::uint64_t) { return true; };
    EXPECT_EQ(stage.view.OnKeyDown(Key::Delete, false), Handled::No);
    stage.view.SetSelection(2, 6);
    stage.host.Forget();
    EXPECT_EQ(stage.view.OnKeyDown(Key::Delete, false), Handled::No);
    EXPECT_TRUE(stage.State().hasSelection);
    EXPECT_EQ(stage.State().caret, 3U);
    EXPECT_EQ(stage.host.notifications, Notifications());
    EXPECT_EQ(stage.host.invalidations, 0);
}

TEST(HexViewRemoval, OfAMebibyteUpdatesTheViewOnce) {
    constexpr std::size_t kSize = 1U << 20U;
    ViewStage stage{Bytes(kSize, 0xAA)};
    stage.Enter(InsertMode::Overwrite);
    stage.view.SetSelection(0, kSize - 1);
    stage.document.reads = 0;
    stage.host.Forget();
    stage.view.OnKeyDown(Key::Delete, false);
    EXPECT_TRUE(stage.document.bytes.empty());
    EXPECT_EQ(stage.document.reads, 0U);
    EXPECT_LE(stage.host.invalidations, 3);
    EXPECT_EQ(stage.host.notifications, Notifications{StateChanged});
}

TEST(HexViewInsertMode, SwitchingBackGivesUpTheRowBehindTheEndAtOnce) {
    ViewStage stage(CountingBytes(160));
    stage.Enter(InsertMode::Insert, 160);
    EXPECT_EQ(stage.host.vertical, (ScrollBar{10, 10, 1}));
    EXPECT_EQ(stage.view.OnKeyDown(Key::Insert, false), Handled::Yes);
    EXPECT_EQ(stage.State().caret, 159U);
    EXPECT_EQ(stage.State().topRow, 0U);
    EXPECT_EQ(stage.host.vertical, (ScrollBar{9, 10, 0}));
    EXPECT_EQ(stage.host.notifications, Notifications{StateChanged});
}

} // namespace
} // namespace kvx
