// The document of tests: bytes in memory and any number of zeros behind them, which can refuse
// edits and fail to be read.
#pragma once

#include "document/read_only_document.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <new>

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
    std::uint64_t zerosBehind = 0;
    bool open = true;
    std::function<bool(std::uint64_t offset)> refuses; ///< an edit there; empty: takes every one
    std::uint64_t badFrom = ~0ULL;                     ///< reads that reach beyond it give nothing
    std::uint64_t mostAtOnce = ~0ULL;                  ///< a read gives no more bytes
    bool outOfMemory = false;                          ///< reads throw
    mutable std::size_t reads = 0;

    bool IsOpen() const override { return open; }
    std::uint64_t GetSize() const override { return bytes.size() + zerosBehind; }
    std::u16string GetPath() const override { return u"memory"; }
    Bytes ReadBytes(std::uint64_t offset, std::uint64_t count) const override {
        ++reads;
        if (outOfMemory) throw std::bad_alloc();
        const std::uint64_t from = std::min(offset, GetSize());
        const std::uint64_t to = from + std::min({count, mostAtOnce, GetSize() - from});
        if (to > badFrom) return {};
        Bytes read(std::next(bytes.begin(), Index(from)), std::next(bytes.begin(), Index(to)));
        read.resize(static_cast<std::size_t>(to - from), 0);
        return read;
    }
    bool OverwriteByte(std::uint64_t offset, std::uint8_t value) override {
        if (refuses && refuses(offset)) return false;
        bytes.at(static_cast<std::size_t>(offset)) = value;
        return true;
    }
    bool InsertByte(std::uint64_t offset, std::uint8_t value) override {
        if (refuses && refuses(offset)) return false;
        bytes.insert(std::next(bytes.begin(), Index(offset)), value);
        return true;
    }
    bool DeleteByte(std::uint64_t offset) override {
        if (refuses && refuses(offset)) return false;
        bytes.erase(std::next(bytes.begin(), Index(offset)));
        return true;
    }
    bool IsModified() const override { return false; }
    std::uint64_t GetEditedSize() const override { return GetSize(); }

private:
    std::ptrdiff_t Index(std::uint64_t offset) const {
        return static_cast<std::ptrdiff_t>(std::min<std::uint64_t>(offset, bytes.size()));
    }
};

} // namespace kvx
