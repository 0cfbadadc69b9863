// Running accumulators: a float image updated in place with the sum of
// frames, of their squares, of products of two frames, or a weighted running
// average, plain or under a mask.
//
// Every function is one instantiation of accumulate<Op, Masked, Source>; the
// kernel is in zqcvaccumulate.isa.cpp, built for every tier.
#include "arith/zqcvaccumulate.h"
#include "core/zqcvcore.h"

namespace {

using Op = zq::AccOp;

// Step checks by source type. 8-bit sources: sizes, then the accumulator's
// oddness. 16u sources: the sources completely (size, then oddness) before
// the mask and accumulator. 32f sources: sizes, then oddness of every float
// step. Oddness is all that is tested: float rows advance by step/4 elements.
template <class S>
ZeqStatus checkSteps(int width, int src1Step, int src2Step, int maskStep, int accStep) {
    const int64_t srcRow = zq::rowBytes<S>(width), accRow = zq::rowBytes<Zeq32f>(width);
    ZQ_CHECK(zq::stepsAtLeast(srcRow, src1Step, src2Step));
    if constexpr (std::is_same<S, Zeq16u>::value) ZQ_CHECK(zq::stepsEven(src1Step, src2Step));
    ZQ_CHECK(zq::stepsAtLeast(width, maskStep));
    ZQ_CHECK(zq::stepsAtLeast(accRow, accStep));
    if constexpr (std::is_same<S, Zeq32f>::value) return zq::stepsEven(src1Step, src2Step, accStep);
    else return zq::stepsEven(accStep);
}

// The whole call. Single-source operations pass their source twice; unmasked
// ones pass a null mask, which is then neither checked nor read.
template <Op O, bool Masked, class S>
ZeqStatus accumulate(const S* a, int aStep, const S* b, int bStep, const Zeq8u* m, int mStep, Zeq32f* acc,
                     int accStep, ZeqiSize roi, Zeq32f alpha = 0.0f) {
    ZQ_CHECK(zq::nonNull(a, b, acc));
    if constexpr (Masked) ZQ_CHECK(zq::nonNull(m));
    ZQ_CHECK(zq::roiSize(roi));
    ZQ_CHECK(checkSteps<S>(roi.width, aStep, bStep, Masked ? mStep : roi.width, accStep));
    zq::dispatch([&](auto tier) {
        zq::ownAccumulate<tier.value, O, Masked>(a, zq::wholeElementStep<S>(aStep), b, zq::wholeElementStep<S>(bStep),
                                                 m, mStep, acc, zq::wholeElementStep<Zeq32f>(accStep), roi, alpha);
    });
    return zeqStsOk;
}

}  // namespace

// ---- exported functions ----

#define ZQ_ACCUMULATE(NAME, OP, S)                                                                        \
    ZeqStatus NAME(const S* pSrc, int srcStep, Zeq32f* pSrcDst, int srcDstStep, ZeqiSize roiSize) {     \
        return accumulate<OP, false>(pSrc, srcStep, pSrc, srcStep, nullptr, 0, pSrcDst, srcDstStep, roiSize); \
    }
#define ZQ_ACCUMULATE_MASKED(NAME, OP, S)                                                                 \
    ZeqStatus NAME(const S* pSrc, int srcStep, const Zeq8u* pMask, int maskStep, Zeq32f* pSrcDst,       \
                   int srcDstStep, ZeqiSize roiSize) {                                                    \
        return accumulate<OP, true>(pSrc, srcStep, pSrc, srcStep, pMask, maskStep, pSrcDst, srcDstStep,   \
                                    roiSize);                                                             \
    }
#define ZQ_ADD_PRODUCT(NAME, S)                                                                           \
    ZeqStatus NAME(const S* pSrc1, int src1Step, const S* pSrc2, int src2Step, Zeq32f* pSrcDst,         \
                   int srcDstStep, ZeqiSize roiSize) {                                                    \
        return accumulate<Op::Product, false>(pSrc1, src1Step, pSrc2, src2Step, nullptr, 0, pSrcDst,     \
                                              srcDstStep, roiSize);                                       \
    }
#define ZQ_ADD_PRODUCT_MASKED(NAME, S)                                                                    \
    ZeqStatus NAME(const S* pSrc1, int src1Step, const S* pSrc2, int src2Step, const Zeq8u* pMask,      \
                   int maskStep, Zeq32f* pSrcDst, int srcDstStep, ZeqiSize roiSize) {                     \
        return accumulate<Op::Product, true>(pSrc1, src1Step, pSrc2, src2Step, pMask, maskStep, pSrcDst, \
                                             srcDstStep, roiSize);                                        \
    }
#define ZQ_ADD_WEIGHTED(NAME, S)                                                                          \
    ZeqStatus NAME(const S* pSrc, int srcStep, Zeq32f* pSrcDst, int srcDstStep, ZeqiSize roiSize,       \
                   Zeq32f alpha) {                                                                        \
        return accumulate<Op::Weighted, false>(pSrc, srcStep, pSrc, srcStep, nullptr, 0, pSrcDst,        \
                                               srcDstStep, roiSize, alpha);                               \
    }
#define ZQ_ADD_WEIGHTED_MASKED(NAME, S)                                                                   \
    ZeqStatus NAME(const S* pSrc, int srcStep, const Zeq8u* pMask, int maskStep, Zeq32f* pSrcDst,       \
                   int srcDstStep, ZeqiSize roiSize, Zeq32f alpha) {                                      \
        return accumulate<Op::Weighted, true>(pSrc, srcStep, pSrc, srcStep, pMask, maskStep, pSrcDst,   \
                                              srcDstStep, roiSize, alpha);                                \
    }

// Plain 32f addition without a mask is an image primitive, not part of this family.
ZQ_ACCUMULATE(zeqiAdd_8u32f_C1IR, Op::Add, Zeq8u)
ZQ_ACCUMULATE(zeqiAdd_8s32f_C1IR, Op::Add, Zeq8s)
ZQ_ACCUMULATE(zeqiAdd_16u32f_C1IR, Op::Add, Zeq16u)
ZQ_ACCUMULATE_MASKED(zeqiAdd_8u32f_C1IMR, Op::Add, Zeq8u)
ZQ_ACCUMULATE_MASKED(zeqiAdd_8s32f_C1IMR, Op::Add, Zeq8s)
ZQ_ACCUMULATE_MASKED(zeqiAdd_16u32f_C1IMR, Op::Add, Zeq16u)
ZQ_ACCUMULATE_MASKED(zeqiAdd_32f_C1IMR, Op::Add, Zeq32f)

ZQ_ACCUMULATE(zeqiAddSquare_8u32f_C1IR, Op::Square, Zeq8u)
ZQ_ACCUMULATE(zeqiAddSquare_8s32f_C1IR, Op::Square, Zeq8s)
ZQ_ACCUMULATE(zeqiAddSquare_16u32f_C1IR, Op::Square, Zeq16u)
ZQ_ACCUMULATE(zeqiAddSquare_32f_C1IR, Op::Square, Zeq32f)
ZQ_ACCUMULATE_MASKED(zeqiAddSquare_8u32f_C1IMR, Op::Square, Zeq8u)
ZQ_ACCUMULATE_MASKED(zeqiAddSquare_8s32f_C1IMR, Op::Square, Zeq8s)
ZQ_ACCUMULATE_MASKED(zeqiAddSquare_16u32f_C1IMR, Op::Square, Zeq16u)
ZQ_ACCUMULATE_MASKED(zeqiAddSquare_32f_C1IMR, Op::Square, Zeq32f)

ZQ_ADD_PRODUCT(zeqiAddProduct_8u32f_C1IR, Zeq8u)
ZQ_ADD_PRODUCT(zeqiAddProduct_8s32f_C1IR, Zeq8s)
ZQ_ADD_PRODUCT(zeqiAddProduct_16u32f_C1IR, Zeq16u)
ZQ_ADD_PRODUCT(zeqiAddProduct_32f_C1IR, Zeq32f)
ZQ_ADD_PRODUCT_MASKED(zeqiAddProduct_8u32f_C1IMR, Zeq8u)
ZQ_ADD_PRODUCT_MASKED(zeqiAddProduct_8s32f_C1IMR, Zeq8s)
ZQ_ADD_PRODUCT_MASKED(zeqiAddProduct_16u32f_C1IMR, Zeq16u)
ZQ_ADD_PRODUCT_MASKED(zeqiAddProduct_32f_C1IMR, Zeq32f)

ZQ_ADD_WEIGHTED(zeqiAddWeighted_8u32f_C1IR, Zeq8u)
ZQ_ADD_WEIGHTED(zeqiAddWeighted_8s32f_C1IR, Zeq8s)
ZQ_ADD_WEIGHTED(zeqiAddWeighted_16u32f_C1IR, Zeq16u)
ZQ_ADD_WEIGHTED(zeqiAddWeighted_32f_C1IR, Zeq32f)
ZQ_ADD_WEIGHTED_MASKED(zeqiAddWeighted_8u32f_C1IMR, Zeq8u)
ZQ_ADD_WEIGHTED_MASKED(zeqiAddWeighted_8s32f_C1IMR, Zeq8s)
ZQ_ADD_WEIGHTED_MASKED(zeqiAddWeighted_16u32f_C1IMR, Zeq16u)
ZQ_ADD_WEIGHTED_MASKED(zeqiAddWeighted_32f_C1IMR, Zeq32f)
