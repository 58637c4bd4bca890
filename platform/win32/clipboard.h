// Text to the clipboard.
#pragma once

#include <string_view>

#include <windows.h>

namespace kvx {

/// Replaces what the clipboard holds by `text` on behalf of `owner`. False when the clipboard is
/// held by another program or memory is short; what it held is then kept.
bool SetClipboardText(HWND owner, std::u16string_view text);

} // namespace kvx
