// Absolute difference of two images, or of an image and a constant.
#include "core/zqcvsimd.h"

#include <cstring>

namespace {

// |a - b| of unsigned integers as the sum of the two saturating differences,
// one of which is zero.
template <class T>
struct AbsDiffU {
    __m128i operator()(__m128i a, __m128i b) const {
        if constexpr (sizeof(T) == 1) return _mm_or_si128(_mm_subs_epu8(a, b), _mm_subs_epu8(b, a));
        else return _mm_or_si128(_mm_subs_epu16(a, b), _mm_subs_epu16(b, a));
    }
    T operator()(T a, T b) const { return T(a > b ? a - b : b - a); }
};

// The float difference with its sign bit cleared: -0 becomes +0 and a NaN
// keeps its payload, with no comparison involved.
struct AbsDiffF {
    __m128 operator()(__m128 a, __m128 b) const {
        return _mm_and_ps(_mm_sub_ps(a, b), _mm_castsi128_ps(_mm_set1_epi32(0x7fffffff)));
    }
    Zeq32f operator()(Zeq32f a, Zeq32f b) const {
        const Zeq32f d = a - b;
        uint32_t bits;
        std::memcpy(&bits, &d, 4);
        bits &= 0x7fffffffu;
        Zeq32f r;
        std::memcpy(&r, &bits, 4);
        return r;
    }
};

// A binary operation with its second operand fixed.
template <class T, class Op>
struct WithConstant {
    Op op;
    T value;
    typename zq::Vec<T>::type splat;
    auto operator()(typename zq::Vec<T>::type a) const { return op(a, splat); }
    T operator()(T a) const { return op(a, value); }
};

template <class T, class Op>
WithConstant<T, Op> withConstant(Op op, T value) {
    if constexpr (std::is_same<T, Zeq32f>::value) return {op, value, _mm_set1_ps(value)};
    else if constexpr (sizeof(T) == 1) return {op, value, _mm_set1_epi8(char(value))};
    else return {op, value, _mm_set1_epi16(short(value))};
}

int clampTo(int v, int hi) { return v < 0 ? 0 : (v > hi ? hi : v); }

// Kernels for the whole region.
void ownAbsDiff_8u_C1R(const Zeq8u* a, int aStep, const Zeq8u* b, int bStep, Zeq8u* d, int dStep, ZeqiSize roi) {
    zq::mapRegion(a, aStep, b, bStep, d, dStep, roi.width, roi.height, AbsDiffU<Zeq8u>());
}
void ownAbsDiffC_8u_C1R(const Zeq8u* a, int aStep, Zeq8u* d, int dStep, ZeqiSize roi, Zeq8u value) {
    zq::mapRegion(a, aStep, d, dStep, roi.width, roi.height, withConstant(AbsDiffU<Zeq8u>(), value));
}
void ownAbsDiff_32f_C1R(const Zeq32f* a, int aStep, const Zeq32f* b, int bStep, Zeq32f* d, int dStep,
                        ZeqiSize roi) {
    zq::mapRegion(a, aStep, b, bStep, d, dStep, roi.width, roi.height, AbsDiffF());
}
void ownAbsDiffC_32f_C1R(const Zeq32f* a, int aStep, Zeq32f* d, int dStep, ZeqiSize roi, Zeq32f value) {
    zq::mapRegion(a, aStep, d, dStep, roi.width, roi.height, withConstant(AbsDiffF(), value));
}

}  // namespace

ZeqStatus zeqiAbsDiff_8u_C1R(const Zeq8u* pSrc1, int src1Step, const Zeq8u* pSrc2, int src2Step,
                             Zeq8u* pDst, int dstStep, ZeqiSize roiSize) {
    ZQ_CHECK(zq::nonNull(pSrc1, pSrc2, pDst));
    ZQ_CHECK(zq::roiSize(roiSize));
    ZQ_CHECK(zq::stepsAtLeast(zq::rowBytes<Zeq8u>(roiSize.width), src1Step, src2Step, dstStep));
    ownAbsDiff_8u_C1R(pSrc1, src1Step, pSrc2, src2Step, pDst, dstStep, roiSize);
    return zeqStsOk;
}

// 16u rows advance by step/2 elements: an odd step acts as the even step below it.
ZeqStatus zeqiAbsDiff_16u_C1R(const Zeq16u* pSrc1, int src1Step, const Zeq16u* pSrc2, int src2Step,
                              Zeq16u* pDst, int dstStep, ZeqiSize roiSize) {
    ZQ_CHECK(zq::nonNull(pSrc1, pSrc2, pDst));
    ZQ_CHECK(zq::roiSize(roiSize));
    ZQ_CHECK(zq::stepsAtLeast(zq::rowBytes<Zeq16u>(roiSize.width), src1Step, src2Step, dstStep));
    zq::mapRegion(pSrc1, zq::wholeElementStep<Zeq16u>(src1Step), pSrc2, zq::wholeElementStep<Zeq16u>(src2Step),
                  pDst, zq::wholeElementStep<Zeq16u>(dstStep), roiSize.width, roiSize.height, AbsDiffU<Zeq16u>());
    return zeqStsOk;
}

ZeqStatus zeqiAbsDiff_32f_C1R(const Zeq32f* pSrc1, int src1Step, const Zeq32f* pSrc2, int src2Step,
                              Zeq32f* pDst, int dstStep, ZeqiSize roiSize) {
    ZQ_CHECK(zq::nonNull(pSrc1, pSrc2, pDst));
    ZQ_CHECK(zq::roiSize(roiSize));
    ZQ_CHECK(zq::stepsAtLeast(zq::rowBytes<Zeq32f>(roiSize.width), src1Step, src2Step, dstStep));
    ZQ_CHECK(zq::stepsMultipleOf4(src1Step, src2Step, dstStep));
    ownAbsDiff_32f_C1R(pSrc1, src1Step, pSrc2, src2Step, pDst, dstStep, roiSize);
    return zeqStsOk;
}

ZeqStatus zeqiAbsDiffC_8u_C1R(const Zeq8u* pSrc, int srcStep, Zeq8u* pDst, int dstStep, ZeqiSize roiSize,
                              int value) {
    ZQ_CHECK(zq::nonNull(pSrc, pDst));
    ZQ_CHECK(zq::roiSize(roiSize));
    ZQ_CHECK(zq::stepsAtLeast(zq::rowBytes<Zeq8u>(roiSize.width), srcStep, dstStep));
    ownAbsDiffC_8u_C1R(pSrc, srcStep, pDst, dstStep, roiSize, Zeq8u(clampTo(value, 255)));
    return zeqStsOk;
}

ZeqStatus zeqiAbsDiffC_16u_C1R(const Zeq16u* pSrc, int srcStep, Zeq16u* pDst, int dstStep, ZeqiSize roiSize,
                               int value) {
    ZQ_CHECK(zq::nonNull(pSrc, pDst));
    ZQ_CHECK(zq::roiSize(roiSize));
    ZQ_CHECK(zq::stepsAtLeast(zq::rowBytes<Zeq16u>(roiSize.width), srcStep, dstStep));
    zq::mapRegion(pSrc, zq::wholeElementStep<Zeq16u>(srcStep), pDst, zq::wholeElementStep<Zeq16u>(dstStep),
                  roiSize.width, roiSize.height, withConstant(AbsDiffU<Zeq16u>(), Zeq16u(clampTo(value, 65535))));
    return zeqStsOk;
}

ZeqStatus zeqiAbsDiffC_32f_C1R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep, ZeqiSize roiSize,
                               Zeq32f value) {
    ZQ_CHECK(zq::nonNull(pSrc, pDst));
    ZQ_CHECK(zq::roiSize(roiSize));
    ZQ_CHECK(zq::stepsAtLeast(zq::rowBytes<Zeq32f>(roiSize.width), srcStep, dstStep));
    ZQ_CHECK(zq::stepsMultipleOf4(srcStep, dstStep));
    ownAbsDiffC_32f_C1R(pSrc, srcStep, pDst, dstStep, roiSize, value);
    return zeqStsOk;
}
