#include "app/pane_docking.h"

#include "panes/struct_view_layout.h"

#include <algorithm>

namespace kvx {
namespace {

constexpr std::int32_t kGapPx = 1;
constexpr int kStructViewFullWidth = 752; ///< pixels at 96 DPI: all columns and a scroll bar

} // namespace

int StructViewStartWidth(int room) {
    return std::clamp(room - kGapPx, kStructViewMinWidth, kStructViewFullWidth);
}

PaneDocking DockBeside(const DockTarget& main, DockSide side, std::int32_t widthPx,
                       bool maximized) {
    if (main.minimized) return {false, std::nullopt};
    if (maximized) return {true, std::nullopt};
    const std::int32_t left =
        side == DockSide::Right ? main.place.right + kGapPx : main.place.left - widthPx - kGapPx;
    return {true, RectPx{left, main.place.top, left + widthPx, main.place.bottom}};
}

} // namespace kvx
