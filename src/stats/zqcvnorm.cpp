// Norms of a masked region: of one image, of the difference of two images,
// and of that difference relative to the second image; infinity, L1 and L2,
// on a single-channel image or one channel of a three-channel image.
//
// Every form runs the same region loop over blocks of 16 pixels (one register
// of mask bytes). A block is loaded at a pixel stride of 1 or 3 elements,
// turned into magnitudes (|x|, |a - b|, or for floats the signed value whose
// sign the norm discards), masked (left-out pixels become 0, which no norm
// notices) and handed to an accumulator of the norm kind.
#include "core/zqcvsimd.h"

#include <cmath>
#include <cstring>
#include <limits>

namespace {

enum class Kind { Inf, L1, L2 };

constexpr int kBlock = 16;

template <class T>
using Reg = typename zq::Vec<T>::type;

// 16 pixels of T: one register of bytes, two of 16-bit words or four of floats.
template <class T>
struct Block {
    static constexpr int regs = int(sizeof(T));
    Reg<T> r[regs];
};

// The magnitude type: a signed byte's absolute value needs the unsigned range.
template <class T>
using Mag = typename std::conditional<std::is_same<T, Zeq8s>::value, Zeq8u, T>::type;

// ---- loading ----

// Element i of a row, read bytewise: a float row may start off a 4-byte
// boundary (an even step that is no whole number of elements).
template <class T>
inline T element(const T* p, ptrdiff_t i) {
    T v;
    std::memcpy(&v, p + i, sizeof(T));
    return v;
}

// One register of elements `Stride` apart, built in registers (going through
// memory would stall on the store-to-load forwarding of the wide load).
template <class T, int Stride>
inline Reg<T> loadStrided(const T* p) {
    if constexpr (Stride == 1) {
        return zq::Vec<T>::load(p);
    } else if constexpr (std::is_same<T, Zeq32f>::value) {
        return _mm_setr_ps(element(p, 0), element(p, Stride), element(p, 2 * Stride), element(p, 3 * Stride));
    } else {
        // Words of one 16-bit element, or of two neighbouring 8-bit ones.
        auto word = [p](int i) -> int {
            if constexpr (sizeof(T) == 2) return element(p, i * Stride);
            else return uint8_t(p[2 * i * Stride]) | uint8_t(p[(2 * i + 1) * Stride]) << 8;
        };
        __m128i v = _mm_cvtsi32_si128(word(0));
        v = _mm_insert_epi16(v, word(1), 1);
        v = _mm_insert_epi16(v, word(2), 2);
        v = _mm_insert_epi16(v, word(3), 3);
        v = _mm_insert_epi16(v, word(4), 4);
        v = _mm_insert_epi16(v, word(5), 5);
        v = _mm_insert_epi16(v, word(6), 6);
        return _mm_insert_epi16(v, word(7), 7);
    }
}

template <class T, int Stride>
inline Block<T> loadBlock(const T* p) {
    Block<T> b;
    for (int i = 0; i < Block<T>::regs; ++i)
        b.r[i] = loadStrided<T, Stride>(p + ptrdiff_t(i) * zq::Vec<T>::lanes * Stride);
    return b;
}

// 0xFF for every pixel whose mask byte is zero, i.e. that takes no part.
inline __m128i leftOut(const Zeq8u* mask) {
    return _mm_cmpeq_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i*>(mask)), _mm_setzero_si128());
}

// Zeroes the left-out pixels, the byte flags widened to the element size.
inline Block<Zeq8u> masked(Block<Zeq8u> b, __m128i out) {
    b.r[0] = _mm_andnot_si128(out, b.r[0]);
    return b;
}
inline Block<Zeq16u> masked(Block<Zeq16u> b, __m128i out) {
    b.r[0] = _mm_andnot_si128(_mm_unpacklo_epi8(out, out), b.r[0]);
    b.r[1] = _mm_andnot_si128(_mm_unpackhi_epi8(out, out), b.r[1]);
    return b;
}
inline Block<Zeq32f> masked(Block<Zeq32f> b, __m128i out) {
    const __m128i lo = _mm_unpacklo_epi8(out, out), hi = _mm_unpackhi_epi8(out, out);
    const __m128i w[4] = {_mm_unpacklo_epi16(lo, lo), _mm_unpackhi_epi16(lo, lo), _mm_unpacklo_epi16(hi, hi),
                          _mm_unpackhi_epi16(hi, hi)};
    for (int i = 0; i < 4; ++i) b.r[i] = _mm_andnot_ps(_mm_castsi128_ps(w[i]), b.r[i]);
    return b;
}

// ---- magnitudes ----

inline __m128i absDiffU8(__m128i a, __m128i b) { return _mm_or_si128(_mm_subs_epu8(a, b), _mm_subs_epu8(b, a)); }
inline __m128i absDiffU16(__m128i a, __m128i b) { return _mm_or_si128(_mm_subs_epu16(a, b), _mm_subs_epu16(b, a)); }

inline Block<Zeq8u> magnitude(const Block<Zeq8u>& a) { return a; }
inline Block<Zeq16u> magnitude(const Block<Zeq16u>& a) { return a; }
inline Block<Zeq32f> magnitude(const Block<Zeq32f>& a) { return a; }
// |x| of signed bytes, read as unsigned: -128 becomes 128.
inline Block<Zeq8u> magnitude(const Block<Zeq8s>& a) {
    const __m128i sign = _mm_cmpgt_epi8(_mm_setzero_si128(), a.r[0]);
    return {{_mm_sub_epi8(_mm_xor_si128(a.r[0], sign), sign)}};
}

inline Block<Zeq8u> magnitude(const Block<Zeq8u>& a, const Block<Zeq8u>& b) {
    return {{absDiffU8(a.r[0], b.r[0])}};
}
// Flipping the sign bit maps signed bytes onto unsigned ones in the same order,
// so the unsigned difference (up to 255) is exact.
inline Block<Zeq8u> magnitude(const Block<Zeq8s>& a, const Block<Zeq8s>& b) {
    const __m128i flip = _mm_set1_epi8(char(0x80));
    return {{absDiffU8(_mm_xor_si128(a.r[0], flip), _mm_xor_si128(b.r[0], flip))}};
}
inline Block<Zeq16u> magnitude(const Block<Zeq16u>& a, const Block<Zeq16u>& b) {
    return {{absDiffU16(a.r[0], b.r[0]), absDiffU16(a.r[1], b.r[1])}};
}
// The float difference, rounded to single precision; its sign is dropped later.
inline Block<Zeq32f> magnitude(const Block<Zeq32f>& a, const Block<Zeq32f>& b) {
    Block<Zeq32f> d;
    for (int i = 0; i < 4; ++i) d.r[i] = _mm_sub_ps(a.r[i], b.r[i]);
    return d;
}

// ---- accumulators: add(block of masked magnitudes), flush(), total() ----

// Blocks between two flushes. An 8-bit L2 block adds at most 4 * 255^2 to a
// 32-bit lane, so 4096 blocks stay below 2^31.
constexpr int kFlushBlocks = 4096;

template <Kind K>
struct Acc8 {
    __m128i wide = _mm_setzero_si128();    // Inf: byte maxima; L1, L2: two 64-bit sums
    __m128i narrow = _mm_setzero_si128();  // L2: four 32-bit partial sums of squares

    void add(const Block<Zeq8u>& b) {
        const __m128i v = b.r[0], z = _mm_setzero_si128();
        if constexpr (K == Kind::Inf) {
            wide = _mm_max_epu8(wide, v);
        } else if constexpr (K == Kind::L1) {
            wide = _mm_add_epi64(wide, _mm_sad_epu8(v, z));
        } else {
            const __m128i lo = _mm_unpacklo_epi8(v, z), hi = _mm_unpackhi_epi8(v, z);
            narrow = _mm_add_epi32(narrow, _mm_add_epi32(_mm_madd_epi16(lo, lo), _mm_madd_epi16(hi, hi)));
        }
    }
    void flush() {
        if constexpr (K == Kind::L2) {
            const __m128i z = _mm_setzero_si128();
            wide = _mm_add_epi64(wide, _mm_add_epi64(_mm_unpacklo_epi32(narrow, z), _mm_unpackhi_epi32(narrow, z)));
            narrow = z;
        }
    }
    uint64_t total() {
        flush();
        alignas(16) uint8_t b[16];
        _mm_store_si128(reinterpret_cast<__m128i*>(b), wide);
        if constexpr (K == Kind::Inf) {
            uint8_t m = 0;
            for (uint8_t x : b) m = x > m ? x : m;
            return m;
        } else {
            uint64_t lane[2];
            std::memcpy(lane, b, 16);
            return lane[0] + lane[1];
        }
    }
};

template <Kind K>
struct Acc16 {
    __m128i s = _mm_setzero_si128();   // Inf: word maxima; L1: sums of low bytes; L2: two 64-bit sums
    __m128i hi = _mm_setzero_si128();  // L1: sums of high bytes

    // Unsigned 16-bit maximum from the saturating difference (SSE2 has only the signed one).
    static __m128i maxU16(__m128i a, __m128i b) { return _mm_add_epi16(_mm_subs_epu16(a, b), b); }
    // Squares of four 32-bit lanes, each below 2^32, summed into two 64-bit lanes.
    static __m128i squares(__m128i v) {
        const __m128i odd = _mm_srli_epi64(v, 32);
        return _mm_add_epi64(_mm_mul_epu32(v, v), _mm_mul_epu32(odd, odd));
    }

    void add(const Block<Zeq16u>& b) {
        const __m128i z = _mm_setzero_si128();
        if constexpr (K == Kind::Inf) {
            s = maxU16(s, maxU16(b.r[0], b.r[1]));
        } else if constexpr (K == Kind::L1) {
            // A word is its low byte plus 256 times its high byte; byte sums go
            // straight into 64-bit lanes and cannot overflow.
            const __m128i low = _mm_set1_epi16(0xff);
            s = _mm_add_epi64(s, _mm_add_epi64(_mm_sad_epu8(_mm_and_si128(b.r[0], low), z),
                                               _mm_sad_epu8(_mm_and_si128(b.r[1], low), z)));
            hi = _mm_add_epi64(hi, _mm_add_epi64(_mm_sad_epu8(_mm_srli_epi16(b.r[0], 8), z),
                                                 _mm_sad_epu8(_mm_srli_epi16(b.r[1], 8), z)));
        } else {
            for (int i = 0; i < 2; ++i)
                s = _mm_add_epi64(s, _mm_add_epi64(squares(_mm_unpacklo_epi16(b.r[i], z)),
                                                   squares(_mm_unpackhi_epi16(b.r[i], z))));
        }
    }
    void flush() {}
    uint64_t total() const {
        alignas(16) uint64_t lane[2], high[2];
        _mm_store_si128(reinterpret_cast<__m128i*>(lane), s);
        _mm_store_si128(reinterpret_cast<__m128i*>(high), hi);
        if constexpr (K == Kind::Inf) {
            uint16_t w[8];
            std::memcpy(w, lane, 16);
            uint16_t m = 0;
            for (uint16_t x : w) m = x > m ? x : m;
            return m;
        } else {
            return lane[0] + lane[1] + 256 * (high[0] + high[1]);
        }
    }
};

// Float sums are kept in double, in four independent register chains. L2 of
// one image squares in single precision; L2 of a difference (and of the
// relative denominator) widens first and squares in double.
template <Kind K, bool SquareInFloat>
struct Acc32f {
    __m128d sum[4] = {_mm_setzero_pd(), _mm_setzero_pd(), _mm_setzero_pd(), _mm_setzero_pd()};
    __m128 max = _mm_setzero_ps();

    static __m128 abs(__m128 v) { return _mm_and_ps(v, _mm_castsi128_ps(_mm_set1_epi32(0x7fffffff))); }
    static __m128d lowHalf(__m128 v) { return _mm_cvtps_pd(v); }
    static __m128d highHalf(__m128 v) { return _mm_cvtps_pd(_mm_movehl_ps(v, v)); }

    void add(const Block<Zeq32f>& b) {
        for (int i = 0; i < 4; ++i) {
            const __m128 v = b.r[i];
            if constexpr (K == Kind::Inf) {
                max = _mm_max_ps(max, abs(v));
            } else if constexpr (K == Kind::L1) {
                const __m128 a = abs(v);
                sum[i] = _mm_add_pd(sum[i], _mm_add_pd(lowHalf(a), highHalf(a)));
            } else if constexpr (SquareInFloat) {
                const __m128 q = _mm_mul_ps(v, v);
                sum[i] = _mm_add_pd(sum[i], _mm_add_pd(lowHalf(q), highHalf(q)));
            } else {
                const __m128d lo = lowHalf(v), hi = highHalf(v);
                sum[i] = _mm_add_pd(sum[i], _mm_add_pd(_mm_mul_pd(lo, lo), _mm_mul_pd(hi, hi)));
            }
        }
    }
    void flush() {}
    double total() const {
        if constexpr (K == Kind::Inf) {
            alignas(16) float m[4];
            _mm_store_ps(m, max);
            float r = 0;
            for (float x : m) r = x > r ? x : r;
            return r;
        } else {
            alignas(16) double d[2];
            _mm_store_pd(d, _mm_add_pd(_mm_add_pd(sum[0], sum[1]), _mm_add_pd(sum[2], sum[3])));
            return d[0] + d[1];
        }
    }
};

template <class M, Kind K, bool SquareInFloat = false>
using Acc = typename std::conditional<
    sizeof(M) == 1, Acc8<K>,
    typename std::conditional<sizeof(M) == 2, Acc16<K>, Acc32f<K, SquareInFloat>>::type>::type;

// The accumulated maximum or sum as a double. The 8u L1 sum is kept in a
// 32-bit register and read as signed: above 2^31 - 1 it wraps, as documented.
template <class T, Kind K, class A>
double valueOf(A& acc) {
    if constexpr (std::is_same<T, Zeq8u>::value && K == Kind::L1) return double(int32_t(uint32_t(acc.total())));
    else return double(acc.total());
}

// ---- per-block bodies of the three families ----

template <class T, Kind K>
struct NormBody {
    static constexpr bool kTwoSources = false;
    Acc<Mag<T>, K, true> n;
    template <int Stride>
    void block(const T* a, const T*, __m128i out) {
        n.add(masked(magnitude(loadBlock<T, Stride>(a)), out));
    }
    void flush() { n.flush(); }
};

template <class T, Kind K>
struct DiffBody {
    static constexpr bool kTwoSources = true;
    Acc<Mag<T>, K> n;
    template <int Stride>
    void block(const T* a, const T* b, __m128i out) {
        n.add(masked(magnitude(loadBlock<T, Stride>(a), loadBlock<T, Stride>(b)), out));
    }
    void flush() { n.flush(); }
};

// Numerator (the difference) and denominator (the second image) in one pass.
template <class T, Kind K>
struct RelBody {
    static constexpr bool kTwoSources = true;
    Acc<Mag<T>, K> n, d;
    template <int Stride>
    void block(const T* a, const T* b, __m128i out) {
        const Block<T> vb = loadBlock<T, Stride>(b);
        n.add(masked(magnitude(loadBlock<T, Stride>(a), vb), out));
        d.add(masked(magnitude(vb), out));
    }
    void flush() {
        n.flush();
        d.flush();
    }
};

// ---- the region loop ----

// Runs `body` over every row in blocks of 16 pixels, `Stride` elements apart.
// A row's last partial block is copied into a zero-padded block whose padding
// is masked out, so it takes the same arithmetic as the others.
template <class T, int Stride, class Body>
void ownNormRegion(const T* a, int aStep, const T* b, int bStep, const Zeq8u* mask, int maskStep, ZeqiSize roi,
                   Body& body) {
    int sinceFlush = 0;
    auto blockDone = [&] {
        if (++sinceFlush == kFlushBlocks) {
            body.flush();
            sinceFlush = 0;
        }
    };
    for (int y = 0; y < roi.height; ++y) {
        const T* ra = zq::row(a, aStep, y);
        const T* rb = Body::kTwoSources ? zq::row(b, bStep, y) : nullptr;
        const Zeq8u* rm = zq::row(mask, maskStep, y);
        int x = 0;
        for (; x + kBlock <= roi.width; x += kBlock) {
            const ptrdiff_t at = ptrdiff_t(x) * Stride;
            body.template block<Stride>(ra + at, Body::kTwoSources ? rb + at : nullptr, leftOut(rm + x));
            blockDone();
        }
        if (x < roi.width) {
            T ta[kBlock] = {}, tb[kBlock] = {};
            Zeq8u tm[kBlock] = {};
            for (int i = 0; x + i < roi.width; ++i) {
                const ptrdiff_t at = ptrdiff_t(x + i) * Stride;
                ta[i] = element(ra, at);
                if (Body::kTwoSources) tb[i] = element(rb, at);
                tm[i] = rm[x + i];
            }
            body.template block<1>(ta, tb, leftOut(tm));
            blockDone();
        }
    }
    body.flush();
}

double quietNaN() {
    const uint64_t bits = 0x7FF8000000000000ull;
    double d;
    std::memcpy(&d, &bits, 8);
    return d;
}

// Kernels: the norm of the region, starting at the channel of interest.
template <class T, int Stride, Kind K>
Zeq64f ownNorm(const T* src, int srcStep, const Zeq8u* mask, int maskStep, ZeqiSize roi) {
    NormBody<T, K> body;
    ownNormRegion<T, Stride>(src, srcStep, static_cast<const T*>(nullptr), 0, mask, maskStep, roi, body);
    const double v = valueOf<T, K>(body.n);
    return K == Kind::L2 ? std::sqrt(v) : v;
}

template <class T, int Stride, Kind K>
Zeq64f ownNormDiff(const T* src1, int src1Step, const T* src2, int src2Step, const Zeq8u* mask, int maskStep,
                   ZeqiSize roi) {
    DiffBody<T, K> body;
    ownNormRegion<T, Stride>(src1, src1Step, src2, src2Step, mask, maskStep, roi, body);
    const double v = valueOf<T, K>(body.n);
    return K == Kind::L2 ? std::sqrt(v) : v;
}

// L2 divides the sums of squares before one root. A zero denominator gives
// +inf over a positive numerator, NaN over a zero one, and a warning.
template <class T, int Stride, Kind K>
ZeqStatus ownNormRel(const T* src1, int src1Step, const T* src2, int src2Step, const Zeq8u* mask, int maskStep,
                     ZeqiSize roi, Zeq64f* norm) {
    RelBody<T, K> body;
    ownNormRegion<T, Stride>(src1, src1Step, src2, src2Step, mask, maskStep, roi, body);
    const double n = valueOf<T, K>(body.n), d = valueOf<T, K>(body.d);
    if (d == 0) {
        *norm = n > 0 ? std::numeric_limits<double>::infinity() : quietNaN();
        return zeqStsDivByZero;
    }
    *norm = K == Kind::L2 ? std::sqrt(n / d) : n / d;
    return zeqStsOk;
}

// ---- checked entry points; Channels 3 is the channel-of-interest form ----

template <class T>
constexpr bool kFloat = std::is_same<T, Zeq32f>::value;

template <class T, int Channels, Kind K>
ZeqStatus normOf(const T* pSrc, int srcStep, const Zeq8u* pMask, int maskStep, ZeqiSize roi, int coi,
                 Zeq64f* pNorm) {
    ZQ_CHECK(zq::nonNull(pSrc, pMask, pNorm));
    ZQ_CHECK(zq::roiSize(roi));
    ZQ_CHECK(zq::stepsAtLeast(zq::rowBytes<T>(roi.width, Channels), srcStep));
    ZQ_CHECK(zq::stepsAtLeast(zq::rowBytes<Zeq8u>(roi.width), maskStep));
    if (kFloat<T>) ZQ_CHECK(zq::stepsEven(srcStep));  // float rows need only start on an even byte
    if (Channels == 3) ZQ_CHECK(zq::channelOfInterest(coi));
    *pNorm = ownNorm<T, Channels, K>(pSrc + (coi - 1), srcStep, pMask, maskStep, roi);
    return zeqStsOk;
}

template <class T, int Channels, Kind K, bool Relative>
ZeqStatus normOfDiff(const T* pSrc1, int src1Step, const T* pSrc2, int src2Step, const Zeq8u* pMask, int maskStep,
                     ZeqiSize roi, int coi, Zeq64f* pNorm) {
    ZQ_CHECK(zq::nonNull(pSrc1, pSrc2, pMask, pNorm));
    ZQ_CHECK(zq::roiSize(roi));
    ZQ_CHECK(zq::stepsAtLeast(zq::rowBytes<T>(roi.width, Channels), src1Step, src2Step));
    ZQ_CHECK(zq::stepsAtLeast(zq::rowBytes<Zeq8u>(roi.width), maskStep));
    if (kFloat<T>) ZQ_CHECK(zq::stepsEven(src1Step, src2Step));
    if (Channels == 3) ZQ_CHECK(zq::channelOfInterest(coi));
    if (Relative)
        return ownNormRel<T, Channels, K>(pSrc1 + (coi - 1), src1Step, pSrc2 + (coi - 1), src2Step, pMask, maskStep,
                                          roi, pNorm);
    *pNorm = ownNormDiff<T, Channels, K>(pSrc1 + (coi - 1), src1Step, pSrc2 + (coi - 1), src2Step, pMask, maskStep,
                                         roi);
    return zeqStsOk;
}

}  // namespace

// ---- Norm, NormDiff and NormRel: single-channel (channel 1) and channel of interest ----

ZeqStatus zeqiNorm_Inf_8u_C1MR(const Zeq8u* pSrc, int srcStep, const Zeq8u* pMask, int maskStep, ZeqiSize roiSize,
                               Zeq64f* pNorm) {
    return normOf<Zeq8u, 1, Kind::Inf>(pSrc, srcStep, pMask, maskStep, roiSize, 1, pNorm);
}
ZeqStatus zeqiNorm_Inf_8u_C3CMR(const Zeq8u* pSrc, int srcStep, const Zeq8u* pMask, int maskStep, ZeqiSize roiSize,
                                int coi, Zeq64f* pNorm) {
    return normOf<Zeq8u, 3, Kind::Inf>(pSrc, srcStep, pMask, maskStep, roiSize, coi, pNorm);
}
ZeqStatus zeqiNorm_Inf_8s_C1MR(const Zeq8s* pSrc, int srcStep, const Zeq8u* pMask, int maskStep, ZeqiSize roiSize,
                               Zeq64f* pNorm) {
    return normOf<Zeq8s, 1, Kind::Inf>(pSrc, srcStep, pMask, maskStep, roiSize, 1, pNorm);
}
ZeqStatus zeqiNorm_Inf_8s_C3CMR(const Zeq8s* pSrc, int srcStep, const Zeq8u* pMask, int maskStep, ZeqiSize roiSize,
                                int coi, Zeq64f* pNorm) {
    return normOf<Zeq8s, 3, Kind::Inf>(pSrc, srcStep, pMask, maskStep, roiSize, coi, pNorm);
}
ZeqStatus zeqiNorm_Inf_16u_C1MR(const Zeq16u* pSrc, int srcStep, const Zeq8u* pMask, int maskStep, ZeqiSize roiSize,
                                Zeq64f* pNorm) {
    return normOf<Zeq16u, 1, Kind::Inf>(pSrc, srcStep, pMask, maskStep, roiSize, 1, pNorm);
}
ZeqStatus zeqiNorm_Inf_16u_C3CMR(const Zeq16u* pSrc, int srcStep, const Zeq8u* pMask, int maskStep, ZeqiSize roiSize,
                                 int coi, Zeq64f* pNorm) {
    return normOf<Zeq16u, 3, Kind::Inf>(pSrc, srcStep, pMask, maskStep, roiSize, coi, pNorm);
}
ZeqStatus zeqiNorm_Inf_32f_C1MR(const Zeq32f* pSrc, int srcStep, const Zeq8u* pMask, int maskStep, ZeqiSize roiSize,
                                Zeq64f* pNorm) {
    return normOf<Zeq32f, 1, Kind::Inf>(pSrc, srcStep, pMask, maskStep, roiSize, 1, pNorm);
}
ZeqStatus zeqiNorm_Inf_32f_C3CMR(const Zeq32f* pSrc, int srcStep, const Zeq8u* pMask, int maskStep, ZeqiSize roiSize,
                                 int coi, Zeq64f* pNorm) {
    return normOf<Zeq32f, 3, Kind::Inf>(pSrc, srcStep, pMask, maskStep, roiSize, coi, pNorm);
}
ZeqStatus zeqiNorm_L1_8u_C1MR(const Zeq8u* pSrc, int srcStep, const Zeq8u* pMask, int maskStep, ZeqiSize roiSize,
                              Zeq64f* pNorm) {
    return normOf<Zeq8u, 1, Kind::L1>(pSrc, srcStep, pMask, maskStep, roiSize, 1, pNorm);
}
ZeqStatus zeqiNorm_L1_8u_C3CMR(const Zeq8u* pSrc, int srcStep, const Zeq8u* pMask, int maskStep, ZeqiSize roiSize,
                               int coi, Zeq64f* pNorm) {
    return normOf<Zeq8u, 3, Kind::L1>(pSrc, srcStep, pMask, maskStep, roiSize, coi, pNorm);
}
ZeqStatus zeqiNorm_L1_8s_C1MR(const Zeq8s* pSrc, int srcStep, const Zeq8u* pMask, int maskStep, ZeqiSize roiSize,
                              Zeq64f* pNorm) {
    return normOf<Zeq8s, 1, Kind::L1>(pSrc, srcStep, pMask, maskStep, roiSize, 1, pNorm);
}
ZeqStatus zeqiNorm_L1_8s_C3CMR(const Zeq8s* pSrc, int srcStep, const Zeq8u* pMask, int maskStep, ZeqiSize roiSize,
                               int coi, Zeq64f* pNorm) {
    return normOf<Zeq8s, 3, Kind::L1>(pSrc, srcStep, pMask, maskStep, roiSize, coi, pNorm);
}
ZeqStatus zeqiNorm_L1_16u_C1MR(const Zeq16u* pSrc, int srcStep, const Zeq8u* pMask, int maskStep, ZeqiSize roiSize,
                               Zeq64f* pNorm) {
    return normOf<Zeq16u, 1, Kind::L1>(pSrc, srcStep, pMask, maskStep, roiSize, 1, pNorm);
}
ZeqStatus zeqiNorm_L1_16u_C3CMR(const Zeq16u* pSrc, int srcStep, const Zeq8u* pMask, int maskStep, ZeqiSize roiSize,
                                int coi, Zeq64f* pNorm) {
    return normOf<Zeq16u, 3, Kind::L1>(pSrc, srcStep, pMask, maskStep, roiSize, coi, pNorm);
}
ZeqStatus zeqiNorm_L1_32f_C1MR(const Zeq32f* pSrc, int srcStep, const Zeq8u* pMask, int maskStep, ZeqiSize roiSize,
                               Zeq64f* pNorm) {
    return normOf<Zeq32f, 1, Kind::L1>(pSrc, srcStep, pMask, maskStep, roiSize, 1, pNorm);
}
ZeqStatus zeqiNorm_L1_32f_C3CMR(const Zeq32f* pSrc, int srcStep, const Zeq8u* pMask, int maskStep, ZeqiSize roiSize,
                                int coi, Zeq64f* pNorm) {
    return normOf<Zeq32f, 3, Kind::L1>(pSrc, srcStep, pMask, maskStep, roiSize, coi, pNorm);
}
ZeqStatus zeqiNorm_L2_8u_C1MR(const Zeq8u* pSrc, int srcStep, const Zeq8u* pMask, int maskStep, ZeqiSize roiSize,
                              Zeq64f* pNorm) {
    return normOf<Zeq8u, 1, Kind::L2>(pSrc, srcStep, pMask, maskStep, roiSize, 1, pNorm);
}
ZeqStatus zeqiNorm_L2_8u_C3CMR(const Zeq8u* pSrc, int srcStep, const Zeq8u* pMask, int maskStep, ZeqiSize roiSize,
                               int coi, Zeq64f* pNorm) {
    return normOf<Zeq8u, 3, Kind::L2>(pSrc, srcStep, pMask, maskStep, roiSize, coi, pNorm);
}
ZeqStatus zeqiNorm_L2_8s_C1MR(const Zeq8s* pSrc, int srcStep, const Zeq8u* pMask, int maskStep, ZeqiSize roiSize,
                              Zeq64f* pNorm) {
    return normOf<Zeq8s, 1, Kind::L2>(pSrc, srcStep, pMask, maskStep, roiSize, 1, pNorm);
}
ZeqStatus zeqiNorm_L2_8s_C3CMR(const Zeq8s* pSrc, int srcStep, const Zeq8u* pMask, int maskStep, ZeqiSize roiSize,
                               int coi, Zeq64f* pNorm) {
    return normOf<Zeq8s, 3, Kind::L2>(pSrc, srcStep, pMask, maskStep, roiSize, coi, pNorm);
}
ZeqStatus zeqiNorm_L2_16u_C1MR(const Zeq16u* pSrc, int srcStep, const Zeq8u* pMask, int maskStep, ZeqiSize roiSize,
                               Zeq64f* pNorm) {
    return normOf<Zeq16u, 1, Kind::L2>(pSrc, srcStep, pMask, maskStep, roiSize, 1, pNorm);
}
ZeqStatus zeqiNorm_L2_16u_C3CMR(const Zeq16u* pSrc, int srcStep, const Zeq8u* pMask, int maskStep, ZeqiSize roiSize,
                                int coi, Zeq64f* pNorm) {
    return normOf<Zeq16u, 3, Kind::L2>(pSrc, srcStep, pMask, maskStep, roiSize, coi, pNorm);
}
ZeqStatus zeqiNorm_L2_32f_C1MR(const Zeq32f* pSrc, int srcStep, const Zeq8u* pMask, int maskStep, ZeqiSize roiSize,
                               Zeq64f* pNorm) {
    return normOf<Zeq32f, 1, Kind::L2>(pSrc, srcStep, pMask, maskStep, roiSize, 1, pNorm);
}
ZeqStatus zeqiNorm_L2_32f_C3CMR(const Zeq32f* pSrc, int srcStep, const Zeq8u* pMask, int maskStep, ZeqiSize roiSize,
                                int coi, Zeq64f* pNorm) {
    return normOf<Zeq32f, 3, Kind::L2>(pSrc, srcStep, pMask, maskStep, roiSize, coi, pNorm);
}
ZeqStatus zeqiNormDiff_Inf_8u_C1MR(const Zeq8u* pSrc1, int src1Step, const Zeq8u* pSrc2, int src2Step,
                                   const Zeq8u* pMask, int maskStep, ZeqiSize roiSize, Zeq64f* pNorm) {
    return normOfDiff<Zeq8u, 1, Kind::Inf, false>(pSrc1, src1Step, pSrc2, src2Step, pMask, maskStep, roiSize, 1,
                                                  pNorm);
}
ZeqStatus zeqiNormDiff_Inf_8u_C3CMR(const Zeq8u* pSrc1, int src1Step, const Zeq8u* pSrc2, int src2Step,
                                    const Zeq8u* pMask, int maskStep, ZeqiSize roiSize, int coi, Zeq64f* pNorm) {
    return normOfDiff<Zeq8u, 3, Kind::Inf, false>(pSrc1, src1Step, pSrc2, src2Step, pMask, maskStep, roiSize, coi,
                                                  pNorm);
}
ZeqStatus zeqiNormDiff_Inf_8s_C1MR(const Zeq8s* pSrc1, int src1Step, const Zeq8s* pSrc2, int src2Step,
                                   const Zeq8u* pMask, int maskStep, ZeqiSize roiSize, Zeq64f* pNorm) {
    return normOfDiff<Zeq8s, 1, Kind::Inf, false>(pSrc1, src1Step, pSrc2, src2Step, pMask, maskStep, roiSize, 1,
                                                  pNorm);
}
ZeqStatus zeqiNormDiff_Inf_8s_C3CMR(const Zeq8s* pSrc1, int src1Step, const Zeq8s* pSrc2, int src2Step,
                                    const Zeq8u* pMask, int maskStep, ZeqiSize roiSize, int coi, Zeq64f* pNorm) {
    return normOfDiff<Zeq8s, 3, Kind::Inf, false>(pSrc1, src1Step, pSrc2, src2Step, pMask, maskStep, roiSize, coi,
                                                  pNorm);
}
ZeqStatus zeqiNormDiff_Inf_16u_C1MR(const Zeq16u* pSrc1, int src1Step, const Zeq16u* pSrc2, int src2Step,
                                    const Zeq8u* pMask, int maskStep, ZeqiSize roiSize, Zeq64f* pNorm) {
    return normOfDiff<Zeq16u, 1, Kind::Inf, false>(pSrc1, src1Step, pSrc2, src2Step, pMask, maskStep, roiSize, 1,
                                                   pNorm);
}
ZeqStatus zeqiNormDiff_Inf_16u_C3CMR(const Zeq16u* pSrc1, int src1Step, const Zeq16u* pSrc2, int src2Step,
                                     const Zeq8u* pMask, int maskStep, ZeqiSize roiSize, int coi, Zeq64f* pNorm) {
    return normOfDiff<Zeq16u, 3, Kind::Inf, false>(pSrc1, src1Step, pSrc2, src2Step, pMask, maskStep, roiSize, coi,
                                                   pNorm);
}
ZeqStatus zeqiNormDiff_Inf_32f_C1MR(const Zeq32f* pSrc1, int src1Step, const Zeq32f* pSrc2, int src2Step,
                                    const Zeq8u* pMask, int maskStep, ZeqiSize roiSize, Zeq64f* pNorm) {
    return normOfDiff<Zeq32f, 1, Kind::Inf, false>(pSrc1, src1Step, pSrc2, src2Step, pMask, maskStep, roiSize, 1,
                                                   pNorm);
}
ZeqStatus zeqiNormDiff_Inf_32f_C3CMR(const Zeq32f* pSrc1, int src1Step, const Zeq32f* pSrc2, int src2Step,
                                     const Zeq8u* pMask, int maskStep, ZeqiSize roiSize, int coi, Zeq64f* pNorm) {
    return normOfDiff<Zeq32f, 3, Kind::Inf, false>(pSrc1, src1Step, pSrc2, src2Step, pMask, maskStep, roiSize, coi,
                                                   pNorm);
}
ZeqStatus zeqiNormDiff_L1_8u_C1MR(const Zeq8u* pSrc1, int src1Step, const Zeq8u* pSrc2, int src2Step,
                                  const Zeq8u* pMask, int maskStep, ZeqiSize roiSize, Zeq64f* pNorm) {
    return normOfDiff<Zeq8u, 1, Kind::L1, false>(pSrc1, src1Step, pSrc2, src2Step, pMask, maskStep, roiSize, 1,
                                                 pNorm);
}
ZeqStatus zeqiNormDiff_L1_8u_C3CMR(const Zeq8u* pSrc1, int src1Step, const Zeq8u* pSrc2, int src2Step,
                                   const Zeq8u* pMask, int maskStep, ZeqiSize roiSize, int coi, Zeq64f* pNorm) {
    return normOfDiff<Zeq8u, 3, Kind::L1, false>(pSrc1, src1Step, pSrc2, src2Step, pMask, maskStep, roiSize, coi,
                                                 pNorm);
}
ZeqStatus zeqiNormDiff_L1_8s_C1MR(const Zeq8s* pSrc1, int src1Step, const Zeq8s* pSrc2, int src2Step,
                                  const Zeq8u* pMask, int maskStep, ZeqiSize roiSize, Zeq64f* pNorm) {
    return normOfDiff<Zeq8s, 1, Kind::L1, false>(pSrc1, src1Step, pSrc2, src2Step, pMask, maskStep, roiSize, 1,
                                                 pNorm);
}
ZeqStatus zeqiNormDiff_L1_8s_C3CMR(const Zeq8s* pSrc1, int src1Step, const Zeq8s* pSrc2, int src2Step,
                                   const Zeq8u* pMask, int maskStep, ZeqiSize roiSize, int coi, Zeq64f* pNorm) {
    return normOfDiff<Zeq8s, 3, Kind::L1, false>(pSrc1, src1Step, pSrc2, src2Step, pMask, maskStep, roiSize, coi,
                                                 pNorm);
}
ZeqStatus zeqiNormDiff_L1_16u_C1MR(const Zeq16u* pSrc1, int src1Step, const Zeq16u* pSrc2, int src2Step,
                                   const Zeq8u* pMask, int maskStep, ZeqiSize roiSize, Zeq64f* pNorm) {
    return normOfDiff<Zeq16u, 1, Kind::L1, false>(pSrc1, src1Step, pSrc2, src2Step, pMask, maskStep, roiSize, 1,
                                                  pNorm);
}
ZeqStatus zeqiNormDiff_L1_16u_C3CMR(const Zeq16u* pSrc1, int src1Step, const Zeq16u* pSrc2, int src2Step,
                                    const Zeq8u* pMask, int maskStep, ZeqiSize roiSize, int coi, Zeq64f* pNorm) {
    return normOfDiff<Zeq16u, 3, Kind::L1, false>(pSrc1, src1Step, pSrc2, src2Step, pMask, maskStep, roiSize, coi,
                                                  pNorm);
}
ZeqStatus zeqiNormDiff_L1_32f_C1MR(const Zeq32f* pSrc1, int src1Step, const Zeq32f* pSrc2, int src2Step,
                                   const Zeq8u* pMask, int maskStep, ZeqiSize roiSize, Zeq64f* pNorm) {
    return normOfDiff<Zeq32f, 1, Kind::L1, false>(pSrc1, src1Step, pSrc2, src2Step, pMask, maskStep, roiSize, 1,
                                                  pNorm);
}
ZeqStatus zeqiNormDiff_L1_32f_C3CMR(const Zeq32f* pSrc1, int src1Step, const Zeq32f* pSrc2, int src2Step,
                                    const Zeq8u* pMask, int maskStep, ZeqiSize roiSize, int coi, Zeq64f* pNorm) {
    return normOfDiff<Zeq32f, 3, Kind::L1, false>(pSrc1, src1Step, pSrc2, src2Step, pMask, maskStep, roiSize, coi,
                                                  pNorm);
}
ZeqStatus zeqiNormDiff_L2_8u_C1MR(const Zeq8u* pSrc1, int src1Step, const Zeq8u* pSrc2, int src2Step,
                                  const Zeq8u* pMask, int maskStep, ZeqiSize roiSize, Zeq64f* pNorm) {
    return normOfDiff<Zeq8u, 1, Kind::L2, false>(pSrc1, src1Step, pSrc2, src2Step, pMask, maskStep, roiSize, 1,
                                                 pNorm);
}
ZeqStatus zeqiNormDiff_L2_8u_C3CMR(const Zeq8u* pSrc1, int src1Step, const Zeq8u* pSrc2, int src2Step,
                                   const Zeq8u* pMask, int maskStep, ZeqiSize roiSize, int coi, Zeq64f* pNorm) {
    return normOfDiff<Zeq8u, 3, Kind::L2, false>(pSrc1, src1Step, pSrc2, src2Step, pMask, maskStep, roiSize, coi,
                                                 pNorm);
}
ZeqStatus zeqiNormDiff_L2_8s_C1MR(const Zeq8s* pSrc1, int src1Step, const Zeq8s* pSrc2, int src2Step,
                                  const Zeq8u* pMask, int maskStep, ZeqiSize roiSize, Zeq64f* pNorm) {
    return normOfDiff<Zeq8s, 1, Kind::L2, false>(pSrc1, src1Step, pSrc2, src2Step, pMask, maskStep, roiSize, 1,
                                                 pNorm);
}
ZeqStatus zeqiNormDiff_L2_8s_C3CMR(const Zeq8s* pSrc1, int src1Step, const Zeq8s* pSrc2, int src2Step,
                                   const Zeq8u* pMask, int maskStep, ZeqiSize roiSize, int coi, Zeq64f* pNorm) {
    return normOfDiff<Zeq8s, 3, Kind::L2, false>(pSrc1, src1Step, pSrc2, src2Step, pMask, maskStep, roiSize, coi,
                                                 pNorm);
}
ZeqStatus zeqiNormDiff_L2_16u_C1MR(const Zeq16u* pSrc1, int src1Step, const Zeq16u* pSrc2, int src2Step,
                                   const Zeq8u* pMask, int maskStep, ZeqiSize roiSize, Zeq64f* pNorm) {
    return normOfDiff<Zeq16u, 1, Kind::L2, false>(pSrc1, src1Step, pSrc2, src2Step, pMask, maskStep, roiSize, 1,
                                                  pNorm);
}
ZeqStatus zeqiNormDiff_L2_16u_C3CMR(const Zeq16u* pSrc1, int src1Step, const Zeq16u* pSrc2, int src2Step,
                                    const Zeq8u* pMask, int maskStep, ZeqiSize roiSize, int coi, Zeq64f* pNorm) {
    return normOfDiff<Zeq16u, 3, Kind::L2, false>(pSrc1, src1Step, pSrc2, src2Step, pMask, maskStep, roiSize, coi,
                                                  pNorm);
}
ZeqStatus zeqiNormDiff_L2_32f_C1MR(const Zeq32f* pSrc1, int src1Step, const Zeq32f* pSrc2, int src2Step,
                                   const Zeq8u* pMask, int maskStep, ZeqiSize roiSize, Zeq64f* pNorm) {
    return normOfDiff<Zeq32f, 1, Kind::L2, false>(pSrc1, src1Step, pSrc2, src2Step, pMask, maskStep, roiSize, 1,
                                                  pNorm);
}
ZeqStatus zeqiNormDiff_L2_32f_C3CMR(const Zeq32f* pSrc1, int src1Step, const Zeq32f* pSrc2, int src2Step,
                                    const Zeq8u* pMask, int maskStep, ZeqiSize roiSize, int coi, Zeq64f* pNorm) {
    return normOfDiff<Zeq32f, 3, Kind::L2, false>(pSrc1, src1Step, pSrc2, src2Step, pMask, maskStep, roiSize, coi,
                                                  pNorm);
}
ZeqStatus zeqiNormRel_Inf_8u_C1MR(const Zeq8u* pSrc1, int src1Step, const Zeq8u* pSrc2, int src2Step,
                                  const Zeq8u* pMask, int maskStep, ZeqiSize roiSize, Zeq64f* pNorm) {
    return normOfDiff<Zeq8u, 1, Kind::Inf, true>(pSrc1, src1Step, pSrc2, src2Step, pMask, maskStep, roiSize, 1,
                                                 pNorm);
}
ZeqStatus zeqiNormRel_Inf_8u_C3CMR(const Zeq8u* pSrc1, int src1Step, const Zeq8u* pSrc2, int src2Step,
                                   const Zeq8u* pMask, int maskStep, ZeqiSize roiSize, int coi, Zeq64f* pNorm) {
    return normOfDiff<Zeq8u, 3, Kind::Inf, true>(pSrc1, src1Step, pSrc2, src2Step, pMask, maskStep, roiSize, coi,
                                                 pNorm);
}
ZeqStatus zeqiNormRel_Inf_8s_C1MR(const Zeq8s* pSrc1, int src1Step, const Zeq8s* pSrc2, int src2Step,
                                  const Zeq8u* pMask, int maskStep, ZeqiSize roiSize, Zeq64f* pNorm) {
    return normOfDiff<Zeq8s, 1, Kind::Inf, true>(pSrc1, src1Step, pSrc2, src2Step, pMask, maskStep, roiSize, 1,
                                                 pNorm);
}
ZeqStatus zeqiNormRel_Inf_8s_C3CMR(const Zeq8s* pSrc1, int src1Step, const Zeq8s* pSrc2, int src2Step,
                                   const Zeq8u* pMask, int maskStep, ZeqiSize roiSize, int coi, Zeq64f* pNorm) {
    return normOfDiff<Zeq8s, 3, Kind::Inf, true>(pSrc1, src1Step, pSrc2, src2Step, pMask, maskStep, roiSize, coi,
                                                 pNorm);
}
ZeqStatus zeqiNormRel_Inf_16u_C1MR(const Zeq16u* pSrc1, int src1Step, const Zeq16u* pSrc2, int src2Step,
                                   const Zeq8u* pMask, int maskStep, ZeqiSize roiSize, Zeq64f* pNorm) {
    return normOfDiff<Zeq16u, 1, Kind::Inf, true>(pSrc1, src1Step, pSrc2, src2Step, pMask, maskStep, roiSize, 1,
                                                  pNorm);
}
ZeqStatus zeqiNormRel_Inf_16u_C3CMR(const Zeq16u* pSrc1, int src1Step, const Zeq16u* pSrc2, int src2Step,
                                    const Zeq8u* pMask, int maskStep, ZeqiSize roiSize, int coi, Zeq64f* pNorm) {
    return normOfDiff<Zeq16u, 3, Kind::Inf, true>(pSrc1, src1Step, pSrc2, src2Step, pMask, maskStep, roiSize, coi,
                                                  pNorm);
}
ZeqStatus zeqiNormRel_Inf_32f_C1MR(const Zeq32f* pSrc1, int src1Step, const Zeq32f* pSrc2, int src2Step,
                                   const Zeq8u* pMask, int maskStep, ZeqiSize roiSize, Zeq64f* pNorm) {
    return normOfDiff<Zeq32f, 1, Kind::Inf, true>(pSrc1, src1Step, pSrc2, src2Step, pMask, maskStep, roiSize, 1,
                                                  pNorm);
}
ZeqStatus zeqiNormRel_Inf_32f_C3CMR(const Zeq32f* pSrc1, int src1Step, const Zeq32f* pSrc2, int src2Step,
                                    const Zeq8u* pMask, int maskStep, ZeqiSize roiSize, int coi, Zeq64f* pNorm) {
    return normOfDiff<Zeq32f, 3, Kind::Inf, true>(pSrc1, src1Step, pSrc2, src2Step, pMask, maskStep, roiSize, coi,
                                                  pNorm);
}
ZeqStatus zeqiNormRel_L1_8u_C1MR(const Zeq8u* pSrc1, int src1Step, const Zeq8u* pSrc2, int src2Step,
                                 const Zeq8u* pMask, int maskStep, ZeqiSize roiSize, Zeq64f* pNorm) {
    return normOfDiff<Zeq8u, 1, Kind::L1, true>(pSrc1, src1Step, pSrc2, src2Step, pMask, maskStep, roiSize, 1, pNorm);
}
ZeqStatus zeqiNormRel_L1_8u_C3CMR(const Zeq8u* pSrc1, int src1Step, const Zeq8u* pSrc2, int src2Step,
                                  const Zeq8u* pMask, int maskStep, ZeqiSize roiSize, int coi, Zeq64f* pNorm) {
    return normOfDiff<Zeq8u, 3, Kind::L1, true>(pSrc1, src1Step, pSrc2, src2Step, pMask, maskStep, roiSize, coi,
                                                pNorm);
}
ZeqStatus zeqiNormRel_L1_8s_C1MR(const Zeq8s* pSrc1, int src1Step, const Zeq8s* pSrc2, int src2Step,
                                 const Zeq8u* pMask, int maskStep, ZeqiSize roiSize, Zeq64f* pNorm) {
    return normOfDiff<Zeq8s, 1, Kind::L1, true>(pSrc1, src1Step, pSrc2, src2Step, pMask, maskStep, roiSize, 1, pNorm);
}
ZeqStatus zeqiNormRel_L1_8s_C3CMR(const Zeq8s* pSrc1, int src1Step, const Zeq8s* pSrc2, int src2Step,
                                  const Zeq8u* pMask, int maskStep, ZeqiSize roiSize, int coi, Zeq64f* pNorm) {
    return normOfDiff<Zeq8s, 3, Kind::L1, true>(pSrc1, src1Step, pSrc2, src2Step, pMask, maskStep, roiSize, coi,
                                                pNorm);
}
ZeqStatus zeqiNormRel_L1_16u_C1MR(const Zeq16u* pSrc1, int src1Step, const Zeq16u* pSrc2, int src2Step,
                                  const Zeq8u* pMask, int maskStep, ZeqiSize roiSize, Zeq64f* pNorm) {
    return normOfDiff<Zeq16u, 1, Kind::L1, true>(pSrc1, src1Step, pSrc2, src2Step, pMask, maskStep, roiSize, 1,
                                                 pNorm);
}
ZeqStatus zeqiNormRel_L1_16u_C3CMR(const Zeq16u* pSrc1, int src1Step, const Zeq16u* pSrc2, int src2Step,
                                   const Zeq8u* pMask, int maskStep, ZeqiSize roiSize, int coi, Zeq64f* pNorm) {
    return normOfDiff<Zeq16u, 3, Kind::L1, true>(pSrc1, src1Step, pSrc2, src2Step, pMask, maskStep, roiSize, coi,
                                                 pNorm);
}
ZeqStatus zeqiNormRel_L1_32f_C1MR(const Zeq32f* pSrc1, int src1Step, const Zeq32f* pSrc2, int src2Step,
                                  const Zeq8u* pMask, int maskStep, ZeqiSize roiSize, Zeq64f* pNorm) {
    return normOfDiff<Zeq32f, 1, Kind::L1, true>(pSrc1, src1Step, pSrc2, src2Step, pMask, maskStep, roiSize, 1,
                                                 pNorm);
}
ZeqStatus zeqiNormRel_L1_32f_C3CMR(const Zeq32f* pSrc1, int src1Step, const Zeq32f* pSrc2, int src2Step,
                                   const Zeq8u* pMask, int maskStep, ZeqiSize roiSize, int coi, Zeq64f* pNorm) {
    return normOfDiff<Zeq32f, 3, Kind::L1, true>(pSrc1, src1Step, pSrc2, src2Step, pMask, maskStep, roiSize, coi,
                                                 pNorm);
}
ZeqStatus zeqiNormRel_L2_8u_C1MR(const Zeq8u* pSrc1, int src1Step, const Zeq8u* pSrc2, int src2Step,
                                 const Zeq8u* pMask, int maskStep, ZeqiSize roiSize, Zeq64f* pNorm) {
    return normOfDiff<Zeq8u, 1, Kind::L2, true>(pSrc1, src1Step, pSrc2, src2Step, pMask, maskStep, roiSize, 1, pNorm);
}
ZeqStatus zeqiNormRel_L2_8u_C3CMR(const Zeq8u* pSrc1, int src1Step, const Zeq8u* pSrc2, int src2Step,
                                  const Zeq8u* pMask, int maskStep, ZeqiSize roiSize, int coi, Zeq64f* pNorm) {
    return normOfDiff<Zeq8u, 3, Kind::L2, true>(pSrc1, src1Step, pSrc2, src2Step, pMask, maskStep, roiSize, coi,
                                                pNorm);
}
ZeqStatus zeqiNormRel_L2_8s_C1MR(const Zeq8s* pSrc1, int src1Step, const Zeq8s* pSrc2, int src2Step,
                                 const Zeq8u* pMask, int maskStep, ZeqiSize roiSize, Zeq64f* pNorm) {
    return normOfDiff<Zeq8s, 1, Kind::L2, true>(pSrc1, src1Step, pSrc2, src2Step, pMask, maskStep, roiSize, 1, pNorm);
}
ZeqStatus zeqiNormRel_L2_8s_C3CMR(const Zeq8s* pSrc1, int src1Step, const Zeq8s* pSrc2, int src2Step,
                                  const Zeq8u* pMask, int maskStep, ZeqiSize roiSize, int coi, Zeq64f* pNorm) {
    return normOfDiff<Zeq8s, 3, Kind::L2, true>(pSrc1, src1Step, pSrc2, src2Step, pMask, maskStep, roiSize, coi,
                                                pNorm);
}
ZeqStatus zeqiNormRel_L2_16u_C1MR(const Zeq16u* pSrc1, int src1Step, const Zeq16u* pSrc2, int src2Step,
                                  const Zeq8u* pMask, int maskStep, ZeqiSize roiSize, Zeq64f* pNorm) {
    return normOfDiff<Zeq16u, 1, Kind::L2, true>(pSrc1, src1Step, pSrc2, src2Step, pMask, maskStep, roiSize, 1,
                                                 pNorm);
}
ZeqStatus zeqiNormRel_L2_16u_C3CMR(const Zeq16u* pSrc1, int src1Step, const Zeq16u* pSrc2, int src2Step,
                                   const Zeq8u* pMask, int maskStep, ZeqiSize roiSize, int coi, Zeq64f* pNorm) {
    return normOfDiff<Zeq16u, 3, Kind::L2, true>(pSrc1, src1Step, pSrc2, src2Step, pMask, maskStep, roiSize, coi,
                                                 pNorm);
}
ZeqStatus zeqiNormRel_L2_32f_C1MR(const Zeq32f* pSrc1, int src1Step, const Zeq32f* pSrc2, int src2Step,
                                  const Zeq8u* pMask, int maskStep, ZeqiSize roiSize, Zeq64f* pNorm) {
    return normOfDiff<Zeq32f, 1, Kind::L2, true>(pSrc1, src1Step, pSrc2, src2Step, pMask, maskStep, roiSize, 1,
                                                 pNorm);
}
ZeqStatus zeqiNormRel_L2_32f_C3CMR(const Zeq32f* pSrc1, int src1Step, const Zeq32f* pSrc2, int src2Step,
                                   const Zeq8u* pMask, int maskStep, ZeqiSize roiSize, int coi, Zeq64f* pNorm) {
    return normOfDiff<Zeq32f, 3, Kind::L2, true>(pSrc1, src1Step, pSrc2, src2Step, pMask, maskStep, roiSize, coi,
                                                 pNorm);
}
