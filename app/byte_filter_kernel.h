// The filter for vectors of any size, compiled once for each kind of processor. Nothing of it may
// be shared by these translation units: hence no names outside of the unnamed namespace and no
// functions of the standard library.
#pragma once

#include "app/byte_filter.h"

#include <utility>

namespace kvx {
namespace {

// The probes in vectors, one value in all bytes each. Packs instead of loops: they are always
// unrolled, which keeps the vectors in registers.
template <typename Vector, typename Indices>
class ProbeVectors;

template <typename Vector, std::size_t... kIndices>
class ProbeVectors<Vector, std::index_sequence<kIndices...>> {
public:
    ProbeVectors(const std::uint8_t* data, const Probe* probes)
        : places_{data + probes[kIndices].at...}, values_{Vector::Fill(probes[kIndices].value)...} {
    }

    // True when all probes fit at some start of the group.
    bool FitAnywhere(std::size_t group) const {
        auto any = FitsAt(group);
        for (std::size_t i = Vector::kBytes; i < kStartGroup; i += Vector::kBytes)
            any = Vector::Or(any, FitsAt(group + i));
        return Vector::Bits(any) != 0;
    }

    // Bit i: they fit at the group's start i.
    std::uint64_t Fits(std::size_t group) const {
        std::uint64_t bits = 0;
        for (std::size_t i = 0; i < kStartGroup; i += Vector::kBytes)
            bits |= std::uint64_t{Vector::Bits(FitsAt(group + i))} << i;
        return bits;
    }

private:
    typename Vector::Type FitsAt(std::size_t start) const {
        auto fits = Vector::Equal(places_[0] + start, values_[0]);
        ((fits = Vector::And(fits, Vector::Equal(places_[kIndices] + start, values_[kIndices]))),
         ...);
        return fits;
    }

    const std::uint8_t* places_[sizeof...(kIndices)];
    typename Vector::Type values_[sizeof...(kIndices)];
};

template <typename Vector, std::size_t kCount, bool kFromBack>
std::uint64_t Take(const std::uint8_t* data, const Probe* probes, Starts& starts) {
    const ProbeVectors<Vector, std::make_index_sequence<kCount>> vectors(data, probes);
    // In locals, which need not be stored at every step.
    std::size_t begin = starts.begin;
    std::size_t end = starts.end;
    std::uint64_t fits = 0;
    while (fits == 0 && begin + kStartGroup <= end) {
        const std::size_t group = kFromBack ? end - kStartGroup : begin;
        if (vectors.FitAnywhere(group)) fits = vectors.Fits(group);
        kFromBack ? end -= kStartGroup : begin += kStartGroup;
    }
    starts = {begin, end};
    return fits;
}

template <typename Vector, bool kFromBack>
std::uint64_t TakeByCount(const std::uint8_t* data, const Probe* probes, std::size_t count,
                          Starts& starts) {
    if (count == 1) return Take<Vector, 1, kFromBack>(data, probes, starts);
    if (count == 2) return Take<Vector, 2, kFromBack>(data, probes, starts);
    if (count == 4) return Take<Vector, 4, kFromBack>(data, probes, starts);
    if (count == 8) return Take<Vector, 8, kFromBack>(data, probes, starts);
    return Take<Vector, kMaxProbes, kFromBack>(data, probes, starts);
}

template <typename Vector>
constexpr ByteFilter kFilter = {TakeByCount<Vector, false>, TakeByCount<Vector, true>};

} // namespace
} // namespace kvx
