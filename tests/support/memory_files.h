// Files in memory: a document can be opened, edited and saved thousands of times a second. As on
// POSIX a file that is replaced or deleted stays readable for whoever has it open.
#pragma once

#include "platform/file_layer.h"

#include <algorithm>
#include <limits>
#include <map>
#include <memory>

namespace kvx {

class MemoryFileLayer final : public FileLayer {
public:
    static constexpr ErrorCode kNotFound = 2;

    /// No read gives more than this at once, as on a network.
    std::size_t mostPerRead = std::numeric_limits<std::size_t>::max();

    void Write(const std::u16string& path, Bytes content) {
        files_[path] = std::make_shared<Bytes>(std::move(content));
    }
    const Bytes& Content(const std::u16string& path) const { return *files_.at(path); }
    std::size_t Count() const { return files_.size(); }

    std::unique_ptr<ReadableFile> OpenForReading(const std::u16string& path,
                                                 ErrorCode& error) override {
        return Open<Readable>(path, error);
    }

    std::unique_ptr<WritableFile> OpenForWriting(const std::u16string& path,
                                                 ErrorCode& error) override {
        return Open<Writable>(path, error);
    }

    std::unique_ptr<WritableFile> CreateForWriting(const std::u16string& path,
                                                   ErrorCode& error) override {
        Write(path, {});
        return OpenForWriting(path, error);
    }

    std::optional<std::u16string> MakeTempFile(const std::u16string& folder,
                                               std::u16string_view prefix, ErrorCode&) override {
        std::u16string path = folder + std::u16string(prefix);
        while (files_.contains(path))
            path += u'x';
        Write(path, {});
        return path;
    }

    FileResult MoveOver(const std::u16string& from, const std::u16string& to) override {
        const auto source = files_.find(from);
        if (source == files_.end()) return FileResult::Failure(kNotFound);
        files_[to] = source->second;
        files_.erase(from);
        return FileResult::Success();
    }

    FileResult Delete(const std::u16string& path) override {
        return files_.erase(path) == 1 ? FileResult::Success() : FileResult::Failure(kNotFound);
    }

private:
    using Shared = std::shared_ptr<Bytes>;

    class Readable final : public ReadableFile {
    public:
        Readable(Shared bytes, const MemoryFileLayer& layer)
            : bytes_(std::move(bytes)), layer_(layer) {}

        std::optional<std::uint64_t> Size() const override { return bytes_->size(); }

        std::optional<std::size_t> ReadAt(std::uint64_t offset, std::span<std::uint8_t> target,
                                          ErrorCode& error) const override {
            error = 0;
            if (offset >= bytes_->size()) return 0;
            const auto from = static_cast<std::size_t>(offset);
            const std::size_t count =
                std::min({target.size(), layer_.mostPerRead, bytes_->size() - from});
            std::copy_n(bytes_->data() + from, count, target.begin());
            return count;
        }

    private:
        Shared bytes_;
        const MemoryFileLayer& layer_;
    };

    class Writable final : public WritableFile {
    public:
        Writable(Shared bytes, const MemoryFileLayer&) : bytes_(std::move(bytes)) {}

        FileResult Seek(std::uint64_t offset) override {
            position_ = static_cast<std::size_t>(offset);
            return FileResult::Success();
        }

        FileResult Write(ByteView data, std::uint64_t& written) override {
            bytes_->resize(std::max(bytes_->size(), position_ + data.size()), 0);
            std::copy(data.begin(), data.end(), bytes_->data() + position_);
            position_ += data.size();
            written = data.size();
            return FileResult::Success();
        }

        FileResult SetEnd() override {
            bytes_->resize(position_, 0);
            return FileResult::Success();
        }

        FileResult Flush() override { return FileResult::Success(); }

    private:
        Shared bytes_;
        std::size_t position_ = 0;
    };

    template <typename File>
    std::unique_ptr<File> Open(const std::u16string& path, ErrorCode& error) {
        const auto found = files_.find(path);
        error = found == files_.end() ? kNotFound : 0;
        return error == 0 ? std::make_unique<File>(found->second, *this) : nullptr;
    }

    std::map<std::u16string, Shared> files_;
};

} // namespace kvx
