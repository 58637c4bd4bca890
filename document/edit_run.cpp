#include "document/edit_run.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <new>
#include <utility>

namespace kvx {

EditRun EditRun::Inserted(std::uint64_t anchor, std::uint8_t value) {
    EditRun run(PieceKind::Inserted, anchor, 1);
    run.inline_[0] = value;
    return run;
}

EditRun EditRun::Overwritten(std::uint64_t position, std::uint8_t value) {
    EditRun run(PieceKind::Overwritten, position, 1);
    run.inline_[0] = value;
    return run;
}

EditRun EditRun::Deleted(std::uint64_t position) {
    return EditRun(PieceKind::Deleted, position, 1);
}

void EditRun::InsertByte(std::size_t at, std::uint8_t value) {
    Reserve(Size() + 1);
    std::uint8_t* place = Data() + at;
    std::memmove(place + 1, place, Size() - at);
    *place = value;
    ++count_;
}

void EditRun::RemoveByte(std::size_t at) noexcept {
    std::uint8_t* place = Data() + at;
    std::memmove(place, place + 1, Size() - at - 1);
    Truncate(Size() - 1);
}

void EditRun::ExtendForward(std::uint8_t value) {
    if (Is(PieceKind::Deleted))
        ++count_;
    else
        InsertByte(Size(), value);
}

void EditRun::ExtendBackward(std::uint8_t value) {
    if (Is(PieceKind::Deleted))
        ++count_;
    else
        InsertByte(0, value);
    --position_;
}

void EditRun::DropFirst() noexcept {
    RemoveByte(0);
    ++position_;
}

void EditRun::DropLast() noexcept {
    Truncate(Size() - 1);
}

void EditRun::TurnIntoDeleted() noexcept {
    kind_ = PieceKind::Deleted;
    heap_.reset();
    capacity_ = kInlineBytes;
}

EditRun EditRun::CopyFrom(std::size_t at) const {
    const std::size_t size = Size() - at;
    EditRun part(kind_, Is(PieceKind::Inserted) ? position_ : position_ + at, 0);
    part.Reserve(size);
    std::memcpy(part.Data(), Data() + at, size);
    part.count_ = size;
    return part;
}

void EditRun::Truncate(std::size_t at) noexcept {
    count_ = at;
    GiveBack();
}

bool EditRun::CanTakeIn(const EditRun& next) const {
    if (next.kind_ != kind_ || next.position_ != End()) return false;
    // Runs of bytes join only while both are small: halves of a split run must not join again.
    return Is(PieceKind::Deleted) || count_ + next.count_ <= kMaxBytes / 2;
}

void EditRun::TakeIn(const EditRun& next) {
    if (!Is(PieceKind::Deleted)) {
        Reserve(Size() + next.Size());
        std::memcpy(Data() + Size(), next.Data(), next.Size());
    }
    count_ += next.count_;
}

bool EditRun::IsSound() const {
    if (kind_ == PieceKind::Unchanged || count_ == 0 || position_ + count_ < position_)
        return false;
    if (Is(PieceKind::Deleted)) return !heap_;
    return count_ <= kMaxBytes && count_ <= capacity_ &&
           (heap_ ? capacity_ > kInlineBytes : capacity_ == kInlineBytes);
}

void EditRun::Reserve(std::size_t size) {
    if (size <= capacity_) return;
    const std::size_t capacity = std::bit_ceil(size);
    MoveInto(std::make_unique_for_overwrite<std::uint8_t[]>(capacity), capacity);
}

void EditRun::GiveBack() noexcept {
    if (!heap_) return;
    if (count_ <= kInlineBytes) {
        std::memcpy(inline_.data(), heap_.get(), Size());
        heap_.reset();
        capacity_ = kInlineBytes;
    } else if (count_ <= capacity_ / 4u) {
        // Only a saving of memory: without memory for it the run simply keeps what it has.
        const std::size_t capacity = capacity_ / 2u;
        std::unique_ptr<std::uint8_t[]> smaller(new (std::nothrow) std::uint8_t[capacity]);
        if (smaller) MoveInto(std::move(smaller), capacity);
    }
}

void EditRun::MoveInto(std::unique_ptr<std::uint8_t[]> block, std::size_t capacity) noexcept {
    std::memcpy(block.get(), Data(), Size());
    heap_ = std::move(block);
    capacity_ = static_cast<std::uint16_t>(capacity);
}

} // namespace kvx
