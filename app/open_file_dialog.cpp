#include "app/open_file_dialog.h"

#include "platform/win32/wide.h"

#include <commdlg.h>

namespace kvx {

std::optional<std::u16string> ChooseExistingFile(HWND owner, const std::u16string& title) {
    wchar_t path[MAX_PATH] = {};
    OPENFILENAMEW dialog{};
    dialog.lStructSize = sizeof(dialog);
    dialog.hwndOwner = owner;
    dialog.lpstrFile = path;
    dialog.nMaxFile = MAX_PATH;
    dialog.lpstrTitle = AsWide(title);
    dialog.Flags = OFN_EXPLORER | OFN_FILEMUSTEXIST | OFN_PATHMUSTEXIST;
    if (!::GetOpenFileNameW(&dialog)) return std::nullopt;
    return FromWide(path);
}

} // namespace kvx
