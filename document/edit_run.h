// One entry of the edit tree: neighbouring edits of one kind at an on-disk position.
#pragma once

#include "document/piece.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>

namespace kvx {

/// A run of inserted, overwritten or deleted bytes. A deleted run is as long as it likes; the
/// others hold their bytes and at most kMaxBytes of them, so that an edit inside a run moves little
/// memory: longer stretches are several runs in a row. A few bytes lie in the run itself, more on
/// the heap.
///
/// Calls that may run out of memory leave the run unchanged then.
class EditRun {
public:
    static constexpr std::size_t kMaxBytes = 512;

    EditRun() = default;
    static EditRun Inserted(std::uint64_t anchor, std::uint8_t value);
    static EditRun Overwritten(std::uint64_t position, std::uint8_t value);
    static EditRun Deleted(std::uint64_t position);

    bool Is(PieceKind kind) const { return kind_ == kind; }
    PieceKind Kind() const { return kind_; }

    /// On-disk position of the first byte; of inserted bytes the anchor.
    std::uint64_t Position() const { return position_; }

    /// On-disk position after the last byte; of inserted bytes the anchor.
    std::uint64_t End() const { return Is(PieceKind::Inserted) ? position_ : position_ + count_; }

    /// Bytes inserted, overwritten or deleted; never 0 in the tree.
    std::uint64_t Count() const { return count_; }

    /// Bytes of the run in the edited document.
    std::uint64_t EditedCount() const { return Is(PieceKind::Deleted) ? 0 : count_; }

    /// How far the run moves what follows it: edited less on-disk positions, modulo 2^64.
    std::uint64_t Shift() const {
        return Is(PieceKind::Inserted) ? count_ : Is(PieceKind::Deleted) ? 0 - count_ : 0;
    }

    /// The new bytes; empty for a deleted run.
    ByteView NewBytes() const { return {Data(), static_cast<std::size_t>(EditedCount())}; }

    bool IsFull() const { return EditedCount() >= kMaxBytes; }

    void SetByte(std::size_t at, std::uint8_t value) { Data()[at] = value; }

    /// For inserted bytes; `at` may equal the count. The run must not be full.
    void InsertByte(std::size_t at, std::uint8_t value);

    /// For inserted bytes.
    void RemoveByte(std::size_t at) noexcept;

    /// Takes in the on-disk byte after or before the run; `value` replaces an overwritten one. A
    /// run of overwritten bytes must not be full.
    void ExtendForward(std::uint8_t value = 0);
    void ExtendBackward(std::uint8_t value = 0);

    /// For overwritten bytes: gives up the first or the last one.
    void DropFirst() noexcept;
    void DropLast() noexcept;

    /// For overwritten bytes: they are deleted from now on.
    void TurnIntoDeleted() noexcept;

    /// For runs with bytes: the part from byte `at` on, as a run of its own.
    EditRun CopyFrom(std::size_t at) const;

    /// For runs with bytes: forgets the bytes from `at` on.
    void Truncate(std::size_t at) noexcept;

    /// True when `next`, which follows this run, can become part of it and it is worth doing.
    bool CanTakeIn(const EditRun& next) const;

    /// Appends the content of `next`.
    void TakeIn(const EditRun& next);

    /// Checks the run's own rules; for tests.
    bool IsSound() const;

private:
    static constexpr std::size_t kInlineBytes = 5;

    EditRun(PieceKind kind, std::uint64_t position, std::uint64_t count)
        : position_(position), count_(count), kind_(kind) {}

    std::uint8_t* Data() { return heap_ ? heap_.get() : inline_.data(); }
    const std::uint8_t* Data() const { return heap_ ? heap_.get() : inline_.data(); }
    std::size_t Size() const { return static_cast<std::size_t>(count_); }

    /// Makes room for `size` bytes and gives back what is far too much.
    void Reserve(std::size_t size);
    void GiveBack() noexcept;
    void MoveInto(std::unique_ptr<std::uint8_t[]> block, std::size_t capacity) noexcept;

    std::uint64_t position_ = 0;
    std::uint64_t count_ = 0;
    std::unique_ptr<std::uint8_t[]> heap_; ///< null while the bytes fit into inline_
    std::uint16_t capacity_ = kInlineBytes;
    PieceKind kind_ = PieceKind::Inserted;
    std::array<std::uint8_t, kInlineBytes> inline_ = {};
};

} // namespace kvx
