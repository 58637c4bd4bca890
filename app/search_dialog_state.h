// What the search dialog has been asked for: presses are remembered while a message is dealt with
// and acted upon afterwards.
#pragma once

#include "app/search_query.h"

#include <utility>

namespace kvx {

class SearchDialogState {
public:
    /// Next or Previous was pressed; nothing while a search runs.
    void RequestSearch(SearchDirection direction) {
        if (!searching_) requested_ = direction;
    }

    /// Close, Esc or the window's close button: cancels a running search, else closes the dialog.
    void RequestClose() { (searching_ ? cancelRequested_ : closed_) = true; }

    /// What was asked for since the last call.
    SearchDirection TakeRequest() { return std::exchange(requested_, SearchDirection::None); }

    void BeginSearch() {
        searching_ = true;
        cancelRequested_ = false;
    }
    void EndSearch() { searching_ = false; }

    bool Closed() const { return closed_; }
    bool CancelRequested() const { return cancelRequested_; }

private:
    SearchDirection requested_ = SearchDirection::None;
    bool searching_ = false;
    bool cancelRequested_ = false;
    bool closed_ = false;
};

} // namespace kvx
