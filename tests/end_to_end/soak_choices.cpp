// What the person does with the main window and its choices.
#include "soak.h"

#include "waiting.h"

#include "app/dialog_layout.h"

#include <algorithm>

namespace kvx::test {
namespace {

/// Small: most of the time goes into drawing, which is slow on a machine without a graphics card.
constexpr RECT kUsualPlace{540, 40, 1060, 300};

} // namespace

void Soak::MoveWindow() {
    const std::size_t large = OneIn(8) ? 3 : 1;
    const int left = 300 + static_cast<int>(Below(300));
    const int top = static_cast<int>(Below(200));
    const int width = 200 + static_cast<int>(Below(350 * large));
    const int height = 120 + static_cast<int>(Below(200 * large));
    Note(left, ' ', top, ' ', width, ' ', height);
    ::MoveWindow(kivra_.MainWindow(), left, top, width, height, TRUE);
}

void Soak::TakeUsualPlace() const {
    ::ShowWindow(kivra_.MainWindow(), SW_RESTORE);
    ::MoveWindow(kivra_.MainWindow(), kUsualPlace.left, kUsualPlace.top,
                 kUsualPlace.right - kUsualPlace.left, kUsualPlace.bottom - kUsualPlace.top, TRUE);
}

void Soak::WaitUntilPainted() const {
    input_->Settle();
    Require(WaitUntil([this] { return ::GetUpdateRect(View(), nullptr, FALSE) == FALSE; }),
            "the view is painted");
}

void Soak::Minimize() {
    const HWND main = kivra_.MainWindow();
    ::ShowWindow(main, SW_MINIMIZE);
    Require(WaitUntil([&] { return ::IsIconic(main) != FALSE; }), "the window is minimised");
    ::Sleep(200); // a window manager that lags behind would minimise it once more after the next
    ::ShowWindow(main, OneIn(6) ? SW_SHOWMAXIMIZED : SW_RESTORE);
    Require(WaitUntil([&] { return ::IsIconic(main) == FALSE; }), "the window is restored");
}

void Soak::ToggleReadOnly() {
    if (OneIn(2))
        Do(Command::ToggleReadOnly);
    else
        input_->KeyWithControl(View(), 'R');
    model_.editable = !model_.editable;
    model_.view.ForgetDigit();
}

void Soak::ChooseEncoding() {
    const std::size_t favorites = model_.favorites.size();
    if (favorites != 0 && OneIn(3)) {
        const std::size_t favorite = Below(favorites);
        Note("favourite ", favorite);
        Do(Command::FavoriteFirst, static_cast<std::uint32_t>(favorite));
        model_.encoding = model_.favorites[favorite];
        return;
    }
    const auto encoding = static_cast<std::uint32_t>(Below(kTextEncodingCount));
    Note(encoding);
    Do(Command::EncodingFirst, encoding);
    model_.encoding = static_cast<TextEncoding>(encoding);
}

void Soak::ChangeFavorites() {
    auto& favorites = model_.favorites;
    const bool known = std::ranges::count(favorites, model_.encoding) != 0;
    switch (Below(4)) {
    case 0:
        Do(Command::FavoriteClear);
        favorites.clear();
        break;
    case 1:
        Do(Command::FavoriteRemove);
        std::erase(favorites, model_.encoding);
        break;
    default:
        Do(Command::FavoriteAdd);
        if (!known && favorites.size() < kMaxFavoriteEncodings)
            favorites.push_back(model_.encoding);
    }
}

void Soak::ChooseTheme() {
    Do(Command::ThemeLight, static_cast<std::uint32_t>(Below(3)));
}

void Soak::Zoom() {
    const std::size_t choice = Below(5);
    Note(choice);
    if (choice == 4) {
        Do(Command::ZoomReset);
        model_.zoom = 100;
    } else {
        const bool in = choice % 2 == 0;
        if (choice < 2)
            Do(in ? Command::ZoomIn : Command::ZoomOut);
        else
            input_->Post(View(), WM_MOUSEWHEEL, WheelNotch(in, MK_CONTROL));
        model_.zoom = std::clamp(model_.zoom + (in ? 10 : -10), 60, 250);
    }
    pageRows_.reset();
}

void Soak::ChooseLanguage() {
    const auto language = static_cast<std::uint32_t>(Below(3));
    Do(Command::LanguageSystem, language);
    model_.language = static_cast<UiLanguage>(language);
}

// At first each family once.
void Soak::ChooseFont() {
    Do(Command::Font);
    const Dialog dialog = DialogOf(L"Kivra.FontDialog");
    const std::size_t families = dialog.Items(kFontFamilyId).size();
    allFonts_ = ++fontsChosen_ >= families;
    const std::size_t family = fontsChosen_ <= families ? fontsChosen_ - 1 : Below(families);
    Note(family);
    dialog.Select(kFontFamilyId, static_cast<int>(family));
    dialog.Select(kFontSizeId, static_cast<int>(Below(dialog.Items(kFontSizeId).size())));
    if (OneIn(2)) dialog.Press(kFontBoldId);
    End(dialog, allFonts_ && OneIn(3) ? kCancelButtonId : kDefaultButtonId);
    pageRows_.reset();
}

void Soak::ShowAbout() {
    Do(Command::About);
    End(DialogOf(L"Kivra.AboutDialog"), kDefaultButtonId);
}

} // namespace kvx::test
