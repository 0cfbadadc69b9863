// Sampling an image along the digital straight line between two points,
// both ends included, into a contiguous array.
//
// The line iterator takes a step along the major axis at every point, and
// one along the minor axis too when its error term goes negative: the error
// starts at the major length, loses twice the minor length per step and,
// when below zero, gains twice the major length. Eight-connected Bresenham in
// which an exact tie (the error reaching zero) does not step sideways yet.
//
// The error never leaves [0, 2 x major), so the state after k steps has a
// closed form. Long lines are copied as four quarters walked side by side:
// each step waits on the error of the step before, and four independent
// walks fill the time one would spend waiting.
#include "core/zqcvcore.h"

#include <cstdlib>

namespace {

// The iterator record.
struct LineIterator {
    const Zeq8u* ptr;     // the current pixel
    int64_t err;          // the error term
    int64_t plusDelta;    // added to err when it goes negative: 2 x the major length
    int64_t minusDelta;   // subtracted from err at every step: 2 x the minor length
    ptrdiff_t plusStep;   // bytes added when err goes negative: the minor-axis step
    ptrdiff_t minusStep;  // bytes added at every step: the major-axis step
};

// Sets the iterator on (x1, y1) towards (x2, y2) of an image whose pixels
// are `pixelSize` bytes, and returns the number of points on the line.
int _zqcvInitLineIterator(const void* image, int step, int pixelSize, int x1, int y1, int x2, int y2,
                          LineIterator* it) {
    const ptrdiff_t xStep = x2 < x1 ? -pixelSize : pixelSize;
    const ptrdiff_t yStep = y2 < y1 ? -ptrdiff_t(step) : ptrdiff_t(step);
    const int64_t adx = std::abs(int64_t(x2) - x1), ady = std::abs(int64_t(y2) - y1);
    it->ptr = static_cast<const Zeq8u*>(image) + ptrdiff_t(y1) * step + ptrdiff_t(x1) * pixelSize;
    if (adx <= ady) {  // y-major, exact diagonals included
        *it = {it->ptr, ady, 2 * ady, 2 * adx, xStep, yStep};
        return int(ady + 1);
    }
    *it = {it->ptr, adx, 2 * adx, 2 * ady, yStep, xStep};
    return int(adx + 1);
}

// A walk along the iterator's line, positions as byte offsets from the
// first point so that stepping past the last one forms no pointer. E holds
// the error: 32 bits unless twice the major length needs more.
template <class E>
struct Walk {
    E plusDelta, minusDelta;
    ptrdiff_t plusStep, minusStep;

    explicit Walk(const LineIterator& it)
        : plusDelta(E(it.plusDelta)), minusDelta(E(it.minusDelta)), plusStep(it.plusStep), minusStep(it.minusStep) {}

    // Offset and error at point k, from the first point's error err0.
    void at(int64_t k, int64_t err0, ptrdiff_t& offset, E& err) const {
        if (k == 0) {  // a single point has no length to divide by
            offset = 0, err = E(err0);
            return;
        }
        const int64_t lowered = k * int64_t(minusDelta) - err0;  // >= -err0 > -plusDelta
        const int64_t sideways = (lowered + int64_t(plusDelta) - 1) / int64_t(plusDelta);
        offset = ptrdiff_t(k) * minusStep + ptrdiff_t(sideways) * plusStep;
        err = E(sideways * int64_t(plusDelta) - lowered);
    }

    // One step, without a branch: the sideways step is taken through a mask.
    void next(ptrdiff_t& offset, E& err) const {
        err -= minusDelta;
        const E negative = err >> (8 * sizeof(E) - 1);
        offset += minusStep + (plusStep & ptrdiff_t(negative));
        err += plusDelta & negative;
    }
};

template <int PixelBytes, class E>
void sampleWalk(const LineIterator& it, int n, Zeq8u* dst) {
    constexpr int kWalks = 4;
    const Walk<E> walk(it);
    // Short lines are one walk: the last one, set on the first point.
    const int quarter = n >= 8 * kWalks ? n / kWalks : 0;
    ptrdiff_t offset[kWalks];
    E err[kWalks];
    Zeq8u* out[kWalks];
    for (int w = 0; w < kWalks; ++w) {
        walk.at(int64_t(w) * quarter, it.err, offset[w], err[w]);
        out[w] = dst + ptrdiff_t(w) * quarter * PixelBytes;
    }
    for (int i = 0; i < quarter; ++i)
        for (int w = 0; w < kWalks; ++w) {
            std::memcpy(out[w], it.ptr + offset[w], PixelBytes);
            out[w] += PixelBytes;
            walk.next(offset[w], err[w]);
        }
    // The last walk goes on to the end of the line.
    for (int i = kWalks * quarter; i < n; ++i) {
        std::memcpy(out[kWalks - 1], it.ptr + offset[kWalks - 1], PixelBytes);
        out[kWalks - 1] += PixelBytes;
        walk.next(offset[kWalks - 1], err[kWalks - 1]);
    }
}

// Copies the n points of the iterator's line, PixelBytes each, to dst.
template <int PixelBytes>
void ownSampleLine(const LineIterator& it, int n, Zeq8u* dst) {
    if (it.plusDelta <= INT32_MAX) sampleWalk<PixelBytes, int32_t>(it, n, dst);
    else sampleWalk<PixelBytes, int64_t>(it, n, dst);
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
    ownSampleLine<pixelBytes>(it, n, reinterpret_cast<Zeq8u*>(dst));
    return zeqStsOk;
}

}  // namespace

ZeqStatus zeqiSampleLine_8u_C1R(const Zeq8u* pSrc, int srcStep, ZeqiSize roiSize, Zeq8u* pDst, ZeqiPoint pt1,
                                ZeqiPoint pt2) {
    return sampleLine<1>(pSrc, srcStep, roiSize, pDst, pt1, pt2);
}

ZeqStatus zeqiSampleLine_8u_C3R(const Zeq8u* pSrc, int srcStep, ZeqiSize roiSize, Zeq8u* pDst, ZeqiPoint pt1,
                                ZeqiPoint pt2) {
    return sampleLine<3>(pSrc, srcStep, roiSize, pDst, pt1, pt2);
}

ZeqStatus zeqiSampleLine_16u_C1R(const Zeq16u* pSrc, int srcStep, ZeqiSize roiSize, Zeq16u* pDst, ZeqiPoint pt1,
                                 ZeqiPoint pt2) {
    return sampleLine<1>(pSrc, srcStep, roiSize, pDst, pt1, pt2);
}

ZeqStatus zeqiSampleLine_16u_C3R(const Zeq16u* pSrc, int srcStep, ZeqiSize roiSize, Zeq16u* pDst, ZeqiPoint pt1,
                                 ZeqiPoint pt2) {
    return sampleLine<3>(pSrc, srcStep, roiSize, pDst, pt1, pt2);
}

ZeqStatus zeqiSampleLine_32f_C1R(const Zeq32f* pSrc, int srcStep, ZeqiSize roiSize, Zeq32f* pDst, ZeqiPoint pt1,
                                 ZeqiPoint pt2) {
    return sampleLine<1>(pSrc, srcStep, roiSize, pDst, pt1, pt2);
}

ZeqStatus zeqiSampleLine_32f_C3R(const Zeq32f* pSrc, int srcStep, ZeqiSize roiSize, Zeq32f* pDst, ZeqiPoint pt1,
                                 ZeqiPoint pt2) {
    return sampleLine<3>(pSrc, srcStep, roiSize, pDst, pt1, pt2);
}
