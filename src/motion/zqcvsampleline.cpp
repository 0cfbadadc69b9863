// Sampling an image along the digital straight line between two points,
// both ends included, into a contiguous array.
//
// The line iterator takes a step along the major axis at every point, and
// one along the minor axis too when its error term goes negative: the error
// starts at the major length, loses twice the minor length per step and,
// when below zero, gains twice the major length. Eight-connected Bresenham in
// which an exact tie (the error reaching zero) does not step sideways yet.
//
// The copy is in zqcvsampleline.isa.cpp, built for every tier.
#include "core/zqcvcore.h"
#include "motion/zqcvsampleline.h"

#include <cstdlib>

namespace {

using zq::LineIterator;

// Sets the iterator on (x1, y1) towards (x2, y2) of an image whose pixels
// are `pixelSize` bytes, and returns the number of points on the line.
int _zqcvInitLineIterator(const void* image, int step, int pixelSize, int x1, int y1, int x2, int y2,
                          LineIterator* it) {
    const ptrdiff_t xStep = x2 < x1 ? -pixelSize : pixelSize;
    const ptrdiff_t yStep = y2 < y1 ? -ptrdiff_t(step) : ptrdiff_t(step);
    const int64_t adx = std::abs(int64_t(x2) - x1), ady = std::abs(int64_t(y2) - y1);
    const Zeq8u* first = static_cast<const Zeq8u*>(image) + ptrdiff_t(y1) * step + ptrdiff_t(x1) * pixelSize;
    if (adx <= ady) {  // y-major, exact diagonals included
        *it = {first, ady, 2 * ady, 2 * adx, xStep, yStep};
        return int(ady + 1);
    }
    *it = {first, adx, 2 * adx, 2 * ady, yStep, xStep};
    return int(adx + 1);
}

inline ZeqStatus pointInside(ZeqiPoint p, ZeqiSize roi) {
    return (p.x < 0 || p.y < 0 || p.x >= roi.width || p.y >= roi.height) ? zeqStsOutOfRange : zeqStsOk;
}

// The whole call for C channels of T. Only a negative region size is refused
// as such; an empty one has no point inside it. 32f steps are tested for
// oddness, the others are not.
template <int C, class T>
ZeqStatus sampleLine(const T* src, int srcStep, ZeqiSize roi, T* dst, ZeqiPoint pt1, ZeqiPoint pt2) {
    constexpr int pixelBytes = C * int(sizeof(T));
    ZQ_CHECK(zq::nonNull(src, dst));
    if (roi.width < 0 || roi.height < 0) return zeqStsSize;
    ZQ_CHECK(zq::stepsAtLeast(zq::rowBytes<T>(roi.width, C), srcStep));
    if constexpr (std::is_same<T, Zeq32f>::value) ZQ_CHECK(zq::stepsEven(srcStep));
    ZQ_CHECK(pointInside(pt1, roi));
    ZQ_CHECK(pointInside(pt2, roi));
    LineIterator it;
    const int n = _zqcvInitLineIterator(src, srcStep, pixelBytes, pt1.x, pt1.y, pt2.x, pt2.y, &it);
    if (n < 0) return zeqStsError;  // not with both points inside: n >= 1
    zq::dispatch([&](auto tier) { zq::ownSampleLine<tier.value, pixelBytes>(it, n, reinterpret_cast<Zeq8u*>(dst)); });
    return zeqStsOk;
}

}  // namespace

#define ZQ_SAMPLE_LINE(NAME, T, CHANNELS)                                                                  \
    ZeqStatus NAME(const T* pSrc, int srcStep, ZeqiSize roiSize, T* pDst, ZeqiPoint pt1, ZeqiPoint pt2) { \
        return sampleLine<CHANNELS>(pSrc, srcStep, roiSize, pDst, pt1, pt2);                              \
    }
ZQ_SAMPLE_LINE(zeqiSampleLine_8u_C1R, Zeq8u, 1)
ZQ_SAMPLE_LINE(zeqiSampleLine_8u_C3R, Zeq8u, 3)
ZQ_SAMPLE_LINE(zeqiSampleLine_16u_C1R, Zeq16u, 1)
ZQ_SAMPLE_LINE(zeqiSampleLine_16u_C3R, Zeq16u, 3)
ZQ_SAMPLE_LINE(zeqiSampleLine_32f_C1R, Zeq32f, 1)
ZQ_SAMPLE_LINE(zeqiSampleLine_32f_C3R, Zeq32f, 3)
