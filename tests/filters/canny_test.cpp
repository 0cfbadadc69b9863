#include "zqtest.h"

#include <cstdlib>

namespace {

using zqt::Image;
using zqt::Rng;

// A derivative image at any even step and address. Float elements may sit
// off their natural alignment, so every access goes through memcpy.
template <class T>
class Deriv {
public:
    Deriv(int h, int step, int misalign)
        : step_(step), bytes_(size_t(step) * size_t(h) + 64 + size_t(misalign)), off_(misalign) {
        off_ += int((64 - reinterpret_cast<uintptr_t>(bytes_.data()) % 64) % 64);
    }
    const T* ptr() const { return reinterpret_cast<const T*>(bytes_.data() + off_); }
    int step() const { return step_; }
    T get(int x, int y) const {
        T v;
        std::memcpy(&v, bytes_.data() + off_ + size_t(y) * size_t(step_) + size_t(x) * sizeof(T), sizeof(T));
        return v;
    }
    void set(int x, int y, T v) {
        std::memcpy(bytes_.data() + off_ + size_t(y) * size_t(step_) + size_t(x) * sizeof(T), &v, sizeof(T));
    }

private:
    int step_;
    std::vector<uint8_t> bytes_;
    int off_;
};

template <class T>
ZeqStatus canny(const Deriv<T>& dx, const Deriv<T>& dy, Zeq8u* dst, int dstStep, ZeqiSize roi, float low, float high,
                Zeq8u* buf) {
    if constexpr (std::is_same<T, Zeq16s>::value)
        return zeqiCanny_16s8u_C1R(dx.ptr(), dx.step(), dy.ptr(), dy.step(), dst, dstStep, roi, low, high, buf);
    else
        return zeqiCanny_32f8u_C1R(dx.ptr(), dx.step(), dy.ptr(), dy.step(), dst, dstStep, roi, low, high, buf);
}

// The documented three stages, one pixel at a time, over the documented
// buffer layout. Also records every stack slot written, so the push order of
// suppression and of the depth-first walk can be compared.
struct Reference {
    int w, h;
    std::vector<uint8_t> dir;
    std::vector<float> mag;
    std::vector<int> stack;
    std::vector<bool> written;
    std::vector<uint8_t> edges;

    template <class T>
    Reference(const Deriv<T>& dx, const Deriv<T>& dy, int w_, int h_, float low, float high)
        : w(w_), h(h_), dir(size_t(w + 2) * (h + 2), 0), mag(dir.size(), 0.0f), stack(2 * dir.size(), -1),
          written(stack.size(), false), edges(size_t(w) * h, 0) {
        const int W = w + 2;
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x) {
                float a, b;
                bool differ;
                if constexpr (std::is_same<T, Zeq16s>::value) {
                    a = float(std::abs(int(dx.get(x, y))));
                    b = float(std::abs(int(dy.get(x, y))));
                    differ = (dx.get(x, y) < 0) != (dy.get(x, y) < 0);
                } else {
                    a = std::fabs(dx.get(x, y));
                    b = std::fabs(dy.get(x, y));
                    differ = std::signbit(dx.get(x, y)) != std::signbit(dy.get(x, y));
                }
                const float m = a + b;
                if (!(m > low)) continue;
                const size_t i = size_t(y + 1) * W + x + 1;
                mag[i] = m;
                if (b > float(double(a) * 2.414213562373095)) dir[i] = 3;
                else if (b >= float(double(a) * 0.41421356237309503)) dir[i] = differ ? 2 : 4;
                else dir[i] = 1;
            }
        size_t top = 0;
        auto push = [&](int y, int x) {
            stack[top] = y;
            stack[top + 1] = x;
            written[top] = written[top + 1] = true;
            top += 2;
        };
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x) {
                const size_t i = size_t(y + 1) * W + x + 1;
                if (mag[i] == 0.0f) continue;
                const int code = dir[i];
                const ptrdiff_t off = code == 1 ? 1 : code == 2 ? W - 1 : code == 3 ? W : W + 1;
                const float m = mag[i], f = mag[i + off], r = mag[i - off];
                if (!(m > r && (m > f || (m == f && code % 2 == 1)))) continue;
                dir[i] = 0x80;
                if (m > high) {
                    edges[size_t(y) * w + x] = 255;
                    push(y, x);
                }
            }
        const int ny[8] = {-1, -1, -1, 0, 0, 1, 1, 1}, nx[8] = {-1, 0, 1, -1, 1, -1, 0, 1};
        while (top > 0) {
            top -= 2;
            const int y = stack[top], x = stack[top + 1];
            for (int k = 0; k < 8; ++k) {
                const int yy = y + ny[k], xx = x + nx[k];
                if (!(dir[size_t(yy + 1) * W + xx + 1] & 0x80) || edges[size_t(yy) * w + xx]) continue;
                edges[size_t(yy) * w + xx] = 255;
                push(yy, xx);
            }
        }
    }

    // The work buffer holds the same direction map and the same stack
    // history (the magnitudes live in a few rows only).
    ::testing::AssertionResult sameBuffer(const uint8_t* buffer) const {
        const size_t n = dir.size();
        auto up32 = [](uintptr_t p) { return (p + 31) & ~uintptr_t(31); };
        const uintptr_t d = up32(reinterpret_cast<uintptr_t>(buffer)), m = up32(d + n), s = m + 4 * n;
        for (size_t i = 0; i < n; ++i) {
            const uint8_t code = reinterpret_cast<const uint8_t*>(d)[i];
            if (code != dir[i])
                return ::testing::AssertionFailure() << "map entry " << i << ": direction " << +code << " (want "
                                                     << +dir[i] << ")";
        }
        for (size_t i = 0; i < stack.size(); ++i) {
            int v;
            std::memcpy(&v, reinterpret_cast<const void*>(s + 4 * i), 4);
            if (written[i] && v != stack[i])
                return ::testing::AssertionFailure() << "stack slot " << i << ": " << v << ", want " << stack[i];
        }
        return ::testing::AssertionSuccess();
    }

    ::testing::AssertionResult sameEdges(const Image<Zeq8u>& got) const {
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x)
                if (got.at(x, y) != edges[size_t(y) * w + x])
                    return ::testing::AssertionFailure() << "edge at (" << x << ", " << y << "): got " << +got.at(x, y);
        return ::testing::AssertionSuccess();
    }
};

int bufferSize(int w, int h) {
    int size = -1;
    EXPECT_EQ(zeqStsOk, zeqiCannyGetSize({w, h}, &size));
    return size;
}

// Runs one call with the buffer at `bufMisalign` bytes past a 32-byte
// boundary and guard bytes around it, then compares everything with the
// reference.
template <class T>
::testing::AssertionResult runAndCompare(const Deriv<T>& dx, const Deriv<T>& dy, int w, int h, float low, float high,
                                         int dstPad, int dstMisalign, int bufMisalign) {
    Image<Zeq8u> dst(w, h, 1, dstPad, dstMisalign);
    const int size = bufferSize(w, h);
    std::vector<uint8_t> storage(size_t(size) + 128, 0xA5);
    const size_t start = (32 - reinterpret_cast<uintptr_t>(storage.data()) % 32) % 32 + size_t(bufMisalign);
    const ZeqStatus st = canny(dx, dy, dst.ptr(), dst.step(), {w, h}, low, high, storage.data() + start);
    if (st != zeqStsOk) return ::testing::AssertionFailure() << "status " << st;
    for (size_t i = 0; i < storage.size(); ++i)
        if ((i < start || i >= start + size_t(size)) && storage[i] != 0xA5)
            return ::testing::AssertionFailure() << "byte " << ptrdiff_t(i - start) << " outside the buffer written";
    if (!dst.outsideUntouched()) return dst.outsideUntouched();
    const Reference ref(dx, dy, w, h, low, high);
    if (auto r = ref.sameEdges(dst); !r) return r;
    return ref.sameBuffer(storage.data() + start);
}

template <class T>
T randomDerivative(Rng& rng, int range) {
    if constexpr (std::is_same<T, Zeq32f>::value) {
        switch (rng.uniform(0, 39)) {
        case 0: case 1: return -0.0f;
        case 2: return std::numeric_limits<float>::quiet_NaN();
        case 3: return rng.chance(0.5) ? INFINITY : -INFINITY;
        case 4: case 5: case 6: return rng.uniformf(-float(range), float(range));
        default: return float(rng.uniform(-range, range));
        }
    } else {
        return T(rng.uniform(-range, range));
    }
}

template <class T>
class Canny : public ::testing::Test {};
using Types = ::testing::Types<Zeq16s, Zeq32f>;
TYPED_TEST_SUITE(Canny, Types);

// Small value ranges make magnitude ties frequent, so the plateau rule is
// exercised along every direction; widths cover the vector body and tails.
// Float derivatives include signed zeros, infinities and NaNs.
TYPED_TEST(Canny, MatchesReferenceOverRandomImages) {
    using T = TypeParam;
    const int e = int(sizeof(T));
    Rng rng(std::is_same<T, Zeq16s>::value ? 5 : 6);
    const int ranges[] = {1, 2, 3, 8, 100, 32767};
    for (int iter = 0; iter < 160; ++iter) {
        int w = rng.uniform(1, 70), h = rng.uniform(1, 24);
        if (iter < 3) w = h = 1;
        else if (iter < 12) (iter % 2 ? w : h) = 1;
        else if (iter < 20) w = rng.uniform(500, 1100), h = 3;  // rows of several vector chunks
        else if (iter == 20) w = 1104, h = 950;  // a result large enough to be streamed
        const int range = ranges[iter % 6];
        // Any even step is legal: for floats that includes rows at 2 mod 4.
        const int dxStep = e * w + 2 * rng.uniform(0, 5), dyStep = e * w + 2 * rng.uniform(0, 5);
        Deriv<T> dx(h, dxStep, 2 * rng.uniform(0, 7)), dy(h, dyStep, 2 * rng.uniform(0, 7));
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x) {
                dx.set(x, y, randomDerivative<T>(rng, range));
                dy.set(x, y, randomDerivative<T>(rng, range));
            }
        // Integer thresholds on integer magnitudes make equality cases too.
        float low = iter % 5 == 0 ? float(rng.uniform(0, 2 * range)) : rng.uniformf(0, 1.2f * float(range));
        if (iter % 11 == 0) low = 0.0f;
        const float high = iter % 7 == 0 ? low : low + float(rng.uniform(0, 2 * range));
        const bool packed = iter == 20;  // aligned rows
        ASSERT_TRUE(runAndCompare(dx, dy, w, h, low, high, packed ? 0 : rng.uniform(0, 5),
                                  packed ? 0 : rng.uniform(0, 15), rng.uniform(0, 31)))
            << w << "x" << h << " range " << range << " thresholds " << low << ", " << high;
    }
}

// Derivative pairs where forming the tangent products in single precision,
// or comparing against the unrounded double product, changes the direction.
TYPED_TEST(Canny, DirectionUsesDoubleProductsRoundedToFloat) {
    using T = TypeParam;
    const double k[2] = {2.414213562373095, 0.41421356237309503};
    std::vector<std::pair<int, int>> pairs;
    for (int a = 1; a <= 32767; ++a)
        for (int t = 0; t < 2; ++t) {
            const float want = float(double(a) * k[t]), single = float(a) * float(k[t]);
            for (int b = int(want) - 1; b <= int(want) + 2 && b <= 32767; ++b) {
                auto above = [&](double v) { return t == 0 ? b > v : b >= v; };
                if (above(want) != above(single) || above(want) != above(double(a) * k[t])) pairs.push_back({a, b});
            }
        }
    ASSERT_GT(pairs.size(), 20u);
    const int w = int(pairs.size());
    Deriv<T> dx(1, w * int(sizeof(T)), 0), dy(1, w * int(sizeof(T)), 0);
    for (int x = 0; x < w; ++x) {
        dx.set(x, 0, T(x % 2 ? -pairs[size_t(x)].first : pairs[size_t(x)].first));
        dy.set(x, 0, T(pairs[size_t(x)].second));
    }
    EXPECT_TRUE(runAndCompare(dx, dy, w, 1, 0.0f, 1e9f, 0, 0, 0));
}

// Checks run in order (null, size, steps, odd step, thresholds) and a failed
// check writes neither the edges nor the buffer.
TYPED_TEST(Canny, StatusesInOrderAndNothingWritten) {
    using T = TypeParam;
    const int e = int(sizeof(T)), w = 6, h = 3, row = e * w;
    Deriv<T> d(h, row + 2, 0);
    Image<Zeq8u> dst(w, h);
    std::vector<uint8_t> buf(size_t(bufferSize(w, h)), 0x5A);
    const auto before = dst.snapshot();
    auto call = [&](const T* px, int sx, const T* py, int sy, Zeq8u* pd, int sd, ZeqiSize roi, float lo, float hi,
                    Zeq8u* pb) {
        if constexpr (std::is_same<T, Zeq16s>::value) return zeqiCanny_16s8u_C1R(px, sx, py, sy, pd, sd, roi, lo, hi, pb);
        else return zeqiCanny_32f8u_C1R(px, sx, py, sy, pd, sd, roi, lo, hi, pb);
    };
    const T* p = d.ptr();
    Zeq8u* o = dst.ptr();
    const float nan = std::numeric_limits<float>::quiet_NaN();
    EXPECT_EQ(zeqStsNullPtr, call(nullptr, row, p, row, o, w, {0, 0}, -1, -2, buf.data()));
    EXPECT_EQ(zeqStsNullPtr, call(p, row, nullptr, row, o, w, {w, h}, 1, 2, buf.data()));
    EXPECT_EQ(zeqStsNullPtr, call(p, row, p, row, nullptr, w, {w, h}, 1, 2, buf.data()));
    EXPECT_EQ(zeqStsNullPtr, call(p, row, p, row, o, w, {w, h}, 1, 2, nullptr));
    EXPECT_EQ(zeqStsSize, call(p, 0, p, 0, o, 0, {0, h}, -1, -2, buf.data()));
    EXPECT_EQ(zeqStsSize, call(p, row, p, row, o, w, {w, 0}, 1, 2, buf.data()));
    EXPECT_EQ(zeqStsSize, call(p, row, p, row, o, w, {-3, h}, 1, 2, buf.data()));
    EXPECT_EQ(zeqStsStep, call(p, row - 2, p, row, o, w, {w, h}, -1, -2, buf.data()));
    EXPECT_EQ(zeqStsStep, call(p, row, p, row - 1, o, w, {w, h}, 1, 2, buf.data()));
    EXPECT_EQ(zeqStsStep, call(p, row + 1, p, row, o, w - 1, {w, h}, 1, 2, buf.data()));
    EXPECT_EQ(zeqStsStepAlign, call(p, row + 1, p, row, o, w, {w, h}, -1, -2, buf.data()));
    EXPECT_EQ(zeqStsStepAlign, call(p, row, p, row + 3, o, w, {w, h}, 1, 2, buf.data()));
    EXPECT_EQ(zeqStsBadArg, call(p, row, p, row, o, w, {w, h}, -1, 2, buf.data()));
    EXPECT_EQ(zeqStsBadArg, call(p, row, p, row, o, w, {w, h}, 3, 2, buf.data()));
    EXPECT_EQ(zeqStsBadArg, call(p, row, p, row, o, w, {w, h}, nan, 2, buf.data()));
    EXPECT_EQ(zeqStsBadArg, call(p, row, p, row, o, w, {w, h}, 1, nan, buf.data()));
    EXPECT_TRUE(dst.unchangedSince(before));
    for (uint8_t b : buf) ASSERT_EQ(0x5A, b);
    // The smallest legal steps, equal thresholds and an unaligned float step.
    EXPECT_EQ(zeqStsOk, call(p, row, p, row + 2, o, w, {w, h}, 0, 0, buf.data()));
}

TEST(Canny32f, NegativeZeroCountsAsNegativeSign) {
    // The smallest denormal against a zero: the 22.5-degree product rounds to
    // 0, so the pixel is diagonal and the sign of the zero picks the code.
    // Strong pixels on both upper diagonals suppress it, so the code stays.
    for (const float zero : {-0.0f, 0.0f}) {
        const float dx[6] = {1, 0, 1, 0, 1e-45f, 0}, dy[6] = {0, 0, 0, 0, zero, 0};
        std::vector<uint8_t> buf(size_t(bufferSize(3, 2)));
        Zeq8u dst[6];
        ASSERT_EQ(zeqStsOk, zeqiCanny_32f8u_C1R(dx, 12, dy, 12, dst, 3, {3, 2}, 0, 0, buf.data()));
        const auto* dir = reinterpret_cast<const uint8_t*>((reinterpret_cast<uintptr_t>(buf.data()) + 31) & ~uintptr_t(31));
        EXPECT_EQ(std::signbit(zero) ? 2 : 4, dir[2 * 5 + 2]);
        EXPECT_EQ(0, dst[4]);
    }
}

}  // namespace
