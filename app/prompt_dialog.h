// A one-line question: class "Kivra.PromptDialog".
#pragma once

#include "app/dialogs.h"

#include <optional>
#include <string>

#include <windows.h>

namespace kvx {

/// The answer; empty when the user cancels. Modal to `owner`.
std::optional<std::u16string> AskForLine(HWND owner, const PromptContent& content);

} // namespace kvx
