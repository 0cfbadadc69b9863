// Whole-region sums of 8u images a register at a time: the sum through sums
// of absolute differences with zero, the squares through 16-bit pair products.
#include "stats/zqcvmean.h"
#include "core/zqcvcore.h"
#include "core/zqcvregs.h"

namespace {

using zq::Isa;

template <Isa I>
struct SumOps;

template <>
struct SumOps<Isa::Sse2> {
    using V = __m128i;
    static V sad(V v) { return _mm_sad_epu8(v, _mm_setzero_si128()); }
    static V lo8(V v) { return _mm_unpacklo_epi8(v, _mm_setzero_si128()); }
    static V hi8(V v) { return _mm_unpackhi_epi8(v, _mm_setzero_si128()); }
    static V madd(V a, V b) { return _mm_madd_epi16(a, b); }
    static V add32(V a, V b) { return _mm_add_epi32(a, b); }
    static V add64(V a, V b) { return _mm_add_epi64(a, b); }
    static V lo32(V v) { return _mm_unpacklo_epi32(v, _mm_setzero_si128()); }
    static V hi32(V v) { return _mm_unpackhi_epi32(v, _mm_setzero_si128()); }
    static int64_t total64(V v) {
        int64_t lanes[2];
        _mm_storeu_si128(reinterpret_cast<V*>(lanes), v);
        return lanes[0] + lanes[1];
    }
};

#if ZQ_TIER >= 1
template <>
struct SumOps<Isa::Avx2> {
    using V = __m256i;
    static V sad(V v) { return _mm256_sad_epu8(v, _mm256_setzero_si256()); }
    static V lo8(V v) { return _mm256_unpacklo_epi8(v, _mm256_setzero_si256()); }
    static V hi8(V v) { return _mm256_unpackhi_epi8(v, _mm256_setzero_si256()); }
    static V madd(V a, V b) { return _mm256_madd_epi16(a, b); }
    static V add32(V a, V b) { return _mm256_add_epi32(a, b); }
    static V add64(V a, V b) { return _mm256_add_epi64(a, b); }
    static V lo32(V v) { return _mm256_unpacklo_epi32(v, _mm256_setzero_si256()); }
    static V hi32(V v) { return _mm256_unpackhi_epi32(v, _mm256_setzero_si256()); }
    static int64_t total64(V v) {
        return SumOps<Isa::Sse2>::total64(_mm_add_epi64(_mm256_castsi256_si128(v), _mm256_extracti128_si256(v, 1)));
    }
};
#endif

#if ZQ_TIER >= 2
template <>
struct SumOps<Isa::Avx512> {
    using V = __m512i;
    static V sad(V v) { return _mm512_sad_epu8(v, _mm512_setzero_si512()); }
    static V lo8(V v) { return _mm512_unpacklo_epi8(v, _mm512_setzero_si512()); }
    static V hi8(V v) { return _mm512_unpackhi_epi8(v, _mm512_setzero_si512()); }
    static V madd(V a, V b) { return _mm512_madd_epi16(a, b); }
    static V add32(V a, V b) { return _mm512_add_epi32(a, b); }
    static V add64(V a, V b) { return _mm512_add_epi64(a, b); }
    static V lo32(V v) { return _mm512_unpacklo_epi32(v, _mm512_setzero_si512()); }
    static V hi32(V v) { return _mm512_unpackhi_epi32(v, _mm512_setzero_si512()); }
    static int64_t total64(V v) { return _mm512_reduce_add_epi64(v); }
};
#endif

// 32-bit square lanes grow by at most 4 * 255^2 per register: they are
// widened to 64 bits every kChunk registers.
constexpr int kChunk = 1024;

}  // namespace

namespace zq {

template <Isa I>
void ownSums_8u_C1R(const Zeq8u* src, int srcStep, ZeqiSize roi, int64_t& s1, double& s2) {
    using O = SumOps<I>;
    using R = Regs<I>;
    constexpr int W = R::bytes;
    for (int y = 0; y < roi.height; ++y) {
        const Zeq8u* p = row(src, srcStep, y);
        typename O::V sum = R::zero(), sq64 = R::zero();
        int x = 0;
        while (x + W <= roi.width) {
            const int end = roi.width - x > W * kChunk ? x + W * kChunk : roi.width;
            typename O::V sq32 = R::zero();
            for (; x + W <= end; x += W) {
                const typename O::V v = R::load(p + x), lo = O::lo8(v), hi = O::hi8(v);
                sum = O::add64(sum, O::sad(v));
                sq32 = O::add32(sq32, O::add32(O::madd(lo, lo), O::madd(hi, hi)));
            }
            sq64 = O::add64(sq64, O::add64(O::lo32(sq32), O::hi32(sq32)));
        }
        uint32_t rowSum = uint32_t(O::total64(sum));
        int64_t rowSq = O::total64(sq64);
        for (; x < roi.width; ++x) {
            rowSum += p[x];
            rowSq += int(p[x]) * int(p[x]);
        }
        s1 += int32_t(rowSum);
        s2 += double(rowSq);
    }
}

template void ownSums_8u_C1R<ZQ_ISA>(const Zeq8u*, int, ZeqiSize, int64_t&, double&);

}  // namespace zq
