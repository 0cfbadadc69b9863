// The radix stages and first passes with 256-bit registers (four complex
// values each), for the AVX2 and AVX-512 tiers; the SSE2 tier has its own in
// zqcvfftkernels.cpp. The arithmetic per value is the same, except that the
// twiddle products fuse their multiply and add.
#include "fft/zqcvfft.h"

#if ZQ_TIER >= 1

#include <immintrin.h>

#include "fft/zqcvfftradix.h"

namespace zq {
namespace {

struct Avx {
    using R = __m256;
    static constexpr int kFloats = 8;
    static R load(const float* p) { return _mm256_loadu_ps(p); }
    static void store(float* p, R v) { _mm256_storeu_ps(p, v); }
    static R loadTable(const float* p) { return _mm256_load_ps(p); }
    static R add(R a, R b) { return _mm256_add_ps(a, b); }
    static R sub(R a, R b) { return _mm256_sub_ps(a, b); }
    static R mul(R a, R b) { return _mm256_mul_ps(a, b); }
    static R mulAdd(R a, R b, R c) { return _mm256_fmadd_ps(a, b, c); }
    static R mulSubFrom(R a, R b, R c) { return _mm256_fnmadd_ps(a, b, c); }
    static R splat(float v) { return _mm256_set1_ps(v); }
    static R swapReIm(R a) { return _mm256_permute_ps(a, _MM_SHUFFLE(2, 3, 0, 1)); }
    static R negate(R a, bool imaginary) {
        const int s = int(0x80000000u);
        return _mm256_xor_ps(a, imaginary ? _mm256_castsi256_ps(_mm256_set_epi32(s, 0, s, 0, s, 0, s, 0))
                                          : _mm256_castsi256_ps(_mm256_set_epi32(0, s, 0, s, 0, s, 0, s)));
    }
};

inline __m128 loadPair(const float* lo, const float* hi) {
    return _mm_loadh_pi(_mm_loadl_pi(_mm_setzero_ps(), reinterpret_cast<const __m64*>(lo)),
                        reinterpret_cast<const __m64*>(hi));
}
inline __m256 loadQuad(const float* const* p, size_t offset) {
    return _mm256_insertf128_ps(_mm256_castps128_ps256(loadPair(p[0] + offset, p[1] + offset)),
                                loadPair(p[2] + offset, p[3] + offset), 1);
}

// Transposes four registers seen as 4x4 complex values.
inline void transpose4(__m256* v) {
    const __m256d a = _mm256_castps_pd(v[0]), b = _mm256_castps_pd(v[1]);
    const __m256d c = _mm256_castps_pd(v[2]), d = _mm256_castps_pd(v[3]);
    const __m256d t0 = _mm256_unpacklo_pd(a, b), t1 = _mm256_unpackhi_pd(a, b);
    const __m256d t2 = _mm256_unpacklo_pd(c, d), t3 = _mm256_unpackhi_pd(c, d);
    v[0] = _mm256_castpd_ps(_mm256_permute2f128_pd(t0, t2, 0x20));
    v[1] = _mm256_castpd_ps(_mm256_permute2f128_pd(t1, t3, 0x20));
    v[2] = _mm256_castpd_ps(_mm256_permute2f128_pd(t0, t2, 0x31));
    v[3] = _mm256_castpd_ps(_mm256_permute2f128_pd(t1, t3, 0x31));
}

// Lane g of y[0 .. count) (four transforms side by side) goes to dst + g * stride floats.
inline void storeTransposed(float* dst, size_t stride, __m256* y, int count) {
    for (int i = 0; i < count; i += 4) {
        transpose4(y + i);
        for (int g = 0; g < 4; ++g) _mm256_storeu_ps(dst + g * stride + 2 * i, y[i + g]);
    }
}

template <bool Inv>
void gather(const float* src, float* dst, int m, const int32_t* rev, size_t groups) {
    const size_t n = size_t(1) << m;
    __m256 y[8];
    const float* s[4];
    if (!(m & 1)) {
        const size_t quarter = n / 2;
        for (size_t k = 0; k < groups; k += 4, dst += 32) {
            for (int g = 0; g < 4; ++g) s[g] = src + rev[k + g];
            for (int j = 0; j < 4; ++j) y[j] = loadQuad(s, j * quarter);
            radix::butterfly4<Avx, Inv>(y);
            storeTransposed(dst, 8, y, 4);
        }
        return;
    }
    const size_t eighth = n / 4;
    for (size_t p = 0; p < groups; p += 4, dst += 64) {
        for (int g = 0; g < 4; ++g) s[g] = src + rev[2 * (p + g)];
        for (int j = 0; j < 8; ++j) y[j] = loadQuad(s, j * eighth);
        radix::butterfly8<Avx, Inv>(y);
        storeTransposed(dst, 16, y, 8);
    }
}

// The whole first pass at once. Blocks k, k + G/2, k + G/4 and k + 3G/4 (G
// blocks) read neighbouring source values, rev(k) + 0..3 (k < G/4), so each
// of their inputs comes from one 32-byte load.
template <bool Inv>
void gatherAll(const float* src, float* dst, int m, const int32_t* rev) {
    const size_t n = size_t(1) << m;
    __m256 y[8];
    const int count = (m & 1) ? 8 : 4;               // values per block
    const size_t groups = n / size_t(count), stride = 2 * size_t(count);  // floats per block
    const size_t leg = 2 * n / size_t(count);        // floats between the inputs of a block
    float* out[4];
    for (size_t k = 0; k < groups / 4; ++k) {
        const float* s = src + rev[(m & 1) ? 2 * k : k];
        for (int j = 0; j < count; ++j) y[j] = _mm256_loadu_ps(s + j * leg);
        if (m & 1) radix::butterfly8<Avx, Inv>(y);
        else radix::butterfly4<Avx, Inv>(y);
        out[0] = dst + k * stride;
        out[1] = out[0] + (groups / 2) * stride;
        out[2] = out[0] + (groups / 4) * stride;
        out[3] = out[1] + (groups / 4) * stride;
        for (int i = 0; i < count; i += 4) {
            transpose4(y + i);
            for (int g = 0; g < 4; ++g) _mm256_storeu_ps(out[g] + 2 * i, y[i + g]);
        }
    }
}

// The whole transform of 64 values in registers: the gathering first pass
// (as gatherAll) followed by both radix-4 stages (as fact16 with span 4).
template <bool Inv>
void order6(const float* src, float* dst, const int32_t* rev, const float* tw) {
    __m256 x[16];
    for (int k = 0; k < 4; ++k) {
        __m256 y[4];
        for (int j = 0; j < 4; ++j) y[j] = _mm256_loadu_ps(src + rev[k] + 32 * j);
        radix::butterfly4<Avx, Inv>(y);
        transpose4(y);
        x[k] = y[0], x[k + 8] = y[1], x[k + 4] = y[2], x[k + 12] = y[3];
    }
    radix::radix16<Avx, Inv>(x, tw, tw + 48, 48, dst, 8);
}

// Blocks in bit-reversed order: (y0, y2, y1, y3), or (y0, y4, y2, y6, y1, y5, y3, y7).
template <bool Inv>
void inPlace(float* d, int m, size_t groups) {
    __m256 y[8], v[8];
    if (!(m & 1)) {
        for (size_t k = 0; k < groups; k += 4, d += 32) {
            for (int g = 0; g < 4; ++g) v[g] = _mm256_loadu_ps(d + 8 * g);
            transpose4(v);
            y[0] = v[0], y[1] = v[2], y[2] = v[1], y[3] = v[3];
            radix::butterfly4<Avx, Inv>(y);
            storeTransposed(d, 8, y, 4);
        }
        return;
    }
    for (size_t p = 0; p < groups; p += 4, d += 64) {
        for (int g = 0; g < 4; ++g) {
            v[g] = _mm256_loadu_ps(d + 16 * g);
            v[4 + g] = _mm256_loadu_ps(d + 16 * g + 8);
        }
        transpose4(v);
        transpose4(v + 4);
        static const int order[8] = {0, 4, 2, 6, 1, 5, 3, 7};
        for (int t = 0; t < 8; ++t) y[order[t]] = v[t];
        radix::butterfly8<Avx, Inv>(y);
        storeTransposed(d, 16, y, 8);
    }
}

}  // namespace

template <Isa I>
void firstPassGatherWide(const float* src, float* dst, int m, const int32_t* rev, size_t groups, bool inverse) {
    if (inverse) gather<true>(src, dst, m, rev, groups);
    else gather<false>(src, dst, m, rev, groups);
}
template void firstPassGatherWide<ZQ_ISA>(const float*, float*, int, const int32_t*, size_t, bool);

template <Isa I>
void firstPassGatherAllWide(const float* src, float* dst, int m, const int32_t* rev, bool inverse) {
    if (inverse) gatherAll<true>(src, dst, m, rev);
    else gatherAll<false>(src, dst, m, rev);
}
template void firstPassGatherAllWide<ZQ_ISA>(const float*, float*, int, const int32_t*, bool);

template <Isa I>
void complexOrder6Wide(const float* src, float* dst, const int32_t* rev, const float* tw, bool inverse) {
    if (inverse) order6<true>(src, dst, rev, tw);
    else order6<false>(src, dst, rev, tw);
}
template void complexOrder6Wide<ZQ_ISA>(const float*, float*, const int32_t*, const float*, bool);

template <Isa I>
void firstPassInPlaceWide(float* d, int m, size_t groups, bool inverse) {
    if (inverse) inPlace<true>(d, m, groups);
    else inPlace<false>(d, m, groups);
}
template void firstPassInPlaceWide<ZQ_ISA>(float*, int, size_t, bool);

template <Isa I>
void fact4Wide(float* d, size_t n, size_t span, const float* tw, bool inverse) {
    if (inverse) radix::fact4<Avx, true>(d, n, span, tw);
    else radix::fact4<Avx, false>(d, n, span, tw);
}
template void fact4Wide<ZQ_ISA>(float*, size_t, size_t, const float*, bool);

template <Isa I>
void fact16Wide(float* d, size_t n, size_t span, const float* twA, const float* twB, bool inverse) {
    if (inverse) radix::fact16<Avx, true>(d, n, span, twA, twB);
    else radix::fact16<Avx, false>(d, n, span, twA, twB);
}
template void fact16Wide<ZQ_ISA>(float*, size_t, size_t, const float*, const float*, bool);

template <Isa I>
void fact2Wide(float* d, size_t span, const float* tw, bool inverse) {
    if (inverse) radix::fact2<Avx, true>(d, span, tw);
    else radix::fact2<Avx, false>(d, span, tw);
}
template void fact2Wide<ZQ_ISA>(float*, size_t, const float*, bool);

}  // namespace zq

#endif
