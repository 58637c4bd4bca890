#include "app/open_file_dialog.h"

#include "platform/win32/wide.h"

#include <filesystem>
#include <system_error>

#include <commdlg.h>

namespace kvx {
namespace {

// The dialog takes the whole process to the folder that the user looks at, even when it is
// cancelled. A document that was opened by a relative path would then be saved somewhere else.
class CurrentFolderScope {
public:
    CurrentFolderScope() = default;
    ~CurrentFolderScope() {
        std::error_code ignored;
        if (!folder_.empty()) std::filesystem::current_path(folder_, ignored);
    }
    CurrentFolderScope(const CurrentFolderScope&) = delete;
    CurrentFolderScope& operator=(const CurrentFolderScope&) = delete;

private:
    std::error_code error_;
    std::filesystem::path folder_ = std::filesystem::current_path(error_);
};

} // namespace

std::optional<std::u16string> ChooseExistingFile(HWND owner, const FileChoice& choice) {
    const CurrentFolderScope keepFolder;
    wchar_t path[MAX_PATH] = {};
    OPENFILENAMEW dialog{};
    dialog.lStructSize = sizeof(dialog);
    dialog.hwndOwner = owner;
    dialog.lpstrFile = path;
    dialog.nMaxFile = MAX_PATH;
    dialog.lpstrTitle = AsWide(choice.title);
    dialog.lpstrFilter = choice.filters.empty() ? nullptr : AsWide(choice.filters);
    dialog.lpstrInitialDir = choice.folder.empty() ? nullptr : AsWide(choice.folder);
    dialog.Flags = OFN_EXPLORER | OFN_FILEMUSTEXIST | OFN_PATHMUSTEXIST;
    if (!::GetOpenFileNameW(&dialog)) return std::nullopt;
    return FromWide(path);
}

} // namespace kvx
