// The program's own main window inside the test program: menus, status texts and objects are then
// within reach. Messages are pumped by the test.
#pragma once

#include "kivra_process.h"

#include "app/app_window.h"

#include <memory>
#include <string>
#include <vector>

namespace kvx::test {

/// One item of a real menu.
struct ShownItem {
    std::u16string text;
    UINT id = 0; ///< 0: a separator or a submenu
    bool greyed = false;
    bool checked = false;
    std::vector<ShownItem> children;
};

/// A key for a window of this program, done when the call returns.
void PressIn(HWND window, WORD virtualKey, bool control = false);

class InProcessWindow {
public:
    /// Opens `startFile` (none when empty) with the settings and texts of `program`.
    explicit InProcessWindow(const ProgramCopy& program, const std::u16string& startFile = {});

    /// Leaves no message behind, nor the one that ends a message loop.
    ~InProcessWindow();
    InProcessWindow(const InProcessWindow&) = delete;
    InProcessWindow& operator=(const InProcessWindow&) = delete;

    HWND Main() const { return app_->MainWindow(); }
    HWND View() const { return app_->View().Handle(); }
    const HexViewState& State() const { return app_->View().View().State(); }
    const std::u16string& Status() const { return app_->StatusBar().Text(); }

    /// Has the hex view's whole picture drawn before it returns.
    void Paint();
    /// Dispatches what is waiting.
    void Pump();
    /// Each is done, with all that it posts, when the call returns.
    void Run(Command command);
    void Key(WORD virtualKey, bool control = false);
    /// A notch of the wheel with Control.
    void Zoom(bool in);
    void Type(std::string_view characters);

    void LoadPattern(const std::u16string& path) { app_->LoadPattern(path); }

    /// The menu bar as it stands on the window.
    std::vector<ShownItem> Menu() const;
    /// The item with this command number anywhere in the menu bar; null when it is not offered.
    static const ShownItem* Find(const std::vector<ShownItem>& items, Command command);

private:
    std::unique_ptr<AppWindow> app_;
};

} // namespace kvx::test
