// The edited document by its plain definition: every byte of it side by side, each with its place
// in the file. Slow and obvious; the real document must give the same answers.
#pragma once

#include "document/piece.h"
#include "platform/bytes.h"

#include <algorithm>
#include <cstdint>
#include <tuple>
#include <utility>
#include <vector>

namespace kvx {

class PlainDocument {
public:
    explicit PlainDocument(Bytes file) : file_(std::move(file)) {
        for (const std::uint8_t value : file_)
            cells_.push_back({false, cells_.size(), value});
    }

    std::uint64_t OnDiskSize() const { return file_.size(); }
    std::uint64_t EditedSize() const { return cells_.size(); }

    bool IsModified() const {
        return cells_.size() != file_.size() ||
               std::any_of(cells_.begin(), cells_.end(),
                           [&](const Cell& cell) { return IsNew(cell); });
    }

    Bytes ReadBytes(std::uint64_t offset, std::uint64_t count) const {
        Bytes result;
        for (; count > 0 && offset < cells_.size(); --count)
            result.push_back(cells_[offset++].value);
        return result;
    }

    Bytes Content() const { return ReadBytes(0, EditedSize()); }

    bool OverwriteByte(std::uint64_t p, std::uint8_t value) {
        if (p >= cells_.size()) return false;
        cells_[p].value = value;
        return true;
    }

    /// Before a byte: at the anchor that the byte has or is. At the end: at the file's end.
    bool InsertByte(std::uint64_t p, std::uint8_t value) {
        if (p > cells_.size()) return false;
        const std::uint64_t anchor = p < cells_.size() ? cells_[p].place : OnDiskSize();
        cells_.insert(At(p), {true, anchor, value});
        return true;
    }

    bool DeleteByte(std::uint64_t p) {
        if (p >= cells_.size()) return false;
        cells_.erase(At(p));
        return true;
    }

    /// True when bytes are inserted only at the file's end and deleted only from it backwards.
    bool IsSavedInPlace() const {
        for (std::uint64_t p = 0; p < cells_.size(); ++p)
            if (cells_[p].place != (cells_[p].inserted ? OnDiskSize() : p)) return false;
        return true;
    }

    /// Makes the file what saving makes of it. In place, bytes are appended behind the old end
    /// before the file is cut to the edited size, so cutting and appending at once loses appended
    /// bytes.
    void Save() {
        const bool inPlace = IsSavedInPlace();
        Bytes saved = inPlace ? file_ : Bytes();
        for (const Cell& cell : cells_) {
            if (inPlace && !cell.inserted)
                saved[cell.place] = cell.value;
            else
                saved.push_back(cell.value);
        }
        saved.resize(EditedSize());
        *this = PlainDocument(std::move(saved));
    }

    /// The records as single edits in on-disk order: kind, position, value (0 for a deleted byte).
    using Record = std::tuple<PieceKind, std::uint64_t, std::uint8_t>;
    std::vector<Record> Records() const {
        std::vector<Record> records;
        std::uint64_t next = 0;
        const auto deleteUpTo = [&](std::uint64_t place) {
            for (; next < place; ++next)
                records.emplace_back(PieceKind::Deleted, next, 0);
        };
        for (const Cell& cell : cells_) {
            deleteUpTo(cell.place);
            if (IsNew(cell))
                records.emplace_back(cell.inserted ? PieceKind::Inserted : PieceKind::Overwritten,
                                     cell.place, cell.value);
            if (!cell.inserted) ++next;
        }
        deleteUpTo(OnDiskSize());
        return records;
    }

    /// The value that takes back an overwrite at `p`; any for other positions.
    std::uint8_t OriginalByte(std::uint64_t p) const {
        return p < cells_.size() && !cells_[p].inserted ? file_[cells_[p].place] : 0;
    }

private:
    struct Cell {
        bool inserted = false;
        std::uint64_t place = 0; ///< on-disk position; the anchor of an inserted byte
        std::uint8_t value = 0;
    };

    bool IsNew(const Cell& cell) const { return cell.inserted || cell.value != file_[cell.place]; }

    std::vector<Cell>::iterator At(std::uint64_t p) {
        return cells_.begin() + static_cast<std::ptrdiff_t>(p);
    }

    Bytes file_;
    std::vector<Cell> cells_; ///< in the order of their places
};

} // namespace kvx
