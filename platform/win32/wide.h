// Texts across the Windows border: std::u16string inside, wchar_t in every call. Both are UTF-16 in
// 16-bit units here, so a text that only passes through a call needs no copy.
#pragma once

#include <string>
#include <string_view>

namespace kvx {

static_assert(sizeof(wchar_t) == sizeof(char16_t), "Windows texts are UTF-16");

/// `text` as Windows calls take it, zero-terminated; valid as long as `text` is.
inline const wchar_t* AsWide(const std::u16string& text) {
    return reinterpret_cast<const wchar_t*>(text.c_str());
}

/// Room of `text` for a call that fills it (size() units and the terminator).
inline wchar_t* AsWideBuffer(std::u16string& text) {
    return reinterpret_cast<wchar_t*>(text.data());
}

/// Start of `text`, which is not zero-terminated: for calls that also take a length.
inline const wchar_t* WideData(std::u16string_view text) {
    return reinterpret_cast<const wchar_t*>(text.data());
}

/// A copy as the standard library's wide string.
inline std::wstring ToWide(std::u16string_view text) {
    return {text.begin(), text.end()};
}

/// A copy of what Windows gave.
inline std::u16string FromWide(std::wstring_view text) {
    return {text.begin(), text.end()};
}

} // namespace kvx
