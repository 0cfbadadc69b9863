// Copying the pixels of a line, written once over the tier's registers.
//
// Each step waits on the error of the step before, so a long line is not
// walked point by point. The error stays in [0, plusDelta): after L steps it
// has lost L x minusDelta = q x plusDelta + r, and the position has moved
// q + 1 times sideways when err - r is negative, q times otherwise. Registers
// of L points' errors and byte offsets thus advance L points at once; the
// pixels are then copied from the offsets (gathered, for 4-byte pixels on the
// wider tiers). The first L points and the last few are walked one at a time.
#include "core/zqcvcore.h"
#include "core/zqcvregs.h"
#include "motion/zqcvsampleline.h"

#include <cstdlib>

namespace {

using zq::Isa;
using zq::LineIterator;

// A walk one point at a time, positions as byte offsets from the first point
// so that the step past the last one forms no pointer. E holds the error:
// 32 bits unless twice the major length needs more.
template <class E>
struct Walk {
    E plusDelta, minusDelta;
    ptrdiff_t plusStep, minusStep;

    explicit Walk(const LineIterator& it)
        : plusDelta(E(it.plusDelta)), minusDelta(E(it.minusDelta)), plusStep(it.plusStep), minusStep(it.minusStep) {}

    // Copies points [from, to) of the line, the walk being at point `from`.
    template <int PixelBytes>
    void copy(const Zeq8u* base, ptrdiff_t& offset, E& err, int from, int to, Zeq8u* dst) const {
        for (int i = from; i < to; ++i) {
            std::memcpy(dst + ptrdiff_t(i) * PixelBytes, base + offset, PixelBytes);
            // The sideways step through a mask: the branch would be unpredictable.
            err -= minusDelta;
            const E negative = err >> (8 * sizeof(E) - 1);
            offset += minusStep + (plusStep & ptrdiff_t(negative));
            err += plusDelta & negative;
        }
    }
};

// Whether the byte offsets of `points` points fit 32-bit lanes.
inline bool offsetsFit(const LineIterator& it, int64_t points) {
    const int64_t reach = points * (std::abs(int64_t(it.minusStep)) + std::abs(int64_t(it.plusStep)));
    return reach <= INT32_MAX;
}

// One pixel of a block. Pixels of 3, 6 and 12 bytes move as 4, 8 and 16.
// The extra bytes read belong to the image (the next pixel, or the start of
// the next row) for every pixel but the bottom-right one, which can only be
// an end of a line, and blocks copy neither end. The extra bytes written are
// the next point's, written after.
template <int PixelBytes>
inline void copyPixel(Zeq8u* dst, const Zeq8u* src) {
    constexpr int wide = PixelBytes == 3 ? 4 : PixelBytes == 6 ? 8 : PixelBytes == 12 ? 16 : PixelBytes;
    std::memcpy(dst, src, wide);
}

// One register of 4-byte pixels from base + offsets.
template <Isa I>
inline typename zq::Regs<I>::I gather32(const Zeq8u* base, typename zq::Regs<I>::I offsets) {
    if constexpr (I == Isa::Avx512) return _mm512_i32gather_epi32(offsets, base, 1);
    else return _mm256_i32gather_epi32(reinterpret_cast<const int*>(base), offsets, 1);
}

}  // namespace

namespace zq {

template <Isa I, int PixelBytes>
void ownSampleLine(const LineIterator& it, int n, Zeq8u* dst) {
    using R = Regs<I>;
    using V = typename R::I;
    constexpr int L = R::template lanes<int32_t>;
    if (it.plusDelta > INT32_MAX) {
        ptrdiff_t offset = 0;
        int64_t err = it.err;
        Walk<int64_t>(it).copy<PixelBytes>(it.ptr, offset, err, 0, n, dst);
        return;
    }
    const Walk<int32_t> walk(it);
    ptrdiff_t offset = 0;
    int32_t err = int32_t(it.err);
    if (n < 2 * L || !offsetsFit(it, int64_t(n) + L)) {
        walk.copy<PixelBytes>(it.ptr, offset, err, 0, n, dst);
        return;
    }
    // The first L points one at a time, keeping the state of each.
    alignas(64) int32_t errs[L], offsets[L];
    for (int j = 0; j < L; ++j) {
        errs[j] = err, offsets[j] = int32_t(offset);
        walk.copy<PixelBytes>(it.ptr, offset, err, j, j + 1, dst);
    }
    const int64_t lowered = int64_t(L) * it.minusDelta;
    const int32_t q = int32_t(lowered / it.plusDelta), r = int32_t(lowered % it.plusDelta);
    const V rest = R::set1_32(r), plusDelta = R::set1_32(walk.plusDelta), plusStep = R::set1_32(int32_t(walk.plusStep));
    const V forward = R::set1_32(int32_t(L * walk.minusStep + q * walk.plusStep));
    V e = R::load(errs), o = R::load(offsets);
    auto advance = [&] {
        e = R::sub32(e, rest);
        const V negative = R::cmpgtI32(R::zero(), e);
        o = R::add32(o, R::add32(forward, R::andi(negative, plusStep)));
        e = R::add32(e, R::andi(negative, plusDelta));
    };
    advance();
    int i = L;
    for (; i + L < n; i += L) {  // the last point is left to the walk
        Zeq8u* out = dst + ptrdiff_t(i) * PixelBytes;
        if constexpr (PixelBytes == 4 && I != Isa::Sse2) {
            R::store(out, gather32<I>(it.ptr, o));
        } else {
            R::store(offsets, o);
            for (int j = 0; j < L; ++j) copyPixel<PixelBytes>(out + j * PixelBytes, it.ptr + offsets[j]);
        }
        advance();
    }
    R::store(errs, e);
    R::store(offsets, o);
    offset = offsets[0], err = errs[0];
    walk.copy<PixelBytes>(it.ptr, offset, err, i, n, dst);
}

#define ZQ_SAMPLE_LINE_KERNEL(PIXEL_BYTES) \
    template void ownSampleLine<ZQ_ISA, PIXEL_BYTES>(const LineIterator&, int, Zeq8u*);
ZQ_SAMPLE_LINE_KERNEL(1)   // 8u C1
ZQ_SAMPLE_LINE_KERNEL(2)   // 16u C1
ZQ_SAMPLE_LINE_KERNEL(3)   // 8u C3
ZQ_SAMPLE_LINE_KERNEL(4)   // 32f C1
ZQ_SAMPLE_LINE_KERNEL(6)   // 16u C3
ZQ_SAMPLE_LINE_KERNEL(12)  // 32f C3

}  // namespace zq
