// Choosing the hex view's font: class "Kivra.FontDialog".
#pragma once

#include "app/dialogs.h"
#include "settings/text_lookup.h"

#include <optional>
#include <vector>

#include <windows.h>

namespace kvx {

/// Every font of the system, as often as the system lists it.
std::vector<InstalledFont> ListInstalledFonts();

/// The font that the user chose; empty when the user cancels. Modal to `owner`.
std::optional<FontChoice> ChooseFontIn(HWND owner, const FontDialogContent& content,
                                       const TextLookup& text);

} // namespace kvx
