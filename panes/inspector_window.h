// The data inspector's window, of class "Kivra.DataInspectorWindow". Main thread only.
#pragma once

#include "panes/inspector_model.h"
#include "panes/pane_window.h"

namespace kvx {

class InspectorWindow final : public PaneWindow {
public:
    InspectorWindow();

    /// Makes the window, hidden; it shows `model`, which must outlive it. False on failure.
    bool Create(HINSTANCE instance, HWND owner, const InspectorModel& model, const TextLookup& text,
                Theme theme);

    /// The texts of the model and of the string table have changed.
    void ShowTexts();

private:
    TextLookup text_;
};

} // namespace kvx
