// Minimum and maximum of a region with their positions: one channel or the
// channel of interest of three, whole or under a mask.
//
// Two phases. Rows are reduced top to bottom and a row takes over the minimum
// (maximum) only when its own is strictly smaller (larger) than the running
// one, which starts at the type's largest (smallest) value. The winning rows
// are then scanned left to right for the first pixel equal to the extreme, so
// ties go to the first occurrence in row-major order.
#include "stats/zqcvstatrows.h"

#include <algorithm>
#include <cfloat>
#include <limits>

namespace {

// Running minimum and maximum of a row in 16-byte lanes plus a scalar tail.
// Integer registers hold order-preserving keys: 8s is biased to unsigned
// bytes, 16u to signed words (SSE2 compares no unsigned words).
template <class T>
struct RowMinMax {
    static_assert(sizeof(T) <= 2, "integer elements");
    using Value = int;
    static constexpr Value kMax = std::numeric_limits<T>::max(), kMin = std::numeric_limits<T>::min();

    __m128i lo, hi;
    Value tailLo, tailHi;
    RowMinMax() { reset(); }

    void reset() {
        // Keys of the type's largest and smallest values.
        lo = sizeof(T) == 1 ? _mm_set1_epi8(-1) : _mm_set1_epi16(32767);
        hi = sizeof(T) == 1 ? _mm_setzero_si128() : _mm_set1_epi16(-32768);
        tailLo = kMax;
        tailHi = kMin;
    }
    // Unsigned-byte keys of 8s; 16u stays as it is until it is biased below.
    static __m128i unsignedKey(__m128i v) {
        if constexpr (std::is_same<T, Zeq8s>::value) return _mm_xor_si128(v, _mm_set1_epi8(-128));
        else return v;
    }
    void addKeys(__m128i forMin, __m128i forMax) {
        if constexpr (sizeof(T) == 1) {
            lo = _mm_min_epu8(lo, forMin);
            hi = _mm_max_epu8(hi, forMax);
        } else {
            const __m128i bias = _mm_set1_epi16(-32768);
            lo = _mm_min_epi16(lo, _mm_xor_si128(forMin, bias));
            hi = _mm_max_epi16(hi, _mm_xor_si128(forMax, bias));
        }
    }
    void add(__m128i v) {
        const __m128i k = unsignedKey(v);
        addKeys(k, k);
    }
    // Left-out elements become the top key for the minimum and zero for the maximum.
    void add(__m128i v, __m128i sel) {
        const __m128i k = unsignedKey(v);
        addKeys(_mm_or_si128(k, _mm_xor_si128(sel, _mm_set1_epi32(-1))), _mm_and_si128(k, sel));
    }
    void add(T x) {
        if (x < tailLo) tailLo = x;
        if (x > tailHi) tailHi = x;
    }
    void flush() {}

    static Value value(__m128i keyLane0) {
        const int key = _mm_cvtsi128_si32(keyLane0);
        if constexpr (std::is_same<T, Zeq8u>::value) return key & 0xFF;
        else if constexpr (std::is_same<T, Zeq8s>::value) return (key & 0xFF) - 128;
        else return int(int16_t(key)) + 32768;
    }
    template <bool Min>
    static __m128i fold(__m128i a, __m128i b) {
        if constexpr (sizeof(T) == 1) return Min ? _mm_min_epu8(a, b) : _mm_max_epu8(a, b);
        else return Min ? _mm_min_epi16(a, b) : _mm_max_epi16(a, b);
    }
    template <bool Min>
    static Value reduce(__m128i v) {
        v = fold<Min>(v, _mm_srli_si128(v, 8));
        v = fold<Min>(v, _mm_srli_si128(v, 4));
        v = fold<Min>(v, _mm_srli_si128(v, 2));
        if constexpr (sizeof(T) == 1) v = fold<Min>(v, _mm_srli_si128(v, 1));
        return value(v);
    }
    Value rowMin() const { return std::min(reduce<true>(lo), tailLo); }
    Value rowMax() const { return std::max(reduce<false>(hi), tailHi); }
};

// Floats. The new element is the first operand of min/max so that a NaN
// pixel leaves the running value as it is, in the registers as in the tail.
template <>
struct RowMinMax<Zeq32f> {
    using Value = Zeq32f;
    static constexpr Value kMax = FLT_MAX, kMin = -FLT_MAX;

    __m128 lo, hi;
    Value tailLo, tailHi;
    RowMinMax() { reset(); }

    void reset() {
        lo = _mm_set1_ps(kMax);
        hi = _mm_set1_ps(kMin);
        tailLo = kMax;
        tailHi = kMin;
    }
    void add(__m128 v) {
        lo = _mm_min_ps(v, lo);
        hi = _mm_max_ps(v, hi);
    }
    void add(__m128 v, __m128 sel) {
        lo = _mm_min_ps(_mm_or_ps(_mm_and_ps(v, sel), _mm_andnot_ps(sel, _mm_set1_ps(kMax))), lo);
        hi = _mm_max_ps(_mm_or_ps(_mm_and_ps(v, sel), _mm_andnot_ps(sel, _mm_set1_ps(kMin))), hi);
    }
    void add(Zeq32f x) {
        if (x < tailLo) tailLo = x;
        if (x > tailHi) tailHi = x;
    }
    void flush() {}

    Value rowMin() const {
        __m128 v = _mm_min_ps(lo, _mm_movehl_ps(lo, lo));
        v = _mm_min_ss(v, _mm_shuffle_ps(v, v, 1));
        const Value r = _mm_cvtss_f32(v);
        return tailLo < r ? tailLo : r;
    }
    Value rowMax() const {
        __m128 v = _mm_max_ps(hi, _mm_movehl_ps(hi, hi));
        v = _mm_max_ss(v, _mm_shuffle_ps(v, v, 1));
        const Value r = _mm_cvtss_f32(v);
        return tailHi > r ? tailHi : r;
    }
};

struct Extremes {
    Zeq32f minVal, maxVal;
    ZeqiPoint minAt, maxAt;
};

template <class T, int Ch, bool Masked>
Extremes ownMinMaxIndx(const T* src, int srcStep, const Zeq8u* mask, int maskStep, ZeqiSize roi, int c0) {
    using Acc = RowMinMax<T>;
    using Value = typename Acc::Value;
    if (Masked && !zq::anyNonZero(mask, maskStep, roi.width, roi.height)) return {0, 0, {0, 0}, {0, 0}};

    Value lo = Acc::kMax, hi = Acc::kMin;
    int loY = 0, hiY = 0;
    Acc acc;
    for (int y = 0; y < roi.height; ++y) {
        acc.reset();
        zq::walkRow<T, Ch, Masked>(zq::row(src, srcStep, y), Masked ? zq::row(mask, maskStep, y) : nullptr,
                                   roi.width, c0, acc);
        const Value rowLo = acc.rowMin(), rowHi = acc.rowMax();
        if (rowLo < lo) lo = rowLo, loY = y;
        if (rowHi > hi) hi = rowHi, hiY = y;
    }

    // Column phase; a pixel that is never matched (the running value kept its
    // start) leaves x at 0.
    auto firstEqual = [&](int y, Value v) {
        const T* p = zq::row(src, srcStep, y);
        const Zeq8u* m = Masked ? zq::row(mask, maskStep, y) : nullptr;
        for (int x = 0; x < roi.width; ++x)
            if ((!Masked || m[x]) && Value(zq::load(p + ptrdiff_t(Ch) * x + c0)) == v) return x;
        return 0;
    };
    return {Zeq32f(lo), Zeq32f(hi), {firstEqual(loY, lo), loY}, {firstEqual(hiY, hi), hiY}};
}

constexpr bool kMasked = true, kWhole = false;

// Only the image and mask pointers are tested; the result pointers are required.
template <class T, int Ch, bool Masked>
ZeqStatus minMaxIndx(const T* src, int srcStep, const Zeq8u* mask, int maskStep, ZeqiSize roi, int coi,
                     Zeq32f* pMinVal, Zeq32f* pMaxVal, ZeqiPoint* pMinIndex, ZeqiPoint* pMaxIndex) {
    ZQ_CHECK((zq::checkStatArgs<T, Ch, Masked>(src, srcStep, mask, maskStep, roi, coi)));
    const Extremes e = ownMinMaxIndx<T, Ch, Masked>(src, srcStep, mask, maskStep, roi, Ch == 3 ? coi - 1 : 0);
    *pMinVal = e.minVal;
    *pMaxVal = e.maxVal;
    *pMinIndex = e.minAt;
    *pMaxIndex = e.maxAt;
    return zeqStsOk;
}

}  // namespace

ZeqStatus zeqiMinMaxIndx_8u_C1R(const Zeq8u* pSrc, int srcStep, ZeqiSize roiSize, Zeq32f* pMinVal, Zeq32f* pMaxVal,
                                ZeqiPoint* pMinIndex, ZeqiPoint* pMaxIndex) {
    return minMaxIndx<Zeq8u, 1, kWhole>(pSrc, srcStep, nullptr, 0, roiSize, 1, pMinVal, pMaxVal, pMinIndex,
                                        pMaxIndex);
}
ZeqStatus zeqiMinMaxIndx_8u_C3CR(const Zeq8u* pSrc, int srcStep, ZeqiSize roiSize, int coi, Zeq32f* pMinVal,
                                 Zeq32f* pMaxVal, ZeqiPoint* pMinIndex, ZeqiPoint* pMaxIndex) {
    return minMaxIndx<Zeq8u, 3, kWhole>(pSrc, srcStep, nullptr, 0, roiSize, coi, pMinVal, pMaxVal, pMinIndex,
                                        pMaxIndex);
}
ZeqStatus zeqiMinMaxIndx_8u_C1MR(const Zeq8u* pSrc, int srcStep, const Zeq8u* pMask, int maskStep, ZeqiSize roiSize,
                                 Zeq32f* pMinVal, Zeq32f* pMaxVal, ZeqiPoint* pMinIndex, ZeqiPoint* pMaxIndex) {
    return minMaxIndx<Zeq8u, 1, kMasked>(pSrc, srcStep, pMask, maskStep, roiSize, 1, pMinVal, pMaxVal, pMinIndex,
                                         pMaxIndex);
}
ZeqStatus zeqiMinMaxIndx_8u_C3CMR(const Zeq8u* pSrc, int srcStep, const Zeq8u* pMask, int maskStep, ZeqiSize roiSize,
                                  int coi, Zeq32f* pMinVal, Zeq32f* pMaxVal, ZeqiPoint* pMinIndex,
                                  ZeqiPoint* pMaxIndex) {
    return minMaxIndx<Zeq8u, 3, kMasked>(pSrc, srcStep, pMask, maskStep, roiSize, coi, pMinVal, pMaxVal, pMinIndex,
                                         pMaxIndex);
}
ZeqStatus zeqiMinMaxIndx_8s_C1R(const Zeq8s* pSrc, int srcStep, ZeqiSize roiSize, Zeq32f* pMinVal, Zeq32f* pMaxVal,
                                ZeqiPoint* pMinIndex, ZeqiPoint* pMaxIndex) {
    return minMaxIndx<Zeq8s, 1, kWhole>(pSrc, srcStep, nullptr, 0, roiSize, 1, pMinVal, pMaxVal, pMinIndex,
                                        pMaxIndex);
}
ZeqStatus zeqiMinMaxIndx_8s_C3CR(const Zeq8s* pSrc, int srcStep, ZeqiSize roiSize, int coi, Zeq32f* pMinVal,
                                 Zeq32f* pMaxVal, ZeqiPoint* pMinIndex, ZeqiPoint* pMaxIndex) {
    return minMaxIndx<Zeq8s, 3, kWhole>(pSrc, srcStep, nullptr, 0, roiSize, coi, pMinVal, pMaxVal, pMinIndex,
                                        pMaxIndex);
}
ZeqStatus zeqiMinMaxIndx_8s_C1MR(const Zeq8s* pSrc, int srcStep, const Zeq8u* pMask, int maskStep, ZeqiSize roiSize,
                                 Zeq32f* pMinVal, Zeq32f* pMaxVal, ZeqiPoint* pMinIndex, ZeqiPoint* pMaxIndex) {
    return minMaxIndx<Zeq8s, 1, kMasked>(pSrc, srcStep, pMask, maskStep, roiSize, 1, pMinVal, pMaxVal, pMinIndex,
                                         pMaxIndex);
}
ZeqStatus zeqiMinMaxIndx_8s_C3CMR(const Zeq8s* pSrc, int srcStep, const Zeq8u* pMask, int maskStep, ZeqiSize roiSize,
                                  int coi, Zeq32f* pMinVal, Zeq32f* pMaxVal, ZeqiPoint* pMinIndex,
                                  ZeqiPoint* pMaxIndex) {
    return minMaxIndx<Zeq8s, 3, kMasked>(pSrc, srcStep, pMask, maskStep, roiSize, coi, pMinVal, pMaxVal, pMinIndex,
                                         pMaxIndex);
}
ZeqStatus zeqiMinMaxIndx_16u_C1R(const Zeq16u* pSrc, int srcStep, ZeqiSize roiSize, Zeq32f* pMinVal, Zeq32f* pMaxVal,
                                 ZeqiPoint* pMinIndex, ZeqiPoint* pMaxIndex) {
    return minMaxIndx<Zeq16u, 1, kWhole>(pSrc, srcStep, nullptr, 0, roiSize, 1, pMinVal, pMaxVal, pMinIndex,
                                         pMaxIndex);
}
ZeqStatus zeqiMinMaxIndx_16u_C3CR(const Zeq16u* pSrc, int srcStep, ZeqiSize roiSize, int coi, Zeq32f* pMinVal,
                                  Zeq32f* pMaxVal, ZeqiPoint* pMinIndex, ZeqiPoint* pMaxIndex) {
    return minMaxIndx<Zeq16u, 3, kWhole>(pSrc, srcStep, nullptr, 0, roiSize, coi, pMinVal, pMaxVal, pMinIndex,
                                         pMaxIndex);
}
ZeqStatus zeqiMinMaxIndx_16u_C1MR(const Zeq16u* pSrc, int srcStep, const Zeq8u* pMask, int maskStep, ZeqiSize roiSize,
                                  Zeq32f* pMinVal, Zeq32f* pMaxVal, ZeqiPoint* pMinIndex, ZeqiPoint* pMaxIndex) {
    return minMaxIndx<Zeq16u, 1, kMasked>(pSrc, srcStep, pMask, maskStep, roiSize, 1, pMinVal, pMaxVal, pMinIndex,
                                          pMaxIndex);
}
ZeqStatus zeqiMinMaxIndx_16u_C3CMR(const Zeq16u* pSrc, int srcStep, const Zeq8u* pMask, int maskStep,
                                   ZeqiSize roiSize, int coi, Zeq32f* pMinVal, Zeq32f* pMaxVal, ZeqiPoint* pMinIndex,
                                   ZeqiPoint* pMaxIndex) {
    return minMaxIndx<Zeq16u, 3, kMasked>(pSrc, srcStep, pMask, maskStep, roiSize, coi, pMinVal, pMaxVal, pMinIndex,
                                          pMaxIndex);
}
ZeqStatus zeqiMinMaxIndx_32f_C1R(const Zeq32f* pSrc, int srcStep, ZeqiSize roiSize, Zeq32f* pMinVal, Zeq32f* pMaxVal,
                                 ZeqiPoint* pMinIndex, ZeqiPoint* pMaxIndex) {
    return minMaxIndx<Zeq32f, 1, kWhole>(pSrc, srcStep, nullptr, 0, roiSize, 1, pMinVal, pMaxVal, pMinIndex,
                                         pMaxIndex);
}
ZeqStatus zeqiMinMaxIndx_32f_C3CR(const Zeq32f* pSrc, int srcStep, ZeqiSize roiSize, int coi, Zeq32f* pMinVal,
                                  Zeq32f* pMaxVal, ZeqiPoint* pMinIndex, ZeqiPoint* pMaxIndex) {
    return minMaxIndx<Zeq32f, 3, kWhole>(pSrc, srcStep, nullptr, 0, roiSize, coi, pMinVal, pMaxVal, pMinIndex,
                                         pMaxIndex);
}
ZeqStatus zeqiMinMaxIndx_32f_C1MR(const Zeq32f* pSrc, int srcStep, const Zeq8u* pMask, int maskStep, ZeqiSize roiSize,
                                  Zeq32f* pMinVal, Zeq32f* pMaxVal, ZeqiPoint* pMinIndex, ZeqiPoint* pMaxIndex) {
    return minMaxIndx<Zeq32f, 1, kMasked>(pSrc, srcStep, pMask, maskStep, roiSize, 1, pMinVal, pMaxVal, pMinIndex,
                                          pMaxIndex);
}
ZeqStatus zeqiMinMaxIndx_32f_C3CMR(const Zeq32f* pSrc, int srcStep, const Zeq8u* pMask, int maskStep,
                                   ZeqiSize roiSize, int coi, Zeq32f* pMinVal, Zeq32f* pMaxVal, ZeqiPoint* pMinIndex,
                                   ZeqiPoint* pMaxIndex) {
    return minMaxIndx<Zeq32f, 3, kMasked>(pSrc, srcStep, pMask, maskStep, roiSize, coi, pMinVal, pMaxVal, pMinIndex,
                                          pMaxIndex);
}
