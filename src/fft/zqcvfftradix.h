// Radix-4 and radix-2 butterflies written once over a register type, built
// by zqcvfftkernels.cpp with 128-bit SSE2 registers (two complex values) and
// by zqcvfftwide.isa.cpp with 256-bit registers (four). Every lane does the
// same operations in the same order; the wider tiers fuse the twiddle
// products' multiply and add (V::mulAdd), which rounds once where SSE2 rounds
// twice, so their results differ from the baseline's within the transform's
// rounding.
//
// Everything here has internal linkage: each including file gets its own
// copy, compiled for its own instruction set.
#ifndef ZQCV_FFT_RADIX_H
#define ZQCV_FFT_RADIX_H

#include <cstddef>
#include <utility>

namespace {
namespace radix {

// Multiplication by -i (forward) or +i (inverse): swap re and im, negate one.
template <class V, bool Inv>
inline typename V::R rotate(typename V::R a) {
    return V::negate(V::swapReIm(a), /*imaginary=*/!Inv);
}

// a * w (forward) or a * conj(w) (inverse); wr points at (wr, wr) pairs,
// ws at (-wi, wi) pairs.
template <class V, bool Inv>
inline typename V::R cmul(typename V::R a, const float* wr, const float* ws) {
    const typename V::R r = V::mul(a, V::loadTable(wr));
    return Inv ? V::mulSubFrom(V::swapReIm(a), V::loadTable(ws), r) : V::mulAdd(V::swapReIm(a), V::loadTable(ws), r);
}

// The 4-point DFT of (x0, x1, x2, x3) in natural order, in place.
template <class V, bool Inv>
inline void butterfly4(typename V::R* x) {
    const typename V::R t0 = V::add(x[0], x[2]), t1 = V::sub(x[0], x[2]);
    const typename V::R t2 = V::add(x[1], x[3]), t3 = rotate<V, Inv>(V::sub(x[1], x[3]));
    x[0] = V::add(t0, t2);
    x[2] = V::sub(t0, t2);
    x[1] = V::add(t1, t3);
    x[3] = V::sub(t1, t3);
}

constexpr float COSPI4 = 0.70710677f;

// The 8-point DFT of x[0..7] in natural order, in place: two 4-point DFTs of
// the even and odd values joined by the eighth roots of unity.
template <class V, bool Inv>
inline void butterfly8(typename V::R* x) {
    typename V::R e[4] = {x[0], x[2], x[4], x[6]}, o[4] = {x[1], x[3], x[5], x[7]};
    butterfly4<V, Inv>(e);
    butterfly4<V, Inv>(o);
    const typename V::R c = V::splat(COSPI4);
    o[1] = V::mul(c, V::add(o[1], rotate<V, Inv>(o[1])));
    o[2] = rotate<V, Inv>(o[2]);
    o[3] = V::mul(c, V::sub(rotate<V, Inv>(o[3]), o[3]));
    for (int q = 0; q < 4; ++q) {
        x[q] = V::add(e[q], o[q]);
        x[q + 4] = V::sub(e[q], o[q]);
    }
}

// One radix-4 decimation-in-time stage over `n` complex values: each group of
// four consecutive sub-transforms of length `span` (stored in bit-reversed
// order: offsets 0, 2, 1, 3) becomes one transform of length 4*span.
// Twiddles: 48 floats per four butterflies, the same for every group.
template <class V, bool Inv>
void fact4(float* d, size_t n, size_t span, const float* tw) {
    const size_t s2 = 2 * span;
    for (size_t g = 0; g < n; g += 4 * span) {
        float* p0 = d + 2 * g;
        float *p1 = p0 + s2, *p2 = p1 + s2, *p3 = p2 + s2;
        const float* w = tw;
        for (size_t k = 0; k < s2; k += 8, w += 48) {
            for (int h = 0; h < 8; h += V::kFloats) {
                typename V::R x[4] = {V::load(p0 + k + h), cmul<V, Inv>(V::load(p2 + k + h), w + h, w + 8 + h),
                                      cmul<V, Inv>(V::load(p1 + k + h), w + 16 + h, w + 24 + h),
                                      cmul<V, Inv>(V::load(p3 + k + h), w + 32 + h, w + 40 + h)};
                butterfly4<V, Inv>(x);
                V::store(p0 + k + h, x[0]);
                V::store(p1 + k + h, x[1]);
                V::store(p2 + k + h, x[2]);
                V::store(p3 + k + h, x[3]);
            }
        }
    }
}

// Two radix-4 stages on 16 registers: four groups of four sub-transforms
// (x[4a .. 4a+3], offsets 0, 2, 1, 3) with twiddles wA, then the four
// transforms x[a], x[4+a], x[8+a], x[12+a] with twiddles wB + a*wBStep.
// Result i goes to out + i*outStride floats.
template <class V, bool Inv>
inline void radix16(typename V::R* x, const float* wA, const float* wB, size_t wBStep, float* out,
                    size_t outStride) {
    using R = typename V::R;
    for (int a = 0; a < 4; ++a) {
        R* y = x + 4 * a;
        R t[4] = {y[0], cmul<V, Inv>(y[2], wA, wA + 8), cmul<V, Inv>(y[1], wA + 16, wA + 24),
                  cmul<V, Inv>(y[3], wA + 32, wA + 40)};
        butterfly4<V, Inv>(t);
        for (int j = 0; j < 4; ++j) y[j] = t[j];
    }
    for (int a = 0; a < 4; ++a) {
        const float* w = wB + a * wBStep;
        R t[4] = {x[a], cmul<V, Inv>(x[8 + a], w, w + 8), cmul<V, Inv>(x[4 + a], w + 16, w + 24),
                  cmul<V, Inv>(x[12 + a], w + 32, w + 40)};
        butterfly4<V, Inv>(t);
        for (int j = 0; j < 4; ++j) V::store(out + (4 * j + a) * outStride, t[j]);
    }
}

// Two radix-4 stages in one pass (spans `span` and 4*span): the 16 values
// that the two stages combine for butterfly k stay in registers. Gives the
// same bits as the two stages one after the other. Every span the transforms
// use (powers of two, 4 to 2048) is compiled as a constant: with a run-time
// span the 16 row offsets do not fit in the general registers.
template <class V, bool Inv, size_t FixedSpan = 0>
void fact16(float* d, size_t n, size_t span, const float* twA, const float* twB);

template <class V, bool Inv, size_t... L>
bool fact16Fixed(float* d, size_t n, size_t span, const float* twA, const float* twB, std::index_sequence<L...>) {
    using Fn = void (*)(float*, size_t, size_t, const float*, const float*);
    static constexpr Fn table[] = {fact16<V, Inv, size_t(4) << L>...};
    const int k = __builtin_ctzll(span) - 2;
    if (k < 0 || k >= int(sizeof...(L))) return false;
    table[k](d, n, span, twA, twB);
    return true;
}

template <class V, bool Inv, size_t FixedSpan>
void fact16(float* d, size_t n, size_t span, const float* twA, const float* twB) {
    if constexpr (FixedSpan == 0) {
        if (fact16Fixed<V, Inv>(d, n, span, twA, twB, std::make_index_sequence<10>())) return;
    }
    using R = typename V::R;
    const size_t s2 = 2 * (FixedSpan ? FixedSpan : span);
    for (size_t g = 0; g < n; g += 16 * span) {
        float* p = d + 2 * g;
        for (size_t k = 0; k < s2; k += 8) {
            const float *wA = twA + (k / 8) * 48, *wB = twB + (k / 8) * 48;
            for (int h = 0; h < 8; h += V::kFloats) {
                R x[16];
                for (int i = 0; i < 16; ++i) x[i] = V::load(p + i * s2 + k + h);
                radix16<V, Inv>(x, wA + h, wB + h, (s2 / 8) * 48, p + k + h, s2);
            }
        }
    }
}

// A radix-2 stage joining two halves of `span` values; 16 floats of twiddles
// per four butterflies.
template <class V, bool Inv>
void fact2(float* d, size_t span, const float* tw) {
    float* p1 = d + 2 * span;
    for (size_t k = 0; k < 2 * span; k += 8, tw += 16) {
        for (int h = 0; h < 8; h += V::kFloats) {
            const typename V::R a = V::load(d + k + h), b = cmul<V, Inv>(V::load(p1 + k + h), tw + h, tw + 8 + h);
            V::store(d + k + h, V::add(a, b));
            V::store(p1 + k + h, V::sub(a, b));
        }
    }
}

}  // namespace radix
}  // namespace

#endif
