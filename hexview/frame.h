// One picture of the hex view as a display list: everything that is drawn, where, in which colour.
// Built by portable code from the view state; a renderer draws it without deciding anything.
#pragma once

#include "hexview/hex_view_state.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace kvx {

/// What a colour is for; ThemeColor gives it for a theme.
enum class ColorRole : std::uint8_t { Background, MainText, SecondaryText, Selection, Caret };
inline constexpr std::size_t kColorRoleCount = 5;

/// Components from 0 to 1.
struct Color {
    float red = 0.0F;
    float green = 0.0F;
    float blue = 0.0F;
    float alpha = 1.0F;

    friend bool operator==(const Color&, const Color&) = default;
};

/// A theme outside the enumeration draws as Light.
Color ThemeColor(Theme theme, ColorRole role);

/// Left and top inclusive, right and bottom exclusive, in DIPs of the client area.
struct RectDip {
    float left = 0.0F;
    float top = 0.0F;
    float right = 0.0F;
    float bottom = 0.0F;

    friend bool operator==(const RectDip&, const RectDip&) = default;
};

/// Width of the outline of a FrameBox, in DIPs.
inline constexpr float kOutlineWidth = 1.0F;

struct FrameBox {
    RectDip rect;
    ColorRole color = ColorRole::Selection;

    friend bool operator==(const FrameBox&, const FrameBox&) = default;
};

/// Text drawn from the top left of its layout box, not wrapped.
struct FrameText {
    std::u16string text;
    RectDip layout;
    ColorRole color = ColorRole::MainText;

    friend bool operator==(const FrameText&, const FrameText&) = default;
};

/// Texts that share a clip rectangle.
struct FrameTextGroup {
    RectDip clip;
    std::vector<FrameText> texts;

    friend bool operator==(const FrameTextGroup&, const FrameTextGroup&) = default;
};

/// Drawn in the order of its fields over the theme's background. Fills are best drawn without
/// antialiasing: rows seldom end on whole pixels, and two half-covered translucent edges show a
/// seam.
struct Frame {
    RectDip contentClip;               ///< of the fills and outlines: the scrolled columns
    std::vector<FrameBox> fills;       ///< selection, overwrite caret, insert bar
    std::vector<FrameBox> outlines;    ///< centre line of a stroke of kOutlineWidth
    FrameTextGroup offsets;            ///< one text per character
    FrameTextGroup hex;                ///< one text per byte
    std::vector<FrameTextGroup> cells; ///< one group per row: decoded text
};

/// Reads and decodes the visible rows of the document (only these) and lays them out. Rows end
/// where the document or what can be read of it ends.
Frame BuildFrame(const HexViewState& state);

} // namespace kvx
