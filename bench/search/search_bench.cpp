// Times searches for patterns that a file does not contain, both ways, against a bare loop that
// reads the file in blocks of 1 MiB, memmem in that loop, and ripgrep:
//   kivra_search_bench [folder] [MiB] [rounds] [random|code|text|zeros|periodic|runs|edited]
// Times are processor times, system calls included, so that other programs beside disturb little;
// ripgrep's is that of its whole run, of which the start takes 4 ms. It is the only contestant that
// maps the file. Linux only. Without `rg` in the path (Debian: ripgrep) its column stays 0.
#include "app/search.h"
#include "document/editable_document.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <malloc.h>
#include <random>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>
#include <vector>

namespace {

using kvx::Bytes;
using kvx::EditableDocument;
namespace fs = std::filesystem;

constexpr std::size_t kMiB = std::size_t{1} << 20;
constexpr std::size_t kLengths[] = {1, 2, 4, 8, 16, 64, 1024, 4096};

[[noreturn]] void Give(const std::string& reason) {
    std::fprintf(stderr, "search_bench: %s\n", reason.c_str());
    std::exit(1);
}

std::mt19937_64 random_(1);

std::size_t Below(std::size_t limit) {
    return random_() % limit;
}

double Seconds(const timeval& time) {
    return static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_usec);
}

template <typename Action>
double SecondsOf(const Action& action) {
    timespec from{};
    timespec to{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &from);
    action();
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &to);
    return static_cast<double>(to.tv_sec - from.tv_sec) +
           1e-9 * static_cast<double>(to.tv_nsec - from.tv_nsec);
}

double ChildSeconds() {
    rusage usage{};
    ::getrusage(RUSAGE_CHILDREN, &usage);
    return Seconds(usage.ru_utime) + Seconds(usage.ru_stime);
}

double Median(std::vector<double> values) {
    if (values.empty()) return 0;
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

bool Contains(const Bytes& data, const Bytes& pattern) {
    return ::memmem(data.data(), data.size(), pattern.data(), pattern.size()) != nullptr;
}

Bytes RandomBytes(std::size_t size, std::size_t letters = 256) {
    Bytes bytes(size);
    for (std::uint8_t& byte : bytes)
        byte = static_cast<std::uint8_t>(Below(letters));
    return bytes;
}

// The files of a folder one after the other, over again until it is enough.
Bytes FilesOf(const char* folder, std::size_t size) {
    std::vector<fs::path> paths;
    const auto options = fs::directory_options::skip_permission_denied;
    for (const auto& entry : fs::recursive_directory_iterator(folder, options))
        if (entry.is_regular_file() && !entry.is_symlink()) paths.push_back(entry.path());
    std::sort(paths.begin(), paths.end());
    Bytes bytes;
    bytes.reserve(size + kMiB);
    for (std::size_t i = 0; bytes.size() < size; i = (i + 1) % paths.size()) {
        std::ifstream file(paths[i], std::ios::binary);
        std::transform(std::istreambuf_iterator<char>(file), {}, std::back_inserter(bytes),
                       [](char each) { return static_cast<std::uint8_t>(each); });
        if (i + 1 == paths.size() && bytes.empty()) Give(std::string("nothing in ") + folder);
    }
    bytes.resize(size);
    return bytes;
}

Bytes Repeated(const Bytes& piece, std::size_t size) {
    Bytes bytes(size);
    for (std::size_t i = 0; i < size; ++i)
        bytes[i] = piece[i % piece.size()];
    return bytes;
}

// Takes the byte 0x9D and one pair of frequent bytes out of the data, which is too long to lack
// them by itself.
Bytes MakeShortPatternsAbsent(Bytes& data) {
    constexpr std::uint8_t kAbsent = 0x9D;
    std::replace(data.begin(), data.end(), kAbsent, std::uint8_t{0x9C});
    const std::size_t at = Below(data.size() - 1);
    const Bytes pair(data.begin() + static_cast<std::ptrdiff_t>(at),
                     data.begin() + static_cast<std::ptrdiff_t>(at) + 2);
    const auto other = static_cast<std::uint8_t>(pair[0] ^ 1);
    for (std::size_t i = 0; i + 1 < data.size(); ++i)
        if (data[i] == pair[0] && data[i + 1] == pair[1]) data[i + 1] = other;
    return pair;
}

// A piece of the data with one of its bytes changed into another one of the data.
Bytes AbsentPattern(const Bytes& data, std::size_t length) {
    for (;;) {
        const auto at = static_cast<std::ptrdiff_t>(Below(data.size() - length));
        Bytes pattern(data.begin() + at, data.begin() + at + static_cast<std::ptrdiff_t>(length));
        pattern[Below(length)] = data[Below(data.size())];
        if (!Contains(data, pattern)) return pattern;
    }
}

class File {
public:
    explicit File(const fs::path& path) : path_(path) {}
    ~File() { Close(); }
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    void Fill(const Bytes& data) {
        Close();
        std::ofstream out(path_, std::ios::binary);
        // In pieces as cp writes them: how large they are decides how the page cache is laid out.
        constexpr std::size_t kStep = std::size_t{128} << 10;
        for (std::size_t at = 0; at < data.size(); at += kStep)
            out.write(reinterpret_cast<const char*>(data.data() + at),
                      static_cast<std::streamsize>(std::min(kStep, data.size() - at)));
        if (!out.flush()) Give("cannot write the file");
        descriptor_ = ::open(path_.c_str(), O_RDONLY);
        if (!document_.Open(path_.u16string())) Give("cannot open the file");
    }

    const EditableDocument& Document() const { return document_; }
    const fs::path& Path() const { return path_; }

    // Calls `look` with each block of 1 MiB and the `overlap` bytes before it.
    template <typename Look>
    void ForEachBlock(std::size_t overlap, const Look& look) const {
        constexpr std::size_t kRoom = 4096;
        static Bytes buffer(kRoom + kMiB);
        std::uint8_t* const block = buffer.data() + kRoom;
        std::size_t carry = 0;
        off_t offset = 0;
        for (;;) {
            const ssize_t got = ::pread(descriptor_, block, kMiB, offset);
            if (got <= 0) break;
            look(block - carry, carry + static_cast<std::size_t>(got));
            carry = overlap;
            std::memmove(block - carry, block + got - carry, carry);
            offset += got;
        }
    }

private:
    void Close() {
        if (descriptor_ >= 0) ::close(descriptor_);
        descriptor_ = -1;
    }

    fs::path path_;
    int descriptor_ = -1;
    EditableDocument document_;
};

void ReadBare(const File& file, const Bytes&) {
    file.ForEachBlock(0, [](const std::uint8_t*, std::size_t) {});
}

void SearchByMemmem(const File& file, const Bytes& pattern) {
    file.ForEachBlock(pattern.size() - 1, [&](const std::uint8_t* block, std::size_t size) {
        if (::memmem(block, size, pattern.data(), pattern.size())) Give("memmem found it");
    });
}

void SearchForwards(const File& file, const Bytes& pattern) {
    if (SearchForward(file.Document(), pattern, 0, {}, {}).Found()) Give("found it");
}

void SearchBackwards(const File& file, const Bytes& pattern) {
    if (SearchBackward(file.Document(), pattern, UINT64_MAX, {}, {}).Found()) Give("found it");
}

bool HasRipgrep() {
    static const bool has = std::system("rg --version >/dev/null 2>&1") == 0;
    return has;
}

double RipgrepSeconds(const fs::path& path, const Bytes& pattern) {
    std::string regex;
    for (const std::uint8_t byte : pattern) {
        char text[8];
        std::snprintf(text, sizeof text, "\\x%02X", byte);
        regex += text;
    }
    const std::string command = "exec rg --no-config -uuu -a -U -c '(?-u)" + regex + "' '" +
                                path.string() + "' >/dev/null 2>&1";
    const double before = ChildSeconds();
    const int status = std::system(command.c_str());
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 1) Give("rg failed");
    return ChildSeconds() - before;
}

enum Contestant : std::size_t { kBare, kMemmem, kForwards, kBackwards, kRipgrep, kContestants };

/// Seconds of all contestants with one pattern.
using Times = std::array<double, kContestants>;

class Arena {
public:
    explicit Arena(const fs::path& folder) : file_(folder / "file.bin") {}

    void Fill(const Bytes& data) {
        file_.Fill(data);
        size_ = data.size();
    }
    File& TheFile() { return file_; }

    // Medians over the patterns by turns; `slowRounds`: of memmem and ripgrep.
    Times Measure(const std::vector<Bytes>& patterns, int rounds, int slowRounds) {
        std::array<std::vector<double>, kContestants> seconds;
        std::vector<std::size_t> order = {kBare, kMemmem, kForwards, kBackwards, kRipgrep};
        for (int round = 0; round < rounds; ++round) {
            const Bytes& pattern = patterns[static_cast<std::size_t>(round) % patterns.size()];
            std::shuffle(order.begin(), order.end(), random_);
            for (const std::size_t each : order) {
                const bool slow = each == kMemmem || each == kRipgrep;
                if (slow && round >= slowRounds) continue;
                if (each == kRipgrep && !HasRipgrep()) continue;
                seconds[each].push_back(Time(each, pattern));
            }
        }
        Times medians = {};
        for (std::size_t i = 0; i < kContestants; ++i)
            medians[i] = Median(seconds[i]);
        return medians;
    }

    double GBPerSecond(double seconds) const { return static_cast<double>(size_) / seconds / 1e9; }

private:
    double Time(std::size_t contestant, const Bytes& pattern) {
        if (contestant == kRipgrep) return RipgrepSeconds(file_.Path(), pattern);
        constexpr void (*kActions[])(const File&, const Bytes&) = {ReadBare, SearchByMemmem,
                                                                   SearchForwards, SearchBackwards};
        return SecondsOf([&] { kActions[contestant](file_, pattern); });
    }

    File file_;
    std::size_t size_ = 0;
};

void PrintHead() {
    std::printf("%-22s %6s %10s | of the bare loop: %8s %9s %7s %8s | %s\n", "data", "length",
                "bare GB/s", "forwards", "backwards", "memmem", "ripgrep", "missed");
}

void PrintRow(const Arena& arena, const std::string& data, std::size_t length, const Times& times,
              double target) {
    const auto ratio = [&](Contestant each) {
        return times[each] > 0 ? times[kBare] / times[each] : 0;
    };
    const double worse = std::min(ratio(kForwards), ratio(kBackwards));
    std::string missed;
    if (worse < target) missed += " target";
    if (worse < ratio(kMemmem)) missed += " memmem";
    if (worse < ratio(kRipgrep)) missed += " ripgrep";
    std::printf("%-22s %6zu %10.1f | %26.2f %9.2f %7.3f %8.3f |%s\n", data.c_str(), length,
                arena.GBPerSecond(times[kBare]), ratio(kForwards), ratio(kBackwards),
                ratio(kMemmem), ratio(kRipgrep), missed.c_str());
    std::fflush(stdout);
}

void RunOrdinary(Arena& arena, int rounds, const std::string& name, Bytes data) {
    constexpr int kPatterns = 3;
    const Bytes pair = MakeShortPatternsAbsent(data);
    arena.Fill(data);
    for (const std::size_t length : kLengths) {
        std::vector<Bytes> patterns;
        if (length == 1) patterns = {Bytes{0x9D}};
        if (length == 2) patterns = {pair};
        if (const Bytes row(length, 0); length >= 16 && !Contains(data, row))
            PrintRow(arena, name + ", zeros", length, arena.Measure({row}, rounds, rounds), 0.65);
        while (length > 2 && patterns.size() < kPatterns)
            patterns.push_back(AbsentPattern(data, length));
        PrintRow(arena, name, length, arena.Measure(patterns, rounds, rounds),
                 length == 1 ? 0.8 : 0.65);
    }
}

// Patterns that are the start of the data but for one byte, and do not occur in it.
std::vector<Bytes> NearMisses(const Bytes& head, std::size_t length) {
    std::vector<Bytes> patterns;
    for (const std::size_t place : {std::size_t{0}, length / 3, length / 2, length - 1}) {
        for (const std::uint8_t change : {std::uint8_t{1}, std::uint8_t{0xFF}}) {
            Bytes pattern(head.begin(), head.begin() + static_cast<std::ptrdiff_t>(length));
            pattern[place] ^= change;
            if (!Contains(head, pattern)) patterns.push_back(pattern);
        }
    }
    return patterns;
}

void RunRepetitive(Arena& arena, int rounds, const std::string& name, const Bytes& piece,
                   std::size_t size) {
    constexpr int kRoundsToChoose = 3;
    arena.Fill(Repeated(piece, size));
    for (const std::size_t length : kLengths) {
        Bytes worst;
        double mostSeconds = 0;
        for (const Bytes& pattern : NearMisses(Repeated(piece, 64 * 1024), length)) {
            const Times times = arena.Measure({pattern}, kRoundsToChoose, 0);
            const double seconds = std::max(times[kForwards], times[kBackwards]);
            if (seconds > mostSeconds) worst = pattern;
            mostSeconds = std::max(mostSeconds, seconds);
        }
        if (!worst.empty()) PrintRow(arena, name, length, arena.Measure({worst}, rounds, 1), 0.4);
    }
}

// Zeros with a one after every n - 1 of them: n zeros in a row are never there and always nearly.
void RunRuns(Arena& arena, int rounds, std::size_t size) {
    for (const std::size_t length : kLengths) {
        if (length == 1) continue;
        Bytes piece(length, 0);
        piece.back() = 1;
        arena.Fill(Repeated(piece, size));
        PrintRow(arena, "runs of n - 1 zeros", length, arena.Measure({Bytes(length, 0)}, rounds, 1),
                 0.4);
    }
}

void PrintMemory(const File& file) {
    const auto allocated = [] {
        const struct mallinfo2 heap = ::mallinfo2();
        return heap.uordblks + heap.hblkhd;
    };
    const std::size_t before = allocated();
    std::size_t most = 0;
    SearchForward(file.Document(), Bytes(4096, 0), 0, {}, [&] {
        most = std::max(most, allocated());
        return true;
    });
    std::printf("memory of a search for 4096 bytes: %zu KiB\n", (most - before) >> 10);
}

void RunEdited(Arena& arena, int rounds, std::size_t size) {
    Bytes data = RandomBytes(size);
    const Bytes pattern = AbsentPattern(data, 16);
    arena.Fill(data);
    PrintMemory(arena.TheFile());
    EditableDocument edited;
    if (!edited.Open(arena.TheFile().Path().u16string())) Give("cannot open");
    for (int i = 0; i < 100'000; ++i) {
        const std::uint64_t at = Below(edited.GetSize());
        if (i % 3 == 0) edited.InsertByte(at, 1);
        if (i % 3 == 1) edited.DeleteByte(at);
        if (i % 3 == 2) edited.OverwriteByte(at, 1);
    }
    std::array<std::vector<double>, 4> seconds;
    for (int round = 0; round < rounds; ++round) {
        seconds[0].push_back(SecondsOf([&] { SearchForwards(arena.TheFile(), pattern); }));
        seconds[1].push_back(SecondsOf([&] { SearchForward(edited, pattern, 0, {}, {}); }));
        seconds[2].push_back(SecondsOf([&] { SearchBackwards(arena.TheFile(), pattern); }));
        seconds[3].push_back(
            SecondsOf([&] { SearchBackward(edited, pattern, UINT64_MAX, {}, {}); }));
    }
    std::printf("with 100,000 edits, of the untouched file: forwards %.2f, backwards %.2f\n",
                Median(seconds[0]) / Median(seconds[1]), Median(seconds[2]) / Median(seconds[3]));
}

} // namespace

int main(int count, char** arguments) {
    const fs::path parent = count > 1 ? fs::path(arguments[1]) : fs::temp_directory_path();
    const std::size_t size = (count > 2 ? std::stoul(arguments[2]) : 256) * kMiB;
    const int rounds = count > 3 ? std::stoi(arguments[3]) : 7;
    const std::string only = count > 4 ? arguments[4] : "";
    const fs::path folder = parent / ("kivra-search-bench-" + std::to_string(::getpid()));
    fs::create_directories(folder);
    {
        Arena arena(folder);
        const auto wanted = [&](const std::string& name) { return only.empty() || name == only; };
        PrintHead();
        if (wanted("random")) RunOrdinary(arena, rounds, "random bytes", RandomBytes(size));
        if (wanted("code")) RunOrdinary(arena, rounds, "machine code", FilesOf("/usr/bin", size));
        if (wanted("text")) RunOrdinary(arena, rounds, "text", FilesOf("/usr/include", size));
        if (wanted("zeros")) RunRepetitive(arena, rounds, "zeros", Bytes{0}, size);
        if (wanted("periodic")) {
            RunRepetitive(arena, rounds, "period 2", Bytes{0, 1}, size);
            RunRepetitive(arena, rounds, "period 7 of two", RandomBytes(7, 2), size);
            RunRepetitive(arena, rounds, "period 64 of two", RandomBytes(64, 2), size);
            RunRepetitive(arena, rounds, "period 1000", RandomBytes(1000), size);
        }
        if (wanted("runs")) RunRuns(arena, rounds, size);
        if (wanted("edited")) RunEdited(arena, rounds, size);
    }
    fs::remove_all(folder);
    return 0;
}
