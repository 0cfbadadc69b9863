// The motion-history kernel, written once over the tier's registers: blocks
// of four float registers of pixels, then one pixel at a time.
//
// 8u and 16u silhouettes decide the age of a history value on its bits read
// as a signed integer, through the order key k(v) = (v & 0x7fffffff) ^ (v >> 31),
// which orders floats as their values do except that -0.0 sorts below +0.0 and
// NaNs sort by their bits (a positive NaN above everything, a negative one
// below). A value is cleared when k(h) < k(oldest). For a positive oldest time
// that is the same test as the raw bits of h against k(oldest), since every
// negative h has negative bits, so the key serves both cases.
//
// 32f silhouettes use float compares: a value is kept when h >= oldest, so a
// NaN is cleared and -0.0 counts as +0.0.
#include "core/zqcvcore.h"
#include "core/zqcvregs.h"
#include "motion/zqcvmotion.h"

#include <algorithm>
#include <type_traits>

namespace {

using zq::Isa;

inline int32_t orderKey(int32_t bits) { return (bits & 0x7fffffff) ^ (bits >> 31); }

inline int32_t bitsAt(const Zeq32f* p) {
    int32_t b;
    std::memcpy(&b, p, 4);
    return b;
}

// What a call writes and compares with.
struct Stamp {
    Zeq32f time, oldest;
    int32_t timeBits, oldestKey;
};

template <class S>
inline void updatePixel(const S* s, Zeq32f* h, const Stamp& st) {
    const S sv = zq::loadu(s);
    if constexpr (std::is_same<S, Zeq32f>::value) {
        const Zeq32f hv = zq::loadu(h);
        zq::storeu(h, (sv < 0.0f || sv > 0.0f) ? st.time : (hv >= st.oldest ? hv : 0.0f));
    } else {
        const int32_t hb = bitsAt(h);
        const int32_t out = sv != 0 ? st.timeBits : (orderKey(hb) < st.oldestKey ? 0 : hb);
        std::memcpy(h, &out, 4);
    }
}

// All-ones 32-bit lanes where the silhouette is zero, for four float
// registers of pixels.
template <class R>
inline void unsetLanes(const Zeq8u* s, typename R::I out[4]) {
    typename R::I w[2];
    R::widenI8(R::cmpeq8(R::load(s), R::zero()), w[0], w[1]);
    R::widenI16(w[0], out[0], out[1]);
    R::widenI16(w[1], out[2], out[3]);
}
template <class R>
inline void unsetLanes(const Zeq16u* s, typename R::I out[4]) {
    constexpr int L = R::template lanes<Zeq16u>;
    for (int k = 0; k < 2; ++k) R::widenI16(R::cmpeq16(R::load(s + k * L), R::zero()), out[2 * k], out[2 * k + 1]);
}

// Whole blocks of pixels i.. of a row; returns the first pixel not done.
template <class R, class S>
inline ptrdiff_t updateBlocks(const S* s, Zeq32f* h, ptrdiff_t i, ptrdiff_t n, const Stamp& st) {
    constexpr int L = R::template lanes<float>, block = 4 * L;
    if constexpr (std::is_same<S, Zeq32f>::value) {
        using F = typename R::F;
        const F time = R::set1f(st.time), oldest = R::set1f(st.oldest), zero = R::zerof();
        for (; i + block <= n; i += block)
            for (int k = 0; k < 4; ++k) {
                const F sv = R::loadf(s + i + k * L), hv = R::loadf(h + i + k * L);
                const F set = R::orf(R::cmplt(sv, zero), R::cmplt(zero, sv));
                R::storef(h + i + k * L, R::select(set, time, R::andf(R::cmple(oldest, hv), hv)));
            }
    } else {
        using V = typename R::I;
        const V time = R::set1_32(st.timeBits), oldestKey = R::set1_32(st.oldestKey);
        const V magnitude = R::set1_32(0x7fffffff);
        for (; i + block <= n; i += block) {
            V unset[4];
            unsetLanes<R>(s + i, unset);
            for (int k = 0; k < 4; ++k) {
                const V hv = R::load(h + i + k * L);
                const V key = R::xori(R::andi(hv, magnitude), R::srai32(hv, 31));
                const V kept = R::andnoti(R::cmpgtI32(oldestKey, key), hv);
                R::store(h + i + k * L, R::select(unset[k], kept, time));
            }
        }
    }
    return i;
}

// One row. On the wider tiers single pixels first bring the history to the
// register alignment (when its pixels are 4-byte aligned at all): wide stores
// across cache lines cost more than those pixels. What the wide blocks leave
// goes through SSE2 blocks, then one pixel at a time.
template <Isa I, class S>
inline void updateRow(const S* s, Zeq32f* h, ptrdiff_t n, const Stamp& st) {
    ptrdiff_t i = 0;
    if constexpr (I != Isa::Sse2) {
        using R = zq::Regs<I>;
        const uintptr_t misalign = reinterpret_cast<uintptr_t>(h) % R::bytes;
        const ptrdiff_t head = misalign % 4 ? 0 : ptrdiff_t((R::bytes - misalign) % R::bytes / 4);
        for (; i < std::min(head, n); ++i) updatePixel(s + i, h + i, st);
        i = updateBlocks<R>(s, h, i, n, st);
    }
    i = updateBlocks<zq::Regs<Isa::Sse2>>(s, h, i, n, st);
    for (; i < n; ++i) updatePixel(s + i, h + i, st);
}

}  // namespace

namespace zq {

// The region, as one long row when no row has padding.
template <Isa I, class S>
void ownUpdateMotionHistory(const S* sil, ptrdiff_t silStep, Zeq32f* mhi, ptrdiff_t mhiStep, ZeqiSize roi,
                            Zeq32f timestamp, Zeq32f oldest) {
    const Stamp st{timestamp, oldest, bitsAt(&timestamp), orderKey(bitsAt(&oldest))};
    if (contiguousRows<S>(roi.width, silStep) && contiguousRows<Zeq32f>(roi.width, mhiStep)) {
        updateRow<I>(sil, mhi, ptrdiff_t(roi.width) * roi.height, st);
        return;
    }
    for (int y = 0; y < roi.height; ++y) updateRow<I>(row(sil, silStep, y), row(mhi, mhiStep, y), roi.width, st);
}

#define ZQ_MOTION_KERNEL(S)                                                                                  \
    template void ownUpdateMotionHistory<ZQ_ISA, S>(const S*, ptrdiff_t, Zeq32f*, ptrdiff_t, ZeqiSize, Zeq32f, \
                                                    Zeq32f);
ZQ_MOTION_KERNEL(Zeq8u)
ZQ_MOTION_KERNEL(Zeq16u)
ZQ_MOTION_KERNEL(Zeq32f)

}  // namespace zq
