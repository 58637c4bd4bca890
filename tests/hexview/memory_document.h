// Documents for tests: one in memory that can refuse edits, and one of any size without bytes in
// memory.
#pragma once

#include "document/read_only_document.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <iterator>

namespace kvx {

/// `count` bytes that count up from 0 and wrap.
inline Bytes CountingBytes(std::size_t count) {
    Bytes bytes(count, 0);
    for (std::size_t i = 0; i < count; ++i)
        bytes[i] = static_cast<std::uint8_t>(i);
    return bytes;
}

class MemoryDocument final : public IEditableDocument {
public:
    explicit MemoryDocument(Bytes content = {}) : bytes(std::move(content)) {}

    Bytes bytes;
    bool open = true;
    bool refuseOverwrite = false;
    bool refuseInsert = false;
    std::function<bool(std::uint64_t offset)> refuseDelete; ///< empty: deletes everything
    mutable std::size_t reads = 0;

    bool IsOpen() const override { return open; }
    std::uint64_t GetSize() const override { return bytes.size(); }
    std::u16string GetPath() const override { return u"memory"; }

    Bytes ReadBytes(std::uint64_t offset, std::uint64_t count) const override {
        ++reads;
        const auto from = static_cast<std::size_t>(std::min<std::uint64_t>(offset, bytes.size()));
        const auto length =
            static_cast<std::size_t>(std::min<std::uint64_t>(count, bytes.size() - from));
        const auto first = std::next(bytes.begin(), static_cast<std::ptrdiff_t>(from));
        return {first, std::next(first, static_cast<std::ptrdiff_t>(length))};
    }

    bool OverwriteByte(std::uint64_t offset, std::uint8_t value) override {
        if (refuseOverwrite || offset >= bytes.size()) return false;
        bytes[static_cast<std::size_t>(offset)] = value;
        return true;
    }
    bool InsertByte(std::uint64_t offset, std::uint8_t value) override {
        if (refuseInsert || offset > bytes.size()) return false;
        bytes.insert(At(offset), value);
        return true;
    }
    bool DeleteByte(std::uint64_t offset) override {
        if (offset >= bytes.size() || (refuseDelete && refuseDelete(offset))) return false;
        bytes.erase(At(offset));
        return true;
    }
    bool IsModified() const override { return false; }
    std::uint64_t GetEditedSize() const override { return bytes.size(); }

private:
    Bytes::iterator At(std::uint64_t offset) {
        return std::next(bytes.begin(), static_cast<std::ptrdiff_t>(offset));
    }
};

/// A read-only document of `size` bytes, each the low byte of its row number.
class HugeDocument final : public IReadOnlyDocument {
public:
    explicit HugeDocument(std::uint64_t size) : size_(size) {}

    bool IsOpen() const override { return true; }
    std::uint64_t GetSize() const override { return size_; }
    std::u16string GetPath() const override { return u"huge"; }
    Bytes ReadBytes(std::uint64_t offset, std::uint64_t count) const override {
        const std::uint64_t left = size_ - std::min(offset, size_);
        Bytes bytes(static_cast<std::size_t>(std::min(count, left)));
        for (std::size_t i = 0; i < bytes.size(); ++i)
            bytes[i] = static_cast<std::uint8_t>((offset + i) / 16);
        return bytes;
    }

private:
    std::uint64_t size_;
};

} // namespace kvx
