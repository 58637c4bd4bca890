#include "hexview/frame.h"

#include "tests/hexview/view_stage.h"

#include <gtest/gtest.h>

namespace kvx {
namespace {

using Lines = std::vector<std::u16string>;
using Boxes = std::vector<FrameBox>;

/// Row `i` of the stage, exactly as the view adds it up.
RectDip InRow(const ViewStage& stage, int i, float left, float right) {
    const float top = 8.0F + static_cast<float>(i) * stage.State().rowHeight;
    return {left, top, right, top + stage.State().rowHeight};
}

/// The texts of a group as lines, a line per top edge, texts in one line joined by `separator`.
Lines LinesOf(const std::vector<FrameText>& texts, const std::u16string& separator) {
    Lines lines;
    float top = -1.0F;
    for (const FrameText& text : texts) {
        if (text.layout.top != top)
            lines.push_back(text.text);
        else
            lines.back() += separator + text.text;
        top = text.layout.top;
    }
    return lines;
}

TEST(Frame, ShowsOffsetsPairsAndTextOfEveryRow) {
    const ViewStage stage(
        {'K', 'i', 'v', 'r', 'a', 0, 0xFF, ' ', '~', 0x7F, 10, 11, 12, 13, 14, 15, 'x'});
    const Frame frame = BuildFrame(stage.State());
    EXPECT_EQ(LinesOf(frame.offsets.texts, u""), (Lines{u"00000000", u"00000010"}));
    EXPECT_EQ(LinesOf(frame.hex.texts, u" "),
              (Lines{u"4B 69 76 72 61 00 FF 20 7E 7F 0A 0B 0C 0D 0E 0F", u"78"}));
    EXPECT_EQ(LinesOf(frame.cells[0].texts, u""), Lines{u"Kivra.. ~......."});
    EXPECT_EQ(LinesOf(frame.cells[1].texts, u""), Lines{u"x"});
}

TEST(Frame, PlacesEachTextAtItsByteAndLetsItReachIntoTheRowsAround) {
    const ViewStage stage(CountingBytes(48));
    const Frame frame = BuildFrame(stage.State());
    const float row = stage.State().rowHeight;
    EXPECT_EQ(frame.offsets.texts[9].layout, InRow(stage, 1, 18, 28));
    EXPECT_EQ(frame.hex.texts[17].layout, InRow(stage, 1, 140, 160));
    RectDip cell = InRow(stage, 1, 610, 642); // four characters wide, three rows high
    cell.bottom = cell.top + 3.0F * row;
    EXPECT_EQ(frame.cells[1].texts[1].layout, cell);
    EXPECT_EQ(frame.contentClip, (RectDip{110, 0, 730, kStageHeight}));
    EXPECT_EQ(frame.hex.clip, frame.contentClip);
    EXPECT_EQ(frame.offsets.clip, (RectDip{8, 0, 98, kStageHeight}));
    EXPECT_EQ(frame.cells[0].clip, (RectDip{110, 0, 730, 8 + 2 * row}));
    EXPECT_EQ(frame.cells[2].clip, (RectDip{110, 8 + row, 730, 8 + 2 * row + 2 * row}));
}

TEST(Frame, FillsTheSelectionOfEachRowBelowTheCaretThatIsFilledAndOutlined) {
    ViewStage stage(CountingBytes(64));
    stage.view.SetCaret(14);
    stage.view.SetSelection(33, 14);
    const Frame frame = BuildFrame(stage.State());
    constexpr auto kFill = ColorRole::Selection;
    EXPECT_EQ(frame.fills, (Boxes{
                               {InRow(stage, 0, 530, 590), kFill},
                               {InRow(stage, 0, 714, 730), kFill},
                               {InRow(stage, 0, 530, 550), kFill}, // the caret
                               {InRow(stage, 0, 714, 722), kFill},
                               {InRow(stage, 1, 110, 590), kFill},
                               {InRow(stage, 1, 602, 730), kFill},
                               {InRow(stage, 2, 110, 170), kFill},
                               {InRow(stage, 2, 602, 618), kFill},
                           }));
    RectDip hex = InRow(stage, 0, 530.5F, 549.5F);
    RectDip text = InRow(stage, 0, 714.5F, 721.5F);
    hex.top = text.top += 0.5F;
    hex.bottom = text.bottom -= 0.5F;
    EXPECT_EQ(frame.outlines, (Boxes{{hex, ColorRole::Caret}, {text, ColorRole::Caret}}));
}

struct InsertCaretRow {
    std::size_t size;
    std::uint64_t caret;
    std::size_t rows;
    int caretRow;
    float hex;
    float text;
};

TEST(Frame, ShowsTheInsertBarWithTheFocusInItsPhaseAlsoInTheEmptyRowBehindWholeOnes) {
    for (const auto& [size, caret, rows, caretRow, hex, text] : {
             InsertCaretRow{20, 17, 2, 1, 140, 610},
             {32, 32, 3, 2, 110, 602},
             {0, 0, 1, 0, 110, 602},
         }) {
        ViewStage stage(CountingBytes(size));
        stage.view.OnFocusGained();
        stage.Enter(InsertMode::Insert, caret);
        const Frame frame = BuildFrame(stage.State());
        EXPECT_EQ(LinesOf(frame.offsets.texts, u"").size(), rows) << size;
        EXPECT_EQ(frame.hex.texts.size(), size);
        EXPECT_TRUE(frame.outlines.empty()) << size;
        EXPECT_EQ(frame.fills, (Boxes{{InRow(stage, caretRow, hex, hex + 2), ColorRole::Caret},
                                      {InRow(stage, caretRow, text, text + 2), ColorRole::Caret}}));
        stage.view.OnBlinkTimer();
        EXPECT_TRUE(BuildFrame(stage.State()).fills.empty()) << size;
        stage.view.OnFocusLost();
        stage.view.OnBlinkTimer();
        EXPECT_TRUE(BuildFrame(stage.State()).fills.empty()) << size;
    }
}

TEST(Frame, ShowsEveryRowOfTheLargestDocument) {
    ViewStage stage({}, ~0ULL);
    stage.view.OnKeyDown(Key::End, true);
    const Frame frame = BuildFrame(stage.State());
    const Lines offsets = LinesOf(frame.offsets.texts, u"");
    ASSERT_EQ(offsets.size(), 10U);
    EXPECT_EQ(offsets.front(), u"FFFFFFFFFFFFFF60");
    EXPECT_EQ(offsets.back(), u"FFFFFFFFFFFFFFF0");
    EXPECT_EQ(frame.hex.texts.size(), 159U);
    EXPECT_EQ(frame.outlines.size(), 2U);
}

TEST(Frame, ReadsThePageAtOnceAndShowsWhatOfItCanBeRead) {
    ViewStage stage(CountingBytes(1000));
    stage.view.ScrollToRow(3);
    stage.document.reads = 0;
    EXPECT_EQ(BuildFrame(stage.State()).hex.texts.size(), 160U);
    EXPECT_EQ(stage.document.reads, 1U);
    stage.document.badFrom = 72; // a sector goes bad: whole rows before it
    EXPECT_EQ(BuildFrame(stage.State()).hex.texts.size(), 16U);
    stage.document.bytes.resize(70); // the file shrinks: nobody has told the view yet
    EXPECT_EQ(LinesOf(BuildFrame(stage.State()).hex.texts, u" "),
              (Lines{u"30 31 32 33 34 35 36 37 38 39 3A 3B 3C 3D 3E 3F", u"40 41 42 43 44 45"}));
    stage.document.open = false;
    EXPECT_TRUE(BuildFrame(stage.State()).offsets.texts.empty());
}

} // namespace
} // namespace kvx
