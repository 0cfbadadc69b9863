// The scan-line fill engine, written once over the tier: 8u rows are
// searched a register at a time (the first pixel a scan takes, the end of a
// run), float rows one pixel at a time.
//
// A popped segment scans the row on its far side in full and the row towards
// its parent outside the parent's range (those pixels are taken already). The
// plain fill writes pixels as it takes them, which also marks them. The
// gradient fill marks a visited map with a one-pixel frame (so runs stop at
// the border without tests) and compares input values only: a segment's
// pixels are written after its own scans, the last time they are read.
#include "core/zqcvcore.h"
#include "core/zqcvregs.h"
#include "floodfill/zqcvfloodfill.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstring>
#include <type_traits>

namespace {

using zq::Isa;

struct Segment {
    int y, left, right;       // inclusive run, already taken
    int prevLeft, prevRight;  // the parent's range in row y + dir
    int dir;                  // towards the parent
};

// Byte lanes as a bit mask, lane 0 in bit 0.
template <Isa I, class V>
inline uint64_t laneBits(V m) {
    if constexpr (I == Isa::Sse2) return uint32_t(_mm_movemask_epi8(m));
    else if constexpr (I == Isa::Avx2) return uint32_t(_mm256_movemask_epi8(m));
    else return _mm512_movepi8_mask(m);
}

template <Isa I, class T, bool Eight, class Range>
class Fill {
    using R = zq::Regs<I>;
    using V = typename R::I;
    static constexpr bool gradient = !std::is_same<Range, zq::NoRange>::value;
    // Registers search 8u rows; the 8-connected gradient test looks at three
    // pixels and stays scalar.
    static constexpr bool vectors = sizeof(T) == 1;
    static constexpr int L = R::bytes;
    static constexpr uint64_t kAll = L == 64 ? ~uint64_t(0) : (uint64_t(1) << L) - 1;

public:
    Fill(T* image, int step, ZeqiSize roi, T newVal, Range range, Zeq8u* buffer)
        : img_(image), step_(step), w_(roi.width), h_(roi.height), newVal_(newVal), range_(range) {
        Zeq8u* stackArea = buffer;
        if constexpr (gradient) {
            const ptrdiff_t mw = ptrdiff_t(w_) + 2, mh = ptrdiff_t(h_) + 2;
            std::memset(buffer, 1, size_t(mw));
            for (ptrdiff_t y = 1; y < mh - 1; ++y) {
                buffer[y * mw] = 1;
                std::memset(buffer + y * mw + 1, 0, size_t(w_));
                buffer[y * mw + mw - 1] = 1;
            }
            std::memset(buffer + (mh - 1) * mw, 1, size_t(mw));
            visited_ = buffer + mw + 1;
            stackArea = buffer + mw * mh;
        }
        stack_ = reinterpret_cast<Zeq8u*>((reinterpret_cast<uintptr_t>(stackArea) + 7) & ~uintptr_t(7));
        narrow_ = w_ < 32767 && h_ < 32767;
        capacity_ = size_t(6) * size_t(w_) * size_t(h_) / (narrow_ ? kNarrow : sizeof(Segment));
        if constexpr (std::is_same<Range, zq::FloodRange8u>::value) lo_ = R::set1_8(range.lo), hi_ = R::set1_8(range.hi);
    }

    ZeqiConnectedComp run(ZeqiPoint seed) {
        T* r = row(seed.y);
        int dir = 1;
        if constexpr (gradient) {
            visitedRow(seed.y)[seed.x] = 1;
        } else {
            seedValue_ = zq::loadu(r + seed.x);
            // Only 8-bit rows compare a register of bytes; a float seed (any
            // value, NaN included) is never converted.
            if constexpr (vectors) splat_ = R::set1_8(int(seedValue_));
            // The height-1 image scans row -1 as the parent side: kept as documented.
            dir = seed.y == h_ - 1 ? -1 : 1;
        }
        const int right = runRight(seed.y, seed.x), left = runLeft(seed.y, seed.x);
        take(seed.y, left, right);
        push({seed.y, left, right, right + 1, right, dir});
        int x0 = INT_MAX, x1 = INT_MIN, y0 = INT_MAX, y1 = INT_MIN;
        while (top_ > 0) {
            const Segment s = pop();
            x0 = std::min(x0, s.left), x1 = std::max(x1, s.right);
            y0 = std::min(y0, s.y), y1 = std::max(y1, s.y);
            const int lo = Eight ? std::max(s.left - 1, 0) : s.left, hi = Eight ? std::min(s.right + 1, w_ - 1) : s.right;
            const int away = s.y - s.dir, back = s.y + s.dir;
            if (unsigned(away) < unsigned(h_)) scan(away, lo, hi, s, s.dir);
            scan(back, lo, s.prevLeft - 1, s, -s.dir);
            scan(back, s.prevRight + 1, hi, s, -s.dir);
            if constexpr (gradient) write(s.y, s.left, s.right);
        }
        ZeqiConnectedComp c;
        c.area = area_;
        c.value = double(newVal_);
        c.rect = {x0, y0, x1 - x0 + 1, y1 - y0 + 1};
        return c;
    }

private:
    T* row(int y) const { return zq::row(img_, step_, y); }
    Zeq8u* visitedRow(int y) const { return visited_ + ptrdiff_t(y) * (w_ + 2); }

    // The run [left, right] of row y is taken: written (plain) or marked (gradient).
    void take(int y, int left, int right) {
        if constexpr (gradient) std::memset(visitedRow(y) + left, 1, size_t(right - left + 1));
        else write(y, left, right);
        area_ += double(right - left + 1);
    }
    void write(int y, int left, int right) {
        T* r = row(y);
        if constexpr (sizeof(T) == 1) std::memset(r + left, newVal_, size_t(right - left + 1));
        else
            for (int x = left; x <= right; ++x) zq::storeu(r + x, newVal_);
    }

    // Whether pixel value n may join from p, lane by lane (8u gradient).
    V inRange(V n, V p) const {
        const V a = R::subsU8(p, lo_), b = R::addsU8(p, hi_);
        return R::andi(R::cmpeq8(R::maxU8(n, a), n), R::cmpeq8(R::minU8(n, b), n));
    }
    bool inRange(T n, T p) const {
        if constexpr (std::is_same<Range, zq::FloodRange8u>::value) return p - range_.lo <= n && n <= p + range_.hi;
        else return std::fabs(double(n) + double(range_.offset) - double(p)) <= double(range_.half);
    }

    // Pixel x + d of row y continues the run at x (d = +1 or -1).
    bool continues(int y, const T* r, int x, int d) const {
        if constexpr (gradient) return !visitedRow(y)[x + d] && inRange(zq::loadu(r + x + d), zq::loadu(r + x));
        else return unsigned(x + d) < unsigned(w_) && zq::loadu(r + x + d) == seedValue_;
    }
    // Lanes x + 1 .. x + L (right) or x - L .. x - 1 (left) that continue the run.
    uint64_t continuing(int y, const T* r, int x, int d) const {
        const int at = d > 0 ? x + 1 : x - L;
        const V n = R::load(r + at);
        if constexpr (gradient) {
            const V p = R::load(r + at - d), seen = R::load(visitedRow(y) + at);
            return laneBits<I>(R::andnoti(R::cmpeq8(seen, R::set1_8(1)), inRange(n, p)));
        } else {
            return laneBits<I>(R::cmpeq8(n, splat_));
        }
    }

    // The last pixel of the run from x to the right, and to the left.
    int runRight(int y, int x) const {
        const T* r = row(y);
        if constexpr (vectors)
            for (uint64_t m; x + L <= w_ - 1; x += L)
                if ((m = continuing(y, r, x, 1)) != kAll) return x + __builtin_ctzll(~m);
        while (continues(y, r, x, 1)) ++x;
        return x;
    }
    int runLeft(int y, int x) const {
        const T* r = row(y);
        if constexpr (vectors)
            for (uint64_t m; x - L >= 0; x -= L)
                if ((m = continuing(y, r, x, -1)) != kAll) return x - L + 64 - __builtin_clzll(~m & kAll);
        while (continues(y, r, x, -1)) --x;
        return x;
    }

    // Whether pixel x of row ry (pixels r) is taken from the popped segment s
    // (pixels rs); it is marked when it is.
    bool takes(const T* r, const T* rs, int x, int ry, const Segment& s) const {
        if constexpr (!gradient) {
            return zq::loadu(r + x) == seedValue_;
        } else {
            if (visitedRow(ry)[x]) return false;
            const T n = zq::loadu(r + x);
            // Reached diagonally (8-connectivity), any pixel of s beside it may pass it.
            const int a = Eight ? std::max(x - 1, s.left) : x, b = Eight ? std::min(x + 1, s.right) : x;
            for (int p = a; p <= b; ++p)
                if (inRange(n, zq::loadu(rs + p))) {
                    visitedRow(ry)[x] = 1;
                    return true;
                }
            return false;
        }
    }
    // The first pixel in [x, to] that `takes` accepts, or to + 1.
    int firstTaken(const T* r, const T* rs, int x, int to, int ry, const Segment& s) const {
        if constexpr (vectors && !(gradient && Eight)) {
            if (gradient && unsigned(ry) >= unsigned(h_)) return to + 1;  // the frame: nothing to take
            for (; x + L - 1 <= to; x += L) {
                uint64_t m;
                if constexpr (gradient) {
                    const V seen = R::load(visitedRow(ry) + x);
                    m = laneBits<I>(R::andnoti(R::cmpeq8(seen, R::set1_8(1)), inRange(R::load(r + x), R::load(rs + x))));
                } else {
                    m = laneBits<I>(R::cmpeq8(R::load(r + x), splat_));
                }
                if (m) {
                    x += __builtin_ctzll(m);
                    if constexpr (gradient) visitedRow(ry)[x] = 1;
                    return x;
                }
            }
        }
        for (; x <= to; ++x)
            if (takes(r, rs, x, ry, s)) return x;
        return x;
    }

    // Runs of row ry in columns [from, to], pushed with direction d.
    void scan(int ry, int from, int to, const Segment& s, int d) {
        const T* r = row(ry);
        const T* rs = row(s.y);
        for (int x = from; (x = firstTaken(r, rs, x, to, ry, s)) <= to;) {
            const int right = runRight(ry, x), left = runLeft(ry, x);
            take(ry, left, right);
            push({ry, left, right, s.left, s.right, d});
            // The pixel after a plain run is not the seed's value; after a
            // gradient run it may still pass from the popped segment.
            x = gradient ? right + 1 : right + 2;
        }
    }

    // The stack: its first segments live here (the queried buffer holds less
    // than one segment for images of under four pixels), the rest in the
    // buffer. There, images narrower and lower than 32767 pixels store five
    // 16-bit fields, each one more than its value (rows and columns start at
    // -1), the direction in the top bit of the first: at most one segment per
    // 10 bytes of the 6 per pixel the buffer has, more than the disjoint runs
    // a scan of a checkerboard leaves pending. Wider images store the record
    // as it is. A push beyond the buffer is dropped rather than written past
    // its end.
    static constexpr int kLocal = 64;
    static constexpr size_t kNarrow = 10;
    void push(const Segment& s) {
        if (top_ < kLocal) {
            local_[top_++] = s;
        } else if (size_t(top_ - kLocal) < capacity_) {
            const size_t i = size_t(top_++ - kLocal);
            if (narrow_) {
                const uint16_t f[5] = {uint16_t((s.y + 1) | (s.dir < 0 ? 0x8000 : 0)), uint16_t(s.left + 1),
                                       uint16_t(s.right + 1), uint16_t(s.prevLeft + 1), uint16_t(s.prevRight + 1)};
                std::memcpy(stack_ + i * kNarrow, f, kNarrow);
            } else {
                std::memcpy(stack_ + i * sizeof(Segment), &s, sizeof(Segment));
            }
        }
    }
    Segment pop() {
        --top_;
        if (top_ < kLocal) return local_[top_];
        const size_t i = size_t(top_ - kLocal);
        Segment s;
        if (narrow_) {
            uint16_t f[5];
            std::memcpy(f, stack_ + i * kNarrow, kNarrow);
            s = {(f[0] & 0x7fff) - 1, f[1] - 1, f[2] - 1, f[3] - 1, f[4] - 1, f[0] & 0x8000 ? -1 : 1};
        } else {
            std::memcpy(&s, stack_ + i * sizeof(Segment), sizeof(Segment));
        }
        return s;
    }

    T* img_;
    ptrdiff_t step_;
    int w_, h_;
    T newVal_, seedValue_{};
    Range range_;
    V lo_{}, hi_{}, splat_{};
    Zeq8u* visited_ = nullptr;
    Zeq8u* stack_;
    bool narrow_;
    size_t capacity_;
    Segment local_[kLocal];
    int top_ = 0;
    double area_ = 0;
};

}  // namespace

namespace zq {

template <Isa I, class T, bool Eight, class Range>
ZeqiConnectedComp ownFloodFill(T* image, int step, ZeqiSize roi, ZeqiPoint seed, T newVal, Range range,
                               Zeq8u* buffer) {
    return Fill<I, T, Eight, Range>(image, step, roi, newVal, range, buffer).run(seed);
}

#define ZQ_FLOODFILL_KERNELS(T, RANGE)                                                                          \
    template ZeqiConnectedComp ownFloodFill<ZQ_ISA, T, false, RANGE>(T*, int, ZeqiSize, ZeqiPoint, T, RANGE, Zeq8u*); \
    template ZeqiConnectedComp ownFloodFill<ZQ_ISA, T, true, RANGE>(T*, int, ZeqiSize, ZeqiPoint, T, RANGE, Zeq8u*);
ZQ_FLOODFILL_KERNELS(Zeq8u, NoRange)
ZQ_FLOODFILL_KERNELS(Zeq8u, FloodRange8u)
ZQ_FLOODFILL_KERNELS(Zeq32f, NoRange)
ZQ_FLOODFILL_KERNELS(Zeq32f, FloodRange32f)

}  // namespace zq
