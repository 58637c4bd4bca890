// Process entry: prepares the process, reads the command line and runs the main window.
#include "app/app_window.h"
#include "app/command_line.h"
#include "platform/win32/handle.h"
#include "platform/win32/wide.h"

#include <string>
#include <vector>

#include <windows.h>

#include <shellapi.h>

namespace {

constexpr int kStartFailed = -1;

std::vector<std::u16string> CommandLineArguments() {
    int count = 0;
    wchar_t** const arguments = ::CommandLineToArgvW(::GetCommandLineW(), &count);
    const kvx::UniqueLocalMemory owner(arguments);
    if (arguments == nullptr) return {};
    std::vector<std::u16string> texts;
    texts.reserve(static_cast<std::size_t>(count));
    for (int index = 0; index < count; ++index)
        texts.push_back(kvx::FromWide(arguments[index]));
    return texts;
}

} // namespace

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, PWSTR, int) {
    ::SetProcessDpiAwarenessContext(DPI_AWARENESS_CONTEXT_PER_MONITOR_AWARE_V2);
    try {
        kvx::AppWindow window;
        if (!window.Initialize(instance, kvx::StartFileOf(CommandLineArguments())))
            return kStartFailed;
        return window.RunMessageLoop();
    } catch (...) {
        return kStartFailed;
    }
}
