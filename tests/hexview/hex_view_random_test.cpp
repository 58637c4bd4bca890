// Random input against the plain view, from fixed seeds.
#include "hexview/frame.h"
#include "hexview/hex_digits.h"
#include "hexview/hex_view_layout.h"
#include "tests/hexview/plain_view.h"
#include "tests/hexview/view_stage.h"

#include <gtest/gtest.h>

#include <random>

namespace kvx {
namespace {

class RandomDriver {
public:
    RandomDriver(std::uint32_t seed, std::size_t size)
        : random_(seed), stage_(CountingBytes(size)), model_(CountingBytes(size)) {
        stage_.view.OnFocusGained();
        stage_.view.ToggleEditable();
    }

    void Step() {
        using Self = RandomDriver;
        static constexpr void (Self::*kActions[])() = {
            &Self::Click, &Self::Scroll, &Self::Resize, &Self::Toggle, &Self::Remove, &Self::Remove,
            &Self::Type,  &Self::Type,   &Self::Type,   &Self::Move,   &Self::Move,   &Self::Move};
        (this->*kActions[Below(std::size(kActions))])();
    }

    void Check() {
        const HexViewState& state = stage_.State();
        const Bytes bytes = model_.document.Content();
        ASSERT_EQ(stage_.document.bytes, bytes);
        ASSERT_EQ(state.caret, model_.caret);
        ASSERT_EQ(state.hasSelection, model_.selection.has_value());
        const std::pair selected(state.selAnchor, state.selEnd);
        ASSERT_EQ(model_.selection.value_or(selected), selected);
        ASSERT_LE(state.topRow, LargestTopRow(state));
        ASSERT_GE(state.scrollX, 0);
        ASSERT_LE(state.scrollX, LargestScrollX(state));
        ASSERT_EQ(stage_.host.vertical, VerticalBar(state));
        ASSERT_EQ(stage_.host.horizontal, HorizontalBar(state));
        CheckFrame(BuildFrame(state), bytes);
    }

private:
    std::size_t Below(std::size_t end) { return random_() % end; }

    void Move() {
        const auto page = static_cast<std::int64_t>(VisibleRows(stage_.State()) * 16);
        const std::pair<Key, std::int64_t> steps[] = {
            {Key::Left, -1}, {Key::Right, 1},      {Key::Up, -16},
            {Key::Down, 16}, {Key::PageUp, -page}, {Key::PageDown, page},
        };
        const bool control = Below(4) == 0;
        const std::uint64_t rowStart = model_.caret / 16 * 16;
        const std::size_t choice = Below(8);
        const Key key = choice < 6 ? steps[choice].first : choice == 6 ? Key::Home : Key::End;
        stage_.view.OnKeyDown(key, control);
        if (choice < 6)
            model_.MoveBy(steps[choice].second);
        else if (key == Key::Home)
            model_.MoveTo(control ? 0 : rowStart);
        else
            model_.MoveTo(control ? model_.Last() : rowStart + 15);
        EXPECT_TRUE(ShowsCaretRow());
    }

    PointPx RandomPoint() {
        return {static_cast<std::int32_t>(Below(800)) - 20,
                static_cast<std::int32_t>(Below(300)) - 20};
    }

    void Click() {
        const PointPx down = RandomPoint();
        const auto hit = stage_.view.HitTest(down);
        stage_.view.OnLeftButtonDown(down);
        if (hit) model_.Select(*hit, *hit);
        for (std::size_t moves = Below(3); moves > 0; --moves) {
            const PointPx to = RandomPoint();
            const auto over = stage_.view.HitTest(to);
            stage_.view.OnMouseMove(to);
            if (hit && over) model_.selection->second = *over;
        }
        stage_.view.OnLeftButtonUp();
    }

    void Scroll() {
        const auto request = static_cast<ScrollRequest>(Below(9));
        const auto track = static_cast<std::int32_t>(Below(700)) - 50;
        const std::size_t choice = Below(3);
        if (choice == 0)
            stage_.view.OnVerticalScroll(request, track);
        else if (choice == 1)
            stage_.view.OnHorizontalScroll(request, track);
        else
            stage_.view.OnWheel(track, Below(4) == 0);
    }

    void Resize() {
        stage_.view.SetClientSize(static_cast<std::uint32_t>(Below(900)),
                                  static_cast<std::uint32_t>(Below(400)));
    }

    void Toggle() {
        stage_.view.OnKeyDown(Key::Insert, false);
        model_.ToggleInserting();
    }

    void Remove() {
        const bool forward = Below(2) == 0;
        stage_.view.OnKeyDown(forward ? Key::Delete : Key::Backspace, false);
        model_.Remove(forward);
    }

    void Type() {
        const std::size_t digit = Below(16);
        stage_.view.OnChar(u"0123456789abcDEF"[digit]);
        model_.Type(static_cast<unsigned>(digit));
    }

    bool ShowsCaretRow() const {
        const std::uint64_t row = model_.caret / 16;
        const std::uint64_t top = stage_.State().topRow;
        return row >= top && row < top + VisibleRows(stage_.State());
    }

    void CheckFrame(const Frame& frame, const Bytes& bytes) const {
        const HexViewState& state = stage_.State();
        const auto first = static_cast<std::size_t>(state.topRow * 16);
        const std::size_t count =
            std::min(bytes.size() - first, static_cast<std::size_t>(VisibleRows(state) * 16));
        ASSERT_EQ(frame.hex.texts.size(), count);
        const bool outlined = !model_.inserting && !bytes.empty() && ShowsCaretRow();
        ASSERT_EQ(frame.outlines.size(), outlined ? 2U : 0U);
        for (std::size_t i = 0; i < count; ++i) {
            const auto pair = HexPair(bytes[first + i]);
            ASSERT_EQ(frame.hex.texts[i].text, std::u16string(pair.begin(), pair.end()));
        }
    }

    std::mt19937 random_;
    ViewStage stage_;
    PlainView model_;
};

TEST(HexViewRandom, AgreesWithThePlainModelUnderAnyInput) {
    const std::size_t sizes[] = {0, 1, 16, 33, 160, 1000};
    for (std::uint32_t seed = 1; seed <= 12; ++seed) {
        RandomDriver driver(seed, sizes[seed % std::size(sizes)]);
        for (int step = 0; step < 2500; ++step) {
            driver.Step();
            driver.Check();
            if (testing::Test::HasFailure()) {
                ADD_FAILURE() << "seed " << seed << ", step " << step;
                return;
            }
        }
    }
}

} // namespace
} // namespace kvx
