// The edited document by its plain definition: three records over the file's bytes, every position
// found by walking them. Slow and obvious; the real document must give the same answers.
#pragma once

#include "document/piece.h"
#include "platform/bytes.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <unordered_map>
#include <utility>
#include <vector>

namespace kvx {

class PlainDocument {
public:
    /// What stands at a position: an on-disk byte, or byte `index` of the bytes inserted at an
    /// anchor.
    struct Place {
        bool inserted = false;
        std::uint64_t position = 0; ///< on-disk position, or the anchor
        std::uint64_t index = 0;
    };

    explicit PlainDocument(Bytes file) : file_(std::move(file)) {}

    std::uint64_t OnDiskSize() const { return file_.size(); }

    std::uint64_t EditedSize() const {
        std::uint64_t size = OnDiskSize() - deletions_.size();
        for (const auto& [anchor, bytes] : insertions_)
            size += bytes.size();
        return size;
    }

    bool IsModified() const {
        return !insertions_.empty() || !deletions_.empty() || !overwrites_.empty();
    }

    std::optional<Place> Locate(std::uint64_t p) const {
        if (p >= EditedSize()) return std::nullopt;
        std::uint64_t previous = 0;
        std::uint64_t base = 0;
        for (const auto& [anchor, bytes] : insertions_) {
            const std::uint64_t live = (anchor - previous) - DeletionsIn(previous, anchor);
            if (p < base + live) return Place{false, NthLiveByte(previous, anchor, p - base), 0};
            if (p < base + live + bytes.size()) return Place{true, anchor, p - (base + live)};
            base += live + bytes.size();
            previous = anchor;
        }
        return Place{false, NthLiveByte(previous, OnDiskSize(), p - base), 0};
    }

    std::optional<std::uint8_t> ByteAt(std::uint64_t p) const {
        const auto place = Locate(p);
        if (!place) return std::nullopt;
        if (place->inserted) return insertions_.at(place->position)[place->index];
        if (place->position >= file_.size()) return std::nullopt;
        const auto replaced = overwrites_.find(place->position);
        return replaced != overwrites_.end() ? replaced->second : file_[place->position];
    }

    Bytes ReadBytes(std::uint64_t offset, std::uint64_t count) const {
        Bytes result;
        while (count-- > 0) {
            const auto byte = ByteAt(offset++);
            if (!byte) break;
            result.push_back(*byte);
        }
        return result;
    }

    bool OverwriteByte(std::uint64_t p, std::uint8_t value) {
        const auto place = Locate(p);
        if (!place) return false;
        if (place->inserted)
            insertions_[place->position][place->index] = value;
        else if (file_[place->position] != value)
            overwrites_[place->position] = value;
        else
            overwrites_.erase(place->position);
        return true;
    }

    bool InsertByte(std::uint64_t p, std::uint8_t value) {
        if (p > EditedSize()) return false;
        if (p == EditedSize()) {
            insertions_[OnDiskSize()].push_back(value);
            return true;
        }
        const Place place = *Locate(p);
        Bytes& bytes = insertions_[place.position];
        const std::uint64_t index = place.inserted ? place.index : bytes.size();
        bytes.insert(bytes.begin() + static_cast<std::ptrdiff_t>(index), value);
        return true;
    }

    bool DeleteByte(std::uint64_t p) {
        const auto place = Locate(p);
        if (!place) return false;
        if (!place->inserted) {
            deletions_.insert(place->position);
            overwrites_.erase(place->position);
            return true;
        }
        Bytes& bytes = insertions_[place->position];
        bytes.erase(bytes.begin() + static_cast<std::ptrdiff_t>(place->index));
        if (bytes.empty()) insertions_.erase(place->position);
        return true;
    }

    bool IsSavedInPlace() const {
        const bool appendsOnly =
            insertions_.empty() ||
            (insertions_.size() == 1 && insertions_.begin()->first == OnDiskSize());
        return appendsOnly && DeletesOnlyTail();
    }

    bool DeletesOnlyTail() const {
        std::uint64_t expected = OnDiskSize() - deletions_.size();
        return std::all_of(deletions_.begin(), deletions_.end(),
                           [&](std::uint64_t deleted) { return deleted == expected++; });
    }

    /// Makes the file what saving makes of it. In place, bytes are appended behind the old end
    /// before the file is cut to the edited size, so cutting and appending at once loses appended
    /// bytes.
    void Save() {
        const std::uint64_t size = EditedSize();
        Bytes saved = IsSavedInPlace() ? Bytes(file_) : Content();
        if (IsSavedInPlace()) {
            for (const auto& [position, value] : overwrites_)
                saved[position] = value;
            for (const auto& [anchor, bytes] : insertions_)
                saved.insert(saved.end(), bytes.begin(), bytes.end());
            saved.resize(size);
        }
        *this = PlainDocument(std::move(saved));
    }

    /// The whole edited document, in one walk over the file.
    Bytes Content() const {
        Bytes content;
        for (std::uint64_t at = 0; at <= OnDiskSize(); ++at) {
            if (const auto entry = insertions_.find(at); entry != insertions_.end())
                content.insert(content.end(), entry->second.begin(), entry->second.end());
            if (at == OnDiskSize() || deletions_.contains(at)) continue;
            const auto replaced = overwrites_.find(at);
            content.push_back(replaced != overwrites_.end() ? replaced->second : file_[at]);
        }
        return content;
    }

    /// The records as single edits in on-disk order: kind, position, value (0 for a deleted byte).
    using Record = std::tuple<PieceKind, std::uint64_t, std::uint8_t>;
    std::vector<Record> Records() const {
        std::vector<Record> records;
        for (std::uint64_t at = 0; at <= OnDiskSize(); ++at) {
            if (const auto entry = insertions_.find(at); entry != insertions_.end())
                for (const std::uint8_t value : entry->second)
                    records.emplace_back(PieceKind::Inserted, at, value);
            if (deletions_.contains(at)) records.emplace_back(PieceKind::Deleted, at, 0);
            if (const auto entry = overwrites_.find(at); entry != overwrites_.end())
                records.emplace_back(PieceKind::Overwritten, at, entry->second);
        }
        return records;
    }

    /// The file's own byte; `at` is an on-disk position.
    std::uint8_t FileByte(std::uint64_t at) const { return file_[at]; }

private:
    std::uint64_t DeletionsIn(std::uint64_t from, std::uint64_t to) const {
        std::uint64_t count = 0;
        for (auto at = deletions_.lower_bound(from); at != deletions_.end() && *at < to; ++at)
            ++count;
        return count;
    }

    // The k-th byte of [from, to) that is not deleted.
    std::uint64_t NthLiveByte(std::uint64_t from, std::uint64_t to, std::uint64_t k) const {
        if (DeletionsIn(from, to) == 0) return from + k;
        std::uint64_t at = from + k;
        while (at < to) {
            const std::uint64_t expected = from + k + DeletionsIn(from, at + 1);
            if (expected == at && !deletions_.contains(at)) return at;
            at = expected;
        }
        return to;
    }

    Bytes file_;
    std::map<std::uint64_t, Bytes> insertions_;
    std::set<std::uint64_t> deletions_;
    std::unordered_map<std::uint64_t, std::uint8_t> overwrites_;
};

} // namespace kvx
