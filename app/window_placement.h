// Where the main window stands when the program starts, and dialogs over it.
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

/// `window` moved just so far that it lies in `work`; one that is larger loses its right or lower
/// part.
RectPx MovedInto(const RectPx& work, const RectPx& window);

} // namespace kvx
