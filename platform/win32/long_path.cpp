#include "platform/win32/long_path.h"

#include "platform/win32/wide.h"

#include <string_view>
#include <windows.h>

namespace kvx {

std::u16string FullPath(const std::u16string& path) {
    const DWORD room = ::GetFullPathNameW(AsWide(path), 0, nullptr, nullptr);
    std::u16string full(room, u'\0');
    full.resize(::GetFullPathNameW(AsWide(path), room, AsWideBuffer(full), nullptr));
    return full;
}

std::u16string ExtendedPath(const std::u16string& path) {
    if (path.starts_with(u"\\\\?\\") || path.starts_with(u"\\\\.\\")) return path;
    const std::u16string full = FullPath(path);
    if (full.size() < MAX_PATH) return path;
    const bool onServer = full.starts_with(u"\\\\");
    return onServer ? u"\\\\?\\UNC\\" + full.substr(2) : u"\\\\?\\" + full;
}

} // namespace kvx
