/*
 * zeqcv: computer-vision primitives with a plain C interface.
 *
 * Every function checks its arguments in a fixed order and returns a
 * ZeqStatus: 0 on success, a positive warning after complete output, or a
 * negative error with nothing written. Images are passed as a pointer to the
 * first pixel of the region, the distance in bytes between rows (the step)
 * and the region size in pixels.
 *
 * Common rules, which the family comments below only repeat where they differ:
 * - Steps are signed byte distances between the starts of two rows; the
 *   minimum step is width x bytes per pixel (8u/8s 1, 16u/16s 2, 32s/32f 4
 *   per channel; C3 three channels, C4 and AC4 four). Steps need no
 *   particular alignment unless a family says so.
 * - Checks run in this order and the first failure is returned: null
 *   pointers (zeqStsNullPtr), region size below 1 (zeqStsSize), a step below
 *   the row (zeqStsStep), a step that is not a whole number of elements where
 *   the family requires it (zeqStsStepAlign), a channel of interest outside
 *   1..3 (zeqStsCoi), then the operation's own parameters.
 * - Masks (suffix M) are 8u images of the region's size with their own step;
 *   a pixel takes part exactly when its mask byte is non-zero.
 * - C3C forms process the channel `coi` (1 to 3, 1 being first in memory) of
 *   an interleaved three-channel image.
 * - zeqcvStatusString() below names every status.
 *
 * Valid C99 and C++. The C++ companion, zeqcv.hpp, adds owners and image views.
 */
#ifndef ZEQCV_H
#define ZEQCV_H

/* The version of this header; equal to the major and minor fields of
 * zeqcvGetLibVersion()'s record of the library it belongs to. */
#define ZEQCV_VERSION_MAJOR 4
#define ZEQCV_VERSION_MINOR 1

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

/* The name of a status and what it means, as constant text ("unknown status"
 * for a value the library never returns). Defined here, not in the library. */
static inline const char* zeqcvStatusString(ZeqStatus status) {
    switch (status) {
    case zeqStsOk:           return "zeqStsOk: success";
    case zeqStsSqrtNegArg:   return "zeqStsSqrtNegArg: warning, a square-root argument had its sign bit set (all outputs written)";
    case zeqStsDivByZero:    return "zeqStsDivByZero: warning, a divisor or denominator norm was zero (all outputs written)";
    case zeqStsError:        return "zeqStsError: the operation could not be set up";
    case zeqStsMemAlloc:     return "zeqStsMemAlloc: a state could not be allocated";
    case zeqStsBadArg:       return "zeqStsBadArg: a parameter is outside its allowed values";
    case zeqStsSize:         return "zeqStsSize: a width, height, length or size parameter is out of range";
    case zeqStsNullPtr:      return "zeqStsNullPtr: a required pointer is null";
    case zeqStsNoMem:        return "zeqStsNoMem: out of memory";
    case zeqStsOutOfRange:   return "zeqStsOutOfRange: a point or parameter lies outside its range";
    case zeqStsDataType:     return "zeqStsDataType: the data-type code is not accepted";
    case zeqStsStep:         return "zeqStsStep: a step is smaller than the row it must hold";
    case zeqStsFftOrder:     return "zeqStsFftOrder: the FFT order is outside 0..30";
    case zeqStsFftFlag:      return "zeqStsFftFlag: the FFT scaling flag is not 1, 2, 4 or 8";
    case zeqStsContextMatch: return "zeqStsContextMatch: the state or specification does not fit this call";
    case zeqStsMaskSize:     return "zeqStsMaskSize: the filter mask is smaller than 1x1";
    case zeqStsAnchor:       return "zeqStsAnchor: the anchor lies outside the mask";
    case zeqStsCoi:          return "zeqStsCoi: the channel of interest is not 1, 2 or 3";
    case zeqStsChannel:      return "zeqStsChannel: the channel count is not 1, 3 or 4";
    case zeqStsDistMetric:   return "zeqStsDistMetric: a distance metric is not positive";
    case zeqStsStepAlign:    return "zeqStsStepAlign: a step is not a whole number of elements";
    case zeqStsNotSupported: return "zeqStsNotSupported: the comparison code is not supported";
    default:                 return "unknown status";
    }
}

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

/* ---- Library ----
 * zeqcvGetLibVersion: a pointer to the library's one constant version record,
 * the same pointer on every call; never write to it or free it. Fields:
 * major.minor is the interface version (ZEQCV_VERSION_MAJOR/MINOR: a program
 * built against 4.1 runs with any 4.x, x >= 1), majorBuild and build number
 * the build, targetCpu is the code of the processor variant ("w7": SSE2, with
 * AVX2 and AVX-512 kernels chosen at run time), name the library file
 * ("libzeqcvw7.so"), version the version as text ("v4.1") and buildDate the
 * date of the build's sources. */
ZEQ_API const ZeqLibraryVersion* zeqcvGetLibVersion(void);

/* ---- Aligned memory (32-byte aligned; release with zeqsFree) ----
 * zeqsMalloc_8u(len) allocates len bytes, zeqsMalloc_32f(len) len floats, at
 * an address that is a multiple of 32; the memory is not cleared. len < 1, a
 * size the machine cannot address, or an exhausted heap give NULL (no status).
 * zeqsFree(ptr) releases such a block; NULL is ignored. A block must go back
 * through zeqsFree, never the C library's free, and vice versa. Every state,
 * specification and temporary buffer of the library comes from here. */
ZEQ_API Zeq8u*  zeqsMalloc_8u(int len);
ZEQ_API Zeq32f* zeqsMalloc_32f(int len);
ZEQ_API void    zeqsFree(void* ptr);

/* ---- Vector helpers ----
 * Contiguous arrays of len elements of the function's type:
 *   Set: pDst[i] = val            Zero: pDst[i] = 0 (all bits clear)
 *   Copy: pDst[i] = pSrc[i]       Div: pDst[i] = pSrc2[i] / pSrc1[i]
 *   Sqr: x = x * x                Sqrt: x = sqrt(x)
 * Copy's arrays must not overlap; the _I forms work in place. Div's quotient
 * by a zero divisor (of either sign) is +inf for a positive, -inf for a
 * negative and NaN for a zero or NaN dividend. Div and Sqrt may take refined
 * hardware estimates, which can differ from the exact quotient or root in the
 * last bit.
 * Statuses: zeqStsNullPtr, then zeqStsSize (len < 1); warnings after all
 * elements are written: zeqStsDivByZero (Div met a zero divisor),
 * zeqStsSqrtNegArg (Sqrt met an element with its sign bit set, -0.0 and
 * negative NaNs included; a negative element gives NaN). */
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

/* ---- Image primitives ----
 * Whole-region operations on one image or two of the same size:
 *   Copy: dst = src (C1, C3, C4; AC4 copies three channels of four and leaves
 *     the destination's fourth alone)   Set: dst = value
 *   Convert: dst = (float)src, exact    AddC/SubC/MulC: x = x + v, x - v, x * v
 *   Add/Sub: srcDst = srcDst + src, srcDst - src     Sqr/Sqrt: x = x*x, sqrt(x)
 *   Div: dst = src2 / src1 (C1IR: srcDst = srcDst / src), as zeqsDiv_32f
 *   Sum: *pSum = sum of the pixels; Mean: that sum / (width x height);
 *   Norm_L2: *pValue = sqrt(sum of squares); all three in double. With hint
 *     zeqAlgHintAccurate the sum runs in double precision in the function
 *     itself; other hints may take a faster kernel (also double).
 *   Threshold(cmpOp zeqCmpLess): dst = max(src, threshold), i.e. values below
 *     become the threshold; zeqCmpGreater: dst = min(src, threshold). A NaN
 *     source gives the threshold. Threshold_Val replaces values strictly
 *     beyond the threshold by `value` (equal values and NaNs stay). The LT
 *     forms are zeqCmpLess; their C1IR forms work in place.
 *   CopyReplicateBorder: the source goes to (leftBorderWidth, topBorderHeight)
 *     of the destination, and every destination pixel outside it copies the
 *     nearest source pixel (rows: edge pixels repeated; then whole rows).
 * Steps: these primitives serve padded work arrays, so a step is only
 * required to be at least 1 (zeqStsStep), never checked against the width.
 * Sqr and Sqrt of float images advance rows by the step rounded down to a
 * multiple of 4. In place: the IR forms; Copy, Convert and Threshold may not
 * overlap partially.
 * Statuses: zeqStsNullPtr, zeqStsSize, zeqStsStep (step < 1), then
 * zeqStsNotSupported for a threshold code other than 0 or 4 (Threshold_Val
 * tests its code before anything else). Mean checks its result pointer, the
 * rest through Sum. CopyReplicateBorder tests steps before sizes and returns
 * zeqStsSize also for a negative border or a destination smaller than source
 * plus borders. Sqrt may return the warning zeqStsSqrtNegArg, Div
 * zeqStsDivByZero (see the vector helpers). */
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

/* ---- Absolute difference ----
 *   AbsDiff:  dst = |src1 - src2|      AbsDiffC: dst = |src - value|
 * Types 8u, 16u (exact) and 32f (the float difference rounded, then its sign
 * bit cleared: -0.0 gives +0.0, a NaN stays NaN). The integer constant is
 * clamped to the type's range (8u 0..255, 16u 0..65535), never rejected.
 * In place: pDst may equal a source with the same step; partial overlap is
 * not supported.
 * Steps: at least width x element size. 32f steps must be multiples of 4
 * (zeqStsStepAlign); 16u steps need not be even: rows advance by step/2
 * elements, rounded down.
 * Statuses: zeqStsNullPtr, zeqStsSize, zeqStsStep, zeqStsStepAlign (32f). */
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

/* ---- Accumulation into 32f images ----
 * Running sums of frames into a float accumulator acc (pSrcDst), in place:
 *   Add:         acc = acc + src
 *   AddSquare:   acc = acc + src * src
 *   AddProduct:  acc = acc + src1 * src2
 *   AddWeighted: acc = acc + (src - acc) * alpha   (running average; alpha
 *                is used as given, usually in [0, 1]; no range is enforced)
 * Sources 8u, 8s, 16u or 32f, converted to float exactly; each operation is
 * rounded to float in the order written (8-bit squares and products are exact
 * integers). Masked forms (C1IMR): where the mask is zero Add, AddSquare and
 * AddProduct add 0.0 and AddWeighted uses the weight 0 (so an infinite
 * accumulator value there becomes NaN). A source may not overlap acc.
 * Steps: sources and mask at least their row, acc at least 4 x width. Float
 * steps are tested only for oddness: rows advance by step/4 elements rounded
 * down (16u: step/2), so 4 x width + 2 behaves as 4 x width.
 * Statuses: zeqStsNullPtr, zeqStsSize, zeqStsStep, zeqStsStepAlign (an odd
 * float or 16u step; a 16u source step is tested completely before the
 * other steps). */
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

/* ---- Mean and standard deviation ----
 * Over the n pixels that take part (the region, or where the mask is
 * non-zero), in double precision:
 *   mean = S1 / n,   stdDev = sqrt(|S2 / n - mean * mean|)
 * with S1 the sum and S2 the sum of squares (a population deviation). Types
 * 8u, 8s, 16u, 32f; C1 or the channel coi of C3 (C3C); whole region (R) or
 * masked (MR). An empty mask gives 0.0 and 0.0 with zeqStsOk. The masked 8-bit
 * Mean sums in 32-bit integers: a sum above 2^31 - 1 wraps. The 32f C1R form
 * recomputes the deviation in a second pass when the one-pass value has lost
 * precision (a large mean against a small spread).
 * pMean and pStdDev of Mean_StdDev may be NULL (that result is skipped); the
 * masked Mean requires pMean.
 * Steps: at least width x bytes x channels (mask: width); 32f steps must be
 * even (zeqStsStepAlign).
 * Statuses: zeqStsNullPtr, zeqStsSize, zeqStsStep, zeqStsStepAlign, zeqStsCoi. */
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

/* ---- Minimum and maximum with positions ----
 * The smallest and largest value of the pixels that take part, as floats
 * (integer values exactly), and their positions {x, y} relative to the
 * region's top-left pixel. Ties go to the first occurrence in row order (the
 * topmost row, then the leftmost pixel). An empty mask gives 0, 0 and (0, 0).
 * Types 8u, 8s, 16u, 32f; C1 or C3C; whole region or masked. The four result
 * pointers are required and are not checked. NaN pixels of 32f images give
 * unspecified results.
 * Steps as for the mean (32f steps must be even).
 * Statuses: zeqStsNullPtr (source, mask), zeqStsSize, zeqStsStep,
 * zeqStsStepAlign, zeqStsCoi. */
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

/* ---- Norms, difference norms and relative norms ----
 * Under a mask (MR), over the pixels whose mask byte is non-zero, result in
 * double through pNorm:
 *   Norm:     Inf = max |a|,  L1 = sum |a|,  L2 = sqrt(sum a^2)    (a = src)
 *   NormDiff: the same of a = src1 - src2
 *   NormRel:  NormDiff / Norm of src2 over the same pixels; for L2 the ratio
 *             of the sums of squares is taken before the one square root.
 * Types 8u, 8s, 16u, 32f; C1 or C3C. Integer sums are exact (the 8u L1 norm
 * sums in 32 bits and wraps above 2^31 - 1); 32f differences are rounded to
 * float first. An empty mask gives 0 (Norm, NormDiff).
 * Steps as for the mean (32f steps must be even).
 * Statuses: zeqStsNullPtr, zeqStsSize, zeqStsStep, zeqStsStepAlign,
 * zeqStsCoi; the relative norms return the warning zeqStsDivByZero when the
 * denominator norm is zero (empty mask included) and write +inf (numerator
 * above 0) or NaN (numerator 0). */
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

/* ---- Fixed 3x3 derivative filters ----
 * Correlation of the region with a 3x3 kernel, the outer product of a
 * horizontal factor h (along the row, columns x-1, x, x+1) and a vertical
 * factor v (rows y-1, y, y+1): dst(x, y) = sum v[j] h[i] src(x-1+i, y-1+j).
 *   Sobel3x3_Dx   h = (-1, 0, 1)  v = (1, 2, 1)     D2x  h = (1,-2, 1) v = (1, 2, 1)
 *   Sobel3x3_Dy   h = (1, 2, 1)   v = (-1, 0, 1)    D2y  h = (1, 2, 1) v = (1,-2, 1)
 *   Sobel3x3_DxDy h = (-1, 0, 1)  v = (-1, 0, 1)
 *   Scharr_Dx     h = (-1, 0, 1)  v = (3, 10, 3)    Scharr_Dy: transposed
 * A first derivative is positive where values grow to the right or downwards
 * (the next row in memory); origin 1 (rows stored bottom-up) negates the
 * vertical difference. Scharr results are shifted right by scaleShift bits
 * (integers, rounding towards minus infinity) or multiplied by 2^-scaleShift
 * (floats). Pixels outside the region are replaced by the nearest region
 * pixel: nothing outside the region is read and no border is needed.
 * Types: 8u16s and 8s16s (exact sums, at most 1020 in magnitude for Sobel
 * first derivatives, 4080 before the shift for Scharr), 32f (float sums).
 * The destination must not overlap the source.
 * Steps: source at least its row, destination at least 2 x width (16s) or
 * 4 x width (32f); a destination step (and for 32f a source step) must be
 * even.
 * Statuses: zeqStsNullPtr, zeqStsSize, zeqStsStep, zeqStsStepAlign, then
 * zeqStsBadArg for origin not 0 or 1 or a negative scaleShift. */
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
/*
 * A ZeqiConvState holds the two one-dimensional kernels of a separable
 * filter and a ring of row buffers, for rows of at most roiWidth pixels.
 *   zeqiSobelInitAlloc: derivative of order dx along rows and dy across rows
 *     with a kernelSize x kernelSize aperture (3, 5 or 7): kernels from
 *     binomial smoothing then differencing, e.g. size 3 order 0/1/2 =
 *     (1 2 1), (-1 0 1), (1 -2 1); origin 1 negates an odd dy kernel
 *     (rows counted bottom up). 0 < dx + dy, dx, dy < min(4, kernelSize).
 *   zeqiLaplaceInitAlloc: second x derivative plus second y derivative.
 *   zeqiBlurInitAlloc: the unnormalised kernelSize x kernelSize box sum.
 * dataType: zeq8u, zeq8s or zeq32f, the type of the filter's source.
 * InitAlloc statuses, in order: zeqStsNullPtr (ppState); zeqStsSize
 * (roiWidth < 1, kernelSize not 3/5/7, or the orders above); zeqStsDataType;
 * zeqStsBadArg (Sobel: origin not 0 or 1); zeqStsMemAlloc (nothing stored).
 * zeqiConvolFree releases the whole state: zeqStsNullPtr for a null state.
 *
 * The filters: dst = the separable correlation of src with the state's
 * kernels (kernel entry j at offset j - kernelSize/2 from the pixel),
 * pixels beyond the image replicating its nearest edge pixel. Integer
 * sources sum in 32 bits and saturate to int16; float sums run in float, a
 * difference taken before the smoothing (so a 3x3 Sobel state gives the
 * fixed 3x3 filters' bits). The state must come from the matching
 * InitAlloc for the source type; one call at a time per state.
 * Strips of one image (stripFlag): 0 the whole image; 1 the first strip, 4
 * a middle one, 2 the last. With n = roi->height rows in and k2 =
 * kernelSize/2, a call returns in roi->height the rows it wrote: n - k2
 * (first), n (middle), n + k2 (last), n (whole); the state carries the rows
 * a later strip needs, so any split gives the whole-image result exactly.
 * Statuses, in order: zeqStsNullPtr (pSrc, pDst, roi or pState);
 * zeqStsSize (roi width or height < 1); zeqStsStep (a step below its row);
 * zeqStsStepAlign (odd dstStep); zeqStsBadArg (stripFlag not 0, 1, 2 or 4);
 * zeqStsContextMatch (a roi wider than the state's rows, or a state of
 * another filter).
 */
ZEQ_API ZeqStatus zeqiSobelInitAlloc(int roiWidth, ZeqDataType dataType, int kernelSize, int origin, int dx, int dy,
        ZeqiConvState** ppState);
ZEQ_API ZeqStatus zeqiLaplaceInitAlloc(int roiWidth, ZeqDataType dataType, int kernelSize, ZeqiConvState** ppState);
ZEQ_API ZeqStatus zeqiBlurInitAlloc(int roiWidth, ZeqDataType dataType, int kernelSize, ZeqiConvState** ppState);
ZEQ_API ZeqStatus zeqiConvolFree(ZeqiConvState* pState);
ZEQ_API ZeqStatus zeqiSobel_8u16s_C1R(const Zeq8u* pSrc, int srcStep, Zeq16s* pDst, int dstStep, ZeqiSize* roi,
        ZeqiConvState* pState, int stripFlag);
ZEQ_API ZeqStatus zeqiSobel_8s16s_C1R(const Zeq8s* pSrc, int srcStep, Zeq16s* pDst, int dstStep, ZeqiSize* roi,
        ZeqiConvState* pState, int stripFlag);
ZEQ_API ZeqStatus zeqiSobel_32f_C1R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep, ZeqiSize* roi,
        ZeqiConvState* pState, int stripFlag);
ZEQ_API ZeqStatus zeqiLaplace_8u16s_C1R(const Zeq8u* pSrc, int srcStep, Zeq16s* pDst, int dstStep, ZeqiSize* roi,
        ZeqiConvState* pState, int stripFlag);
ZEQ_API ZeqStatus zeqiLaplace_8s16s_C1R(const Zeq8s* pSrc, int srcStep, Zeq16s* pDst, int dstStep, ZeqiSize* roi,
        ZeqiConvState* pState, int stripFlag);
ZEQ_API ZeqStatus zeqiLaplace_32f_C1R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep, ZeqiSize* roi,
        ZeqiConvState* pState, int stripFlag);
ZEQ_API ZeqStatus zeqiBlur_8u16s_C1R(const Zeq8u* pSrc, int srcStep, Zeq16s* pDst, int dstStep, ZeqiSize* roi,
        ZeqiConvState* pState, int stripFlag);
ZEQ_API ZeqStatus zeqiBlur_8s16s_C1R(const Zeq8s* pSrc, int srcStep, Zeq16s* pDst, int dstStep, ZeqiSize* roi,
        ZeqiConvState* pState, int stripFlag);
ZEQ_API ZeqStatus zeqiBlur_32f_C1R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep, ZeqiSize* roi,
        ZeqiConvState* pState, int stripFlag);

/* ---- Fast arctangent: angles of (pSrcX[i], pSrcY[i]) in degrees ---- */
/* pDst[i] = atan2(pSrcY[i], pSrcX[i]) in degrees, in [0, 360), approximated by
 * a quadratic to within about 0.15 degree: vectors along the positive x axis
 * give -0.1405 rather than 0, and (0, 0) gives the same. len elements of
 * contiguous, possibly unaligned floats; nothing beyond len is read or written.
 * pDst may be one of the sources (element-wise, in place).
 * Statuses: zeqStsNullPtr, zeqStsSize (len < 1). */
ZEQ_API ZeqStatus zeqibFastArctan_32f(const Zeq32f* pSrcY, const Zeq32f* pSrcX, Zeq32f* pDst, int len);

/* ---- Canny edge detector ----
 * Edges from the caller's derivative images dx and dy (for example the Sobel
 * filters above): magnitude m = |dx| + |dy| (L1), quantised to four directions;
 * pixels whose m is not above lowThresh are dropped, the rest are thinned to
 * the maxima along their gradient direction, and a thinned pixel is an edge
 * (255, others 0) when it is 8-connected through thinned pixels to one with m
 * above highThresh. Thresholds are in the units of m (for 3x3 Sobel
 * derivatives of 8-bit images, 0 to 2040).
 * pBuffer: a work buffer of at least zeqiCannyGetSize(roiSize) bytes, any
 * alignment (13 x (width + 2) x (height + 2) + 64); its size is not checked,
 * and what the call leaves in it is not part of the result.
 * Types: 16s or 32f derivatives, 8u result. The result must not overlap the
 * derivatives.
 * Steps: derivatives at least 2 x width (16s) or 4 x width (32f), and even;
 * result at least width.
 * Statuses: zeqStsNullPtr, zeqStsSize, zeqStsStep, zeqStsStepAlign, then
 * zeqStsBadArg for lowThresh < 0 or highThresh < lowThresh (NaN fails both).
 * zeqiCannyGetSize: zeqStsNullPtr, zeqStsSize. */
ZEQ_API ZeqStatus zeqiCannyGetSize(ZeqiSize roiSize, int* pBufferSize);
ZEQ_API ZeqStatus zeqiCanny_16s8u_C1R(const Zeq16s* pSrcDx, int srcDxStep, const Zeq16s* pSrcDy, int srcDyStep,
        Zeq8u* pDstEdges, int dstEdgeStep, ZeqiSize roiSize, Zeq32f lowThresh, Zeq32f highThresh,
        Zeq8u* pBuffer);
ZEQ_API ZeqStatus zeqiCanny_32f8u_C1R(const Zeq32f* pSrcDx, int srcDxStep, const Zeq32f* pSrcDy, int srcDyStep,
        Zeq8u* pDstEdges, int dstEdgeStep, ZeqiSize roiSize, Zeq32f lowThresh, Zeq32f highThresh,
        Zeq8u* pBuffer);

/* ==== Corner measures ==== */
/*
 * Corner strength from the structure matrix M = [Sxx Sxy; Sxy Syy] at every
 * pixel: Sxx, Sxy, Syy are the unnormalised avgWindow x avgWindow box sums of
 * dx*dx, dx*dy, dy*dy, where dx and dy are the Sobel first derivatives of
 * kernel size apertureSize (3, 5 or 7; the state filters above, replicated
 * borders). Each sum is multiplied by s = 1 / (255 p^2 q^2), p = 2^(apertureSize-1),
 * q = avgWindow, for every source type (float sources too). With
 * a = s Sxx, b = s Sxy, c = s Syy:
 *   MinEigenVal: (a + c - sqrt(4 b^2 + (a - c)^2)) / 2, the square root in
 *     double precision; one float per pixel.
 *   EigenValsVecs: six floats per pixel, l1 >= l2 (the eigenvalues) and unit
 *     eigenvectors (x1, y1) of l1 and (x2, y2) of l2, in the order
 *     l1, l2, x1, y1, x2, y2. All six are 0 where min(a, c) or a c - b^2 is
 *     below eps = 0.01 max(a, c); (l1, l2, 1, 0, 0, 1) where |b| < eps;
 *     otherwise x1 = b / r1, y1 = (l1 - a) / r1, x2 = b / r2, y2 = (l2 - a) / r2
 *     with r the vector's length (1.1920929e-07 where it is 0).
 * pBuffer: a work buffer of at least zeqiMinEigenValGetSize (the same as
 * zeqiEigenValsVecsGetSize) bytes, any alignment: 12 x roiWidth x (1 + 7)
 * bytes for the sizes above. Its size is not checked.
 * Types: 8u, 8s or 32f source, 32f result.
 * Steps: source at least its row; result at least 4 x width (MinEigenVal) or
 * 24 x width (EigenValsVecs), and even.
 * Statuses: zeqStsNullPtr (pSrc, result or pBuffer), zeqStsSize (roi, then
 * apertureSize, then avgWindow not 3, 5 or 7), zeqStsStep, zeqStsStepAlign;
 * the status of a failed state creation (zeqStsMemAlloc).
 * The size queries: zeqStsNullPtr, zeqStsSize (roiWidth < 1, a size not 3, 5
 * or 7, or a buffer too large for an int). */
ZEQ_API ZeqStatus zeqiMinEigenValGetSize(int roiWidth, int apertureSize, int avgWindow, int* pBufferSize);
ZEQ_API ZeqStatus zeqiEigenValsVecsGetSize(int roiWidth, int apertureSize, int avgWindow, int* pBufferSize);
ZEQ_API ZeqStatus zeqiMinEigenVal_8u32f_C1R(const Zeq8u* pSrc, int srcStep, Zeq32f* pMinEigenVal, int minValStep,
        ZeqiSize roiSize, int apertureSize, int avgWindow, Zeq8u* pBuffer);
ZEQ_API ZeqStatus zeqiMinEigenVal_8s32f_C1R(const Zeq8s* pSrc, int srcStep, Zeq32f* pMinEigenVal, int minValStep,
        ZeqiSize roiSize, int apertureSize, int avgWindow, Zeq8u* pBuffer);
ZEQ_API ZeqStatus zeqiMinEigenVal_32f_C1R(const Zeq32f* pSrc, int srcStep, Zeq32f* pMinEigenVal, int minValStep,
        ZeqiSize roiSize, int apertureSize, int avgWindow, Zeq8u* pBuffer);
ZEQ_API ZeqStatus zeqiEigenValsVecs_8u32f_C1R(const Zeq8u* pSrc, int srcStep, Zeq32f* pEigenVV, int eigStep,
        ZeqiSize roiSize, int apertureSize, int avgWindow, Zeq8u* pBuffer);
ZEQ_API ZeqStatus zeqiEigenValsVecs_8s32f_C1R(const Zeq8s* pSrc, int srcStep, Zeq32f* pEigenVV, int eigStep,
        ZeqiSize roiSize, int apertureSize, int avgWindow, Zeq8u* pBuffer);
ZEQ_API ZeqStatus zeqiEigenValsVecs_32f_C1R(const Zeq32f* pSrc, int srcStep, Zeq32f* pEigenVV, int eigStep,
        ZeqiSize roiSize, int apertureSize, int avgWindow, Zeq8u* pBuffer);

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
/*
 * zeqiMorphologyInitAlloc creates the state of a structuring element for
 * images up to roiWidth pixels wide, dataType zeq8u or zeq32f, channels 1, 3
 * or 4. maskType: 0 rectangle (every element of maskSize set), 1 cross (the
 * whole row and column through the anchor), 2 ellipse, 100 arbitrary (pMask:
 * maskSize.width x maskSize.height bytes row by row, non-zero = set; read
 * only for this type). The ellipse, in single precision with a = mw/2,
 * b = mh/2, k = a/b: for i = 0 .. (int)(mh/2), t = i + 0.5, h = sqrt(mh t -
 * t t) k, rows i and mh-1-i set from x0 = (int)((double)(a-h) + 0.5) (0 when
 * below 1) to x1 = min((int)((double)(a+h) - 0.5), mw), both included.
 * The state is one block from the aligned allocator: a header of fifteen
 * fields (mask width, height, anchor x, y, columns right of and rows below
 * the anchor, kind 33 for a 3x3 rectangle, 99 for another rectangle, 0 for
 * the others, pointers to the mask bytes (255/0), to the expanded mask (16
 * bytes of all ones or zeros per element) and twice to the row buffers, the
 * buffers' row length, data type, channels, roi width); 64 bytes on i386
 * (4-byte fields), 96 on x86-64 (8-byte pointers from offset 32, the last
 * four fields from 64). Then M = mw mh rounded up to 16 mask bytes (none for
 * a rectangle), 16 M bytes of expanded mask and max(2 mh R, c mh e) bytes of
 * buffers, R = (roiWidth c + c mw) e rounded up to 16, e = 1 (8u) or 4 (32f).
 * Statuses, in order: zeqStsNullPtr (ppState); zeqStsSize (roiWidth or a
 * mask side < 1); zeqStsDataType; zeqStsChannel; zeqStsAnchor (anchor
 * outside the mask); zeqStsOutOfRange (maskType), zeqStsNullPtr (type 100
 * without pMask); zeqStsNoMem. On failure nothing is allocated and *ppState
 * is left as it was. zeqiMorphologyFree releases a state (zeqStsNullPtr for
 * NULL).
 *
 * Strip dilation (maximum) and erosion (minimum), per channel, over the set
 * elements of the state's mask with the anchor on the output pixel; pixels
 * outside the image repeat the nearest edge pixel. The _Rect forms take a
 * rectangle state, the others a state of kind 0; the _Cross and _Ellipse
 * forms are the mask form (the state holds the cross or the ellipse). A mask
 * with no set element counts as its anchor alone. Floats are ordered by the
 * key (bits & 0x7fffffff) ^ (bits >> 31) of their bits: -0.0 below +0.0, a
 * NaN with the sign bit clear above +inf, with the sign bit set below -inf;
 * every result is one of the input values, bit for bit.
 * Strips: *roiSize gives n input rows and receives the rows written at pDst;
 * with b = mask height - anchor y - 1, stripFlag 0 (whole image) writes n
 * rows, 1 (first strip, at least b rows) n - b, 4 (middle strip) n and 2
 * (last strip) n + b. Between a first and a last strip the state carries the
 * rows a later strip needs: every split of an image gives exactly the
 * whole-image result, and a state serves one image at a time. Not in place.
 * Statuses, in order: zeqStsNullPtr (pSrc, pDst, roiSize or pState);
 * zeqStsSize (width or height < 1); zeqStsStep (a step below its row);
 * zeqStsContextMatch (the state's data type, channels or kind does not fit
 * the call, or its roi width is below the call's); zeqStsBadArg (stripFlag
 * not 0, 1, 2 or 4).
 */
ZEQ_API ZeqStatus zeqiMorphologyInitAlloc(int roiWidth, int dataType, int channels, ZeqiSize maskSize,
        ZeqiPoint anchor, int maskType, const Zeq8u* pMask, ZeqiMorphState** ppState);
ZEQ_API ZeqStatus zeqiMorphologyFree(ZeqiMorphState* pState);
ZEQ_API ZeqStatus zeqiDilateStrip_8u_C1R(const Zeq8u* pSrc, int srcStep, Zeq8u* pDst, int dstStep,
        ZeqiSize* roiSize, ZeqiMorphState* pState, int stripFlag);
ZEQ_API ZeqStatus zeqiDilateStrip_8u_C3R(const Zeq8u* pSrc, int srcStep, Zeq8u* pDst, int dstStep,
        ZeqiSize* roiSize, ZeqiMorphState* pState, int stripFlag);
ZEQ_API ZeqStatus zeqiDilateStrip_8u_C4R(const Zeq8u* pSrc, int srcStep, Zeq8u* pDst, int dstStep,
        ZeqiSize* roiSize, ZeqiMorphState* pState, int stripFlag);
ZEQ_API ZeqStatus zeqiDilateStrip_32f_C1R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep,
        ZeqiSize* roiSize, ZeqiMorphState* pState, int stripFlag);
ZEQ_API ZeqStatus zeqiDilateStrip_32f_C3R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep,
        ZeqiSize* roiSize, ZeqiMorphState* pState, int stripFlag);
ZEQ_API ZeqStatus zeqiDilateStrip_32f_C4R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep,
        ZeqiSize* roiSize, ZeqiMorphState* pState, int stripFlag);
ZEQ_API ZeqStatus zeqiDilateStrip_Rect_8u_C1R(const Zeq8u* pSrc, int srcStep, Zeq8u* pDst, int dstStep,
        ZeqiSize* roiSize, ZeqiMorphState* pState, int stripFlag);
ZEQ_API ZeqStatus zeqiDilateStrip_Rect_8u_C3R(const Zeq8u* pSrc, int srcStep, Zeq8u* pDst, int dstStep,
        ZeqiSize* roiSize, ZeqiMorphState* pState, int stripFlag);
ZEQ_API ZeqStatus zeqiDilateStrip_Rect_8u_C4R(const Zeq8u* pSrc, int srcStep, Zeq8u* pDst, int dstStep,
        ZeqiSize* roiSize, ZeqiMorphState* pState, int stripFlag);
ZEQ_API ZeqStatus zeqiDilateStrip_Rect_32f_C1R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep,
        ZeqiSize* roiSize, ZeqiMorphState* pState, int stripFlag);
ZEQ_API ZeqStatus zeqiDilateStrip_Rect_32f_C3R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep,
        ZeqiSize* roiSize, ZeqiMorphState* pState, int stripFlag);
ZEQ_API ZeqStatus zeqiDilateStrip_Rect_32f_C4R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep,
        ZeqiSize* roiSize, ZeqiMorphState* pState, int stripFlag);
ZEQ_API ZeqStatus zeqiDilateStrip_Cross_8u_C1R(const Zeq8u* pSrc, int srcStep, Zeq8u* pDst, int dstStep,
        ZeqiSize* roiSize, ZeqiMorphState* pState, int stripFlag);
ZEQ_API ZeqStatus zeqiDilateStrip_Cross_8u_C3R(const Zeq8u* pSrc, int srcStep, Zeq8u* pDst, int dstStep,
        ZeqiSize* roiSize, ZeqiMorphState* pState, int stripFlag);
ZEQ_API ZeqStatus zeqiDilateStrip_Cross_8u_C4R(const Zeq8u* pSrc, int srcStep, Zeq8u* pDst, int dstStep,
        ZeqiSize* roiSize, ZeqiMorphState* pState, int stripFlag);
ZEQ_API ZeqStatus zeqiDilateStrip_Cross_32f_C1R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep,
        ZeqiSize* roiSize, ZeqiMorphState* pState, int stripFlag);
ZEQ_API ZeqStatus zeqiDilateStrip_Cross_32f_C3R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep,
        ZeqiSize* roiSize, ZeqiMorphState* pState, int stripFlag);
ZEQ_API ZeqStatus zeqiDilateStrip_Cross_32f_C4R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep,
        ZeqiSize* roiSize, ZeqiMorphState* pState, int stripFlag);
ZEQ_API ZeqStatus zeqiDilateStrip_Ellipse_8u_C1R(const Zeq8u* pSrc, int srcStep, Zeq8u* pDst, int dstStep,
        ZeqiSize* roiSize, ZeqiMorphState* pState, int stripFlag);
ZEQ_API ZeqStatus zeqiDilateStrip_Ellipse_8u_C3R(const Zeq8u* pSrc, int srcStep, Zeq8u* pDst, int dstStep,
        ZeqiSize* roiSize, ZeqiMorphState* pState, int stripFlag);
ZEQ_API ZeqStatus zeqiDilateStrip_Ellipse_8u_C4R(const Zeq8u* pSrc, int srcStep, Zeq8u* pDst, int dstStep,
        ZeqiSize* roiSize, ZeqiMorphState* pState, int stripFlag);
ZEQ_API ZeqStatus zeqiDilateStrip_Ellipse_32f_C1R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep,
        ZeqiSize* roiSize, ZeqiMorphState* pState, int stripFlag);
ZEQ_API ZeqStatus zeqiDilateStrip_Ellipse_32f_C3R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep,
        ZeqiSize* roiSize, ZeqiMorphState* pState, int stripFlag);
ZEQ_API ZeqStatus zeqiDilateStrip_Ellipse_32f_C4R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep,
        ZeqiSize* roiSize, ZeqiMorphState* pState, int stripFlag);
ZEQ_API ZeqStatus zeqiErodeStrip_8u_C1R(const Zeq8u* pSrc, int srcStep, Zeq8u* pDst, int dstStep,
        ZeqiSize* roiSize, ZeqiMorphState* pState, int stripFlag);
ZEQ_API ZeqStatus zeqiErodeStrip_8u_C3R(const Zeq8u* pSrc, int srcStep, Zeq8u* pDst, int dstStep,
        ZeqiSize* roiSize, ZeqiMorphState* pState, int stripFlag);
ZEQ_API ZeqStatus zeqiErodeStrip_8u_C4R(const Zeq8u* pSrc, int srcStep, Zeq8u* pDst, int dstStep,
        ZeqiSize* roiSize, ZeqiMorphState* pState, int stripFlag);
ZEQ_API ZeqStatus zeqiErodeStrip_32f_C1R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep,
        ZeqiSize* roiSize, ZeqiMorphState* pState, int stripFlag);
ZEQ_API ZeqStatus zeqiErodeStrip_32f_C3R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep,
        ZeqiSize* roiSize, ZeqiMorphState* pState, int stripFlag);
ZEQ_API ZeqStatus zeqiErodeStrip_32f_C4R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep,
        ZeqiSize* roiSize, ZeqiMorphState* pState, int stripFlag);
ZEQ_API ZeqStatus zeqiErodeStrip_Rect_8u_C1R(const Zeq8u* pSrc, int srcStep, Zeq8u* pDst, int dstStep,
        ZeqiSize* roiSize, ZeqiMorphState* pState, int stripFlag);
ZEQ_API ZeqStatus zeqiErodeStrip_Rect_8u_C3R(const Zeq8u* pSrc, int srcStep, Zeq8u* pDst, int dstStep,
        ZeqiSize* roiSize, ZeqiMorphState* pState, int stripFlag);
ZEQ_API ZeqStatus zeqiErodeStrip_Rect_8u_C4R(const Zeq8u* pSrc, int srcStep, Zeq8u* pDst, int dstStep,
        ZeqiSize* roiSize, ZeqiMorphState* pState, int stripFlag);
ZEQ_API ZeqStatus zeqiErodeStrip_Rect_32f_C1R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep,
        ZeqiSize* roiSize, ZeqiMorphState* pState, int stripFlag);
ZEQ_API ZeqStatus zeqiErodeStrip_Rect_32f_C3R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep,
        ZeqiSize* roiSize, ZeqiMorphState* pState, int stripFlag);
ZEQ_API ZeqStatus zeqiErodeStrip_Rect_32f_C4R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep,
        ZeqiSize* roiSize, ZeqiMorphState* pState, int stripFlag);
ZEQ_API ZeqStatus zeqiErodeStrip_Cross_8u_C1R(const Zeq8u* pSrc, int srcStep, Zeq8u* pDst, int dstStep,
        ZeqiSize* roiSize, ZeqiMorphState* pState, int stripFlag);
ZEQ_API ZeqStatus zeqiErodeStrip_Cross_8u_C3R(const Zeq8u* pSrc, int srcStep, Zeq8u* pDst, int dstStep,
        ZeqiSize* roiSize, ZeqiMorphState* pState, int stripFlag);
ZEQ_API ZeqStatus zeqiErodeStrip_Cross_8u_C4R(const Zeq8u* pSrc, int srcStep, Zeq8u* pDst, int dstStep,
        ZeqiSize* roiSize, ZeqiMorphState* pState, int stripFlag);
ZEQ_API ZeqStatus zeqiErodeStrip_Cross_32f_C1R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep,
        ZeqiSize* roiSize, ZeqiMorphState* pState, int stripFlag);
ZEQ_API ZeqStatus zeqiErodeStrip_Cross_32f_C3R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep,
        ZeqiSize* roiSize, ZeqiMorphState* pState, int stripFlag);
ZEQ_API ZeqStatus zeqiErodeStrip_Cross_32f_C4R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep,
        ZeqiSize* roiSize, ZeqiMorphState* pState, int stripFlag);
ZEQ_API ZeqStatus zeqiErodeStrip_Ellipse_8u_C1R(const Zeq8u* pSrc, int srcStep, Zeq8u* pDst, int dstStep,
        ZeqiSize* roiSize, ZeqiMorphState* pState, int stripFlag);
ZEQ_API ZeqStatus zeqiErodeStrip_Ellipse_8u_C3R(const Zeq8u* pSrc, int srcStep, Zeq8u* pDst, int dstStep,
        ZeqiSize* roiSize, ZeqiMorphState* pState, int stripFlag);
ZEQ_API ZeqStatus zeqiErodeStrip_Ellipse_8u_C4R(const Zeq8u* pSrc, int srcStep, Zeq8u* pDst, int dstStep,
        ZeqiSize* roiSize, ZeqiMorphState* pState, int stripFlag);
ZEQ_API ZeqStatus zeqiErodeStrip_Ellipse_32f_C1R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep,
        ZeqiSize* roiSize, ZeqiMorphState* pState, int stripFlag);
ZEQ_API ZeqStatus zeqiErodeStrip_Ellipse_32f_C3R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep,
        ZeqiSize* roiSize, ZeqiMorphState* pState, int stripFlag);
ZEQ_API ZeqStatus zeqiErodeStrip_Ellipse_32f_C4R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep,
        ZeqiSize* roiSize, ZeqiMorphState* pState, int stripFlag);

/* ==== Minimum and maximum filters ==== */
/*
 * dst(x, y) = max (FilterMax) or min (FilterMin), per channel, of
 * src(x - anchor.x + i, y - anchor.y + j), 0 <= i < maskSize.width,
 * 0 <= j < maskSize.height. The caller supplies the border: the source is
 * read that far outside the roi. C4 filters all four channels.
 * Floats are folded along each row from the left, then the row results
 * from the top, as acc = (acc > v) ? acc : v (minimum: <): a NaN survives
 * only as the later operand of a step, a NaN accumulator gives way to the
 * next value, and of two equal zeros the later one is kept.
 * A 1x1 mask copies the roi; the 32f C4 forms then leave the destination's
 * fourth channel unchanged. Steps in bytes, only tested for being below 1;
 * float rows advance by the step rounded down to a multiple of 4. Not in
 * place.
 * Statuses, in order: zeqStsNullPtr; zeqStsSize (width or height < 1);
 * zeqStsStep (a step < 1); zeqStsMaskSize (a mask side < 1); zeqStsAnchor
 * (anchor outside the mask); zeqStsNoMem (the row buffer).
 */
ZEQ_API ZeqStatus zeqiFilterMax_8u_C1R(const Zeq8u* pSrc, int srcStep, Zeq8u* pDst, int dstStep,
        ZeqiSize roiSize, ZeqiSize maskSize, ZeqiPoint anchor);
ZEQ_API ZeqStatus zeqiFilterMax_8u_C3R(const Zeq8u* pSrc, int srcStep, Zeq8u* pDst, int dstStep,
        ZeqiSize roiSize, ZeqiSize maskSize, ZeqiPoint anchor);
ZEQ_API ZeqStatus zeqiFilterMax_8u_C4R(const Zeq8u* pSrc, int srcStep, Zeq8u* pDst, int dstStep,
        ZeqiSize roiSize, ZeqiSize maskSize, ZeqiPoint anchor);
ZEQ_API ZeqStatus zeqiFilterMax_32f_C1R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep,
        ZeqiSize roiSize, ZeqiSize maskSize, ZeqiPoint anchor);
ZEQ_API ZeqStatus zeqiFilterMax_32f_C3R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep,
        ZeqiSize roiSize, ZeqiSize maskSize, ZeqiPoint anchor);
ZEQ_API ZeqStatus zeqiFilterMax_32f_C4R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep,
        ZeqiSize roiSize, ZeqiSize maskSize, ZeqiPoint anchor);
ZEQ_API ZeqStatus zeqiFilterMin_8u_C1R(const Zeq8u* pSrc, int srcStep, Zeq8u* pDst, int dstStep,
        ZeqiSize roiSize, ZeqiSize maskSize, ZeqiPoint anchor);
ZEQ_API ZeqStatus zeqiFilterMin_8u_C3R(const Zeq8u* pSrc, int srcStep, Zeq8u* pDst, int dstStep,
        ZeqiSize roiSize, ZeqiSize maskSize, ZeqiPoint anchor);
ZEQ_API ZeqStatus zeqiFilterMin_8u_C4R(const Zeq8u* pSrc, int srcStep, Zeq8u* pDst, int dstStep,
        ZeqiSize roiSize, ZeqiSize maskSize, ZeqiPoint anchor);
ZEQ_API ZeqStatus zeqiFilterMin_32f_C1R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep,
        ZeqiSize roiSize, ZeqiSize maskSize, ZeqiPoint anchor);
ZEQ_API ZeqStatus zeqiFilterMin_32f_C3R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep,
        ZeqiSize roiSize, ZeqiSize maskSize, ZeqiPoint anchor);
ZEQ_API ZeqStatus zeqiFilterMin_32f_C4R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep,
        ZeqiSize roiSize, ZeqiSize maskSize, ZeqiPoint anchor);

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
/* N = 2^order points, order 0 to 30.
 *   forward  X[k] = sum_j x[j] exp(-2 pi i j k / N)
 *   inverse  x[j] = sum_k X[k] exp(+2 pi i j k / N)
 * scaled as the InitAlloc flag says: zeqFftScaleFwdByN (forward / N),
 * zeqFftScaleInvByN (inverse / N), zeqFftScaleBySqrtN (both / sqrt(N)),
 * zeqFftScaleNone. hint is kept but not used. A specification is created by
 * InitAlloc, released by the matching Free, read-only in between: any number
 * of threads may use one at once, each with its own buffer.
 * Complex transforms take N Zeq32fc values. Real transforms take N reals and
 * give the Pack spectrum of N floats: R0, R1, I1, ..., R(N/2-1), I(N/2-1),
 * R(N/2) (for N = 2: R0, R1; for N = 1 the sample itself).
 * pBuffer: at least GetBufSize bytes, any alignment, or NULL to let the call
 * allocate (and free) its own. Source and destination may be the same array;
 * otherwise they must not overlap. The inverse real transform never writes
 * its source. The AVX2 and AVX-512 kernels fuse multiplies and adds, so
 * their results differ from the SSE2 ones within the transform's rounding.
 * Statuses: zeqStsNullPtr (the specification is checked before the data),
 * zeqStsFftOrder (order outside 0..30), zeqStsFftFlag (flag not 1, 2, 4, 8),
 * zeqStsContextMatch (a complex specification given to a real function or
 * the reverse, or a freed one), zeqStsNoMem. A failed InitAlloc leaves
 * *ppSpec unchanged and frees what it made. */
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
/* The spectrum of a W x H float image, W = 2^orderX, H = 2^orderY (0..30):
 *   F(u, v) = sum_x,y f(x, y) exp(-2 pi i (u x / W + v y / H))
 * held in the 2-D Pack layout (W x H floats): every row is laid out like a
 * 1-D Pack of length W, columns 0 and W-1 like 1-D Packs of length H:
 *   column 0 (and W-1): the 1-D Pack along v of F(0, v) (and of F(W/2, v));
 *   columns 2k-1, 2k, every row v: Re F(k, v), Im F(k, v), k = 1..W/2-1.
 * Scaling flags as for the 1-D transforms, applied per direction (FwdByN
 * divides by W x H in total). pBuffer as for the 1-D transforms
 * (zeqiFFTGetBufSize_R_32f, or NULL). Steps only need to be at least 1; the
 * caller gives rows of at least W floats. The inverse never writes its source.
 * zeqiMulPack_32f_C1IR: pSrcDst = pSrcDst x pSrc element by element in the
 * 2-D Pack sense (real entries as reals, Re/Im pairs as complex numbers), for
 * any region size; it checks steps (< 1: zeqStsStep) before the size.
 * Statuses: zeqStsNullPtr, zeqStsContextMatch, zeqStsStep, zeqStsSize,
 * zeqStsFftOrder, zeqStsFftFlag, zeqStsNoMem, as for the 1-D transforms. */
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
