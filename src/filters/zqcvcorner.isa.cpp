// Corner-measure kernels, written once over the tier's registers: whole
// registers of pixels, then one pixel at a time with the same arithmetic, so
// every tier gives the baseline's bits (the double-precision square root of
// the minimum eigenvalue included: double operations round once, whatever
// their width).
#include "core/zqcvcore.h"
#include "core/zqcvregs.h"
#include "filters/zqcvcorner.h"

#include <cmath>
#include <cstring>

namespace {

using zq::Isa;

inline float ldf(const Zeq8u* p) {
    float v;
    std::memcpy(&v, p, 4);
    return v;
}
inline void stf(Zeq8u* p, float v) { std::memcpy(p, &v, 4); }
inline const float* fp(const Zeq8u* p) { return reinterpret_cast<const float*>(p); }
inline float* fp(Zeq8u* p) { return reinterpret_cast<float*>(p); }

// Substitute for a zero eigenvector length: the float epsilon.
constexpr float kZeroLength = 1.1920929e-07f;

// ---- one pixel ----

inline float minEigen(float sxx, float syy, float sxy, float scale) {
    const float a = sxx * scale, c = syy * scale, b = sxy * scale;
    const float t = 4.0f * b * b + (a - c) * (a - c);
    return float((double(a + c) - std::sqrt(double(t))) * 0.5);
}

// min and max with the rule of the vector instructions: the second operand
// when the first is not strictly smaller (larger).
inline float minOf(float a, float c) { return a < c ? a : c; }
inline float maxOf(float a, float c) { return a > c ? a : c; }

inline void eigenValsVecs(float sxx, float syy, float sxy, float scale, float out[6]) {
    const float a = sxx * scale, c = syy * scale, b = sxy * scale;
    const float mn = minOf(a, c), mx = maxOf(a, c), eps = 0.01f * mx;
    const float d = std::sqrt(b * 4.0f * b + (a - c) * (a - c));
    const float l1 = (a + c + d) * 0.5f, l2 = (a + c - d) * 0.5f;
    if (mn < eps || a * c - b * b < eps) {
        for (int k = 0; k < 6; ++k) out[k] = 0.0f;
    } else if (std::fabs(b) < eps) {
        out[0] = l1, out[1] = l2, out[2] = 1.0f, out[3] = 0.0f, out[4] = 0.0f, out[5] = 1.0f;
    } else {
        const float u = l1 - a, v = l2 - a;
        float r1 = std::sqrt(u * u + b * b), r2 = std::sqrt(b * b + v * v);
        if (r1 == 0.0f) r1 = kZeroLength;
        if (r2 == 0.0f) r2 = kZeroLength;
        const float i1 = 1.0f / r1, i2 = 1.0f / r2;
        out[0] = l1, out[1] = l2, out[2] = b * i1, out[3] = u * i1, out[4] = b * i2, out[5] = v * i2;
    }
}

// ---- registers ----

// (sum - sqrt(t)) * 0.5 per lane in double precision, rounded to float.
template <Isa I>
inline typename zq::Regs<I>::F minEigenTail(typename zq::Regs<I>::F sum, typename zq::Regs<I>::F t) {
    if constexpr (I == Isa::Sse2) {
        const __m128d h = _mm_set1_pd(0.5);
        const __m128d lo = _mm_mul_pd(_mm_sub_pd(_mm_cvtps_pd(sum), _mm_sqrt_pd(_mm_cvtps_pd(t))), h);
        const __m128d hi = _mm_mul_pd(
            _mm_sub_pd(_mm_cvtps_pd(_mm_movehl_ps(sum, sum)), _mm_sqrt_pd(_mm_cvtps_pd(_mm_movehl_ps(t, t)))), h);
        return _mm_movelh_ps(_mm_cvtpd_ps(lo), _mm_cvtpd_ps(hi));
    }
#if ZQ_TIER >= 1
    else if constexpr (I == Isa::Avx2) {
        const __m256d h = _mm256_set1_pd(0.5);
        const __m256d lo = _mm256_mul_pd(_mm256_sub_pd(_mm256_cvtps_pd(_mm256_castps256_ps128(sum)),
                                                       _mm256_sqrt_pd(_mm256_cvtps_pd(_mm256_castps256_ps128(t)))),
                                         h);
        const __m256d hi = _mm256_mul_pd(_mm256_sub_pd(_mm256_cvtps_pd(_mm256_extractf128_ps(sum, 1)),
                                                       _mm256_sqrt_pd(_mm256_cvtps_pd(_mm256_extractf128_ps(t, 1)))),
                                         h);
        return _mm256_set_m128(_mm256_cvtpd_ps(hi), _mm256_cvtpd_ps(lo));
    }
#endif
#if ZQ_TIER >= 2
    else {
        const __m512d h = _mm512_set1_pd(0.5);
        const __m512d lo = _mm512_mul_pd(_mm512_sub_pd(_mm512_cvtps_pd(_mm512_castps512_ps256(sum)),
                                                       _mm512_sqrt_pd(_mm512_cvtps_pd(_mm512_castps512_ps256(t)))),
                                         h);
        const __m512d hi = _mm512_mul_pd(_mm512_sub_pd(_mm512_cvtps_pd(_mm512_extractf32x8_ps(sum, 1)),
                                                       _mm512_sqrt_pd(_mm512_cvtps_pd(_mm512_extractf32x8_ps(t, 1)))),
                                         h);
        return _mm512_insertf32x8(_mm512_castps256_ps512(_mm512_cvtpd_ps(lo)), _mm512_cvtpd_ps(hi), 1);
    }
#endif
}

// The k-th group of four lanes of a float register.
template <Isa I>
inline __m128 quarter(typename zq::Regs<I>::F v, int k) {
    if constexpr (I == Isa::Sse2) {
        (void)k;
        return v;
    }
#if ZQ_TIER >= 1
    else if constexpr (I == Isa::Avx2) {
        return k == 0 ? _mm256_castps256_ps128(v) : _mm256_extractf128_ps(v, 1);
    }
#endif
#if ZQ_TIER >= 2
    else {
        switch (k) {
        case 0: return _mm512_extractf32x4_ps(v, 0);
        case 1: return _mm512_extractf32x4_ps(v, 1);
        case 2: return _mm512_extractf32x4_ps(v, 2);
        default: return _mm512_extractf32x4_ps(v, 3);
        }
    }
#endif
}

// Four pixels of six values each, interleaved into 24 consecutive floats.
inline void store6x4(Zeq8u* out, __m128 l1, __m128 l2, __m128 x1, __m128 y1, __m128 x2, __m128 y2) {
    _MM_TRANSPOSE4_PS(l1, l2, x1, y1);  // now pixel 0..3 rows of (l1, l2, x1, y1)
    const __m128 lo = _mm_unpacklo_ps(x2, y2), hi = _mm_unpackhi_ps(x2, y2);
    float* o = fp(out);
    _mm_storeu_ps(o + 0, l1);
    _mm_storeu_ps(o + 4, _mm_shuffle_ps(lo, l2, _MM_SHUFFLE(1, 0, 1, 0)));
    _mm_storeu_ps(o + 8, _mm_shuffle_ps(l2, lo, _MM_SHUFFLE(3, 2, 3, 2)));
    _mm_storeu_ps(o + 12, x1);
    _mm_storeu_ps(o + 16, _mm_shuffle_ps(hi, y1, _MM_SHUFFLE(1, 0, 1, 0)));
    _mm_storeu_ps(o + 20, _mm_shuffle_ps(y1, hi, _MM_SHUFFLE(3, 2, 3, 2)));
}

}  // namespace

namespace zq {

template <Isa I>
void owncvMulDBuffers_16s32f(int width, int rows, Zeq8u* bufX, Zeq8u* bufXY, Zeq8u* bufY) {
    using R = Regs<I>;
    constexpr int L = R::template lanes<float>;
    const ptrdiff_t step = ptrdiff_t(width) * 4;
    for (int y = 0; y < rows; ++y, bufX += step, bufXY += step, bufY += step) {
        // From the last column to the first: the floats of columns x.. cover
        // only 16-bit columns 2x.., which are read by then.
        int x = width;
        for (; x >= 2 * L; x -= 2 * L) {
            const int x0 = x - 2 * L;
            typename R::I dx[2], dy[2];
            R::widenI16(R::load(bufX + 2 * x0), dx[0], dx[1]);
            R::widenI16(R::load(bufY + 2 * x0), dy[0], dy[1]);
            for (int h = 1; h >= 0; --h) {
                const typename R::F X = R::cvti32_f(dx[h]), Y = R::cvti32_f(dy[h]);
                const ptrdiff_t o = 4 * ptrdiff_t(x0 + h * L);
                R::storef(fp(bufX + o), R::mul(X, X));
                R::storef(fp(bufXY + o), R::mul(X, Y));
                R::storef(fp(bufY + o), R::mul(Y, Y));
            }
        }
        while (x-- > 0) {
            Zeq16s dx, dy;
            std::memcpy(&dx, bufX + 2 * x, 2);
            std::memcpy(&dy, bufY + 2 * x, 2);
            const float X = float(dx), Y = float(dy);
            stf(bufX + 4 * x, X * X);
            stf(bufXY + 4 * x, X * Y);
            stf(bufY + 4 * x, Y * Y);
        }
    }
}

template <Isa I>
void owncvMulDBuffers_32f(int width, int rows, Zeq8u* bufX, Zeq8u* bufXY, Zeq8u* bufY) {
    using R = Regs<I>;
    constexpr int L = R::template lanes<float>;
    const ptrdiff_t step = ptrdiff_t(width) * 4;
    for (int y = 0; y < rows; ++y, bufX += step, bufXY += step, bufY += step) {
        int x = 0;
        for (; x + L <= width; x += L) {
            const typename R::F X = R::loadf(fp(bufX + 4 * x)), Y = R::loadf(fp(bufY + 4 * x));
            R::storef(fp(bufX + 4 * x), R::mul(X, X));
            R::storef(fp(bufXY + 4 * x), R::mul(X, Y));
            R::storef(fp(bufY + 4 * x), R::mul(Y, Y));
        }
        for (; x < width; ++x) {
            const float X = ldf(bufX + 4 * x), Y = ldf(bufY + 4 * x);
            stf(bufX + 4 * x, X * X);
            stf(bufXY + 4 * x, X * Y);
            stf(bufY + 4 * x, Y * Y);
        }
    }
}

template <Isa I>
void calcMinValues(const Zeq8u* Sxx, const Zeq8u* Syy, const Zeq8u* Sxy, int width, ptrdiff_t bufStep, Zeq8u* pDst,
                   ptrdiff_t dstStep, int rows, Zeq32f scale) {
    using R = Regs<I>;
    using F = typename R::F;
    constexpr int L = R::template lanes<float>;
    const F s = R::set1f(scale), four = R::set1f(4.0f);
    for (int y = 0; y < rows; ++y, Sxx += bufStep, Syy += bufStep, Sxy += bufStep, pDst += dstStep) {
        int x = 0;
        for (; x + L <= width; x += L) {
            const F a = R::mul(R::loadf(fp(Sxx + 4 * x)), s);
            const F c = R::mul(R::loadf(fp(Syy + 4 * x)), s);
            const F b = R::mul(R::loadf(fp(Sxy + 4 * x)), s);
            const F amc = R::sub(a, c);
            const F t = R::add(R::mul(R::mul(four, b), b), R::mul(amc, amc));
            R::storef(fp(pDst + 4 * x), minEigenTail<I>(R::add(a, c), t));
        }
        for (; x < width; ++x)
            stf(pDst + 4 * x, minEigen(ldf(Sxx + 4 * x), ldf(Syy + 4 * x), ldf(Sxy + 4 * x), scale));
    }
}

template <Isa I>
void calcValues(const Zeq8u* Sxx, const Zeq8u* Syy, const Zeq8u* Sxy, int width, ptrdiff_t bufStep, Zeq8u* pDst,
                ptrdiff_t dstStep, int rows, Zeq32f scale) {
    using R = Regs<I>;
    using F = typename R::F;
    constexpr int L = R::template lanes<float>;
    const F s = R::set1f(scale), four = R::set1f(4.0f), half = R::set1f(0.5f), hundredth = R::set1f(0.01f);
    const F zero = R::zerof(), one = R::set1f(1.0f), tiny = R::set1f(kZeroLength);
    const F signBit = R::set1f(-0.0f);
    for (int y = 0; y < rows; ++y, Sxx += bufStep, Syy += bufStep, Sxy += bufStep, pDst += dstStep) {
        int x = 0;
        for (; x + L <= width; x += L) {
            const F a = R::mul(R::loadf(fp(Sxx + 4 * x)), s);
            const F c = R::mul(R::loadf(fp(Syy + 4 * x)), s);
            const F b = R::mul(R::loadf(fp(Sxy + 4 * x)), s);
            const F eps = R::mul(hundredth, R::max(a, c));
            const F amc = R::sub(a, c), apc = R::add(a, c), bb = R::mul(b, b);
            const F d = R::sqrt(R::add(R::mul(R::mul(b, four), b), R::mul(amc, amc)));
            const F l1 = R::mul(R::add(apc, d), half), l2 = R::mul(R::sub(apc, d), half);
            const F u = R::sub(l1, a), v = R::sub(l2, a);
            F r1 = R::sqrt(R::add(R::mul(u, u), bb)), r2 = R::sqrt(R::add(bb, R::mul(v, v)));
            r1 = R::select(R::cmpeq(r1, zero), tiny, r1);
            r2 = R::select(R::cmpeq(r2, zero), tiny, r2);
            const F i1 = R::div(one, r1), i2 = R::div(one, r2);
            const F axis = R::cmplt(R::andnotf(signBit, b), eps);
            const F flat = R::orf(R::cmplt(R::min(a, c), eps), R::cmplt(R::sub(R::mul(a, c), bb), eps));
            // Axis-aligned lanes take (1, 0, 0, 1); flat lanes clear all six.
            const F o[6] = {R::andnotf(flat, l1),
                            R::andnotf(flat, l2),
                            R::andnotf(flat, R::select(axis, one, R::mul(b, i1))),
                            R::andnotf(flat, R::andnotf(axis, R::mul(u, i1))),
                            R::andnotf(flat, R::andnotf(axis, R::mul(b, i2))),
                            R::andnotf(flat, R::select(axis, one, R::mul(v, i2)))};
            Zeq8u* out = pDst + 24 * ptrdiff_t(x);
            for (int k = 0; k < L / 4; ++k)
                store6x4(out + 96 * k, quarter<I>(o[0], k), quarter<I>(o[1], k), quarter<I>(o[2], k),
                         quarter<I>(o[3], k), quarter<I>(o[4], k), quarter<I>(o[5], k));
        }
        for (; x < width; ++x) {
            float out[6];
            eigenValsVecs(ldf(Sxx + 4 * x), ldf(Syy + 4 * x), ldf(Sxy + 4 * x), scale, out);
            std::memcpy(pDst + 24 * ptrdiff_t(x), out, sizeof out);
        }
    }
}

template void owncvMulDBuffers_16s32f<ZQ_ISA>(int, int, Zeq8u*, Zeq8u*, Zeq8u*);
template void owncvMulDBuffers_32f<ZQ_ISA>(int, int, Zeq8u*, Zeq8u*, Zeq8u*);
template void calcMinValues<ZQ_ISA>(const Zeq8u*, const Zeq8u*, const Zeq8u*, int, ptrdiff_t, Zeq8u*, ptrdiff_t, int,
                                    Zeq32f);
template void calcValues<ZQ_ISA>(const Zeq8u*, const Zeq8u*, const Zeq8u*, int, ptrdiff_t, Zeq8u*, ptrdiff_t, int,
                                 Zeq32f);

}  // namespace zq
