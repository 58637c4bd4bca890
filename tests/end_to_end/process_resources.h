// What another process holds of the system, and whether that grows.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include <windows.h>

namespace kvx::test {

/// What a process holds at one moment.
struct ProcessResources {
    std::uint64_t gdiObjects = 0;    ///< pens, brushes, fonts, ...
    std::uint64_t surfaces = 0;      ///< device contexts, regions, bitmaps; among the GDI objects
                                     ///< where the system does not tell them apart
    std::uint64_t userObjects = 0;   ///< windows, menus, ...; where the system does not count them
                                     ///< by process, those of all processes together
    std::uint64_t windows = 0;       ///< of any kind, shown or not
    std::uint64_t kernelHandles = 0; ///< files, events, threads, ...
    std::uint64_t threads = 0;
    std::uint64_t privateBytes = 0; ///< memory that is nobody else's

    /// How many file dialogs the process has shown, for the sampler to say: each leaves something
    /// behind under Wine, in any program.
    std::uint64_t fileDialogs = 0;
};

/// All but the file dialogs. Throws std::system_error when the system does not tell.
ProcessResources ResourcesOf(DWORD processId);

/// Samples in words, for a report.
std::string ToText(const ProcessResources& resources);

/// Fewer samples show no trend.
inline constexpr std::size_t kFewestSamples = 12;
/// Says what grew from the middle to the last third of `samples`, which were all taken in the same
/// state of the program, and what cannot have been counted at all; empty when all is well. In the
/// first third the system still fills its caches. The medians of the others are compared: a single
/// sample at a bad moment does no harm.
std::string Growth(std::span<const ProcessResources> samples);

} // namespace kvx::test
