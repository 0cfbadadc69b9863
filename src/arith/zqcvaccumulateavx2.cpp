// The accumulation row kernels built for AVX2: the same templates as the
// SSE2 build, over 256-bit registers, so results are identical bit for bit.
// Only called where the processor reports AVX2.
#include "zeqcv.h"

#include <immintrin.h>

#include <cstddef>
#include <type_traits>

#pragma GCC target("avx2")

#include "arith/zqcvaccumulate.h"

namespace {

// Blocks of thirty-two pixels.
struct Avx2 {
    using F = __m256;
    using I = __m256i;
    using M = __m256;
    static constexpr int lanes = 8;

    static F load(const Zeq32f* p) { return _mm256_loadu_ps(p); }
    static void store(Zeq32f* p, F v) { _mm256_storeu_ps(p, v); }
    static F add(F a, F b) { return _mm256_add_ps(a, b); }
    static F sub(F a, F b) { return _mm256_sub_ps(a, b); }
    static F mul(F a, F b) { return _mm256_mul_ps(a, b); }
    static F set1(Zeq32f v) { return _mm256_set1_ps(v); }
    static F zeroWhere(M out, F v) { return _mm256_andnot_ps(out, v); }
    static I mullo16(I a, I b) { return _mm256_mullo_epi16(a, b); }

    template <class S>
    static void widen8(const S* p, I w[2]) {
        for (int k = 0; k < 2; ++k) {
            const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + 16 * k));
            w[k] = std::is_signed<S>::value ? _mm256_cvtepi8_epi16(v) : _mm256_cvtepu8_epi16(v);
        }
    }
    template <class S>
    static void floats8(const S* p, F f[4]) {
        for (int k = 0; k < 4; ++k) {
            const __m128i v = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(p + 8 * k));
            f[k] = _mm256_cvtepi32_ps(std::is_signed<S>::value ? _mm256_cvtepi8_epi32(v) : _mm256_cvtepu8_epi32(v));
        }
    }
    static void load16(const Zeq16u* p, I w[2]) {
        w[0] = _mm256_loadu_si256(reinterpret_cast<const I*>(p));
        w[1] = _mm256_loadu_si256(reinterpret_cast<const I*>(p + 16));
    }
    template <bool Signed>
    static void floats16(const I w[2], F f[4]) {
        for (int k = 0; k < 2; ++k) {
            const __m128i lo = _mm256_castsi256_si128(w[k]), hi = _mm256_extracti128_si256(w[k], 1);
            f[2 * k] = _mm256_cvtepi32_ps(Signed ? _mm256_cvtepi16_epi32(lo) : _mm256_cvtepu16_epi32(lo));
            f[2 * k + 1] = _mm256_cvtepi32_ps(Signed ? _mm256_cvtepi16_epi32(hi) : _mm256_cvtepu16_epi32(hi));
        }
    }
    static void maskedOut(const Zeq8u* m, M out[4]) {
        for (int k = 0; k < 4; ++k) {
            const __m128i bytes = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(m + 8 * k));
            out[k] = _mm256_castsi256_ps(_mm256_cmpeq_epi32(_mm256_cvtepu8_epi32(bytes), _mm256_setzero_si256()));
        }
    }
};

}  // namespace

namespace zq {

template <AccOp O, bool Masked, class S>
void accumulateRowAvx2(const S* a, const S* b, const Zeq8u* m, Zeq32f* acc, ptrdiff_t n, Zeq32f alpha) {
    accumulateRowWide<Avx2, O, Masked>(a, b, m, acc, n, alpha);
}

ZQ_ACCUMULATE_ROWS(accumulateRowAvx2)

}  // namespace zq
