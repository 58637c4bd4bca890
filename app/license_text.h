// The licence, as the file LICENSE had it when the program was built.
#pragma once

#include <string_view>

namespace kvx {

/// UTF-8; lines end in LF.
extern const std::string_view kLicenseText;

} // namespace kvx
