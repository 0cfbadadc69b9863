// Row kernels of the accumulation family, written once over a register-width
// traits class (Sse2 here, Avx2 and Avx512 in zqcvaccumulateavx2.cpp and
// zqcvaccumulateavx512.cpp). This header is compiled once per instruction
// set, so everything defined here has internal linkage: the linker must never
// merge two builds of one function.
//
// Vector and scalar paths give the same bits: 8-bit squares and products are
// exact in 16-bit lanes before conversion, everything else is the same
// sequence of single-precision operations.
#ifndef ZQCV_ACCUMULATE_H
#define ZQCV_ACCUMULATE_H

#include "zeqcv.h"

#include <emmintrin.h>

#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace zq {

enum class AccOp { Add, Square, Product, Weighted };

// Row kernels for processors with AVX2, and with AVX-512 (F, BW and VL).
// Single-source operations pass their source as b too; unmasked ones pass a
// null mask.
template <AccOp O, bool Masked, class S>
void accumulateRowAvx2(const S* a, const S* b, const Zeq8u* m, Zeq32f* acc, ptrdiff_t n, Zeq32f alpha);
template <AccOp O, bool Masked, class S>
void accumulateRowAvx512(const S* a, const S* b, const Zeq8u* m, Zeq32f* acc, ptrdiff_t n, Zeq32f alpha);

}  // namespace zq

namespace {

using zq::AccOp;

// 128-bit registers: blocks of sixteen pixels, as two registers of 16-bit
// lanes or four of floats. M marks the masked-out pixels of a float register.
struct Sse2 {
    using F = __m128;
    using I = __m128i;
    using M = __m128;
    static constexpr int lanes = 4;

    static F load(const Zeq32f* p) { return _mm_loadu_ps(p); }
    static void store(Zeq32f* p, F v) { _mm_storeu_ps(p, v); }
    static F add(F a, F b) { return _mm_add_ps(a, b); }
    static F sub(F a, F b) { return _mm_sub_ps(a, b); }
    static F mul(F a, F b) { return _mm_mul_ps(a, b); }
    static F set1(Zeq32f v) { return _mm_set1_ps(v); }
    static F zeroWhere(M out, F v) { return _mm_andnot_ps(out, v); }
    static I mullo16(I a, I b) { return _mm_mullo_epi16(a, b); }

    template <class S>  // 8-bit pixels to 16-bit lanes
    static void widen8(const S* p, I w[2]) {
        const I v = _mm_loadu_si128(reinterpret_cast<const I*>(p));
        if constexpr (std::is_signed<S>::value) {
            w[0] = _mm_srai_epi16(_mm_unpacklo_epi8(v, v), 8);
            w[1] = _mm_srai_epi16(_mm_unpackhi_epi8(v, v), 8);
        } else {
            w[0] = _mm_unpacklo_epi8(v, _mm_setzero_si128());
            w[1] = _mm_unpackhi_epi8(v, _mm_setzero_si128());
        }
    }
    static void load16(const Zeq16u* p, I w[2]) {
        w[0] = _mm_loadu_si128(reinterpret_cast<const I*>(p));
        w[1] = _mm_loadu_si128(reinterpret_cast<const I*>(p + 8));
    }
    template <class S>  // 8-bit pixels to floats
    static void floats8(const S* p, F f[4]) {
        I w[2];
        widen8(p, w);
        floats16<std::is_signed<S>::value>(w, f);
    }
    template <bool Signed>
    static void floats16(const I w[2], F f[4]) {
        for (int k = 0; k < 2; ++k) {
            if constexpr (Signed) {
                f[2 * k] = _mm_cvtepi32_ps(_mm_srai_epi32(_mm_unpacklo_epi16(w[k], w[k]), 16));
                f[2 * k + 1] = _mm_cvtepi32_ps(_mm_srai_epi32(_mm_unpackhi_epi16(w[k], w[k]), 16));
            } else {
                f[2 * k] = _mm_cvtepi32_ps(_mm_unpacklo_epi16(w[k], _mm_setzero_si128()));
                f[2 * k + 1] = _mm_cvtepi32_ps(_mm_unpackhi_epi16(w[k], _mm_setzero_si128()));
            }
        }
    }
    // All-ones lanes where the mask byte is zero.
    static void maskedOut(const Zeq8u* m, M out[4]) {
        const I eq = _mm_cmpeq_epi8(_mm_loadu_si128(reinterpret_cast<const I*>(m)), _mm_setzero_si128());
        const I lo = _mm_unpacklo_epi8(eq, eq), hi = _mm_unpackhi_epi8(eq, eq);
        out[0] = _mm_castsi128_ps(_mm_unpacklo_epi16(lo, lo));
        out[1] = _mm_castsi128_ps(_mm_unpackhi_epi16(lo, lo));
        out[2] = _mm_castsi128_ps(_mm_unpacklo_epi16(hi, hi));
        out[3] = _mm_castsi128_ps(_mm_unpackhi_epi16(hi, hi));
    }
};

// One block of 16u or 32f pixels as floats.
template <class V, class S>
inline void floatsOf(const S* p, typename V::F f[4]) {
    if constexpr (std::is_same<S, Zeq32f>::value) {
        for (int k = 0; k < 4; ++k) f[k] = V::load(p + k * V::lanes);
    } else {
        typename V::I w[2];
        V::load16(p, w);
        V::template floats16<false>(w, f);
    }
}

// What a block of pixels contributes: the value itself (Add, and the source
// of Weighted), its square, or the product with the second source.
template <class V, AccOp O, class S>
inline void terms(const S* a, const S* b, typename V::F t[4]) {
    if constexpr (sizeof(S) == 1 && (O == AccOp::Add || O == AccOp::Weighted)) {
        V::floats8(a, t);
    } else if constexpr (sizeof(S) == 1) {
        typename V::I w[2];
        V::widen8(a, w);
        if constexpr (O == AccOp::Square) {
            for (int k = 0; k < 2; ++k) w[k] = V::mullo16(w[k], w[k]);
        } else if constexpr (O == AccOp::Product) {
            typename V::I u[2];
            V::widen8(b, u);
            for (int k = 0; k < 2; ++k) w[k] = V::mullo16(w[k], u[k]);
        }
        // 8u squares and products reach 65025: their lanes are unsigned.
        V::template floats16<std::is_signed<S>::value>(w, t);
    } else {
        floatsOf<V>(a, t);
        if constexpr (O == AccOp::Square) {
            for (int k = 0; k < 4; ++k) t[k] = V::mul(t[k], t[k]);
        } else if constexpr (O == AccOp::Product) {
            typename V::F u[4];
            floatsOf<V>(b, u);
            for (int k = 0; k < 4; ++k) t[k] = V::mul(t[k], u[k]);
        }
    }
}

// Whole blocks of pixels i.. of a row; returns the first pixel not done.
// A masked-out pixel is still written: sums add +0.0 (turning -0.0 into
// +0.0) and the average runs with weight 0 (turning an infinity into NaN).
template <class V, AccOp O, bool Masked, class S>
inline ptrdiff_t accumulateBlocks(const S* a, const S* b, const Zeq8u* m, Zeq32f* acc, ptrdiff_t i, ptrdiff_t n,
                                  Zeq32f alpha) {
    using F = typename V::F;
    constexpr int block = 4 * V::lanes;
    const F weight = V::set1(alpha);
    for (; i + block <= n; i += block) {
        F t[4];
        typename V::M out[4];
        terms<V, O>(a + i, b + i, t);
        if constexpr (Masked) V::maskedOut(m + i, out);
        for (int k = 0; k < 4; ++k) {
            Zeq32f* p = acc + i + k * V::lanes;
            F v = V::load(p);
            if constexpr (O == AccOp::Weighted) {
                const F w = Masked ? V::zeroWhere(out[k], weight) : weight;
                v = V::add(v, V::mul(V::sub(t[k], v), w));
            } else {
                v = V::add(v, Masked ? V::zeroWhere(out[k], t[k]) : t[k]);
            }
            V::store(p, v);
        }
    }
    return i;
}

// Pixels i..n-1 one at a time.
template <AccOp O, bool Masked, class S>
inline void accumulateScalar(const S* a, const S* b, const Zeq8u* m, Zeq32f* acc, ptrdiff_t i, ptrdiff_t n,
                             Zeq32f alpha) {
    for (; i < n; ++i) {
        const bool in = !Masked || m[i] != 0;
        Zeq32f t = Zeq32f(a[i]);
        if constexpr (O == AccOp::Square || O == AccOp::Product) {
            const S c = O == AccOp::Square ? a[i] : b[i];
            if constexpr (sizeof(S) == 1) t = Zeq32f(int(a[i]) * int(c));
            else t = t * Zeq32f(c);
        }
        if constexpr (O == AccOp::Weighted) {
            const Zeq32f d = t - acc[i];
            const Zeq32f dw = d * (in ? alpha : 0.0f);
            acc[i] = acc[i] + dw;
        } else {
            acc[i] = acc[i] + (in ? t : 0.0f);
        }
    }
}

template <AccOp O, bool Masked, class S>
inline void accumulateRowSse2(const S* a, const S* b, const Zeq8u* m, Zeq32f* acc, ptrdiff_t n, Zeq32f alpha) {
    const ptrdiff_t i = accumulateBlocks<Sse2, O, Masked>(a, b, m, acc, 0, n, alpha);
    accumulateScalar<O, Masked>(a, b, m, acc, i, n, alpha);
}

// Row kernel over registers wider than 16 bytes. A scalar head first brings
// the accumulator to the register alignment (when its pixels are 4-byte
// aligned at all): wide accesses straddling cache lines cost more than the
// head. The remainder goes through SSE2 blocks, then one pixel at a time.
template <class V, AccOp O, bool Masked, class S>
inline void accumulateRowWide(const S* a, const S* b, const Zeq8u* m, Zeq32f* acc, ptrdiff_t n, Zeq32f alpha) {
    constexpr uintptr_t width = sizeof(typename V::F);
    const uintptr_t address = reinterpret_cast<uintptr_t>(acc);
    ptrdiff_t head = address % 4 ? 0 : ptrdiff_t((width - address % width) % width / 4);
    if (head > n) head = n;
    accumulateScalar<O, Masked>(a, b, m, acc, 0, head, alpha);
    ptrdiff_t i = accumulateBlocks<V, O, Masked>(a, b, m, acc, head, n, alpha);
    i = accumulateBlocks<Sse2, O, Masked>(a, b, m, acc, i, n, alpha);
    accumulateScalar<O, Masked>(a, b, m, acc, i, n, alpha);
}

// Explicit instances of a wide row kernel for every source and operation.
#define ZQ_ACCUMULATE_ROW(KERNEL, O, MASKED, S) \
    template void KERNEL<O, MASKED, S>(const S*, const S*, const Zeq8u*, Zeq32f*, ptrdiff_t, Zeq32f);
#define ZQ_ACCUMULATE_ROWS_OF(KERNEL, S)                  \
    ZQ_ACCUMULATE_ROW(KERNEL, AccOp::Add, false, S)       \
    ZQ_ACCUMULATE_ROW(KERNEL, AccOp::Add, true, S)        \
    ZQ_ACCUMULATE_ROW(KERNEL, AccOp::Square, false, S)    \
    ZQ_ACCUMULATE_ROW(KERNEL, AccOp::Square, true, S)     \
    ZQ_ACCUMULATE_ROW(KERNEL, AccOp::Product, false, S)   \
    ZQ_ACCUMULATE_ROW(KERNEL, AccOp::Product, true, S)    \
    ZQ_ACCUMULATE_ROW(KERNEL, AccOp::Weighted, false, S)  \
    ZQ_ACCUMULATE_ROW(KERNEL, AccOp::Weighted, true, S)
#define ZQ_ACCUMULATE_ROWS(KERNEL)          \
    ZQ_ACCUMULATE_ROWS_OF(KERNEL, Zeq8u)    \
    ZQ_ACCUMULATE_ROWS_OF(KERNEL, Zeq8s)    \
    ZQ_ACCUMULATE_ROWS_OF(KERNEL, Zeq16u)   \
    ZQ_ACCUMULATE_ROWS_OF(KERNEL, Zeq32f)

}  // namespace

#endif
