// The decoded text of a pattern file, and messages that point into it.
#pragma once

#include "pattern/token.h"
#include "platform/bytes.h"

#include <optional>
#include <string>
#include <string_view>

namespace kvx {

/// Text of a pattern file's bytes: UTF-8 with or without a byte-order mark, which is dropped. Empty
/// optional when the bytes are not UTF-8.
std::optional<std::u16string> DecodePatternSource(ByteView bytes);

/// "Line L, Col C: message", and below it the line itself and a caret under the column when that
/// line exists and is not empty. Rows are joined by CR LF.
std::u16string FormatPositionedMessage(std::u16string_view source, SourcePosition position,
                                       std::u16string_view message);

} // namespace kvx
