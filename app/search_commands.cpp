#include "app/search_commands.h"

#include "app/search.h"
#include "app/search_history.h"

#include <algorithm>

namespace kvx {
namespace {

constexpr char kCaptionKey[] = "dialog.search.title";

// Ends the searching state however the search is left: also by an exception.
class SearchScope {
public:
    explicit SearchScope(Shell& shell) : shell_(shell) {}
    ~SearchScope() { shell_.EndSearch(); }
    SearchScope(const SearchScope&) = delete;
    SearchScope& operator=(const SearchScope&) = delete;

private:
    Shell& shell_;
};

// Dispatching messages lets the dialog's Close button ask for the end too.
bool MayContinue(Shell& shell, SearchDialogHost& dialog) {
    if (dialog.IsEscapeDown()) dialog.RequestCancel();
    shell.Host().PumpMessages();
    return !dialog.IsCancelRequested();
}

SearchOutcome SearchShowingProgress(Shell& shell, SearchDialogHost& dialog, ByteView pattern,
                                    std::uint64_t start, SearchDirection direction) {
    const SearchScope searching(shell);
    shell.BeginSearch();
    const auto search = direction == SearchDirection::Next ? SearchForward : SearchBackward;
    return search(
        shell.Document(), pattern, start,
        [&](std::uint64_t done, std::uint64_t total) { shell.ReportSearchProgress(done, total); },
        [&] { return MayContinue(shell, dialog); }, kSearchBlockSize);
}

void Remember(Shell& shell, SearchDialogHost& dialog, SearchType type, std::u16string_view query) {
    std::vector<SearchHistoryEntry>& history = shell.Settings().searchHistory;
    AddToSearchHistory(history, type, std::u16string(query));
    shell.SaveSettings();
    dialog.ShowHistory(history);
}

// The caret first: setting it ends the selection.
void SelectHit(Shell& shell, std::uint64_t offset, std::size_t length) {
    shell.View().SetCaret(offset);
    shell.View().SetSelection(offset, offset + length - 1);
}

} // namespace

void RunSearch(Shell& shell, SearchDialogHost& dialog, const SearchDialogResult& request,
               SearchDirection direction) {
    if (!shell.Document().IsOpen() || shell.Busy() || direction == SearchDirection::None) return;
    const HexViewState& view = shell.View().State();
    const std::u16string_view query = TrimQuery(request.query);
    const auto built = BuildPattern(request.type, query, view.encoding);
    if (const auto* error = std::get_if<QueryError>(&built)) {
        dialog.ShowError(shell.Text(error->textKey), shell.Text(kCaptionKey));
        return;
    }
    Remember(shell, dialog, request.type, query);

    const Bytes& pattern = std::get<Bytes>(built);
    SearchOutcome outcome;
    if (const auto start = SearchStart(view, shell.Document().GetSize(), direction))
        outcome = SearchShowingProgress(shell, dialog, pattern, *start, direction);
    if (outcome.Found()) SelectHit(shell, outcome.offset, pattern.size());
    shell.RefreshStatus();
    if (outcome.status == SearchStatus::NotFound)
        dialog.ShowInformation(shell.Text("error.search_not_found"), shell.Text(kCaptionKey));
}

} // namespace kvx
