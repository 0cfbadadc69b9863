// One-dimensional kernels behind the vector helpers, shared with the image
// primitives that run them row by row. They trust their arguments.
#ifndef ZQCV_VECTOR_H
#define ZQCV_VECTOR_H

#include "core/zqcvcore.h"
#include "core/zqcvisa.h"

namespace zq {

void ownsSet_8u(Zeq8u val, Zeq8u* dst, ptrdiff_t len);
void ownsZero_8u(Zeq8u* dst, ptrdiff_t len);

// Forward byte copy; src == dst is harmless. With `stream` the SSE2 path
// writes the bulk with non-temporal stores, for blocks the caller will not
// read again soon; wider registers, where present, are faster with cached stores.
void ownsCopy_8u(const Zeq8u* src, Zeq8u* dst, ptrdiff_t len, bool stream = false);

// The same with the tier's registers, for len of at least four registers
// (zqcvvector.isa.cpp).
template <Isa I>
void ownsCopyWide_8u(const Zeq8u* src, Zeq8u* dst, ptrdiff_t len);

// dst[i] = dividend[i] / divisor[i]; true when some divisor was zero.
bool ownzeqsDiv_32f(const Zeq32f* divisor, const Zeq32f* dividend, Zeq32f* dst, ptrdiff_t len);

void ownzeqsSqr_32f(const Zeq32f* src, Zeq32f* dst, ptrdiff_t len);

// True when some input had its sign bit set.
bool ownzeqsSqrt_32f(const Zeq32f* src, Zeq32f* dst, ptrdiff_t len);
inline bool ownzeqsSqrt_32f_I(Zeq32f* srcDst, ptrdiff_t len) { return ownzeqsSqrt_32f(srcDst, srcDst, len); }

}  // namespace zq

#endif
