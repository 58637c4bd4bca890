// A person in front of a dialog: a thread of its own that reads and uses the dialog while the
// program's thread runs it.
#pragma once

#include "in_process.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <windows.h>

namespace kvx::test {

/// One of the program's own dialogs.
struct Dialog {
    HWND window = nullptr;
    std::u16string caption{};

    HWND Control(int id) const { return ::GetDlgItem(window, id); }
    std::u16string Text(int id) const { return TextOf(Control(id)); }
    void SetText(int id, const std::u16string& text) const;
    bool IsEnabled(int id) const { return ::IsWindowEnabled(Control(id)) != FALSE; }

    /// Does not wait for what follows.
    void Press(int button) const;
    /// With the mouse.
    void Click(int control) const;
    /// The close box of its frame.
    void Close() const;
    /// Presses a key in the control that has the focus.
    void Key(WORD virtualKey) const;
    /// Alt and a letter.
    void Mnemonic(char16_t letter) const;

    /// Selects an item of a list as a person does.
    void Select(int list, int index) const;
    std::vector<std::u16string> Items(int list) const;

    /// The control with the focus; for a list's edit, the list.
    int FocusedId() const;
    bool WaitForFocus(int id) const;
    bool WaitForEnd() const;
};

/// Waits for the dialog of the class.
std::optional<Dialog> WaitForDialog(DWORD processId, std::wstring_view className);

/// Runs a command of `window` that shows a dialog of the class, has `user` use it and returns when
/// it is gone. A dialog that `user` leaves open is closed.
void UseDialog(const InProcessWindow& window, Command command, std::wstring_view className,
               const std::function<void(const Dialog& dialog)>& user);

/// Waits for a message box of this process and takes its OK; its text and caption, parted by "|".
std::u16string TakeBox();

} // namespace kvx::test
