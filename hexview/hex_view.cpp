#include "hexview/hex_view.h"

#include "hexview/hex_view_layout.h"
#include "platform/text.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <tuple>

namespace kvx {
namespace {

constexpr float kMinZoom = 0.6F;
constexpr float kMaxZoom = 2.5F;
constexpr float kLeastZoomChange = 0.001F;
constexpr float kMinPoints = 6.0F;
constexpr float kMaxPoints = 48.0F;
constexpr float kDipsPerPoint = 96.0F / 72.0F;
constexpr float kLeastFontSizeChange = 0.01F;

/// A bar that comes may bring the other one, and that is all; more rounds would be a quarrel
/// between window and view that nobody can win.
constexpr int kMaxScrollBarRounds = 4;

bool SameLook(const HexViewState& state, const std::u16string& family, float sizeDip, bool bold,
              bool italic) {
    return CompareIgnoringCase(state.fontFamily, family) == 0 &&
           std::fabs(state.fontSizeDip - sizeDip) < kLeastFontSizeChange && state.bold == bold &&
           state.italic == italic;
}

} // namespace

HexView::HexView(HexViewHost& host, TextMeasurer& measurer) : host_(host), measurer_(measurer) {
    MeasureFont(state_, measurer_);
}

void HexView::SetDocument(const IReadOnlyDocument* document, IEditableDocument* editable) {
    if (state_.dragging) host_.ReleaseMouse();
    state_.document = document;
    state_.editableDocument = editable;
    state_.editable = false;
    state_.topRow = 0;
    state_.scrollX = 0;
    state_.caret = 0;
    state_.dragging = false;
    ClearSelection();
    ClearNibble();
    SetDpi(host_.WindowDpi());
    host_.TakeFocus();
    host_.Invalidate();
}

void HexView::FitDocument() {
    if (state_.hasSelection) SetSelection(state_.selAnchor, state_.selEnd);
    FitOffsetColumn(state_);
    UpdateScrollBars();
    host_.Invalidate();
}

void HexView::SetZoom(float step) {
    const float zoom = std::clamp(state_.zoom + step, kMinZoom, kMaxZoom);
    // Ten steps of a tenth up and ten down must meet again: binary fractions alone would drift.
    if (std::fabs(zoom - state_.zoom) >= kLeastZoomChange)
        ApplyZoom(std::round(zoom * 1000.0F) / 1000.0F);
}

void HexView::ResetZoom() {
    if (std::fabs(1.0F - state_.zoom) >= kLeastZoomChange) ApplyZoom(1.0F);
}

void HexView::ApplyZoom(float zoom) {
    state_.zoom = zoom;
    ShowInNewFont(HexViewNotification::ZoomChanged);
}

void HexView::SetFont(const std::u16string& family, float points, bool bold, bool italic) {
    const float sizeDip = std::fmin(std::fmax(points, kMinPoints), kMaxPoints) * kDipsPerPoint;
    if (SameLook(state_, family, sizeDip, bold, italic)) return;
    state_.fontFamily = family;
    state_.fontSizeDip = sizeDip;
    state_.bold = bold;
    state_.italic = italic;
    ShowInNewFont(HexViewNotification::StateChanged);
}

void HexView::SetEncoding(TextEncoding encoding) {
    state_.encoding = encoding;
    host_.Invalidate();
}

void HexView::SetTheme(Theme theme) {
    state_.theme = theme;
    host_.Invalidate();
}

void HexView::ToggleEditable() {
    state_.editable = !state_.editable;
    ClearNibble();
    ShowChange();
}

void HexView::SetDpi(std::uint32_t dpi) {
    state_.dpi = dpi == 0 ? kDefaultDpi : dpi;
    Remeasure();
    UpdateScrollBars();
    host_.Invalidate();
}

void HexView::SetClientSize(std::uint32_t widthPx, std::uint32_t heightPx) {
    state_.clientWidthPx = widthPx;
    state_.clientHeightPx = heightPx;
    host_.ReleaseDeviceResources();
    UpdateScrollBars();
    host_.Invalidate();
}

void HexView::SetCaret(std::uint64_t offset) {
    state_.caret = std::min(offset, LastCaretOffset(state_));
    if (!state_.dragging) ClearSelection();
    ClearNibble();
    EnsureCaretVisible();
    ShowChange();
}

void HexView::MoveCaretBy(std::int64_t delta) {
    const std::uint64_t caret = state_.caret;
    const std::uint64_t room = LastCaretOffset(state_) - std::min(caret, LastCaretOffset(state_));
    const auto distance = static_cast<std::uint64_t>(delta);
    // Negated in unsigned arithmetic, which is right for the lowest delta too.
    SetCaret(delta < 0 ? caret - std::min(caret, 0 - distance) : caret + std::min(distance, room));
}

void HexView::SetSelection(std::uint64_t anchor, std::uint64_t end) {
    const std::uint64_t size = DocumentSize(state_);
    state_.hasSelection = size != 0;
    state_.selAnchor = size == 0 ? 0 : std::min(anchor, size - 1);
    state_.selEnd = size == 0 ? 0 : std::min(end, size - 1);
    host_.Invalidate();
}

void HexView::ScrollToRow(std::uint64_t row) {
    state_.topRow = std::min(row, LargestTopRow(state_));
    UpdateScrollBars();
    ShowChange();
}

void HexView::ScrollTo(std::int64_t scrollX) {
    state_.scrollX =
        static_cast<std::int32_t>(std::clamp<std::int64_t>(scrollX, 0, LargestScrollX(state_)));
    UpdateScrollBars();
    host_.Invalidate();
}

void HexView::EnsureCaretVisible() {
    const auto before = std::tuple(state_.topRow, state_.scrollX);
    for (int round = 0; round < kMaxScrollBarRounds; ++round) {
        const auto size = std::tuple(state_.clientWidthPx, state_.clientHeightPx);
        ScrollToCaret(state_);
        UpdateScrollBars();
        // A scroll bar that appears takes room, maybe the caret's.
        if (size == std::tuple(state_.clientWidthPx, state_.clientHeightPx)) break;
    }
    if (before != std::tuple(state_.topRow, state_.scrollX)) host_.Invalidate();
}

std::optional<std::uint64_t> HexView::HitTest(PointPx point) const {
    return kvx::HitTest(state_, point);
}

void HexView::Remeasure() {
    MeasureFont(state_, measurer_);
    host_.ReleaseDeviceResources();
}

void HexView::ShowInNewFont(HexViewNotification notification) {
    Remeasure();
    UpdateScrollBars();
    EnsureCaretVisible();
    host_.Invalidate();
    host_.NotifyParent(notification);
}

void HexView::UpdateScrollBars() {
    ClampPositions(state_);
    scrollBarsStale_ = true;
    // Inside SetScrollBars the window may be resized and come back here; the outer call goes on
    // then.
    if (updatingScrollBars_) return;
    updatingScrollBars_ = true;
    for (int round = 0; scrollBarsStale_ && round < kMaxScrollBarRounds; ++round) {
        scrollBarsStale_ = false;
        host_.SetScrollBars(VerticalBar(state_), HorizontalBar(state_));
    }
    updatingScrollBars_ = false;
}

void HexView::ShowChange() {
    host_.Invalidate();
    host_.NotifyParent(HexViewNotification::StateChanged);
}

void HexView::ClearSelection() {
    state_.hasSelection = false;
    state_.selAnchor = 0;
    state_.selEnd = 0;
    state_.dragAnchor = 0;
    state_.dragAnchorValid = false;
}

void HexView::ClearNibble() {
    state_.pendingNibble = 0;
    state_.nibblePending = false;
}

} // namespace kvx
