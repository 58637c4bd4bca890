// What the hex view tells its parent window. Values are Windows messages (WM_APP is 0x8000), all
// with both parameters 0.
#pragma once

#include <cstdint>

namespace kvx {

enum class HexViewNotification : std::uint32_t {
    StateChanged = 0x8000 + 1, ///< posted: caret, selection, scroll, mode, font or content changed
    EditRefused = 0x8000 + 2,  ///< posted: an edit was tried while the view is read-only
    ZoomChanged = 0x8000 + 3,  ///< sent, not posted
};

} // namespace kvx
