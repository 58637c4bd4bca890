// The main window, of class "Kivra.MainWindow": owns the document, the settings, the texts and all
// other windows for the life of the process. Unpacks messages for the shell's portable functions.
#pragma once

#include "app/pane_host_window.h"
#include "app/shell.h"
#include "app/shell_host_window.h"
#include "platform/win32/handle.h"

#include <cstdint>
#include <optional>
#include <string>

#include <windows.h>

namespace kvx {

struct AcceleratorTraits {
    using Value = HACCEL;
    static Value Invalid() { return nullptr; }
    static void Close(Value value) { ::DestroyAcceleratorTable(value); }
};
using UniqueAcceleratorTable = UniqueHandle<AcceleratorTraits>;

/// Where the window finds its files; what is empty is taken from the running program.
struct AppWindowOptions {
    std::u16string programFolder; ///< holds resources/strings/
    std::u16string settingsPath;
};

/// Main thread only.
class AppWindow {
public:
    explicit AppWindow(AppWindowOptions options = {});
    ~AppWindow();
    AppWindow(const AppWindow&) = delete;
    AppWindow& operator=(const AppWindow&) = delete;

    /// Loads the settings, creates and shows the window and opens `startFile` in it. False when
    /// there is no window then.
    bool Initialize(HINSTANCE instance, std::optional<std::u16string> startFile);

    /// Runs until the window is destroyed and gives the process's exit code.
    int RunMessageLoop();

    /// Deals with one message of the loop: accelerators first, then the windows.
    void ProcessMessage(MSG& message);

    /// Saves the open file; true also when none is open. False: the user was told why.
    bool SaveFile();

    /// Loads a pattern file into the struct view, which says what is wrong with it.
    void LoadPattern(const std::u16string& path);

    // What the window shows, for tests that drive it in their own process.
    HWND MainWindow() const { return host_.MainWindow(); }
    const EditableDocument& Document() const { return shell_.Document(); }
    const HexViewWindow& View() const { return host_.HexViewPane(); }
    const AppSettings& Settings() const { return shell_.Settings(); }
    const StatusBarWindow& StatusBar() const { return host_.StatusBar(); }
    const PaneHostWindow& Panes() const { return paneHost_; }
    bool Busy() const { return shell_.Busy(); }

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam,
                                      LPARAM lParam) noexcept;
    LRESULT Dispatch(UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT DispatchPaneMessage(UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT Default(UINT message, WPARAM wParam, LPARAM lParam);

    LRESULT OnCreate();
    LRESULT OnSize();
    LRESULT OnSetFocus();
    LRESULT OnClose();
    LRESULT OnQueryEndSession() const;
    LRESULT OnEndSession();
    LRESULT OnDestroy();
    LRESULT OnDrawItem(WPARAM wParam, LPARAM lParam);
    LRESULT OnCommand(WPARAM wParam, LPARAM lParam);
    LRESULT OnTimer(WPARAM wParam, LPARAM lParam);
    LRESULT OnDropFiles(WPARAM wParam);
    LRESULT OnDpiChanged(std::uint32_t dpi, const RECT& suggested);
    void OnException() noexcept;

    std::u16string LoadShell();
    bool RegisterWindowClass() const;
    bool CreateMainWindow();
    bool CreateChildren();
    void Layout();

    AppWindowOptions options_;
    HINSTANCE instance_ = nullptr;
    std::optional<std::u16string> startFile_; ///< until it was opened
    UniqueAcceleratorTable accelerators_;
    ShellHostWindow host_;
    PaneHostWindow paneHost_;
    Shell shell_;
    bool tellingOfException_ = false;
};

} // namespace kvx
