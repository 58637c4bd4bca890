#include "platform/file_layer.h"

#include "platform/posix/errors.h"
#include "platform/system.h"
#include "platform/temp_file.h"
#include "platform/text.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace kvx {
namespace {

constexpr std::size_t kWriteStep = 256 * 1024;

FileResult Outcome(int result) {
    return result == 0 ? FileResult::Success() : FileResult::Failure(LastErrorCode());
}

class UniqueDescriptor {
public:
    explicit UniqueDescriptor(int descriptor) : descriptor_(descriptor) {}
    UniqueDescriptor(UniqueDescriptor&& other) noexcept
        : descriptor_(std::exchange(other.descriptor_, -1)) {}
    UniqueDescriptor& operator=(UniqueDescriptor&&) = delete;
    ~UniqueDescriptor() {
        if (descriptor_ >= 0) ::close(descriptor_);
    }

    explicit operator bool() const { return descriptor_ >= 0; }
    int Get() const { return descriptor_; }

private:
    int descriptor_;
};

UniqueDescriptor OpenDescriptor(const std::u16string& path, int flags, ErrorCode& error) {
    constexpr mode_t kReadWriteForAll = 0666; // less the process's mask
    UniqueDescriptor opened(::open(Utf16ToUtf8(path).c_str(), flags | O_CLOEXEC, kReadWriteForAll));
    error = opened ? 0 : LastErrorCode();
    return opened;
}

class PosixReadableFile final : public ReadableFile {
public:
    explicit PosixReadableFile(UniqueDescriptor file) : file_(std::move(file)) {}

    std::optional<std::uint64_t> Size() const override {
        struct stat status {};
        if (::fstat(file_.Get(), &status) != 0) return std::nullopt;
        return static_cast<std::uint64_t>(status.st_size);
    }

    std::optional<std::size_t> ReadAt(std::uint64_t offset, std::span<std::uint8_t> target,
                                      ErrorCode& error) const override {
        const ssize_t got =
            ::pread(file_.Get(), target.data(), target.size(), static_cast<off_t>(offset));
        error = got < 0 ? LastErrorCode() : 0;
        if (got < 0) return std::nullopt;
        return static_cast<std::size_t>(got);
    }

private:
    UniqueDescriptor file_;
};

class PosixWritableFile final : public WritableFile {
public:
    explicit PosixWritableFile(UniqueDescriptor file) : file_(std::move(file)) {}

    FileResult Seek(std::uint64_t offset) override {
        if (::lseek(file_.Get(), static_cast<off_t>(offset), SEEK_SET) < 0)
            return FileResult::Failure(LastErrorCode());
        position_ = writeBackFrom_ = offset;
        return FileResult::Success();
    }

    // Goes on after a short write: only the next call tells why the first one stopped (a full
    // disk).
    FileResult Write(ByteView data, std::uint64_t& written) override {
        written = 0;
        while (written < data.size()) {
            const ByteView rest = data.subspan(static_cast<std::size_t>(written));
            const ssize_t done =
                ::write(file_.Get(), rest.data(), std::min(rest.size(), kWriteStep));
            if (done < 0 && errno == EINTR) continue;
            if (done < 0) return FileResult::Failure(LastErrorCode());
            written += static_cast<std::uint64_t>(done);
            position_ += static_cast<std::uint64_t>(done);
        }
        return FileResult::Success();
    }

    FileResult SetEnd() override {
        return Outcome(::ftruncate(file_.Get(), static_cast<off_t>(position_)));
    }

    FileResult Flush() override { return Outcome(::fsync(file_.Get())); }

    void StartWriteBack() override {
#ifdef SYNC_FILE_RANGE_WRITE
        if (position_ == writeBackFrom_) return;
        ::sync_file_range(file_.Get(), static_cast<off_t>(writeBackFrom_),
                          static_cast<off_t>(position_ - writeBackFrom_), SYNC_FILE_RANGE_WRITE);
        writeBackFrom_ = position_;
#endif
    }

private:
    UniqueDescriptor file_;
    std::uint64_t position_ = 0;      ///< current position, as the system has it
    std::uint64_t writeBackFrom_ = 0; ///< write-back was started for all that lies before
};

bool IsFolder(const UniqueDescriptor& file) {
    struct stat status {};
    return ::fstat(file.Get(), &status) == 0 && S_ISDIR(status.st_mode);
}

class PosixFileLayer final : public FileLayer {
public:
    std::unique_ptr<ReadableFile> OpenForReading(const std::u16string& path,
                                                 ErrorCode& error) override {
        UniqueDescriptor file = OpenDescriptor(path, O_RDONLY, error);
        if (!file) return nullptr;
        if (IsFolder(file)) { // the system opens folders too, as files they cannot be read
            error = Win32CodeOf(EISDIR);
            return nullptr;
        }
        return std::make_unique<PosixReadableFile>(std::move(file));
    }

    std::unique_ptr<WritableFile> OpenForWriting(const std::u16string& path,
                                                 ErrorCode& error) override {
        return Writable(OpenDescriptor(path, O_WRONLY, error));
    }

    std::unique_ptr<WritableFile> CreateForWriting(const std::u16string& path,
                                                   ErrorCode& error) override {
        return Writable(OpenDescriptor(path, O_WRONLY | O_CREAT | O_TRUNC, error));
    }

    std::optional<std::u16string> MakeTempFile(const std::u16string& folder,
                                               std::u16string_view prefix,
                                               ErrorCode& error) override {
        const auto start = static_cast<std::uint16_t>(TickCount());
        return MakeUniqueFile(folder, prefix, start, CreateNew, error);
    }

    FileResult MoveOver(const std::u16string& from, const std::u16string& to) override {
        // Found out before the move: once that has happened nothing may fail any more.
        ErrorCode ignored = 0;
        const std::u16string parent = ParentFolder(to);
        const UniqueDescriptor folder =
            OpenDescriptor(parent.empty() ? u"." : parent, O_RDONLY | O_DIRECTORY, ignored);
        const FileResult moved =
            Outcome(::rename(Utf16ToUtf8(from).c_str(), Utf16ToUtf8(to).c_str()));
        if (moved && folder) ::fsync(folder.Get());
        return moved;
    }

    FileResult Delete(const std::u16string& path) override {
        return Outcome(::unlink(Utf16ToUtf8(path).c_str()));
    }

private:
    static std::unique_ptr<WritableFile> Writable(UniqueDescriptor file) {
        return file ? std::make_unique<PosixWritableFile>(std::move(file)) : nullptr;
    }

    static ErrorCode CreateNew(const std::u16string& path) {
        ErrorCode error = 0;
        const UniqueDescriptor file = OpenDescriptor(path, O_WRONLY | O_CREAT | O_EXCL, error);
        return error;
    }
};

} // namespace

FileLayer& SystemFileLayer() {
    static PosixFileLayer layer;
    return layer;
}

} // namespace kvx
