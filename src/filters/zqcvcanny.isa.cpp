// The magnitude pass of the Canny gradient stage with 256- and 512-bit
// registers: eight pixels (one group) per 256-bit register, two per 512-bit one.
#include "filters/zqcvcanny.h"
#include "core/zqcvregs.h"

#include <immintrin.h>

#include <cstring>
#include <type_traits>

#if ZQ_TIER >= 1

namespace {

// |dx| and |dy| of eight pixels as floats. A 16-bit -32768 gives 32768.
inline void abs8(const Zeq16s* dx, const Zeq16s* dy, __m256& a, __m256& b) {
    a = _mm256_cvtepi32_ps(_mm256_abs_epi32(_mm256_cvtepi16_epi32(_mm_loadu_si128(reinterpret_cast<const __m128i*>(dx)))));
    b = _mm256_cvtepi32_ps(_mm256_abs_epi32(_mm256_cvtepi16_epi32(_mm_loadu_si128(reinterpret_cast<const __m128i*>(dy)))));
}
inline void abs8(const Zeq32f* dx, const Zeq32f* dy, __m256& a, __m256& b) {
    const __m256 absMask = _mm256_castsi256_ps(_mm256_set1_epi32(0x7fffffff));
    a = _mm256_and_ps(_mm256_loadu_ps(dx), absMask);
    b = _mm256_and_ps(_mm256_loadu_ps(dy), absMask);
}

// One group; returns whether a pixel is above the low threshold.
template <class T>
inline bool group8(const T* dx, const T* dy, __m256 low, Zeq32f* mag) {
    __m256 a, b;
    abs8(dx, dy, a, b);
    const __m256 m = _mm256_add_ps(a, b), valid = _mm256_cmp_ps(m, low, _CMP_GT_OQ);
    _mm256_storeu_ps(mag, _mm256_and_ps(m, valid));
    return _mm256_movemask_ps(valid) != 0;
}

#if ZQ_TIER >= 2
inline void abs16(const Zeq16s* dx, const Zeq16s* dy, __m512& a, __m512& b) {
    a = _mm512_cvtepi32_ps(_mm512_abs_epi32(_mm512_cvtepi16_epi32(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(dx)))));
    b = _mm512_cvtepi32_ps(_mm512_abs_epi32(_mm512_cvtepi16_epi32(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(dy)))));
}
inline void abs16(const Zeq32f* dx, const Zeq32f* dy, __m512& a, __m512& b) {
    a = _mm512_abs_ps(_mm512_loadu_ps(dx));
    b = _mm512_abs_ps(_mm512_loadu_ps(dy));
}

// Two groups; returns their above-threshold masks (bit 0: first group).
template <class T>
inline unsigned group16(const T* dx, const T* dy, __m512 low, Zeq32f* mag) {
    __m512 a, b;
    abs16(dx, dy, a, b);
    const __m512 m = _mm512_add_ps(a, b);
    const __mmask16 valid = _mm512_cmp_ps_mask(m, low, _CMP_GT_OQ);
    _mm512_storeu_ps(mag, _mm512_maskz_mov_ps(valid, m));
    return unsigned((valid & 0xff) != 0) | unsigned((valid >> 8) != 0) << 1;
}
#endif

}  // namespace

namespace zq {

template <Isa I, class T>
uint64_t ownCannyMagnitudes(const T* dx, const T* dy, int groups, float low, Zeq8u* dir, Zeq32f* mag) {
    std::memset(dir, 0, size_t(groups) * 8);
    uint64_t busy = 0;
    int g = 0;
#if ZQ_TIER >= 2
    if constexpr (I == Isa::Avx512) {
        const __m512 low16 = _mm512_set1_ps(low);
        for (; g + 2 <= groups; g += 2) busy |= uint64_t(group16(dx + 8 * g, dy + 8 * g, low16, mag + 8 * g)) << g;
    }
#endif
    const __m256 low8 = _mm256_set1_ps(low);
    for (; g < groups; ++g) busy |= uint64_t(group8(dx + 8 * g, dy + 8 * g, low8, mag + 8 * g)) << g;
    return busy;
}

template <Isa I>
int ownCannyEdgesRow(Zeq8u* dir, Zeq8u* dst, int width, bool stream) {
    using R = Regs<I>;
    constexpr int W = R::bytes;
    const typename R::I edge = R::set1_8(0xff), low7 = R::set1_8(0x7f);
    int x = 0;
    for (; x + W <= width; x += W) {
        const typename R::I d = R::load(dir + x), isEdge = R::cmpeq8(d, edge);
        if (stream) streamPieces(dst + x, isEdge);
        else R::store(dst + x, isEdge);
        bool any;
        if constexpr (I == Isa::Avx512) any = _mm512_movepi8_mask(isEdge) != 0;
        else any = !_mm256_testz_si256(isEdge, isEdge);
        if (any) R::store(dir + x, R::andnoti(R::andi(isEdge, low7), d));
    }
    return x;
}

template int ownCannyEdgesRow<ZQ_ISA>(Zeq8u*, Zeq8u*, int, bool);
template uint64_t ownCannyMagnitudes<ZQ_ISA, Zeq16s>(const Zeq16s*, const Zeq16s*, int, float, Zeq8u*, Zeq32f*);
template uint64_t ownCannyMagnitudes<ZQ_ISA, Zeq32f>(const Zeq32f*, const Zeq32f*, int, float, Zeq8u*, Zeq32f*);

}  // namespace zq

#endif
