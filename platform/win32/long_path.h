// Paths as the file calls take them, also beyond the 260 characters that the plain spelling allows.
#pragma once

#include <string>

namespace kvx {

/// `path` unchanged while its full spelling fits the classic limit, else that spelling with the
/// prefix that lifts the limit. A path that has such a prefix already stays as it is.
std::u16string ExtendedPath(const std::u16string& path);

/// Full spelling of `path`; empty when the system gives none.
std::u16string FullPath(const std::u16string& path);

} // namespace kvx
