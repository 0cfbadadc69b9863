// The part of a distance pass that runs a register at a time: each pixel's
// minimum with the candidates from the rows before it. Saturating integer
// sums clamp at the ceiling (255 or 65535), as the scalar sums do.
#include "core/zqcvcore.h"
#include "core/zqcvregs.h"
#include "distance/zqcvdistance.h"

#include <algorithm>

namespace {

using zq::Isa;

// Unsigned 16-bit lanes: saturating sum, and the minimum as a - (a -sat b)
// (SSE2 has no unsigned 16-bit minimum).
template <Isa I, class V>
inline V addsU16(V a, V b) {
    if constexpr (I == Isa::Sse2) return _mm_adds_epu16(a, b);
    else if constexpr (I == Isa::Avx2) return _mm256_adds_epu16(a, b);
    else return _mm512_adds_epu16(a, b);
}
template <Isa I, class V>
inline V minU16(V a, V b) {
    if constexpr (I == Isa::Sse2) return _mm_sub_epi16(a, _mm_subs_epu16(a, b));
    else if constexpr (I == Isa::Avx2) return _mm256_min_epu16(a, b);
    else return _mm512_min_epu16(a, b);
}

template <Isa I, class D>
ptrdiff_t across(D* p, ptrdiff_t x, ptrdiff_t x1, const ptrdiff_t* off, const zq::DistanceSum<D>* w, int n) {
    using R = zq::Regs<I>;
    if constexpr (std::is_same<D, Zeq32f>::value) {
        using F = typename R::F;
        constexpr int L = R::template lanes<float>;
        F wt[8];
        for (int k = 0; k < n; ++k) wt[k] = R::set1f(w[k]);
        for (; x + L <= x1; x += L) {
            F v = R::loadf(p + x);
            for (int k = 0; k < n; ++k) v = R::min(v, R::add(R::loadf(p + x + off[k]), wt[k]));
            R::storef(p + x, v);
        }
    } else {
        using V = typename R::I;
        constexpr int L = R::template lanes<D>;
        V wt[8];
        for (int k = 0; k < n; ++k) {
            const int c = std::min(w[k], int(D(~D(0))));
            wt[k] = sizeof(D) == 1 ? R::set1_8(c) : R::set1_16(c);
        }
        for (; x + L <= x1; x += L) {
            V v = R::load(p + x);
            for (int k = 0; k < n; ++k) {
                const V c = R::load(p + x + off[k]);
                if constexpr (sizeof(D) == 1) v = R::minU8(v, R::addsU8(c, wt[k]));
                else v = minU16<I>(v, addsU16<I>(c, wt[k]));
            }
            R::store(p + x, v);
        }
    }
    return x;
}

}  // namespace

namespace zq {

template <Isa I, class D>
void ownDistanceAcross(D* p, int x0, int x1, const ptrdiff_t* off, const DistanceSum<D>* w, int n) {
    ptrdiff_t x = across<I>(p, x0, x1, off, w, n);
    for (; x < x1; ++x) {
        DistanceSum<D> v = loadu(p + x);
        for (int k = 0; k < n; ++k) v = std::min(v, DistanceSum<D>(loadu(p + x + off[k])) + w[k]);
        storeu(p + x, D(v));
    }
}

template void ownDistanceAcross<ZQ_ISA, Zeq8u>(Zeq8u*, int, int, const ptrdiff_t*, const int*, int);
template void ownDistanceAcross<ZQ_ISA, Zeq16u>(Zeq16u*, int, int, const ptrdiff_t*, const int*, int);
template void ownDistanceAcross<ZQ_ISA, Zeq32f>(Zeq32f*, int, int, const ptrdiff_t*, const float*, int);

}  // namespace zq
