// Transform kernels of the one-dimensional FFT. The SSE2 kernels hold two
// interleaved complex values per register and run two independent blocks at
// once, one per half of the register; on the wider tiers the radix stages and
// first passes go to zqcvfftwide.isa.cpp instead, with the same arithmetic
// per value.
#include "fft/zqcvfft.h"

#include <emmintrin.h>

#include <cstring>

#include "fft/zqcvfftradix.h"

namespace zq {
namespace {

struct Sse2 {
    using R = __m128;
    static constexpr int kFloats = 4;
    static R load(const float* p) { return _mm_loadu_ps(p); }
    static void store(float* p, R v) { _mm_storeu_ps(p, v); }
    static R loadTable(const float* p) { return _mm_load_ps(p); }
    static R add(R a, R b) { return _mm_add_ps(a, b); }
    static R sub(R a, R b) { return _mm_sub_ps(a, b); }
    static R mul(R a, R b) { return _mm_mul_ps(a, b); }
    static R mulAdd(R a, R b, R c) { return _mm_add_ps(c, _mm_mul_ps(a, b)); }      // c + a b
    static R mulSubFrom(R a, R b, R c) { return _mm_sub_ps(c, _mm_mul_ps(a, b)); }  // c - a b
    static R splat(float v) { return _mm_set1_ps(v); }
    static R swapReIm(R a) { return _mm_shuffle_ps(a, a, _MM_SHUFFLE(2, 3, 0, 1)); }
    static R negate(R a, bool imaginary) {
        const int s = int(0x80000000u);
        return _mm_xor_ps(a, imaginary ? _mm_castsi128_ps(_mm_set_epi32(s, 0, s, 0))
                                       : _mm_castsi128_ps(_mm_set_epi32(0, s, 0, s)));
    }
};

using radix::COSPI4;

template <bool Inv>
inline void butterfly4(__m128* x) {
    radix::butterfly4<Sse2, Inv>(x);
}

template <bool Inv>
void zeqs_cFft_Fact4_32fc(float* d, size_t n, size_t span, const float* tw) {
    if (onWideTier([&](auto tier) { fact4Wide<tier.value>(d, n, span, tw, Inv); })) return;
    radix::fact4<Sse2, Inv>(d, n, span, tw);
}

template <bool Inv>
void fact16(float* d, size_t n, size_t span, const float* twA, const float* twB) {
    if (onWideTier([&](auto tier) { fact16Wide<tier.value>(d, n, span, twA, twB, Inv); })) return;
    radix::fact16<Sse2, Inv>(d, n, span, twA, twB);
}

// The radix-4 stages of spans span, 4*span, ... up to n/4 over n values,
// two at a time where possible. Returns the twiddles that follow theirs.
template <bool Inv>
const float* radix4Run(float* d, size_t n, size_t span, const float* tw) {
    for (; 16 * span <= n; span *= 16) {
        fact16<Inv>(d, n, span, tw, tw + 12 * span);
        tw += 60 * span;
    }
    if (4 * span <= n) {
        zeqs_cFft_Fact4_32fc<Inv>(d, n, span, tw);
        tw += 12 * span;
    }
    return tw;
}

template <bool Inv>
void zeqs_cFft_Fact2_32fc(float* d, size_t span, const float* tw) {
    if (onWideTier([&](auto tier) { fact2Wide<tier.value>(d, span, tw, Inv); })) return;
    radix::fact2<Sse2, Inv>(d, span, tw);
}

template <bool Inv>
inline void butterfly8(__m128* x) {
    radix::butterfly8<Sse2, Inv>(x);
}

inline __m128 loadPair(const float* lo, const float* hi) {
    return _mm_loadh_pi(_mm_loadl_pi(_mm_setzero_ps(), reinterpret_cast<const __m64*>(lo)),
                        reinterpret_cast<const __m64*>(hi));
}
inline __m128 loadOne(const float* p) {
    return _mm_loadl_pi(_mm_setzero_ps(), reinterpret_cast<const __m64*>(p));
}
inline void storeOne(float* p, __m128 v) { _mm_storel_pi(reinterpret_cast<__m64*>(p), v); }

// Stores `count` results of two transforms: the low halves to lo[0..], the high halves to hi[0..].
inline void storeSplit(float* lo, float* hi, const __m128* x, int count) {
    for (int q = 0; q < count; q += 2) {
        _mm_storeu_ps(lo + 2 * q, _mm_movelh_ps(x[q], x[q + 1]));
        _mm_storeu_ps(hi + 2 * q, _mm_movehl_ps(x[q + 1], x[q]));
    }
}

// ---- the in-cache radix-4 transform ----

int firstSpan(int m) { return (m & 1) ? 8 : 4; }

// First pass reading the source through the bit-reverse table: output block
// p of length 4 (m even) or 8 (m odd) is the DFT of the values at
// rev(p) + j*N/4 (or N/8). Makes `groups` blocks from table entry `rev` on;
// src and dst are different arrays.
template <bool Inv>
void firstPassGather(const float* src, float* dst, int m, const int32_t* rev, size_t groups) {
    if (groups % 4 == 0 &&
        onWideTier([&](auto tier) { firstPassGatherWide<tier.value>(src, dst, m, rev, groups, Inv); }))
        return;
    const size_t n = size_t(1) << m;
    __m128 y[8];
    if (!(m & 1)) {
        const size_t quarter = n / 2;  // floats
        for (size_t k = 0; k < groups; k += 2, dst += 16) {
            const float *s0 = src + rev[k], *s1 = src + rev[k + 1];
            for (int j = 0; j < 4; ++j) y[j] = loadPair(s0 + j * quarter, s1 + j * quarter);
            butterfly4<Inv>(y);
            storeSplit(dst, dst + 8, y, 4);
        }
        return;
    }
    const size_t eighth = n / 4;
    if (groups == 1) {  // N = 8: a single block
        for (int j = 0; j < 8; ++j) y[j] = loadOne(src + j * eighth);
        butterfly8<Inv>(y);
        for (int j = 0; j < 8; ++j) storeOne(dst + 2 * j, y[j]);
        return;
    }
    for (size_t p = 0; p < groups; p += 2, dst += 32) {
        const float *s0 = src + rev[2 * p], *s1 = src + rev[2 * p + 2];
        for (int j = 0; j < 8; ++j) y[j] = loadPair(s0 + j * eighth, s1 + j * eighth);
        butterfly8<Inv>(y);
        storeSplit(dst, dst + 16, y, 8);
    }
}

// First pass on data already in bit-reversed order, in place: position t of
// a block holds input value rev(t) of its DFT.
template <bool Inv>
void firstPassInPlace(float* d, int m, size_t groups) {
    if (groups % 4 == 0 && onWideTier([&](auto tier) { firstPassInPlaceWide<tier.value>(d, m, groups, Inv); }))
        return;
    __m128 y[8];
    if (!(m & 1)) {
        for (size_t k = 0; k < groups; k += 2, d += 16) {
            const __m128 p0 = _mm_loadu_ps(d), q0 = _mm_loadu_ps(d + 4);
            const __m128 p1 = _mm_loadu_ps(d + 8), q1 = _mm_loadu_ps(d + 12);
            y[0] = _mm_movelh_ps(p0, p1);
            y[2] = _mm_movehl_ps(p1, p0);
            y[1] = _mm_movelh_ps(q0, q1);
            y[3] = _mm_movehl_ps(q1, q0);
            butterfly4<Inv>(y);
            storeSplit(d, d + 8, y, 4);
        }
        return;
    }
    static const int rev3[4] = {0, 2, 1, 3};  // value pairs (t, t+1) hold inputs (rev3(t), rev3(t)+4)
    for (size_t p = 0; p < groups; p += 2, d += 32) {
        for (int t = 0; t < 4; ++t) {
            const __m128 a = _mm_loadu_ps(d + 4 * t), b = _mm_loadu_ps(d + 16 + 4 * t);
            y[rev3[t]] = _mm_movelh_ps(a, b);
            y[rev3[t] + 4] = _mm_movehl_ps(b, a);
        }
        butterfly8<Inv>(y);
        storeSplit(d, d + 16, y, 8);
    }
}

// The stages run depth first: each block of 2^10 or 2^11 values (16 KiB at
// most) is transformed completely while it sits in the first-level cache;
// the remaining stages then join the blocks. `first(b, groups)` makes the
// first-pass blocks from position b on.
constexpr int kL1BlockOrder = 11;

template <bool Inv, class First>
void radix4DepthFirst(float* d, int m, const float* tw, const First& first) {
    const int blockOrder = m < kL1BlockOrder ? m : kL1BlockOrder - ((m & 1) ? 0 : 1);
    const size_t n = size_t(1) << m, len = size_t(1) << blockOrder, s0 = size_t(firstSpan(m));
    const float* joinTw = tw;
    for (size_t b = 0; b < n; b += len) {
        first(b, len / s0);
        joinTw = radix4Run<Inv>(d + 2 * b, len, s0, tw);
    }
    if (len < n) radix4Run<Inv>(d, n, len, joinTw);
}

// Natural-order source to destination, the permutation fused into the first pass.
template <bool Inv>
void zeqs_cRadix4Norm_32fc(const float* src, float* dst, int m, const FftSpec& spec) {
    if (m == 6 && onWideTier([&](auto tier) { complexOrder6Wide<tier.value>(src, dst, spec.bitRev, spec.twdL1, Inv); }))
        return;
    if (m >= 5 && onWideTier([&](auto tier) { firstPassGatherAllWide<tier.value>(src, dst, m, spec.bitRev, Inv); })) {
        radix4DepthFirst<Inv>(dst, m, spec.twdL1, [](size_t, size_t) {});
        return;
    }
    radix4DepthFirst<Inv>(dst, m, spec.twdL1, [&](size_t b, size_t groups) {
        firstPassGather<Inv>(src, dst + 2 * b, m, spec.bitRev + b / 4, groups);
    });
}

// In place on data already in bit-reversed order.
template <bool Inv>
void zeqs_cRadix4_32fc(float* d, int m, const float* tw) {
    radix4DepthFirst<Inv>(d, m, tw, [&](size_t b, size_t groups) { firstPassInPlace<Inv>(d + 2 * b, m, groups); });
}

// ---- bit-reversal permutations (m >= 6) ----
//
// Index i = h * N/8 + mid * 8 + l (h, l three bits each) goes to
// rev(l) * N/8 + rev(mid) * 8 + rev(h): every 8x8 tile of whole cache lines
// is read once and written once, transposed with its rows and columns reversed.

constexpr uint8_t kRev3[8] = {0, 4, 2, 6, 1, 5, 3, 7};

inline size_t nextReversed(size_t cur, size_t half) {
    size_t bit = half;
    while (bit <= cur) {
        cur -= bit;
        bit >>= 1;
    }
    return cur + bit;
}

// One tile: complex value l of source row h (rows `srcStride` values apart)
// becomes value rev(h) of destination row rev(l). Two values per register: the
// pair of destination values (2q, 2q + 1) comes from source rows rev(2q) and
// rev(2q) + 4, so one unpack makes each register stored. Everything is loaded
// before anything is stored, so a tile may be moved onto itself.
inline void moveTile(const float* src, size_t srcStride, float* dst, size_t dstStride) {
    __m128d v[8][4];
    for (size_t h = 0; h < 8; ++h)
        for (size_t p = 0; p < 4; ++p)
            v[h][p] = _mm_loadu_pd(reinterpret_cast<const double*>(src + 2 * (h * srcStride + 2 * p)));
    for (size_t q = 0; q < 4; ++q) {
        const size_t a = kRev3[2 * q], b = a + 4;
        for (size_t p = 0; p < 4; ++p) {
            _mm_storeu_pd(reinterpret_cast<double*>(dst + 2 * (kRev3[2 * p] * dstStride + 2 * q)),
                          _mm_unpacklo_pd(v[a][p], v[b][p]));
            _mm_storeu_pd(reinterpret_cast<double*>(dst + 2 * (kRev3[2 * p + 1] * dstStride + 2 * q)),
                          _mm_unpackhi_pd(v[a][p], v[b][p]));
        }
    }
}

// The destination's tiles in order (the reversal is its own inverse): its
// lines are then written one after another, and the scattered accesses are
// reads, which cost less.
void zeqs_BitRev2_C(const float* src, float* dst, int m) {
    const size_t rowStride = size_t(1) << (m - 3), tiles = size_t(1) << (m - 6);
    for (size_t mid = 0, rmid = 0; mid < tiles; ++mid) {
        moveTile(src + 16 * rmid, rowStride, dst + 16 * mid, rowStride);
        if (mid + 1 < tiles) rmid = nextReversed(rmid, tiles / 2);
    }
}

void zeqs_BitRev1_C(float* d, int m) {
    const size_t rowStride = size_t(1) << (m - 3), tiles = size_t(1) << (m - 6);
    float b[128];  // tile rmid, rows of 8 values
    for (size_t mid = 0, rmid = 0; mid < tiles; ++mid) {
        if (rmid == mid) {
            moveTile(d + 16 * mid, rowStride, d + 16 * mid, rowStride);
        } else if (rmid > mid) {  // swap the two tiles
            for (size_t h = 0; h < 8; ++h) std::memcpy(b + 16 * h, d + 2 * (h * rowStride + rmid * 8), 64);
            moveTile(d + 16 * mid, rowStride, d + 16 * rmid, rowStride);
            moveTile(b, 8, d + 16 * mid, rowStride);
        }
        if (mid + 1 < tiles) rmid = nextReversed(rmid, tiles / 2);
    }
}

// ---- the blocked transform (complex order >= 16, data bit-reversed) ----

// `stepTwd` points at the step table of this nesting level; the next level's follows it.
template <bool Inv>
void cFftBlkStep(float* d, int m, float* const* stepTwd, const FftSpec& spec, float* buf, bool doScale) {
    const int b = blkOrder(m), r = m - b;
    const size_t blocks = size_t(1) << b, len = size_t(1) << r;
    for (size_t j = 0; j < blocks; ++j) {
        float* blk = d + 2 * j * len;
        if (r > kFftInCacheOrder) {
            cFftBlkStep<Inv>(blk, r, stepTwd + 1, spec, buf, doScale);
        } else {
            zeqs_cRadix4_32fc<Inv>(blk, r, spec.twdL1);
            if (doScale) zeqs_rbMpy1_32f(spec.scale, blk, 2 * len);
        }
    }
    // Cross-block stages on columns: the buffer holds `blocks` rows of `cols` values.
    const size_t cols = size_t(1) << (bufOrder(m) - b), total = blocks * cols;
    const float* tw = *stepTwd;
    for (size_t c = 0; c < len; c += cols) {
        for (size_t j = 0; j < blocks; ++j)  // zeqs_cFft_BlkMerge_32fc
            std::memcpy(buf + 2 * j * cols, d + 2 * (j * len + c), 8 * cols);
        tw = radix4Run<Inv>(buf, total, cols, tw);
        if (b & 1) {
            const size_t span = total / 2;
            zeqs_cFft_Fact2_32fc<Inv>(buf, span, tw);
            tw += 4 * span;
        }
        for (size_t j = 0; j < blocks; ++j)  // zeqs_cFft_BlkSplit_32fc
            std::memcpy(d + 2 * (j * len + c), buf + 2 * j * cols, 8 * cols);
    }
}

template <bool Inv>
void complexTransformDir(const float* src, float* dst, int m, const FftSpec& spec, float* buf, bool doScale) {
    const size_t n = size_t(1) << m;
    if (m < kFftInCacheOrder) {
        if (src == dst) {  // the first pass reads scattered values: it needs an intact copy
            std::memcpy(buf, src, 8 * n);
            src = buf;
        }
        zeqs_cRadix4Norm_32fc<Inv>(src, dst, m, spec);
        if (doScale) zeqs_rbMpy1_32f(spec.scale, dst, 2 * n);
        return;
    }
    if (src == dst) zeqs_BitRev1_C(dst, m);
    else zeqs_BitRev2_C(src, dst, m);
    if (m == kFftInCacheOrder) {
        zeqs_cRadix4_32fc<Inv>(dst, m, spec.twdL1);
        if (doScale) zeqs_rbMpy1_32f(spec.scale, dst, 2 * n);
    } else {
        cFftBlkStep<Inv>(dst, m, spec.stepTwd, spec, buf, doScale);
    }
}

}  // namespace

void complexTransform(const float* src, float* dst, int m, const FftSpec& spec, float* buf, bool inverse,
                      bool doScale) {
    if (inverse) complexTransformDir<true>(src, dst, m, spec, buf, doScale);
    else complexTransformDir<false>(src, dst, m, spec, buf, doScale);
}

// ---- straight-line kernels for N <= 8 ----

void smallComplex(const float* src, float* dst, int order, bool inverse, const float* factor) {
    const int n = 1 << order;
    __m128 x[8] = {};  // order 0 to 2 leave the upper entries unused
    for (int j = 0; j < n; ++j) x[j] = loadOne(src + 2 * j);
    if (order == 1) {
        const __m128 a = x[0];
        x[0] = _mm_add_ps(a, x[1]);
        x[1] = _mm_sub_ps(a, x[1]);
    } else if (order == 2) {
        inverse ? butterfly4<true>(x) : butterfly4<false>(x);
    } else if (order == 3) {
        inverse ? butterfly8<true>(x) : butterfly8<false>(x);
    }
    for (int j = 0; j < n; ++j) storeOne(dst + 2 * j, factor ? _mm_mul_ps(x[j], _mm_set1_ps(*factor)) : x[j]);
}

void smallRealFwd(const float* src, float* dst, int order, const float* factor) {
    float r[8];
    switch (order) {
    case 0:
        r[0] = src[0];
        break;
    case 1:
        r[0] = src[0] + src[1];
        r[1] = src[0] - src[1];
        break;
    case 2: {
        const float a = src[0] + src[2], b = src[1] + src[3];
        r[0] = a + b;
        r[1] = a - b;
        r[2] = src[0] - src[2];
        r[3] = src[3] - src[1];
        break;
    }
    default: {
        // Two real 4-point DFTs (even and odd samples) joined by the eighth roots.
        const float* x = src;
        const float ea = x[0] + x[4], eb = x[2] + x[6], oa = x[1] + x[5], ob = x[3] + x[7];
        const float e0 = ea + eb, e2 = ea - eb, e1r = x[0] - x[4], e1i = x[6] - x[2];
        const float o0 = oa + ob, o2 = oa - ob, o1r = x[1] - x[5], o1i = x[7] - x[3];
        const float sr = COSPI4 * (o1r + o1i), si = COSPI4 * (o1i - o1r);
        r[0] = e0 + o0;
        r[1] = e0 - o0;
        r[2] = e1r + sr;
        r[3] = e1i + si;
        r[4] = e2;
        r[5] = 0.0f - o2;
        r[6] = e1r - sr;
        r[7] = si - e1i;
        break;
    }
    }
    const int n = 1 << order;
    for (int j = 0; j < n; ++j) dst[j] = factor ? r[j] * *factor : r[j];
}

void smallRealInv(float* x, int order, const float* factor) {
    float r[8];
    switch (order) {
    case 0:
        r[0] = x[0];
        break;
    case 1:
        r[0] = x[0] + x[1];
        r[1] = x[0] - x[1];
        break;
    case 2: {  // (R0, R2, R1, I1)
        const float a = x[0] + x[1], b = x[0] - x[1], c = x[2] + x[2], d = x[3] + x[3];
        r[0] = a + c;
        r[2] = a - c;
        r[1] = b - d;
        r[3] = b + d;
        break;
    }
    default: {  // (R0, R4, R1, I1, R2, I2, R3, I3)
        // Undo the join: 2E[k] = X[k] + X[k+4], 2O[k] = (X[k] - X[k+4]) / W^k.
        const float e0 = x[0] + x[1], o0 = x[0] - x[1];
        const float e2 = x[4] + x[4], o2 = 0.0f - (x[5] + x[5]);
        const float e1r = x[2] + x[6], e1i = x[3] - x[7];
        const float dr = x[2] - x[6], di = x[3] + x[7];
        const float o1r = COSPI4 * (dr - di), o1i = COSPI4 * (dr + di);
        // Real inverse 4-point DFTs of (E0, E1, E2, conj E1) and of O.
        const float ea = e0 + e2, eb = e0 - e2, ec = e1r + e1r, ed = e1i + e1i;
        const float oa = o0 + o2, ob = o0 - o2, oc = o1r + o1r, od = o1i + o1i;
        r[0] = ea + ec;
        r[4] = ea - ec;
        r[2] = eb - ed;
        r[6] = eb + ed;
        r[1] = oa + oc;
        r[5] = oa - oc;
        r[3] = ob - od;
        r[7] = ob + od;
        break;
    }
    }
    const int n = 1 << order;
    for (int j = 0; j < n; ++j) x[j] = factor ? r[j] * *factor : r[j];
}

// ---- real recombination ----

namespace {
// Table pair of k (k >= 1): groups of four c values then four s values.
inline size_t recIndex(size_t k) { return ((k - 1) / 4) * 8 + (k - 1) % 4; }
}  // namespace

namespace {

// Pairs (Z[k], Z[N/2-k]) for k .. k+3, as re and im vectors in k order: the
// second half of the spectrum is read backwards.
struct Mirrored {
    __m128 are, aim, bre, bim;
};
inline Mirrored loadMirrored(const float* a, const float* b) {  // b = &Z[N/2-k-3]
    const __m128 a01 = _mm_loadu_ps(a), a23 = _mm_loadu_ps(a + 4);
    const __m128 b32 = _mm_loadu_ps(b), b10 = _mm_loadu_ps(b + 4);
    return {_mm_shuffle_ps(a01, a23, _MM_SHUFFLE(2, 0, 2, 0)), _mm_shuffle_ps(a01, a23, _MM_SHUFFLE(3, 1, 3, 1)),
            _mm_shuffle_ps(b10, b32, _MM_SHUFFLE(0, 2, 0, 2)), _mm_shuffle_ps(b10, b32, _MM_SHUFFLE(1, 3, 1, 3))};
}
inline void storeMirrored(float* a, float* b, __m128 xr, __m128 xi, __m128 yr, __m128 yi) {
    _mm_storeu_ps(a, _mm_unpacklo_ps(xr, xi));
    _mm_storeu_ps(a + 4, _mm_unpackhi_ps(xr, xi));
    const __m128 y01 = _mm_unpacklo_ps(yr, yi), y23 = _mm_unpackhi_ps(yr, yi);
    _mm_storeu_ps(b + 4, _mm_shuffle_ps(y01, y01, _MM_SHUFFLE(1, 0, 3, 2)));
    _mm_storeu_ps(b, _mm_shuffle_ps(y23, y23, _MM_SHUFFLE(1, 0, 3, 2)));
}

}  // namespace

// Four k at a time while the group stays below N/4, then one at a time; both
// paths do the same operations.
void zeqs_cRealRecombine_32f(float* x, size_t n, const float* tab) {
    const float re0 = x[0], im0 = x[1];
    x[0] = re0 + im0;
    x[1] = re0 - im0;
    const size_t quarter = n / 4;
    size_t k = 1;
    for (; k + 3 < quarter; k += 4) {
        const Mirrored z = loadMirrored(x + 2 * k, x + n - 2 * k - 6);
        const __m128 c = _mm_load_ps(tab + recIndex(k)), s = _mm_load_ps(tab + recIndex(k) + 4);
        const __m128 d = _mm_sub_ps(z.are, z.bre), e = _mm_add_ps(z.aim, z.bim);
        const __m128 p = _mm_add_ps(_mm_mul_ps(c, e), _mm_mul_ps(s, d));
        const __m128 q = _mm_sub_ps(_mm_mul_ps(s, e), _mm_mul_ps(c, d));
        storeMirrored(x + 2 * k, x + n - 2 * k - 6, _mm_add_ps(z.bre, p), _mm_sub_ps(q, z.bim),
                      _mm_sub_ps(z.are, p), _mm_sub_ps(q, z.aim));
    }
    for (; k < quarter; ++k) {
        const float c = tab[recIndex(k)], s = tab[recIndex(k) + 4];
        float *a = x + 2 * k, *b = x + n - 2 * k;
        const float ar = a[0], ai = a[1], br = b[0], bi = b[1];
        const float d = ar - br, e = ai + bi;
        const float p = c * e + s * d, q = s * e - c * d;
        a[0] = br + p;
        a[1] = q - bi;
        b[0] = ar - p;
        b[1] = q - ai;
    }
    x[2 * quarter + 1] = -x[2 * quarter + 1];
}

void zeqs_cCcsRecombine_32f(float* x, size_t n, const float* tab) {
    const float r0 = x[0], rh = x[1];
    x[0] = r0 + rh;
    x[1] = r0 - rh;
    const size_t quarter = n / 4;
    size_t k = 1;
    for (; k + 3 < quarter; k += 4) {
        const Mirrored z = loadMirrored(x + 2 * k, x + n - 2 * k - 6);
        const __m128 c = _mm_load_ps(tab + recIndex(k)), s = _mm_load_ps(tab + recIndex(k) + 4);
        const __m128 d = _mm_sub_ps(z.are, z.bre), g = _mm_add_ps(z.aim, z.bim), h = _mm_sub_ps(z.aim, z.bim);
        const __m128 p = _mm_add_ps(_mm_mul_ps(s, g), _mm_mul_ps(c, d));
        const __m128 q = _mm_sub_ps(_mm_mul_ps(s, d), _mm_mul_ps(c, g));
        const __m128 sum = _mm_add_ps(z.are, z.bre);
        storeMirrored(x + 2 * k, x + n - 2 * k - 6, _mm_add_ps(sum, q), _mm_add_ps(h, p), _mm_sub_ps(sum, q),
                      _mm_sub_ps(p, h));
    }
    for (; k < quarter; ++k) {
        const float c = tab[recIndex(k)], s = tab[recIndex(k) + 4];
        float *a = x + 2 * k, *b = x + n - 2 * k;
        const float ar = a[0], ai = a[1], br = b[0], bi = b[1];
        const float d = ar - br, g = ai + bi, h = ai - bi;
        const float p = s * g + c * d, q = s * d - c * g;
        const float sum = ar + br;
        a[0] = sum + q;
        a[1] = h + p;
        b[0] = sum - q;
        b[1] = p - h;
    }
    const float mr = x[2 * quarter], mi = x[2 * quarter + 1];
    x[2 * quarter] = 2.0f * mr;
    x[2 * quarter + 1] = -2.0f * mi;
}

// From the end towards the start; the vector part on 16-byte-aligned addresses.
void zeqs_rbMpy1_32f(float factor, float* data, size_t count) {
    size_t i = count;
    while (i > 0 && (reinterpret_cast<uintptr_t>(data + i) & 15)) {
        --i;
        data[i] *= factor;
    }
    const __m128 f = _mm_set1_ps(factor);
    if (!(reinterpret_cast<uintptr_t>(data + i) & 15)) {
        for (; i >= 8; i -= 8) {
            float* p = data + i - 8;
            _mm_store_ps(p + 4, _mm_mul_ps(_mm_load_ps(p + 4), f));
            _mm_store_ps(p, _mm_mul_ps(_mm_load_ps(p), f));
        }
    }
    while (i > 0) {
        --i;
        data[i] *= factor;
    }
}

}  // namespace zq
