// The about box: class "Kivra.AboutDialog".
#pragma once

#include "app/dialogs.h"
#include "settings/text_lookup.h"

#include <windows.h>

namespace kvx {

/// Modal to `owner`.
void ShowAboutBox(HWND owner, const AboutContent& content, const TextLookup& text);

} // namespace kvx
