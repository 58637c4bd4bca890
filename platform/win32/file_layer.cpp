#include "platform/file_layer.h"

#include "platform/temp_file.h"
#include "platform/win32/handle.h"
#include "platform/win32/long_path.h"
#include "platform/win32/wide.h"

#include <algorithm>
#include <limits>

namespace kvx {
namespace {

constexpr std::size_t kMostPerCall = std::numeric_limits<DWORD>::max();

FileResult Outcome(BOOL done) {
    return done != FALSE ? FileResult::Success() : FileResult::Failure(::GetLastError());
}

UniqueFileHandle OpenHandle(const std::u16string& path, DWORD access, DWORD sharing,
                            DWORD disposition, ErrorCode& error) {
    const std::u16string extended = ExtendedPath(path); // freed after the error was asked for
    UniqueFileHandle handle(::CreateFileW(AsWide(extended), access, sharing, nullptr, disposition,
                                          FILE_ATTRIBUTE_NORMAL, nullptr));
    error = handle ? 0 : ::GetLastError();
    return handle;
}

class Win32ReadableFile final : public ReadableFile {
public:
    explicit Win32ReadableFile(UniqueFileHandle handle) : handle_(std::move(handle)) {}

    std::optional<std::uint64_t> Size() const override {
        LARGE_INTEGER size{};
        if (::GetFileSizeEx(handle_.Get(), &size) == FALSE) return std::nullopt;
        return static_cast<std::uint64_t>(size.QuadPart);
    }

    // The position goes with the call, so that a read is one call. A read wholly past the end then
    // fails with "end of file", which is no failure here.
    std::optional<std::size_t> ReadAt(std::uint64_t offset, std::span<std::uint8_t> target,
                                      ErrorCode& error) const override {
        OVERLAPPED position{};
        position.Offset = static_cast<DWORD>(offset);
        position.OffsetHigh = static_cast<DWORD>(offset >> 32);
        const auto count = static_cast<DWORD>(std::min(target.size(), kMostPerCall));
        DWORD got = 0;
        error = 0;
        if (::ReadFile(handle_.Get(), target.data(), count, &got, &position) != FALSE) return got;
        error = ::GetLastError();
        if (error != ERROR_HANDLE_EOF) return std::nullopt;
        error = 0;
        return 0;
    }

private:
    UniqueFileHandle handle_;
};

class Win32WritableFile final : public WritableFile {
public:
    explicit Win32WritableFile(UniqueFileHandle handle) : handle_(std::move(handle)) {}

    FileResult Seek(std::uint64_t offset) override {
        LARGE_INTEGER distance{};
        distance.QuadPart = static_cast<LONGLONG>(offset);
        return Outcome(::SetFilePointerEx(handle_.Get(), distance, nullptr, FILE_BEGIN));
    }

    FileResult Write(ByteView data, std::uint64_t& written) override {
        const auto count = static_cast<DWORD>(std::min(data.size(), kMostPerCall));
        DWORD done = 0;
        const BOOL result = ::WriteFile(handle_.Get(), data.data(), count, &done, nullptr);
        written = done;
        return Outcome(result);
    }

    FileResult SetEnd() override { return Outcome(::SetEndOfFile(handle_.Get())); }

    FileResult Flush() override { return Outcome(::FlushFileBuffers(handle_.Get())); }

private:
    UniqueFileHandle handle_;
};

template <typename File>
std::unique_ptr<File> FileOver(UniqueFileHandle handle) {
    return handle ? std::make_unique<File>(std::move(handle)) : nullptr;
}

class Win32FileLayer final : public FileLayer {
public:
    std::unique_ptr<ReadableFile> OpenForReading(const std::u16string& path,
                                                 ErrorCode& error) override {
        constexpr DWORD kFullSharing = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
        return FileOver<Win32ReadableFile>(
            OpenHandle(path, GENERIC_READ, kFullSharing, OPEN_EXISTING, error));
    }

    std::unique_ptr<WritableFile> OpenForWriting(const std::u16string& path,
                                                 ErrorCode& error) override {
        return FileOver<Win32WritableFile>(
            OpenHandle(path, GENERIC_WRITE, FILE_SHARE_READ, OPEN_EXISTING, error));
    }

    std::unique_ptr<WritableFile> CreateForWriting(const std::u16string& path,
                                                   ErrorCode& error) override {
        return FileOver<Win32WritableFile>(
            OpenHandle(path, GENERIC_WRITE, 0, CREATE_ALWAYS, error));
    }

    std::optional<std::u16string> MakeTempFile(const std::u16string& folder,
                                               std::u16string_view prefix,
                                               ErrorCode& error) override {
        // The system's call takes no folder longer than this.
        constexpr std::size_t kLongestFolder = MAX_PATH - 14;
        error = 0;
        if (FullPath(folder).size() > kLongestFolder) {
            return MakeUniqueFile(folder, prefix, static_cast<std::uint16_t>(::GetTickCount64()),
                                  CreateNew, error);
        }
        wchar_t name[MAX_PATH] = {};
        if (::GetTempFileNameW(AsWide(folder), ToWide(prefix).c_str(), 0, name) == 0) {
            error = ::GetLastError();
            return std::nullopt;
        }
        return FromWide(name);
    }

    FileResult MoveOver(const std::u16string& from, const std::u16string& to) override {
        constexpr DWORD kFlags =
            MOVEFILE_REPLACE_EXISTING | MOVEFILE_COPY_ALLOWED | MOVEFILE_WRITE_THROUGH;
        return Outcome(::MoveFileExW(AsWide(ExtendedPath(from)), AsWide(ExtendedPath(to)), kFlags));
    }

    FileResult Delete(const std::u16string& path) override {
        return Outcome(::DeleteFileW(AsWide(ExtendedPath(path))));
    }

private:
    static ErrorCode CreateNew(const std::u16string& path) {
        ErrorCode error = 0;
        const UniqueFileHandle handle = OpenHandle(path, GENERIC_WRITE, 0, CREATE_NEW, error);
        return error;
    }
};

} // namespace

FileLayer& SystemFileLayer() {
    static Win32FileLayer layer;
    return layer;
}

} // namespace kvx
