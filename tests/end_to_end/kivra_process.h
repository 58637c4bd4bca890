// The real kivra.exe in a folder of its own, so that settings never travel from test to test.
#pragma once

#include "foreign_window.h"

#include "app/commands.h"
#include "platform/win32/handle.h"
#include "support/temp_folder.h"

#include <string>
#include <string_view>
#include <vector>

namespace kvx::test {

/// A private copy of the program folder. The original is the folder named by the environment
/// variable KIVRA_PROGRAM_FOLDER.
class ProgramCopy {
public:
    ProgramCopy();

    std::filesystem::path Program() const { return folder_.Root() / "kivra.exe"; }
    std::filesystem::path SettingsFile() const { return folder_.Root() / "kivra.settings.json"; }
    std::string SettingsText() const { return folder_.Read(u"kivra.settings.json"); }
    void WriteSettings(std::string_view text) const { folder_.Write(u"kivra.settings.json", text); }
    const std::filesystem::path& Folder() const { return folder_.Root(); }

    /// Copies the sample patterns too, which few tests need.
    void AddPatterns() const;

private:
    TempFolder folder_;
};

/// One running program; ended by force when the test leaves it running.
class KivraProcess {
public:
    /// `arguments` is the rest of the command line as it stands; `folder` is the current folder of
    /// the new process, by default this one's. Does not wait for the window.
    KivraProcess(const ProgramCopy& program, const std::wstring& arguments,
                 const std::filesystem::path& folder = {});
    ~KivraProcess();
    KivraProcess(const KivraProcess&) = delete;
    KivraProcess& operator=(const KivraProcess&) = delete;

    DWORD Id() const { return id_; }

    /// Waits for the main window and until it answers; false when it does not come.
    bool WaitForWindow();
    /// The same with a message box that the start shows before the window answers.
    std::optional<MessageBoxWindow> WaitForBox() const { return WaitForMessageBox(id_); }

    HWND MainWindow() const { return main_; }
    HWND View() const { return view_; }
    HWND StatusBar() const { return ChildOf(main_, L"msctls_statusbar32"); }
    std::u16string Title() const { return TextOf(main_); }
    bool WaitForTitle(std::u16string_view title) const;

    /// The keyboard, directed at the hex view.
    Keyboard Keys() const { return {main_, view_}; }

    /// Keys and characters handed to the hex view directly, done when the call returns.
    void Key(WORD virtualKey) const;
    void Type(std::string_view characters) const;
    /// A command as the menu sends it, without waiting for it to be done.
    void Post(Command command) const;
    /// A command, done when the call returns; must not show a modal box.
    void Run(Command command) const;
    void RequestClose() const { ::PostMessageW(main_, WM_CLOSE, 0, 0); }

    bool IsRunning() const;
    /// Waits for the end; the exit code, or -1 when it goes on running.
    int WaitForExit() const;

private:
    UniqueKernelHandle process_;
    DWORD id_ = 0;
    HWND main_ = nullptr;
    HWND view_ = nullptr;
};

/// `path` as one argument of a command line.
std::wstring Quoted(const std::filesystem::path& path);

} // namespace kvx::test
