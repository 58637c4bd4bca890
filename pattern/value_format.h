// Bytes as the struct view shows them. Pure functions.
#pragma once

#include "pattern/struct_pattern_file.h"
#include "platform/bytes.h"

#include <cstdint>
#include <string>

namespace kvx {

// Numbered as the settings file stores the same choices.
enum class ByteArrayStyle : std::uint32_t { Hex = 0, Ascii = 1 };
enum class ByteOrder : std::uint32_t { Little = 0, Big = 1 };
enum class NumberBase : std::uint32_t { Hex = 0, Decimal = 1 };

/// The user's choices for values.
struct ValueFormat {
    ByteArrayStyle byteArrays = ByteArrayStyle::Hex;
    ByteOrder byteOrder = ByteOrder::Little;
    NumberBase numberBase = NumberBase::Hex;
};

// Each of these appends to `out`, which a caller with many values uses again.

/// Two digits a byte with one blank between them: "0A 1B 2C".
void FormatHexBytes(std::u16string& out, ByteView bytes);

/// The first 16 bytes in hexadecimal, then " ..." when there are more; "0 bytes" for none.
void FormatByteArrayHex(std::u16string& out, ByteView bytes);

/// The printable ASCII characters before the first NUL, in double quotes; "..." before the closing
/// quote when another byte or the limit of 64 characters ended the text; "0 bytes" for none.
void FormatByteArrayAscii(std::u16string& out, ByteView bytes);

/// An unsigned number of 1 to 8 bytes; more than 8 are shown as bytes in memory order.
void FormatInteger(std::u16string& out, ByteView bytes, ByteOrder byteOrder, NumberBase base);

/// A float of 4 or a double of 8 bytes, then its bit pattern: "1 (0x3F800000)". The number is read
/// little-endian whatever the choice; the bit pattern follows it. Other sizes show as integers.
void FormatFloat(std::u16string& out, ByteView bytes, MemberKind kind, const ValueFormat& format);

/// The type column: the type name with its count, and the size of an embedded struct.
void FormatTypeText(std::u16string& out, const StructMemberLayout& member);

} // namespace kvx
