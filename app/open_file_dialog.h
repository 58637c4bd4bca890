// The system's dialog for choosing a file.
#pragma once

#include <optional>
#include <string>

#include <windows.h>

namespace kvx {

/// Full path of an existing file; empty when the user cancels. Modal to `owner`.
std::optional<std::u16string> ChooseExistingFile(HWND owner, const std::u16string& title);

} // namespace kvx
