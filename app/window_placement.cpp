#include "app/window_placement.h"

#include <algorithm>

namespace kvx {

RectPx CenteredIn(const RectPx& work, std::int32_t width, std::int32_t height) {
    const std::int32_t left = work.left + std::max(0, (work.Width() - width) / 2);
    const std::int32_t top = work.top + std::max(0, (work.Height() - height) / 2);
    return {left, top, left + width, top + height};
}

RectPx MovedInto(const RectPx& work, const RectPx& window) {
    const std::int32_t left =
        std::max(work.left, std::min(window.left, work.right - window.Width()));
    const std::int32_t top =
        std::max(work.top, std::min(window.top, work.bottom - window.Height()));
    return {left, top, left + window.Width(), top + window.Height()};
}

} // namespace kvx
