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
    } else if constexpr (sizeof(W) == 2) {
        constexpr bool sig = std::is_signed<T>::value;
        if constexpr (N == 8) {
            const __m128i b = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(p));
            if constexpr (sig) return V(_mm_srai_epi16(_mm_unpacklo_epi8(b, b), 8));
            else return V(_mm_unpacklo_epi8(b, _mm_setzero_si128()));
        }
#if ZQ_TIER >= 1
        else if constexpr (N == 16) {
            const __m128i b = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
            return V(sig ? _mm256_cvtepi8_epi16(b) : _mm256_cvtepu8_epi16(b));
        }
#endif
#if ZQ_TIER >= 2
        else {
            const __m256i b = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p));
            return V(sig ? _mm512_cvtepi8_epi16(b) : _mm512_cvtepu8_epi16(b));
        }
#endif
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

// How the taps of one pass are summed. Weighted: each value times its
// signed weight. Sum and Diff serve unit weights (the box, the 3-tap
// difference) without products, s * 1 being s to the bit: Sum adds them all,
// Diff takes the first and subtracts the others.
enum class Mode { Weighted, Sum, Diff };

// The taps of a pass copied into locals before a loop, weights signed and
// splat to R: held there, no store to the output can be taken to change
// them, so they stay in registers instead of being read again per vector.
template <int K, class R>
struct Local {
    int off[K];
    R w[K];
    template <class W>
    explicit Local(const Taps<W>& t) {
        for (int i = 0; i < K; ++i) {
            off[i] = t.offset[i];
            const W v = t.negative[i] ? W(-t.weight[i]) : t.weight[i];
            if constexpr (std::is_arithmetic<R>::value) w[i] = v;
            else
                for (size_t j = 0; j < sizeof(R) / sizeof(W); ++j) w[i][j] = v;
        }
    }
};

// The taps over values at(i) of tap i, in their summing order. A negative
// weight is added as its signed product: x + s * -w is x - s * w to the bit.
template <Mode M, int K, class R, class At>
inline R sumTaps(const Local<K, R>& t, At at) {
    auto term = [&](int i) {
        if constexpr (M == Mode::Weighted) return R(at(i) * t.w[i]);
        else return R(at(i));
    };
    R acc = term(0);
    for (int i = 1; i < K; ++i) acc = M == Mode::Diff ? R(acc - term(i)) : R(acc + term(i));
    return acc;
}

// The same for taps whose count is known only at run time: a kernel pair
// no filter makes, summed as the others are.
template <class R, class W, class At>
inline R sumTapsN(const Taps<W>& t, At at) {
    const Local<1, R> first(t);
    R acc = R(at(t.offset[0]) * first.w[0]);
    for (int i = 1; i < t.n; ++i) {
        Taps<W> one;
        one.offset[0] = t.offset[i], one.weight[0] = t.weight[i], one.negative[0] = t.negative[i];
        acc = R(acc + at(t.offset[i]) * Local<1, R>(one).w[0]);
    }
    return acc;
}

template <class W>
Mode modeOf(const Taps<W>& t) {
    bool unit = true, sum = true, diff = !t.negative[0];
    for (int i = 0; i < t.n; ++i) {
        unit = unit && t.weight[i] == W(1);
        sum = sum && !t.negative[i];
        diff = diff && (i == 0 || t.negative[i]);
    }
    if (unit && sum) return Mode::Sum;
    if (unit && diff) return Mode::Diff;
    return Mode::Weighted;
}

// Runs f with the tap count and the mode as constants.
template <class W, class F>
inline void withTaps(const Taps<W>& t, F f) {
    auto count = [&](auto mode) {
        switch (t.n) {
        case 1: return f(std::integral_constant<int, 1>(), mode);
        case 2: return f(std::integral_constant<int, 2>(), mode);
        case 3: return f(std::integral_constant<int, 3>(), mode);
        case 4: return f(std::integral_constant<int, 4>(), mode);
        case 5: return f(std::integral_constant<int, 5>(), mode);
        case 6: return f(std::integral_constant<int, 6>(), mode);
        default: return f(std::integral_constant<int, 7>(), mode);
        }
    };
    switch (modeOf(t)) {
    case Mode::Sum: return count(std::integral_constant<Mode, Mode::Sum>());
    case Mode::Diff: return count(std::integral_constant<Mode, Mode::Diff>());
    default: return count(std::integral_constant<Mode, Mode::Weighted>());
    }
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
    if constexpr (sizeof(v[0]) == sizeof(D)) {
        if constexpr (Stream) streamPieces(p, v);
        else __builtin_memcpy(p, &v, sizeof v);
    } else if constexpr (std::is_same<D, Zeq16s>::value) {  // the processor's saturating packs
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
    constexpr int N = isaBytes(I) / int(sizeof(W));
    using V = typename VecOf<W, N>::type;
    int reach = 0;  // the farthest tap from the centre
    for (int i = 0; i < taps.n; ++i) reach = std::max(reach, std::abs(taps.offset[i]));
    withTaps(taps, [&](auto k, auto mode) {
        constexpr int K = decltype(k)::value;
        constexpr Mode M = decltype(mode)::value;
        const Local<K, W> ts(taps);
        const Local<K, V> tv(taps);
        auto scalarAt = [&](int x) {
            zq::storeu(out + x, sumTaps<M>(ts, [&](int i) {
                return W(zq::loadu(src + std::min(std::max(x + ts.off[i], 0), width - 1)));
            }));
        };
        const int left = std::min(reach, width);
        for (int x = 0; x < left; ++x) scalarAt(x);
        int x = left;
        for (; x + N <= width - reach; x += N) {
            const V v = sumTaps<M>(tv, [&](int i) { return loadAs<W, N>(src + x + tv.off[i]); });
            __builtin_memcpy(out + x, &v, sizeof v);
        }
        for (; x < width; ++x) scalarAt(x);
    });
}

template <Isa I, class W, class D>
__attribute__((flatten)) void ownConvCol(const W* const* rows, const Taps<W>& taps, const W* const* rows2,
                                         const Taps<W>* taps2, int k2, D* out, int width, bool stream) {
    constexpr int N = isaBytes(I) / int(sizeof(W));
    using V = typename VecOf<W, N>::type;
    // K2: the count of the second set of taps, 0 without one, -1 when it is
    // known only at run time.
    auto go = [&](auto k, auto mode, auto k2c, auto streamed) {
        constexpr int K = decltype(k)::value, K2 = decltype(k2c)::value, K2n = K2 > 0 ? K2 : 1;
        constexpr Mode M = decltype(mode)::value;
        const Local<K, W> ts(taps);
        const Local<K, V> tv(taps);
        const Local<K2n, W> ts2(K2 > 0 ? *taps2 : taps);
        const Local<K2n, V> tv2(K2 > 0 ? *taps2 : taps);
        const W* p[K];
        const W* p2[K2n];
        for (int i = 0; i < K; ++i) p[i] = rows[k2 + ts.off[i]];
        for (int i = 0; i < K2n; ++i) p2[i] = K2 > 0 ? rows2[k2 + ts2.off[i]] : nullptr;
        auto sumAt = [&](auto tag, int x) {
            using R = typename decltype(tag)::type;
            constexpr bool lanes = !std::is_same<R, W>::value;
            auto load = [&](const W* r) {
                if constexpr (lanes) return loadAs<W, N>(r + x);
                else return zq::loadu(r + x);
            };
            R acc;
            if constexpr (lanes) acc = sumTaps<M>(tv, [&](int i) { return load(p[i]); });
            else acc = sumTaps<M>(ts, [&](int i) { return load(p[i]); });
            if constexpr (K2 > 0) {
                if constexpr (lanes) acc = acc + sumTaps<Mode::Weighted>(tv2, [&](int i) { return load(p2[i]); });
                else acc = R(acc + sumTaps<Mode::Weighted>(ts2, [&](int i) { return load(p2[i]); }));
            } else if constexpr (K2 < 0) {
                acc = R(acc + sumTapsN<R>(*taps2, [&](int o) { return load(rows2[k2 + o]); }));
            }
            return acc;
        };
        int x = 0;
        for (; x + N <= width; x += N)
            storeVec<D, N, decltype(streamed)::value>(out + x, sumAt(std::common_type<V>(), x));
        for (; x < width; ++x) storeOne(out + x, sumAt(std::common_type<W>(), x));
    };
    auto withStream = [&](auto k, auto mode, auto k2c) {
        // 16-bit results of the baseline come 8 bytes at a time, too few to stream.
        if (stream && (N > 4 || sizeof(D) == 4)) go(k, mode, k2c, std::true_type());
        else go(k, mode, k2c, std::false_type());
    };
    using Weighted = std::integral_constant<Mode, Mode::Weighted>;
    using C3 = std::integral_constant<int, 3>;
    using C5 = std::integral_constant<int, 5>;
    using C7 = std::integral_constant<int, 7>;
    if (taps2 == nullptr) {
        withTaps(taps, [&](auto k, auto mode) { withStream(k, mode, std::integral_constant<int, 0>()); });
    } else if (modeOf(taps) == Mode::Weighted && modeOf(*taps2) == Mode::Weighted) {
        // The pairs of counts the Laplace kernels have.
        if (taps.n == 3 && taps2->n == 3) return withStream(C3(), Weighted(), C3());
        if (taps.n == 5 && taps2->n == 3) return withStream(C5(), Weighted(), C3());
        if (taps.n == 7 && taps2->n == 7) return withStream(C7(), Weighted(), C7());
        withTaps(taps, [&](auto k, auto mode) { withStream(k, mode, std::integral_constant<int, -1>()); });
    } else {
        withTaps(taps, [&](auto k, auto mode) { withStream(k, mode, std::integral_constant<int, -1>()); });
    }
}

template void ownConvRow<ZQ_ISA, Zeq8u, int16_t>(const Zeq8u*, int, const Taps<int16_t>&, int16_t*);
template void ownConvRow<ZQ_ISA, Zeq8s, int16_t>(const Zeq8s*, int, const Taps<int16_t>&, int16_t*);
template void ownConvRow<ZQ_ISA, Zeq8u, int32_t>(const Zeq8u*, int, const Taps<int32_t>&, int32_t*);
template void ownConvRow<ZQ_ISA, Zeq8s, int32_t>(const Zeq8s*, int, const Taps<int32_t>&, int32_t*);
template void ownConvRow<ZQ_ISA, Zeq32f, float>(const Zeq32f*, int, const Taps<float>&, float*);
template void ownConvCol<ZQ_ISA, int16_t, Zeq16s>(const int16_t* const*, const Taps<int16_t>&,
                                                  const int16_t* const*, const Taps<int16_t>*, int, Zeq16s*, int,
                                                  bool);
template void ownConvCol<ZQ_ISA, int32_t, Zeq16s>(const int32_t* const*, const Taps<int32_t>&, const int32_t* const*,
                                                  const Taps<int32_t>*, int, Zeq16s*, int, bool);
template void ownConvCol<ZQ_ISA, float, Zeq32f>(const float* const*, const Taps<float>&, const float* const*,
                                                const Taps<float>*, int, Zeq32f*, int, bool);

}  // namespace zq
