// What the panes and their workers tell the main window. Values are Windows messages (WM_APP is
// 0x8000), all posted.
#pragma once

#include <cstdint>

namespace kvx {

enum class PaneNotification : std::uint32_t {
    InspectorResult = 0x8000 + 10,  ///< lParam: a PostedInspectorRows that the receiver frees
    InspectorClosed = 0x8000 + 11,  ///< by the user
    StructViewClosed = 0x8000 + 12, ///< by the user
    OpenPattern = 0x8000 + 13,
    StructViewResult = 0x8000 + 14, ///< lParam: a PostedStructRows that the receiver frees
    ClosePattern = 0x8000 + 15,
    ReloadPattern = 0x8000 + 16,
    ValueFormat = 0x8000 + 17, ///< wParam: the number of a ValueFormatOption
};

} // namespace kvx
