// Files as the document needs them. One abstract layer, so that tests can put a fault-injecting or
// an in-memory layer in place of the system's; `SystemFileLayer()` is the real one (win32/ or
// posix/).
//
// Paths are UTF-16 in the system's own spelling. Error codes are Win32 codes on both systems (the
// POSIX body translates errno); 0 means that the system gave no reason. Objects may be used from
// one thread at a time.
#pragma once

#include "platform/bytes.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace kvx {

/// A Win32 error code; 0 when there is none.
using ErrorCode = std::uint32_t;

/// Outcome of a file operation. A failure carries the system's code, which may be 0.
struct FileResult {
    bool ok = true;
    ErrorCode error = 0;

    static FileResult Success() { return {}; }
    static FileResult Failure(ErrorCode error) { return {false, error}; }
    explicit operator bool() const { return ok; }
    friend bool operator==(const FileResult&, const FileResult&) = default;
};

/// A file open for reading; other programs may read, write, rename and delete it meanwhile. Closed
/// by the destructor.
class ReadableFile {
public:
    virtual ~ReadableFile() = default;

    /// Size in bytes now; empty on failure.
    virtual std::optional<std::uint64_t> Size() const = 0;

    /// One positioned read of at most `target.size()` bytes (less than 4 GiB). Gives the number of
    /// bytes read, fewer (or 0) at the end of the file; empty on failure, reason in `error`.
    virtual std::optional<std::size_t> ReadAt(std::uint64_t offset, std::span<std::uint8_t> target,
                                              ErrorCode& error) const = 0;
};

/// A file open for writing at a current position that starts at 0. Closed by the destructor.
class WritableFile {
public:
    virtual ~WritableFile() = default;

    /// Moves the current position to `offset` bytes from the start; it may lie past the end.
    virtual FileResult Seek(std::uint64_t offset) = 0;

    /// Writes at the current position, which moves on by what was written. `written` receives the
    /// count, which may be short of `data.size()` even on success.
    virtual FileResult Write(ByteView data, std::uint64_t& written) = 0;

    /// Cuts or extends the file at the current position.
    virtual FileResult SetEnd() = 0;

    /// Waits until the system has put all that was written on the disk.
    virtual FileResult Flush() = 0;

    /// Asks the system to start writing back what was written so far, without waiting: it spreads
    /// the cost of the final Flush. A hint; does nothing where there is no such call.
    virtual void StartWriteBack() {}
};

/// Opening, creating, replacing and deleting files.
class FileLayer {
public:
    virtual ~FileLayer() = default;

    /// Opens an existing file for reading with full sharing; null on failure, reason in `error`.
    virtual std::unique_ptr<ReadableFile> OpenForReading(const std::u16string& path,
                                                         ErrorCode& error) = 0;

    /// Opens an existing file for writing; others may only read it meanwhile (on POSIX the sharing
    /// is not enforced). Null on failure, reason in `error`.
    virtual std::unique_ptr<WritableFile> OpenForWriting(const std::u16string& path,
                                                         ErrorCode& error) = 0;

    /// Creates or empties a file and opens it for writing without sharing; null on failure.
    virtual std::unique_ptr<WritableFile> CreateForWriting(const std::u16string& path,
                                                           ErrorCode& error) = 0;

    /// Creates an empty file with a unique name that starts with `prefix` (three characters) in
    /// `folder`, and gives its full path; empty on failure, reason in `error`.
    virtual std::optional<std::u16string>
    MakeTempFile(const std::u16string& folder, std::u16string_view prefix, ErrorCode& error) = 0;

    /// Moves `from` over `to`, replacing it, and waits until the move is on the disk.
    virtual FileResult MoveOver(const std::u16string& from, const std::u16string& to) = 0;

    /// Deletes a file.
    virtual FileResult Delete(const std::u16string& path) = 0;
};

/// The operating system's files; lives as long as the program, usable from every thread.
FileLayer& SystemFileLayer();

/// Writes all of `data` by calls of at most 4,294,967,295 bytes. Fails when a call fails (with its
/// code) or writes fewer bytes than asked (code 0 where the system gave none).
FileResult WriteAll(WritableFile& file, ByteView data);

/// The system's message for `code` without trailing line ends and blanks; "Win32 error: " and the
/// decimal code when it has none; empty for code 0.
std::u16string Win32ErrorText(ErrorCode code);

} // namespace kvx
