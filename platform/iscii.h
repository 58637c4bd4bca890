// ISCII (IS 13194:1991) with the Devanagari script, converted by tables of our own: not every
// system has a converter for it. Callable from every thread.
#pragma once

#include "platform/bytes.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kvx {

/// What one byte, or two that belong together, mean.
struct IsciiCharacter {
    std::array<char16_t, 2> units = {}; ///< UTF-16, the first `unitCount` of them
    std::uint8_t unitCount = 0;         ///< 0 for an attribute, which changes nothing here
    std::uint8_t length = 0;            ///< in bytes; 0: the bytes mean nothing
};

/// The first character of `bytes`. It takes a second byte for a letter with nukta, an explicit or a
/// soft halant, a double danda, an attribute or an extension.
IsciiCharacter ReadIscii(ByteView bytes);

// Bytes that mean something together with another.
inline constexpr std::uint8_t kIsciiHalant = 0xE8;
inline constexpr std::uint8_t kIsciiNukta = 0xE9;
inline constexpr std::uint8_t kIsciiDanda = 0xEA;
inline constexpr std::uint8_t kIsciiAttribute = 0xEF;
inline constexpr std::uint8_t kIsciiExtension = 0xF0;

/// False where ReadIscii takes the first of two bytes alone; true now and then where it does, too.
constexpr bool MayBeOneIsciiCharacter(std::uint8_t first, std::uint8_t second) {
    const bool doubled = first == second && (first == kIsciiHalant || first == kIsciiDanda);
    return second == kIsciiNukta || doubled || first == kIsciiAttribute || first == kIsciiExtension;
}

/// The text of `bytes`; nullopt when a byte means nothing, an attribute or extension is cut off, or
/// another script is switched on.
std::optional<std::u16string> DecodeIscii(ByteView bytes);

/// The bytes of `text`; nullopt when a character is missing in ISCII or the bytes would read as
/// other text. A letter and a nukta may read back as the composed letter, which is equivalent.
std::optional<Bytes> EncodeIscii(std::u16string_view text);

} // namespace kvx
