// For every processor of 64 bits by Intel and AMD.
#include "app/byte_filter.h"

#if defined(__SSE2__) || defined(_M_X64)

#include "app/byte_filter_kernel.h"

#include <emmintrin.h>

namespace kvx {
namespace {

struct Sse2 {
    using Type = __m128i;
    static constexpr std::size_t kBytes = sizeof(Type);

    static Type Fill(std::uint8_t value) { return _mm_set1_epi8(static_cast<char>(value)); }
    static Type Equal(const void* bytes, Type values) {
        return _mm_cmpeq_epi8(_mm_loadu_si128(static_cast<const Type*>(bytes)), values);
    }
    static Type And(Type left, Type right) { return _mm_and_si128(left, right); }
    static Type Or(Type left, Type right) { return _mm_or_si128(left, right); }
    static std::uint32_t Bits(Type equal) {
        return static_cast<std::uint32_t>(_mm_movemask_epi8(equal));
    }
};

} // namespace

const ByteFilter* Sse2Filter() {
    return &kFilter<Sse2>;
}

} // namespace kvx

#else

const kvx::ByteFilter* kvx::Sse2Filter() {
    return nullptr;
}

#endif
