// The East Asian code pages as tables, made from the system's converter on first use.
#pragma once

#include "encoding/text_encoding.h"
#include "platform/bytes.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace kvx {

/// Which bytes begin and end a pair, and what bytes and pairs show. Immutable, for every thread.
struct DoubleByteTable {
    std::array<bool, 256> lead = {};
    std::array<bool, 256> trail = {};
    std::array<char16_t, 256> singles = {};                 ///< 0: nothing printable
    std::array<char16_t, std::size_t{128}* 256> pairs = {}; ///< by lead - 0x80 and trail

    /// True for a lead and a trail byte, whether or not the page defines the pair.
    bool IsPair(std::uint8_t first, std::uint8_t second) const {
        return lead[first] && trail[second];
    }

    /// The character of a pair; 0 when it is none or not printable.
    char16_t PairAt(std::uint8_t first, std::uint8_t second) const {
        return pairs[static_cast<std::size_t>(first & 0x7F) << 8U | second];
    }
};

/// What the bytes at some place are.
struct DoubleByteCharacter {
    char16_t unit = 0;      ///< 0: nothing that could be shown
    std::size_t length = 1; ///< in bytes: 2 for every lead byte with a trail byte behind it
};

/// At index `at`, which is inside of `bytes`.
inline DoubleByteCharacter CharacterAt(const DoubleByteTable& table, ByteView bytes,
                                       std::size_t at) {
    const std::uint8_t first = bytes[at];
    if (!table.lead[first]) return {table.singles[first], 1};
    if (at + 1 == bytes.size() || !table.trail[bytes[at + 1]]) return {0, 1};
    return {table.PairAt(first, bytes[at + 1]), 2};
}

/// Only for the five double-byte encodings. Takes some milliseconds the first time.
const DoubleByteTable& TableOf(TextEncoding doubleByteEncoding);

} // namespace kvx
