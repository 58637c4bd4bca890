// Speed of loading and evaluating pattern files, beside what the C compiler takes to check the same
// declarations.
#include "pattern/evaluation.h"
#include "pattern/loader.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <malloc.h>
#include <random>
#include <string>
#include <sys/resource.h>
#include <vector>

namespace kvx {
namespace {

/// `count` structs of 20 members that a C compiler accepts as well: all kinds of built-in types,
/// arrays, pointers, an alias and an embedded earlier struct.
std::string ManyStructs(int count) {
    static constexpr const char* kMembers[] = {
        "char tag",           "unsigned char kind",  "short version",   "unsigned short flags",
        "int width",          "unsigned int height", "long offset",     "unsigned long length",
        "long long created",  "float scale",         "double position", "char name[32]",
        "unsigned int crc",   "Word checksum",       "void* owner",     "int table[16]",
        "unsigned char* raw", "Word reserved[4]",    "signed char sign"};
    std::string text = "typedef unsigned short Word;\n";
    for (int index = 0; index < count; ++index) {
        const std::string number = std::to_string(index);
        text += "struct Record" + number + " {\n";
        for (const char* member : kMembers)
            text += "    " + std::string(member) + ";\n";
        text += index % 10 == 0
                    ? "    int last;\n"
                    : "    struct Record" + std::to_string(index / 10 * 10) + " inner;\n";
        text += "};\n";
    }
    return text;
}

std::string ManyStructsPattern(int count) {
    return "@entry Record0\n" + ManyStructs(count);
}

ByteView AsBytes(const std::string& text) {
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

void ExpectLoaded(benchmark::State& state, const Outcome<SharedPattern>& load, bool loaded) {
    if (static_cast<bool>(load) != loaded) state.SkipWithError("The load ended the other way.");
}

/// Processor time of all child processes so far, in seconds.
double ChildSeconds() {
    rusage usage{};
    ::getrusage(RUSAGE_CHILDREN, &usage);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

/// Processor time of one run of the compiler on `text`, in seconds; the median of eleven. Negative
/// when it does not accept the text.
double CompilerSeconds(const std::string& text) {
    const std::string path = "kivra_pattern_bench.c";
    std::ofstream(path, std::ios::binary) << text;
    std::vector<double> runs;
    for (int run = 0; run < 11; ++run) {
        const double start = ChildSeconds();
        if (std::system(("gcc -fsyntax-only " + path).c_str()) != 0) return -1;
        runs.push_back(ChildSeconds() - start);
    }
    std::remove(path.c_str());
    std::ranges::sort(runs);
    return runs[runs.size() / 2];
}

/// Drops the result of the load before this one and gives its memory back to the system, so that
/// each load pays for its memory as the only load of a program does, however large it is.
void StartAnew(benchmark::State& state, Outcome<SharedPattern>& load) {
    state.PauseTiming();
    load = {};
    ::malloc_trim(0);
    state.ResumeTiming();
}

/// Bytes that the program has from the heap now.
double HeapBytes() {
    const auto info = ::mallinfo2();
    return static_cast<double>(info.uordblks + info.hblkhd);
}

void LoadStructs(benchmark::State& state) {
    const int count = static_cast<int>(state.range(0));
    const std::string text = ManyStructsPattern(count);
    const double heap = HeapBytes();
    Outcome<SharedPattern> load;
    for ([[maybe_unused]] const auto pass : state) {
        StartAnew(state, load);
        load = LoadStructPattern(AsBytes(text));
    }
    ExpectLoaded(state, load, true);
    state.counters["heap_per_byte"] = (HeapBytes() - heap) / static_cast<double>(text.size());
    state.counters["per_struct"] = benchmark::Counter(
        count, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}
BENCHMARK(LoadStructs)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

/// What the compiler takes for the same 1,000 structs, its start on an empty file taken off.
void CompilerOnTheSameStructs(benchmark::State& state) {
    for ([[maybe_unused]] const auto pass : state) {
        const double net = CompilerSeconds(ManyStructs(1000)) - CompilerSeconds("");
        if (net <= 0) state.SkipWithError("gcc did not run.");
        state.SetIterationTime(net);
    }
}
BENCHMARK(CompilerOnTheSameStructs)->UseManualTime()->Iterations(1)->Unit(benchmark::kMillisecond);

void EvaluateHundredMembers(benchmark::State& state) {
    std::string text = "struct S {\n";
    for (int i = 0; i < 10; ++i) {
        const std::string n = std::to_string(i);
        text += "char name" + n + "[16]; uint8_t a" + n + "; uint16_t b" + n + "; uint32_t c" + n +
                "; uint64_t d" + n + "; int e" + n + "; float f" + n + "; double g" + n +
                "; void* p" + n + "; short h" + n + "[40];\n";
    }
    StructEvalRequest request;
    request.pattern = *LoadStructPattern(AsBytes("@member_align 0\n" + text + "};")).value;
    request.baseOffset = 0x12345678;
    std::mt19937 random(1);
    for (std::uint64_t i = 0; i < request.pattern->Entry()->size; ++i)
        request.bytes.push_back(static_cast<std::uint8_t>(random()));
    std::size_t rows = 0;
    for ([[maybe_unused]] const auto pass : state) {
        rows = EvaluateStruct(request).size();
        benchmark::DoNotOptimize(rows);
    }
    if (rows != 100) state.SkipWithError("Expected 100 rows.");
}
BENCHMARK(EvaluateHundredMembers)->Unit(benchmark::kMicrosecond);

/// 10 MiB that no pattern begins with, of different shapes.
void RefuseGarbage(benchmark::State& state, const std::string& unit) {
    constexpr std::size_t kSize = std::size_t{10} << 20;
    std::string text = "struct A {";
    while (text.size() < kSize)
        text += unit;
    Outcome<SharedPattern> load;
    for ([[maybe_unused]] const auto pass : state) {
        StartAnew(state, load);
        load = LoadStructPattern(AsBytes(text));
    }
    ExpectLoaded(state, load, false);
}
BENCHMARK_CAPTURE(RefuseGarbage, symbols, "*")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(RefuseGarbage, words, "a ")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(RefuseGarbage, letters, "a")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(RefuseGarbage, lines, "\n")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(RefuseGarbage, comments, "/**/")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(RefuseGarbage, kanji, "\xE6\xBC\xA2")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(RefuseGarbage, members, "int*a;")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(RefuseGarbage, new_types, "\xC3\xA9 a;")->Unit(benchmark::kMillisecond);

void RefuseRandomBytes(benchmark::State& state) {
    std::mt19937 random(1);
    std::string text(std::size_t{10} << 20, '\0');
    for (char& character : text)
        character = static_cast<char>(random());
    Outcome<SharedPattern> load;
    for ([[maybe_unused]] const auto pass : state) {
        StartAnew(state, load);
        load = LoadStructPattern(AsBytes(text));
    }
    ExpectLoaded(state, load, false);
}
BENCHMARK(RefuseRandomBytes)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace kvx

BENCHMARK_MAIN();
