// The offset that a person types: always hexadecimal.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kvx {

/// Reads a byte offset with or without "0x" before it and blanks around it; empty when `text` is
/// anything else or does not fit into 64 bits.
std::optional<std::uint64_t> ParseHexOffset(std::u16string_view text);

/// `offset` as ParseHexOffset reads it: upper case, no padding, no prefix.
std::u16string HexOffsetText(std::uint64_t offset);

} // namespace kvx
