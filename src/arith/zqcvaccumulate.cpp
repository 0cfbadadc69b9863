// Running accumulators: a float image updated in place with the sum of
// frames, of their squares, of products of two frames, or a weighted running
// average, plain or under a mask.
//
// Every function is one instantiation of accumulate<Op, Masked, Source>; the
// row kernels are in zqcvaccumulate.h, built for SSE2 here and for wider
// registers in zqcvaccumulateavx2.cpp and zqcvaccumulateavx512.cpp.
#include "core/zqcvcpu.h"
#include "arith/zqcvaccumulate.h"
#include "core/zqcvsimd.h"

namespace {

using Op = zq::AccOp;

enum class Isa { Sse2, Avx2, Avx512 };

const Isa kIsa = zq::cpu().avx512 ? Isa::Avx512 : zq::cpu().avx2 ? Isa::Avx2 : Isa::Sse2;

template <Op O, bool Masked, class S>
void accumulateRow(const S* a, const S* b, const Zeq8u* m, Zeq32f* acc, ptrdiff_t n, Zeq32f alpha) {
    switch (kIsa) {
    case Isa::Avx512: return zq::accumulateRowAvx512<O, Masked>(a, b, m, acc, n, alpha);
    case Isa::Avx2: return zq::accumulateRowAvx2<O, Masked>(a, b, m, acc, n, alpha);
    default: return accumulateRowSse2<O, Masked>(a, b, m, acc, n, alpha);
    }
}

// The region, as one long row when no row has padding. Steps here are the
// whole-element steps the rows actually advance by.
template <Op O, bool Masked, class S>
void ownAccumulate(const S* a, ptrdiff_t aStep, const S* b, ptrdiff_t bStep, const Zeq8u* m, ptrdiff_t mStep,
                   Zeq32f* acc, ptrdiff_t accStep, ZeqiSize roi, Zeq32f alpha) {
    if (zq::contiguousRows<S>(roi.width, aStep, bStep) && zq::contiguousRows<Zeq32f>(roi.width, accStep) &&
        (!Masked || zq::contiguousRows<Zeq8u>(roi.width, mStep))) {
        accumulateRow<O, Masked>(a, b, m, acc, ptrdiff_t(roi.width) * roi.height, alpha);
        return;
    }
    for (int y = 0; y < roi.height; ++y)
        accumulateRow<O, Masked>(zq::row(a, aStep, y), zq::row(b, bStep, y), Masked ? zq::row(m, mStep, y) : m,
                                 zq::row(acc, accStep, y), roi.width, alpha);
}

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
    ownAccumulate<O, Masked>(a, zq::wholeElementStep<S>(aStep), b, zq::wholeElementStep<S>(bStep), m, mStep, acc,
                             zq::wholeElementStep<Zeq32f>(accStep), roi, alpha);
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
