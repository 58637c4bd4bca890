#include "hexview/frame.h"

#include "hexview/hex_view_layout.h"
#include "tests/hexview/view_stage.h"

#include <gtest/gtest.h>

#include <limits>

namespace kvx {

void PrintTo(const FrameBox& box, std::ostream* out) {
    const RectDip& rect = box.rect;
    *out << "{" << rect.left << ", " << rect.top << ", " << rect.right << ", " << rect.bottom
         << " role " << static_cast<int>(box.color) << "}";
}

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

Lines CellLines(const Frame& frame) {
    Lines lines;
    for (const FrameTextGroup& group : frame.cells)
        lines.push_back(LinesOf(group.texts, u"").front());
    return lines;
}

TEST(Frame, ShowsOffsetsPairsAndTextOfEveryRow) {
    const ViewStage stage(
        {'K', 'i', 'v', 'r', 'a', 0, 0xFF, ' ', '~', 0x7F, 10, 11, 12, 13, 14, 15, 'x'});
    const Frame frame = BuildFrame(stage.State());
    EXPECT_EQ(LinesOf(frame.offsets.texts, u""), (Lines{u"00000000", u"00000010"}));
    EXPECT_EQ(LinesOf(frame.hex.texts, u" "),
              (Lines{u"4B 69 76 72 61 00 FF 20 7E 7F 0A 0B 0C 0D 0E 0F", u"78"}));
    EXPECT_EQ(CellLines(frame), (Lines{u"Kivra.. ~.......", u"x"}));
}

TEST(Frame, PlacesEachTextAtItsByte) {
    const ViewStage stage(CountingBytes(32));
    const Frame frame = BuildFrame(stage.State());
    EXPECT_EQ(frame.offsets.texts[9].layout, InRow(stage, 1, 18, 28));
    EXPECT_EQ(frame.offsets.texts[9].color, ColorRole::SecondaryText);
    EXPECT_EQ(frame.hex.texts[17].layout, InRow(stage, 1, 140, 160));
    EXPECT_EQ(frame.hex.texts[17].color, ColorRole::MainText);
    RectDip cell = InRow(stage, 1, 610, 642); // four characters wide, three rows high
    cell.bottom = cell.top + 3.0F * stage.State().rowHeight;
    EXPECT_EQ(frame.cells[1].texts[1].layout, cell);
}

TEST(Frame, ClipsTheColumnsAndLetsTextReachIntoTheRowsAround) {
    const ViewStage stage(CountingBytes(48));
    const Frame frame = BuildFrame(stage.State());
    const float height = kStageHeight;
    const float row = stage.State().rowHeight;
    EXPECT_EQ(frame.contentClip, (RectDip{110, 0, 730, height}));
    EXPECT_EQ(frame.hex.clip, frame.contentClip);
    EXPECT_EQ(frame.offsets.clip, (RectDip{8, 0, 98, height}));
    EXPECT_EQ(frame.cells[0].clip, (RectDip{110, 0, 730, 8 + 2 * row}));
    EXPECT_EQ(frame.cells[2].clip, (RectDip{110, 8 + row, 730, 8 + 2 * row + 2 * row}));
}

TEST(Frame, ScrollsOnlyTheHexAndTextColumnsSideways) {
    ViewStage stage(CountingBytes(16));
    stage.view.SetClientSize(318, kStageHeight);
    stage.view.OnHorizontalScroll(ScrollRequest::ThumbTrack, 45);
    const Frame frame = BuildFrame(stage.State());
    EXPECT_EQ(frame.contentClip.left, 110.0F);
    EXPECT_EQ(frame.contentClip.right, 310.0F);
    EXPECT_EQ(frame.offsets.texts[0].layout.left, 8.0F);
    EXPECT_EQ(frame.hex.texts[0].layout.left, 65.0F);
    EXPECT_EQ(frame.cells[0].texts[0].layout.left, 557.0F);

    stage.view.SetClientSize(60, kStageHeight); // no room beside the offsets
    const RectDip clip = BuildFrame(stage.State()).contentClip;
    EXPECT_EQ(clip.right, clip.left);
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

TEST(Frame, ShowsTheInsertBarOnlyWithTheFocusAndInTheVisiblePhase) {
    ViewStage stage(CountingBytes(20));
    stage.Enter(InsertMode::Insert, 17);
    EXPECT_TRUE(BuildFrame(stage.State()).fills.empty());
    stage.view.OnFocusGained();
    const Frame frame = BuildFrame(stage.State());
    EXPECT_EQ(frame.fills, (Boxes{{InRow(stage, 1, 140, 142), ColorRole::Caret},
                                  {InRow(stage, 1, 610, 612), ColorRole::Caret}}));
    EXPECT_TRUE(frame.outlines.empty());
    stage.view.OnBlinkTimer();
    EXPECT_TRUE(BuildFrame(stage.State()).fills.empty());
}

TEST(Frame, DrawsTheEmptyRowOfAnInsertCaretBehindWholeRows) {
    ViewStage stage(CountingBytes(32));
    stage.view.OnFocusGained();
    stage.Enter(InsertMode::Insert, 32);
    const Frame frame = BuildFrame(stage.State());
    EXPECT_EQ(LinesOf(frame.offsets.texts, u""), (Lines{u"00000000", u"00000010", u"00000020"}));
    EXPECT_EQ(frame.hex.texts.size(), 32U);
    EXPECT_EQ(frame.cells.size(), 2U);
    EXPECT_EQ(frame.fills, (Boxes{{InRow(stage, 2, 110, 112), ColorRole::Caret},
                                  {InRow(stage, 2, 602, 604), ColorRole::Caret}}));
}

TEST(Frame, OfAnEmptyDocumentHasARowOnlyForAnInsertCaret) {
    ViewStage stage;
    stage.view.OnFocusGained();
    Frame frame = BuildFrame(stage.State());
    EXPECT_TRUE(frame.offsets.texts.empty() && frame.fills.empty() && frame.outlines.empty());
    stage.Enter(InsertMode::Insert);
    frame = BuildFrame(stage.State());
    EXPECT_EQ(LinesOf(frame.offsets.texts, u""), Lines{u"00000000"});
    EXPECT_EQ(frame.fills.size(), 2U);
    stage.document.open = false;
    EXPECT_TRUE(BuildFrame(stage.State()).offsets.texts.empty());
}

TEST(Frame, ShowsSixteenDigitsFromFourGibibytesOnAndEveryRowOfTheLargestDocument) {
    const HugeDocument large(0x1'0000'0000);
    EXPECT_EQ(LinesOf(BuildFrame(ViewStage(large).State()).offsets.texts, u"").front(),
              u"0000000000000000");
    const HugeDocument largest(std::numeric_limits<std::uint64_t>::max());
    ViewStage stage(largest);
    stage.view.OnKeyDown(Key::End, true);
    const Frame frame = BuildFrame(stage.State());
    const Lines offsets = LinesOf(frame.offsets.texts, u"");
    ASSERT_EQ(offsets.size(), 10U);
    EXPECT_EQ(offsets.front(), u"FFFFFFFFFFFFFF60");
    EXPECT_EQ(offsets.back(), u"FFFFFFFFFFFFFFF0");
    EXPECT_EQ(frame.hex.texts.size(), 159U);
    EXPECT_EQ(frame.outlines.size(), 2U);
}

TEST(Frame, ReadsThePageAtOnceAndNothingBeyondIt) {
    ViewStage stage(CountingBytes(1000));
    stage.view.ScrollToRow(20);
    stage.document.reads = 0;
    const Frame frame = BuildFrame(stage.State());
    EXPECT_EQ(frame.cells.size(), 10U);
    EXPECT_EQ(LinesOf(frame.offsets.texts, u"").front(), u"00000140");
    EXPECT_EQ(stage.document.reads, 1U);
}

/// Says it has 100 bytes, but gives none from `unreadable` on, nor anything that reaches there.
class BadSectorDocument final : public IReadOnlyDocument {
public:
    explicit BadSectorDocument(std::uint64_t unreadable) : unreadable_(unreadable) {}
    bool IsOpen() const override { return true; }
    std::uint64_t GetSize() const override { return 100; }
    std::u16string GetPath() const override { return {}; }
    Bytes ReadBytes(std::uint64_t offset, std::uint64_t count) const override {
        return offset + count > unreadable_ ? Bytes() : Bytes(static_cast<std::size_t>(count), 'a');
    }

private:
    std::uint64_t unreadable_;
};

TEST(Frame, ShowsTheRowsBeforeAPlaceThatCannotBeRead) {
    const BadSectorDocument document(40);
    ViewStage stage;
    stage.view.SetDocument(&document, nullptr);
    EXPECT_EQ(CellLines(BuildFrame(stage.State())), Lines(2, std::u16string(16, u'a')));
}

TEST(Frame, ShowsWhatAShrinkingFileStillHolds) {
    ViewStage stage(CountingBytes(1000));
    stage.view.ScrollToRow(3);
    stage.document.bytes.resize(70); // nobody has told the view yet
    const Frame frame = BuildFrame(stage.State());
    EXPECT_EQ(LinesOf(frame.hex.texts, u" "),
              (Lines{u"30 31 32 33 34 35 36 37 38 39 3A 3B 3C 3D 3E 3F", u"40 41 42 43 44 45"}));
    stage.document.bytes.clear();
    EXPECT_TRUE(BuildFrame(stage.State()).offsets.texts.empty());
}

TEST(Theme, HasTheColoursOfItsPaletteAndLightForUnknownOnes) {
    const Color selection = ThemeColor(Theme::DarkBlue, ColorRole::Selection);
    EXPECT_EQ(selection, (Color{0x1F / 255.0F, 0x6F / 255.0F, 0xEB / 255.0F, 0.45F}));
    const Color background = ThemeColor(Theme::Light, ColorRole::Background);
    EXPECT_NEAR(background.red, 0.9647F, 0.00005F);
    EXPECT_NEAR(background.green, 0.9569F, 0.00005F);
    EXPECT_NEAR(background.blue, 0.9373F, 0.00005F);
    EXPECT_EQ(ThemeColor(static_cast<Theme>(7), ColorRole::Background), background);
    EXPECT_EQ(ThemeColor(Theme::Black, ColorRole::Caret),
              ThemeColor(Theme::Black, ColorRole::MainText));
}

} // namespace
} // namespace kvx
