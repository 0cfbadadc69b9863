// Minimum and maximum filters: each destination pixel takes, per channel, the
// extreme of the source pixels under a rectangle placed with its anchor on
// it. The caller supplies the border: the source is read outside the roi as
// far as the mask reaches. The kernel is in zqcvmorph.isa.cpp.
#include "core/zqcvcore.h"
#include "morph/zqcvmorph.h"

#include <type_traits>

namespace {

// Checks, the 1x1 copy, then the kernel. Steps are only tested for being
// below 1; float rows advance by whole elements.
template <bool Max, int Ch, class T, class Copy>
ZeqStatus filter(const T* pSrc, int srcStep, T* pDst, int dstStep, ZeqiSize roi, ZeqiSize mask, ZeqiPoint anchor,
                 Copy copy) {
    ZQ_CHECK(zq::nonNull(pSrc, pDst));
    ZQ_CHECK(zq::roiSize(roi));
    ZQ_CHECK(zq::stepsPositive(srcStep, dstStep));
    if (mask.width < 1 || mask.height < 1) return zeqStsMaskSize;
    if (anchor.x < 0 || anchor.x >= mask.width || anchor.y < 0 || anchor.y >= mask.height) return zeqStsAnchor;
    if (mask.width == 1 && mask.height == 1) return copy(pSrc, srcStep, pDst, dstStep, roi);
    return zq::dispatch([&](auto tier) {
        return zq::ownFilterMax<tier.value, T, Max>(pSrc, zq::wholeElementStep<T>(srcStep), pDst,
                                                    zq::wholeElementStep<T>(dstStep), roi, mask, anchor, Ch);
    });
}

}  // namespace

// The four-channel float forms copy a 1x1 mask with the copy that leaves
// the fourth channel alone, yet filter it for every other mask.
#define ZQ_FILTER_MAX(NAME, MAX, T, CH, COPY)                                                           \
    ZeqStatus NAME(const T* pSrc, int srcStep, T* pDst, int dstStep, ZeqiSize roiSize, ZeqiSize maskSize, \
                   ZeqiPoint anchor) {                                                                  \
        return filter<MAX, CH>(pSrc, srcStep, pDst, dstStep, roiSize, maskSize, anchor, COPY);          \
    }

ZQ_FILTER_MAX(zeqiFilterMax_8u_C1R, true, Zeq8u, 1, zeqiCopy_8u_C1R)
ZQ_FILTER_MAX(zeqiFilterMax_8u_C3R, true, Zeq8u, 3, zeqiCopy_8u_C3R)
ZQ_FILTER_MAX(zeqiFilterMax_8u_C4R, true, Zeq8u, 4, zeqiCopy_8u_C4R)
ZQ_FILTER_MAX(zeqiFilterMax_32f_C1R, true, Zeq32f, 1, zeqiCopy_32f_C1R)
ZQ_FILTER_MAX(zeqiFilterMax_32f_C3R, true, Zeq32f, 3, zeqiCopy_32f_C3R)
ZQ_FILTER_MAX(zeqiFilterMax_32f_C4R, true, Zeq32f, 4, zeqiCopy_32f_AC4R)
ZQ_FILTER_MAX(zeqiFilterMin_8u_C1R, false, Zeq8u, 1, zeqiCopy_8u_C1R)
ZQ_FILTER_MAX(zeqiFilterMin_8u_C3R, false, Zeq8u, 3, zeqiCopy_8u_C3R)
ZQ_FILTER_MAX(zeqiFilterMin_8u_C4R, false, Zeq8u, 4, zeqiCopy_8u_C4R)
ZQ_FILTER_MAX(zeqiFilterMin_32f_C1R, false, Zeq32f, 1, zeqiCopy_32f_C1R)
ZQ_FILTER_MAX(zeqiFilterMin_32f_C3R, false, Zeq32f, 3, zeqiCopy_32f_C3R)
ZQ_FILTER_MAX(zeqiFilterMin_32f_C4R, false, Zeq32f, 4, zeqiCopy_32f_AC4R)
