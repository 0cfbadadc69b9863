// The two passes of the separable state filters, written once over vectors
// of the compiler: 16- or 32-bit integer or float lanes, as many as a
// register of the tier holds. Every lane computes what the scalar edge code computes, in
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

// The count of a set of taps and which of them have unit weights, as
// constants: bit i of Plus marks tap i as +1, of Minus as -1 (never tap 0).
// A unit tap is added or subtracted without its product: s * 1 is s and
// x + s * -1 is x - s, to the bit (NaN included).
template <int K, unsigned Plus = 0, unsigned Minus = 0>
struct Shape {
    static constexpr int k = K;
    static constexpr unsigned plus = Plus, minus = Minus;
};

// The shapes the kernels of the filters have (the summing order puts the
// positive weights first), e.g. 0b0110 / 0b1000 is (1, w, w, -1).
template <class... S>
struct ShapeList {};
using KnownShapes =
    ShapeList<Shape<2, 0b1, 0b10>, Shape<3, 0b111>, Shape<3, 0b011>, Shape<3, 0b101>, Shape<4, 0b0001, 0b1000>,
              Shape<4, 0b0010, 0b0100>, Shape<5, 0b11111>, Shape<5, 0b10001>, Shape<6, 0b000001, 0b100000>,
              Shape<6, 0b000100, 0b001000>, Shape<7, 0b1111111>, Shape<7, 0b0001001, 0b1010000>,
              Shape<7, 0b1000001>>;

// The taps over values at(i) of tap i, in their summing order. A negative
// weight is added as its signed product: x + s * -w is x - s * w to the bit.
template <class S, class R, class At, size_t... I>
inline R sumShape(const Local<S::k, R>& t, At& at, std::index_sequence<I...>) {
    auto term = [&](auto i) {
        constexpr size_t j = decltype(i)::value;
        if constexpr (((S::plus | S::minus) >> j & 1) != 0) return R(at(int(j)));
        else return R(at(int(j)) * t.w[j]);
    };
    R acc = term(std::integral_constant<size_t, 0>());
    auto add = [&](auto i) {
        constexpr size_t j = decltype(i)::value;
        if constexpr ((S::minus >> j & 1) != 0) acc = R(acc - term(i));
        else acc = R(acc + term(i));
    };
    (add(std::integral_constant<size_t, I + 1>()), ...);
    (void)add;  // a single tap adds nothing
    return acc;
}

template <class S, class R, class At>
inline R sumTaps(const Local<S::k, R>& t, At at) {
    return sumShape<S>(t, at, std::make_index_sequence<S::k - 1>());
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
void unitsOf(const Taps<W>& t, unsigned& plus, unsigned& minus) {
    plus = minus = 0;
    for (int i = 0; i < t.n; ++i)
        if (t.weight[i] == W(1)) {
            if (!t.negative[i]) plus |= 1u << i;
            else if (i > 0) minus |= 1u << i;
        }
}

// Runs f with the count of t, every tap weighted.
template <class F>
inline void withCount(int n, F f) {
    switch (n) {
    case 1: return f(Shape<1>());
    case 2: return f(Shape<2>());
    case 3: return f(Shape<3>());
    case 4: return f(Shape<4>());
    case 5: return f(Shape<5>());
    case 6: return f(Shape<6>());
    default: return f(Shape<7>());
    }
}

// Runs f with the shape of t: a known one, else its count.
template <class W, class F, class... S>
inline void withShape(const Taps<W>& t, F f, ShapeList<S...>) {
    unsigned plus, minus;
    unitsOf(t, plus, minus);
    const bool known = ((S::k == t.n && S::plus == plus && S::minus == minus ? (f(S()), true) : false) || ...);
    if (!known) withCount(t.n, f);
}

template <class W, class F>
inline void withTaps(const Taps<W>& t, F f) {
    withShape(t, f, KnownShapes());
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


// One row pass for one shape of taps. Flattened: every lambda and helper
// is inlined, so the vectors of the wider tiers stay in registers. A
// function per shape, not one for all: the compiler's time grows faster
// than the size of the function it optimises.
template <Isa I, class T, class W, class S>
__attribute__((flatten, noinline)) void convRowShaped(const T* src, int width, const Taps<W>& taps, W* out,
                                                      int reach) {
    constexpr int N = isaBytes(I) / int(sizeof(W));
    using V = typename VecOf<W, N>::type;
    const Local<S::k, W> ts(taps);
    const Local<S::k, V> tv(taps);
    auto scalarAt = [&](int x) {
        zq::storeu(out + x, sumTaps<S>(ts, [&](int i) {
            return W(zq::loadu(src + std::min(std::max(x + ts.off[i], 0), width - 1)));
        }));
    };
    const int left = std::min(reach, width);
    for (int x = 0; x < left; ++x) scalarAt(x);
    int x = left;
    auto vectorAt = [&](int x) {
        const V v = sumTaps<S>(tv, [&](int i) { return loadAs<W, N>(src + x + tv.off[i]); });
        __builtin_memcpy(out + x, &v, sizeof v);
    };
    for (; x + N <= width - reach; x += N) vectorAt(x);
    // The pixels short of a whole register before the right edge: one
    // more register ending there, rewriting some with the same values.
    if (x > left && x < width - reach) {
        vectorAt(width - reach - N);
        x = width - reach;
    }
    for (; x < width; ++x) scalarAt(x);
}

// The second set of taps of a column pass: none, or one whose shape is
// known only at run time.
struct NoSet {};
struct RuntimeSet {};

template <class W, class S>
bool hasShape(const Taps<W>& t, S) {
    unsigned plus, minus;
    unitsOf(t, plus, minus);
    return t.n == S::k && plus == S::plus && minus == S::minus;
}

// One column pass for one shape of each set of taps, flattened as the row
// pass is.
template <Isa I, class W, class D, class S, class S2, bool Stream>
__attribute__((flatten, noinline)) void convColShaped(const W* const* rows, const Taps<W>& taps,
                                                      const W* const* rows2, const Taps<W>* taps2, int k2, D* out,
                                                      int width) {
    constexpr int N = isaBytes(I) / int(sizeof(W));
    using V = typename VecOf<W, N>::type;
    constexpr bool fixed2 = !std::is_same<S2, NoSet>::value && !std::is_same<S2, RuntimeSet>::value;
    using T2 = typename std::conditional<fixed2, S2, Shape<1>>::type;
    const Local<S::k, W> ts(taps);
    const Local<S::k, V> tv(taps);
    const Local<T2::k, W> ts2(fixed2 ? *taps2 : taps);
    const Local<T2::k, V> tv2(fixed2 ? *taps2 : taps);
    const W* p[S::k];
    const W* p2[T2::k];
    for (int i = 0; i < S::k; ++i) p[i] = rows[k2 + ts.off[i]];
    for (int i = 0; i < T2::k; ++i) p2[i] = fixed2 ? rows2[k2 + ts2.off[i]] : nullptr;
    auto sumAt = [&](auto tag, int x) {
        using R = typename decltype(tag)::type;
        constexpr bool lanes = !std::is_same<R, W>::value;
        auto load = [&](const W* r) {
            if constexpr (lanes) return loadAs<W, N>(r + x);
            else return zq::loadu(r + x);
        };
        R acc;
        if constexpr (lanes) acc = sumTaps<S>(tv, [&](int i) { return load(p[i]); });
        else acc = sumTaps<S>(ts, [&](int i) { return load(p[i]); });
        if constexpr (fixed2) {
            if constexpr (lanes) acc = acc + sumTaps<T2>(tv2, [&](int i) { return load(p2[i]); });
            else acc = R(acc + sumTaps<T2>(ts2, [&](int i) { return load(p2[i]); }));
        } else if constexpr (std::is_same<S2, RuntimeSet>::value) {
            acc = R(acc + sumTapsN<R>(*taps2, [&](int o) { return load(rows2[k2 + o]); }));
        }
        return acc;
    };
    int x = 0;
    for (; x + N <= width; x += N) storeVec<D, N, Stream>(out + x, sumAt(std::common_type<V>(), x));
    for (; x < width; ++x) storeOne(out + x, sumAt(std::common_type<W>(), x));
}

}  // namespace

namespace zq {

template <Isa I, class T, class W>
void ownConvRow(const T* src, int width, const Taps<W>& taps, W* out) {
    int reach = 0;  // the farthest tap from the centre
    for (int i = 0; i < taps.n; ++i) reach = std::max(reach, std::abs(taps.offset[i]));
    withTaps(taps, [&](auto shape) { convRowShaped<I, T, W, decltype(shape)>(src, width, taps, out, reach); });
}

template <Isa I, class W, class D>
void ownConvCol(const W* const* rows, const Taps<W>& taps, const W* const* rows2, const Taps<W>* taps2, int k2,
                D* out, int width, bool stream) {
    constexpr int N = isaBytes(I) / int(sizeof(W));
    auto withStream = [&](auto shape, auto shape2) {
        using S = decltype(shape);
        using S2 = decltype(shape2);
        // 16-bit results of the baseline come 8 bytes at a time, too few to stream.
        if (stream && (N > 4 || sizeof(D) == 4))
            convColShaped<I, W, D, S, S2, true>(rows, taps, rows2, taps2, k2, out, width);
        else
            convColShaped<I, W, D, S, S2, false>(rows, taps, rows2, taps2, k2, out, width);
    };
    if (taps2 == nullptr) return withTaps(taps, [&](auto shape) { withStream(shape, NoSet()); });
    // The pairs the Laplace kernels make across rows: smoothing, then the
    // second difference (3x3, 5x5 and 7x7).
    using Smooth3 = Shape<3, 0b101>;
    using Smooth5 = Shape<5, 0b10001>;
    using Smooth7 = Shape<7, 0b1000001>;
    using Second3 = Shape<3, 0b011>;
    using Second7 = Shape<7, 0b0001001, 0b1010000>;
    if (hasShape(taps, Smooth3()) && hasShape(*taps2, Second3())) return withStream(Smooth3(), Second3());
    if (hasShape(taps, Smooth5()) && hasShape(*taps2, Second3())) return withStream(Smooth5(), Second3());
    if (hasShape(taps, Smooth7()) && hasShape(*taps2, Second7())) return withStream(Smooth7(), Second7());
    withCount(taps.n, [&](auto shape) { withStream(shape, RuntimeSet()); });
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
