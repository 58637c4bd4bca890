#include "document/edit_index.h"

#include <new>

namespace kvx {

void EditIndex::Clear() noexcept {
    runs_.Clear();
    cursor_ = {};
    insertedCount_ = 0;
    deletedCount_ = 0;
}

bool EditIndex::InsertsOnlyAtEnd(std::uint64_t onDiskSize) const {
    std::uint64_t atEnd = 0;
    EditTree::Cursor cursor = runs_.Back();
    while (const EditRun* run = cursor.Before()) {
        if (!run->Is(PieceKind::Inserted) || run->Position() != onDiskSize) break;
        atEnd += run->Count();
        cursor.MoveBack();
    }
    return atEnd == insertedCount_;
}

bool EditIndex::DeletesOnlyTail(std::uint64_t onDiskSize) const {
    std::uint64_t kept = onDiskSize;
    EditTree::Cursor cursor = runs_.Back();
    while (const EditRun* run = cursor.Before()) {
        if (run->Is(PieceKind::Deleted)) {
            if (run->End() != kept) break;
            kept = run->Position();
        } else if (!run->Is(PieceKind::Inserted)) {
            break;
        }
        cursor.MoveBack();
    }
    return onDiskSize - kept == deletedCount_;
}

std::optional<std::uint64_t> EditIndex::OnDiskPosition(std::uint64_t position) const {
    const Place place = Find(position);
    if (place.run && place.run->Is(PieceKind::Inserted)) return std::nullopt;
    return place.onDisk;
}

// Leaves the cursor behind the last run that starts at or before the position: nothing but that run
// can hold the byte.
EditIndex::Place EditIndex::Find(std::uint64_t position) const {
    runs_.Seek(cursor_, position);
    const std::uint64_t onDisk = position - cursor_.Shift();
    const EditRun* run = cursor_.Before();
    if (!run) return {nullptr, 0, onDisk};
    const std::uint64_t start = run->Position() + cursor_.Shift() - run->Shift();
    const std::uint64_t at = position - start;
    if (at >= run->EditedCount()) return {nullptr, 0, onDisk};
    return {run, static_cast<std::size_t>(at), run->Position() + at};
}

void EditIndex::InsertByte(std::uint64_t position, std::uint8_t value) {
    const Place place = Find(position);
    if (place.run && place.run->Is(PieceKind::Inserted)) {
        InsertIntoRunBefore(place.at, value);
    } else {
        // Before an overwritten byte: between the parts of its run, or in front of the run.
        if (place.run && place.at > 0) SplitRunBefore(place.at);
        if (place.run && place.at == 0) cursor_.MoveBack();
        const EditRun* run = cursor_.Before();
        if (run && run->Is(PieceKind::Inserted) && run->Position() == place.onDisk)
            InsertIntoRunBefore(static_cast<std::size_t>(run->Count()), value);
        else
            runs_.Insert(cursor_, EditRun::Inserted(place.onDisk, value));
    }
    ++insertedCount_;
}

void EditIndex::DeleteByte(std::uint64_t position) {
    const Place place = Find(position);
    if (!place.run)
        DeleteUnchanged(place.onDisk);
    else if (place.run->Is(PieceKind::Inserted))
        DeleteInserted(position, place);
    else
        DeleteOverwritten(position, place);
}

void EditIndex::OverwriteByte(std::uint64_t position, std::uint8_t value) {
    const Place place = Find(position);
    const EditRun* before = cursor_.Before();
    const auto canGrow = [](const EditRun* run) {
        return run && run->Is(PieceKind::Overwritten) && !run->IsFull();
    };
    if (place.run) {
        runs_.UpdateBefore(cursor_, [&](EditRun& run) { run.SetByte(place.at, value); });
    } else if (canGrow(before) && before->End() == place.onDisk) {
        runs_.UpdateBefore(cursor_, [&](EditRun& run) { run.ExtendForward(value); });
        JoinAtCursor();
    } else if (const EditRun* after = cursor_.After();
               canGrow(after) && after->Position() == place.onDisk + 1) {
        runs_.UpdateAfter(cursor_, [&](EditRun& run) { run.ExtendBackward(value); });
    } else {
        runs_.Insert(cursor_, EditRun::Overwritten(place.onDisk, value));
    }
}

void EditIndex::RestoreByte(std::uint64_t position) {
    const Place place = Find(position);
    if (!place.run) return;
    const auto count = static_cast<std::size_t>(place.run->Count());
    if (count == 1) {
        runs_.EraseBefore(cursor_);
    } else if (place.at == 0) {
        runs_.UpdateBefore(cursor_, [](EditRun& run) { run.DropFirst(); });
    } else {
        if (place.at + 1 < count) SplitRunBefore(place.at + 1);
        runs_.UpdateBefore(cursor_, [](EditRun& run) { run.DropLast(); });
    }
}

bool EditIndex::IsSound() const {
    std::uint64_t inserted = 0;
    std::uint64_t deleted = 0;
    EditTree::Cursor cursor = runs_.Front();
    while (cursor.MoveForward()) {
        const EditRun& run = *cursor.Before();
        inserted += run.Is(PieceKind::Inserted) ? run.Count() : 0;
        deleted += run.Is(PieceKind::Deleted) ? run.Count() : 0;
    }
    return runs_.IsSound() && inserted == insertedCount_ && deleted == deletedCount_;
}

// Cuts the run before the cursor at its byte `at` and leaves the cursor between the parts.
void EditIndex::SplitRunBefore(std::size_t at) {
    runs_.Insert(cursor_, cursor_.Before()->CopyFrom(at));
    cursor_.MoveBack();
    runs_.UpdateBefore(cursor_, [at](EditRun& run) { run.Truncate(at); });
}

void EditIndex::InsertIntoRunBefore(std::size_t at, std::uint8_t value) {
    const EditRun& run = *cursor_.Before();
    if (run.IsFull() && at == run.Count()) {
        // Bytes added at the end one after another leave full runs behind them.
        runs_.Insert(cursor_, EditRun::Inserted(run.Position(), value));
        return;
    }
    if (run.IsFull()) {
        constexpr std::size_t kHalf = EditRun::kMaxBytes / 2;
        SplitRunBefore(kHalf);
        if (at > kHalf) {
            cursor_.MoveForward();
            at -= kHalf;
        }
    }
    runs_.UpdateBefore(cursor_, [&](EditRun& part) { part.InsertByte(at, value); });
}

void EditIndex::DeleteInserted(std::uint64_t position, const Place& place) {
    const std::uint64_t anchor = place.run->Position();
    --insertedCount_;
    if (place.run->Count() == 1) {
        runs_.EraseBefore(cursor_);
        JoinAround(position, anchor);
    } else {
        runs_.UpdateBefore(cursor_, [&](EditRun& run) { run.RemoveByte(place.at); });
        if (!JoinAtCursor() && cursor_.MoveBack()) JoinAtCursor();
    }
}

void EditIndex::DeleteUnchanged(std::uint64_t onDisk) {
    const EditRun* before = cursor_.Before();
    const EditRun* after = cursor_.After();
    if (before && before->Is(PieceKind::Deleted) && before->End() == onDisk) {
        runs_.UpdateBefore(cursor_, [](EditRun& run) { run.ExtendForward(); });
        JoinAtCursor();
    } else if (after && after->Is(PieceKind::Deleted) && after->Position() == onDisk + 1) {
        runs_.UpdateAfter(cursor_, [](EditRun& run) { run.ExtendBackward(); });
    } else {
        runs_.Insert(cursor_, EditRun::Deleted(onDisk));
    }
    ++deletedCount_;
}

void EditIndex::DeleteOverwritten(std::uint64_t position, const Place& place) {
    const std::uint64_t onDisk = place.onDisk;
    if (!MoveToDeletedNeighbour(place)) {
        // Alone in a run first, so that what can fail changes nothing that is seen.
        if (place.at > 0) {
            SplitRunBefore(place.at);
            cursor_.MoveForward();
        }
        if (cursor_.Before()->Count() > 1) SplitRunBefore(1);
        runs_.UpdateBefore(cursor_, [](EditRun& run) { run.TurnIntoDeleted(); });
        JoinAround(position, onDisk);
    }
    ++deletedCount_;
}

// Deleting on through overwritten bytes, forwards or backwards: the byte at the end of its run goes
// over to the deleted run beside it.
bool EditIndex::MoveToDeletedNeighbour(const Place& place) {
    const std::uint64_t count = place.run->Count();
    if (count == 1) return false;
    if (place.at + 1 == count) {
        const EditRun* after = cursor_.After();
        if (!after || !after->Is(PieceKind::Deleted) || after->Position() != place.onDisk + 1)
            return false;
        runs_.UpdateBefore(cursor_, [](EditRun& run) { run.DropLast(); });
        runs_.UpdateAfter(cursor_, [](EditRun& run) { run.ExtendBackward(); });
        return true;
    }
    if (place.at > 0) return false;
    EditTree::Cursor front = cursor_;
    front.MoveBack();
    const EditRun* before = front.Before();
    if (!before || !before->Is(PieceKind::Deleted) || before->End() != place.onDisk) return false;
    runs_.UpdateBefore(cursor_, [](EditRun& run) { run.DropFirst(); });
    cursor_.MoveBack();
    runs_.UpdateBefore(cursor_, [](EditRun& run) { run.ExtendForward(); });
    return true;
}

// Moves the cursor behind the last run at or before the on-disk position, which stands near the
// edited one.
void EditIndex::SeekOnDisk(std::uint64_t position, std::uint64_t onDisk) {
    runs_.Seek(cursor_, position);
    while (cursor_.Before() && cursor_.Before()->Position() > onDisk)
        cursor_.MoveBack();
}

// Makes one run of the two around the cursor when they belong together; the cursor is unset then.
bool EditIndex::JoinAtCursor() {
    const EditRun* before = cursor_.Before();
    const EditRun* after = cursor_.After();
    if (!before || !after || !before->CanTakeIn(*after)) return false;
    try {
        runs_.UpdateBefore(cursor_, [&](EditRun& run) { run.TakeIn(*after); });
    } catch (const std::bad_alloc&) {
        return false; // two runs say the same; deleted ones need no memory to join
    }
    runs_.EraseAfter(cursor_);
    return true;
}

// Joins the last run at or before the on-disk position with its neighbours.
void EditIndex::JoinAround(std::uint64_t position, std::uint64_t onDisk) {
    SeekOnDisk(position, onDisk);
    JoinAtCursor();
    SeekOnDisk(position, onDisk);
    if (cursor_.MoveBack()) JoinAtCursor();
}

PieceWalk::PieceWalk(const EditIndex& edits, std::uint64_t onDiskSize)
    : cursor_(edits.runs_.Front()), onDiskSize_(onDiskSize) {}

std::optional<Piece> PieceWalk::Next() {
    const EditRun* run = cursor_.After();
    const std::uint64_t next = run ? run->Position() : onDiskSize_;
    if (position_ < next) {
        const std::uint64_t start = std::exchange(position_, next);
        return Piece{PieceKind::Unchanged, start, next - start, {}};
    }
    if (!run) return std::nullopt;
    return TakeEdited(*run);
}

Piece PieceWalk::TakeEdited(const EditRun& first) {
    Piece piece{first.Kind(), first.Position(), first.Count(), first.NewBytes()};
    position_ = first.End();
    cursor_.MoveForward();
    gathered_.clear();
    for (const EditRun* next = cursor_.After();
         next && next->Is(piece.kind) && next->Position() == position_; next = cursor_.After()) {
        if (gathered_.empty()) gathered_.assign(piece.bytes.begin(), piece.bytes.end());
        gathered_.insert(gathered_.end(), next->NewBytes().begin(), next->NewBytes().end());
        piece.bytes = gathered_;
        piece.count += next->Count();
        position_ = next->End();
        cursor_.MoveForward();
    }
    return piece;
}

} // namespace kvx
