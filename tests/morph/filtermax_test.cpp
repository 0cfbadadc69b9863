#include "zqtest.h"

namespace {

using zqt::Image;
using zqt::Rng;

using Fn8 = ZeqStatus (*)(const Zeq8u*, int, Zeq8u*, int, ZeqiSize, ZeqiSize, ZeqiPoint);
using Fn32 = ZeqStatus (*)(const Zeq32f*, int, Zeq32f*, int, ZeqiSize, ZeqiSize, ZeqiPoint);
const Fn8 kFn8[2][3] = {{zeqiFilterMin_8u_C1R, zeqiFilterMin_8u_C3R, zeqiFilterMin_8u_C4R},
                        {zeqiFilterMax_8u_C1R, zeqiFilterMax_8u_C3R, zeqiFilterMax_8u_C4R}};
const Fn32 kFn32[2][3] = {{zeqiFilterMin_32f_C1R, zeqiFilterMin_32f_C3R, zeqiFilterMin_32f_C4R},
                          {zeqiFilterMax_32f_C1R, zeqiFilterMax_32f_C3R, zeqiFilterMax_32f_C4R}};

template <class T>
auto filterFn(bool max, int c) {
    if constexpr (sizeof(T) == 1) return kFn8[max][c == 1 ? 0 : c - 2];
    else return kFn32[max][c == 1 ? 0 : c - 2];
}

// The documented fold: along each row from the left, then the rows from the
// top, acc = (acc > v) ? acc : v (minimum: <).
template <class T>
T step(bool max, T acc, T v) {
    return max ? (acc > v ? acc : v) : (acc < v ? acc : v);
}

template <class T>
class FilterMax : public ::testing::Test {};
using Types = ::testing::Types<Zeq8u, Zeq32f>;
TYPED_TEST_SUITE(FilterMax, Types);

// Random masks, anchors and borders read from the caller's image; NaNs of
// both signs with distinct payloads and both zeros show which operand wins.
TYPED_TEST(FilterMax, MatchesTheFoldOverRandomLayouts) {
    using T = TypeParam;
    constexpr int e = int(sizeof(T));
    Rng rng(3 + e);
    static const int channels[] = {1, 3, 4};
    for (int iter = 0; iter < 300; ++iter) {
        const bool max = rng.chance(0.5);
        const int c = channels[rng.uniform(0, 2)], mw = rng.uniform(1, 9), mh = rng.uniform(1, 9);
        if (mw == 1 && mh == 1) continue;  // the copy, below
        const ZeqiPoint an{rng.uniform(0, mw - 1), rng.uniform(0, mh - 1)};
        // Some rows wider than the kernel's bands.
        const bool wide = iter % 20 == 0;
        const int w = iter < 30 ? 1 + iter % 5 : wide ? rng.uniform(2500, 4000) : rng.uniform(1, 80);
        const int h = wide ? rng.uniform(1, 4) : rng.uniform(1, 12);
        const double nanRate = (iter % 3) * 0.03;  // NaN-free rows take the shared fold of two rows
        Image<T> src(w + mw - 1, h + mh - 1, c, e * rng.uniform(0, 3) + (e == 1 ? rng.uniform(0, 1) : 0),
                     rng.uniform(0, 15) / e * e);
        src.fill([&](int, int, int) {
            if constexpr (e == 1) return T(rng.uniform(0, 255));
            else {
                static const float special[] = {0.0f, -0.0f, INFINITY, -INFINITY, 1e-40f};
                if (rng.chance(nanRate)) return zqt::floatFromBits(0x7fc00000u | (rng.chance(0.5) ? 0x80000000u : 0) |
                                                               uint32_t(rng.uniform(1, 1000)));
                return rng.chance(0.3) ? special[rng.uniform(0, 4)] : rng.uniformf(-100, 100);
            }
        });
        Image<T> want(w, h, c), dst(w, h, c, e * rng.uniform(0, 3), rng.uniform(0, 15) / e * e);
        want.fill([&](int x, int y, int k) {
            T acc{};
            for (int j = 0; j < mh; ++j) {
                T racc = src.at(x, y + j, k);
                for (int i = 1; i < mw; ++i) racc = step(max, racc, T(src.at(x + i, y + j, k)));
                acc = j == 0 ? racc : step(max, acc, racc);
            }
            return acc;
        });
        // Float steps 2 bytes over the row advance by the row.
        const int extra = e == 4 && rng.chance(0.5) ? 2 : 0;
        const T* origin = src.addr(an.x, an.y);
        ASSERT_EQ(zeqStsOk, filterFn<T>(max, c)(origin, src.step() + extra, dst.ptr(), dst.step() + extra, {w, h},
                                                {mw, mh}, an));
        for (int y = 0; y < h; ++y)
            ASSERT_EQ(0, std::memcmp(dst.row(y), want.row(y), size_t(w) * c * e))
                << "row " << y << " " << w << "x" << h << "x" << c << " mask " << mw << "x" << mh << " max " << max;
        ASSERT_TRUE(dst.outsideUntouched());
    }
}

// A 1x1 mask copies; the 32f C4 forms leave the fourth channel alone then,
// while filtering it with every other mask.
TYPED_TEST(FilterMax, OneByOneCopiesWithTheFourChannelFloatException) {
    using T = TypeParam;
    constexpr int e = int(sizeof(T));
    for (int c : {1, 3, 4})
        for (bool max : {false, true}) {
            Image<T> src(5, 3, c), dst(5, 3, c, 3);
            src.fill([](int x, int y, int k) { return x + 7 * y + 2 * k; });
            dst.fill([](int, int, int) { return 99; });
            ASSERT_EQ(zeqStsOk, filterFn<T>(max, c)(src.ptr(), src.step(), dst.ptr(), dst.step(), {5, 3}, {1, 1}, {0, 0}));
            for (int y = 0; y < 3; ++y)
                for (int x = 0; x < 5; ++x)
                    for (int k = 0; k < c; ++k)
                        EXPECT_EQ(e == 4 && c == 4 && k == 3 ? T(99) : src.at(x, y, k), dst.at(x, y, k));
        }
    // The vertical maximum of three rows, the border below (anchor at the top).
    Image<T> src(4, 5), dst(4, 3);
    src.fill([](int x, int y, int) { return (x * 5 + y * 3) % 7; });
    ASSERT_EQ(zeqStsOk, filterFn<T>(true, 1)(src.ptr(), src.step(), dst.ptr(), dst.step(), {4, 3}, {1, 3}, {0, 0}));
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 4; ++x)
            EXPECT_EQ(std::max({src.at(x, y), src.at(x, y + 1), src.at(x, y + 2)}), dst.at(x, y));
}

TYPED_TEST(FilterMax, StatusesInOrderAndNothingWritten) {
    using T = TypeParam;
    Image<T> src(6, 6, 3), dst(6, 6, 3);
    const auto before = dst.snapshot();
    const auto f = filterFn<T>(false, 3);
    const T* s = src.ptr();
    T* d = dst.ptr();
    EXPECT_EQ(zeqStsNullPtr, f(nullptr, 1, d, 1, {0, 0}, {0, 0}, {-1, -1}));
    EXPECT_EQ(zeqStsNullPtr, f(s, 1, nullptr, 1, {0, 0}, {0, 0}, {-1, -1}));
    EXPECT_EQ(zeqStsSize, f(s, 0, d, 0, {2, 0}, {0, 0}, {-1, -1}));
    EXPECT_EQ(zeqStsStep, f(s, 0, d, 1, {2, 2}, {0, 0}, {-1, -1}));
    EXPECT_EQ(zeqStsStep, f(s, 1, d, -4, {2, 2}, {0, 0}, {-1, -1}));
    EXPECT_EQ(zeqStsMaskSize, f(s, 1, d, 1, {2, 2}, {3, 0}, {-1, -1}));
    EXPECT_EQ(zeqStsAnchor, f(s, 1, d, 1, {2, 2}, {3, 2}, {3, 0}));
    EXPECT_EQ(zeqStsAnchor, f(s, 1, d, 1, {2, 2}, {3, 2}, {0, 2}));
    EXPECT_EQ(zeqStsNoMem, f(s, 1, d, 1, {1 << 29, 1}, {3, 2}, {0, 0}));
    EXPECT_TRUE(dst.unchangedSince(before));
    // A step of one byte passes: a one-row image never advances by it.
    EXPECT_EQ(zeqStsOk, f(s, 1, d, 1, {2, 1}, {2, 1}, {0, 0}));
}

}  // namespace

namespace {

// Destinations past a megabyte with 16-byte aligned rows take non-temporal
// stores: the values equal those of a misaligned destination.
TYPED_TEST(FilterMax, LargeAlignedDestinationsGiveTheSameValues) {
    using T = TypeParam;
    const int w = 1024, h = 1100 / int(sizeof(T)) + 3;
    zqt::Rng rng(9);
    Image<T> src(w + 4, h + 2);
    src.fillRandom(rng);
    Image<T> aligned(w, h), misaligned(w, h, 1, 0, int(sizeof(T)));
    for (auto* d : {&aligned, &misaligned})
        ASSERT_EQ(zeqStsOk, filterFn<T>(false, 1)(src.addr(2, 1), src.step(), d->ptr(), d->step(), {w, h}, {5, 3},
                                                  {2, 1}));
    ASSERT_TRUE(zqt::sameImage(aligned, misaligned));
    ASSERT_TRUE(aligned.outsideUntouched());
}

}  // namespace
