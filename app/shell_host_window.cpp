#include "app/shell_host_window.h"

#include "app/about_dialog.h"
#include "app/command_line.h"
#include "app/font_dialog.h"
#include "app/open_file_dialog.h"
#include "app/prompt_dialog.h"
#include "app/shell.h"
#include "platform/system.h"
#include "platform/win32/handle.h"
#include "platform/win32/wide.h"

namespace kvx {
namespace {

class ShownScope {
public:
    ShownScope(SearchDialog*& shown, SearchDialog& dialog) : shown_(shown) { shown_ = &dialog; }
    ~ShownScope() { shown_ = nullptr; }
    ShownScope(const ShownScope&) = delete;
    ShownScope& operator=(const ShownScope&) = delete;

private:
    SearchDialog*& shown_;
};

} // namespace

SaveChangesAnswer ShellHostWindow::AskSaveChanges(const std::u16string& text,
                                                  const std::u16string& caption) {
    constexpr UINT kButtons = MB_YESNOCANCEL | MB_ICONWARNING;
    switch (::MessageBoxW(BoxOwner(), AsWide(text), AsWide(caption), kButtons)) {
    case IDYES:
        return SaveChangesAnswer::Yes;
    case IDNO:
        return SaveChangesAnswer::No;
    default:
        return SaveChangesAnswer::Cancel;
    }
}

void ShellHostWindow::ShowError(const std::u16string& text, const std::u16string& caption) {
    ::MessageBoxW(BoxOwner(), AsWide(text), AsWide(caption), MB_OK | MB_ICONERROR);
}

std::optional<std::u16string> ShellHostWindow::ChooseFile(const std::u16string& title) {
    return ChooseExistingFile(window_, {.title = title});
}

std::optional<std::u16string> ShellHostWindow::Prompt(const PromptContent& content) {
    return AskForLine(window_, content);
}

void ShellHostWindow::ShowSearchDialog(const SearchDialogContent& content, const TextLookup& text) {
    SearchDialog dialog(content, text);
    const ShownScope shown(searchDialog_, dialog);
    dialog.Show(window_);
}

std::optional<FontChoice> ShellHostWindow::AskForFont(const FontDialogContent& content,
                                                      const TextLookup& text) {
    return ChooseFontIn(window_, content, text);
}

void ShellHostWindow::ShowAboutBox(const AboutContent& content, const TextLookup& text) {
    kvx::ShowAboutBox(window_, content, text);
}

std::vector<InstalledFont> ShellHostWindow::InstalledFonts() {
    return ListInstalledFonts();
}

bool ShellHostWindow::StartProcess(const std::u16string& file) {
    const std::u16string program = ProgramPath();
    std::u16string commandLine = NewProcessCommandLine(program, file);
    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    PROCESS_INFORMATION started{};
    if (!::CreateProcessW(AsWide(program), AsWideBuffer(commandLine), nullptr, nullptr, FALSE, 0,
                          nullptr, nullptr, &startup, &started)) {
        return false;
    }
    const UniqueKernelHandle process(started.hProcess);
    const UniqueKernelHandle thread(started.hThread);
    return true;
}

// The title is told anew with every movement of the caret; setting the same text again would make
// the caption flicker.
void ShellHostWindow::ShowTitle(const std::u16string& title) {
    if (title == title_) return;
    title_ = title;
    ::SetWindowTextW(window_, AsWide(title_));
}

void ShellHostWindow::ShowMenu(const std::vector<MenuItem>& menuBar) {
    menuBar_.Show(window_, menuBar);
}

void ShellHostWindow::ShowStatus(const std::u16string& text, const StatusColors& colors) {
    statusBar_.Show(text, colors);
}

void ShellHostWindow::SetStatusBackground(const StatusColors& colors) {
    statusBar_.SetBackground(colors);
}

void ShellHostWindow::PaintStatusNow() {
    statusBar_.PaintNow();
}

// Disabling a window takes the focus away from it, and enabling does not give it back.
void ShellHostWindow::EnableHexView(bool enabled) {
    ::EnableWindow(hexView_.Handle(), enabled ? TRUE : FALSE);
    if (enabled && ::GetActiveWindow() == window_) ::SetFocus(hexView_.Handle());
}

void ShellHostWindow::PumpMessages() {
    MSG message{};
    while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        if (message.message == WM_QUIT) {
            ::PostQuitMessage(static_cast<int>(message.wParam));
            return;
        }
        // Esc and Enter reach the search dialog's buttons also while it waits for a search.
        if (searchDialog_ != nullptr && ::IsDialogMessageW(searchDialog_->Window(), &message))
            continue;
        ::TranslateMessage(&message);
        ::DispatchMessageW(&message);
    }
}

void ShellHostWindow::StartFlashTimer() {
    ::SetTimer(window_, kFlashTimerId, kFlashMs, nullptr);
}

void ShellHostWindow::StopFlashTimer() {
    ::KillTimer(window_, kFlashTimerId);
}

void ShellHostWindow::SoundWarning() {
    ::MessageBeep(MB_ICONEXCLAMATION);
}

std::uint64_t ShellHostWindow::Tick() {
    return TickCount();
}

void ShellHostWindow::DestroyMainWindow() {
    ::DestroyWindow(window_);
}

} // namespace kvx
