// The two tool windows of a running program.
#pragma once

#include "exercised.h"
#include "kivra_process.h"
#include "waiting.h"

#include <string>
#include <string_view>

namespace kvx::test {

inline constexpr wchar_t kInspectorClass[] = L"Kivra.DataInspectorWindow";
inline constexpr wchar_t kStructViewClass[] = L"Kivra.StructViewWindow";

/// The settings file of a program with these panes; `format` goes into the struct view's object.
inline std::string PaneSettings(bool inspector, bool structView, const std::string& format = "") {
    const auto visible = [](bool shown) {
        return std::string(R"({"visible": )") + (shown ? "true" : "false");
    };
    return R"({"language": "English", "analysis": {"dataInspector": )" + visible(inspector) +
           R"(}, "structView": )" + visible(structView) + format + "}}}";
}

inline bool IsShown(const KivraProcess& kivra, const wchar_t* className) {
    return !WindowsOf(kivra.Id(), className).empty();
}

/// The pane once it is on the screen; null when it does not come.
inline HWND WaitForPane(const KivraProcess& kivra, const wchar_t* className) {
    WaitUntil([&] { return IsShown(kivra, className); });
    const auto windows = WindowsOf(kivra.Id(), className);
    return windows.empty() ? nullptr : windows.front();
}

inline bool WaitForEnd(const KivraProcess& kivra, const wchar_t* className) {
    return WaitUntil([&] { return !IsShown(kivra, className); });
}

// What a person does in a pane, without waiting for what follows.

/// Presses a button of the struct view.
inline void Click(HWND structView, std::uint32_t button) {
    const HWND control = ::GetDlgItem(structView, static_cast<int>(button));
    if (::PostMessageW(control, BM_CLICK, 0, 0))
        Used(ControlUse(TextOf(structView), static_cast<int>(button)));
}

inline void PostKey(HWND pane, WORD virtualKey) {
    if (::PostMessageW(pane, WM_KEYDOWN, virtualKey, 0)) Used(KeyUse(pane, KeyName(virtualKey)));
}

inline void CloseByUser(HWND pane) {
    const std::u16string caption = TextOf(pane);
    if (::PostMessageW(pane, WM_SYSCOMMAND, SC_CLOSE, 0)) Used(PathUse(caption, "close box"));
}

/// True when the pane is in the foreground and it or a control in it has the focus.
inline bool IsActive(HWND pane) {
    GUITHREADINFO info{};
    info.cbSize = sizeof info;
    ::GetGUIThreadInfo(::GetWindowThreadProcessId(pane, nullptr), &info);
    return ::GetForegroundWindow() == pane &&
           (info.hwndFocus == pane || ::IsChild(pane, info.hwndFocus) != FALSE);
}

/// The list of a pane as it copies it with Ctrl and a key; empty when it does not.
inline std::u16string CopiedList(HWND pane, WORD key = 'C') {
    ClearClipboard();
    if (!IsActive(pane)) {
        ::SetForegroundWindow(pane);
        if (!WaitUntil([&] { return IsActive(pane); })) return u"not active";
        ::Sleep(150); // until keys arrive there
    }
    Keyboard(pane, pane).PressWithControl(key);
    std::u16string text;
    WaitUntil([&] { return !(text = ClipboardText()).empty(); }, std::chrono::seconds(1));
    return text;
}

/// Copies again and again until the list is `expected`; gives what it was last.
inline std::u16string WaitForList(HWND pane, const std::u16string& expected, WORD key = 'C') {
    std::u16string text;
    WaitUntil([&] { return (text = CopiedList(pane, key)) == expected; });
    return text;
}

} // namespace kvx::test
