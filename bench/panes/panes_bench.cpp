// From a caret move to the posted rows of both panes: the read at the caret, the hand-over to the
// worker, its waking up and the computation, over a sparse file of 10 GiB. Times are those of the
// clock on the wall; the slowest of a hundred is a counter.
#include "document/editable_document.h"
#include "panes/inspector_model.h"
#include "panes/struct_view_model.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <mutex>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace kvx {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::uint64_t kFileSize = std::uint64_t{10} << 30;

/// A file for the time of the run.
class BenchFile {
public:
    BenchFile(const char* name, std::string_view text, std::uint64_t size)
        : path_(std::filesystem::temp_directory_path() / name) {
        std::ofstream(path_, std::ios::binary) << text;
        std::filesystem::resize_file(path_, size);
    }
    BenchFile(const BenchFile&) = delete;
    BenchFile& operator=(const BenchFile&) = delete;
    ~BenchFile() { std::filesystem::remove(path_); }

    std::u16string Path() const { return path_.u16string(); }

private:
    std::filesystem::path path_;
};

/// Waits for what a worker posts, in place of the main window's message loop.
template <typename Posted>
class Inbox {
public:
    bool Take(std::unique_ptr<Posted>&& posted) {
        const std::lock_guard lock(mutex_);
        postedAt_ = Clock::now();
        newest_ = std::move(posted);
        ++count_;
        arrived_.notify_one();
        return true;
    }

    /// When the result of that serial, the newest, was posted.
    Clock::time_point WaitFor(std::uint64_t serial) {
        std::unique_lock lock(mutex_);
        arrived_.wait(lock, [&] { return newest_ && newest_->serial == serial; });
        return postedAt_;
    }

    std::size_t Count() {
        const std::lock_guard lock(mutex_);
        return count_;
    }

private:
    std::mutex mutex_;
    std::condition_variable arrived_;
    std::unique_ptr<Posted> newest_;
    Clock::time_point postedAt_;
    std::size_t count_ = 0;
};

/// A worker and the document that it is asked about.
template <typename Request, typename Result>
class Stage {
public:
    using Worker = LatestRequestWorker<Request, Result>;

    explicit Stage(std::function<Result(const Request&)> compute)
        : worker(std::move(compute), [this](std::unique_ptr<typename Worker::Posted>&& posted) {
              return inbox.Take(std::move(posted));
          }) {
        document.Open(file_.Path());
        worker.Start();
    }

    std::uint64_t AnyOffset() { return random_() % (kFileSize - 65536); }

    EditableDocument document;
    Inbox<typename Worker::Posted> inbox;
    Worker worker; // stops before the inbox goes

private:
    BenchFile file_{"kivra-panes-bench.bin", "", kFileSize};
    std::mt19937_64 random_{1};
};

/// Moves the caret, waits for the rows, and so on. `ask` submits a request for an offset.
template <typename Stage, typename Ask>
void MoveAndWait(benchmark::State& state, Stage& stage, const Ask& ask) {
    std::vector<double> seconds;
    for ([[maybe_unused]] const auto pass : state) {
        const Clock::time_point start = Clock::now();
        const Clock::time_point posted = stage.inbox.WaitFor(ask(stage.AnyOffset()));
        seconds.push_back(std::chrono::duration<double>(posted - start).count());
        state.SetIterationTime(seconds.back());
    }
    std::ranges::sort(seconds);
    state.counters["median_us"] = seconds[seconds.size() / 2] * 1e6;
    state.counters["slowest_of_100_us"] = seconds[seconds.size() * 99 / 100] * 1e6;
}

/// Moves the caret without waiting, as fast as the caller can.
template <typename Stage, typename Ask>
void MoveOnly(benchmark::State& state, Stage& stage, const Ask& ask) {
    std::uint64_t serial = 0;
    for ([[maybe_unused]] const auto pass : state)
        serial = ask(stage.AnyOffset());
    stage.inbox.WaitFor(serial);
    state.counters["posted_per_move"] =
        static_cast<double>(stage.inbox.Count()) / static_cast<double>(serial);
}

class InspectorStage : public Stage<InspectorRequest, InspectorRows> {
public:
    InspectorStage() : Stage(ComputeInspectorRows) {}

    auto Ask() {
        return [this](std::uint64_t offset) {
            return worker.Submit(
                MakeInspectorRequest(document, offset, TextEncoding::ShiftJis, u"N/A"));
        };
    }
};

void InspectorMove(benchmark::State& state) {
    InspectorStage stage;
    MoveAndWait(state, stage, stage.Ask());
}
BENCHMARK(InspectorMove)->UseManualTime()->Unit(benchmark::kMicrosecond);

void InspectorBurst(benchmark::State& state) {
    InspectorStage stage;
    MoveOnly(state, stage, stage.Ask());
}
BENCHMARK(InspectorBurst)->UseRealTime()->Unit(benchmark::kMicrosecond);

/// 256 rows of all kinds.
std::string LargePattern() {
    std::string text = "@member_align 0\nstruct Header {\n";
    for (int i = 0; i < 32; ++i) {
        const std::string n = std::to_string(i);
        text += "char name" + n + "[16]; uint8_t a" + n + "; uint16_t b" + n + "; uint32_t c" + n +
                "; uint64_t d" + n + "; float f" + n + "; double g" + n + "; short h" + n +
                "[40];\n";
    }
    return text + "};\n";
}

class StructStage : public Stage<StructEvalRequest, std::vector<StructViewRow>> {
public:
    explicit StructStage(const std::string& pattern) : Stage(EvaluateStruct) {
        const BenchFile file("kivra-panes-bench.kvpat", pattern, pattern.size());
        model_.Load(file.Path());
    }

    std::size_t Rows() { return EvaluateStruct(*model_.MakeRequest(document, 0)).size(); }

    auto Ask() {
        return [this](std::uint64_t offset) {
            return worker.Submit(*model_.MakeRequest(document, offset));
        };
    }

private:
    StructViewModel model_;
};

void StructMove(benchmark::State& state) {
    StructStage stage(LargePattern());
    MoveAndWait(state, stage, stage.Ask());
    if (stage.Rows() != 256) state.SkipWithError("Expected 256 rows.");
}
BENCHMARK(StructMove)->UseManualTime()->Unit(benchmark::kMicrosecond);

void StructBurst(benchmark::State& state) {
    StructStage stage(LargePattern());
    MoveOnly(state, stage, stage.Ask());
}
BENCHMARK(StructBurst)->UseRealTime()->Unit(benchmark::kMicrosecond);

/// A struct of which only a little can be shown.
void HugeStructMove(benchmark::State& state) {
    StructStage stage("struct Image { uint32_t width; uint8_t pixels[1073741824]; int end; };");
    MoveAndWait(state, stage, stage.Ask());
}
BENCHMARK(HugeStructMove)->UseManualTime()->Unit(benchmark::kMicrosecond);

} // namespace
} // namespace kvx

BENCHMARK_MAIN();
