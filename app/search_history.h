// The list of past searches in the settings, and the part of it that a search of one type shows.
#pragma once

#include "app/search_query.h"
#include "settings/app_settings.h"

#include <string>
#include <vector>

namespace kvx {

inline constexpr std::size_t kMaxSearchHistory = 16;

/// Puts a search at the front of `history` (newest first), removes its older entry and cuts the
/// list to kMaxSearchHistory.
void AddToSearchHistory(std::vector<SearchHistoryEntry>& history, SearchType type,
                        const std::u16string& query);

/// The queries of `history` that belong to `type`, newest first.
std::vector<std::u16string> QueriesOfType(const std::vector<SearchHistoryEntry>& history,
                                          SearchType type);

} // namespace kvx
