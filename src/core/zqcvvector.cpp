// Vector helpers on contiguous arrays: set, zero, copy, divide, square and
// square root.
#include "core/zqcvisa.h"
#include "core/zqcvsimd.h"
#include "core/zqcvvector.h"

#include <cstring>
#include <immintrin.h>
#include <limits>

namespace {

using Vf = zq::Vec<Zeq32f>;

// Bytes to go from p to the next 16-byte boundary, capped at len.
ptrdiff_t bytesToAlign16(const void* p, ptrdiff_t len) {
    const ptrdiff_t gap = ptrdiff_t((16 - (reinterpret_cast<uintptr_t>(p) & 15)) & 15);
    return gap < len ? gap : len;
}

// Floats before p reaches a 16-byte boundary, capped at len. A pointer that
// is not even 4-byte aligned never gets there: all len elements are "before".
ptrdiff_t floatsToAlign16(const Zeq32f* p, ptrdiff_t len) {
    if (reinterpret_cast<uintptr_t>(p) & 3) return len;
    const ptrdiff_t n = bytesToAlign16(p, 4 * len) / 4;
    return n < len ? n : len;
}

void fillBytes(Zeq8u* dst, ptrdiff_t len, __m128i v) {
    ptrdiff_t i = 0;
    for (; i + 64 <= len; i += 64) {
        auto* d = reinterpret_cast<__m128i*>(dst + i);
        _mm_storeu_si128(d, v);
        _mm_storeu_si128(d + 1, v);
        _mm_storeu_si128(d + 2, v);
        _mm_storeu_si128(d + 3, v);
    }
    for (; i + 16 <= len; i += 16) _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + i), v);
    const Zeq8u b = Zeq8u(_mm_cvtsi128_si32(v));
    for (; i < len; ++i) dst[i] = b;
}

// ---- copy ----
//
// Enhanced string moves (ERMS) run one `rep movsb` a cache line at a time,
// the fastest way to copy a large block.
void copyStringMove(const Zeq8u* src, Zeq8u* dst, ptrdiff_t len) {
    size_t n = size_t(len);
    asm volatile("rep movsb" : "+D"(dst), "+S"(src), "+c"(n) : : "memory");
}

// ---- division ----

const Zeq32f kDefaultNaN = [] {
    const uint32_t bits = 0xffc00000u;  // what the processor itself produces for 0/0
    Zeq32f f;
    std::memcpy(&f, &bits, 4);
    return f;
}();

// One quotient of a group that holds a zero divisor. The sign of a zero
// divisor is ignored, so 1/-0 is +infinity.
Zeq32f divideOne(Zeq32f n, Zeq32f d) {
    if (d != 0.0f && d == d) return n / d;
    if (d == 0.0f) {
        if (n > 0.0f) return std::numeric_limits<Zeq32f>::infinity();
        if (n < 0.0f) return -std::numeric_limits<Zeq32f>::infinity();
    }
    return kDefaultNaN;
}

// Four quotients. Without a zero divisor: the reciprocal estimate refined by
// q0 + (q0 + q0*e)*e; with one, element by element.
__m128 divideGroup(__m128 d, __m128 n, bool& zeroSeen) {
    if (_mm_movemask_ps(_mm_cmpeq_ps(d, _mm_setzero_ps())) == 0) {
        const __m128 r = _mm_rcp_ps(d);
        const __m128 e = _mm_sub_ps(_mm_set1_ps(1.0f), _mm_mul_ps(d, r));
        const __m128 q0 = _mm_mul_ps(n, r);
        return _mm_add_ps(q0, _mm_mul_ps(_mm_add_ps(q0, _mm_mul_ps(q0, e)), e));
    }
    zeroSeen = true;
    alignas(16) Zeq32f dv[4], nv[4];
    _mm_store_ps(dv, d);
    _mm_store_ps(nv, n);
    for (int k = 0; k < 4; ++k) nv[k] = divideOne(nv[k], dv[k]);
    return _mm_load_ps(nv);
}

// Fewer than four elements go through the same group routine, the unused
// lanes holding 1/1.
void dividePartial(const Zeq32f* d, const Zeq32f* n, Zeq32f* q, ptrdiff_t count, bool& zeroSeen) {
    alignas(16) Zeq32f dv[4] = {1.0f, 1.0f, 1.0f, 1.0f}, nv[4] = {1.0f, 1.0f, 1.0f, 1.0f};
    std::memcpy(dv, d, size_t(count) * 4);
    std::memcpy(nv, n, size_t(count) * 4);
    _mm_store_ps(nv, divideGroup(_mm_load_ps(dv), _mm_load_ps(nv), zeroSeen));
    std::memcpy(q, nv, size_t(count) * 4);
}

// ---- square root ----

uint32_t signBits(const Zeq32f* p, ptrdiff_t n) {
    uint32_t any = 0;
    for (ptrdiff_t i = 0; i < n; ++i) {
        uint32_t b;
        std::memcpy(&b, p + i, 4);
        any |= b;
    }
    return any >> 31;
}

Zeq32f exactSqrt(Zeq32f x) { return _mm_cvtss_f32(_mm_sqrt_ss(_mm_set_ss(x))); }

// Four roots of a group known to hold only normal or infinite inputs:
// 0.5 * s * (3 - s*r) with r the reciprocal-root estimate and s = x*r.
__m128 estimatedSqrt(__m128 x, __m128 r) {
    const __m128 s = _mm_mul_ps(x, r);
    return _mm_mul_ps(_mm_mul_ps(_mm_set1_ps(0.5f), s), _mm_sub_ps(_mm_set1_ps(3.0f), _mm_mul_ps(s, r)));
}

// Exceptions masked, denormals-are-zero cleared; rounding left as the caller set it.
class SqrtControlWord {
public:
    SqrtControlWord() : saved_(_mm_getcsr()) { _mm_setcsr((saved_ | 0x1f80u) & ~0x0040u); }
    ~SqrtControlWord() { _mm_setcsr(saved_); }

private:
    unsigned saved_;
};

}  // namespace

namespace zq {

void ownsSet_8u(Zeq8u val, Zeq8u* dst, ptrdiff_t len) { fillBytes(dst, len, _mm_set1_epi8(char(val))); }

void ownsZero_8u(Zeq8u* dst, ptrdiff_t len) { fillBytes(dst, len, _mm_setzero_si128()); }

// Copies whole 64-byte blocks from position i on, all four registers loaded
// before any is stored; returns where the blocks end. Streaming needs dst + i
// 16-byte aligned.
template <bool Stream>
ptrdiff_t copyBlocks64(const Zeq8u* src, Zeq8u* dst, ptrdiff_t i, ptrdiff_t len) {
    using V = Vec<Zeq8u>;
    for (; i + 64 <= len; i += 64) {
        __m128i r[4];
        for (int k = 0; k < 4; ++k) r[k] = V::load(src + i + 16 * k);
        for (int k = 0; k < 4; ++k) {
            if constexpr (Stream) V::stream(dst + i + 16 * k, r[k]);
            else V::store(dst + i + 16 * k, r[k]);
        }
    }
    return i;
}

void ownsCopy_8u(const Zeq8u* src, Zeq8u* dst, ptrdiff_t len, bool stream) {
    static const bool stringMoves = fastStringMoves();
    if (stringMoves && len >= 1024) {
        copyStringMove(src, dst, len);
        return;
    }
    // The wider tiers copy with cached stores: there, non-temporal stores
    // measured slower even for multi-megabyte images.
    const bool wide = dispatch([&](auto tier) {
        if constexpr (tier.value == Isa::Sse2) return false;
        if (len < 4 * isaBytes(tier.value)) return false;
        ownsCopyWide_8u<tier.value>(src, dst, len);
        return true;
    });
    if (wide) return;
    ptrdiff_t i = 0;
    if (stream && len >= 256) {
        for (const ptrdiff_t head = bytesToAlign16(dst, len); i < head; ++i) dst[i] = src[i];
        i = copyBlocks64<true>(src, dst, i, len);
        _mm_sfence();
    }
    i = copyBlocks64<false>(src, dst, i, len);
    for (; i + 16 <= len; i += 16)
        _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + i),
                         _mm_loadu_si128(reinterpret_cast<const __m128i*>(src + i)));
    for (; i < len; ++i) dst[i] = src[i];
}

// Groups of four are counted from the first 16-byte boundary of the
// destination; the elements before it and after the last whole group form
// partial groups.
bool ownzeqsDiv_32f(const Zeq32f* divisor, const Zeq32f* dividend, Zeq32f* dst, ptrdiff_t len) {
    bool zeroSeen = false;
    ptrdiff_t i = floatsToAlign16(dst, len);
    for (ptrdiff_t k = 0; k < i; k += 4) dividePartial(divisor + k, dividend + k, dst + k, i - k < 4 ? i - k : 4, zeroSeen);
    for (; i + 4 <= len; i += 4) Vf::store(dst + i, divideGroup(Vf::load(divisor + i), Vf::load(dividend + i), zeroSeen));
    if (i < len) dividePartial(divisor + i, dividend + i, dst + i, len - i, zeroSeen);
    return zeroSeen;
}

void ownzeqsSqr_32f(const Zeq32f* src, Zeq32f* dst, ptrdiff_t len) {
    struct Square {
        __m128 operator()(__m128 x) const { return _mm_mul_ps(x, x); }
        Zeq32f operator()(Zeq32f x) const { return x * x; }
    };
    zq::mapRow(src, dst, len, Square());
}

// Single elements until the source is 16-byte aligned, then groups of eight:
// a group of normal (or infinite) inputs with ordered estimates takes the
// estimate-based formula, any other group the exact root.
bool ownzeqsSqrt_32f(const Zeq32f* src, Zeq32f* dst, ptrdiff_t len) {
    const SqrtControlWord controlWord;
    const bool negative = signBits(src, len) != 0;
    ptrdiff_t i = 0;
    for (const ptrdiff_t head = floatsToAlign16(src, len); i < head; ++i) dst[i] = exactSqrt(src[i]);
    const __m128 smallestNormal = _mm_castsi128_ps(_mm_set1_epi32(0x00800000));
    for (; i + 8 <= len; i += 8) {
        const __m128 x0 = _mm_load_ps(src + i), x1 = _mm_load_ps(src + i + 4);
        const __m128 r0 = _mm_rsqrt_ps(x0), r1 = _mm_rsqrt_ps(x1);
        const __m128 fast = _mm_and_ps(_mm_and_ps(_mm_cmpge_ps(x0, smallestNormal), _mm_cmpge_ps(x1, smallestNormal)),
                                       _mm_and_ps(_mm_cmpord_ps(r0, r0), _mm_cmpord_ps(r1, r1)));
        if (_mm_movemask_ps(fast) == 15) {
            Vf::store(dst + i, estimatedSqrt(x0, r0));
            Vf::store(dst + i + 4, estimatedSqrt(x1, r1));
        } else {
            Vf::store(dst + i, _mm_sqrt_ps(x0));
            Vf::store(dst + i + 4, _mm_sqrt_ps(x1));
        }
    }
    for (; i < len; ++i) dst[i] = exactSqrt(src[i]);
    return negative;
}

}  // namespace zq

ZeqStatus zeqsSet_8u(Zeq8u val, Zeq8u* pDst, int len) {
    ZQ_CHECK(zq::nonNull(pDst));
    ZQ_CHECK(zq::length(len));
    zq::ownsSet_8u(val, pDst, len);
    return zeqStsOk;
}

ZeqStatus zeqsZero_8u(Zeq8u* pDst, int len) {
    ZQ_CHECK(zq::nonNull(pDst));
    ZQ_CHECK(zq::length(len));
    zq::ownsZero_8u(pDst, len);
    return zeqStsOk;
}

ZeqStatus zeqsZero_16s(Zeq16s* pDst, int len) {
    ZQ_CHECK(zq::nonNull(pDst));
    ZQ_CHECK(zq::length(len));
    zq::ownsZero_8u(reinterpret_cast<Zeq8u*>(pDst), ptrdiff_t(len) * 2);
    return zeqStsOk;
}

ZeqStatus zeqsZero_32f(Zeq32f* pDst, int len) {
    ZQ_CHECK(zq::nonNull(pDst));
    ZQ_CHECK(zq::length(len));
    zq::ownsZero_8u(reinterpret_cast<Zeq8u*>(pDst), ptrdiff_t(len) * 4);
    return zeqStsOk;
}

ZeqStatus zeqsCopy_8u(const Zeq8u* pSrc, Zeq8u* pDst, int len) {
    ZQ_CHECK(zq::nonNull(pSrc, pDst));
    ZQ_CHECK(zq::length(len));
    zq::ownsCopy_8u(pSrc, pDst, len);
    return zeqStsOk;
}

ZeqStatus zeqsCopy_16s(const Zeq16s* pSrc, Zeq16s* pDst, int len) {
    ZQ_CHECK(zq::nonNull(pSrc, pDst));
    ZQ_CHECK(zq::length(len));
    zq::ownsCopy_8u(reinterpret_cast<const Zeq8u*>(pSrc), reinterpret_cast<Zeq8u*>(pDst), ptrdiff_t(len) * 2);
    return zeqStsOk;
}

ZeqStatus zeqsCopy_32f(const Zeq32f* pSrc, Zeq32f* pDst, int len) {
    ZQ_CHECK(zq::nonNull(pSrc, pDst));
    ZQ_CHECK(zq::length(len));
    zq::ownsCopy_8u(reinterpret_cast<const Zeq8u*>(pSrc), reinterpret_cast<Zeq8u*>(pDst), ptrdiff_t(len) * 4);
    return zeqStsOk;
}

ZeqStatus zeqsDiv_32f(const Zeq32f* pSrc1, const Zeq32f* pSrc2, Zeq32f* pDst, int len) {
    ZQ_CHECK(zq::nonNull(pSrc1, pSrc2, pDst));
    ZQ_CHECK(zq::length(len));
    return zq::ownzeqsDiv_32f(pSrc1, pSrc2, pDst, len) ? zeqStsDivByZero : zeqStsOk;
}

ZeqStatus zeqsSqr_32f_I(Zeq32f* pSrcDst, int len) {
    ZQ_CHECK(zq::nonNull(pSrcDst));
    ZQ_CHECK(zq::length(len));
    zq::ownzeqsSqr_32f(pSrcDst, pSrcDst, len);
    return zeqStsOk;
}

ZeqStatus zeqsSqrt_32f_I(Zeq32f* pSrcDst, int len) {
    ZQ_CHECK(zq::nonNull(pSrcDst));
    ZQ_CHECK(zq::length(len));
    return zq::ownzeqsSqrt_32f_I(pSrcDst, len) ? zeqStsSqrtNegArg : zeqStsOk;
}
