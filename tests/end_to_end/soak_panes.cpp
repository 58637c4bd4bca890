// What the person does with the panes.
#include "soak.h"

#include "file_bytes.h"
#include "pane_driver.h"
#include "waiting.h"

#include "panes/inspector_model.h"
#include "panes/struct_view_layout.h"
#include "panes/value_format_menu.h"

#include <iterator>

namespace kvx::test {
namespace {

constexpr char kPattern[] = "struct A { uint8_t a; uint8_t b; };";
constexpr char kBrokenPattern[] = "struct A { uint8_t a";

} // namespace

HWND Soak::Pane(const wchar_t* className) const {
    const auto windows = WindowsOf(kivra_.Id(), className);
    return windows.empty() ? nullptr : windows.front();
}

void Soak::SetPane(const wchar_t* className, Command command, bool& shown) {
    Do(command);
    shown = !shown;
    Require(WaitUntil([&] { return IsShown(kivra_, className) == shown; }),
            "the pane is shown or not as chosen");
}

void Soak::TogglePane() {
    if (OneIn(2))
        SetPane(kInspectorClass, Command::ToggleDataInspector, model_.inspector);
    else
        SetPane(kStructViewClass, Command::ToggleStructView, model_.structView);
}

void Soak::ClosePane() {
    const bool first = OneIn(2);
    bool& shown = first ? model_.inspector : model_.structView;
    if (!shown) return;
    const wchar_t* const name = first ? kInspectorClass : kStructViewClass;
    input_->Post(Pane(name), WM_CLOSE);
    input_->Settle();
    shown = false;
    Require(!IsShown(kivra_, name), "the pane is closed");
}

void Soak::UsePane() {
    const HWND pane = Pane(OneIn(2) ? kInspectorClass : kStructViewClass);
    if (pane == nullptr) return;
    constexpr WORD kKeys[] = {VK_UP, VK_DOWN, VK_PRIOR, VK_NEXT, VK_HOME, VK_END, VK_F5};
    for (std::size_t times = 1 + Below(4); times > 0; --times) {
        const std::size_t choice = Below(3);
        if (choice == 0)
            input_->Key(pane, kKeys[Below(std::size(kKeys))]);
        else if (choice == 1)
            input_->Post(pane, WM_MOUSEWHEEL, WheelNotch(OneIn(2)));
        else
            input_->Post(pane, OneIn(2) ? WM_VSCROLL : WM_HSCROLL, Below(8));
    }
    if (pane != Pane(kInspectorClass)) return;
    const int y = static_cast<int>(Below(300));
    const int x = static_cast<int>(Below(400));
    input_->Post(pane, OneIn(3) ? WM_LBUTTONDBLCLK : WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, y));
    input_->Post(pane, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(Below(500), y));
    input_->Post(pane, WM_LBUTTONUP, 0, MAKELPARAM(x, y));
}

void Soak::MovePane() {
    const HWND pane = Pane(OneIn(2) ? kInspectorClass : kStructViewClass);
    if (pane == nullptr) return;
    ::SendMessageW(pane, WM_ENTERSIZEMOVE, 0, 0);
    ::MoveWindow(pane, static_cast<int>(Below(300)), 10, 300 + static_cast<int>(Below(300)), 300,
                 TRUE);
    ::SendMessageW(pane, WM_EXITSIZEMOVE, 0, 0);
}

// The rows come from another thread, a moment later.
void Soak::ExpectList(const wchar_t* pane, const std::u16string& expected) {
    std::u16string shown;
    if (!WaitUntil([&] { return (shown = input_->Copied(Pane(pane))) == expected; }))
        Differ("the list", shown, expected);
}

void Soak::CheckInspector() {
    if (!model_.inspector) return;
    const ProgramTexts& text = model_.Text();
    InspectorModel list;
    list.SetTexts(text);
    InspectorRequest request;
    request.bytes = model_.view.document.ReadBytes(model_.view.caret, kInspectorBytes);
    request.encoding = model_.encoding;
    request.unavailableText = text("inspector.data.value.unavailable");
    list.SetRows(ComputeInspectorRows(request));
    ExpectList(kInspectorClass, ListCopyText(list));
}

void Soak::CheckStructView() {
    if (!model_.structView) return;
    const ProgramTexts& text = model_.Text();
    std::u16string list = text("structview.column.offset") + u'\t' +
                          text("structview.column.name") + u'\t' + text("structview.column.type") +
                          u'\t' + text("structview.column.value");
    for (std::uint64_t member = 0; model_.pattern && model_.open && member < 2; ++member) {
        list += u"\r\n0x" + Hex(model_.view.caret + member);
        list += member == 0 ? u"\ta\tuint8_t\t" : u"\tb\tuint8_t\t";
        const Bytes byte = model_.view.document.ReadBytes(model_.view.caret + member, 1);
        if (byte.empty())
            list += text("inspector.data.value.unavailable");
        else if (model_.format.numericBase == NumericBase::Dec)
            list += ToUtf16(std::to_string(byte.front()));
        else
            list += u"0x" + HexText(ToString(byte), "");
    }
    ExpectList(kStructViewClass, list);
}

// A pattern that does not load leaves the one before it.
void Soak::ChangePattern() {
    if (!model_.structView) SetPane(kStructViewClass, Command::ToggleStructView, model_.structView);
    const HWND pane = Pane(kStructViewClass);
    const auto click = [&](std::uint32_t button) {
        input_->Post(::GetDlgItem(pane, static_cast<int>(button)), BM_CLICK);
        input_->Settle();
    };
    const bool valid = !OneIn(4);
    WriteFileBytes(patternFile_, valid ? kPattern : kBrokenPattern);
    const std::size_t choice = Below(6);
    Note(choice, valid ? " valid" : " broken");
    if (choice == 0) {
        click(kStructViewCloseCommand);
        model_.pattern = false;
    } else if (choice == 1) {
        click(kStructViewInfoCommand);
    } else if (choice < 4 && model_.pattern) {
        click(kStructViewReloadCommand);
    } else {
        click(kStructViewOpenCommand);
        ChooseFile(patternFile_);
        input_->Settle();
        model_.pattern = model_.pattern || valid;
    }
}

// Three groups of two items each; the menu takes the keys of its window.
void Soak::ChooseFormat() {
    const HWND pane = Pane(kStructViewClass);
    if (pane == nullptr) return;
    const std::size_t group = Below(3);
    const std::size_t item = Below(2);
    Note(group, ' ', item);
    const auto waitForMenus = [&](std::size_t count) {
        Require(WaitUntil([&] { return WindowsOf(kivra_.Id(), L"#32768").size() == count; }),
                "the menu comes and goes");
    };
    input_->Post(pane, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(pane), -1);
    waitForMenus(1);
    if (OneIn(4)) {
        input_->Key(pane, VK_ESCAPE);
        return waitForMenus(0);
    }
    for (std::size_t step = 0; step <= group; ++step)
        input_->Key(pane, VK_DOWN);
    input_->Key(pane, VK_RIGHT);
    waitForMenus(2);
    for (std::size_t step = 0; step < item; ++step)
        input_->Key(pane, VK_DOWN);
    input_->Key(pane, VK_RETURN);
    waitForMenus(0);
    model_.format =
        WithValueFormat(model_.format, static_cast<std::uint32_t>(group * 2 + item + 1));
}

} // namespace kvx::test
