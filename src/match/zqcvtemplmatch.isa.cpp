// Kernels of the valid-mode comparison, written once over the tier: the copy
// of a source block into a zero-padded float tile, and the window sums.
//
// Every tier gives the same bits. The conversions are exact; the column sums
// are element-wise sequences of double operations, the same in any register
// width; the sums along a row of positions run in SSE2 registers on every
// tier, since a chain of dependent additions sets their pace, not the width.
#include "match/zqcvtemplmatch.h"

#include "core/zqcvcore.h"
#include "core/zqcvregs.h"

#include <cstring>
#include <type_traits>

namespace {

using zq::Isa;

// ---- the copy into a tile ----

template <Isa I, class T>
void convertRow(const T* src, int n, float* dst) {
    if constexpr (std::is_same<T, Zeq32f>::value) {
        std::memcpy(dst, src, size_t(n) * sizeof(float));
    } else {
        using R = zq::Regs<I>;
        constexpr int L = R::template lanes<float>;
        int x = 0;
        for (; x + 4 * L <= n; x += 4 * L) {
            typename R::I w[2], d[4];
            if constexpr (std::is_signed<T>::value) {
                R::widenI8(R::load(src + x), w[0], w[1]);
                R::widenI16(w[0], d[0], d[1]);
                R::widenI16(w[1], d[2], d[3]);
            } else {
                R::widenU8(R::load(src + x), w[0], w[1]);
                R::widenU16(w[0], d[0], d[1]);
                R::widenU16(w[1], d[2], d[3]);
            }
            for (int k = 0; k < 4; ++k) R::storef(dst + x + k * L, R::cvti32_f(d[k]));
        }
        for (; x < n; ++x) dst[x] = float(src[x]);
    }
}

// ---- window sums ----

// Double registers of a tier, for the element-wise column sums (their
// arithmetic is the compiler's vector operators).
template <Isa I>
struct Doubles;

template <>
struct Doubles<Isa::Sse2> {
    using V = __m128d;
    static constexpr int lanes = 2;
    static V fromFloats(const float* p) {
        return _mm_cvtps_pd(_mm_castsi128_ps(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(p))));
    }
    static V load(const double* p) { return _mm_loadu_pd(p); }
    static void store(double* p, V v) { _mm_storeu_pd(p, v); }
};

#if ZQ_TIER >= 1
template <>
struct Doubles<Isa::Avx2> {
    using V = __m256d;
    static constexpr int lanes = 4;
    static V fromFloats(const float* p) { return _mm256_cvtps_pd(_mm_loadu_ps(p)); }
    static V load(const double* p) { return _mm256_loadu_pd(p); }
    static void store(double* p, V v) { _mm256_storeu_pd(p, v); }
};
#endif

#if ZQ_TIER >= 2
template <>
struct Doubles<Isa::Avx512> {
    using V = __m512d;
    static constexpr int lanes = 8;
    static V fromFloats(const float* p) { return _mm512_cvtps_pd(_mm256_loadu_ps(p)); }
    static V load(const double* p) { return _mm512_loadu_pd(p); }
    static void store(double* p, V v) { _mm512_storeu_pd(p, v); }
};
#endif

// A pixel's share of a window sum: its square or its value, in double (the
// square of a float is exact there).
template <bool Squares>
inline double term(float v) {
    const double d = v;
    return Squares ? d * d : d;
}
template <class D, bool Squares>
inline typename D::V terms(const float* p) {
    const typename D::V v = D::fromFloats(p);
    return Squares ? v * v : v;
}

// sums[x] += term(row[x]) for x < n.
template <Isa I, bool Squares>
void addRow(double* sums, const float* row, int n) {
    using D = Doubles<I>;
    int x = 0;
    for (; x + D::lanes <= n; x += D::lanes) D::store(sums + x, D::load(sums + x) + terms<D, Squares>(row + x));
    for (; x < n; ++x) sums[x] = sums[x] + term<Squares>(row[x]);
}

// sums[x] += term(entering[x]) - term(leaving[x]) for x < n: the window moves down a row.
template <Isa I, bool Squares>
void slideRow(double* sums, const float* entering, const float* leaving, int n) {
    using D = Doubles<I>;
    int x = 0;
    for (; x + D::lanes <= n; x += D::lanes) {
        const typename D::V change = terms<D, Squares>(entering + x) - terms<D, Squares>(leaving + x);
        D::store(sums + x, D::load(sums + x) + change);
    }
    for (; x < n; ++x) sums[x] = sums[x] + (term<Squares>(entering[x]) - term<Squares>(leaving[x]));
}

inline double low(__m128d v) { return _mm_cvtsd_f64(v); }
inline double high(__m128d v) { return _mm_cvtsd_f64(_mm_unpackhi_pd(v, v)); }

// The sum of the first w column sums, in four interleaved partial sums.
inline double firstWindow(const double* colSums, int w) {
    __m128d a = _mm_setzero_pd(), b = _mm_setzero_pd();
    int x = 0;
    for (; x + 4 <= w; x += 4) {
        a = _mm_add_pd(a, _mm_loadu_pd(colSums + x));
        b = _mm_add_pd(b, _mm_loadu_pd(colSums + x + 2));
    }
    double s = (low(a) + high(a)) + (low(b) + high(b));
    for (; x < w; ++x) s += colSums[x];
    return s;
}

// One row of positions. With d the entering minus the leaving column sum of
// each position, four positions at a time take the sums of d0, d0+d1,
// (d0+d1)+d2 and (d0+d1)+(d2+d3) added to the running sum, so one addition
// per four positions waits for the one before.
void windowRow(const double* colSums, int w, int cols, float* out) {
    const double first = firstWindow(colSums, w);
    out[0] = float(first);
    const __m128d zero = _mm_setzero_pd();
    __m128d s = _mm_set1_pd(first);
    int x = 1;
    for (; x + 4 <= cols; x += 4) {
        __m128d d01 = _mm_sub_pd(_mm_loadu_pd(colSums + x + w - 1), _mm_loadu_pd(colSums + x - 1));
        __m128d d23 = _mm_sub_pd(_mm_loadu_pd(colSums + x + w + 1), _mm_loadu_pd(colSums + x + 1));
        d01 = _mm_add_pd(d01, _mm_unpacklo_pd(zero, d01));
        d23 = _mm_add_pd(d23, _mm_unpacklo_pd(zero, d23));
        d23 = _mm_add_pd(d23, _mm_unpackhi_pd(d01, d01));
        const __m128 lo = _mm_cvtpd_ps(_mm_add_pd(s, d01)), hi = _mm_cvtpd_ps(_mm_add_pd(s, d23));
        _mm_storeu_ps(out + x, _mm_movelh_ps(lo, hi));
        s = _mm_add_pd(s, _mm_unpackhi_pd(d23, d23));
    }
    double run = low(s);
    for (; x < cols; ++x) {
        run += colSums[x + w - 1] - colSums[x - 1];
        out[x] = float(run);
    }
}

template <Isa I, bool Squares>
void windowSums(const Zeq32f* tile, int tileStride, int w, int h, Zeq32f* out, int outStride, int cols, int rows,
                double* colSums) {
    const int n = cols + w - 1;
    const auto tileRow = [&](int y) { return tile + ptrdiff_t(y) * tileStride; };
    std::memset(colSums, 0, size_t(n) * sizeof(double));
    for (int k = 0; k < h; ++k) addRow<I, Squares>(colSums, tileRow(k), n);
    for (int y = 0; y < rows; ++y) {
        if (y > 0) slideRow<I, Squares>(colSums, tileRow(y + h - 1), tileRow(y - 1), n);
        windowRow(colSums, w, cols, out + ptrdiff_t(y) * outStride);
    }
}

}  // namespace

namespace zq {

template <Isa I, class T>
void owniClipRectZeroTail_C1R(const T* src, int srcStep, int width, int height, Zeq32f* dst, int dstWidth,
                              int dstHeight) {
    for (int y = 0; y < height; ++y) {
        Zeq32f* d = dst + ptrdiff_t(y) * dstWidth;
        convertRow<I>(row(src, srcStep, y), width, d);
        std::memset(d + width, 0, size_t(dstWidth - width) * sizeof(Zeq32f));
    }
    std::memset(dst + ptrdiff_t(height) * dstWidth, 0, size_t(dstHeight - height) * size_t(dstWidth) * sizeof(Zeq32f));
}

template <Isa I>
void owniAutoCorr_C1R(const Zeq32f* tile, int tileStride, int w, int h, Zeq32f* out, int outStride, int cols,
                      int rows, double* colSums) {
    windowSums<I, true>(tile, tileStride, w, h, out, outStride, cols, rows, colSums);
}

template <Isa I>
void owniAutoMean_C1R(const Zeq32f* tile, int tileStride, int w, int h, Zeq32f* out, int outStride, int cols,
                      int rows, double* colSums) {
    windowSums<I, false>(tile, tileStride, w, h, out, outStride, cols, rows, colSums);
}

#define ZQ_CLIP_KERNEL(T) \
    template void owniClipRectZeroTail_C1R<ZQ_ISA, T>(const T*, int, int, int, Zeq32f*, int, int);
ZQ_CLIP_KERNEL(Zeq32f)
ZQ_CLIP_KERNEL(Zeq8u)
ZQ_CLIP_KERNEL(Zeq8s)
template void owniAutoCorr_C1R<ZQ_ISA>(const Zeq32f*, int, int, int, Zeq32f*, int, int, int, double*);
template void owniAutoMean_C1R<ZQ_ISA>(const Zeq32f*, int, int, int, Zeq32f*, int, int, int, double*);

}  // namespace zq
