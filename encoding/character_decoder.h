// The one character that starts at a byte.
#pragma once

#include "encoding/text_encoding.h"
#include "platform/bytes.h"

#include <cstddef>
#include <optional>
#include <string>

namespace kvx {

struct DecodedCharacter {
    std::u16string text;    ///< at least one unit; a base character with the marks behind it
    std::size_t length = 0; ///< in bytes, at least 1

    friend bool operator==(const DecodedCharacter&, const DecodedCharacter&) = default;
};

/// The character that starts at the first of `bytes`, which go on to the end of what is known.
/// nullopt when none starts there, when it is a control, and for UTF-8 and UTF-16, whose readers
/// want to see the code point. Callable from every thread.
std::optional<DecodedCharacter> DecodeCharAt(TextEncoding encoding, ByteView bytes);

} // namespace kvx
