// Canny edge detection from first-derivative images that the caller computed.
//
// Three stages share one caller-supplied work buffer: the gradient stage fills
// a direction map (one byte per pixel) and L1 magnitudes (one float per
// pixel), both with a zero frame so that every roi pixel has eight readable
// neighbours; suppression keeps the local maxima along the gradient, marks
// them 0x80 in the direction map and pushes the strong ones on a stack of
// (row, column) pairs; hysteresis grows the strong edges through marked
// neighbours, depth first. Suppression of a row needs the magnitudes of that
// row and its two neighbours only, so the gradient runs one row ahead into a
// ring of three magnitude rows at the start of the magnitude area, which stays
// in the first-level cache; the rest of that area is not used.
#include "core/zqcvsimd.h"
#include "filters/zqcvcanny.h"

#include <algorithm>
#include <cstring>

namespace {

// Tangents of 67.5 and 22.5 degrees. Products with them are formed in double
// and rounded to float before comparing, so scalar and vector paths must both
// do exactly that.
constexpr double kTan67 = 2.414213562373095;
constexpr double kTan22 = 0.41421356237309503;

// Marks of the pixels that survive suppression. While the detector runs,
// those already in the result carry kEdge instead; they become kCandidate
// again when the result is written.
constexpr Zeq8u kCandidate = 0x80, kEdge = 0xff;

// Direction codes of the map before suppression.
enum : Zeq8u { kNone = 0, kHorizontal = 1, kDiagonalOpposite = 2, kVertical = 3, kDiagonalSame = 4 };

// The three areas of the work buffer for a roi of w x h.
struct WorkAreas {
    Zeq8u* direction;  // (w + 2) x (h + 2) bytes
    Zeq32f* magnitude; // room for (w + 2) x (h + 2) floats; three rows used
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

inline __m128i packMasks(__m128 m0, __m128 m1) {
    return _mm_packs_epi32(_mm_castps_si128(m0), _mm_castps_si128(m1));
}

// |dx|, |dy| of eight pixels (two registers each) and a 16-bit lane mask of
// the pixels whose derivatives differ in sign.
struct Abs8 {
    __m128 a0, a1, b0, b1;
    __m128i differ;
};

inline Abs8 load8(const Zeq16s* dx, const Zeq16s* dy) {
    const __m128i zero = _mm_setzero_si128();
    const __m128i vx = _mm_loadu_si128(reinterpret_cast<const __m128i*>(dx));
    const __m128i vy = _mm_loadu_si128(reinterpret_cast<const __m128i*>(dy));
    // |d| in 16 bits wraps -32768 onto itself, which read unsigned is 32768.
    const __m128i sx = _mm_srai_epi16(vx, 15), sy = _mm_srai_epi16(vy, 15);
    const __m128i ax = _mm_sub_epi16(_mm_xor_si128(vx, sx), sx);
    const __m128i ay = _mm_sub_epi16(_mm_xor_si128(vy, sy), sy);
    return {_mm_cvtepi32_ps(_mm_unpacklo_epi16(ax, zero)), _mm_cvtepi32_ps(_mm_unpackhi_epi16(ax, zero)),
            _mm_cvtepi32_ps(_mm_unpacklo_epi16(ay, zero)), _mm_cvtepi32_ps(_mm_unpackhi_epi16(ay, zero)),
            _mm_xor_si128(sx, sy)};
}

inline Abs8 load8(const Zeq32f* dx, const Zeq32f* dy) {
    const __m128 absMask = _mm_castsi128_ps(_mm_set1_epi32(0x7fffffff));
    const __m128 x0 = _mm_loadu_ps(dx), x1 = _mm_loadu_ps(dx + 4);
    const __m128 y0 = _mm_loadu_ps(dy), y1 = _mm_loadu_ps(dy + 4);
    const __m128i differ = _mm_packs_epi32(_mm_srai_epi32(_mm_castps_si128(_mm_xor_ps(x0, y0)), 31),
                                           _mm_srai_epi32(_mm_castps_si128(_mm_xor_ps(x1, y1)), 31));
    return {_mm_and_ps(x0, absMask), _mm_and_ps(x1, absMask), _mm_and_ps(y0, absMask), _mm_and_ps(y1, absMask),
            differ};
}

// Magnitudes of eight pixels, zero where not above the low threshold;
// returns whether any is above.
inline bool magnitude8(const Abs8& v, __m128 low, Zeq32f* mag) {
    const __m128 m0 = _mm_add_ps(v.a0, v.b0), m1 = _mm_add_ps(v.a1, v.b1);
    const __m128 valid0 = _mm_cmpgt_ps(m0, low), valid1 = _mm_cmpgt_ps(m1, low);
    _mm_storeu_ps(mag, _mm_and_ps(m0, valid0));
    _mm_storeu_ps(mag + 4, _mm_and_ps(m1, valid1));
    return _mm_movemask_ps(_mm_or_ps(valid0, valid1)) != 0;
}

// Direction codes of eight pixels, 0 where not above the low threshold.
inline void direction8(const Abs8& v, __m128 low, Zeq8u* dir) {
    const __m128i valid = packMasks(_mm_cmpgt_ps(_mm_add_ps(v.a0, v.b0), low), _mm_cmpgt_ps(_mm_add_ps(v.a1, v.b1), low));
    const __m128d k67 = _mm_set1_pd(kTan67), k22 = _mm_set1_pd(kTan22);
    const __m128i steep =
        packMasks(_mm_cmpgt_ps(v.b0, scaledInDouble(v.a0, k67)), _mm_cmpgt_ps(v.b1, scaledInDouble(v.a1, k67)));
    const __m128i diagonal =
        packMasks(_mm_cmpge_ps(v.b0, scaledInDouble(v.a0, k22)), _mm_cmpge_ps(v.b1, scaledInDouble(v.a1, k22)));
    __m128i code = select(v.differ, _mm_set1_epi16(kDiagonalOpposite), _mm_set1_epi16(kDiagonalSame));
    code = select(diagonal, code, _mm_set1_epi16(kHorizontal));
    code = select(steep, _mm_set1_epi16(kVertical), code);
    code = _mm_and_si128(code, valid);
    _mm_storel_epi64(reinterpret_cast<__m128i*>(dir), _mm_packus_epi16(code, code));
}

inline void gradientPixel(const Zeq16s* dx, const Zeq16s* dy, float low, Zeq8u* dir, Zeq32f* mag) {
    gradientPixel(absOf(*dx), absOf(*dy), signOf(*dx) != signOf(*dy), low, dir, mag);
}
inline void gradientPixel(const Zeq32f* dx, const Zeq32f* dy, float low, Zeq8u* dir, Zeq32f* mag) {
    const uint32_t bx = bitsAt(dx), by = bitsAt(dy);
    gradientPixel(absOf(bx), absOf(by), ((bx ^ by) >> 31) != 0, low, dir, mag);
}

// One roi row into the interior of one framed row of each map. Magnitudes go
// first, a chunk of 64 groups of eight at a time; the costly direction codes
// are then computed only for the groups with a pixel above the low threshold,
// which a bit loop visits without mispredicted branches. Those groups are
// kept in `busy`, a word per chunk, when it is not null.
template <class T>
void gradientRow(const T* dx, const T* dy, int w, float low, Zeq8u* dir, Zeq32f* mag, uint64_t* busyOut) {
    const __m128 lowV = _mm_set1_ps(low);
    int x0 = 0;
    for (; x0 + 8 <= w; x0 += 512) {
        const int groups = std::min(64, (w - x0) / 8);
        uint64_t busy = 0;
        const bool wide = zq::dispatch([&](auto tier) {
            if constexpr (tier.value == zq::Isa::Sse2) return false;
            else {
                busy = zq::ownCannyMagnitudes<tier.value>(dx + x0, dy + x0, groups, low, dir + x0, mag + x0);
                return true;
            }
        });
        for (int g = 0; !wide && g < groups; ++g) {
            const int x = x0 + 8 * g;
            busy |= uint64_t(magnitude8(load8(dx + x, dy + x), lowV, mag + x)) << g;
            _mm_storel_epi64(reinterpret_cast<__m128i*>(dir + x), _mm_setzero_si128());
        }
        if (busyOut) busyOut[x0 / 512] = busy;
        for (; busy != 0; busy &= busy - 1) {
            const int x = x0 + 8 * __builtin_ctzll(busy);
            direction8(load8(dx + x, dy + x), lowV, dir + x);
        }
    }
    for (int x = w & ~7; x < w; ++x) gradientPixel(dx + x, dy + x, low, dir + x, mag + x);
}

// ---- suppression ----

// The magnitudes of the framed rows above, at and below the suppressed one.
struct MagRows {
    const Zeq32f* up;
    const Zeq32f* mid;
    const Zeq32f* down;
};

// Whether the pixel at column i survives for its direction code, with f its
// forward and r its backward neighbour. Along a diagonal both neighbours must
// be strictly smaller; horizontally and vertically the forward neighbour may
// tie, so a plateau keeps exactly one pixel.
inline bool survives(const MagRows& rows, ptrdiff_t i, Zeq8u code) {
    static_assert(kHorizontal == 1 && kDiagonalOpposite == 2 && kVertical == 3 && kDiagonalSame == 4, "");
    const float m = rows.mid[i];
    float f, r;
    switch (code) {
    case kHorizontal: f = rows.mid[i + 1], r = rows.mid[i - 1]; break;
    case kVertical: f = rows.down[i], r = rows.up[i]; break;
    case kDiagonalSame: f = rows.down[i + 1], r = rows.up[i - 1]; break;
    default: f = rows.down[i - 1], r = rows.up[i + 1]; break;
    }
    return m > r && (m > f || (m == f && (code & 1)));
}

inline __m128i packMasks(__m128 m0, __m128 m1, __m128 m2, __m128 m3) {
    return _mm_packs_epi16(packMasks(m0, m1), packMasks(m2, m3));
}

// Survival of 16 pixels for each of the four directions, as byte masks.
struct Survival16 {
    __m128i dir[4];
    __m128i strong;
};
inline Survival16 survival16(const MagRows& rows, ptrdiff_t i, __m128 high) {
    __m128 s[4][4], strong[4];
    for (int g = 0; g < 4; ++g) {
        const Zeq32f* c = rows.mid + i + 4 * g;
        const Zeq32f* up = rows.up + i + 4 * g;
        const Zeq32f* down = rows.down + i + 4 * g;
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

// One framed row (interior columns 1..w); `y` is its roi row. Survivors get
// the candidate mark, strong ones the edge mark, and those are pushed.
// Returns the new stack top. `busy` (or null): the row's groups of eight with
// a code, a word per chunk, as the gradient found them.
int* suppressRow(Zeq8u* dir, const MagRows& mag, int w, int y, float high, int* top, const uint64_t* busy) {
    const __m128 highV = _mm_set1_ps(high);
    const __m128i zero = _mm_setzero_si128();
    // Blocks of 16 with a code, found a chunk of 32 blocks at a time so the
    // empty ones are passed over without mispredicted branches: from the
    // gradient's groups of eight, or else by looking at the codes.
    for (int x0 = 0; x0 + 16 <= w; x0 += 512) {
        const int blocks = std::min(32, (w - x0) / 16);
        uint32_t found = 0;
        if (busy) {
            for (uint64_t g = busy[x0 / 512]; g != 0; g &= g - 1) found |= 1u << (__builtin_ctzll(g) >> 1);
            if (blocks < 32) found &= (1u << blocks) - 1;
        } else {
            for (int b = 0; b < blocks; ++b) {
                const __m128i codes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(dir + 1 + x0 + 16 * b));
                found |= uint32_t(_mm_movemask_epi8(_mm_cmpeq_epi8(codes, zero)) != 0xffff) << b;
            }
        }
        for (; found != 0; found &= found - 1) {
            const int x = x0 + 16 * __builtin_ctz(found);
            Zeq8u* d = dir + 1 + x;
            const __m128i codes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(d));
            const Survival16 s = survival16(mag, 1 + x, highV);
            __m128i keep = zero;
            for (int k = 0; k < 4; ++k)
                keep = _mm_or_si128(keep, _mm_and_si128(s.dir[k], _mm_cmpeq_epi8(codes, _mm_set1_epi8(char(k + 1)))));
            const __m128i seeds = _mm_and_si128(keep, s.strong);
            // kEdge is kCandidate with the low bits set.
            const __m128i marks = _mm_or_si128(_mm_and_si128(keep, _mm_set1_epi8(char(kCandidate))), seeds);
            _mm_storeu_si128(reinterpret_cast<__m128i*>(d), select(keep, marks, codes));
            for (unsigned bits = unsigned(_mm_movemask_epi8(seeds)); bits != 0; bits &= bits - 1) {
                top[0] = y;
                top[1] = x + __builtin_ctz(bits);
                top += 2;
            }
        }
    }
    for (int x = w & ~15; x < w; ++x) {
        const Zeq8u code = dir[1 + x];
        if (code == kNone || !survives(mag, 1 + x, code)) continue;
        dir[1 + x] = kCandidate;
        if (mag.mid[1 + x] > high) {
            dir[1 + x] = kEdge;
            top[0] = y;
            top[1] = x;
            top += 2;
        }
    }
    return top;
}

// Suppression of roi row y, whose direction row and the magnitude rows around
// it are complete. Returns the number of ints pushed (two per seed).
int ownNonMaximaSuppression(Zeq8u* directionMap, const MagRows& magnitudes, const uint64_t* busy, int width, int y,
                            float highThresh, int* stack) {
    const ptrdiff_t stride = ptrdiff_t(width) + 2;
    return int(suppressRow(directionMap + (y + 1) * stride, magnitudes, width, y, highThresh, stack, busy) - stack);
}

// ---- hysteresis ----

inline uint32_t load4(const Zeq8u* p) {
    uint32_t v;
    std::memcpy(&v, p, 4);
    return v;
}

// Bits 7, 15 and 23 set for the first three bytes of `v` that hold kCandidate
// exactly (a mark not yet in the result): bit 7 set, bit 0 clear.
inline uint32_t freshMarks3(uint32_t v) { return v & ~(v << 7) & 0x808080u; }

// The result as 255/0 from the edge marks, which turn back into candidate
// marks.
void writeEdges(Zeq8u* directionMap, int width, int height, Zeq8u* pDst, int dstStep) {
    const ptrdiff_t stride = ptrdiff_t(width) + 2;
    const __m128i edge = _mm_set1_epi8(char(kEdge)), low7 = _mm_set1_epi8(0x7f);
    // Streamed, the result's lines are not read from memory before being overwritten.
    const bool stream = zq::streamsRows(pDst, dstStep, int64_t(width) * height);
    for (int y = 0; y < height; ++y) {
        Zeq8u* dir = directionMap + (y + 1) * stride + 1;
        Zeq8u* dst = zq::row(pDst, dstStep, y);
        int x = zq::dispatch([&](auto tier) {
            if constexpr (tier.value == zq::Isa::Sse2) return 0;
            else return zq::ownCannyEdgesRow<tier.value>(dir, dst, width, stream);
        });
        for (; x + 16 <= width; x += 16) {
            const __m128i d = _mm_loadu_si128(reinterpret_cast<const __m128i*>(dir + x));
            const __m128i isEdge = _mm_cmpeq_epi8(d, edge);
            if (stream) _mm_stream_si128(reinterpret_cast<__m128i*>(dst + x), isEdge);
            else _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + x), isEdge);
            if (_mm_movemask_epi8(isEdge))
                _mm_storeu_si128(reinterpret_cast<__m128i*>(dir + x), _mm_andnot_si128(_mm_and_si128(isEdge, low7), d));
        }
        for (; x < width; ++x) {
            const bool isEdge = dir[x] == kEdge;
            dst[x] = isEdge ? 255 : 0;
            if (isEdge) dir[x] = kCandidate;
        }
    }
    if (stream) _mm_sfence();
}

// Depth-first growth from the seeds on the stack through candidate pixels,
// visiting neighbours up-left, up, up-right, left, right, down-left, down,
// down-right. Pixels already in the result carry the edge mark in the
// direction map itself, so the walk touches one map only; the result is
// written out at the end. The zero frame keeps the walk inside the roi.
void ownHysteresisThresholding(Zeq8u* directionMap, int width, int height, int* stack, int entries, Zeq8u* pDst,
                               int dstStep) {
    const ptrdiff_t stride = ptrdiff_t(width) + 2;
    static constexpr int kRows[8] = {-1, -1, -1, 0, 0, 1, 1, 1};
    static constexpr int kCols[8] = {-1, 0, 1, -1, 1, -1, 0, 1};
    int* top = stack + entries;
    while (top != stack) {
        top -= 2;
        const int y = top[0], x = top[1];
        if (top != stack) {
            // The entry below is popped once this pixel's branch is done, and
            // is usually an older seed far from here: fetch its rows early.
            const ptrdiff_t at = (top[-2] + 1) * stride + top[-1];
            _mm_prefetch(reinterpret_cast<const char*>(directionMap + at - stride), _MM_HINT_T0);
            _mm_prefetch(reinterpret_cast<const char*>(directionMap + at + stride), _MM_HINT_T0);
        }
        Zeq8u* dir = directionMap + (y + 1) * stride + (x + 1);
        // Fresh candidates among the eight neighbours as bits 0..7 in
        // visiting order. The word read for the last neighbours of the bottom
        // frame row ends one byte past the map, still inside the buffer.
        const uint32_t up = freshMarks3(load4(dir - stride - 1)), down = freshMarks3(load4(dir + stride - 1));
        const uint32_t side = freshMarks3(load4(dir - 1));
        unsigned fresh = ((up >> 7) & 1) | ((up >> 14) & 2) | ((up >> 21) & 4) | ((side >> 4) & 8) |
                         ((side >> 19) & 16) | ((down >> 2) & 32) | ((down >> 9) & 64) | ((down >> 16) & 128);
        for (; fresh != 0; fresh &= fresh - 1) {
            const int k = __builtin_ctz(fresh);
            dir[kRows[k] * stride + kCols[k]] = kEdge;
            top[0] = y + kRows[k];
            top[1] = x + kCols[k];
            top += 2;
        }
    }
    writeEdges(directionMap, width, height, pDst, dstStep);
}

// ---- the whole detector ----

// Gradient of roi row y into its framed direction row and the magnitude row
// `mag`, frame columns included.
template <class T>
void gradientRow(const T* dx, int dxStep, const T* dy, int dyStep, int w, int y, float low, Zeq8u* dir,
                 Zeq32f* mag, uint64_t* busy) {
    dir[0] = dir[w + 1] = 0;
    mag[0] = mag[w + 1] = 0.0f;
    gradientRow(zq::row(dx, dxStep, y), zq::row(dy, dyStep, y), w, low, dir + 1, mag + 1, busy);
}

// Framed row r (roi row r - 1) keeps its magnitudes in ring row r mod 3 until
// suppression is done with it: the gradient runs one row ahead of
// suppression, and the frame row below the roi is a cleared ring row.
template <class T>
void ownCanny(const T* dx, int dxStep, const T* dy, int dyStep, Zeq8u* dst, int dstStep, int w, int h, float low,
              float high, Zeq8u* buffer) {
    const WorkAreas a = carve(buffer, w, h);
    const ptrdiff_t stride = ptrdiff_t(w) + 2;
    Zeq32f* const ring[3] = {a.magnitude, a.magnitude + stride, a.magnitude + 2 * stride};
    std::memset(a.direction, 0, size_t(stride));
    std::memset(ring[0], 0, size_t(stride) * sizeof(Zeq32f));
    // The busy groups of the row being suppressed and of the row after it,
    // for rows of up to 64 chunks; wider ones are scanned.
    uint64_t busy[2][64];
    const bool keep = w <= 64 * 512;
    auto busyOf = [&](int y) { return keep ? busy[y & 1] : nullptr; };
    gradientRow(dx, dxStep, dy, dyStep, w, 0, low, a.direction + stride, ring[1], busyOf(0));
    int entries = 0;
    for (int y = 0; y < h; ++y) {
        Zeq32f* below = ring[(y + 2) % 3];
        if (y + 1 < h) {
            gradientRow(dx, dxStep, dy, dyStep, w, y + 1, low, a.direction + (y + 2) * stride, below, busyOf(y + 1));
        } else {
            std::memset(a.direction + (y + 2) * stride, 0, size_t(stride));
            std::memset(below, 0, size_t(stride) * sizeof(Zeq32f));
        }
        entries += ownNonMaximaSuppression(a.direction, {ring[y % 3], ring[(y + 1) % 3], below}, busyOf(y), w, y, high,
                                           a.stack + entries);
    }
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
    // The bordered area fits 64 bits for any int sides; 13 times it may not.
    const int64_t cells = (int64_t(roiSize.width) + 2) * (int64_t(roiSize.height) + 2);
    if (cells > (INT32_MAX - 64) / 13) return zeqStsSize;
    *pBufferSize = int(13 * cells + 64);
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
