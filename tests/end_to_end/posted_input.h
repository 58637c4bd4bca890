// Keys, mouse and commands posted to a running program, each waited for: thousands a minute,
// without needing the keyboard focus.
#pragma once

#include "kivra_process.h"

#include <cstdint>
#include <string>

namespace kvx::test {

/// wParam of a message about one notch of the wheel.
inline WPARAM WheelNotch(bool away, WORD keys = 0) {
    const int delta = away ? WHEEL_DELTA : -WHEEL_DELTA;
    return MAKEWPARAM(keys, delta);
}

/// Every function throws std::runtime_error when the program does not answer in time.
class PostedInput {
public:
    /// `kivra` must have its window and outlive this.
    explicit PostedInput(const KivraProcess& kivra);

    /// Posts a message without waiting.
    void Post(HWND window, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const;

    /// A key, as the message loop gets it from the keyboard, and all that follows from it.
    void Key(HWND window, WORD virtualKey) const;
    void KeyWithControl(HWND window, WORD virtualKey) const;

    /// Returns when all that was posted has been dealt with, and what that posted, and what that
    /// did. A dialog or message box that came with it is there then, and may still be open.
    void Settle() const;

    /// What the status bar says.
    std::u16string Status() const;

    /// What `window` copies to the clipboard with Ctrl+C; empty when it copies nothing.
    std::u16string Copied(HWND window) const;

private:
    LRESULT Ask(UINT message, WPARAM wParam = 0) const;

    const KivraProcess& kivra_;
    HWND statusBar_;
    UniqueKernelHandle process_;
};

} // namespace kvx::test
