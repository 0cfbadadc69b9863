#include "zqtest.h"

#include <algorithm>

namespace {

using zqt::Image;
using zqt::Rng;

template <class T>
T refAbsDiff(T a, T b) {
    if constexpr (std::is_same<T, float>::value) {
        uint32_t bits = zqt::bitsOf(a - b) & 0x7fffffffu;
        float r;
        std::memcpy(&r, &bits, 4);
        return r;
    } else {
        return T(a > b ? a - b : b - a);
    }
}

template <class T>
ZeqStatus absDiff(const T* a, int as, const T* b, int bs, T* d, int ds, ZeqiSize roi) {
    if constexpr (std::is_same<T, Zeq8u>::value) return zeqiAbsDiff_8u_C1R(a, as, b, bs, d, ds, roi);
    else if constexpr (std::is_same<T, Zeq16u>::value) return zeqiAbsDiff_16u_C1R(a, as, b, bs, d, ds, roi);
    else return zeqiAbsDiff_32f_C1R(a, as, b, bs, d, ds, roi);
}

template <class T>
ZeqStatus absDiffC(const T* a, int as, T* d, int ds, ZeqiSize roi, double value) {
    if constexpr (std::is_same<T, Zeq8u>::value) return zeqiAbsDiffC_8u_C1R(a, as, d, ds, roi, int(value));
    else if constexpr (std::is_same<T, Zeq16u>::value) return zeqiAbsDiffC_16u_C1R(a, as, d, ds, roi, int(value));
    else return zeqiAbsDiffC_32f_C1R(a, as, d, ds, roi, float(value));
}

template <class T>
class AbsDiff : public ::testing::Test {};
using Types = ::testing::Types<Zeq8u, Zeq16u, Zeq32f>;
TYPED_TEST_SUITE(AbsDiff, Types);

// Random sizes, padded steps and misaligned pointers against the element-wise definition.
TYPED_TEST(AbsDiff, MatchesReferenceOverRandomLayouts) {
    using T = TypeParam;
    Rng rng(7);
    for (int iter = 0; iter < 150; ++iter) {
        const int w = iter < 70 ? iter + 1 : rng.uniform(1, 300), h = rng.uniform(1, 9);
        const int pad = int(sizeof(T)) * rng.uniform(0, 5), mis = int(sizeof(T)) * rng.uniform(0, 7);
        Image<T> a(w, h, 1, pad, mis), b(w, h, 1, int(sizeof(T)) * rng.uniform(0, 3)), d(w, h, 1, pad, 3 * int(sizeof(T)));
        a.fillRandom(rng);
        b.fillRandom(rng);
        ASSERT_EQ(zeqStsOk, absDiff<T>(a.ptr(), a.step(), b.ptr(), b.step(), d.ptr(), d.step(), a.size()));
        Image<T> want(w, h);
        want.fill([&](int x, int y, int) { return refAbsDiff<T>(a.at(x, y), b.at(x, y)); });
        ASSERT_TRUE(zqt::sameImage(d, want)) << w << "x" << h;
        ASSERT_TRUE(d.outsideUntouched());

        // Integer constants below, inside and above the type's range, which clamps them.
        const double c = std::is_same<T, float>::value ? rng.uniformf(-500, 500)
                                                       : rng.uniform(-100, 2 * int(std::numeric_limits<T>::max()));
        ASSERT_EQ(zeqStsOk, absDiffC<T>(a.ptr(), a.step(), d.ptr(), d.step(), a.size(), c));
        const T clamped = std::is_same<T, float>::value
                              ? T(c)
                              : T(std::clamp<double>(c, 0, double(std::numeric_limits<T>::max())));
        want.fill([&](int x, int y, int) { return refAbsDiff<T>(a.at(x, y), clamped); });
        ASSERT_TRUE(zqt::sameImage(d, want)) << "constant " << c;
        ASSERT_TRUE(d.outsideUntouched());
    }
}

TYPED_TEST(AbsDiff, InPlaceOnEitherSource) {
    using T = TypeParam;
    Rng rng(11);
    for (int w : {1, 5, 33, 130}) {
        Image<T> a(w, 4, 1, 8), b(w, 4, 1, 8), want(w, 4);
        a.fillRandom(rng);
        b.fillRandom(rng);
        want.fill([&](int x, int y, int) { return refAbsDiff<T>(a.at(x, y), b.at(x, y)); });
        Image<T> a2 = a;
        ASSERT_EQ(zeqStsOk, absDiff<T>(a.ptr(), a.step(), b.ptr(), b.step(), a.ptr(), a.step(), a.size()));
        EXPECT_TRUE(zqt::sameImage(a, want));
        ASSERT_EQ(zeqStsOk, absDiff<T>(a2.ptr(), a2.step(), b.ptr(), b.step(), b.ptr(), b.step(), b.size()));
        EXPECT_TRUE(zqt::sameImage(b, want));
    }
}

// Checks run in order (null, size, step, alignment) and a failed check writes nothing.
TYPED_TEST(AbsDiff, StatusesInOrderAndNothingWritten) {
    using T = TypeParam;
    const int e = int(sizeof(T));
    Image<T> a(8, 3), b(8, 3), d(8, 3);
    const auto before = d.snapshot();
    const int row = 8 * e;
    EXPECT_EQ(zeqStsNullPtr, absDiff<T>(nullptr, row, b.ptr(), row, d.ptr(), row, {0, 0}));
    EXPECT_EQ(zeqStsNullPtr, absDiff<T>(a.ptr(), row, b.ptr(), row, nullptr, row, {0, 3}));
    EXPECT_EQ(zeqStsNullPtr, absDiffC<T>(a.ptr(), row, nullptr, row, {8, 3}, 1));
    EXPECT_EQ(zeqStsSize, absDiff<T>(a.ptr(), 0, b.ptr(), 0, d.ptr(), 0, {0, 3}));
    EXPECT_EQ(zeqStsSize, absDiffC<T>(a.ptr(), row, d.ptr(), row, {8, 0}, 1));
    EXPECT_EQ(zeqStsStep, absDiff<T>(a.ptr(), row - 1, b.ptr(), row, d.ptr(), 1000, {8, 3}));
    EXPECT_EQ(zeqStsStep, absDiff<T>(a.ptr(), row, b.ptr(), row, d.ptr(), row - e, {8, 3}));
    EXPECT_EQ(zeqStsStep, absDiffC<T>(a.ptr(), row - 1, d.ptr(), row, {8, 3}, 1));
    if (std::is_same<T, float>::value) {
        EXPECT_EQ(zeqStsStepAlign, absDiff<T>(a.ptr(), row, b.ptr(), row + 2, d.ptr(), row, {8, 2}));
        EXPECT_EQ(zeqStsStepAlign, absDiffC<T>(a.ptr(), row, d.ptr(), row + 1, {8, 2}, 1));
    }
    EXPECT_TRUE(d.unchangedSince(before));
}

// An odd 16u step is accepted and acts like the even step one smaller.
TEST(AbsDiff16u, OddStepAdvancesByHalfStepRoundedDown) {
    const int w = 9, h = 4, step = 2 * w + 1;
    auto a = Image<Zeq16u>::withStep(w, h, 1, 2 * w), b = Image<Zeq16u>::withStep(w, h, 1, 2 * w);
    auto d = Image<Zeq16u>::withStep(w, h, 1, 2 * w);
    Rng rng(3);
    a.fillRandom(rng);
    b.fillRandom(rng);
    ASSERT_EQ(zeqStsOk, zeqiAbsDiff_16u_C1R(a.ptr(), step, b.ptr(), step, d.ptr(), step, a.size()));
    ASSERT_EQ(zeqStsOk, zeqiAbsDiffC_16u_C1R(a.ptr(), step, a.ptr(), step, a.size(), 0));
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) EXPECT_EQ(refAbsDiff<Zeq16u>(a.at(x, y), b.at(x, y)), Zeq16u(d.at(x, y)));
    EXPECT_TRUE(d.outsideUntouched());
}

TEST(AbsDiff32f, SignBitIsClearedWithoutComparison) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    float a[4] = {-0.0f, nan, 1.0f, -nan}, b[4] = {0.0f, 1.0f, -nan, 2.0f}, d[4];
    ASSERT_EQ(zeqStsOk, zeqiAbsDiff_32f_C1R(a, 16, b, 16, d, 16, {4, 1}));
    EXPECT_EQ(0u, zqt::bitsOf(d[0]));
    for (int i = 1; i < 4; ++i) {
        EXPECT_TRUE(std::isnan(d[i]));
        EXPECT_EQ(0u, zqt::bitsOf(d[i]) >> 31);
    }
}

}  // namespace
