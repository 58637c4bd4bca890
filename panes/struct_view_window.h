// The struct view's window, of class "Kivra.StructViewWindow": a header with buttons, the info or
// error text, and the list of members. Main thread only.
#pragma once

#include "panes/pane_window.h"
#include "panes/struct_view_layout.h"
#include "panes/struct_view_model.h"

#include <array>
#include <cstddef>

namespace kvx {

class StructViewWindow final : public PaneWindow {
public:
    StructViewWindow();

    /// Makes the window, hidden; it shows `model`, which must outlive it, and switches its info
    /// text. `startWidth` as for every pane. False on failure.
    bool Create(HINSTANCE instance, HWND owner, StructViewModel& model, const TextLookup& text,
                Theme theme, int startWidth);

    /// Pattern, error or rows of the model have changed.
    void ShowPattern();
    /// The texts of the model and of the string table have changed.
    void ShowTexts();

    /// True while the window or a control in it has the focus or is in the foreground.
    bool IsActive() const;
    void Activate() const;

private:
    void OnCreated() override;
    void OnDestroyed() override;
    void OnDpi() override;
    void OnColors() override;
    int PlaceControls(int widthPx, int heightPx) override;
    void Draw(HDC dc) const override;
    std::optional<LRESULT> OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

    static LRESULT CALLBACK ControlProcedure(HWND control, UINT message, WPARAM wParam,
                                             LPARAM lParam, UINT_PTR id, DWORD_PTR self) noexcept;
    HWND MakeControl(const wchar_t* className, DWORD style, DWORD extendedStyle, std::uint32_t id);
    HWND MakeTextBox(DWORD style);
    bool OnControlKey(HWND control, WPARAM key);
    std::optional<LRESULT> OnKeyDown(WPARAM key);
    std::optional<LRESULT> OnPress(POINT point);
    void OnButton(std::uint32_t command);
    void MoveFocus(HWND from, bool back) const;
    void ShowFormatMenu();
    PaneRect FormatBox() const;
    void ShowTextBoxes();
    void ShowErrorFont();

    void DrawHeader(HDC dc) const;
    void DrawFormatBox(HDC dc) const;
    void DrawButton(const DRAWITEMSTRUCT& item) const;

    StructViewModel* model_ = nullptr;
    TextLookup text_;
    StructViewLayout layout_;
    std::array<HWND, kStructViewButtons.size()> buttons_{}; ///< the window's
    HWND infoBox_ = nullptr;                                ///< the window's
    HWND errorBox_ = nullptr;                               ///< the window's
    UniqueFont smallFont_;
    UniqueFont wideFixedFont_;
    UniqueBrush boxBrush_; ///< behind the text boxes
};

} // namespace kvx
