// Names and numbers as the pattern language compares and reads them. Pure functions.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kvx {

/// The form in which keywords, directives and type names are compared: trimmed, lower case, each
/// run of inner white space one blank.
std::u16string NormalizeName(std::u16string_view name);

/// Appends the normalised form of one word, which has no white space.
void AppendNormalized(std::u16string& text, std::u16string_view word);

/// True when `word`, which has no white space, normalises to `normalized`.
bool WordMatches(std::u16string_view word, std::u16string_view normalized);

/// Signedness that a normalised type name tells: false for the unsigned spellings, for `float`,
/// `double` and `void`, true for all others.
bool IsSignedTypeName(std::u16string_view typeName);

/// The decimal number that `text` spells; empty when it is not all digits or leaves 64 bits.
std::optional<std::uint64_t> ParseUnsigned(std::u16string_view text);

} // namespace kvx
