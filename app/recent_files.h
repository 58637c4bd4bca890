// The list of files that were open last.
#pragma once

#include "platform/system.h"

#include <functional>
#include <string>
#include <vector>

namespace kvx {

/// Brings spellings of one path to one form.
using PathNormalizer = std::function<std::u16string(const std::u16string& path)>;

/// Puts `path`, spelt as given, at the front of `recentFiles` (newest first), removes the older
/// entries that name the same file and cuts the list to kMaxRecentFiles. An empty path changes
/// nothing.
void AddRecentFile(std::vector<std::u16string>& recentFiles, const std::u16string& path,
                   const PathNormalizer& normalize = NormalizedPath);

} // namespace kvx
