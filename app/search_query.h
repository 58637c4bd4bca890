// From what the user typed into the search dialog to the bytes to look for and where to start.
// Pure functions.
#pragma once

#include "encoding/text_encoding.h"
#include "hexview/hex_view_state.h"
#include "platform/bytes.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace kvx {

enum class SearchType : std::uint32_t { Hex = 0, Text = 1 };

enum class SearchDirection : std::uint32_t { None = 0, Previous = 1, Next = 2 };

/// What the search dialog holds when a search is asked for.
struct SearchDialogResult {
    SearchType type = SearchType::Hex;
    std::u16string query;

    friend bool operator==(const SearchDialogResult&, const SearchDialogResult&) = default;
};

inline constexpr std::size_t kMaxPatternBytes = 4096;

/// Longest query in UTF-16 units that the dialog takes: for bytes, room for kMaxPatternBytes pairs
/// with one separator between them; for text by what a character may become in `encoding`.
std::size_t MaxQueryLength(SearchType type, TextEncoding encoding);

/// `query` without the blanks, tabs and line ends around it.
std::u16string_view TrimQuery(std::u16string_view query);

/// A query that cannot be searched for: the key of the text that says why.
struct QueryError {
    std::string_view textKey;

    friend bool operator==(const QueryError&, const QueryError&) = default;
};

/// The bytes that a trimmed query stands for, 1 to kMaxPatternBytes of them.
std::variant<Bytes, QueryError> BuildPattern(SearchType type, std::u16string_view query,
                                             TextEncoding encoding);

/// Where a search of a document of `size` bytes begins: at the caret, or past the selection's first
/// byte, so that a hit, which is selected, is not found again. Empty when nothing is left there.
std::optional<std::uint64_t> SearchStart(const HexViewState& view, std::uint64_t size,
                                         SearchDirection direction);

} // namespace kvx
