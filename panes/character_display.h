// A decoded character as the panes show it.
#pragma once

#include <string>
#include <string_view>

namespace kvx {

/// The character, or its name where it would show as nothing, and its code points: "A (U+0041)",
/// "Space (U+0020)". `text` holds one character of one or more code points; an unpaired surrogate
/// counts as a code point. Empty for an empty text.
std::u16string FormatCharacterDisplay(std::u16string_view text);

} // namespace kvx
