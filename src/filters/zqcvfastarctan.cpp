// Fast arctangent: direction angles in degrees of (x, y) vectors, about 0.15
// degree accurate, a register of elements at a time and no branches.
#include "core/zqcvcpu.h"
#include "core/zqcvsimd.h"

#include <immintrin.h>

#include <cstring>

namespace {

// Bit patterns of the quadratic's coefficients, so the values are exact.
__m128 constant(uint32_t bits) { return _mm_castsi128_ps(_mm_set1_epi32(int(bits))); }

// Four angles. The quadratic covers the first half-octant (t = min / max in
// [0, 1]); the three corrections mirror it into the other seven by strict
// sign and order comparisons, so -0 counts as non-negative.
inline __m128 ownFastArctan4(__m128 y, __m128 x) {
    const __m128 absMask = _mm_castsi128_ps(_mm_set1_epi32(0x7fffffff));
    const __m128 ax = _mm_and_ps(x, absMask), ay = _mm_and_ps(y, absMask);
    // The floor keeps 0 / 0 away: t is then 0.
    const __m128 mx = _mm_max_ps(_mm_max_ps(ax, ay), constant(0x322BCC77u));  // 1e-8f
    const __m128 mn = _mm_min_ps(ax, ay);
    // Reciprocal estimate refined by one Newton step: r' = 2r - mx r r.
    const __m128 r0 = _mm_rcp_ps(mx);
    const __m128 r = _mm_sub_ps(_mm_add_ps(r0, r0), _mm_mul_ps(_mm_mul_ps(mx, r0), r0));
    const __m128 t = _mm_mul_ps(mn, r);
    __m128 a = _mm_mul_ps(_mm_add_ps(_mm_mul_ps(constant(0xC17D02D3u), t), constant(0x42746075u)), t);
    a = _mm_add_ps(a, constant(0xBE0FDF57u));

    const __m128 zero = _mm_setzero_ps();
    auto mirror = [](__m128 v, __m128 around, __m128 mask) {  // mask ? around - v : v
        return _mm_or_ps(_mm_and_ps(mask, _mm_sub_ps(around, v)), _mm_andnot_ps(mask, v));
    };
    a = mirror(a, _mm_set1_ps(90.0f), _mm_cmplt_ps(ax, ay));
    a = mirror(a, _mm_set1_ps(180.0f), _mm_cmplt_ps(x, zero));
    return mirror(a, _mm_set1_ps(360.0f), _mm_cmplt_ps(y, zero));
}

#define ZQ_AVX512 __attribute__((target("avx2,avx512f,avx512vl")))

ZQ_AVX512 inline __m256 splat(uint32_t bits) { return _mm256_castsi256_ps(_mm256_set1_epi32(int(bits))); }

// The same arithmetic eight at a time, the corrections as masked subtractions
// (a blend per correction costs more). The reciprocal estimate of the 256-bit
// instruction equals that of the 128-bit one, so results are identical.
ZQ_AVX512 inline __m256 ownFastArctan8(__m256 y, __m256 x) {
    const __m256 absMask = splat(0x7fffffffu);
    const __m256 ax = _mm256_and_ps(x, absMask), ay = _mm256_and_ps(y, absMask);
    const __m256 mx = _mm256_max_ps(_mm256_max_ps(ax, ay), splat(0x322BCC77u));
    const __m256 mn = _mm256_min_ps(ax, ay);
    const __m256 r0 = _mm256_rcp_ps(mx);
    const __m256 r = _mm256_sub_ps(_mm256_add_ps(r0, r0), _mm256_mul_ps(_mm256_mul_ps(mx, r0), r0));
    const __m256 t = _mm256_mul_ps(mn, r);
    __m256 a = _mm256_mul_ps(_mm256_add_ps(_mm256_mul_ps(splat(0xC17D02D3u), t), splat(0x42746075u)), t);
    a = _mm256_add_ps(a, splat(0xBE0FDF57u));

    const __m256 zero = _mm256_setzero_ps();
    a = _mm256_mask_sub_ps(a, _mm256_cmp_ps_mask(ax, ay, _CMP_LT_OQ), _mm256_set1_ps(90.0f), a);
    a = _mm256_mask_sub_ps(a, _mm256_cmp_ps_mask(x, zero, _CMP_LT_OQ), _mm256_set1_ps(180.0f), a);
    return _mm256_mask_sub_ps(a, _mm256_cmp_ps_mask(y, zero, _CMP_LT_OQ), _mm256_set1_ps(360.0f), a);
}

// Whole registers of eight; returns how many elements were done.
ZQ_AVX512 int ownFastArctan_32f_Avx512(const Zeq32f* pSrcY, const Zeq32f* pSrcX, Zeq32f* pDst, int len) {
    int i = 0;
    for (; i + 8 <= len; i += 8)
        _mm256_storeu_ps(pDst + i, ownFastArctan8(_mm256_loadu_ps(pSrcY + i), _mm256_loadu_ps(pSrcX + i)));
    return i;
}

const bool kHaveAvx512 = zq::cpu().avx512;

void ownFastArctan_32f(const Zeq32f* pSrcY, const Zeq32f* pSrcX, Zeq32f* pDst, int len) {
    int i = kHaveAvx512 ? ownFastArctan_32f_Avx512(pSrcY, pSrcX, pDst, len) : 0;
    for (; i + 4 <= len; i += 4)
        _mm_storeu_ps(pDst + i, ownFastArctan4(_mm_loadu_ps(pSrcY + i), _mm_loadu_ps(pSrcX + i)));
    const int rest = len - i;
    if (rest == 0) return;
    // The last elements go through a scratch block so nothing past len is touched.
    alignas(16) float y[4] = {1.0f, 1.0f, 1.0f, 1.0f}, x[4] = {1.0f, 1.0f, 1.0f, 1.0f}, a[4];
    std::memcpy(y, pSrcY + i, sizeof(float) * size_t(rest));
    std::memcpy(x, pSrcX + i, sizeof(float) * size_t(rest));
    _mm_store_ps(a, ownFastArctan4(_mm_load_ps(y), _mm_load_ps(x)));
    std::memcpy(pDst + i, a, sizeof(float) * size_t(rest));
}

}  // namespace

ZeqStatus zeqibFastArctan_32f(const Zeq32f* pSrcY, const Zeq32f* pSrcX, Zeq32f* pDst, int len) {
    ZQ_CHECK(zq::nonNull(pSrcY, pSrcX, pDst));
    ZQ_CHECK(zq::length(len));
    ownFastArctan_32f(pSrcY, pSrcX, pDst, len);
    return zeqStsOk;
}
