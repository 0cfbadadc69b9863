// Corner measures: the smaller eigenvalue, or both eigenvalues and unit
// eigenvectors, of the structure matrix [Sxx Sxy; Sxy Syy] of box-summed
// derivative products at every pixel.
//
// Two Sobel states and three box-sum states run strip by strip over the
// image, so the caller's work buffer holds only S + 1 rows of each of three
// areas: A (dx, then dx^2, then Sxx), C (dy, dy^2, Syy) and B (dx dy, Sxy),
// in that order. Derivatives land one row into their area and the box sums on
// its first row, so a box-sum state reads each row before the sum row above
// it is written. The kernels are in zqcvcorner.isa.cpp.
#include "core/zqcvcore.h"
#include "filters/zqcvcorner.h"

#include <algorithm>
#include <climits>
#include <type_traits>

namespace {

bool oneOf357(int k) { return k == 3 || k == 5 || k == 7; }

// Rows per strip: the largest of the two kernel sizes, and at least 7.
int stripRows(int apertureSize, int avgWindow) { return std::max({apertureSize, avgWindow, 7}); }

ZeqStatus bufferSize(int roiWidth, int apertureSize, int avgWindow, int* pBufferSize) {
    ZQ_CHECK(zq::nonNull(pBufferSize));
    if (roiWidth < 1 || !oneOf357(apertureSize) || !oneOf357(avgWindow)) return zeqStsSize;
    const int64_t w = roiWidth;
    const int64_t bytes = 12 * w + 12 * w * stripRows(apertureSize, avgWindow);
    if (bytes > INT_MAX) return zeqStsSize;
    *pBufferSize = int(bytes);
    return zeqStsOk;
}

// The Sobel state filter of each source type, and the type code of its state.
template <class T>
struct Source;
template <>
struct Source<Zeq8u> {
    static constexpr ZeqDataType code = zeq8u;
    static ZeqStatus sobel(const Zeq8u* s, int ss, Zeq8u* d, int ds, ZeqiSize* roi, ZeqiConvState* st, int flag) {
        return zeqiSobel_8u16s_C1R(s, ss, reinterpret_cast<Zeq16s*>(d), ds, roi, st, flag);
    }
};
template <>
struct Source<Zeq8s> {
    static constexpr ZeqDataType code = zeq8s;
    static ZeqStatus sobel(const Zeq8s* s, int ss, Zeq8u* d, int ds, ZeqiSize* roi, ZeqiConvState* st, int flag) {
        return zeqiSobel_8s16s_C1R(s, ss, reinterpret_cast<Zeq16s*>(d), ds, roi, st, flag);
    }
};
template <>
struct Source<Zeq32f> {
    static constexpr ZeqDataType code = zeq32f;
    static ZeqStatus sobel(const Zeq32f* s, int ss, Zeq8u* d, int ds, ZeqiSize* roi, ZeqiConvState* st, int flag) {
        return zeqiSobel_32f_C1R(s, ss, reinterpret_cast<Zeq32f*>(d), ds, roi, st, flag);
    }
};

// The five states of one call, freed with it.
struct States {
    ZeqiConvState* st[5] = {};
    ~States() {
        for (ZeqiConvState* s : st)
            if (s) zeqiConvolFree(s);
    }
};

ZeqStatus boxSum(Zeq8u* area, ptrdiff_t rowBytes, int width, int rows, ZeqiConvState* st, int flag, int* produced) {
    ZeqiSize roi{width, rows};
    const ZeqStatus status = zeqiBlur_32f_C1R(reinterpret_cast<const Zeq32f*>(area + rowBytes), int(rowBytes),
                                              reinterpret_cast<Zeq32f*>(area), int(rowBytes), &roi, st, flag);
    *produced = roi.height;
    return status;
}

// Vecs: six values per pixel (EigenValsVecs) instead of one (MinEigenVal).
template <bool Vecs, class T>
ZeqStatus corners(const T* pSrc, int srcStep, Zeq32f* pDst, int dstStep, ZeqiSize roi, int apertureSize,
                  int avgWindow, Zeq8u* pBuffer) {
    ZQ_CHECK(zq::nonNull(pSrc, pDst, pBuffer));
    ZQ_CHECK(zq::roiSize(roi));
    ZQ_CHECK(zq::stepsAtLeast(zq::rowBytes<T>(roi.width), srcStep));
    ZQ_CHECK(zq::stepsAtLeast(zq::rowBytes<Zeq32f>(roi.width, Vecs ? 6 : 1), dstStep));
    ZQ_CHECK(zq::stepsEven(dstStep));
    if (!oneOf357(apertureSize)) return zeqStsSize;
    if (!oneOf357(avgWindow)) return zeqStsSize;

    // 1 / (255 p^2 q^2), p = 2^(apertureSize - 1), q = avgWindow: the 255 for
    // float sources too, so that every type gives the same scale.
    const float p = float(1 << (apertureSize - 1)), q = float(avgWindow);
    const float scale = 1.0f / (255.0f * p * p * q * q);

    const int w = roi.width;
    States states;
    ZQ_CHECK(zeqiSobelInitAlloc(w, Source<T>::code, apertureSize, 0, 1, 0, &states.st[0]));
    ZQ_CHECK(zeqiSobelInitAlloc(w, Source<T>::code, apertureSize, 0, 0, 1, &states.st[1]));
    for (int i = 2; i < 5; ++i) ZQ_CHECK(zeqiBlurInitAlloc(w, zeq32f, avgWindow, &states.st[i]));

    const int S = stripRows(apertureSize, avgWindow), a2 = apertureSize / 2, b2 = avgWindow / 2;
    const ptrdiff_t rowBytes = ptrdiff_t(w) * 4, areaBytes = (S + 1) * rowBytes;
    Zeq8u* const A = pBuffer;
    Zeq8u* const C = A + areaBytes;
    Zeq8u* const B = C + areaBytes;
    const T* src = pSrc;
    Zeq8u* dst = reinterpret_cast<Zeq8u*>(pDst);
    int remaining = roi.height;
    do {
        int flag, n;
        if (remaining == roi.height) {
            if (roi.height > S) flag = 1, n = roi.height > S + a2 ? S + a2 : roi.height - 1;
            else flag = 0, n = roi.height;
        } else if (S < a2 + b2 + remaining) {
            flag = 4, n = remaining > S ? S : remaining - 1;
        } else {
            flag = 2, n = remaining;
        }

        ZeqiSize dxRoi{w, n}, dyRoi{w, n};
        ZQ_CHECK(Source<T>::sobel(src, srcStep, A + rowBytes, int(rowBytes), &dxRoi, states.st[0], flag));
        ZQ_CHECK(Source<T>::sobel(src, srcStep, C + rowBytes, int(rowBytes), &dyRoi, states.st[1], flag));
        src = zq::row(src, srcStep, n);
        remaining -= n;
        const int m = dxRoi.height;

        zq::dispatch([&](auto tier) {
            if constexpr (std::is_same<T, Zeq32f>::value)
                zq::owncvMulDBuffers_32f<tier.value>(w, m, A + rowBytes, B + rowBytes, C + rowBytes);
            else
                zq::owncvMulDBuffers_16s32f<tier.value>(w, m, A + rowBytes, B + rowBytes, C + rowBytes);
        });

        int produced;
        ZQ_CHECK(boxSum(A, rowBytes, w, m, states.st[2], flag, &produced));
        ZQ_CHECK(boxSum(B, rowBytes, w, m, states.st[3], flag, &produced));
        ZQ_CHECK(boxSum(C, rowBytes, w, m, states.st[4], flag, &produced));

        zq::dispatch([&](auto tier) {
            if constexpr (Vecs)
                zq::calcValues<tier.value>(A, C, B, w, rowBytes, dst, dstStep, produced, scale);
            else
                zq::calcMinValues<tier.value>(A, C, B, w, rowBytes, dst, dstStep, produced, scale);
        });
        dst += ptrdiff_t(produced) * dstStep;
    } while (remaining > 0);
    return zeqStsOk;
}

}  // namespace

ZeqStatus zeqiMinEigenValGetSize(int roiWidth, int apertureSize, int avgWindow, int* pBufferSize) {
    return bufferSize(roiWidth, apertureSize, avgWindow, pBufferSize);
}

ZeqStatus zeqiEigenValsVecsGetSize(int roiWidth, int apertureSize, int avgWindow, int* pBufferSize) {
    return bufferSize(roiWidth, apertureSize, avgWindow, pBufferSize);
}

ZeqStatus zeqiMinEigenVal_8u32f_C1R(const Zeq8u* pSrc, int srcStep, Zeq32f* pMinEigenVal, int minValStep,
                                    ZeqiSize roiSize, int apertureSize, int avgWindow, Zeq8u* pBuffer) {
    return corners<false>(pSrc, srcStep, pMinEigenVal, minValStep, roiSize, apertureSize, avgWindow, pBuffer);
}

ZeqStatus zeqiMinEigenVal_8s32f_C1R(const Zeq8s* pSrc, int srcStep, Zeq32f* pMinEigenVal, int minValStep,
                                    ZeqiSize roiSize, int apertureSize, int avgWindow, Zeq8u* pBuffer) {
    return corners<false>(pSrc, srcStep, pMinEigenVal, minValStep, roiSize, apertureSize, avgWindow, pBuffer);
}

ZeqStatus zeqiMinEigenVal_32f_C1R(const Zeq32f* pSrc, int srcStep, Zeq32f* pMinEigenVal, int minValStep,
                                  ZeqiSize roiSize, int apertureSize, int avgWindow, Zeq8u* pBuffer) {
    return corners<false>(pSrc, srcStep, pMinEigenVal, minValStep, roiSize, apertureSize, avgWindow, pBuffer);
}

ZeqStatus zeqiEigenValsVecs_8u32f_C1R(const Zeq8u* pSrc, int srcStep, Zeq32f* pEigenVV, int eigStep,
                                      ZeqiSize roiSize, int apertureSize, int avgWindow, Zeq8u* pBuffer) {
    return corners<true>(pSrc, srcStep, pEigenVV, eigStep, roiSize, apertureSize, avgWindow, pBuffer);
}

ZeqStatus zeqiEigenValsVecs_8s32f_C1R(const Zeq8s* pSrc, int srcStep, Zeq32f* pEigenVV, int eigStep,
                                      ZeqiSize roiSize, int apertureSize, int avgWindow, Zeq8u* pBuffer) {
    return corners<true>(pSrc, srcStep, pEigenVV, eigStep, roiSize, apertureSize, avgWindow, pBuffer);
}

ZeqStatus zeqiEigenValsVecs_32f_C1R(const Zeq32f* pSrc, int srcStep, Zeq32f* pEigenVV, int eigStep,
                                    ZeqiSize roiSize, int apertureSize, int avgWindow, Zeq8u* pBuffer) {
    return corners<true>(pSrc, srcStep, pEigenVV, eigStep, roiSize, apertureSize, avgWindow, pBuffer);
}
