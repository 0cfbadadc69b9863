// Template matching by six methods: each function checks the steps of its
// three images and hands the call unchanged to the valid-mode function of
// its method. The buffer-size queries exist for symmetry: the valid-mode
// functions allocate their own memory, so every size is 0.
#include "core/zqcvcore.h"

#include <type_traits>

namespace {

// The only checks made here, before any pointer or size is looked at: each
// step against its row (the destination's as ((W - w)*2 + 2)*2 bytes), then
// alignment, which 32f images need for all three steps and 8-bit sources
// only for the destination, and there only to be even.
template <class T>
ZeqStatus checkSteps(int srcStep, ZeqiSize srcSize, int tplStep, ZeqiSize tplSize, int dstStep) {
    const int64_t dstRow = ((int64_t(srcSize.width) - tplSize.width) * 2 + 2) * 2;
    if (srcStep < zq::rowBytes<T>(srcSize.width) || tplStep < zq::rowBytes<T>(tplSize.width) || dstStep < dstRow)
        return zeqStsStep;
    if constexpr (std::is_same<T, Zeq32f>::value) return zq::stepsMultipleOf4(srcStep, tplStep, dstStep);
    else return zq::stepsEven(dstStep);
}

ZeqStatus bufSize(ZeqiSize srcSize, ZeqiSize tplSize, ZeqDataType dataType, int* pSize) {
    ZQ_CHECK(zq::nonNull(pSize));
    if (tplSize.width < 1 || tplSize.height < 1 || tplSize.width > srcSize.width || tplSize.height > srcSize.height)
        return zeqStsSize;
    if (dataType != zeq8u && dataType != zeq8s && dataType != zeq32f) return zeqStsDataType;
    *pSize = 0;
    return zeqStsOk;
}

}  // namespace

// ---- exported functions ----

#define ZQ_MATCH_TEMPLATE(NAME, VALID, T)                                                                    \
    ZeqStatus NAME(const T* pSrc, int srcStep, ZeqiSize srcSize, const T* pTpl, int tplStep, ZeqiSize tplSize, \
                   Zeq32f* pDst, int dstStep) {                                                              \
        ZQ_CHECK(checkSteps<T>(srcStep, srcSize, tplStep, tplSize, dstStep));                                \
        return VALID(pSrc, srcStep, srcSize, pTpl, tplStep, tplSize, pDst, dstStep);                         \
    }

ZQ_MATCH_TEMPLATE(zeqiMatchTemplate_SqDiff_8u32f_C1R, zeqiSqrDistanceValid_8u32f_C1R, Zeq8u)
ZQ_MATCH_TEMPLATE(zeqiMatchTemplate_SqDiff_8s32f_C1R, zeqiSqrDistanceValid_8s32f_C1R, Zeq8s)
ZQ_MATCH_TEMPLATE(zeqiMatchTemplate_SqDiff_32f_C1R, zeqiSqrDistanceValid_32f_C1R, Zeq32f)
ZQ_MATCH_TEMPLATE(zeqiMatchTemplate_SqDiffNormed_8u32f_C1R, zeqiSqrDistanceValid_Norm_8u32f_C1R, Zeq8u)
ZQ_MATCH_TEMPLATE(zeqiMatchTemplate_SqDiffNormed_8s32f_C1R, zeqiSqrDistanceValid_Norm_8s32f_C1R, Zeq8s)
ZQ_MATCH_TEMPLATE(zeqiMatchTemplate_SqDiffNormed_32f_C1R, zeqiSqrDistanceValid_Norm_32f_C1R, Zeq32f)
ZQ_MATCH_TEMPLATE(zeqiMatchTemplate_Corr_8u32f_C1R, zeqiCrossCorrValid_8u32f_C1R, Zeq8u)
ZQ_MATCH_TEMPLATE(zeqiMatchTemplate_Corr_8s32f_C1R, zeqiCrossCorrValid_8s32f_C1R, Zeq8s)
ZQ_MATCH_TEMPLATE(zeqiMatchTemplate_Corr_32f_C1R, zeqiCrossCorrValid_32f_C1R, Zeq32f)
ZQ_MATCH_TEMPLATE(zeqiMatchTemplate_CorrNormed_8u32f_C1R, zeqiCrossCorrValid_Norm_8u32f_C1R, Zeq8u)
ZQ_MATCH_TEMPLATE(zeqiMatchTemplate_CorrNormed_8s32f_C1R, zeqiCrossCorrValid_Norm_8s32f_C1R, Zeq8s)
ZQ_MATCH_TEMPLATE(zeqiMatchTemplate_CorrNormed_32f_C1R, zeqiCrossCorrValid_Norm_32f_C1R, Zeq32f)
ZQ_MATCH_TEMPLATE(zeqiMatchTemplate_Coeff_8u32f_C1R, zeqiCrossCorrValid_Level_8u32f_C1R, Zeq8u)
ZQ_MATCH_TEMPLATE(zeqiMatchTemplate_Coeff_8s32f_C1R, zeqiCrossCorrValid_Level_8s32f_C1R, Zeq8s)
ZQ_MATCH_TEMPLATE(zeqiMatchTemplate_Coeff_32f_C1R, zeqiCrossCorrValid_Level_32f_C1R, Zeq32f)
ZQ_MATCH_TEMPLATE(zeqiMatchTemplate_CoeffNormed_8u32f_C1R, zeqiCrossCorrValid_NormLevel_8u32f_C1R, Zeq8u)
ZQ_MATCH_TEMPLATE(zeqiMatchTemplate_CoeffNormed_8s32f_C1R, zeqiCrossCorrValid_NormLevel_8s32f_C1R, Zeq8s)
ZQ_MATCH_TEMPLATE(zeqiMatchTemplate_CoeffNormed_32f_C1R, zeqiCrossCorrValid_NormLevel_32f_C1R, Zeq32f)

ZeqStatus zeqiMatchTemplateGetBufSize_SqDiff(ZeqiSize srcSize, ZeqiSize tplSize, ZeqDataType dataType, int* pSize) {
    return bufSize(srcSize, tplSize, dataType, pSize);
}
ZeqStatus zeqiMatchTemplateGetBufSize_SqDiffNormed(ZeqiSize srcSize, ZeqiSize tplSize, ZeqDataType dataType,
                                                   int* pSize) {
    return bufSize(srcSize, tplSize, dataType, pSize);
}
ZeqStatus zeqiMatchTemplateGetBufSize_Corr(ZeqiSize srcSize, ZeqiSize tplSize, ZeqDataType dataType, int* pSize) {
    return bufSize(srcSize, tplSize, dataType, pSize);
}
ZeqStatus zeqiMatchTemplateGetBufSize_CorrNormed(ZeqiSize srcSize, ZeqiSize tplSize, ZeqDataType dataType,
                                                 int* pSize) {
    return bufSize(srcSize, tplSize, dataType, pSize);
}
ZeqStatus zeqiMatchTemplateGetBufSize_Coeff(ZeqiSize srcSize, ZeqiSize tplSize, ZeqDataType dataType, int* pSize) {
    return bufSize(srcSize, tplSize, dataType, pSize);
}
ZeqStatus zeqiMatchTemplateGetBufSize_CoeffNormed(ZeqiSize srcSize, ZeqiSize tplSize, ZeqDataType dataType,
                                                  int* pSize) {
    return bufSize(srcSize, tplSize, dataType, pSize);
}
