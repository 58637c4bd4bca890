// What the shell gives to its dialogs, and what they give back.
#pragma once

#include "app/font_choice.h"
#include "app/search_query.h"
#include "settings/text_lookup.h"

#include <functional>
#include <string>
#include <vector>

namespace kvx {

class SearchDialogHost;

/// A question that is answered with one line of text.
struct PromptContent {
    std::u16string title;
    std::u16string prompt;
    std::u16string initialText;
};

/// The lines of the about box; its other texts are looked up.
struct AboutContent {
    std::u16string productName;
    std::u16string version;
    std::u16string rights;
    std::u16string homepage; ///< address, opened when the user clicks on it
    std::u16string license;  ///< lines end in CR LF
};

struct FontDialogContent {
    std::vector<std::u16string> families; ///< not empty
    FontChoice current;
};

/// Runs one search for the dialog, which waits meanwhile.
using SearchCallback = std::function<void(
    SearchDialogHost& dialog, const SearchDialogResult& request, SearchDirection direction)>;

struct SearchDialogContent {
    TextEncoding encoding = TextEncoding::Ascii; ///< of the text searched for
    std::vector<SearchHistoryEntry> history;     ///< newest first, both types
    SearchCallback search;
};

} // namespace kvx
