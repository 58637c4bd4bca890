#include "platform/system.h"

#include "platform/text.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <system_error>

namespace kvx {
namespace {

// First of the variables that is set and not empty.
std::string FirstOf(std::initializer_list<const char*> names) {
    for (const char* name : names) {
        const char* value = std::getenv(name);
        if (value != nullptr && *value != '\0') return value;
    }
    return {};
}

} // namespace

std::optional<std::u16string> UserLocaleName() {
    std::string name = FirstOf({"LC_ALL", "LC_MESSAGES", "LANG"});
    name.resize(std::min(name.find_first_of(".@"), name.size()));
    if (name.empty() || name == "C" || name == "POSIX") return std::nullopt;
    std::replace(name.begin(), name.end(), '_', '-');
    return Utf8ToUtf16(name);
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
    return std::nullopt; // it holds the folders of packages, which there are none of
}

bool RunsUnderWine() {
    return false;
}

} // namespace kvx
