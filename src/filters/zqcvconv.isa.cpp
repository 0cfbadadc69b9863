// The two passes of the separable state filters, written once over vectors
// of the compiler: 32-bit integer or float lanes, as many as a register of
// the tier holds. Every lane computes what the scalar edge code computes, in
// the same order, so the tiers agree bit for bit.
#include "filters/zqcvconv.h"
#include "core/zqcvcore.h"

#include <algorithm>
#include <cstdlib>
#include <type_traits>

// The wider vectors below are only ever used inside functions compiled for
// their tier; the note about passing them between functions does not apply.
#pragma GCC diagnostic ignored "-Wpsabi"

namespace {

using zq::Isa;
using zq::Taps;

template <class E, int N>
struct VecOf {
    typedef E type __attribute__((vector_size(sizeof(E) * N)));
};

// N elements of T at p, widened to W lanes.
template <class W, int N, class T>
inline typename VecOf<W, N>::type loadAs(const T* p) {
    typename VecOf<T, N>::type v;
    __builtin_memcpy(&v, p, sizeof v);
    if constexpr (std::is_same<T, W>::value) return v;
    else return __builtin_convertvector(v, typename VecOf<W, N>::type);
}

// The taps over values at(offset), in their summing order.
template <class R, class W, class At>
inline R sumTaps(const Taps<W>& t, At at) {
    R acc = at(t.offset[0]) * t.weight[0];
    if (t.negative[0]) acc = -acc;
    for (int i = 1; i < t.n; ++i) {
        const R term = at(t.offset[i]) * t.weight[i];
        acc = t.negative[i] ? acc - term : acc + term;
    }
    return acc;
}

inline int16_t saturate16(int32_t v) { return int16_t(std::min(std::max(v, -32768), 32767)); }

template <class D, class W>
inline void storeOne(D* p, W v) {
    if constexpr (std::is_same<D, Zeq16s>::value) zq::storeu(p, saturate16(v));
    else zq::storeu(p, v);
}

template <class D, int N, class V>
inline void storeVec(D* p, V v) {
    if constexpr (std::is_same<D, Zeq16s>::value) {
        using I32 = typename VecOf<int32_t, N>::type;
        const I32 lo = I32{} - 32768, hi = I32{} + 32767;
        v = v < lo ? lo : v;
        v = v > hi ? hi : v;
        const auto narrow = __builtin_convertvector(v, typename VecOf<int16_t, N>::type);
        __builtin_memcpy(p, &narrow, sizeof narrow);
    } else {
        __builtin_memcpy(p, &v, sizeof v);
    }
}

}  // namespace

namespace zq {

template <Isa I, class T, class W>
void ownConvRow(const T* src, int width, const Taps<W>& taps, W* out) {
    constexpr int N = isaBytes(I) / 4;
    using V = typename VecOf<W, N>::type;
    int reach = 0;  // the farthest tap from the centre
    for (int i = 0; i < taps.n; ++i) reach = std::max(reach, std::abs(taps.offset[i]));
    auto scalarAt = [&](int x) {
        const W v = sumTaps<W>(taps, [&](int o) { return W(zq::loadu(src + std::min(std::max(x + o, 0), width - 1))); });
        zq::storeu(out + x, v);
    };
    const int left = std::min(reach, width);
    for (int x = 0; x < left; ++x) scalarAt(x);
    int x = left;
    for (; x + N <= width - reach; x += N) {
        const V v = sumTaps<V>(taps, [&](int o) { return loadAs<W, N>(src + x + o); });
        __builtin_memcpy(out + x, &v, sizeof v);
    }
    for (; x < width; ++x) scalarAt(x);
}

template <Isa I, class W, class D>
void ownConvCol(const W* const* rows, const Taps<W>& taps, const W* const* rows2, const Taps<W>* taps2, int k2,
                D* out, int width) {
    constexpr int N = isaBytes(I) / 4;
    using V = typename VecOf<W, N>::type;
    auto sumAt = [&](auto tag, int x) {
        using R = typename decltype(tag)::type;
        auto at = [&](const W* const* r) {
            return [&, r](int o) {
                if constexpr (std::is_same<R, W>::value) return zq::loadu(r[k2 + o] + x);
                else return loadAs<W, N>(r[k2 + o] + x);
            };
        };
        R acc = sumTaps<R>(taps, at(rows));
        if (taps2) acc = acc + sumTaps<R>(*taps2, at(rows2));
        return acc;
    };
    int x = 0;
    for (; x + N <= width; x += N) storeVec<D, N>(out + x, sumAt(std::common_type<V>(), x));
    for (; x < width; ++x) storeOne(out + x, sumAt(std::common_type<W>(), x));
}

template void ownConvRow<ZQ_ISA, Zeq8u, int32_t>(const Zeq8u*, int, const Taps<int32_t>&, int32_t*);
template void ownConvRow<ZQ_ISA, Zeq8s, int32_t>(const Zeq8s*, int, const Taps<int32_t>&, int32_t*);
template void ownConvRow<ZQ_ISA, Zeq32f, float>(const Zeq32f*, int, const Taps<float>&, float*);
template void ownConvCol<ZQ_ISA, int32_t, Zeq16s>(const int32_t* const*, const Taps<int32_t>&, const int32_t* const*,
                                                  const Taps<int32_t>*, int, Zeq16s*, int);
template void ownConvCol<ZQ_ISA, float, Zeq32f>(const float* const*, const Taps<float>&, const float* const*,
                                                const Taps<float>*, int, Zeq32f*, int);

}  // namespace zq
