// Conversion of 8-bit images to float, each value exactly.

// GCC 12 takes the deliberately undefined pass-through operand of the 512-bit
// conversions for an uninitialised variable.
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#include "core/zqcvcpu.h"
#include "core/zqcvsimd.h"

#include <immintrin.h>

namespace {

// Element counts above which the SSE2 kernel writes the float output (four
// times the input) past the caches.
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

// Converts the elements before dst reaches an Align-byte boundary, and moves
// dst, n and the returned source position past them.
template <int Align, class S>
inline const S* convertUntilAligned(const S* src, Zeq32f*& dst, ptrdiff_t& n) {
    // A destination that is not even 4-byte aligned never gets there.
    ptrdiff_t head = (reinterpret_cast<uintptr_t>(dst) & 3) ? n
                     : ptrdiff_t(((Align - (reinterpret_cast<uintptr_t>(dst) & (Align - 1))) & (Align - 1)) / 4);
    if (head > n) head = n;
    for (ptrdiff_t i = 0; i < head; ++i) dst[i] = Zeq32f(src[i]);
    dst += head;
    n -= head;
    return src + head;
}

// The SSE2 kernel; non-temporal stores need an aligned destination.
template <bool Stream, class S>
void convertRow(const S* src, Zeq32f* dst, ptrdiff_t n) {
    using V = zq::Vec<Zeq32f>;
    if constexpr (Stream) src = convertUntilAligned<16>(src, dst, n);
    ptrdiff_t i = 0;
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

// The wider instruction sets store aligned vectors with ordinary stores: the
// output is four times the input, so the width of the stores decides the
// speed, and non-temporal stores measured slower than cached ones there even
// for full-HD frames.
inline __attribute__((target("avx2"))) __m256 toFloat8(const Zeq8u* p) {
    return _mm256_cvtepi32_ps(_mm256_cvtepu8_epi32(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(p))));
}
inline __attribute__((target("avx2"))) __m256 toFloat8(const Zeq8s* p) {
    return _mm256_cvtepi32_ps(_mm256_cvtepi8_epi32(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(p))));
}

template <class S>
__attribute__((target("avx2"))) void convertRowAvx2(const S* src, Zeq32f* dst, ptrdiff_t n) {
    src = convertUntilAligned<32>(src, dst, n);
    ptrdiff_t i = 0;
    for (; i + 32 <= n; i += 32)
        for (int k = 0; k < 32; k += 8) _mm256_store_ps(dst + i + k, toFloat8(src + i + k));
    for (; i + 8 <= n; i += 8) _mm256_store_ps(dst + i, toFloat8(src + i));
    for (; i < n; ++i) dst[i] = Zeq32f(src[i]);
}

#define ZQ_AVX512 __attribute__((target("avx2,avx512f")))
inline ZQ_AVX512 __m512 toFloat16(const Zeq8u* p) {
    return _mm512_cvtepi32_ps(_mm512_cvtepu8_epi32(_mm_loadu_si128(reinterpret_cast<const __m128i*>(p))));
}
inline ZQ_AVX512 __m512 toFloat16(const Zeq8s* p) {
    return _mm512_cvtepi32_ps(_mm512_cvtepi8_epi32(_mm_loadu_si128(reinterpret_cast<const __m128i*>(p))));
}

// Sixteen values, one whole cache line of output, per store.
template <class S>
ZQ_AVX512 void convertRowAvx512(const S* src, Zeq32f* dst, ptrdiff_t n) {
    src = convertUntilAligned<64>(src, dst, n);
    ptrdiff_t i = 0;
    for (; i + 64 <= n; i += 64)
        for (int k = 0; k < 64; k += 16) _mm512_store_ps(dst + i + k, toFloat16(src + i + k));
    for (; i + 16 <= n; i += 16) _mm512_store_ps(dst + i, toFloat16(src + i));
    for (; i < n; ++i) dst[i] = Zeq32f(src[i]);
}

const bool kHaveAvx512 = zq::cpu().avx512;
const bool kHaveAvx2 = zq::cpu().avx2;

// The SSE2 kernel streams large outputs past the caches.
template <bool Stream, class S>
void convertRows(const S* src, int srcStep, Zeq32f* dst, int dstStep, ptrdiff_t width, int height) {
    for (int y = 0; y < height; ++y) {
        const S* s = zq::row(src, srcStep, y);
        Zeq32f* d = zq::row(dst, dstStep, y);
        if (kHaveAvx512) convertRowAvx512(s, d, width);
        else if (kHaveAvx2) convertRowAvx2(s, d, width);
        else convertRow<Stream>(s, d, width);
    }
}

// A region without gaps between rows is converted as one row.
template <class S>
void owniConvert_W7(const S* src, int srcStep, Zeq32f* dst, int dstStep, ZeqiSize roi) {
    const int64_t count = int64_t(roi.width) * roi.height;
    if (srcStep == roi.width && int64_t(dstStep) == zq::rowBytes<Zeq32f>(roi.width)) {
        if (count > kStreamContiguous) convertRows<true>(src, 0, dst, 0, ptrdiff_t(count), 1);
        else convertRows<false>(src, 0, dst, 0, ptrdiff_t(count), 1);
    } else if (count > kStreamRows && roi.width > kStreamMinWidth) {
        convertRows<true>(src, srcStep, dst, dstStep, roi.width, roi.height);
    } else {
        convertRows<false>(src, srcStep, dst, dstStep, roi.width, roi.height);
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
