// SSE2 building blocks shared by the element-wise kernels: one 128-bit
// register type per element type, and row/region loops that run an operation
// over two registers (32 bytes) at a time, then one, then a scalar tail.
//
// An operation is a functor with one call operator for the register type and
// one for the element type; both must compute the same thing bit for bit.
// Every register is loaded before it is stored, so a destination equal to a
// source (same pointer, same step) is safe.
#ifndef ZQCV_SIMD_H
#define ZQCV_SIMD_H

#include "core/zqcvcore.h"
#include "core/zqcvregs.h"

#include <emmintrin.h>

namespace zq {

template <class T, bool IsFloat = std::is_same<T, Zeq32f>::value>
struct Vec {  // integer elements
    using type = __m128i;
    static constexpr int lanes = 16 / int(sizeof(T));
    static type load(const T* p) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p)); }
    static void store(T* p, type v) { _mm_storeu_si128(reinterpret_cast<__m128i*>(p), v); }
    static void stream(T* p, type v) { _mm_stream_si128(reinterpret_cast<__m128i*>(p), v); }
};

template <class T>
struct Vec<T, true> {  // 32-bit float elements
    using type = __m128;
    static constexpr int lanes = 4;
    static type load(const T* p) { return _mm_loadu_ps(p); }
    static void store(T* p, type v) { _mm_storeu_ps(p, v); }
    static void stream(T* p, type v) { _mm_stream_ps(p, v); }
};

inline bool aligned16(const void* p) { return (reinterpret_cast<uintptr_t>(p) & 15) == 0; }

// d[i] = op(a[i], b[i]) for i < n. With Stream, d must be 16-byte aligned.
template <bool Stream = false, class T, class Op>
inline void mapRow(const T* a, const T* b, T* d, ptrdiff_t n, const Op& op) {
    using V = Vec<T>;
    constexpr int L = V::lanes;
    ptrdiff_t i = 0;
    for (; i + 2 * L <= n; i += 2 * L) {
        const auto a0 = V::load(a + i), a1 = V::load(a + i + L);
        const auto b0 = V::load(b + i), b1 = V::load(b + i + L);
        if constexpr (Stream) {
            V::stream(d + i, op(a0, b0));
            V::stream(d + i + L, op(a1, b1));
        } else {
            V::store(d + i, op(a0, b0));
            V::store(d + i + L, op(a1, b1));
        }
    }
    if (i + L <= n) {
        V::store(d + i, op(V::load(a + i), V::load(b + i)));
        i += L;
    }
    for (; i < n; ++i) storeu(d + i, op(loadu(a + i), loadu(b + i)));
}

// d[i] = op(a[i]) for i < n.
template <class T, class Op>
inline void mapRow(const T* a, T* d, ptrdiff_t n, const Op& op) {
    using V = Vec<T>;
    constexpr int L = V::lanes;
    ptrdiff_t i = 0;
    for (; i + 2 * L <= n; i += 2 * L) {
        const auto a0 = V::load(a + i), a1 = V::load(a + i + L);
        V::store(d + i, op(a0));
        V::store(d + i + L, op(a1));
    }
    if (i + L <= n) {
        V::store(d + i, op(V::load(a + i)));
        i += L;
    }
    for (; i < n; ++i) storeu(d + i, op(loadu(a + i)));
}

// The binary map over a region, rows `step` bytes apart. Large regions whose
// destination rows all start 16-byte aligned are streamed past the caches.
template <class T, class Op>
inline void mapRegion(const T* a, ptrdiff_t aStep, const T* b, ptrdiff_t bStep, T* d, ptrdiff_t dStep,
                      int width, int height, const Op& op) {
    const ptrdiff_t bytes = ptrdiff_t(width) * height * ptrdiff_t(sizeof(T));
    const bool stream = streamsRows(d, dStep, bytes);
    if (contiguousRows<T>(width, aStep, bStep, dStep)) {
        if (stream) mapRow<true>(a, b, d, ptrdiff_t(width) * height, op);
        else mapRow(a, b, d, ptrdiff_t(width) * height, op);
    } else if (stream) {
        for (int y = 0; y < height; ++y)
            mapRow<true>(row(a, aStep, y), row(b, bStep, y), row(d, dStep, y), width, op);
    } else {
        for (int y = 0; y < height; ++y)
            mapRow(row(a, aStep, y), row(b, bStep, y), row(d, dStep, y), width, op);
    }
    if (stream) _mm_sfence();
}

// The unary map over a region.
template <class T, class Op>
inline void mapRegion(const T* a, ptrdiff_t aStep, T* d, ptrdiff_t dStep, int width, int height, const Op& op) {
    if (contiguousRows<T>(width, aStep, dStep)) {
        mapRow(a, d, ptrdiff_t(width) * height, op);
        return;
    }
    for (int y = 0; y < height; ++y) mapRow(row(a, aStep, y), row(d, dStep, y), width, op);
}

}  // namespace zq

#endif
