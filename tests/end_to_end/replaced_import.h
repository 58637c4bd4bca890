// Other functions in the place of the system's, for what a test cannot bring about in the system.
#pragma once

#include <windows.h>

/// Names the place where this program keeps the address of a function of a system library.
#define KIVRA_IMPORT(function) extern "C" decltype(&::function) __imp_##function

namespace kvx::test {

/// This program calls `replacement` instead, for as long as this lives.
template <typename Function>
class ReplacedImport {
public:
    ReplacedImport(Function*& place, Function* replacement) : place_(place), system_(place) {
        Put(replacement);
    }
    ~ReplacedImport() { Put(system_); }
    ReplacedImport(const ReplacedImport&) = delete;
    ReplacedImport& operator=(const ReplacedImport&) = delete;

private:
    void Put(Function* function) {
        DWORD before = 0;
        ::VirtualProtect(&place_, sizeof place_, PAGE_READWRITE, &before);
        place_ = function;
        ::VirtualProtect(&place_, sizeof place_, before, &before);
    }

    Function*& place_;
    Function* const system_;
};

} // namespace kvx::test
