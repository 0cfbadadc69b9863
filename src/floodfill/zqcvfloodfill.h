// Flood fill kernel, a template over the tier (zqcvfloodfill.isa.cpp).
#ifndef ZQCV_FLOODFILL_H
#define ZQCV_FLOODFILL_H

#include "core/zqcvisa.h"
#include "zeqcv.h"

#include <cstddef>

namespace zq {

// Gradient range tests: n reached from p when p - lo <= n <= p + hi (8u), or
// |n + offset - p| <= half in double (32f). NoRange: the plain fill.
struct FloodRange8u {
    int lo, hi;
};
struct FloodRange32f {
    float offset, half;
};
struct NoRange {};

// The fill from the seed, the seed's value already known to differ from
// newVal for the plain fill; returns the record. The buffer is the caller's,
// of the size the GetSize queries give.
template <Isa I, class T, bool Eight, class Range>
ZeqiConnectedComp ownFloodFill(T* image, int step, ZeqiSize roi, ZeqiPoint seed, T newVal, Range range,
                               Zeq8u* buffer);

}  // namespace zq

#endif
