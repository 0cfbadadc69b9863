// Row walking shared by the region statistics (mean and deviation, minimum
// and maximum): which elements of a row take part, and how they reach an
// accumulator sixteen bytes at a time.
//
// A row is either one channel (C1) or every third element starting at the
// channel of interest (C3C), optionally under an 8-bit mask. Whole-register
// blocks go to the accumulator together with a selection register (all ones
// for the elements that take part); elements that do not take part must be
// neutralised by the accumulator (a zero for sums, the type's extreme for a
// minimum or maximum). The tail of each row, and every masked C3C row, is fed
// element by element.
#ifndef ZQCV_STATROWS_H
#define ZQCV_STATROWS_H

#include "core/zqcvsimd.h"

#include <cstring>

namespace zq {

// Row k holds 0xFF at every byte whose position p has p mod 3 = k: and-ed
// with 48 loaded bytes (16 interleaved three-channel pixels of 8-bit data) it
// keeps channel k and zeroes the other two.
alignas(16) inline constexpr Zeq8u zqcvCoiMaskA[3][48] = {
#define ZQ_COI_ROW(a, b, c) \
    {a, b, c, a, b, c, a, b, c, a, b, c, a, b, c, a, b, c, a, b, c, a, b, c, \
     a, b, c, a, b, c, a, b, c, a, b, c, a, b, c, a, b, c, a, b, c, a, b, c}
    ZQ_COI_ROW(0xFF, 0, 0), ZQ_COI_ROW(0, 0xFF, 0), ZQ_COI_ROW(0, 0, 0xFF)
#undef ZQ_COI_ROW
};

// The same selection for 48 bytes of 16-bit (8 pixels) or 32-bit (4 pixels)
// elements: element j belongs to channel j mod 3.
template <int Bytes>
struct CoiElementMask {
    alignas(16) Zeq8u rows[3][48];
    constexpr CoiElementMask() : rows{} {
        for (int k = 0; k < 3; ++k)
            for (int p = 0; p < 48; ++p) rows[k][p] = (p / Bytes) % 3 == k ? 0xFF : 0;
    }
};
inline constexpr CoiElementMask<2> kCoiMask16;
inline constexpr CoiElementMask<4> kCoiMask32;

// An element read through memcpy: 16u and 32f rows may sit at any byte
// offset (16u steps are not tested for alignment, 32f ones only for oddness).
template <class T>
inline T load(const T* p) {
    T v;
    std::memcpy(&v, p, sizeof(T));
    return v;
}

// Selection registers for one element type.
template <class T>
struct Select {
    using V = typename Vec<T>::type;
    static constexpr int lanes = Vec<T>::lanes;

    static V cast(__m128i m) {
        if constexpr (std::is_same<T, Zeq32f>::value) return _mm_castsi128_ps(m);
        else return m;
    }
    static V all() { return cast(_mm_set1_epi32(-1)); }

    // Register r (0..2) of a 48-byte block of three-channel pixels, for channel c0.
    static V coi(int c0, int r) {
        const Zeq8u* row = sizeof(T) == 1 ? zqcvCoiMaskA[c0] : sizeof(T) == 2 ? kCoiMask16.rows[c0] : kCoiMask32.rows[c0];
        return cast(_mm_load_si128(reinterpret_cast<const __m128i*>(row + 16 * r)));
    }

    // One lane per mask byte, all ones where the byte is non-zero.
    static V fromMask(const Zeq8u* m) {
        __m128i b;
        if constexpr (sizeof(T) == 1) {
            b = _mm_loadu_si128(reinterpret_cast<const __m128i*>(m));
        } else if constexpr (sizeof(T) == 2) {
            b = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(m));
            b = _mm_unpacklo_epi8(b, b);
        } else {
            int32_t w;
            std::memcpy(&w, m, 4);
            b = _mm_cvtsi32_si128(w);
            b = _mm_unpacklo_epi8(b, b);
            b = _mm_unpacklo_epi16(b, b);
        }
        const __m128i zero = _mm_setzero_si128();
        __m128i isZero;
        if constexpr (sizeof(T) == 1) isZero = _mm_cmpeq_epi8(b, zero);
        else if constexpr (sizeof(T) == 2) isZero = _mm_cmpeq_epi16(b, zero);
        else isZero = _mm_cmpeq_epi32(b, zero);
        return cast(_mm_xor_si128(isZero, _mm_set1_epi32(-1)));
    }
};

// How a C1 row without mask is loaded: unaligned registers; a scalar head up
// to a 16-byte boundary, then aligned registers (for rows that all share the
// same misalignment, a whole number of elements); or element by element.
enum class Loads { Unaligned, Aligned, Scalar };

// Feeds a row's taking-part elements to `acc`: acc.add(V) for a whole
// register that takes part, acc.add(V, sel) for a register under a selection,
// acc.add(T) for single elements. acc.flush() follows every chunk of at most
// kChunkBlocks blocks, so 32-bit lanes can be widened before they overflow.
constexpr int kChunkBlocks = 1024;

template <class T, int Ch, bool Masked, Loads How = Loads::Unaligned, class Acc>
inline void walkRow(const T* p, const Zeq8u* m, int width, int c0, Acc& acc) {
    using S = Select<T>;
    constexpr int L = S::lanes;
    int x = 0;
    if constexpr (How == Loads::Aligned) {
        for (; x < width && !aligned16(p + x); ++x) acc.add(load(p + x));
    }
    while (How != Loads::Scalar && x + L <= width) {
        const int end = width - x > L * kChunkBlocks ? x + L * kChunkBlocks : width;
        if constexpr (Ch == 1 && !Masked) {
            for (; x + L <= end; x += L) {
                if constexpr (How == Loads::Aligned && std::is_same<T, Zeq32f>::value) acc.add(_mm_load_ps(p + x));
                else if constexpr (How == Loads::Aligned) acc.add(_mm_load_si128(reinterpret_cast<const __m128i*>(p + x)));
                else acc.add(Vec<T>::load(p + x));
            }
        } else if constexpr (Ch == 1) {
            for (; x + L <= end; x += L) acc.add(Vec<T>::load(p + x), S::fromMask(m + x));
        } else if constexpr (!Masked) {
            const auto s0 = S::coi(c0, 0), s1 = S::coi(c0, 1), s2 = S::coi(c0, 2);
            for (; x + L <= end; x += L) {
                const T* q = p + 3 * ptrdiff_t(x);
                acc.add(Vec<T>::load(q), s0);
                acc.add(Vec<T>::load(q + L), s1);
                acc.add(Vec<T>::load(q + 2 * L), s2);
            }
        } else {
            break;  // masked channel of interest: element by element below
        }
        acc.flush();
    }
    for (; x < width; ++x)
        if (!Masked || m[x]) acc.add(load(p + ptrdiff_t(Ch) * x + c0));
}

// Whether any byte of a mask region is non-zero; stops at the first one.
inline bool anyNonZero(const Zeq8u* mask, ptrdiff_t maskStep, int width, int height) {
    const __m128i zero = _mm_setzero_si128();
    for (int y = 0; y < height; ++y) {
        const Zeq8u* m = row(mask, maskStep, y);
        int x = 0;
        for (; x + 16 <= width; x += 16)
            if (_mm_movemask_epi8(_mm_cmpeq_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i*>(m + x)), zero)) != 0xFFFF)
                return true;
        for (; x < width; ++x)
            if (m[x]) return true;
    }
    return false;
}

// Number of non-zero bytes of a mask region.
inline int64_t countNonZero(const Zeq8u* mask, ptrdiff_t maskStep, int width, int height) {
    const __m128i zero = _mm_setzero_si128(), one = _mm_set1_epi8(1);
    int64_t n = 0;
    for (int y = 0; y < height; ++y) {
        const Zeq8u* m = row(mask, maskStep, y);
        __m128i acc = zero;
        int x = 0;
        for (; x + 16 <= width; x += 16) {
            const __m128i isZero = _mm_cmpeq_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i*>(m + x)), zero);
            acc = _mm_add_epi64(acc, _mm_sad_epu8(_mm_andnot_si128(isZero, one), zero));
        }
        n += _mm_cvtsi128_si32(acc) + _mm_cvtsi128_si32(_mm_unpackhi_epi64(acc, acc));
        for (; x < width; ++x) n += m[x] != 0;
    }
    return n;
}

// Checks of the statistics over a region, plain or masked, single-channel or
// channel of interest (Ch 3), in their documented order. Result pointers are
// each family's own affair.
template <class T, int Ch, bool Masked>
ZeqStatus checkStatArgs(const T* src, int srcStep, const Zeq8u* mask, int maskStep, ZeqiSize roi, int coi) {
    if constexpr (Masked) ZQ_CHECK(nonNull(src, mask));
    else ZQ_CHECK(nonNull(src));
    ZQ_CHECK(roiSize(roi));
    ZQ_CHECK(stepsAtLeast(rowBytes<T>(roi.width, Ch), srcStep));
    if constexpr (Masked) ZQ_CHECK(stepsAtLeast(rowBytes<Zeq8u>(roi.width), maskStep));
    if constexpr (std::is_same<T, Zeq32f>::value) ZQ_CHECK(stepsEven(srcStep));
    if constexpr (Ch == 3) ZQ_CHECK(channelOfInterest(coi));
    return zeqStsOk;
}

}  // namespace zq

#endif
