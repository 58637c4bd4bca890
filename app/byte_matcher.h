// Finds a pattern of bytes in bytes in memory, the first or the last of its occurrences.
#pragma once

#include "app/byte_filter.h"
#include "platform/bytes.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace kvx {

/// The best filter for the processor that the program runs on.
const ByteFilter* FastestFilter();

/// A Boyer-Moore-Horspool matcher that looks at many starts at once: only where the rarest bytes of
/// the pattern fit is the pattern compared. Two provisions are against repetitive data: bytes at
/// which comparisons fail join the rare ones, and where comparisons cost more than they gain
/// nevertheless, an automaton that looks at each byte once takes over for a while, so that the time
/// always grows with the data alone. A search uses one matcher, which learns as it goes.
class ByteMatcher {
public:
    /// `pattern`, at least one byte, must outlive the matcher. `filter` may be null.
    explicit ByteMatcher(ByteView pattern, const ByteFilter* filter = FastestFilter());

    /// Where in `window` the pattern begins for the first or the last time; empty when it does not
    /// lie in it whole.
    std::optional<std::size_t> FindFirst(ByteView window);
    std::optional<std::size_t> FindLast(ByteView window);

private:
    /// A group of starts and, as bits, those at which the probes fit.
    struct Candidates {
        std::size_t first = 0;
        std::uint64_t fits = 0;
    };

    using SkipTable = std::array<std::size_t, 256>;

    static constexpr std::size_t kRarest = 2;

    struct Forwards;
    struct Backwards;
    template <typename Way>
    std::optional<std::size_t> Find(ByteView window);
    template <typename Way>
    std::optional<std::size_t> FindRow(const std::uint8_t* data, Starts starts) const;
    template <typename Way>
    Candidates TakeCandidates(const std::uint8_t* data, Starts& starts,
                              std::size_t allStarts) const;
    template <typename Way>
    std::optional<std::size_t> ScanStretch(const std::uint8_t* data, Starts& starts);

    bool IsLongRow() const;
    std::size_t ProbeCount() const;
    void ChooseRarest(ByteView window);
    void Learn(std::size_t at);
    void NoteFailure(std::size_t equal, std::size_t failedAt, std::size_t passed);
    void FindBorders();

    ByteView pattern_;
    const ByteFilter* filter_;
    SkipTable skipForwards_;  ///< from the last place of a byte before the pattern's last to that
    SkipTable skipBackwards_; ///< from the pattern's first byte to the next place of a byte
    std::vector<Probe> different_;              ///< each byte that occurs in the pattern, once
    std::array<Probe, kMaxProbes> probes_ = {}; ///< kRarest, then learned; all valid
    std::size_t learned_ = 0;                   ///< since the rarest were chosen
    bool chosen_ = false;                       ///< the rarest are
    std::size_t unease_ = 0; ///< grows with failed comparisons, falls with the bytes passed
    std::size_t debt_ = 0;   ///< the same, at the automaton's prices
    std::vector<std::size_t> borders_; ///< longest border of each prefix; empty until needed
};

} // namespace kvx
