#include "document/temp_file_save.h"

#include "document/save_progress.h"
#include "document/save_stream.h"
#include "platform/system.h"

#include <utility>

namespace kvx {
namespace {

/// The temporary file's name; deletes the file unless it was moved to its place.
class TempFile {
public:
    TempFile(FileLayer& files, std::u16string path) : files_(files), path_(std::move(path)) {}
    TempFile(const TempFile&) = delete;
    TempFile& operator=(const TempFile&) = delete;
    ~TempFile() { Delete(); }

    const std::u16string& Path() const { return path_; }

    FileResult MoveOver(const std::u16string& target) {
        const FileResult moved = files_.MoveOver(path_, target);
        if (moved) path_.clear();
        return moved;
    }

    void Delete() noexcept {
        if (path_.empty()) return;
        try {
            files_.Delete(path_);
        } catch (...) { // no memory for the call: the file stays behind, the save has failed anyway
        }
        path_.clear();
    }

private:
    FileLayer& files_;
    std::u16string path_;
};

FileResult WritePieces(PieceWalk walk, SaveStream& stream) {
    while (const std::optional<Piece> piece = walk.Next()) {
        if (piece->kind == PieceKind::Deleted) continue;
        const FileResult appended = piece->kind == PieceKind::Unchanged
                                        ? stream.AppendFromSource(piece->position, piece->count)
                                        : stream.Append(piece->bytes);
        if (!appended) return appended;
    }
    return stream.Finish();
}

FileResult WriteDocument(const FileViewModel& file, const EditIndex& edits,
                         const std::u16string& tempPath, const ProgressCallback& callback) {
    ErrorCode error = 0;
    const auto temp = file.Files().CreateForWriting(tempPath, error);
    if (!temp) return FileResult::Failure(error);
    SaveProgress progress(callback, edits.EditedSize(file.GetSize()));
    SaveStream stream(file, *temp, progress);
    const FileResult written = WritePieces(PieceWalk(edits, file.GetSize()), stream);
    return written ? temp->Flush() : written;
}

// The file is closed for the move, because the system replaces no file that is open. Whatever goes
// wrong, it is opened again, so that the document is shown with its edits still pending.
FileResult Replace(FileViewModel& file, TempFile& temp) {
    const std::u16string path = file.GetPath();
    const std::uint64_t size = file.GetSize();
    const auto undo = [&] {
        temp.Delete();
        file.Reopen(path, size);
    };
    file.Close();
    FileResult moved;
    try {
        moved = temp.MoveOver(path);
    } catch (...) {
        undo();
        throw;
    }
    if (!moved) undo();
    return moved;
}

} // namespace

FileResult SaveThroughTempFile(FileViewModel& file, const EditIndex& edits,
                               const ProgressCallback& callback) {
    const std::u16string parent = ParentFolder(file.GetPath());
    ErrorCode error = 0;
    std::optional<std::u16string> name =
        file.Files().MakeTempFile(parent.empty() ? CurrentFolder() : parent, u"KVT", error);
    if (!name) return FileResult::Failure(error);
    TempFile temp(file.Files(), *std::move(name));
    const FileResult written = WriteDocument(file, edits, temp.Path(), callback);
    return written ? Replace(file, temp) : written;
}

} // namespace kvx
