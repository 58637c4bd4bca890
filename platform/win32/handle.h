// Ownership of Windows handles: one template, told apart by which value means "none" and how to
// close.
#pragma once

#include <windows.h>

#include <utility>

namespace kvx {

/// Owns one handle and closes it when destroyed or replaced. Closing keeps the thread's last error,
/// so that a failure can still be read after the handle went out of scope.
template <typename Traits>
class UniqueHandle {
public:
    using Value = typename Traits::Value;

    UniqueHandle() = default;
    explicit UniqueHandle(Value value) : value_(value) {}
    UniqueHandle(UniqueHandle&& other) noexcept : value_(other.Release()) {}
    UniqueHandle& operator=(UniqueHandle&& other) noexcept {
        if (this != &other) Reset(other.Release());
        return *this;
    }
    UniqueHandle(const UniqueHandle&) = delete;
    UniqueHandle& operator=(const UniqueHandle&) = delete;
    ~UniqueHandle() { Reset(); }

    explicit operator bool() const { return value_ != Traits::Invalid(); }
    Value Get() const { return value_; }

    /// Gives the handle away without closing it.
    [[nodiscard]] Value Release() { return std::exchange(value_, Traits::Invalid()); }

    /// Closes what is owned and takes over `value`.
    void Reset(Value value = Traits::Invalid()) {
        const Value old = std::exchange(value_, value);
        if (old == Traits::Invalid()) return;
        const DWORD error = ::GetLastError();
        Traits::Close(old);
        ::SetLastError(error);
    }

private:
    Value value_ = Traits::Invalid();
};

/// What CreateFile gives: invalid is INVALID_HANDLE_VALUE.
struct FileHandleTraits {
    using Value = HANDLE;
    static Value Invalid() { return INVALID_HANDLE_VALUE; }
    static void Close(Value value) { ::CloseHandle(value); }
};
using UniqueFileHandle = UniqueHandle<FileHandleTraits>;

/// What CreateProcess, CreateEvent and their like give: invalid is null.
struct KernelHandleTraits {
    using Value = HANDLE;
    static Value Invalid() { return nullptr; }
    static void Close(Value value) { ::CloseHandle(value); }
};
using UniqueKernelHandle = UniqueHandle<KernelHandleTraits>;

/// Memory that the system allocated with LocalAlloc and leaves to the caller.
struct LocalMemoryTraits {
    using Value = HLOCAL;
    static Value Invalid() { return nullptr; }
    static void Close(Value value) { ::LocalFree(value); }
};
using UniqueLocalMemory = UniqueHandle<LocalMemoryTraits>;

} // namespace kvx
