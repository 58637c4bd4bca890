// The search that a press of Next or Previous in the search dialog runs.
#pragma once

#include "app/search_query.h"
#include "app/shell.h"

#include <string>
#include <vector>

namespace kvx {

/// What a running search asks of the dialog that waits for it. Every call comes from the main
/// thread, inside RunSearch.
class SearchDialogHost {
public:
    virtual ~SearchDialogHost() = default;

    // Modal boxes owned by the dialog.
    virtual void ShowError(const std::u16string& text, const std::u16string& caption) = 0;
    virtual void ShowInformation(const std::u16string& text, const std::u16string& caption) = 0;

    /// `history` (newest first, both types) has changed: the dialog fills its list again.
    virtual void ShowHistory(const std::vector<SearchHistoryEntry>& history) = 0;

    /// True while the Esc key is down, whoever has the focus.
    virtual bool IsEscapeDown() const = 0;

    /// The dialog's request to cancel, which its Close button sets too. The dialog clears it before
    /// each search.
    virtual void RequestCancel() = 0;
    virtual bool IsCancelRequested() const = 0;
};

/// Runs one whole search: reads the query, remembers it, searches with progress in the status bar
/// while messages are dispatched, and selects the hit or says that there is none. Does nothing when
/// no file is open, a search runs already or the direction is None.
void RunSearch(Shell& shell, SearchDialogHost& dialog, const SearchDialogResult& request,
               SearchDirection direction);

} // namespace kvx
