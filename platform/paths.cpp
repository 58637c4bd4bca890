#include "platform/system.h"

#include "platform/text.h"

#include <filesystem>
#include <string_view>
#include <system_error>

namespace kvx {
namespace {

constexpr std::u16string_view kSeparators = u"\\/";

// The library's own conversion refuses a lone surrogate, which Windows allows in a name; where the
// native units are 16 bits wide they are taken over one by one.
template <typename Native>
Native ToNative(const std::u16string& text) {
    if constexpr (sizeof(typename Native::value_type) == sizeof(char16_t)) {
        return Native(text.begin(), text.end());
    } else {
        return Utf16ToUtf8(text);
    }
}

template <typename Native>
std::u16string FromNative(const Native& text) {
    if constexpr (sizeof(typename Native::value_type) == sizeof(char16_t)) {
        return {text.begin(), text.end()};
    } else {
        return Utf8ToUtf16(text);
    }
}

} // namespace

std::u16string ProgramFolder() {
    return ParentFolder(ProgramPath());
}

std::u16string JoinPath(const std::u16string& folder, const std::u16string& name) {
    if (folder.empty() || kSeparators.find(folder.back()) != std::u16string_view::npos)
        return folder + name;
    const auto separator = static_cast<char16_t>(std::filesystem::path::preferred_separator);
    return folder + separator + name;
}

std::u16string FileNameOf(const std::u16string& path) {
    const std::size_t last = path.find_last_of(kSeparators);
    return last == std::u16string::npos ? path : path.substr(last + 1);
}

std::u16string ParentFolder(const std::u16string& path) {
    const std::filesystem::path native = ToNative<std::filesystem::path::string_type>(path);
    return FromNative(native.parent_path().native());
}

std::u16string NormalizedPath(const std::u16string& path) {
    const std::filesystem::path given = ToNative<std::filesystem::path::string_type>(path);
    std::error_code error;
    const std::filesystem::path canonical = std::filesystem::weakly_canonical(given, error);
    return FromNative((error ? given.lexically_normal() : canonical).native());
}

} // namespace kvx
