#include "zqtest.h"

#include <deque>

namespace {

using zqt::Image;
using zqt::Rng;

// Breadth-first search from the seed: a neighbour N of a taken pixel P is
// taken when step(P, N) holds. Returns the region as a mask.
template <class T, class Step>
std::vector<char> region(const Image<T>& im, ZeqiPoint seed, bool eight, Step step) {
    const int w = im.width(), h = im.height();
    std::vector<char> in(size_t(w) * h, 0);
    std::deque<ZeqiPoint> queue{seed};
    in[size_t(seed.y) * w + seed.x] = 1;
    while (!queue.empty()) {
        const ZeqiPoint p = queue.front();
        queue.pop_front();
        for (int dy = -1; dy <= 1; ++dy)
            for (int dx = -1; dx <= 1; ++dx) {
                const int x = p.x + dx, y = p.y + dy;
                if ((dx == 0 && dy == 0) || (!eight && dx != 0 && dy != 0) || x < 0 || x >= w || y < 0 || y >= h) continue;
                if (in[size_t(y) * w + x] || !step(im.at(p.x, p.y), im.at(x, y))) continue;
                in[size_t(y) * w + x] = 1;
                queue.push_back({x, y});
            }
    }
    return in;
}

std::vector<int> rect(ZeqiRect r) { return {r.x, r.y, r.width, r.height}; }

struct Call {
    bool eight, gradient;
};

template <class T>
ZeqStatus fill(Call c, Image<T>& im, int y0, ZeqiSize roi, ZeqiPoint seed, T nv, T lo, T hi, ZeqiConnectedComp* r,
               Zeq8u* buf) {
    T* p = im.row(y0);
    if constexpr (std::is_same<T, Zeq8u>::value) {
        if (c.gradient)
            return (c.eight ? zeqiFloodFill_Grad8Con_8u_C1IR : zeqiFloodFill_Grad4Con_8u_C1IR)(p, im.step(), roi, seed, nv, lo, hi, r, buf);
        return (c.eight ? zeqiFloodFill_8Con_8u_C1IR : zeqiFloodFill_4Con_8u_C1IR)(p, im.step(), roi, seed, nv, r, buf);
    } else {
        if (c.gradient)
            return (c.eight ? zeqiFloodFill_Grad8Con_32f_C1IR : zeqiFloodFill_Grad4Con_32f_C1IR)(p, im.step(), roi, seed, nv, lo, hi, r, buf);
        return (c.eight ? zeqiFloodFill_8Con_32f_C1IR : zeqiFloodFill_4Con_32f_C1IR)(p, im.step(), roi, seed, nv, r, buf);
    }
}

template <class T>
class FloodFill : public ::testing::Test {};
using Types = ::testing::Types<Zeq8u, Zeq32f>;
TYPED_TEST_SUITE(FloodFill, Types);

// Images of three close values (regions of every shape), uniform images and
// one-pixel ones, against the search. Row 0 of each buffer holds a value
// found nowhere else: the roi starts at row 1, so the plain fill's read of
// the row before a one-row roi stays inside the buffer.
TYPED_TEST(FloodFill, MatchesBreadthFirstSearch) {
    using T = TypeParam;
    const bool isFloat = std::is_same<T, float>::value;
    Rng rng(13);
    for (int iter = 0; iter < 400; ++iter) {
        const Call c{iter % 2 == 1, iter % 4 >= 2};
        // Every 13th image a checkerboard: one 8-connected region of single
        // pixels, the stack of segments at its deepest.
        const bool board = iter % 13 == 0;
        const int w = board ? 61 : iter < 16 ? 1 + iter % 3 : rng.uniform(1, iter % 3 ? 40 : 200);
        const int h = board ? 47 : iter < 16 ? 1 + iter / 8 : rng.uniform(1, 30);
        const bool uniform = !board && iter % 9 == 0;
        const int e = int(sizeof(T));
        Image<T> im(w, h + 1, 1, e * rng.uniform(0, 3) + (isFloat ? 0 : iter % 2), e * rng.uniform(0, 3));
        int last = 11;  // long runs in some rows, so that whole registers match
        const double change = iter % 5 ? 0.5 : 0.03;
        im.fill([&](int x, int y, int) {
            last = rng.chance(change) ? rng.uniform(10, 12) : last;
            return y == 0 ? T(200) : board ? T((x + y) % 2 ? 10 : 12) : uniform ? T(11) : T(last * (isFloat ? 0.5 : 1));
        });
        const Image<T> before = im;
        const ZeqiPoint seed{rng.uniform(0, w - 1), rng.uniform(0, h - 1)};
        const T nv = T(rng.uniform(0, 1) ? 7 : 12), lo = T(rng.uniform(0, 2) * (isFloat ? 0.5 : 1)), hi = T(rng.uniform(0, 2) * (isFloat ? 0.5 : 1));
        Image<T> view(w, h);
        view.fill([&](int x, int y, int) { return before.at(x, y + 1); });
        const T s = view.at(seed.x, seed.y);
        const auto in = c.gradient ? region(view, seed, c.eight, [&](T p, T n) { return p - lo <= n && n <= p + hi; })
                                   : region(view, seed, c.eight, [&](T, T n) { return n == s; });
        int size = 0;
        (c.gradient ? zeqiFloodFillGetSize_Grad : zeqiFloodFillGetSize)({w, h}, &size);
        std::vector<Zeq8u> buf(static_cast<size_t>(size));
        ZeqiConnectedComp r{-1, -1, {-1, -1, -1, -1}};
        ASSERT_EQ(zeqStsOk, fill(c, im, 1, {w, h}, seed, nv, lo, hi, &r, buf.data()));
        if (!c.gradient && s == nv) {  // nothing happens at all
            EXPECT_EQ(-1.0, r.area);
            ASSERT_TRUE(zqt::sameImage(im, before));
            continue;
        }
        int area = 0, x0 = w, x1 = -1, y0 = h, y1 = -1;
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x) {
                const bool taken = in[size_t(y) * w + x];
                ASSERT_EQ(taken ? nv : before.at(x, y + 1), im.at(x, y + 1)) << x << "," << y << " of " << w << "x" << h;
                if (taken) area++, x0 = std::min(x0, x), x1 = std::max(x1, x), y0 = std::min(y0, y), y1 = std::max(y1, y);
            }
        for (int x = 0; x < w; ++x) ASSERT_EQ(T(200), im.at(x, 0));
        ASSERT_TRUE(im.outsideUntouched());
        EXPECT_EQ(double(area), r.area);
        EXPECT_EQ(double(nv), r.value);
        EXPECT_EQ(rect({x0, y0, x1 - x0 + 1, y1 - y0 + 1}), rect(r.rect));
        EXPECT_TRUE(!uniform || r.area == double(w * h));
    }
}

// A float seed of any value is only compared, never converted: huge values
// fill their equal neighbours, NaN equals nothing but is still taken itself.
TEST(FloodFill32f, SeedOfAnyValue) {
    for (float v : {3e38f, -1e30f, std::numeric_limits<float>::quiet_NaN()}) {
        Image<float> im(5, 3);
        im.fill([&](int x, int, int) { return x < 3 ? v : 1.0f; });
        std::vector<Zeq8u> buf(256);
        ZeqiConnectedComp r;
        ASSERT_EQ(zeqStsOk, zeqiFloodFill_4Con_32f_C1IR(im.ptr(), im.step(), {5, 3}, {1, 1}, 7, &r, buf.data()));
        EXPECT_EQ(v == v ? 9.0 : 1.0, r.area) << v;
        EXPECT_EQ(7.0f, im.at(1, 1));
        EXPECT_EQ(1.0f, im.at(4, 2));
    }
}

// Kept as documented: a one-row plain fill scans and fills the row before.
TEST(FloodFill8u, OneRowPlainFillReadsTheRowBefore) {
    Image<Zeq8u> im(6, 2);
    im.fill([](int x, int y, int) { return y == 0 ? (x < 3 ? 4 : 1) : (x < 5 ? 4 : 2); });
    std::vector<Zeq8u> buf(64);
    ZeqiConnectedComp r;
    ASSERT_EQ(zeqStsOk, zeqiFloodFill_4Con_8u_C1IR(im.row(1), im.step(), {6, 1}, {4, 0}, 8, &r, buf.data()));
    EXPECT_EQ((std::vector<int>{8, 1, 8, 2}), (std::vector<int>{im.at(0, 0), im.at(3, 0), im.at(4, 1), im.at(5, 1)}));
    EXPECT_EQ(8.0, r.area);
    EXPECT_EQ(rect({0, -1, 5, 2}), rect(r.rect));
}

TEST(FloodFillChecks, StatusesInOrderAndNothingWritten) {
    Image<Zeq8u> im(5, 4);
    Image<Zeq32f> fm(5, 4);
    std::vector<Zeq8u> buf(1024);
    ZeqiConnectedComp r{-1, -1, {-1, -1, -1, -1}};
    const auto before = im.snapshot(), beforeF = fm.snapshot();
    Zeq8u* p = im.ptr();
    Zeq32f* f = fm.ptr();
    EXPECT_EQ(zeqStsNullPtr, zeqiFloodFill_4Con_8u_C1IR(p, 5, {5, 4}, {0, 0}, 1, nullptr, buf.data()));
    EXPECT_EQ(zeqStsNullPtr, zeqiFloodFill_Grad8Con_32f_C1IR(f, 20, {0, 0}, {9, 9}, 1, -1, -1, &r, nullptr));
    EXPECT_EQ(zeqStsSize, zeqiFloodFill_8Con_8u_C1IR(p, 0, {5, 0}, {9, 9}, 300, &r, buf.data()));
    EXPECT_EQ(zeqStsStep, zeqiFloodFill_Grad4Con_8u_C1IR(p, 4, {5, 4}, {9, 9}, 300, -1, 0, &r, buf.data()));
    EXPECT_EQ(zeqStsStep, zeqiFloodFill_4Con_32f_C1IR(f, 19, {5, 4}, {9, 9}, 1, &r, buf.data()));
    EXPECT_EQ(zeqStsStepAlign, zeqiFloodFill_8Con_32f_C1IR(f, 21, {5, 4}, {9, 9}, 1, &r, buf.data()));
    EXPECT_EQ(zeqStsOutOfRange, zeqiFloodFill_4Con_32f_C1IR(f, 22, {5, 4}, {5, 0}, 1, &r, buf.data()));
    EXPECT_EQ(zeqStsOutOfRange, zeqiFloodFill_Grad4Con_8u_C1IR(p, 5, {5, 4}, {0, -1}, 300, -1, 0, &r, buf.data()));
    EXPECT_EQ(zeqStsBadArg, zeqiFloodFill_Grad4Con_8u_C1IR(p, 5, {5, 4}, {0, 3}, 256, -1, 0, &r, buf.data()));
    EXPECT_EQ(zeqStsBadArg, zeqiFloodFill_8Con_8u_C1IR(p, 5, {5, 4}, {0, 3}, -1, &r, buf.data()));
    EXPECT_EQ(zeqStsOutOfRange, zeqiFloodFill_Grad8Con_8u_C1IR(p, 5, {5, 4}, {0, 3}, 255, 0, -1, &r, buf.data()));
    EXPECT_EQ(zeqStsOutOfRange, zeqiFloodFill_Grad8Con_8u_C1IR(p, 5, {5, 4}, {0, 3}, 255, 128, 128, &r, buf.data()));
    EXPECT_EQ(zeqStsOutOfRange, zeqiFloodFill_Grad4Con_32f_C1IR(f, 20, {5, 4}, {0, 3}, 1, NAN, 0, &r, buf.data()));
    EXPECT_TRUE(im.unchangedSince(before));
    EXPECT_TRUE(fm.unchangedSince(beforeF));
    EXPECT_EQ(-1.0, r.area);
}

// The sizes themselves are the size-query suite's.
TEST(FloodFillGetSize, Statuses) {
    int size = -1;
    EXPECT_EQ(zeqStsNullPtr, zeqiFloodFillGetSize({0, 3}, nullptr));
    EXPECT_EQ(zeqStsSize, zeqiFloodFillGetSize_Grad({7, 0}, &size));
    EXPECT_EQ(zeqStsSize, zeqiFloodFillGetSize({20000, 20000}, &size));  // 2.4e9 bytes does not fit an int
    EXPECT_EQ(-1, size);
}

}  // namespace
