#include "zqtest.h"

namespace {

using zqt::Image;
using zqt::Rng;

template <class S>
ZeqStatus update(const S* s, int ss, float* h, int hs, ZeqiSize roi, float ts, float dur) {
    if constexpr (sizeof(S) == 1) return zeqiUpdateMotionHistory_8u32f_C1IR(s, ss, h, hs, roi, ts, dur);
    else if constexpr (sizeof(S) == 2) return zeqiUpdateMotionHistory_16u32f_C1IR(s, ss, h, hs, roi, ts, dur);
    else return zeqiUpdateMotionHistory_32f_C1IR(s, ss, h, hs, roi, ts, dur);
}

int32_t key(float v) { return int32_t(zqt::bitsOf(v) & 0x7fffffff) ^ (int32_t(zqt::bitsOf(v)) >> 31); }

// The documented rule for one pixel, t = timestamp - duration.
template <class S>
float reference(S s, float h, float ts, float t) {
    if constexpr (std::is_same<S, float>::value) return (s < 0 || s > 0) ? ts : (h >= t ? h : 0.0f);
    if (s != 0) return ts;
    const int32_t hk = key(t) < 1 ? key(h) : int32_t(zqt::bitsOf(h));  // raw bits when t is positive
    return hk < key(t) ? 0.0f : h;
}

float anyOf(Rng& rng, std::initializer_list<float> v) { return v.begin()[rng.uniform(0, int(v.size()) - 1)]; }

template <class S>
class MotionHistory : public ::testing::Test {};
using Silhouettes = ::testing::Types<Zeq8u, Zeq16u, Zeq32f>;
TYPED_TEST_SUITE(MotionHistory, Silhouettes);

// Signed zeros, NaNs, infinities and values equal to t, over random layouts;
// float steps 2 above a multiple of 4 advance by the multiple below.
TYPED_TEST(MotionHistory, MatchesReferenceOverRandomLayouts) {
    using S = TypeParam;
    const int e = int(sizeof(S));
    Rng rng(e);
    for (int iter = 0; iter < 200; ++iter) {
        const int w = iter < 70 ? iter + 1 : rng.uniform(1, 300), h = rng.uniform(1, 6);
        const float ts = anyOf(rng, {0.0f, -0.0f, 7.5f, -3.0f, rng.uniformf(-50, 50)});
        const float dur = anyOf(rng, {0.0f, 2.5f, rng.uniformf(0, 20)}), t = ts - dur;
        Image<S> sil(w, h, 1, e * rng.uniform(0, 3), e * rng.uniform(0, 15));
        Image<float> mhi(w, h, 1, 4 * rng.uniform(0, 3), 4 * rng.uniform(0, 15)), want(w, h);
        sil.fill([&](int, int, int) {
            if constexpr (std::is_same<S, float>::value) return anyOf(rng, {0.0f, -0.0f, NAN, -NAN, 1e-40f, -2.0f});
            else return rng.chance(0.5) ? S(0) : S(rng.uniform(1, 65535));
        });
        mhi.fill([&](int, int, int) { return anyOf(rng, {0.0f, -0.0f, NAN, -NAN, INFINITY, -INFINITY, t,
                                                         std::nextafter(t, 0.0f), rng.uniformf(-60, 60)}); });
        want.fill([&](int x, int y, int) { return reference<S>(sil.at(x, y), mhi.at(x, y), ts, t); });
        const int extra = rng.chance(0.5) ? 2 : 0, silExtra = e == 4 ? extra : 0;
        ASSERT_EQ(zeqStsOk, update(sil.ptr(), sil.step() + silExtra, mhi.ptr(), mhi.step() + extra, sil.size(), ts, dur));
        ASSERT_TRUE(zqt::sameImage(mhi, want)) << w << "x" << h << " ts " << ts << " duration " << dur;
        ASSERT_TRUE(mhi.outsideUntouched());
    }
}

TYPED_TEST(MotionHistory, StatusesInOrderAndNothingWritten) {
    using S = TypeParam;
    const int e = int(sizeof(S)), row = 8 * e, mrow = 32;
    const ZeqiSize roi{8, 3};
    Image<S> s(8, 3);
    Image<float> m(8, 3);
    s.fill([](int, int, int) { return 1; });
    m.fill([](int, int, int) { return -5.0f; });
    const auto before = m.snapshot();
    const auto f = update<S>;
    EXPECT_EQ(zeqStsNullPtr, f(nullptr, row, m.ptr(), mrow, {0, 0}, 1, -1));
    EXPECT_EQ(zeqStsNullPtr, f(s.ptr(), row, nullptr, mrow, roi, 1, 1));
    EXPECT_EQ(zeqStsSize, f(s.ptr(), 0, m.ptr(), 0, {0, 3}, 1, -1));
    EXPECT_EQ(zeqStsStep, f(s.ptr(), row - 1, m.ptr(), mrow + 1, roi, 1, -1));
    EXPECT_EQ(zeqStsStep, f(s.ptr(), row, m.ptr(), mrow - 2, roi, 1, -1));
    EXPECT_EQ(zeqStsStepAlign, f(s.ptr(), row, m.ptr(), mrow + 1, roi, 1, -1));
    EXPECT_EQ(e == 1 ? zeqStsOutOfRange : zeqStsStepAlign, f(s.ptr(), row + 1, m.ptr(), mrow, roi, 1, -1));
    EXPECT_EQ(zeqStsOutOfRange, f(s.ptr(), row, m.ptr(), mrow, roi, 1, NAN));
    EXPECT_TRUE(m.unchangedSince(before));
}

// With t = +0: the integer forms clear -0.0 (its key is -1) and a negative NaN
// but keep a positive NaN; the float form keeps -0.0 and clears both NaNs. A
// 32f silhouette of -0.0 or NaN is not set.
TEST(MotionHistorySpecialValues, SignedZeroAndNaNPerForm) {
    float a[4] = {-0.0f, NAN, -NAN, 1.0f}, b[4] = {-0.0f, NAN, -NAN, 1.0f};
    const Zeq8u s8[4] = {0, 0, 0, 0};
    const float s32[4] = {-0.0f, NAN, 0.0f, 0.0f};
    ASSERT_EQ(zeqStsOk, zeqiUpdateMotionHistory_8u32f_C1IR(s8, 4, a, 16, {4, 1}, 1.0f, 1.0f));
    ASSERT_EQ(zeqStsOk, zeqiUpdateMotionHistory_32f_C1IR(s32, 16, b, 16, {4, 1}, 1.0f, 1.0f));
    const float wantA[4] = {0.0f, NAN, 0.0f, 1.0f}, wantB[4] = {-0.0f, 0.0f, 0.0f, 1.0f};  // NaN kept as it was
    EXPECT_EQ(0, std::memcmp(a, wantA, 16));
    EXPECT_EQ(0, std::memcmp(b, wantB, 16));
}

}  // namespace
