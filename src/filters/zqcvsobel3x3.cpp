// Fixed 3x3 derivative filters (Sobel and Scharr weights) on one-channel
// images, 8-bit to 16-bit or float to float.
//
// Only the region is read; a missing neighbour is the nearest pixel of the
// region. One engine serves all 21 functions (kernels in zqcvsobel3x3.h).
#include "filters/zqcvsobel3x3.h"
#include "core/zqcvcore.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <utility>

namespace {

using zq::Deriv3x3;
using zq::Finish3x3;

// Scalars through memcpy: float rows may start at any even byte offset.
inline int loadScalar(const Zeq8u* p) { return *p; }
inline int loadScalar(const Zeq8s* p) { return *p; }
inline float loadScalar(const Zeq32f* p) {
    float v;
    std::memcpy(&v, p, sizeof v);
    return v;
}
inline void storeScalar(Zeq16s* p, int v, Finish3x3 f) {
    const Zeq16s r = Zeq16s(v >> f.shift);
    std::memcpy(p, &r, sizeof r);
}
inline void storeScalar(Zeq32f* p, float v, Finish3x3 f) {
    const float r = v * f.scale;
    std::memcpy(p, &r, sizeof r);
}

// One destination row from the source rows above, at and below it (already
// replicated at the top and bottom). Columns 0 and width-1, and rows too
// narrow for a register, run scalar with the columns replicated too.
template <Deriv3x3 D, class T, class Dst>
void ownFilterRow3x3(const T* const rows[3], Dst* d, int width, Finish3x3 f) {
    using K = zq::KernelOf<D>;
    using S = decltype(loadScalar(rows[0]));
    auto scalarAt = [&](int x) {
        const int l = std::max(x - 1, 0), r = std::min(x + 1, width - 1);
        const S p[3][3] = {{loadScalar(rows[0] + l), loadScalar(rows[0] + x), loadScalar(rows[0] + r)},
                           {loadScalar(rows[1] + l), loadScalar(rows[1] + x), loadScalar(rows[1] + r)},
                           {loadScalar(rows[2] + l), loadScalar(rows[2] + x), loadScalar(rows[2] + r)}};
        storeScalar(d + x, K::apply(p), f);
    };
    // A row too narrow for the tier's registers may still fill SSE2 ones.
    const bool done = zq::dispatch([&](auto tier) { return zq::ownDeriv3x3Interior<tier.value, D>(rows, d, width, f); }) ||
                      zq::ownDeriv3x3Interior<zq::Isa::Sse2, D>(rows, d, width, f);
    if (!done)
        for (int x = 1; x < width - 1; ++x) scalarAt(x);
    scalarAt(0);
    if (width > 1) scalarAt(width - 1);
}

// The whole region. `bottomUp` (origin 1) swaps the rows above and below,
// which negates a vertical difference; only members whose vertical factor is
// a difference take it.
template <Deriv3x3 D, class T, class Dst>
void ownFilter3x3(const T* pSrc, int srcStep, Dst* pDst, int dstStep, ZeqiSize roi, bool bottomUp, Finish3x3 f) {
    if (zq::KernelOf<D>::isZero(roi)) {
        for (int y = 0; y < roi.height; ++y)
            std::memset(zq::row(pDst, dstStep, y), 0, sizeof(Dst) * size_t(roi.width));
        return;
    }
    for (int y = 0; y < roi.height; ++y) {
        const T* rows[3] = {zq::row(pSrc, srcStep, std::max(y - 1, 0)), zq::row(pSrc, srcStep, y),
                            zq::row(pSrc, srcStep, std::min(y + 1, roi.height - 1))};
        if (bottomUp) std::swap(rows[0], rows[2]);
        ownFilterRow3x3<D>(rows, zq::row(pDst, dstStep, y), roi.width, f);
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
template <Deriv3x3 D, class Src, class Dst>
ZeqStatus derivative(const Src* pSrc, int srcStep, Dst* pDst, int dstStep, ZeqiSize roi, std::optional<int> origin,
                     std::optional<int> scaleShift) {
    ZQ_CHECK(checkImages(pSrc, srcStep, pDst, dstStep, roi));
    if (origin) ZQ_CHECK(checkOrigin(*origin));
    if (scaleShift) ZQ_CHECK(checkScaleShift(*scaleShift));
    // Integer sums fit 13 bits, so shifting by 15 gives what any larger shift would.
    const int shift = scaleShift.value_or(0);
    const Finish3x3 finish{std::min(shift, 15), scharrScale(shift)};
    ownFilter3x3<D>(pSrc, srcStep, pDst, dstStep, roi, origin.value_or(0) == 1, finish);
    return zeqStsOk;
}

constexpr std::nullopt_t none = std::nullopt;

}  // namespace

ZeqStatus zeqiSobel3x3_Dx_8u16s_C1R(const Zeq8u* pSrc, int srcStep, Zeq16s* pDst, int dstStep, ZeqiSize roi) {
    return derivative<Deriv3x3::SobelDx>(pSrc, srcStep, pDst, dstStep, roi, none, none);
}

ZeqStatus zeqiSobel3x3_Dx_8s16s_C1R(const Zeq8s* pSrc, int srcStep, Zeq16s* pDst, int dstStep, ZeqiSize roi) {
    return derivative<Deriv3x3::SobelDx>(pSrc, srcStep, pDst, dstStep, roi, none, none);
}

ZeqStatus zeqiSobel3x3_Dx_32f_C1R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep, ZeqiSize roi) {
    return derivative<Deriv3x3::SobelDx>(pSrc, srcStep, pDst, dstStep, roi, none, none);
}

ZeqStatus zeqiSobel3x3_Dy_8u16s_C1R(const Zeq8u* pSrc, int srcStep, Zeq16s* pDst, int dstStep, int origin,
                                    ZeqiSize roi) {
    return derivative<Deriv3x3::SobelDy>(pSrc, srcStep, pDst, dstStep, roi, origin, none);
}

ZeqStatus zeqiSobel3x3_Dy_8s16s_C1R(const Zeq8s* pSrc, int srcStep, Zeq16s* pDst, int dstStep, int origin,
                                    ZeqiSize roi) {
    return derivative<Deriv3x3::SobelDy>(pSrc, srcStep, pDst, dstStep, roi, origin, none);
}

ZeqStatus zeqiSobel3x3_Dy_32f_C1R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep, int origin,
                                  ZeqiSize roi) {
    return derivative<Deriv3x3::SobelDy>(pSrc, srcStep, pDst, dstStep, roi, origin, none);
}

ZeqStatus zeqiSobel3x3_D2x_8u16s_C1R(const Zeq8u* pSrc, int srcStep, Zeq16s* pDst, int dstStep, ZeqiSize roi) {
    return derivative<Deriv3x3::SobelD2x>(pSrc, srcStep, pDst, dstStep, roi, none, none);
}

ZeqStatus zeqiSobel3x3_D2x_8s16s_C1R(const Zeq8s* pSrc, int srcStep, Zeq16s* pDst, int dstStep, ZeqiSize roi) {
    return derivative<Deriv3x3::SobelD2x>(pSrc, srcStep, pDst, dstStep, roi, none, none);
}

ZeqStatus zeqiSobel3x3_D2x_32f_C1R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep, ZeqiSize roi) {
    return derivative<Deriv3x3::SobelD2x>(pSrc, srcStep, pDst, dstStep, roi, none, none);
}

ZeqStatus zeqiSobel3x3_D2y_8u16s_C1R(const Zeq8u* pSrc, int srcStep, Zeq16s* pDst, int dstStep, ZeqiSize roi) {
    return derivative<Deriv3x3::SobelD2y>(pSrc, srcStep, pDst, dstStep, roi, none, none);
}

ZeqStatus zeqiSobel3x3_D2y_8s16s_C1R(const Zeq8s* pSrc, int srcStep, Zeq16s* pDst, int dstStep, ZeqiSize roi) {
    return derivative<Deriv3x3::SobelD2y>(pSrc, srcStep, pDst, dstStep, roi, none, none);
}

ZeqStatus zeqiSobel3x3_D2y_32f_C1R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep, ZeqiSize roi) {
    return derivative<Deriv3x3::SobelD2y>(pSrc, srcStep, pDst, dstStep, roi, none, none);
}

ZeqStatus zeqiSobel3x3_DxDy_8u16s_C1R(const Zeq8u* pSrc, int srcStep, Zeq16s* pDst, int dstStep, int origin,
                                      ZeqiSize roi) {
    return derivative<Deriv3x3::SobelDxDy>(pSrc, srcStep, pDst, dstStep, roi, origin, none);
}

ZeqStatus zeqiSobel3x3_DxDy_8s16s_C1R(const Zeq8s* pSrc, int srcStep, Zeq16s* pDst, int dstStep, int origin,
                                      ZeqiSize roi) {
    return derivative<Deriv3x3::SobelDxDy>(pSrc, srcStep, pDst, dstStep, roi, origin, none);
}

ZeqStatus zeqiSobel3x3_DxDy_32f_C1R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep, int origin,
                                    ZeqiSize roi) {
    return derivative<Deriv3x3::SobelDxDy>(pSrc, srcStep, pDst, dstStep, roi, origin, none);
}

ZeqStatus zeqiScharr_Dx_8u16s_C1R(const Zeq8u* pSrc, int srcStep, Zeq16s* pDst, int dstStep,
                                  ZeqiSize roi, int scaleShift) {
    return derivative<Deriv3x3::ScharrDx>(pSrc, srcStep, pDst, dstStep, roi, none, scaleShift);
}

ZeqStatus zeqiScharr_Dx_8s16s_C1R(const Zeq8s* pSrc, int srcStep, Zeq16s* pDst, int dstStep,
                                  ZeqiSize roi, int scaleShift) {
    return derivative<Deriv3x3::ScharrDx>(pSrc, srcStep, pDst, dstStep, roi, none, scaleShift);
}

ZeqStatus zeqiScharr_Dx_32f_C1R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep,
                                ZeqiSize roi, int scaleShift) {
    return derivative<Deriv3x3::ScharrDx>(pSrc, srcStep, pDst, dstStep, roi, none, scaleShift);
}

ZeqStatus zeqiScharr_Dy_8u16s_C1R(const Zeq8u* pSrc, int srcStep, Zeq16s* pDst, int dstStep, int origin,
                                  ZeqiSize roi, int scaleShift) {
    return derivative<Deriv3x3::ScharrDy>(pSrc, srcStep, pDst, dstStep, roi, origin, scaleShift);
}

ZeqStatus zeqiScharr_Dy_8s16s_C1R(const Zeq8s* pSrc, int srcStep, Zeq16s* pDst, int dstStep, int origin,
                                  ZeqiSize roi, int scaleShift) {
    return derivative<Deriv3x3::ScharrDy>(pSrc, srcStep, pDst, dstStep, roi, origin, scaleShift);
}

ZeqStatus zeqiScharr_Dy_32f_C1R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep, int origin,
                                ZeqiSize roi, int scaleShift) {
    return derivative<Deriv3x3::ScharrDy>(pSrc, srcStep, pDst, dstStep, roi, origin, scaleShift);
}

