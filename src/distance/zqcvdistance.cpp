// Chamfer distance transforms of 8-bit images (3x3 and 5x5 masks, to 8u, 16u
// or 32f distances) and the getters of the standard metrics.
//
// Every transform is the same three steps over the destination: features
// (source 0) become 0 and every other pixel the ceiling; a forward pass (rows
// top down, pixels left to right) and a backward pass (the reverse) then let
// each pixel take the minimum of itself and its neighbours' values plus the
// weights of the moves from them. The forward moves reach back to pixels
// already visited; the backward moves are their mirror images. What differs
// between the transforms is only which moves a row uses.
//
// Along a row the passes are a recurrence (a pixel needs its neighbour's new
// value) and run one pixel at a time; the moves from other rows run a
// register at a time (zqcvdistance.isa.cpp). Each pixel's value is the
// minimum over paths of sums formed step by step along the path, so in float
// too any evaluation of the same moves gives the same bits.
#include "core/zqcvcore.h"
#include "distance/zqcvdistance.h"

#include <algorithm>
#include <cfloat>
#include <cmath>

namespace {

using zq::Isa;

// Integer sums stay in int: at most the ceiling plus a weight clamped to
// the ceiling plus one.
template <class D>
constexpr zq::DistanceSum<D> ceilingOf() {
    if constexpr (std::is_same<D, Zeq32f>::value) return FLT_MAX;
    else return D(~D(0));
}
template <class D>
struct Dist {
    using V = zq::DistanceSum<D>;
    static constexpr V ceiling = ceilingOf<D>();
};

template <class V>
struct Move {
    int dx, dy;  // offset of the neighbour in the forward pass
    V w;
};

template <class V>
struct Moves {
    Move<V> m[8];
    int n;
};

// One pass. movesOf(r, y) gives the forward-oriented moves of row y, r its
// index in the pass's order; the backward pass mirrors them. A row first
// takes the candidates from the rows before it in the pass (final already),
// a register at a time, then those along the row, one pixel after the other.
// Pixels no move can lower (features, values at the smallest weight) come
// out unchanged by the minimum itself.
template <Isa I, class D, class RowMoves>
void ownDistancePass(D* d, ptrdiff_t step, int w, int h, bool forward, RowMoves movesOf) {
    using V = typename Dist<D>::V;
    const int dir = forward ? 1 : -1;
    for (int r = 0; r < h; ++r) {
        const int y = forward ? r : h - 1 - r;
        const Moves<V> all = movesOf(r, y);
        ptrdiff_t off[8];
        int dx[8], n = 0, reachLeft = 0, reachRight = 0;
        V wt[8], along[2] = {0, 0};  // along[k]: the move k + 1 pixels back along the row, 0 if none
        for (int k = 0; k < all.n; ++k) {
            const Move<V>& m = all.m[k];
            if (m.dy == 0) {
                along[-m.dx - 1] = m.w;
                continue;
            }
            if (unsigned(y + dir * m.dy) >= unsigned(h)) continue;
            dx[n] = dir * m.dx;
            off[n] = ptrdiff_t(dir * m.dy) * step + dx[n];
            wt[n] = m.w;
            reachLeft = std::max(reachLeft, -dx[n]);
            reachRight = std::max(reachRight, dx[n]);
            ++n;
        }
        D* p = zq::row(d, ptrdiff_t(sizeof(D)) * step, y);
        auto edge = [&](int x) {
            V v = zq::loadu(p + x);
            for (int k = 0; k < n; ++k)
                if (unsigned(x + dx[k]) < unsigned(w)) v = std::min(v, V(zq::loadu(p + x + off[k])) + wt[k]);
            zq::storeu(p + x, D(v));
        };
        const int lo = std::min(reachLeft, w), hi = std::max(lo, w - reachRight);
        if (n > 0) {
            for (int x = 0; x < lo; ++x) edge(x);
            zq::ownDistanceAcross<I>(p, lo, hi, off, wt, n);
            for (int x = hi; x < w; ++x) edge(x);
        }
        if (w < 2) continue;
        // Along the row in the pass's order: prev is the pixel one back.
        const int first = forward ? 0 : w - 1;
        V prev = zq::loadu(p + first);
        if (along[1] == V(0)) {
            for (int i = 1; i < w; ++i) {
                D* q = p + (first + dir * i);
                const V v = std::min(V(zq::loadu(q)), prev + along[0]);
                zq::storeu(q, D(v));
                prev = v;
            }
        } else {
            V prev2 = prev;
            for (int i = 1; i < w; ++i) {
                D* q = p + (first + dir * i);
                V v = std::min(V(zq::loadu(q)), prev + along[0]);
                if (i >= 2) v = std::min(v, prev2 + along[1]);
                zq::storeu(q, D(v));
                prev2 = prev, prev = v;
            }
        }
    }
}

// Features 0, every other pixel the ceiling.
template <class D>
void ownDistanceInit(const Zeq8u* s, int sStep, D* d, ptrdiff_t step, ZeqiSize roi) {
    for (int y = 0; y < roi.height; ++y) {
        const Zeq8u* sr = zq::row(s, sStep, y);
        D* dr = zq::row(d, ptrdiff_t(sizeof(D)) * step, y);
        for (int x = 0; x < roi.width; ++x) zq::storeu(dr + x, sr[x] ? D(Dist<D>::ceiling) : D(0));
    }
}

// Integer weights act as at most ceiling + 1: any larger sum clamps alike.
template <class D>
typename Dist<D>::V weight(int64_t v) {
    return typename Dist<D>::V(std::min<int64_t>(v, int64_t(Dist<D>::ceiling) + 1));
}
template <class D>
typename Dist<D>::V weight(float v) {
    return v;
}

// Weights as the transforms read them: int64 for integer metrics, so that
// sums and products of caller values cannot wrap.
template <class M>
using Wide = typename std::conditional<std::is_same<M, float>::value, float, int64_t>::type;

// 3x3: orthogonal a, diagonal b. Diagonals never win when b >= 2a and are
// left out. When the diagonal is cheaper (a > b) and the image has at least
// two rows and columns, the bottom row also takes the pixel two places back
// with 2b in both passes.
template <Isa I, class D, class M>
void ownDistanceTransform_3x3(const Zeq8u* s, int sStep, D* d, ptrdiff_t step, ZeqiSize roi, const M* metrics) {
    using V = typename Dist<D>::V;
    const Wide<M> a = metrics[0], b = metrics[1];
    const bool fourNeighbours = b >= 2 * a, diagonalCheaper = a > b && std::min(roi.width, roi.height) >= 2;
    const V wa = weight<D>(a), wb = weight<D>(b), w2b = weight<D>(b + b);
    const int h = roi.height;
    auto movesOf = [&](int, int y) {
        Moves<V> m;
        if (fourNeighbours) m = {{{-1, 0, wa}, {0, -1, wa}}, 2};
        else m = {{{-1, 0, wa}, {-1, -1, wb}, {0, -1, wa}, {1, -1, wb}}, 4};
        if (diagonalCheaper && y == h - 1) m.m[m.n++] = {-2, 0, w2b};
        return m;
    };
    ownDistanceInit(s, sStep, d, step, roi);
    ownDistancePass<I>(d, step, roi.width, h, true, movesOf);
    ownDistancePass<I>(d, step, roi.width, h, false, movesOf);
}

// 5x5: a, b and the knight move c, after delegation to 3x3 was ruled out.
// The weights are closed under combination of moves first. Images of at
// least 4x4 whose weights satisfy b' <= a, c <= 2a or 2c <= 3b' take the
// first form: its first two rows in each pass use reduced move sets (the
// first row steps back one or two pixels along the row, the second reads the
// row before only up, up-right and at the knight position two to the right);
// every other case is the plain 5x5 chamfer, moves outside the image left out.
template <Isa I, class D, class M>
void ownDistanceTransform_5x5(const Zeq8u* s, int sStep, D* d, ptrdiff_t step, ZeqiSize roi, const M* metrics) {
    using V = typename Dist<D>::V;
    const Wide<M> a = metrics[0], b = std::min<Wide<M>>(metrics[1], 2 * a), c = metrics[2];
    const Wide<M> aC = std::min<Wide<M>>(a, 3 * c), bC = std::min<Wide<M>>(b, 2 * c);
    const Wide<M> straight2 = std::min<Wide<M>>(std::min<Wide<M>>(2 * aC, 2 * bC), 2 * c);
    const bool firstForm = roi.width >= 4 && roi.height >= 4 && (b <= a || c <= 2 * a || 2 * c <= 3 * b);
    const V wa = weight<D>(aC), wb = weight<D>(bC), wc = weight<D>(c), w20 = weight<D>(straight2);
    const Moves<V> full = {{{-1, 0, wa}, {-1, -1, wb}, {0, -1, wa}, {1, -1, wb}, {-2, -1, wc}, {2, -1, wc},
                            {-1, -2, wc}, {1, -2, wc}},
                           8};
    const Moves<V> row0 = {{{-1, 0, wa}, {-2, 0, w20}}, 2};
    const Moves<V> row1 = {{{-1, 0, wa}, {0, -1, wa}, {1, -1, wb}, {2, -1, wc}}, 4};
    auto movesOf = [&](int r, int) { return !firstForm || r > 1 ? full : r == 0 ? row0 : row1; };
    ownDistanceInit(s, sStep, d, step, roi);
    ownDistancePass<I>(d, step, roi.width, roi.height, true, movesOf);
    ownDistancePass<I>(d, step, roi.width, roi.height, false, movesOf);
}

// Whether the knight move can never beat an orthogonal plus a diagonal step:
// then the 5x5 call is the 3x3 call with the same metrics.
bool knightNeverWins(const int* m) {
    const int64_t a = m[0], b = std::min<int64_t>(m[1], 2 * a);
    return m[2] >= a + b;
}
bool knightNeverWins(const float* m) {
    const float a = m[0], b = std::min(m[1], 2.0f * a), c = m[2];
    return c - a - b > -1e-7f * std::fabs(a + b);
}

inline bool badMetric(int v) { return v < 1; }
inline bool badMetric(float v) { return !(v > 0.0f); }

template <int K, class D, class M>
ZeqStatus distanceTransform(const Zeq8u* pSrc, int srcStep, D* pDst, int dstStep, ZeqiSize roi, const M* pMetrics) {
    ZQ_CHECK(zq::nonNull(pSrc, pDst, pMetrics));
    ZQ_CHECK(zq::roiSize(roi));
    ZQ_CHECK(zq::stepsAtLeast(roi.width, srcStep));
    ZQ_CHECK(zq::stepsAtLeast(zq::rowBytes<D>(roi.width), dstStep));
    if constexpr (sizeof(D) > 1) ZQ_CHECK(zq::stepsEven(dstStep));  // oddness only, also for floats
    for (int k = 0; k < (K == 3 ? 2 : 3); ++k)
        if (badMetric(pMetrics[k])) return zeqStsDistMetric;
    const ptrdiff_t step = dstStep / ptrdiff_t(sizeof(D));  // rows advance by whole elements
    const bool as3x3 = K == 3 || knightNeverWins(pMetrics);
    zq::dispatch([&](auto tier) {
        if (as3x3) ownDistanceTransform_3x3<tier.value>(pSrc, srcStep, pDst, step, roi, pMetrics);
        else ownDistanceTransform_5x5<tier.value>(pSrc, srcStep, pDst, step, roi, pMetrics);
    });
    return zeqStsOk;
}

}  // namespace

// ---- standard metrics ----

ZeqStatus zeqiGetDistanceTransformMask_32f(int kerSize, int norm, Zeq32f* pMetrics) {
    ZQ_CHECK(zq::nonNull(pMetrics));
    if (kerSize != 3 && kerSize != 5) return zeqStsBadArg;
    if (norm < 0 || norm > 2) return zeqStsBadArg;
    switch (kerSize * 10 + norm) {
    case 30: pMetrics[0] = 1.0f, pMetrics[1] = 1.0f; return zeqStsOk;
    case 31: pMetrics[0] = 1.0f, pMetrics[1] = 2.0f; return zeqStsOk;
    case 32: pMetrics[0] = 0.955f, pMetrics[1] = 1.3693f; return zeqStsOk;
    case 50: pMetrics[0] = 1.0f, pMetrics[1] = 1.0f, pMetrics[2] = 2.0f; return zeqStsOk;
    // The third weight lands in the fourth element; the third is left as it was.
    case 51: pMetrics[0] = 1.0f, pMetrics[1] = 2.0f, pMetrics[3] = 3.0f; return zeqStsOk;
    case 52: pMetrics[0] = 1.0f, pMetrics[1] = 1.4f, pMetrics[2] = 2.1969f; return zeqStsOk;
    default: return zeqStsOutOfRange;
    }
}

ZeqStatus zeqiGetDistanceTransformMask_32s(int kerSize, int norm, Zeq32s* pMetrics) {
    ZQ_CHECK(zq::nonNull(pMetrics));
    if (kerSize != 3 && kerSize != 5) return zeqStsBadArg;
    if (norm < 0 || norm > 2) return zeqStsBadArg;
    switch (kerSize * 10 + norm) {
    case 30: pMetrics[0] = 1, pMetrics[1] = 1; return zeqStsOk;
    case 31: pMetrics[0] = 1, pMetrics[1] = 2; return zeqStsOk;
    case 32: pMetrics[0] = 2, pMetrics[1] = 3; return zeqStsOk;
    case 50: pMetrics[0] = 1, pMetrics[1] = 1, pMetrics[2] = 2; return zeqStsOk;
    case 51: pMetrics[0] = 1, pMetrics[1] = 2, pMetrics[2] = 3; return zeqStsOk;
    case 52: pMetrics[0] = 4, pMetrics[1] = 6, pMetrics[2] = 9; return zeqStsOk;
    default: return zeqStsOutOfRange;
    }
}

// The norm is the C remainder of the code, tested before anything else.
ZeqStatus zeqiGetDistanceTransformMask(int maskType, Zeq32f* pMetrics) {
    const int norm = maskType % 10;
    if (norm < 0 || norm > 2) return zeqStsBadArg;
    return zeqiGetDistanceTransformMask_32f(maskType / 10, norm, pMetrics);
}

// ---- transforms ----

#define ZQ_DISTANCE(NAME, K, D, M)                                                                       \
    ZeqStatus NAME(const Zeq8u* pSrc, int srcStep, D* pDst, int dstStep, ZeqiSize roiSize, const M* pMetrics) { \
        return distanceTransform<K>(pSrc, srcStep, pDst, dstStep, roiSize, pMetrics);                      \
    }

ZQ_DISTANCE(zeqiDistanceTransform_3x3_8u16u_C1R, 3, Zeq16u, Zeq32s)
ZQ_DISTANCE(zeqiDistanceTransform_3x3_8u_C1R, 3, Zeq8u, Zeq32s)
ZQ_DISTANCE(zeqiDistanceTransform_3x3_8u32f_C1R, 3, Zeq32f, Zeq32f)
ZQ_DISTANCE(zeqiDistanceTransform_5x5_8u16u_C1R, 5, Zeq16u, Zeq32s)
ZQ_DISTANCE(zeqiDistanceTransform_5x5_8u_C1R, 5, Zeq8u, Zeq32s)
ZQ_DISTANCE(zeqiDistanceTransform_5x5_8u32f_C1R, 5, Zeq32f, Zeq32f)
