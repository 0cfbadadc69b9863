// Conversion of 8-bit images to float, each value exactly.
#include "core/zqcvsimd.h"

namespace {

// Element counts above which the float output (four times the input) is
// written past the caches.
constexpr int64_t kStreamContiguous = 52428;
constexpr int64_t kStreamRows = 104858;
constexpr int kStreamMinWidth = 256;

// Sixteen 8-bit values widened to four registers of 32-bit integers.
inline void widen(__m128i v, Zeq8u, __m128i out[4]) {
    const __m128i z = _mm_setzero_si128();
    const __m128i lo = _mm_unpacklo_epi8(v, z), hi = _mm_unpackhi_epi8(v, z);
    out[0] = _mm_unpacklo_epi16(lo, z);
    out[1] = _mm_unpackhi_epi16(lo, z);
    out[2] = _mm_unpacklo_epi16(hi, z);
    out[3] = _mm_unpackhi_epi16(hi, z);
}

// Signed: each byte doubled into the high half of its lane, then shifted back
// down arithmetically.
inline void widen(__m128i v, Zeq8s, __m128i out[4]) {
    const __m128i lo = _mm_srai_epi16(_mm_unpacklo_epi8(v, v), 8), hi = _mm_srai_epi16(_mm_unpackhi_epi8(v, v), 8);
    out[0] = _mm_srai_epi32(_mm_unpacklo_epi16(lo, lo), 16);
    out[1] = _mm_srai_epi32(_mm_unpackhi_epi16(lo, lo), 16);
    out[2] = _mm_srai_epi32(_mm_unpacklo_epi16(hi, hi), 16);
    out[3] = _mm_srai_epi32(_mm_unpackhi_epi16(hi, hi), 16);
}

template <bool Stream, class S>
void convertRow(const S* src, Zeq32f* dst, ptrdiff_t n) {
    using V = zq::Vec<Zeq32f>;
    ptrdiff_t i = 0;
    if constexpr (Stream) {  // non-temporal stores need an aligned destination
        if (reinterpret_cast<uintptr_t>(dst) & 3) {
            for (; i < n; ++i) dst[i] = Zeq32f(src[i]);
        }
        for (; i < n && !zq::aligned16(dst + i); ++i) dst[i] = Zeq32f(src[i]);
    }
    for (; i + 16 <= n; i += 16) {
        __m128i w[4];
        widen(_mm_loadu_si128(reinterpret_cast<const __m128i*>(src + i)), S(), w);
        for (int k = 0; k < 4; ++k) {
            if constexpr (Stream) V::stream(dst + i + 4 * k, _mm_cvtepi32_ps(w[k]));
            else V::store(dst + i + 4 * k, _mm_cvtepi32_ps(w[k]));
        }
    }
    for (; i < n; ++i) dst[i] = Zeq32f(src[i]);
}

template <class S>
void owniConvert_W7(const S* src, int srcStep, Zeq32f* dst, int dstStep, ZeqiSize roi) {
    const int64_t count = int64_t(roi.width) * roi.height;
    if (srcStep == roi.width && int64_t(dstStep) == zq::rowBytes<Zeq32f>(roi.width)) {
        if (count > kStreamContiguous) convertRow<true>(src, dst, ptrdiff_t(count));
        else convertRow<false>(src, dst, ptrdiff_t(count));
    } else if (count > kStreamRows && roi.width > kStreamMinWidth) {
        for (int y = 0; y < roi.height; ++y) convertRow<true>(zq::row(src, srcStep, y), zq::row(dst, dstStep, y), roi.width);
    } else {
        for (int y = 0; y < roi.height; ++y) convertRow<false>(zq::row(src, srcStep, y), zq::row(dst, dstStep, y), roi.width);
    }
    _mm_sfence();
}

template <class S>
ZeqStatus convertToFloat(const S* pSrc, int srcStep, Zeq32f* pDst, int dstStep, ZeqiSize roi) {
    ZQ_CHECK(zq::nonNull(pSrc, pDst));
    ZQ_CHECK(zq::roiSize(roi));
    ZQ_CHECK(zq::stepsPositive(srcStep, dstStep));
    owniConvert_W7(pSrc, srcStep, pDst, dstStep, roi);
    return zeqStsOk;
}

}  // namespace

ZeqStatus zeqiConvert_8u32f_C1R(const Zeq8u* pSrc, int srcStep, Zeq32f* pDst, int dstStep, ZeqiSize roiSize) {
    return convertToFloat(pSrc, srcStep, pDst, dstStep, roiSize);
}

ZeqStatus zeqiConvert_8s32f_C1R(const Zeq8s* pSrc, int srcStep, Zeq32f* pDst, int dstStep, ZeqiSize roiSize) {
    return convertToFloat(pSrc, srcStep, pDst, dstStep, roiSize);
}
