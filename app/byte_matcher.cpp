#include "app/byte_matcher.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <numeric>
#include <utility>

#if defined(__SSE2__) || defined(_M_X64)
#include <emmintrin.h>
#define KVX_HAS_SSE2 1
#else
#define KVX_HAS_SSE2 0
#endif

namespace kvx {
namespace {

// The pattern's rarest bytes are chosen by so many pieces of the data.
constexpr std::size_t kSampleBytes = 64;
constexpr std::size_t kSamples = 16;

// A failed comparison costs as much as filtering so many bytes. At the limit it is worth another
// probe.
constexpr std::size_t kFilterCost = 256;
constexpr std::size_t kLearningLimit = 8 * kFilterCost;

// It costs as much as taking so many bytes through the automaton, and one more for so many that
// were equal. At the limit the automaton does a stretch of the data.
constexpr std::size_t kAutomatonCost = 8;
constexpr std::size_t kEqualPerByte = 32;
constexpr std::size_t kAutomatonLimit = std::size_t{32} << 10;
constexpr std::size_t kStretch = std::size_t{64} << 10;

// Starts that are filtered at a time.
constexpr std::size_t kGroup = 64;

void Charge(std::size_t& account, std::size_t cost, std::size_t gain) {
    account += cost;
    account -= std::min(account, gain);
}

std::uint64_t WordAt(const std::uint8_t* bytes) {
    std::uint64_t word = 0;
    std::memcpy(&word, bytes, sizeof word);
    return word;
}

#if KVX_HAS_SSE2
constexpr std::size_t kLanes = 16;

// The probes in vectors, one byte in all lanes each.
template <std::size_t kCount>
class VectorFilter {
public:
    template <typename Probes>
    VectorFilter(const std::uint8_t* data, const Probes& probes) {
        for (std::size_t i = 0; i < kCount; ++i) {
            places_[i] = data + probes[i].at;
            values_[i] = _mm_set1_epi8(static_cast<char>(probes[i].value));
        }
    }

    // True when all probes fit at one of the starts [first, first + kGroup) at least.
    bool FitsAny(std::size_t first) const {
        const __m128i any =
            _mm_or_si128(_mm_or_si128(Fits(first), Fits(first + kLanes)),
                         _mm_or_si128(Fits(first + 2 * kLanes), Fits(first + 3 * kLanes)));
        return _mm_movemask_epi8(any) != 0;
    }

    // Bit i: they fit at first + i.
    std::uint64_t FitsOf(std::size_t first) const {
        std::uint64_t bits = 0;
        for (std::size_t lane = 0; lane < kGroup; lane += kLanes) {
            const int fits = _mm_movemask_epi8(Fits(first + lane));
            bits |= std::uint64_t{static_cast<std::uint32_t>(fits)} << lane;
        }
        return bits;
    }

private:
    __m128i Fits(std::size_t first) const {
        return FitsOfEach(first, std::make_index_sequence<kCount - 1>());
    }

    template <std::size_t... kRest>
    __m128i FitsOfEach(std::size_t first, std::index_sequence<kRest...>) const {
        __m128i fits = FitsOfOne<0>(first);
        ((fits = _mm_and_si128(fits, FitsOfOne<kRest + 1>(first))), ...);
        return fits;
    }

    template <std::size_t kProbe>
    __m128i FitsOfOne(std::size_t first) const {
        const void* place = places_[kProbe] + first;
        return _mm_cmpeq_epi8(_mm_loadu_si128(static_cast<const __m128i*>(place)), values_[kProbe]);
    }

    std::array<const std::uint8_t*, kCount> places_;
    __m128i values_[kCount];
};
#endif

// Bytes at the end or the front of `pattern` that are the same in `data`, one word at a time.
std::size_t EqualAtEnd(ByteView pattern, const std::uint8_t* data) {
    std::size_t rest = pattern.size();
    while (rest >= sizeof(std::uint64_t) && WordAt(pattern.data() + rest - sizeof(std::uint64_t)) ==
                                                WordAt(data + rest - sizeof(std::uint64_t)))
        rest -= sizeof(std::uint64_t);
    while (rest > 0 && pattern[rest - 1] == data[rest - 1])
        --rest;
    return pattern.size() - rest;
}

std::size_t EqualAtFront(ByteView pattern, const std::uint8_t* data) {
    std::size_t equal = 0;
    while (pattern.size() - equal >= sizeof(std::uint64_t) &&
           WordAt(pattern.data() + equal) == WordAt(data + equal))
        equal += sizeof(std::uint64_t);
    while (equal < pattern.size() && pattern[equal] == data[equal])
        ++equal;
    return equal;
}

} // namespace

// The two ways through a window take the starts from its two ends and compare from the other one,
// where a byte that does not fit rules out the most.
struct ByteMatcher::Forwards {
    static constexpr bool kWantsLast = false;

    static Starts Take(Starts& starts, std::size_t count) {
        const std::size_t first = std::exchange(starts.begin, starts.begin + count);
        return {first, starts.begin};
    }
    static void Leave(Starts& starts, std::size_t start, std::size_t steps) {
        starts.begin = start + steps;
    }
    static std::size_t Nearest(std::uint64_t fits) {
        return static_cast<std::size_t>(std::countr_zero(fits));
    }
    static std::size_t Equal(ByteView pattern, const std::uint8_t* data) {
        return EqualAtEnd(pattern, data);
    }
    static std::size_t Index(std::size_t length, std::size_t equal) { return length - 1 - equal; }
    static const SkipTable& Skips(const ByteMatcher& matcher) { return matcher.skipForwards_; }
};

struct ByteMatcher::Backwards {
    static constexpr bool kWantsLast = true;

    static Starts Take(Starts& starts, std::size_t count) {
        const std::size_t last = std::exchange(starts.end, starts.end - count);
        return {starts.end, last};
    }
    static void Leave(Starts& starts, std::size_t start, std::size_t steps) {
        starts.end = start + 1 - std::min(start + 1, steps);
    }
    static std::size_t Nearest(std::uint64_t fits) {
        return 63 - static_cast<std::size_t>(std::countl_zero(fits));
    }
    static std::size_t Equal(ByteView pattern, const std::uint8_t* data) {
        return EqualAtFront(pattern, data);
    }
    static std::size_t Index(std::size_t, std::size_t equal) { return equal; }
    static const SkipTable& Skips(const ByteMatcher& matcher) { return matcher.skipBackwards_; }
};

ByteMatcher::ByteMatcher(ByteView pattern) : pattern_(pattern) {
    const std::size_t length = pattern.size();
    skipForwards_.fill(length);
    skipBackwards_.fill(length);
    std::array<bool, 256> seen = {};
    for (std::size_t i = 0; i < length; ++i) {
        if (!std::exchange(seen[pattern[i]], true)) different_.push_back({i, pattern[i]});
        if (i + 1 < length) skipForwards_[pattern[i]] = length - 1 - i;
        if (i + 1 < length) skipBackwards_[pattern[length - 1 - i]] = length - 1 - i;
    }
}

std::optional<std::size_t> ByteMatcher::FindFirst(ByteView window) {
    return Find<Forwards>(window);
}

std::optional<std::size_t> ByteMatcher::FindLast(ByteView window) {
    return Find<Backwards>(window);
}

template <typename Way>
std::optional<std::size_t> ByteMatcher::Find(ByteView window) {
    const std::size_t length = pattern_.size();
    if (window.size() < length) return std::nullopt;
    if (!chosen_ || learned_ > 0) ChooseRarest(window);

    const std::uint8_t* data = window.data();
    const std::size_t allStarts = window.size() - length + 1;
    const SkipTable& skips = Way::Skips(*this);
    Starts starts{0, allStarts};
    while (!starts.IsEmpty()) {
        const auto candidate = NextCandidate<Way>(data, starts, allStarts);
        if (!candidate) break;
        const std::uint8_t* at = data + *candidate;
        const std::size_t equal = Way::Equal(pattern_, at);
        if (equal == length) return candidate;

        // The byte that differs moves to where it is in the pattern, unless that is on the wrong
        // side; the byte that was compared first always moves on.
        const std::size_t differing = Way::Index(length, equal);
        const std::size_t skip = skips[at[differing]];
        const std::size_t least = skips[at[Way::Index(length, 0)]];
        const std::size_t before = starts.Count();
        Way::Leave(starts, *candidate, std::max(least, skip - std::min(skip, equal)));
        NoteFailure(before - starts.Count(), equal, differing);
        if (debt_ < kAutomatonLimit) continue;
        if (const auto found = ScanStretch<Way>(data, starts)) return found;
    }
    return std::nullopt;
}

template <typename Way>
std::optional<std::size_t> ByteMatcher::NextCandidate(const std::uint8_t* data, Starts starts,
                                                      std::size_t allStarts) const {
    if (!KVX_HAS_SSE2 || allStarts < kGroup) return Way::Take(starts, 1).begin;
    if (pattern_.size() == 1) return Filter<Way, 1>(data, starts, allStarts);
    if (learned_ == 0) return Filter<Way, kRarest>(data, starts, allStarts);
    if (learned_ <= 2) return Filter<Way, 4>(data, starts, allStarts);
    return Filter<Way, kMaxProbes>(data, starts, allStarts);
}

// The first start in the way's order at which the first `kCount` probes fit. Reads whole groups of
// starts, of which the window has at least one.
template <typename Way, std::size_t kCount>
std::optional<std::size_t> ByteMatcher::Filter(const std::uint8_t* data, Starts starts,
                                               std::size_t allStarts) const {
    const VectorFilter<kCount> filter(data, probes_);
    while (starts.Count() >= kGroup) {
        const std::size_t first = Way::Take(starts, kGroup).begin;
        if (filter.FitsAny(first)) return first + Way::Nearest(filter.FitsOf(first));
    }
    if (starts.IsEmpty()) return std::nullopt;
    const std::size_t first = std::min(starts.begin, allStarts - kGroup);
    const std::uint64_t wanted = (~std::uint64_t{0} >> (kGroup - starts.Count()))
                                 << (starts.begin - first);
    const std::uint64_t fits = filter.FitsOf(first) & wanted;
    if (fits == 0) return std::nullopt;
    return first + Way::Nearest(fits);
}

// Takes a stretch of the starts through an automaton that never looks back.
template <typename Way>
std::optional<std::size_t> ByteMatcher::ScanStretch(const std::uint8_t* data, Starts& starts) {
    FindBorders();
    debt_ = 0;
    const std::size_t length = pattern_.size();
    const Starts taken =
        Way::Take(starts, std::min(starts.Count(), std::max(kStretch, 4 * length)));
    std::optional<std::size_t> found;
    std::size_t equal = 0;
    for (std::size_t i = taken.begin; i < taken.end + length - 1; ++i) {
        while (equal > 0 && pattern_[equal] != data[i])
            equal = borders_[equal - 1];
        if (pattern_[equal] == data[i]) ++equal;
        if (equal < length) continue;
        found = i + 1 - length;
        if (!Way::kWantsLast) break;
        equal = borders_[equal - 1];
    }
    return found;
}

// The two bytes of the pattern that are seen least in samples of the window.
void ByteMatcher::ChooseRarest(ByteView window) {
    std::array<std::uint16_t, 256> seen = {};
    const std::size_t step = std::max(window.size() / kSamples, kSampleBytes);
    for (std::size_t from = 0; from < window.size(); from += step)
        for (const std::uint8_t byte :
             window.subspan(from, std::min(kSampleBytes, window.size() - from)))
            ++seen[byte];
    std::partial_sort(
        different_.begin(),
        std::next(different_.begin(), std::min<std::ptrdiff_t>(std::ssize(different_), kRarest)),
        different_.end(), [&](const Probe& left, const Probe& right) {
            return seen[left.value] < seen[right.value];
        });
    probes_.fill(different_[0]);
    probes_[1] =
        different_.size() > 1 ? different_[1] : Probe{pattern_.size() - 1, pattern_.back()};
    learned_ = 0;
    chosen_ = true;
}

// From now on the byte at `at` is looked for too, instead of the one learned the longest ago.
void ByteMatcher::Learn(std::size_t at) {
    constexpr std::size_t kLearnable = kMaxProbes - kRarest;
    probes_[kRarest + learned_ % kLearnable] = {at, pattern_[at]};
    ++learned_;
}

void ByteMatcher::NoteFailure(std::size_t passed, std::size_t equal, std::size_t failedAt) {
    Charge(unease_, kFilterCost + equal, passed);
    Charge(debt_, kAutomatonCost + equal / kEqualPerByte, passed);
    if (unease_ >= kLearningLimit) Learn(failedAt);
}

void ByteMatcher::FindBorders() {
    if (!borders_.empty()) return;
    borders_.assign(pattern_.size(), 0);
    std::size_t equal = 0;
    for (std::size_t i = 1; i < pattern_.size(); ++i) {
        while (equal > 0 && pattern_[equal] != pattern_[i])
            equal = borders_[equal - 1];
        if (pattern_[equal] == pattern_[i]) ++equal;
        borders_[i] = equal;
    }
}

} // namespace kvx
