// Gaussian 5x5 pyramid kernels, templates over the tier (zqcvpyramid.isa.cpp).
#ifndef ZQCV_PYRAMID_H
#define ZQCV_PYRAMID_H

#include "core/zqcvisa.h"
#include "zeqcv.h"

#include <cstddef>

namespace zq {

// Source roi w x h; the destination is ceil(w/2) x ceil(h/2) (down) or
// 2w x 2h (up). Steps in bytes; the buffer is the caller's, sized by the
// GetBufSize queries.
template <Isa I, class T, int Ch>
void ownPyrDown_Gauss5x5(const T* src, ptrdiff_t srcStep, T* dst, ptrdiff_t dstStep, ZeqiSize roi, Zeq8u* buffer);
template <Isa I, class T, int Ch>
void ownPyrUp_Gauss5x5(const T* src, ptrdiff_t srcStep, T* dst, ptrdiff_t dstStep, ZeqiSize roi, Zeq8u* buffer);

}  // namespace zq

#endif
