// What the shell asks of its main window and of the system. Tests put a recording host here.
#pragma once

#include "app/dialogs.h"
#include "app/menu_model.h"
#include "app/status_text.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kvx {

enum class SaveChangesAnswer : std::uint8_t { Yes, No, Cancel };

/// Every call comes from the main thread. Those above StartProcess are modal: they return when the
/// user has answered, and other messages are dispatched meanwhile.
class ShellHost {
public:
    virtual ~ShellHost() = default;

    /// Closing the box counts as Cancel.
    virtual SaveChangesAnswer AskSaveChanges(const std::u16string& text,
                                             const std::u16string& caption) = 0;
    virtual void ShowError(const std::u16string& text, const std::u16string& caption) = 0;

    /// Lets the user choose an existing file; empty when the user cancels.
    virtual std::optional<std::u16string> ChooseFile(const std::u16string& title) = 0;

    /// The line that the user typed; empty when the user cancels.
    virtual std::optional<std::u16string> Prompt(const PromptContent& content) = 0;

    /// Returns when the user closes the dialog, in which any number of searches may run.
    virtual void ShowSearchDialog(const SearchDialogContent& content, const TextLookup& text) = 0;

    /// The font that the user chose; empty when the user cancels.
    virtual std::optional<FontChoice> AskForFont(const FontDialogContent& content,
                                                 const TextLookup& text) = 0;
    virtual void ShowAboutBox(const AboutContent& content, const TextLookup& text) = 0;

    /// Every font of the system; a family may be listed several times.
    virtual std::vector<InstalledFont> InstalledFonts() = 0;

    /// Opens `file` in a new process of the program, without waiting for it; false on failure.
    virtual bool StartProcess(const std::u16string& file) = 0;

    virtual void ShowTitle(const std::u16string& title) = 0;
    virtual void ShowMenu(const std::vector<MenuItem>& menuBar) = 0;
    virtual void ShowStatus(const std::u16string& text, const StatusColors& colors) = 0;

    /// Colour of the status bar around its text.
    virtual void SetStatusBackground(const StatusColors& colors) = 0;

    /// Paints the status bar at once instead of with the next paint.
    virtual void PaintStatusNow() = 0;

    /// A disabled hex view takes no input. Enabling gives it back the focus that it had.
    virtual void EnableHexView(bool enabled) = 0;

    /// Dispatches the messages that wait, without waiting for more.
    virtual void PumpMessages() = 0;

    /// Starts or restarts the timer that ends the read-only warning (Shell::OnFlashTimer).
    virtual void StartFlashTimer() = 0;
    virtual void StopFlashTimer() = 0;
    virtual void SoundWarning() = 0;

    /// Milliseconds; never goes back.
    virtual std::uint64_t Tick() = 0;

    virtual void DestroyMainWindow() = 0;
};

} // namespace kvx
