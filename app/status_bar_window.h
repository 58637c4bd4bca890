// The status bar: one line of text in the colours of the theme, drawn by its owner.
#pragma once

#include "app/status_text.h"
#include "platform/win32/gdi.h"

#include <string>

#include <windows.h>

namespace kvx {

/// The window itself belongs to its parent, which hands its WM_DRAWITEM to Draw. Main thread only.
class StatusBarWindow {
public:
    bool Create(HINSTANCE instance, HWND parent);

    HWND Handle() const { return window_; }
    const std::u16string& Text() const { return text_; }
    const StatusColors& Colors() const { return colors_; }

    void Show(const std::u16string& text, const StatusColors& colors);

    /// Colour around the text.
    void SetBackground(const StatusColors& colors);
    void PaintNow();

    /// Takes the system's status font for the parent's DPI.
    void TakeFont();

    /// Moves to the parent's lower edge.
    void FollowParent();
    int HeightPx() const;

    void Draw(const DRAWITEMSTRUCT& item) const;

private:
    HWND window_ = nullptr;
    UniqueFont font_;
    std::u16string text_; ///< the bar holds a pointer to it
    StatusColors colors_;
};

} // namespace kvx
