// The accumulation row kernels built for AVX-512 (F, BW and VL): the same
// templates as the SSE2 build, over 512-bit registers, so results are
// identical bit for bit. Only called where the processor reports all three.
#include "zeqcv.h"

// GCC 12 takes the deliberately undefined pass-through operand of the 512-bit
// conversions for an uninitialised variable.
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#include <immintrin.h>

#include <cstddef>
#include <type_traits>

#pragma GCC target("avx512f,avx512bw,avx512vl")

#include "arith/zqcvaccumulate.h"

namespace {

// Blocks of sixty-four pixels; masked-out pixels are bits of a mask register.
struct Avx512 {
    using F = __m512;
    using I = __m512i;
    using M = __mmask16;
    static constexpr int lanes = 16;

    static F load(const Zeq32f* p) { return _mm512_loadu_ps(p); }
    static void store(Zeq32f* p, F v) { _mm512_storeu_ps(p, v); }
    static F add(F a, F b) { return _mm512_add_ps(a, b); }
    static F sub(F a, F b) { return _mm512_sub_ps(a, b); }
    static F mul(F a, F b) { return _mm512_mul_ps(a, b); }
    static F set1(Zeq32f v) { return _mm512_set1_ps(v); }
    static F zeroWhere(M out, F v) { return _mm512_maskz_mov_ps(M(~out), v); }
    static I mullo16(I a, I b) { return _mm512_mullo_epi16(a, b); }

    template <class S>
    static void widen8(const S* p, I w[2]) {
        for (int k = 0; k < 2; ++k) {
            const __m256i v = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p + 32 * k));
            w[k] = std::is_signed<S>::value ? _mm512_cvtepi8_epi16(v) : _mm512_cvtepu8_epi16(v);
        }
    }
    template <class S>
    static void floats8(const S* p, F f[4]) {
        for (int k = 0; k < 4; ++k) {
            const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + 16 * k));
            f[k] = _mm512_cvtepi32_ps(std::is_signed<S>::value ? _mm512_cvtepi8_epi32(v) : _mm512_cvtepu8_epi32(v));
        }
    }
    static void load16(const Zeq16u* p, I w[2]) {
        w[0] = _mm512_loadu_si512(p);
        w[1] = _mm512_loadu_si512(p + 32);
    }
    template <bool Signed>
    static void floats16(const I w[2], F f[4]) {
        for (int k = 0; k < 2; ++k) {
            const __m256i lo = _mm512_castsi512_si256(w[k]), hi = _mm512_extracti64x4_epi64(w[k], 1);
            f[2 * k] = _mm512_cvtepi32_ps(Signed ? _mm512_cvtepi16_epi32(lo) : _mm512_cvtepu16_epi32(lo));
            f[2 * k + 1] = _mm512_cvtepi32_ps(Signed ? _mm512_cvtepi16_epi32(hi) : _mm512_cvtepu16_epi32(hi));
        }
    }
    static void maskedOut(const Zeq8u* m, M out[4]) {
        for (int k = 0; k < 4; ++k) {
            const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(m + 16 * k));
            out[k] = _mm_testn_epi8_mask(bytes, bytes);
        }
    }
};

}  // namespace

namespace zq {

template <AccOp O, bool Masked, class S>
void accumulateRowAvx512(const S* a, const S* b, const Zeq8u* m, Zeq32f* acc, ptrdiff_t n, Zeq32f alpha) {
    accumulateRowWide<Avx512, O, Masked>(a, b, m, acc, n, alpha);
}

ZQ_ACCUMULATE_ROWS(accumulateRowAvx512)

}  // namespace zq
