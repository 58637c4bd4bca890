// Unique temporary files where the system has no call that makes them.
#pragma once

#include "platform/file_layer.h"

#include <functional>

namespace kvx {

/// Creates an empty file at a path unless one is there; 0 or the reason it could not.
using CreateNewFile = std::function<ErrorCode(const std::u16string& path)>;

/// Tries the names `prefix` + four hexadecimal digits + ".tmp" in `folder`, from number `start` on
/// and around, until `createNew` makes a file that did not exist. Gives its path; empty on the
/// first other failure and when all 65,536 names are taken, reason in `error`.
std::optional<std::u16string> MakeUniqueFile(const std::u16string& folder,
                                             std::u16string_view prefix, std::uint16_t start,
                                             const CreateNewFile& createNew, ErrorCode& error);

} // namespace kvx
