#include "posted_input.h"

#include "platform/win32/wide.h"

#include <algorithm>
#include <array>
#include <stdexcept>

#include <commctrl.h>

namespace kvx::test {
namespace {

constexpr UINT kPatienceMs = 20'000;

/// The program sees Control held down for as long as the scope lasts: its thread and this one share
/// the state of the keys meanwhile.
class ControlDown {
public:
    explicit ControlDown(HWND window) : thread_(::GetWindowThreadProcessId(window, nullptr)) {
        ::AttachThreadInput(::GetCurrentThreadId(), thread_, TRUE);
        SetControl(0x80);
    }
    ~ControlDown() {
        SetControl(0);
        ::AttachThreadInput(::GetCurrentThreadId(), thread_, FALSE);
    }
    ControlDown(const ControlDown&) = delete;
    ControlDown& operator=(const ControlDown&) = delete;

private:
    static void SetControl(BYTE state) {
        std::array<BYTE, 256> keys{};
        keys[VK_CONTROL] = state;
        ::SetKeyboardState(keys.data());
    }

    DWORD thread_;
};

} // namespace

PostedInput::PostedInput(const KivraProcess& kivra)
    : kivra_(kivra), statusBar_(kivra.StatusBar()),
      process_(::OpenProcess(PROCESS_VM_READ, FALSE, kivra.Id())) {
    if (statusBar_ == nullptr || !process_) throw std::runtime_error("the program cannot be read");
}

void PostedInput::Post(HWND window, UINT message, WPARAM wParam, LPARAM lParam) const {
    if (::PostMessageW(window, message, wParam, lParam) == FALSE)
        throw std::runtime_error("message " + std::to_string(message) + " cannot be posted");
}

void PostedInput::Key(HWND window, WORD virtualKey) const {
    Post(window, WM_KEYDOWN, virtualKey, 1);
    Settle();
}

void PostedInput::KeyWithControl(HWND window, WORD virtualKey) const {
    const ControlDown control(window);
    Key(window, virtualKey);
}

LRESULT PostedInput::Ask(UINT message, WPARAM wParam) const {
    DWORD_PTR answer = 0;
    if (::SendMessageTimeoutW(statusBar_, message, wParam, 0, SMTO_NORMAL, kPatienceMs, &answer) ==
        0)
        throw std::runtime_error("the status bar does not answer message " +
                                 std::to_string(message));
    return static_cast<LRESULT>(answer);
}

// A flag of the status bar that means nothing here is changed by a posted message, behind all the
// others, and watched by sent ones, which overtake them. Three times: a key is followed by its
// character, that by a notification of the main window.
void PostedInput::Settle() const {
    for (int round = 0; round < 3; ++round) {
        const bool flag = Ask(SB_GETUNICODEFORMAT) != 0;
        Post(statusBar_, SB_SETUNICODEFORMAT, flag ? FALSE : TRUE);
        const auto end = ::GetTickCount64() + kPatienceMs;
        while ((Ask(SB_GETUNICODEFORMAT) != 0) == flag) {
            if (::GetTickCount64() > end)
                throw std::runtime_error("the program does not come to a posted message");
        }
    }
}

// For a text that the owner draws the bar gives what it was given: the text's address.
std::u16string PostedInput::Status() const {
    constexpr std::size_t kLongest = 1024; // bytes
    const LRESULT address = Ask(SB_GETTEXTW);
    std::u16string text(kLongest / sizeof(char16_t), u'\0');
    // The text may lie at the very end of readable memory.
    for (std::size_t size = kLongest; size != 0; size /= 2) {
        if (::ReadProcessMemory(process_.Get(), reinterpret_cast<const void*>(address), text.data(),
                                size, nullptr) != FALSE)
            return text.substr(0, text.find(u'\0'));
    }
    return {};
}

std::u16string PostedInput::Copied(HWND window) const {
    ClearClipboard();
    KeyWithControl(window, 'C');
    return ClipboardText();
}

} // namespace kvx::test
