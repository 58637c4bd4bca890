#include "platform/system.h"

#include "platform/win32/handle.h"
#include "platform/win32/wide.h"

#include <filesystem>
#include <knownfolders.h>
#include <shlobj.h>
#include <system_error>

namespace kvx {
namespace {

struct TaskMemoryTraits {
    using Value = wchar_t*;
    static Value Invalid() { return nullptr; }
    static void Close(Value value) { ::CoTaskMemFree(value); }
};

// A function that not every version of the system has; null where it is missing.
template <typename Function>
Function FindFunction(const wchar_t* module, const char* name) {
    const HMODULE loaded = ::GetModuleHandleW(module);
    if (loaded == nullptr) return nullptr;
    return reinterpret_cast<Function>(reinterpret_cast<void*>(::GetProcAddress(loaded, name)));
}

} // namespace

std::optional<std::u16string> UserLocaleName() {
    wchar_t name[LOCALE_NAME_MAX_LENGTH] = {};
    if (::GetUserDefaultLocaleName(name, LOCALE_NAME_MAX_LENGTH) == 0) return std::nullopt;
    return FromWide(name);
}

std::u16string ProgramPath() {
    std::u16string path(MAX_PATH, u'\0');
    while (true) {
        const DWORD room = static_cast<DWORD>(path.size());
        const DWORD length = ::GetModuleFileNameW(nullptr, AsWideBuffer(path), room);
        if (length < room) {
            path.resize(length);
            return path;
        }
        path.resize(path.size() * 2);
    }
}

std::u16string CurrentFolder() {
    std::u16string folder(MAX_PATH, u'\0');
    while (true) {
        const DWORD room = static_cast<DWORD>(folder.size());
        const DWORD length = ::GetCurrentDirectoryW(room, AsWideBuffer(folder));
        if (length == 0) {
            const std::error_code error(static_cast<int>(::GetLastError()), std::system_category());
            throw std::filesystem::filesystem_error("current_path()", error);
        }
        folder.resize(length);
        if (length < room) return folder;
    }
}

std::uint64_t TickCount() {
    return ::GetTickCount64();
}

std::optional<std::u16string> PackageFamilyName() {
    using Query = LONG(WINAPI*)(UINT32*, PWSTR);
    const auto query = FindFunction<Query>(L"kernel32.dll", "GetCurrentPackageFamilyName");
    UINT32 length = 0;
    if (query == nullptr || query(&length, nullptr) != ERROR_INSUFFICIENT_BUFFER)
        return std::nullopt;
    std::u16string name(length, u'\0');
    if (query(&length, AsWideBuffer(name)) != ERROR_SUCCESS) return std::nullopt;
    name.resize(name.find(u'\0') == std::u16string::npos ? length : name.find(u'\0'));
    return name;
}

std::optional<std::u16string> LocalAppDataFolder() {
    wchar_t* folder = nullptr;
    const HRESULT result = ::SHGetKnownFolderPath(FOLDERID_LocalAppData, 0, nullptr, &folder);
    const UniqueHandle<TaskMemoryTraits> owner(folder);
    if (FAILED(result)) return std::nullopt;
    return FromWide(folder);
}

bool RunsUnderWine() {
    return FindFunction<void*>(L"ntdll.dll", "wine_get_version") != nullptr;
}

} // namespace kvx
