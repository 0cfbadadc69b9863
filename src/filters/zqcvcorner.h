// Corner-measure kernels, templates over the tier (zqcvcorner.isa.cpp).
//
// The work areas hold rows of 4 x width bytes at any alignment: every access
// there is unaligned.
#ifndef ZQCV_CORNER_H
#define ZQCV_CORNER_H

#include "core/zqcvisa.h"
#include "zeqcv.h"

#include <cstddef>

namespace zq {

// Products of the derivatives, `rows` rows 4 x width bytes apart: dx^2 over
// bufX, dx * dy into bufXY, dy^2 over bufY. The 16s form widens its 16-bit
// derivatives in place, each row from its last column to its first.
template <Isa I>
void owncvMulDBuffers_16s32f(int width, int rows, Zeq8u* bufX, Zeq8u* bufXY, Zeq8u* bufY);
template <Isa I>
void owncvMulDBuffers_32f(int width, int rows, Zeq8u* bufX, Zeq8u* bufXY, Zeq8u* bufY);

// The eigen step over `rows` rows of box sums (bufStep bytes apart), each sum
// multiplied by `scale` first: the smaller eigenvalue (one float per pixel),
// or l1, l2, x1, y1, x2, y2 (six floats per pixel).
template <Isa I>
void calcMinValues(const Zeq8u* Sxx, const Zeq8u* Syy, const Zeq8u* Sxy, int width, ptrdiff_t bufStep, Zeq8u* pDst,
                   ptrdiff_t dstStep, int rows, Zeq32f scale);
template <Isa I>
void calcValues(const Zeq8u* Sxx, const Zeq8u* Syy, const Zeq8u* Sxy, int width, ptrdiff_t bufStep, Zeq8u* pDst,
                ptrdiff_t dstStep, int rows, Zeq32f scale);

}  // namespace zq

#endif
