// Rows and characters of the code pages whose marks are bytes of their own behind the base:
// TIS-620 and Windows-1258.
#pragma once

#include "encoding/character_decoder.h"
#include "encoding/row_cells.h"

#include <array>
#include <cstdint>

namespace kvx {

enum class ByteKind : std::uint8_t { None, Base, Mark };

/// What each byte shows. Immutable, for every thread.
struct SingleByteTable {
    std::array<char16_t, 256> units = {};
    std::array<ByteKind, 256> kinds = {};
};

/// Made from the system's converter on first use.
const SingleByteTable& Tis620Table();
const SingleByteTable& Windows1258Table();

/// A mark joins the base before it. Some bytes before the row tell whether its first marks belong
/// to a base there.
void DecodeSingleByteRow(const SingleByteTable& table, const RowContext& row, RowCells& cells);

/// A base and all marks behind it.
std::optional<DecodedCharacter> DecodeSingleByteCharacter(const SingleByteTable& table,
                                                          ByteView bytes);

} // namespace kvx
