#include "app/search_dialog.h"

#include "app/search_history.h"
#include "platform/win32/wide.h"

#include <utility>

namespace kvx {
namespace {

// What takes no input while a search runs.
constexpr int kInputIds[] = {kSearchTypeId, kSearchQueryId, kSearchPreviousId, kDefaultButtonId};

} // namespace

SearchDialog::SearchDialog(const SearchDialogContent& content, TextLookup text)
    : ModalDialogWindow({L"Kivra.SearchDialog", WS_POPUP | WS_CAPTION | WS_SYSMENU,
                         WS_EX_DLGMODALFRAME | WS_EX_CONTROLPARENT},
                        kSearchLayout),
      content_(content), text_(std::move(text)), history_(content.history) {}

void SearchDialog::OnCreated() {
    for (const std::string_view key : {"dialog.search.type.hex", "dialog.search.type.text"}) {
        const std::u16string name = text_(key);
        ::SendMessageW(Control(kSearchTypeId), CB_ADDSTRING, 0,
                       reinterpret_cast<LPARAM>(AsWide(name)));
    }
    ::SendMessageW(Control(kSearchTypeId), CB_SETCURSEL, 0, 0);
    TakeType();
}

void SearchDialog::OnCommand(int id, int notification) {
    switch (id) {
    case kDefaultButtonId:
        Request(SearchDirection::Next);
        break;
    case kSearchPreviousId:
        Request(SearchDirection::Previous);
        break;
    case kCancelButtonId:
        OnCloseRequest();
        break;
    case kSearchTypeId:
        if (notification == CBN_SELCHANGE) TakeType();
        break;
    default:
        break;
    }
}

void SearchDialog::Request(SearchDirection direction) {
    state_.RequestSearch(direction);
    WakeLoop();
}

void SearchDialog::OnCloseRequest() {
    state_.RequestClose();
    if (state_.Closed()) Close();
}

// Close keeps the focus meanwhile, so that the keyboard can cancel too.
void SearchDialog::AfterMessage() {
    const SearchDirection direction = state_.TakeRequest();
    if (direction == SearchDirection::None) return;
    const SearchDialogResult request{SelectedType(), ControlText(kSearchQueryId)};
    state_.BeginSearch();
    FocusOn(kCancelButtonId);
    EnableInput(false);
    content_.search(*this, request, direction);
    state_.EndSearch();
    EnableInput(true);
    FocusOn(kSearchQueryId);
}

void SearchDialog::EnableInput(bool enabled) const {
    for (const int id : kInputIds)
        ::EnableWindow(Control(id), enabled ? TRUE : FALSE);
}

SearchType SearchDialog::SelectedType() const {
    const LRESULT selected = ::SendMessageW(Control(kSearchTypeId), CB_GETCURSEL, 0, 0);
    return selected == 1 ? SearchType::Text : SearchType::Hex;
}

void SearchDialog::TakeType() {
    const std::size_t limit = MaxQueryLength(SelectedType(), content_.encoding);
    ::SendMessageW(Control(kSearchQueryId), CB_LIMITTEXT, limit, 0);
    FillHistory();
}

void SearchDialog::FillHistory() const {
    const HWND list = Control(kSearchQueryId);
    const std::u16string typed = ControlText(kSearchQueryId);
    ::SendMessageW(list, CB_RESETCONTENT, 0, 0);
    for (const std::u16string& query : QueriesOfType(history_, SelectedType()))
        ::SendMessageW(list, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(AsWide(query)));
    SetControlText(kSearchQueryId, typed);
    ::SendMessageW(list, CB_SETEDITSEL, 0, MAKELPARAM(0, -1));
}

void SearchDialog::ShowError(const std::u16string& text, const std::u16string& caption) {
    ::MessageBoxW(Window(), AsWide(text), AsWide(caption), MB_OK | MB_ICONERROR);
}

void SearchDialog::ShowInformation(const std::u16string& text, const std::u16string& caption) {
    ::MessageBoxW(Window(), AsWide(text), AsWide(caption), MB_OK | MB_ICONINFORMATION);
}

void SearchDialog::ShowHistory(const std::vector<SearchHistoryEntry>& history) {
    history_ = history;
    FillHistory();
}

bool SearchDialog::IsEscapeDown() const {
    constexpr unsigned kIsDown = 0x8000;
    return (static_cast<unsigned>(::GetAsyncKeyState(VK_ESCAPE)) & kIsDown) != 0;
}

// A window that went with its owner waits for no result.
bool SearchDialog::IsCancelRequested() const {
    return state_.CancelRequested() || Window() == nullptr;
}

} // namespace kvx
