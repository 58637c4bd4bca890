#include "app/font_dialog.h"

#include "app/modal_dialog_window.h"
#include "platform/win32/wide.h"

#include <cstddef>
#include <string>

namespace kvx {
namespace {

constexpr DWORD kStyle = WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME | WS_MAXIMIZEBOX;

class FontDialog final : public ModalDialogWindow {
public:
    explicit FontDialog(const FontDialogContent& content)
        : ModalDialogWindow(
              {L"Kivra.FontDialog", kStyle, WS_EX_DLGMODALFRAME | WS_EX_CONTROLPARENT},
              kFontLayout),
          content_(content) {}

    const std::optional<FontChoice>& Chosen() const { return chosen_; }

private:
    void OnCreated() override {
        for (const std::u16string& family : content_.families)
            AddItem(kFontFamilyId, AsWide(family));
        for (const int points : kFontPoints)
            AddItem(kFontSizeId, std::to_wstring(points).c_str());
        const FontChoice& current = content_.current;
        Select(kFontFamilyId, FamilyIndex(content_.families, current.family));
        Select(kFontSizeId, PointsIndex(current.points));
        Check(kFontBoldId, current.bold);
        Check(kFontItalicId, current.italic);
    }
    int FirstFocus() const override { return kFontFamilyId; }
    void OnCommand(int id, int) override {
        if (id == kDefaultButtonId) Accept();
        if (id == kCancelButtonId) Close();
    }

    void Accept() {
        const std::size_t family = Selected(kFontFamilyId);
        const std::size_t size = Selected(kFontSizeId);
        if (family >= content_.families.size() || size >= kFontPoints.size()) return;
        chosen_ = {content_.families[family], static_cast<float>(kFontPoints[size]),
                   IsChecked(kFontBoldId), IsChecked(kFontItalicId)};
        Close();
    }

    void AddItem(int id, const wchar_t* text) const {
        ::SendMessageW(Control(id), CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text));
    }
    void Select(int id, std::size_t index) const {
        ::SendMessageW(Control(id), CB_SETCURSEL, index, 0);
    }
    // CB_ERR, which says that nothing is selected, becomes larger than every index.
    std::size_t Selected(int id) const {
        return static_cast<std::size_t>(::SendMessageW(Control(id), CB_GETCURSEL, 0, 0));
    }
    void Check(int id, bool checked) const {
        ::SendMessageW(Control(id), BM_SETCHECK, checked ? BST_CHECKED : BST_UNCHECKED, 0);
    }
    bool IsChecked(int id) const {
        return ::SendMessageW(Control(id), BM_GETCHECK, 0, 0) == BST_CHECKED;
    }

    const FontDialogContent& content_;
    std::optional<FontChoice> chosen_;
};

// No exception may cross the system's loop; a list cut short by a lack of memory still serves.
int CALLBACK CollectFont(const LOGFONTW* font, const TEXTMETRICW* metrics, DWORD,
                         LPARAM parameter) noexcept {
    try {
        // The bit means the opposite of its name.
        const bool fixedPitch = (metrics->tmPitchAndFamily & TMPF_FIXED_PITCH) == 0;
        reinterpret_cast<std::vector<InstalledFont>*>(parameter)->push_back(
            {FromWide(font->lfFaceName), fixedPitch});
        return 1;
    } catch (...) {
        return 0;
    }
}

} // namespace

std::vector<InstalledFont> ListInstalledFonts() {
    std::vector<InstalledFont> fonts;
    LOGFONTW everyFont{};
    everyFont.lfCharSet = DEFAULT_CHARSET;
    const HDC screen = ::GetDC(nullptr);
    ::EnumFontFamiliesExW(screen, &everyFont, CollectFont, reinterpret_cast<LPARAM>(&fonts), 0);
    ::ReleaseDC(nullptr, screen);
    return fonts;
}

std::optional<FontChoice> ChooseFontIn(HWND owner, const FontDialogContent& content,
                                       const TextLookup& text) {
    FontDialog dialog(content);
    dialog.Run(owner, text("dialog.font.title"), text);
    return dialog.Chosen();
}

} // namespace kvx
