// Speed and memory of editing: reads through earlier edits beside plain reads of the same range,
// edits in a row, scattered edits, opening. Each benchmark reports the figures that have a limit as
// counters; what is compared is measured by turns in the same run.
#include "document/editable_document.h"
#include "document/file_view_model.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <functional>
#include <malloc.h>
#include <random>
#include <string>
#include <vector>

namespace kvx {
namespace {

constexpr std::uint64_t kKibibyte = 1024;
constexpr std::uint64_t kMebibyte = 1024 * kKibibyte;
constexpr std::uint64_t kFileSize = 256 * kMebibyte;

/// A file for the time of the run, as large as asked; random bytes unless it is sparse.
class BenchFile {
public:
    BenchFile(const char* name, std::uint64_t size, bool sparse)
        : path_(std::filesystem::temp_directory_path() / name) {
        std::ofstream out(path_, std::ios::binary);
        std::mt19937_64 random(1);
        std::vector<std::uint64_t> block(kMebibyte / sizeof(std::uint64_t));
        for (std::uint64_t done = 0; done < size && !sparse; done += kMebibyte) {
            std::generate(block.begin(), block.end(), random);
            out.write(reinterpret_cast<const char*>(block.data()), kMebibyte);
        }
        out.close();
        std::filesystem::resize_file(path_, size);
    }
    BenchFile(const BenchFile&) = delete;
    BenchFile& operator=(const BenchFile&) = delete;
    ~BenchFile() { std::filesystem::remove(path_); }

    std::u16string Path() const { return path_.u16string(); }

private:
    std::filesystem::path path_;
};

const BenchFile& LargeFile() {
    static const BenchFile file("kivra-edits-bench.bin", kFileSize, false);
    return file;
}

using Random = std::mt19937_64;

/// One edit of any of the three kinds anywhere.
void EditSomewhere(EditableDocument& document, Random& random) {
    const std::uint64_t position = random() % document.GetSize();
    const auto value = static_cast<std::uint8_t>(random());
    switch (random() % 3) {
    case 0:
        document.OverwriteByte(position, value);
        break;
    case 1:
        document.InsertByte(position, value);
        break;
    default:
        document.DeleteByte(position);
        break;
    }
}

void OpenWithEdits(EditableDocument& document, std::int64_t edits) {
    document.Open(LargeFile().Path());
    Random random(7);
    for (std::int64_t i = 0; i < edits; ++i)
        EditSomewhere(document, random);
}

/// Processor time of the thread, system calls included: nothing here waits for the disk, and what
/// else the machine does should not count.
double ThreadNanoseconds() {
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e9 + static_cast<double>(time.tv_nsec);
}

double NanosecondsOf(const std::function<void()>& work) {
    const double start = ThreadNanoseconds();
    work();
    return ThreadNanoseconds() - start;
}

double MedianOf(std::vector<double>& values) {
    std::nth_element(values.begin(),
                     values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2), values.end());
    return values[values.size() / 2];
}

double HeapBytes() {
    const struct mallinfo2 info = ::mallinfo2();
    return static_cast<double>(info.uordblks + info.hblkhd);
}

/// Resident memory of the process in bytes.
double ResidentBytes() {
    std::ifstream statm("/proc/self/statm");
    double total = 0;
    double resident = 0;
    statm >> total >> resident;
    return resident * 4096;
}

// Reading 1 MiB at random places with the given number of scattered earlier edits, and the same
// ranges from the bare file: by turns, more of them at a time than a processor's cache holds.
void ReadMebibyte(benchmark::State& state) {
    constexpr std::size_t kRangesInTurn = 64;
    // Blocks stay in the heap: memory that comes fresh from the system costs many times the read.
    ::mallopt(M_MMAP_THRESHOLD, 64 * kMebibyte);
    ::mallopt(M_TRIM_THRESHOLD, 64 * kMebibyte);
    EditableDocument document;
    OpenWithEdits(document, state.range(0));
    FileViewModel plain;
    plain.Open(LargeFile().Path());
    Random random(3);
    std::vector<double> plainTimes;
    std::vector<double> editedTimes;
    for ([[maybe_unused]] auto _ : state) {
        std::array<std::uint64_t, kRangesInTurn> offsets{};
        for (std::uint64_t& offset : offsets)
            offset = random() % (kFileSize - 2 * kMebibyte);
        const auto readAll = [&](const IReadOnlyDocument& source, std::vector<double>& times) {
            for (const std::uint64_t offset : offsets)
                times.push_back(NanosecondsOf(
                    [&] { benchmark::DoNotOptimize(source.ReadBytes(offset, kMebibyte).data()); }));
        };
        readAll(plain, plainTimes);
        readAll(document, editedTimes);
    }
    state.counters["plain_us"] = MedianOf(plainTimes) / 1000;
    state.counters["edited_us"] = MedianOf(editedTimes) / 1000;
    state.counters["ratio"] = MedianOf(editedTimes) / MedianOf(plainTimes);
}
BENCHMARK(ReadMebibyte)
    ->ArgName("edits")
    ->Args({0})
    ->Args({1'000})
    ->Args({100'000})
    ->Args({1'000'000})
    ->Iterations(50)
    ->Unit(benchmark::kMillisecond);

/// A row of edits, one call each: `at` counts the calls, `length` is how many there will be.
using EditInRow = void (*)(EditableDocument& document, std::uint64_t at, std::uint64_t length);

constexpr std::uint64_t kRowStart = kFileSize / 3;

void DeleteForwards(EditableDocument& document, std::uint64_t, std::uint64_t) {
    document.DeleteByte(kRowStart);
}
void DeleteBackwards(EditableDocument& document, std::uint64_t at, std::uint64_t length) {
    document.DeleteByte(kRowStart + length - 1 - at);
}
void InsertForwards(EditableDocument& document, std::uint64_t at, std::uint64_t) {
    document.InsertByte(kRowStart + at, static_cast<std::uint8_t>(at));
}
void InsertInFront(EditableDocument& document, std::uint64_t at, std::uint64_t) {
    document.InsertByte(kRowStart, static_cast<std::uint8_t>(at));
}
void AppendAtEnd(EditableDocument& document, std::uint64_t at, std::uint64_t) {
    document.InsertByte(document.GetSize(), static_cast<std::uint8_t>(at));
}
void OverwriteForwards(EditableDocument& document, std::uint64_t at, std::uint64_t) {
    document.OverwriteByte(kRowStart + at, static_cast<std::uint8_t>(at * 7));
}
void OverwriteBackwards(EditableDocument& document, std::uint64_t at, std::uint64_t length) {
    document.OverwriteByte(kRowStart + length - 1 - at, static_cast<std::uint8_t>(at * 7));
}

double NanosecondsPerByte(EditInRow edit, std::int64_t earlierEdits, std::uint64_t length) {
    EditableDocument document;
    OpenWithEdits(document, earlierEdits);
    return NanosecondsOf([&] {
               for (std::uint64_t at = 0; at < length; ++at)
                   edit(document, at, length);
           }) /
           static_cast<double>(length);
}

// 64 KiB and 1 MiB edited byte by byte in a row, among the given number of scattered earlier edits.
void InARow(benchmark::State& state, EditInRow edit) {
    std::vector<double> shortTimes;
    std::vector<double> longTimes;
    for ([[maybe_unused]] auto _ : state) {
        shortTimes.push_back(NanosecondsPerByte(edit, state.range(0), 64 * kKibibyte));
        longTimes.push_back(NanosecondsPerByte(edit, state.range(0), kMebibyte));
    }
    state.counters["ns_per_byte_64K"] = MedianOf(shortTimes);
    state.counters["ns_per_byte_1M"] = MedianOf(longTimes);
    state.counters["growth"] = MedianOf(longTimes) / MedianOf(shortTimes);
}
void AmongEarlierEdits(benchmark::internal::Benchmark* benchmark) {
    benchmark->ArgName("edits")->Args({0})->Args({1'000})->Args({100'000});
    benchmark->Iterations(11)->Unit(benchmark::kMillisecond);
}
BENCHMARK_CAPTURE(InARow, delete_forwards, DeleteForwards)->Apply(AmongEarlierEdits);
BENCHMARK_CAPTURE(InARow, delete_backwards, DeleteBackwards)->Apply(AmongEarlierEdits);
BENCHMARK_CAPTURE(InARow, insert_forwards, InsertForwards)->Apply(AmongEarlierEdits);
BENCHMARK_CAPTURE(InARow, insert_in_front, InsertInFront)->Apply(AmongEarlierEdits);
BENCHMARK_CAPTURE(InARow, append_at_end, AppendAtEnd)->Apply(AmongEarlierEdits);
BENCHMARK_CAPTURE(InARow, overwrite_forwards, OverwriteForwards)->Apply(AmongEarlierEdits);
BENCHMARK_CAPTURE(InARow, overwrite_backwards, OverwriteBackwards)->Apply(AmongEarlierEdits);

// A scattered edit on top of so many, the read of the file's byte that an overwrite needs included,
// and the heap memory that one takes.
void ScatteredEdit(benchmark::State& state) {
    EditableDocument document;
    document.Open(LargeFile().Path());
    const double before = HeapBytes();
    OpenWithEdits(document, state.range(0));
    state.counters["bytes_per_edit"] = (HeapBytes() - before) / static_cast<double>(state.range(0));
    constexpr int kEdits = 10'000;
    Random random(9);
    std::vector<double> times;
    for ([[maybe_unused]] auto _ : state) {
        times.push_back(NanosecondsOf([&] {
                            for (int i = 0; i < kEdits; ++i)
                                EditSomewhere(document, random);
                        }) /
                        kEdits);
    }
    state.counters["ns_per_edit"] = MedianOf(times);
}
BENCHMARK(ScatteredEdit)
    ->ArgName("edits")
    ->Args({100'000})
    ->Args({1'000'000})
    ->Iterations(11)
    ->Unit(benchmark::kMillisecond);

// The heap memory that a deleted run takes.
void DeletedRunMemory(benchmark::State& state) {
    for ([[maybe_unused]] auto _ : state) {
        EditableDocument document;
        OpenWithEdits(document, 0);
        const double before = HeapBytes();
        for (std::int64_t i = 0; i < state.range(0); ++i)
            document.DeleteByte(kRowStart);
        state.counters["heap_bytes"] = HeapBytes() - before;
    }
}
BENCHMARK(DeletedRunMemory)
    ->ArgName("bytes")
    ->Args({1})
    ->Args({kMebibyte})
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);

// Opening a sparse file of 1 TiB beside one of 1 KiB, and what a read at its end leaves resident.
void OpenTebibyte(benchmark::State& state) {
    constexpr std::uint64_t kTebibyte = kMebibyte * kMebibyte;
    const BenchFile small("kivra-small-bench.bin", kKibibyte, true);
    const BenchFile huge("kivra-huge-bench.bin", kTebibyte, true);
    const std::u16string smallPath = small.Path();
    const std::u16string hugePath = huge.Path();
    EditableDocument document;
    std::vector<double> smallTimes;
    std::vector<double> hugeTimes;
    double resident = 0;
    for ([[maybe_unused]] auto _ : state) {
        smallTimes.push_back(NanosecondsOf([&] { document.Open(smallPath); }));
        resident = resident == 0 ? ResidentBytes() : resident;
        hugeTimes.push_back(NanosecondsOf([&] { document.Open(hugePath); }));
        benchmark::DoNotOptimize(document.ReadBytes(kTebibyte - 100, 100).size());
    }
    state.counters["ratio"] = MedianOf(hugeTimes) / MedianOf(smallTimes);
    state.counters["resident_growth"] = ResidentBytes() - resident;
}
BENCHMARK(OpenTebibyte)->Iterations(2000)->Unit(benchmark::kMicrosecond);

} // namespace
} // namespace kvx

BENCHMARK_MAIN();
