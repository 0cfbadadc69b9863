// Gaussian 5x5 pyramid, one level down or up, written once over the tier.
//
// Both directions filter each source row along the row into a ring of rows
// in the caller's buffer, then combine ring rows across into one output row.
// 8-bit images keep the ring in 16-bit lanes: every sum is exact there
// (modulo 2^16 while it is formed, exactly at the end), so every tier gives
// the same bits. Float sums are formed term by term from the left with the
// weights of the forms below, in the same order on every path.
#include "core/zqcvcore.h"
#include "core/zqcvregs.h"
#include "pyramid/zqcvpyramid.h"

#include <algorithm>
#include <cstdint>
#include <type_traits>

namespace {

using zq::Isa;

// One output along a line: w[0]*s(at[0]) + w[1]*s(at[1]) + ... from the
// left, or, for the odd outputs of the expansion, 4 * (s(at[0]) + s(at[1])).
struct Taps {
    int n;
    int at[5];
    int w[5];
    bool pairTimes4;
};

// The reducing taps centred at sample c of a line of n samples. The border
// mirrors about the edge sample; these are the forms the mirror gives, folded
// once more for lines of one and two samples.
Taps downTaps(int c, int n) {
    if (n == 1) return {2, {0, 0}, {8, 8}, false};
    if (n == 2) return {2, {0, 1}, {8, 8}, false};
    if (c == 0) return {3, {0, 1, 2}, {6, 8, 2}, false};
    if (c == n - 1) return {3, {n - 1, n - 2, n - 3}, {6, 8, 2}, false};
    if (c == n - 2) return {4, {n - 4, n - 3, n - 2, n - 1}, {1, 4, 7, 4}, false};
    return {5, {c - 2, c - 1, c, c + 1, c + 2}, {1, 4, 6, 4, 1}, false};
}

// The expanding taps of outputs 2x and 2x + 1 from n samples. A line of one
// sample folds all weights onto it (8 times the sample).
Taps upEvenTaps(int x, int n) {
    if (n == 1) return {1, {0}, {8}, false};
    if (x == 0) return {2, {0, 1}, {6, 2}, false};
    if (x == n - 1) return {2, {n - 1, n - 2}, {6, 2}, false};
    return {3, {x - 1, x, x + 1}, {1, 6, 1}, false};
}
Taps upOddTaps(int x, int n) {
    if (n == 1) return {1, {0}, {8}, false};
    if (x == n - 1) return {2, {n - 1, n - 2}, {4, 4}, true};
    return {2, {x, x + 1}, {4, 4}, true};
}

// s(k) is the sample under tap k.
template <class A, class Get>
inline A applyTaps(const Taps& t, Get s) {
    if (t.pairTimes4) return A(4) * (s(0) + s(1));
    A acc = A(t.w[0]) * s(0);
    for (int k = 1; k < t.n; ++k) acc = acc + A(t.w[k]) * s(k);
    return acc;
}

// Ring element and scalar accumulator by pixel type.
template <class T>
struct Work {
    using E = int16_t;
    using Acc = int;
};
template <>
struct Work<Zeq32f> {
    using E = float;
    using Acc = float;
};

// Weights summing to 2^Shift: integers round half up, floats scale exactly.
template <class T, int Shift>
inline T finish(typename Work<T>::Acc v) {
    if constexpr (std::is_same<T, Zeq32f>::value) return v * (1.0f / float(1 << Shift));
    else return T((v + (1 << (Shift - 1))) >> Shift);
}

// `count` rows of `n` ring elements, each padded to 16 bytes, from the first
// 32-byte boundary of the buffer.
template <class E>
class Ring {
public:
    Ring(Zeq8u* buffer, int n)
        : base_(reinterpret_cast<Zeq8u*>((reinterpret_cast<uintptr_t>(buffer) + 31) & ~uintptr_t(31))),
          rowBytes_((size_t(n) * sizeof(E) + 15) & ~size_t(15)) {}
    E* row(int k) const { return reinterpret_cast<E*>(base_ + size_t(k) * rowBytes_); }

private:
    Zeq8u* base_;
    size_t rowBytes_;
};

// ---- along the row ----

// 8-bit C1 reduction, outputs x.. while a whole register of them lies
// inside the row. 16-bit lane j of a load at 2x - 2 holds samples
// 2(x+j) - 2 (low byte) and 2(x+j) - 1 (high byte).
template <Isa I, class T>
int downRowVector(const T* s, int w, int16_t* out, int x) {
    using R = zq::Regs<I>;
    using V = typename R::I;
    constexpr int L = R::template lanes<int16_t>;
    const V lowBytes = R::set1_16(0xff), six = R::set1_16(6);
    for (; 2 * (x + L - 1) + 3 <= w - 1; x += L) {
        const T* p = s + 2 * x - 2;
        const V a = R::load(p), b = R::load(p + 2), c = R::load(p + 4);
        V ea, eb, ec, oa, ob;
        if constexpr (std::is_signed<T>::value) {
            ea = R::srai16(R::slli16(a, 8), 8), eb = R::srai16(R::slli16(b, 8), 8), ec = R::srai16(R::slli16(c, 8), 8);
            oa = R::srai16(a, 8), ob = R::srai16(b, 8);
        } else {
            ea = R::andi(a, lowBytes), eb = R::andi(b, lowBytes), ec = R::andi(c, lowBytes);
            oa = R::srli16(a, 8), ob = R::srli16(b, 8);
        }
        const V sum = R::add16(R::add16(ea, ec), R::add16(R::mullo16(eb, six), R::slli16(R::add16(oa, ob), 2)));
        R::store(out + x, sum);
    }
    return x;
}

template <Isa I, class T, int Ch>
void downRow(const T* s, int w, typename Work<T>::E* out) {
    using A = typename Work<T>::Acc;
    using E = typename Work<T>::E;
    const int dw = (w + 1) / 2;
    auto sample = [&](int i, int c) { return A(zq::loadu(s + ptrdiff_t(i) * Ch + c)); };
    auto edge = [&](int x) {
        const Taps t = downTaps(2 * x, w);
        for (int c = 0; c < Ch; ++c) out[x * Ch + c] = E(applyTaps<A>(t, [&](int k) { return sample(t.at[k], c); }));
    };
    edge(0);
    int x = 1;
    if constexpr (Ch == 1 && sizeof(T) == 1) x = downRowVector<I>(s, w, out, x);
    for (; 2 * x + 2 <= w - 1; ++x)
        for (int c = 0; c < Ch; ++c) {
            const int i = 2 * x;
            out[x * Ch + c] = E(sample(i - 2, c) + A(4) * sample(i - 1, c) + A(6) * sample(i, c) +
                                A(4) * sample(i + 1, c) + sample(i + 2, c));
        }
    for (; x < dw; ++x) edge(x);
}

// E and O lanes interleaved in order, across the whole register.
template <Isa I, class V>
inline void interleave16(V e, V o, V& lo, V& hi) {
    if constexpr (I == Isa::Sse2) {
        lo = _mm_unpacklo_epi16(e, o), hi = _mm_unpackhi_epi16(e, o);
    } else if constexpr (I == Isa::Avx2) {
        const V a = _mm256_unpacklo_epi16(e, o), b = _mm256_unpackhi_epi16(e, o);
        lo = _mm256_permute2x128_si256(a, b, 0x20), hi = _mm256_permute2x128_si256(a, b, 0x31);
    } else {
        const V a = _mm512_unpacklo_epi16(e, o), b = _mm512_unpackhi_epi16(e, o);
        lo = _mm512_permutex2var_epi64(a, _mm512_setr_epi64(0, 1, 8, 9, 2, 3, 10, 11), b);
        hi = _mm512_permutex2var_epi64(a, _mm512_setr_epi64(4, 5, 12, 13, 6, 7, 14, 15), b);
    }
}

// 8-bit C1 expansion of samples x.. while a register of them has both neighbours.
template <Isa I, class T>
int upRowVector(const T* s, int w, int16_t* out, int x) {
    using R = zq::Regs<I>;
    using V = typename R::I;
    constexpr int L = R::template lanes<int16_t>;
    auto widen = [](const T* p) {
        V lo, hi;
        if constexpr (std::is_signed<T>::value) R::widenI8(R::loadHalf(p), lo, hi);
        else R::widenU8(R::loadHalf(p), lo, hi);
        return lo;
    };
    const V six = R::set1_16(6);
    for (; x + L <= w - 1; x += L) {
        const V p = widen(s + x - 1), c = widen(s + x), n = widen(s + x + 1);
        const V even = R::add16(R::add16(p, n), R::mullo16(c, six)), odd = R::slli16(R::add16(c, n), 2);
        V lo, hi;
        interleave16<I>(even, odd, lo, hi);
        R::store(out + 2 * x, lo);
        R::store(out + 2 * x + L, hi);
    }
    return x;
}

template <Isa I, class T, int Ch>
void upRow(const T* s, int w, typename Work<T>::E* out) {
    using A = typename Work<T>::Acc;
    using E = typename Work<T>::E;
    auto sample = [&](int i, int c) { return A(zq::loadu(s + ptrdiff_t(i) * Ch + c)); };
    auto edge = [&](int x) {
        const Taps te = upEvenTaps(x, w), to = upOddTaps(x, w);
        for (int c = 0; c < Ch; ++c) {
            out[2 * x * Ch + c] = E(applyTaps<A>(te, [&](int k) { return sample(te.at[k], c); }));
            out[(2 * x + 1) * Ch + c] = E(applyTaps<A>(to, [&](int k) { return sample(to.at[k], c); }));
        }
    };
    edge(0);
    int x = 1;
    if constexpr (Ch == 1 && sizeof(T) == 1) x = upRowVector<I>(s, w, out, x);
    for (; x < w - 1; ++x)
        for (int c = 0; c < Ch; ++c) {
            out[2 * x * Ch + c] = E(sample(x - 1, c) + A(6) * sample(x, c) + sample(x + 1, c));
            out[(2 * x + 1) * Ch + c] = E(A(4) * (sample(x, c) + sample(x + 1, c)));
        }
    if (w > 1) edge(w - 1);
}

// ---- across rows ----

// One output row from the ring rows under the taps (rows[k] under tap k),
// n samples.
template <Isa I, class T, int Shift>
void combine(const typename Work<T>::E* const* rows, const Taps& t, int n, T* d) {
    using R = zq::Regs<I>;
    using A = typename Work<T>::Acc;
    int j = 0;
    if constexpr (std::is_same<T, Zeq32f>::value) {
        using F = typename R::F;
        constexpr int L = R::template lanes<float>;
        const F scale = R::set1f(1.0f / float(1 << Shift));
        for (; j + L <= n; j += L) {
            F acc;
            if (t.pairTimes4) {
                acc = R::mul(R::set1f(4.0f), R::add(R::loadf(rows[0] + j), R::loadf(rows[1] + j)));
            } else {
                acc = R::mul(R::set1f(float(t.w[0])), R::loadf(rows[0] + j));
                for (int k = 1; k < t.n; ++k)
                    acc = R::add(acc, R::mul(R::set1f(float(t.w[k])), R::loadf(rows[k] + j)));
            }
            R::storef(d + j, R::mul(acc, scale));
        }
    } else {
        using V = typename R::I;
        constexpr int L = R::template lanes<int16_t>;
        auto sums = [&](int at) {
            V acc;
            if (t.pairTimes4) {
                acc = R::slli16(R::add16(R::load(rows[0] + at), R::load(rows[1] + at)), 2);
            } else {
                acc = R::mullo16(R::set1_16(t.w[0]), R::load(rows[0] + at));
                for (int k = 1; k < t.n; ++k) acc = R::add16(acc, R::mullo16(R::set1_16(t.w[k]), R::load(rows[k] + at)));
            }
            acc = R::add16(acc, R::set1_16(1 << (Shift - 1)));
            return std::is_signed<T>::value ? R::srai16(acc, Shift) : R::srli16(acc, Shift);
        };
        for (; j + 2 * L <= n; j += 2 * L) {
            const V lo = sums(j), hi = sums(j + L);
            R::store(d + j, std::is_signed<T>::value ? R::packsI16(lo, hi) : R::packusI16(lo, hi));
        }
    }
    for (; j < n; ++j) zq::storeu(d + j, finish<T, Shift>(applyTaps<A>(t, [&](int k) { return A(rows[k][j]); })));
}

}  // namespace

namespace zq {

template <Isa I, class T, int Ch>
void ownPyrDown_Gauss5x5(const T* src, ptrdiff_t srcStep, T* dst, ptrdiff_t dstStep, ZeqiSize roi, Zeq8u* buffer) {
    using E = typename Work<T>::E;
    const int w = roi.width, h = roi.height, dh = (h + 1) / 2, n = (w + 1) / 2 * Ch;
    const Ring<E> ring(buffer, n);
    int filtered = 0;  // source rows in the ring so far; row i sits in ring row i % 5
    for (int y = 0; y < dh; ++y) {
        for (; filtered <= std::min(2 * y + 2, h - 1); ++filtered)
            downRow<I, T, Ch>(row(src, srcStep, filtered), w, ring.row(filtered % 5));
        const Taps t = downTaps(2 * y, h);
        const E* rows[5];
        for (int k = 0; k < t.n; ++k) rows[k] = ring.row(t.at[k] % 5);
        combine<I, T, 8>(rows, t, n, row(dst, dstStep, y));
    }
}

template <Isa I, class T, int Ch>
void ownPyrUp_Gauss5x5(const T* src, ptrdiff_t srcStep, T* dst, ptrdiff_t dstStep, ZeqiSize roi, Zeq8u* buffer) {
    using E = typename Work<T>::E;
    const int w = roi.width, h = roi.height, n = 2 * w * Ch;
    const Ring<E> ring(buffer, n);
    int filtered = 0;  // row i sits in ring row i % 3
    for (int y = 0; y < h; ++y) {
        for (; filtered <= std::min(y + 1, h - 1); ++filtered)
            upRow<I, T, Ch>(row(src, srcStep, filtered), w, ring.row(filtered % 3));
        for (int odd = 0; odd < 2; ++odd) {
            const Taps t = odd ? upOddTaps(y, h) : upEvenTaps(y, h);
            const E* rows[3];
            for (int k = 0; k < t.n; ++k) rows[k] = ring.row(t.at[k] % 3);
            combine<I, T, 6>(rows, t, n, row(dst, dstStep, 2 * y + odd));
        }
    }
}

}  // namespace zq

namespace zq {
#define ZQ_PYRAMID_KERNELS(T, CH)                                                                               \
    template void ownPyrDown_Gauss5x5<ZQ_ISA, T, CH>(const T*, ptrdiff_t, T*, ptrdiff_t, ZeqiSize, Zeq8u*); \
    template void ownPyrUp_Gauss5x5<ZQ_ISA, T, CH>(const T*, ptrdiff_t, T*, ptrdiff_t, ZeqiSize, Zeq8u*);
ZQ_PYRAMID_KERNELS(Zeq8u, 1)
ZQ_PYRAMID_KERNELS(Zeq8u, 3)
ZQ_PYRAMID_KERNELS(Zeq8s, 1)
ZQ_PYRAMID_KERNELS(Zeq8s, 3)
ZQ_PYRAMID_KERNELS(Zeq32f, 1)
ZQ_PYRAMID_KERNELS(Zeq32f, 3)
}  // namespace zq
