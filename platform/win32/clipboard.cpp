#include "platform/win32/clipboard.h"

#include "platform/win32/handle.h"

#include <cstring>

namespace kvx {
namespace {

struct GlobalMemoryTraits {
    using Value = HGLOBAL;
    static Value Invalid() { return nullptr; }
    static void Close(Value value) { ::GlobalFree(value); }
};
using UniqueGlobalMemory = UniqueHandle<GlobalMemoryTraits>;

class ClipboardScope {
public:
    explicit ClipboardScope(HWND owner) : open_(::OpenClipboard(owner) != FALSE) {}
    ~ClipboardScope() {
        if (open_) ::CloseClipboard();
    }
    ClipboardScope(const ClipboardScope&) = delete;
    ClipboardScope& operator=(const ClipboardScope&) = delete;

    explicit operator bool() const { return open_; }

private:
    bool open_;
};

/// `text` and a terminating zero in movable memory; empty when memory is short.
UniqueGlobalMemory CopyToGlobalMemory(std::u16string_view text) {
    const SIZE_T bytes = text.size() * sizeof(char16_t);
    // Cleared by the allocation, so the terminator is there already.
    UniqueGlobalMemory memory(::GlobalAlloc(GHND, bytes + sizeof(char16_t)));
    if (!memory) return {};
    void* const place = ::GlobalLock(memory.Get());
    if (place == nullptr) return {};
    if (bytes != 0) std::memcpy(place, text.data(), bytes);
    ::GlobalUnlock(memory.Get());
    return memory;
}

} // namespace

bool SetClipboardText(HWND owner, std::u16string_view text) {
    UniqueGlobalMemory memory = CopyToGlobalMemory(text);
    if (!memory) return false;
    const ClipboardScope clipboard(owner);
    if (!clipboard || !::EmptyClipboard()) return false;
    if (::SetClipboardData(CF_UNICODETEXT, memory.Get()) == nullptr) return false;
    static_cast<void>(memory.Release()); // the clipboard owns it now
    return true;
}

} // namespace kvx
