// How often the hex view is painted while an arrow key is held down in a sparse file of 10 GiB,
// with and without the panes. Needs a display; the first argument is the program's folder.
#include "app/app_window.h"
#include "app/commands.h"
#include "platform/win32/wide.h"
#include "tests/support/temp_folder.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <string>
#include <vector>

#include <windows.h>

#include <commctrl.h>

namespace kvx {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::uint64_t kFileBytes = 10ULL << 30U;
constexpr int kSeconds = 10;

// Twice as often as the fastest keyboard repeats.
constexpr std::chrono::microseconds kKeyPeriod(1'000'000 / 60);

int paints = 0;

LRESULT CALLBACK CountPaints(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                             DWORD_PTR) {
    if (message == WM_PAINT) ++paints;
    return ::DefSubclassProc(window, message, wParam, lParam);
}

void PumpUntil(AppWindow& window, Clock::time_point end) {
    while (Clock::now() < end) {
        MSG message{};
        while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
            window.ProcessMessage(message);
        ::MsgWaitForMultipleObjects(0, nullptr, FALSE, 1, QS_ALLINPUT);
    }
}

/// Repaints in each second while the key goes down 60 times a second.
std::vector<int> PaintsPerSecond(AppWindow& window) {
    std::vector<int> counts;
    auto next = Clock::now();
    for (int second = 0; second < kSeconds; ++second) {
        paints = 0;
        const auto end = Clock::now() + std::chrono::seconds(1);
        while (Clock::now() < end) {
            ::PostMessageW(window.View().Handle(), WM_KEYDOWN, VK_DOWN, 0);
            PumpUntil(window, next += kKeyPeriod);
        }
        counts.push_back(paints);
    }
    return counts;
}

void Measure(AppWindow& window, const char* name) {
    PumpUntil(window, Clock::now() + std::chrono::seconds(2));
    std::vector<int> counts = PaintsPerSecond(window);
    std::sort(counts.begin(), counts.end());
    std::printf("%-24s fewest %d, median %d repaints a second\n", name, counts.front(),
                counts[counts.size() / 2]);
    std::fflush(stdout);
}

/// Milliseconds of one repaint of all of a window: the best of several series.
double RepaintMs(HWND window) {
    constexpr int kRepaints = 20;
    double best = 1e9;
    for (int series = 0; series < 10; ++series) {
        const auto start = Clock::now();
        for (int repaint = 0; repaint < kRepaints; ++repaint)
            ::RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
        ::GdiFlush();
        const std::chrono::duration<double, std::milli> taken = Clock::now() - start;
        best = std::min(best, taken.count() / kRepaints);
    }
    return best;
}

std::string PatternOf256Rows() {
    std::string text = "struct Many {\n";
    for (int member = 0; member < 256; ++member)
        text += "uint32_t member" + std::to_string(member) + ";\n";
    return text + "};\n";
}

int Run(const std::u16string& programFolder) {
    const TempFolder folder;
    const std::u16string file = folder.WriteSparse(u"large.bin", kFileBytes, "MZ", "end");
    AppWindow window({programFolder, folder.Path(u"settings.json")});
    if (!window.Initialize(::GetModuleHandleW(nullptr), file)) return 1;
    ::SetWindowSubclass(window.View().Handle(), CountPaints, 0, 0);

    const auto run = [&](Command command) {
        ::SendMessageW(window.MainWindow(), WM_COMMAND, CommandId(command), 0);
    };
    Measure(window, "data inspector");
    run(Command::ToggleDataInspector);
    Measure(window, "no pane");
    run(Command::ToggleDataInspector);
    run(Command::ToggleStructView);
    window.LoadPattern(folder.Write(u"many.kvpat", PatternOf256Rows()));
    Measure(window, "both panes");
    std::printf("one repaint: hex view %.2f ms, data inspector %.2f ms, struct view %.2f ms\n",
                RepaintMs(window.View().Handle()),
                RepaintMs(::FindWindowW(L"Kivra.DataInspectorWindow", nullptr)),
                RepaintMs(::FindWindowW(L"Kivra.StructViewWindow", nullptr)));
    return 0;
}

} // namespace
} // namespace kvx

int wmain(int count, wchar_t** arguments) {
    return kvx::Run(count > 1 ? kvx::FromWide(arguments[1]) : u"");
}
