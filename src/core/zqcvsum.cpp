// Sum, mean and L2 norm of a float image, accumulated in double precision.
#include "core/zqcvsimd.h"

#include <cmath>

namespace {

// Two neighbouring floats, or their squares, as doubles.
template <bool Squares>
inline __m128d pairAt(const Zeq32f* p) {
    const __m128d v = _mm_cvtps_pd(_mm_castsi128_ps(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(p))));
    return Squares ? _mm_mul_pd(v, v) : v;
}

template <bool Squares>
inline __m128d loneAt(const Zeq32f* p) {
    const __m128d v = _mm_set_sd(double(zq::loadu(p)));
    return Squares ? _mm_mul_sd(v, v) : v;
}

// The documented order: one partial sum of the even positions of every row
// and one of the odd positions, added at the end. The two lanes of one
// register are exactly those two sums; a lone last element of a row goes to
// the even sum only.
template <bool Squares>
double alternatingSum(const Zeq32f* src, int srcStep, ZeqiSize roi) {
    __m128d evenOdd = _mm_setzero_pd();
    for (int y = 0; y < roi.height; ++y) {
        const Zeq32f* s = zq::row(src, srcStep, y);
        int x = 0;
        for (; x + 4 <= roi.width; x += 4) {
            evenOdd = _mm_add_pd(evenOdd, pairAt<Squares>(s + x));
            evenOdd = _mm_add_pd(evenOdd, pairAt<Squares>(s + x + 2));
        }
        for (; x + 2 <= roi.width; x += 2) evenOdd = _mm_add_pd(evenOdd, pairAt<Squares>(s + x));
        if (x < roi.width) evenOdd = _mm_add_sd(evenOdd, loneAt<Squares>(s + x));
    }
    return _mm_cvtsd_f64(evenOdd) + _mm_cvtsd_f64(_mm_unpackhi_pd(evenOdd, evenOdd));
}

// Any order will do here: eight independent lanes keep the adder busy.
template <bool Squares>
double fastSum(const Zeq32f* src, int srcStep, ZeqiSize roi) {
    __m128d acc[4] = {_mm_setzero_pd(), _mm_setzero_pd(), _mm_setzero_pd(), _mm_setzero_pd()};
    for (int y = 0; y < roi.height; ++y) {
        const Zeq32f* s = zq::row(src, srcStep, y);
        int x = 0;
        for (; x + 8 <= roi.width; x += 8)
            for (int k = 0; k < 4; ++k) acc[k] = _mm_add_pd(acc[k], pairAt<Squares>(s + x + 2 * k));
        for (; x + 2 <= roi.width; x += 2) acc[0] = _mm_add_pd(acc[0], pairAt<Squares>(s + x));
        if (x < roi.width) acc[1] = _mm_add_sd(acc[1], loneAt<Squares>(s + x));
    }
    const __m128d t = _mm_add_pd(_mm_add_pd(acc[0], acc[1]), _mm_add_pd(acc[2], acc[3]));
    return _mm_cvtsd_f64(t) + _mm_cvtsd_f64(_mm_unpackhi_pd(t, t));
}

double ownpi_Sum_32f_C1R(const Zeq32f* src, int srcStep, ZeqiSize roi) { return fastSum<false>(src, srcStep, roi); }
double ownpi_NormL2_32f_C1R(const Zeq32f* src, int srcStep, ZeqiSize roi) { return fastSum<true>(src, srcStep, roi); }

constexpr int kHintOwnSum = 2;

}  // namespace

ZeqStatus zeqiSum_32f_C1R(const Zeq32f* pSrc, int srcStep, ZeqiSize roiSize, Zeq64f* pSum, int hint) {
    ZQ_CHECK(zq::nonNull(pSrc, pSum));
    ZQ_CHECK(zq::roiSize(roiSize));
    ZQ_CHECK(zq::stepsPositive(srcStep));
    *pSum = hint == kHintOwnSum ? alternatingSum<false>(pSrc, srcStep, roiSize)
                                : ownpi_Sum_32f_C1R(pSrc, srcStep, roiSize);
    return zeqStsOk;
}

ZeqStatus zeqiNorm_L2_32f_C1R(const Zeq32f* pSrc, int srcStep, ZeqiSize roiSize, Zeq64f* pValue, int hint) {
    ZQ_CHECK(zq::nonNull(pSrc, pValue));
    ZQ_CHECK(zq::roiSize(roiSize));
    ZQ_CHECK(zq::stepsPositive(srcStep));
    *pValue = std::sqrt(hint == kHintOwnSum ? alternatingSum<true>(pSrc, srcStep, roiSize)
                                            : ownpi_NormL2_32f_C1R(pSrc, srcStep, roiSize));
    return zeqStsOk;
}

// Only the result pointer is checked here; the sum checks the rest.
ZeqStatus zeqiMean_32f_C1R(const Zeq32f* pSrc, int srcStep, ZeqiSize roiSize, Zeq64f* pMean, int hint) {
    ZQ_CHECK(zq::nonNull(pMean));
    Zeq64f sum;
    ZQ_CHECK(zeqiSum_32f_C1R(pSrc, srcStep, roiSize, &sum, hint));
    // The pixel count is a 32-bit product, as callers of this interface expect.
    const int32_t count = int32_t(uint32_t(roiSize.width) * uint32_t(roiSize.height));
    *pMean = sum / double(count);
    return zeqStsOk;
}
