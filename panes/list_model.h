// The list that both panes show: columns of adjustable width under a band of captions, scrolled
// both ways, one row selected. Decides what is where and what an input changes; the window
// measures, draws and owns the scroll bars. Used from the main thread.
#pragma once

#include "panes/pane_pixels.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace kvx {

/// A column's widths in pixels at 96 DPI.
struct ListColumn {
    int defaultWidth = 0;
    int minimumWidth = 0;
};

// Pixels at 96 DPI.
inline constexpr int kListRowHeight = 32; ///< with the separator line in its last pixel
inline constexpr int kListCaptionHeight = 34;
inline constexpr int kListFontSize = 14;

/// Where the list stands in the client area: it fills it below `topPx`, captions first.
struct ListArea {
    int widthPx = 0;
    int heightPx = 0; ///< of the whole client area
    int topPx = 0;
};

enum class ListAxis : std::uint8_t { Horizontal, Vertical };
enum class ListScroll : std::uint8_t { LineBack, LineOn, PageBack, PageOn, ToStart, ToEnd };
enum class ListKey : std::uint8_t { Up, Down, PageUp, PageDown, Home, End, Copy };

/// What an input asks of the window.
enum class ListEffect : std::uint8_t {
    None,
    Repaint, ///< and set the scroll bars anew
    Copy,    ///< ListCopyText to the clipboard
};

/// For a scroll bar: positions run from 0 to contentPx - pagePx.
struct ListScrollRange {
    int contentPx = 0;
    int pagePx = 0;
    int positionPx = 0;

    friend bool operator==(const ListScrollRange&, const ListScrollRange&) = default;
};

/// Rows by number; `end` exclusive.
struct ListRowRange {
    std::size_t begin = 0;
    std::size_t end = 0;

    friend bool operator==(const ListRowRange&, const ListRowRange&) = default;
};

/// The key that a Windows virtual key code stands for; empty for all others.
std::optional<ListKey> ListKeyOf(std::uint32_t virtualKey, bool controlDown);

class ListModel {
public:
    /// Starts at 96 DPI, with the default widths and no rows.
    explicit ListModel(std::span<const ListColumn> columns);

    // What the window tells. Scroll positions and selection stay as far as they still exist.
    void SetDpi(int dpi);
    void SetArea(const ListArea& area);
    void SetRowCount(std::size_t rows);

    // Input. Points are client pixels; those outside the list change nothing.
    ListEffect OnKey(ListKey key);
    /// `delta` as in WM_MOUSEWHEEL: 120 a notch, positive away from the user.
    ListEffect OnWheel(int delta);
    ListEffect OnScroll(ListAxis axis, ListScroll step);
    /// To the position of a dragged scroll box.
    ListEffect OnScrollTo(ListAxis axis, int positionPx);
    /// Selects a row or takes hold of a divider; while IsDragging the window keeps the mouse.
    ListEffect OnPress(PanePoint point);
    ListEffect OnMove(PanePoint point);
    void OnRelease() { drag_.reset(); }
    /// On a divider: back to the column's default width.
    ListEffect OnDoubleClick(PanePoint point);

    // Queries. Rectangles are client pixels, horizontally scrolled; clip them to the area.
    int Dpi() const { return dpi_; }
    bool IsDragging() const { return drag_.has_value(); }
    /// True where the pointer is to show that a column can be resized.
    bool IsOverDivider(PanePoint point) const { return DividerAt(point).has_value(); }
    std::optional<std::size_t> SelectedRow() const { return view_.selectedRow; }
    ListScrollRange ScrollRange(ListAxis axis) const;

    PaneRect CaptionBand() const; ///< the whole width
    PaneRect RowsArea() const;    ///< below the captions to the bottom
    ListRowRange VisibleRows() const;
    PaneRect RowRect(std::size_t row) const; ///< the whole width
    PaneRect CellRect(std::size_t row, std::size_t column) const;
    PaneRect CaptionRect(std::size_t column) const;
    int SeparatorX(std::size_t column) const; ///< of the line right of the column

private:
    struct Column {
        ListColumn limits;
        int width = 0; ///< pixels at 96 DPI
    };
    /// What moves without the layout changing.
    struct View {
        int scrollXPx = 0;
        int scrollYPx = 0;
        std::optional<std::size_t> selectedRow;
        friend bool operator==(const View&, const View&) = default;
    };
    /// A divider that is being dragged.
    struct Drag {
        std::size_t column = 0;
        int grabPx = 0; ///< from the separator to where it was taken
    };

    int Scaled(int length) const { return ScaledToDpi(length, dpi_); }
    int ColumnLeft(std::size_t column) const; ///< not scrolled
    int ContentWidth() const;
    int ContentHeight() const;
    int PageStep(ListAxis axis) const;
    std::optional<std::size_t> DividerAt(PanePoint point) const;

    void ScrollTo(int xPx, int yPx); ///< as far as there is content
    void MoveSelection(int rows);    ///< and into sight
    ListEffect SetWidth(std::size_t column, int width);
    ListEffect EffectSince(const View& before) const {
        return before == view_ ? ListEffect::None : ListEffect::Repaint;
    }

    std::vector<Column> columns_;
    int dpi_ = 96;
    ListArea area_;
    std::size_t rowCount_ = 0;
    View view_;
    std::optional<Drag> drag_;
};

} // namespace kvx
