// A hex view in a window on the screen, for tests: the parent records what it is sent. Few rows, as
// painting text can take a tenth of a second where no graphics card helps.
#pragma once

#include "hexview/hex_view_layout.h"
#include "hexview/hex_view_window.h"
#include "tests/hexview/memory_document.h"

#include <vector>

namespace kvx {

class WindowStage {
public:
    static constexpr int kControlId = 2001;
    static constexpr int kWidth = 820; ///< pixels; room for all columns
    static constexpr int kHeight = 160;

    explicit WindowStage(Bytes content = CountingBytes(64)) : document(std::move(content)) {
        const HINSTANCE instance = ::GetModuleHandleW(nullptr);
        WNDCLASSW parentClass{};
        parentClass.lpfnWndProc = &ParentProcedure;
        parentClass.hInstance = instance;
        parentClass.lpszClassName = L"Kivra.Test.Parent";
        ::RegisterClassW(&parentClass);
        parent = ::CreateWindowExW(0, parentClass.lpszClassName, L"", WS_OVERLAPPEDWINDOW, 0, 0,
                                   1000, 700, nullptr, nullptr, instance, nullptr);
        ::SetWindowLongPtrW(parent, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
        HexViewWindow::RegisterWindowClass(instance);
        window.Create(instance, parent, kControlId);
        ::ShowWindow(parent, SW_SHOW);
        ::SetForegroundWindow(parent);
        View().SetDocument(&document, &document);
        Resize(kWidth, kHeight);
    }
    WindowStage(const WindowStage&) = delete;
    WindowStage& operator=(const WindowStage&) = delete;
    ~WindowStage() { ::DestroyWindow(parent); }

    MemoryDocument document;
    HexViewWindow window;
    HWND parent = nullptr;
    std::vector<HexViewNotification> sent; ///< to the parent; what is posted stays in the queue

    HexView& View() { return window.View(); }
    const HexViewState& State() { return View().State(); }
    LRESULT Send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
        return ::SendMessageW(window.Handle(), message, wParam, lParam);
    }

    /// Resizes the view's window, scroll bars included; pixels.
    void Resize(int width, int height) {
        ::SetWindowPos(window.Handle(), nullptr, 0, 0, width, height, SWP_NOMOVE | SWP_NOZORDER);
    }

    SCROLLINFO Bar(int bar) {
        SCROLLINFO info{};
        info.cbSize = sizeof(info);
        info.fMask = SIF_ALL;
        ::GetScrollInfo(window.Handle(), bar, &info);
        return info;
    }

private:
    static LRESULT CALLBACK ParentProcedure(HWND window, UINT message, WPARAM wParam,
                                            LPARAM lParam) {
        auto* const stage =
            reinterpret_cast<WindowStage*>(::GetWindowLongPtrW(window, GWLP_USERDATA));
        if (stage != nullptr && message >= WM_APP)
            stage->sent.push_back(static_cast<HexViewNotification>(message));
        return ::DefWindowProcW(window, message, wParam, lParam);
    }
};

} // namespace kvx
