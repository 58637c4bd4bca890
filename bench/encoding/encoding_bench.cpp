// Times what the text column costs in each encoding, on every host (Google Benchmark is not at hand
// for Windows programs):
//   kivra_encoding_bench
// Prints medians over many rounds: a row of 16 bytes decoded in a page whose surroundings are read
// already, a row by itself, a page of 60 rows; the two last with their reads through the editor's
// document over a file in the page cache. Also the first use of an encoding, which makes its
// tables.
#include "document/editable_document.h"
#include "encoding/character_decoder.h"
#include "encoding/row_decoder.h"
#include "encoding/text_encoder.h"
#include "platform/text.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <vector>

namespace kvx {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t kFileSize = std::size_t{1} << 20;
constexpr std::uint64_t kRowBytes = 16;
constexpr std::uint64_t kPageBytes = 60 * kRowBytes;
constexpr int kRounds = 101;

double NanosecondsSince(Clock::time_point start) {
    return std::chrono::duration<double, std::nano>(Clock::now() - start).count();
}

/// The median over the rounds of the time that `work` takes once, in nanoseconds.
template <typename Work>
double TimeOf(int timesPerRound, Work work) {
    std::vector<double> rounds;
    for (int round = 0; round < kRounds; ++round) {
        const auto start = Clock::now();
        for (int i = 0; i < timesPerRound; ++i)
            work();
        rounds.push_back(NanosecondsSince(start) / timesPerRound);
    }
    std::ranges::nth_element(rounds, rounds.begin() + kRounds / 2);
    return rounds[kRounds / 2];
}

/// What one character of the encoding can be.
std::vector<Bytes> CharactersOf(TextEncoding encoding) {
    std::vector<Bytes> characters;
    for (unsigned pair = 0; pair < 0x10000; ++pair) {
        const Bytes bytes = {static_cast<std::uint8_t>(pair >> 8), static_cast<std::uint8_t>(pair)};
        const auto character = DecodeCharAt(encoding, bytes);
        if (character && character->length == 2) characters.push_back(bytes);
    }
    if (!characters.empty()) return characters;
    for (unsigned unit = 0x20; unit < 0xFFFE; ++unit) {
        const auto character = static_cast<char16_t>(unit);
        if (const auto bytes = EncodeText(encoding, {&character, 1})) characters.push_back(*bytes);
    }
    return characters;
}

enum class Content { Text, Random, Run };

Bytes MakeContent(Content content, TextEncoding encoding) {
    std::mt19937 random(1);
    Bytes bytes;
    const auto characters = CharactersOf(encoding);
    while (bytes.size() < kFileSize) {
        if (content == Content::Text) {
            const Bytes& next = characters[random() % characters.size()];
            bytes.insert(bytes.end(), next.begin(), next.end());
            if (random() % 8 == 0) bytes.push_back(' ');
        } else {
            bytes.push_back(content == Content::Run ? std::uint8_t{0xB3}
                                                    : static_cast<std::uint8_t>(random()));
        }
    }
    bytes.resize(kFileSize);
    return bytes;
}

struct Times {
    double rowInPage; ///< nanoseconds
    double rowAlone;  ///< nanoseconds
    double page;      ///< microseconds
};

Times Worse(const Times& a, const Times& b) {
    return {std::max(a.rowInPage, b.rowInPage), std::max(a.rowAlone, b.rowAlone),
            std::max(a.page, b.page)};
}

Times Measure(const std::filesystem::path& path, const Bytes& content, TextEncoding encoding) {
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(content.data()),
               static_cast<std::streamsize>(content.size()));
    EditableDocument document;
    if (!document.Open(path.u16string())) {
        std::fputs("encoding_bench: cannot open the file\n", stderr);
        std::exit(1);
    }
    std::uint64_t start = 0;
    const auto next = [&start](std::uint64_t step) {
        start = (start + step) % (kFileSize - 2 * kPageBytes);
        return start;
    };
    const auto row = [&content](std::uint64_t at) {
        return ByteView(content).subspan(static_cast<std::size_t>(at), kRowBytes);
    };
    const auto decodePage = [&](RowDecoder& decoder, std::uint64_t page) {
        for (std::uint64_t at = page; at < page + kPageBytes; at += kRowBytes)
            decoder.Decode(at, row(at));
    };
    RowDecoder inside(&document, encoding, kFileSize / 2, kPageBytes);
    const double rowInPage =
        TimeOf(30, [&] { decodePage(inside, kFileSize / 2); }) / (kPageBytes / kRowBytes);
    const double rowAlone = TimeOf(1000, [&] {
        const std::uint64_t at = next(kRowBytes);
        DecodeRow(&document, at, row(at), encoding);
    });
    const double page = TimeOf(20, [&] {
        const std::uint64_t at = next(kPageBytes);
        RowDecoder decoder(&document, encoding, at, kPageBytes);
        decodePage(decoder, at);
    });
    document.Close();
    return {rowInPage, rowAlone, page / 1000};
}

void MeasureEncoding(const std::filesystem::path& path, TextEncoding encoding) {
    const EditableDocument closed;
    const Bytes letters(kRowBytes, 'A');
    const auto start = Clock::now();
    DecodeRow(&closed, 0, letters, encoding);
    const double firstUse = NanosecondsSince(start) / 1e6;

    const Times text = Measure(path, MakeContent(Content::Text, encoding), encoding);
    Times worst = text;
    for (const Content content : {Content::Random, Content::Run})
        worst = Worse(worst, Measure(path, MakeContent(content, encoding), encoding));
    std::printf("| %s | %.0f / %.0f | %.0f / %.0f | %.1f / %.1f | %.1f |\n",
                Utf16ToUtf8(EncodingDisplayName(encoding)).c_str(), text.rowInPage, worst.rowInPage,
                text.rowAlone, worst.rowAlone, text.page, worst.page, firstUse);
}

} // namespace
} // namespace kvx

int main() {
    const auto path = std::filesystem::temp_directory_path() / "kivra-encoding-bench.bin";
    std::puts("Text of the encoding / the slowest of that, random bytes and one long run.\n\n"
              "| encoding | row in a page, ns | row alone, ns | page, \xC2\xB5s | first use, ms |\n"
              "|---|---|---|---|---|");
    for (std::uint32_t value = 0; value < kvx::kTextEncodingCount; ++value)
        kvx::MeasureEncoding(path, static_cast<kvx::TextEncoding>(value));
    std::filesystem::remove(path);
}
