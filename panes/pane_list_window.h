// The list in a pane's window: hands the window's input to ListModel, draws what it says and keeps
// the window's scroll bars. Part of the window that shows it; main thread only.
#pragma once

#include "panes/list_content.h"
#include "panes/list_model.h"
#include "panes/pane_colors.h"
#include "platform/win32/gdi.h"

#include <array>
#include <optional>
#include <span>

#include <windows.h>

namespace kvx {

inline RECT ToRect(const PaneRect& rect) {
    return {rect.left, rect.top, rect.right, rect.bottom};
}

/// `rgb` is 0xRRGGBB.
constexpr COLORREF ToColorRef(std::uint32_t rgb) {
    return RGB(rgb >> 16U & 0xFFU, rgb >> 8U & 0xFFU, rgb & 0xFFU);
}

/// True for a text that any font can show.
bool IsAscii(std::u16string_view text);

/// Draws one line of `text` in the middle of `area`'s height, cut with an ellipsis where it does
/// not fit. Font and colour are those of the DC.
void DrawLine(HDC dc, std::u16string_view text, const PaneRect& area, UINT alignment = DT_LEFT);

class PaneList {
public:
    /// Rows are written in `rowFont`, captions in Segoe UI.
    PaneList(std::span<const ListColumn> columns, const wchar_t* rowFont);

    /// The window's life; its content must outlive it.
    void Attach(HWND window, const IListContent& content);
    void Detach();

    /// Keeps that much of the right end of a column's caption free of its side text.
    void KeepCaptionRoom(std::size_t column, int width) { captionRoom_ = {column, width}; }

    void SetDpi(int dpi); ///< also makes the fonts
    void SetArea(const ListArea& area);
    void ShowContent(); ///< rows have changed

    /// `message` stands in place of the rows where it is not empty.
    void Draw(HDC dc, const PaneColors& colors, std::u16string_view message) const;

    /// Deals with the window's scrolling, mouse and keys; empty for any other message.
    std::optional<LRESULT> OnMessage(UINT message, WPARAM wParam, LPARAM lParam);

    const ListModel& Model() const { return model_; }
    /// Segoe UI at the size of the rows.
    HFONT CaptionFont() const { return captionFont_.Get(); }
    HFONT RowFont() const { return rowFont_.Get(); }

private:
    struct CaptionRoom {
        std::size_t column = 0;
        int width = 0; ///< pixels at 96 DPI
    };

    LRESULT OnKeyDown(WPARAM key, LPARAM lParam);
    LRESULT OnPress(PanePoint point, bool twice);
    LRESULT OnMove(PanePoint point);
    LRESULT OnScroll(ListAxis axis, UINT request);
    void Apply(ListEffect effect);
    bool ShowResizeCursor() const;
    void UpdateScrollBars();

    void DrawRows(HDC dc, const PaneColors& colors) const;
    void DrawCell(HDC dc, const PaneColors& colors, std::size_t row, std::size_t column) const;
    void DrawTexts(HDC dc, const PaneColors& colors, std::u16string_view text,
                   std::u16string_view side, const PaneRect& area, int sideRight) const;
    void DrawMessage(HDC dc, const PaneColors& colors, std::u16string_view message) const;
    void DrawCaptions(HDC dc, const PaneColors& colors) const;
    void DrawSeparators(HDC dc, const PaneColors& colors, int bottom) const;

    HWND window_ = nullptr;
    const IListContent* content_ = nullptr;
    ListModel model_;
    CaptionRoom captionRoom_;
    const wchar_t* rowFontName_;
    UniqueFont rowFont_;
    UniqueFont captionFont_;
    std::array<std::optional<ListScrollRange>, 2> shownRanges_; ///< by axis; others are left alone
    bool updatingScrollBars_ = false;
    bool scrollBarsStale_ = false;
};

} // namespace kvx
