// Thresholds of float images: clamping at the threshold, or replacing the
// values on one side of it by another value.
#include "core/zqcvsimd.h"

namespace {

// The two comparison codes: values below the threshold are affected (0), or
// values above it (4).
constexpr int kCmpLess = 0;
constexpr int kCmpGreater = 4;

bool supportedCmpOp(int cmpOp) { return cmpOp == kCmpLess || cmpOp == kCmpGreater; }

// The processor's packed max(x, t) or min(x, t), threshold second: a NaN in x
// and any zero against a zero threshold give the threshold.
template <bool Greater>
struct Clamp {
    __m128 tv;
    Zeq32f t;
    __m128 operator()(__m128 x) const { return Greater ? _mm_min_ps(x, tv) : _mm_max_ps(x, tv); }
    Zeq32f operator()(Zeq32f x) const { return Greater ? (x < t ? x : t) : (x > t ? x : t); }
};

// Values strictly beyond the threshold become `value`; equal values and NaNs stay.
template <bool Greater>
struct Replace {
    __m128 tv, vv;
    Zeq32f t, v;
    __m128 operator()(__m128 x) const {
        const __m128 hit = Greater ? _mm_cmpgt_ps(x, tv) : _mm_cmplt_ps(x, tv);
        return _mm_or_ps(_mm_and_ps(hit, vv), _mm_andnot_ps(hit, x));
    }
    Zeq32f operator()(Zeq32f x) const { return (Greater ? x > t : x < t) ? v : x; }
};

void ownzeqiThreshold_32f_C1(const Zeq32f* src, int srcStep, Zeq32f* dst, int dstStep, ZeqiSize roi, Zeq32f t,
                             bool greater) {
    if (greater) zq::mapRegion(src, srcStep, dst, dstStep, roi.width, roi.height, Clamp<true>{_mm_set1_ps(t), t});
    else zq::mapRegion(src, srcStep, dst, dstStep, roi.width, roi.height, Clamp<false>{_mm_set1_ps(t), t});
}

void ownzeqiThreshold_V_32f_C1(const Zeq32f* src, int srcStep, Zeq32f* dst, int dstStep, ZeqiSize roi, Zeq32f t,
                               Zeq32f v, bool greater) {
    const __m128 tv = _mm_set1_ps(t), vv = _mm_set1_ps(v);
    if (greater) zq::mapRegion(src, srcStep, dst, dstStep, roi.width, roi.height, Replace<true>{tv, vv, t, v});
    else zq::mapRegion(src, srcStep, dst, dstStep, roi.width, roi.height, Replace<false>{tv, vv, t, v});
}

}  // namespace

ZeqStatus zeqiThreshold_32f_C1R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep, ZeqiSize roiSize,
                                Zeq32f threshold, int cmpOp) {
    ZQ_CHECK(zq::nonNull(pSrc, pDst));
    ZQ_CHECK(zq::roiSize(roiSize));
    ZQ_CHECK(zq::stepsPositive(srcStep, dstStep));
    if (!supportedCmpOp(cmpOp)) return zeqStsNotSupported;
    ownzeqiThreshold_32f_C1(pSrc, srcStep, pDst, dstStep, roiSize, threshold, cmpOp == kCmpGreater);
    return zeqStsOk;
}

// The comparison code is tested before anything else.
ZeqStatus zeqiThreshold_Val_32f_C1R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep, ZeqiSize roiSize,
                                    Zeq32f threshold, Zeq32f value, int cmpOp) {
    if (!supportedCmpOp(cmpOp)) return zeqStsNotSupported;
    ZQ_CHECK(zq::nonNull(pSrc, pDst));
    ZQ_CHECK(zq::roiSize(roiSize));
    ZQ_CHECK(zq::stepsPositive(srcStep, dstStep));
    ownzeqiThreshold_V_32f_C1(pSrc, srcStep, pDst, dstStep, roiSize, threshold, value, cmpOp == kCmpGreater);
    return zeqStsOk;
}

ZeqStatus zeqiThreshold_LT_32f_C1R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep, ZeqiSize roiSize,
                                   Zeq32f threshold) {
    return zeqiThreshold_32f_C1R(pSrc, srcStep, pDst, dstStep, roiSize, threshold, kCmpLess);
}

ZeqStatus zeqiThreshold_LTVal_32f_C1R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep, ZeqiSize roiSize,
                                      Zeq32f threshold, Zeq32f value) {
    return zeqiThreshold_Val_32f_C1R(pSrc, srcStep, pDst, dstStep, roiSize, threshold, value, kCmpLess);
}

ZeqStatus zeqiThreshold_LT_32f_C1IR(Zeq32f* pSrcDst, int srcDstStep, ZeqiSize roiSize, Zeq32f threshold) {
    return zeqiThreshold_LT_32f_C1R(pSrcDst, srcDstStep, pSrcDst, srcDstStep, roiSize, threshold);
}

ZeqStatus zeqiThreshold_LTVal_32f_C1IR(Zeq32f* pSrcDst, int srcDstStep, ZeqiSize roiSize, Zeq32f threshold,
                                       Zeq32f value) {
    return zeqiThreshold_LTVal_32f_C1R(pSrcDst, srcDstStep, pSrcDst, srcDstStep, roiSize, threshold, value);
}
