#include "process_resources.h"

#include "platform/system.h"
#include "platform/win32/handle.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <sstream>
#include <system_error>
#include <utility>
#include <vector>

#include <psapi.h>
#include <tlhelp32.h>
#include <winternl.h>

namespace kvx::test {
namespace {

[[noreturn]] void Fail(const char* what) {
    throw std::system_error(static_cast<int>(::GetLastError()), std::system_category(), what);
}

// Documented nowhere, the same in every 64-bit Windows since the first.
constexpr auto kExtendedHandleInformation = std::bit_cast<SYSTEM_INFORMATION_CLASS>(0x40);
constexpr std::size_t kGdiTableInPeb = 0xF8;
constexpr std::size_t kGdiTableEntries = 0x4000;

struct HandleEntry {
    void* object;
    ULONG_PTR processId;
    ULONG_PTR handle;
    ULONG access;
    USHORT creator;
    USHORT type;
    ULONG attributes;
    ULONG reserved;
};

struct HandleTable {
    ULONG_PTR count;
    ULONG_PTR reserved;
    HandleEntry entries[1];
};

struct GdiEntry {
    std::uint64_t object;
    std::uint32_t owner;
    std::uint16_t unique;
    std::uint8_t type; ///< 0: free
    std::uint8_t flags;
    std::uint64_t data;
};

// The count by process that the system offers is always 0 under Wine.
std::uint64_t CountKernelHandles(DWORD processId) {
    constexpr std::size_t kFirstSize = std::size_t{1} << 20;
    constexpr std::size_t kLargestSize = std::size_t{1} << 28;
    for (std::size_t size = kFirstSize; size <= kLargestSize; size *= 2) {
        std::vector<std::max_align_t> memory(size / sizeof(std::max_align_t));
        if (::NtQuerySystemInformation(kExtendedHandleInformation, memory.data(),
                                       static_cast<ULONG>(size), nullptr) != 0)
            continue;
        const auto* const table = reinterpret_cast<const HandleTable*>(memory.data());
        const std::span entries(table->entries, table->count);
        return static_cast<std::uint64_t>(
            std::ranges::count(entries, ULONG_PTR{processId}, &HandleEntry::processId));
    }
    Fail("the handles of all processes cannot be listed");
}

std::uint64_t CountThreads(DWORD processId) {
    const UniqueFileHandle snapshot(::CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0));
    THREADENTRY32 entry{};
    entry.dwSize = sizeof entry;
    std::uint64_t count = 0;
    for (BOOL more = ::Thread32First(snapshot.Get(), &entry); more != FALSE;
         more = ::Thread32Next(snapshot.Get(), &entry))
        count += entry.th32OwnerProcessID == processId ? 1 : 0;
    return count;
}

std::uint64_t PrivateBytesOf(HANDLE process) {
    PROCESS_MEMORY_COUNTERS counters{};
    if (::GetProcessMemoryInfo(process, &counters, sizeof counters) == FALSE)
        Fail("the memory of the process cannot be asked for");
    return counters.PagefileUsage;
}

void Read(HANDLE process, const void* address, void* into, std::size_t size) {
    if (::ReadProcessMemory(process, address, into, size, nullptr) == FALSE)
        Fail("the memory of the process cannot be read");
}

// Under Wine each process has a table of its own objects, whose address is in its own memory.
void CountTabledGdiObjects(HANDLE process, ProcessResources& resources) {
    PROCESS_BASIC_INFORMATION info{};
    ::NtQueryInformationProcess(process, ProcessBasicInformation, &info, sizeof info, nullptr);
    const auto* const peb = reinterpret_cast<const std::byte*>(info.PebBaseAddress);
    const std::byte* table = nullptr;
    std::vector<GdiEntry> entries(kGdiTableEntries);
    Read(process, peb + kGdiTableInPeb, &table, sizeof table);
    Read(process, table, entries.data(), entries.size() * sizeof(GdiEntry));
    for (const GdiEntry& entry : entries) {
        constexpr int kTools[] = {0x08, 0x0A, 0x10}; // palettes, fonts, pens and brushes
        if (entry.type == 0) continue;
        const bool tool = std::ranges::count(kTools, entry.type) != 0;
        ++(tool ? resources.gdiObjects : resources.surfaces);
    }
}

void CountGdiObjects(HANDLE process, ProcessResources& resources) {
    resources.gdiObjects = ::GetGuiResources(process, GR_GDIOBJECTS);
    if (resources.gdiObjects == 0) CountTabledGdiObjects(process, resources);
}

// Menus are taken until no freed place is left in the table that all processes share: what follows
// then are places never used before, one after the other. All before them are in use.
std::uint64_t CountUserObjectsOfAll() {
    constexpr std::size_t kCertain = 16;
    constexpr std::size_t kMost = 20'000;
    static std::size_t known = 0; // the last place that was in use once
    std::vector<HMENU> menus;
    std::size_t last = 0;
    for (std::size_t inARow = 0; inARow < kCertain && menus.size() < kMost;) {
        menus.push_back(::CreateMenu());
        const std::size_t place = LOWORD(reinterpret_cast<ULONG_PTR>(menus.back())) / 2;
        inARow = place == last + 1 && place > known ? inARow + 1 : 0;
        last = place;
    }
    known = last;
    // Places freed in this order do not come back one after the other, from whichever end.
    for (const std::size_t first : {0U, 1U}) {
        for (std::size_t i = first; i < menus.size(); i += 2)
            ::DestroyMenu(menus[i]);
    }
    return menus.size() < kMost ? last - menus.size() : 0;
}

std::uint64_t CountUserObjects(HANDLE process) {
    const DWORD counted = ::GetGuiResources(process, GR_USEROBJECTS);
    return counted != 0 ? counted : CountUserObjectsOfAll();
}

struct WindowCount {
    DWORD processId = 0;
    std::uint64_t count = 0;
};

BOOL CALLBACK CountWindow(HWND window, LPARAM parameter) {
    auto& search = *reinterpret_cast<WindowCount*>(parameter);
    DWORD owner = 0;
    ::GetWindowThreadProcessId(window, &owner);
    if (owner == search.processId) ++search.count;
    return TRUE;
}

// EnumChildWindows lists the descendants of the desktop too, but not what has no parent at all.
std::uint64_t CountWindows(DWORD processId) {
    WindowCount search{processId, 0};
    ::EnumChildWindows(::GetDesktopWindow(), CountWindow, reinterpret_cast<LPARAM>(&search));
    for (HWND window = nullptr;
         (window = ::FindWindowExW(HWND_MESSAGE, window, nullptr, nullptr)) != nullptr;)
        CountWindow(window, reinterpret_cast<LPARAM>(&search));
    return search.count;
}

struct Kind {
    const char* name;
    std::uint64_t ProcessResources::*value;
    std::uint64_t bound;   ///< what the median may grow by
    bool lostByFileDialog; ///< under Wine: at most one by each dialog
};

// Between two states that look the same nothing has to grow; but the system may find at any time
// that a handle or a block of memory is worth keeping, and Wine keeps the device contexts of
// windows, as many as were ever in use at a time. What leaks grows with the run.
constexpr Kind kKinds[] = {
    {"GDI objects", &ProcessResources::gdiObjects, 3, false},
    {"drawing surfaces", &ProcessResources::surfaces, 24, false},
    {"USER objects", &ProcessResources::userObjects, 1, true},
    {"windows", &ProcessResources::windows, 0, false},
    {"kernel handles", &ProcessResources::kernelHandles, 2, true},
    {"threads", &ProcessResources::threads, 0, false},
    {"private bytes", &ProcessResources::privateBytes, std::uint64_t{16} << 20, false},
};

/// What memory may grow by from sample to sample most of the time. Caches grow in rare large steps;
/// a leak grows all the time.
constexpr std::uint64_t kUsualGrowth = std::uint64_t{16} << 10;

std::uint64_t Median(std::vector<std::uint64_t> values) {
    std::ranges::sort(values);
    return values[values.size() / 2];
}

std::uint64_t Median(std::span<const ProcessResources> samples,
                     std::uint64_t ProcessResources::*value) {
    std::vector<std::uint64_t> values;
    for (const ProcessResources& sample : samples)
        values.push_back(sample.*value);
    return Median(std::move(values));
}

std::uint64_t UsualMemoryGrowth(std::span<const ProcessResources> samples) {
    std::vector<std::uint64_t> steps;
    for (std::size_t i = 1; i < samples.size(); ++i) {
        const std::uint64_t before = samples[i - 1].privateBytes;
        steps.push_back(std::max(samples[i].privateBytes, before) - before);
    }
    return Median(std::move(steps));
}

} // namespace

ProcessResources ResourcesOf(DWORD processId) {
    const UniqueKernelHandle process(
        ::OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, processId));
    if (!process) Fail("the process cannot be opened");
    ProcessResources resources;
    CountGdiObjects(process.Get(), resources);
    resources.userObjects = CountUserObjects(process.Get());
    resources.windows = CountWindows(processId);
    resources.kernelHandles = CountKernelHandles(processId);
    resources.threads = CountThreads(processId);
    resources.privateBytes = PrivateBytesOf(process.Get());
    return resources;
}

std::string ToText(const ProcessResources& resources) {
    std::ostringstream text;
    for (const Kind& kind : kKinds)
        text << (text.tellp() > 0 ? ", " : "") << resources.*kind.value << ' ' << kind.name;
    return text.str();
}

std::string Growth(std::span<const ProcessResources> samples) {
    if (samples.size() < kFewestSamples) return "too few samples";
    const std::size_t third = samples.size() / 3;
    const auto middle = samples.subspan(third, third);
    const auto last = samples.last(third);
    const std::uint64_t dialogs = last.back().fileDialogs - middle.front().fileDialogs;
    std::ostringstream text;
    for (const Kind& kind : kKinds) {
        const std::uint64_t before = Median(middle, kind.value);
        const std::uint64_t after = Median(last, kind.value);
        const std::uint64_t lost = kind.lostByFileDialog && RunsUnderWine() ? dialogs : 0;
        const bool counted = after != 0 || kind.value == &ProcessResources::surfaces;
        if (after > before + kind.bound + lost || !counted)
            text << kind.name << " from " << before << " to " << after << "; ";
    }
    const std::uint64_t usual = UsualMemoryGrowth(samples.subspan(third));
    if (usual > kUsualGrowth) text << "private bytes by " << usual << " again and again; ";
    return text.str();
}

} // namespace kvx::test
