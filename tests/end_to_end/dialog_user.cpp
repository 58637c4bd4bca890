#include "dialog_user.h"

#include "exercised.h"
#include "platform/win32/wide.h"
#include "waiting.h"

#include <atomic>
#include <thread>

#include <gtest/gtest.h>

namespace kvx::test {
namespace {

constexpr wchar_t kBoxClass[] = L"#32770";

void CloseAll(std::wstring_view className) {
    for (const HWND window : WindowsOf(::GetCurrentProcessId(), className))
        ::PostMessageW(window, WM_CLOSE, 0, 0);
}

HWND FocusIn(HWND window) {
    GUITHREADINFO info{};
    info.cbSize = sizeof info;
    ::GetGUIThreadInfo(::GetWindowThreadProcessId(window, nullptr), &info);
    return info.hwndFocus;
}

} // namespace

void Dialog::SetText(int id, const std::u16string& text) const {
    ::SendMessageW(Control(id), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(AsWide(text)));
    Used(ControlUse(caption, id));
}

void Dialog::Press(int button) const {
    if (IsEnabled(button)) Used(ControlUse(caption, button));
    ::PostMessageW(Control(button), BM_CLICK, 0, 0);
}

void Dialog::Click(int control) const {
    Used(ControlUse(caption, control));
    ::PostMessageW(Control(control), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(2, 2));
    ::PostMessageW(Control(control), WM_LBUTTONUP, 0, MAKELPARAM(2, 2));
}

void Dialog::Close() const {
    if (::PostMessageW(window, WM_SYSCOMMAND, SC_CLOSE, 0)) Used(PathUse(caption, "close box"));
}

void Dialog::Key(WORD virtualKey) const {
    if (::PostMessageW(FocusIn(window), WM_KEYDOWN, virtualKey, 1))
        Used(PathUse(caption, KeyName(virtualKey)));
}

void Dialog::Mnemonic(char16_t letter) const {
    constexpr LPARAM kAltIsDown = LPARAM{1} << 29;
    ::PostMessageW(FocusIn(window), WM_SYSCHAR, letter, kAltIsDown | 1);
}

void Dialog::Select(int list, int index) const {
    ::SendMessageW(Control(list), CB_SETCURSEL, static_cast<WPARAM>(index), 0);
    ::SendMessageW(window, WM_COMMAND, MAKEWPARAM(list, CBN_SELCHANGE),
                   reinterpret_cast<LPARAM>(Control(list)));
    Used(ControlUse(caption, list));
}

std::vector<std::u16string> Dialog::Items(int list) const {
    std::vector<std::u16string> items;
    const LRESULT count = ::SendMessageW(Control(list), CB_GETCOUNT, 0, 0);
    for (LRESULT index = 0; index < count; ++index) {
        const auto item = static_cast<WPARAM>(index);
        const LRESULT length = ::SendMessageW(Control(list), CB_GETLBTEXTLEN, item, 0);
        std::u16string text(static_cast<std::size_t>(length), u'\0');
        ::SendMessageW(Control(list), CB_GETLBTEXT, item,
                       reinterpret_cast<LPARAM>(AsWideBuffer(text)));
        items.push_back(text);
    }
    return items;
}

int Dialog::FocusedId() const {
    const HWND focus = FocusIn(window);
    const HWND parent = ::GetParent(focus);
    return ::GetDlgCtrlID(parent == window ? focus : parent);
}

bool Dialog::WaitForFocus(int id) const {
    return WaitUntil([&] { return FocusedId() == id; });
}

bool Dialog::WaitForEnd() const {
    return WaitUntil([this] { return ::IsWindow(window) == FALSE; });
}

std::optional<Dialog> WaitForDialog(DWORD processId, std::wstring_view className) {
    Dialog dialog;
    const bool came = WaitUntil([&] {
        for (const HWND window : WindowsOf(processId, className))
            dialog.window = window;
        return dialog.window != nullptr;
    });
    if (came) dialog.caption = TextOf(dialog.window);
    return came ? std::optional(dialog) : std::nullopt;
}

void UseDialog(const InProcessWindow& window, Command command, std::wstring_view className,
               const std::function<void(const Dialog& dialog)>& user) {
    std::atomic<bool> over = false;
    std::thread person([&] {
        const auto dialog = WaitForDialog(::GetCurrentProcessId(), className);
        EXPECT_TRUE(dialog);
        if (dialog) user(*dialog);
        while (!over) { // once is not enough where a message box stands before the dialog
            CloseAll(kBoxClass);
            CloseAll(className);
            ::Sleep(20);
        }
    });
    ::SendMessageW(::GetAncestor(window.View(), GA_ROOT), WM_COMMAND, CommandId(command), 0);
    Used(CommandUse(CommandId(command)));
    over = true;
    person.join();
}

std::u16string TakeBox() {
    const auto box = WaitForMessageBox(::GetCurrentProcessId());
    if (!box) return u"no box";
    std::u16string text = box->Text() + u"|" + box->Caption();
    EXPECT_TRUE(box->Press(IDOK) || box->Press(IDCANCEL));
    return text;
}

} // namespace kvx::test
