// The search dialog, of class "Kivra.SearchDialog": stays open from search to search.
#pragma once

#include "app/dialogs.h"
#include "app/modal_dialog_window.h"
#include "app/search_commands.h"
#include "app/search_dialog_state.h"

#include <string>
#include <vector>

namespace kvx {

class SearchDialog final : public ModalDialogWindow, private SearchDialogHost {
public:
    /// `content` must outlive the dialog.
    SearchDialog(const SearchDialogContent& content, TextLookup text);

    /// Modal to `owner`.
    void Show(HWND owner) { Run(owner, text_("dialog.search.title"), text_); }

private:
    void OnCreated() override;
    int FirstFocus() const override { return kSearchQueryId; }
    void OnCommand(int id, int notification) override;
    void OnCloseRequest() override;
    void AfterMessage() override;

    void ShowError(const std::u16string& text, const std::u16string& caption) override;
    void ShowInformation(const std::u16string& text, const std::u16string& caption) override;
    void ShowHistory(const std::vector<SearchHistoryEntry>& history) override;
    bool IsEscapeDown() const override;
    void RequestCancel() override { state_.RequestClose(); }
    bool IsCancelRequested() const override;

    void Request(SearchDirection direction);
    SearchType SelectedType() const;
    void TakeType();
    void FillHistory() const;
    void EnableInput(bool enabled) const;

    const SearchDialogContent& content_;
    TextLookup text_;
    std::vector<SearchHistoryEntry> history_; ///< newest first, both types
    SearchDialogState state_;
};

} // namespace kvx
