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

/// False where ReadIscii takes the first of two bytes alone; true now and then where it does, too.
constexpr bool MayBeOneIsciiCharacter(std::uint8_t first, std::uint8_t second) {
    constexpr std::uint8_t kHalant = 0xE8;
    constexpr std::uint8_t kNukta = 0xE9;
    constexpr std::uint8_t kDanda = 0xEA;
    constexpr std::uint8_t kAttribute = 0xEF;
    constexpr std::uint8_t kExtension = 0xF0;
    const bool doubled = first == second && (first == kHalant || first == kDanda);
    return second == kNukta || doubled || first == kAttribute || first == kExtension;
}

/// The text of `bytes`; nullopt when a byte means nothing, an attribute or extension is cut off, or
/// another script is switched on.
std::optional<std::u16string> DecodeIscii(ByteView bytes);

/// The bytes of `text`; nullopt when a character is missing in ISCII or the bytes would read as
/// other text. A letter and a nukta may read back as the composed letter, which is equivalent.
std::optional<Bytes> EncodeIscii(std::u16string_view text);

} // namespace kvx
