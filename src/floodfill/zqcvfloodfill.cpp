// Flood fill of one-channel 8u and 32f images, in place, from a seed: the
// plain fill takes the 4- or 8-connected pixels equal to the seed's value,
// the gradient fill those reachable through steps whose value change stays
// inside [-minDelta, +maxDelta] of the pixel stepped from. The engine is in
// zqcvfloodfill.isa.cpp, built for every tier.
#include "core/zqcvcore.h"
#include "floodfill/zqcvfloodfill.h"

#include <climits>

namespace {

template <class T>
ZeqStatus checkImage(const T* pImage, int imageStep, ZeqiSize roi, ZeqiPoint seed, const void* pRegion,
                     const Zeq8u* pBuffer) {
    ZQ_CHECK(zq::nonNull(pImage, pRegion, pBuffer));
    ZQ_CHECK(zq::roiSize(roi));
    ZQ_CHECK(zq::stepsAtLeast(zq::rowBytes<T>(roi.width), imageStep));
    if constexpr (std::is_same<T, Zeq32f>::value) ZQ_CHECK(zq::stepsEven(imageStep));
    if (seed.x < 0 || seed.x >= roi.width || seed.y < 0 || seed.y >= roi.height) return zeqStsOutOfRange;
    return zeqStsOk;
}

// Checks passed: the plain fill returns at once when the seed holds newVal
// already, writing nothing.
template <bool Eight, class T, class Range>
ZeqStatus run(T* pImage, int imageStep, ZeqiSize roi, ZeqiPoint seed, T newVal, Range range,
              ZeqiConnectedComp* pRegion, Zeq8u* pBuffer) {
    if (std::is_same<Range, zq::NoRange>::value && zq::loadu(zq::row(pImage, imageStep, seed.y) + seed.x) == newVal)
        return zeqStsOk;
    zq::dispatch([&](auto tier) {
        *pRegion = zq::ownFloodFill<tier.value, T, Eight>(pImage, imageStep, roi, seed, newVal, range, pBuffer);
    });
    return zeqStsOk;
}

// The work buffer sizes, as the fills carve them; 64-bit, refused past int.
ZeqStatus getSize(ZeqiSize roi, int* pBufSize, bool gradient) {
    ZQ_CHECK(zq::nonNull(pBufSize));
    ZQ_CHECK(zq::roiSize(roi));
    const int64_t w = roi.width, h = roi.height;
    if (h * w > INT_MAX) return zeqStsSize;  // before the products that could leave 64 bits
    const int64_t bytes = (gradient ? (w + 2) * (h + 2) : 0) + ((h * 24 * w) >> 2) + 8;
    if (bytes > INT_MAX) return zeqStsSize;
    *pBufSize = int(bytes);
    return zeqStsOk;
}

template <bool Eight>
ZeqStatus fill8u(Zeq8u* pImage, int imageStep, ZeqiSize roi, ZeqiPoint seed, int newVal, ZeqiConnectedComp* pRegion,
                 Zeq8u* pBuffer) {
    ZQ_CHECK(checkImage(pImage, imageStep, roi, seed, pRegion, pBuffer));
    if (newVal < 0 || newVal > 255) return zeqStsBadArg;
    return run<Eight>(pImage, imageStep, roi, seed, Zeq8u(newVal), zq::NoRange{}, pRegion, pBuffer);
}

template <bool Eight>
ZeqStatus fill32f(Zeq32f* pImage, int imageStep, ZeqiSize roi, ZeqiPoint seed, Zeq32f newVal,
                  ZeqiConnectedComp* pRegion, Zeq8u* pBuffer) {
    ZQ_CHECK(checkImage(pImage, imageStep, roi, seed, pRegion, pBuffer));
    return run<Eight>(pImage, imageStep, roi, seed, newVal, zq::NoRange{}, pRegion, pBuffer);
}

template <bool Eight>
ZeqStatus fillGrad8u(Zeq8u* pImage, int imageStep, ZeqiSize roi, ZeqiPoint seed, int newVal, int minDelta,
                     int maxDelta, ZeqiConnectedComp* pRegion, Zeq8u* pBuffer) {
    ZQ_CHECK(checkImage(pImage, imageStep, roi, seed, pRegion, pBuffer));
    if (newVal < 0 || newVal > 255) return zeqStsBadArg;
    if (minDelta < 0 || maxDelta < 0 || int64_t(minDelta) + maxDelta > 255) return zeqStsOutOfRange;
    return run<Eight>(pImage, imageStep, roi, seed, Zeq8u(newVal), zq::FloodRange8u{minDelta, maxDelta}, pRegion,
                      pBuffer);
}

template <bool Eight>
ZeqStatus fillGrad32f(Zeq32f* pImage, int imageStep, ZeqiSize roi, ZeqiPoint seed, Zeq32f newVal, Zeq32f minDelta,
                      Zeq32f maxDelta, ZeqiConnectedComp* pRegion, Zeq8u* pBuffer) {
    ZQ_CHECK(checkImage(pImage, imageStep, roi, seed, pRegion, pBuffer));
    if (!(minDelta >= 0.0f) || !(maxDelta >= 0.0f)) return zeqStsOutOfRange;
    const zq::FloodRange32f range{(minDelta - maxDelta) / 2.0f, (minDelta + maxDelta) / 2.0f};
    return run<Eight>(pImage, imageStep, roi, seed, newVal, range, pRegion, pBuffer);
}

}  // namespace

ZeqStatus zeqiFloodFillGetSize(ZeqiSize roiSize, int* pBufSize) { return getSize(roiSize, pBufSize, false); }
ZeqStatus zeqiFloodFillGetSize_Grad(ZeqiSize roiSize, int* pBufSize) { return getSize(roiSize, pBufSize, true); }

ZeqStatus zeqiFloodFill_4Con_8u_C1IR(Zeq8u* pImage, int imageStep, ZeqiSize roiSize, ZeqiPoint seed, int newVal,
                                     ZeqiConnectedComp* pRegion, Zeq8u* pBuffer) {
    return fill8u<false>(pImage, imageStep, roiSize, seed, newVal, pRegion, pBuffer);
}
ZeqStatus zeqiFloodFill_8Con_8u_C1IR(Zeq8u* pImage, int imageStep, ZeqiSize roiSize, ZeqiPoint seed, int newVal,
                                     ZeqiConnectedComp* pRegion, Zeq8u* pBuffer) {
    return fill8u<true>(pImage, imageStep, roiSize, seed, newVal, pRegion, pBuffer);
}
ZeqStatus zeqiFloodFill_4Con_32f_C1IR(Zeq32f* pImage, int imageStep, ZeqiSize roiSize, ZeqiPoint seed,
                                      Zeq32f newVal, ZeqiConnectedComp* pRegion, Zeq8u* pBuffer) {
    return fill32f<false>(pImage, imageStep, roiSize, seed, newVal, pRegion, pBuffer);
}
ZeqStatus zeqiFloodFill_8Con_32f_C1IR(Zeq32f* pImage, int imageStep, ZeqiSize roiSize, ZeqiPoint seed,
                                      Zeq32f newVal, ZeqiConnectedComp* pRegion, Zeq8u* pBuffer) {
    return fill32f<true>(pImage, imageStep, roiSize, seed, newVal, pRegion, pBuffer);
}
ZeqStatus zeqiFloodFill_Grad4Con_8u_C1IR(Zeq8u* pImage, int imageStep, ZeqiSize roiSize, ZeqiPoint seed,
                                         int newVal, int minDelta, int maxDelta, ZeqiConnectedComp* pRegion,
                                         Zeq8u* pBuffer) {
    return fillGrad8u<false>(pImage, imageStep, roiSize, seed, newVal, minDelta, maxDelta, pRegion, pBuffer);
}
ZeqStatus zeqiFloodFill_Grad8Con_8u_C1IR(Zeq8u* pImage, int imageStep, ZeqiSize roiSize, ZeqiPoint seed,
                                         int newVal, int minDelta, int maxDelta, ZeqiConnectedComp* pRegion,
                                         Zeq8u* pBuffer) {
    return fillGrad8u<true>(pImage, imageStep, roiSize, seed, newVal, minDelta, maxDelta, pRegion, pBuffer);
}
ZeqStatus zeqiFloodFill_Grad4Con_32f_C1IR(Zeq32f* pImage, int imageStep, ZeqiSize roiSize, ZeqiPoint seed,
                                          Zeq32f newVal, Zeq32f minDelta, Zeq32f maxDelta,
                                          ZeqiConnectedComp* pRegion, Zeq8u* pBuffer) {
    return fillGrad32f<false>(pImage, imageStep, roiSize, seed, newVal, minDelta, maxDelta, pRegion, pBuffer);
}
ZeqStatus zeqiFloodFill_Grad8Con_32f_C1IR(Zeq32f* pImage, int imageStep, ZeqiSize roiSize, ZeqiPoint seed,
                                          Zeq32f newVal, Zeq32f minDelta, Zeq32f maxDelta,
                                          ZeqiConnectedComp* pRegion, Zeq8u* pBuffer) {
    return fillGrad32f<true>(pImage, imageStep, roiSize, seed, newVal, minDelta, maxDelta, pRegion, pBuffer);
}
