// The 8-bit to float row conversion, one template over the tier
// (zqcvconvert.isa.cpp).
#ifndef ZQCV_CONVERT_H
#define ZQCV_CONVERT_H

#include "core/zqcvisa.h"
#include "zeqcv.h"

#include <cstddef>

namespace zq {

// dst[i] = float(src[i]) for i < n; dst may start at any byte. With Stream
// the SSE2 tier writes past the caches (the caller ends with a store fence);
// the wider tiers always use cached stores.
template <Isa I, bool Stream, class S>
void ownConvertRow_32f(const S* src, Zeq32f* dst, ptrdiff_t n);

}  // namespace zq

#endif
