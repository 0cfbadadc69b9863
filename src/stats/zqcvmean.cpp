// Mean, and mean with standard deviation, of a region: one channel or the
// channel of interest of three, whole or under a mask.
//
// Integer sums are exact: 8-bit rows sum in 32 bits and square in 64 bits,
// rows then add up in 64 bits and (squares) in double. 16u values are shifted
// by -32768 first so a row's squares fit 64 bits. Float sums run in double.
#include "stats/zqcvmean.h"
#include "stats/zqcvstatrows.h"

#include <immintrin.h>

#include <cmath>

namespace {

inline int64_t sumLanes64(__m128i v) {
    int64_t lanes[2];
    _mm_storeu_si128(reinterpret_cast<__m128i*>(lanes), v);
    return lanes[0] + lanes[1];
}

inline uint32_t sumLanes32(__m128i v) {
    v = _mm_add_epi32(v, _mm_shuffle_epi32(v, _MM_SHUFFLE(1, 0, 3, 2)));
    v = _mm_add_epi32(v, _mm_shuffle_epi32(v, _MM_SHUFFLE(2, 3, 0, 1)));
    return uint32_t(_mm_cvtsi128_si32(v));
}

// Unsigned 32-bit lanes widened and added to 64-bit lanes.
inline __m128i addWidened(__m128i acc64, __m128i u32) {
    const __m128i zero = _mm_setzero_si128();
    return _mm_add_epi64(acc64, _mm_add_epi64(_mm_unpacklo_epi32(u32, zero), _mm_unpackhi_epi32(u32, zero)));
}

// 8u and 8s: a row's sum in 32 bits, its squares in 64 bits; across rows the
// sum in 64 bits and the squares in double.
template <class T, bool Squares>
struct Sums8 {
    __m128i sum = _mm_setzero_si128(), sq32 = _mm_setzero_si128(), sq64 = _mm_setzero_si128();
    uint32_t tailSum = 0;
    int64_t tailSq = 0;
    int64_t s1 = 0;
    double s2 = 0;

    void add(__m128i v) {
        const __m128i zero = _mm_setzero_si128();
        __m128i lo, hi;
        if constexpr (std::is_same<T, Zeq8u>::value) {
            sum = _mm_add_epi64(sum, _mm_sad_epu8(v, zero));
            lo = _mm_unpacklo_epi8(v, zero);
            hi = _mm_unpackhi_epi8(v, zero);
        } else {
            lo = _mm_srai_epi16(_mm_unpacklo_epi8(v, v), 8);
            hi = _mm_srai_epi16(_mm_unpackhi_epi8(v, v), 8);
            const __m128i one = _mm_set1_epi16(1);
            sum = _mm_add_epi32(sum, _mm_add_epi32(_mm_madd_epi16(lo, one), _mm_madd_epi16(hi, one)));
        }
        if constexpr (Squares)
            sq32 = _mm_add_epi32(sq32, _mm_add_epi32(_mm_madd_epi16(lo, lo), _mm_madd_epi16(hi, hi)));
    }
    void add(__m128i v, __m128i sel) { add(_mm_and_si128(v, sel)); }
    void add(T x) {
        tailSum += uint32_t(int(x));
        if constexpr (Squares) tailSq += int(x) * int(x);
    }
    void flush() {
        if constexpr (Squares) {
            sq64 = addWidened(sq64, sq32);
            sq32 = _mm_setzero_si128();
        }
    }
    void endRow() {
        flush();
        const uint32_t lanes = std::is_same<T, Zeq8u>::value ? uint32_t(sumLanes64(sum)) : sumLanes32(sum);
        s1 += int32_t(lanes + tailSum);
        if constexpr (Squares) s2 += double(sumLanes64(sq64) + tailSq);
        sum = sq64 = _mm_setzero_si128();
        tailSum = 0;
        tailSq = 0;
    }
    double mean(double n) const { return double(s1) / n; }
    double variance(double n) const {
        const double m = mean(n);
        return s2 / n - m * m;
    }
};

// 16u: sums of x - 32768, which squares to at most 2^30.
template <bool Squares>
struct Sums16 {
    __m128i sum32 = _mm_setzero_si128(), sum64 = _mm_setzero_si128(), sq64 = _mm_setzero_si128();
    int64_t tailSum = 0, tailSq = 0;
    int64_t s1 = 0;  // shifted
    double s2 = 0;   // shifted

    static __m128i shifted(__m128i v) { return _mm_xor_si128(v, _mm_set1_epi16(-32768)); }
    void addShifted(__m128i k) {
        sum32 = _mm_add_epi32(sum32, _mm_madd_epi16(k, _mm_set1_epi16(1)));
        // Two squares of -32768 make 2^31: the pair sums are unsigned.
        if constexpr (Squares) sq64 = addWidened(sq64, _mm_madd_epi16(k, k));
    }
    void add(__m128i v) { addShifted(shifted(v)); }
    void add(__m128i v, __m128i sel) { addShifted(_mm_and_si128(shifted(v), sel)); }
    void add(Zeq16u x) {
        const int64_t k = int64_t(x) - 32768;
        tailSum += k;
        if constexpr (Squares) tailSq += k * k;
    }
    void flush() {
        sum64 = _mm_add_epi64(sum64, _mm_add_epi64(_mm_unpacklo_epi32(sum32, _mm_srai_epi32(sum32, 31)),
                                                   _mm_unpackhi_epi32(sum32, _mm_srai_epi32(sum32, 31))));
        sum32 = _mm_setzero_si128();
    }
    void endRow() {
        flush();
        s1 += sumLanes64(sum64) + tailSum;
        if constexpr (Squares) s2 += double(sumLanes64(sq64) + tailSq);
        sum64 = sq64 = _mm_setzero_si128();
        tailSum = tailSq = 0;
    }
    // The unshifted sum is exact in 64 bits, so the mean rounds once.
    double mean(double n) const { return double(s1 + int64_t(32768) * int64_t(n)) / n; }
    double variance(double n) const {
        const double m = double(s1) / n;
        return s2 / n - m * m;
    }
};

// 32f: sums and squares of the values converted to double.
template <bool Squares>
struct SumsF {
    __m128d sLo = _mm_setzero_pd(), sHi = _mm_setzero_pd(), qLo = _mm_setzero_pd(), qHi = _mm_setzero_pd();
    double tailSum = 0, tailSq = 0;

    void add(__m128 v) {
        const __m128d lo = _mm_cvtps_pd(v), hi = _mm_cvtps_pd(_mm_movehl_ps(v, v));
        sLo = _mm_add_pd(sLo, lo);
        sHi = _mm_add_pd(sHi, hi);
        if constexpr (Squares) {
            qLo = _mm_add_pd(qLo, _mm_mul_pd(lo, lo));
            qHi = _mm_add_pd(qHi, _mm_mul_pd(hi, hi));
        }
    }
    void add(__m128 v, __m128 sel) { add(_mm_and_ps(v, sel)); }
    void add(Zeq32f x) {
        tailSum += double(x);
        if constexpr (Squares) tailSq += double(x) * double(x);
    }
    void flush() {}
    void endRow() {}
    static double total(__m128d a, __m128d b, double tail) {
        const __m128d s = _mm_add_pd(a, b);
        return _mm_cvtsd_f64(_mm_add_sd(s, _mm_unpackhi_pd(s, s))) + tail;
    }
    double mean(double n) const { return total(sLo, sHi, tailSum) / n; }
    double variance(double n) const {
        const double m = mean(n);
        return total(qLo, qHi, tailSq) / n - m * m;
    }
};

template <class T, bool Squares>
using SumsOf = typename std::conditional<
    std::is_same<T, Zeq32f>::value, SumsF<Squares>,
    typename std::conditional<std::is_same<T, Zeq16u>::value, Sums16<Squares>, Sums8<T, Squares>>::type>::type;

// Sums over the taking-part elements of a region.
template <class T, int Ch, bool Masked, bool Squares, zq::Loads How = zq::Loads::Unaligned>
SumsOf<T, Squares> regionSums(const T* src, int srcStep, const Zeq8u* mask, int maskStep, ZeqiSize roi, int c0) {
    SumsOf<T, Squares> acc;
    for (int y = 0; y < roi.height; ++y) {
        zq::walkRow<T, Ch, Masked, How>(zq::row(src, srcStep, y), Masked ? zq::row(mask, maskStep, y) : nullptr,
                                         roi.width, c0, acc);
        acc.endRow();
    }
    return acc;
}

// Second pass for float images whose spread is small against their mean:
// deviations from the mean rounded to float, squared and summed in float
// lanes per row, rows added in double.
double ownStdDevAround_32f_C1R(const Zeq32f* src, int srcStep, ZeqiSize roi, Zeq32f m) {
    const __m128 vm = _mm_set1_ps(m);
    double total = 0;
    for (int y = 0; y < roi.height; ++y) {
        const Zeq32f* p = zq::row(src, srcStep, y);
        __m128 acc = _mm_setzero_ps();
        int x = 0;
        for (; x + 4 <= roi.width; x += 4) {
            const __m128 d = _mm_sub_ps(_mm_loadu_ps(p + x), vm);
            acc = _mm_add_ps(acc, _mm_mul_ps(d, d));
        }
        Zeq32f tail = 0;
        for (; x < roi.width; ++x) {
            const Zeq32f d = zq::load(p + x) - m;
            tail += d * d;
        }
        float lanes[4];
        _mm_storeu_ps(lanes, acc);
        total += double(lanes[0]) + double(lanes[1]) + double(lanes[2]) + double(lanes[3]) + double(tail);
    }
    return std::sqrt(total / (double(roi.width) * double(roi.height)));
}

template <class Sums>
void writeMeanStdDev(const Sums& s, double n, Zeq64f* pMean, Zeq64f* pStdDev) {
    if (pMean) *pMean = n > 0 ? s.mean(n) : 0.0;
    if (pStdDev) *pStdDev = n > 0 ? std::sqrt(std::fabs(s.variance(n))) : 0.0;
}

// Small images are summed element by element; mid-sized ones whose rows all
// reach a 16-byte boundary after the same head use aligned loads.
void ownMean_StdDev_32f_C1R(const Zeq32f* src, int srcStep, ZeqiSize roi, Zeq64f* pMean, Zeq64f* pStdDev) {
    const double n = double(roi.width) * double(roi.height);
    SumsF<true> s;
    if (n < 5001)
        s = regionSums<Zeq32f, 1, false, true, zq::Loads::Scalar>(src, srcStep, nullptr, 0, roi, 0);
    else if (n < 100000 && (reinterpret_cast<uintptr_t>(src) & 3) == 0 && (srcStep & 15) == 0)
        s = regionSums<Zeq32f, 1, false, true, zq::Loads::Aligned>(src, srcStep, nullptr, 0, roi, 0);
    else
        s = regionSums<Zeq32f, 1, false, true>(src, srcStep, nullptr, 0, roi, 0);
    const double mean = s.mean(n);
    double sd = std::sqrt(std::fabs(s.variance(n)));
    // One-pass variance loses its digits to mean*mean when the spread is small.
    if (0.005 * mean * mean > sd * sd) sd = ownStdDevAround_32f_C1R(src, srcStep, roi, Zeq32f(mean));
    if (pMean) *pMean = mean;
    if (pStdDev) *pStdDev = sd;
}

constexpr bool kMasked = true, kWhole = false;

template <class T, int Ch, bool Masked>
double pixelCount(const Zeq8u* mask, int maskStep, ZeqiSize roi) {
    if constexpr (Masked) return double(zq::countNonZero(mask, maskStep, roi.width, roi.height));
    else return double(roi.width) * double(roi.height);
}

// Masked mean. The 8-bit sum and count are kept as signed 32-bit values, so
// an 8u sum beyond 2^31 - 1 wraps.
template <class T, int Ch>
ZeqStatus mean(const T* src, int srcStep, const Zeq8u* mask, int maskStep, ZeqiSize roi, int coi, Zeq64f* pMean) {
    ZQ_CHECK(zq::nonNull(pMean));
    ZQ_CHECK((zq::checkStatArgs<T, Ch, kMasked>(src, srcStep, mask, maskStep, roi, coi)));
    const auto s = regionSums<T, Ch, kMasked, false>(src, srcStep, mask, maskStep, roi, coi - 1);
    const int64_t n = zq::countNonZero(mask, maskStep, roi.width, roi.height);
    if constexpr (sizeof(T) == 1) {
        const int32_t s1 = int32_t(uint32_t(uint64_t(s.s1))), n32 = int32_t(uint32_t(uint64_t(n)));
        *pMean = n32 != 0 ? double(s1) / double(n32) : 0.0;
    } else {
        *pMean = n > 0 ? s.mean(double(n)) : 0.0;
    }
    return zeqStsOk;
}

template <class T, int Ch, bool Masked>
ZeqStatus meanStdDev(const T* src, int srcStep, const Zeq8u* mask, int maskStep, ZeqiSize roi, int coi,
                     Zeq64f* pMean, Zeq64f* pStdDev) {
    ZQ_CHECK((zq::checkStatArgs<T, Ch, Masked>(src, srcStep, mask, maskStep, roi, coi)));
    const int c0 = Ch == 3 ? coi - 1 : 0;
    if (!pMean && !pStdDev) return zeqStsOk;
    if constexpr (std::is_same<T, Zeq32f>::value && Ch == 1 && !Masked) {
        ownMean_StdDev_32f_C1R(src, srcStep, roi, pMean, pStdDev);
        return zeqStsOk;
    }
    const double n = pixelCount<T, Ch, Masked>(mask, maskStep, roi);
    if constexpr (std::is_same<T, Zeq8u>::value && Ch == 1 && !Masked) {
        Sums8<Zeq8u, true> s;
        zq::dispatch([&](auto tier) { zq::ownSums_8u_C1R<tier.value>(src, srcStep, roi, s.s1, s.s2); });
        writeMeanStdDev(s, n, pMean, pStdDev);
        return zeqStsOk;
    }
    writeMeanStdDev(regionSums<T, Ch, Masked, true>(src, srcStep, mask, maskStep, roi, c0), n, pMean, pStdDev);
    return zeqStsOk;
}

}  // namespace

// ---- Mean under a mask ----

ZeqStatus zeqiMean_8u_C1MR(const Zeq8u* pSrc, int srcStep, const Zeq8u* pMask, int maskStep, ZeqiSize roiSize,
                           Zeq64f* pMean) {
    return mean<Zeq8u, 1>(pSrc, srcStep, pMask, maskStep, roiSize, 1, pMean);
}
ZeqStatus zeqiMean_8u_C3CMR(const Zeq8u* pSrc, int srcStep, const Zeq8u* pMask, int maskStep, ZeqiSize roiSize,
                            int coi, Zeq64f* pMean) {
    return mean<Zeq8u, 3>(pSrc, srcStep, pMask, maskStep, roiSize, coi, pMean);
}
ZeqStatus zeqiMean_8s_C1MR(const Zeq8s* pSrc, int srcStep, const Zeq8u* pMask, int maskStep, ZeqiSize roiSize,
                           Zeq64f* pMean) {
    return mean<Zeq8s, 1>(pSrc, srcStep, pMask, maskStep, roiSize, 1, pMean);
}
ZeqStatus zeqiMean_8s_C3CMR(const Zeq8s* pSrc, int srcStep, const Zeq8u* pMask, int maskStep, ZeqiSize roiSize,
                            int coi, Zeq64f* pMean) {
    return mean<Zeq8s, 3>(pSrc, srcStep, pMask, maskStep, roiSize, coi, pMean);
}
ZeqStatus zeqiMean_16u_C1MR(const Zeq16u* pSrc, int srcStep, const Zeq8u* pMask, int maskStep, ZeqiSize roiSize,
                            Zeq64f* pMean) {
    return mean<Zeq16u, 1>(pSrc, srcStep, pMask, maskStep, roiSize, 1, pMean);
}
ZeqStatus zeqiMean_16u_C3CMR(const Zeq16u* pSrc, int srcStep, const Zeq8u* pMask, int maskStep, ZeqiSize roiSize,
                             int coi, Zeq64f* pMean) {
    return mean<Zeq16u, 3>(pSrc, srcStep, pMask, maskStep, roiSize, coi, pMean);
}
ZeqStatus zeqiMean_32f_C1MR(const Zeq32f* pSrc, int srcStep, const Zeq8u* pMask, int maskStep, ZeqiSize roiSize,
                            Zeq64f* pMean) {
    return mean<Zeq32f, 1>(pSrc, srcStep, pMask, maskStep, roiSize, 1, pMean);
}
ZeqStatus zeqiMean_32f_C3CMR(const Zeq32f* pSrc, int srcStep, const Zeq8u* pMask, int maskStep, ZeqiSize roiSize,
                             int coi, Zeq64f* pMean) {
    return mean<Zeq32f, 3>(pSrc, srcStep, pMask, maskStep, roiSize, coi, pMean);
}

// ---- Mean and standard deviation, whole region and masked ----

ZeqStatus zeqiMean_StdDev_8u_C1R(const Zeq8u* pSrc, int srcStep, ZeqiSize roiSize, Zeq64f* pMean, Zeq64f* pStdDev) {
    return meanStdDev<Zeq8u, 1, kWhole>(pSrc, srcStep, nullptr, 0, roiSize, 1, pMean, pStdDev);
}
ZeqStatus zeqiMean_StdDev_8u_C3CR(const Zeq8u* pSrc, int srcStep, ZeqiSize roiSize, int coi, Zeq64f* pMean,
                                  Zeq64f* pStdDev) {
    return meanStdDev<Zeq8u, 3, kWhole>(pSrc, srcStep, nullptr, 0, roiSize, coi, pMean, pStdDev);
}
ZeqStatus zeqiMean_StdDev_8u_C1MR(const Zeq8u* pSrc, int srcStep, const Zeq8u* pMask, int maskStep, ZeqiSize roiSize,
                                  Zeq64f* pMean, Zeq64f* pStdDev) {
    return meanStdDev<Zeq8u, 1, kMasked>(pSrc, srcStep, pMask, maskStep, roiSize, 1, pMean, pStdDev);
}
ZeqStatus zeqiMean_StdDev_8u_C3CMR(const Zeq8u* pSrc, int srcStep, const Zeq8u* pMask, int maskStep, ZeqiSize roiSize,
                                   int coi, Zeq64f* pMean, Zeq64f* pStdDev) {
    return meanStdDev<Zeq8u, 3, kMasked>(pSrc, srcStep, pMask, maskStep, roiSize, coi, pMean, pStdDev);
}
ZeqStatus zeqiMean_StdDev_8s_C1R(const Zeq8s* pSrc, int srcStep, ZeqiSize roiSize, Zeq64f* pMean, Zeq64f* pStdDev) {
    return meanStdDev<Zeq8s, 1, kWhole>(pSrc, srcStep, nullptr, 0, roiSize, 1, pMean, pStdDev);
}
ZeqStatus zeqiMean_StdDev_8s_C3CR(const Zeq8s* pSrc, int srcStep, ZeqiSize roiSize, int coi, Zeq64f* pMean,
                                  Zeq64f* pStdDev) {
    return meanStdDev<Zeq8s, 3, kWhole>(pSrc, srcStep, nullptr, 0, roiSize, coi, pMean, pStdDev);
}
ZeqStatus zeqiMean_StdDev_8s_C1MR(const Zeq8s* pSrc, int srcStep, const Zeq8u* pMask, int maskStep, ZeqiSize roiSize,
                                  Zeq64f* pMean, Zeq64f* pStdDev) {
    return meanStdDev<Zeq8s, 1, kMasked>(pSrc, srcStep, pMask, maskStep, roiSize, 1, pMean, pStdDev);
}
ZeqStatus zeqiMean_StdDev_8s_C3CMR(const Zeq8s* pSrc, int srcStep, const Zeq8u* pMask, int maskStep, ZeqiSize roiSize,
                                   int coi, Zeq64f* pMean, Zeq64f* pStdDev) {
    return meanStdDev<Zeq8s, 3, kMasked>(pSrc, srcStep, pMask, maskStep, roiSize, coi, pMean, pStdDev);
}
ZeqStatus zeqiMean_StdDev_16u_C1R(const Zeq16u* pSrc, int srcStep, ZeqiSize roiSize, Zeq64f* pMean, Zeq64f* pStdDev) {
    return meanStdDev<Zeq16u, 1, kWhole>(pSrc, srcStep, nullptr, 0, roiSize, 1, pMean, pStdDev);
}
ZeqStatus zeqiMean_StdDev_16u_C3CR(const Zeq16u* pSrc, int srcStep, ZeqiSize roiSize, int coi, Zeq64f* pMean,
                                   Zeq64f* pStdDev) {
    return meanStdDev<Zeq16u, 3, kWhole>(pSrc, srcStep, nullptr, 0, roiSize, coi, pMean, pStdDev);
}
ZeqStatus zeqiMean_StdDev_16u_C1MR(const Zeq16u* pSrc, int srcStep, const Zeq8u* pMask, int maskStep,
                                   ZeqiSize roiSize, Zeq64f* pMean, Zeq64f* pStdDev) {
    return meanStdDev<Zeq16u, 1, kMasked>(pSrc, srcStep, pMask, maskStep, roiSize, 1, pMean, pStdDev);
}
ZeqStatus zeqiMean_StdDev_16u_C3CMR(const Zeq16u* pSrc, int srcStep, const Zeq8u* pMask, int maskStep,
                                    ZeqiSize roiSize, int coi, Zeq64f* pMean, Zeq64f* pStdDev) {
    return meanStdDev<Zeq16u, 3, kMasked>(pSrc, srcStep, pMask, maskStep, roiSize, coi, pMean, pStdDev);
}
ZeqStatus zeqiMean_StdDev_32f_C1R(const Zeq32f* pSrc, int srcStep, ZeqiSize roiSize, Zeq64f* pMean, Zeq64f* pStdDev) {
    return meanStdDev<Zeq32f, 1, kWhole>(pSrc, srcStep, nullptr, 0, roiSize, 1, pMean, pStdDev);
}
ZeqStatus zeqiMean_StdDev_32f_C3CR(const Zeq32f* pSrc, int srcStep, ZeqiSize roiSize, int coi, Zeq64f* pMean,
                                   Zeq64f* pStdDev) {
    return meanStdDev<Zeq32f, 3, kWhole>(pSrc, srcStep, nullptr, 0, roiSize, coi, pMean, pStdDev);
}
ZeqStatus zeqiMean_StdDev_32f_C1MR(const Zeq32f* pSrc, int srcStep, const Zeq8u* pMask, int maskStep,
                                   ZeqiSize roiSize, Zeq64f* pMean, Zeq64f* pStdDev) {
    return meanStdDev<Zeq32f, 1, kMasked>(pSrc, srcStep, pMask, maskStep, roiSize, 1, pMean, pStdDev);
}
ZeqStatus zeqiMean_StdDev_32f_C3CMR(const Zeq32f* pSrc, int srcStep, const Zeq8u* pMask, int maskStep,
                                    ZeqiSize roiSize, int coi, Zeq64f* pMean, Zeq64f* pStdDev) {
    return meanStdDev<Zeq32f, 3, kMasked>(pSrc, srcStep, pMask, maskStep, roiSize, coi, pMean, pStdDev);
}
