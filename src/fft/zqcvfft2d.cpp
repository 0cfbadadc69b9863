// Two-dimensional real FFT of power-of-two images, composed of the
// one-dimensional transforms: a real transform along every row, then down the
// columns a real transform for columns 0 and W-1 and complex transforms for
// the (re, im) column pairs between them.
//
// Columns are gathered into contiguous arrays of the work buffer, transformed
// there and scattered back. Complex column pairs go in groups (eight pairs
// while they fit, then the rest at once), and the scatter of one group shares
// its sweep over the rows with the gather of the next: with power-of-two row
// steps the rows' cache lines evict one another, so sweeps, not bytes, set
// the cost.
#include "fft/zqcvfft2d.h"

#include "core/zqcvcore.h"

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstring>

namespace {

using Spec = ZeqiFFTSpec_R_32f;

// ---- gathers and scatters between an image column and contiguous arrays ----

inline const float* rowOf(const float* base, ptrdiff_t step, int y) { return zq::row(base, step, y); }
inline float* rowOf(float* base, ptrdiff_t step, int y) { return zq::row(base, step, y); }

// Image elements sit at caller-computed addresses (any byte): loadu/storeu.
void gatherColumn(const float* img, ptrdiff_t step, int x, int h, float* col) {
    for (int y = 0; y < h; ++y) col[y] = zq::loadu(rowOf(img, step, y) + x);
}

void scatterColumn(const float* col, float* img, ptrdiff_t step, int x, int h) {
    for (int y = 0; y < h; ++y) zq::storeu(rowOf(img, step, y) + x, col[y]);
}

// Rows far apart share few cache sets and defeat the hardware prefetchers:
// a sweep asks for the lines of the row this many rows ahead.
constexpr int kAhead = 8;

// A group of Pairs complex columns, float columns x .. x + 2·Pairs - 1, held as
// Pairs arrays of h complex values, 2h floats apart, in `col` (16-byte
// aligned, h even). Rows go two at a time, so each array receives whole
// aligned 16-byte stores: two pairs of a row per 16-byte load, and an odd
// last pair through 8-byte halves.
template <int Pairs>
struct ColumnGroup {
    static constexpr int kFloats = 2 * Pairs;

    static void gatherRows(const float* r0, const float* r1, float* col, int h, int y) {
        float* a = col + 2 * y;
        for (int p = 0; p + 2 <= Pairs; p += 2, a += 4 * h) {
            const __m128 v0 = _mm_loadu_ps(r0 + 2 * p), v1 = _mm_loadu_ps(r1 + 2 * p);
            _mm_store_ps(a, _mm_movelh_ps(v0, v1));
            _mm_store_ps(a + 2 * h, _mm_movehl_ps(v1, v0));
        }
        if (Pairs % 2) {
            const __m128 v = _mm_loadl_pi(_mm_setzero_ps(), reinterpret_cast<const __m64*>(r0 + kFloats - 2));
            _mm_store_ps(a, _mm_loadh_pi(v, reinterpret_cast<const __m64*>(r1 + kFloats - 2)));
        }
    }

    static void scatterRows(const float* col, int h, int y, float* r0, float* r1) {
        const float* a = col + 2 * y;
        for (int p = 0; p + 2 <= Pairs; p += 2, a += 4 * h) {
            const __m128 v0 = _mm_load_ps(a), v1 = _mm_load_ps(a + 2 * h);
            _mm_storeu_ps(r0 + 2 * p, _mm_movelh_ps(v0, v1));
            _mm_storeu_ps(r1 + 2 * p, _mm_movehl_ps(v1, v0));
        }
        if (Pairs % 2) {
            const __m128 v = _mm_load_ps(a);
            _mm_storel_pi(reinterpret_cast<__m64*>(r0 + kFloats - 2), v);
            _mm_storeh_pi(reinterpret_cast<__m64*>(r1 + kFloats - 2), v);
        }
    }

    static void prefetch(const float* r) {
        _mm_prefetch(reinterpret_cast<const char*>(r), _MM_HINT_T0);
        _mm_prefetch(reinterpret_cast<const char*>(r + kFloats - 1), _MM_HINT_T0);
    }

    static void gather(const float* img, ptrdiff_t step, int x, int h, float* col) {
        for (int y = 0; y < h; y += 2) gatherRows(rowOf(img, step, y) + x, rowOf(img, step, y + 1) + x, col, h, y);
    }

    // Scatters the group in `col` to columns x of dst and, in the same sweep
    // over the rows, gathers the group at nextX of src into `col` (nextX < 0:
    // none), so that each row's cache lines are fetched once for both.
    static void scatterGather(float* col, int h, float* dst, ptrdiff_t dstStep, int x, const float* src,
                              ptrdiff_t srcStep, int nextX) {
        for (int y = 0; y < h; y += 2) {
            if (nextX >= 0 && y + kAhead < h) {
                prefetch(rowOf(src, srcStep, y + kAhead) + nextX);
                prefetch(rowOf(src, srcStep, y + kAhead + 1) + nextX);
            }
            scatterRows(col, h, y, rowOf(dst, dstStep, y) + x, rowOf(dst, dstStep, y + 1) + x);
            if (nextX >= 0) gatherRows(rowOf(src, srcStep, y) + nextX, rowOf(src, srcStep, y + 1) + nextX, col, h, y);
        }
    }
};

// ---- the two directions over the one-dimensional transforms ----

struct Forward {
    static ZeqStatus real(const float* s, float* d, const ZeqsFFTSpec_R_32f* spec, Zeq8u* work) {
        return zeqsFFTFwd_RToPack_32f(s, d, spec, work);
    }
    static ZeqStatus complex(float* sd, const ZeqsFFTSpec_C_32fc* spec, Zeq8u* work) {
        Zeq32fc* z = reinterpret_cast<Zeq32fc*>(sd);
        return zeqsFFTFwd_CToC_32fc(z, z, spec, work);
    }
};

struct Inverse {
    static ZeqStatus real(const float* s, float* d, const ZeqsFFTSpec_R_32f* spec, Zeq8u* work) {
        return zeqsFFTInv_PackToR_32f(s, d, spec, work);
    }
    static ZeqStatus complex(float* sd, const ZeqsFFTSpec_C_32fc* spec, Zeq8u* work) {
        Zeq32fc* z = reinterpret_cast<Zeq32fc*>(sd);
        return zeqsFFTInv_CToC_32fc(z, z, spec, work);
    }
};

inline Zeq8u* bytes(float* p) { return reinterpret_cast<Zeq8u*>(p); }

// The one-dimensional real transform of n contiguous floats at s into d. A
// line off a 4-byte boundary goes through the buffer (which holds n floats,
// rounded up to 4, before the transform's own work).
template <class Dir>
ZeqStatus realLine(const float* s, float* d, int n, const ZeqsFFTSpec_R_32f* spec, float* buf) {
    if (((reinterpret_cast<uintptr_t>(s) | reinterpret_cast<uintptr_t>(d)) & 3) == 0)
        return Dir::real(s, d, spec, bytes(buf));
    std::memcpy(buf, s, 4 * size_t(n));
    ZQ_CHECK(Dir::real(buf, buf, spec, bytes(buf + ((n + 3) & ~3))));
    std::memcpy(d, buf, 4 * size_t(n));
    return zeqStsOk;
}

const ZeqsFFTSpec_R_32f* columnRealSpec(const Spec& s) { return s.colReal ? s.colReal : s.row; }

// A real column x of `src`, transformed into column x of `dst`.
template <class Dir>
ZeqStatus realColumn(const float* src, ptrdiff_t srcStep, float* dst, ptrdiff_t dstStep, int x, const Spec& s,
                     float* buf) {
    const int h = 1 << s.orderY;
    gatherColumn(src, srcStep, x, h, buf);
    ZQ_CHECK(Dir::real(buf, buf, columnRealSpec(s), bytes(buf + h)));
    scatterColumn(buf, dst, dstStep, x, h);
    return zeqStsOk;
}

// The complex column pairs from x on, in groups of Pairs while whole groups
// fit before column w-1; x advances past them.
template <class Dir, int Pairs>
ZeqStatus columnGroups(const float* src, ptrdiff_t srcStep, float* dst, ptrdiff_t dstStep, const Spec& s, float* buf,
                       int& x) {
    using G = ColumnGroup<Pairs>;
    const int w = 1 << s.orderX, h = 1 << s.orderY;
    if (x + G::kFloats > w - 1) return zeqStsOk;
    Zeq8u* work = bytes(buf + 2 * Pairs * h);
    G::gather(src, srcStep, x, h, buf);
    for (;;) {
        for (int k = 0; k < Pairs; ++k) ZQ_CHECK(Dir::complex(buf + 2 * h * k, s.colCplx, work));
        const int next = x + G::kFloats;
        const bool more = next + G::kFloats <= w - 1;
        G::scatterGather(buf, h, dst, dstStep, x, src, srcStep, more ? next : -1);
        x = next;
        if (!more) return zeqStsOk;
    }
}

// Every column of an image of at least two rows and two columns, from `src`
// to `dst` (the same image in the forward direction).
template <class Dir>
ZeqStatus columns(const float* src, ptrdiff_t srcStep, float* dst, ptrdiff_t dstStep, const Spec& s, float* buf) {
    const int w = 1 << s.orderX;
    ZQ_CHECK(realColumn<Dir>(src, srcStep, dst, dstStep, 0, s, buf));

    // The w/2 - 1 column pairs (x, x+1), odd x: eight at a time, a whole cache
    // line of each row, while they fit (their arrays fill the 16h floats that
    // the buffer holds for them); the rest, 7 for w >= 16, as one more group.
    int x = 1;
    ZQ_CHECK((columnGroups<Dir, 8>(src, srcStep, dst, dstStep, s, buf, x)));
    ZQ_CHECK((columnGroups<Dir, 7>(src, srcStep, dst, dstStep, s, buf, x)));
    ZQ_CHECK((columnGroups<Dir, 3>(src, srcStep, dst, dstStep, s, buf, x)));
    ZQ_CHECK((columnGroups<Dir, 1>(src, srcStep, dst, dstStep, s, buf, x)));

    return realColumn<Dir>(src, srcStep, dst, dstStep, w - 1, s, buf);
}

// One row (H = 1) or one column (W = 1): the one-dimensional transform of it.
template <class Dir>
ZeqStatus line(const float* src, ptrdiff_t srcStep, float* dst, ptrdiff_t dstStep, const Spec& s, float* buf) {
    if (s.orderY == 0) return realLine<Dir>(src, dst, 1 << s.orderX, s.row, buf);
    if (srcStep == 4 && dstStep == 4)  // a contiguous column
        return realLine<Dir>(src, dst, 1 << s.orderY, columnRealSpec(s), buf);
    return realColumn<Dir>(src, srcStep, dst, dstStep, 0, s, buf);
}

// The work memory of one call: the caller's buffer rounded up to 16 bytes, or
// a block of bufSize bytes that lives as long as the call.
class WorkBuffer {
public:
    WorkBuffer(Zeq8u* given, int size)
        : owned_(given ? nullptr : zeqsMalloc_8u(size)),
          base_(given ? reinterpret_cast<Zeq8u*>((reinterpret_cast<uintptr_t>(given) + 15) & ~uintptr_t(15))
                      : owned_) {}
    ~WorkBuffer() { zeqsFree(owned_); }
    WorkBuffer(const WorkBuffer&) = delete;
    WorkBuffer& operator=(const WorkBuffer&) = delete;

    float* floats() const { return reinterpret_cast<float*>(base_); }

private:
    Zeq8u* owned_;
    Zeq8u* base_;
};

ZeqStatus checkTransform(const void* pSrc, int srcStep, const void* pDst, int dstStep, const Spec* pSpec) {
    ZQ_CHECK(zq::nonNull(pSpec));
    if (pSpec->specId != zq::kSpec2DId) return zeqStsContextMatch;
    ZQ_CHECK(zq::nonNull(pSrc, pDst));
    return zq::stepsPositive(srcStep, dstStep);
}

void freeParts(Spec* s) {
    s->specId = 0;
    if (s->reserved) zeqsFFTFree_C_32fc(s->reserved);
    if (s->colCplx) zeqsFFTFree_C_32fc(s->colCplx);
    if (s->row) zeqsFFTFree_R_32f(s->row);
    if (s->colReal) zeqsFFTFree_R_32f(s->colReal);
    zeqsFree(s);
}

// The one-dimensional specifications and the work size of a record whose
// orders are set. On failure the caller frees what was made.
ZeqStatus buildParts(Spec* s, int flag, int hint) {
    ZQ_CHECK(zeqsFFTInitAlloc_R_32f(&s->row, s->orderX, flag, hint));
    if (s->orderX != s->orderY) ZQ_CHECK(zeqsFFTInitAlloc_R_32f(&s->colReal, s->orderY, flag, hint));
    ZQ_CHECK(zeqsFFTInitAlloc_C_32fc(&s->colCplx, s->orderY, flag, hint));

    int rowBuf = 0, colRealBuf = 0, colCplxBuf = 0;
    ZQ_CHECK(zeqsFFTGetBufSize_R_32f(s->row, &rowBuf));
    ZQ_CHECK(zeqsFFTGetBufSize_R_32f(columnRealSpec(*s), &colRealBuf));
    ZQ_CHECK(zeqsFFTGetBufSize_C_32fc(s->colCplx, &colCplxBuf));
    // Room for a row's work; a real column and its work; four complex columns and their work.
    const int64_t w = int64_t(1) << s->orderX, h = int64_t(1) << s->orderY;
    const int64_t size = std::max({16 * w + rowBuf, 16 * h + colRealBuf, 64 * h + colCplxBuf}) + 16;
    if (size > INT_MAX) return zeqStsNoMem;  // no block of that size can be described
    s->bufSize = int(size);
    return zeqStsOk;
}

}  // namespace

ZeqStatus zeqiFFTInitAlloc_R_32f(ZeqiFFTSpec_R_32f** ppSpec, int orderX, int orderY, int flag, int hint) {
    ZQ_CHECK(zq::nonNull(ppSpec));
    if (orderX < 0 || orderX > 30 || orderY < 0 || orderY > 30) return zeqStsFftOrder;
    Spec* s = reinterpret_cast<Spec*>(zeqsMalloc_8u(int(sizeof(Spec))));
    if (!s) return zeqStsNoMem;
    std::memset(static_cast<void*>(s), 0, sizeof(Spec));
    s->specId = zq::kSpec2DId;
    s->orderX = orderX;
    s->orderY = orderY;
    s->hint = hint;
    if (const ZeqStatus st = buildParts(s, flag, hint)) {
        freeParts(s);
        return st;
    }
    *ppSpec = s;
    return zeqStsOk;
}

ZeqStatus zeqiFFTFree_R_32f(ZeqiFFTSpec_R_32f* pSpec) {
    ZQ_CHECK(zq::nonNull(pSpec));
    if (pSpec->specId != zq::kSpec2DId) return zeqStsContextMatch;
    freeParts(pSpec);
    return zeqStsOk;
}

ZeqStatus zeqiFFTGetBufSize_R_32f(const ZeqiFFTSpec_R_32f* pSpec, int* pSize) {
    ZQ_CHECK(zq::nonNull(pSpec, pSize));
    if (pSpec->specId != zq::kSpec2DId) return zeqStsContextMatch;
    *pSize = pSpec->bufSize;
    return zeqStsOk;
}

ZeqStatus zeqiFFTFwd_RToPack_32f_C1R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep,
                                     const ZeqiFFTSpec_R_32f* pSpec, Zeq8u* pBuffer) {
    ZQ_CHECK(checkTransform(pSrc, srcStep, pDst, dstStep, pSpec));
    const WorkBuffer work(pBuffer, pSpec->bufSize);
    float* buf = work.floats();
    if (!buf) return zeqStsNoMem;
    if (pSpec->orderX == 0 || pSpec->orderY == 0) return line<Forward>(pSrc, srcStep, pDst, dstStep, *pSpec, buf);

    const int w = 1 << pSpec->orderX, h = 1 << pSpec->orderY;
    for (int y = 0; y < h; ++y)
        ZQ_CHECK(realLine<Forward>(rowOf(pSrc, srcStep, y), rowOf(pDst, dstStep, y), w, pSpec->row, buf));
    return columns<Forward>(pDst, dstStep, pDst, dstStep, *pSpec, buf);
}

ZeqStatus zeqiFFTInv_PackToR_32f_C1R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep,
                                     const ZeqiFFTSpec_R_32f* pSpec, Zeq8u* pBuffer) {
    ZQ_CHECK(checkTransform(pSrc, srcStep, pDst, dstStep, pSpec));
    const WorkBuffer work(pBuffer, pSpec->bufSize);
    float* buf = work.floats();
    if (!buf) return zeqStsNoMem;
    if (pSpec->orderX == 0 || pSpec->orderY == 0) return line<Inverse>(pSrc, srcStep, pDst, dstStep, *pSpec, buf);

    ZQ_CHECK(columns<Inverse>(pSrc, srcStep, pDst, dstStep, *pSpec, buf));
    const int w = 1 << pSpec->orderX, h = 1 << pSpec->orderY;
    for (int y = 0; y < h; ++y) {
        float* r = rowOf(pDst, dstStep, y);
        ZQ_CHECK(realLine<Inverse>(r, r, w, pSpec->row, buf));
    }
    return zeqStsOk;
}
