// Fast arctangent of vectors (x, y), in degrees (kernel in zqcvfastarctan.isa.cpp).
#include "filters/zqcvfastarctan.h"
#include "core/zqcvcore.h"

ZeqStatus zeqibFastArctan_32f(const Zeq32f* pSrcY, const Zeq32f* pSrcX, Zeq32f* pDst, int len) {
    ZQ_CHECK(zq::nonNull(pSrcY, pSrcX, pDst));
    ZQ_CHECK(zq::length(len));
    zq::dispatch([&](auto tier) { zq::ownFastArctan_32f<tier.value>(pSrcY, pSrcX, pDst, len); });
    return zeqStsOk;
}
