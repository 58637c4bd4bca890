#include "panes/inspector_window.h"

namespace kvx {
namespace {

constexpr PaneKind kKind{.className = L"Kivra.DataInspectorWindow",
                         .closed = PaneNotification::InspectorClosed,
                         .columns = kInspectorColumns,
                         .rowFont = L"Segoe UI",
                         .minimumWidth = 240,
                         .minimumHeight = 200};

constexpr int kStartWidth = 544; ///< pixels at 96 DPI: both columns in full

} // namespace

InspectorWindow::InspectorWindow() : PaneWindow(kKind) {}

bool InspectorWindow::Create(HINSTANCE instance, HWND owner, const InspectorModel& model,
                             const TextLookup& text, Theme theme) {
    text_ = text;
    if (!PaneWindow::Create(instance, owner, model, theme, kStartWidth)) return false;
    ShowTexts();
    return true;
}

void InspectorWindow::ShowTexts() {
    if (Handle() == nullptr) return;
    SetTitle(text_("inspector.data.title"));
    Repaint();
}

} // namespace kvx
