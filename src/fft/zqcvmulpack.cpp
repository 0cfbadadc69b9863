// Element-wise product of two spectra in the two-dimensional packed layout.
// The layout rule is applied as it stands to any width and height, odd ones
// included: row 0 (and row H-1 for an even H) is a real row, the rows between
// go in pairs whose column-0 (and, for an even W, column W-1) values form one
// complex number down the pair, and within every row the elements
// (2k-1, 2k) form complex numbers.
#include "fft/zqcvfft2d.h"

#include "core/zqcvcore.h"

namespace {

// (a + ib)(c + id) = (ac - bd) + i(ad + bc), written over (a, b). Rows may
// start at any byte: every element goes through loadu/storeu.
inline void mulComplex(float* pa, float* pb, const float* pc, const float* pd) {
    const float a = zq::loadu(pa), b = zq::loadu(pb), c = zq::loadu(pc), d = zq::loadu(pd);
    zq::storeu(pa, a * c - b * d);
    zq::storeu(pb, a * d + b * c);
}

inline void mulReal(float* d, const float* s) { zq::storeu(d, zq::loadu(d) * zq::loadu(s)); }

// d[k] *= s[k] for n interleaved complex values. The vector path splits real
// and imaginary parts and computes the same products and sums as mulComplex,
// so both give the same bits.
void mulPairs(float* d, const float* s, int n) {
    int k = 0;
    for (; k + 4 <= n; k += 4) {
        const __m128 d0 = _mm_loadu_ps(d + 2 * k), d1 = _mm_loadu_ps(d + 2 * k + 4);
        const __m128 s0 = _mm_loadu_ps(s + 2 * k), s1 = _mm_loadu_ps(s + 2 * k + 4);
        const __m128 a = _mm_shuffle_ps(d0, d1, _MM_SHUFFLE(2, 0, 2, 0));
        const __m128 b = _mm_shuffle_ps(d0, d1, _MM_SHUFFLE(3, 1, 3, 1));
        const __m128 c = _mm_shuffle_ps(s0, s1, _MM_SHUFFLE(2, 0, 2, 0));
        const __m128 e = _mm_shuffle_ps(s0, s1, _MM_SHUFFLE(3, 1, 3, 1));
        const __m128 re = _mm_sub_ps(_mm_mul_ps(a, c), _mm_mul_ps(b, e));
        const __m128 im = _mm_add_ps(_mm_mul_ps(a, e), _mm_mul_ps(b, c));
        _mm_storeu_ps(d + 2 * k, _mm_unpacklo_ps(re, im));
        _mm_storeu_ps(d + 2 * k + 4, _mm_unpackhi_ps(re, im));
    }
    for (; k < n; ++k) mulComplex(d + 2 * k, d + 2 * k + 1, s + 2 * k, s + 2 * k + 1);
}

void ownMulPack_32f_C1IR(const float* pSrc, int srcStep, float* pSrcDst, int srcDstStep, int w, int h) {
    const int pairs = (w - 1) / 2;     // complex values after element 0 of a row
    const bool realLast = w % 2 == 0;  // element w-1 stands alone
    auto realRow = [&](int y) {
        const float* s = zq::row(pSrc, srcStep, y);
        float* d = zq::row(pSrcDst, srcDstStep, y);
        mulReal(d, s);
        mulPairs(d + 1, s + 1, pairs);
        if (realLast) mulReal(d + w - 1, s + w - 1);
    };

    realRow(0);
    // Rows from 1 on go in pairs; an even h leaves row h-1 alone.
    for (int y = 1; y + 1 < h; y += 2) {
        const float* s0 = zq::row(pSrc, srcStep, y);
        const float* s1 = zq::row(pSrc, srcStep, y + 1);
        float* d0 = zq::row(pSrcDst, srcDstStep, y);
        float* d1 = zq::row(pSrcDst, srcDstStep, y + 1);
        mulComplex(d0, d1, s0, s1);
        mulPairs(d0 + 1, s0 + 1, pairs);
        mulPairs(d1 + 1, s1 + 1, pairs);
        if (realLast) mulComplex(d0 + w - 1, d1 + w - 1, s0 + w - 1, s1 + w - 1);
    }
    if (h % 2 == 0) realRow(h - 1);
}

}  // namespace

// Steps are checked before the size.
ZeqStatus zeqiMulPack_32f_C1IR(const Zeq32f* pSrc, int srcStep, Zeq32f* pSrcDst, int srcDstStep, ZeqiSize roiSize) {
    ZQ_CHECK(zq::nonNull(pSrc, pSrcDst));
    ZQ_CHECK(zq::stepsPositive(srcStep, srcDstStep));
    ZQ_CHECK(zq::roiSize(roiSize));
    ownMulPack_32f_C1IR(pSrc, srcStep, pSrcDst, srcDstStep, roiSize.width, roiSize.height);
    return zeqStsOk;
}
