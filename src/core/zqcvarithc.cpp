// Float image arithmetic in place: with a constant, with a second image,
// division, square and square root.
#include "core/zqcvsimd.h"
#include "core/zqcvvector.h"

namespace {

struct Add {
    __m128 operator()(__m128 a, __m128 b) const { return _mm_add_ps(a, b); }
    Zeq32f operator()(Zeq32f a, Zeq32f b) const { return a + b; }
};
struct Sub {
    __m128 operator()(__m128 a, __m128 b) const { return _mm_sub_ps(a, b); }
    Zeq32f operator()(Zeq32f a, Zeq32f b) const { return a - b; }
};
struct Mul {
    __m128 operator()(__m128 a, __m128 b) const { return _mm_mul_ps(a, b); }
    Zeq32f operator()(Zeq32f a, Zeq32f b) const { return a * b; }
};

// x op value for every element of a region.
template <class Op>
struct WithValue {
    __m128 splat;
    Zeq32f value;
    __m128 operator()(__m128 x) const { return Op()(x, splat); }
    Zeq32f operator()(Zeq32f x) const { return Op()(x, value); }
};

template <class Op>
void ownsConstant_32f_I(Zeq32f value, Zeq32f* p, int step, ZeqiSize roi) {
    zq::mapRegion<Zeq32f>(p, step, p, step, roi.width, roi.height, WithValue<Op>{_mm_set1_ps(value), value});
}
void ownsAddC_32f_I(Zeq32f value, Zeq32f* p, int step, ZeqiSize roi) { ownsConstant_32f_I<Add>(value, p, step, roi); }
void ownsSubC_32f_I(Zeq32f value, Zeq32f* p, int step, ZeqiSize roi) { ownsConstant_32f_I<Sub>(value, p, step, roi); }
void ownsMulC_32f_I(Zeq32f value, Zeq32f* p, int step, ZeqiSize roi) { ownsConstant_32f_I<Mul>(value, p, step, roi); }

// srcDst = srcDst op src.
template <class Op>
void ownsImage_32f_I(const Zeq32f* src, int srcStep, Zeq32f* srcDst, int srcDstStep, ZeqiSize roi) {
    zq::mapRegion(static_cast<const Zeq32f*>(srcDst), srcDstStep, src, srcStep, srcDst, srcDstStep, roi.width,
                  roi.height, Op());
}
void ownsAdd_32f_I(const Zeq32f* s, int ss, Zeq32f* d, int ds, ZeqiSize roi) { ownsImage_32f_I<Add>(s, ss, d, ds, roi); }
void ownsSub_32f_I(const Zeq32f* s, int ss, Zeq32f* d, int ds, ZeqiSize roi) { ownsImage_32f_I<Sub>(s, ss, d, ds, roi); }

template <void (*Kernel)(Zeq32f, Zeq32f*, int, ZeqiSize)>
ZeqStatus withConstant(Zeq32f value, Zeq32f* pSrcDst, int srcDstStep, ZeqiSize roi) {
    ZQ_CHECK(zq::nonNull(pSrcDst));
    ZQ_CHECK(zq::roiSize(roi));
    ZQ_CHECK(zq::stepsPositive(srcDstStep));
    Kernel(value, pSrcDst, srcDstStep, roi);
    return zeqStsOk;
}

template <void (*Kernel)(const Zeq32f*, int, Zeq32f*, int, ZeqiSize)>
ZeqStatus withImage(const Zeq32f* pSrc, int srcStep, Zeq32f* pSrcDst, int srcDstStep, ZeqiSize roi) {
    ZQ_CHECK(zq::nonNull(pSrc, pSrcDst));
    ZQ_CHECK(zq::roiSize(roi));
    ZQ_CHECK(zq::stepsPositive(srcStep, srcDstStep));
    Kernel(pSrc, srcStep, pSrcDst, srcDstStep, roi);
    return zeqStsOk;
}

// Row by row, so each row forms its groups of four from its own alignment.
bool ownzeqiDiv_32f(const Zeq32f* divisor, int divisorStep, const Zeq32f* dividend, int dividendStep, Zeq32f* dst,
                    int dstStep, ZeqiSize roi) {
    bool zeroSeen = false;
    for (int y = 0; y < roi.height; ++y)
        zeroSeen |= zq::ownzeqsDiv_32f(zq::row(divisor, divisorStep, y), zq::row(dividend, dividendStep, y),
                                       zq::row(dst, dstStep, y), roi.width);
    return zeroSeen;
}

}  // namespace

ZeqStatus zeqiAddC_32f_C1IR(Zeq32f value, Zeq32f* pSrcDst, int srcDstStep, ZeqiSize roiSize) {
    return withConstant<ownsAddC_32f_I>(value, pSrcDst, srcDstStep, roiSize);
}

ZeqStatus zeqiSubC_32f_C1IR(Zeq32f value, Zeq32f* pSrcDst, int srcDstStep, ZeqiSize roiSize) {
    return withConstant<ownsSubC_32f_I>(value, pSrcDst, srcDstStep, roiSize);
}

ZeqStatus zeqiMulC_32f_C1IR(Zeq32f value, Zeq32f* pSrcDst, int srcDstStep, ZeqiSize roiSize) {
    return withConstant<ownsMulC_32f_I>(value, pSrcDst, srcDstStep, roiSize);
}

ZeqStatus zeqiAdd_32f_C1IR(const Zeq32f* pSrc, int srcStep, Zeq32f* pSrcDst, int srcDstStep, ZeqiSize roiSize) {
    return withImage<ownsAdd_32f_I>(pSrc, srcStep, pSrcDst, srcDstStep, roiSize);
}

ZeqStatus zeqiSub_32f_C1IR(const Zeq32f* pSrc, int srcStep, Zeq32f* pSrcDst, int srcDstStep, ZeqiSize roiSize) {
    return withImage<ownsSub_32f_I>(pSrc, srcStep, pSrcDst, srcDstStep, roiSize);
}

ZeqStatus zeqiDiv_32f_C1R(const Zeq32f* pSrc1, int src1Step, const Zeq32f* pSrc2, int src2Step, Zeq32f* pDst,
                          int dstStep, ZeqiSize roiSize) {
    ZQ_CHECK(zq::nonNull(pSrc1, pSrc2, pDst));
    ZQ_CHECK(zq::roiSize(roiSize));
    ZQ_CHECK(zq::stepsPositive(src1Step, src2Step, dstStep));
    return ownzeqiDiv_32f(pSrc1, src1Step, pSrc2, src2Step, pDst, dstStep, roiSize) ? zeqStsDivByZero : zeqStsOk;
}

ZeqStatus zeqiDiv_32f_C1IR(const Zeq32f* pSrc, int srcStep, Zeq32f* pSrcDst, int srcDstStep, ZeqiSize roiSize) {
    return zeqiDiv_32f_C1R(pSrc, srcStep, pSrcDst, srcDstStep, pSrcDst, srcDstStep, roiSize);
}

// Sqr and Sqrt advance rows by whole floats: a step that is not a multiple
// of 4 acts as the multiple of 4 below it.
ZeqStatus zeqiSqr_32f_C1IR(Zeq32f* pSrcDst, int srcDstStep, ZeqiSize roiSize) {
    ZQ_CHECK(zq::nonNull(pSrcDst));
    ZQ_CHECK(zq::roiSize(roiSize));
    ZQ_CHECK(zq::stepsPositive(srcDstStep));
    const ptrdiff_t step = zq::wholeElementStep<Zeq32f>(srcDstStep);
    for (int y = 0; y < roiSize.height; ++y) {
        Zeq32f* r = zq::row(pSrcDst, step, y);
        zq::ownzeqsSqr_32f(r, r, roiSize.width);
    }
    return zeqStsOk;
}

// Every row is finished; the first warning a row raised is the result.
ZeqStatus zeqiSqrt_32f_C1IR(Zeq32f* pSrcDst, int srcDstStep, ZeqiSize roiSize) {
    ZQ_CHECK(zq::nonNull(pSrcDst));
    ZQ_CHECK(zq::roiSize(roiSize));
    ZQ_CHECK(zq::stepsPositive(srcDstStep));
    const ptrdiff_t step = zq::wholeElementStep<Zeq32f>(srcDstStep);
    ZeqStatus status = zeqStsOk;
    for (int y = 0; y < roiSize.height; ++y) {
        if (zq::ownzeqsSqrt_32f_I(zq::row(pSrcDst, step, y), roiSize.width) && status == zeqStsOk)
            status = zeqStsSqrtNegArg;
    }
    return status;
}
