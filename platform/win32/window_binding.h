// From a window to the object that deals with its messages.
#pragma once

#include <windows.h>

namespace kvx {

/// The object whose address came with the creation parameters of `window`: kept in the window's
/// user data from WM_NCCREATE on. Null before, and after ReleaseBoundObject.
template <typename Object>
Object* BoundObject(HWND window, UINT message, LPARAM lParam) {
    if (message == WM_NCCREATE) {
        const auto* const creation = reinterpret_cast<const CREATESTRUCTW*>(lParam);
        ::SetWindowLongPtrW(window, GWLP_USERDATA,
                            reinterpret_cast<LONG_PTR>(creation->lpCreateParams));
    }
    return reinterpret_cast<Object*>(::GetWindowLongPtrW(window, GWLP_USERDATA));
}

/// To be called at WM_NCDESTROY: no message reaches the object any more.
inline void ReleaseBoundObject(HWND window) {
    ::SetWindowLongPtrW(window, GWLP_USERDATA, 0);
}

} // namespace kvx
