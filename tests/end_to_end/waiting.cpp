#include "waiting.h"

#include <thread>

namespace kvx::test {

bool WaitUntil(const std::function<bool()>& done, std::chrono::milliseconds patience) {
    const auto end = std::chrono::steady_clock::now() + patience;
    while (!done()) {
        if (std::chrono::steady_clock::now() > end) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return true;
}

} // namespace kvx::test
