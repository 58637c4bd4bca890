#include "app/search_history.h"

#include <algorithm>

namespace kvx {
namespace {

std::u16string KindOf(SearchType type) {
    return type == SearchType::Text ? u"text" : u"hex";
}

} // namespace

void AddToSearchHistory(std::vector<SearchHistoryEntry>& history, SearchType type,
                        const std::u16string& query) {
    const SearchHistoryEntry added{KindOf(type), query};
    std::erase(history, added);
    history.insert(history.begin(), added);
    if (history.size() > kMaxSearchHistory) history.resize(kMaxSearchHistory);
}

std::vector<std::u16string> QueriesOfType(const std::vector<SearchHistoryEntry>& history,
                                          SearchType type) {
    std::vector<std::u16string> queries;
    for (const SearchHistoryEntry& entry : history)
        if (entry.kind == KindOf(type)) queries.push_back(entry.query);
    return queries;
}

} // namespace kvx
