#include "app/pane_commands.h"

#include "panes/value_format_menu.h"
#include "platform/system.h"

#include <optional>
#include <utility>

namespace kvx {
namespace {

void CreateInspector(Shell& shell) {
    AnalysisPanes& panes = shell.Panes();
    panes.inspector.SetTexts(shell.TextsByKey());
    if (panes.host.CreateInspector(panes.inspector, shell.TextsByKey(), shell.View().State().theme))
        ScheduleInspectorUpdate(shell);
}

// Rows that are still on their way find no window to be shown in. Those that were shown are not to
// be seen again when the window comes back: the caret is elsewhere by then.
void DestroyInspector(Shell& shell) {
    shell.Panes().inspectorWorker.DropPending();
    shell.Panes().host.DestroyInspector();
    shell.Panes().inspector.SetRows({});
}

void CreateStructView(Shell& shell) {
    AnalysisPanes& panes = shell.Panes();
    panes.structView.SetTexts(shell.TextsByKey());
    if (panes.host.CreateStructView(panes.structView, shell.TextsByKey(),
                                    shell.View().State().theme))
        ScheduleStructViewUpdate(shell);
}

void DestroyStructView(Shell& shell) {
    shell.Panes().structViewWorker.DropPending();
    shell.Panes().host.DestroyStructView();
    shell.Panes().structView.SetRows({});
}

void KeepVisibility(Shell& shell, bool& visible, bool shown) {
    visible = shown;
    shell.SaveSettings();
    shell.RebuildMenu();
}

void ShowPattern(Shell& shell) {
    shell.Panes().host.ShowStructPattern();
    ScheduleStructViewUpdate(shell);
}

} // namespace

void StartPanes(Shell& shell) {
    AnalysisPanes& panes = shell.Panes();
    panes.structView.SetFormat(shell.Settings().structViewFormat);
    panes.inspectorWorker.Start();
    panes.structViewWorker.Start();
}

void ShowPanes(Shell& shell) {
    if (shell.Settings().dataInspectorVisible) CreateInspector(shell);
    if (shell.Settings().structViewVisible) CreateStructView(shell);
}

void StopPanes(Shell& shell) {
    DestroyInspector(shell);
    shell.Panes().inspectorWorker.Stop();
    DestroyStructView(shell);
    shell.Panes().structViewWorker.Stop();
}

// 96 bytes, whatever the size of the document: all that a key waits for.
void ScheduleInspectorUpdate(Shell& shell) {
    AnalysisPanes& panes = shell.Panes();
    if (!panes.host.HasInspector()) return;
    const HexViewState& view = shell.View().State();
    panes.inspectorWorker.Submit(
        MakeInspectorRequest(shell.Document(), view.caret, view.encoding,
                             shell.Text("inspector.data.value.unavailable")));
}

void ScheduleStructViewUpdate(Shell& shell) {
    AnalysisPanes& panes = shell.Panes();
    if (!panes.host.HasStructView()) return;
    auto request = panes.structView.MakeRequest(shell.Document(), shell.View().State().caret);
    if (request) {
        panes.structViewWorker.Submit(*std::move(request));
    } else {
        panes.structViewWorker.DropPending();
        panes.host.ShowStructRows();
    }
}

void SchedulePaneUpdates(Shell& shell) {
    ScheduleInspectorUpdate(shell);
    ScheduleStructViewUpdate(shell);
}

void ShowInspectorRows(Shell& shell, PostedInspectorRows rows) {
    AnalysisPanes& panes = shell.Panes();
    if (!panes.inspectorWorker.IsLatest(rows.serial) || !panes.host.HasInspector()) return;
    panes.inspector.SetRows(std::move(rows.result));
    panes.host.ShowInspectorRows();
}

void ShowStructRows(Shell& shell, PostedStructRows rows) {
    AnalysisPanes& panes = shell.Panes();
    if (!panes.structViewWorker.IsLatest(rows.serial) || !panes.host.HasStructView()) return;
    panes.structView.SetRows(std::move(rows.result));
    panes.host.ShowStructRows();
}

void RelabelPanes(Shell& shell) {
    AnalysisPanes& panes = shell.Panes();
    panes.inspector.SetTexts(shell.TextsByKey());
    panes.structView.SetTexts(shell.TextsByKey());
    panes.host.ShowTexts();
    SchedulePaneUpdates(shell); // values that are not there are told of in words
}

void ToggleInspector(Shell& shell) {
    if (shell.Panes().host.HasInspector()) {
        OnInspectorClosed(shell);
    } else {
        CreateInspector(shell);
        KeepVisibility(shell, shell.Settings().dataInspectorVisible,
                       shell.Panes().host.HasInspector());
    }
}

void ToggleStructView(Shell& shell) {
    if (shell.Panes().host.HasStructView()) {
        OnStructViewClosed(shell);
    } else {
        CreateStructView(shell);
        KeepVisibility(shell, shell.Settings().structViewVisible,
                       shell.Panes().host.HasStructView());
    }
}

void OnInspectorClosed(Shell& shell) {
    KeepVisibility(shell, shell.Settings().dataInspectorVisible, false);
    DestroyInspector(shell);
}

void OnStructViewClosed(Shell& shell) {
    KeepVisibility(shell, shell.Settings().structViewVisible, false);
    DestroyStructView(shell);
}

void OpenStructPattern(Shell& shell) {
    if (!shell.AcceptsCommands()) return;
    AnalysisPanes& panes = shell.Panes();
    const auto path = shell.WhileModal([&](ShellHost&) {
        return panes.host.ChoosePattern(shell.Text("dialog.struct_definition.title"),
                                        panes.structView.StartFolder(ProgramFolder()));
    });
    if (path) LoadStructPattern(shell, *path);
}

void LoadStructPattern(Shell& shell, const std::u16string& path) {
    shell.Panes().structView.Load(path);
    ShowPattern(shell);
}

void ReloadStructPattern(Shell& shell) {
    AnalysisPanes& panes = shell.Panes();
    if (panes.structView.Path().empty()) return;
    const bool active = panes.host.IsStructViewActive();
    panes.structView.Reload();
    ShowPattern(shell);
    if (active) panes.host.ActivateStructView();
}

void CloseStructPattern(Shell& shell) {
    shell.Panes().structView.Close();
    ShowPattern(shell);
}

void ChooseValueFormat(Shell& shell, std::uint32_t option) {
    StructViewModel& view = shell.Panes().structView;
    if (!view.SetFormat(WithValueFormat(view.Format(), option))) return;
    shell.Settings().structViewFormat = view.Format();
    shell.SaveSettings();
    ScheduleStructViewUpdate(shell);
}

} // namespace kvx
