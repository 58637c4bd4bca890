// The text in the main window's caption.
#pragma once

#include <string>

namespace kvx {

/// `appTitle` alone when `path` is empty (no file is open); else with the file's name, and an
/// asterisk while the document is modified.
std::u16string WindowTitle(const std::u16string& appTitle, const std::u16string& path,
                           bool modified);

} // namespace kvx
