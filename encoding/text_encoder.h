// Typed text to the bytes that it is in a file.
#pragma once

#include "encoding/text_encoding.h"
#include "platform/bytes.h"

#include <optional>
#include <string_view>

namespace kvx {

/// The bytes of `text` in `encoding`, exactly: no similar character, no replacement. nullopt when
/// the encoding cannot express all of it (half a surrogate pair included) and for empty text.
std::optional<Bytes> EncodeText(TextEncoding encoding, std::u16string_view text);

} // namespace kvx
