// The one file that the editor has open, read-only and without a cache: every read goes to the
// file.
#pragma once

#include "document/read_only_document.h"
#include "platform/file_layer.h"

#include <memory>

namespace kvx {

/// Starts closed. The size is taken at Open and kept: a file that grows or shrinks behind the
/// editor's back keeps its size here, and reads past its real end come back short.
class FileViewModel final : public IReadOnlyDocument {
public:
    /// `files` must outlive the model.
    explicit FileViewModel(FileLayer& files = SystemFileLayer()) : files_(&files) {}

    /// Closes what is open, then opens `path` for reading; false leaves the model closed.
    bool Open(const std::u16string& path);

    /// The same for a file that is edited already: it keeps the size that the edits were made for,
    /// as it does while it stays open.
    bool Reopen(const std::u16string& path, std::uint64_t size);

    /// Back to the closed state: no file, size 0, empty path.
    void Close();

    bool IsOpen() const override { return file_ != nullptr; }
    std::uint64_t GetSize() const override { return size_; }
    std::u16string GetPath() const override { return path_; }
    Bytes ReadBytes(std::uint64_t offset, std::uint64_t count) const override;

    /// Reads into `target`, call after call while they give something; gives the bytes read, fewer
    /// than asked at the end and where a call fails.
    std::size_t ReadInto(std::uint64_t offset, std::span<std::uint8_t> target) const override;

    /// The same, with the reason of a failure in `error`; 0 when nothing failed.
    std::size_t ReadInto(std::uint64_t offset, std::span<std::uint8_t> target,
                         ErrorCode& error) const;

    FileLayer& Files() const { return *files_; }

private:
    FileLayer* files_;
    std::unique_ptr<ReadableFile> file_;
    std::uint64_t size_ = 0; ///< bytes, as read at Open
    std::u16string path_;
};

} // namespace kvx
