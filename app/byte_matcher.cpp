#include "app/byte_matcher.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <utility>

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

// In a pattern of one byte, if it is at least so long, more probes tell little. Where it is worth
// another one, stepping from difference to difference is faster; from a group's length on, always.
constexpr std::size_t kShortestRow = 16;

void Charge(std::size_t& account, std::size_t cost, std::size_t gain) {
    account += cost;
    account -= std::min(account, gain);
}

std::uint64_t WordAt(const std::uint8_t* bytes) {
    std::uint64_t word = 0;
    std::memcpy(&word, bytes, sizeof word);
    return word;
}

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
    static void Leave(Candidates& candidates, Starts& starts, std::size_t start,
                      std::size_t steps) {
        const std::size_t next = start + steps;
        const std::size_t left = next - candidates.first;
        candidates.fits = left < kStartGroup ? candidates.fits >> left << left : 0;
        starts.begin = std::max(starts.begin, next);
    }
    static std::size_t Nearest(std::uint64_t fits) {
        return static_cast<std::size_t>(std::countr_zero(fits));
    }
    static std::size_t Equal(ByteView pattern, const std::uint8_t* data) {
        return EqualAtEnd(pattern, data);
    }
    static std::size_t Index(std::size_t length, std::size_t equal) { return length - 1 - equal; }
    static const SkipTable& Skips(const ByteMatcher& matcher) { return matcher.skipForwards_; }
    static auto TakeGroups(const ByteFilter& filter) { return filter.fromFront; }
    static std::size_t GroupTakenLast(Starts rest) { return rest.begin - kStartGroup; }
};

struct ByteMatcher::Backwards {
    static constexpr bool kWantsLast = true;

    static Starts Take(Starts& starts, std::size_t count) {
        const std::size_t last = std::exchange(starts.end, starts.end - count);
        return {starts.end, last};
    }
    static void Leave(Candidates& candidates, Starts& starts, std::size_t start,
                      std::size_t steps) {
        const std::size_t end = start + 1 - std::min(start + 1, steps);
        const std::size_t left = end - std::min(end, candidates.first);
        candidates.fits &= (std::uint64_t{1} << left) - 1;
        starts.end = std::min(starts.end, end);
    }
    static std::size_t Nearest(std::uint64_t fits) {
        return 63 - static_cast<std::size_t>(std::countl_zero(fits));
    }
    static std::size_t Equal(ByteView pattern, const std::uint8_t* data) {
        return EqualAtFront(pattern, data);
    }
    static std::size_t Index(std::size_t, std::size_t equal) { return equal; }
    static const SkipTable& Skips(const ByteMatcher& matcher) { return matcher.skipBackwards_; }
    static auto TakeGroups(const ByteFilter& filter) { return filter.fromBack; }
    static std::size_t GroupTakenLast(Starts rest) { return rest.end; }
};

const ByteFilter* FastestFilter() {
    static const ByteFilter* const filter = Avx2Filter() ? Avx2Filter() : Sse2Filter();
    return filter;
}

ByteMatcher::ByteMatcher(ByteView pattern, const ByteFilter* filter)
    : pattern_(pattern), filter_(filter) {
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
    if (IsLongRow() && length >= kStartGroup) return FindRow<Way>(data, starts);
    std::size_t previous = Way::kWantsLast ? allStarts : 0; // start that was compared
    while (!starts.IsEmpty()) {
        Candidates candidates = TakeCandidates<Way>(data, starts, allStarts);
        while (candidates.fits != 0) {
            const std::size_t start = candidates.first + Way::Nearest(candidates.fits);
            const std::uint8_t* at = data + start;
            const std::size_t equal = Way::Equal(pattern_, at);
            if (equal == length) return start;

            // The byte that differs moves to where it is in the pattern, unless that is on the
            // wrong side; the byte that was compared first always moves on.
            const std::size_t differing = Way::Index(length, equal);
            const std::size_t skip = skips[at[differing]];
            const std::size_t least = skips[at[Way::Index(length, 0)]];
            Way::Leave(candidates, starts, start, std::max(least, skip - std::min(skip, equal)));
            NoteFailure(equal, differing, std::max(start, previous) - std::min(start, previous));
            previous = start;
        }
        if (IsLongRow() && unease_ >= kLearningLimit) return FindRow<Way>(data, starts);
        if (starts.IsEmpty() || debt_ < kAutomatonLimit) continue;
        if (const auto found = ScanStretch<Way>(data, starts)) return found;
    }
    return std::nullopt;
}

// For a pattern of one byte: a byte that differs rules out all starts from which it is reached, so
// that no byte is looked at twice, and where much differs few are looked at.
template <typename Way>
std::optional<std::size_t> ByteMatcher::FindRow(const std::uint8_t* data, Starts starts) const {
    const std::size_t length = pattern_.size();
    const std::uint8_t value = pattern_[0];
    const std::size_t farthest = Way::Index(length, 0);
    while (!starts.IsEmpty()) {
        const std::size_t start = Way::kWantsLast ? starts.end - 1 : starts.begin;
        std::size_t equal = 0;
        if (data[start + farthest] == value) {
            equal = Way::Equal(pattern_, data + start);
            if (equal == length) return start;
        }
        Way::Take(starts, std::min(starts.Count(), length - equal));
    }
    return std::nullopt;
}

// The next group of starts with candidates among them; all are where there is no filter or less
// than a group for it.
template <typename Way>
ByteMatcher::Candidates ByteMatcher::TakeCandidates(const std::uint8_t* data, Starts& starts,
                                                    std::size_t allStarts) const {
    const auto lowest = [](std::size_t count) {
        return ~std::uint64_t{0} >> (kStartGroup - count);
    };
    if (!filter_ || allStarts < kStartGroup) {
        const Starts taken = Way::Take(starts, std::min(starts.Count(), kStartGroup));
        return {taken.begin, lowest(taken.Count())};
    }
    const auto takeGroups = Way::TakeGroups(*filter_);
    const std::uint64_t fits = takeGroups(data, probes_.data(), ProbeCount(), starts);
    if (fits != 0) return {Way::GroupTakenLast(starts), fits};
    if (starts.IsEmpty()) return {};

    // The rest is less than a group: some starts of this one have been ruled out before.
    const std::size_t first = std::min(starts.begin, allStarts - kStartGroup);
    const std::uint64_t wanted = lowest(starts.Count()) << (starts.begin - first);
    starts = {};
    Starts group{first, first + kStartGroup};
    return {first, wanted & takeGroups(data, probes_.data(), ProbeCount(), group)};
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

bool ByteMatcher::IsLongRow() const {
    return different_.size() == 1 && pattern_.size() >= kShortestRow;
}

// One byte needs no second probe, and what was learned fills up the next larger number.
std::size_t ByteMatcher::ProbeCount() const {
    if (pattern_.size() == 1) return 1;
    std::size_t count = kRarest;
    while (count < std::min(kRarest + learned_, kMaxProbes))
        count *= 2;
    return count;
}

// From now on the byte at `at` is looked for too, instead of the one learned the longest ago.
void ByteMatcher::Learn(std::size_t at) {
    constexpr std::size_t kLearnable = kMaxProbes - kRarest;
    for (const Probe& probe : probes_)
        if (probe.at == at) return;
    probes_[kRarest + learned_ % kLearnable] = {at, pattern_[at]};
    ++learned_;
}

void ByteMatcher::NoteFailure(std::size_t equal, std::size_t failedAt, std::size_t passed) {
    Charge(unease_, kFilterCost + equal, passed);
    Charge(debt_, kAutomatonCost + equal / kEqualPerByte, passed);
    if (unease_ >= kLearningLimit && !IsLongRow()) Learn(failedAt);
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
