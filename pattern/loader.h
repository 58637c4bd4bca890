// Reads a pattern file from the disk to its laid-out structs.
#pragma once

#include "pattern/outcome.h"
#include "pattern/struct_pattern_file.h"
#include "platform/bytes.h"
#include "platform/file_layer.h"

#include <string>

namespace kvx {

/// The whole load. There is no partial result: either the complete file or one message. Reads
/// through `files`; callable from any thread.
Outcome<SharedPattern> LoadStructPatternFile(const std::u16string& path,
                                             FileLayer& files = SystemFileLayer());

/// The load without the reading: from the bytes of a pattern file.
Outcome<SharedPattern> LoadStructPattern(ByteView bytes);

} // namespace kvx
