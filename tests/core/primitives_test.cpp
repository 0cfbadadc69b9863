#include "zqtest.h"

#include <algorithm>
#include <functional>

namespace {

using zqt::Image;
using zqt::Rng;

const float kNaN = std::numeric_limits<float>::quiet_NaN();

// ---- copies ----

template <class T, int Channels>
struct CopyForm {
    using Elem = T;
    static constexpr int channels = Channels;
    static ZeqStatus run(const T* s, int ss, T* d, int ds, ZeqiSize roi) {
        if constexpr (std::is_same<T, Zeq8u>::value)
            return Channels == 1 ? zeqiCopy_8u_C1R(s, ss, d, ds, roi)
                                 : Channels == 3 ? zeqiCopy_8u_C3R(s, ss, d, ds, roi) : zeqiCopy_8u_C4R(s, ss, d, ds, roi);
        else
            return Channels == 1 ? zeqiCopy_32f_C1R(s, ss, d, ds, roi)
                                 : Channels == 3 ? zeqiCopy_32f_C3R(s, ss, d, ds, roi) : zeqiCopy_32f_AC4R(s, ss, d, ds, roi);
    }
};

template <class F>
class Copy : public ::testing::Test {};
using CopyForms = ::testing::Types<CopyForm<Zeq8u, 1>, CopyForm<Zeq8u, 3>, CopyForm<Zeq8u, 4>, CopyForm<Zeq32f, 1>,
                                   CopyForm<Zeq32f, 3>, CopyForm<Zeq32f, 4>>;
TYPED_TEST_SUITE(Copy, CopyForms);

// Padded, contiguous and large (streamed) regions; AC4 keeps the destination's fourth channel.
TYPED_TEST(Copy, CopiesTheRegionOnly) {
    using T = typename TypeParam::Elem;
    constexpr int ch = TypeParam::channels, e = int(sizeof(T));
    Rng rng(31);
    for (int iter = 0; iter < 40; ++iter) {
        const bool big = iter % 10 == 9, contiguous = iter % 3 == 0;
        const int w = big ? rng.uniform(300, 400) : rng.uniform(1, 70), h = big ? 120 : rng.uniform(1, 6);
        const int pad = contiguous ? 0 : rng.uniform(1, 9 * e);  // odd steps too
        Image<T> s(w, h, ch, pad, e * rng.uniform(0, 7)), d(w, h, ch, pad, e * rng.uniform(0, 7));
        s.fillRandom(rng);
        d.fillRandom(rng);
        Image<T> before = d;
        ASSERT_EQ(zeqStsOk, TypeParam::run(s.ptr(), s.step(), d.ptr(), d.step(), s.size()));
        Image<T> want(w, h, ch);
        want.fill([&](int x, int y, int c) { return ch == 4 && e == 4 && c == 3 ? before.at(x, y, c) : s.at(x, y, c); });
        ASSERT_TRUE(zqt::sameImage(d, want)) << w << "x" << h;
        ASSERT_TRUE(d.outsideUntouched());
    }
}

// Only steps below 1 are refused: a step shorter than the row is the caller's business.
TYPED_TEST(Copy, StatusesInOrder) {
    using T = typename TypeParam::Elem;
    Image<T> s(4, 2, TypeParam::channels), d(4, 2, TypeParam::channels);
    const auto snap = d.snapshot();
    EXPECT_EQ(zeqStsNullPtr, TypeParam::run(nullptr, 0, d.ptr(), 0, {0, 0}));
    EXPECT_EQ(zeqStsNullPtr, TypeParam::run(s.ptr(), 0, nullptr, 0, {0, 0}));
    EXPECT_EQ(zeqStsSize, TypeParam::run(s.ptr(), 0, d.ptr(), 0, {0, 2}));
    EXPECT_EQ(zeqStsSize, TypeParam::run(s.ptr(), 0, d.ptr(), 0, {4, -1}));
    EXPECT_EQ(zeqStsStep, TypeParam::run(s.ptr(), 0, d.ptr(), d.step(), {4, 2}));
    EXPECT_EQ(zeqStsStep, TypeParam::run(s.ptr(), s.step(), d.ptr(), -4, {4, 2}));
    EXPECT_TRUE(d.unchangedSince(snap));
    EXPECT_EQ(zeqStsOk, TypeParam::run(s.ptr(), 1, d.ptr(), 1, {4, 1}));
}

TEST(Set32f, FillsRegionAndChecks) {
    Rng rng(2);
    for (int w : {1, 3, 8, 13, 100})
        for (int pad : {0, 12, 5}) {
            Image<float> d(w, 5, 1, pad, 4);
            ASSERT_EQ(zeqStsOk, zeqiSet_32f_C1R(-2.5f, d.ptr(), d.step(), d.size()));
            for (int y = 0; y < 5; ++y)
                for (int x = 0; x < w; ++x) ASSERT_EQ(-2.5f, d.at(x, y));
            ASSERT_TRUE(d.outsideUntouched());
        }
    Image<float> d(4, 4);
    EXPECT_EQ(zeqStsNullPtr, zeqiSet_32f_C1R(1, nullptr, 16, {0, 4}));
    EXPECT_EQ(zeqStsSize, zeqiSet_32f_C1R(1, d.ptr(), 0, {4, 0}));
    EXPECT_EQ(zeqStsStep, zeqiSet_32f_C1R(1, d.ptr(), 0, {4, 4}));
}

// ---- conversion to float ----

template <class S>
class Convert : public ::testing::Test {};
using ConvertTypes = ::testing::Types<Zeq8u, Zeq8s>;
TYPED_TEST_SUITE(Convert, ConvertTypes);

ZeqStatus convert(const Zeq8u* s, int ss, float* d, int ds, ZeqiSize roi) { return zeqiConvert_8u32f_C1R(s, ss, d, ds, roi); }
ZeqStatus convert(const Zeq8s* s, int ss, float* d, int ds, ZeqiSize roi) { return zeqiConvert_8s32f_C1R(s, ss, d, ds, roi); }

// Small, contiguous and padded regions on both sides of the streaming
// thresholds; layout 3 puts the float rows at odd addresses, any byte count apart.
TYPED_TEST(Convert, EveryValueExactly) {
    using S = TypeParam;
    Rng rng(41);
    const ZeqiSize sizes[] = {{1, 1}, {3, 2}, {15, 1}, {16, 2}, {37, 5}, {129, 3}, {300, 180}, {257, 410}, {500, 220}, {200, 700}};
    for (ZeqiSize sz : sizes)
        for (int layout = 0; layout < 4; ++layout) {
            const bool odd = layout == 3;
            const int spad = layout == 0 ? 0 : rng.uniform(1, 9);
            const int dpad = odd ? rng.uniform(1, 7) : layout == 0 ? 0 : 4 * rng.uniform(0, 3);
            Image<S> s(sz.width, sz.height, 1, spad, rng.uniform(0, 15));
            Image<float> d(sz.width, sz.height, 1, dpad, odd ? rng.uniform(1, 3) : layout == 2 ? 8 : 4 * rng.uniform(0, 3));
            s.fillRandom(rng);
            ASSERT_EQ(zeqStsOk, convert(s.ptr(), s.step(), d.ptr(), d.step(), sz));
            Image<float> want(sz.width, sz.height);
            want.fill([&](int x, int y, int) { return float(s.at(x, y)); });
            ASSERT_TRUE(zqt::sameImage(d, want)) << sz.width << "x" << sz.height << " layout " << layout;
            ASSERT_TRUE(d.outsideUntouched());
        }
    Image<S> s(4, 2);
    Image<float> d(4, 2);
    const auto snap = d.snapshot();
    EXPECT_EQ(zeqStsNullPtr, convert(static_cast<const S*>(nullptr), 4, d.ptr(), 16, {0, 2}));
    EXPECT_EQ(zeqStsSize, convert(s.ptr(), 4, d.ptr(), 16, {4, 0}));
    EXPECT_EQ(zeqStsStep, convert(s.ptr(), 4, d.ptr(), 0, {4, 2}));
    EXPECT_TRUE(d.unchangedSince(snap));
}

// ---- in-place float arithmetic ----

using FloatOp = std::function<float(float, float)>;

TEST(ArithFloat, ConstantAndImageForms) {
    Rng rng(43);
    for (int iter = 0; iter < 30; ++iter) {
        const int w = rng.uniform(1, 80), h = rng.uniform(1, 5), pad = rng.uniform(0, 12);  // odd steps too
        Image<float> a(w, h, 1, pad, 4 * rng.uniform(0, 3)), b(w, h, 1, rng.uniform(0, 12));
        a.fillRandom(rng);
        b.fillRandom(rng);
        const float c = rng.uniformf(-10, 10);
        auto check = [&](ZeqStatus st, const Image<float>& before, const FloatOp& op) {
            ASSERT_EQ(zeqStsOk, st);
            Image<float> want(w, h);
            want.fill([&](int x, int y, int) { return op(before.at(x, y), b.at(x, y)); });
            ASSERT_TRUE(zqt::sameImage(a, want));
            ASSERT_TRUE(a.outsideUntouched());
        };
        Image<float> before = a;
        check(zeqiAddC_32f_C1IR(c, a.ptr(), a.step(), a.size()), before, [&](float x, float) { return x + c; });
        before = a;
        check(zeqiSubC_32f_C1IR(c, a.ptr(), a.step(), a.size()), before, [&](float x, float) { return x - c; });
        before = a;
        check(zeqiMulC_32f_C1IR(c, a.ptr(), a.step(), a.size()), before, [&](float x, float) { return x * c; });
        before = a;
        check(zeqiAdd_32f_C1IR(b.ptr(), b.step(), a.ptr(), a.step(), a.size()), before, std::plus<float>());
        before = a;
        check(zeqiSub_32f_C1IR(b.ptr(), b.step(), a.ptr(), a.step(), a.size()), before, std::minus<float>());
    }
}

// Row by row as the vector division, in both directions: C1R divides the
// second source by the first, C1IR the destination by the source.
TEST(ArithFloat, DivisionFollowsTheVectorHelper) {
    Rng rng(47);
    for (int iter = 0; iter < 20; ++iter) {
        const int w = rng.uniform(1, 40), h = rng.uniform(1, 5);
        Image<float> divisor(w, h, 1, 4 * rng.uniform(0, 3), 4 * rng.uniform(0, 3)), dividend(w, h, 1, 8);
        Image<float> d(w, h, 1, 4 * rng.uniform(0, 3), 4 * rng.uniform(0, 3));
        divisor.fill([&](int, int, int) { return rng.chance(0.03) ? 0.0f : rng.uniformf(-50, 50); });
        dividend.fillRandom(rng);
        Image<float> want = d;
        bool zero = false;
        for (int y = 0; y < h; ++y)
            zero |= zeqsDiv_32f(divisor.row(y), dividend.row(y), want.row(y), w) == zeqStsDivByZero;
        const ZeqStatus expected = zero ? zeqStsDivByZero : zeqStsOk;
        ASSERT_EQ(expected, zeqiDiv_32f_C1R(divisor.ptr(), divisor.step(), dividend.ptr(), dividend.step(), d.ptr(),
                                            d.step(), d.size()));
        ASSERT_TRUE(zqt::sameImage(d, want));
        ASSERT_TRUE(d.outsideUntouched());
        // In place over an image aligned like d, so the groups fall the same way.
        Image<float> inPlace = Image<float>::withStep(w, h, 1, d.step(), 0);
        Image<float> want2 = inPlace;
        inPlace.fill([&](int x, int y, int) { return dividend.at(x, y); });
        want2.fill([&](int x, int y, int) { return dividend.at(x, y); });
        for (int y = 0; y < h; ++y) zeqsDiv_32f(divisor.row(y), want2.row(y), want2.row(y), w);
        ASSERT_EQ(expected, zeqiDiv_32f_C1IR(divisor.ptr(), divisor.step(), inPlace.ptr(), inPlace.step(), inPlace.size()));
        ASSERT_TRUE(zqt::sameImage(inPlace, want2));
    }
    float one = 1;
    EXPECT_EQ(zeqStsNullPtr, zeqiDiv_32f_C1R(&one, 4, nullptr, 4, &one, 4, {1, 1}));
    EXPECT_EQ(zeqStsSize, zeqiDiv_32f_C1IR(&one, 4, &one, 4, {1, 0}));
    EXPECT_EQ(zeqStsStep, zeqiDiv_32f_C1R(&one, 4, &one, 0, &one, 4, {1, 1}));
}

// A step that is not a multiple of 4 advances by the multiple of 4 below it;
// the square root reports a sign bit met in any row.
TEST(ArithFloat, SqrAndSqrtRoundTheStepDown) {
    const int w = 5, h = 4;
    auto img = Image<float>::withStep(w, h, 1, 4 * w + 4);
    img.fill([](int x, int y, int) { return float(x + 3 * y + 1); });
    ASSERT_EQ(zeqStsOk, zeqiSqr_32f_C1IR(img.ptr(), 4 * w + 7, img.size()));
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) ASSERT_EQ(float((x + 3 * y + 1) * (x + 3 * y + 1)), img.at(x, y));
    img.at(2, 2) = -0.0f;
    ASSERT_EQ(zeqStsSqrtNegArg, zeqiSqrt_32f_C1IR(img.ptr(), 4 * w + 5, img.size()));
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x)
            ASSERT_EQ(x == 2 && y == 2 ? 0.0f : float(x + 3 * y + 1), img.at(x, y));
    EXPECT_EQ(0x80000000u, zqt::bitsOf(img.at(2, 2)));
    ASSERT_EQ(zeqStsOk, zeqiSqrt_32f_C1IR(img.ptr(), img.step(), {w, 1}));
    EXPECT_TRUE(img.outsideUntouched());
    EXPECT_EQ(zeqStsNullPtr, zeqiSqr_32f_C1IR(nullptr, 4, {0, 0}));
    EXPECT_EQ(zeqStsStep, zeqiSqrt_32f_C1IR(img.ptr(), 0, {1, 1}));
    EXPECT_EQ(zeqStsSize, zeqiSqrt_32f_C1IR(img.ptr(), 0, {1, 0}));
}

// ---- sum, mean and L2 norm ----

// Two double sums over the even and the odd positions of every row.
double refAlternating(const Image<float>& img, bool squares) {
    double even = 0, odd = 0;
    for (int y = 0; y < img.height(); ++y)
        for (int x = 0; x < img.width(); ++x) {
            const double v = squares ? double(img.at(x, y)) * double(img.at(x, y)) : double(img.at(x, y));
            (x % 2 ? odd : even) += v;
        }
    return even + odd;
}

TEST(SumNorm, HintTwoIsExactOtherHintsClose) {
    Rng rng(53);
    for (int iter = 0; iter < 40; ++iter) {
        const int w = iter < 12 ? iter + 1 : rng.uniform(1, 90), h = rng.uniform(1, 6);
        Image<float> img(w, h, 1, rng.uniform(0, 12), 4 * rng.uniform(0, 3));
        img.fill([&](int, int, int) { return rng.uniformf(-1e6f, 1e6f) * (rng.chance(0.1) ? 1e20f : 1.0f); });
        double sum = 0, mean = 0, norm = 0;
        ASSERT_EQ(zeqStsOk, zeqiSum_32f_C1R(img.ptr(), img.step(), img.size(), &sum, 2));
        EXPECT_EQ(zqt::bitsOf(refAlternating(img, false)), zqt::bitsOf(sum));
        ASSERT_EQ(zeqStsOk, zeqiMean_32f_C1R(img.ptr(), img.step(), img.size(), &mean, 2));
        EXPECT_EQ(sum / double(w * h), mean);
        ASSERT_EQ(zeqStsOk, zeqiNorm_L2_32f_C1R(img.ptr(), img.step(), img.size(), &norm, 2));
        EXPECT_EQ(std::sqrt(refAlternating(img, true)), norm);

        double absSum = 0;
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x) absSum += std::fabs(double(img.at(x, y)));
        for (int hint : {0, 1}) {
            ASSERT_EQ(zeqStsOk, zeqiSum_32f_C1R(img.ptr(), img.step(), img.size(), &sum, hint));
            EXPECT_NEAR(refAlternating(img, false), sum, absSum * 1e-14);
            ASSERT_EQ(zeqStsOk, zeqiNorm_L2_32f_C1R(img.ptr(), img.step(), img.size(), &norm, hint));
            EXPECT_NEAR(std::sqrt(refAlternating(img, true)), norm, norm * 1e-14);
        }
    }
}

TEST(SumNorm, StatusesInOrder) {
    Image<float> img(4, 2);
    double r = 7;
    EXPECT_EQ(zeqStsNullPtr, zeqiSum_32f_C1R(img.ptr(), 16, img.size(), nullptr, 2));
    EXPECT_EQ(zeqStsNullPtr, zeqiNorm_L2_32f_C1R(nullptr, 0, {0, 0}, &r, 0));
    EXPECT_EQ(zeqStsSize, zeqiSum_32f_C1R(img.ptr(), 0, {4, 0}, &r, 2));
    EXPECT_EQ(zeqStsStep, zeqiNorm_L2_32f_C1R(img.ptr(), 0, img.size(), &r, 2));
    // The mean checks its own result pointer first and the rest through the sum.
    EXPECT_EQ(zeqStsNullPtr, zeqiMean_32f_C1R(nullptr, 0, {0, 0}, nullptr, 2));
    EXPECT_EQ(zeqStsNullPtr, zeqiMean_32f_C1R(nullptr, 16, img.size(), &r, 2));
    EXPECT_EQ(zeqStsSize, zeqiMean_32f_C1R(img.ptr(), 16, {-1, 2}, &r, 0));
    EXPECT_EQ(zeqStsStep, zeqiMean_32f_C1R(img.ptr(), -16, img.size(), &r, 1));
    EXPECT_EQ(7.0, r);
}

// ---- thresholds ----

// The clamps keep the packed minimum and maximum's operand order (which NaN or
// zero survives); the value forms replace what lies strictly beyond.
float refClamp(float x, float t, bool greater) { return greater ? (x < t ? x : t) : (x > t ? x : t); }
float refReplace(float x, float t, float v, bool greater) { return (greater ? x > t : x < t) ? v : x; }

// Every form, out of place and in place, over random images with NaN and zeros.
TEST(Threshold, EveryFormFollowsItsRule) {
    Rng rng(59);
    const float specials[] = {kNaN, 0.0f, -0.0f, 1.0f};
    for (int iter = 0; iter < 20; ++iter) {
        const int w = rng.uniform(1, 50), h = rng.uniform(1, 4);
        Image<float> s(w, h, 1, rng.uniform(0, 8), 4 * rng.uniform(0, 3));
        s.fill([&](int, int, int) { return rng.chance(0.2) ? specials[rng.uniform(0, 3)] : rng.uniformf(-10, 10); });
        const float t = iter % 2 ? 0.0f : iter % 4 ? 1.0f : rng.uniformf(-5, 5), v = 9.0f;
        const float *sp = s.ptr();
        const int ss = s.step();
        const ZeqiSize r = s.size();
        struct Form {
            std::function<ZeqStatus(float*, int)> run;  // into d, or on d holding a copy of s
            std::function<float(float)> rule;
            bool inPlace;
        };
        const Form forms[] = {
            {[&](float* d, int ds) { return zeqiThreshold_32f_C1R(sp, ss, d, ds, r, t, 0); }, [&](float x) { return refClamp(x, t, false); }, false},
            {[&](float* d, int ds) { return zeqiThreshold_32f_C1R(sp, ss, d, ds, r, t, 4); }, [&](float x) { return refClamp(x, t, true); }, false},
            {[&](float* d, int ds) { return zeqiThreshold_LT_32f_C1R(sp, ss, d, ds, r, t); }, [&](float x) { return refClamp(x, t, false); }, false},
            {[&](float* d, int ds) { return zeqiThreshold_LT_32f_C1IR(d, ds, r, t); }, [&](float x) { return refClamp(x, t, false); }, true},
            {[&](float* d, int ds) { return zeqiThreshold_Val_32f_C1R(sp, ss, d, ds, r, t, v, 0); }, [&](float x) { return refReplace(x, t, v, false); }, false},
            {[&](float* d, int ds) { return zeqiThreshold_Val_32f_C1R(sp, ss, d, ds, r, t, v, 4); }, [&](float x) { return refReplace(x, t, v, true); }, false},
            {[&](float* d, int ds) { return zeqiThreshold_LTVal_32f_C1R(sp, ss, d, ds, r, t, v); }, [&](float x) { return refReplace(x, t, v, false); }, false},
            {[&](float* d, int ds) { return zeqiThreshold_LTVal_32f_C1IR(d, ds, r, t, v); }, [&](float x) { return refReplace(x, t, v, false); }, true},
        };
        for (const Form& f : forms) {
            Image<float> d(w, h, 1, rng.uniform(0, 8));
            if (f.inPlace) d.fill([&](int x, int y, int) { return s.at(x, y); });
            ASSERT_EQ(zeqStsOk, f.run(d.ptr(), d.step()));
            Image<float> want(w, h);
            want.fill([&](int x, int y, int) { return f.rule(s.at(x, y)); });
            ASSERT_TRUE(zqt::sameImage(d, want)) << "form " << &f - forms << ", t " << t;
            ASSERT_TRUE(d.outsideUntouched());
        }
    }
}

TEST(Threshold, ComparisonCodeChecks) {
    Image<float> s(4, 2), d(4, 2);
    const auto snap = d.snapshot();
    for (int op : {-1, 1, 2, 3, 5}) {
        EXPECT_EQ(zeqStsNotSupported, zeqiThreshold_Val_32f_C1R(nullptr, 0, nullptr, 0, {0, 0}, 0, 0, op));
        EXPECT_EQ(zeqStsNotSupported, zeqiThreshold_32f_C1R(s.ptr(), 16, d.ptr(), 16, s.size(), 0, op));
    }
    // The plain threshold checks its arguments before its code.
    EXPECT_EQ(zeqStsNullPtr, zeqiThreshold_32f_C1R(nullptr, 16, d.ptr(), 16, s.size(), 0, 1));
    EXPECT_EQ(zeqStsSize, zeqiThreshold_32f_C1R(s.ptr(), 16, d.ptr(), 16, {4, 0}, 0, 1));
    EXPECT_EQ(zeqStsStep, zeqiThreshold_32f_C1R(s.ptr(), 0, d.ptr(), 16, s.size(), 0, 1));
    EXPECT_EQ(zeqStsNullPtr, zeqiThreshold_Val_32f_C1R(s.ptr(), 16, nullptr, 16, s.size(), 0, 0, 4));
    EXPECT_EQ(zeqStsSize, zeqiThreshold_Val_32f_C1R(s.ptr(), 16, d.ptr(), 16, {0, 2}, 0, 0, 0));
    EXPECT_EQ(zeqStsStep, zeqiThreshold_LTVal_32f_C1R(s.ptr(), 16, d.ptr(), -1, s.size(), 0, 0));
    EXPECT_EQ(zeqStsNullPtr, zeqiThreshold_LT_32f_C1IR(nullptr, 16, s.size(), 0));
    EXPECT_EQ(zeqStsStep, zeqiThreshold_LTVal_32f_C1IR(d.ptr(), 0, s.size(), 0, 0));
    EXPECT_TRUE(d.unchangedSince(snap));
}

// ---- border replication ----

template <class T, int Channels>
struct BorderForm {
    using Elem = T;
    static constexpr int channels = Channels;
    static ZeqStatus run(const T* s, int ss, ZeqiSize sr, T* d, int ds, ZeqiSize dr, int top, int left) {
        using Fn = ZeqStatus (*)(const T*, int, ZeqiSize, T*, int, ZeqiSize, int, int);
        Fn fn;
        if constexpr (std::is_same<T, Zeq8u>::value)
            fn = Channels == 1 ? zeqiCopyReplicateBorder_8u_C1R
                               : Channels == 3 ? zeqiCopyReplicateBorder_8u_C3R : zeqiCopyReplicateBorder_8u_C4R;
        else
            fn = Channels == 1 ? zeqiCopyReplicateBorder_32s_C1R
                               : Channels == 3 ? zeqiCopyReplicateBorder_32s_C3R : zeqiCopyReplicateBorder_32s_C4R;
        return fn(s, ss, sr, d, ds, dr, top, left);
    }
};

template <class F>
class Border : public ::testing::Test {};
using BorderForms = ::testing::Types<BorderForm<Zeq8u, 1>, BorderForm<Zeq8u, 3>, BorderForm<Zeq8u, 4>,
                                     BorderForm<Zeq32s, 1>, BorderForm<Zeq32s, 3>, BorderForm<Zeq32s, 4>>;
TYPED_TEST_SUITE(Border, BorderForms);

TYPED_TEST(Border, EveryPixelTakesTheNearestSourcePixel) {
    using T = typename TypeParam::Elem;
    constexpr int ch = TypeParam::channels;
    Rng rng(67);
    for (int iter = 0; iter < 30; ++iter) {
        const int sw = rng.uniform(1, 20), sh = rng.uniform(1, 6);
        const int top = iter == 0 ? 0 : rng.uniform(0, 4), left = iter == 0 ? 0 : rng.uniform(0, 5);
        const int dw = sw + left + (iter == 0 ? 0 : rng.uniform(0, 5)), dh = sh + top + (iter == 0 ? 0 : rng.uniform(0, 4));
        const int e = int(sizeof(T));
        Image<T> s(sw, sh, ch, rng.uniform(0, 9 * e), e * rng.uniform(0, 7));  // odd steps too
        Image<T> d(dw, dh, ch, rng.uniform(0, 9 * e), e * rng.uniform(0, 7));
        s.fillRandom(rng);
        ASSERT_EQ(zeqStsOk, TypeParam::run(s.ptr(), s.step(), s.size(), d.ptr(), d.step(), d.size(), top, left));
        Image<T> want(dw, dh, ch);
        want.fill([&](int x, int y, int c) {
            return s.at(std::clamp(x - left, 0, sw - 1), std::clamp(y - top, 0, sh - 1), c);
        });
        ASSERT_TRUE(zqt::sameImage(d, want)) << sw << "x" << sh << " in " << dw << "x" << dh;
        ASSERT_TRUE(d.outsideUntouched());
    }
}

// Steps are checked before sizes; then sizes, negative borders and a
// destination too small for source plus border.
TYPED_TEST(Border, StatusesInOrder) {
    using T = typename TypeParam::Elem;
    constexpr int ch = TypeParam::channels;
    Image<T> s(4, 3, ch), d(6, 5, ch);
    const auto snap = d.snapshot();
    const int ss = s.step(), ds = d.step();
    EXPECT_EQ(zeqStsNullPtr, TypeParam::run(nullptr, 0, {0, 0}, d.ptr(), 0, {0, 0}, -1, -1));
    EXPECT_EQ(zeqStsStep, TypeParam::run(s.ptr(), 0, {0, 0}, d.ptr(), ds, {6, 5}, 1, 1));
    EXPECT_EQ(zeqStsStep, TypeParam::run(s.ptr(), ss, {4, 3}, d.ptr(), 0, {0, 5}, 1, 1));
    EXPECT_EQ(zeqStsSize, TypeParam::run(s.ptr(), ss, {0, 3}, d.ptr(), ds, {6, 5}, 1, 1));
    EXPECT_EQ(zeqStsSize, TypeParam::run(s.ptr(), ss, {4, 3}, d.ptr(), ds, {6, 0}, 1, 1));
    EXPECT_EQ(zeqStsSize, TypeParam::run(s.ptr(), ss, {4, 3}, d.ptr(), ds, {6, 5}, -1, 1));
    EXPECT_EQ(zeqStsSize, TypeParam::run(s.ptr(), ss, {4, 3}, d.ptr(), ds, {6, 5}, 1, -1));
    EXPECT_EQ(zeqStsSize, TypeParam::run(s.ptr(), ss, {4, 3}, d.ptr(), ds, {6, 5}, 1, 3));
    EXPECT_EQ(zeqStsSize, TypeParam::run(s.ptr(), ss, {4, 3}, d.ptr(), ds, {6, 5}, 3, 1));
    EXPECT_TRUE(d.unchangedSince(snap));
    EXPECT_EQ(zeqStsOk, TypeParam::run(s.ptr(), ss, {4, 3}, d.ptr(), ds, {6, 5}, 2, 2));
}

// The source may already sit inside the destination: the fixed order of
// writing makes extending the border in place work.
TEST(Border8u, ExtendsInPlace) {
    Image<Zeq8u> d(9, 7);
    Rng rng(71);
    d.fillRandom(rng);
    Image<Zeq8u> src(5, 3);
    src.fill([&](int x, int y, int) { return d.at(x + 2, y + 1); });
    ASSERT_EQ(zeqStsOk, zeqiCopyReplicateBorder_8u_C1R(d.addr(2, 1), d.step(), {5, 3}, d.ptr(), d.step(), d.size(), 1, 2));
    for (int y = 0; y < 7; ++y)
        for (int x = 0; x < 9; ++x) ASSERT_EQ(src.at(std::clamp(x - 2, 0, 4), std::clamp(y - 1, 0, 2)), d.at(x, y));
}

}  // namespace
