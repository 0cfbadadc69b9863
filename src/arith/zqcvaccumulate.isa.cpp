// The accumulation kernel, written once over the tier's registers: blocks of
// four float registers of pixels, then one pixel at a time.
//
// Vector and scalar paths give the same bits: 8-bit squares and products are
// exact in 16-bit lanes before conversion, everything else is the same
// sequence of single-precision operations.
#include "arith/zqcvaccumulate.h"
#include "core/zqcvcore.h"
#include "core/zqcvregs.h"

#include <type_traits>

namespace {

using zq::AccOp;
using zq::Isa;

// Four float registers of pixels from 8-bit ones.
template <class R, class S>
inline void floats8(const S* p, typename R::F f[4]) {
    typename R::I w[2], d[4];
    if constexpr (std::is_signed<S>::value) {
        R::widenI8(R::load(p), w[0], w[1]);
    } else {
        R::widenU8(R::load(p), w[0], w[1]);
    }
    for (int k = 0; k < 2; ++k) {
        if constexpr (std::is_signed<S>::value) R::widenI16(w[k], d[2 * k], d[2 * k + 1]);
        else R::widenU16(w[k], d[2 * k], d[2 * k + 1]);
    }
    for (int k = 0; k < 4; ++k) f[k] = R::cvti32_f(d[k]);
}

// Four float registers from two registers of 16-bit lanes.
template <class R, bool Signed>
inline void floats16(const typename R::I w[2], typename R::F f[4]) {
    for (int k = 0; k < 2; ++k) {
        typename R::I lo, hi;
        if constexpr (Signed) R::widenI16(w[k], lo, hi);
        else R::widenU16(w[k], lo, hi);
        f[2 * k] = R::cvti32_f(lo);
        f[2 * k + 1] = R::cvti32_f(hi);
    }
}

// Two registers of 16-bit lanes from 8-bit pixels.
template <class R, class S>
inline void widen8(const S* p, typename R::I w[2]) {
    if constexpr (std::is_signed<S>::value) R::widenI8(R::load(p), w[0], w[1]);
    else R::widenU8(R::load(p), w[0], w[1]);
}

template <class R, class S>
inline void floatsOf(const S* p, typename R::F f[4]) {
    constexpr int L = R::template lanes<float>;
    if constexpr (std::is_same<S, Zeq32f>::value) {
        for (int k = 0; k < 4; ++k) f[k] = R::loadf(p + k * L);
    } else {  // 16u
        const typename R::I w[2] = {R::load(p), R::load(p + 2 * L)};
        floats16<R, false>(w, f);
    }
}

// What a block of pixels contributes: the value itself (Add, and the source
// of Weighted), its square, or the product with the second source.
template <class R, AccOp O, class S>
inline void terms(const S* a, const S* b, typename R::F t[4]) {
    if constexpr (sizeof(S) == 1 && (O == AccOp::Add || O == AccOp::Weighted)) {
        floats8<R>(a, t);
    } else if constexpr (sizeof(S) == 1) {
        typename R::I w[2];
        widen8<R>(a, w);
        if constexpr (O == AccOp::Square) {
            for (int k = 0; k < 2; ++k) w[k] = R::mullo16(w[k], w[k]);
        } else {
            typename R::I u[2];
            widen8<R>(b, u);
            for (int k = 0; k < 2; ++k) w[k] = R::mullo16(w[k], u[k]);
        }
        // 8u squares and products reach 65025: their lanes are unsigned.
        floats16<R, std::is_signed<S>::value>(w, t);
    } else {
        floatsOf<R>(a, t);
        if constexpr (O == AccOp::Square) {
            for (int k = 0; k < 4; ++k) t[k] = R::mul(t[k], t[k]);
        } else if constexpr (O == AccOp::Product) {
            typename R::F u[4];
            floatsOf<R>(b, u);
            for (int k = 0; k < 4; ++k) t[k] = R::mul(t[k], u[k]);
        }
    }
}

// All-ones float lanes where the mask byte is non-zero.
template <class R>
inline void maskedIn(const Zeq8u* m, typename R::F in[4]) {
    const typename R::I out8 = R::cmpeq8(R::load(m), R::zero());
    typename R::I w[2], d[4];
    R::widenI8(out8, w[0], w[1]);
    R::widenI16(w[0], d[0], d[1]);
    R::widenI16(w[1], d[2], d[3]);
    for (int k = 0; k < 4; ++k) in[k] = R::casti_f(R::xori(d[k], R::set1_32(-1)));
}

// Whole blocks of pixels i.. of a row; returns the first pixel not done.
// A masked-out pixel is still written: sums add +0.0 (turning -0.0 into
// +0.0) and the average runs with weight 0 (turning an infinity into NaN).
template <class R, AccOp O, bool Masked, class S>
inline ptrdiff_t accumulateBlocks(const S* a, const S* b, const Zeq8u* m, Zeq32f* acc, ptrdiff_t i, ptrdiff_t n,
                                  Zeq32f alpha) {
    using F = typename R::F;
    constexpr int L = R::template lanes<float>, block = 4 * L;
    const F weight = R::set1f(alpha);
    for (; i + block <= n; i += block) {
        F t[4], in[4];
        terms<R, O>(a + i, b + i, t);
        if constexpr (Masked) maskedIn<R>(m + i, in);
        for (int k = 0; k < 4; ++k) {
            Zeq32f* p = acc + i + k * L;
            F v = R::loadf(p);
            if constexpr (O == AccOp::Weighted) {
                const F w = Masked ? R::andf(in[k], weight) : weight;
                v = R::add(v, R::mul(R::sub(t[k], v), w));
            } else {
                v = R::add(v, Masked ? R::andf(in[k], t[k]) : t[k]);
            }
            R::storef(p, v);
        }
    }
    return i;
}

// Pixels i..n-1 one at a time. The rows may start at any byte: every
// element goes through an unaligned load or store.
template <AccOp O, bool Masked, class S>
inline void accumulateScalar(const S* a, const S* b, const Zeq8u* m, Zeq32f* acc, ptrdiff_t i, ptrdiff_t n,
                             Zeq32f alpha) {
    using zq::loadu;
    for (; i < n; ++i) {
        const bool in = !Masked || m[i] != 0;
        const S ai = loadu(a + i);
        Zeq32f t = Zeq32f(ai);
        if constexpr (O == AccOp::Square || O == AccOp::Product) {
            const S c = O == AccOp::Square ? ai : loadu(b + i);
            if constexpr (sizeof(S) == 1) t = Zeq32f(int(ai) * int(c));
            else t = t * Zeq32f(c);
        }
        const Zeq32f old = loadu(acc + i);
        if constexpr (O == AccOp::Weighted) {
            const Zeq32f d = t - old;
            const Zeq32f dw = d * (in ? alpha : 0.0f);
            zq::storeu(acc + i, old + dw);
        } else {
            zq::storeu(acc + i, old + (in ? t : 0.0f));
        }
    }
}

// One row. On the wider tiers a scalar head first brings the accumulator to
// the register alignment (when its pixels are 4-byte aligned at all): wide
// accesses straddling cache lines cost more than the head. The remainder
// goes through SSE2 blocks, then one pixel at a time.
template <Isa I, AccOp O, bool Masked, class S>
inline void accumulateRow(const S* a, const S* b, const Zeq8u* m, Zeq32f* acc, ptrdiff_t n, Zeq32f alpha) {
    using R = zq::Regs<I>;
    ptrdiff_t i = 0;
    if constexpr (I != Isa::Sse2) {
        const uintptr_t address = reinterpret_cast<uintptr_t>(acc);
        i = address % 4 ? 0 : ptrdiff_t((R::bytes - address % R::bytes) % R::bytes / 4);
        if (i > n) i = n;
        accumulateScalar<O, Masked>(a, b, m, acc, 0, i, alpha);
        i = accumulateBlocks<R, O, Masked>(a, b, m, acc, i, n, alpha);
    }
    i = accumulateBlocks<zq::Regs<Isa::Sse2>, O, Masked>(a, b, m, acc, i, n, alpha);
    accumulateScalar<O, Masked>(a, b, m, acc, i, n, alpha);
}

}  // namespace

namespace zq {

// The region, as one long row when no row has padding.
template <Isa I, AccOp O, bool Masked, class S>
void ownAccumulate(const S* a, ptrdiff_t aStep, const S* b, ptrdiff_t bStep, const Zeq8u* m, ptrdiff_t mStep,
                   Zeq32f* acc, ptrdiff_t accStep, ZeqiSize roi, Zeq32f alpha) {
    if (contiguousRows<S>(roi.width, aStep, bStep) && contiguousRows<Zeq32f>(roi.width, accStep) &&
        (!Masked || contiguousRows<Zeq8u>(roi.width, mStep))) {
        accumulateRow<I, O, Masked>(a, b, m, acc, ptrdiff_t(roi.width) * roi.height, alpha);
        return;
    }
    for (int y = 0; y < roi.height; ++y)
        accumulateRow<I, O, Masked>(row(a, aStep, y), row(b, bStep, y), Masked ? row(m, mStep, y) : m,
                                    row(acc, accStep, y), roi.width, alpha);
}

#define ZQ_ACCUMULATE_KERNEL(O, MASKED, S)                                                                     \
    template void ownAccumulate<ZQ_ISA, O, MASKED, S>(const S*, ptrdiff_t, const S*, ptrdiff_t, const Zeq8u*, \
                                                      ptrdiff_t, Zeq32f*, ptrdiff_t, ZeqiSize, Zeq32f);
#define ZQ_ACCUMULATE_KERNELS(S)                           \
    ZQ_ACCUMULATE_KERNEL(AccOp::Add, false, S)             \
    ZQ_ACCUMULATE_KERNEL(AccOp::Add, true, S)              \
    ZQ_ACCUMULATE_KERNEL(AccOp::Square, false, S)          \
    ZQ_ACCUMULATE_KERNEL(AccOp::Square, true, S)           \
    ZQ_ACCUMULATE_KERNEL(AccOp::Product, false, S)         \
    ZQ_ACCUMULATE_KERNEL(AccOp::Product, true, S)          \
    ZQ_ACCUMULATE_KERNEL(AccOp::Weighted, false, S)        \
    ZQ_ACCUMULATE_KERNEL(AccOp::Weighted, true, S)
ZQ_ACCUMULATE_KERNELS(Zeq8u)
ZQ_ACCUMULATE_KERNELS(Zeq8s)
ZQ_ACCUMULATE_KERNELS(Zeq16u)
ZQ_ACCUMULATE_KERNELS(Zeq32f)

}  // namespace zq
