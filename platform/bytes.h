// The byte buffer of the whole program: a vector whose growth leaves new bytes unset, because
// almost every buffer is filled by a file read straight away and clearing it first costs as much as
// the read.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <span>
#include <utility>
#include <vector>

namespace kvx {

/// Allocator that default-initialises on resize (no clearing) and otherwise acts as std::allocator.
/// Explicit values (`Bytes(n, 0)`, `resize(n, 0)`) are stored as usual.
///
/// Large blocks start in the middle of a page. A system copies file bytes from its own pages, where
/// they lie as in the file, and on many processors two to five times slower to a target that lies 1
/// to 31 bytes further in its page: which is where an ordinary large block starts, and where bytes
/// belong that a few inserted ones have moved.
template <typename T>
class UnsetAllocator : public std::allocator<T> {
public:
    template <typename U>
    struct rebind {
        using other = UnsetAllocator<U>;
    };

    using std::allocator<T>::allocator;

    T* allocate(std::size_t count) {
        if (!IsLarge(count)) return std::allocator<T>::allocate(count);
        void* pages = ::operator new(count * sizeof(T) + kHalfPage, kPageAlignment);
        return reinterpret_cast<T*>(static_cast<std::byte*>(pages) + kHalfPage);
    }

    void deallocate(T* block, std::size_t count) {
        if (!IsLarge(count)) return std::allocator<T>::deallocate(block, count);
        ::operator delete(reinterpret_cast<std::byte*>(block) - kHalfPage, kPageAlignment);
    }

    template <typename U>
    void construct(U* place) {
        ::new (static_cast<void*>(place)) U;
    }

    template <typename U, typename... Args>
    void construct(U* place, Args&&... args) {
        ::new (static_cast<void*>(place)) U(std::forward<Args>(args)...);
    }

private:
    static constexpr std::size_t kHalfPage = 2048;
    static constexpr std::align_val_t kPageAlignment{2 * kHalfPage};
    static constexpr std::size_t kLargeBytes = std::size_t{32} << 10;

    static bool IsLarge(std::size_t count) { return count >= kLargeBytes / sizeof(T); }
};

/// Owned bytes. `Bytes(n)` and `resize(n)` leave new bytes unset: write before you read.
using Bytes = std::vector<std::uint8_t, UnsetAllocator<std::uint8_t>>;

/// Borrowed bytes, never owned, valid as long as what they point into.
using ByteView = std::span<const std::uint8_t>;

} // namespace kvx
