// The file's own bytes for overwrites in a row: each must be compared with what the file holds, and
// a system read for every single byte would cost ten times as much as the overwrite.
#pragma once

#include "document/file_view_model.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace kvx {

/// Other programs may change the file at any time, so this is no cache: it lives from one overwrite
/// to the next at the position beside it, and its owner drops it at every other operation.
class ReadAhead {
public:
    /// The file's byte at `position`; empty when it cannot be read.
    std::optional<std::uint8_t> ByteAt(const FileViewModel& file, std::uint64_t position);

    /// Forgets the file's bytes.
    void Drop();

private:
    void Read(const FileViewModel& file, std::uint64_t position);

    static constexpr std::size_t kBlockBytes = 4096;

    std::optional<std::uint64_t> previous_; ///< the position asked for last
    std::uint64_t start_ = 0;               ///< file position of the block
    std::size_t count_ = 0;                 ///< bytes in the block
    std::array<std::uint8_t, kBlockBytes> block_ = {};
};

} // namespace kvx
