// The system's error numbers in terms of the Win32 codes that the program speaks.
#pragma once

#include "platform/file_layer.h"

namespace kvx {

/// Win32 code for an errno value; 31 (general failure) for one without a counterpart.
ErrorCode Win32CodeOf(int errorNumber);

/// Win32 code of the last failed call.
ErrorCode LastErrorCode();

} // namespace kvx
