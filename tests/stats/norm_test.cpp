#include "stats_api.h"

#include <cmath>

namespace {

using zqt::Image;
using zqt::Rng;

enum Kind { kInf, kL1, kL2 };
enum class Family { Norm, Diff, Rel };
constexpr Family kFamilies[] = {Family::Norm, Family::Diff, Family::Rel};

// The 72 entry points, indexed by family, layout and kind.
template <class T>
struct Api;
#define ZQT_NORM_API(t)                                                                                             \
    template <>                                                                                                     \
    struct Api<Zeq##t> {                                                                                            \
        using One1 = ZeqStatus (*)(const Zeq##t*, int, const Zeq8u*, int, ZeqiSize, Zeq64f*);                      \
        using One3 = ZeqStatus (*)(const Zeq##t*, int, const Zeq8u*, int, ZeqiSize, int, Zeq64f*);                 \
        using Two1 = ZeqStatus (*)(const Zeq##t*, int, const Zeq##t*, int, const Zeq8u*, int, ZeqiSize, Zeq64f*);   \
        using Two3 =                                                                                                \
            ZeqStatus (*)(const Zeq##t*, int, const Zeq##t*, int, const Zeq8u*, int, ZeqiSize, int, Zeq64f*);      \
        static constexpr One1 norm1[3] = {zeqiNorm_Inf_##t##_C1MR, zeqiNorm_L1_##t##_C1MR, zeqiNorm_L2_##t##_C1MR};  \
        static constexpr One3 norm3[3] = {zeqiNorm_Inf_##t##_C3CMR, zeqiNorm_L1_##t##_C3CMR,                        \
                                          zeqiNorm_L2_##t##_C3CMR};                                                 \
        static constexpr Two1 diff1[3] = {zeqiNormDiff_Inf_##t##_C1MR, zeqiNormDiff_L1_##t##_C1MR,                  \
                                          zeqiNormDiff_L2_##t##_C1MR};                                              \
        static constexpr Two3 diff3[3] = {zeqiNormDiff_Inf_##t##_C3CMR, zeqiNormDiff_L1_##t##_C3CMR,                \
                                          zeqiNormDiff_L2_##t##_C3CMR};                                             \
        static constexpr Two1 rel1[3] = {zeqiNormRel_Inf_##t##_C1MR, zeqiNormRel_L1_##t##_C1MR,                     \
                                         zeqiNormRel_L2_##t##_C1MR};                                                \
        static constexpr Two3 rel3[3] = {zeqiNormRel_Inf_##t##_C3CMR, zeqiNormRel_L1_##t##_C3CMR,                   \
                                         zeqiNormRel_L2_##t##_C3CMR};                                               \
    };
ZQT_NORM_API(8u)
ZQT_NORM_API(8s)
ZQT_NORM_API(16u)
ZQT_NORM_API(32f)

// One call; `channels` 1 picks the C1MR form (coi ignored), 3 the C3CMR form.
template <class T>
ZeqStatus callNorm(Family f, int k, int channels, const T* a, int aStep, const T* b, int bStep, const Zeq8u* m,
                   int mStep, ZeqiSize roi, int coi, double* out) {
    using A = Api<T>;
    const bool one = channels == 1;
    switch (f) {
        case Family::Norm:
            return one ? A::norm1[k](a, aStep, m, mStep, roi, out) : A::norm3[k](a, aStep, m, mStep, roi, coi, out);
        case Family::Diff:
            return one ? A::diff1[k](a, aStep, b, bStep, m, mStep, roi, out)
                       : A::diff3[k](a, aStep, b, bStep, m, mStep, roi, coi, out);
        default:
            return one ? A::rel1[k](a, aStep, b, bStep, m, mStep, roi, out)
                       : A::rel3[k](a, aStep, b, bStep, m, mStep, roi, coi, out);
    }
}

template <class T>
constexpr bool kFloat = std::is_same<T, float>::value;

// Maximum or sum, straight from the definitions: integers exactly in 64 bits;
// floats with |x| and the single-image square in float, a difference in float
// then widened and squared in double, sums in double.
struct Sums {
    double n = 0, d = 0;  // the norm (before the root) of the first operand, and of src2 for Rel
};

template <class T>
Sums refSums(Family f, int k, const Image<T>& a, const Image<T>& b, const Image<Zeq8u>& m, int ch) {
    int64_t in = 0, id = 0;
    double fn = 0, fd = 0;
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x) {
            if (!m.at(x, y)) continue;
            const T va = a.at(x, y, ch), vb = b.at(x, y, ch);
            if constexpr (kFloat<T>) {
                const float v = f == Family::Norm ? va : va - vb;
                const double sq = f == Family::Norm ? double(v * v) : double(v) * double(v);
                const double term[3] = {std::fabs(v), std::fabs(v), sq};
                fn = k == kInf ? std::max(fn, term[0]) : fn + term[k];
                const double dterm[3] = {std::fabs(vb), std::fabs(vb), double(vb) * double(vb)};
                fd = k == kInf ? std::max(fd, dterm[0]) : fd + dterm[k];
            } else {
                const int64_t v = f == Family::Norm ? int64_t(va) : int64_t(va) - int64_t(vb);
                const int64_t term[3] = {std::abs(v), std::abs(v), v * v};
                in = k == kInf ? std::max(in, term[0]) : in + term[k];
                const int64_t dterm[3] = {std::abs(int64_t(vb)), std::abs(int64_t(vb)), int64_t(vb) * vb};
                id = k == kInf ? std::max(id, dterm[0]) : id + dterm[k];
            }
        }
    if constexpr (kFloat<T>) return {fn, fd};
    // The 8u L1 sum is a 32-bit signed value.
    const bool wraps = std::is_same<T, Zeq8u>::value && k == kL1;
    auto wrap = [&](int64_t v) { return wraps ? int64_t(int32_t(uint32_t(v))) : v; };
    return {double(wrap(in)), double(wrap(id))};
}

template <class T>
double refNorm(Family f, int k, const Image<T>& a, const Image<T>& b, const Image<Zeq8u>& m, int ch,
               ZeqStatus* status) {
    const Sums s = refSums(f, k, a, b, m, ch);
    *status = zeqStsOk;
    if (f != Family::Rel) return k == kL2 ? std::sqrt(s.n) : s.n;
    if (s.d == 0) {
        *status = zeqStsDivByZero;
        return s.n > 0 ? HUGE_VAL : std::nan("");
    }
    return k == kL2 ? std::sqrt(s.n / s.d) : s.n / s.d;
}

// Integers exactly; float sums up to the rounding of a different summation order.
template <class T>
::testing::AssertionResult close(double got, double want) {
    if (std::isnan(want)) {
        if (zqt::bitsOf(got) == 0x7FF8000000000000ull) return ::testing::AssertionSuccess();
        return ::testing::AssertionFailure() << "got " << got << ", want the quiet NaN";
    }
    if (got == want || (kFloat<T> && std::fabs(got - want) <= 1e-12 * std::fabs(want)))
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "got " << got << ", want " << want;
}

template <class T>
class Norm : public ::testing::Test {};
using Types = ::testing::Types<Zeq8u, Zeq8s, Zeq16u, Zeq32f>;
TYPED_TEST_SUITE(Norm, Types);

// Every family and kind over random sizes, steps, misalignments, masks and channels.
TYPED_TEST(Norm, MatchesReferenceOverRandomLayouts) {
    using T = TypeParam;
    const int e = int(sizeof(T));
    Rng rng(41);
    for (int iter = 0; iter < 120; ++iter) {
        const int w = iter < 40 ? iter + 1 : rng.uniform(1, 150), h = rng.uniform(1, 5);
        const int ch = rng.chance(0.5) ? 3 : 1, coi = rng.uniform(1, 3);
        // Every third case reads rows at odd addresses, an odd (16u) or 4n+2 (32f) step apart.
        const bool odd = iter % 3 == 2;
        Image<T> a(w, h, ch, odd ? (kFloat<T> ? 6 : 1) : e * rng.uniform(0, 5), odd ? 1 : e * rng.uniform(0, 7));
        Image<T> b(w, h, ch, odd ? (kFloat<T> ? 2 : 3) : e * rng.uniform(0, 3), odd ? 3 : e * rng.uniform(0, 7));
        Image<Zeq8u> m(w, h, 1, rng.uniform(0, 9), rng.uniform(0, 15));
        a.fillRandom(rng);
        b.fillRandom(rng);
        const int maskKind = iter % 8;  // mostly random; sometimes empty or full
        m.fill([&](int, int, int) {
            return maskKind == 0 ? 0 : maskKind == 1 || rng.chance(0.5) ? rng.uniform(1, 255) : 0;
        });
        const T *pa = a.ptr(), *pb = b.ptr();
        const int as = a.step(), bs = b.step();
        for (Family f : kFamilies)
            for (int k = kInf; k <= kL2; ++k) {
                double got = -1;
                const ZeqStatus st = callNorm<T>(f, k, ch, pa, as, pb, bs, m.ptr(), m.step(), a.size(), coi, &got);
                ZeqStatus wantSt;
                const double want = refNorm<T>(f, k, a, b, m, ch == 3 ? coi - 1 : 0, &wantSt);
                ASSERT_EQ(wantSt, st) << "family " << int(f) << " kind " << k;
                ASSERT_TRUE(close<T>(got, want))
                    << "family " << int(f) << " kind " << k << ", " << w << "x" << h << "x" << ch << " coi " << coi;
            }
    }
}

// Checks in order (null, size, steps, float step parity, coi); a failed check writes nothing.
TYPED_TEST(Norm, StatusesInOrderAndNothingWritten) {
    using T = TypeParam;
    const int e = int(sizeof(T));
    for (int ch : {1, 3})
        for (Family f : kFamilies)
            for (int k = kInf; k <= kL2; ++k) {
                Image<T> a(8, 3, ch), b(8, 3, ch);
                Image<Zeq8u> m(8, 3);
                const int row = 8 * ch * e;
                double out = 42;
                auto call = [&](const T* pa, int as, const T* pb, int bs, const Zeq8u* pm, int ms, ZeqiSize roi,
                                int coi, double* po) {
                    return callNorm<T>(f, k, ch, pa, as, pb, bs, pm, ms, roi, coi, po);
                };
                const ZeqiSize roi{8, 3};
                SCOPED_TRACE(::testing::Message() << "channels " << ch << " family " << int(f) << " kind " << k);
                EXPECT_EQ(zeqStsNullPtr, call(nullptr, row, b.ptr(), row, m.ptr(), 8, {0, 0}, 0, &out));
                EXPECT_EQ(zeqStsNullPtr, call(a.ptr(), row, b.ptr(), row, nullptr, 8, roi, 1, &out));
                EXPECT_EQ(zeqStsNullPtr, call(a.ptr(), row, b.ptr(), row, m.ptr(), 8, roi, 1, nullptr));
                if (f != Family::Norm) {
                    EXPECT_EQ(zeqStsNullPtr, call(a.ptr(), row, nullptr, row, m.ptr(), 8, roi, 1, &out));
                }
                EXPECT_EQ(zeqStsSize, call(a.ptr(), 0, b.ptr(), 0, m.ptr(), 0, {0, 3}, 0, &out));
                EXPECT_EQ(zeqStsSize, call(a.ptr(), row, b.ptr(), row, m.ptr(), 8, {8, 0}, 0, &out));
                EXPECT_EQ(zeqStsStep, call(a.ptr(), row - 1, b.ptr(), row, m.ptr(), 8, roi, 0, &out));
                if (f != Family::Norm) {
                    EXPECT_EQ(zeqStsStep, call(a.ptr(), row, b.ptr(), row - e, m.ptr(), 8, roi, 0, &out));
                }
                EXPECT_EQ(zeqStsStep, call(a.ptr(), row, b.ptr(), row, m.ptr(), 7, roi, 0, &out));
                if (kFloat<T>) {
                    EXPECT_EQ(zeqStsStepAlign, call(a.ptr(), row + 1, b.ptr(), row, m.ptr(), 8, roi, 0, &out));
                    if (f != Family::Norm) {
                        EXPECT_EQ(zeqStsStepAlign, call(a.ptr(), row, b.ptr(), row + 3, m.ptr(), 8, roi, 0, &out));
                    }
                }
                if (ch == 3) {
                    EXPECT_EQ(zeqStsCoi, call(a.ptr(), row, b.ptr(), row, m.ptr(), 9, roi, 0, &out));
                    EXPECT_EQ(zeqStsCoi, call(a.ptr(), row, b.ptr(), row, m.ptr(), 8, roi, 4, &out));
                }
                EXPECT_EQ(42, out);
                // An odd mask step is fine, and the C1 forms ignore coi.
                EXPECT_LE(0, call(a.ptr(), row, b.ptr(), row, m.ptr(), 9, {8, 2}, ch == 1 ? 0 : 3, &out));
            }
}

TEST(NormRel, ZeroDenominatorGivesInfinityOrNaNAndAWarning) {
    const Zeq8u all[4] = {1, 1, 1, 1};
    double out = 0;
    float a[4] = {0, 1.5f, 0, 0}, zero[4] = {0, -0.0f, 0, 0};
    for (int k = kInf; k <= kL2; ++k) {
        EXPECT_EQ(zeqStsDivByZero, Api<Zeq32f>::rel1[k](a, 16, zero, 16, all, 4, {4, 1}, &out));
        EXPECT_EQ(HUGE_VAL, out);
        EXPECT_EQ(zeqStsDivByZero, Api<Zeq32f>::rel1[k](zero, 16, zero, 16, all, 4, {4, 1}, &out));
        EXPECT_EQ(0x7FF8000000000000ull, zqt::bitsOf(out));
    }
}

// Norm squares in float; NormDiff widens the float difference and squares in double.
TEST(Norm32f, SingleAndDoublePrecisionSquaresDiffer) {
    const Zeq8u on[1] = {1};
    const float x[1] = {1.0f + 1.0f / 4096}, zero[1] = {0};
    double norm = 0, diff = 0;
    ASSERT_EQ(zeqStsOk, zeqiNorm_L2_32f_C1MR(x, 4, on, 1, {1, 1}, &norm));
    ASSERT_EQ(zeqStsOk, zeqiNormDiff_L2_32f_C1MR(x, 4, zero, 4, on, 1, {1, 1}, &diff));
    EXPECT_EQ(std::sqrt(double(x[0] * x[0])), norm);
    EXPECT_EQ(double(x[0]), diff);
    EXPECT_NE(norm, diff);
    // The difference itself is rounded to float: 1e8 - 1 is 1e8 in single precision.
    const float big[1] = {1e8f}, one[1] = {1.0f};
    ASSERT_EQ(zeqStsOk, zeqiNormDiff_L1_32f_C1MR(big, 4, one, 4, on, 1, {1, 1}, &diff));
    EXPECT_EQ(1e8, diff);
}

// Sums far beyond a 32-bit lane: 8u squares stay exact; the 8u L1 sum wraps as a signed 32-bit value.
TEST(Norm8u, LargeSums) {
    const int w = 4096, h = 2100;
    std::vector<Zeq8u> img(size_t(w) * h, 255), mask(img.size(), 1);
    double out = 0;
    ASSERT_EQ(zeqStsOk, zeqiNorm_L2_8u_C1MR(img.data(), w, mask.data(), w, {w, 300}, &out));
    EXPECT_EQ(std::sqrt(255.0 * 255.0 * w * 300), out);
    ASSERT_EQ(zeqStsOk, zeqiNorm_L1_8u_C1MR(img.data(), w, mask.data(), w, {w, h}, &out));
    EXPECT_EQ(double(int32_t(uint32_t(255ull * w * h))), out);
    EXPECT_LT(out, 0);
}

}  // namespace
