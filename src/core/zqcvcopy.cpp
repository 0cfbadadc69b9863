// Region copies for every layout, and filling a float region with a value.
#include "core/zqcvsimd.h"
#include "core/zqcvvector.h"

namespace {

// Copies larger than this bypass the caches: the caller moves on to other data.
constexpr int64_t kCopyStreamBytes = 131072;

// Copies `rowBytes` bytes of each of `height` rows; rows that follow each
// other without a gap in both images are copied as one.
void owniCopy_8u_C1_W7(const Zeq8u* src, int srcStep, Zeq8u* dst, int dstStep, ptrdiff_t rowBytes, int height) {
    const bool stream = int64_t(rowBytes) * height > kCopyStreamBytes;
    if (srcStep == rowBytes && dstStep == rowBytes) {
        zq::ownsCopy_8u(src, dst, rowBytes * height, stream);
        return;
    }
    for (int y = 0; y < height; ++y) zq::ownsCopy_8u(zq::row(src, srcStep, y), zq::row(dst, dstStep, y), rowBytes, stream);
}

template <class T, int Channels>
ZeqStatus copyRegion(const T* pSrc, int srcStep, T* pDst, int dstStep, ZeqiSize roi) {
    ZQ_CHECK(zq::nonNull(pSrc, pDst));
    ZQ_CHECK(zq::roiSize(roi));
    ZQ_CHECK(zq::stepsPositive(srcStep, dstStep));
    owniCopy_8u_C1_W7(reinterpret_cast<const Zeq8u*>(pSrc), srcStep, reinterpret_cast<Zeq8u*>(pDst), dstStep,
                      ptrdiff_t(zq::rowBytes<T>(roi.width, Channels)), roi.height);
    return zeqStsOk;
}

// Three channels of each four-float pixel, blended into the destination bit
// for bit so the fourth channel keeps whatever it held.
void owniCopy_32f_AC4(const Zeq32f* src, int srcStep, Zeq32f* dst, int dstStep, ZeqiSize roi) {
    const __m128i keep = _mm_set_epi32(-1, 0, 0, 0);
    for (int y = 0; y < roi.height; ++y) {
        const auto* s = reinterpret_cast<const __m128i*>(zq::row(src, srcStep, y));
        auto* d = reinterpret_cast<__m128i*>(zq::row(dst, dstStep, y));
        for (int x = 0; x < roi.width; ++x) {
            const __m128i old = _mm_and_si128(_mm_loadu_si128(d + x), keep);
            _mm_storeu_si128(d + x, _mm_or_si128(_mm_andnot_si128(keep, _mm_loadu_si128(s + x)), old));
        }
    }
}

void owniSet_32f_C1(Zeq32f value, Zeq32f* dst, int dstStep, ZeqiSize roi) {
    const bool contiguous = zq::contiguousRows<Zeq32f>(roi.width, dstStep);
    const ptrdiff_t n = contiguous ? ptrdiff_t(roi.width) * roi.height : roi.width;
    const __m128 v = _mm_set1_ps(value);
    for (int y = 0; y < (contiguous ? 1 : roi.height); ++y) {
        Zeq32f* d = zq::row(dst, dstStep, y);
        ptrdiff_t i = 0;
        for (; i + 8 <= n; i += 8) {
            _mm_storeu_ps(d + i, v);
            _mm_storeu_ps(d + i + 4, v);
        }
        for (; i < n; ++i) zq::storeu(d + i, value);
    }
}

}  // namespace

ZeqStatus zeqiCopy_8u_C1R(const Zeq8u* pSrc, int srcStep, Zeq8u* pDst, int dstStep, ZeqiSize roiSize) {
    return copyRegion<Zeq8u, 1>(pSrc, srcStep, pDst, dstStep, roiSize);
}

ZeqStatus zeqiCopy_8u_C3R(const Zeq8u* pSrc, int srcStep, Zeq8u* pDst, int dstStep, ZeqiSize roiSize) {
    return copyRegion<Zeq8u, 3>(pSrc, srcStep, pDst, dstStep, roiSize);
}

ZeqStatus zeqiCopy_8u_C4R(const Zeq8u* pSrc, int srcStep, Zeq8u* pDst, int dstStep, ZeqiSize roiSize) {
    return copyRegion<Zeq8u, 4>(pSrc, srcStep, pDst, dstStep, roiSize);
}

ZeqStatus zeqiCopy_32f_C1R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep, ZeqiSize roiSize) {
    return copyRegion<Zeq32f, 1>(pSrc, srcStep, pDst, dstStep, roiSize);
}

ZeqStatus zeqiCopy_32f_C3R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep, ZeqiSize roiSize) {
    return copyRegion<Zeq32f, 3>(pSrc, srcStep, pDst, dstStep, roiSize);
}

ZeqStatus zeqiCopy_32f_AC4R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep, ZeqiSize roiSize) {
    ZQ_CHECK(zq::nonNull(pSrc, pDst));
    ZQ_CHECK(zq::roiSize(roiSize));
    ZQ_CHECK(zq::stepsPositive(srcStep, dstStep));
    owniCopy_32f_AC4(pSrc, srcStep, pDst, dstStep, roiSize);
    return zeqStsOk;
}

ZeqStatus zeqiSet_32f_C1R(Zeq32f value, Zeq32f* pDst, int dstStep, ZeqiSize roiSize) {
    ZQ_CHECK(zq::nonNull(pDst));
    ZQ_CHECK(zq::roiSize(roiSize));
    ZQ_CHECK(zq::stepsPositive(dstStep));
    owniSet_32f_C1(value, pDst, dstStep, roiSize);
    return zeqStsOk;
}
