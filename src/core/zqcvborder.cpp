// Copying a region into a larger one whose border replicates the region's
// edge pixels.
#include "core/zqcvcore.h"
#include "core/zqcvvector.h"

#include <cstring>

namespace {

// `count` copies of the pixel of `Bytes` bytes at `pixel`, from `dst` on.
template <int Bytes>
void repeatPixel(Zeq8u* dst, const Zeq8u* pixel, int count) {
    Zeq8u p[Bytes];
    std::memcpy(p, pixel, Bytes);
    if constexpr (Bytes == 1) {
        zq::ownsSet_8u(p[0], dst, count);
    } else {
        for (int i = 0; i < count; ++i) std::memcpy(dst + ptrdiff_t(i) * Bytes, p, Bytes);
    }
}

// Written in a fixed order: the source rows with their left and right
// borders, then the rows below (copies of the last row written), then the
// rows above (copies of the first).
template <int Bytes>
void ownCopyReplicateBorder(const Zeq8u* src, int srcStep, ZeqiSize srcRoi, Zeq8u* dst, int dstStep, ZeqiSize dstRoi,
                            int top, int left) {
    const ptrdiff_t srcRowBytes = ptrdiff_t(srcRoi.width) * Bytes, dstRowBytes = ptrdiff_t(dstRoi.width) * Bytes;
    const int right = dstRoi.width - srcRoi.width - left;
    for (int y = 0; y < srcRoi.height; ++y) {
        const Zeq8u* s = zq::row(src, srcStep, y);
        Zeq8u* d = zq::row(dst, dstStep, top + y);
        repeatPixel<Bytes>(d, s, left);
        zq::ownsCopy_8u(s, d + ptrdiff_t(left) * Bytes, srcRowBytes);
        repeatPixel<Bytes>(d + ptrdiff_t(left) * Bytes + srcRowBytes, s + srcRowBytes - Bytes, right);
    }
    const Zeq8u* last = zq::row(dst, dstStep, top + srcRoi.height - 1);
    for (int y = top + srcRoi.height; y < dstRoi.height; ++y) zq::ownsCopy_8u(last, zq::row(dst, dstStep, y), dstRowBytes);
    const Zeq8u* first = zq::row(dst, dstStep, top);
    for (int y = 0; y < top; ++y) zq::ownsCopy_8u(first, zq::row(dst, dstStep, y), dstRowBytes);
}

// Steps are tested before sizes here.
template <class T, int Channels>
ZeqStatus copyReplicateBorder(const T* pSrc, int srcStep, ZeqiSize srcRoi, T* pDst, int dstStep, ZeqiSize dstRoi,
                              int top, int left) {
    ZQ_CHECK(zq::nonNull(pSrc, pDst));
    ZQ_CHECK(zq::stepsPositive(srcStep, dstStep));
    ZQ_CHECK(zq::roiSize(srcRoi));
    ZQ_CHECK(zq::roiSize(dstRoi));
    if (top < 0 || left < 0 || int64_t(dstRoi.width) < int64_t(srcRoi.width) + left ||
        int64_t(dstRoi.height) < int64_t(srcRoi.height) + top)
        return zeqStsSize;
    ownCopyReplicateBorder<int(sizeof(T)) * Channels>(reinterpret_cast<const Zeq8u*>(pSrc), srcStep, srcRoi,
                                                      reinterpret_cast<Zeq8u*>(pDst), dstStep, dstRoi, top, left);
    return zeqStsOk;
}

}  // namespace

ZeqStatus zeqiCopyReplicateBorder_8u_C1R(const Zeq8u* pSrc, int srcStep, ZeqiSize srcRoiSize, Zeq8u* pDst,
                                         int dstStep, ZeqiSize dstRoiSize, int topBorderHeight, int leftBorderWidth) {
    return copyReplicateBorder<Zeq8u, 1>(pSrc, srcStep, srcRoiSize, pDst, dstStep, dstRoiSize, topBorderHeight,
                                         leftBorderWidth);
}

ZeqStatus zeqiCopyReplicateBorder_8u_C3R(const Zeq8u* pSrc, int srcStep, ZeqiSize srcRoiSize, Zeq8u* pDst,
                                         int dstStep, ZeqiSize dstRoiSize, int topBorderHeight, int leftBorderWidth) {
    return copyReplicateBorder<Zeq8u, 3>(pSrc, srcStep, srcRoiSize, pDst, dstStep, dstRoiSize, topBorderHeight,
                                         leftBorderWidth);
}

ZeqStatus zeqiCopyReplicateBorder_8u_C4R(const Zeq8u* pSrc, int srcStep, ZeqiSize srcRoiSize, Zeq8u* pDst,
                                         int dstStep, ZeqiSize dstRoiSize, int topBorderHeight, int leftBorderWidth) {
    return copyReplicateBorder<Zeq8u, 4>(pSrc, srcStep, srcRoiSize, pDst, dstStep, dstRoiSize, topBorderHeight,
                                         leftBorderWidth);
}

ZeqStatus zeqiCopyReplicateBorder_32s_C1R(const Zeq32s* pSrc, int srcStep, ZeqiSize srcRoiSize, Zeq32s* pDst,
                                          int dstStep, ZeqiSize dstRoiSize, int topBorderHeight, int leftBorderWidth) {
    return copyReplicateBorder<Zeq32s, 1>(pSrc, srcStep, srcRoiSize, pDst, dstStep, dstRoiSize, topBorderHeight,
                                          leftBorderWidth);
}

ZeqStatus zeqiCopyReplicateBorder_32s_C3R(const Zeq32s* pSrc, int srcStep, ZeqiSize srcRoiSize, Zeq32s* pDst,
                                          int dstStep, ZeqiSize dstRoiSize, int topBorderHeight, int leftBorderWidth) {
    return copyReplicateBorder<Zeq32s, 3>(pSrc, srcStep, srcRoiSize, pDst, dstStep, dstRoiSize, topBorderHeight,
                                          leftBorderWidth);
}

ZeqStatus zeqiCopyReplicateBorder_32s_C4R(const Zeq32s* pSrc, int srcStep, ZeqiSize srcRoiSize, Zeq32s* pDst,
                                          int dstStep, ZeqiSize dstRoiSize, int topBorderHeight, int leftBorderWidth) {
    return copyReplicateBorder<Zeq32s, 4>(pSrc, srcStep, srcRoiSize, pDst, dstStep, dstRoiSize, topBorderHeight,
                                          leftBorderWidth);
}
