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
#include "core/zqcvsimd.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <utility>

namespace {

// ---- arithmetic on scalars and registers, one spelling for the factors ----

inline int add(int a, int b) { return a + b; }
inline float add(float a, float b) { return a + b; }
inline __m128i add(__m128i a, __m128i b) { return _mm_add_epi16(a, b); }
inline __m128 add(__m128 a, __m128 b) { return _mm_add_ps(a, b); }

inline int sub(int a, int b) { return a - b; }
inline float sub(float a, float b) { return a - b; }
inline __m128i sub(__m128i a, __m128i b) { return _mm_sub_epi16(a, b); }
inline __m128 sub(__m128 a, __m128 b) { return _mm_sub_ps(a, b); }

template <int K> inline int times(int a) { return K * a; }
template <int K> inline float times(float a) { return float(K) * a; }
template <int K> inline __m128i times(__m128i a) {
    if constexpr (K == 2) return _mm_add_epi16(a, a);
    else return _mm_mullo_epi16(a, _mm_set1_epi16(K));
}
template <int K> inline __m128 times(__m128 a) { return _mm_mul_ps(_mm_set1_ps(float(K)), a); }

// ---- the three-tap factors, applied to (previous, centre, next) ----

struct Difference {  // (-1, 0, 1)
    static constexpr bool smoothing = false;
    template <class R> static R apply(R a, R, R c) { return sub(c, a); }
};
struct SecondDifference {  // (1, -2, 1)
    static constexpr bool smoothing = false;
    template <class R> static R apply(R a, R b, R c) { return sub(add(a, c), times<2>(b)); }
};
struct Smooth121 {
    static constexpr bool smoothing = true;
    template <class R> static R apply(R a, R b, R c) { return add(add(a, times<2>(b)), c); }
};
struct Smooth3_10_3 {
    static constexpr bool smoothing = true;
    template <class R> static R apply(R a, R b, R c) { return add(add(times<3>(a), times<10>(b)), times<3>(c)); }
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

    // at(j, i): the pixel in row j (0 above, 1 centre, 2 below) and column i (0 left, 1 centre, 2 right).
    template <class R, class At>
    static R apply(const At& at) {
        if constexpr (horizontalFirst)
            return V::apply(H::apply(at(0, 0), at(0, 1), at(0, 2)), H::apply(at(1, 0), at(1, 1), at(1, 2)),
                            H::apply(at(2, 0), at(2, 1), at(2, 2)));
        else
            return H::apply(V::apply(at(0, 0), at(1, 0), at(2, 0)), V::apply(at(0, 1), at(1, 1), at(2, 1)),
                            V::apply(at(0, 2), at(1, 2), at(2, 2)));
    }
};

using SobelDx = Kernel<Difference, Smooth121>;
using SobelDy = Kernel<Smooth121, Difference>;
using SobelD2x = Kernel<SecondDifference, Smooth121>;
using SobelD2y = Kernel<Smooth121, SecondDifference>;
using SobelDxDy = Kernel<Difference, Difference>;
using ScharrDx = Kernel<Difference, Smooth3_10_3>;
using ScharrDy = Kernel<Smooth3_10_3, Difference>;

// ---- pixel types: scalar and register loads, stores and the final scaling ----

// Scalar access through memcpy: float rows may start at any even byte offset.
template <class T>
inline T loadScalar(const T* p) {
    T v;
    std::memcpy(&v, p, sizeof(T));
    return v;
}
template <class T>
inline void storeScalar(T* p, T v) {
    std::memcpy(p, &v, sizeof(T));
}

// 8-bit sources widen to 16-bit lanes, 8 pixels a register; results are
// shifted right arithmetically (shift 0 for the Sobel members).
template <class T>
struct IntegerPixels {
    using Src = T;
    using Dst = Zeq16s;
    using Scalar = int;
    using Reg = __m128i;
    static constexpr int lanes = 8;

    int shift;
    explicit IntegerPixels(int scaleShift) : shift(std::min(scaleShift, 15)) {}

    static int load(const T* p) { return int(*p); }
    static __m128i load(const T* p, Reg) {
        const __m128i v = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(p));
        if constexpr (std::is_signed<T>::value) return _mm_srai_epi16(_mm_unpacklo_epi8(v, v), 8);
        else return _mm_unpacklo_epi8(v, _mm_setzero_si128());
    }
    void store(Zeq16s* p, int v) const { storeScalar(p, Zeq16s(v >> shift)); }
    void store(Zeq16s* p, __m128i v) const {
        _mm_storeu_si128(reinterpret_cast<__m128i*>(p), _mm_sra_epi16(v, _mm_cvtsi32_si128(shift)));
    }
};

// Float in and out, 4 pixels a register; results are multiplied by `scale`
// (1 for the Sobel members, which leaves every value as it is).
struct FloatPixels {
    using Src = Zeq32f;
    using Dst = Zeq32f;
    using Scalar = float;
    using Reg = __m128;
    static constexpr int lanes = 4;

    float scale;
    __m128 scales;
    explicit FloatPixels(float s) : scale(s), scales(_mm_set1_ps(s)) {}

    static float load(const Zeq32f* p) { return loadScalar(p); }
    static __m128 load(const Zeq32f* p, Reg) { return _mm_loadu_ps(p); }
    void store(Zeq32f* p, float v) const { storeScalar(p, v * scale); }
    void store(Zeq32f* p, __m128 v) const { _mm_storeu_ps(p, _mm_mul_ps(v, scales)); }
};

// ---- the engine ----

// One destination row from the source rows above, at and below it (already
// replicated at the top and bottom). Columns 0 and width-1 and rows too
// narrow for a register run scalar; the interior runs a register at a time,
// its last register overlapping the one before when the width is not a
// multiple of the lanes (same values, written twice).
template <class K, class P>
void ownFilterRow3x3(const typename P::Src* const rows[3], typename P::Dst* d, int width, const P& px) {
    using S = typename P::Scalar;
    using R = typename P::Reg;
    constexpr int L = P::lanes;
    auto scalarAt = [&](int x) {
        const int xs[3] = {std::max(x - 1, 0), x, std::min(x + 1, width - 1)};
        px.store(d + x, K::template apply<S>([&](int j, int i) { return P::load(rows[j] + xs[i]); }));
    };
    if (width < L + 2) {
        for (int x = 0; x < width; ++x) scalarAt(x);
        return;
    }
    auto vectorAt = [&](int x) {
        px.store(d + x, K::template apply<R>([&](int j, int i) { return P::load(rows[j] + x - 1 + i, R()); }));
    };
    scalarAt(0);
    int x = 1;
    for (; x + L <= width - 1; x += L) vectorAt(x);
    if (x < width - 1) vectorAt(width - 1 - L);
    scalarAt(width - 1);
}

// The whole region. `bottomUp` (origin 1) swaps the rows above and below,
// which negates a vertical difference; only members whose vertical factor is
// a difference take it.
template <class K, class P>
void ownFilter3x3(const typename P::Src* pSrc, int srcStep, typename P::Dst* pDst, int dstStep, ZeqiSize roi,
                  bool bottomUp, const P& px) {
    using Dst = typename P::Dst;
    if (K::isZero(roi)) {
        for (int y = 0; y < roi.height; ++y)
            std::memset(zq::row(pDst, dstStep, y), 0, sizeof(Dst) * size_t(roi.width));
        return;
    }
    for (int y = 0; y < roi.height; ++y) {
        const typename P::Src* rows[3] = {zq::row(pSrc, srcStep, std::max(y - 1, 0)), zq::row(pSrc, srcStep, y),
                                          zq::row(pSrc, srcStep, std::min(y + 1, roi.height - 1))};
        if (bottomUp) std::swap(rows[0], rows[2]);
        ownFilterRow3x3<K>(rows, zq::row(pDst, dstStep, y), roi.width, px);
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
    const bool bottomUp = origin.value_or(0) == 1;
    const int shift = scaleShift.value_or(0);
    if constexpr (std::is_same<Src, Zeq32f>::value)
        ownFilter3x3<K>(pSrc, srcStep, pDst, dstStep, roi, bottomUp, FloatPixels(scharrScale(shift)));
    else
        ownFilter3x3<K>(pSrc, srcStep, pDst, dstStep, roi, bottomUp, IntegerPixels<Src>(shift));
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

