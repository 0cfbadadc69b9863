// The interior row kernel of the 3x3 derivative filters, written once over
// vectors of the compiler: 8-bit pixels widened to 16-bit lanes, or floats.
#include "filters/zqcvsobel3x3.h"
#include "core/zqcvcore.h"

#include <immintrin.h>

#include <algorithm>
#include <type_traits>

namespace {

using zq::Finish3x3;
using zq::Isa;

// Registers of the tier: B bytes of 16-bit lanes or of floats.
template <int B>
struct Lanes {
    typedef short I16 __attribute__((vector_size(B)));
    typedef float F32 __attribute__((vector_size(B)));
};

template <Isa I, class T>
struct Reg {  // 8-bit pixels in 16-bit lanes
    using type = typename Lanes<zq::isaBytes(I)>::I16;
    static constexpr int lanes = zq::isaBytes(I) / 2;

    static type load(const T* p) {
        constexpr bool sig = std::is_signed<T>::value;
        if constexpr (I == Isa::Sse2) {
            const __m128i v = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(p));
            return type(sig ? _mm_srai_epi16(_mm_unpacklo_epi8(v, v), 8) : _mm_unpacklo_epi8(v, _mm_setzero_si128()));
        } else if constexpr (I == Isa::Avx2) {
            const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
            return type(sig ? _mm256_cvtepi8_epi16(v) : _mm256_cvtepu8_epi16(v));
        } else {
            const __m256i v = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p));
            return type(sig ? _mm512_cvtepi8_epi16(v) : _mm512_cvtepu8_epi16(v));
        }
    }
    static void store(Zeq16s* p, type v, Finish3x3 f) {
        const __m128i n = _mm_cvtsi32_si128(f.shift);
        if constexpr (I == Isa::Sse2) _mm_storeu_si128(reinterpret_cast<__m128i*>(p), _mm_sra_epi16(__m128i(v), n));
        else if constexpr (I == Isa::Avx2)
            _mm256_storeu_si256(reinterpret_cast<__m256i*>(p), _mm256_sra_epi16(__m256i(v), n));
        else _mm512_storeu_si512(p, _mm512_sra_epi16(__m512i(v), n));
    }
};

template <Isa I>
struct Reg<I, Zeq32f> {
    using type = typename Lanes<zq::isaBytes(I)>::F32;
    static constexpr int lanes = zq::isaBytes(I) / 4;

    static type load(const Zeq32f* p) {
        type v;
        __builtin_memcpy(&v, p, sizeof v);
        return v;
    }
    static void store(Zeq32f* p, type v, Finish3x3 f) {
        v = v * f.scale;
        __builtin_memcpy(p, &v, sizeof v);
    }
};

}  // namespace

namespace zq {

// The last register overlaps the one before when the lanes do not divide the
// width (the same values written twice).
template <Isa I, Deriv3x3 K, class T, class Dst>
bool ownDeriv3x3Interior(const T* const rows[3], Dst* d, int width, Finish3x3 f) {
    using G = Reg<I, T>;
    using R = typename G::type;
    constexpr int L = G::lanes;
    if (width < L + 2) return false;
    for (int x = 1;; x += L) {
        x = std::min(x, width - 1 - L);
        const R p[3][3] = {{G::load(rows[0] + x - 1), G::load(rows[0] + x), G::load(rows[0] + x + 1)},
                           {G::load(rows[1] + x - 1), G::load(rows[1] + x), G::load(rows[1] + x + 1)},
                           {G::load(rows[2] + x - 1), G::load(rows[2] + x), G::load(rows[2] + x + 1)}};
        G::store(d + x, KernelOf<K>::apply(p), f);
        if (x == width - 1 - L) break;
    }
    return true;
}

#define ZQ_DERIV3X3(K)                                                                                        \
    template bool ownDeriv3x3Interior<ZQ_ISA, Deriv3x3::K>(const Zeq8u* const[3], Zeq16s*, int, Finish3x3);   \
    template bool ownDeriv3x3Interior<ZQ_ISA, Deriv3x3::K>(const Zeq8s* const[3], Zeq16s*, int, Finish3x3);   \
    template bool ownDeriv3x3Interior<ZQ_ISA, Deriv3x3::K>(const Zeq32f* const[3], Zeq32f*, int, Finish3x3);
ZQ_DERIV3X3(SobelDx)
ZQ_DERIV3X3(SobelDy)
ZQ_DERIV3X3(SobelD2x)
ZQ_DERIV3X3(SobelD2y)
ZQ_DERIV3X3(SobelDxDy)
ZQ_DERIV3X3(ScharrDx)
ZQ_DERIV3X3(ScharrDy)
#undef ZQ_DERIV3X3

}  // namespace zq
