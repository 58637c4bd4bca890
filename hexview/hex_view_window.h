// The hex view's window: class "Kivra.HexView". Unpacks messages for HexView and draws its frames
// with Direct2D. Main thread only.
#pragma once

#include "hexview/hex_view.h"

#include <memory>

#include <windows.h>

namespace kvx {

/// Owns the view and its drawing; the window handle is owned by its parent window.
class HexViewWindow {
public:
    HexViewWindow();
    ~HexViewWindow();
    HexViewWindow(const HexViewWindow&) = delete;
    HexViewWindow& operator=(const HexViewWindow&) = delete;

    /// Registers the window class; a class that exists already is no failure.
    static bool RegisterWindowClass(HINSTANCE instance);

    /// Creates the child window (both scroll bars, tab stop, 100 by 100 pixels); false on failure.
    bool Create(HINSTANCE instance, HWND parent, int controlId);

    HWND Handle() const;
    HexView& View();
    const HexView& View() const;

private:
    class Impl;
    std::unique_ptr<Impl> impl_;
};

} // namespace kvx
