// Where the main window stands when the program starts.
#pragma once

#include <cstdint>

namespace kvx {

/// Edges in screen pixels, right and bottom exclusive.
struct RectPx {
    std::int32_t left = 0;
    std::int32_t top = 0;
    std::int32_t right = 0;
    std::int32_t bottom = 0;

    std::int32_t Width() const { return right - left; }
    std::int32_t Height() const { return bottom - top; }
    friend bool operator==(const RectPx&, const RectPx&) = default;
};

/// A window of the given size in pixels in the middle of `work`; one that is larger starts at the
/// left or top edge.
RectPx CenteredIn(const RectPx& work, std::int32_t width, std::int32_t height);

} // namespace kvx
