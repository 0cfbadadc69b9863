// The accumulation kernel, one template over the tier (zqcvaccumulate.isa.cpp).
#ifndef ZQCV_ACCUMULATE_H
#define ZQCV_ACCUMULATE_H

#include "core/zqcvisa.h"
#include "zeqcv.h"

#include <cstddef>

namespace zq {

enum class AccOp { Add, Square, Product, Weighted };

// The region, steps in bytes (whole elements). Single-source operations pass
// their source as b too; unmasked ones pass a null mask.
template <Isa I, AccOp O, bool Masked, class S>
void ownAccumulate(const S* a, ptrdiff_t aStep, const S* b, ptrdiff_t bStep, const Zeq8u* m, ptrdiff_t mStep,
                   Zeq32f* acc, ptrdiff_t accStep, ZeqiSize roi, Zeq32f alpha);

}  // namespace zq

#endif
