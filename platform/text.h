// Text at the edges: UTF-8 in files and keys, UTF-16 inside. Pure functions.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kvx {

/// UTF-8 to UTF-16; each malformed byte becomes U+FFFD.
std::u16string Utf8ToUtf16(std::string_view text);

/// UTF-8 to UTF-16; empty optional when `text` has a malformed byte.
std::optional<std::u16string> StrictUtf8ToUtf16(std::string_view text);

/// UTF-16 to UTF-8; each lone surrogate becomes U+FFFD.
std::string Utf16ToUtf8(std::u16string_view text);

/// Order of two texts without regard to case, as the system compares file names: negative, 0,
/// positive.
int CompareIgnoringCase(std::u16string_view left, std::u16string_view right);

} // namespace kvx
