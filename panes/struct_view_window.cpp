#include "panes/struct_view_window.h"

#include "panes/error_text.h"
#include "panes/value_format_menu.h"
#include "platform/win32/wide.h"

#include <utility>

#include <commctrl.h>
#include <windowsx.h>

namespace kvx {
namespace {

constexpr wchar_t kHeaderFontName[] = L"Segoe UI";
constexpr wchar_t kWideFixedFontName[] = L"MS Gothic"; ///< of fixed pitch also for Japanese

constexpr PaneKind kKind{.className = L"Kivra.StructViewWindow",
                         .closed = PaneNotification::StructViewClosed,
                         .columns = kStructViewColumns,
                         .rowFont = L"Consolas",
                         .minimumWidth = kStructViewMinWidth,
                         .minimumHeight = kStructViewMinHeight};

constexpr int kFormatBoxRoom = 28; ///< pixels at 96 DPI, the box and a gap before it
constexpr std::u16string_view kFormatGlyph = u"\u25BC";
constexpr COLORREF kFormatBoxColor = RGB(255, 255, 255);
constexpr COLORREF kFormatGlyphColor = RGB(0, 0, 0);

constexpr LPARAM kFromKeyboard = -1; ///< in WM_CONTEXTMENU

constexpr DWORD kButtonStyle = WS_CHILD | WS_VISIBLE | WS_TABSTOP | BS_OWNERDRAW;
constexpr DWORD kTextBoxStyle =
    WS_CHILD | WS_TABSTOP | WS_VSCROLL | ES_MULTILINE | ES_READONLY | ES_AUTOVSCROLL;

struct MenuTraits {
    using Value = HMENU;
    static Value Invalid() { return nullptr; }
    static void Close(Value value) { ::DestroyMenu(value); }
};
using UniquePopupMenu = UniqueHandle<MenuTraits>;

void AppendGroup(HMENU menu, const ValueFormatGroup& group, const StructViewFormat& format,
                 const TextLookup& text) {
    UniquePopupMenu items(::CreatePopupMenu());
    for (const ValueFormatItem& item : group.items) {
        const bool chosen = IsValueFormatChosen(format, ValueFormatOption(item.command));
        const UINT check = chosen ? MF_CHECKED : MF_UNCHECKED;
        ::AppendMenuW(items.Get(), MF_STRING | check, item.command, AsWide(text(item.textKey)));
    }
    const auto handle = reinterpret_cast<UINT_PTR>(items.Get());
    if (::AppendMenuW(menu, MF_STRING | MF_POPUP, handle, AsWide(text(group.captionKey))))
        static_cast<void>(items.Release()); // the menu above owns it now
}

UniquePopupMenu MakeFormatMenu(const StructViewFormat& format, const TextLookup& text) {
    UniquePopupMenu menu(::CreatePopupMenu());
    for (const ValueFormatGroup& group : kValueFormatMenu)
        AppendGroup(menu.Get(), group, format, text);
    return menu;
}

void Frame(HDC dc, const RECT& area, COLORREF color) {
    ::SetDCBrushColor(dc, color);
    ::FrameRect(dc, &area, static_cast<HBRUSH>(::GetStockObject(DC_BRUSH)));
}

/// Painted anew: a neighbour that moved first may stand on the old picture already.
void Place(HWND control, const PaneRect& rect) {
    ::SetWindowPos(control, nullptr, rect.left, rect.top, rect.Width(), rect.Height(),
                   SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOCOPYBITS);
}

void SetFont(HWND control, HFONT font) {
    ::SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);
}

} // namespace

StructViewWindow::StructViewWindow() : PaneWindow(kKind) {
    list_.KeepCaptionRoom(kStructNameColumn, kFormatBoxRoom);
}

bool StructViewWindow::Create(HINSTANCE instance, HWND owner, StructViewModel& model,
                              const TextLookup& text, Theme theme, int startWidth) {
    model_ = &model;
    text_ = text;
    if (!PaneWindow::Create(instance, owner, model, theme, startWidth)) return false;
    ShowTexts();
    return true;
}

void StructViewWindow::ShowPattern() {
    if (Handle() == nullptr) return;
    ShowTextBoxes();
    ShowRows();
    Layout();
}

void StructViewWindow::ShowTexts() {
    if (Handle() == nullptr) return;
    SetTitle(model_->Title());
    for (std::size_t i = 0; i < buttons_.size(); ++i)
        ::SetWindowTextW(buttons_[i], AsWide(text_(kStructViewButtons[i].textKey)));
    ShowPattern();
}

void StructViewWindow::ShowTextBoxes() {
    ::SetWindowTextW(infoBox_, AsWide(model_->InfoText()));
    ::SetWindowTextW(errorBox_, AsWide(model_->ErrorText()));
    ShowErrorFont();
}

bool StructViewWindow::IsActive() const {
    if (Handle() == nullptr) return false;
    const HWND focus = ::GetFocus();
    return ::GetForegroundWindow() == Handle() || focus == Handle() ||
           ::IsChild(Handle(), focus) != FALSE;
}

void StructViewWindow::Activate() const {
    if (Handle() == nullptr) return;
    ::SetActiveWindow(Handle());
    ::SetForegroundWindow(Handle());
    ::SetFocus(Handle());
}

HWND StructViewWindow::MakeControl(const wchar_t* className, DWORD style, DWORD extendedStyle,
                                   std::uint32_t id) {
    const auto instance =
        reinterpret_cast<HINSTANCE>(::GetWindowLongPtrW(Handle(), GWLP_HINSTANCE));
    const auto menuOrId = reinterpret_cast<HMENU>(static_cast<UINT_PTR>(id));
    const HWND control = ::CreateWindowExW(extendedStyle, className, L"", style, 0, 0, 0, 0,
                                           Handle(), menuOrId, instance, nullptr);
    ::SetWindowSubclass(control, &StructViewWindow::ControlProcedure, 0,
                        reinterpret_cast<DWORD_PTR>(this));
    return control;
}

HWND StructViewWindow::MakeTextBox(DWORD style) {
    return MakeControl(L"EDIT", kTextBoxStyle | style, WS_EX_CLIENTEDGE, 0);
}

// The leftmost button, the last of the table, comes first for Tab. A line of the error stays whole,
// for the caret below it to stand at its column.
void StructViewWindow::OnCreated() {
    for (std::size_t i = buttons_.size(); i-- > 0;)
        buttons_[i] = MakeControl(L"BUTTON", kButtonStyle, 0, kStructViewButtons[i].command);
    infoBox_ = MakeTextBox(0);
    errorBox_ = MakeTextBox(ES_AUTOHSCROLL);
    OnDpi();
    OnColors();
}

void StructViewWindow::OnDestroyed() {
    smallFont_.Reset();
    wideFixedFont_.Reset();
    boxBrush_.Reset();
}

void StructViewWindow::OnDpi() {
    smallFont_ = MakeFont(kHeaderFontName, ScaledToDpi(kStructViewSmallFontSize, Dpi()));
    for (const HWND button : buttons_)
        SetFont(button, list_.CaptionFont());
    SetFont(infoBox_, list_.CaptionFont());
    wideFixedFont_ =
        MakeFont(kWideFixedFontName, ScaledToDpi(kListFontSize, Dpi()), SHIFTJIS_CHARSET);
    ShowErrorFont();
}

// In both the caret below the line stands at its column, but what the font of the rows does not
// have, above all full-width characters, comes from others that know nothing of its pitch.
void StructViewWindow::ShowErrorFont() {
    SetFont(errorBox_, HasFullWidth(model_->ErrorText()) ? wideFixedFont_.Get() : list_.RowFont());
}

void StructViewWindow::OnColors() {
    boxBrush_ = UniqueBrush(::CreateSolidBrush(ToColorRef(colors_.background)));
    ::RedrawWindow(Handle(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

int StructViewWindow::PlaceControls(int widthPx, int heightPx) {
    const StructTextArea area = model_->TextArea();
    layout_ = LayOutStructView(widthPx, heightPx, Dpi(), area);
    for (std::size_t i = 0; i < buttons_.size(); ++i)
        Place(buttons_[i], layout_.buttons[i]);
    for (const auto& [box, shownFor] :
         {std::pair(infoBox_, StructTextArea::Info), std::pair(errorBox_, StructTextArea::Error)}) {
        if (area == shownFor) Place(box, layout_.textBox);
        if (area != shownFor && ::GetFocus() == box) ::SetFocus(Handle());
        ::ShowWindow(box, area == shownFor ? SW_SHOWNA : SW_HIDE);
    }
    return layout_.listTopPx;
}

std::optional<LRESULT> StructViewWindow::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_COMMAND:
        // The second press of two quick ones comes as a double-click.
        if (HIWORD(wParam) == BN_CLICKED || HIWORD(wParam) == BN_DOUBLECLICKED)
            OnButton(LOWORD(wParam));
        return 0;
    case WM_DRAWITEM:
        DrawButton(*reinterpret_cast<const DRAWITEMSTRUCT*>(lParam));
        return TRUE;
    case WM_CTLCOLORSTATIC: { // of a box that cannot be written in
        const auto dc = reinterpret_cast<HDC>(wParam);
        ::SetTextColor(dc, ToColorRef(colors_.text));
        ::SetBkColor(dc, ToColorRef(colors_.background));
        return reinterpret_cast<LRESULT>(boxBrush_.Get());
    }
    case WM_KEYDOWN:
        return OnKeyDown(wParam);
    case WM_CONTEXTMENU:
        if (lParam != kFromKeyboard) return std::nullopt;
        ShowFormatMenu();
        return 0;
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
        return OnPress({GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)});
    default:
        return std::nullopt;
    }
}

std::optional<LRESULT> StructViewWindow::OnKeyDown(WPARAM key) {
    if (OnControlKey(Handle(), key)) return 0;
    return std::nullopt;
}

std::optional<LRESULT> StructViewWindow::OnPress(POINT point) {
    if (!FormatBox().Contains({point.x, point.y})) return std::nullopt;
    ShowFormatMenu();
    return 0;
}

// The main window does what they say; only the info text is this window's own affair.
void StructViewWindow::OnButton(std::uint32_t command) {
    switch (command) {
    case kStructViewOpenCommand:
        Notify(PaneNotification::OpenPattern);
        break;
    case kStructViewReloadCommand:
        Notify(PaneNotification::ReloadPattern);
        break;
    case kStructViewCloseCommand:
        Notify(PaneNotification::ClosePattern);
        break;
    case kStructViewInfoCommand:
        model_->ToggleInfo();
        Layout();
        break;
    default:
        break;
    }
}

// Keys that mean the same wherever in the window the focus is. On a button those of the list do
// too: it keeps the focus after a click.
bool StructViewWindow::OnControlKey(HWND control, WPARAM key) {
    const bool button = ::GetDlgCtrlID(control) != 0 && control != Handle();
    if (button && ListKeyOf(static_cast<std::uint32_t>(key), ::GetKeyState(VK_CONTROL) < 0)) {
        ::SendMessageW(Handle(), WM_KEYDOWN, key, 0);
        return true;
    }
    switch (key) {
    case VK_RETURN:
        if (button) ::SendMessageW(control, BM_CLICK, 0, 0);
        return button;
    case VK_F5:
        Notify(PaneNotification::ReloadPattern);
        return true;
    case VK_TAB:
        MoveFocus(control, ::GetKeyState(VK_SHIFT) < 0);
        return true;
    default:
        return false;
    }
}

LRESULT CALLBACK StructViewWindow::ControlProcedure(HWND control, UINT message, WPARAM wParam,
                                                    LPARAM lParam, UINT_PTR id,
                                                    DWORD_PTR self) noexcept {
    auto* const window = reinterpret_cast<StructViewWindow*>(self);
    if (message == WM_KEYDOWN && window->OnControlKey(control, wParam)) return 0;
    if (message == WM_CHAR && wParam == VK_TAB) return 0; // done with the key
    if (message == WM_NCDESTROY)
        ::RemoveWindowSubclass(control, &StructViewWindow::ControlProcedure, id);
    return ::DefSubclassProc(control, message, wParam, lParam);
}

// Round the controls, the list being one of them.
void StructViewWindow::MoveFocus(HWND from, bool back) const {
    const HWND first = ::GetNextDlgTabItem(Handle(), nullptr, FALSE);
    const HWND last = ::GetNextDlgTabItem(Handle(), first, TRUE);
    HWND next = nullptr;
    if (from == Handle()) {
        next = back ? last : first;
    } else if (from == (back ? first : last)) {
        next = Handle();
    } else {
        next = ::GetNextDlgTabItem(Handle(), from, back ? TRUE : FALSE);
    }
    ::SetFocus(next);
}

PaneRect StructViewWindow::FormatBox() const {
    return ValueFormatBox(list_.Model().CaptionRect(kStructNameColumn), Dpi());
}

void StructViewWindow::ShowFormatMenu() {
    const UniquePopupMenu menu = MakeFormatMenu(model_->Format(), text_);
    const PaneRect box = FormatBox();
    POINT corner{box.left, box.bottom};
    ::ClientToScreen(Handle(), &corner);
    const int command = ::TrackPopupMenu(menu.Get(), TPM_RETURNCMD | TPM_RIGHTBUTTON, corner.x,
                                         corner.y, 0, Handle(), nullptr);
    const std::uint32_t option = ValueFormatOption(static_cast<std::uint32_t>(command));
    // The window may be gone: the menu lets other messages through.
    if (option != 0 && Handle() != nullptr) Notify(PaneNotification::ValueFormat, option);
}

void StructViewWindow::Draw(HDC dc) const {
    list_.Draw(dc, colors_, model_->EmptyMessage());
    DrawFormatBox(dc);
    DrawHeader(dc);
}

void StructViewWindow::DrawHeader(HDC dc) const {
    const PaneRect& header = layout_.header;
    const PaneRect& text = layout_.textArea;
    for (const PaneRect& area : {header, text})
        FillSolid(dc, ToRect(area), ToColorRef(colors_.headerBand));
    FillSolid(dc, {text.left, text.bottom - 1, text.right, text.bottom},
              ToColorRef(colors_.gridLine));
    FillSolid(dc, {header.left, header.bottom, header.right, header.bottom + 1},
              ToColorRef(colors_.gridLine));
    {
        const SelectScope font(dc, list_.CaptionFont());
        ::SetTextColor(dc, ToColorRef(colors_.text));
        DrawLine(dc, model_->DefinitionLine(), layout_.definitionLine);
    }
    const SelectScope font(dc, smallFont_.Get());
    ::SetTextColor(dc, ToColorRef(colors_.DimmedText()));
    DrawLine(dc, model_->PathLine(), layout_.pathLine, DT_PATH_ELLIPSIS);
}

void StructViewWindow::DrawFormatBox(HDC dc) const {
    const PaneRect box = FormatBox();
    const ClipScope clip(dc, ToRect(list_.Model().CaptionBand()));
    FillSolid(dc, ToRect(box), kFormatBoxColor);
    Frame(dc, ToRect(box), kFormatGlyphColor);
    const SelectScope font(dc, smallFont_.Get());
    ::SetTextColor(dc, kFormatGlyphColor);
    DrawLine(dc, kFormatGlyph, box, DT_CENTER);
}

void StructViewWindow::DrawButton(const DRAWITEMSTRUCT& item) const {
    const bool pressed = (item.itemState & ODS_SELECTED) != 0;
    const bool focused = (item.itemState & ODS_FOCUS) != 0;
    FillSolid(item.hDC, item.rcItem,
              ToColorRef(pressed ? colors_.selectedRow : colors_.background));
    Frame(item.hDC, item.rcItem, ToColorRef(focused ? colors_.text : colors_.gridLine));
    wchar_t text[64] = {};
    const int length = ::GetWindowTextW(item.hwndItem, text, 64);
    ::SetBkMode(item.hDC, TRANSPARENT);
    ::SetTextColor(item.hDC, ToColorRef(colors_.text));
    RECT place = item.rcItem;
    ::DrawTextW(item.hDC, text, length, &place, DT_CENTER | DT_VCENTER | DT_SINGLELINE);
}

} // namespace kvx
