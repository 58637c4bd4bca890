#include "fuzz/document_checks.h"

#include "document/editable_document.h"
#include "tests/document/plain_document.h"
#include "tests/support/memory_files.h"

namespace kvx {
namespace {

Bytes FileOf(std::size_t size) {
    Bytes bytes(size);
    for (std::size_t i = 0; i < size; ++i)
        bytes[i] = static_cast<std::uint8_t>(i * 37);
    return bytes;
}

/// The pieces of the edited file as single edits; nothing when they have gaps, overlap or could be
/// longer.
std::optional<std::vector<PlainDocument::Record>> RecordsOf(const EditIndex& edits,
                                                            std::uint64_t onDiskSize) {
    std::vector<PlainDocument::Record> records;
    PieceWalk walk(edits, onDiskSize);
    std::uint64_t position = 0;
    std::optional<PieceKind> last;
    while (const std::optional<Piece> piece = walk.Next()) {
        const auto& [kind, start, count, bytes] = *piece;
        const bool inserted = kind == PieceKind::Inserted;
        const bool isNew = inserted || kind == PieceKind::Overwritten;
        if (start != position || kind == last || bytes.size() != (isNew ? count : 0)) return {};
        for (std::uint64_t i = 0; i < count && kind != PieceKind::Unchanged; ++i)
            records.emplace_back(kind, start + (inserted ? 0 : i), isNew ? bytes[i] : 0);
        if (!inserted) position += count;
        last = kind;
    }
    if (position != onDiskSize) return {};
    return records;
}

/// What a step does; most go on from byte to byte.
enum class Deed { Overwrite, Restore, InsertOn, InsertHere, DeleteOn, DeleteBack, Read, Save };

struct Step {
    Deed deed = Deed::Read;
    std::uint64_t times = 0;
    std::uint64_t at = 0;
    std::uint8_t value = 0;
};

class Session {
public:
    Session(std::size_t fileSize, std::size_t mostPerRead) : plain_(FileOf(fileSize)) {
        if (mostPerRead > 0) files_.mostPerRead = mostPerRead;
        files_.Write(kPath, plain_.Content());
        document_.Open(kPath);
    }

    std::string Run(Step step) {
        step.at %= plain_.EditedSize() + 2;
        if (step.deed == Deed::Read) return Read(step.at, step.times * step.value);
        if (step.deed == Deed::Save) return Save();
        for (; step.times > 0; --step.times)
            if (!Edit(step)) return "one edits, the other refuses";
        return SameState() ? "" : "another size or state after edits";
    }

    std::string Compare() const {
        if (!document_.Edits().IsSound()) return "a broken tree";
        const std::uint64_t size = plain_.OnDiskSize();
        const bool inPlace =
            document_.Edits().InsertsOnlyAtEnd(size) && document_.Edits().DeletesOnlyTail(size);
        if (inPlace != plain_.IsSavedInPlace()) return "saved the other way";
        if (RecordsOf(document_.Edits(), size) != plain_.Records()) return "other edits";
        return document_.ReadBytes(0, ~std::uint64_t{0}) == plain_.Content() ? "" : "other bytes";
    }

private:
    static constexpr const char16_t* kPath = u"f";

    bool SameState() const {
        return document_.GetSize() == plain_.EditedSize() &&
               document_.IsModified() == plain_.IsModified();
    }

    /// Makes the edit in both and moves on; false when they answer differently.
    bool Edit(Step& step) {
        const std::uint64_t at = step.at;
        switch (step.deed) {
        case Deed::Overwrite:
            ++step.at;
            return document_.OverwriteByte(at, step.value) == plain_.OverwriteByte(at, step.value);
        case Deed::Restore: {
            ++step.at;
            const std::uint8_t value = plain_.OriginalByte(at);
            return document_.OverwriteByte(at, value) == plain_.OverwriteByte(at, value);
        }
        case Deed::InsertOn:
            ++step.at;
            [[fallthrough]];
        case Deed::InsertHere:
            return document_.InsertByte(at, step.value) == plain_.InsertByte(at, step.value);
        case Deed::DeleteBack:
            step.at -= step.at > 0 ? 1 : 0;
            [[fallthrough]];
        default:
            return document_.DeleteByte(at) == plain_.DeleteByte(at);
        }
    }

    std::string Read(std::uint64_t at, std::uint64_t count) const {
        const Bytes expected = plain_.ReadBytes(at, count);
        return document_.ReadBytes(at, count) == expected ? "" : "another answer to a read";
    }

    std::string Save() {
        if (std::string problem = Compare(); !problem.empty()) return problem;
        if (!document_.Save()) return "a save that failed";
        plain_.Save();
        if (files_.Content(kPath) != plain_.Content()) return "another file";
        if (files_.Count() != 1) return "a file left behind";
        return SameState() ? Compare() : "another size or state after a save";
    }

    MemoryFileLayer files_;
    PlainDocument plain_;
    EditableDocument document_{files_};
};

} // namespace

std::string CheckDocument(ByteView input) {
    constexpr std::uint64_t kMostWork = 2'000; // the plain document is slow
    constexpr std::uint64_t kWorkOfStep = 10;
    if (input.size() < 2) return {};
    Session session(input[0], input[1]);
    std::uint64_t work = 0;
    for (input = input.subspan(2); input.size() >= 4 && work < kMostWork;
         input = input.subspan(4)) {
        const std::uint64_t repeated = input[0] >> 3U;
        const Step step{.deed = static_cast<Deed>(input[0] & 7U),
                        .times = 1 + repeated * repeated,
                        .at = static_cast<std::uint64_t>(input[1] | input[2] << 8U),
                        .value = input[3]};
        work += step.times + kWorkOfStep;
        if (std::string problem = session.Run(step); !problem.empty()) return problem;
    }
    return session.Compare();
}

} // namespace kvx
