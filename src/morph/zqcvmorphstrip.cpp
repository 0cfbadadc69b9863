// Strip dilation and erosion through a morphology state: per channel, the
// maximum (dilate) or minimum (erode) over the state's structuring element,
// replicated borders, an image given whole or as a sequence of strips. The
// kernel is in zqcvmorph.isa.cpp, built for every tier.
#include "core/zqcvcore.h"
#include "morph/zqcvmorph.h"

#include <type_traits>

namespace {

enum class Form { Mask, Rect };

// Checks, then the kernel. The cross and ellipse forms are the mask form:
// the state already holds their mask.
template <bool Max, Form F, int Ch, class T>
ZeqStatus strip(const T* pSrc, int srcStep, T* pDst, int dstStep, ZeqiSize* pRoi, ZeqiMorphState* pState,
                int stripFlag) {
    ZQ_CHECK(zq::nonNull(pSrc, pDst, pRoi, pState));
    ZQ_CHECK(zq::roiSize(*pRoi));
    ZQ_CHECK(zq::stepsAtLeast(zq::rowBytes<T>(pRoi->width, Ch), srcStep, dstStep));
    const int dataType = std::is_same<T, Zeq32f>::value ? zeq32f : zeq8u;
    const bool rectState = pState->kind == zq::kMorphRect || pState->kind == zq::kMorphRect3x3;
    if (pState->dataType != dataType || pState->channels != Ch || rectState != (F == Form::Rect) ||
        pState->roiWidth < pRoi->width)
        return zeqStsContextMatch;
    if (stripFlag != 0 && stripFlag != 1 && stripFlag != 2 && stripFlag != 4) return zeqStsBadArg;
    zq::dispatch([&](auto tier) {
        zq::ownMorphStrip<tier.value, T, Max>(pSrc, srcStep, pDst, dstStep, pRoi, pState, stripFlag);
    });
    return zeqStsOk;
}

}  // namespace

#define ZQ_MORPH_STRIP(NAME, MAX, FORM, T, CH)                                                          \
    ZeqStatus NAME(const T* pSrc, int srcStep, T* pDst, int dstStep, ZeqiSize* roiSize,                \
                   ZeqiMorphState* pState, int stripFlag) {                                             \
        return strip<MAX, FORM, CH>(pSrc, srcStep, pDst, dstStep, roiSize, pState, stripFlag);          \
    }
#define ZQ_MORPH_CROSS(NAME, MASK_FORM, T)                                                              \
    ZeqStatus NAME(const T* pSrc, int srcStep, T* pDst, int dstStep, ZeqiSize* roiSize,                \
                   ZeqiMorphState* pState, int stripFlag) {                                             \
        return MASK_FORM(pSrc, srcStep, pDst, dstStep, roiSize, pState, stripFlag);                     \
    }

ZQ_MORPH_STRIP(zeqiDilateStrip_8u_C1R, true, Form::Mask, Zeq8u, 1)
ZQ_MORPH_STRIP(zeqiDilateStrip_8u_C3R, true, Form::Mask, Zeq8u, 3)
ZQ_MORPH_STRIP(zeqiDilateStrip_8u_C4R, true, Form::Mask, Zeq8u, 4)
ZQ_MORPH_STRIP(zeqiDilateStrip_32f_C1R, true, Form::Mask, Zeq32f, 1)
ZQ_MORPH_STRIP(zeqiDilateStrip_32f_C3R, true, Form::Mask, Zeq32f, 3)
ZQ_MORPH_STRIP(zeqiDilateStrip_32f_C4R, true, Form::Mask, Zeq32f, 4)
ZQ_MORPH_STRIP(zeqiErodeStrip_8u_C1R, false, Form::Mask, Zeq8u, 1)
ZQ_MORPH_STRIP(zeqiErodeStrip_8u_C3R, false, Form::Mask, Zeq8u, 3)
ZQ_MORPH_STRIP(zeqiErodeStrip_8u_C4R, false, Form::Mask, Zeq8u, 4)
ZQ_MORPH_STRIP(zeqiErodeStrip_32f_C1R, false, Form::Mask, Zeq32f, 1)
ZQ_MORPH_STRIP(zeqiErodeStrip_32f_C3R, false, Form::Mask, Zeq32f, 3)
ZQ_MORPH_STRIP(zeqiErodeStrip_32f_C4R, false, Form::Mask, Zeq32f, 4)

ZQ_MORPH_STRIP(zeqiDilateStrip_Rect_8u_C1R, true, Form::Rect, Zeq8u, 1)
ZQ_MORPH_STRIP(zeqiDilateStrip_Rect_8u_C3R, true, Form::Rect, Zeq8u, 3)
ZQ_MORPH_STRIP(zeqiDilateStrip_Rect_8u_C4R, true, Form::Rect, Zeq8u, 4)
ZQ_MORPH_STRIP(zeqiDilateStrip_Rect_32f_C1R, true, Form::Rect, Zeq32f, 1)
ZQ_MORPH_STRIP(zeqiDilateStrip_Rect_32f_C3R, true, Form::Rect, Zeq32f, 3)
ZQ_MORPH_STRIP(zeqiDilateStrip_Rect_32f_C4R, true, Form::Rect, Zeq32f, 4)
ZQ_MORPH_STRIP(zeqiErodeStrip_Rect_8u_C1R, false, Form::Rect, Zeq8u, 1)
ZQ_MORPH_STRIP(zeqiErodeStrip_Rect_8u_C3R, false, Form::Rect, Zeq8u, 3)
ZQ_MORPH_STRIP(zeqiErodeStrip_Rect_8u_C4R, false, Form::Rect, Zeq8u, 4)
ZQ_MORPH_STRIP(zeqiErodeStrip_Rect_32f_C1R, false, Form::Rect, Zeq32f, 1)
ZQ_MORPH_STRIP(zeqiErodeStrip_Rect_32f_C3R, false, Form::Rect, Zeq32f, 3)
ZQ_MORPH_STRIP(zeqiErodeStrip_Rect_32f_C4R, false, Form::Rect, Zeq32f, 4)

// The cross and the ellipse are masks in the state: these pass everything on.
ZQ_MORPH_CROSS(zeqiDilateStrip_Cross_8u_C1R, zeqiDilateStrip_8u_C1R, Zeq8u)
ZQ_MORPH_CROSS(zeqiDilateStrip_Cross_8u_C3R, zeqiDilateStrip_8u_C3R, Zeq8u)
ZQ_MORPH_CROSS(zeqiDilateStrip_Cross_8u_C4R, zeqiDilateStrip_8u_C4R, Zeq8u)
ZQ_MORPH_CROSS(zeqiDilateStrip_Cross_32f_C1R, zeqiDilateStrip_32f_C1R, Zeq32f)
ZQ_MORPH_CROSS(zeqiDilateStrip_Cross_32f_C3R, zeqiDilateStrip_32f_C3R, Zeq32f)
ZQ_MORPH_CROSS(zeqiDilateStrip_Cross_32f_C4R, zeqiDilateStrip_32f_C4R, Zeq32f)
ZQ_MORPH_CROSS(zeqiErodeStrip_Cross_8u_C1R, zeqiErodeStrip_8u_C1R, Zeq8u)
ZQ_MORPH_CROSS(zeqiErodeStrip_Cross_8u_C3R, zeqiErodeStrip_8u_C3R, Zeq8u)
ZQ_MORPH_CROSS(zeqiErodeStrip_Cross_8u_C4R, zeqiErodeStrip_8u_C4R, Zeq8u)
ZQ_MORPH_CROSS(zeqiErodeStrip_Cross_32f_C1R, zeqiErodeStrip_32f_C1R, Zeq32f)
ZQ_MORPH_CROSS(zeqiErodeStrip_Cross_32f_C3R, zeqiErodeStrip_32f_C3R, Zeq32f)
ZQ_MORPH_CROSS(zeqiErodeStrip_Cross_32f_C4R, zeqiErodeStrip_32f_C4R, Zeq32f)
ZQ_MORPH_CROSS(zeqiDilateStrip_Ellipse_8u_C1R, zeqiDilateStrip_8u_C1R, Zeq8u)
ZQ_MORPH_CROSS(zeqiDilateStrip_Ellipse_8u_C3R, zeqiDilateStrip_8u_C3R, Zeq8u)
ZQ_MORPH_CROSS(zeqiDilateStrip_Ellipse_8u_C4R, zeqiDilateStrip_8u_C4R, Zeq8u)
ZQ_MORPH_CROSS(zeqiDilateStrip_Ellipse_32f_C1R, zeqiDilateStrip_32f_C1R, Zeq32f)
ZQ_MORPH_CROSS(zeqiDilateStrip_Ellipse_32f_C3R, zeqiDilateStrip_32f_C3R, Zeq32f)
ZQ_MORPH_CROSS(zeqiDilateStrip_Ellipse_32f_C4R, zeqiDilateStrip_32f_C4R, Zeq32f)
ZQ_MORPH_CROSS(zeqiErodeStrip_Ellipse_8u_C1R, zeqiErodeStrip_8u_C1R, Zeq8u)
ZQ_MORPH_CROSS(zeqiErodeStrip_Ellipse_8u_C3R, zeqiErodeStrip_8u_C3R, Zeq8u)
ZQ_MORPH_CROSS(zeqiErodeStrip_Ellipse_8u_C4R, zeqiErodeStrip_8u_C4R, Zeq8u)
ZQ_MORPH_CROSS(zeqiErodeStrip_Ellipse_32f_C1R, zeqiErodeStrip_32f_C1R, Zeq32f)
ZQ_MORPH_CROSS(zeqiErodeStrip_Ellipse_32f_C3R, zeqiErodeStrip_32f_C3R, Zeq32f)
ZQ_MORPH_CROSS(zeqiErodeStrip_Ellipse_32f_C4R, zeqiErodeStrip_32f_C4R, Zeq32f)
