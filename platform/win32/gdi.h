// Ownership of GDI objects, and painting a window out of sight.
#pragma once

#include "platform/win32/handle.h"
#include "platform/win32/scoped.h"

#include <windows.h>

namespace kvx {

template <typename Handle>
struct GdiObjectTraits {
    using Value = Handle;
    static Value Invalid() { return nullptr; }
    static void Close(Value value) { ::DeleteObject(value); }
};
using UniqueFont = UniqueHandle<GdiObjectTraits<HFONT>>;
using UniqueBitmap = UniqueHandle<GdiObjectTraits<HBITMAP>>;
using UniqueBrush = UniqueHandle<GdiObjectTraits<HBRUSH>>;

/// A font of that height in pixels, line gap not counted. One that the system does not have is
/// replaced by one that it has.
inline UniqueFont MakeFont(const wchar_t* face, int heightPx, DWORD charSet = DEFAULT_CHARSET) {
    return UniqueFont(::CreateFontW(-heightPx, 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE, charSet,
                                    OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, CLEARTYPE_QUALITY,
                                    DEFAULT_PITCH | FF_DONTCARE, face));
}

inline void FillSolid(HDC dc, const RECT& area, COLORREF color) {
    ::SetDCBrushColor(dc, color);
    ::FillRect(dc, &area, static_cast<HBRUSH>(::GetStockObject(DC_BRUSH)));
}

/// A DC of the program's own, as CreateCompatibleDC gives it.
struct MemoryDcTraits {
    using Value = HDC;
    static Value Invalid() { return nullptr; }
    static void Close(Value value) { ::DeleteDC(value); }
};
using UniqueMemoryDc = UniqueHandle<MemoryDcTraits>;

/// An object selected into a DC; the one before it comes back at the end.
class SelectScope {
public:
    SelectScope(HDC dc, HGDIOBJ object) : dc_(dc), previous_(::SelectObject(dc, object)) {}
    ~SelectScope() {
        if (previous_ != nullptr) ::SelectObject(dc_, previous_);
    }
    SelectScope(const SelectScope&) = delete;
    SelectScope& operator=(const SelectScope&) = delete;

private:
    HDC dc_;
    HGDIOBJ previous_;
};

/// Drawing is kept to a rectangle until the end of the scope, when all of the DC is open again.
class ClipScope {
public:
    ClipScope(HDC dc, const RECT& rect) : dc_(dc), saved_(::SaveDC(dc)) {
        ::IntersectClipRect(dc, rect.left, rect.top, rect.right, rect.bottom);
    }
    ~ClipScope() { ::RestoreDC(dc_, saved_); }
    ClipScope(const ClipScope&) = delete;
    ClipScope& operator=(const ClipScope&) = delete;

private:
    HDC dc_;
    int saved_;
};

/// The answer to one WM_PAINT: what is drawn into Dc() appears at once at the end of the scope.
class BufferedPaint {
public:
    explicit BufferedPaint(HWND window)
        : paint_(window), memory_(::CreateCompatibleDC(paint_.Dc())),
          bitmap_(MakeBitmap(window, paint_.Dc())), selected_(memory_.Get(), bitmap_.Get()) {}
    ~BufferedPaint() {
        const RECT& area = paint_.Area();
        ::BitBlt(paint_.Dc(), area.left, area.top, area.right - area.left, area.bottom - area.top,
                 memory_.Get(), area.left, area.top, SRCCOPY);
    }
    BufferedPaint(const BufferedPaint&) = delete;
    BufferedPaint& operator=(const BufferedPaint&) = delete;

    HDC Dc() const { return memory_.Get(); }

private:
    static UniqueBitmap MakeBitmap(HWND window, HDC dc) {
        RECT client{};
        ::GetClientRect(window, &client);
        return UniqueBitmap(::CreateCompatibleBitmap(dc, client.right, client.bottom));
    }

    PaintScope paint_;
    UniqueMemoryDc memory_;
    UniqueBitmap bitmap_;
    SelectScope selected_;
};

} // namespace kvx
