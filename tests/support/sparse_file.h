// Files of many gigabytes that take next to no space on the disk.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string_view>

namespace kvx {

/// Makes the file at `path`: `size` bytes that begin with `head` and end with `tail`, zeros
/// between.
void MakeSparseFile(const std::filesystem::path& path, std::uint64_t size, std::string_view head,
                    std::string_view tail);

} // namespace kvx
