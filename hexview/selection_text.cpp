#include "hexview/selection_text.h"

#include "hexview/hex_digits.h"

#include <algorithm>
#include <new>

namespace kvx {
namespace {

constexpr std::uint64_t kBlockSize = 256 * 1024;
constexpr std::uint64_t kUnitsPerByte = 3;

/// Appends two digits and a blank for each byte.
void AppendPairs(std::u16string& text, ByteView bytes) {
    std::size_t at = text.size();
    text.resize(at + bytes.size() * kUnitsPerByte, u' ');
    for (const std::uint8_t byte : bytes) {
        const auto pair = HexPair(byte);
        text[at] = pair[0];
        text[at + 1] = pair[1];
        at += kUnitsPerByte;
    }
}

std::u16string ReadPairs(const IReadOnlyDocument& document, std::uint64_t first,
                         std::uint64_t count) {
    std::u16string text;
    // All at once: growing by halves would need the memory twice.
    text.reserve(static_cast<std::size_t>(count * kUnitsPerByte));
    for (std::uint64_t done = 0; done < count;) {
        const Bytes block = document.ReadBytes(first + done, std::min(kBlockSize, count - done));
        if (block.empty()) break;
        AppendPairs(text, block);
        done += block.size();
    }
    return text;
}

} // namespace

std::optional<std::u16string> HexText(const IReadOnlyDocument& document, std::uint64_t first,
                                      std::uint64_t last) {
    const std::uint64_t count = last - first + 1;
    if (count > std::u16string().max_size() / kUnitsPerByte) return std::nullopt;
    try {
        std::u16string text = ReadPairs(document, first, count);
        if (text.empty()) return std::nullopt;
        text.pop_back(); // the blank behind the last byte
        return text;
    } catch (const std::bad_alloc&) {
        return std::nullopt;
    }
}

} // namespace kvx
