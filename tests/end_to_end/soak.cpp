#include "soak.h"

#include "file_bytes.h"
#include "file_drop.h"
#include "pane_driver.h"
#include "waiting.h"

#include "app/dialog_layout.h"
#include "panes/inspector_model.h"
#include "panes/notifications.h"
#include "panes/struct_view_layout.h"
#include "panes/value_format_menu.h"

#include <algorithm>
#include <iterator>
#include <numeric>
#include <stdexcept>
#include <tuple>

namespace kvx::test {
namespace {

constexpr std::size_t kRemembered = 20; ///< actions that are told of when something differs
/// Small: most of the time goes into drawing, which is slow on a machine without a graphics card.
constexpr RECT kUsualPlace{540, 40, 1060, 300};

/// From empty to several chunks of a save; two more than the recent files hold.
constexpr std::size_t kFileSizes[] = {0,    1,      5,      16,        17,       100,
                                      255,  256,    300,    1000,      4096,     5000,
                                      9999, 30'000, 70'000, 1'048'577, 1'500'000};
constexpr std::size_t kLargeFiles = 2;
constexpr std::uint64_t kHugeSize = 4ULL << 40; ///< minutes of searching

constexpr char16_t kHugeName[] = u"huge.bin";
constexpr char kPattern[] = "struct A { uint8_t a; uint8_t b; };";
constexpr char kBrokenPattern[] = "struct A { uint8_t a";

std::vector<SoakFile> MakeFiles(std::uint32_t seed) {
    std::vector<SoakFile> files;
    for (const std::size_t size : kFileSizes) {
        std::string bytes = KnownBytes(size, seed++);
        for (std::size_t at = 7; at + 5 < size; at += 1 + size / 5)
            bytes.replace(at, 5, "Kivra"); // something that can be searched for as text
        files.push_back({u"file" + Utf8ToUtf16(std::to_string(files.size())) + u".bin", bytes});
    }
    files.push_back({kHugeName, {}});
    return files;
}

/// Of a message of the wheel.
WPARAM WheelNotch(bool away, WORD keys = 0) {
    const int delta = away ? WHEEL_DELTA : -WHEEL_DELTA;
    return MAKEWPARAM(keys, delta);
}

std::u16string ToUtf16(const std::string& ascii) {
    return {ascii.begin(), ascii.end()};
}

std::u16string HexText(std::string_view bytes, const char* separator) {
    std::string text;
    char digits[3] = {};
    for (const char byte : bytes) {
        std::snprintf(digits, sizeof digits, "%02X", static_cast<unsigned char>(byte));
        text += (text.empty() ? "" : separator) + std::string(digits);
    }
    return ToUtf16(text);
}

std::u16string Hex(std::uint64_t number) {
    std::ostringstream text;
    text << std::hex << std::uppercase << number;
    return ToUtf16(text.str());
}

/// `text` in an encoding, for text of letters.
std::string Encoded(const std::string& text, TextEncoding encoding) {
    std::string bytes;
    for (const char letter : text) {
        if (encoding == TextEncoding::Utf16Be) bytes += '\0';
        bytes += letter;
        if (encoding == TextEncoding::Utf16Le) bytes += '\0';
    }
    return bytes;
}

} // namespace

const Soak::Action Soak::kActions[] = {
    {"type digits", &Soak::TypeDigits, 14},
    {"move", &Soak::Move, 18},
    {"toggle inserting", &Soak::ToggleInserting, 4},
    {"remove", &Soak::Remove, 9},
    {"end selection", &Soak::EndSelection, 2},
    {"copy selection", &Soak::CopySelection, 3},
    {"click", &Soak::Click, 9},
    {"wheel", &Soak::Wheel, 4},
    {"scroll", &Soak::Scroll, 4},
    {"move window", &Soak::MoveWindow, 2},
    {"minimize", &Soak::Minimize, 1},
    {"toggle read-only", &Soak::ToggleReadOnly, 4},
    {"choose encoding", &Soak::ChooseEncoding, 2},
    {"change favourites", &Soak::ChangeFavorites, 2},
    {"choose theme", &Soak::ChooseTheme, 1},
    {"zoom", &Soak::Zoom, 2},
    {"choose language", &Soak::ChooseLanguage, 1},
    {"choose font", &Soak::ChooseFont, 1},
    {"show about", &Soak::ShowAbout, 1},
    {"go to", &Soak::GoTo, 2},
    {"search", &Soak::Search, 4},
    {"cancel a long search", &Soak::CancelLongSearch, 1},
    {"save", &Soak::Save, 8},
    {"save while held", &Soak::SaveWhileHeld, 1},
    {"close", &Soak::Close, 1},
    {"open", &Soak::Open, 4},
    {"open missing", &Soak::OpenMissing, 1},
    {"drop on open document", &Soak::DropOnOpenDocument, 1},
    {"refuse to end", &Soak::RefuseToEnd, 1},
    {"toggle pane", &Soak::TogglePane, 2},
    {"close pane", &Soak::ClosePane, 1},
    {"use pane", &Soak::UsePane, 3},
    {"move pane", &Soak::MovePane, 1},
    {"check inspector", &Soak::CheckInspector, 3},
    {"check struct view", &Soak::CheckStructView, 3},
    {"change pattern", &Soak::ChangePattern, 2},
    {"choose format", &Soak::ChooseFormat, 1},
};

Soak::Soak(std::uint32_t seed)
    : seed_(seed), random_(seed), model_(program_, MakeFiles(seed)),
      hugeFile_(folder_.WriteSparse(kHugeName, kHugeSize, "", "")),
      patternFile_(program_.Folder() / "own.kvpat"),
      kivra_((program_.WriteSettings(PaneSettings(false, false)), program_), L"") {
    for (const SoakFile& file : model_.files) {
        if (file.name != kHugeName) folder_.Write(file.name, file.onDisk);
    }
    WriteFileBytes(patternFile_, kPattern);
    Require(kivra_.WaitForWindow(), "the main window comes");
    ::SetCursorPos(0, 0); // where no window of the program comes to lie
    input_.emplace(kivra_);
    TakeUsualPlace();
}

template <typename... Parts>
void Soak::Note(const Parts&... parts) {
    std::ostringstream text;
    text << ' ';
    (text << ... << parts);
    last_.back() += text.str();
}

void Soak::Require(bool holds, const char* what) {
    if (!holds) throw std::runtime_error(std::string("it does not hold that ") + what);
}

void Soak::Differ(std::string_view what, const std::u16string& shown,
                  const std::u16string& expected) const {
    throw std::runtime_error(std::string(what) + " is \"" + Utf16ToUtf8(shown) +
                             "\" instead of \"" + Utf16ToUtf8(expected) + "\"");
}

void Soak::Expect(std::string_view what, const std::u16string& shown,
                  const std::u16string& expected) const {
    if (shown != expected) Differ(what, shown, expected);
}

std::string Soak::Place() const {
    std::ostringstream text;
    text << "Seed " << seed_ << ", step " << steps_ << ". The last actions:\n";
    for (const std::string& action : last_)
        text << "  " << action << '\n';
    text << (::IsIconic(kivra_.MainWindow()) != FALSE ? "Minimised. " : "") << "Windows:";
    for (const wchar_t* name :
         {L"#32770", L"#32768", L"Kivra.MainWindow", L"Kivra.SearchDialog", L"Kivra.PromptDialog",
          L"Kivra.FontDialog", L"Kivra.AboutDialog", kInspectorClass, kStructViewClass}) {
        for (const HWND window : WindowsOf(kivra_.Id(), name))
            text << " \"" << Utf16ToUtf8(TextOf(window)) << '"';
    }
    return text.str();
}

void Soak::Kill() const {
    const UniqueKernelHandle process(::OpenProcess(PROCESS_TERMINATE, FALSE, kivra_.Id()));
    ::TerminateProcess(process.Get(), 1);
}

// The largest window needs the most memory for its picture.
void Soak::DoEverythingTwice() {
    for (std::size_t file = 0; file + 1 < model_.files.size(); ++file)
        Run({"open each", &Soak::Open, 0});
    while (!allFonts_) {
        Run({"choose each font", &Soak::ChooseFont, 0});
        WaitUntilPainted();
    }
    ::ShowWindow(kivra_.MainWindow(), SW_SHOWMAXIMIZED);
    WaitUntilPainted();
    TakeUsualPlace();
    for (int round = 0; round < 2; ++round) {
        for (const Action& action : kActions)
            Run(action);
    }
}

void Soak::DoSomething() {
    static const unsigned sum =
        std::accumulate(std::begin(kActions), std::end(kActions), 0U,
                        [](unsigned so_far, const Action& each) { return so_far + each.weight; });
    std::size_t choice = Below(sum);
    const Action* action = kActions;
    for (; choice >= action->weight; ++action)
        choice -= action->weight;
    Run(*action);
}

void Soak::Run(const Action& action) {
    ++steps_;
    last_.push_back(std::to_string(steps_) + ": " + action.name);
    if (last_.size() > kRemembered) last_.pop_front();
    if (::IsIconic(kivra_.MainWindow()) != FALSE) TakeUsualPlace(); // the manager lagged even more
    (this->*action.run)();
    CheckShown();
    if (OneIn(6)) WaitUntilPainted(); // which otherwise waits for a pause
}

void Soak::CheckShown() {
    input_->Settle();
    Expect("the title", kivra_.Title(), model_.Title());
    const std::u16string status = input_->Status();
    if (status == model_.Status()) return;
    // The warning stays for a moment, and longer while there is much to do.
    constexpr std::uint64_t kWarningMs = 2'000;
    const bool young = ::GetTickCount64() <= warnedAt_ + kWarningMs;
    if (status == warning_ && (young || WaitUntil([this] { return !ShowsWarning(); }))) return;
    Expect("the status", input_->Status(), model_.Status());
}

bool Soak::ShowsWarning() const {
    return !warning_.empty() && input_->Status() == warning_;
}

// In the language of the moment, which may change before it goes.
void Soak::ExpectWarning() {
    warnedAt_ = ::GetTickCount64();
    warning_ = model_.Text()("status.readonly_blocked");
    Expect("the warning", input_->Status(), warning_);
}

void Soak::Do(Command command, std::uint32_t steps) {
    input_->Post(kivra_.MainWindow(), WM_COMMAND, CommandId(command + steps));
    input_->Settle();
}

Dialog Soak::DialogOf(std::wstring_view className) const {
    const auto dialog = WaitForDialog(kivra_.Id(), className);
    Require(dialog.has_value(), "the dialog comes");
    return *dialog;
}

void Soak::End(const Dialog& dialog, int button) {
    dialog.Press(button);
    Require(dialog.WaitForEnd(), "the dialog ends");
    input_->Settle();
}

void Soak::Answer(std::string_view textKey, int button) {
    const auto box = WaitForMessageBox(kivra_.Id());
    Require(box.has_value(), "a message box comes");
    const std::u16string text = model_.Text()(textKey);
    if (!box->Text().starts_with(text)) Differ("the message", box->Text(), text);
    Require(box->Press(button), "the message box ends");
    input_->Settle();
}

// ---- The hex view ----

void Soak::TypeDigits() {
    constexpr char kKeys[] = "0123456789ABCDEF";
    const std::size_t count = 1 + Below(6);
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t digit = Below(16);
        Note(kKeys[digit]);
        input_->Post(View(), WM_KEYDOWN, static_cast<WPARAM>(kKeys[digit]), 1);
        if (model_.open && model_.editable) model_.view.Type(static_cast<unsigned>(digit));
    }
    input_->Settle();
    if (model_.open && !model_.editable) ExpectWarning();
}

void Soak::Move() {
    constexpr std::pair<WORD, std::int64_t> kSteps[] = {
        {VK_LEFT, -1}, {VK_RIGHT, 1}, {VK_UP, -16}, {VK_DOWN, 16}};
    const std::size_t choice = Below(8);
    if (choice >= 6) return MoveByPage(choice == 6);
    const bool control = OneIn(3);
    const WORD key = choice < 4 ? kSteps[choice].first : choice == 4 ? VK_HOME : VK_END;
    Note(control ? "Ctrl+" : "", key);
    control ? input_->KeyWithControl(View(), key) : input_->Key(View(), key);
    if (!model_.open) return;
    const std::uint64_t rowStart = model_.view.caret / 16 * 16;
    if (choice < 4)
        model_.view.MoveBy(kSteps[choice].second);
    else if (key == VK_HOME)
        model_.view.MoveTo(control ? 0 : rowStart);
    else
        model_.view.MoveTo(control ? model_.view.Last() : rowStart + 15);
}

// How many rows are a page is for the view to say, but it has to stay with what it said.
void Soak::MoveByPage(bool down) {
    const auto area = [this] {
        RECT client{};
        ::GetClientRect(View(), &client);
        return client;
    };
    const auto same = [](const RECT& a, const RECT& b) { return ::EqualRect(&a, &b) != FALSE; };
    const RECT before = area();
    if (!same(before, pageArea_)) pageRows_.reset();
    Note(down ? "page down" : "page up");
    input_->Key(View(), down ? VK_NEXT : VK_PRIOR);
    if (!model_.open) return;
    const std::uint64_t old = model_.view.caret;
    const std::uint64_t now = ShownOffset();
    const bool stopped = now == (down ? model_.view.Last() : 0);
    const std::uint64_t distance = down ? now - old : old - now;
    if (!pageRows_ && !stopped && same(before, area())) {
        Require(distance > 0 && distance % 16 == 0, "a page is whole rows");
        pageRows_ = distance / 16;
        pageArea_ = before;
    }
    const auto page = static_cast<std::int64_t>(pageRows_ ? *pageRows_ * 16 : distance);
    model_.view.MoveBy(down ? page : -page);
}

std::uint64_t Soak::ShownOffset() const {
    Require(WaitUntil([this] { return !ShowsWarning(); }), "the warning goes");
    const std::u16string status = input_->Status();
    Require(status.find(u": 0x") != std::u16string::npos, "the status shows an offset");
    return std::stoull(Utf16ToUtf8(status.substr(status.find(u": 0x") + 4)), nullptr, 16);
}

void Soak::ToggleInserting() {
    input_->Key(View(), VK_INSERT);
    if (!model_.open) return;
    if (model_.editable)
        model_.view.ToggleInserting();
    else
        ExpectWarning();
}

void Soak::Remove() {
    const bool forward = OneIn(2);
    Note(forward ? "forward" : "backward");
    input_->Key(View(), forward ? VK_DELETE : VK_BACK);
    if (!model_.open) return;
    if (model_.editable)
        model_.view.Remove(forward);
    else
        ExpectWarning();
}

void Soak::EndSelection() {
    input_->Key(View(), VK_ESCAPE);
    model_.view.selection.reset();
}

void Soak::CopySelection() {
    std::u16string expected;
    if (model_.view.selection) {
        const auto [low, high] =
            std::minmax(model_.view.selection->first, model_.view.selection->second);
        expected = HexText(ToString(model_.view.document.ReadBytes(low, high - low + 1)), " ");
    }
    Expect("the copied selection", input_->Copied(View()), expected);
}

// A click, a double click, one with the right button, or a drag. Which byte is under the pointer is
// for the view to say; what it then selects must be there and begin at the caret.
void Soak::Click() {
    EndSelection();
    RECT client{};
    ::GetClientRect(View(), &client);
    const auto somewhere = [this](LONG end) {
        return static_cast<int>(Below(static_cast<std::size_t>(std::max(end, LONG{1}))));
    };
    const int x = somewhere(client.right);
    const int y = somewhere(client.bottom);
    const bool right = OneIn(10);
    Note(right ? "right " : "", x, ',', y);
    input_->Post(View(), right ? WM_RBUTTONDOWN : WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, y));
    for (std::size_t moves = right ? 0 : Below(4); moves > 0; --moves) {
        const int toX = std::max(0, x + somewhere(120) - 60);
        const int toY = std::max(0, y + somewhere(200) - 100);
        Note("to ", toX, ',', toY);
        input_->Post(View(), WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(toX, toY));
    }
    input_->Post(View(), right ? WM_RBUTTONUP : WM_LBUTTONUP, 0, MAKELPARAM(x, y));
    input_->Settle();
    const std::u16string copied = input_->Copied(View());
    Note("gave ", Utf16ToUtf8(copied.substr(0, 30)));
    if (copied.empty()) return;
    const std::uint64_t caret = ShownOffset();
    const std::uint64_t count = copied.size() / 3; // of the bytes beside the first
    const auto holds = [&](std::uint64_t first) {
        return HexText(ToString(model_.view.document.ReadBytes(first, count + 1)), " ") == copied;
    };
    const bool onwards = holds(caret);
    const bool back = caret >= count && holds(caret - count);
    Require(onwards || back, "the selected bytes are those at the caret");
    model_.view.Select(caret, onwards ? caret + count : caret - count);
    if (onwards && back && count > 0) EndSelection(); // the same bytes on both sides
}

void Soak::Wheel() {
    const bool away = OneIn(2);
    Note(away ? "away" : "towards");
    for (std::size_t times = 1 + Below(5); times > 0; --times)
        input_->Post(View(), WM_MOUSEWHEEL, WheelNotch(away));
}

void Soak::Scroll() {
    const auto request = static_cast<WPARAM>(Below(8)); // from SB_LINEUP to SB_BOTTOM
    const UINT bar = OneIn(3) ? WM_HSCROLL : WM_VSCROLL;
    Note(bar, ' ', request);
    input_->Post(View(), bar, request);
}

// ---- The main window ----

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

// ---- Choices ----

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

// ---- Places in the document ----

void Soak::GoTo() {
    if (OneIn(2))
        Do(Command::GoTo);
    else
        input_->KeyWithControl(View(), 'G');
    if (!model_.open) return;
    const Dialog dialog = DialogOf(L"Kivra.PromptDialog");
    Expect("the offered offset", dialog.Text(kPromptAnswerId), Hex(model_.view.caret));
    const std::uint64_t target = Below(model_.view.Size() * 5 / 4 + 2);
    const std::size_t choice = Below(6);
    Note(choice, ' ', target);
    if (choice == 0) return End(dialog, kCancelButtonId);
    dialog.SetText(kPromptAnswerId, choice == 1 ? u"12G" : u" 0x" + Hex(target));
    End(dialog, kDefaultButtonId);
    if (choice == 1)
        Answer("error.goto_invalid", IDOK);
    else
        model_.view.MoveTo(target);
}

void Soak::Search() {
    if (OneIn(2))
        Do(Command::Find);
    else
        input_->KeyWithControl(View(), 'F');
    if (!model_.open) return;
    const Dialog dialog = DialogOf(L"Kivra.SearchDialog");
    for (std::size_t searches = 1 + Below(3); searches > 0; --searches)
        SearchOnce(dialog);
    End(dialog, kCancelButtonId);
}

void Soak::SearchOnce(const Dialog& dialog) {
    const std::size_t choice = Below(7);
    const bool byText = choice >= 5;
    const bool forward = OneIn(2);
    const std::uint64_t size = model_.view.Size();
    std::u16string query;
    std::string pattern;
    if (choice < 3) { // bytes that are there
        pattern = ToString(model_.view.document.ReadBytes(Below(size + 1), 1 + Below(6)));
        query = HexText(pattern, OneIn(2) ? " " : "");
    } else if (choice == 3) { // bytes that may be
        pattern = KnownBytes(1 + Below(3), random_());
        query = HexText(pattern, " ");
    } else if (choice == 4) {
        query = OneIn(2) ? std::u16string(2 * 4097, u'4') : std::u16string(u"4G");
    } else {
        const char* const texts[] = {"Kivra", "ivra", "i", "zebra"};
        const std::string text = texts[Below(std::size(texts))];
        pattern = Encoded(text, model_.encoding);
        query = ToUtf16(text);
    }
    Note(byText ? "text " : "hex ", forward ? "next " : "previous ",
         Utf16ToUtf8(query.substr(0, 30)));
    dialog.Select(kSearchTypeId, byText ? 1 : 0);
    dialog.SetText(kSearchQueryId, query);
    dialog.Press(forward ? kDefaultButtonId : kSearchPreviousId);
    input_->Settle();
    if (!pattern.empty())
        ExpectHit(dialog, pattern, forward);
    else
        Answer(query.size() > 4096 ? "error.search_too_long" : "error.search_invalid_hex", IDOK);
    ++done_.searches;
    Require(WaitUntil([&] { return dialog.IsEnabled(kSearchQueryId); }), "the search ends");
    CheckShown();
}

void Soak::ExpectHit(const Dialog& dialog, const std::string& pattern, bool forward) {
    const std::string content = ToString(model_.view.document.Content());
    const auto& selection = model_.view.selection;
    std::size_t start = model_.view.caret;
    bool possible = !content.empty();
    if (selection) { // stepped over
        start = std::min(selection->first, selection->second);
        possible = forward ? start + 1 < content.size() : start != 0;
        start = forward ? start + 1 : start - 1;
    }
    std::size_t hit = std::string::npos;
    if (possible && (!forward || start < content.size()))
        hit = forward ? content.find(pattern, start) : content.rfind(pattern, start);
    if (hit == std::string::npos) return Answer("error.search_not_found", IDOK);
    Require(WaitUntil([&] { return dialog.IsEnabled(kSearchQueryId); }), "the search ends");
    model_.view.Select(hit, hit + pattern.size() - 1);
}

void Soak::CancelLongSearch() {
    Close();
    if (model_.open) return;
    const std::size_t huge = model_.files.size() - 1;
    DropFile(hugeFile_);
    model_.Show(huge);
    const std::u16string title = model_.Title();
    Expect("the title", kivra_.Title(), title);
    Do(Command::Find);
    const Dialog dialog = DialogOf(L"Kivra.SearchDialog");
    dialog.SetText(kSearchQueryId, u"12 34");
    dialog.Press(kDefaultButtonId);
    Require(WaitUntil([&] { return !dialog.IsEnabled(kSearchQueryId); }), "the search begins");
    dialog.Press(kCancelButtonId);
    Require(WaitUntil([&] { return dialog.IsEnabled(kSearchQueryId); }), "the search is cancelled");
    End(dialog, kCancelButtonId);
    Close();
}

// ---- Files ----

// The program saves, and when it is done what is on the disk is what the model says.
void Soak::ExpectSaved() {
    Require(WaitUntil([&] { return ::IsWindowEnabled(View()) != FALSE; }), "the save ends");
    input_->Settle();
    const bool wrote = model_.IsModified();
    model_.Save();
    const SoakFile& file = model_.files.at(*model_.open);
    Require(FileEquals(PathOf(*model_.open), file.onDisk), "the saved bytes are those expected");
    std::set<std::u16string> names;
    for (const SoakFile& each : model_.files)
        names.insert(each.name);
    Require(folder_.Names() == names, "a save leaves nothing else behind");
    done_.saves += wrote ? 1 : 0;
}

void Soak::Save() {
    Do(Command::Save);
    if (model_.open) ExpectSaved();
}

// Another program reads the file: it can be neither written nor replaced.
void Soak::SaveWhileHeld() {
    if (!model_.IsModified()) return;
    UniqueFileHandle reader(::CreateFileW(PathOf(*model_.open).c_str(), GENERIC_READ,
                                          FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
    Require(static_cast<bool>(reader), "the file can be read");
    Do(Command::Save);
    Answer("error.save_failed", IDOK);
    reader.Reset();
    CheckShown();
    Save();
}

bool Soak::ConfirmChanges() {
    if (!model_.IsModified()) return true;
    constexpr int kButtons[] = {IDYES, IDNO, IDNO, IDCANCEL};
    const int button = kButtons[Below(std::size(kButtons))];
    Note("answer ", button);
    Answer("confirm.save_changes", button);
    if (button == IDYES) ExpectSaved();
    return button != IDCANCEL;
}

void Soak::Close() {
    Do(Command::Close);
    if (ConfirmChanges()) model_.Show(std::nullopt);
}

void Soak::RefuseToEnd() {
    if (!model_.IsModified()) return;
    input_->Post(kivra_.MainWindow(), WM_CLOSE);
    Answer("confirm.save_changes", IDCANCEL);
}

// Most of the time a small file; at first each of them once. And most of the time to edit it.
void Soak::Open() {
    const std::size_t small = model_.files.size() - 1 - kLargeFiles;
    const bool first = done_.opened < static_cast<int>(model_.files.size()) - 1;
    const std::size_t file = first       ? static_cast<std::size_t>(done_.opened)
                             : OneIn(10) ? small + Below(kLargeFiles)
                                         : Below(small);
    OpenFile(file);
    if (!OneIn(4)) ToggleReadOnly();
}

void Soak::OpenFile(std::size_t file) {
    const auto place = std::ranges::find(model_.recent, file) - model_.recent.begin();
    const bool recent = place < std::ssize(model_.recent);
    Note(Utf16ToUtf8(model_.files.at(file).name));
    if (recent && !OneIn(5)) {
        Note("recent ", place);
        Do(Command::RecentFirst, static_cast<std::uint32_t>(place));
        if (!ConfirmChanges()) return;
    } else if (OneIn(3)) {
        Note("by dialog");
        Do(Command::Open);
        if (!ConfirmChanges()) return;
        ChooseFile(PathOf(file));
    } else {
        Note("dropped");
        Close();
        if (model_.open) return;
        DropFile(PathOf(file));
    }
    input_->Settle();
    model_.Show(file);
    ++done_.opened;
}

void Soak::DropFile(const std::filesystem::path& path) {
    const FileDrop drop(kivra_, {path});
    input_->Settle();
}

void Soak::ChooseFile(const std::filesystem::path& path) {
    Require(ChooseInFileDialog(kivra_.Id(), path.wstring()), "a file can be chosen");
    ++done_.fileDialogs;
}

void Soak::OpenMissing() {
    const std::size_t place = Below(model_.recent.size());
    const std::size_t file = model_.recent.at(place);
    if (file == model_.open || model_.files.at(file).name == kHugeName) return;
    const std::filesystem::path away = program_.Folder() / "away.bin";
    std::filesystem::rename(PathOf(file), away);
    Do(Command::RecentFirst, static_cast<std::uint32_t>(place));
    const bool goesOn = ConfirmChanges();
    if (goesOn) {
        Answer("error.open_failed", IDOK);
        model_.Show(std::nullopt);
    }
    std::filesystem::rename(away, PathOf(file));
}

// Starts another process, which is closed at once.
void Soak::DropOnOpenDocument() {
    if (!model_.open) return;
    DropFile(PathOf(0));
    // Its title is told apart from this one's by the file.
    const std::u16string name = model_.files.front().name;
    HWND other = nullptr;
    Require(WaitUntil([&] {
                for (HWND window = nullptr;
                     (window = ::FindWindowExW(nullptr, window, L"Kivra.MainWindow", nullptr)) !=
                     nullptr;) {
                    if (window != kivra_.MainWindow() &&
                        TextOf(window).find(name) != std::u16string::npos)
                        other = window;
                }
                return other != nullptr;
            }),
            "another window comes");
    ::PostMessageW(other, WM_CLOSE, 0, 0);
    Require(WaitUntil([&] { return ::IsWindow(other) == FALSE; }), "the other window goes");
}

// ---- Panes ----

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

// ---- The end ----

ProcessResources Soak::ResourcesAtRest() {
    Run({"to rest", &Soak::Close, 0});
    while (model_.open)
        Run({"to rest", &Soak::Close, 0});
    if (model_.inspector) SetPane(kInspectorClass, Command::ToggleDataInspector, model_.inspector);
    if (model_.structView) SetPane(kStructViewClass, Command::ToggleStructView, model_.structView);
    Do(Command::ThemeDarkBlue);
    Do(Command::LanguageEnglish);
    model_.language = UiLanguage::English;
    Do(Command::ZoomReset);
    model_.zoom = 100;
    Do(Command::EncodingFirst);
    model_.encoding = TextEncoding::Ascii;
    Do(Command::FavoriteClear);
    model_.favorites.clear();
    TakeUsualPlace();
    CheckShown();
    WaitUntilPainted();
    ProcessResources resources = ResourcesOf(kivra_.Id());
    resources.fileDialogs = static_cast<std::uint64_t>(done_.fileDialogs);
    return resources;
}

void Soak::Exit() {
    Close();
    while (model_.open)
        Close();
    kivra_.RequestClose();
    Require(kivra_.WaitForExit() == 0, "the program ends well");
}

} // namespace kvx::test
