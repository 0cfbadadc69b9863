// The magnitude pass of the Canny gradient stage for the wider tiers, one
// template over the tier (zqcvcanny.isa.cpp).
#ifndef ZQCV_CANNY_H
#define ZQCV_CANNY_H

#include "core/zqcvisa.h"
#include "zeqcv.h"

#include <cstdint>

namespace zq {

// For `groups` (at most 64) groups of eight pixels: mag = |dx| + |dy| in
// float, 0.0 where not above `low`, and the direction codes cleared. Bit g
// of the result is set when group g has a pixel above `low`. The same bits
// as the SSE2 pass: |16s| values are exact in float, and so is their sum.
template <Isa I, class T>
uint64_t ownCannyMagnitudes(const T* dx, const T* dy, int groups, float low, Zeq8u* dir, Zeq32f* mag);

// The result row from the direction row: 255 where the mark is the edge
// mark (which turns back into the candidate mark), 0 elsewhere, a register
// at a time; returns the first column not done. With `stream`, dst is
// 16-byte aligned and written past the caches.
template <Isa I>
int ownCannyEdgesRow(Zeq8u* dir, Zeq8u* dst, int width, bool stream);

}  // namespace zq

#endif
