// Fixed 3x3 derivative filters (Sobel and Scharr weights) on one-channel
// images, 8-bit to 16-bit or float to float.
//
// Every member is one separable kernel: a three-tap factor along the row times
// a three-tap factor across rows. Only the region is read; a missing neighbour
// is the nearest pixel of the region. One engine serves all 21 functions:
// a difference factor is applied first and the smoothing factor combines its
// results (DxDy takes the horizontal difference first), which fixes the order
// of the float sums. Integer sums are exact in 16-bit lanes (at most
// 16 x 255 in magnitude), so their order does not matter.
#include "core/zqcvcpu.h"
#include "core/zqcvsimd.h"

#include <immintrin.h>

#include <algorithm>
#include <cstring>
#include <optional>
#include <utility>

// The 256-bit arithmetic below is written once for every register width and
// only ever inlined into functions compiled for AVX2; the note about how such
// values would be passed between functions does not apply.
#pragma GCC diagnostic ignored "-Wpsabi"

namespace {

// Registers as vectors of the compiler, so one spelling of the arithmetic
// serves scalars and every width: 16-bit lanes for the integer members.
typedef short I16x8 __attribute__((vector_size(16)));
typedef short I16x16 __attribute__((vector_size(32)));
typedef float F32x4 __attribute__((vector_size(16)));
typedef float F32x8 __attribute__((vector_size(32)));

#define ZQ_INLINE inline __attribute__((always_inline))
#define ZQ_AVX2 __attribute__((target("avx2")))

// ---- the three-tap factors, applied to (previous, centre, next) ----

struct Difference {  // (-1, 0, 1)
    static constexpr bool smoothing = false;
    template <class R> ZQ_INLINE static R apply(R a, R, R c) { return c - a; }
};
struct SecondDifference {  // (1, -2, 1)
    static constexpr bool smoothing = false;
    template <class R> ZQ_INLINE static R apply(R a, R b, R c) { return (a + c) - b * 2; }
};
struct Smooth121 {
    static constexpr bool smoothing = true;
    template <class R> ZQ_INLINE static R apply(R a, R b, R c) { return (a + b * 2) + c; }
};
struct Smooth3_10_3 {
    static constexpr bool smoothing = true;
    template <class R> ZQ_INLINE static R apply(R a, R b, R c) { return (a * 3 + b * 10) + c * 3; }
};

template <class Horizontal, class Vertical>
struct Kernel {
    using H = Horizontal;
    using V = Vertical;
    // The smoothing factor runs second; with two differences the horizontal one runs first.
    static constexpr bool horizontalFirst = !H::smoothing;
    // A difference across one pixel is zero: such a region is cleared without being read.
    static bool isZero(ZeqiSize roi) {
        return (!H::smoothing && roi.width == 1) || (!V::smoothing && roi.height == 1);
    }

    // p[j][i]: the pixel in row j (0 above, 1 centre, 2 below) and column i (0 left, 1 centre, 2 right).
    template <class R>
    ZQ_INLINE static R apply(const R (&p)[3][3]) {
        if constexpr (horizontalFirst)
            return V::apply(H::apply(p[0][0], p[0][1], p[0][2]), H::apply(p[1][0], p[1][1], p[1][2]),
                            H::apply(p[2][0], p[2][1], p[2][2]));
        else
            return H::apply(V::apply(p[0][0], p[1][0], p[2][0]), V::apply(p[0][1], p[1][1], p[2][1]),
                            V::apply(p[0][2], p[1][2], p[2][2]));
    }
};

using SobelDx = Kernel<Difference, Smooth121>;
using SobelDy = Kernel<Smooth121, Difference>;
using SobelD2x = Kernel<SecondDifference, Smooth121>;
using SobelD2y = Kernel<Smooth121, SecondDifference>;
using SobelDxDy = Kernel<Difference, Difference>;
using ScharrDx = Kernel<Difference, Smooth3_10_3>;
using ScharrDy = Kernel<Smooth3_10_3, Difference>;

// ---- loads and stores at each width ----

// The final step of a result: the Scharr integer members shift right
// arithmetically (the Sobel ones by 0), the float members multiply by
// 1 / 2^shift (1 for Sobel, which leaves every value as it is).
struct Finish {
    int shift;
    float scale;
};

// Scalars through memcpy: float rows may start at any even byte offset.
inline int loadScalar(const Zeq8u* p) { return *p; }
inline int loadScalar(const Zeq8s* p) { return *p; }
inline float loadScalar(const Zeq32f* p) {
    float v;
    std::memcpy(&v, p, sizeof v);
    return v;
}
inline void storeScalar(Zeq16s* p, int v, Finish f) {
    const Zeq16s r = Zeq16s(v >> f.shift);
    std::memcpy(p, &r, sizeof r);
}
inline void storeScalar(Zeq32f* p, float v, Finish f) {
    const float r = v * f.scale;
    std::memcpy(p, &r, sizeof r);
}

// SSE2: 8 pixels widened to 16 bits, or 4 floats.
template <class T> struct Sse2 {
    using Reg = I16x8;
    static constexpr int lanes = 8;
};
template <> struct Sse2<Zeq32f> {
    using Reg = F32x4;
    static constexpr int lanes = 4;
};
inline I16x8 loadSse2(const Zeq8u* p) {
    return I16x8(_mm_unpacklo_epi8(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(p)), _mm_setzero_si128()));
}
inline I16x8 loadSse2(const Zeq8s* p) {
    const __m128i v = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(p));
    return I16x8(_mm_srai_epi16(_mm_unpacklo_epi8(v, v), 8));
}
inline F32x4 loadSse2(const Zeq32f* p) { return F32x4(_mm_loadu_ps(p)); }
inline void storeSse2(Zeq16s* p, I16x8 v, Finish f) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(p), _mm_sra_epi16(__m128i(v), _mm_cvtsi32_si128(f.shift)));
}
inline void storeSse2(Zeq32f* p, F32x4 v, Finish f) { _mm_storeu_ps(p, __m128(v * f.scale)); }

// AVX2: 16 pixels widened to 16 bits, or 8 floats.
template <class T> struct Avx2 {
    using Reg = I16x16;
    static constexpr int lanes = 16;
};
template <> struct Avx2<Zeq32f> {
    using Reg = F32x8;
    static constexpr int lanes = 8;
};
ZQ_AVX2 inline I16x16 loadAvx2(const Zeq8u* p) {
    return I16x16(_mm256_cvtepu8_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(p))));
}
ZQ_AVX2 inline I16x16 loadAvx2(const Zeq8s* p) {
    return I16x16(_mm256_cvtepi8_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(p))));
}
ZQ_AVX2 inline F32x8 loadAvx2(const Zeq32f* p) { return F32x8(_mm256_loadu_ps(p)); }
ZQ_AVX2 inline void storeAvx2(Zeq16s* p, I16x16 v, Finish f) {
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(p), _mm256_sra_epi16(__m256i(v), _mm_cvtsi32_si128(f.shift)));
}
ZQ_AVX2 inline void storeAvx2(Zeq32f* p, F32x8 v, Finish f) { _mm256_storeu_ps(p, __m256(v * f.scale)); }

// ---- the engine ----

// The 3x3 neighbourhood of column x from three row pointers, through `load`.
#define ZQ_NEIGHBOURS(load, rows, x)                                                    \
    {                                                                                   \
        {load(rows[0] + (x) - 1), load(rows[0] + (x)), load(rows[0] + (x) + 1)},        \
            {load(rows[1] + (x) - 1), load(rows[1] + (x)), load(rows[1] + (x) + 1)},    \
            {load(rows[2] + (x) - 1), load(rows[2] + (x)), load(rows[2] + (x) + 1)}     \
    }

// Interior columns 1 .. width-2 a register at a time, the last register
// overlapping the one before when the lanes do not divide the width (same
// values written twice). Needs width >= lanes + 2. The two widths are twins:
// the AVX2 one must be compiled for AVX2 as a whole.
template <class K, class T, class Dst>
void ownFilterInterior_Sse2(const T* const rows[3], Dst* d, int width, Finish f) {
    using R = typename Sse2<T>::Reg;
    constexpr int L = Sse2<T>::lanes;
    for (int x = 1;; x += L) {
        x = std::min(x, width - 1 - L);
        const R p[3][3] = ZQ_NEIGHBOURS(loadSse2, rows, x);
        storeSse2(d + x, K::apply(p), f);
        if (x == width - 1 - L) break;
    }
}
template <class K, class T, class Dst>
ZQ_AVX2 void ownFilterInterior_Avx2(const T* const rows[3], Dst* d, int width, Finish f) {
    using R = typename Avx2<T>::Reg;
    constexpr int L = Avx2<T>::lanes;
    for (int x = 1;; x += L) {
        x = std::min(x, width - 1 - L);
        const R p[3][3] = ZQ_NEIGHBOURS(loadAvx2, rows, x);
        storeAvx2(d + x, K::apply(p), f);
        if (x == width - 1 - L) break;
    }
}

const bool kHaveAvx2 = zq::cpu().avx2;

// One destination row from the source rows above, at and below it (already
// replicated at the top and bottom). Columns 0 and width-1, and rows too
// narrow for a register, run scalar with the columns replicated too.
template <class K, class T, class Dst>
void ownFilterRow3x3(const T* const rows[3], Dst* d, int width, Finish f) {
    using S = decltype(loadScalar(rows[0]));
    auto scalarAt = [&](int x) {
        const int l = std::max(x - 1, 0), r = std::min(x + 1, width - 1);
        const S p[3][3] = {{loadScalar(rows[0] + l), loadScalar(rows[0] + x), loadScalar(rows[0] + r)},
                           {loadScalar(rows[1] + l), loadScalar(rows[1] + x), loadScalar(rows[1] + r)},
                           {loadScalar(rows[2] + l), loadScalar(rows[2] + x), loadScalar(rows[2] + r)}};
        storeScalar(d + x, K::apply(p), f);
    };
    if (kHaveAvx2 && width >= Avx2<T>::lanes + 2) {
        ownFilterInterior_Avx2<K>(rows, d, width, f);
    } else if (width >= Sse2<T>::lanes + 2) {
        ownFilterInterior_Sse2<K>(rows, d, width, f);
    } else {
        for (int x = 1; x < width - 1; ++x) scalarAt(x);
    }
    scalarAt(0);
    if (width > 1) scalarAt(width - 1);
}

// The whole region. `bottomUp` (origin 1) swaps the rows above and below,
// which negates a vertical difference; only members whose vertical factor is
// a difference take it.
template <class K, class T, class Dst>
void ownFilter3x3(const T* pSrc, int srcStep, Dst* pDst, int dstStep, ZeqiSize roi, bool bottomUp, Finish f) {
    if (K::isZero(roi)) {
        for (int y = 0; y < roi.height; ++y)
            std::memset(zq::row(pDst, dstStep, y), 0, sizeof(Dst) * size_t(roi.width));
        return;
    }
    for (int y = 0; y < roi.height; ++y) {
        const T* rows[3] = {zq::row(pSrc, srcStep, std::max(y - 1, 0)), zq::row(pSrc, srcStep, y),
                            zq::row(pSrc, srcStep, std::min(y + 1, roi.height - 1))};
        if (bottomUp) std::swap(rows[0], rows[2]);
        ownFilterRow3x3<K>(rows, zq::row(pDst, dstStep, y), roi.width, f);
    }
}

// ---- checks shared by the members ----

template <class T>
ZeqStatus checkImages(const T* pSrc, int srcStep, const void* pDst, int dstStep, ZeqiSize roi) {
    ZQ_CHECK(zq::nonNull(pSrc, pDst));
    ZQ_CHECK(zq::roiSize(roi));
    if constexpr (std::is_same<T, Zeq32f>::value) {
        ZQ_CHECK(zq::stepsAtLeast(zq::rowBytes<Zeq32f>(roi.width), srcStep, dstStep));
        ZQ_CHECK(zq::stepsEven(srcStep, dstStep));  // oddness only: a step of 4n + 2 is accepted
    } else {
        ZQ_CHECK(zq::stepsAtLeast(zq::rowBytes<T>(roi.width), srcStep));
        ZQ_CHECK(zq::stepsAtLeast(zq::rowBytes<Zeq16s>(roi.width), dstStep));
        ZQ_CHECK(zq::stepsEven(dstStep));
    }
    return zeqStsOk;
}

inline ZeqStatus checkOrigin(int origin) { return (origin == 0 || origin == 1) ? zeqStsOk : zeqStsBadArg; }
inline ZeqStatus checkScaleShift(int scaleShift) { return scaleShift < 0 ? zeqStsBadArg : zeqStsOk; }

// The Scharr float scale, 1 / 2^scaleShift with the shift count taken modulo 32.
inline float scharrScale(int scaleShift) {
    return 1.0f / float(int32_t(uint32_t(1) << (scaleShift & 31)));
}

// ---- one member: checks in order, then one call of the engine ----

// `origin` and `scaleShift` are empty for the members that do not take them.
template <class K, class Src, class Dst>
ZeqStatus derivative(const Src* pSrc, int srcStep, Dst* pDst, int dstStep, ZeqiSize roi, std::optional<int> origin,
                     std::optional<int> scaleShift) {
    ZQ_CHECK(checkImages(pSrc, srcStep, pDst, dstStep, roi));
    if (origin) ZQ_CHECK(checkOrigin(*origin));
    if (scaleShift) ZQ_CHECK(checkScaleShift(*scaleShift));
    // Integer sums fit 13 bits, so shifting by 15 gives what any larger shift would.
    const int shift = scaleShift.value_or(0);
    const Finish finish{std::min(shift, 15), scharrScale(shift)};
    ownFilter3x3<K>(pSrc, srcStep, pDst, dstStep, roi, origin.value_or(0) == 1, finish);
    return zeqStsOk;
}

constexpr std::nullopt_t none = std::nullopt;

}  // namespace

ZeqStatus zeqiSobel3x3_Dx_8u16s_C1R(const Zeq8u* pSrc, int srcStep, Zeq16s* pDst, int dstStep, ZeqiSize roi) {
    return derivative<SobelDx>(pSrc, srcStep, pDst, dstStep, roi, none, none);
}

ZeqStatus zeqiSobel3x3_Dx_8s16s_C1R(const Zeq8s* pSrc, int srcStep, Zeq16s* pDst, int dstStep, ZeqiSize roi) {
    return derivative<SobelDx>(pSrc, srcStep, pDst, dstStep, roi, none, none);
}

ZeqStatus zeqiSobel3x3_Dx_32f_C1R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep, ZeqiSize roi) {
    return derivative<SobelDx>(pSrc, srcStep, pDst, dstStep, roi, none, none);
}

ZeqStatus zeqiSobel3x3_Dy_8u16s_C1R(const Zeq8u* pSrc, int srcStep, Zeq16s* pDst, int dstStep, int origin,
                                    ZeqiSize roi) {
    return derivative<SobelDy>(pSrc, srcStep, pDst, dstStep, roi, origin, none);
}

ZeqStatus zeqiSobel3x3_Dy_8s16s_C1R(const Zeq8s* pSrc, int srcStep, Zeq16s* pDst, int dstStep, int origin,
                                    ZeqiSize roi) {
    return derivative<SobelDy>(pSrc, srcStep, pDst, dstStep, roi, origin, none);
}

ZeqStatus zeqiSobel3x3_Dy_32f_C1R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep, int origin,
                                  ZeqiSize roi) {
    return derivative<SobelDy>(pSrc, srcStep, pDst, dstStep, roi, origin, none);
}

ZeqStatus zeqiSobel3x3_D2x_8u16s_C1R(const Zeq8u* pSrc, int srcStep, Zeq16s* pDst, int dstStep, ZeqiSize roi) {
    return derivative<SobelD2x>(pSrc, srcStep, pDst, dstStep, roi, none, none);
}

ZeqStatus zeqiSobel3x3_D2x_8s16s_C1R(const Zeq8s* pSrc, int srcStep, Zeq16s* pDst, int dstStep, ZeqiSize roi) {
    return derivative<SobelD2x>(pSrc, srcStep, pDst, dstStep, roi, none, none);
}

ZeqStatus zeqiSobel3x3_D2x_32f_C1R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep, ZeqiSize roi) {
    return derivative<SobelD2x>(pSrc, srcStep, pDst, dstStep, roi, none, none);
}

ZeqStatus zeqiSobel3x3_D2y_8u16s_C1R(const Zeq8u* pSrc, int srcStep, Zeq16s* pDst, int dstStep, ZeqiSize roi) {
    return derivative<SobelD2y>(pSrc, srcStep, pDst, dstStep, roi, none, none);
}

ZeqStatus zeqiSobel3x3_D2y_8s16s_C1R(const Zeq8s* pSrc, int srcStep, Zeq16s* pDst, int dstStep, ZeqiSize roi) {
    return derivative<SobelD2y>(pSrc, srcStep, pDst, dstStep, roi, none, none);
}

ZeqStatus zeqiSobel3x3_D2y_32f_C1R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep, ZeqiSize roi) {
    return derivative<SobelD2y>(pSrc, srcStep, pDst, dstStep, roi, none, none);
}

ZeqStatus zeqiSobel3x3_DxDy_8u16s_C1R(const Zeq8u* pSrc, int srcStep, Zeq16s* pDst, int dstStep, int origin,
                                      ZeqiSize roi) {
    return derivative<SobelDxDy>(pSrc, srcStep, pDst, dstStep, roi, origin, none);
}

ZeqStatus zeqiSobel3x3_DxDy_8s16s_C1R(const Zeq8s* pSrc, int srcStep, Zeq16s* pDst, int dstStep, int origin,
                                      ZeqiSize roi) {
    return derivative<SobelDxDy>(pSrc, srcStep, pDst, dstStep, roi, origin, none);
}

ZeqStatus zeqiSobel3x3_DxDy_32f_C1R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep, int origin,
                                    ZeqiSize roi) {
    return derivative<SobelDxDy>(pSrc, srcStep, pDst, dstStep, roi, origin, none);
}

ZeqStatus zeqiScharr_Dx_8u16s_C1R(const Zeq8u* pSrc, int srcStep, Zeq16s* pDst, int dstStep,
                                  ZeqiSize roi, int scaleShift) {
    return derivative<ScharrDx>(pSrc, srcStep, pDst, dstStep, roi, none, scaleShift);
}

ZeqStatus zeqiScharr_Dx_8s16s_C1R(const Zeq8s* pSrc, int srcStep, Zeq16s* pDst, int dstStep,
                                  ZeqiSize roi, int scaleShift) {
    return derivative<ScharrDx>(pSrc, srcStep, pDst, dstStep, roi, none, scaleShift);
}

ZeqStatus zeqiScharr_Dx_32f_C1R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep,
                                ZeqiSize roi, int scaleShift) {
    return derivative<ScharrDx>(pSrc, srcStep, pDst, dstStep, roi, none, scaleShift);
}

ZeqStatus zeqiScharr_Dy_8u16s_C1R(const Zeq8u* pSrc, int srcStep, Zeq16s* pDst, int dstStep, int origin,
                                  ZeqiSize roi, int scaleShift) {
    return derivative<ScharrDy>(pSrc, srcStep, pDst, dstStep, roi, origin, scaleShift);
}

ZeqStatus zeqiScharr_Dy_8s16s_C1R(const Zeq8s* pSrc, int srcStep, Zeq16s* pDst, int dstStep, int origin,
                                  ZeqiSize roi, int scaleShift) {
    return derivative<ScharrDy>(pSrc, srcStep, pDst, dstStep, roi, origin, scaleShift);
}

ZeqStatus zeqiScharr_Dy_32f_C1R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep, int origin,
                                ZeqiSize roi, int scaleShift) {
    return derivative<ScharrDy>(pSrc, srcStep, pDst, dstStep, roi, origin, scaleShift);
}

