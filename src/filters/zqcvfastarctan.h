// The fast arctangent kernel, one template over the tier (zqcvfastarctan.isa.cpp).
#ifndef ZQCV_FASTARCTAN_H
#define ZQCV_FASTARCTAN_H

#include "core/zqcvisa.h"
#include "zeqcv.h"

namespace zq {

// pDst[i] = the direction of (pSrcX[i], pSrcY[i]) in degrees, i < len; every
// tier gives the same bits.
template <Isa I>
void ownFastArctan_32f(const Zeq32f* pSrcY, const Zeq32f* pSrcX, Zeq32f* pDst, int len);

}  // namespace zq

#endif
