// Whole-region sums of 8u single-channel images, one template over the tier
// (zqcvmean.isa.cpp).
#ifndef ZQCV_MEAN_H
#define ZQCV_MEAN_H

#include "core/zqcvisa.h"
#include "zeqcv.h"

#include <cstdint>

namespace zq {

// Adds each row's sum, taken modulo 2^32 as a signed 32-bit value, to s1 and
// each row's sum of squares to s2. Integer sums are exact: every tier gives
// the same result.
template <Isa I>
void ownSums_8u_C1R(const Zeq8u* src, int srcStep, ZeqiSize roi, int64_t& s1, double& s2);

}  // namespace zq

#endif
