// Fast arctangent: direction angles in degrees of (x, y) vectors, about 0.15
// degree accurate, a register of elements at a time and no branches.
//
// The AVX-512 tier keeps 256-bit registers: the 512-bit reciprocal estimate
// is a different (more precise) one, and the results must not depend on the
// tier. The 128- and 256-bit estimates are the same.
#include "filters/zqcvfastarctan.h"
#include "core/zqcvregs.h"

#include <cstring>

namespace {

using zq::Isa;

constexpr Isa regsOf(Isa i) { return i == Isa::Avx512 ? Isa::Avx2 : i; }

// Bit patterns of the quadratic's coefficients, so the values are exact.
template <class R>
typename R::F constant(uint32_t bits) {
    return R::casti_f(R::set1_32(int(bits)));
}

// mask ? around - v : v; AVX-512 subtracts under the mask.
template <Isa I, class F>
inline F mirror(F v, float around, F a, F b) {  // mask: a < b
    using R = zq::Regs<regsOf(I)>;
    if constexpr (I == Isa::Avx512)
        return _mm256_mask_sub_ps(v, _mm256_cmp_ps_mask(a, b, _CMP_LT_OQ), _mm256_set1_ps(around), v);
    else return R::select(R::cmplt(a, b), R::sub(R::set1f(around), v), v);
}

// A register of angles. The quadratic covers the first half-octant (t = min
// / max in [0, 1]); the three corrections mirror it into the other seven by
// strict sign and order comparisons, so -0 counts as non-negative.
template <Isa I>
inline typename zq::Regs<regsOf(I)>::F angles(typename zq::Regs<regsOf(I)>::F y, typename zq::Regs<regsOf(I)>::F x) {
    using R = zq::Regs<regsOf(I)>;
    using F = typename R::F;
    const F absMask = constant<R>(0x7fffffffu);
    const F ax = R::andf(x, absMask), ay = R::andf(y, absMask);
    // The floor keeps 0 / 0 away: t is then 0.
    const F mx = R::max(R::max(ax, ay), constant<R>(0x322BCC77u));  // 1e-8f
    const F mn = R::min(ax, ay);
    // Reciprocal estimate refined by one Newton step: r' = 2r - mx r r.
    F r0;
    if constexpr (R::bytes == 16) r0 = _mm_rcp_ps(mx);
    else r0 = _mm256_rcp_ps(mx);
    const F r = R::sub(R::add(r0, r0), R::mul(R::mul(mx, r0), r0));
    const F t = R::mul(mn, r);
    F a = R::mul(R::add(R::mul(constant<R>(0xC17D02D3u), t), constant<R>(0x42746075u)), t);
    a = R::add(a, constant<R>(0xBE0FDF57u));
    const F zero = R::zerof();
    a = mirror<I>(a, 90.0f, ax, ay);
    a = mirror<I>(a, 180.0f, x, zero);
    return mirror<I>(a, 360.0f, y, zero);
}

}  // namespace

namespace zq {

template <Isa I>
void ownFastArctan_32f(const Zeq32f* pSrcY, const Zeq32f* pSrcX, Zeq32f* pDst, int len) {
    using R = Regs<regsOf(I)>;
    constexpr int L = R::template lanes<float>;
    int i = 0;
    for (; i + 2 * L <= len; i += 2 * L) {
        const typename R::F a0 = angles<I>(R::loadf(pSrcY + i), R::loadf(pSrcX + i));
        const typename R::F a1 = angles<I>(R::loadf(pSrcY + i + L), R::loadf(pSrcX + i + L));
        R::storef(pDst + i, a0);
        R::storef(pDst + i + L, a1);
    }
    if (i == len) return;
    // The last elements go through a scratch block so nothing past len is touched.
    for (; i < len; i += L) {
        const int n = len - i < L ? len - i : L;
        float y[L], x[L], a[L];
        for (int k = 0; k < L; ++k) y[k] = x[k] = 1.0f;
        std::memcpy(y, pSrcY + i, sizeof(float) * size_t(n));
        std::memcpy(x, pSrcX + i, sizeof(float) * size_t(n));
        R::storef(a, angles<I>(R::loadf(y), R::loadf(x)));
        std::memcpy(pDst + i, a, sizeof(float) * size_t(n));
    }
}

template void ownFastArctan_32f<ZQ_ISA>(const Zeq32f*, const Zeq32f*, Zeq32f*, int);

}  // namespace zq
