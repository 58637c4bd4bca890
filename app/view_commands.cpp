#include "app/view_commands.h"

#include "app/pane_commands.h"

namespace kvx {
namespace {

constexpr float kZoomStep = 0.1F;

void ZoomBy(Shell& shell, float step) {
    shell.View().SetZoom(step);
    shell.RebuildMenu();
}

} // namespace

void ToggleReadOnly(Shell& shell) {
    shell.View().ToggleEditable();
    shell.RebuildMenu();
    shell.RefreshStatus();
}

void SelectTheme(Shell& shell, Theme theme) {
    if (shell.View().State().theme != theme) shell.View().SetTheme(theme);
    shell.Settings().theme = theme;
    shell.SaveSettings();
    shell.ShowStatusBackground();
    shell.Panes().host.ShowTheme(theme);
    shell.RebuildMenu();
    shell.RefreshStatus();
    ScheduleStructViewUpdate(shell);
}

void SelectLanguage(Shell& shell, UiLanguage language) {
    shell.Strings().SetLanguage(language);
    shell.Settings().uiLanguage = language;
    shell.SaveSettings();
    shell.RebuildMenu();
    shell.UpdateTitle();
    shell.RefreshStatus();
    RelabelPanes(shell);
}

void ZoomOut(Shell& shell) {
    ZoomBy(shell, -kZoomStep);
}

void ZoomIn(Shell& shell) {
    ZoomBy(shell, kZoomStep);
}

void ResetZoom(Shell& shell) {
    shell.View().ResetZoom();
    shell.RebuildMenu();
}

} // namespace kvx
