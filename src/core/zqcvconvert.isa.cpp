// The 8-bit to float row conversion, written once over the tier's registers.
// Every value converts exactly, so all tiers give the same bits.
#include "core/zqcvconvert.h"
#include "core/zqcvcore.h"
#include "core/zqcvregs.h"

#include <type_traits>

namespace {

using zq::Isa;

// One register of floats from as many 8-bit values.
template <Isa I, class S>
inline typename zq::Regs<I>::F floats(const S* p) {
    using R = zq::Regs<I>;
    constexpr bool sig = std::is_signed<S>::value;
    if constexpr (I == Isa::Sse2) {
        typename R::I w, d, unused;
        if constexpr (sig) R::widenI8(R::loadQuarter(p), w, unused), R::widenI16(w, d, unused);
        else R::widenU8(R::loadQuarter(p), w, unused), R::widenU16(w, d, unused);
        return R::cvti32_f(d);
    } else if constexpr (I == Isa::Avx2) {
        const __m128i v = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(p));
        return _mm256_cvtepi32_ps(sig ? _mm256_cvtepi8_epi32(v) : _mm256_cvtepu8_epi32(v));
    } else {
        const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
        return _mm512_cvtepi32_ps(sig ? _mm512_cvtepi8_epi32(v) : _mm512_cvtepu8_epi32(v));
    }
}

// Four registers of floats; SSE2 widens one whole register of bytes.
template <Isa I, class S>
inline void floats4(const S* p, typename zq::Regs<I>::F f[4]) {
    using R = zq::Regs<I>;
    if constexpr (I == Isa::Sse2) {
        typename R::I w[2], d[4];
        if constexpr (std::is_signed<S>::value) R::widenI8(R::load(p), w[0], w[1]);
        else R::widenU8(R::load(p), w[0], w[1]);
        for (int k = 0; k < 2; ++k) {
            if constexpr (std::is_signed<S>::value) R::widenI16(w[k], d[2 * k], d[2 * k + 1]);
            else R::widenU16(w[k], d[2 * k], d[2 * k + 1]);
        }
        for (int k = 0; k < 4; ++k) f[k] = R::cvti32_f(d[k]);
    } else {
        for (int k = 0; k < 4; ++k) f[k] = floats<I>(p + k * R::template lanes<float>);
    }
}

}  // namespace

namespace zq {

// The output is four times the input, so the stores decide the speed: the
// destination is brought to a register boundary first (when it is a whole
// number of floats off one), then written a register at a time.
template <Isa I, bool Stream, class S>
void ownConvertRow_32f(const S* src, Zeq32f* dst, ptrdiff_t n) {
    using R = Regs<I>;
    constexpr int L = R::template lanes<float>;
    const uintptr_t off = reinterpret_cast<uintptr_t>(dst) & (R::bytes - 1);
    ptrdiff_t i = (off & 3) ? 0 : ptrdiff_t((R::bytes - off) & (R::bytes - 1)) / 4;
    if (i > n) i = n;
    for (ptrdiff_t k = 0; k < i; ++k) storeu(dst + k, Zeq32f(src[k]));
    // Streaming needs the boundary.
    const bool stream = Stream && I == Isa::Sse2 && (off & 3) == 0;
    for (; i + 4 * L <= n; i += 4 * L) {
        typename R::F f[4];
        floats4<I>(src + i, f);
        for (int k = 0; k < 4; ++k) {
            if constexpr (I == Isa::Sse2) {
                if (stream) _mm_stream_ps(dst + i + k * L, f[k]);
                else R::storef(dst + i + k * L, f[k]);
            } else {
                R::storef(dst + i + k * L, f[k]);
            }
        }
    }
    for (; i + L <= n; i += L) R::storef(dst + i, floats<I>(src + i));
    for (; i < n; ++i) storeu(dst + i, Zeq32f(src[i]));
}

template void ownConvertRow_32f<ZQ_ISA, false, Zeq8u>(const Zeq8u*, Zeq32f*, ptrdiff_t);
template void ownConvertRow_32f<ZQ_ISA, true, Zeq8u>(const Zeq8u*, Zeq32f*, ptrdiff_t);
template void ownConvertRow_32f<ZQ_ISA, false, Zeq8s>(const Zeq8s*, Zeq32f*, ptrdiff_t);
template void ownConvertRow_32f<ZQ_ISA, true, Zeq8s>(const Zeq8s*, Zeq32f*, ptrdiff_t);

}  // namespace zq
