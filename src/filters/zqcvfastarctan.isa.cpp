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

// The three octant corrections of the first half-octant's angle a:
//   ax < ay: a = 90 - a;  x < 0: a = 180 - a;  y < 0: a = 360 - a.
// AVX-512 subtracts under compare masks. AVX2 has no cheap variable blend
// (several micro-operations on recent cores), so each correction is one
// s a + c with s = +-1 and c looked up in lane tables by the compare masks (0
// or -1 as indices): the product is exact, so the sum rounds as the
// subtraction does, and a + 0 = a (a is never -0). The last two corrections
// are one: 360 - (180 - a) rounds to 180 + a for every float the middle step
// can see, [-0.15, 90.2] (checked exhaustively).
template <Isa I, class F>
inline F octants(F a, F ax, F ay, F x, F y) {
    using R = zq::Regs<regsOf(I)>;
    const F zero = R::zerof();
    if constexpr (I == Isa::Avx512) {
        a = _mm256_mask_sub_ps(a, _mm256_cmp_ps_mask(ax, ay, _CMP_LT_OQ), _mm256_set1_ps(90.0f), a);
        a = _mm256_mask_sub_ps(a, _mm256_cmp_ps_mask(x, zero, _CMP_LT_OQ), _mm256_set1_ps(180.0f), a);
        return _mm256_mask_sub_ps(a, _mm256_cmp_ps_mask(y, zero, _CMP_LT_OQ), _mm256_set1_ps(360.0f), a);
    } else if constexpr (I == Isa::Avx2) {
        const __m256i m1 = _mm256_castps_si256(_mm256_cmp_ps(ax, ay, _CMP_LT_OQ));
        a = _mm256_fmadd_ps(_mm256_permutevar_ps(_mm256_setr_ps(1, 0, 0, -1, 1, 0, 0, -1), m1), a,
                            _mm256_and_ps(_mm256_castsi256_ps(m1), _mm256_set1_ps(90.0f)));
        // Index m2 + 2 m3 (low two bits): 0 none, 3 x < 0, 2 y < 0, 1 both.
        const __m256i m2 = _mm256_castps_si256(_mm256_cmp_ps(x, zero, _CMP_LT_OQ));
        const __m256i m3 = _mm256_castps_si256(_mm256_cmp_ps(y, zero, _CMP_LT_OQ));
        const __m256i k = _mm256_add_epi32(m2, _mm256_add_epi32(m3, m3));
        return _mm256_fmadd_ps(_mm256_permutevar_ps(_mm256_setr_ps(1, 1, -1, -1, 1, 1, -1, -1), k), a,
                               _mm256_permutevar_ps(_mm256_setr_ps(0, 180, 360, 180, 0, 180, 360, 180), k));
    } else {
        a = R::select(R::cmplt(ax, ay), R::sub(R::set1f(90.0f), a), a);
        a = R::select(R::cmplt(x, zero), R::sub(R::set1f(180.0f), a), a);
        return R::select(R::cmplt(y, zero), R::sub(R::set1f(360.0f), a), a);
    }
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
    // With FMA the last product need not be rounded: 2r - (mx r) r is exact
    // enough that it rounds the same either way (checked for every float mx
    // from the floor up).
    F r;
    if constexpr (I == Isa::Sse2) r = R::sub(R::add(r0, r0), R::mul(R::mul(mx, r0), r0));
    else r = _mm256_fnmadd_ps(R::mul(mx, r0), r0, R::add(r0, r0));
    const F t = R::mul(mn, r);
    F a = R::mul(R::add(R::mul(constant<R>(0xC17D02D3u), t), constant<R>(0x42746075u)), t);
    a = R::add(a, constant<R>(0xBE0FDF57u));
    return octants<I>(a, ax, ay, x, y);
}

}  // namespace

namespace zq {

// Angles of elements [0, n) in pairs of registers, the last elements through a
// scratch block so nothing past n is touched. With Stream, pDst is aligned to
// a cache line and n is a multiple of 16: every line is streamed whole.
template <Isa I, bool Stream>
void anglesRow(const Zeq32f* pSrcY, const Zeq32f* pSrcX, Zeq32f* pDst, int n) {
    using R = Regs<regsOf(I)>;
    constexpr int L = R::template lanes<float>;
    int i = 0;
    for (; i + 2 * L <= n; i += 2 * L) {
        const typename R::F a0 = angles<I>(R::loadf(pSrcY + i), R::loadf(pSrcX + i));
        const typename R::F a1 = angles<I>(R::loadf(pSrcY + i + L), R::loadf(pSrcX + i + L));
        if constexpr (Stream) {
            R::streamf(pDst + i, a0);
            R::streamf(pDst + i + L, a1);
        } else {
            R::storef(pDst + i, a0);
            R::storef(pDst + i + L, a1);
        }
    }
    for (; i < n; i += L) {
        const int k = n - i < L ? n - i : L;
        float y[L], x[L], a[L];
        for (int j = 0; j < L; ++j) y[j] = x[j] = 1.0f;
        std::memcpy(y, pSrcY + i, sizeof(float) * size_t(k));
        std::memcpy(x, pSrcX + i, sizeof(float) * size_t(k));
        R::storef(a, angles<I>(R::loadf(y), R::loadf(x)));
        std::memcpy(pDst + i, a, sizeof(float) * size_t(k));
    }
}

template <Isa I>
void ownFastArctan_32f(const Zeq32f* pSrcY, const Zeq32f* pSrcX, Zeq32f* pDst, int len) {
    // Long outputs are streamed past the caches in whole lines: a streamed
    // line is not read before it is written, a quarter of the memory traffic.
    const uintptr_t addr = reinterpret_cast<uintptr_t>(pDst);
    if (ptrdiff_t(len) * 4 < kStreamBytes || (addr & 3) != 0) {
        anglesRow<I, false>(pSrcY, pSrcX, pDst, len);
        return;
    }
    const int head = int((64 - (addr & 63)) & 63) / 4;
    const int body = (len - head) & ~15;
    anglesRow<I, false>(pSrcY, pSrcX, pDst, head);
    anglesRow<I, true>(pSrcY + head, pSrcX + head, pDst + head, body);
    _mm_sfence();
    anglesRow<I, false>(pSrcY + head + body, pSrcX + head + body, pDst + head + body, len - head - body);
}

template void ownFastArctan_32f<ZQ_ISA>(const Zeq32f*, const Zeq32f*, Zeq32f*, int);

}  // namespace zq
