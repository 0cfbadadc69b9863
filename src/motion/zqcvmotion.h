// The motion-history kernel, one template over the tier (zqcvmotion.isa.cpp).
#ifndef ZQCV_MOTION_H
#define ZQCV_MOTION_H

#include "core/zqcvisa.h"
#include "zeqcv.h"

#include <cstddef>

namespace zq {

// The region, steps in bytes (whole elements). `oldest` is timestamp minus
// duration, already rounded to float by the caller. Silhouettes of 8u and
// 16u use the integer order of the history bits, 32f ones float compares.
template <Isa I, class S>
void ownUpdateMotionHistory(const S* sil, ptrdiff_t silStep, Zeq32f* mhi, ptrdiff_t mhiStep, ZeqiSize roi,
                            Zeq32f timestamp, Zeq32f oldest);

}  // namespace zq

#endif
