// What the shell asks of the two tool windows. Tests put a recording host here.
#pragma once

#include "panes/inspector_model.h"
#include "panes/struct_view_model.h"
#include "settings/text_lookup.h"

#include <memory>
#include <optional>
#include <string>

namespace kvx {

/// Every call comes from the main thread but for the posts, which come from the workers. A window
/// that does not exist shows nothing, whatever it is told.
class PaneHost {
public:
    virtual ~PaneHost() = default;

    /// Makes the window beside the main one. It shows `model`, which outlives it, and asks `text`
    /// for its own texts. False when the system refuses.
    virtual bool CreateInspector(const InspectorModel& model, const TextLookup& text,
                                 Theme theme) = 0;
    virtual void DestroyInspector() = 0;
    virtual bool HasInspector() const = 0;

    /// The same for the struct view, which switches its model's info text on and off.
    virtual bool CreateStructView(StructViewModel& model, const TextLookup& text, Theme theme) = 0;
    virtual void DestroyStructView() = 0;
    virtual bool HasStructView() const = 0;

    // What has changed.
    virtual void ShowInspectorRows() = 0;
    virtual void ShowStructRows() = 0;
    virtual void ShowStructPattern() = 0; ///< pattern, error and rows
    virtual void ShowTexts() = 0;         ///< another language, in both windows
    virtual void ShowTheme(Theme theme) = 0;

    /// Lets the user choose a pattern file, beginning in `folder`; empty when the user cancels.
    /// Modal. The window that had the focus has it again afterwards.
    virtual std::optional<std::u16string> ChoosePattern(const std::u16string& title,
                                                        const std::u16string& folder) = 0;

    /// True while the struct view or a control in it has the focus or is in the foreground.
    virtual bool IsStructViewActive() const = 0;
    virtual void ActivateStructView() = 0;

    /// Hand rows to the main thread; false when there is no main window any more.
    virtual bool PostInspectorRows(std::unique_ptr<PostedInspectorRows>&& rows) = 0;
    virtual bool PostStructRows(std::unique_ptr<PostedStructRows>&& rows) = 0;
};

} // namespace kvx
