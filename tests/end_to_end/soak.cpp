#include "soak.h"

#include "file_bytes.h"
#include "pane_driver.h"
#include "waiting.h"

#include <iterator>
#include <numeric>
#include <stdexcept>

namespace kvx::test {
namespace {

constexpr std::size_t kRemembered = 20; ///< actions that are told of when something differs

/// From empty to more than a chunk of a save; one more than the recent files hold. The last ones
/// are seldom opened.
constexpr std::size_t kFileSizes[] = {0,    1,      5,      16,        17,       100,
                                      255,  256,    300,    1000,      4096,     5000,
                                      9999, 30'000, 70'000, 1'048'577, 1'500'000};
constexpr std::uint64_t kHugeSize = 4ULL << 40; ///< minutes of searching

constexpr char16_t kHugeName[] = u"huge.bin";

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
    Require(kivra_.WaitForWindow(), "the main window comes");
    ::SetCursorPos(0, 0); // where no window of the program comes to lie
    input_.emplace(kivra_);
    TakeUsualPlace();
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
    if (!model_.open && !OneIn(4)) return Run({"open", &Soak::Open, 0}); // there is more to do then
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
    pageRows_.reset();
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
