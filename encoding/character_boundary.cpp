#include "encoding/character_boundary.h"

#include <algorithm>
#include <cstddef>
#include <optional>

namespace kvx {
namespace {

/// The start of the run that the last of `bytes` is in: the last index at which a character starts
/// wherever the walk came from. 0 when the run may have begun before.
std::size_t RunStart(const DoubleByteTable& table, ByteView bytes) {
    std::size_t at = bytes.size() - 1;
    while (at > 0 && table.IsPair(bytes[at - 1], bytes[at]))
        --at;
    return at;
}

/// The same, faster in a long run: in steps that take one branch each.
std::size_t LongRunStart(const DoubleByteTable& table, ByteView bytes) {
    constexpr std::size_t kStep = 8;
    const auto isRun = [&](std::size_t last) {
        bool all = true;
        for (std::size_t at = last; at > last - kStep; --at)
            all &= table.IsPair(bytes[at - 1], bytes[at]);
        return all;
    };
    std::size_t last = bytes.size() - 1;
    while (last >= kStep && isRun(last))
        last -= kStep;
    return RunStart(table, bytes.first(last + 1));
}

/// The same as an offset, looking back to `from`, which is returned when the run reaches it. Most
/// runs are short, so the last bytes are tried first. nullopt when they cannot be read.
std::optional<std::uint64_t> FindRunStart(DocumentWindow& window, const DoubleByteTable& table,
                                          std::uint64_t from, std::uint64_t rowStart) {
    const std::uint64_t usual =
        std::max(from, rowStart - std::min(rowStart, CharacterBoundary::kUsualReach));
    const ByteView bytes = window.View(usual, rowStart + 1);
    if (bytes.size() != rowStart + 1 - usual) return std::nullopt;
    const std::size_t at = RunStart(table, bytes);
    if (at > 0 || usual == from) return usual + at;

    const ByteView before = window.View(from, usual + 1);
    if (before.size() != usual + 1 - from) return std::nullopt;
    return from + LongRunStart(table, before);
}

} // namespace

std::uint64_t CharacterBoundary::Find(DocumentWindow& window, const DoubleByteTable& table,
                                      std::uint64_t rowStart) {
    const std::uint64_t walkStart = rowStart - std::min(rowStart, kReach);
    const bool goesOn = rowStart >= searchedAt_ && searchedAt_ >= walkStart;
    const std::uint64_t from = goesOn ? searchedAt_ : walkStart;
    const auto found = FindRunStart(window, table, from, rowStart);
    if (!found) return rowStart;
    runStart_ = goesOn && *found == searchedAt_ ? std::max(runStart_, walkStart) : *found;
    searchedAt_ = rowStart;
    return rowStart - (rowStart - runStart_) % 2;
}

} // namespace kvx
