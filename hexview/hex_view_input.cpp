// Input of HexView that changes no byte: movement keys, mouse, wheel, scroll bars, focus and blink.
#include "hexview/hex_view.h"

#include "hexview/hex_digits.h"
#include "hexview/hex_view_layout.h"

#include <algorithm>
#include <cmath>

namespace kvx {
namespace {

constexpr float kWheelZoomStep = 0.1F;
constexpr std::uint64_t kWheelRows = 3;

std::uint64_t LessOrZero(std::uint64_t value, std::uint64_t decrease) {
    return value - std::min(value, decrease);
}

/// Bytes that a key moves the caret by; 0 for a key that does not move it by a distance.
std::int64_t StepOf(Key key, std::int64_t page) {
    constexpr auto kRow = static_cast<std::int64_t>(kBytesPerRow);
    switch (key) {
    case Key::Left:
        return -1;
    case Key::Right:
        return 1;
    case Key::Up:
        return -kRow;
    case Key::Down:
        return kRow;
    case Key::PageUp:
        return -page;
    case Key::PageDown:
        return page;
    default:
        return 0;
    }
}

} // namespace

Handled HexView::OnKeyDown(Key key, bool control) {
    if (!HasOpenDocument(state_)) return Handled::No;
    if (MoveWithKey(key, control)) return Handled::Yes;
    switch (key) {
    case Key::Insert:
    case Key::Delete:
    case Key::Backspace:
        return EditWithKey(key);
    case Key::Escape:
        EndSelection();
        return Handled::Yes;
    case Key::C:
        if (!control) return Handled::No;
        CopySelection();
        return Handled::Yes;
    default:
        return Handled::No;
    }
}

bool HexView::MoveWithKey(Key key, bool control) {
    const auto page = static_cast<std::int64_t>(VisibleRows(state_) * kBytesPerRow);
    const std::uint64_t rowStart = state_.caret - state_.caret % kBytesPerRow;
    if (const std::int64_t step = StepOf(key, page); step != 0)
        MoveCaretBy(step);
    else if (key == Key::Home)
        SetCaret(control ? 0 : rowStart);
    else if (key == Key::End)
        SetCaret(control ? LastCaretOffset(state_) : rowStart + kBytesPerRow - 1);
    else
        return false;
    return true;
}

void HexView::EndSelection() {
    if (!state_.hasSelection) return;
    ClearSelection();
    host_.Invalidate();
}

void HexView::OnLeftButtonDown(PointPx point) {
    host_.TakeFocus();
    const auto hit = HitTest(point);
    if (!hit) return;
    state_.dragAnchor = *hit;
    state_.dragAnchorValid = true;
    state_.dragging = true;
    host_.CaptureMouse();
    SetSelection(*hit, *hit);
    SetCaret(*hit);
}

void HexView::OnMouseMove(PointPx point) {
    if (!state_.dragging || !state_.dragAnchorValid) return;
    if (const auto hit = HitTest(point)) SetSelection(state_.dragAnchor, *hit);
}

void HexView::OnLeftButtonUp() {
    if (!state_.dragging) return;
    state_.dragging = false;
    host_.ReleaseMouse();
}

void HexView::OnCaptureLost() {
    state_.dragging = false;
    state_.dragAnchor = 0;
    state_.dragAnchorValid = false;
}

void HexView::OnWheel(std::int32_t delta, bool control) {
    const bool away = delta > 0;
    if (control)
        SetZoom(away ? kWheelZoomStep : -kWheelZoomStep);
    else
        ScrollToRow(away ? LessOrZero(state_.topRow, kWheelRows) : state_.topRow + kWheelRows);
}

void HexView::OnVerticalScroll(ScrollRequest request, std::int32_t trackPosition) {
    // Steps start from the true top row: the bar's own position stops at 0x7FFFFFFF, and stepping
    // from there would throw a reader of a later row back.
    switch (request) {
    case ScrollRequest::LineBack:
        return ScrollToRow(LessOrZero(state_.topRow, 1));
    case ScrollRequest::LineForward:
        return ScrollToRow(state_.topRow + 1);
    case ScrollRequest::PageBack:
        return ScrollToRow(LessOrZero(state_.topRow, VisibleRows(state_)));
    case ScrollRequest::PageForward:
        return ScrollToRow(state_.topRow + VisibleRows(state_));
    case ScrollRequest::ThumbPosition:
    case ScrollRequest::ThumbTrack:
        return ScrollToRow(ThumbRow(trackPosition));
    case ScrollRequest::First:
        return ScrollToRow(0);
    case ScrollRequest::Last:
        return ScrollToRow(LargestTopRow(state_));
    }
}

std::uint64_t HexView::ThumbRow(std::int32_t trackPosition) const {
    const auto row = static_cast<std::uint64_t>(std::max(trackPosition, 0));
    const ScrollBar bar = VerticalBar(state_);
    const auto barEnd = LessOrZero(static_cast<std::uint64_t>(bar.max) + 1, bar.page);
    // At the bar's end the thumb stands for all the rows from there on: where the bar is too short
    // for the file, touching the thumb there must not jump back from a later row.
    return row >= barEnd ? std::max(row, state_.topRow) : row;
}

void HexView::OnHorizontalScroll(ScrollRequest request, std::int32_t trackPosition) {
    const std::int64_t position = state_.scrollX;
    const std::int64_t line = std::max(1L, std::lround(state_.hexCharWidth));
    const std::int64_t page = HorizontalPage(state_);
    switch (request) {
    case ScrollRequest::LineBack:
        return ScrollTo(position - line);
    case ScrollRequest::LineForward:
        return ScrollTo(position + line);
    case ScrollRequest::PageBack:
        return ScrollTo(position - page);
    case ScrollRequest::PageForward:
        return ScrollTo(position + page);
    case ScrollRequest::ThumbPosition:
    case ScrollRequest::ThumbTrack:
        return ScrollTo(trackPosition);
    case ScrollRequest::First:
        return ScrollTo(0);
    case ScrollRequest::Last:
        return ScrollTo(LargestScrollX(state_));
    }
}

void HexView::OnFocusGained() {
    state_.focused = true;
    state_.caretBlinkOn = true;
    RestartBlinkTimer();
    host_.Invalidate();
}

void HexView::OnFocusLost() {
    state_.focused = false;
    state_.caretBlinkOn = false;
    RestartBlinkTimer();
    host_.Invalidate();
}

void HexView::OnBlinkTimer() {
    state_.caretBlinkOn = !state_.caretBlinkOn;
    host_.Invalidate();
}

void HexView::RestartBlinkTimer() {
    if (state_.focused && state_.insertMode == InsertMode::Insert)
        host_.StartBlinkTimer();
    else
        host_.StopBlinkTimer();
}

} // namespace kvx
