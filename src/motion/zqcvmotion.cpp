// Motion-history update: a float image of timestamps, updated in place from
// the silhouette of the current frame. Set silhouette pixels take the
// timestamp; elsewhere history older than timestamp - duration is cleared.
//
// The kernel is in zqcvmotion.isa.cpp, built for every tier.
#include "core/zqcvcore.h"
#include "motion/zqcvmotion.h"

namespace {

// The whole call for silhouettes of type S. 8u silhouettes: only the history
// step is tested for oddness; 16u and 32f: both. Rows advance by whole
// elements, an odd remainder of a float step is dropped.
template <class S>
ZeqStatus updateMotionHistory(const S* sil, int silStep, Zeq32f* mhi, int mhiStep, ZeqiSize roi,
                              Zeq32f timestamp, Zeq32f duration) {
    ZQ_CHECK(zq::nonNull(sil, mhi));
    ZQ_CHECK(zq::roiSize(roi));
    ZQ_CHECK(zq::stepsAtLeast(zq::rowBytes<S>(roi.width), silStep));
    ZQ_CHECK(zq::stepsAtLeast(zq::rowBytes<Zeq32f>(roi.width), mhiStep));
    if constexpr (sizeof(S) == 1) ZQ_CHECK(zq::stepsEven(mhiStep));
    else ZQ_CHECK(zq::stepsEven(silStep, mhiStep));
    // Negative or NaN; the timestamp itself may be anything.
    if (!(duration >= 0.0f)) return zeqStsOutOfRange;
    const Zeq32f oldest = timestamp - duration;
    zq::dispatch([&](auto tier) {
        zq::ownUpdateMotionHistory<tier.value>(sil, zq::wholeElementStep<S>(silStep), mhi,
                                               zq::wholeElementStep<Zeq32f>(mhiStep), roi, timestamp, oldest);
    });
    return zeqStsOk;
}

}  // namespace

#define ZQ_UPDATE_MOTION_HISTORY(NAME, S)                                                                    \
    ZeqStatus NAME(const S* pSilhouette, int silhStep, Zeq32f* pMHI, int mhiStep, ZeqiSize roiSize,        \
                   Zeq32f timestamp, Zeq32f mhiDuration) {                                                 \
        return updateMotionHistory(pSilhouette, silhStep, pMHI, mhiStep, roiSize, timestamp, mhiDuration); \
    }
ZQ_UPDATE_MOTION_HISTORY(zeqiUpdateMotionHistory_8u32f_C1IR, Zeq8u)
ZQ_UPDATE_MOTION_HISTORY(zeqiUpdateMotionHistory_16u32f_C1IR, Zeq16u)
ZQ_UPDATE_MOTION_HISTORY(zeqiUpdateMotionHistory_32f_C1IR, Zeq32f)
