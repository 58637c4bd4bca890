// Windows of another process: finding them, reading and using them as a person would.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <windows.h>

namespace kvx::test {

/// Visible top-level windows of the process with the class, in Z order.
std::vector<HWND> WindowsOf(DWORD processId, std::wstring_view className);

/// The first descendant of the class; null when there is none.
HWND ChildOf(HWND parent, std::wstring_view className);

/// The window's own text.
std::u16string TextOf(HWND window);

/// Screen pixels of the window's client area, row by row, as 0xRRGGBB.
struct Picture {
    int width = 0;  ///< pixels
    int height = 0; ///< pixels
    std::vector<std::uint32_t> pixels;

    std::uint32_t At(int x, int y) const {
        return pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                      static_cast<std::size_t>(x)];
    }
    std::size_t Count(std::uint32_t color) const;
};
Picture ClientPicture(HWND window);

/// A message box of the process.
struct MessageBoxWindow {
    HWND window = nullptr;

    std::u16string Caption() const { return TextOf(window); }
    std::u16string Text() const;
    /// Presses a button (IDYES, ...) and waits until the box is gone; false when it stays.
    bool Press(int button) const;
    /// Closes it without a button; false when it stays.
    bool Close() const;
};

/// Waits for a message box; empty when none comes.
std::optional<MessageBoxWindow> WaitForMessageBox(DWORD processId);

/// Waits for the process's file dialog and chooses `path` in it; false when none comes or it stays.
bool ChooseInFileDialog(DWORD processId, const std::wstring& path);
/// The same with its Cancel button.
bool CancelFileDialog(DWORD processId);

/// Leaves nothing in the clipboard. Throws std::runtime_error when another program keeps it open.
void ClearClipboard();
/// What the clipboard holds as text; empty when it holds none.
std::u16string ClipboardText();

/// Presses keys of the real keyboard in `window`, which is first brought to the foreground and
/// given time to have the focus. False when it never gets it.
class Keyboard {
public:
    /// `focus` is the descendant of `topLevel` that must have the focus.
    Keyboard(HWND topLevel, HWND focus) : topLevel_(topLevel), focus_(focus) {}

    bool TakeForeground() const;
    void Press(WORD virtualKey) const;
    void PressWithControl(WORD virtualKey) const;
    void PressAltF4() const;
    /// Types letters and digits.
    void Type(std::string_view keys) const;

private:
    void PressWith(WORD modifier, WORD virtualKey) const;
    void Count(std::string_view key) const;

    HWND topLevel_;
    HWND focus_;
};

} // namespace kvx::test
