// The byte buffer of the whole program: a vector whose growth leaves new bytes unset, because
// almost every buffer is filled by a file read straight away and clearing it first costs as much as
// the read.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <utility>
#include <vector>

namespace kvx {

/// Allocator that default-initialises on resize (no clearing) and otherwise acts as std::allocator.
/// Explicit values (`Bytes(n, 0)`, `resize(n, 0)`) are stored as usual.
template <typename T>
class UnsetAllocator : public std::allocator<T> {
public:
    template <typename U>
    struct rebind {
        using other = UnsetAllocator<U>;
    };

    using std::allocator<T>::allocator;

    template <typename U>
    void construct(U* place) {
        ::new (static_cast<void*>(place)) U;
    }

    template <typename U, typename... Args>
    void construct(U* place, Args&&... args) {
        ::new (static_cast<void*>(place)) U(std::forward<Args>(args)...);
    }
};

/// Owned bytes. `Bytes(n)` and `resize(n)` leave new bytes unset: write before you read.
using Bytes = std::vector<std::uint8_t, UnsetAllocator<std::uint8_t>>;

/// Borrowed bytes, never owned, valid as long as what they point into.
using ByteView = std::span<const std::uint8_t>;

} // namespace kvx
