#include "foreign_window.h"

#include "exercised.h"
#include "platform/win32/wide.h"
#include "waiting.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <functional>
#include <stdexcept>

namespace kvx::test {
namespace {

constexpr int kMessageTextId = 0xFFFF;

std::wstring ClassOf(HWND window) {
    std::array<wchar_t, 128> name{};
    const int length = ::GetClassNameW(window, name.data(), static_cast<int>(name.size()));
    return {name.data(), static_cast<std::size_t>(length)};
}

struct Search {
    DWORD processId = 0;
    std::wstring_view className;
    std::vector<HWND> found;
};

BOOL CALLBACK CollectTopLevel(HWND window, LPARAM parameter) {
    auto& search = *reinterpret_cast<Search*>(parameter);
    DWORD owner = 0;
    ::GetWindowThreadProcessId(window, &owner);
    if (owner == search.processId && ::IsWindowVisible(window) != FALSE &&
        ClassOf(window) == search.className) {
        search.found.push_back(window);
    }
    return TRUE;
}

BOOL CALLBACK CollectChild(HWND window, LPARAM parameter) {
    auto& search = *reinterpret_cast<Search*>(parameter);
    if (ClassOf(window) == search.className) search.found.push_back(window);
    return TRUE;
}

INPUT KeyInput(WORD virtualKey, DWORD flags) {
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = virtualKey;
    input.ki.dwFlags = flags;
    return input;
}

template <std::size_t N>
void Send(std::array<INPUT, N> inputs) {
    ::SendInput(static_cast<UINT>(N), inputs.data(), sizeof(INPUT));
}

bool HasFocus(HWND topLevel, HWND focus) {
    GUITHREADINFO info{};
    info.cbSize = sizeof info;
    const DWORD thread = ::GetWindowThreadProcessId(topLevel, nullptr);
    return ::GetGUIThreadInfo(thread, &info) != FALSE && info.hwndFocus == focus &&
           ::GetForegroundWindow() == topLevel;
}

bool EndBox(const MessageBoxWindow& box, int button, const std::function<void()>& end) {
    const std::u16string text = box.Text();
    end();
    const bool ended = WaitUntil([&] { return ::IsWindow(box.window) == FALSE; });
    if (ended) Used(BoxUse(text, button));
    return ended;
}

/// Waits for the file dialog, has `prepare` use the edit for its file name, presses the button and
/// waits for the end.
bool EndFileDialog(DWORD processId, int button, const std::function<void(HWND name)>& prepare) {
    HWND dialog = nullptr;
    HWND name = nullptr;
    const bool came = WaitUntil([&] {
        for (const HWND window : WindowsOf(processId, L"#32770")) {
            dialog = window;
            name = ChildOf(window, L"Edit");
        }
        return name != nullptr && ::IsWindowVisible(name) != FALSE;
    });
    if (!came) return false;
    const std::u16string caption = TextOf(dialog);
    prepare(name);
    ::PostMessageW(::GetDlgItem(dialog, button), BM_CLICK, 0, 0);
    const bool ended = WaitUntil([&] { return ::IsWindow(dialog) == FALSE; });
    if (ended) Used(PathUse(caption, button == IDOK ? "accepted" : "cancelled"));
    return ended;
}

} // namespace

std::vector<HWND> WindowsOf(DWORD processId, std::wstring_view className) {
    Search search{processId, className, {}};
    ::EnumWindows(CollectTopLevel, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

HWND ChildOf(HWND parent, std::wstring_view className) {
    Search search{0, className, {}};
    ::EnumChildWindows(parent, CollectChild, reinterpret_cast<LPARAM>(&search));
    return search.found.empty() ? nullptr : search.found.front();
}

std::u16string TextOf(HWND window) {
    const auto length = ::SendMessageW(window, WM_GETTEXTLENGTH, 0, 0);
    std::wstring text(static_cast<std::size_t>(length) + 1, L'\0');
    const auto copied =
        ::SendMessageW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()));
    text.resize(static_cast<std::size_t>(copied));
    return FromWide(text);
}

std::size_t Picture::Count(std::uint32_t color) const {
    return static_cast<std::size_t>(std::count(pixels.begin(), pixels.end(), color));
}

// The window's own DC shows nothing of another process under Wine; the screen's does.
Picture ClientPicture(HWND window) {
    RECT client{};
    ::GetClientRect(window, &client);
    POINT origin{0, 0};
    ::ClientToScreen(window, &origin);
    Picture picture{client.right, client.bottom, {}};
    picture.pixels.resize(static_cast<std::size_t>(picture.width) *
                          static_cast<std::size_t>(picture.height));

    BITMAPINFO format{};
    format.bmiHeader.biSize = sizeof format.bmiHeader;
    format.bmiHeader.biWidth = picture.width;
    format.bmiHeader.biHeight = -picture.height; // top row first
    format.bmiHeader.biPlanes = 1;
    format.bmiHeader.biBitCount = 32;
    const HDC screen = ::GetDC(nullptr);
    const HDC memory = ::CreateCompatibleDC(screen);
    const HBITMAP bitmap = ::CreateCompatibleBitmap(screen, picture.width, picture.height);
    const HGDIOBJ previous = ::SelectObject(memory, bitmap);
    ::BitBlt(memory, 0, 0, picture.width, picture.height, screen, origin.x, origin.y, SRCCOPY);
    ::SelectObject(memory, previous);
    ::GetDIBits(memory, bitmap, 0, static_cast<UINT>(picture.height), picture.pixels.data(),
                &format, DIB_RGB_COLORS);
    ::DeleteObject(bitmap);
    ::DeleteDC(memory);
    ::ReleaseDC(nullptr, screen);
    for (std::uint32_t& pixel : picture.pixels)
        pixel &= 0xFFFFFFU;
    return picture;
}

std::u16string MessageBoxWindow::Text() const {
    return TextOf(::GetDlgItem(window, kMessageTextId));
}

bool MessageBoxWindow::Press(int button) const {
    const HWND control = ::GetDlgItem(window, button);
    if (control == nullptr) return false;
    return EndBox(*this, button, [&] { ::PostMessageW(control, BM_CLICK, 0, 0); });
}

bool MessageBoxWindow::Close() const {
    return EndBox(*this, IDCLOSE, [this] { ::PostMessageW(window, WM_CLOSE, 0, 0); });
}

std::optional<MessageBoxWindow> WaitForMessageBox(DWORD processId) {
    MessageBoxWindow box;
    const bool came = WaitUntil([&] {
        for (const HWND window : WindowsOf(processId, L"#32770")) {
            if (::GetDlgItem(window, kMessageTextId) != nullptr) box.window = window;
        }
        return box.window != nullptr;
    });
    return came ? std::optional(box) : std::nullopt;
}

bool ChooseInFileDialog(DWORD processId, const std::wstring& path) {
    return EndFileDialog(processId, IDOK, [&](HWND name) {
        ::SendMessageW(name, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(path.c_str()));
    });
}

bool CancelFileDialog(DWORD processId) {
    return EndFileDialog(processId, IDCANCEL, [](HWND) {});
}

void ClearClipboard() {
    if (!WaitUntil([] { return ::OpenClipboard(nullptr) != FALSE; }))
        throw std::runtime_error("the clipboard stays closed");
    ::EmptyClipboard();
    ::CloseClipboard();
}

std::u16string ClipboardText() {
    if (::OpenClipboard(nullptr) == FALSE) return {};
    std::u16string text;
    if (const HANDLE memory = ::GetClipboardData(CF_UNICODETEXT)) {
        text = FromWide(static_cast<const wchar_t*>(::GlobalLock(memory)));
        ::GlobalUnlock(memory);
    }
    ::CloseClipboard();
    return text;
}

bool Keyboard::TakeForeground() const {
    ::SetForegroundWindow(topLevel_);
    if (!WaitUntil([this] { return HasFocus(topLevel_, focus_); })) return false;
    // The X server needs a moment more until keys arrive at the window that just got the focus.
    ::Sleep(150);
    return true;
}

void Keyboard::Press(WORD virtualKey) const {
    Count(KeyName(virtualKey));
    Send(std::array{KeyInput(virtualKey, 0), KeyInput(virtualKey, KEYEVENTF_KEYUP)});
}

void Keyboard::PressWith(WORD modifier, WORD virtualKey) const {
    Send(std::array{KeyInput(modifier, 0), KeyInput(virtualKey, 0),
                    KeyInput(virtualKey, KEYEVENTF_KEYUP), KeyInput(modifier, KEYEVENTF_KEYUP)});
}

void Keyboard::PressWithControl(WORD virtualKey) const {
    Count(KeyName(virtualKey, true));
    PressWith(VK_CONTROL, virtualKey);
}

void Keyboard::PressAltF4() const {
    Count("Alt+F4");
    PressWith(VK_MENU, VK_F4);
}

void Keyboard::Type(std::string_view keys) const {
    for (const char key : keys) {
        const auto code = static_cast<unsigned char>(key);
        Count(std::string(1, static_cast<char>(std::tolower(code))));
        const auto virtualKey = static_cast<WORD>(std::toupper(code));
        Send(std::array{KeyInput(virtualKey, 0), KeyInput(virtualKey, KEYEVENTF_KEYUP)});
    }
}

// A key that goes somewhere else is not the window's.
void Keyboard::Count(std::string_view key) const {
    if (HasFocus(topLevel_, focus_)) Used(KeyUse(focus_, key));
}

} // namespace kvx::test
