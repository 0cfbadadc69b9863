// The block copy with the tier's registers.
#include "core/zqcvregs.h"
#include "core/zqcvvector.h"

namespace zq {

// One unaligned register at each end, and whole registers in between from
// the destination's first register boundary. Every block is loaded before it
// is stored, so src == dst is harmless.
template <Isa I>
void ownsCopyWide_8u(const Zeq8u* src, Zeq8u* dst, ptrdiff_t len) {
    using R = Regs<I>;
    constexpr int W = R::bytes;
    const typename R::I first = R::load(src), last = R::load(src + len - W);
    ptrdiff_t i = ptrdiff_t(W - (reinterpret_cast<uintptr_t>(dst) & (W - 1)));
    for (; i + 4 * W <= len; i += 4 * W) {
        typename R::I v[4];
        for (int k = 0; k < 4; ++k) v[k] = R::load(src + i + k * W);
        for (int k = 0; k < 4; ++k) R::store(dst + i + k * W, v[k]);
    }
    for (; i + W <= len; i += W) R::store(dst + i, R::load(src + i));
    R::store(dst, first);
    R::store(dst + len - W, last);
}

template void ownsCopyWide_8u<ZQ_ISA>(const Zeq8u*, Zeq8u*, ptrdiff_t);

}  // namespace zq
