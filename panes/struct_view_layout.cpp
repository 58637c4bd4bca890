#include "panes/struct_view_layout.h"

#include <algorithm>

namespace kvx {
namespace {

// Pixels at 96 DPI.
constexpr int kMargin = 12;
constexpr int kButtonTop = 10;
constexpr int kButtonHeight = 26;
constexpr int kButtonGap = 8;
constexpr int kDefinitionRight = 200; ///< from the right edge
constexpr int kDefinitionBottom = 30;
constexpr int kPathTop = 28;
constexpr int kInfoHeight = 196; ///< all lines of the summary
constexpr int kErrorHeight = 116;
constexpr int kSmallestText = 48;
constexpr int kTextMargin = 6; ///< above and below the text box
constexpr int kRowsLeft = 2;   ///< below a text area, as long as it is not too small
constexpr int kBoxWidth = 20;
constexpr int kBoxHeight = 18;

/// Height of the text area with its closing line.
int TextAreaHeight(int heightPx, int dpi, StructTextArea area) {
    if (area == StructTextArea::None) return 0;
    const int wanted = area == StructTextArea::Info ? kInfoHeight : kErrorHeight;
    const int around = kStructViewHeaderHeight + kListCaptionHeight + kRowsLeft * kListRowHeight;
    const int room = heightPx - ScaledToDpi(around, dpi);
    return std::min(ScaledToDpi(wanted, dpi), std::max(room, ScaledToDpi(kSmallestText, dpi)));
}

} // namespace

StructViewLayout LayOutStructView(int widthPx, int heightPx, int dpi, StructTextArea area) {
    const auto scaled = [dpi](int length) { return ScaledToDpi(length, dpi); };
    StructViewLayout layout;
    int right = widthPx - scaled(kMargin);
    for (std::size_t i = 0; i < layout.buttons.size(); ++i) {
        const int left = right - scaled(kStructViewButtons[i].width);
        layout.buttons[i] = {left, scaled(kButtonTop), right, scaled(kButtonTop + kButtonHeight)};
        right = left - scaled(kButtonGap);
    }
    // A long name ends in front of the buttons, not under them.
    const int definitionRight = std::min(widthPx - scaled(kDefinitionRight), right);
    layout.definitionLine = {scaled(kMargin), 0, definitionRight, scaled(kDefinitionBottom)};
    layout.pathLine = {scaled(kMargin), scaled(kPathTop), widthPx - scaled(kMargin),
                       scaled(kStructViewHeaderHeight)};
    layout.header = {0, 0, widthPx, scaled(kStructViewHeaderHeight)};

    const int textTop = layout.header.bottom;
    const int textBottom = textTop + TextAreaHeight(heightPx, dpi, area);
    layout.listTopPx = textBottom;
    if (area == StructTextArea::None) return layout;
    layout.textArea = {0, textTop, widthPx, textBottom};
    layout.textBox = {scaled(kMargin), textTop + scaled(kTextMargin), widthPx - scaled(kMargin),
                      textBottom - scaled(kTextMargin) - 1};
    return layout;
}

PaneRect ValueFormatBox(const PaneRect& caption, int dpi) {
    const int height = ScaledToDpi(kBoxHeight, dpi);
    const int top = caption.top + (caption.Height() - height) / 2;
    return {caption.right - ScaledToDpi(kBoxWidth, dpi), top, caption.right, top + height};
}

} // namespace kvx
