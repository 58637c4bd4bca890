// Decides which progress reports of a long operation are worth showing.
#pragma once

#include <cstdint>
#include <optional>

namespace kvx {

class ProgressThrottle {
public:
    /// The percentage to show for a report of `done` of `total` at `tick` (milliseconds), or
    /// nothing when it comes too soon after the last one that was shown.
    std::optional<std::uint64_t> Report(std::uint64_t done, std::uint64_t total,
                                        std::uint64_t tick);

private:
    std::uint64_t lastPercent_ = UINT64_MAX; ///< none shown yet
    std::uint64_t lastTick_ = 0;             ///< milliseconds
};

} // namespace kvx
