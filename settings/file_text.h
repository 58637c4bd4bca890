// Whole text files in one read, for the settings and the string files.
#pragma once

#include "platform/file_layer.h"

#include <cstdint>
#include <optional>
#include <string>

namespace kvx {

/// Larger files are taken for something else and not read.
inline constexpr std::uint64_t kMaxTextFileBytes = std::uint64_t{256} << 20;

/// Reads `file` from its start to its end; empty when it is too large or a read fails.
std::optional<std::string> ReadWholeFile(const ReadableFile& file);

} // namespace kvx
