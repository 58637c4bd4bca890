// Lets a failing comparison show settings as their file would.
#pragma once

#include "settings/settings_file.h"

#include <ostream>

namespace kvx {

inline void PrintTo(const AppSettings& settings, std::ostream* stream) {
    *stream << "\n" << WriteSettingsText(settings);
}

} // namespace kvx
