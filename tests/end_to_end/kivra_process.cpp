#include "kivra_process.h"

#include "exercised.h"
#include "waiting.h"

#include <cstdlib>
#include <iostream>
#include <stdexcept>
#include <system_error>

namespace kvx::test {
namespace {

constexpr DWORD kPatienceMs = 20'000;
constexpr UINT kAnswerMs = 5'000;

std::filesystem::path OriginalFolder() {
    const wchar_t* folder = ::_wgetenv(L"KIVRA_PROGRAM_FOLDER");
    if (folder == nullptr)
        throw std::runtime_error("KIVRA_PROGRAM_FOLDER must name the folder of kivra.exe");
    return folder;
}

// A program file written a moment ago may still be held by a virus scanner, and on a loaded machine
// Wine now and then fails to set up a process: neither says anything about the program. Each
// failure is told, and the last one is thrown.
PROCESS_INFORMATION StartedProcess(const std::filesystem::path& program, std::wstring line,
                                   const std::filesystem::path& folder) {
    constexpr int kAttempts = 5;
    constexpr DWORD kPauseMs = 300;
    for (int attempt = 1;; ++attempt) {
        STARTUPINFOW startup{};
        startup.cb = sizeof startup;
        PROCESS_INFORMATION info{};
        if (::CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, FALSE, 0, nullptr,
                             folder.empty() ? nullptr : folder.c_str(), &startup, &info) != FALSE)
            return info;
        const std::system_error error(static_cast<int>(::GetLastError()), std::system_category(),
                                      "kivra.exe does not start");
        if (attempt == kAttempts) throw error;
        std::cerr << "Attempt " << attempt << ": " << error.what() << "\n";
        ::Sleep(kPauseMs);
    }
}

} // namespace

ProgramCopy::ProgramCopy() {
    const std::filesystem::path original = OriginalFolder();
    std::filesystem::copy(original / "kivra.exe", folder_.Root());
    std::filesystem::copy(original / "resources", folder_.Root() / "resources",
                          std::filesystem::copy_options::recursive);
}

void ProgramCopy::AddPatterns() const {
    std::filesystem::copy(OriginalFolder() / "patterns", folder_.Root() / "patterns");
}

KivraProcess::KivraProcess(const ProgramCopy& program, const std::wstring& arguments,
                           const std::filesystem::path& folder) {
    const PROCESS_INFORMATION info =
        StartedProcess(program.Program(), Quoted(program.Program()) + L" " + arguments, folder);
    process_ = UniqueKernelHandle(info.hProcess);
    const UniqueKernelHandle thread(info.hThread);
    id_ = info.dwProcessId;
}

KivraProcess::~KivraProcess() {
    if (IsRunning()) ::TerminateProcess(process_.Get(), 1);
    // The folder of the program can only go once the program is gone.
    ::WaitForSingleObject(process_.Get(), kPatienceMs);
}

bool KivraProcess::WaitForWindow() {
    return WaitUntil([this] {
               const std::vector<HWND> windows = WindowsOf(id_, L"Kivra.MainWindow");
               if (windows.empty()) return !IsRunning();
               main_ = windows.front();
               view_ = ChildOf(main_, L"Kivra.HexView");
               DWORD_PTR answer = 0;
               return view_ != nullptr && ::SendMessageTimeoutW(main_, WM_NULL, 0, 0, SMTO_NORMAL,
                                                                kAnswerMs, &answer) != 0;
           }) &&
           main_ != nullptr;
}

bool KivraProcess::WaitForTitle(std::u16string_view title) const {
    return WaitUntil([&] { return Title() == title; });
}

void KivraProcess::Key(WORD virtualKey) const {
    if (::IsWindow(view_)) Used(KeyUse(view_, KeyName(virtualKey)));
    ::SendMessageW(view_, WM_KEYDOWN, virtualKey, 0);
}

void KivraProcess::Type(std::string_view characters) const {
    for (const char character : characters) {
        if (::IsWindow(view_)) Used(KeyUse(view_, {&character, 1}));
        ::SendMessageW(view_, WM_CHAR, static_cast<WPARAM>(character), 0);
    }
}

void KivraProcess::Post(Command command) const {
    if (::PostMessageW(main_, WM_COMMAND, CommandId(command), 0))
        Used(CommandUse(CommandId(command)));
}

void KivraProcess::Run(Command command) const {
    if (::IsWindow(main_)) Used(CommandUse(CommandId(command)));
    ::SendMessageW(main_, WM_COMMAND, CommandId(command), 0);
}

bool KivraProcess::IsRunning() const {
    return ::WaitForSingleObject(process_.Get(), 0) == WAIT_TIMEOUT;
}

int KivraProcess::WaitForExit() const {
    if (::WaitForSingleObject(process_.Get(), kPatienceMs) != WAIT_OBJECT_0) return -1;
    DWORD code = 0;
    ::GetExitCodeProcess(process_.Get(), &code);
    return static_cast<int>(code);
}

std::wstring Quoted(const std::filesystem::path& path) {
    return L"\"" + path.wstring() + L"\"";
}

} // namespace kvx::test
