#include "zqtest.h"

namespace {

using zqt::Image;
using zqt::Rng;

enum Op { Add, Square, Product, Weighted };

template <class S>
struct Family;
#define ZQT_FAMILY(S, T, ADD)                                                                                \
    template <>                                                                                              \
    struct Family<S> {                                                                                       \
        static constexpr ZeqStatus (*add)(const S*, int, Zeq32f*, int, ZeqiSize) = ADD;                      \
        static constexpr auto addM = zeqiAdd_##T##_C1IMR;                                                    \
        static constexpr auto sq = zeqiAddSquare_##T##_C1IR;                                                 \
        static constexpr auto sqM = zeqiAddSquare_##T##_C1IMR;                                               \
        static constexpr auto prod = zeqiAddProduct_##T##_C1IR;                                              \
        static constexpr auto prodM = zeqiAddProduct_##T##_C1IMR;                                            \
        static constexpr auto wt = zeqiAddWeighted_##T##_C1IR;                                               \
        static constexpr auto wtM = zeqiAddWeighted_##T##_C1IMR;                                             \
    };
ZQT_FAMILY(Zeq8u, 8u32f, zeqiAdd_8u32f_C1IR)
ZQT_FAMILY(Zeq8s, 8s32f, zeqiAdd_8s32f_C1IR)
ZQT_FAMILY(Zeq16u, 16u32f, zeqiAdd_16u32f_C1IR)
ZQT_FAMILY(Zeq32f, 32f, nullptr)  // plain 32f addition lives elsewhere

// One call of the family member for (S, op, masked); the mask is ignored when unmasked.
template <class S>
ZeqStatus call(Op op, bool masked, const S* a, int as, const S* b, int bs, const Zeq8u* m, int ms, Zeq32f* acc,
               int accs, ZeqiSize roi, float alpha) {
    using F = Family<S>;
    switch (op) {
    case Add: return masked ? F::addM(a, as, m, ms, acc, accs, roi) : F::add(a, as, acc, accs, roi);
    case Square: return masked ? F::sqM(a, as, m, ms, acc, accs, roi) : F::sq(a, as, acc, accs, roi);
    case Product: return masked ? F::prodM(a, as, b, bs, m, ms, acc, accs, roi) : F::prod(a, as, b, bs, acc, accs, roi);
    default: return masked ? F::wtM(a, as, m, ms, acc, accs, roi, alpha) : F::wt(a, as, acc, accs, roi, alpha);
    }
}
template <class S>
bool exists(Op op, bool masked) { return masked || op != Add || Family<S>::add != nullptr; }

// The documented update of one pixel, each step rounded to float.
template <class S>
float reference(Op op, bool masked, Zeq8u m, S a, S b, float acc, float alpha) {
    const bool exact = sizeof(S) == 1;  // 8-bit squares and products are exact integers
    float t = float(a);
    if (op == Square) t = exact ? float(int(a) * int(a)) : float(a) * float(a);
    if (op == Product) t = exact ? float(int(a) * int(b)) : float(a) * float(b);
    if (op == Weighted) {
        const float w = (!masked || m) ? alpha : 0.0f, d = t - acc, dw = d * w;
        return acc + dw;
    }
    return acc + ((!masked || m) ? t : 0.0f);
}

// Mostly ordinary values, with signed zeros, infinities and NaN mixed in.
float anyAccumulator(Rng& rng) {
    static const float special[] = {-0.0f, 0.0f, INFINITY, -INFINITY, NAN};
    return rng.chance(0.05) ? special[rng.uniform(0, 4)] : rng.uniformf(-1e4f, 1e4f);
}

template <class T>
class Accumulate : public ::testing::Test {};
using Sources = ::testing::Types<Zeq8u, Zeq8s, Zeq16u, Zeq32f>;
TYPED_TEST_SUITE(Accumulate, Sources);

TYPED_TEST(Accumulate, MatchesReferenceOverRandomLayouts) {
    using S = TypeParam;
    const int e = int(sizeof(S));
    Rng rng(sizeof(S) * 31 + std::is_signed<S>::value);
    for (int op = Add; op <= Weighted; ++op)
        for (bool masked : {false, true}) {
            if (!exists<S>(Op(op), masked)) continue;
            for (int iter = 0; iter < 40; ++iter) {
                const int w = iter < 20 ? iter + 1 : rng.uniform(1, 160), h = rng.uniform(1, 5);
                // Every fourth layout starts its rows off any element boundary.
                const int odd = iter % 4 == 3 ? rng.uniform(1, 3) : 0;
                Image<S> a(w, h, 1, e * rng.uniform(0, 9), e * rng.uniform(0, 15) + odd);
                Image<S> b(w, h, 1, e * rng.uniform(0, 3), e * rng.uniform(0, 15) + odd);
                Image<Zeq8u> m(w, h, 1, rng.uniform(0, 5), rng.uniform(0, 15));
                Image<Zeq32f> acc(w, h, 1, 4 * rng.uniform(0, 5), 4 * rng.uniform(0, 3) + odd);
                a.fillRandom(rng);
                b.fillRandom(rng);
                m.fill([&](int, int, int) { return rng.chance(0.5) ? 0 : rng.uniform(1, 255); });
                acc.fill([&](int, int, int) { return anyAccumulator(rng); });
                const float alpha = rng.uniformf(-0.5f, 1.5f);
                Image<Zeq32f> want(w, h);
                want.fill([&](int x, int y, int) {
                    return reference<S>(Op(op), masked, m.at(x, y), a.at(x, y), b.at(x, y), acc.at(x, y), alpha);
                });
                ASSERT_EQ(zeqStsOk, call<S>(Op(op), masked, a.ptr(), a.step(), b.ptr(), b.step(), m.ptr(), m.step(),
                                            acc.ptr(), acc.step(), acc.size(), alpha));
                ASSERT_TRUE(zqt::sameImage(acc, want)) << "op " << op << " masked " << masked << " " << w << "x" << h;
                ASSERT_TRUE(acc.outsideUntouched());
            }
        }
}

// Checks run null, size, steps, alignment; a 16u source is checked fully
// before the mask and accumulator. A failed check writes nothing.
TYPED_TEST(Accumulate, StatusesInOrderAndNothingWritten) {
    using S = TypeParam;
    const int w = 6, row = w * int(sizeof(S)), accRow = 4 * w;
    Image<S> a(w, 2);
    Image<Zeq8u> m(w, 2);
    Image<Zeq32f> acc(w, 2);
    const auto before = acc.snapshot();
    const bool is16u = std::is_same<S, Zeq16u>::value, is32f = std::is_same<S, Zeq32f>::value;
    for (int op = Add; op <= Weighted; ++op)
        for (bool masked : {false, true}) {
            if (!exists<S>(Op(op), masked)) continue;
            auto run = [&](const S* pa, int as, const Zeq8u* pm, int ms, Zeq32f* pacc, int accs, ZeqiSize roi) {
                return call<S>(Op(op), masked, pa, as, pa, as, pm, ms, pacc, accs, roi, 0.5f);
            };
            EXPECT_EQ(zeqStsNullPtr, run(nullptr, row, m.ptr(), w, acc.ptr(), accRow, {0, 2}));
            EXPECT_EQ(zeqStsNullPtr, run(a.ptr(), row, m.ptr(), w, nullptr, accRow, {w, 2}));
            if (masked) {
                EXPECT_EQ(zeqStsNullPtr, run(a.ptr(), row, nullptr, w, acc.ptr(), accRow, {0, 2}));
                EXPECT_EQ(zeqStsStep, run(a.ptr(), row + 2, m.ptr(), w - 1, acc.ptr(), accRow, {w, 2}));
            }
            EXPECT_EQ(zeqStsSize, run(a.ptr(), 0, m.ptr(), 0, acc.ptr(), 0, {0, 2}));
            EXPECT_EQ(zeqStsSize, run(a.ptr(), row, m.ptr(), w, acc.ptr(), accRow, {w, -1}));
            EXPECT_EQ(zeqStsStep, run(a.ptr(), row - 1, m.ptr(), w, acc.ptr(), accRow + 1, {w, 2}));
            EXPECT_EQ(zeqStsStep, run(a.ptr(), row, m.ptr(), w, acc.ptr(), accRow - 2, {w, 2}));
            EXPECT_EQ(zeqStsStepAlign, run(a.ptr(), row, m.ptr(), w, acc.ptr(), accRow + 1, {w, 2}));
            // An odd source step: 8-bit sources accept it, 16u tests it before the accumulator's size.
            Image<Zeq32f> other(w, 2);
            const ZeqStatus oddSource = run(a.ptr(), row + 1, m.ptr(), w, other.ptr(), is16u ? 0 : accRow, {w, 2});
            EXPECT_EQ(is16u || is32f ? zeqStsStepAlign : zeqStsOk, oddSource);
        }
    EXPECT_TRUE(acc.unchangedSince(before));
}

// Float steps are tested for oddness only: 4*width+2 acts as 4*width.
TYPED_TEST(Accumulate, FloatStepRemainderIsDropped) {
    using S = TypeParam;
    const int w = 7, h = 3;
    Rng rng(5);
    auto a = Image<S>::withStep(w, h, 1, std::is_same<S, Zeq32f>::value ? 4 * w : int(sizeof(S)) * w);
    auto acc = Image<Zeq32f>::withStep(w, h, 1, 4 * w);
    a.fillRandom(rng);
    acc.fill([&](int, int, int) { return rng.uniformf(-10, 10); });
    Image<Zeq32f> want(w, h);
    want.fill([&](int x, int y, int) { return reference<S>(Weighted, false, 1, a.at(x, y), a.at(x, y), acc.at(x, y), 0.25f); });
    const int srcStep = a.step() + (std::is_same<S, Zeq32f>::value ? 2 : 0);
    ASSERT_EQ(zeqStsOk, call<S>(Weighted, false, a.ptr(), srcStep, a.ptr(), srcStep, nullptr, 0, acc.ptr(), 4 * w + 2,
                                acc.size(), 0.25f));
    EXPECT_TRUE(zqt::sameImage(acc, want));
    EXPECT_TRUE(acc.outsideUntouched());
}

TEST(AccumulateValues, MaskedPixels) {
    // Masked-out pixels: sums add +0.0, the weighted average weighs by 0.
    const Zeq8u mask[4] = {0, 0, 7, 0};
    Zeq32f sums[4] = {-0.0f, 5.0f, 1.0f, -0.0f};
    const Zeq8s s8[4] = {-128, -128, -128, 3};
    ASSERT_EQ(zeqStsOk, zeqiAdd_8s32f_C1IMR(s8, 4, mask, 4, sums, 16, {4, 1}));
    EXPECT_EQ(0u, zqt::bitsOf(sums[0]));
    EXPECT_EQ(5.0f, sums[1]);
    EXPECT_EQ(-127.0f, sums[2]);
    EXPECT_EQ(0u, zqt::bitsOf(sums[3]));

    const Zeq32f src[4] = {1, 2, 3, 4};
    Zeq32f avg[4] = {INFINITY, 9.0f, INFINITY, -0.0f};
    ASSERT_EQ(zeqStsOk, zeqiAddWeighted_32f_C1IMR(src, 16, mask, 4, avg, 16, {4, 1}, 0.5f));
    EXPECT_TRUE(std::isnan(avg[0]));
    EXPECT_EQ(9.0f, avg[1]);
    EXPECT_TRUE(std::isnan(avg[2]));  // inf + (3 - inf) * 0.5
    EXPECT_EQ(0u, zqt::bitsOf(avg[3]));
}

}  // namespace
