// How long operations tell how far they are.
#pragma once

#include <cstdint>
#include <functional>

namespace kvx {

/// Receives (bytes done, bytes total), total at least 1, on the thread of the operation. May be
/// empty.
using ProgressCallback = std::function<void(std::uint64_t done, std::uint64_t total)>;

} // namespace kvx
