// Values are found by searching the text for their quoted keys, not by parsing it: a damaged file
// still gives whatever can be found in it, and what the search rules give is the file's meaning.
// Some of their results surprise: the first "language" in the file may be the one of its encoding.
#include "platform/text.h"
#include "settings/settings_file.h"
#include "settings/stored_names.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <functional>
#include <optional>

namespace kvx {
namespace {

constexpr std::size_t kNone = std::string_view::npos;

/// Position of the quoted `key` at or after `from`; kNone when it is missing or `from` is kNone.
/// Skips by the key's length, so that a huge file full of quotes costs no more than any other.
std::size_t FindKey(std::string_view text, std::string_view key, std::size_t from) {
    if (from >= text.size()) return kNone;
    const std::string quoted = '"' + std::string(key) + '"';
    const std::boyer_moore_horspool_searcher searcher(quoted.begin(), quoted.end());
    const auto found =
        std::search(text.begin() + static_cast<std::ptrdiff_t>(from), text.end(), searcher);
    return found == text.end() ? kNone : static_cast<std::size_t>(found - text.begin());
}

/// Position after the ":" that follows the quoted `key`; kNone when one of them is missing.
std::size_t FindValue(std::string_view text, std::string_view key, std::size_t from) {
    const std::size_t keyStart = FindKey(text, key, from);
    if (keyStart == kNone) return kNone;
    const std::size_t colon = text.find(':', keyStart + key.size() + 2);
    return colon == kNone ? kNone : colon + 1;
}

char Unescaped(char letter) {
    switch (letter) {
    case 'b':
        return '\b';
    case 'f':
        return '\f';
    case 'n':
        return '\n';
    case 'r':
        return '\r';
    case 't':
        return '\t';
    default:
        return letter; // also for the u of a character code, whose digits then stand as text
    }
}

/// Reads the string whose opening quote is the next one at or after `position` and moves `position`
/// past its closing quote. Empty, with `position` at the end, when there is none or it is not
/// closed.
std::optional<std::string> NextString(std::string_view text, std::size_t& position) {
    std::size_t index = text.find('"', position);
    position = text.size();
    if (index == kNone) return std::nullopt;

    std::string value;
    while (++index < text.size() && text[index] != '"') {
        if (text[index] != '\\') {
            value += text[index];
        } else if (++index < text.size()) {
            value += Unescaped(text[index]);
        }
    }
    if (index >= text.size()) return std::nullopt;
    position = index + 1;
    return value;
}

std::optional<std::string> FindString(std::string_view text, std::string_view key,
                                      std::size_t from) {
    std::size_t position = FindValue(text, key, from);
    if (position == kNone) return std::nullopt;
    return NextString(text, position);
}

/// What follows the value's colon and any white space; empty when there is no such key.
std::string_view FindLiteral(std::string_view text, std::string_view key, std::size_t from) {
    const std::size_t value = FindValue(text, key, from);
    const std::size_t start = text.find_first_not_of(" \t\n\v\f\r", value);
    return start == kNone ? std::string_view{} : text.substr(start);
}

std::optional<bool> FindBool(std::string_view text, std::string_view key, std::size_t from) {
    const std::string_view literal = FindLiteral(text, key, from);
    if (literal.starts_with("true")) return true;
    if (literal.starts_with("false")) return false;
    return std::nullopt;
}

/// The leading number of the value, read alike in every locale of the process.
std::optional<float> FindNumber(std::string_view text, std::string_view key, std::size_t from) {
    std::string_view literal = FindLiteral(text, key, from);
    if (literal.starts_with("+")) literal.remove_prefix(1);
    float number = 0;
    const std::from_chars_result result =
        std::from_chars(literal.data(), literal.data() + literal.size(), number);
    if (result.ec != std::errc{} || !std::isfinite(number)) return std::nullopt;
    return number;
}

/// First character of `closing` at or after `from`, outside strings, that is not the partner of an
/// `opening` one met on the way; kNone when there is none.
std::size_t FindClosing(std::string_view text, std::size_t from, std::string_view opening,
                        std::string_view closing) {
    std::size_t depth = 1;
    bool inString = false;
    for (std::size_t index = from; index < text.size(); ++index) {
        const char c = text[index];
        if (inString && c == '\\') {
            ++index;
        } else if (c == '"') {
            inString = !inString;
        } else if (inString) {
            continue;
        } else if (opening.find(c) != kNone) {
            ++depth;
        } else if (closing.find(c) != kNone && --depth == 0) {
            return index;
        }
    }
    return kNone;
}

/// What stands between the "[" after `key` and the end that `findEnd(text, start)` finds for it.
template <typename FindEnd>
std::optional<std::string_view> FindList(std::string_view text, std::string_view key,
                                         FindEnd findEnd) {
    const std::size_t bracket = text.find('[', FindKey(text, key, 0));
    if (bracket == kNone) return std::nullopt;
    const std::size_t end = findEnd(text, bracket + 1);
    if (end == kNone) return std::nullopt;
    return text.substr(bracket + 1, end - bracket - 1);
}

template <typename Value>
void Take(const std::optional<Value>& found, Value& field) {
    if (found) field = *found;
}

void Take(const std::optional<std::string>& found, std::u16string& field) {
    if (found) field = Utf8ToUtf16(*found);
}

template <typename Enum, std::size_t kCount>
void Take(const std::optional<std::string>& found, const StoredNames<Enum, kCount>& names,
          Enum& field) {
    if (found) field = names.ValueOf(*found);
}

template <typename Enum, std::size_t kCount>
void TakeUnlessEmpty(const std::optional<std::string>& found,
                     const StoredNames<Enum, kCount>& names, Enum& field) {
    if (found && !found->empty()) field = names.ValueOf(*found);
}

void ReadEncoding(std::string_view text, AppSettings& settings) {
    const std::size_t from = FindKey(text, "encoding", 0);
    const std::optional<std::string> kind = FindString(text, "kind", from);
    if (kind == "common") {
        if (const auto identifier = FindString(text, "common", from)) {
            settings.textEncoding = EncodingOfIdentifier(*identifier);
        }
    } else if (kind == "charset") {
        const auto languageGroup = FindString(text, "language", from);
        const auto identifier = FindString(text, "code", from);
        if (languageGroup && identifier) {
            Take(EncodingOfCharset(*languageGroup, *identifier), settings.textEncoding);
        }
    }
}

void ReadFont(std::string_view text, AppSettings& settings) {
    const std::size_t from = FindKey(text, "font", 0);
    Take(FindString(text, "family", from), settings.fontFamily);
    const std::optional<float> size = FindNumber(text, "size", from);
    if (size > 0.0F) settings.fontSize = *size;
    Take(FindBool(text, "bold", from), settings.bold);
    Take(FindBool(text, "italic", from), settings.italic);
}

void ReadPanes(std::string_view text, AppSettings& settings) {
    const std::size_t panes = FindKey(text, "analysis", 0);
    const std::size_t dataInspector = FindKey(text, "dataInspector", panes);
    Take(FindBool(text, "visible", dataInspector), settings.dataInspectorVisible);

    const std::size_t structView = FindKey(text, "structView", panes);
    StructViewFormat& format = settings.structViewFormat;
    Take(FindBool(text, "visible", structView), settings.structViewVisible);
    Take(FindString(text, "byteArrayFormat", structView), kByteArrayFormatNames,
         format.byteArrayFormat);
    Take(FindString(text, "endian", structView), kEndianNames, format.endian);
    Take(FindString(text, "numericBase", structView), kNumericBaseNames, format.numericBase);
}

void ReadFavoriteEncodings(std::string_view text, AppSettings& settings) {
    const auto list =
        FindList(text, "encodingFavorites", [](std::string_view all, std::size_t start) {
            return FindClosing(all, start, "[", "]");
        });
    if (!list) return;
    std::vector<TextEncoding>& favorites = settings.favoriteEncodings;
    favorites.clear();
    std::size_t position = 0;
    while (favorites.size() < kMaxFavoriteEncodings) {
        const std::optional<std::string> identifier = NextString(*list, position);
        if (!identifier) break;
        const TextEncoding encoding = EncodingOfIdentifier(*identifier);
        if (std::ranges::find(favorites, encoding) == favorites.end())
            favorites.push_back(encoding);
    }
}

/// The list ends at the first "]" even inside a path: a path with that character and all after it
/// are not read.
void ReadRecentFiles(std::string_view text, AppSettings& settings) {
    const auto list = FindList(text, "recentFiles", [](std::string_view all, std::size_t start) {
        return all.find(']', start);
    });
    if (!list) return;
    settings.recentFiles.clear();
    std::size_t position = 0;
    while (const std::optional<std::string> path = NextString(*list, position)) {
        settings.recentFiles.push_back(Utf8ToUtf16(*path));
    }
}

void ReadSearchHistory(std::string_view text, AppSettings& settings) {
    const auto list = FindList(text, "searchHistory", [](std::string_view all, std::size_t start) {
        return FindClosing(all, start, "[{", "]}");
    });
    if (!list) return;
    settings.searchHistory.clear();
    std::size_t position = 0;
    while (true) {
        const std::size_t open = FindClosing(*list, position, "", "{");
        const std::size_t close = open == kNone ? kNone : FindClosing(*list, open + 1, "{", "}");
        if (close == kNone) return;
        const std::string_view entry = list->substr(open + 1, close - open - 1);
        const std::optional<std::string> kind = FindString(entry, "kind", 0);
        const std::optional<std::string> query = FindString(entry, "query", 0);
        if (kind && query) {
            settings.searchHistory.push_back({Utf8ToUtf16(*kind), Utf8ToUtf16(*query)});
        }
        position = close + 1;
    }
}

} // namespace

void ReadSettingsText(std::string_view text, AppSettings& settings) {
    // A byte-order mark at the start stands before every key and so is never seen.
    Take(FindString(text, "appVersion", 0), settings.appVersion);
    ReadEncoding(text, settings);
    ReadFavoriteEncodings(text, settings);
    TakeUnlessEmpty(FindString(text, "theme", 0), kThemeNames, settings.theme);
    TakeUnlessEmpty(FindString(text, "language", 0), kUiLanguageNames, settings.uiLanguage);
    ReadFont(text, settings);
    ReadPanes(text, settings);
    ReadRecentFiles(text, settings);
    ReadSearchHistory(text, settings);
}

} // namespace kvx
