// Colours of the pane windows.
#pragma once

#include "settings/app_settings.h"

#include <cstdint>

namespace kvx {

/// Each 0xRRGGBB.
struct PaneColors {
    std::uint32_t text = 0;
    std::uint32_t headerBand = 0;
    std::uint32_t background = 0;
    std::uint32_t selectedRow = 0;
    std::uint32_t gridLine = 0;

    /// For what stands back: the second header line, sizes beside names.
    std::uint32_t DimmedText() const;

    friend bool operator==(const PaneColors&, const PaneColors&) = default;
};

/// A theme outside the enumeration looks as Light.
PaneColors PaneColorsOf(Theme theme);

} // namespace kvx
