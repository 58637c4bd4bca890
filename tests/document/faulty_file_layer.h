// The system's files with one call going wrong on demand, and every call counted.
#pragma once

#include "platform/file_layer.h"

#include <algorithm>
#include <array>
#include <limits>
#include <new>
#include <optional>

namespace kvx {

/// The calls that a fault can be put on.
// clang-format off
enum class Call : std::size_t {
    OpenForReading, OpenForWriting, Create, TempName, Read, Seek, Write, SetEnd, Flush, Move, Delete
};
// clang-format on
inline constexpr std::array kCallNames = {"OpenForReading", "OpenForWriting", "Create", "TempName",
                                          "Read",           "Seek",           "Write",  "SetEnd",
                                          "Flush",          "Move",           "Delete"};

/// How a call goes wrong.
enum class Failing {
    WithCode, ///< does nothing and gives the code
    Short,    ///< writes half of what was asked and says nothing
    CutShort, ///< writes half of what was asked and gives the code
    Throwing, ///< has no memory
    Killing,  ///< the process is killed: half a write is the last thing that is done
};

struct Fault {
    Call call = Call::Read;
    int number = 1; ///< which call of its kind, from 1 on, counted since ResetCounts()
    Failing failing = Failing::WithCode;
    ErrorCode code = 0;
};

class FaultyFileLayer final : public FileLayer {
public:
    /// At most two faults at a time.
    void Arm(Fault first, std::optional<Fault> second = {}) { faults_ = {first, second}; }
    void Disarm() {
        faults_ = {};
        isDead_ = false;
    }

    /// No read gives more than this at once, as on a network.
    void LimitReads(std::size_t most) { mostPerRead_ = most; }

    int Count(Call call) const { return counts_[static_cast<std::size_t>(call)]; }
    void ResetCounts() { counts_ = {}; }

    std::unique_ptr<ReadableFile> OpenForReading(const std::u16string& path,
                                                 ErrorCode& error) override {
        if (Fails(Call::OpenForReading, error)) return nullptr;
        return Wrap<Readable>(files_.OpenForReading(path, error));
    }

    std::unique_ptr<WritableFile> OpenForWriting(const std::u16string& path,
                                                 ErrorCode& error) override {
        if (Fails(Call::OpenForWriting, error)) return nullptr;
        return Wrap<Writable>(files_.OpenForWriting(path, error));
    }

    std::unique_ptr<WritableFile> CreateForWriting(const std::u16string& path,
                                                   ErrorCode& error) override {
        if (Fails(Call::Create, error)) return nullptr;
        return Wrap<Writable>(files_.CreateForWriting(path, error));
    }

    std::optional<std::u16string> MakeTempFile(const std::u16string& folder,
                                               std::u16string_view prefix,
                                               ErrorCode& error) override {
        if (Fails(Call::TempName, error)) return std::nullopt;
        return files_.MakeTempFile(folder, prefix, error);
    }

    FileResult MoveOver(const std::u16string& from, const std::u16string& to) override {
        return Try(Call::Move, [&] { return files_.MoveOver(from, to); });
    }

    FileResult Delete(const std::u16string& path) override {
        return Try(Call::Delete, [&] { return files_.Delete(path); });
    }

private:
    class Readable final : public ReadableFile {
    public:
        Readable(FaultyFileLayer& layer, std::unique_ptr<ReadableFile> file)
            : layer_(layer), file_(std::move(file)) {}

        std::optional<std::uint64_t> Size() const override { return file_->Size(); }

        std::optional<std::size_t> ReadAt(std::uint64_t offset, std::span<std::uint8_t> target,
                                          ErrorCode& error) const override {
            if (layer_.Fails(Call::Read, error)) return std::nullopt;
            target = target.first(std::min(target.size(), layer_.mostPerRead_));
            return file_->ReadAt(offset, target, error);
        }

    private:
        FaultyFileLayer& layer_;
        std::unique_ptr<ReadableFile> file_;
    };

    class Writable final : public WritableFile {
    public:
        Writable(FaultyFileLayer& layer, std::unique_ptr<WritableFile> file)
            : layer_(layer), file_(std::move(file)) {}

        FileResult Seek(std::uint64_t offset) override {
            return layer_.Try(Call::Seek, [&] { return file_->Seek(offset); });
        }

        FileResult Write(ByteView data, std::uint64_t& written) override {
            const Fault* fault = layer_.Meet(Call::Write);
            if (!fault) return file_->Write(data, written);
            written = 0;
            const FileResult half = fault->failing == Failing::WithCode
                                        ? FileResult::Success()
                                        : file_->Write(data.first(data.size() / 2), written);
            return fault->failing == Failing::Short ? half : FileResult::Failure(fault->code);
        }

        FileResult SetEnd() override {
            return layer_.Try(Call::SetEnd, [&] { return file_->SetEnd(); });
        }

        FileResult Flush() override {
            return layer_.Try(Call::Flush, [&] { return file_->Flush(); });
        }

    private:
        FaultyFileLayer& layer_;
        std::unique_ptr<WritableFile> file_;
    };

    template <typename Wrapper, typename File>
    std::unique_ptr<Wrapper> Wrap(std::unique_ptr<File> file) {
        return file ? std::make_unique<Wrapper>(*this, std::move(file)) : nullptr;
    }

    // Counts the call and gives the fault that is on it; raises the exception of one that throws.
    const Fault* Meet(Call call) {
        static constexpr Fault kDead{};
        if (isDead_) return &kDead;
        const int number = ++counts_[static_cast<std::size_t>(call)];
        for (const std::optional<Fault>& fault : faults_) {
            if (!fault || fault->call != call || fault->number != number) continue;
            if (fault->failing == Failing::Throwing) throw std::bad_alloc();
            isDead_ = fault->failing == Failing::Killing;
            return &*fault;
        }
        return nullptr;
    }

    bool Fails(Call call, ErrorCode& error) {
        const Fault* fault = Meet(call);
        if (fault) error = fault->code;
        return fault != nullptr;
    }

    template <typename Action>
    FileResult Try(Call call, Action action) {
        ErrorCode error = 0;
        return Fails(call, error) ? FileResult::Failure(error) : action();
    }

    FileLayer& files_ = SystemFileLayer();
    std::array<std::optional<Fault>, 2> faults_;
    std::array<int, kCallNames.size()> counts_{};
    bool isDead_ = false;
    std::size_t mostPerRead_ = std::numeric_limits<std::size_t>::max();
};

} // namespace kvx
