// Places in a pane's window. Metrics are given at 96 DPI and scaled when they are used.
#pragma once

#include <cstdint>

namespace kvx {

/// Device pixels of the client area.
struct PanePoint {
    int x = 0;
    int y = 0;
};

/// Device pixels of the client area; right and bottom exclusive.
struct PaneRect {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;

    int Width() const { return right - left; }
    int Height() const { return bottom - top; }
    bool Contains(PanePoint point) const {
        return point.x >= left && point.x < right && point.y >= top && point.y < bottom;
    }
    friend bool operator==(const PaneRect&, const PaneRect&) = default;
};

/// number * numerator / denominator, to the nearest, halves away from zero: as the system scales.
constexpr int ScaleRounded(int number, int numerator, int denominator) {
    const std::int64_t product = std::int64_t{number} * numerator;
    const std::int64_t half = (product < 0 ? -denominator : denominator) / 2;
    return static_cast<int>((product + half) / denominator);
}

/// Device pixels of a length at 96 DPI.
constexpr int ScaledToDpi(int length, int dpi) {
    return ScaleRounded(length, dpi, 96);
}

} // namespace kvx
