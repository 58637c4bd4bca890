// Calls of the window system that come in pairs, as scopes.
#pragma once

#include <windows.h>

namespace kvx {

/// One BeginPaint and its EndPaint: made while a window answers WM_PAINT.
class PaintScope {
public:
    explicit PaintScope(HWND window) : window_(window), dc_(::BeginPaint(window, &paint_)) {}
    ~PaintScope() { ::EndPaint(window_, &paint_); }
    PaintScope(const PaintScope&) = delete;
    PaintScope& operator=(const PaintScope&) = delete;

    /// The DC to paint with; null when the system has none.
    HDC Dc() const { return dc_; }
    /// The part of the client area that needs painting, pixels.
    const RECT& Area() const { return paint_.rcPaint; }

private:
    HWND window_;
    PAINTSTRUCT paint_{};
    HDC dc_;
};

} // namespace kvx
