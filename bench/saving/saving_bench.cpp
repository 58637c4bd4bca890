// Times whole saves of a large file against `cp` and fsync of the same file, all in one run:
//   kivra_saving_bench [folder] [MiB] [rounds]
// Each round does every operation once, in random order, after all earlier writes have reached the
// disk. Edits are made before the clock starts. Linux only: the yardstick is its `cp`.
#include "document/editable_document.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <numeric>
#include <random>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

using kvx::EditableDocument;
namespace fs = std::filesystem;

constexpr std::uint64_t kMiB = 1024 * 1024;

[[noreturn]] void Give(const std::string& reason) {
    std::fprintf(stderr, "saving_bench: %s\n", reason.c_str());
    std::exit(1);
}

void Require(bool done, const char* what) {
    if (!done) Give(std::string("failed: ") + what);
}

template <typename Action>
double SecondsOf(Action action) {
    ::sync();
    const auto start = std::chrono::steady_clock::now();
    action();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void MakeFile(const fs::path& path, std::uint64_t mebibytes) {
    std::mt19937_64 random(1);
    std::vector<std::uint64_t> block(kMiB / sizeof(std::uint64_t));
    std::ofstream out(path, std::ios::binary);
    for (std::uint64_t i = 0; i < mebibytes; ++i) {
        std::generate(block.begin(), block.end(), std::ref(random));
        out.write(reinterpret_cast<const char*>(block.data()), kMiB);
    }
    Require(out.good(), "making the file");
}

void Flush(const fs::path& path) {
    kvx::ErrorCode error = 0;
    const auto file = kvx::SystemFileLayer().OpenForWriting(path.u16string(), error);
    Require(file && file->Flush(), "fsync");
}

double TimeCopy(const fs::path& source, const fs::path& target) {
    const std::string command = "cp '" + source.string() + "' '" + target.string() + "'";
    const double seconds = SecondsOf([&] {
        Require(std::system(command.c_str()) == 0, "cp");
        Flush(target);
    });
    fs::remove(target);
    return seconds;
}

template <typename Edit>
double TimeSave(const fs::path& path, Edit edit) {
    EditableDocument document;
    Require(document.Open(path.u16string()), "open");
    edit(document);
    return SecondsOf([&] { Require(document.Save(), "save"); });
}

void InsertOneByte(EditableDocument& document) {
    Require(document.InsertByte(document.GetSize() / 1000, 'x'), "insert");
}

// A third each, as many bytes inserted as deleted.
void MixHundredThousandEdits(EditableDocument& document) {
    std::mt19937_64 random(2);
    for (int i = 0; i < 100'000; ++i) {
        const std::uint64_t position = random() % document.GetSize();
        const auto value = static_cast<std::uint8_t>(random());
        if (i % 3 == 0) document.InsertByte(position, value);
        if (i % 3 == 1) document.DeleteByte(position);
        if (i % 3 == 2) document.OverwriteByte(position, value);
    }
}

void OverwriteThousandBytes(EditableDocument& document) {
    std::mt19937_64 random(std::random_device{}());
    for (int i = 0; i < 1000; ++i)
        document.OverwriteByte(random() % document.GetSize(), static_cast<std::uint8_t>(random()));
}

struct Operation {
    const char* name;
    double target; ///< most it may take as a multiple of the copy
    std::vector<double> seconds = {};

    double Best() const { return *std::min_element(seconds.begin(), seconds.end()); }
    double Median() const {
        std::vector<double> sorted = seconds;
        std::sort(sorted.begin(), sorted.end());
        return sorted[sorted.size() / 2];
    }
};

void Print(const std::vector<Operation>& operations) {
    const Operation& copy = operations.front();
    std::printf("%-40s %9s %9s %8s %8s %7s\n", "", "median s", "best s", "/ copy", "best /",
                "target");
    for (const Operation& operation : operations) {
        std::printf("%-40s %9.3f %9.3f %8.3f %8.3f %7.2f\n", operation.name, operation.Median(),
                    operation.Best(), operation.Median() / copy.Median(),
                    operation.Best() / copy.Best(), operation.target);
    }
}

/// The bench's own folder, removed at the end.
struct Workplace {
    explicit Workplace(const fs::path& parent)
        : folder(parent / ("kivra-saving-bench-" + std::to_string(::getpid()))) {
        fs::create_directories(folder);
    }
    Workplace(const Workplace&) = delete;
    Workplace& operator=(const Workplace&) = delete;
    ~Workplace() {
        std::error_code ignored;
        fs::remove_all(folder, ignored);
    }
    fs::path folder;
};

} // namespace

int main(int count, char** arguments) {
    const fs::path parent = count > 1 ? fs::path(arguments[1]) : fs::temp_directory_path();
    const std::uint64_t mebibytes = count > 2 ? std::stoull(arguments[2]) : 1024;
    const int rounds = count > 3 ? std::stoi(arguments[3]) : 11;
    if (fs::space(parent).available < 4 * mebibytes * kMiB) Give("not enough free disk");

    const Workplace place(parent);
    const fs::path file = place.folder / "file.bin";
    const fs::path copy = place.folder / "copy.bin";
    MakeFile(file, mebibytes);
    std::vector<Operation> operations = {{"cp and fsync", 1},
                                         {"save, 1 byte inserted", 1.15},
                                         {"save, 100,000 mixed edits", 1.3},
                                         {"save in place, 1,000 overwrites", 0.1}};
    std::vector<std::size_t> order(operations.size());
    std::iota(order.begin(), order.end(), 0U);
    std::mt19937 random(3);
    for (int round = 0; round < rounds; ++round) {
        std::shuffle(order.begin(), order.end(), random);
        for (const std::size_t i : order) {
            const double seconds = i == 0   ? TimeCopy(file, copy)
                                   : i == 1 ? TimeSave(file, InsertOneByte)
                                   : i == 2 ? TimeSave(file, MixHundredThousandEdits)
                                            : TimeSave(file, OverwriteThousandBytes);
            operations[i].seconds.push_back(seconds);
        }
    }
    Print(operations);
    return 0;
}
