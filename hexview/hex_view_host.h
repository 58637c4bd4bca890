// What the hex view asks of its window: the only way from the portable view to the system. Tests
// put a recording host here.
#pragma once

#include "hexview/notifications.h"

#include <cstdint>
#include <string>

namespace kvx {

/// One scroll bar as Windows counts it: positions run from 0 to `max` inclusive.
struct ScrollBar {
    std::int32_t max = 0;
    std::uint32_t page = 0;
    std::int32_t position = 0;

    friend bool operator==(const ScrollBar&, const ScrollBar&) = default;
};

class HexViewHost {
public:
    virtual ~HexViewHost() = default;

    /// Marks the whole client area for repainting.
    virtual void Invalidate() = 0;

    /// Tells the parent window: StateChanged and EditRefused are posted, ZoomChanged is sent.
    virtual void NotifyParent(HexViewNotification notification) = 0;

    /// Updates both scroll bars. A bar that comes or goes resizes the client area: calling back
    /// into HexView::SetClientSize from here is allowed.
    virtual void SetScrollBars(const ScrollBar& vertical, const ScrollBar& horizontal) = 0;

    /// Puts text on the clipboard; silently does nothing when that fails.
    virtual void CopyToClipboard(const std::u16string& text) = 0;

    virtual void CaptureMouse() = 0;
    virtual void ReleaseMouse() = 0;
    virtual void TakeFocus() = 0;

    /// Starts or restarts the caret's blink timer, whose ticks arrive at HexView::OnBlinkTimer.
    virtual void StartBlinkTimer() = 0;
    virtual void StopBlinkTimer() = 0;

    /// The font, its size or the document changed: drop what was made for drawing.
    virtual void ReleaseDeviceResources() = 0;

    /// DPI of the window now; 96 when unknown.
    virtual std::uint32_t WindowDpi() const = 0;
};

} // namespace kvx
