// What the shell asks of its host, done with the main window and the windows in it.
#pragma once

#include "app/menu_bar_window.h"
#include "app/modal_dialog_window.h"
#include "app/search_dialog.h"
#include "app/shell_host.h"
#include "app/status_bar_window.h"
#include "hexview/hex_view_window.h"

#include <string>
#include <vector>

#include <windows.h>

namespace kvx {

inline constexpr UINT_PTR kFlashTimerId = 1;

/// Owns the windows' objects; the handles belong to the main window. Main thread only.
class ShellHostWindow final : public ShellHost {
public:
    /// Where everything is shown; null before the main window exists and after its end.
    void SetMainWindow(HWND window) { window_ = window; }
    HWND MainWindow() const { return window_; }

    HexViewWindow& HexViewPane() { return hexView_; }
    const HexViewWindow& HexViewPane() const { return hexView_; }
    StatusBarWindow& StatusBar() { return statusBar_; }
    const StatusBarWindow& StatusBar() const { return statusBar_; }
    MenuBarWindow& MenuBar() { return menuBar_; }

    SaveChangesAnswer AskSaveChanges(const std::u16string& text,
                                     const std::u16string& caption) override;
    void ShowError(const std::u16string& text, const std::u16string& caption) override;
    std::optional<std::u16string> ChooseFile(const std::u16string& title) override;
    std::optional<std::u16string> Prompt(const PromptContent& content) override;
    void ShowSearchDialog(const SearchDialogContent& content, const TextLookup& text) override;
    std::optional<FontChoice> AskForFont(const FontDialogContent& content,
                                         const TextLookup& text) override;
    void ShowAboutBox(const AboutContent& content, const TextLookup& text) override;
    std::vector<InstalledFont> InstalledFonts() override;
    bool StartProcess(const std::u16string& file) override;
    void ShowTitle(const std::u16string& title) override;
    void ShowMenu(const std::vector<MenuItem>& menuBar) override;
    void ShowStatus(const std::u16string& text, const StatusColors& colors) override;
    void SetStatusBackground(const StatusColors& colors) override;
    void PaintStatusNow() override;
    void EnableHexView(bool enabled) override;
    void PumpMessages() override;
    void StartFlashTimer() override;
    void StopFlashTimer() override;
    void SoundWarning() override;
    std::uint64_t Tick() override;
    void DestroyMainWindow() override;

private:
    /// A box over a dialog's owner would leave the dialog open to input.
    HWND BoxOwner() const { return ModalDialogWindow::TopmostOver(window_); }

    HWND window_ = nullptr;
    MenuBarWindow menuBar_;
    StatusBarWindow statusBar_;
    HexViewWindow hexView_;
    std::u16string title_;                 ///< as shown now
    SearchDialog* searchDialog_ = nullptr; ///< while it is shown
};

} // namespace kvx
