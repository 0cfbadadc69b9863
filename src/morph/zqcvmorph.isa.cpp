// Strip dilation and erosion, and the minimum and maximum filters, written
// once over the tier.
//
// Everything here is built from two row operations: a fold along a row (the
// extreme of `count` elements `stride` apart) and a fold across rows (the
// extreme of the same element of several rows), each over whole registers.
//
// The minimum and maximum filters keep the floats' own order of operands,
// acc = (acc > next) ? acc : next from the left and from the top, which is
// what the processor's packed maximum computes; so they are bit-exact on
// every tier, NaN included, without a scalar path.
//
// Strip morphology works on an order in which the extreme is associative and
// commutative, so a mask can be taken apart in any way: 8u as it is, floats as
// the integer key of their bits, (bits & 0x7fffffff) ^ (bits >> 31), which
// orders -NaN < -inf < ... < -0 < +0 < ... < +inf < +NaN. Rectangles are
// separable (a fold along each row, kept in a ring, then a fold across the
// ring). Other masks fold each column's vertical runs of set elements once
// per output row (a run that contains a shorter one starts from it), then
// fold those run results along the row: a 7x7 ellipse costs about 12
// operations per register instead of 36.
#include "core/zqcvcore.h"
#include "core/zqcvregs.h"
#include "morph/zqcvmorph.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <numeric>
#include <type_traits>
#include <utility>

namespace {

using zq::Isa;

// ---- lane policies: the element kept in the rows and its extreme ----

// Integer lanes: 8u values as they are, or the keys of float bits (signed
// integers in the floats' total order).
template <Isa I, class T, bool Max>
struct Lanes {
    using R = zq::Regs<I>;
    using V = typename R::I;
    using E = T;
    static constexpr int n = R::bytes / int(sizeof(E));
    // Key <-> float bits; the map is its own inverse.
    static V flip(V v) { return R::xori(v, R::srli32(R::srai32(v, 31), 1)); }
    static E flip(E v) { return v ^ int32_t(uint32_t(v >> 31) >> 1); }
    static V load(const E* p) { return R::load(p); }
    static void store(E* p, V v) { R::store(p, v); }
    static V op(V a, V b) {
        if constexpr (sizeof(E) == 1) return Max ? R::maxU8(a, b) : R::minU8(a, b);
        else return Max ? R::maxI32(a, b) : R::minI32(a, b);
    }
    static E op(E a, E b) { return Max ? (a > b ? a : b) : (a < b ? a : b); }
    static void stream(E* p, V v) { zq::streamPieces(p, v); }
};

// Floats with the accumulator as the first operand: the packed maximum is
// (a > b) ? a : b, the packed minimum (a < b) ? a : b.
template <Isa I, bool Max>
struct Lanes<I, float, Max> {
    using R = zq::Regs<I>;
    using V = typename R::F;
    using E = float;
    static constexpr int n = R::bytes / 4;
    static V load(const E* p) { return R::loadf(p); }
    static void store(E* p, V v) { R::storef(p, v); }
    static V op(V a, V b) {
        if constexpr (Max) return R::max(a, b);
        else return R::min(a, b);
    }
    static E op(E a, E b) { return Max ? (a > b ? a : b) : (a < b ? a : b); }
    static void stream(E* p, V v) { zq::streamPieces(p, v); }
};

// ---- the two row operations ----

// Runs at(i) over 0..len-1 a register at a time; a row shorter than a
// register goes element by element through one(i). Otherwise the last
// register overlaps the one before: the operations below give the same
// values when an element is done twice.
template <class P, class Vec, class One>
inline void overRow(int len, Vec at, One one) {
    if (len >= P::n) {
        int i = 0;
        for (; i + P::n <= len; i += P::n) at(i);
        if (i < len) at(len - P::n);
        return;
    }
    for (int i = 0; i < len; ++i) one(i);
}

// Notes whether a fold result it is shown is NaN: the float minimum and
// maximum filters ask it of every row pass, while the pass still holds the
// values in registers. The default notes nothing.
template <class P, bool On = false>
struct NaNWatch {
    template <class V>
    void vec(V) {}
    template <class V>
    void one(V) {}
    bool seen() const { return false; }
};

template <class P>
struct NaNWatch<P, true> {
    using R = typename P::R;
    typename P::V ordered = R::casti_f(R::set1_32(-1));
    bool scalarNaN = false;
    void vec(typename P::V v) { ordered = R::andf(ordered, R::cmpeq(v, v)); }
    void one(float v) { scalarNaN |= v != v; }
    bool seen() const {
        int32_t lanes[P::n];
        R::store(lanes, R::castf_i(ordered));
        for (int j = 0; j < P::n; ++j)
            if (lanes[j] != -1) return true;
        return scalarNaN;
    }
};

// out[i] = s[i] op s[i + stride] op ... (K elements, or count when K is 0),
// i < len; out never overlaps s.
template <class P, int K, class E, class W>
void foldAlongK(const E* s, int len, int stride, int count, E* out, W& watch) {
    const int n = K ? K : count;
    overRow<P>(
        len,
        [&](int i) {
            auto acc = P::load(s + i);
            for (int k = 1; k < n; ++k) acc = P::op(acc, P::load(s + i + ptrdiff_t(k) * stride));
            P::store(out + i, acc);
            watch.vec(acc);
        },
        [&](int i) {
            E acc = zq::loadu(s + i);
            for (int k = 1; k < n; ++k) acc = P::op(acc, zq::loadu(s + i + ptrdiff_t(k) * stride));
            zq::storeu(out + i, acc);
            watch.one(acc);
        });
}

template <class P, class E, class W = NaNWatch<P>>
void foldAlong(const E* s, int len, int stride, int count, E* out, W&& watch = W()) {
    switch (count) {
    case 1: return foldAlongK<P, 1>(s, len, stride, count, out, watch);
    case 2: return foldAlongK<P, 2>(s, len, stride, count, out, watch);
    case 3: return foldAlongK<P, 3>(s, len, stride, count, out, watch);
    case 4: return foldAlongK<P, 4>(s, len, stride, count, out, watch);
    case 5: return foldAlongK<P, 5>(s, len, stride, count, out, watch);
    case 6: return foldAlongK<P, 6>(s, len, stride, count, out, watch);
    case 7: return foldAlongK<P, 7>(s, len, stride, count, out, watch);
    case 8: return foldAlongK<P, 8>(s, len, stride, count, out, watch);
    case 9: return foldAlongK<P, 9>(s, len, stride, count, out, watch);
    default: return foldAlongK<P, 0>(s, len, stride, count, out, watch);
    }
}

constexpr int kChunk = 16;

// out = rows[0] op rows[1] op ... (K rows), or out op rows[0] op ... when
// accumulating. Folding the same rows into a result a second time changes
// nothing, so the overlapped last register is harmless.
template <class P, int K, class E>
void foldChunkK(const E* const* rows, E* out, int len, bool accumulate) {
    const E* r[K];
    for (int j = 0; j < K; ++j) r[j] = rows[j];
    if (accumulate) {
        overRow<P>(
            len,
            [&](int i) {
                auto acc = P::load(out + i);
                for (int j = 0; j < K; ++j) acc = P::op(acc, P::load(r[j] + i));
                P::store(out + i, acc);
            },
            [&](int i) {
                E acc = zq::loadu(out + i);
                for (int j = 0; j < K; ++j) acc = P::op(acc, zq::loadu(r[j] + i));
                zq::storeu(out + i, acc);
            });
        return;
    }
    overRow<P>(
        len,
        [&](int i) {
            auto acc = P::load(r[0] + i);
            for (int j = 1; j < K; ++j) acc = P::op(acc, P::load(r[j] + i));
            P::store(out + i, acc);
        },
        [&](int i) {
            E acc = zq::loadu(r[0] + i);
            for (int j = 1; j < K; ++j) acc = P::op(acc, zq::loadu(r[j] + i));
            zq::storeu(out + i, acc);
        });
}

template <class P, class E, int... K>
void foldChunkAny(const E* const* rows, int k, E* out, int len, bool accumulate, std::integer_sequence<int, K...>) {
    using Fn = void (*)(const E* const*, E*, int, bool);
    static constexpr Fn table[] = {foldChunkK<P, K + 1, E>...};
    table[k - 1](rows, out, len, accumulate);
}

template <class P, class E>
void foldChunk(const E* const* rows, int k, E* out, int len, bool accumulate) {
    foldChunkAny<P>(rows, k, out, len, accumulate, std::make_integer_sequence<int, kChunk>());
}

// How the pair kernels write the caller's rows: streamed past the caches
// (large images whose rows are 16-byte aligned), and for keys turned back
// into float bits.
template <class P, bool Stream, bool Flip>
struct Out {
    using E = typename P::E;
    template <class V>
    static void vec(E* p, V v) {
        if constexpr (Flip) v = P::flip(v);
        if constexpr (Stream) P::stream(p, v);
        else P::store(p, v);
    }
    static void one(E* p, E v) {
        if constexpr (Flip) v = P::flip(v);
        zq::storeu(p, v);
    }
};

// Two output rows from K + 1 rows share the fold of the K - 1 rows in
// between. First pass: mid = rows[1] op ... op rows[K - 1], out0 = rows[0]
// op mid, mid replacing rows[0] (read first, element by element). Second
// pass: the next row along (the row pass of the row after rows[K - 1]),
// out1 = mid op next, next replacing mid. For floats this is the sequential
// fold only when rows 1..K-1 hold no NaN, which the caller makes sure of.
// The rows are rewritten in place, so tails go element by element.
template <class P, class O, int K, class E>
void pairHeadK(E* const* rows, E* out0, int len) {
    const E* r[K];
    for (int j = 0; j < K; ++j) r[j] = rows[j];
    E* head = rows[0];
    int i = 0;
    for (; i + P::n <= len; i += P::n) {
        const auto first = P::load(r[0] + i);
        auto m = P::load(r[1] + i);
        for (int j = 2; j < K; ++j) m = P::op(m, P::load(r[j] + i));
        O::vec(out0 + i, P::op(first, m));
        P::store(head + i, m);
    }
    for (; i < len; ++i) {
        const E first = r[0][i];
        E m = r[1][i];
        for (int j = 2; j < K; ++j) m = P::op(m, r[j][i]);
        O::one(out0 + i, P::op(first, m));
        head[i] = m;
    }
}

template <class P, class O, class E, int... K>
void pairHeadAny(E* const* rows, int k, E* out0, int len, std::integer_sequence<int, K...>) {
    using Fn = void (*)(E* const*, E*, int);
    static constexpr Fn table[] = {pairHeadK<P, O, K + 2, E>...};
    table[k - 2](rows, out0, len);
}

// k rows, 2 <= k <= kChunk.
template <class P, class O, class E>
void pairHead(E* const* rows, int k, E* out0, int len) {
    pairHeadAny<P, O>(rows, k, out0, len, std::make_integer_sequence<int, kChunk - 1>());
}

template <class P, class O, int K, class E, class W>
void pairTailK(const E* s, int stride, int count, E* mid, E* out1, int len, W& watch) {
    const int n = K ? K : count;
    int i = 0;
    for (; i + P::n <= len; i += P::n) {
        auto acc = P::load(s + i);
        for (int k = 1; k < n; ++k) acc = P::op(acc, P::load(s + i + ptrdiff_t(k) * stride));
        O::vec(out1 + i, P::op(P::load(mid + i), acc));
        P::store(mid + i, acc);
        watch.vec(acc);
    }
    for (; i < len; ++i) {
        E acc = zq::loadu(s + i);
        for (int k = 1; k < n; ++k) acc = P::op(acc, zq::loadu(s + i + ptrdiff_t(k) * stride));
        O::one(out1 + i, P::op(mid[i], acc));
        mid[i] = acc;
        watch.one(acc);
    }
}

// The second pass: s is the next row, folded along `count` elements
// `stride` apart.
template <class P, class O, class E, class W = NaNWatch<P>>
void pairTail(const E* s, int stride, int count, E* mid, E* out1, int len, W&& watch = W()) {
    switch (count) {
    case 1: return pairTailK<P, O, 1>(s, stride, count, mid, out1, len, watch);
    case 2: return pairTailK<P, O, 2>(s, stride, count, mid, out1, len, watch);
    case 3: return pairTailK<P, O, 3>(s, stride, count, mid, out1, len, watch);
    case 4: return pairTailK<P, O, 4>(s, stride, count, mid, out1, len, watch);
    case 5: return pairTailK<P, O, 5>(s, stride, count, mid, out1, len, watch);
    case 6: return pairTailK<P, O, 6>(s, stride, count, mid, out1, len, watch);
    case 7: return pairTailK<P, O, 7>(s, stride, count, mid, out1, len, watch);
    case 8: return pairTailK<P, O, 8>(s, stride, count, mid, out1, len, watch);
    case 9: return pairTailK<P, O, 9>(s, stride, count, mid, out1, len, watch);
    default: return pairTailK<P, O, 0>(s, stride, count, mid, out1, len, watch);
    }
}

// Folds any number of rows, in the order they are added, into out.
template <class P, class E>
class Folder {
public:
    Folder(E* out, int len) : out_(out), len_(len) {}
    void add(const E* r) {
        rows_[k_++] = r;
        if (k_ == kChunk) flush();
    }
    void flush() {
        if (k_ == 0) return;
        foldChunk<P>(rows_, k_, out_, len_, started_);
        started_ = true;
        k_ = 0;
    }

private:
    E* out_;
    int len_;
    const E* rows_[kChunk];
    int k_ = 0;
    bool started_ = false;
};

// Float bits <-> keys (the map is its own inverse), len elements; in and out
// may be the same row, and any byte address.
template <Isa I>
void flipKeys(const void* in, void* out, int len) {
    using R = zq::Regs<I>;
    using L = Lanes<I, int32_t, true>;
    auto* s = static_cast<const Zeq8u*>(in);
    auto* d = static_cast<Zeq8u*>(out);
    int i = 0;
    for (; i + L::n <= len; i += L::n) R::store(d + 4 * i, L::flip(R::load(s + 4 * i)));
    for (; i < len; ++i) {
        int32_t v;
        std::memcpy(&v, s + 4 * i, 4);
        v = L::flip(v);
        std::memcpy(d + 4 * i, &v, 4);
    }
}

// ---- strip morphology ----

// The columns' vertical runs of set mask elements. A run of one element is
// a ring row itself; longer runs are folded into scratch rows.
struct MaskPlan {
    static constexpr int kMaxRuns = 64, kMaxTerms = 256;
    bool fast = true;
    int runs = 0;
    int top[kMaxRuns], len[kMaxRuns], base[kMaxRuns], order[kMaxRuns];
    int terms = 0;
    int termDx[kMaxTerms], termRun[kMaxTerms];  // termRun < 0: ring row -termRun - 1
};

// Runs and terms of the mask; `fast` is cleared when they do not fit the
// plan or the state's scratch rows, and the fold then takes the set elements
// one by one. A mask without set elements counts as its anchor alone.
void planMask(const ZeqiMorphState& s, bool empty, MaskPlan& p) {
    const int mw = s.maskWidth, mh = s.maskHeight;
    auto set = [&](int x, int y) {
        return empty ? (x == s.anchorX && y == s.anchorY) : s.mask[ptrdiff_t(y) * mw + x] != 0;
    };
    for (int x = 0; x < mw && p.fast; ++x)
        for (int y = 0; y < mh && p.fast;) {
            if (!set(x, y)) {
                ++y;
                continue;
            }
            int l = 1;
            while (y + l < mh && set(x, y + l)) ++l;
            int run = -y - 1;
            if (l > 1) {
                run = 0;
                while (run < p.runs && !(p.top[run] == y && p.len[run] == l)) ++run;
                if (run == p.runs) {
                    if (p.runs == MaskPlan::kMaxRuns || p.runs == mh) p.fast = false;
                    else p.top[p.runs] = y, p.len[p.runs] = l, ++p.runs;
                }
            }
            if (p.terms == MaskPlan::kMaxTerms) p.fast = false;
            else p.termDx[p.terms] = x, p.termRun[p.terms] = run, ++p.terms;
            y += l;
        }
    if (!p.fast) return;
    // Shorter runs first; each starts from the longest run it contains.
    for (int r = 0; r < p.runs; ++r) p.order[r] = r;
    std::sort(p.order, p.order + p.runs, [&](int u, int v) { return p.len[u] < p.len[v]; });
    for (int r = 0; r < p.runs; ++r) {
        p.base[r] = -1;
        for (int q = 0; q < p.runs; ++q)
            if (p.len[q] < p.len[r] && p.top[q] >= p.top[r] && p.top[q] + p.len[q] <= p.top[r] + p.len[r] &&
                (p.base[r] < 0 || p.len[q] > p.len[p.base[r]]))
                p.base[r] = q;
    }
}

template <Isa I, class T, bool Max>
void morphStrip(const T* src, ptrdiff_t srcStep, T* dst, ptrdiff_t dstStep, ZeqiSize* roi, ZeqiMorphState* state,
                int stripFlag) {
    using namespace zq;
    constexpr bool keys = std::is_same<T, Zeq32f>::value;
    using E = typename std::conditional<keys, int32_t, uint8_t>::type;
    using P = Lanes<I, E, Max>;
    const ZeqiMorphState& s = *state;
    const int c = s.channels, w = roi->width, n = roi->height;
    const int mw = s.maskWidth, mh = s.maskHeight, ax = s.anchorX, a = s.anchorY, b = s.below;
    const int len = w * c, extLen = (w + mw - 1) * c;
    const bool rect = s.kind != kMorphMask;
    const bool starts = stripFlag == 0 || stripFlag == 1, ends = stripFlag == 0 || stripFlag == 2;
    // Rectangles use mh + 1 of the 2 mh row slots the state has room for:
    // when they fit, on cache-line boundaries, since every vector of the
    // ring is loaded and stored again.
    Zeq8u* base = s.buffer;
    ptrdiff_t pitch = s.rowBytes;
    if (rect) {
        const ptrdiff_t lines = (pitch + 63) & ~63, skip = -reinterpret_cast<uintptr_t>(base) & 63;
        if (skip + (mh + 1) * lines <= morphBufferBytes(mh, pitch, c, sizeof(E))) base += skip, pitch = lines;
    }
    auto slot = [&](int k) { return reinterpret_cast<E*>(base + pitch * k); };
    const size_t slotBytes = size_t(rect ? len : extLen) * sizeof(E);

    MaskPlan plan;
    bool empty = false;
    if (!rect) {
        empty = std::all_of(s.mask, s.mask + ptrdiff_t(mw) * mh, [](Zeq8u v) { return v == 0; });
        planMask(s, empty, plan);
    }

    // `times` copies of a pixel, inline: a library call per pixel of a few
    // bytes would cost as much as a row pass.
    auto repeat = [&](E* to, const E* pixel, int times) {
        for (int j = 0; j < times; ++j)
            for (int k = 0; k < c; ++k) to[j * c + k] = pixel[k];
    };
    // A source row with its border: ax copies of the first pixel before it,
    // copies of the last after it, up to mw - 1 pixels in all; floats as keys.
    auto extend = [&](const T* row, E* ext) {
        E* mid = ext + ptrdiff_t(ax) * c;
        if constexpr (keys) flipKeys<I>(row, mid, len);
        else std::memcpy(mid, row, size_t(len));
        repeat(ext, mid, ax);
        repeat(mid + len, mid + len - c, s.right);
    };

    // The row pass of a source row: pass(s, i, l) folds elements i..i+l-1 of
    // the bordered row, s pointing at element i. 8u rows well over a mask
    // wide go straight from the caller's row in the middle and from short
    // bordered copies at the edges, sparing a copy of the whole row. The
    // pieces meet at cache-line boundaries: a line written both by streamed
    // and by ordinary stores is read back from memory first.
    auto rowPass = [&](const T* row, E* ext, auto pass) {
        if constexpr (!keys) {
            const int lo = (ax * c + 63) & ~63, hi = (w - s.right) * c & ~63;
            if (w >= mw + 64 && lo < hi) {
                // The edge pieces, a few dozen bytes each, are copied inline too.
                auto copy = [&](E* to, const T* from, int n) {
                    overRow<P>(n, [&](int i) { P::store(to + i, P::load(from + i)); }, [&](int i) { to[i] = from[i]; });
                };
                repeat(ext, row, ax);
                copy(ext + ax * c, row, lo + (mw - 1 - ax) * c);
                pass(ext, 0, lo);
                pass(row + (lo - ax * c), lo, hi - lo);
                const int tail = len - (hi - ax * c);  // row elements from the one under element hi
                copy(ext, row + (hi - ax * c), tail);
                repeat(ext + tail, row + len - c, s.right);
                pass(ext, hi, len - hi);
                return;
            }
        }
        extend(row, ext);
        pass(ext, 0, len);
    };

    // The ring holds the window rows of the next output row, oldest at `first`.
    int first = 0, count = starts ? 0 : a + b, produced = 0;
    auto ring = [&](int k) { return slot(first + k < mh ? first + k : first + k - mh); };  // k < mh
    auto emit = [&]() {
        T* out = zq::row(dst, dstStep, produced);
        Folder<P, E> fold(reinterpret_cast<E*>(out), len);
        if (rect) {
            for (int k = 0; k < mh; ++k) fold.add(ring(k));
        } else if (plan.fast) {
            for (int q = 0; q < plan.runs; ++q) {
                const int r = plan.order[q], top = plan.top[r], bottom = top + plan.len[r];
                Folder<P, E> run(slot(mh + r), extLen);
                int from = bottom, to = bottom;
                if (plan.base[r] >= 0) {
                    run.add(slot(mh + plan.base[r]));
                    from = plan.top[plan.base[r]], to = from + plan.len[plan.base[r]];
                }
                for (int k = top; k < bottom; ++k)
                    if (k < from || k >= to) run.add(ring(k));
                run.flush();
            }
            for (int t = 0; t < plan.terms; ++t) {
                const int r = plan.termRun[t];
                fold.add((r < 0 ? ring(-r - 1) : slot(mh + r)) + ptrdiff_t(plan.termDx[t]) * c);
            }
        } else {
            for (int y = 0; y < mh; ++y)
                for (int x = 0; x < mw; ++x)
                    if (empty ? (x == ax && y == a) : s.mask[ptrdiff_t(y) * mw + x] != 0)
                        fold.add(ring(y) + ptrdiff_t(x) * c);
        }
        fold.flush();
        if constexpr (keys) flipKeys<I>(out, out, len);
        ++produced;
        first = (first + 1) % mh;
        --count;
    };
    // Rectangles emit two rows at a time when the row after the window is
    // at hand: they share the fold of the mh - 1 rows between.
    const bool pairs = rect && mh >= 2 && mh <= kChunk;
    E* const ext = slot(mh);
    // Appends a window row: a source row, or (null) a copy of the newest.
    auto place = [&](const T* row) {
        E* target = ring(count);
        if (row == nullptr) std::memcpy(target, ring(count - 1), slotBytes);
        else if (!rect) extend(row, target);
        else rowPass(row, ext, [&](const E* from, int i, int l) { foldAlong<P>(from, l, c, mw, target + i); });
        ++count;
    };
    const bool stream = streamsRows(dst, dstStep, int64_t(len) * sizeof(E) * n);
    auto emitPairWith = [&](auto out, const T* row) {
        using O = decltype(out);
        E* out0 = reinterpret_cast<E*>(zq::row(dst, dstStep, produced));
        E* out1 = reinterpret_cast<E*>(zq::row(dst, dstStep, produced + 1));
        E* rows[kChunk];
        for (int k = 0; k < mh; ++k) rows[k] = ring(k);
        pairHead<P, O>(rows, mh, out0, len);
        if (row == nullptr) {
            pairTail<P, O>(ring(mh - 1), c, 1, ring(0), out1, len);
        } else {
            E* mid = ring(0);
            rowPass(row, ext, [&](const E* from, int i, int l) { pairTail<P, O>(from, c, mw, mid + i, out1 + i, l); });
        }
        produced += 2;
        first = (first + 2) % mh;  // the slot of the oldest row now holds the newest
        count = mh - 1;
    };
    auto emitPair = [&](const T* row) {
        if (stream) emitPairWith(Out<P, true, keys>(), row);
        else emitPairWith(Out<P, false, keys>(), row);
    };
    // A complete window waits for the next row, to be emitted with it.
    auto feed = [&](const T* row) {
        if (count == mh) {
            if (pairs) return emitPair(row);
            emit();
        }
        place(row);
    };

    int y = 0;
    if (starts) {
        feed(src);  // the rows above the image repeat its first row
        for (int k = 0; k < a; ++k) feed(nullptr);
        y = 1;
    }
    for (; y < n; ++y) feed(zq::row(src, srcStep, y));
    if (ends)
        for (int k = 0; k < b; ++k) feed(nullptr);  // and the rows below its last
    if (count == mh) emit();
    if (stream) _mm_sfence();
    if (!ends && first != 0) {
        // The next strip finds the carried window rows in ring order from
        // slot 0: the ring turned by `first` slots, in cycles through slot mh.
        for (int start = 0, g = std::gcd(mh, first); start < g; ++start) {
            std::memcpy(ext, slot(start), slotBytes);
            int k = start;
            for (int from = (k + first) % mh; from != start; k = from, from = (k + first) % mh)
                std::memcpy(slot(k), slot(from), slotBytes);
            std::memcpy(slot(k), ext, slotBytes);
        }
    }
    roi->height = produced;
}

// ---- minimum and maximum filters ----

}  // namespace

namespace zq {

template <Isa I, class T, bool Max>
void ownMorphStrip(const T* src, ptrdiff_t srcStep, T* dst, ptrdiff_t dstStep, ZeqiSize* roi, ZeqiMorphState* state,
                   int stripFlag) {
    morphStrip<I, T, Max>(src, srcStep, dst, dstStep, roi, state, stripFlag);
}

template <Isa I, class T, bool Max>
ZeqStatus ownFilterMax(const T* src, ptrdiff_t srcStep, T* dst, ptrdiff_t dstStep, ZeqiSize roi, ZeqiSize mask,
                       ZeqiPoint anchor, int channels) {
    using P = Lanes<I, T, Max>;
    const int mw = mask.width, mh = mask.height;
    const int64_t pitch = (int64_t(roi.width) * channels + 7) & ~int64_t(7), total = pitch * mh;
    if (total > INT_MAX / int64_t(sizeof(T))) return zeqStsNoMem;
    const int len = roi.width * channels;
    T* buf;
    if constexpr (sizeof(T) == 1) buf = zeqsMalloc_8u(int(total));
    else buf = zeqsMalloc_32f(int(total));
    if (buf == nullptr) return zeqStsNoMem;

    // Source row k of the neighbourhoods, from anchor.y rows above the roi
    // and anchor.x pixels left of it; ring slot k % mh holds its row pass.
    const T* first = zq::row(src, srcStep, -anchor.y) - ptrdiff_t(anchor.x) * channels;
    // Two rows at a time share the fold of the mh - 1 rows they have in
    // common: always for 8u, for floats when those rows hold no NaN.
    const bool pairs = mh >= 2 && mh <= kChunk;
    // Very wide rois go in bands of whole registers narrow enough for the
    // ring to stay in the second-level cache (bands that fit the first-level
    // cache measured slower: the source rows then come in short pieces);
    // every element's operations are the same in any band.
    const int bandBytes = std::max(2048, (98304 / mh) & ~63);
    const bool stream = streamsRows(dst, dstStep, int64_t(len) * int64_t(sizeof(T)) * roi.height);
    const int band = std::max(P::n, bandBytes / int(sizeof(T)) / P::n * P::n);
    for (int x0 = 0; x0 < len; x0 += band) {
        const int bl = std::min(band, len - x0);
        auto slot = [&](int k) { return buf + ptrdiff_t(k % mh) * pitch + x0; };
        auto srcRow = [&](int k) { return zq::row(first, srcStep, k) + x0; };
        auto dstRow = [&](int y) { return zq::row(dst, dstStep, y) + x0; };
        bool nan[kChunk] = {};
        using Watch = NaNWatch<P, std::is_same<T, float>::value>;
        auto rowPass = [&](int k) {
            Watch watch;
            foldAlong<P>(srcRow(k), bl, channels, mw, slot(k), watch);
            nan[k % mh] = watch.seen();
        };
        for (int k = 0; k < mh - 1; ++k) rowPass(k);
        T* rows[kChunk];
        for (int y = 0; y < roi.height;) {
            rowPass(y + mh - 1);
            bool pair = pairs && y + 1 < roi.height;
            for (int k = 1; k < mh && pair; ++k) pair = !nan[(y + k) % mh];
            if (pair) {
                for (int k = 0; k < mh; ++k) rows[k] = slot(y + k);
                // The slot of row y, now the shared fold, receives row y + mh.
                Watch watch;
                if (stream) {
                    pairHead<P, Out<P, true, false>>(rows, mh, dstRow(y), bl);
                    pairTail<P, Out<P, true, false>>(srcRow(y + mh), channels, mw, slot(y), dstRow(y + 1), bl, watch);
                } else {
                    pairHead<P, Out<P, false, false>>(rows, mh, dstRow(y), bl);
                    pairTail<P, Out<P, false, false>>(srcRow(y + mh), channels, mw, slot(y), dstRow(y + 1), bl, watch);
                }
                nan[y % mh] = watch.seen();
                y += 2;
            } else {
                Folder<P, T> fold(dstRow(y), bl);
                for (int k = 0; k < mh; ++k) fold.add(slot(y + k));
                fold.flush();
                y += 1;
            }
        }
    }
    if (stream) _mm_sfence();
    zeqsFree(buf);
    return zeqStsOk;
}

#define ZQ_MORPH_INSTANTIATE(T, MAX)                                                                            \
    template void ownMorphStrip<ZQ_ISA, T, MAX>(const T*, ptrdiff_t, T*, ptrdiff_t, ZeqiSize*, ZeqiMorphState*, \
                                                int);                                                           \
    template ZeqStatus ownFilterMax<ZQ_ISA, T, MAX>(const T*, ptrdiff_t, T*, ptrdiff_t, ZeqiSize, ZeqiSize,    \
                                                    ZeqiPoint, int);
ZQ_MORPH_INSTANTIATE(Zeq8u, true)
ZQ_MORPH_INSTANTIATE(Zeq8u, false)
ZQ_MORPH_INSTANTIATE(Zeq32f, true)
ZQ_MORPH_INSTANTIATE(Zeq32f, false)

}  // namespace zq
