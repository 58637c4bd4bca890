// What another process holds of the system, and whether that grows.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include <windows.h>

namespace kvx::test {

/// What a process holds at one moment.
struct ProcessResources {
    std::uint64_t gdiObjects = 0;    ///< pens, fonts, bitmaps, ...
    std::uint64_t userObjects = 0;   ///< windows, menus, ...; where the system does not count them
                                     ///< by process, those of all processes together
    std::uint64_t windows = 0;       ///< of any kind, shown or not
    std::uint64_t kernelHandles = 0; ///< files, events, threads, ...
    std::uint64_t threads = 0;
    std::uint64_t privateBytes = 0; ///< memory that is nobody else's
};

/// Throws std::system_error when the system does not tell.
ProcessResources ResourcesOf(DWORD processId);

/// Samples in words, for a report.
std::string ToText(const ProcessResources& resources);

/// Says what grew from the first to the last third of `samples`, which were all taken in the same
/// state of the program; empty when nothing did. At least nine samples.
std::string Growth(std::span<const ProcessResources> samples);

} // namespace kvx::test
