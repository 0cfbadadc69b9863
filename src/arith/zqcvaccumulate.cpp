// Running accumulators: a float image updated in place with the sum of
// frames, of their squares, of products of two frames, or a weighted running
// average, plain or under a mask.
//
// Every function is one instantiation of accumulate<Op, Masked, Source>. The
// vector path handles sixteen pixels per step and gives the same bits as the
// scalar tail: 8-bit squares and products are exact in 16-bit lanes before
// conversion, everything else is the same sequence of single-precision
// operations in both paths.
#include "core/zqcvsimd.h"

namespace {

enum class Op { Add, Square, Product, Weighted };

constexpr int kBlock = 16;  // pixels per vector step

// ---- the value each pixel contributes, sixteen at a time ----

// Sixteen 16-bit lanes in two registers as four float vectors. Values that
// came from 8u data are extended as unsigned (an 8u square reaches 65025).
template <bool Signed>
inline void floatsOf16(__m128i lo, __m128i hi, __m128 f[4]) {
    if constexpr (Signed) {
        f[0] = _mm_cvtepi32_ps(_mm_srai_epi32(_mm_unpacklo_epi16(lo, lo), 16));
        f[1] = _mm_cvtepi32_ps(_mm_srai_epi32(_mm_unpackhi_epi16(lo, lo), 16));
        f[2] = _mm_cvtepi32_ps(_mm_srai_epi32(_mm_unpacklo_epi16(hi, hi), 16));
        f[3] = _mm_cvtepi32_ps(_mm_srai_epi32(_mm_unpackhi_epi16(hi, hi), 16));
    } else {
        const __m128i z = _mm_setzero_si128();
        f[0] = _mm_cvtepi32_ps(_mm_unpacklo_epi16(lo, z));
        f[1] = _mm_cvtepi32_ps(_mm_unpackhi_epi16(lo, z));
        f[2] = _mm_cvtepi32_ps(_mm_unpacklo_epi16(hi, z));
        f[3] = _mm_cvtepi32_ps(_mm_unpackhi_epi16(hi, z));
    }
}

// Sixteen 8-bit pixels widened to 16-bit lanes.
template <class S>
inline void widen8(const S* p, __m128i& lo, __m128i& hi) {
    const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
    if constexpr (std::is_signed<S>::value) {
        lo = _mm_srai_epi16(_mm_unpacklo_epi8(v, v), 8);
        hi = _mm_srai_epi16(_mm_unpackhi_epi8(v, v), 8);
    } else {
        lo = _mm_unpacklo_epi8(v, _mm_setzero_si128());
        hi = _mm_unpackhi_epi8(v, _mm_setzero_si128());
    }
}

// Sixteen 16u or 32f pixels converted to float.
inline void floatsOf(const Zeq16u* p, __m128 f[4]) {
    floatsOf16<false>(_mm_loadu_si128(reinterpret_cast<const __m128i*>(p)),
                      _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + 8)), f);
}
inline void floatsOf(const Zeq32f* p, __m128 f[4]) {
    for (int k = 0; k < 4; ++k) f[k] = _mm_loadu_ps(p + 4 * k);
}

// What Add, AddSquare and AddProduct add (AddWeighted takes the plain value).
// 8-bit squares and products fit 16-bit lanes exactly (at most 128 * 128 for
// 8s, 255 * 255 unsigned for 8u), so they are formed before conversion;
// wider sources multiply the converted floats.
template <Op O, class S>
inline void terms(const S* a, const S* b, __m128 t[4]) {
    if constexpr (sizeof(S) == 1) {
        __m128i lo, hi;
        widen8(a, lo, hi);
        if constexpr (O == Op::Square) {
            lo = _mm_mullo_epi16(lo, lo);
            hi = _mm_mullo_epi16(hi, hi);
        } else if constexpr (O == Op::Product) {
            __m128i blo, bhi;
            widen8(b, blo, bhi);
            lo = _mm_mullo_epi16(lo, blo);
            hi = _mm_mullo_epi16(hi, bhi);
        }
        floatsOf16<std::is_signed<S>::value>(lo, hi, t);
    } else {
        floatsOf(a, t);
        if constexpr (O == Op::Square) {
            for (int k = 0; k < 4; ++k) t[k] = _mm_mul_ps(t[k], t[k]);
        } else if constexpr (O == Op::Product) {
            __m128 u[4];
            floatsOf(b, u);
            for (int k = 0; k < 4; ++k) t[k] = _mm_mul_ps(t[k], u[k]);
        }
    }
}

template <Op O, class S>
inline Zeq32f term(S a, S b) {
    if constexpr (O == Op::Square || O == Op::Product) {
        const S c = O == Op::Square ? a : b;
        if constexpr (sizeof(S) == 1) return Zeq32f(int(a) * int(c));
        else return Zeq32f(a) * Zeq32f(c);
    } else {
        return Zeq32f(a);
    }
}

// All-ones lanes where the mask byte is zero, for sixteen pixels.
inline void maskedOut(const Zeq8u* m, __m128 out[4]) {
    const __m128i eq = _mm_cmpeq_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i*>(m)), _mm_setzero_si128());
    const __m128i lo = _mm_unpacklo_epi8(eq, eq), hi = _mm_unpackhi_epi8(eq, eq);
    out[0] = _mm_castsi128_ps(_mm_unpacklo_epi16(lo, lo));
    out[1] = _mm_castsi128_ps(_mm_unpackhi_epi16(lo, lo));
    out[2] = _mm_castsi128_ps(_mm_unpacklo_epi16(hi, hi));
    out[3] = _mm_castsi128_ps(_mm_unpackhi_epi16(hi, hi));
}

// ---- the update ----

// A masked-out pixel still gets written: sums add +0.0 (turning -0.0 into
// +0.0) and the weighted average runs with weight 0 (turning an infinite
// accumulator into NaN), exactly as the unmasked formula would.
template <Op O, bool Masked, class S>
void accumulateRow(const S* a, const S* b, const Zeq8u* m, Zeq32f* acc, ptrdiff_t n, Zeq32f alpha) {
    const __m128 weight = _mm_set1_ps(alpha);
    ptrdiff_t i = 0;
    for (; i + kBlock <= n; i += kBlock) {
        __m128 t[4], out[4];
        terms<O>(a + i, b + i, t);
        if constexpr (Masked) maskedOut(m + i, out);
        for (int k = 0; k < 4; ++k) {
            Zeq32f* p = acc + i + 4 * k;
            __m128 v = _mm_loadu_ps(p);
            if constexpr (O == Op::Weighted) {
                const __m128 w = Masked ? _mm_andnot_ps(out[k], weight) : weight;
                v = _mm_add_ps(v, _mm_mul_ps(_mm_sub_ps(t[k], v), w));
            } else {
                v = _mm_add_ps(v, Masked ? _mm_andnot_ps(out[k], t[k]) : t[k]);
            }
            _mm_storeu_ps(p, v);
        }
    }
    for (; i < n; ++i) {
        const bool in = !Masked || m[i] != 0;
        const Zeq32f t = term<O>(a[i], b[i]);
        if constexpr (O == Op::Weighted) {
            const Zeq32f w = in ? alpha : 0.0f;
            const Zeq32f d = t - acc[i];
            const Zeq32f dw = d * w;
            acc[i] = acc[i] + dw;
        } else {
            acc[i] = acc[i] + (in ? t : 0.0f);
        }
    }
}

// The region, as one long row when no row has padding. Steps here are the
// whole-element steps the rows actually advance by.
template <Op O, bool Masked, class S>
void ownAccumulate(const S* a, ptrdiff_t aStep, const S* b, ptrdiff_t bStep, const Zeq8u* m, ptrdiff_t mStep,
                   Zeq32f* acc, ptrdiff_t accStep, ZeqiSize roi, Zeq32f alpha) {
    if (zq::contiguousRows<S>(roi.width, aStep, bStep) && zq::contiguousRows<Zeq32f>(roi.width, accStep) &&
        (!Masked || zq::contiguousRows<Zeq8u>(roi.width, mStep))) {
        accumulateRow<O, Masked>(a, b, m, acc, ptrdiff_t(roi.width) * roi.height, alpha);
        return;
    }
    for (int y = 0; y < roi.height; ++y)
        accumulateRow<O, Masked>(zq::row(a, aStep, y), zq::row(b, bStep, y), Masked ? zq::row(m, mStep, y) : m,
                                 zq::row(acc, accStep, y), roi.width, alpha);
}

// Step checks by source type. 8-bit sources: sizes, then the accumulator's
// oddness. 16u sources: the sources completely (size, then oddness) before
// the mask and accumulator. 32f sources: sizes, then oddness of every float
// step. Oddness is all that is tested: float rows advance by step/4 elements.
template <class S>
ZeqStatus checkSteps(int width, int src1Step, int src2Step, int maskStep, int accStep) {
    const int64_t srcRow = zq::rowBytes<S>(width), accRow = zq::rowBytes<Zeq32f>(width);
    ZQ_CHECK(zq::stepsAtLeast(srcRow, src1Step, src2Step));
    if constexpr (std::is_same<S, Zeq16u>::value) ZQ_CHECK(zq::stepsEven(src1Step, src2Step));
    ZQ_CHECK(zq::stepsAtLeast(width, maskStep));
    ZQ_CHECK(zq::stepsAtLeast(accRow, accStep));
    if constexpr (std::is_same<S, Zeq32f>::value) return zq::stepsEven(src1Step, src2Step, accStep);
    else return zq::stepsEven(accStep);
}

// The whole call. Single-source operations pass their source twice; unmasked
// ones pass a null mask, which is then neither checked nor read.
template <Op O, bool Masked, class S>
ZeqStatus accumulate(const S* a, int aStep, const S* b, int bStep, const Zeq8u* m, int mStep, Zeq32f* acc,
                     int accStep, ZeqiSize roi, Zeq32f alpha = 0.0f) {
    ZQ_CHECK(zq::nonNull(a, b, acc));
    if constexpr (Masked) ZQ_CHECK(zq::nonNull(m));
    ZQ_CHECK(zq::roiSize(roi));
    ZQ_CHECK(checkSteps<S>(roi.width, aStep, bStep, Masked ? mStep : roi.width, accStep));
    ownAccumulate<O, Masked>(a, zq::wholeElementStep<S>(aStep), b, zq::wholeElementStep<S>(bStep), m, mStep, acc,
                             zq::wholeElementStep<Zeq32f>(accStep), roi, alpha);
    return zeqStsOk;
}

}  // namespace

// ---- exported functions ----

#define ZQ_ACCUMULATE(NAME, OP, S)                                                                        \
    ZeqStatus NAME(const S* pSrc, int srcStep, Zeq32f* pSrcDst, int srcDstStep, ZeqiSize roiSize) {     \
        return accumulate<OP, false>(pSrc, srcStep, pSrc, srcStep, nullptr, 0, pSrcDst, srcDstStep, roiSize); \
    }
#define ZQ_ACCUMULATE_MASKED(NAME, OP, S)                                                                 \
    ZeqStatus NAME(const S* pSrc, int srcStep, const Zeq8u* pMask, int maskStep, Zeq32f* pSrcDst,       \
                   int srcDstStep, ZeqiSize roiSize) {                                                    \
        return accumulate<OP, true>(pSrc, srcStep, pSrc, srcStep, pMask, maskStep, pSrcDst, srcDstStep,   \
                                    roiSize);                                                             \
    }
#define ZQ_ADD_PRODUCT(NAME, S)                                                                           \
    ZeqStatus NAME(const S* pSrc1, int src1Step, const S* pSrc2, int src2Step, Zeq32f* pSrcDst,         \
                   int srcDstStep, ZeqiSize roiSize) {                                                    \
        return accumulate<Op::Product, false>(pSrc1, src1Step, pSrc2, src2Step, nullptr, 0, pSrcDst,     \
                                              srcDstStep, roiSize);                                       \
    }
#define ZQ_ADD_PRODUCT_MASKED(NAME, S)                                                                    \
    ZeqStatus NAME(const S* pSrc1, int src1Step, const S* pSrc2, int src2Step, const Zeq8u* pMask,      \
                   int maskStep, Zeq32f* pSrcDst, int srcDstStep, ZeqiSize roiSize) {                     \
        return accumulate<Op::Product, true>(pSrc1, src1Step, pSrc2, src2Step, pMask, maskStep, pSrcDst, \
                                             srcDstStep, roiSize);                                        \
    }
#define ZQ_ADD_WEIGHTED(NAME, S)                                                                          \
    ZeqStatus NAME(const S* pSrc, int srcStep, Zeq32f* pSrcDst, int srcDstStep, ZeqiSize roiSize,       \
                   Zeq32f alpha) {                                                                        \
        return accumulate<Op::Weighted, false>(pSrc, srcStep, pSrc, srcStep, nullptr, 0, pSrcDst,        \
                                               srcDstStep, roiSize, alpha);                               \
    }
#define ZQ_ADD_WEIGHTED_MASKED(NAME, S)                                                                   \
    ZeqStatus NAME(const S* pSrc, int srcStep, const Zeq8u* pMask, int maskStep, Zeq32f* pSrcDst,       \
                   int srcDstStep, ZeqiSize roiSize, Zeq32f alpha) {                                      \
        return accumulate<Op::Weighted, true>(pSrc, srcStep, pSrc, srcStep, pMask, maskStep, pSrcDst,   \
                                              srcDstStep, roiSize, alpha);                                \
    }

// Plain 32f addition without a mask is an image primitive, not part of this family.
ZQ_ACCUMULATE(zeqiAdd_8u32f_C1IR, Op::Add, Zeq8u)
ZQ_ACCUMULATE(zeqiAdd_8s32f_C1IR, Op::Add, Zeq8s)
ZQ_ACCUMULATE(zeqiAdd_16u32f_C1IR, Op::Add, Zeq16u)
ZQ_ACCUMULATE_MASKED(zeqiAdd_8u32f_C1IMR, Op::Add, Zeq8u)
ZQ_ACCUMULATE_MASKED(zeqiAdd_8s32f_C1IMR, Op::Add, Zeq8s)
ZQ_ACCUMULATE_MASKED(zeqiAdd_16u32f_C1IMR, Op::Add, Zeq16u)
ZQ_ACCUMULATE_MASKED(zeqiAdd_32f_C1IMR, Op::Add, Zeq32f)

ZQ_ACCUMULATE(zeqiAddSquare_8u32f_C1IR, Op::Square, Zeq8u)
ZQ_ACCUMULATE(zeqiAddSquare_8s32f_C1IR, Op::Square, Zeq8s)
ZQ_ACCUMULATE(zeqiAddSquare_16u32f_C1IR, Op::Square, Zeq16u)
ZQ_ACCUMULATE(zeqiAddSquare_32f_C1IR, Op::Square, Zeq32f)
ZQ_ACCUMULATE_MASKED(zeqiAddSquare_8u32f_C1IMR, Op::Square, Zeq8u)
ZQ_ACCUMULATE_MASKED(zeqiAddSquare_8s32f_C1IMR, Op::Square, Zeq8s)
ZQ_ACCUMULATE_MASKED(zeqiAddSquare_16u32f_C1IMR, Op::Square, Zeq16u)
ZQ_ACCUMULATE_MASKED(zeqiAddSquare_32f_C1IMR, Op::Square, Zeq32f)

ZQ_ADD_PRODUCT(zeqiAddProduct_8u32f_C1IR, Zeq8u)
ZQ_ADD_PRODUCT(zeqiAddProduct_8s32f_C1IR, Zeq8s)
ZQ_ADD_PRODUCT(zeqiAddProduct_16u32f_C1IR, Zeq16u)
ZQ_ADD_PRODUCT(zeqiAddProduct_32f_C1IR, Zeq32f)
ZQ_ADD_PRODUCT_MASKED(zeqiAddProduct_8u32f_C1IMR, Zeq8u)
ZQ_ADD_PRODUCT_MASKED(zeqiAddProduct_8s32f_C1IMR, Zeq8s)
ZQ_ADD_PRODUCT_MASKED(zeqiAddProduct_16u32f_C1IMR, Zeq16u)
ZQ_ADD_PRODUCT_MASKED(zeqiAddProduct_32f_C1IMR, Zeq32f)

ZQ_ADD_WEIGHTED(zeqiAddWeighted_8u32f_C1IR, Zeq8u)
ZQ_ADD_WEIGHTED(zeqiAddWeighted_8s32f_C1IR, Zeq8s)
ZQ_ADD_WEIGHTED(zeqiAddWeighted_16u32f_C1IR, Zeq16u)
ZQ_ADD_WEIGHTED(zeqiAddWeighted_32f_C1IR, Zeq32f)
ZQ_ADD_WEIGHTED_MASKED(zeqiAddWeighted_8u32f_C1IMR, Zeq8u)
ZQ_ADD_WEIGHTED_MASKED(zeqiAddWeighted_8s32f_C1IMR, Zeq8s)
ZQ_ADD_WEIGHTED_MASKED(zeqiAddWeighted_16u32f_C1IMR, Zeq16u)
ZQ_ADD_WEIGHTED_MASKED(zeqiAddWeighted_32f_C1IMR, Zeq32f)
