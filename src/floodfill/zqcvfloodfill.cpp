// Flood fill of one-channel 8u and 32f images, in place, from a seed: the
// plain fill takes the 4- or 8-connected pixels equal to the seed's value,
// the gradient fill those reachable through steps whose value change stays
// inside [-minDelta, +maxDelta] of the pixel stepped from.
//
// Both are scan-line fills over a stack of row segments in the caller's
// buffer. A popped segment scans the row on its far side in full and the row
// towards its parent outside the parent's range (those pixels are taken
// already). The plain fill writes pixels as it takes them, which also marks
// them. The gradient fill marks a visited map with a one-pixel frame (so runs
// stop at the border without tests) and compares input values only: a
// segment's pixels are written after its own scans, the last time they are
// read.
#include "core/zqcvcore.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstring>

namespace {

struct Segment {
    int y, left, right;          // inclusive run, already taken
    int prevLeft, prevRight;     // the parent's range in row y + dir
    int dir;                     // towards the parent
};

inline uintptr_t alignUp8(uintptr_t p) { return (p + 7) & ~uintptr_t(7); }

// The gradient range test: n reached from p.
struct Range8u {
    int lo, hi;  // minDelta, maxDelta
    bool operator()(int n, int p) const { return p - lo <= n && n <= p + hi; }
};
struct Range32f {
    float offset, half;  // (minDelta - maxDelta) / 2, (minDelta + maxDelta) / 2
    bool operator()(float n, float p) const { return std::fabs(double(n) + double(offset) - double(p)) <= double(half); }
};

template <class T, bool Eight, class Range>
class Fill {
public:
    Fill(T* image, int step, ZeqiSize roi, T newVal, Segment* stack, Zeq8u* visited, Range range)
        : img_(image), step_(step), w_(roi.width), h_(roi.height), newVal_(newVal), stack_(stack),
          capacity_(size_t(6) * size_t(roi.width) * size_t(roi.height) / sizeof(Segment)),
          visited_(visited), range_(range) {}

    ZeqiConnectedComp run(ZeqiPoint seed) {
        T* r = row(seed.y);
        int left = seed.x, right = seed.x;
        if constexpr (gradient) {
            mark(seed.x, seed.y);
            while (takeBeside(r, right + 1, right, seed.y)) ++right;
            while (takeBeside(r, left - 1, left, seed.y)) --left;
            push({seed.y, left, right, right + 1, right, 1});
        } else {
            seedValue_ = zq::loadu(r + seed.x);
            zq::storeu(r + seed.x, newVal_);
            while (right < w_ - 1 && zq::loadu(r + right + 1) == seedValue_) zq::storeu(r + ++right, newVal_);
            while (left > 0 && zq::loadu(r + left - 1) == seedValue_) zq::storeu(r + --left, newVal_);
            // The height-1 image scans row -1 as the parent side: kept as documented.
            push({seed.y, left, right, right + 1, right, seed.y == h_ - 1 ? -1 : 1});
        }
        area_ = double(right - left + 1);
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
            if constexpr (gradient) {
                T* r = row(s.y);
                for (int x = s.left; x <= s.right; ++x) zq::storeu(r + x, newVal_);
            }
        }
        ZeqiConnectedComp c;
        c.area = area_;
        c.value = double(newVal_);
        c.rect = {x0, y0, x1 - x0 + 1, y1 - y0 + 1};
        return c;
    }

private:
    static constexpr bool gradient = !std::is_same<Range, std::nullptr_t>::value;

    T* row(int y) const { return zq::row(img_, step_, y); }
    Zeq8u& visitedAt(int x, int y) const { return visited_[(ptrdiff_t(y) + 1) * (w_ + 2) + x + 1]; }
    void mark(int x, int y) const { visitedAt(x, y) = 1; }

    // Gradient: pixel x of row y (ry its pixels) joins the run beside it at `from`.
    bool takeBeside(const T* ry, int x, int from, int y) {
        if (visitedAt(x, y) || !range_(zq::loadu(ry + x), zq::loadu(ry + from))) return false;
        mark(x, y);
        return true;
    }

    // Whether pixel x of row ry is taken from the popped segment s.
    bool takeFrom(const T* rs, int x, int ry, const Segment& s) {
        if constexpr (!gradient) {
            (void)s, (void)ry, (void)rs;
            return false;
        } else {
            if (visitedAt(x, ry)) return false;
            const T n = zq::loadu(row(ry) + x);
            // Reached diagonally (8-connectivity), any pixel of s beside it may pass it.
            const int a = Eight ? std::max(x - 1, s.left) : std::min(std::max(x, s.left), s.right);
            const int b = Eight ? std::min(x + 1, s.right) : a;
            for (int p = a; p <= b; ++p)
                if (range_(n, zq::loadu(rs + p))) {
                    mark(x, ry);
                    return true;
                }
            return false;
        }
    }

    // Runs of row ry in columns [from, to], pushed with direction d.
    void scan(int ry, int from, int to, const Segment& s, int d) {
        T* r = row(ry);
        const T* rs = row(s.y);
        for (int x = from; x <= to; ++x) {
            int left = x, right = x;
            if constexpr (gradient) {
                if (!takeFrom(rs, x, ry, s)) continue;
                while (takeBeside(r, right + 1, right, ry)) ++right;
                while (takeBeside(r, left - 1, left, ry)) --left;
            } else {
                if (zq::loadu(r + x) != seedValue_) continue;
                zq::storeu(r + x, newVal_);
                while (right < w_ - 1 && zq::loadu(r + right + 1) == seedValue_) zq::storeu(r + ++right, newVal_);
                while (left > 0 && zq::loadu(r + left - 1) == seedValue_) zq::storeu(r + --left, newVal_);
            }
            push({ry, left, right, s.left, s.right, d});
            area_ += double(right - left + 1);
            // The pixel after a plain run is not the seed's value; after a
            // gradient run it may still pass from the popped segment.
            x = gradient ? right : right + 1;
        }
    }

    // The first segments live here: the queried buffer holds one per four
    // pixels, less than one segment for images of under four pixels.
    static constexpr int kLocal = 64;

    void push(const Segment& s) {
        if (top_ < kLocal) local_[top_++] = s;
        else if (size_t(top_ - kLocal) < capacity_) stack_[top_++ - kLocal] = s;
    }
    Segment pop() {
        --top_;
        return top_ < kLocal ? local_[top_] : stack_[top_ - kLocal];
    }

    T* img_;
    ptrdiff_t step_;
    int w_, h_;
    T newVal_, seedValue_{};
    Segment* stack_;
    size_t capacity_;
    Segment local_[kLocal];
    int top_ = 0;
    Zeq8u* visited_;
    Range range_;
    double area_ = 0;
};

template <class T>
ZeqStatus checkImage(const T* pImage, int imageStep, ZeqiSize roi, ZeqiPoint seed, const void* pRegion,
                     const Zeq8u* pBuffer) {
    ZQ_CHECK(zq::nonNull(pImage, pRegion, pBuffer));
    ZQ_CHECK(zq::roiSize(roi));
    ZQ_CHECK(zq::stepsAtLeast(zq::rowBytes<T>(roi.width), imageStep));
    if constexpr (std::is_same<T, Zeq32f>::value) ZQ_CHECK(zq::stepsEven(imageStep));
    if (seed.x < 0 || seed.x >= roi.width || seed.y < 0 || seed.y >= roi.height) return zeqStsOutOfRange;
    return zeqStsOk;
}

template <bool Eight, class T>
ZeqStatus fill(T* pImage, int imageStep, ZeqiSize roi, ZeqiPoint seed, T newVal, ZeqiConnectedComp* pRegion,
               Zeq8u* pBuffer) {
    if (zq::loadu(zq::row(pImage, imageStep, seed.y) + seed.x) == newVal) return zeqStsOk;
    Segment* stack = reinterpret_cast<Segment*>(alignUp8(reinterpret_cast<uintptr_t>(pBuffer)));
    *pRegion = Fill<T, Eight, std::nullptr_t>(pImage, imageStep, roi, newVal, stack, nullptr, nullptr).run(seed);
    return zeqStsOk;
}

template <bool Eight, class T, class Range>
ZeqStatus fillGradient(T* pImage, int imageStep, ZeqiSize roi, ZeqiPoint seed, T newVal, Range range,
                       ZeqiConnectedComp* pRegion, Zeq8u* pBuffer) {
    const ptrdiff_t mw = ptrdiff_t(roi.width) + 2, mh = ptrdiff_t(roi.height) + 2;
    std::memset(pBuffer, 1, size_t(mw));
    for (ptrdiff_t y = 1; y < mh - 1; ++y) {
        pBuffer[y * mw] = 1;
        std::memset(pBuffer + y * mw + 1, 0, size_t(mw - 2));
        pBuffer[y * mw + mw - 1] = 1;
    }
    std::memset(pBuffer + (mh - 1) * mw, 1, size_t(mw));
    Segment* stack = reinterpret_cast<Segment*>(alignUp8(reinterpret_cast<uintptr_t>(pBuffer + mw * mh)));
    *pRegion = Fill<T, Eight, Range>(pImage, imageStep, roi, newVal, stack, pBuffer, range).run(seed);
    return zeqStsOk;
}

// The work buffer sizes, as the fills carve them; 64-bit, refused past int.
ZeqStatus getSize(ZeqiSize roi, int* pBufSize, bool gradient) {
    ZQ_CHECK(zq::nonNull(pBufSize));
    ZQ_CHECK(zq::roiSize(roi));
    const int64_t w = roi.width, h = roi.height;
    const int64_t bytes = (gradient ? (w + 2) * (h + 2) : 0) + ((h * 24 * w) >> 2) + 8;
    if (bytes > INT_MAX) return zeqStsSize;
    *pBufSize = int(bytes);
    return zeqStsOk;
}

template <bool Eight>
ZeqStatus fill8u(Zeq8u* pImage, int imageStep, ZeqiSize roi, ZeqiPoint seed, int newVal, ZeqiConnectedComp* pRegion,
                 Zeq8u* pBuffer) {
    ZQ_CHECK(checkImage(pImage, imageStep, roi, seed, pRegion, pBuffer));
    if (newVal < 0 || newVal > 255) return zeqStsBadArg;
    return fill<Eight>(pImage, imageStep, roi, seed, Zeq8u(newVal), pRegion, pBuffer);
}

template <bool Eight>
ZeqStatus fill32f(Zeq32f* pImage, int imageStep, ZeqiSize roi, ZeqiPoint seed, Zeq32f newVal,
                  ZeqiConnectedComp* pRegion, Zeq8u* pBuffer) {
    ZQ_CHECK(checkImage(pImage, imageStep, roi, seed, pRegion, pBuffer));
    return fill<Eight>(pImage, imageStep, roi, seed, newVal, pRegion, pBuffer);
}

template <bool Eight>
ZeqStatus fillGrad8u(Zeq8u* pImage, int imageStep, ZeqiSize roi, ZeqiPoint seed, int newVal, int minDelta,
                     int maxDelta, ZeqiConnectedComp* pRegion, Zeq8u* pBuffer) {
    ZQ_CHECK(checkImage(pImage, imageStep, roi, seed, pRegion, pBuffer));
    if (newVal < 0 || newVal > 255) return zeqStsBadArg;
    if (minDelta < 0 || maxDelta < 0 || int64_t(minDelta) + maxDelta > 255) return zeqStsOutOfRange;
    return fillGradient<Eight>(pImage, imageStep, roi, seed, Zeq8u(newVal), Range8u{minDelta, maxDelta}, pRegion,
                               pBuffer);
}

template <bool Eight>
ZeqStatus fillGrad32f(Zeq32f* pImage, int imageStep, ZeqiSize roi, ZeqiPoint seed, Zeq32f newVal, Zeq32f minDelta,
                      Zeq32f maxDelta, ZeqiConnectedComp* pRegion, Zeq8u* pBuffer) {
    ZQ_CHECK(checkImage(pImage, imageStep, roi, seed, pRegion, pBuffer));
    if (!(minDelta >= 0.0f) || !(maxDelta >= 0.0f)) return zeqStsOutOfRange;
    const Range32f range{(minDelta - maxDelta) / 2.0f, (minDelta + maxDelta) / 2.0f};
    return fillGradient<Eight>(pImage, imageStep, roi, seed, newVal, range, pRegion, pBuffer);
}

}  // namespace

ZeqStatus zeqiFloodFillGetSize(ZeqiSize roiSize, int* pBufSize) { return getSize(roiSize, pBufSize, false); }
ZeqStatus zeqiFloodFillGetSize_Grad(ZeqiSize roiSize, int* pBufSize) { return getSize(roiSize, pBufSize, true); }

ZeqStatus zeqiFloodFill_4Con_8u_C1IR(Zeq8u* pImage, int imageStep, ZeqiSize roiSize, ZeqiPoint seed, int newVal,
                                     ZeqiConnectedComp* pRegion, Zeq8u* pBuffer) {
    return fill8u<false>(pImage, imageStep, roiSize, seed, newVal, pRegion, pBuffer);
}
ZeqStatus zeqiFloodFill_8Con_8u_C1IR(Zeq8u* pImage, int imageStep, ZeqiSize roiSize, ZeqiPoint seed, int newVal,
                                     ZeqiConnectedComp* pRegion, Zeq8u* pBuffer) {
    return fill8u<true>(pImage, imageStep, roiSize, seed, newVal, pRegion, pBuffer);
}
ZeqStatus zeqiFloodFill_4Con_32f_C1IR(Zeq32f* pImage, int imageStep, ZeqiSize roiSize, ZeqiPoint seed,
                                      Zeq32f newVal, ZeqiConnectedComp* pRegion, Zeq8u* pBuffer) {
    return fill32f<false>(pImage, imageStep, roiSize, seed, newVal, pRegion, pBuffer);
}
ZeqStatus zeqiFloodFill_8Con_32f_C1IR(Zeq32f* pImage, int imageStep, ZeqiSize roiSize, ZeqiPoint seed,
                                      Zeq32f newVal, ZeqiConnectedComp* pRegion, Zeq8u* pBuffer) {
    return fill32f<true>(pImage, imageStep, roiSize, seed, newVal, pRegion, pBuffer);
}
ZeqStatus zeqiFloodFill_Grad4Con_8u_C1IR(Zeq8u* pImage, int imageStep, ZeqiSize roiSize, ZeqiPoint seed,
                                         int newVal, int minDelta, int maxDelta, ZeqiConnectedComp* pRegion,
                                         Zeq8u* pBuffer) {
    return fillGrad8u<false>(pImage, imageStep, roiSize, seed, newVal, minDelta, maxDelta, pRegion, pBuffer);
}
ZeqStatus zeqiFloodFill_Grad8Con_8u_C1IR(Zeq8u* pImage, int imageStep, ZeqiSize roiSize, ZeqiPoint seed,
                                         int newVal, int minDelta, int maxDelta, ZeqiConnectedComp* pRegion,
                                         Zeq8u* pBuffer) {
    return fillGrad8u<true>(pImage, imageStep, roiSize, seed, newVal, minDelta, maxDelta, pRegion, pBuffer);
}
ZeqStatus zeqiFloodFill_Grad4Con_32f_C1IR(Zeq32f* pImage, int imageStep, ZeqiSize roiSize, ZeqiPoint seed,
                                          Zeq32f newVal, Zeq32f minDelta, Zeq32f maxDelta,
                                          ZeqiConnectedComp* pRegion, Zeq8u* pBuffer) {
    return fillGrad32f<false>(pImage, imageStep, roiSize, seed, newVal, minDelta, maxDelta, pRegion, pBuffer);
}
ZeqStatus zeqiFloodFill_Grad8Con_32f_C1IR(Zeq32f* pImage, int imageStep, ZeqiSize roiSize, ZeqiPoint seed,
                                          Zeq32f newVal, Zeq32f minDelta, Zeq32f maxDelta,
                                          ZeqiConnectedComp* pRegion, Zeq8u* pBuffer) {
    return fillGrad32f<true>(pImage, imageStep, roiSize, seed, newVal, minDelta, maxDelta, pRegion, pBuffer);
}
