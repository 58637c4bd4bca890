// The output side of a save: pieces come in, large writes go out.
#pragma once

#include "document/file_view_model.h"
#include "document/save_progress.h"

namespace kvx {

/// Gathers the pieces of a document in one buffer and writes it whenever it is full, so that a
/// hundred thousand small edits cost no more writes than none. Progress is told after each write.
/// After a failure the stream is of no further use.
class SaveStream {
public:
    /// Both files and `progress` must outlive the stream; `target` stands at its start.
    SaveStream(const FileViewModel& source, WritableFile& target, SaveProgress& progress);

    /// Appends `bytes`.
    FileResult Append(ByteView bytes);

    /// Appends `count` bytes of the source from `offset` on. Fewer than asked is a failure, with
    /// code 0 where the system gave none (the source shrank).
    FileResult AppendFromSource(std::uint64_t offset, std::uint64_t count);

    /// Writes what is left in the buffer.
    FileResult Finish();

private:
    std::span<std::uint8_t> Room() const;
    FileResult Take(std::size_t count);
    FileResult WriteBuffer();
    void Align(std::uint64_t sourceOffset);

    const FileViewModel& source_;
    WritableFile& target_;
    SaveProgress& progress_;
    Bytes storage_;
    std::uint8_t* page_;     ///< first page boundary in the storage
    std::size_t shift_ = 0;  ///< bytes between it and the first gathered byte
    std::size_t filled_ = 0; ///< gathered bytes
    std::uint64_t written_ = 0;
};

} // namespace kvx
