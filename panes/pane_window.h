// What both pane windows have in common: a tool window owned by the main window that shows a list.
// Main thread only.
#pragma once

#include "panes/notifications.h"
#include "panes/pane_colors.h"
#include "panes/pane_list_window.h"
#include "settings/app_settings.h"
#include "settings/text_lookup.h"

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <utility>

#include <windows.h>

namespace kvx {

/// What tells one pane from another. Lengths are pixels at 96 DPI.
struct PaneKind {
    const wchar_t* className;
    PaneNotification closed; ///< posted to the owner when the user closes the window
    std::span<const ListColumn> columns;
    const wchar_t* rowFont;
    int minimumWidth; ///< of the whole window
    int minimumHeight;
};

/// The object outlives its window, which may be made and destroyed any number of times; it keeps
/// the width that the user gave it.
class PaneWindow {
public:
    virtual ~PaneWindow();
    PaneWindow(const PaneWindow&) = delete;
    PaneWindow& operator=(const PaneWindow&) = delete;

    HWND Handle() const { return window_; }
    void Destroy();

    void ShowRows() { list_.ShowContent(); } ///< those of the content have changed
    void SetTheme(Theme theme);

    /// What puts the window into its place; asked for when the user or the DPI took it from there.
    void SetDock(std::function<void()> dock) { dock_ = std::move(dock); }

protected:
    explicit PaneWindow(const PaneKind& kind);

    /// Makes the window, hidden; false on failure. `startWidth` (pixels at 96 DPI, of the whole
    /// window) counts until the user has chosen another one.
    bool Create(HINSTANCE instance, HWND owner, const IListContent& content, Theme theme,
                int startWidth);

    HWND Owner() const { return ::GetWindow(window_, GW_OWNER); }
    int Dpi() const { return list_.Model().Dpi(); }
    void Notify(PaneNotification notification, WPARAM wParam = 0) const;
    void SetTitle(const std::u16string& title);
    void Layout();
    void Repaint() const { ::InvalidateRect(window_, nullptr, FALSE); }

    // What a pane adds to its list. The window exists in all of them, in OnDestroyed without its
    // controls.
    virtual void OnCreated() {}
    virtual void OnDestroyed() {} ///< fonts and brushes are to be freed
    virtual void OnDpi() {}       ///< fonts are to be made anew
    virtual void OnColors() {}    ///< another theme
    /// Lays out what stands above the list; gives where the list begins.
    virtual int PlaceControls(int widthPx, int heightPx);
    virtual void Draw(HDC dc) const;
    /// Empty: the list gets the message, and then the system.
    virtual std::optional<LRESULT> OnMessage(UINT message, WPARAM wParam, LPARAM lParam);

    PaneColors colors_;
    PaneList list_;

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam,
                                      LPARAM lParam) noexcept;
    bool RegisterWindowClass(HINSTANCE instance, HWND owner) const;
    LRESULT Dispatch(UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT OnCreate();
    LRESULT OnActivate(WPARAM wParam, LPARAM lParam);
    int Width() const;
    void OnSize(WPARAM wParam);
    void OnUserSized();
    void Dock() const;
    LRESULT OnMinimumSize(MINMAXINFO& limits) const;
    LRESULT OnDpiChanged(int dpi, const RECT& suggested);

    const PaneKind kind_;
    HWND window_ = nullptr;
    const IListContent* content_ = nullptr;
    std::function<void()> dock_;
    int width_ = 0;       ///< as the user left it, pixels at 96 DPI; 0 before
    int widthBefore_ = 0; ///< the user began to move or size the window
    bool maximized_ = false;
    HWND lastFocus_ = nullptr; ///< what has the focus when the window is active
};

} // namespace kvx
