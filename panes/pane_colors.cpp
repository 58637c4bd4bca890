#include "panes/pane_colors.h"

#include <array>
#include <cstddef>

namespace kvx {
namespace {

constexpr std::array<PaneColors, 3> kPaneColors = {{
    {0x202020, 0xE0E8F2, 0xFAFAFA, 0xD6E4F6, 0xC2C6CD},
    {0xE6EDF3, 0x2A476E, 0x0F141C, 0x20344F, 0x3C4652},
    {0xF3F3F3, 0x2D2D2D, 0x111111, 0x383838, 0x484848},
}};

constexpr std::uint32_t kDimmedPercent = 28; ///< of the background in dimmed text

} // namespace

std::uint32_t PaneColors::DimmedText() const {
    std::uint32_t mixed = 0;
    for (std::uint32_t shift = 0; shift < 24; shift += 8) {
        const std::uint32_t back = background >> shift & 0xFFU;
        const std::uint32_t front = text >> shift & 0xFFU;
        mixed |= (back * kDimmedPercent + front * (100 - kDimmedPercent)) / 100 << shift;
    }
    return mixed;
}

PaneColors PaneColorsOf(Theme theme) {
    const auto index = static_cast<std::size_t>(theme);
    return kPaneColors[index < kPaneColors.size() ? index : 0];
}

} // namespace kvx
