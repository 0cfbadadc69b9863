#include "zqtest.h"

#include <omp.h>

#include <algorithm>
#include <climits>

namespace {

using zqt::Image;
using zqt::Rng;

using Fn32f = ZeqStatus (*)(const Zeq32f*, int, ZeqiSize, const Zeq32f*, int, ZeqiSize, Zeq32f*, int);
using Fn8u = ZeqStatus (*)(const Zeq8u*, int, ZeqiSize, const Zeq8u*, int, ZeqiSize, Zeq32f*, int);
using Fn8s = ZeqStatus (*)(const Zeq8s*, int, ZeqiSize, const Zeq8s*, int, ZeqiSize, Zeq32f*, int);

enum Method { SqDiff, Corr, Coeff, SqDiffNormed, CorrNormed, CoeffNormed };
const char* const kNames[] = {"SqDiff", "Corr", "Coeff", "SqDiffNormed", "CorrNormed", "CoeffNormed"};

// Per method: the valid-mode function and its MatchTemplate twin, for each type.
struct Functions {
    Fn32f valid32f, match32f;
    Fn8u valid8u, match8u;
    Fn8s valid8s, match8s;
};
#define ZQT_FUNCS(V, M)                                                                                       \
    {V##_32f_C1R, zeqiMatchTemplate_##M##_32f_C1R, V##_8u32f_C1R, zeqiMatchTemplate_##M##_8u32f_C1R,          \
     V##_8s32f_C1R, zeqiMatchTemplate_##M##_8s32f_C1R}
const Functions kFunctions[] = {
    ZQT_FUNCS(zeqiSqrDistanceValid, SqDiff),        ZQT_FUNCS(zeqiCrossCorrValid, Corr),
    ZQT_FUNCS(zeqiCrossCorrValid_Level, Coeff),     ZQT_FUNCS(zeqiSqrDistanceValid_Norm, SqDiffNormed),
    ZQT_FUNCS(zeqiCrossCorrValid_Norm, CorrNormed), ZQT_FUNCS(zeqiCrossCorrValid_NormLevel, CoeffNormed)};

template <class T>
auto validFn(int m) {
    if constexpr (std::is_same<T, Zeq32f>::value) return kFunctions[m].valid32f;
    else if constexpr (std::is_same<T, Zeq8u>::value) return kFunctions[m].valid8u;
    else return kFunctions[m].valid8s;
}
template <class T>
auto matchFn(int m) {
    if constexpr (std::is_same<T, Zeq32f>::value) return kFunctions[m].match32f;
    else if constexpr (std::is_same<T, Zeq8u>::value) return kFunctions[m].match8u;
    else return kFunctions[m].match8s;
}

// Log2 of the FFT length of one dimension: 2n rounded up to a power of two,
// doubled once below 128 points when the results do not fit.
int fftOrder(int n, int results) {
    int o = 1;
    while ((1 << o) < 2 * n) ++o;
    return o + (o < 7 && (1 << o) < results);
}

// Direct double-precision sums of every window, and the six methods from them.
// The tolerance: float FFTs of N points are off by a few eps*log2(N) times the
// L2 norms of the correlated arrays (the tile, at most sqrt(N) * max|pixel|,
// and the template), and the float arithmetic after them by a few eps of its
// operands; a denominator passes its relative error on.
struct Reference {
    std::vector<double> want, tol;

    template <class T>
    Reference(const Image<T>& s, const Image<T>& t, int method) {
        const int w = t.width(), h = t.height(), rw = s.width() - w + 1, rh = s.height() - h + 1;
        const double n = double(w) * h, c = 0.0005f, eps = 1.0 / (1 << 23);
        double mean = 0, energy = 0, maxAbs = 0;
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x) mean += t.at(x, y) / n, energy += double(t.at(x, y)) * t.at(x, y);
        for (int y = 0; y < s.height(); ++y)
            for (int x = 0; x < s.width(); ++x) maxAbs = std::max(maxAbs, std::fabs(double(s.at(x, y))));
        const bool level = method == Coeff || method == CoeffNormed;
        const double fftN = std::ldexp(1.0, fftOrder(w, rw) + fftOrder(h, rh));
        const double tplNorm = std::sqrt(level ? std::max(energy - n * mean * mean, 0.0) : energy);
        const double fftErr = 4 * eps * std::log2(fftN) * std::sqrt(fftN) * maxAbs * tplNorm;
        for (int y0 = 0; y0 < rh; ++y0)
            for (int x0 = 0; x0 < rw; ++x0) {
                double s1 = 0, s2 = 0, p = 0;
                for (int y = 0; y < h; ++y)
                    for (int x = 0; x < w; ++x) {
                        const double v = s.at(x0 + x, y0 + y);
                        s1 += v, s2 += v * v, p += v * (level ? t.at(x, y) - mean : double(t.at(x, y)));
                    }
                const bool distance = method == SqDiff || method == SqDiffNormed;
                const double num = distance ? s2 - 2 * p + energy : p, var = s2 - s1 * s1 / n;
                const double numErr = distance ? 2 * fftErr + 4 * eps * (s2 + 2 * std::fabs(p) + energy) : fftErr;
                double den = 1, denRel = 4 * eps;
                if (method == CoeffNormed) {
                    den = std::sqrt(std::max(var, c) * std::max(energy - n * mean * mean, c));
                    denRel += 2 * eps * (s2 + s1 * s1 / n) / std::max(var, c);
                } else if (method >= SqDiffNormed) {
                    den = std::sqrt(std::max(s2, c)) * std::max(std::sqrt(energy), c);
                }
                if (method < SqDiffNormed) denRel = 0;
                want.push_back(num / den);
                tol.push_back(numErr / den + std::fabs(num / den) * denRel + 1e-30);
            }
    }
};

template <class T>
class Match : public ::testing::Test {};
using Types = ::testing::Types<Zeq32f, Zeq8u, Zeq8s>;
TYPED_TEST_SUITE(Match, Types);

template <class T>
void fillPixels(Image<T>& im, Rng& rng) {
    im.fill([&](int, int, int) { return std::is_same<T, Zeq32f>::value ? T(rng.uniformf(-100, 100)) : rng.any<T>(); });
}

// Random sizes (1x1 templates, templates as large as the source, results
// over several tiles, odd widths), padded steps and misaligned rows, now and
// then a zero template or source (exact zeros where no FFT noise can arise);
// every method against the direct sums, and MatchTemplate giving the same bits.
TYPED_TEST(Match, EveryMethodMatchesDirectSums) {
    using T = TypeParam;
    const int e = int(sizeof(T));
    Rng rng(5);
    for (int iter = 0; iter < 14; ++iter) {
        const int sw = rng.uniform(1, 90), sh = rng.uniform(1, 50);
        const int w = iter % 4 == 0 ? 1 : iter % 4 == 1 ? sw : rng.uniform(1, std::min(sw, 12));
        const int h = iter % 4 == 0 ? 1 : iter % 4 == 1 ? sh : rng.uniform(1, std::min(sh, 12));
        Image<T> s(sw, sh, 1, e * rng.uniform(0, 3), e * rng.uniform(0, 3)), t(w, h, 1, e * rng.uniform(0, 2), e);
        fillPixels(s, rng);
        fillPixels(t, rng);
        if (iter % 7 == 3) t.fill([](int, int, int) { return T(0); });
        if (iter % 7 == 5) s.fill([](int, int, int) { return T(0); });
        const int rw = sw - w + 1, rh = sh - h + 1;
        for (int m = SqDiff; m <= CoeffNormed; ++m) {
            Image<float> d(rw, rh, 1, 4 * rng.uniform(0, 2), 4), d2(rw, rh, 1, 4);
            ASSERT_EQ(zeqStsOk,
                      validFn<T>(m)(s.ptr(), s.step(), s.size(), t.ptr(), t.step(), t.size(), d.ptr(), d.step()));
            ASSERT_EQ(zeqStsOk,
                      matchFn<T>(m)(s.ptr(), s.step(), s.size(), t.ptr(), t.step(), t.size(), d2.ptr(), d2.step()));
            const Reference ref(s, t, m);
            for (int y = 0; y < rh; ++y)
                for (int x = 0; x < rw; ++x)
                    ASSERT_NEAR(ref.want[size_t(y) * rw + x], d.at(x, y), ref.tol[size_t(y) * rw + x])
                        << kNames[m] << " at (" << x << ", " << y << ") of " << sw << "x" << sh << " by " << w
                        << "x" << h;
            ASSERT_TRUE(d.outsideUntouched());
            ASSERT_TRUE(zqt::sameImage(d2, d)) << kNames[m];
        }
    }
}

// The un-normalised functions: the same bits from 1, 2 and 7 threads, and
// from calls made by the threads of an application's own parallel region.
TEST(Match, ThreadCountsGiveTheSameBits) {
    Image<Zeq8u> s(301, 157, 1, 3), t(9, 6);
    Rng rng(9);
    s.fillRandom(rng);
    t.fillRandom(rng);
    const int saved = omp_get_max_threads();
    for (int m : {SqDiff, Corr, Coeff}) {
        const auto run = [&](Image<float>& d) {
            return kFunctions[m].valid8u(s.ptr(), s.step(), s.size(), t.ptr(), t.step(), t.size(), d.ptr(), d.step());
        };
        Image<float> one(293, 152), more(293, 152);
        omp_set_num_threads(1);
        ASSERT_EQ(zeqStsOk, run(one));
        for (int n : {2, 7}) {
            omp_set_num_threads(n);
            ASSERT_EQ(zeqStsOk, run(more));
            EXPECT_TRUE(zqt::sameImage(more, one)) << kNames[m] << " with " << n << " threads";
        }
        for (int levels : {1, 2}) {
            omp_set_max_active_levels(levels);
            bool same[3] = {false, false, false};
#pragma omp parallel num_threads(3)
            {
                Image<float> d(293, 152);
                same[omp_get_thread_num()] = run(d) == zeqStsOk && zqt::sameImage(d, one);
            }
            EXPECT_TRUE(same[0] && same[1] && same[2]) << kNames[m] << " nested, " << levels << " levels";
        }
    }
    omp_set_num_threads(saved);
}

// Statuses in the documented order; a failed call writes nothing.
TEST(Match, StatusesInOrderAndNothingWritten) {
    Image<float> s(10, 8), t(3, 3), d(8, 6);
    const auto before = d.snapshot();
    const float *sp = s.ptr(), *tp = t.ptr();
    float* dp = d.ptr();
    const ZeqiSize ss{10, 8}, ts{3, 3}, big{11, 3};
    for (int m = SqDiff; m <= CoeffNormed; ++m) {
        const Fn32f v = kFunctions[m].valid32f, mt = kFunctions[m].match32f;
        EXPECT_EQ(zeqStsNullPtr, v(sp, 40, ss, tp, 12, {0, 3}, nullptr, 32));
        EXPECT_EQ(zeqStsNullPtr, v(sp, 40, ss, nullptr, 12, ts, dp, 32));
        EXPECT_EQ(zeqStsSize, v(sp, 0, {10, 0}, tp, 12, ts, dp, 32));
        EXPECT_EQ(zeqStsSize, v(sp, 40, ss, tp, 12, big, dp, 32));
        EXPECT_EQ(zeqStsSize, v(sp, 40, ss, tp, 12, {3, 9}, dp, 32));
        EXPECT_EQ(zeqStsStep, v(sp, 40, ss, tp, 0, ts, dp, 32));
        EXPECT_EQ(zeqStsStep, v(sp, 40, ss, tp, 12, ts, dp, -4));
        // Steps first, each against its row, then alignment, then the valid-mode checks.
        EXPECT_EQ(zeqStsStep, mt(nullptr, 36, ss, tp, 12, ts, dp, 32));
        EXPECT_EQ(zeqStsStep, mt(nullptr, 40, ss, tp, 8, ts, dp, 32));
        EXPECT_EQ(zeqStsStep, mt(sp, 40, ss, tp, 12, ts, dp, 28));
        EXPECT_EQ(zeqStsStepAlign, mt(nullptr, 42, ss, tp, 12, ts, dp, 32));
        EXPECT_EQ(zeqStsStepAlign, mt(sp, 40, ss, tp, 12, ts, dp, 34));
        EXPECT_EQ(zeqStsNullPtr, mt(sp, 40, ss, tp, 12, ts, nullptr, 32));
        EXPECT_EQ(zeqStsSize, mt(sp, 40, ss, tp, 12, {3, 9}, dp, 32));
        // 8-bit sources: only an odd destination step is misaligned.
        const Zeq8u* p8 = reinterpret_cast<const Zeq8u*>(sp);
        EXPECT_EQ(zeqStsStep, kFunctions[m].match8u(p8, 9, ss, p8, 3, ts, dp, 32));
        EXPECT_EQ(zeqStsStepAlign, kFunctions[m].match8u(p8, 10, ss, p8, 3, ts, dp, 33));
        EXPECT_EQ(zeqStsNullPtr, kFunctions[m].match8u(p8, 10, ss, nullptr, 3, ts, dp, 34));
        // Too large for an FFT, or for one work array: nothing is read.
        EXPECT_EQ(zeqStsFftOrder, v(sp, 4, {1 << 30, 1}, tp, 4, {1 << 30, 1}, dp, 4));
        EXPECT_EQ(zeqStsNoMem, v(sp, 4, {1 << 14, 1 << 14}, tp, 4, {1 << 14, 1 << 14}, dp, 4));
    }
    EXPECT_TRUE(d.unchangedSince(before));
}

// Steps that are not whole floats: a 32f source one byte past its row (legal
// for the valid-mode functions), and an 8-bit call's destination 2 bytes past
// its row (accepted by MatchTemplate); the same bits as whole-float steps.
TEST(Match, StepsOfAnyByteCount) {
    Image<float> s(12, 5), t(4, 2), want(9, 4);
    Image<Zeq8u> odd(48, 5, 1, 1), d(36, 4, 1, 2);  // float rows 49 and 38 bytes apart
    Rng rng(1);
    s.fill([&](int, int, int) { return rng.uniform(0, 255); });
    t.fill([&](int, int, int) { return rng.uniform(0, 255); });
    for (int y = 0; y < 5; ++y) std::memcpy(odd.row(y), s.row(y), 48);
    ASSERT_EQ(zeqStsOk, zeqiCrossCorrValid_Norm_32f_C1R(s.ptr(), 48, s.size(), t.ptr(), 16, t.size(), want.ptr(), 36));
    auto* dp = reinterpret_cast<Zeq32f*>(d.ptr());
    ASSERT_EQ(zeqStsOk, zeqiCrossCorrValid_Norm_32f_C1R(reinterpret_cast<const Zeq32f*>(odd.ptr()), 49, s.size(),
                                                        t.ptr(), 16, t.size(), dp, 38));
    Image<Zeq8u> s8(12, 5), t8(4, 2);
    s8.fill([&](int x, int y, int) { return s.at(x, y); });
    t8.fill([&](int x, int y, int) { return t.at(x, y); });
    Image<Zeq8u> d8(36, 4, 1, 2);
    ASSERT_EQ(zeqStsOk, zeqiMatchTemplate_CorrNormed_8u32f_C1R(s8.ptr(), 12, s8.size(), t8.ptr(), 4, t8.size(),
                                                               reinterpret_cast<Zeq32f*>(d8.ptr()), 38));
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 9; ++x) {
            float v, v8;
            std::memcpy(&v, d.row(y) + 4 * x, 4);
            std::memcpy(&v8, d8.row(y) + 4 * x, 4);
            EXPECT_TRUE(zqt::sameFloat(want.at(x, y), v) && zqt::sameFloat(want.at(x, y), v8)) << x << ", " << y;
        }
    EXPECT_TRUE(d.outsideUntouched());
    EXPECT_TRUE(d8.outsideUntouched());
}

TEST(Match, BufferSizesAreZero) {
    using Query = ZeqStatus (*)(ZeqiSize, ZeqiSize, ZeqDataType, int*);
    const Query queries[] = {zeqiMatchTemplateGetBufSize_SqDiff, zeqiMatchTemplateGetBufSize_SqDiffNormed,
                             zeqiMatchTemplateGetBufSize_Corr, zeqiMatchTemplateGetBufSize_CorrNormed,
                             zeqiMatchTemplateGetBufSize_Coeff, zeqiMatchTemplateGetBufSize_CoeffNormed};
    for (const Query q : queries) {
        for (int type : {zeq8u, zeq8s, zeq32f})
            for (ZeqiSize sz : {ZeqiSize{7, 5}, ZeqiSize{INT_MAX, INT_MAX}}) {  // no buffer at any size
                int size = -1;
                EXPECT_EQ(zeqStsOk, q(sz, sz, type, &size));
                EXPECT_EQ(0, size);
            }
        int size = -1;
        EXPECT_EQ(zeqStsNullPtr, q({0, 0}, {0, 0}, 3, nullptr));
        EXPECT_EQ(zeqStsSize, q({7, 5}, {0, 1}, 3, &size));
        EXPECT_EQ(zeqStsSize, q({7, 5}, {7, 6}, zeq8u, &size));
        EXPECT_EQ(zeqStsSize, q({-1, 5}, {1, 1}, zeq8u, &size));
        EXPECT_EQ(zeqStsDataType, q({7, 5}, {2, 2}, zeq16s, &size));
        EXPECT_EQ(-1, size);
    }
}

}  // namespace
