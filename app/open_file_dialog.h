// The system's dialog for choosing a file.
#pragma once

#include <optional>
#include <string>

#include <windows.h>

namespace kvx {

/// What the dialog offers.
struct FileChoice {
    std::u16string title;
    std::u16string
        filters{};           ///< label and pattern in turn, each ending in a zero; empty: all files
    std::u16string folder{}; ///< where it starts; empty: where the system likes
};

/// Full path of an existing file; empty when the user cancels. Modal to `owner`.
std::optional<std::u16string> ChooseExistingFile(HWND owner, const FileChoice& choice);

} // namespace kvx
