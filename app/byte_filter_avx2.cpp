// For most processors of 64 bits by Intel and AMD since 2013. Compiled for these only: nothing but
// the filter may be in this file.
#include "app/byte_filter.h"

#if defined(__AVX2__) && defined(__GNUC__)

#include "app/byte_filter_kernel.h"

#include <immintrin.h>

namespace kvx {
namespace {

struct Avx2 {
    using Type = __m256i;
    static constexpr std::size_t kBytes = sizeof(Type);

    static Type Fill(std::uint8_t value) { return _mm256_set1_epi8(static_cast<char>(value)); }
    static Type Equal(const void* bytes, Type values) {
        return _mm256_cmpeq_epi8(_mm256_loadu_si256(static_cast<const Type*>(bytes)), values);
    }
    static Type And(Type left, Type right) { return _mm256_and_si256(left, right); }
    static Type Or(Type left, Type right) { return _mm256_or_si256(left, right); }
    static std::uint32_t Bits(Type equal) {
        return static_cast<std::uint32_t>(_mm256_movemask_epi8(equal));
    }
};

} // namespace

const ByteFilter* Avx2Filter() {
    return __builtin_cpu_supports("avx2") ? &kFilter<Avx2> : nullptr;
}

} // namespace kvx

#else

const kvx::ByteFilter* kvx::Avx2Filter() {
    return nullptr;
}

#endif
