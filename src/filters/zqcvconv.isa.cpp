// The two passes of the separable state filters, written once over vectors
// of the compiler: 32-bit integer or float lanes, as many as a register of
// the tier holds. Every lane computes what the scalar edge code computes, in
// the same order, so the tiers agree bit for bit.
#include "filters/zqcvconv.h"
#include "core/zqcvcore.h"

#include <immintrin.h>

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

// N elements of T at p, widened to W lanes (the processor's widening
// loads: the compiler's own conversion goes element by element).
template <class W, int N, class T>
inline typename VecOf<W, N>::type loadAs(const T* p) {
    using V = typename VecOf<W, N>::type;
    if constexpr (std::is_same<T, W>::value) {
        V v;
        __builtin_memcpy(&v, p, sizeof v);
        return v;
    } else {
        constexpr bool sig = std::is_signed<T>::value;
        if constexpr (N == 4) {
            int32_t bytes;
            __builtin_memcpy(&bytes, p, 4);
            const __m128i b = _mm_cvtsi32_si128(bytes);
            if constexpr (sig) {
                const __m128i w = _mm_unpacklo_epi8(b, b);
                return V(_mm_srai_epi32(_mm_unpacklo_epi16(w, w), 24));
            } else {
                const __m128i z = _mm_setzero_si128();
                return V(_mm_unpacklo_epi16(_mm_unpacklo_epi8(b, z), z));
            }
        }
#if ZQ_TIER >= 1
        else if constexpr (N == 8) {
            const __m128i b = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(p));
            return V(sig ? _mm256_cvtepi8_epi32(b) : _mm256_cvtepu8_epi32(b));
        }
#endif
#if ZQ_TIER >= 2
        else {
            const __m128i b = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
            return V(sig ? _mm512_cvtepi8_epi32(b) : _mm512_cvtepu8_epi32(b));
        }
#endif
    }
}

// The taps over values at(offset), in their summing order, K of them. A
// negative weight is added as its signed product: x + s * -w is x - s * w to
// the bit, so no branch is needed.
// With unit weights (all of magnitude 1, as the box and the 3-tap
// difference have) the products are left out: s * 1 is s to the bit.
template <int K, bool Unit, class R, class W, class At>
inline R sumTapsK(const Taps<W>& t, At at) {
    auto term = [&](int i) {
        if constexpr (Unit) return at(t.offset[i]);
        else return at(t.offset[i]) * (t.negative[i] ? -t.weight[i] : t.weight[i]);
    };
    R acc = term(0);
    if (Unit && t.negative[0]) acc = -acc;
    for (int i = 1; i < K; ++i) acc = (Unit && t.negative[i]) ? acc - term(i) : acc + term(i);
    return acc;
}

// The same with the count known only at run time (the second set of
// Laplace, so that the pairs of counts need not all be compiled).
template <class R, class W, class At>
inline R sumTapsN(const Taps<W>& t, At at) {
    R acc = at(t.offset[0]) * (t.negative[0] ? -t.weight[0] : t.weight[0]);
    for (int i = 1; i < t.n; ++i) acc = acc + at(t.offset[i]) * (t.negative[i] ? -t.weight[i] : t.weight[i]);
    return acc;
}

// Runs f with the tap count and whether the weights are units as constants.
template <class W, class F>
inline void withTaps(const Taps<W>& t, F f) {
    auto count = [&](auto unit) {
        switch (t.n) {
        case 1: return f(std::integral_constant<int, 1>(), unit);
        case 2: return f(std::integral_constant<int, 2>(), unit);
        case 3: return f(std::integral_constant<int, 3>(), unit);
        case 4: return f(std::integral_constant<int, 4>(), unit);
        case 5: return f(std::integral_constant<int, 5>(), unit);
        case 6: return f(std::integral_constant<int, 6>(), unit);
        default: return f(std::integral_constant<int, 7>(), unit);
        }
    };
    bool unit = true;
    for (int i = 0; i < t.n; ++i) unit = unit && t.weight[i] == W(1);
    if (unit) count(std::true_type());
    else count(std::false_type());
}

// Non-temporal stores of a register in 16-byte pieces (the destination rows
// of a streamed image are 16-byte aligned, no more).
template <class V>
inline void streamPieces(void* p, V v) {
    for (size_t b = 0; b < sizeof(V); b += 16) {
        __m128i piece;
        __builtin_memcpy(&piece, reinterpret_cast<const char*>(&v) + b, 16);
        _mm_stream_si128(reinterpret_cast<__m128i*>(static_cast<char*>(p) + b), piece);
    }
}

inline int16_t saturate16(int32_t v) { return int16_t(std::min(std::max(v, -32768), 32767)); }

template <class D, class W>
inline void storeOne(D* p, W v) {
    if constexpr (std::is_same<D, Zeq16s>::value) zq::storeu(p, saturate16(v));
    else zq::storeu(p, v);
}

template <class D, int N, bool Stream, class V>
inline void storeVec(D* p, V v) {
    if constexpr (std::is_same<D, Zeq16s>::value) {  // the processor's saturating packs
        if constexpr (N == 4) {
            _mm_storel_epi64(reinterpret_cast<__m128i*>(p), _mm_packs_epi32(__m128i(v), __m128i(v)));
        }
#if ZQ_TIER >= 1
        else if constexpr (N == 8) {
            const __m256i w = __m256i(v);
            const __m128i packed = _mm_packs_epi32(_mm256_castsi256_si128(w), _mm256_extracti128_si256(w, 1));
            if constexpr (Stream) streamPieces(p, packed);
            else _mm_storeu_si128(reinterpret_cast<__m128i*>(p), packed);
        }
#endif
#if ZQ_TIER >= 2
        else {
            const __m256i packed = _mm512_cvtsepi32_epi16(__m512i(v));
            if constexpr (Stream) streamPieces(p, packed);
            else _mm256_storeu_si256(reinterpret_cast<__m256i*>(p), packed);
        }
#endif
    } else if constexpr (Stream) {
        streamPieces(p, v);
    } else {
        __builtin_memcpy(p, &v, sizeof v);
    }
}

}  // namespace

namespace zq {

// Flattened: every lambda and helper below is inlined, so the vectors of
// the wider tiers stay in registers.
template <Isa I, class T, class W>
__attribute__((flatten)) void ownConvRow(const T* src, int width, const Taps<W>& taps, W* out) {
    constexpr int N = isaBytes(I) / 4;
    using V = typename VecOf<W, N>::type;
    int reach = 0;  // the farthest tap from the centre
    for (int i = 0; i < taps.n; ++i) reach = std::max(reach, std::abs(taps.offset[i]));
    withTaps(taps, [&](auto k, auto unit) {
        constexpr int K = decltype(k)::value;
        constexpr bool U = decltype(unit)::value;
        auto scalarAt = [&](int x) {
            zq::storeu(out + x, sumTapsK<K, U, W>(taps, [&](int o) {
                return W(zq::loadu(src + std::min(std::max(x + o, 0), width - 1)));
            }));
        };
        const int left = std::min(reach, width);
        for (int x = 0; x < left; ++x) scalarAt(x);
        int x = left;
        for (; x + N <= width - reach; x += N) {
            const V v = sumTapsK<K, U, V>(taps, [&](int o) { return loadAs<W, N>(src + x + o); });
            __builtin_memcpy(out + x, &v, sizeof v);
        }
        for (; x < width; ++x) scalarAt(x);
    });
}

template <Isa I, class W, class D>
__attribute__((flatten)) void ownConvCol(const W* const* rows, const Taps<W>& taps, const W* const* rows2,
                                         const Taps<W>* taps2, int k2, D* out, int width, bool stream) {
    constexpr int N = isaBytes(I) / 4;
    using V = typename VecOf<W, N>::type;
    withTaps(taps, [&](auto k, auto unit) {
        constexpr int K = decltype(k)::value;
        constexpr bool U = decltype(unit)::value;
        auto sumAt = [&](auto tag, int x) {
            using R = typename decltype(tag)::type;
            auto at = [&](const W* const* r) {
                return [&, r](int o) {
                    if constexpr (std::is_same<R, W>::value) return zq::loadu(r[k2 + o] + x);
                    else return loadAs<W, N>(r[k2 + o] + x);
                };
            };
            R acc = sumTapsK<K, U, R>(taps, at(rows));
            if (taps2) acc = acc + sumTapsN<R>(*taps2, at(rows2));
            return acc;
        };
        auto run = [&](auto streamed) {
            int x = 0;
            for (; x + N <= width; x += N) storeVec<D, N, decltype(streamed)::value>(out + x, sumAt(std::common_type<V>(), x));
            for (; x < width; ++x) storeOne(out + x, sumAt(std::common_type<W>(), x));
        };
        // 16-bit results of the baseline come 8 bytes at a time, too few to stream.
        if (stream && (N > 4 || sizeof(D) == 4)) run(std::true_type());
        else run(std::false_type());
    });
}

template void ownConvRow<ZQ_ISA, Zeq8u, int32_t>(const Zeq8u*, int, const Taps<int32_t>&, int32_t*);
template void ownConvRow<ZQ_ISA, Zeq8s, int32_t>(const Zeq8s*, int, const Taps<int32_t>&, int32_t*);
template void ownConvRow<ZQ_ISA, Zeq32f, float>(const Zeq32f*, int, const Taps<float>&, float*);
template void ownConvCol<ZQ_ISA, int32_t, Zeq16s>(const int32_t* const*, const Taps<int32_t>&, const int32_t* const*,
                                                  const Taps<int32_t>*, int, Zeq16s*, int, bool);
template void ownConvCol<ZQ_ISA, float, Zeq32f>(const float* const*, const Taps<float>&, const float* const*,
                                                const Taps<float>*, int, Zeq32f*, int, bool);

}  // namespace zq
