// Register traits of the three tiers: one spelling of the vector operations
// that a kernel template takes as zq::Regs<I>, so a kernel is written once
// and compiled per tier (see core/zqcvisa.h).
//
// Conventions, the same on every tier:
//  - loads and stores are unaligned (callers' rows may start anywhere);
//  - widening and narrowing keep element order across the whole register
//    (the 256/512-bit forms undo the per-128-bit-lane order of the
//    instructions), so a kernel never depends on the width;
//  - float min/max have the instruction's rule: the second operand when
//    either is NaN, or when both are zeros;
//  - a comparison gives a mask register of all-ones lanes; select(m, a, b)
//    is m ? a : b per lane.
// Regs<Avx2> exists only where the translation unit is compiled with AVX2,
// Regs<Avx512> only with AVX-512: only the .isa.cpp copies of those tiers.
#ifndef ZQCV_REGS_H
#define ZQCV_REGS_H

#include "core/zqcvisa.h"

#include <immintrin.h>

#include <cstddef>
#include <cstdint>

namespace zq {
ZQ_TIER_BEGIN

// Results of at least this many bytes go past the caches when their rows
// start 16-byte aligned: they would only evict the rows still to be read.
constexpr ptrdiff_t kStreamBytes = ptrdiff_t(1) << 20;
inline bool streamsRows(const void* dst, ptrdiff_t dstStep, int64_t bytes) {
    return bytes >= kStreamBytes && ((reinterpret_cast<uintptr_t>(dst) | uintptr_t(dstStep)) & 15) == 0;
}

// Non-temporal stores of a whole register to a 16-byte aligned address, in
// 16-byte pieces (a row of the caller's need be aligned no further).
inline void streamPieces(void* p, __m128 v) { _mm_stream_ps(static_cast<float*>(p), v); }
inline void streamPieces(void* p, __m128i v) { _mm_stream_si128(static_cast<__m128i*>(p), v); }
#if ZQ_TIER >= 1
inline void streamPieces(void* p, __m256 v) {
    streamPieces(p, _mm256_castps256_ps128(v));
    streamPieces(static_cast<char*>(p) + 16, _mm256_extractf128_ps(v, 1));
}
inline void streamPieces(void* p, __m256i v) {
    streamPieces(p, _mm256_castsi256_si128(v));
    streamPieces(static_cast<char*>(p) + 16, _mm256_extracti128_si256(v, 1));
}
#endif
#if ZQ_TIER >= 2
inline void streamPieces(void* p, __m512 v) {
    streamPieces(p, _mm512_castps512_ps256(v));
    streamPieces(static_cast<char*>(p) + 32, _mm512_extractf32x8_ps(v, 1));
}
inline void streamPieces(void* p, __m512i v) {
    streamPieces(p, _mm512_castsi512_si256(v));
    streamPieces(static_cast<char*>(p) + 32, _mm512_extracti64x4_epi64(v, 1));
}
#endif

template <Isa I>
struct Regs;

template <>
struct Regs<Isa::Sse2> {
    using F = __m128;   // floats
    using I = __m128i;  // integers of any width
    static constexpr int bytes = 16;
    template <class T>
    static constexpr int lanes = bytes / int(sizeof(T));

    // ---- memory ----
    static F loadf(const float* p) { return _mm_loadu_ps(p); }
    static void storef(float* p, F v) { _mm_storeu_ps(p, v); }
    // Non-temporal store; p aligned to the register's size.
    static void streamf(float* p, F v) { _mm_stream_ps(p, v); }
    static I load(const void* p) { return _mm_loadu_si128(static_cast<const I*>(p)); }
    static void store(void* p, I v) { _mm_storeu_si128(static_cast<I*>(p), v); }
    // Half a register (8 bytes) into the low half, the rest zero.
    static I loadHalf(const void* p) { return _mm_loadl_epi64(static_cast<const I*>(p)); }
    // A quarter (4 bytes) into the lowest lane, the rest zero.
    static I loadQuarter(const void* p) {
        int32_t v;
        __builtin_memcpy(&v, p, 4);
        return _mm_cvtsi32_si128(v);
    }

    // ---- constants ----
    static F zerof() { return _mm_setzero_ps(); }
    static I zero() { return _mm_setzero_si128(); }
    static F set1f(float v) { return _mm_set1_ps(v); }
    static I set1_8(int v) { return _mm_set1_epi8(char(v)); }
    static I set1_16(int v) { return _mm_set1_epi16(short(v)); }
    static I set1_32(int v) { return _mm_set1_epi32(v); }

    // ---- floats ----
    static F add(F a, F b) { return _mm_add_ps(a, b); }
    static F sub(F a, F b) { return _mm_sub_ps(a, b); }
    static F mul(F a, F b) { return _mm_mul_ps(a, b); }
    static F div(F a, F b) { return _mm_div_ps(a, b); }
    static F sqrt(F a) { return _mm_sqrt_ps(a); }
    static F min(F a, F b) { return _mm_min_ps(a, b); }
    static F max(F a, F b) { return _mm_max_ps(a, b); }
    static F andf(F a, F b) { return _mm_and_ps(a, b); }
    static F orf(F a, F b) { return _mm_or_ps(a, b); }
    static F xorf(F a, F b) { return _mm_xor_ps(a, b); }
    static F andnotf(F a, F b) { return _mm_andnot_ps(a, b); }  // ~a & b
    static F cmplt(F a, F b) { return _mm_cmplt_ps(a, b); }
    static F cmple(F a, F b) { return _mm_cmple_ps(a, b); }
    static F cmpeq(F a, F b) { return _mm_cmpeq_ps(a, b); }
    static F select(F m, F a, F b) { return _mm_or_ps(_mm_and_ps(m, a), _mm_andnot_ps(m, b)); }
    static I cvtf_i32(F a) { return _mm_cvtps_epi32(a); }    // rounded to nearest even
    static I cvttf_i32(F a) { return _mm_cvttps_epi32(a); }  // truncated
    static F cvti32_f(I a) { return _mm_cvtepi32_ps(a); }
    static I castf_i(F a) { return _mm_castps_si128(a); }
    static F casti_f(I a) { return _mm_castsi128_ps(a); }

    // ---- integers: bitwise ----
    static I andi(I a, I b) { return _mm_and_si128(a, b); }
    static I ori(I a, I b) { return _mm_or_si128(a, b); }
    static I xori(I a, I b) { return _mm_xor_si128(a, b); }
    static I andnoti(I a, I b) { return _mm_andnot_si128(a, b); }  // ~a & b
    static I select(I m, I a, I b) { return _mm_or_si128(_mm_and_si128(m, a), _mm_andnot_si128(m, b)); }

    // ---- integers: arithmetic by lane width ----
    static I add8(I a, I b) { return _mm_add_epi8(a, b); }
    static I add16(I a, I b) { return _mm_add_epi16(a, b); }
    static I add32(I a, I b) { return _mm_add_epi32(a, b); }
    static I sub8(I a, I b) { return _mm_sub_epi8(a, b); }
    static I sub16(I a, I b) { return _mm_sub_epi16(a, b); }
    static I sub32(I a, I b) { return _mm_sub_epi32(a, b); }
    static I mullo16(I a, I b) { return _mm_mullo_epi16(a, b); }
    static I addsU8(I a, I b) { return _mm_adds_epu8(a, b); }
    static I subsU8(I a, I b) { return _mm_subs_epu8(a, b); }
    static I addsI16(I a, I b) { return _mm_adds_epi16(a, b); }
    static I subsI16(I a, I b) { return _mm_subs_epi16(a, b); }
    static I minU8(I a, I b) { return _mm_min_epu8(a, b); }
    static I maxU8(I a, I b) { return _mm_max_epu8(a, b); }
    static I minI16(I a, I b) { return _mm_min_epi16(a, b); }
    static I maxI16(I a, I b) { return _mm_max_epi16(a, b); }
    static I minI32(I a, I b) { return select(_mm_cmplt_epi32(a, b), a, b); }
    static I maxI32(I a, I b) { return select(_mm_cmpgt_epi32(a, b), a, b); }
    static I cmpeq8(I a, I b) { return _mm_cmpeq_epi8(a, b); }
    static I cmpeq16(I a, I b) { return _mm_cmpeq_epi16(a, b); }
    static I cmpeq32(I a, I b) { return _mm_cmpeq_epi32(a, b); }
    static I cmpgtI16(I a, I b) { return _mm_cmpgt_epi16(a, b); }
    static I cmpgtI32(I a, I b) { return _mm_cmpgt_epi32(a, b); }
    static I slli16(I a, int n) { return _mm_slli_epi16(a, n); }
    static I srai16(I a, int n) { return _mm_srai_epi16(a, n); }
    static I srli16(I a, int n) { return _mm_srli_epi16(a, n); }
    static I slli32(I a, int n) { return _mm_slli_epi32(a, n); }
    static I srai32(I a, int n) { return _mm_srai_epi32(a, n); }
    static I srli32(I a, int n) { return _mm_srli_epi32(a, n); }

    // ---- widening: the low and the high half of a register, in order ----
    static void widenU8(I v, I& lo, I& hi) {
        lo = _mm_unpacklo_epi8(v, _mm_setzero_si128());
        hi = _mm_unpackhi_epi8(v, _mm_setzero_si128());
    }
    static void widenI8(I v, I& lo, I& hi) {
        lo = _mm_srai_epi16(_mm_unpacklo_epi8(v, v), 8);
        hi = _mm_srai_epi16(_mm_unpackhi_epi8(v, v), 8);
    }
    static void widenU16(I v, I& lo, I& hi) {
        lo = _mm_unpacklo_epi16(v, _mm_setzero_si128());
        hi = _mm_unpackhi_epi16(v, _mm_setzero_si128());
    }
    static void widenI16(I v, I& lo, I& hi) {
        lo = _mm_srai_epi32(_mm_unpacklo_epi16(v, v), 16);
        hi = _mm_srai_epi32(_mm_unpackhi_epi16(v, v), 16);
    }

    // ---- narrowing with saturation: a's lanes, then b's ----
    static I packsI32(I a, I b) { return _mm_packs_epi32(a, b); }   // to int16
    static I packusI16(I a, I b) { return _mm_packus_epi16(a, b); }  // to uint8
    static I packsI16(I a, I b) { return _mm_packs_epi16(a, b); }    // to int8
};

#if ZQ_TIER >= 1
template <>
struct Regs<Isa::Avx2> {
    using F = __m256;
    using I = __m256i;
    static constexpr int bytes = 32;
    template <class T>
    static constexpr int lanes = bytes / int(sizeof(T));

    static F loadf(const float* p) { return _mm256_loadu_ps(p); }
    static void storef(float* p, F v) { _mm256_storeu_ps(p, v); }
    static void streamf(float* p, F v) { _mm256_stream_ps(p, v); }
    static I load(const void* p) { return _mm256_loadu_si256(static_cast<const I*>(p)); }
    static void store(void* p, I v) { _mm256_storeu_si256(static_cast<I*>(p), v); }
    static I loadHalf(const void* p) {
        return _mm256_zextsi128_si256(_mm_loadu_si128(static_cast<const __m128i*>(p)));
    }
    static I loadQuarter(const void* p) {
        return _mm256_zextsi128_si256(_mm_loadl_epi64(static_cast<const __m128i*>(p)));
    }

    static F zerof() { return _mm256_setzero_ps(); }
    static I zero() { return _mm256_setzero_si256(); }
    static F set1f(float v) { return _mm256_set1_ps(v); }
    static I set1_8(int v) { return _mm256_set1_epi8(char(v)); }
    static I set1_16(int v) { return _mm256_set1_epi16(short(v)); }
    static I set1_32(int v) { return _mm256_set1_epi32(v); }

    static F add(F a, F b) { return _mm256_add_ps(a, b); }
    static F sub(F a, F b) { return _mm256_sub_ps(a, b); }
    static F mul(F a, F b) { return _mm256_mul_ps(a, b); }
    static F div(F a, F b) { return _mm256_div_ps(a, b); }
    static F sqrt(F a) { return _mm256_sqrt_ps(a); }
    static F min(F a, F b) { return _mm256_min_ps(a, b); }
    static F max(F a, F b) { return _mm256_max_ps(a, b); }
    static F andf(F a, F b) { return _mm256_and_ps(a, b); }
    static F orf(F a, F b) { return _mm256_or_ps(a, b); }
    static F xorf(F a, F b) { return _mm256_xor_ps(a, b); }
    static F andnotf(F a, F b) { return _mm256_andnot_ps(a, b); }
    static F cmplt(F a, F b) { return _mm256_cmp_ps(a, b, _CMP_LT_OQ); }
    static F cmple(F a, F b) { return _mm256_cmp_ps(a, b, _CMP_LE_OQ); }
    static F cmpeq(F a, F b) { return _mm256_cmp_ps(a, b, _CMP_EQ_OQ); }
    static F select(F m, F a, F b) { return _mm256_blendv_ps(b, a, m); }
    static I cvtf_i32(F a) { return _mm256_cvtps_epi32(a); }
    static I cvttf_i32(F a) { return _mm256_cvttps_epi32(a); }
    static F cvti32_f(I a) { return _mm256_cvtepi32_ps(a); }
    static I castf_i(F a) { return _mm256_castps_si256(a); }
    static F casti_f(I a) { return _mm256_castsi256_ps(a); }

    static I andi(I a, I b) { return _mm256_and_si256(a, b); }
    static I ori(I a, I b) { return _mm256_or_si256(a, b); }
    static I xori(I a, I b) { return _mm256_xor_si256(a, b); }
    static I andnoti(I a, I b) { return _mm256_andnot_si256(a, b); }
    static I select(I m, I a, I b) { return _mm256_blendv_epi8(b, a, m); }

    static I add8(I a, I b) { return _mm256_add_epi8(a, b); }
    static I add16(I a, I b) { return _mm256_add_epi16(a, b); }
    static I add32(I a, I b) { return _mm256_add_epi32(a, b); }
    static I sub8(I a, I b) { return _mm256_sub_epi8(a, b); }
    static I sub16(I a, I b) { return _mm256_sub_epi16(a, b); }
    static I sub32(I a, I b) { return _mm256_sub_epi32(a, b); }
    static I mullo16(I a, I b) { return _mm256_mullo_epi16(a, b); }
    static I addsU8(I a, I b) { return _mm256_adds_epu8(a, b); }
    static I subsU8(I a, I b) { return _mm256_subs_epu8(a, b); }
    static I addsI16(I a, I b) { return _mm256_adds_epi16(a, b); }
    static I subsI16(I a, I b) { return _mm256_subs_epi16(a, b); }
    static I minU8(I a, I b) { return _mm256_min_epu8(a, b); }
    static I maxU8(I a, I b) { return _mm256_max_epu8(a, b); }
    static I minI16(I a, I b) { return _mm256_min_epi16(a, b); }
    static I maxI16(I a, I b) { return _mm256_max_epi16(a, b); }
    static I minI32(I a, I b) { return _mm256_min_epi32(a, b); }
    static I maxI32(I a, I b) { return _mm256_max_epi32(a, b); }
    static I cmpeq8(I a, I b) { return _mm256_cmpeq_epi8(a, b); }
    static I cmpeq16(I a, I b) { return _mm256_cmpeq_epi16(a, b); }
    static I cmpeq32(I a, I b) { return _mm256_cmpeq_epi32(a, b); }
    static I cmpgtI16(I a, I b) { return _mm256_cmpgt_epi16(a, b); }
    static I cmpgtI32(I a, I b) { return _mm256_cmpgt_epi32(a, b); }
    static I slli16(I a, int n) { return _mm256_slli_epi16(a, n); }
    static I srai16(I a, int n) { return _mm256_srai_epi16(a, n); }
    static I srli16(I a, int n) { return _mm256_srli_epi16(a, n); }
    static I slli32(I a, int n) { return _mm256_slli_epi32(a, n); }
    static I srai32(I a, int n) { return _mm256_srai_epi32(a, n); }
    static I srli32(I a, int n) { return _mm256_srli_epi32(a, n); }

    static __m128i low(I v) { return _mm256_castsi256_si128(v); }
    static __m128i high(I v) { return _mm256_extracti128_si256(v, 1); }
    static void widenU8(I v, I& lo, I& hi) { lo = _mm256_cvtepu8_epi16(low(v)), hi = _mm256_cvtepu8_epi16(high(v)); }
    static void widenI8(I v, I& lo, I& hi) { lo = _mm256_cvtepi8_epi16(low(v)), hi = _mm256_cvtepi8_epi16(high(v)); }
    static void widenU16(I v, I& lo, I& hi) { lo = _mm256_cvtepu16_epi32(low(v)), hi = _mm256_cvtepu16_epi32(high(v)); }
    static void widenI16(I v, I& lo, I& hi) { lo = _mm256_cvtepi16_epi32(low(v)), hi = _mm256_cvtepi16_epi32(high(v)); }

    static I packsI32(I a, I b) { return _mm256_permute4x64_epi64(_mm256_packs_epi32(a, b), 0xD8); }
    static I packusI16(I a, I b) { return _mm256_permute4x64_epi64(_mm256_packus_epi16(a, b), 0xD8); }
    static I packsI16(I a, I b) { return _mm256_permute4x64_epi64(_mm256_packs_epi16(a, b), 0xD8); }
};
#endif

#if ZQ_TIER >= 2
template <>
struct Regs<Isa::Avx512> {
    using F = __m512;
    using I = __m512i;
    static constexpr int bytes = 64;
    template <class T>
    static constexpr int lanes = bytes / int(sizeof(T));

    static F loadf(const float* p) { return _mm512_loadu_ps(p); }
    static void storef(float* p, F v) { _mm512_storeu_ps(p, v); }
    static void streamf(float* p, F v) { _mm512_stream_ps(p, v); }
    static I load(const void* p) { return _mm512_loadu_si512(p); }
    static void store(void* p, I v) { _mm512_storeu_si512(p, v); }
    static I loadHalf(const void* p) {
        return _mm512_zextsi256_si512(_mm256_loadu_si256(static_cast<const __m256i*>(p)));
    }
    static I loadQuarter(const void* p) {
        return _mm512_zextsi128_si512(_mm_loadu_si128(static_cast<const __m128i*>(p)));
    }

    static F zerof() { return _mm512_setzero_ps(); }
    static I zero() { return _mm512_setzero_si512(); }
    static F set1f(float v) { return _mm512_set1_ps(v); }
    static I set1_8(int v) { return _mm512_set1_epi8(char(v)); }
    static I set1_16(int v) { return _mm512_set1_epi16(short(v)); }
    static I set1_32(int v) { return _mm512_set1_epi32(v); }

    static F add(F a, F b) { return _mm512_add_ps(a, b); }
    static F sub(F a, F b) { return _mm512_sub_ps(a, b); }
    static F mul(F a, F b) { return _mm512_mul_ps(a, b); }
    static F div(F a, F b) { return _mm512_div_ps(a, b); }
    static F sqrt(F a) { return _mm512_sqrt_ps(a); }
    static F min(F a, F b) { return _mm512_min_ps(a, b); }
    static F max(F a, F b) { return _mm512_max_ps(a, b); }
    static F andf(F a, F b) { return _mm512_and_ps(a, b); }
    static F orf(F a, F b) { return _mm512_or_ps(a, b); }
    static F xorf(F a, F b) { return _mm512_xor_ps(a, b); }
    static F andnotf(F a, F b) { return _mm512_andnot_ps(a, b); }
    static F maskf(__mmask16 k) { return _mm512_castsi512_ps(_mm512_movm_epi32(k)); }
    static F cmplt(F a, F b) { return maskf(_mm512_cmp_ps_mask(a, b, _CMP_LT_OQ)); }
    static F cmple(F a, F b) { return maskf(_mm512_cmp_ps_mask(a, b, _CMP_LE_OQ)); }
    static F cmpeq(F a, F b) { return maskf(_mm512_cmp_ps_mask(a, b, _CMP_EQ_OQ)); }
    static F select(F m, F a, F b) {
        return _mm512_mask_blend_ps(_mm512_movepi32_mask(_mm512_castps_si512(m)), b, a);
    }
    static I cvtf_i32(F a) { return _mm512_cvtps_epi32(a); }
    static I cvttf_i32(F a) { return _mm512_cvttps_epi32(a); }
    static F cvti32_f(I a) { return _mm512_cvtepi32_ps(a); }
    static I castf_i(F a) { return _mm512_castps_si512(a); }
    static F casti_f(I a) { return _mm512_castsi512_ps(a); }

    static I andi(I a, I b) { return _mm512_and_si512(a, b); }
    static I ori(I a, I b) { return _mm512_or_si512(a, b); }
    static I xori(I a, I b) { return _mm512_xor_si512(a, b); }
    static I andnoti(I a, I b) { return _mm512_andnot_si512(a, b); }
    static I select(I m, I a, I b) { return _mm512_ternarylogic_epi32(m, a, b, 0xCA); }

    static I add8(I a, I b) { return _mm512_add_epi8(a, b); }
    static I add16(I a, I b) { return _mm512_add_epi16(a, b); }
    static I add32(I a, I b) { return _mm512_add_epi32(a, b); }
    static I sub8(I a, I b) { return _mm512_sub_epi8(a, b); }
    static I sub16(I a, I b) { return _mm512_sub_epi16(a, b); }
    static I sub32(I a, I b) { return _mm512_sub_epi32(a, b); }
    static I mullo16(I a, I b) { return _mm512_mullo_epi16(a, b); }
    static I addsU8(I a, I b) { return _mm512_adds_epu8(a, b); }
    static I subsU8(I a, I b) { return _mm512_subs_epu8(a, b); }
    static I addsI16(I a, I b) { return _mm512_adds_epi16(a, b); }
    static I subsI16(I a, I b) { return _mm512_subs_epi16(a, b); }
    static I minU8(I a, I b) { return _mm512_min_epu8(a, b); }
    static I maxU8(I a, I b) { return _mm512_max_epu8(a, b); }
    static I minI16(I a, I b) { return _mm512_min_epi16(a, b); }
    static I maxI16(I a, I b) { return _mm512_max_epi16(a, b); }
    static I minI32(I a, I b) { return _mm512_min_epi32(a, b); }
    static I maxI32(I a, I b) { return _mm512_max_epi32(a, b); }
    static I cmpeq8(I a, I b) { return _mm512_movm_epi8(_mm512_cmpeq_epi8_mask(a, b)); }
    static I cmpeq16(I a, I b) { return _mm512_movm_epi16(_mm512_cmpeq_epi16_mask(a, b)); }
    static I cmpeq32(I a, I b) { return _mm512_movm_epi32(_mm512_cmpeq_epi32_mask(a, b)); }
    static I cmpgtI16(I a, I b) { return _mm512_movm_epi16(_mm512_cmpgt_epi16_mask(a, b)); }
    static I cmpgtI32(I a, I b) { return _mm512_movm_epi32(_mm512_cmpgt_epi32_mask(a, b)); }
    static I slli16(I a, int n) { return _mm512_slli_epi16(a, unsigned(n)); }
    static I srai16(I a, int n) { return _mm512_srai_epi16(a, unsigned(n)); }
    static I srli16(I a, int n) { return _mm512_srli_epi16(a, unsigned(n)); }
    static I slli32(I a, int n) { return _mm512_slli_epi32(a, unsigned(n)); }
    static I srai32(I a, int n) { return _mm512_srai_epi32(a, unsigned(n)); }
    static I srli32(I a, int n) { return _mm512_srli_epi32(a, unsigned(n)); }

    static __m256i low(I v) { return _mm512_castsi512_si256(v); }
    static __m256i high(I v) { return _mm512_extracti64x4_epi64(v, 1); }
    static void widenU8(I v, I& lo, I& hi) { lo = _mm512_cvtepu8_epi16(low(v)), hi = _mm512_cvtepu8_epi16(high(v)); }
    static void widenI8(I v, I& lo, I& hi) { lo = _mm512_cvtepi8_epi16(low(v)), hi = _mm512_cvtepi8_epi16(high(v)); }
    static void widenU16(I v, I& lo, I& hi) { lo = _mm512_cvtepu16_epi32(low(v)), hi = _mm512_cvtepu16_epi32(high(v)); }
    static void widenI16(I v, I& lo, I& hi) { lo = _mm512_cvtepi16_epi32(low(v)), hi = _mm512_cvtepi16_epi32(high(v)); }

    // The packs work per 128-bit lane; this order puts a's lanes before b's.
    static I inOrder(I v) { return _mm512_permutexvar_epi64(_mm512_setr_epi64(0, 2, 4, 6, 1, 3, 5, 7), v); }
    static I packsI32(I a, I b) { return inOrder(_mm512_packs_epi32(a, b)); }
    static I packusI16(I a, I b) { return inOrder(_mm512_packus_epi16(a, b)); }
    static I packsI16(I a, I b) { return inOrder(_mm512_packs_epi16(a, b)); }
};
#endif

ZQ_TIER_END
}  // namespace zq

#endif
