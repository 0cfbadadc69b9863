#include "zqtest.h"

#include <climits>

namespace {

using zqt::Image;
using zqt::Rng;

// The explicit forms of the mirrored 5-tap kernel, evaluated from the left.
template <class A, class S>
A reduce(S s, int c, int n) {
    if (n == 1) return A(8) * s(0) + A(8) * s(0);
    if (n == 2) return A(8) * s(0) + A(8) * s(1);
    if (c == 0) return A(6) * s(0) + A(8) * s(1) + A(2) * s(2);
    if (c == n - 1) return A(6) * s(n - 1) + A(8) * s(n - 2) + A(2) * s(n - 3);
    if (c == n - 2) return s(n - 4) + A(4) * s(n - 3) + A(7) * s(n - 2) + A(4) * s(n - 1);
    return s(c - 2) + A(4) * s(c - 1) + A(6) * s(c) + A(4) * s(c + 1) + s(c + 2);
}

// Output o (0 .. 2n-1) of the expansion of n samples.
template <class A, class S>
A expand(S s, int o, int n) {
    const int x = o / 2;
    if (n == 1) return A(8) * s(0);
    const int next = x == n - 1 ? n - 2 : x + 1;
    if (o % 2) return A(4) * (s(x) + s(next));
    if (x == 0 || x == n - 1) return A(6) * s(x) + A(2) * s(x == 0 ? 1 : n - 2);
    return s(x - 1) + A(6) * s(x) + s(x + 1);
}

template <class T, class A>
T finish(A sum, int shift) {
    if constexpr (std::is_same<T, float>::value) return sum * (1.0f / float(1 << shift));
    else return T((sum + (1 << (shift - 1))) >> shift);
}

// Separable: along rows first, then across the row results.
template <class T>
Image<T> reference(const Image<T>& s, bool down) {
    using A = typename std::conditional<std::is_same<T, float>::value, float, int>::type;
    const int w = s.width(), h = s.height(), ch = s.channels();
    const int dw = down ? (w + 1) / 2 : 2 * w, dh = down ? (h + 1) / 2 : 2 * h;
    Image<T> d(dw, dh, ch);
    std::vector<A> rows(size_t(h) * dw * ch);
    auto r = [&](int y, int x, int c) -> A& { return rows[(size_t(y) * dw + x) * ch + c]; };
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < dw; ++x)
            for (int c = 0; c < ch; ++c) {
                auto at = [&](int i) { return A(s.at(i, y, c)); };
                r(y, x, c) = down ? reduce<A>(at, 2 * x, w) : expand<A>(at, x, w);
            }
    d.fill([&](int x, int y, int c) {
        auto at = [&](int i) { return r(i, x, c); };
        return down ? finish<T>(reduce<A>(at, 2 * y, h), 8) : finish<T>(expand<A>(at, y, h), 6);
    });
    return d;
}

// fn[up][C3] of each type.
template <class T>
using PyrFn = ZeqStatus (*)(const T*, int, T*, int, ZeqiSize, Zeq8u*);
template <class T>
struct Pyr;
template <>
struct Pyr<Zeq8u> {
    static constexpr ZeqDataType type = zeq8u;
    static constexpr PyrFn<Zeq8u> fn[2][2] = {{zeqiPyrDown_Gauss5x5_8u_C1R, zeqiPyrDown_Gauss5x5_8u_C3R},
                                              {zeqiPyrUp_Gauss5x5_8u_C1R, zeqiPyrUp_Gauss5x5_8u_C3R}};
};
template <>
struct Pyr<Zeq8s> {
    static constexpr ZeqDataType type = zeq8s;
    static constexpr PyrFn<Zeq8s> fn[2][2] = {{zeqiPyrDown_Gauss5x5_8s_C1R, zeqiPyrDown_Gauss5x5_8s_C3R},
                                              {zeqiPyrUp_Gauss5x5_8s_C1R, zeqiPyrUp_Gauss5x5_8s_C3R}};
};
template <>
struct Pyr<Zeq32f> {
    static constexpr ZeqDataType type = zeq32f;
    static constexpr PyrFn<Zeq32f> fn[2][2] = {{zeqiPyrDown_Gauss5x5_32f_C1R, zeqiPyrDown_Gauss5x5_32f_C3R},
                                               {zeqiPyrUp_Gauss5x5_32f_C1R, zeqiPyrUp_Gauss5x5_32f_C3R}};
};

template <class T>
class Pyramid : public ::testing::Test {};
using Types = ::testing::Types<Zeq8u, Zeq8s, Zeq32f>;
TYPED_TEST_SUITE(Pyramid, Types);

// Sizes from 1x1 up, padded steps (odd for 8-bit, 4k + 2 bytes for floats),
// misaligned rows, against the formulas; buffers of exactly the queried size.
TYPED_TEST(Pyramid, MatchesFormulasOverRandomLayouts) {
    using T = TypeParam;
    const bool isFloat = std::is_same<T, float>::value;
    Rng rng(5);
    for (int ch : {1, 3})
        for (int iter = 0; iter < 140; ++iter) {
            const int w = iter < 40 ? iter % 20 + 1 : rng.uniform(1, 150), h = iter < 40 ? iter / 20 * 3 + 1 + iter % 3 : rng.uniform(1, 12);
            const int pad = isFloat ? 4 * rng.uniform(0, 3) : rng.uniform(0, 9), mis = isFloat ? 4 * rng.uniform(0, 3) : rng.uniform(0, 7);
            Image<T> s(w, h, ch, pad, mis);
            if (iter % 7 == 0) s.fill([&](int, int, int) { return T(isFloat ? -3.5 : 100); });
            else s.fillRandom(rng);
            for (bool down : {true, false}) {
                const Image<T> want = reference(s, down);
                Image<T> d(want.width(), want.height(), ch, pad, 2 * mis);
                int size = 0;
                (down ? zeqiPyrDownGetBufSize_Gauss5x5 : zeqiPyrUpGetBufSize_Gauss5x5)(w, Pyr<T>::type, ch, &size);
                std::vector<Zeq8u> buf(static_cast<size_t>(size));  // exactly the queried size
                ASSERT_EQ(zeqStsOk, Pyr<T>::fn[!down][ch == 3](s.ptr(), s.step(), d.ptr(), d.step(), s.size(), buf.data()));
                ASSERT_TRUE(zqt::sameImage(d, want)) << w << "x" << h << " C" << ch << (down ? " down" : " up");
                ASSERT_TRUE(d.outsideUntouched());
                if (isFloat && iter % 5 == 0) {  // steps of 4k + 2 bytes, rows at odd 2-byte offsets
                    const int ss = s.step() + 2, ds = d.step() + 2;
                    std::vector<uint8_t> rs(size_t(ss) * h + 2), rd(size_t(ds) * d.height() + 2);
                    for (int y = 0; y < h; ++y) std::memcpy(&rs[2 + size_t(y) * ss], s.row(y), size_t(w) * ch * 4);
                    ASSERT_EQ(zeqStsOk, Pyr<T>::fn[!down][ch == 3](reinterpret_cast<const T*>(&rs[2]), ss,
                                                                  reinterpret_cast<T*>(&rd[2]), ds, s.size(), buf.data()));
                    for (int y = 0; y < d.height(); ++y)
                        ASSERT_EQ(0, std::memcmp(&rd[2 + size_t(y) * ds], d.row(y), size_t(d.width()) * ch * 4));
                }
                for (int y = 0; iter % 7 == 0 && y < d.height(); ++y)  // constant stays constant, borders too
                    ASSERT_EQ(s.at(0, 0), d.at(d.width() - 1, y, ch - 1));
            }
        }
}

TEST(PyramidChecks, StatusesInOrderAndNothingWritten) {
    Image<Zeq8u> s(9, 5), d(18, 10);
    Image<Zeq32f> sf(9, 5), df(18, 10);
    std::vector<Zeq8u> buf(4096);
    const auto before = d.snapshot(), beforeF = df.snapshot();
    EXPECT_EQ(zeqStsNullPtr, zeqiPyrDown_Gauss5x5_8u_C1R(s.ptr(), 9, d.ptr(), 5, {9, 5}, nullptr));
    EXPECT_EQ(zeqStsNullPtr, zeqiPyrUp_Gauss5x5_8u_C3R(nullptr, 0, d.ptr(), 0, {0, 0}, buf.data()));
    EXPECT_EQ(zeqStsSize, zeqiPyrDown_Gauss5x5_8u_C1R(s.ptr(), 0, d.ptr(), 0, {9, 0}, buf.data()));
    EXPECT_EQ(zeqStsStep, zeqiPyrDown_Gauss5x5_8u_C1R(s.ptr(), 8, d.ptr(), 18, {9, 5}, buf.data()));
    EXPECT_EQ(zeqStsStep, zeqiPyrDown_Gauss5x5_8u_C1R(s.ptr(), 9, d.ptr(), 4, {9, 5}, buf.data()));
    EXPECT_EQ(zeqStsStep, zeqiPyrUp_Gauss5x5_8u_C1R(s.ptr(), 9, d.ptr(), 17, {9, 5}, buf.data()));
    EXPECT_EQ(zeqStsStep, zeqiPyrDown_Gauss5x5_8u_C3R(s.ptr(), 26, d.ptr(), 18, {9, 1}, buf.data()));
    EXPECT_EQ(zeqStsStep, zeqiPyrUp_Gauss5x5_32f_C1R(sf.ptr(), 35, df.ptr(), 72, {9, 5}, buf.data()));
    EXPECT_EQ(zeqStsStepAlign, zeqiPyrUp_Gauss5x5_32f_C1R(sf.ptr(), 37, df.ptr(), 72, {9, 5}, buf.data()));
    EXPECT_EQ(zeqStsStepAlign, zeqiPyrDown_Gauss5x5_32f_C3R(sf.ptr(), 108, df.ptr(), 61, {9, 1}, buf.data()));
    EXPECT_TRUE(d.unchangedSince(before));
    EXPECT_TRUE(df.unchangedSince(beforeF));
}

// The sizes themselves are the size-query suite's.
TEST(PyramidBufSize, StatusesInOrder) {
    int size = -1;
    EXPECT_EQ(zeqStsNullPtr, zeqiPyrDownGetBufSize_Gauss5x5(0, 7, 2, nullptr));
    EXPECT_EQ(zeqStsSize, zeqiPyrUpGetBufSize_Gauss5x5(0, 7, 2, &size));
    EXPECT_EQ(zeqStsChannel, zeqiPyrDownGetBufSize_Gauss5x5(4, 7, 2, &size));
    EXPECT_EQ(zeqStsDataType, zeqiPyrDownGetBufSize_Gauss5x5(4, zeq16s, 3, &size));
    EXPECT_EQ(-1, size);
}

}  // namespace
