#include "tests/document/scarce_memory.h"

#include <cstdlib>
#include <new>

namespace {

/// Allocations that still succeed; below zero: all of them.
int allocationsLeft = -1;

void* Allocate(std::size_t size) noexcept {
    if (allocationsLeft == 0) return nullptr;
    if (allocationsLeft > 0) --allocationsLeft;
    return std::malloc(size > 0 ? size : 1);
}

void* AllocateOrThrow(std::size_t size) {
    void* block = Allocate(size);
    if (!block) throw std::bad_alloc();
    return block;
}

} // namespace

namespace kvx {

ScarceMemory::ScarceMemory(int allocations) {
    allocationsLeft = allocations;
}

ScarceMemory::~ScarceMemory() {
    allocationsLeft = -1;
}

} // namespace kvx

// The program's allocation functions, all but those for over-aligned blocks.
void* operator new(std::size_t size) {
    return AllocateOrThrow(size);
}
void* operator new[](std::size_t size) {
    return AllocateOrThrow(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return Allocate(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return Allocate(size);
}
void operator delete(void* block) noexcept {
    std::free(block);
}
void operator delete[](void* block) noexcept {
    std::free(block);
}
void operator delete(void* block, std::size_t) noexcept {
    std::free(block);
}
void operator delete[](void* block, std::size_t) noexcept {
    std::free(block);
}
