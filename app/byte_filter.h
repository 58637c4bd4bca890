// The skip loop of the byte matcher: rules out places where a pattern cannot begin, many at a time.
#pragma once

#include <cstddef>
#include <cstdint>

namespace kvx {

/// A byte of the pattern that is looked for before the pattern is compared.
struct Probe {
    std::size_t at = 0; ///< index in the pattern
    std::uint8_t value = 0;
};

/// Places where the pattern may still begin, half open.
struct Starts {
    std::size_t begin = 0;
    std::size_t end = 0;

    bool IsEmpty() const { return begin >= end; }
    std::size_t Count() const { return IsEmpty() ? 0 : end - begin; }
};

/// Starts that are looked at together.
inline constexpr std::size_t kStartGroup = 64;

/// Most probes, which a filter is given in any case; it looks for the first 1, 2, 4, 8 or 16.
inline constexpr std::size_t kMaxProbes = 16;

/// Takes whole groups away from the front or the back of `starts` until the first `count` probes
/// fit somewhere in one. Gives the places in that group, which has been taken too, as bits, the
/// lowest for its first start; 0 when less than a group is left.
using TakeGroups = std::uint64_t (*)(const std::uint8_t* data, const Probe* probes,
                                     std::size_t count, Starts& starts);

struct ByteFilter {
    TakeGroups fromFront;
    TakeGroups fromBack;
};

/// The filters for processors; null where they cannot be used.
const ByteFilter* Sse2Filter();
const ByteFilter* Avx2Filter();

} // namespace kvx
