#include "document/in_place_save.h"

#include "document/save_progress.h"

namespace kvx {
namespace {

FileResult WriteAt(WritableFile& file, std::uint64_t position, ByteView bytes) {
    const FileResult moved = file.Seek(position);
    return moved ? WriteAll(file, bytes) : moved;
}

FileResult CutAt(WritableFile& file, std::uint64_t size) {
    const FileResult moved = file.Seek(size);
    return moved ? file.SetEnd() : moved;
}

// In ascending order, which the disk likes best; appended bytes come last.
FileResult WriteChanges(WritableFile& target, PieceWalk walk, SaveProgress& progress) {
    while (const std::optional<Piece> piece = walk.Next()) {
        if (piece->bytes.empty()) continue;
        const FileResult written = WriteAt(target, piece->position, piece->bytes);
        if (!written) return written;
        if (piece->kind == PieceKind::Inserted) {
            progress.ReportAll();
        } else {
            progress.Report(piece->position + piece->count);
        }
    }
    return FileResult::Success();
}

} // namespace

bool CanSaveInPlace(const FileViewModel& file, const EditIndex& edits) {
    return edits.InsertsOnlyAtEnd(file.GetSize()) && edits.DeletesOnlyTail(file.GetSize());
}

FileResult SaveInPlace(const FileViewModel& file, const EditIndex& edits,
                       const ProgressCallback& callback) {
    const std::uint64_t editedSize = edits.EditedSize(file.GetSize());
    ErrorCode error = 0;
    const auto target = file.Files().OpenForWriting(file.GetPath(), error);
    if (!target) return FileResult::Failure(error);

    SaveProgress progress(callback, editedSize);
    FileResult result = WriteChanges(*target, PieceWalk(edits, file.GetSize()), progress);
    // Where the end was cut and bytes were appended, these stand behind the old end and the cut
    // comes after them: the file gets the edited size, and of the two the cut bytes stay. This
    // order is kept.
    if (result && edits.DeletedCount() > 0) {
        result = CutAt(*target, editedSize);
        if (result) progress.ReportAll();
    }
    return result ? target->Flush() : result;
}

} // namespace kvx
