// What the program's own dialogs have in common: a window with the controls of a layout in the
// system's message font, at the DPI of its screen, centred over its owner, with a message loop of
// its own.
#pragma once

#include "app/dialog_layout.h"
#include "settings/text_lookup.h"

#include <cstdint>
#include <exception>
#include <optional>
#include <string>

#include <windows.h>

namespace kvx {

/// Whether Esc is being held down: what it did once, it must not do to what comes next.
bool IsRepeatedEscape(const MSG& message);

/// Shown once by Run; lives on the stack of the command that needs it. Main thread only.
class ModalDialogWindow {
public:
    virtual ~ModalDialogWindow() = default;
    ModalDialogWindow(const ModalDialogWindow&) = delete;
    ModalDialogWindow& operator=(const ModalDialogWindow&) = delete;

    /// Shows the dialog over `owner`, which takes no input meanwhile, and returns when it is
    /// closed. Rethrows what the handlers of the dialog throw, which closes it. Shows nothing when
    /// the system has no window for it.
    void Run(HWND owner, const std::u16string& title, const TextLookup& text);

    /// To whom a message box belongs that is shown now: the dialog over `window`, else `window`
    /// itself.
    static HWND TopmostOver(HWND window);

    /// Null before and after the dialog is shown.
    HWND Window() const { return window_; }

protected:
    struct Frame {
        const wchar_t* className;
        DWORD style;
        DWORD extendedStyle;
    };

    /// `layout` must outlive the dialog.
    ModalDialogWindow(const Frame& frame, const DialogLayout& layout)
        : frame_(frame), layout_(layout) {}

    /// Fills the controls before they are seen.
    virtual void OnCreated() = 0;
    /// The control that has the focus at first.
    virtual int FirstFocus() const = 0;
    virtual void OnCommand(int id, int notification) = 0;
    /// The window's close button.
    virtual void OnCloseRequest() { Close(); }
    /// All controls have just been given Font().
    virtual void OnFontChanged() {}
    /// Runs in the dialog's loop after each message.
    virtual void AfterMessage() {}
    /// Messages that the base knows nothing about; empty: the system's default.
    virtual std::optional<LRESULT> OnMessage(UINT message, WPARAM wParam, LPARAM lParam);

    /// Ends the dialog: destroys its window.
    void Close();
    /// Has AfterMessage called soon, however the present message came.
    static void WakeLoop();

    /// Moves the focus as the Tab key would, and the look of the default button with it.
    void FocusOn(int id) const;

    HWND Control(int id) const { return ::GetDlgItem(window_, id); }
    std::u16string ControlText(int id) const;
    void SetControlText(int id, const std::u16string& text) const;
    /// Of all controls; belongs to the process.
    HFONT Font() const;

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam,
                                      LPARAM lParam) noexcept;
    LRESULT Dispatch(UINT message, WPARAM wParam, LPARAM lParam);

    LRESULT OnActivate(WPARAM wParam, LPARAM lParam);
    LRESULT OnSetFocus();
    LRESULT OnNextControl(WPARAM wParam, LPARAM lParam);
    LRESULT OnMinMaxInfo(LPARAM lParam) const;
    LRESULT OnGetDpiScaledSize(WPARAM wParam, LPARAM lParam) const;
    LRESULT OnDpiChanged(std::uint32_t dpi, const RECT& suggested);

    bool Create(HWND owner, const std::u16string& title);
    void CreateControls(const TextLookup& text);
    void PlaceControls() const;
    void TakeDpi(std::uint32_t dpi);
    SIZE OuterSizePx(std::uint32_t dpi) const;
    void RunLoop();

    Frame frame_;
    const DialogLayout& layout_;
    HWND window_ = nullptr;
    HWND owner_ = nullptr;
    HWND lastFocus_ = nullptr; ///< the control that has the focus when the dialog is active
    std::uint32_t dpi_ = 96;
    std::exception_ptr failure_; ///< what a handler threw
};

} // namespace kvx
