// Items side by side in a node, without memory of their own.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

namespace kvx {

/// At most N items. Whoever adds items has made sure that there is room. Places past the count hold
/// empty items.
template <typename T, std::size_t N>
class FixedVector {
public:
    std::size_t Count() const { return count_; }
    T& operator[](std::size_t index) { return items_[index]; }
    const T& operator[](std::size_t index) const { return items_[index]; }
    const T* begin() const { return items_.data(); }
    const T* end() const { return items_.data() + count_; }

    void Insert(std::size_t index, T item) noexcept {
        std::move_backward(At(index), At(count_), At(count_ + 1));
        items_[index] = std::move(item);
        ++count_;
    }

    void Erase(std::size_t index) noexcept {
        std::move(At(index + 1), At(count_), At(index));
        Shorten(count_ - 1);
    }

    void Clear() noexcept { Shorten(0); }

    /// Moves the last `moved` items to the front of `next`.
    void GiveTail(FixedVector& next, std::size_t moved) noexcept {
        std::move_backward(next.At(0), next.At(next.count_), next.At(next.count_ + moved));
        std::move(At(count_ - moved), At(count_), next.At(0));
        next.count_ += moved;
        Shorten(count_ - moved);
    }

    /// Moves the first `moved` items of `next` to the end.
    void TakeHead(FixedVector& next, std::size_t moved) noexcept {
        std::move(next.At(0), next.At(moved), At(count_));
        std::move(next.At(moved), next.At(next.count_), next.At(0));
        count_ += moved;
        next.Shorten(next.count_ - moved);
    }

private:
    T* At(std::size_t index) { return items_.data() + index; }

    void Shorten(std::size_t count) noexcept {
        while (count_ > count)
            items_[--count_] = T{};
    }

    std::array<T, N> items_ = {};
    std::size_t count_ = 0;
};

} // namespace kvx
