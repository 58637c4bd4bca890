// The hex view without its window: caret, selection, digit entry, deletion, copy, scrolling, zoom
// and font over one state record. A window forwards messages to it and draws what BuildFrame says.
#pragma once

#include "hexview/hex_view_host.h"
#include "hexview/hex_view_state.h"
#include "hexview/text_measurer.h"

#include <cstdint>
#include <optional>
#include <string>

namespace kvx {

/// Whether the view dealt with an input or wants the system's default processing for it.
enum class Handled : bool { No, Yes };

/// Keys that the view knows, as Windows virtual-key codes; any other value may be passed too.
enum class Key : std::uint32_t {
    Backspace = 0x08,
    Escape = 0x1B,
    PageUp = 0x21,
    PageDown = 0x22,
    End = 0x23,
    Home = 0x24,
    Left = 0x25,
    Up = 0x26,
    Right = 0x27,
    Down = 0x28,
    Insert = 0x2D,
    Delete = 0x2E,
    C = 0x43,
};

/// Scroll bar requests, with the values of SB_LINEUP and so on.
enum class ScrollRequest : std::uint32_t {
    LineBack = 0,
    LineForward = 1,
    PageBack = 2,
    PageForward = 3,
    ThumbPosition = 4,
    ThumbTrack = 5,
    First = 6,
    Last = 7,
};

/// Used from the thread of its window.
class HexView {
public:
    /// Measures the default font at once. `host` and `measurer` must outlive the view.
    HexView(HexViewHost& host, TextMeasurer& measurer);

    const HexViewState& State() const { return state_; }

    // Set from outside.

    /// Shows `document` (null: none) from its start, read-only again; `editable` is the same
    /// object, or null when it cannot be edited. Insert or overwrite mode stays. Neither is owned;
    /// both must stay valid until the next call.
    void SetDocument(const IReadOnlyDocument* document, IEditableDocument* editable);
    /// To be told when the size of the document has changed other than by the view's own edits.
    void FitDocument();
    void SetZoom(float step); ///< adds `step`, within 0.6 and 2.5
    void ResetZoom();
    void SetFont(const std::u16string& family, float points, bool bold, bool italic); ///< 6 to 48
    void SetEncoding(TextEncoding encoding);
    void SetTheme(Theme theme);
    void ToggleEditable();
    void SetDpi(std::uint32_t dpi);                                    ///< 0 counts as 96
    void SetClientSize(std::uint32_t widthPx, std::uint32_t heightPx); ///< pixels

    // Caret, selection, scrolling. Positions beyond the document are brought to its end.

    /// Also ends the selection, unless the mouse is dragging one.
    void SetCaret(std::uint64_t offset);
    void MoveCaretBy(std::int64_t delta);

    /// Selects from `anchor` to `end`, both included; the caret stays.
    void SetSelection(std::uint64_t anchor, std::uint64_t end);
    void ScrollToRow(std::uint64_t row);
    void EnsureCaretVisible();
    std::optional<std::uint64_t> HitTest(PointPx point) const;

    // Input, one function per message.
    Handled OnKeyDown(Key key, bool control);
    Handled OnChar(char16_t character);
    void OnLeftButtonDown(PointPx point);
    void OnMouseMove(PointPx point);
    void OnLeftButtonUp();
    void OnCaptureLost();
    void OnWheel(std::int32_t delta, bool control);
    void OnVerticalScroll(ScrollRequest request, std::int32_t trackPosition);
    void OnHorizontalScroll(ScrollRequest request, std::int32_t trackPosition);
    void OnFocusGained();
    void OnFocusLost();
    void OnBlinkTimer();

private:
    // Shared tails of the operations.
    void Remeasure();
    void ShowInNewFont(HexViewNotification notification);
    void ApplyZoom(float zoom);
    void UpdateScrollBars();
    void ScrollTo(std::int64_t scrollX);
    void ShowChange();
    void ClearSelection();
    void ClearNibble();
    void RestartBlinkTimer();
    std::uint64_t ThumbRow(std::int32_t trackPosition) const;

    // What keys do.
    bool MoveWithKey(Key key, bool control);
    void EndSelection();
    Handled EditWithKey(Key key);
    void ToggleInsertMode();
    bool CanEdit() const;
    Handled OverwriteDigit(std::uint8_t digit);
    Handled InsertDigit(std::uint8_t digit);
    Handled Remove(Key key);
    Handled RemoveSelection();
    Handled RemoveAt(std::uint64_t offset);
    void ShowRemoval(std::uint64_t caret);
    void CopySelection();

    HexViewState state_;
    HexViewHost& host_;
    TextMeasurer& measurer_;
    bool updatingScrollBars_ = false;
    bool scrollBarsStale_ = false; ///< the state changed since the host was told of the bars
};

} // namespace kvx
