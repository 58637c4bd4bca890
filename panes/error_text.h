// An error of a pattern file as a text box of fixed pitch shows it.
#pragma once

#include <string>
#include <string_view>

namespace kvx {

/// True when a character of `text` takes two columns.
bool HasFullWidth(std::u16string_view text);

/// `error` with the caret of its last row where the eye looks for it in the row above: a TAB or
/// another control there becomes one blank, and the caret row gets blanks as wide as the characters
/// over them. Of a very long row only the surroundings of the caret are kept. Without such rows it
/// stays as it is. Rows end in CR LF.
std::u16string WithCaretInPlace(std::u16string_view error);

} // namespace kvx
