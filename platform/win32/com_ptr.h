// Ownership of one reference to a COM object.
#pragma once

#include <utility>

namespace kvx {

/// Owns one reference and releases it when destroyed or replaced. Not shared by copying: whoever
/// needs the object meanwhile borrows it with Get().
template <typename T>
class ComPtr {
public:
    ComPtr() = default;
    ComPtr(ComPtr&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    ComPtr& operator=(ComPtr&& other) noexcept {
        if (this != &other) {
            Reset();
            object_ = std::exchange(other.object_, nullptr);
        }
        return *this;
    }
    ComPtr(const ComPtr&) = delete;
    ComPtr& operator=(const ComPtr&) = delete;
    ~ComPtr() { Reset(); }

    explicit operator bool() const { return object_ != nullptr; }
    T* Get() const { return object_; }
    T* operator->() const { return object_; }
    T& operator*() const { return *object_; }

    /// Releases what is owned and gives the place where a creating call puts its reference.
    [[nodiscard]] T** Put() {
        Reset();
        return &object_;
    }

    /// Releases what is owned.
    void Reset() {
        if (T* const old = std::exchange(object_, nullptr)) old->Release();
    }

private:
    T* object_ = nullptr;
};

} // namespace kvx
