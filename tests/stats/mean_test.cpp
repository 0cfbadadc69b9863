#include "stats_api.h"

#include <cmath>

namespace {

using statst::Api;
using statst::Layout;
using zqt::Image;
using zqt::Rng;

struct Stats {
    double mean, stdDev;
};

// Mean and deviation from the documented formulas: exact integer sums (16u
// deviation from the sums of x - 32768), float sums in long double.
template <class T>
Stats reference(const void* base, int step, const Layout& l, ZeqiSize roi) {
    int64_t n = 0, s1 = 0, s1Shifted = 0, s2 = 0;
    long double f1 = 0, f2 = 0;
    for (int y = 0; y < roi.height; ++y)
        for (int x = 0; x < roi.width; ++x) {
            if (!statst::takesPart(l, x, y)) continue;
            const T v = statst::pixel<T>(base, step, l, x, y);
            ++n;
            if constexpr (std::is_same<T, Zeq32f>::value) {
                f1 += v;
                f2 += (long double)v * v;
            } else {
                const int64_t k = std::is_same<T, Zeq16u>::value ? v - 32768 : v;
                s1 += v;
                s1Shifted += k;
                s2 += k * k;
            }
        }
    if (n == 0) return {0, 0};
    const double dn = double(n);
    if constexpr (std::is_same<T, Zeq32f>::value) {
        const long double m = f1 / n;
        return {double(m), double(std::sqrt(std::fabs(f2 / n - m * m)))};
    } else {
        const double m = double(s1) / dn, ms = double(s1Shifted) / dn;
        return {m, std::sqrt(std::fabs(double(s2) / dn - ms * ms))};
    }
}

// Integer results are exact; float ones agree up to the rounding of the double sums.
template <class T>
::testing::AssertionResult close(Stats got, Stats want) {
    const double scale = std::fabs(want.mean) + want.stdDev + 1;
    const bool exact = !std::is_same<T, Zeq32f>::value;
    const bool meanOk = exact ? got.mean == want.mean : std::fabs(got.mean - want.mean) <= 1e-12 * scale;
    const bool sdOk = exact ? std::fabs(got.stdDev - want.stdDev) <= 1e-15 * scale
                            : std::fabs(got.stdDev * got.stdDev - want.stdDev * want.stdDev) <= 1e-11 * scale * scale;
    if (meanOk && sdOk) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "got mean " << got.mean << " sd " << got.stdDev << ", want "
                                         << want.mean << " sd " << want.stdDev;
}

template <class T>
class MeanStdDev : public ::testing::Test {};
TYPED_TEST_SUITE(MeanStdDev, statst::Types);

TYPED_TEST(MeanStdDev, MatchesReferenceOverRandomLayouts) {
    using T = TypeParam;
    Rng rng(21);
    for (int iter = 0; iter < 300; ++iter) {
        const statst::Case c = statst::randomCase<T>(rng, iter);
        Image<T> img(c.w, c.h, c.channels, c.pad, c.misalign);
        const bool narrow = rng.chance(0.3);  // extremes and ties matter too
        img.fill([&](int, int, int) { return narrow ? T(rng.uniform(0, 3) * 40) : rng.any<T>(); });
        const Layout l = c.layout();
        const Stats want = reference<T>(img.ptr(), img.step(), l, img.size());
        Stats got{-1, -1};
        ASSERT_EQ(zeqStsOk, Api<T>::meanStdDev(img.ptr(), img.step(), l, img.size(), &got.mean, &got.stdDev));
        ASSERT_TRUE(close<T>(got, want)) << c.w << "x" << c.h << " ch " << c.channels << " coi " << c.coi
                                          << (c.masked ? " masked" : "");
        if (c.masked) {
            double m = -1;
            ASSERT_EQ(zeqStsOk, Api<T>::mean(img.ptr(), img.step(), l, img.size(), &m));
            ASSERT_TRUE(close<T>({m, want.stdDev}, want));
        }
    }
}

// Every check in its place: pointers, size, steps (source, then mask), 32f
// step oddness, coi; a failed call writes nothing.
TYPED_TEST(MeanStdDev, StatusesInOrder) {
    using T = TypeParam;
    const int e = int(sizeof(T)), w = 8, h = 3;
    Image<T> img(w, h, 3);
    std::vector<Zeq8u> mask(size_t(w) * h, 1);
    const Zeq8u* m = mask.data();
    double mean = 7, sd = 7;
    auto sd3 = [&](const T* p, int step, const Zeq8u* mk, int mStep, ZeqiSize roi, int coi) {
        return Api<T>::meanStdDev(p, step, {3, coi, mk, mStep}, roi, &mean, &sd);
    };
    const int row1 = w * e, row3 = 3 * w * e;
    EXPECT_EQ(zeqStsNullPtr, sd3(nullptr, row3, m, w, {0, 0}, 0));
    EXPECT_EQ(zeqStsNullPtr, Api<T>::meanStdDev(img.ptr(), row3, {3, 1, nullptr, w, true}, {0, 0}, &mean, &sd));
    EXPECT_EQ(zeqStsNullPtr, Api<T>::mean(img.ptr(), row1, {1, 1, nullptr, w, true}, {w, h}, &mean));
    EXPECT_EQ(zeqStsNullPtr, Api<T>::mean(img.ptr(), row3, {3, 1, m, w}, {w, h}, nullptr));
    EXPECT_EQ(zeqStsSize, sd3(img.ptr(), 0, m, 0, {w, 0}, 0));
    EXPECT_EQ(zeqStsSize, Api<T>::meanStdDev(img.ptr(), row1, {1}, {0, h}, nullptr, nullptr));
    EXPECT_EQ(zeqStsStep, sd3(img.ptr(), row3 - 1, m, w, {w, h}, 0));
    EXPECT_EQ(zeqStsStep, sd3(img.ptr(), row3, m, w - 1, {w, h}, 0));
    EXPECT_EQ(zeqStsStep, Api<T>::mean(img.ptr(), row1 - 1, {1, 1, m, w}, {w, h}, &mean));
    if (std::is_same<T, Zeq32f>::value) {
        EXPECT_EQ(zeqStsStepAlign, sd3(img.ptr(), row3 + 1, m, w, {w, h}, 0));
        EXPECT_EQ(zeqStsStepAlign, Api<T>::meanStdDev(img.ptr(), row1 + 3, {1}, {w, h}, &mean, &sd));
        EXPECT_EQ(zeqStsStepAlign, Api<T>::mean(img.ptr(), row1 + 1, {1, 1, m, w}, {w, h}, &mean));
    }
    EXPECT_EQ(zeqStsCoi, sd3(img.ptr(), row3, m, w, {w, h}, 0));
    EXPECT_EQ(zeqStsCoi, sd3(img.ptr(), row3, nullptr, w, {w, h}, 4));
    EXPECT_EQ(zeqStsCoi, Api<T>::mean(img.ptr(), row3, {3, 4, m, w}, {w, h}, &mean));
    EXPECT_EQ(7.0, mean);
    EXPECT_EQ(7.0, sd);

    // Odd-but-even steps are legal for floats, 32f rows then start between elements.
    EXPECT_EQ(zeqStsOk, Api<T>::meanStdDev(img.ptr(), row1 + 2, {1}, {w, h}, &mean, &sd));
}

// Null result pointers are optional.
TYPED_TEST(MeanStdDev, OptionalResults) {
    using T = TypeParam;
    Image<T> img(9, 4, 3);
    Rng rng(2);
    img.fillRandom(rng);
    const Layout whole{3, 3};
    double mean = 7, sd = 7, wantMean, wantSd;
    ASSERT_EQ(zeqStsOk, Api<T>::meanStdDev(img.ptr(), img.step(), whole, img.size(), nullptr, nullptr));
    ASSERT_EQ(zeqStsOk, Api<T>::meanStdDev(img.ptr(), img.step(), whole, img.size(), &wantMean, &wantSd));
    ASSERT_EQ(zeqStsOk, Api<T>::meanStdDev(img.ptr(), img.step(), whole, img.size(), &mean, nullptr));
    ASSERT_EQ(zeqStsOk, Api<T>::meanStdDev(img.ptr(), img.step(), whole, img.size(), nullptr, &sd));
    EXPECT_EQ(wantMean, mean);
    EXPECT_EQ(wantSd, sd);
}

// The small spread against the mean takes the second pass around the mean
// rounded to float, which finds the exact deviation.
TEST(MeanStdDev32f, SmallSpreadTakesSecondPass) {
    for (int w : {2, 10, 64, 2000}) {  // every kernel choice
        Image<Zeq32f> img(w, 3, 1, 4);
        img.fill([](int x, int, int) { return x % 2 ? 1000001.0f : 1000000.0f; });
        double mean, sd;
        ASSERT_EQ(zeqStsOk, zeqiMean_StdDev_32f_C1R(img.ptr(), img.step(), img.size(), &mean, &sd));
        EXPECT_EQ(1000000.5, mean);
        EXPECT_EQ(0.5, sd) << w;
    }
}

// The kernels chosen by size (element by element, aligned, general) agree.
TEST(MeanStdDev32f, EveryKernelMatchesReference) {
    Rng rng(8);
    for (ZeqiSize roi : {ZeqiSize{100, 50}, ZeqiSize{71, 71}, ZeqiSize{70, 72}, ZeqiSize{400, 251}})
        for (int mis : {0, 4, 8})
            for (int pad : {0, 4, 16}) {
                Image<Zeq32f> img(roi.width, roi.height, 1, pad, mis);
                img.fillRandom(rng);
                const Stats want = reference<Zeq32f>(img.ptr(), img.step(), {}, roi);
                Stats got{};
                ASSERT_EQ(zeqStsOk, zeqiMean_StdDev_32f_C1R(img.ptr(), img.step(), roi, &got.mean, &got.stdDev));
                EXPECT_TRUE(close<Zeq32f>(got, want)) << roi.width << "x" << roi.height << " " << mis << " " << pad;
            }
}

// The masked 8-bit mean keeps its sum as a signed 32-bit value: past 2^31 - 1 it wraps.
TEST(Mean8u, SumBeyond32BitsWraps) {
    const int w = 4100, h = 2100;
    std::vector<Zeq8u> src(size_t(w) * h, 255), mask(size_t(w) * h, 1);
    double mean = 0;
    ASSERT_EQ(zeqStsOk, zeqiMean_8u_C1MR(src.data(), w, mask.data(), w, {w, h}, &mean));
    const int64_t n = int64_t(w) * h, sum = 255 * n;
    EXPECT_EQ(double(int32_t(uint32_t(sum))) / double(n), mean);
    EXPECT_LT(mean, 0.0);
    // The deviation sums in 64 bits.
    double sd = -1;
    ASSERT_EQ(zeqStsOk, zeqiMean_StdDev_8u_C1MR(src.data(), w, mask.data(), w, {w, h}, &mean, &sd));
    EXPECT_EQ(255.0, mean);
    EXPECT_EQ(0.0, sd);
}

}  // namespace
