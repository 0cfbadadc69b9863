// Conversion of 8-bit images to float, each value exactly.

#include "core/zqcvconvert.h"
#include "core/zqcvcore.h"

#include <emmintrin.h>

namespace {

// Element counts above which the SSE2 tier writes the float output (four
// times the input) past the caches.
constexpr int64_t kStreamContiguous = 52428;
constexpr int64_t kStreamRows = 104858;
constexpr int kStreamMinWidth = 256;

template <bool Stream, class S>
void convertRows(const S* src, int srcStep, Zeq32f* dst, int dstStep, ptrdiff_t width, int height) {
    zq::dispatch([&](auto tier) {
        for (int y = 0; y < height; ++y)
            zq::ownConvertRow_32f<tier.value, Stream>(zq::row(src, srcStep, y), zq::row(dst, dstStep, y), width);
    });
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
