// Waiting for another process to get somewhere, always with an end.
#pragma once

#include <chrono>
#include <functional>

namespace kvx::test {

/// Generous: a loaded machine is slow, and a test that passes never waits this long.
inline constexpr std::chrono::seconds kPatience{20};

/// Asks `done` every few milliseconds; false when it never said yes.
bool WaitUntil(const std::function<bool()>& done, std::chrono::milliseconds patience = kPatience);

} // namespace kvx::test
