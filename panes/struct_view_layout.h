// Where the parts of the struct view's window stand.
#pragma once

#include "panes/pane_pixels.h"
#include "panes/struct_view_model.h"

#include <array>
#include <cstdint>
#include <string_view>

namespace kvx {

// Pixels at 96 DPI.
inline constexpr int kStructViewMinWidth = 520; ///< of the whole window
inline constexpr int kStructViewMinHeight = 260;
inline constexpr int kStructViewHeaderHeight = 62;
inline constexpr int kStructViewSmallFontSize = 13; ///< second header line

/// A push button. Buttons stand from the right edge to the left in the order of kStructViewButtons.
struct StructViewButton {
    std::uint32_t command;
    std::string_view textKey;
    int width; ///< pixels at 96 DPI
};

inline constexpr std::uint32_t kStructViewOpenCommand = 4101;
inline constexpr std::uint32_t kStructViewInfoCommand = 4102;
inline constexpr std::uint32_t kStructViewCloseCommand = 4103;
inline constexpr std::uint32_t kStructViewReloadCommand = 4104;

inline constexpr std::array<StructViewButton, 4> kStructViewButtons = {{
    {kStructViewInfoCommand, "structview.info.button", 70},
    {kStructViewCloseCommand, "structview.close.button", 80},
    {kStructViewReloadCommand, "structview.reload.button", 128},
    {kStructViewOpenCommand, "structview.open.button", 90},
}};

/// All in client pixels.
struct StructViewLayout {
    std::array<PaneRect, kStructViewButtons.size()> buttons;
    PaneRect definitionLine; ///< first header line, as far as the buttons leave room for it
    PaneRect pathLine;       ///< second header line
    PaneRect header;         ///< the separator line is the row below
    PaneRect textArea;       ///< header colour, a line in its last row; empty when none is shown
    PaneRect textBox;        ///< the edit control in it
    int listTopPx = 0;       ///< of the band of captions
};

/// Lays out a client area of that size.
StructViewLayout LayOutStructView(int widthPx, int heightPx, int dpi, StructTextArea area);

/// The box with the glyph that opens the value-format menu, at the right end of `caption`, which is
/// that of kStructNameColumn.
PaneRect ValueFormatBox(const PaneRect& caption, int dpi);

} // namespace kvx
