// Distance transform kernel, a template over the tier (zqcvdistance.isa.cpp).
#ifndef ZQCV_DISTANCE_H
#define ZQCV_DISTANCE_H

#include "core/zqcvisa.h"
#include "zeqcv.h"

#include <cstddef>
#include <type_traits>

namespace zq {

// Integer distances add in int, float ones in float.
template <class D>
using DistanceSum = typename std::conditional<std::is_same<D, Zeq32f>::value, float, int>::type;

// For x in [x0, x1): p[x] = min(p[x], p[x + off[k]] + w[k]) over the n moves,
// each to another row (so no move reads a pixel this call writes). Integer
// weights are at most the ceiling plus one; sums clamp at the ceiling.
template <Isa I, class D>
void ownDistanceAcross(D* p, int x0, int x1, const ptrdiff_t* off, const DistanceSum<D>* w, int n);

}  // namespace zq

#endif
