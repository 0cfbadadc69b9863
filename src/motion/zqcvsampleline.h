// The line iterator and the kernel that copies a line's pixels, one
// template over the tier (zqcvsampleline.isa.cpp).
#ifndef ZQCV_SAMPLELINE_H
#define ZQCV_SAMPLELINE_H

#include "core/zqcvisa.h"
#include "zeqcv.h"

#include <cstddef>
#include <cstdint>

namespace zq {

// The iterator record. At every step err loses minusDelta and the position
// moves by minusStep; when err goes negative it also moves by plusStep and
// err gains plusDelta. err stays in [0, plusDelta).
struct LineIterator {
    const Zeq8u* ptr;     // the current pixel
    int64_t err;          // the error term
    int64_t plusDelta;    // 2 x the major length
    int64_t minusDelta;   // 2 x the minor length
    ptrdiff_t plusStep;   // bytes of a step along the minor axis
    ptrdiff_t minusStep;  // bytes of a step along the major axis
};

// Copies the n points from the iterator's position on, PixelBytes each, to dst.
template <Isa I, int PixelBytes>
void ownSampleLine(const LineIterator& it, int n, Zeq8u* dst);

}  // namespace zq

#endif
