// Lets a test run out of memory at a chosen moment.
#pragma once

namespace kvx {

/// While it lives, only the given number of allocations succeed in the whole program. One at a
/// time.
class ScarceMemory {
public:
    explicit ScarceMemory(int allocations);
    ScarceMemory(const ScarceMemory&) = delete;
    ScarceMemory& operator=(const ScarceMemory&) = delete;
    ~ScarceMemory();
};

} // namespace kvx
