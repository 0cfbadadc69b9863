/*
 * zeqcv: computer-vision primitives with a plain C interface.
 *
 * Every function checks its arguments in a fixed order and returns a
 * ZeqStatus: 0 on success, a positive warning after complete output, or a
 * negative error with nothing written. Images are passed as a pointer to the
 * first pixel of the region, the distance in bytes between rows (the step)
 * and the region size in pixels.
 *
 * Valid C99 and C++.
 */
#ifndef ZEQCV_H
#define ZEQCV_H

#include <stddef.h>

#if defined(_WIN32)
#  define ZEQ_API_VIS
#else
#  define ZEQ_API_VIS __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
#  define ZEQ_API extern "C" ZEQ_API_VIS
#else
#  define ZEQ_API extern ZEQ_API_VIS
#endif

/* ---- Element types ---- */
typedef unsigned char  Zeq8u;
typedef signed char    Zeq8s;
typedef unsigned short Zeq16u;
typedef short          Zeq16s;
typedef int            Zeq32s;
typedef float          Zeq32f;
typedef double         Zeq64f;

typedef struct { Zeq32f re; Zeq32f im; } Zeq32fc;

/* ---- Geometry ---- */
typedef struct { int width; int height; } ZeqiSize;
typedef struct { int x; int y; } ZeqiPoint;
typedef struct { int x; int y; int width; int height; } ZeqiRect;

/* Flood-fill result. */
typedef struct {
    Zeq64f   area;
    Zeq64f   value;
    ZeqiRect rect;
} ZeqiConnectedComp;

/* ---- Status codes ---- */
typedef int ZeqStatus;

enum {
    zeqStsOk            = 0,
    zeqStsSqrtNegArg    = 3,     /* warning: a square-root argument had its sign bit set */
    zeqStsDivByZero     = 6,     /* warning: a divisor or denominator norm was zero */
    zeqStsError         = -2,
    zeqStsMemAlloc      = -4,
    zeqStsBadArg        = -5,
    zeqStsSize          = -6,
    zeqStsNullPtr       = -8,
    zeqStsNoMem         = -9,
    zeqStsOutOfRange    = -11,
    zeqStsDataType      = -12,
    zeqStsStep          = -14,
    zeqStsFftOrder      = -15,
    zeqStsFftFlag       = -16,
    zeqStsContextMatch  = -17,
    zeqStsMaskSize      = -33,
    zeqStsAnchor        = -34,
    zeqStsCoi           = -52,
    zeqStsChannel       = -53,
    zeqStsDistMetric    = -56,
    zeqStsStepAlign     = -108,
    zeqStsNotSupported  = -9999
};

/* ---- Data-type codes taken by state creators and buffer-size queries ---- */
typedef int ZeqDataType;

enum {
    zeq8u  = 1,
    zeq8s  = 2,
    zeq16s = 4,
    zeq32f = 9
};

/* ---- FFT scaling flags ---- */
enum {
    zeqFftScaleFwdByN  = 1,   /* forward result divided by N */
    zeqFftScaleInvByN  = 2,   /* inverse result divided by N */
    zeqFftScaleBySqrtN = 4,   /* both directions divided by sqrt(N) */
    zeqFftScaleNone    = 8
};

/* ---- Accuracy hint of the float sum, mean and L2 norm ---- */
enum {
    zeqAlgHintNone     = 0,
    zeqAlgHintFast     = 1,
    zeqAlgHintAccurate = 2    /* double-precision partial sums in the function itself */
};

/* ---- Comparison codes of the float thresholds ---- */
enum {
    zeqCmpLess    = 0,        /* values below the threshold are replaced */
    zeqCmpGreater = 4         /* values above the threshold are replaced */
};

/* ---- Version record ---- */
typedef struct {
    int         major;
    int         minor;
    int         majorBuild;
    int         build;
    char        targetCpu[4];
    const char* name;
    const char* version;
    const char* buildDate;
} ZeqLibraryVersion;

/* ---- Opaque objects, created by an InitAlloc and released by its Free ---- */
typedef struct ZeqiConvState      ZeqiConvState;
typedef struct ZeqiMorphState     ZeqiMorphState;
typedef struct ZeqsFFTSpec_C_32fc ZeqsFFTSpec_C_32fc;
typedef struct ZeqsFFTSpec_R_32f  ZeqsFFTSpec_R_32f;
typedef struct ZeqiFFTSpec_R_32f  ZeqiFFTSpec_R_32f;

/* ---- Library ---- */
ZEQ_API const ZeqLibraryVersion* zeqcvGetLibVersion(void);

/* ---- Aligned memory (32-byte aligned; release with zeqsFree) ---- */
ZEQ_API Zeq8u*  zeqsMalloc_8u(int len);
ZEQ_API Zeq32f* zeqsMalloc_32f(int len);
ZEQ_API void    zeqsFree(void* ptr);

/* ---- Vector helpers ---- */
ZEQ_API ZeqStatus zeqsSet_8u(Zeq8u val, Zeq8u* pDst, int len);
ZEQ_API ZeqStatus zeqsZero_8u(Zeq8u* pDst, int len);
ZEQ_API ZeqStatus zeqsZero_16s(Zeq16s* pDst, int len);
ZEQ_API ZeqStatus zeqsZero_32f(Zeq32f* pDst, int len);
ZEQ_API ZeqStatus zeqsCopy_8u(const Zeq8u* pSrc, Zeq8u* pDst, int len);
ZEQ_API ZeqStatus zeqsCopy_16s(const Zeq16s* pSrc, Zeq16s* pDst, int len);
ZEQ_API ZeqStatus zeqsCopy_32f(const Zeq32f* pSrc, Zeq32f* pDst, int len);
/* pDst[i] = pSrc2[i] / pSrc1[i]: the first source is the divisor. */
ZEQ_API ZeqStatus zeqsDiv_32f(const Zeq32f* pSrc1, const Zeq32f* pSrc2, Zeq32f* pDst, int len);
ZEQ_API ZeqStatus zeqsSqr_32f_I(Zeq32f* pSrcDst, int len);
ZEQ_API ZeqStatus zeqsSqrt_32f_I(Zeq32f* pSrcDst, int len);

/* ---- Image primitives ---- */
ZEQ_API ZeqStatus zeqiCopy_8u_C1R(const Zeq8u* pSrc, int srcStep, Zeq8u* pDst, int dstStep, ZeqiSize roiSize);
ZEQ_API ZeqStatus zeqiCopy_8u_C3R(const Zeq8u* pSrc, int srcStep, Zeq8u* pDst, int dstStep, ZeqiSize roiSize);
ZEQ_API ZeqStatus zeqiCopy_8u_C4R(const Zeq8u* pSrc, int srcStep, Zeq8u* pDst, int dstStep, ZeqiSize roiSize);
ZEQ_API ZeqStatus zeqiCopy_32f_C1R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep, ZeqiSize roiSize);
ZEQ_API ZeqStatus zeqiCopy_32f_C3R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep, ZeqiSize roiSize);
/* Leaves the fourth channel of the destination untouched. */
ZEQ_API ZeqStatus zeqiCopy_32f_AC4R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep, ZeqiSize roiSize);
ZEQ_API ZeqStatus zeqiSet_32f_C1R(Zeq32f value, Zeq32f* pDst, int dstStep, ZeqiSize roiSize);
ZEQ_API ZeqStatus zeqiConvert_8u32f_C1R(const Zeq8u* pSrc, int srcStep, Zeq32f* pDst, int dstStep, ZeqiSize roiSize);
ZEQ_API ZeqStatus zeqiConvert_8s32f_C1R(const Zeq8s* pSrc, int srcStep, Zeq32f* pDst, int dstStep, ZeqiSize roiSize);
ZEQ_API ZeqStatus zeqiAddC_32f_C1IR(Zeq32f value, Zeq32f* pSrcDst, int srcDstStep, ZeqiSize roiSize);
ZEQ_API ZeqStatus zeqiSubC_32f_C1IR(Zeq32f value, Zeq32f* pSrcDst, int srcDstStep, ZeqiSize roiSize);
ZEQ_API ZeqStatus zeqiMulC_32f_C1IR(Zeq32f value, Zeq32f* pSrcDst, int srcDstStep, ZeqiSize roiSize);
ZEQ_API ZeqStatus zeqiAdd_32f_C1IR(const Zeq32f* pSrc, int srcStep, Zeq32f* pSrcDst, int srcDstStep, ZeqiSize roiSize);
/* pSrcDst = pSrcDst - pSrc */
ZEQ_API ZeqStatus zeqiSub_32f_C1IR(const Zeq32f* pSrc, int srcStep, Zeq32f* pSrcDst, int srcDstStep, ZeqiSize roiSize);
/* pDst = pSrc2 / pSrc1, element by element as zeqsDiv_32f. */
ZEQ_API ZeqStatus zeqiDiv_32f_C1R(const Zeq32f* pSrc1, int src1Step, const Zeq32f* pSrc2, int src2Step,
        Zeq32f* pDst, int dstStep, ZeqiSize roiSize);
/* pSrcDst = pSrcDst / pSrc */
ZEQ_API ZeqStatus zeqiDiv_32f_C1IR(const Zeq32f* pSrc, int srcStep, Zeq32f* pSrcDst, int srcDstStep, ZeqiSize roiSize);
ZEQ_API ZeqStatus zeqiSqr_32f_C1IR(Zeq32f* pSrcDst, int srcDstStep, ZeqiSize roiSize);
ZEQ_API ZeqStatus zeqiSqrt_32f_C1IR(Zeq32f* pSrcDst, int srcDstStep, ZeqiSize roiSize);
ZEQ_API ZeqStatus zeqiSum_32f_C1R(const Zeq32f* pSrc, int srcStep, ZeqiSize roiSize, Zeq64f* pSum, int hint);
ZEQ_API ZeqStatus zeqiMean_32f_C1R(const Zeq32f* pSrc, int srcStep, ZeqiSize roiSize, Zeq64f* pMean, int hint);
ZEQ_API ZeqStatus zeqiNorm_L2_32f_C1R(const Zeq32f* pSrc, int srcStep, ZeqiSize roiSize, Zeq64f* pValue, int hint);
ZEQ_API ZeqStatus zeqiThreshold_32f_C1R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep,
        ZeqiSize roiSize, Zeq32f threshold, int cmpOp);
ZEQ_API ZeqStatus zeqiThreshold_Val_32f_C1R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep,
        ZeqiSize roiSize, Zeq32f threshold, Zeq32f value, int cmpOp);
ZEQ_API ZeqStatus zeqiThreshold_LT_32f_C1R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep,
        ZeqiSize roiSize, Zeq32f threshold);
ZEQ_API ZeqStatus zeqiThreshold_LTVal_32f_C1R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep,
        ZeqiSize roiSize, Zeq32f threshold, Zeq32f value);
ZEQ_API ZeqStatus zeqiThreshold_LT_32f_C1IR(Zeq32f* pSrcDst, int srcDstStep, ZeqiSize roiSize, Zeq32f threshold);
ZEQ_API ZeqStatus zeqiThreshold_LTVal_32f_C1IR(Zeq32f* pSrcDst, int srcDstStep, ZeqiSize roiSize,
        Zeq32f threshold, Zeq32f value);
ZEQ_API ZeqStatus zeqiCopyReplicateBorder_8u_C1R(const Zeq8u* pSrc, int srcStep, ZeqiSize srcRoiSize,
        Zeq8u* pDst, int dstStep, ZeqiSize dstRoiSize, int topBorderHeight, int leftBorderWidth);
ZEQ_API ZeqStatus zeqiCopyReplicateBorder_8u_C3R(const Zeq8u* pSrc, int srcStep, ZeqiSize srcRoiSize,
        Zeq8u* pDst, int dstStep, ZeqiSize dstRoiSize, int topBorderHeight, int leftBorderWidth);
ZEQ_API ZeqStatus zeqiCopyReplicateBorder_8u_C4R(const Zeq8u* pSrc, int srcStep, ZeqiSize srcRoiSize,
        Zeq8u* pDst, int dstStep, ZeqiSize dstRoiSize, int topBorderHeight, int leftBorderWidth);
ZEQ_API ZeqStatus zeqiCopyReplicateBorder_32s_C1R(const Zeq32s* pSrc, int srcStep, ZeqiSize srcRoiSize,
        Zeq32s* pDst, int dstStep, ZeqiSize dstRoiSize, int topBorderHeight, int leftBorderWidth);
ZEQ_API ZeqStatus zeqiCopyReplicateBorder_32s_C3R(const Zeq32s* pSrc, int srcStep, ZeqiSize srcRoiSize,
        Zeq32s* pDst, int dstStep, ZeqiSize dstRoiSize, int topBorderHeight, int leftBorderWidth);
ZEQ_API ZeqStatus zeqiCopyReplicateBorder_32s_C4R(const Zeq32s* pSrc, int srcStep, ZeqiSize srcRoiSize,
        Zeq32s* pDst, int dstStep, ZeqiSize dstRoiSize, int topBorderHeight, int leftBorderWidth);

/* ---- Absolute difference ---- */
ZEQ_API ZeqStatus zeqiAbsDiff_8u_C1R(const Zeq8u* pSrc1, int src1Step, const Zeq8u* pSrc2, int src2Step,
        Zeq8u* pDst, int dstStep, ZeqiSize roiSize);
ZEQ_API ZeqStatus zeqiAbsDiff_16u_C1R(const Zeq16u* pSrc1, int src1Step, const Zeq16u* pSrc2, int src2Step,
        Zeq16u* pDst, int dstStep, ZeqiSize roiSize);
ZEQ_API ZeqStatus zeqiAbsDiff_32f_C1R(const Zeq32f* pSrc1, int src1Step, const Zeq32f* pSrc2, int src2Step,
        Zeq32f* pDst, int dstStep, ZeqiSize roiSize);
/* The integer constants are clamped to the range of the type. */
ZEQ_API ZeqStatus zeqiAbsDiffC_8u_C1R(const Zeq8u* pSrc, int srcStep, Zeq8u* pDst, int dstStep,
        ZeqiSize roiSize, int value);
ZEQ_API ZeqStatus zeqiAbsDiffC_16u_C1R(const Zeq16u* pSrc, int srcStep, Zeq16u* pDst, int dstStep,
        ZeqiSize roiSize, int value);
ZEQ_API ZeqStatus zeqiAbsDiffC_32f_C1R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep,
        ZeqiSize roiSize, Zeq32f value);

/* ---- Accumulation into 32f images ---- */
ZEQ_API ZeqStatus zeqiAdd_8u32f_C1IR(const Zeq8u* pSrc, int srcStep,
        Zeq32f* pSrcDst, int srcDstStep, ZeqiSize roiSize);
ZEQ_API ZeqStatus zeqiAdd_8s32f_C1IR(const Zeq8s* pSrc, int srcStep,
        Zeq32f* pSrcDst, int srcDstStep, ZeqiSize roiSize);
ZEQ_API ZeqStatus zeqiAdd_16u32f_C1IR(const Zeq16u* pSrc, int srcStep,
        Zeq32f* pSrcDst, int srcDstStep, ZeqiSize roiSize);
ZEQ_API ZeqStatus zeqiAdd_8u32f_C1IMR(const Zeq8u* pSrc, int srcStep, const Zeq8u* pMask, int maskStep,
        Zeq32f* pSrcDst, int srcDstStep, ZeqiSize roiSize);
ZEQ_API ZeqStatus zeqiAdd_8s32f_C1IMR(const Zeq8s* pSrc, int srcStep, const Zeq8u* pMask, int maskStep,
        Zeq32f* pSrcDst, int srcDstStep, ZeqiSize roiSize);
ZEQ_API ZeqStatus zeqiAdd_16u32f_C1IMR(const Zeq16u* pSrc, int srcStep, const Zeq8u* pMask, int maskStep,
        Zeq32f* pSrcDst, int srcDstStep, ZeqiSize roiSize);
ZEQ_API ZeqStatus zeqiAdd_32f_C1IMR(const Zeq32f* pSrc, int srcStep, const Zeq8u* pMask, int maskStep,
        Zeq32f* pSrcDst, int srcDstStep, ZeqiSize roiSize);
ZEQ_API ZeqStatus zeqiAddSquare_8u32f_C1IR(const Zeq8u* pSrc, int srcStep,
        Zeq32f* pSrcDst, int srcDstStep, ZeqiSize roiSize);
ZEQ_API ZeqStatus zeqiAddSquare_8s32f_C1IR(const Zeq8s* pSrc, int srcStep,
        Zeq32f* pSrcDst, int srcDstStep, ZeqiSize roiSize);
ZEQ_API ZeqStatus zeqiAddSquare_16u32f_C1IR(const Zeq16u* pSrc, int srcStep,
        Zeq32f* pSrcDst, int srcDstStep, ZeqiSize roiSize);
ZEQ_API ZeqStatus zeqiAddSquare_32f_C1IR(const Zeq32f* pSrc, int srcStep,
        Zeq32f* pSrcDst, int srcDstStep, ZeqiSize roiSize);
ZEQ_API ZeqStatus zeqiAddSquare_8u32f_C1IMR(const Zeq8u* pSrc, int srcStep, const Zeq8u* pMask, int maskStep,
        Zeq32f* pSrcDst, int srcDstStep, ZeqiSize roiSize);
ZEQ_API ZeqStatus zeqiAddSquare_8s32f_C1IMR(const Zeq8s* pSrc, int srcStep, const Zeq8u* pMask, int maskStep,
        Zeq32f* pSrcDst, int srcDstStep, ZeqiSize roiSize);
ZEQ_API ZeqStatus zeqiAddSquare_16u32f_C1IMR(const Zeq16u* pSrc, int srcStep, const Zeq8u* pMask, int maskStep,
        Zeq32f* pSrcDst, int srcDstStep, ZeqiSize roiSize);
ZEQ_API ZeqStatus zeqiAddSquare_32f_C1IMR(const Zeq32f* pSrc, int srcStep, const Zeq8u* pMask, int maskStep,
        Zeq32f* pSrcDst, int srcDstStep, ZeqiSize roiSize);
ZEQ_API ZeqStatus zeqiAddProduct_8u32f_C1IR(const Zeq8u* pSrc1, int src1Step, const Zeq8u* pSrc2, int src2Step,
        Zeq32f* pSrcDst, int srcDstStep, ZeqiSize roiSize);
ZEQ_API ZeqStatus zeqiAddProduct_8s32f_C1IR(const Zeq8s* pSrc1, int src1Step, const Zeq8s* pSrc2, int src2Step,
        Zeq32f* pSrcDst, int srcDstStep, ZeqiSize roiSize);
ZEQ_API ZeqStatus zeqiAddProduct_16u32f_C1IR(const Zeq16u* pSrc1, int src1Step, const Zeq16u* pSrc2, int src2Step,
        Zeq32f* pSrcDst, int srcDstStep, ZeqiSize roiSize);
ZEQ_API ZeqStatus zeqiAddProduct_32f_C1IR(const Zeq32f* pSrc1, int src1Step, const Zeq32f* pSrc2, int src2Step,
        Zeq32f* pSrcDst, int srcDstStep, ZeqiSize roiSize);
ZEQ_API ZeqStatus zeqiAddProduct_8u32f_C1IMR(const Zeq8u* pSrc1, int src1Step, const Zeq8u* pSrc2, int src2Step, const Zeq8u* pMask, int maskStep,
        Zeq32f* pSrcDst, int srcDstStep, ZeqiSize roiSize);
ZEQ_API ZeqStatus zeqiAddProduct_8s32f_C1IMR(const Zeq8s* pSrc1, int src1Step, const Zeq8s* pSrc2, int src2Step, const Zeq8u* pMask, int maskStep,
        Zeq32f* pSrcDst, int srcDstStep, ZeqiSize roiSize);
ZEQ_API ZeqStatus zeqiAddProduct_16u32f_C1IMR(const Zeq16u* pSrc1, int src1Step, const Zeq16u* pSrc2, int src2Step, const Zeq8u* pMask, int maskStep,
        Zeq32f* pSrcDst, int srcDstStep, ZeqiSize roiSize);
ZEQ_API ZeqStatus zeqiAddProduct_32f_C1IMR(const Zeq32f* pSrc1, int src1Step, const Zeq32f* pSrc2, int src2Step, const Zeq8u* pMask, int maskStep,
        Zeq32f* pSrcDst, int srcDstStep, ZeqiSize roiSize);
ZEQ_API ZeqStatus zeqiAddWeighted_8u32f_C1IR(const Zeq8u* pSrc, int srcStep,
        Zeq32f* pSrcDst, int srcDstStep, ZeqiSize roiSize, Zeq32f alpha);
ZEQ_API ZeqStatus zeqiAddWeighted_8s32f_C1IR(const Zeq8s* pSrc, int srcStep,
        Zeq32f* pSrcDst, int srcDstStep, ZeqiSize roiSize, Zeq32f alpha);
ZEQ_API ZeqStatus zeqiAddWeighted_16u32f_C1IR(const Zeq16u* pSrc, int srcStep,
        Zeq32f* pSrcDst, int srcDstStep, ZeqiSize roiSize, Zeq32f alpha);
ZEQ_API ZeqStatus zeqiAddWeighted_32f_C1IR(const Zeq32f* pSrc, int srcStep,
        Zeq32f* pSrcDst, int srcDstStep, ZeqiSize roiSize, Zeq32f alpha);
ZEQ_API ZeqStatus zeqiAddWeighted_8u32f_C1IMR(const Zeq8u* pSrc, int srcStep, const Zeq8u* pMask, int maskStep,
        Zeq32f* pSrcDst, int srcDstStep, ZeqiSize roiSize, Zeq32f alpha);
ZEQ_API ZeqStatus zeqiAddWeighted_8s32f_C1IMR(const Zeq8s* pSrc, int srcStep, const Zeq8u* pMask, int maskStep,
        Zeq32f* pSrcDst, int srcDstStep, ZeqiSize roiSize, Zeq32f alpha);
ZEQ_API ZeqStatus zeqiAddWeighted_16u32f_C1IMR(const Zeq16u* pSrc, int srcStep, const Zeq8u* pMask, int maskStep,
        Zeq32f* pSrcDst, int srcDstStep, ZeqiSize roiSize, Zeq32f alpha);
ZEQ_API ZeqStatus zeqiAddWeighted_32f_C1IMR(const Zeq32f* pSrc, int srcStep, const Zeq8u* pMask, int maskStep,
        Zeq32f* pSrcDst, int srcDstStep, ZeqiSize roiSize, Zeq32f alpha);

/* ---- Mean and standard deviation ---- */
ZEQ_API ZeqStatus zeqiMean_8u_C1MR(const Zeq8u* pSrc, int srcStep, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, Zeq64f* pMean);
ZEQ_API ZeqStatus zeqiMean_8u_C3CMR(const Zeq8u* pSrc, int srcStep, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, int coi, Zeq64f* pMean);
ZEQ_API ZeqStatus zeqiMean_8s_C1MR(const Zeq8s* pSrc, int srcStep, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, Zeq64f* pMean);
ZEQ_API ZeqStatus zeqiMean_8s_C3CMR(const Zeq8s* pSrc, int srcStep, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, int coi, Zeq64f* pMean);
ZEQ_API ZeqStatus zeqiMean_16u_C1MR(const Zeq16u* pSrc, int srcStep, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, Zeq64f* pMean);
ZEQ_API ZeqStatus zeqiMean_16u_C3CMR(const Zeq16u* pSrc, int srcStep, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, int coi, Zeq64f* pMean);
ZEQ_API ZeqStatus zeqiMean_32f_C1MR(const Zeq32f* pSrc, int srcStep, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, Zeq64f* pMean);
ZEQ_API ZeqStatus zeqiMean_32f_C3CMR(const Zeq32f* pSrc, int srcStep, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, int coi, Zeq64f* pMean);
ZEQ_API ZeqStatus zeqiMean_StdDev_8u_C1R(const Zeq8u* pSrc, int srcStep,
        ZeqiSize roiSize, Zeq64f* pMean, Zeq64f* pStdDev);
ZEQ_API ZeqStatus zeqiMean_StdDev_8s_C1R(const Zeq8s* pSrc, int srcStep,
        ZeqiSize roiSize, Zeq64f* pMean, Zeq64f* pStdDev);
ZEQ_API ZeqStatus zeqiMean_StdDev_16u_C1R(const Zeq16u* pSrc, int srcStep,
        ZeqiSize roiSize, Zeq64f* pMean, Zeq64f* pStdDev);
ZEQ_API ZeqStatus zeqiMean_StdDev_32f_C1R(const Zeq32f* pSrc, int srcStep,
        ZeqiSize roiSize, Zeq64f* pMean, Zeq64f* pStdDev);
ZEQ_API ZeqStatus zeqiMean_StdDev_8u_C3CR(const Zeq8u* pSrc, int srcStep,
        ZeqiSize roiSize, int coi, Zeq64f* pMean, Zeq64f* pStdDev);
ZEQ_API ZeqStatus zeqiMean_StdDev_8s_C3CR(const Zeq8s* pSrc, int srcStep,
        ZeqiSize roiSize, int coi, Zeq64f* pMean, Zeq64f* pStdDev);
ZEQ_API ZeqStatus zeqiMean_StdDev_16u_C3CR(const Zeq16u* pSrc, int srcStep,
        ZeqiSize roiSize, int coi, Zeq64f* pMean, Zeq64f* pStdDev);
ZEQ_API ZeqStatus zeqiMean_StdDev_32f_C3CR(const Zeq32f* pSrc, int srcStep,
        ZeqiSize roiSize, int coi, Zeq64f* pMean, Zeq64f* pStdDev);
ZEQ_API ZeqStatus zeqiMean_StdDev_8u_C1MR(const Zeq8u* pSrc, int srcStep, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, Zeq64f* pMean, Zeq64f* pStdDev);
ZEQ_API ZeqStatus zeqiMean_StdDev_8s_C1MR(const Zeq8s* pSrc, int srcStep, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, Zeq64f* pMean, Zeq64f* pStdDev);
ZEQ_API ZeqStatus zeqiMean_StdDev_16u_C1MR(const Zeq16u* pSrc, int srcStep, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, Zeq64f* pMean, Zeq64f* pStdDev);
ZEQ_API ZeqStatus zeqiMean_StdDev_32f_C1MR(const Zeq32f* pSrc, int srcStep, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, Zeq64f* pMean, Zeq64f* pStdDev);
ZEQ_API ZeqStatus zeqiMean_StdDev_8u_C3CMR(const Zeq8u* pSrc, int srcStep, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, int coi, Zeq64f* pMean, Zeq64f* pStdDev);
ZEQ_API ZeqStatus zeqiMean_StdDev_8s_C3CMR(const Zeq8s* pSrc, int srcStep, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, int coi, Zeq64f* pMean, Zeq64f* pStdDev);
ZEQ_API ZeqStatus zeqiMean_StdDev_16u_C3CMR(const Zeq16u* pSrc, int srcStep, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, int coi, Zeq64f* pMean, Zeq64f* pStdDev);
ZEQ_API ZeqStatus zeqiMean_StdDev_32f_C3CMR(const Zeq32f* pSrc, int srcStep, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, int coi, Zeq64f* pMean, Zeq64f* pStdDev);

/* ---- Minimum and maximum with positions ---- */
ZEQ_API ZeqStatus zeqiMinMaxIndx_8u_C1R(const Zeq8u* pSrc, int srcStep,
        ZeqiSize roiSize, Zeq32f* pMinVal, Zeq32f* pMaxVal,
        ZeqiPoint* pMinIndex, ZeqiPoint* pMaxIndex);
ZEQ_API ZeqStatus zeqiMinMaxIndx_8s_C1R(const Zeq8s* pSrc, int srcStep,
        ZeqiSize roiSize, Zeq32f* pMinVal, Zeq32f* pMaxVal,
        ZeqiPoint* pMinIndex, ZeqiPoint* pMaxIndex);
ZEQ_API ZeqStatus zeqiMinMaxIndx_16u_C1R(const Zeq16u* pSrc, int srcStep,
        ZeqiSize roiSize, Zeq32f* pMinVal, Zeq32f* pMaxVal,
        ZeqiPoint* pMinIndex, ZeqiPoint* pMaxIndex);
ZEQ_API ZeqStatus zeqiMinMaxIndx_32f_C1R(const Zeq32f* pSrc, int srcStep,
        ZeqiSize roiSize, Zeq32f* pMinVal, Zeq32f* pMaxVal,
        ZeqiPoint* pMinIndex, ZeqiPoint* pMaxIndex);
ZEQ_API ZeqStatus zeqiMinMaxIndx_8u_C3CR(const Zeq8u* pSrc, int srcStep,
        ZeqiSize roiSize, int coi, Zeq32f* pMinVal, Zeq32f* pMaxVal,
        ZeqiPoint* pMinIndex, ZeqiPoint* pMaxIndex);
ZEQ_API ZeqStatus zeqiMinMaxIndx_8s_C3CR(const Zeq8s* pSrc, int srcStep,
        ZeqiSize roiSize, int coi, Zeq32f* pMinVal, Zeq32f* pMaxVal,
        ZeqiPoint* pMinIndex, ZeqiPoint* pMaxIndex);
ZEQ_API ZeqStatus zeqiMinMaxIndx_16u_C3CR(const Zeq16u* pSrc, int srcStep,
        ZeqiSize roiSize, int coi, Zeq32f* pMinVal, Zeq32f* pMaxVal,
        ZeqiPoint* pMinIndex, ZeqiPoint* pMaxIndex);
ZEQ_API ZeqStatus zeqiMinMaxIndx_32f_C3CR(const Zeq32f* pSrc, int srcStep,
        ZeqiSize roiSize, int coi, Zeq32f* pMinVal, Zeq32f* pMaxVal,
        ZeqiPoint* pMinIndex, ZeqiPoint* pMaxIndex);
ZEQ_API ZeqStatus zeqiMinMaxIndx_8u_C1MR(const Zeq8u* pSrc, int srcStep, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, Zeq32f* pMinVal, Zeq32f* pMaxVal,
        ZeqiPoint* pMinIndex, ZeqiPoint* pMaxIndex);
ZEQ_API ZeqStatus zeqiMinMaxIndx_8s_C1MR(const Zeq8s* pSrc, int srcStep, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, Zeq32f* pMinVal, Zeq32f* pMaxVal,
        ZeqiPoint* pMinIndex, ZeqiPoint* pMaxIndex);
ZEQ_API ZeqStatus zeqiMinMaxIndx_16u_C1MR(const Zeq16u* pSrc, int srcStep, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, Zeq32f* pMinVal, Zeq32f* pMaxVal,
        ZeqiPoint* pMinIndex, ZeqiPoint* pMaxIndex);
ZEQ_API ZeqStatus zeqiMinMaxIndx_32f_C1MR(const Zeq32f* pSrc, int srcStep, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, Zeq32f* pMinVal, Zeq32f* pMaxVal,
        ZeqiPoint* pMinIndex, ZeqiPoint* pMaxIndex);
ZEQ_API ZeqStatus zeqiMinMaxIndx_8u_C3CMR(const Zeq8u* pSrc, int srcStep, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, int coi, Zeq32f* pMinVal, Zeq32f* pMaxVal,
        ZeqiPoint* pMinIndex, ZeqiPoint* pMaxIndex);
ZEQ_API ZeqStatus zeqiMinMaxIndx_8s_C3CMR(const Zeq8s* pSrc, int srcStep, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, int coi, Zeq32f* pMinVal, Zeq32f* pMaxVal,
        ZeqiPoint* pMinIndex, ZeqiPoint* pMaxIndex);
ZEQ_API ZeqStatus zeqiMinMaxIndx_16u_C3CMR(const Zeq16u* pSrc, int srcStep, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, int coi, Zeq32f* pMinVal, Zeq32f* pMaxVal,
        ZeqiPoint* pMinIndex, ZeqiPoint* pMaxIndex);
ZEQ_API ZeqStatus zeqiMinMaxIndx_32f_C3CMR(const Zeq32f* pSrc, int srcStep, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, int coi, Zeq32f* pMinVal, Zeq32f* pMaxVal,
        ZeqiPoint* pMinIndex, ZeqiPoint* pMaxIndex);

/* ---- Norms, difference norms and relative norms ---- */
ZEQ_API ZeqStatus zeqiNorm_Inf_8u_C1MR(const Zeq8u* pSrc, int srcStep, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNorm_Inf_8u_C3CMR(const Zeq8u* pSrc, int srcStep, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, int coi, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNorm_Inf_8s_C1MR(const Zeq8s* pSrc, int srcStep, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNorm_Inf_8s_C3CMR(const Zeq8s* pSrc, int srcStep, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, int coi, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNorm_Inf_16u_C1MR(const Zeq16u* pSrc, int srcStep, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNorm_Inf_16u_C3CMR(const Zeq16u* pSrc, int srcStep, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, int coi, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNorm_Inf_32f_C1MR(const Zeq32f* pSrc, int srcStep, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNorm_Inf_32f_C3CMR(const Zeq32f* pSrc, int srcStep, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, int coi, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNorm_L1_8u_C1MR(const Zeq8u* pSrc, int srcStep, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNorm_L1_8u_C3CMR(const Zeq8u* pSrc, int srcStep, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, int coi, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNorm_L1_8s_C1MR(const Zeq8s* pSrc, int srcStep, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNorm_L1_8s_C3CMR(const Zeq8s* pSrc, int srcStep, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, int coi, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNorm_L1_16u_C1MR(const Zeq16u* pSrc, int srcStep, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNorm_L1_16u_C3CMR(const Zeq16u* pSrc, int srcStep, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, int coi, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNorm_L1_32f_C1MR(const Zeq32f* pSrc, int srcStep, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNorm_L1_32f_C3CMR(const Zeq32f* pSrc, int srcStep, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, int coi, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNorm_L2_8u_C1MR(const Zeq8u* pSrc, int srcStep, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNorm_L2_8u_C3CMR(const Zeq8u* pSrc, int srcStep, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, int coi, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNorm_L2_8s_C1MR(const Zeq8s* pSrc, int srcStep, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNorm_L2_8s_C3CMR(const Zeq8s* pSrc, int srcStep, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, int coi, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNorm_L2_16u_C1MR(const Zeq16u* pSrc, int srcStep, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNorm_L2_16u_C3CMR(const Zeq16u* pSrc, int srcStep, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, int coi, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNorm_L2_32f_C1MR(const Zeq32f* pSrc, int srcStep, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNorm_L2_32f_C3CMR(const Zeq32f* pSrc, int srcStep, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, int coi, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNormDiff_Inf_8u_C1MR(const Zeq8u* pSrc1, int src1Step,
        const Zeq8u* pSrc2, int src2Step, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNormDiff_Inf_8u_C3CMR(const Zeq8u* pSrc1, int src1Step,
        const Zeq8u* pSrc2, int src2Step, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, int coi, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNormDiff_Inf_8s_C1MR(const Zeq8s* pSrc1, int src1Step,
        const Zeq8s* pSrc2, int src2Step, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNormDiff_Inf_8s_C3CMR(const Zeq8s* pSrc1, int src1Step,
        const Zeq8s* pSrc2, int src2Step, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, int coi, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNormDiff_Inf_16u_C1MR(const Zeq16u* pSrc1, int src1Step,
        const Zeq16u* pSrc2, int src2Step, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNormDiff_Inf_16u_C3CMR(const Zeq16u* pSrc1, int src1Step,
        const Zeq16u* pSrc2, int src2Step, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, int coi, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNormDiff_Inf_32f_C1MR(const Zeq32f* pSrc1, int src1Step,
        const Zeq32f* pSrc2, int src2Step, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNormDiff_Inf_32f_C3CMR(const Zeq32f* pSrc1, int src1Step,
        const Zeq32f* pSrc2, int src2Step, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, int coi, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNormDiff_L1_8u_C1MR(const Zeq8u* pSrc1, int src1Step,
        const Zeq8u* pSrc2, int src2Step, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNormDiff_L1_8u_C3CMR(const Zeq8u* pSrc1, int src1Step,
        const Zeq8u* pSrc2, int src2Step, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, int coi, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNormDiff_L1_8s_C1MR(const Zeq8s* pSrc1, int src1Step,
        const Zeq8s* pSrc2, int src2Step, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNormDiff_L1_8s_C3CMR(const Zeq8s* pSrc1, int src1Step,
        const Zeq8s* pSrc2, int src2Step, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, int coi, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNormDiff_L1_16u_C1MR(const Zeq16u* pSrc1, int src1Step,
        const Zeq16u* pSrc2, int src2Step, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNormDiff_L1_16u_C3CMR(const Zeq16u* pSrc1, int src1Step,
        const Zeq16u* pSrc2, int src2Step, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, int coi, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNormDiff_L1_32f_C1MR(const Zeq32f* pSrc1, int src1Step,
        const Zeq32f* pSrc2, int src2Step, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNormDiff_L1_32f_C3CMR(const Zeq32f* pSrc1, int src1Step,
        const Zeq32f* pSrc2, int src2Step, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, int coi, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNormDiff_L2_8u_C1MR(const Zeq8u* pSrc1, int src1Step,
        const Zeq8u* pSrc2, int src2Step, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNormDiff_L2_8u_C3CMR(const Zeq8u* pSrc1, int src1Step,
        const Zeq8u* pSrc2, int src2Step, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, int coi, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNormDiff_L2_8s_C1MR(const Zeq8s* pSrc1, int src1Step,
        const Zeq8s* pSrc2, int src2Step, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNormDiff_L2_8s_C3CMR(const Zeq8s* pSrc1, int src1Step,
        const Zeq8s* pSrc2, int src2Step, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, int coi, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNormDiff_L2_16u_C1MR(const Zeq16u* pSrc1, int src1Step,
        const Zeq16u* pSrc2, int src2Step, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNormDiff_L2_16u_C3CMR(const Zeq16u* pSrc1, int src1Step,
        const Zeq16u* pSrc2, int src2Step, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, int coi, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNormDiff_L2_32f_C1MR(const Zeq32f* pSrc1, int src1Step,
        const Zeq32f* pSrc2, int src2Step, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNormDiff_L2_32f_C3CMR(const Zeq32f* pSrc1, int src1Step,
        const Zeq32f* pSrc2, int src2Step, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, int coi, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNormRel_Inf_8u_C1MR(const Zeq8u* pSrc1, int src1Step,
        const Zeq8u* pSrc2, int src2Step, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNormRel_Inf_8u_C3CMR(const Zeq8u* pSrc1, int src1Step,
        const Zeq8u* pSrc2, int src2Step, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, int coi, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNormRel_Inf_8s_C1MR(const Zeq8s* pSrc1, int src1Step,
        const Zeq8s* pSrc2, int src2Step, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNormRel_Inf_8s_C3CMR(const Zeq8s* pSrc1, int src1Step,
        const Zeq8s* pSrc2, int src2Step, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, int coi, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNormRel_Inf_16u_C1MR(const Zeq16u* pSrc1, int src1Step,
        const Zeq16u* pSrc2, int src2Step, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNormRel_Inf_16u_C3CMR(const Zeq16u* pSrc1, int src1Step,
        const Zeq16u* pSrc2, int src2Step, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, int coi, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNormRel_Inf_32f_C1MR(const Zeq32f* pSrc1, int src1Step,
        const Zeq32f* pSrc2, int src2Step, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNormRel_Inf_32f_C3CMR(const Zeq32f* pSrc1, int src1Step,
        const Zeq32f* pSrc2, int src2Step, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, int coi, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNormRel_L1_8u_C1MR(const Zeq8u* pSrc1, int src1Step,
        const Zeq8u* pSrc2, int src2Step, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNormRel_L1_8u_C3CMR(const Zeq8u* pSrc1, int src1Step,
        const Zeq8u* pSrc2, int src2Step, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, int coi, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNormRel_L1_8s_C1MR(const Zeq8s* pSrc1, int src1Step,
        const Zeq8s* pSrc2, int src2Step, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNormRel_L1_8s_C3CMR(const Zeq8s* pSrc1, int src1Step,
        const Zeq8s* pSrc2, int src2Step, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, int coi, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNormRel_L1_16u_C1MR(const Zeq16u* pSrc1, int src1Step,
        const Zeq16u* pSrc2, int src2Step, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNormRel_L1_16u_C3CMR(const Zeq16u* pSrc1, int src1Step,
        const Zeq16u* pSrc2, int src2Step, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, int coi, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNormRel_L1_32f_C1MR(const Zeq32f* pSrc1, int src1Step,
        const Zeq32f* pSrc2, int src2Step, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNormRel_L1_32f_C3CMR(const Zeq32f* pSrc1, int src1Step,
        const Zeq32f* pSrc2, int src2Step, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, int coi, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNormRel_L2_8u_C1MR(const Zeq8u* pSrc1, int src1Step,
        const Zeq8u* pSrc2, int src2Step, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNormRel_L2_8u_C3CMR(const Zeq8u* pSrc1, int src1Step,
        const Zeq8u* pSrc2, int src2Step, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, int coi, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNormRel_L2_8s_C1MR(const Zeq8s* pSrc1, int src1Step,
        const Zeq8s* pSrc2, int src2Step, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNormRel_L2_8s_C3CMR(const Zeq8s* pSrc1, int src1Step,
        const Zeq8s* pSrc2, int src2Step, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, int coi, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNormRel_L2_16u_C1MR(const Zeq16u* pSrc1, int src1Step,
        const Zeq16u* pSrc2, int src2Step, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNormRel_L2_16u_C3CMR(const Zeq16u* pSrc1, int src1Step,
        const Zeq16u* pSrc2, int src2Step, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, int coi, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNormRel_L2_32f_C1MR(const Zeq32f* pSrc1, int src1Step,
        const Zeq32f* pSrc2, int src2Step, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, Zeq64f* pNorm);
ZEQ_API ZeqStatus zeqiNormRel_L2_32f_C3CMR(const Zeq32f* pSrc1, int src1Step,
        const Zeq32f* pSrc2, int src2Step, const Zeq8u* pMask, int maskStep,
        ZeqiSize roiSize, int coi, Zeq64f* pNorm);

/* ---- Fixed 3x3 derivative filters ---- */
ZEQ_API ZeqStatus zeqiSobel3x3_Dx_8u16s_C1R(const Zeq8u* pSrc, int srcStep, Zeq16s* pDst, int dstStep,
        ZeqiSize roi);
ZEQ_API ZeqStatus zeqiSobel3x3_Dx_8s16s_C1R(const Zeq8s* pSrc, int srcStep, Zeq16s* pDst, int dstStep,
        ZeqiSize roi);
ZEQ_API ZeqStatus zeqiSobel3x3_Dx_32f_C1R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep,
        ZeqiSize roi);
ZEQ_API ZeqStatus zeqiSobel3x3_Dy_8u16s_C1R(const Zeq8u* pSrc, int srcStep, Zeq16s* pDst, int dstStep, int origin,
        ZeqiSize roi);
ZEQ_API ZeqStatus zeqiSobel3x3_Dy_8s16s_C1R(const Zeq8s* pSrc, int srcStep, Zeq16s* pDst, int dstStep, int origin,
        ZeqiSize roi);
ZEQ_API ZeqStatus zeqiSobel3x3_Dy_32f_C1R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep, int origin,
        ZeqiSize roi);
ZEQ_API ZeqStatus zeqiSobel3x3_D2x_8u16s_C1R(const Zeq8u* pSrc, int srcStep, Zeq16s* pDst, int dstStep,
        ZeqiSize roi);
ZEQ_API ZeqStatus zeqiSobel3x3_D2x_8s16s_C1R(const Zeq8s* pSrc, int srcStep, Zeq16s* pDst, int dstStep,
        ZeqiSize roi);
ZEQ_API ZeqStatus zeqiSobel3x3_D2x_32f_C1R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep,
        ZeqiSize roi);
ZEQ_API ZeqStatus zeqiSobel3x3_D2y_8u16s_C1R(const Zeq8u* pSrc, int srcStep, Zeq16s* pDst, int dstStep,
        ZeqiSize roi);
ZEQ_API ZeqStatus zeqiSobel3x3_D2y_8s16s_C1R(const Zeq8s* pSrc, int srcStep, Zeq16s* pDst, int dstStep,
        ZeqiSize roi);
ZEQ_API ZeqStatus zeqiSobel3x3_D2y_32f_C1R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep,
        ZeqiSize roi);
ZEQ_API ZeqStatus zeqiSobel3x3_DxDy_8u16s_C1R(const Zeq8u* pSrc, int srcStep, Zeq16s* pDst, int dstStep, int origin,
        ZeqiSize roi);
ZEQ_API ZeqStatus zeqiSobel3x3_DxDy_8s16s_C1R(const Zeq8s* pSrc, int srcStep, Zeq16s* pDst, int dstStep, int origin,
        ZeqiSize roi);
ZEQ_API ZeqStatus zeqiSobel3x3_DxDy_32f_C1R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep, int origin,
        ZeqiSize roi);
ZEQ_API ZeqStatus zeqiScharr_Dx_8u16s_C1R(const Zeq8u* pSrc, int srcStep, Zeq16s* pDst, int dstStep,
        ZeqiSize roi, int scaleShift);
ZEQ_API ZeqStatus zeqiScharr_Dx_8s16s_C1R(const Zeq8s* pSrc, int srcStep, Zeq16s* pDst, int dstStep,
        ZeqiSize roi, int scaleShift);
ZEQ_API ZeqStatus zeqiScharr_Dx_32f_C1R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep,
        ZeqiSize roi, int scaleShift);
ZEQ_API ZeqStatus zeqiScharr_Dy_8u16s_C1R(const Zeq8u* pSrc, int srcStep, Zeq16s* pDst, int dstStep, int origin,
        ZeqiSize roi, int scaleShift);
ZEQ_API ZeqStatus zeqiScharr_Dy_8s16s_C1R(const Zeq8s* pSrc, int srcStep, Zeq16s* pDst, int dstStep, int origin,
        ZeqiSize roi, int scaleShift);
ZEQ_API ZeqStatus zeqiScharr_Dy_32f_C1R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep, int origin,
        ZeqiSize roi, int scaleShift);

/* ==== Convolution states and the Sobel, Laplace and Blur state filters ==== */
/* (conv: declarations to come) */

/* ---- Fast arctangent: angles of (pSrcX[i], pSrcY[i]) in degrees ---- */
ZEQ_API ZeqStatus zeqibFastArctan_32f(const Zeq32f* pSrcY, const Zeq32f* pSrcX, Zeq32f* pDst, int len);

/* ---- Canny edge detector ---- */
ZEQ_API ZeqStatus zeqiCannyGetSize(ZeqiSize roiSize, int* pBufferSize);
ZEQ_API ZeqStatus zeqiCanny_16s8u_C1R(const Zeq16s* pSrcDx, int srcDxStep, const Zeq16s* pSrcDy, int srcDyStep,
        Zeq8u* pDstEdges, int dstEdgeStep, ZeqiSize roiSize, Zeq32f lowThresh, Zeq32f highThresh,
        Zeq8u* pBuffer);
ZEQ_API ZeqStatus zeqiCanny_32f8u_C1R(const Zeq32f* pSrcDx, int srcDxStep, const Zeq32f* pSrcDy, int srcDyStep,
        Zeq8u* pDstEdges, int dstEdgeStep, ZeqiSize roiSize, Zeq32f lowThresh, Zeq32f highThresh,
        Zeq8u* pBuffer);

/* ==== Corner measures ==== */
/* (corner: declarations to come) */

/* ==== Gaussian 5x5 pyramid ==== */
/*
 * One level of a Gaussian pyramid with the 5-tap binomial kernel (1 4 6 4 1)
 * along and across rows. roiSize is the source size (w, h).
 *   PyrDown: dst is (ceil(w/2), ceil(h/2)); dst(X, Y) is the weighted sum of
 *     the 5 x 5 source pixels centred at (2X, 2Y), divided by 256.
 *   PyrUp: dst is (2w, 2h): zeros inserted between the source pixels, then
 *     4 x the kernel, divided by 64. Along a row, output 2x takes
 *     s[x-1] + 6 s[x] + s[x+1] and output 2x+1 takes 4 (s[x] + s[x+1]);
 *     across rows likewise.
 * Borders mirror about the edge pixel (index i < 0 reads -i, i >= n reads
 * 2(n-1) - i, folded again on lines of one or two pixels).
 * 8u and 8s round half up with an arithmetic shift, (sum + 128) >> 8 and
 * (sum + 32) >> 6 (a negative 8s half rounds towards plus infinity); 32f
 * multiplies the float sum by 1/256 or 1/64. Rows are filtered along first;
 * float sums add their weighted terms from the left, with the mirrored
 * terms merged at the edges (PyrDown: 6 s[0] + 8 s[1] + 2 s[2] first,
 * 8 s[0] + 8 s[1] on a line of two; PyrUp: 6 s[0] + 2 s[1] first, 8 s[0]
 * for both outputs of a line of one). C3 filters each channel alone.
 * pBuffer: work buffer of at least the size the GetBufSize query gives for
 * the source width, type and channels (not checked). Not in place.
 * Statuses: zeqStsNullPtr (pSrc, pDst or pBuffer null); zeqStsSize (w or
 * h < 1); zeqStsStep (srcStep or dstStep shorter than its row);
 * zeqStsStepAlign (32f: an odd step; only oddness is tested).
 */
ZEQ_API ZeqStatus zeqiPyrDown_Gauss5x5_8u_C1R(const Zeq8u* pSrc, int srcStep, Zeq8u* pDst, int dstStep,
        ZeqiSize roiSize, Zeq8u* pBuffer);
ZEQ_API ZeqStatus zeqiPyrDown_Gauss5x5_8u_C3R(const Zeq8u* pSrc, int srcStep, Zeq8u* pDst, int dstStep,
        ZeqiSize roiSize, Zeq8u* pBuffer);
ZEQ_API ZeqStatus zeqiPyrDown_Gauss5x5_8s_C1R(const Zeq8s* pSrc, int srcStep, Zeq8s* pDst, int dstStep,
        ZeqiSize roiSize, Zeq8u* pBuffer);
ZEQ_API ZeqStatus zeqiPyrDown_Gauss5x5_8s_C3R(const Zeq8s* pSrc, int srcStep, Zeq8s* pDst, int dstStep,
        ZeqiSize roiSize, Zeq8u* pBuffer);
ZEQ_API ZeqStatus zeqiPyrDown_Gauss5x5_32f_C1R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep,
        ZeqiSize roiSize, Zeq8u* pBuffer);
ZEQ_API ZeqStatus zeqiPyrDown_Gauss5x5_32f_C3R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep,
        ZeqiSize roiSize, Zeq8u* pBuffer);
ZEQ_API ZeqStatus zeqiPyrUp_Gauss5x5_8u_C1R(const Zeq8u* pSrc, int srcStep, Zeq8u* pDst, int dstStep,
        ZeqiSize roiSize, Zeq8u* pBuffer);
ZEQ_API ZeqStatus zeqiPyrUp_Gauss5x5_8u_C3R(const Zeq8u* pSrc, int srcStep, Zeq8u* pDst, int dstStep,
        ZeqiSize roiSize, Zeq8u* pBuffer);
ZEQ_API ZeqStatus zeqiPyrUp_Gauss5x5_8s_C1R(const Zeq8s* pSrc, int srcStep, Zeq8s* pDst, int dstStep,
        ZeqiSize roiSize, Zeq8u* pBuffer);
ZEQ_API ZeqStatus zeqiPyrUp_Gauss5x5_8s_C3R(const Zeq8s* pSrc, int srcStep, Zeq8s* pDst, int dstStep,
        ZeqiSize roiSize, Zeq8u* pBuffer);
ZEQ_API ZeqStatus zeqiPyrUp_Gauss5x5_32f_C1R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep,
        ZeqiSize roiSize, Zeq8u* pBuffer);
ZEQ_API ZeqStatus zeqiPyrUp_Gauss5x5_32f_C3R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep,
        ZeqiSize roiSize, Zeq8u* pBuffer);
/* Work buffer sizes in bytes for a source roiWidth, dataType zeq8u, zeq8s or
 * zeq32f, channels 1 or 3. Statuses: zeqStsNullPtr, zeqStsSize (roiWidth < 1,
 * or a size beyond int), zeqStsChannel, zeqStsDataType, in that order. */
ZEQ_API ZeqStatus zeqiPyrDownGetBufSize_Gauss5x5(int roiWidth, ZeqDataType dataType, int channels, int* pBufSize);
ZEQ_API ZeqStatus zeqiPyrUpGetBufSize_Gauss5x5(int roiWidth, ZeqDataType dataType, int channels, int* pBufSize);

/* ==== Distance transform ==== */
/*
 * Chamfer distance transform: every pixel whose source is not 0 gets an
 * approximation of its distance to the nearest source 0 (features get 0),
 * the minimum over paths of the sums of their move weights. 3x3 masks take
 * pMetrics {a orthogonal step, b diagonal step}; 5x5 masks {a, b, c the
 * knight step (2, 1)}. Integer forms read int weights, 8u32f float weights.
 * Two passes: forward (rows down, pixels right) from the neighbours above and
 * to the left, backward from the mirror images. Sums clamp to the ceiling:
 * 255 (8u), 65535 (16u), FLT_MAX (32f), also the value where no feature is
 * reachable. Rules kept as they are:
 *   3x3: when b >= 2a only orthogonal moves are used; when a > b and the
 *   image has at least 2 rows and columns, the bottom row also takes the
 *   pixel two back along the row plus 2b, in both passes.
 *   5x5: with b' = min(b, 2a), a call with c >= a + b' (32f: c - a - b' >
 *   -1e-7 |a + b'|) is the 3x3 call with the same metrics. Otherwise the
 *   weights are closed first: a* = min(a, 3c), b'' = min(b', 2c), and two
 *   steps along a row weigh min(2a*, 2b'', 2c). On images of at least 4x4
 *   with b' <= a, c <= 2a or 2c <= 3b', the first row of each pass steps
 *   back along the row only (one pixel with a*, two with that weight) and
 *   the second reads the row before only at up (a*), up-right (b'') and the
 *   knight position two to the right (c), mirrored in the backward pass;
 *   other rows and other cases use all moves that stay inside the image.
 * Destination rows advance by dstStep / element size elements.
 * Statuses: zeqStsNullPtr (pSrc, pDst or pMetrics null); zeqStsSize (width
 * or height < 1); zeqStsStep (srcStep < width, dstStep below its row);
 * zeqStsStepAlign (16u and 32f: odd dstStep; only oddness is tested);
 * zeqStsDistMetric (a weight not above 0).
 */
ZEQ_API ZeqStatus zeqiDistanceTransform_3x3_8u16u_C1R(const Zeq8u* pSrc, int srcStep, Zeq16u* pDst, int dstStep,
        ZeqiSize roiSize, const Zeq32s* pMetrics);
ZEQ_API ZeqStatus zeqiDistanceTransform_3x3_8u_C1R(const Zeq8u* pSrc, int srcStep, Zeq8u* pDst, int dstStep,
        ZeqiSize roiSize, const Zeq32s* pMetrics);
ZEQ_API ZeqStatus zeqiDistanceTransform_3x3_8u32f_C1R(const Zeq8u* pSrc, int srcStep, Zeq32f* pDst, int dstStep,
        ZeqiSize roiSize, const Zeq32f* pMetrics);
ZEQ_API ZeqStatus zeqiDistanceTransform_5x5_8u16u_C1R(const Zeq8u* pSrc, int srcStep, Zeq16u* pDst, int dstStep,
        ZeqiSize roiSize, const Zeq32s* pMetrics);
ZEQ_API ZeqStatus zeqiDistanceTransform_5x5_8u_C1R(const Zeq8u* pSrc, int srcStep, Zeq8u* pDst, int dstStep,
        ZeqiSize roiSize, const Zeq32s* pMetrics);
ZEQ_API ZeqStatus zeqiDistanceTransform_5x5_8u32f_C1R(const Zeq8u* pSrc, int srcStep, Zeq32f* pDst, int dstStep,
        ZeqiSize roiSize, const Zeq32f* pMetrics);
/* The standard metrics of kerSize 3 or 5 and norm 0 (chessboard), 1 (city
 * block) or 2 (Euclidean approximation):
 *   3: {1, 1}, {1, 2}, {0.955, 1.3693} (32s: {2, 3});
 *   5: {1, 1, 2}, {1, 2, 3}, {1, 1.4, 2.1969} (32s: {4, 6, 9}).
 * The float 5x5 city-block table writes 1, 2 and then 3 to pMetrics[3],
 * leaving pMetrics[2] as it was: supply four floats.
 * Statuses: zeqStsNullPtr, then zeqStsBadArg (kerSize, then norm). */
ZEQ_API ZeqStatus zeqiGetDistanceTransformMask_32f(int kerSize, int norm, Zeq32f* pMetrics);
ZEQ_API ZeqStatus zeqiGetDistanceTransformMask_32s(int kerSize, int norm, Zeq32s* pMetrics);
/* maskType = 10 kerSize + norm (30, 31, 32, 50, 51, 52). A norm (C remainder
 * of maskType by 10) outside 0..2 gives zeqStsBadArg before any other check;
 * then as zeqiGetDistanceTransformMask_32f. */
ZEQ_API ZeqStatus zeqiGetDistanceTransformMask(int maskType, Zeq32f* pMetrics);

/* ==== Flood fill ==== */
/*
 * Fills, in place, the connected region of a one-channel image that holds
 * the seed, and reports it in *pRegion: area (pixels filled), value (newVal
 * as a double) and rect (bounding box of the filled pixels).
 *   Plain fills: the pixels 4- or 8-connected to the seed whose value equals
 *   the seed's exactly. When the seed already holds newVal (8u: newVal's
 *   low byte; 32f: float equality) nothing is written, *pRegion included.
 *   Height 1: the seed's row is scanned on both sides, so row -1 (pImage -
 *   imageStep, width pixels) is READ and, where it equals the seed's value,
 *   filled too. Such calls need that memory to be readable; the gradient
 *   fills do not touch it.
 *   Gradient fills: the pixels reachable from the seed through 4- or
 *   8-connected steps from P to N with P - minDelta <= N <= P + maxDelta,
 *   on the input values (32f: |N + (minDelta - maxDelta)/2 - P| <=
 *   (minDelta + maxDelta)/2, the halves in float, the test in double). They
 *   always write the region and *pRegion.
 * pBuffer: a work buffer of the size zeqiFloodFillGetSize (plain) or
 * zeqiFloodFillGetSize_Grad (gradient) gives for the roi. It holds the
 * stack of pending row segments; a scan that would leave more pending than
 * it holds (beyond what a checkerboard needs) fills the region only in part
 * rather than writing past the buffer.
 * Statuses, in order: zeqStsNullPtr (pImage, pRegion or pBuffer null);
 * zeqStsSize (width or height < 1); zeqStsStep (imageStep below the row);
 * zeqStsStepAlign (32f: odd imageStep; only oddness is tested);
 * zeqStsOutOfRange (seed outside the roi); zeqStsBadArg (8u: newVal outside
 * 0..255); zeqStsOutOfRange (gradient: a delta below 0 or NaN, 8u also
 * minDelta + maxDelta > 255).
 */
ZEQ_API ZeqStatus zeqiFloodFill_4Con_8u_C1IR(Zeq8u* pImage, int imageStep, ZeqiSize roiSize, ZeqiPoint seed,
        int newVal, ZeqiConnectedComp* pRegion, Zeq8u* pBuffer);
ZEQ_API ZeqStatus zeqiFloodFill_8Con_8u_C1IR(Zeq8u* pImage, int imageStep, ZeqiSize roiSize, ZeqiPoint seed,
        int newVal, ZeqiConnectedComp* pRegion, Zeq8u* pBuffer);
ZEQ_API ZeqStatus zeqiFloodFill_4Con_32f_C1IR(Zeq32f* pImage, int imageStep, ZeqiSize roiSize, ZeqiPoint seed,
        Zeq32f newVal, ZeqiConnectedComp* pRegion, Zeq8u* pBuffer);
ZEQ_API ZeqStatus zeqiFloodFill_8Con_32f_C1IR(Zeq32f* pImage, int imageStep, ZeqiSize roiSize, ZeqiPoint seed,
        Zeq32f newVal, ZeqiConnectedComp* pRegion, Zeq8u* pBuffer);
ZEQ_API ZeqStatus zeqiFloodFill_Grad4Con_8u_C1IR(Zeq8u* pImage, int imageStep, ZeqiSize roiSize, ZeqiPoint seed,
        int newVal, int minDelta, int maxDelta, ZeqiConnectedComp* pRegion, Zeq8u* pBuffer);
ZEQ_API ZeqStatus zeqiFloodFill_Grad8Con_8u_C1IR(Zeq8u* pImage, int imageStep, ZeqiSize roiSize, ZeqiPoint seed,
        int newVal, int minDelta, int maxDelta, ZeqiConnectedComp* pRegion, Zeq8u* pBuffer);
ZEQ_API ZeqStatus zeqiFloodFill_Grad4Con_32f_C1IR(Zeq32f* pImage, int imageStep, ZeqiSize roiSize, ZeqiPoint seed,
        Zeq32f newVal, Zeq32f minDelta, Zeq32f maxDelta, ZeqiConnectedComp* pRegion, Zeq8u* pBuffer);
ZEQ_API ZeqStatus zeqiFloodFill_Grad8Con_32f_C1IR(Zeq32f* pImage, int imageStep, ZeqiSize roiSize, ZeqiPoint seed,
        Zeq32f newVal, Zeq32f minDelta, Zeq32f maxDelta, ZeqiConnectedComp* pRegion, Zeq8u* pBuffer);
/* Work buffer bytes: 6 x width x height + 8 (plain), plus (width + 2) x
 * (height + 2) (gradient). Statuses: zeqStsNullPtr, zeqStsSize (width or
 * height < 1, or a size beyond int). */
ZEQ_API ZeqStatus zeqiFloodFillGetSize(ZeqiSize roiSize, int* pBufSize);
ZEQ_API ZeqStatus zeqiFloodFillGetSize_Grad(ZeqiSize roiSize, int* pBufSize);

/* ==== Morphology state and strip dilation and erosion ==== */
/* (morph: declarations to come) */

/* ==== Minimum and maximum filters ==== */
/* (filtermax: declarations to come) */

/* ==== Motion history update ==== */
/*
 * Update in place of a motion-history image (32f timestamps) from the
 * silhouette of the current frame. Per pixel: a set silhouette pixel writes
 * `timestamp`; otherwise, with t = timestamp - mhiDuration in single
 * precision, a history value older than t (h < t) becomes +0.0 and the
 * others are kept (h == t is kept). Set means non-zero (8u, 16u), or s < 0 or
 * s > 0 (32f: -0.0 and NaN are not set).
 * The age test of the 8u and 16u forms compares float bits as signed integers
 * through the key (bits & 0x7fffffff) ^ (bits >> 31): -0.0 sorts below +0.0,
 * a positive NaN above every number (kept), a negative one below (cleared).
 * The 32f form compares floats: kept when h >= t, so a NaN is cleared and
 * -0.0 equals +0.0.
 * Steps in bytes; rows advance by whole elements (history mhiStep / 4).
 * Statuses, in order: zeqStsNullPtr; zeqStsSize (width or height < 1);
 * zeqStsStep (a step below its row); zeqStsStepAlign (an odd history step,
 * and for 16u and 32f silhouettes an odd silhouette step); zeqStsOutOfRange
 * (mhiDuration negative or NaN; the timestamp is not tested).
 */
ZEQ_API ZeqStatus zeqiUpdateMotionHistory_8u32f_C1IR(const Zeq8u* pSilhouette, int silhStep,
        Zeq32f* pMHI, int mhiStep, ZeqiSize roiSize, Zeq32f timestamp, Zeq32f mhiDuration);
ZEQ_API ZeqStatus zeqiUpdateMotionHistory_16u32f_C1IR(const Zeq16u* pSilhouette, int silhStep,
        Zeq32f* pMHI, int mhiStep, ZeqiSize roiSize, Zeq32f timestamp, Zeq32f mhiDuration);
ZEQ_API ZeqStatus zeqiUpdateMotionHistory_32f_C1IR(const Zeq32f* pSilhouette, int silhStep,
        Zeq32f* pMHI, int mhiStep, ZeqiSize roiSize, Zeq32f timestamp, Zeq32f mhiDuration);

/* ==== Line sampling ==== */
/*
 * Copies the pixels on the digital straight line from pt1 to pt2 (both
 * included, in that order) to pDst: n = max(|x2 - x1|, |y2 - y1|) + 1 pixels,
 * all channels of each for C3, packed. Eight-connected Bresenham along the
 * major axis, the error started at the major length: the minor coordinate
 * advances only when the error goes strictly negative, so at an exact tie it
 * has not stepped yet; exact diagonals count as y-major.
 * Points and roi in pixels, srcStep in bytes; pDst holds n x channels elements.
 * Statuses, in order: zeqStsNullPtr; zeqStsSize (width or height < 0; an
 * empty roi passes here); zeqStsStep (srcStep below the row); zeqStsStepAlign
 * (32f only: an odd srcStep); zeqStsOutOfRange (a point outside the roi,
 * which is every point of an empty one); zeqStsError (the iterator could not
 * be set up; does not happen after the checks above).
 */
ZEQ_API ZeqStatus zeqiSampleLine_8u_C1R(const Zeq8u* pSrc, int srcStep, ZeqiSize roiSize, Zeq8u* pDst,
        ZeqiPoint pt1, ZeqiPoint pt2);
ZEQ_API ZeqStatus zeqiSampleLine_8u_C3R(const Zeq8u* pSrc, int srcStep, ZeqiSize roiSize, Zeq8u* pDst,
        ZeqiPoint pt1, ZeqiPoint pt2);
ZEQ_API ZeqStatus zeqiSampleLine_16u_C1R(const Zeq16u* pSrc, int srcStep, ZeqiSize roiSize, Zeq16u* pDst,
        ZeqiPoint pt1, ZeqiPoint pt2);
ZEQ_API ZeqStatus zeqiSampleLine_16u_C3R(const Zeq16u* pSrc, int srcStep, ZeqiSize roiSize, Zeq16u* pDst,
        ZeqiPoint pt1, ZeqiPoint pt2);
ZEQ_API ZeqStatus zeqiSampleLine_32f_C1R(const Zeq32f* pSrc, int srcStep, ZeqiSize roiSize, Zeq32f* pDst,
        ZeqiPoint pt1, ZeqiPoint pt2);
ZEQ_API ZeqStatus zeqiSampleLine_32f_C3R(const Zeq32f* pSrc, int srcStep, ZeqiSize roiSize, Zeq32f* pDst,
        ZeqiPoint pt1, ZeqiPoint pt2);

/* ---- One-dimensional FFT (length 2^order) ---- */
ZEQ_API ZeqStatus zeqsFFTInitAlloc_C_32fc(ZeqsFFTSpec_C_32fc** ppSpec, int order, int flag, int hint);
ZEQ_API ZeqStatus zeqsFFTInitAlloc_R_32f(ZeqsFFTSpec_R_32f** ppSpec, int order, int flag, int hint);
ZEQ_API ZeqStatus zeqsFFTFree_C_32fc(ZeqsFFTSpec_C_32fc* pSpec);
ZEQ_API ZeqStatus zeqsFFTFree_R_32f(ZeqsFFTSpec_R_32f* pSpec);
ZEQ_API ZeqStatus zeqsFFTGetBufSize_C_32fc(const ZeqsFFTSpec_C_32fc* pSpec, int* pSize);
ZEQ_API ZeqStatus zeqsFFTGetBufSize_R_32f(const ZeqsFFTSpec_R_32f* pSpec, int* pSize);
ZEQ_API ZeqStatus zeqsFFTFwd_CToC_32fc(const Zeq32fc* pSrc, Zeq32fc* pDst, const ZeqsFFTSpec_C_32fc* pSpec,
        Zeq8u* pBuffer);
ZEQ_API ZeqStatus zeqsFFTInv_CToC_32fc(const Zeq32fc* pSrc, Zeq32fc* pDst, const ZeqsFFTSpec_C_32fc* pSpec,
        Zeq8u* pBuffer);
/* Real spectra in the packed format R0, R1, I1, ..., R(N/2-1), I(N/2-1), R(N/2). */
ZEQ_API ZeqStatus zeqsFFTFwd_RToPack_32f(const Zeq32f* pSrc, Zeq32f* pDst, const ZeqsFFTSpec_R_32f* pSpec,
        Zeq8u* pBuffer);
ZEQ_API ZeqStatus zeqsFFTInv_PackToR_32f(const Zeq32f* pSrc, Zeq32f* pDst, const ZeqsFFTSpec_R_32f* pSpec,
        Zeq8u* pBuffer);

/* ---- Two-dimensional real FFT and packed spectra ---- */
ZEQ_API ZeqStatus zeqiFFTInitAlloc_R_32f(ZeqiFFTSpec_R_32f** ppSpec, int orderX, int orderY, int flag, int hint);
ZEQ_API ZeqStatus zeqiFFTFree_R_32f(ZeqiFFTSpec_R_32f* pSpec);
ZEQ_API ZeqStatus zeqiFFTGetBufSize_R_32f(const ZeqiFFTSpec_R_32f* pSpec, int* pSize);
ZEQ_API ZeqStatus zeqiFFTFwd_RToPack_32f_C1R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep,
        const ZeqiFFTSpec_R_32f* pSpec, Zeq8u* pBuffer);
ZEQ_API ZeqStatus zeqiFFTInv_PackToR_32f_C1R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep,
        const ZeqiFFTSpec_R_32f* pSpec, Zeq8u* pBuffer);
/* pSrcDst = pSrcDst * pSrc, element by element in the two-dimensional packed layout. */
ZEQ_API ZeqStatus zeqiMulPack_32f_C1IR(const Zeq32f* pSrc, int srcStep, Zeq32f* pSrcDst, int srcDstStep,
        ZeqiSize roiSize);

/* ==== Valid-mode distance and correlation, and template matching ==== */
/*
 * A w x h template is compared with every position at which it lies wholly
 * inside a W x H source: the destination holds (W-w+1) x (H-h+1) floats, the
 * one at (x, y) for the window whose top-left pixel is (x, y). With S1 and S2
 * the sum and the sum of squares of the window's pixels, P the sum of window
 * pixel times template pixel, n = w*h, |T| the template's L2 norm, m its mean
 * and c = 0.0005:
 *   SqrDistanceValid           S2 - 2P + |T|^2
 *   CrossCorrValid             P
 *   CrossCorrValid_Level       sum of window pixel times (template pixel - m)
 *   SqrDistanceValid_Norm      (S2 - 2P + |T|^2) / (sqrt(max(S2, c)) * max(|T|, c))
 *   CrossCorrValid_Norm        P / (sqrt(max(S2, c)) * max(|T|, c))
 *   CrossCorrValid_NormLevel   CrossCorrValid_Level / sqrt(max(S2 - S1^2/n, c) * max(|T|^2 - n m^2, c))
 * P comes from single-precision FFTs of tiles of the source and the template
 * (so results carry the float FFT's rounding); S1 and S2 are summed in double
 * precision. Pixels: 32f, or 8u / 8s (8u32f, 8s32f) converted exactly; the
 * destination is 32f. One channel, no in-place form. The un-normalised three
 * run their tiles in the threads of the OpenMP runtime (OMP_NUM_THREADS,
 * omp_set_num_threads); their results do not depend on the thread count.
 * Steps in bytes, any value >= 1 (not compared with the widths).
 * Statuses, in the order checked: zeqStsNullPtr a null image pointer;
 * zeqStsSize a width or height below 1, or a template wider or taller than
 * the source; zeqStsStep a step below 1; then zeqStsFftOrder when the
 * template is too large for an FFT (2*w or 2*h above 2^30), zeqStsNoMem when
 * the working memory cannot be allocated.
 */
ZEQ_API ZeqStatus zeqiSqrDistanceValid_32f_C1R(const Zeq32f* pSrc, int srcStep, ZeqiSize srcSize,
        const Zeq32f* pTpl, int tplStep, ZeqiSize tplSize, Zeq32f* pDst, int dstStep);
ZEQ_API ZeqStatus zeqiSqrDistanceValid_8u32f_C1R(const Zeq8u* pSrc, int srcStep, ZeqiSize srcSize,
        const Zeq8u* pTpl, int tplStep, ZeqiSize tplSize, Zeq32f* pDst, int dstStep);
ZEQ_API ZeqStatus zeqiSqrDistanceValid_8s32f_C1R(const Zeq8s* pSrc, int srcStep, ZeqiSize srcSize,
        const Zeq8s* pTpl, int tplStep, ZeqiSize tplSize, Zeq32f* pDst, int dstStep);
ZEQ_API ZeqStatus zeqiCrossCorrValid_32f_C1R(const Zeq32f* pSrc, int srcStep, ZeqiSize srcSize,
        const Zeq32f* pTpl, int tplStep, ZeqiSize tplSize, Zeq32f* pDst, int dstStep);
ZEQ_API ZeqStatus zeqiCrossCorrValid_8u32f_C1R(const Zeq8u* pSrc, int srcStep, ZeqiSize srcSize,
        const Zeq8u* pTpl, int tplStep, ZeqiSize tplSize, Zeq32f* pDst, int dstStep);
ZEQ_API ZeqStatus zeqiCrossCorrValid_8s32f_C1R(const Zeq8s* pSrc, int srcStep, ZeqiSize srcSize,
        const Zeq8s* pTpl, int tplStep, ZeqiSize tplSize, Zeq32f* pDst, int dstStep);
ZEQ_API ZeqStatus zeqiCrossCorrValid_Level_32f_C1R(const Zeq32f* pSrc, int srcStep, ZeqiSize srcSize,
        const Zeq32f* pTpl, int tplStep, ZeqiSize tplSize, Zeq32f* pDst, int dstStep);
ZEQ_API ZeqStatus zeqiCrossCorrValid_Level_8u32f_C1R(const Zeq8u* pSrc, int srcStep, ZeqiSize srcSize,
        const Zeq8u* pTpl, int tplStep, ZeqiSize tplSize, Zeq32f* pDst, int dstStep);
ZEQ_API ZeqStatus zeqiCrossCorrValid_Level_8s32f_C1R(const Zeq8s* pSrc, int srcStep, ZeqiSize srcSize,
        const Zeq8s* pTpl, int tplStep, ZeqiSize tplSize, Zeq32f* pDst, int dstStep);
ZEQ_API ZeqStatus zeqiSqrDistanceValid_Norm_32f_C1R(const Zeq32f* pSrc, int srcStep, ZeqiSize srcSize,
        const Zeq32f* pTpl, int tplStep, ZeqiSize tplSize, Zeq32f* pDst, int dstStep);
ZEQ_API ZeqStatus zeqiSqrDistanceValid_Norm_8u32f_C1R(const Zeq8u* pSrc, int srcStep, ZeqiSize srcSize,
        const Zeq8u* pTpl, int tplStep, ZeqiSize tplSize, Zeq32f* pDst, int dstStep);
ZEQ_API ZeqStatus zeqiSqrDistanceValid_Norm_8s32f_C1R(const Zeq8s* pSrc, int srcStep, ZeqiSize srcSize,
        const Zeq8s* pTpl, int tplStep, ZeqiSize tplSize, Zeq32f* pDst, int dstStep);
ZEQ_API ZeqStatus zeqiCrossCorrValid_Norm_32f_C1R(const Zeq32f* pSrc, int srcStep, ZeqiSize srcSize,
        const Zeq32f* pTpl, int tplStep, ZeqiSize tplSize, Zeq32f* pDst, int dstStep);
ZEQ_API ZeqStatus zeqiCrossCorrValid_Norm_8u32f_C1R(const Zeq8u* pSrc, int srcStep, ZeqiSize srcSize,
        const Zeq8u* pTpl, int tplStep, ZeqiSize tplSize, Zeq32f* pDst, int dstStep);
ZEQ_API ZeqStatus zeqiCrossCorrValid_Norm_8s32f_C1R(const Zeq8s* pSrc, int srcStep, ZeqiSize srcSize,
        const Zeq8s* pTpl, int tplStep, ZeqiSize tplSize, Zeq32f* pDst, int dstStep);
ZEQ_API ZeqStatus zeqiCrossCorrValid_NormLevel_32f_C1R(const Zeq32f* pSrc, int srcStep, ZeqiSize srcSize,
        const Zeq32f* pTpl, int tplStep, ZeqiSize tplSize, Zeq32f* pDst, int dstStep);
ZEQ_API ZeqStatus zeqiCrossCorrValid_NormLevel_8u32f_C1R(const Zeq8u* pSrc, int srcStep, ZeqiSize srcSize,
        const Zeq8u* pTpl, int tplStep, ZeqiSize tplSize, Zeq32f* pDst, int dstStep);
ZEQ_API ZeqStatus zeqiCrossCorrValid_NormLevel_8s32f_C1R(const Zeq8s* pSrc, int srcStep, ZeqiSize srcSize,
        const Zeq8s* pTpl, int tplStep, ZeqiSize tplSize, Zeq32f* pDst, int dstStep);

/*
 * Template matching: the same six comparisons by method name,
 *   SqDiff = SqrDistanceValid, SqDiffNormed = SqrDistanceValid_Norm,
 *   Corr = CrossCorrValid, CorrNormed = CrossCorrValid_Norm,
 *   Coeff = CrossCorrValid_Level, CoeffNormed = CrossCorrValid_NormLevel,
 * with the same types and arguments. Each first checks the steps, before any
 * pointer or size: zeqStsStep for srcStep < W, tplStep < w (times 4 for 32f)
 * or dstStep < 4*(W-w+1); zeqStsStepAlign for 32f steps that are not
 * multiples of 4, and for 8u32f and 8s32f only for an odd dstStep. Then the
 * call is the valid-mode function's, with its statuses.
 * GetBufSize: the matching functions need no buffer; *pSize = 0 for data
 * type zeq8u, zeq8s or zeq32f. Statuses: zeqStsNullPtr a null pSize;
 * zeqStsSize a template width or height below 1 or larger than the source's;
 * zeqStsDataType another data-type code.
 */
ZEQ_API ZeqStatus zeqiMatchTemplate_SqDiff_8u32f_C1R(const Zeq8u* pSrc, int srcStep, ZeqiSize srcSize,
        const Zeq8u* pTpl, int tplStep, ZeqiSize tplSize, Zeq32f* pDst, int dstStep);
ZEQ_API ZeqStatus zeqiMatchTemplate_SqDiff_8s32f_C1R(const Zeq8s* pSrc, int srcStep, ZeqiSize srcSize,
        const Zeq8s* pTpl, int tplStep, ZeqiSize tplSize, Zeq32f* pDst, int dstStep);
ZEQ_API ZeqStatus zeqiMatchTemplate_SqDiff_32f_C1R(const Zeq32f* pSrc, int srcStep, ZeqiSize srcSize,
        const Zeq32f* pTpl, int tplStep, ZeqiSize tplSize, Zeq32f* pDst, int dstStep);
ZEQ_API ZeqStatus zeqiMatchTemplate_SqDiffNormed_8u32f_C1R(const Zeq8u* pSrc, int srcStep, ZeqiSize srcSize,
        const Zeq8u* pTpl, int tplStep, ZeqiSize tplSize, Zeq32f* pDst, int dstStep);
ZEQ_API ZeqStatus zeqiMatchTemplate_SqDiffNormed_8s32f_C1R(const Zeq8s* pSrc, int srcStep, ZeqiSize srcSize,
        const Zeq8s* pTpl, int tplStep, ZeqiSize tplSize, Zeq32f* pDst, int dstStep);
ZEQ_API ZeqStatus zeqiMatchTemplate_SqDiffNormed_32f_C1R(const Zeq32f* pSrc, int srcStep, ZeqiSize srcSize,
        const Zeq32f* pTpl, int tplStep, ZeqiSize tplSize, Zeq32f* pDst, int dstStep);
ZEQ_API ZeqStatus zeqiMatchTemplate_Corr_8u32f_C1R(const Zeq8u* pSrc, int srcStep, ZeqiSize srcSize,
        const Zeq8u* pTpl, int tplStep, ZeqiSize tplSize, Zeq32f* pDst, int dstStep);
ZEQ_API ZeqStatus zeqiMatchTemplate_Corr_8s32f_C1R(const Zeq8s* pSrc, int srcStep, ZeqiSize srcSize,
        const Zeq8s* pTpl, int tplStep, ZeqiSize tplSize, Zeq32f* pDst, int dstStep);
ZEQ_API ZeqStatus zeqiMatchTemplate_Corr_32f_C1R(const Zeq32f* pSrc, int srcStep, ZeqiSize srcSize,
        const Zeq32f* pTpl, int tplStep, ZeqiSize tplSize, Zeq32f* pDst, int dstStep);
ZEQ_API ZeqStatus zeqiMatchTemplate_CorrNormed_8u32f_C1R(const Zeq8u* pSrc, int srcStep, ZeqiSize srcSize,
        const Zeq8u* pTpl, int tplStep, ZeqiSize tplSize, Zeq32f* pDst, int dstStep);
ZEQ_API ZeqStatus zeqiMatchTemplate_CorrNormed_8s32f_C1R(const Zeq8s* pSrc, int srcStep, ZeqiSize srcSize,
        const Zeq8s* pTpl, int tplStep, ZeqiSize tplSize, Zeq32f* pDst, int dstStep);
ZEQ_API ZeqStatus zeqiMatchTemplate_CorrNormed_32f_C1R(const Zeq32f* pSrc, int srcStep, ZeqiSize srcSize,
        const Zeq32f* pTpl, int tplStep, ZeqiSize tplSize, Zeq32f* pDst, int dstStep);
ZEQ_API ZeqStatus zeqiMatchTemplate_Coeff_8u32f_C1R(const Zeq8u* pSrc, int srcStep, ZeqiSize srcSize,
        const Zeq8u* pTpl, int tplStep, ZeqiSize tplSize, Zeq32f* pDst, int dstStep);
ZEQ_API ZeqStatus zeqiMatchTemplate_Coeff_8s32f_C1R(const Zeq8s* pSrc, int srcStep, ZeqiSize srcSize,
        const Zeq8s* pTpl, int tplStep, ZeqiSize tplSize, Zeq32f* pDst, int dstStep);
ZEQ_API ZeqStatus zeqiMatchTemplate_Coeff_32f_C1R(const Zeq32f* pSrc, int srcStep, ZeqiSize srcSize,
        const Zeq32f* pTpl, int tplStep, ZeqiSize tplSize, Zeq32f* pDst, int dstStep);
ZEQ_API ZeqStatus zeqiMatchTemplate_CoeffNormed_8u32f_C1R(const Zeq8u* pSrc, int srcStep, ZeqiSize srcSize,
        const Zeq8u* pTpl, int tplStep, ZeqiSize tplSize, Zeq32f* pDst, int dstStep);
ZEQ_API ZeqStatus zeqiMatchTemplate_CoeffNormed_8s32f_C1R(const Zeq8s* pSrc, int srcStep, ZeqiSize srcSize,
        const Zeq8s* pTpl, int tplStep, ZeqiSize tplSize, Zeq32f* pDst, int dstStep);
ZEQ_API ZeqStatus zeqiMatchTemplate_CoeffNormed_32f_C1R(const Zeq32f* pSrc, int srcStep, ZeqiSize srcSize,
        const Zeq32f* pTpl, int tplStep, ZeqiSize tplSize, Zeq32f* pDst, int dstStep);
ZEQ_API ZeqStatus zeqiMatchTemplateGetBufSize_SqDiff(ZeqiSize srcSize, ZeqiSize tplSize, ZeqDataType dataType,
        int* pSize);
ZEQ_API ZeqStatus zeqiMatchTemplateGetBufSize_SqDiffNormed(ZeqiSize srcSize, ZeqiSize tplSize, ZeqDataType dataType,
        int* pSize);
ZEQ_API ZeqStatus zeqiMatchTemplateGetBufSize_Corr(ZeqiSize srcSize, ZeqiSize tplSize, ZeqDataType dataType,
        int* pSize);
ZEQ_API ZeqStatus zeqiMatchTemplateGetBufSize_CorrNormed(ZeqiSize srcSize, ZeqiSize tplSize, ZeqDataType dataType,
        int* pSize);
ZEQ_API ZeqStatus zeqiMatchTemplateGetBufSize_Coeff(ZeqiSize srcSize, ZeqiSize tplSize, ZeqDataType dataType,
        int* pSize);
ZEQ_API ZeqStatus zeqiMatchTemplateGetBufSize_CoeffNormed(ZeqiSize srcSize, ZeqiSize tplSize, ZeqDataType dataType,
        int* pSize);

#endif /* ZEQCV_H */
