// Canny edge detection from first-derivative images that the caller computed.
//
// Three stages share one caller-supplied work buffer: the gradient stage fills
// a direction map (one byte per pixel) and an L1 magnitude map (one float per
// pixel), both with a zero frame so that every roi pixel has eight readable
// neighbours; suppression keeps the local maxima along the gradient, marks
// them 0x80 in the direction map and pushes the strong ones on a stack of
// (row, column) pairs; hysteresis grows the strong edges through marked
// neighbours, depth first.
#include "core/zqcvsimd.h"

#include <cstring>

namespace {

// Tangents of 67.5 and 22.5 degrees. Products with them are formed in double
// and rounded to float before comparing, so scalar and vector paths must both
// do exactly that.
constexpr double kTan67 = 2.414213562373095;
constexpr double kTan22 = 0.41421356237309503;

constexpr Zeq8u kCandidate = 0x80;

// Direction codes of the map before suppression.
enum : Zeq8u { kNone = 0, kHorizontal = 1, kDiagonalOpposite = 2, kVertical = 3, kDiagonalSame = 4 };

// The three areas of the work buffer for a roi of w x h.
struct WorkAreas {
    Zeq8u* direction;  // (w + 2) x (h + 2) bytes
    Zeq32f* magnitude; // (w + 2) x (h + 2) floats
    int* stack;        // one (row, column) pair per framed pixel
};

inline uintptr_t alignUp32(uintptr_t p) { return (p + 31) & ~uintptr_t(31); }

WorkAreas carve(Zeq8u* buffer, int w, int h) {
    const size_t framed = size_t(w + 2) * size_t(h + 2);
    const uintptr_t direction = alignUp32(reinterpret_cast<uintptr_t>(buffer));
    const uintptr_t magnitude = alignUp32(direction + framed);
    return {reinterpret_cast<Zeq8u*>(direction), reinterpret_cast<Zeq32f*>(magnitude),
            reinterpret_cast<int*>(magnitude + framed * sizeof(Zeq32f))};
}

// ---- gradient ----

// |d| as float and the sign bit, per derivative type. Float rows may sit at
// any even address, so scalar float loads go through memcpy.
inline float absOf(Zeq16s d) { return float(d < 0 ? -int(d) : int(d)); }
inline bool signOf(Zeq16s d) { return d < 0; }
inline uint32_t bitsAt(const Zeq32f* p) {
    uint32_t b;
    std::memcpy(&b, p, 4);
    return b;
}
inline float absOf(uint32_t bits) {
    bits &= 0x7fffffffu;
    float f;
    std::memcpy(&f, &bits, 4);
    return f;
}

inline Zeq8u directionCode(float a, float b, bool signsDiffer) {
    if (b > float(double(a) * kTan67)) return kVertical;
    if (b >= float(double(a) * kTan22)) return signsDiffer ? kDiagonalOpposite : kDiagonalSame;
    return kHorizontal;
}

inline void gradientPixel(float a, float b, bool signsDiffer, float low, Zeq8u* dir, Zeq32f* mag) {
    const float m = a + b;
    if (m > low) {
        *mag = m;
        *dir = directionCode(a, b, signsDiffer);
    } else {
        *mag = 0.0f;
        *dir = kNone;
    }
}

// float(double(x) * k) lane by lane.
inline __m128 scaledInDouble(__m128 x, __m128d k) {
    const __m128 lo = _mm_cvtpd_ps(_mm_mul_pd(_mm_cvtps_pd(x), k));
    const __m128 hi = _mm_cvtpd_ps(_mm_mul_pd(_mm_cvtps_pd(_mm_movehl_ps(x, x)), k));
    return _mm_movelh_ps(lo, hi);
}

inline __m128i select(__m128i mask, __m128i yes, __m128i no) {
    return _mm_or_si128(_mm_and_si128(mask, yes), _mm_andnot_si128(mask, no));
}

// Codes (32-bit lanes) and magnitudes of four pixels; `differ` has all bits
// set in the lanes whose derivatives have different sign bits.
struct Gradient4 {
    __m128i code;
    __m128 mag;
};
inline Gradient4 gradient4(__m128 a, __m128 b, __m128i differ, __m128 low) {
    const __m128 m = _mm_add_ps(a, b);
    const __m128i valid = _mm_castps_si128(_mm_cmpgt_ps(m, low));
    const __m128i steep = _mm_castps_si128(_mm_cmpgt_ps(b, scaledInDouble(a, _mm_set1_pd(kTan67))));
    const __m128i diagonal = _mm_castps_si128(_mm_cmpge_ps(b, scaledInDouble(a, _mm_set1_pd(kTan22))));
    __m128i code = select(differ, _mm_set1_epi32(kDiagonalOpposite), _mm_set1_epi32(kDiagonalSame));
    code = select(diagonal, code, _mm_set1_epi32(kHorizontal));
    code = select(steep, _mm_set1_epi32(kVertical), code);
    return {_mm_and_si128(code, valid), _mm_and_ps(m, _mm_castsi128_ps(valid))};
}

inline void storeGradient8(const Gradient4& g0, const Gradient4& g1, Zeq8u* dir, Zeq32f* mag) {
    const __m128i codes = _mm_packs_epi32(g0.code, g1.code);
    _mm_storel_epi64(reinterpret_cast<__m128i*>(dir), _mm_packus_epi16(codes, codes));
    _mm_storeu_ps(mag, g0.mag);
    _mm_storeu_ps(mag + 4, g1.mag);
}

// One roi row into the interior of one framed row of each map.
void gradientRow(const Zeq16s* dx, const Zeq16s* dy, int w, float low, Zeq8u* dir, Zeq32f* mag) {
    const __m128 lowV = _mm_set1_ps(low);
    const __m128i zero = _mm_setzero_si128();
    int x = 0;
    for (; x + 8 <= w; x += 8) {
        const __m128i vx = _mm_loadu_si128(reinterpret_cast<const __m128i*>(dx + x));
        const __m128i vy = _mm_loadu_si128(reinterpret_cast<const __m128i*>(dy + x));
        // |d| in 16 bits wraps -32768 onto itself, which read unsigned is 32768.
        const __m128i sx = _mm_srai_epi16(vx, 15), sy = _mm_srai_epi16(vy, 15);
        const __m128i ax = _mm_sub_epi16(_mm_xor_si128(vx, sx), sx);
        const __m128i ay = _mm_sub_epi16(_mm_xor_si128(vy, sy), sy);
        const __m128i differ = _mm_xor_si128(sx, sy);
        const Gradient4 g0 = gradient4(_mm_cvtepi32_ps(_mm_unpacklo_epi16(ax, zero)),
                                       _mm_cvtepi32_ps(_mm_unpacklo_epi16(ay, zero)),
                                       _mm_unpacklo_epi16(differ, differ), lowV);
        const Gradient4 g1 = gradient4(_mm_cvtepi32_ps(_mm_unpackhi_epi16(ax, zero)),
                                       _mm_cvtepi32_ps(_mm_unpackhi_epi16(ay, zero)),
                                       _mm_unpackhi_epi16(differ, differ), lowV);
        storeGradient8(g0, g1, dir + x, mag + x);
    }
    for (; x < w; ++x) gradientPixel(absOf(dx[x]), absOf(dy[x]), signOf(dx[x]) != signOf(dy[x]), low, dir + x, mag + x);
}

void gradientRow(const Zeq32f* dx, const Zeq32f* dy, int w, float low, Zeq8u* dir, Zeq32f* mag) {
    const __m128 lowV = _mm_set1_ps(low);
    const __m128 absMask = _mm_castsi128_ps(_mm_set1_epi32(0x7fffffff));
    auto four = [&](const Zeq32f* px, const Zeq32f* py) {
        const __m128 vx = _mm_loadu_ps(px), vy = _mm_loadu_ps(py);
        const __m128i differ = _mm_srai_epi32(_mm_castps_si128(_mm_xor_ps(vx, vy)), 31);
        return gradient4(_mm_and_ps(vx, absMask), _mm_and_ps(vy, absMask), differ, lowV);
    };
    int x = 0;
    for (; x + 8 <= w; x += 8) storeGradient8(four(dx + x, dy + x), four(dx + x + 4, dy + x + 4), dir + x, mag + x);
    for (; x < w; ++x) {
        const uint32_t bx = bitsAt(dx + x), by = bitsAt(dy + x);
        gradientPixel(absOf(bx), absOf(by), ((bx ^ by) >> 31) != 0, low, dir + x, mag + x);
    }
}

// ---- suppression ----

// Whether the pixel at `mag` survives for its direction code, with `stride`
// the framed row length. Along a diagonal both neighbours must be strictly
// smaller; horizontally and vertically the forward neighbour may tie, so a
// plateau keeps exactly one pixel.
inline bool survives(const Zeq32f* mag, Zeq8u code, ptrdiff_t stride) {
    static_assert(kHorizontal == 1 && kDiagonalOpposite == 2 && kVertical == 3 && kDiagonalSame == 4, "");
    const ptrdiff_t offset = code == kHorizontal ? 1 : code == kVertical ? stride : stride + (code == kDiagonalSame ? 1 : -1);
    const float m = mag[0], f = mag[offset], r = mag[-offset];
    return m > r && (m > f || (m == f && (code & 1)));
}

inline __m128i packMasks(__m128 m0, __m128 m1, __m128 m2, __m128 m3) {
    return _mm_packs_epi16(_mm_packs_epi32(_mm_castps_si128(m0), _mm_castps_si128(m1)),
                           _mm_packs_epi32(_mm_castps_si128(m2), _mm_castps_si128(m3)));
}

// Survival of 16 pixels for each of the four directions, as byte masks.
struct Survival16 {
    __m128i dir[4];
    __m128i strong;
};
inline Survival16 survival16(const Zeq32f* mag, ptrdiff_t stride, __m128 high) {
    __m128 s[4][4], strong[4];
    for (int g = 0; g < 4; ++g) {
        const Zeq32f* c = mag + 4 * g;
        const Zeq32f* up = c - stride;
        const Zeq32f* down = c + stride;
        const __m128 m = _mm_loadu_ps(c);
        s[0][g] = _mm_and_ps(_mm_cmpgt_ps(m, _mm_loadu_ps(c - 1)), _mm_cmpge_ps(m, _mm_loadu_ps(c + 1)));
        s[1][g] = _mm_and_ps(_mm_cmpgt_ps(m, _mm_loadu_ps(up + 1)), _mm_cmpgt_ps(m, _mm_loadu_ps(down - 1)));
        s[2][g] = _mm_and_ps(_mm_cmpgt_ps(m, _mm_loadu_ps(up)), _mm_cmpge_ps(m, _mm_loadu_ps(down)));
        s[3][g] = _mm_and_ps(_mm_cmpgt_ps(m, _mm_loadu_ps(up - 1)), _mm_cmpgt_ps(m, _mm_loadu_ps(down + 1)));
        strong[g] = _mm_cmpgt_ps(m, high);
    }
    Survival16 r;
    for (int k = 0; k < 4; ++k) r.dir[k] = packMasks(s[k][0], s[k][1], s[k][2], s[k][3]);
    r.strong = packMasks(strong[0], strong[1], strong[2], strong[3]);
    return r;
}

// One framed row (interior columns 1..w); `y` is its roi row. Returns the new
// stack top.
int* suppressRow(Zeq8u* dir, const Zeq32f* mag, ptrdiff_t stride, int w, int y, float high, Zeq8u* dst, int* top) {
    const __m128 highV = _mm_set1_ps(high);
    const __m128i zero = _mm_setzero_si128();
    int x = 0;
    for (; x + 16 <= w; x += 16) {
        Zeq8u* d = dir + 1 + x;
        const __m128i codes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(d));
        if (_mm_movemask_epi8(_mm_cmpeq_epi8(codes, zero)) == 0xffff) {
            _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + x), zero);
            continue;
        }
        const Survival16 s = survival16(mag + 1 + x, stride, highV);
        __m128i keep = zero;
        for (int k = 0; k < 4; ++k)
            keep = _mm_or_si128(keep, _mm_and_si128(s.dir[k], _mm_cmpeq_epi8(codes, _mm_set1_epi8(char(k + 1)))));
        const __m128i seeds = _mm_and_si128(keep, s.strong);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(d), select(keep, _mm_set1_epi8(char(kCandidate)), codes));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + x), seeds);
        for (unsigned bits = unsigned(_mm_movemask_epi8(seeds)); bits != 0; bits &= bits - 1) {
            top[0] = y;
            top[1] = x + __builtin_ctz(bits);
            top += 2;
        }
    }
    for (; x < w; ++x) {
        dst[x] = 0;
        const Zeq8u code = dir[1 + x];
        if (code == kNone || !survives(mag + 1 + x, code, stride)) continue;
        dir[1 + x] = kCandidate;
        if (mag[1 + x] > high) {
            dst[x] = 255;
            top[0] = y;
            top[1] = x;
            top += 2;
        }
    }
    return top;
}

// Suppression over the whole roi; returns the number of ints pushed (two per seed).
int ownNonMaximaSuppression(Zeq8u* directionMap, const Zeq32f* magnitudeMap, int width, int height,
                            float highThresh, int* stack, Zeq8u* pDst, int dstStep) {
    const ptrdiff_t stride = ptrdiff_t(width) + 2;
    int* top = stack;
    for (int y = 0; y < height; ++y)
        top = suppressRow(directionMap + (y + 1) * stride, magnitudeMap + (y + 1) * stride, stride, width, y,
                          highThresh, zq::row(pDst, dstStep, y), top);
    return int(top - stack);
}

// ---- hysteresis ----

// Depth-first growth from the seeds on the stack through candidate pixels.
// The zero frame of the direction map keeps the walk inside the roi, so the
// height is not needed.
void ownHysteresisThresholding(const Zeq8u* directionMap, int width, int /*height*/, int* stack, int entries,
                               Zeq8u* pDst, int dstStep) {
    const ptrdiff_t stride = ptrdiff_t(width) + 2;
    static constexpr int kRows[8] = {-1, -1, -1, 0, 0, 1, 1, 1};
    static constexpr int kCols[8] = {-1, 0, 1, -1, 1, -1, 0, 1};
    int* top = stack + entries;
    while (top != stack) {
        top -= 2;
        const int y = top[0], x = top[1];
        const Zeq8u* dir = directionMap + (y + 1) * stride + (x + 1);
        Zeq8u* dst = zq::row(pDst, dstStep, y) + x;
        for (int k = 0; k < 8; ++k) {
            if (!(dir[kRows[k] * stride + kCols[k]] & kCandidate)) continue;
            Zeq8u* out = dst + ptrdiff_t(kRows[k]) * dstStep + kCols[k];
            if (*out) continue;
            *out = 255;
            top[0] = y + kRows[k];
            top[1] = x + kCols[k];
            top += 2;
        }
    }
}

// ---- the whole detector ----

template <class T>
void ownCanny(const T* dx, int dxStep, const T* dy, int dyStep, Zeq8u* dst, int dstStep, int w, int h, float low,
              float high, Zeq8u* buffer) {
    const WorkAreas a = carve(buffer, w, h);
    const ptrdiff_t stride = ptrdiff_t(w) + 2;
    std::memset(a.direction, 0, size_t(stride));
    std::memset(a.magnitude, 0, size_t(stride) * sizeof(Zeq32f));
    for (int y = 0; y < h; ++y) {
        Zeq8u* dir = a.direction + (y + 1) * stride;
        Zeq32f* mag = a.magnitude + (y + 1) * stride;
        dir[0] = dir[w + 1] = 0;
        mag[0] = mag[w + 1] = 0.0f;
        gradientRow(zq::row(dx, dxStep, y), zq::row(dy, dyStep, y), w, low, dir + 1, mag + 1);
    }
    std::memset(a.direction + (h + 1) * stride, 0, size_t(stride));
    std::memset(a.magnitude + (h + 1) * stride, 0, size_t(stride) * sizeof(Zeq32f));

    const int entries = ownNonMaximaSuppression(a.direction, a.magnitude, w, h, high, a.stack, dst, dstStep);
    ownHysteresisThresholding(a.direction, w, h, a.stack, entries, dst, dstStep);
}

// NaN thresholds fail both tests.
inline ZeqStatus thresholds(float low, float high) {
    return (low >= 0.0f && high >= low) ? zeqStsOk : zeqStsBadArg;
}

template <class T>
ZeqStatus canny(const T* pSrcDx, int srcDxStep, const T* pSrcDy, int srcDyStep, Zeq8u* pDstEdges, int dstEdgeStep,
                ZeqiSize roiSize, Zeq32f lowThresh, Zeq32f highThresh, Zeq8u* pBuffer) {
    ZQ_CHECK(zq::nonNull(pSrcDx, pSrcDy, pDstEdges, pBuffer));
    ZQ_CHECK(zq::roiSize(roiSize));
    ZQ_CHECK(zq::stepsAtLeast(zq::rowBytes<T>(roiSize.width), srcDxStep, srcDyStep));
    ZQ_CHECK(zq::stepsAtLeast(zq::rowBytes<Zeq8u>(roiSize.width), dstEdgeStep));
    ZQ_CHECK(zq::stepsEven(srcDxStep, srcDyStep));
    ZQ_CHECK(thresholds(lowThresh, highThresh));
    ownCanny(pSrcDx, srcDxStep, pSrcDy, srcDyStep, pDstEdges, dstEdgeStep, roiSize.width, roiSize.height, lowThresh,
             highThresh, pBuffer);
    return zeqStsOk;
}

}  // namespace

// One direction byte, one magnitude float and one stack pair per framed
// pixel, plus room for aligning two areas to 32 bytes. A roi whose buffer
// size does not fit the result is refused as a size error.
ZeqStatus zeqiCannyGetSize(ZeqiSize roiSize, int* pBufferSize) {
    ZQ_CHECK(zq::nonNull(pBufferSize));
    ZQ_CHECK(zq::roiSize(roiSize));
    const int64_t bytes = 13 * (int64_t(roiSize.width) + 2) * (int64_t(roiSize.height) + 2) + 64;
    if (bytes > INT32_MAX) return zeqStsSize;
    *pBufferSize = int(bytes);
    return zeqStsOk;
}

ZeqStatus zeqiCanny_16s8u_C1R(const Zeq16s* pSrcDx, int srcDxStep, const Zeq16s* pSrcDy, int srcDyStep,
                              Zeq8u* pDstEdges, int dstEdgeStep, ZeqiSize roiSize, Zeq32f lowThresh,
                              Zeq32f highThresh, Zeq8u* pBuffer) {
    return canny(pSrcDx, srcDxStep, pSrcDy, srcDyStep, pDstEdges, dstEdgeStep, roiSize, lowThresh, highThresh,
                 pBuffer);
}

ZeqStatus zeqiCanny_32f8u_C1R(const Zeq32f* pSrcDx, int srcDxStep, const Zeq32f* pSrcDy, int srcDyStep,
                              Zeq8u* pDstEdges, int dstEdgeStep, ZeqiSize roiSize, Zeq32f lowThresh,
                              Zeq32f highThresh, Zeq8u* pBuffer) {
    return canny(pSrcDx, srcDxStep, pSrcDy, srcDyStep, pDstEdges, dstEdgeStep, roiSize, lowThresh, highThresh,
                 pBuffer);
}
