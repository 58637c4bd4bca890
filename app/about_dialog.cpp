#include "app/about_dialog.h"

#include "app/modal_dialog_window.h"
#include "platform/win32/gdi.h"
#include "platform/win32/wide.h"

#include <string>
#include <utility>

#include <commctrl.h>
#include <shellapi.h>

namespace kvx {
namespace {

bool IsPressed(WPARAM key) {
    return key == VK_RETURN || key == VK_SPACE;
}

// Around the text: the label is wider. Takes no memory: there is nobody to catch its lack.
void DrawFocusFrame(HWND window) {
    RECT frame{};
    ::GetClientRect(window, &frame);
    wchar_t text[256] = {};
    const int length = ::GetWindowTextW(window, text, 256);
    const HDC dc = ::GetDC(window);
    {
        const SelectScope font(dc,
                               reinterpret_cast<HFONT>(::SendMessageW(window, WM_GETFONT, 0, 0)));
        ::DrawTextW(dc, text, length, &frame, DT_CALCRECT | DT_NOPREFIX | DT_SINGLELINE);
        ::DrawFocusRect(dc, &frame);
    }
    ::ReleaseDC(window, dc);
}

// The blue that readers know, except where the user has chosen colours of strong contrast.
COLORREF LinkColor() {
    HIGHCONTRASTW contrast{};
    contrast.cbSize = sizeof(contrast);
    ::SystemParametersInfoW(SPI_GETHIGHCONTRAST, sizeof(contrast), &contrast, 0);
    const bool strong = (contrast.dwFlags & HCF_HIGHCONTRASTON) != 0;
    return strong ? ::GetSysColor(COLOR_HOTLIGHT) : RGB(0x00, 0x66, 0xCC);
}

// A label becomes a link: a hand above it, and the keyboard reaches and presses it.
LRESULT CALLBACK LinkProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                               DWORD_PTR) noexcept {
    switch (message) {
    case WM_SETCURSOR:
        ::SetCursor(::LoadCursorW(nullptr, IDC_HAND));
        return TRUE;
    case WM_GETDLGCODE:
        return IsPressed(wParam) ? DLGC_WANTALLKEYS : DLGC_STATIC;
    case WM_KEYDOWN:
        if (!IsPressed(wParam)) break;
        ::SendMessageW(::GetParent(window), WM_COMMAND,
                       MAKEWPARAM(::GetDlgCtrlID(window), STN_CLICKED),
                       reinterpret_cast<LPARAM>(window));
        return 0;
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
        ::InvalidateRect(window, nullptr, TRUE);
        break;
    case WM_PAINT: {
        const LRESULT painted = ::DefSubclassProc(window, message, wParam, lParam);
        if (::GetFocus() == window) DrawFocusFrame(window);
        return painted;
    }
    default:
        break;
    }
    return ::DefSubclassProc(window, message, wParam, lParam);
}

// A text to read is not selected, and scrolled to its end, when the Tab key comes to it.
LRESULT CALLBACK LicenseProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                                  DWORD_PTR) noexcept {
    const LRESULT answer = ::DefSubclassProc(window, message, wParam, lParam);
    return message == WM_GETDLGCODE ? answer & ~LRESULT{DLGC_HASSETSEL} : answer;
}

class AboutDialog final : public ModalDialogWindow {
public:
    explicit AboutDialog(const AboutContent& content)
        : ModalDialogWindow(
              {L"Kivra.AboutDialog", WS_POPUP | WS_CAPTION | WS_SYSMENU, WS_EX_DLGMODALFRAME},
              kAboutLayout),
          content_(content) {}

private:
    void OnCreated() override {
        SetControlText(kAboutProductId, content_.productName);
        SetControlText(kAboutVersionId, content_.version);
        SetControlText(kAboutRightsId, content_.rights);
        SetControlText(kAboutHomepageId, content_.homepage);
        SetControlText(kAboutLicenseId, content_.license);
        ::SetWindowSubclass(Control(kAboutHomepageId), LinkProcedure, 0, 0);
        ::SetWindowSubclass(Control(kAboutLicenseId), LicenseProcedure, 0, 0);
    }
    int FirstFocus() const override { return kDefaultButtonId; }

    void OnFontChanged() override {
        LOGFONTW font{};
        ::GetObjectW(Font(), sizeof(font), &font);
        font.lfUnderline = TRUE;
        UniqueFont underlined(::CreateFontIndirectW(&font));
        ::SendMessageW(Control(kAboutHomepageId), WM_SETFONT,
                       reinterpret_cast<WPARAM>(underlined.Get()), TRUE);
        linkFont_ = std::move(underlined);
    }

    void OnCommand(int id, int notification) override {
        if (id == kDefaultButtonId || id == kCancelButtonId) Close();
        if (id == kAboutHomepageId && notification == STN_CLICKED) {
            ::ShellExecuteW(Window(), L"open", AsWide(content_.homepage), nullptr, nullptr,
                            SW_SHOWNORMAL);
        }
    }

    std::optional<LRESULT> OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override {
        if (message != WM_CTLCOLORSTATIC ||
            reinterpret_cast<HWND>(lParam) != Control(kAboutHomepageId)) {
            return std::nullopt;
        }
        const LRESULT brush = ::DefWindowProcW(Window(), message, wParam, lParam);
        ::SetTextColor(reinterpret_cast<HDC>(wParam), LinkColor());
        return brush;
    }

    const AboutContent& content_;
    UniqueFont linkFont_;
};

} // namespace

void ShowAboutBox(HWND owner, const AboutContent& content, const TextLookup& text) {
    AboutDialog dialog(content);
    dialog.Run(owner, text("dialog.about.title"), text);
}

} // namespace kvx
