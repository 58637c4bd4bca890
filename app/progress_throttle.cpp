#include "app/progress_throttle.h"

namespace kvx {
namespace {

constexpr std::uint64_t kSamePercentPauseMs = 100;
constexpr std::uint64_t kPauseMs = 50;

std::uint64_t PercentOf(std::uint64_t done, std::uint64_t total) {
    return done >= total ? 100 : done * 100 / total;
}

} // namespace

std::optional<std::uint64_t> ProgressThrottle::Report(std::uint64_t done, std::uint64_t total,
                                                      std::uint64_t tick) {
    const std::uint64_t percent = PercentOf(done, total);
    const std::uint64_t elapsed = tick - lastTick_;
    if (percent == lastPercent_ && elapsed < kSamePercentPauseMs) return std::nullopt;
    if (percent >= 1 && percent <= 99 && elapsed < kPauseMs) return std::nullopt;
    lastPercent_ = percent;
    lastTick_ = tick;
    return percent;
}

} // namespace kvx
