// What the shell asks of the tool windows, done with the windows beside the main one.
#pragma once

#include "app/pane_docking.h"
#include "app/pane_host.h"
#include "panes/inspector_window.h"
#include "panes/struct_view_window.h"

#include <memory>
#include <optional>
#include <string>

#include <windows.h>

namespace kvx {

/// Owns the windows' objects; the windows are owned by the main window in the system's sense.
class PaneHostWindow final : public PaneHost {
public:
    PaneHostWindow();

    /// Whom the panes stand beside; null before the main window exists and after its end.
    void SetMainWindow(HWND window) { main_ = window; }

    /// Puts both panes where they belong, after the main window or one of them has moved or changed
    /// its size.
    void Dock();

    /// Takes what the message of a worker brought. Only for messages that were posted here.
    static PostedInspectorRows TakeInspectorRows(LPARAM lParam);
    static PostedStructRows TakeStructRows(LPARAM lParam);
    /// Frees what the workers posted and nobody has taken. The workers have ended.
    void DropPostedRows();

    bool CreateInspector(const InspectorModel& model, const TextLookup& text, Theme theme) override;
    void DestroyInspector() override { inspector_.Destroy(); }
    bool HasInspector() const override { return inspector_.Handle() != nullptr; }
    bool CreateStructView(StructViewModel& model, const TextLookup& text, Theme theme) override;
    void DestroyStructView() override { structView_.Destroy(); }
    bool HasStructView() const override { return structView_.Handle() != nullptr; }
    void ShowInspectorRows() override { inspector_.ShowRows(); }
    void ShowStructRows() override { structView_.ShowRows(); }
    void ShowStructPattern() override { structView_.ShowPattern(); }
    void ShowTexts() override;
    void ShowTheme(Theme theme) override;
    std::optional<std::u16string> ChoosePattern(const std::u16string& title,
                                                const std::u16string& folder) override;
    bool IsStructViewActive() const override { return structView_.IsActive(); }
    void ActivateStructView() override { structView_.Activate(); }
    bool PostInspectorRows(std::unique_ptr<PostedInspectorRows>&& rows) override;
    bool PostStructRows(std::unique_ptr<PostedStructRows>&& rows) override;

private:
    HINSTANCE Instance() const;
    DockTarget Target() const;
    void DockPane(HWND pane, DockSide side) const;

    HWND main_ = nullptr;
    bool docking_ = false;
    bool dockAgain_ = false; ///< asked for while docking
    InspectorWindow inspector_;
    StructViewWindow structView_;
};

} // namespace kvx
