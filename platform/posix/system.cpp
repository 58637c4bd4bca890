#include "platform/system.h"

#include "platform/text.h"

#include <ctime>
#include <filesystem>
#include <system_error>

namespace kvx {

// The product asks for the locale, its package and that one's folder on Windows only: here nobody
// tells.

std::optional<std::u16string> UserLocaleName() {
    return std::nullopt;
}

std::u16string ProgramPath() {
    std::error_code error;
    return Utf8ToUtf16(std::filesystem::read_symlink("/proc/self/exe", error).native());
}

std::u16string CurrentFolder() {
    std::error_code error;
    const std::filesystem::path folder = std::filesystem::current_path(error);
    if (error) throw std::filesystem::filesystem_error("current_path()", error);
    return Utf8ToUtf16(folder.native());
}

std::uint64_t TickCount() {
    std::timespec now{};
    ::clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<std::uint64_t>(now.tv_sec) * 1000 +
           static_cast<std::uint64_t>(now.tv_nsec) / 1'000'000;
}

std::optional<std::u16string> PackageFamilyName() {
    return std::nullopt;
}

std::optional<std::u16string> LocalAppDataFolder() {
    return std::nullopt;
}

bool RunsUnderWine() {
    return false;
}

} // namespace kvx
