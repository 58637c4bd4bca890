// Where the tool windows stand: they travel with the main window, the data inspector on its right
// side, the struct view on its left.
#pragma once

#include "app/window_placement.h"

#include <cstdint>
#include <optional>

namespace kvx {

enum class DockSide : std::uint8_t { Left, Right };

/// Width of a new struct view in a screen with `room` left of the main window: as much of it as the
/// list can use. Pixels at 96 DPI.
int StructViewStartWidth(int room);

/// What happens to a tool window.
struct PaneDocking {
    bool shown = true;
    std::optional<RectPx> place; ///< screen pixels; empty: it stays where it is

    friend bool operator==(const PaneDocking&, const PaneDocking&) = default;
};

/// The main window as its tool windows see it.
struct DockTarget {
    RectPx place; ///< screen pixels
    bool minimized = false;
};

/// A tool window keeps its width, `widthPx`, and takes the main window's height. It is hidden while
/// the main window is minimised and left alone while it is maximised itself.
PaneDocking DockBeside(const DockTarget& main, DockSide side, std::int32_t widthPx, bool maximized);

} // namespace kvx
