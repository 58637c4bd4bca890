// The document as readers see it: bytes at offsets. Implemented by the opened file and by the
// edited document over it.
#pragma once

#include "platform/bytes.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace kvx {

/// Abstract document. Not synchronised: used from the thread that owns it.
class IReadOnlyDocument {
public:
    virtual ~IReadOnlyDocument() = default;

    /// True while a file is open.
    virtual bool IsOpen() const = 0;

    /// Size of the document in bytes.
    virtual std::uint64_t GetSize() const = 0;

    /// Path of the open file; empty when none is open.
    virtual std::u16string GetPath() const = 0;

    /// At most `count` bytes from `offset` on; shorter or empty at the end or on failure.
    virtual Bytes ReadBytes(std::uint64_t offset, std::uint64_t count) const = 0;

    /// The same into memory of the caller, for those who read block after block. Gives the number
    /// of bytes read.
    virtual std::size_t ReadInto(std::uint64_t offset, std::span<std::uint8_t> target) const {
        const Bytes bytes = ReadBytes(offset, target.size());
        std::copy(bytes.begin(), bytes.end(), target.begin());
        return bytes.size();
    }
};

/// Abstract document that can be changed byte by byte. Offsets are positions in the edited
/// document.
class IEditableDocument : public IReadOnlyDocument {
public:
    /// Replaces the byte at `offset`; false when refused.
    virtual bool OverwriteByte(std::uint64_t offset, std::uint8_t value) = 0;

    /// Inserts a byte before `offset`, which may equal the size (append); false when refused.
    virtual bool InsertByte(std::uint64_t offset, std::uint8_t value) = 0;

    /// Removes the byte at `offset`; false when refused.
    virtual bool DeleteByte(std::uint64_t offset) = 0;

    /// True while the document differs from its file by any edit record.
    virtual bool IsModified() const = 0;

    /// Size of the edited document in bytes.
    virtual std::uint64_t GetEditedSize() const = 0;
};

} // namespace kvx
