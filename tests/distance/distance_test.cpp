#include "zqtest.h"

#include <algorithm>
#include <cfloat>

namespace {

using zqt::Image;
using zqt::Rng;

// Plain two passes over a w x h array, moves written out as the rules give
// them. Integer sums in 64 bits, clamped to the ceiling in the forward pass.
template <class V>
std::vector<V> reference(const Image<Zeq8u>& s, int kernel, const V* m, V ceiling) {
    const int w = s.width(), h = s.height();
    std::vector<V> d(size_t(w) * h);
    auto at = [&](int x, int y) -> V& { return d[size_t(y) * w + x]; };
    struct Mv { int dx, dy; V wt; };
    std::vector<Mv> full, first, second;  // forward moves; first/second rows when they differ
    bool bottomTwoBack = false;
    V a = m[0], b = m[1];
    bool delegate = kernel == 3;
    if (kernel == 5) {
        const V b1 = std::min(b, V(2 * a)), c = m[2];
        delegate = std::is_same<V, float>::value ? float(c - a - b1) > -1e-7f * std::fabs(float(a + b1)) : c >= a + b1;
        if (!delegate) {
            const V as = std::min(a, V(3 * c)), bs = std::min(b1, V(2 * c));
            const V two = std::min({V(2 * as), V(2 * bs), V(2 * c)});
            full = {{-1, 0, as}, {-1, -1, bs}, {0, -1, as}, {1, -1, bs}, {-2, -1, c}, {2, -1, c}, {-1, -2, c}, {1, -2, c}};
            if (w >= 4 && h >= 4 && (b1 <= a || c <= 2 * a || 2 * c <= 3 * b1)) {
                first = {{-1, 0, as}, {-2, 0, two}};
                second = {{-1, 0, as}, {0, -1, as}, {1, -1, bs}, {2, -1, c}};
            }
        }
    }
    if (delegate) {
        full = {{-1, 0, a}, {0, -1, a}};
        if (b < 2 * a) full.insert(full.end(), {{-1, -1, b}, {1, -1, b}});
        bottomTwoBack = a > b && std::min(w, h) >= 2;
    }
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) at(x, y) = s.at(x, y) ? ceiling : V(0);
    for (int dir : {1, -1})
        for (int r = 0; r < h; ++r) {
            const int y = dir > 0 ? r : h - 1 - r;
            std::vector<Mv> mv = r == 0 && !first.empty() ? first : r == 1 && !second.empty() ? second : full;
            if (bottomTwoBack && y == h - 1) mv.push_back({-2, 0, V(b + b)});
            for (int i = 0; i < w; ++i) {
                const int x = dir > 0 ? i : w - 1 - i;
                if (at(x, y) == V(0)) continue;
                for (const Mv& v : mv) {
                    const int xx = x + dir * v.dx, yy = y + dir * v.dy;
                    if (xx >= 0 && xx < w && yy >= 0 && yy < h) at(x, y) = std::min(at(x, y), V(at(xx, yy) + v.wt));
                }
            }
        }
    return d;
}

// fn[5x5] by destination type.
template <class D>
struct Api;
template <>
struct Api<Zeq16u> {
    using M = int;
    static constexpr int64_t ceiling = 65535;
    static constexpr decltype(&zeqiDistanceTransform_3x3_8u16u_C1R) fn[2] = {zeqiDistanceTransform_3x3_8u16u_C1R,
                                                                                zeqiDistanceTransform_5x5_8u16u_C1R};
};
template <>
struct Api<Zeq8u> {
    using M = int;
    static constexpr int64_t ceiling = 255;
    static constexpr decltype(&zeqiDistanceTransform_3x3_8u_C1R) fn[2] = {zeqiDistanceTransform_3x3_8u_C1R,
                                                                            zeqiDistanceTransform_5x5_8u_C1R};
};
template <>
struct Api<Zeq32f> {
    using M = float;
    static constexpr float ceiling = FLT_MAX;
    static constexpr decltype(&zeqiDistanceTransform_3x3_8u32f_C1R) fn[2] = {zeqiDistanceTransform_3x3_8u32f_C1R,
                                                                                zeqiDistanceTransform_5x5_8u32f_C1R};
};

// The standard tables, then random metrics of every relation: a < b, a > b,
// b >= 2a, a knight cheaper and dearer than a + b', weights past the ceiling.
template <class M>
std::vector<std::array<M, 4>> metricSets(Rng& rng) {
    std::vector<std::array<M, 4>> sets;
    for (int k : {3, 5})
        for (int norm = 0; norm < 3; ++norm) {
            std::array<M, 4> m{};
            if constexpr (std::is_same<M, float>::value) zeqiGetDistanceTransformMask_32f(k, norm, m.data());
            else zeqiGetDistanceTransformMask_32s(k, norm, m.data());
            if (k == 5 && norm == 1 && std::is_same<M, float>::value) m[2] = m[3];
            sets.push_back(m);
        }
    for (int i = 0; i < 30; ++i) {
        const double a = std::is_same<M, float>::value ? rng.uniformf(0.1f, 3.0f) : rng.uniform(1, 9);
        const double ratio[] = {0.6, 0.8, 1.0, 1.3, 1.5, 2.0, 2.5};
        const double b = a * ratio[i % 7], c = a * rng.uniformf(1.0f, 4.0f);
        auto cast = [](double v) { return std::is_same<M, float>::value ? M(v) : M(std::max(1.0, std::round(v))); };
        sets.push_back({cast(a), cast(b), cast(c), 0});
    }
    if (!std::is_same<M, float>::value) sets.push_back({M(70000), M(2000000000), M(2000000000), 0});
    return sets;
}

template <class D>
class Distance : public ::testing::Test {};
using Types = ::testing::Types<Zeq16u, Zeq8u, Zeq32f>;
TYPED_TEST_SUITE(Distance, Types);

TYPED_TEST(Distance, MatchesTwoPassReference) {
    using D = TypeParam;
    using M = typename Api<D>::M;
    using V = typename std::conditional<std::is_same<D, float>::value, float, int64_t>::type;
    Rng rng(9);
    const auto sets = metricSets<M>(rng);
    const ZeqiSize sizes[] = {{1, 1}, {1, 17}, {23, 1}, {2, 2}, {3, 3}, {4, 4}, {5, 4}, {3, 9}, {9, 3}, {70, 50}, {300, 2}};
    for (size_t i = 0; i < sets.size(); ++i)
        for (int k = 3; k <= (sets[i][2] > 0 ? 5 : 3); k += 2)
            for (size_t z = 0; z < std::size(sizes) + 4; ++z) {
                const ZeqiSize r = z < std::size(sizes) ? sizes[z] : ZeqiSize{rng.uniform(3, 70), rng.uniform(3, 50)};
                const double density = z % 3 == 0 ? 0.01 : z % 3 == 1 ? 0.15 : 0.0;
                Image<Zeq8u> s(r.width, r.height, 1, rng.uniform(0, 5), rng.uniform(0, 3));
                s.fill([&](int, int, int) { return rng.chance(density) ? 0 : rng.uniform(1, 255); });
                const int pad = int(sizeof(D)) * rng.uniform(0, 3);
                Image<D> d(r.width, r.height, 1, pad, pad);
                V mv[3];
                for (int j = 0; j < 3; ++j) mv[j] = V(sets[i][j]);
                const auto want = reference<V>(s, k, mv, V(Api<D>::ceiling));
                ASSERT_EQ(zeqStsOk, Api<D>::fn[k == 5](s.ptr(), s.step(), d.ptr(), d.step(), r, sets[i].data()));
                for (int y = 0; y < r.height; ++y)
                    for (int x = 0; x < r.width; ++x)
                        ASSERT_TRUE(zqt::sameFloat(float(want[size_t(y) * r.width + x]), float(d.at(x, y))))
                            << k << "x" << k << " metrics " << +sets[i][0] << " " << +sets[i][1] << " "
                            << +sets[i][2] << " at " << x << "," << y << " of " << r.width << "x" << r.height;
                ASSERT_TRUE(d.outsideUntouched());
            }
}

// A float row of 4k + 2 bytes advances by 4k: rows overlap into the padding.
TEST(Distance32f, StepOfFourKPlusTwoAdvancesByWholeFloats) {
    const float m[2] = {1.0f, 1.5f};
    auto d = Image<Zeq32f>::withStep(5, 3, 1, 20);
    Image<Zeq8u> s(5, 3);
    s.fill([](int x, int y, int) { return x == 0 && y == 0 ? 0 : 1; });
    ASSERT_EQ(zeqStsOk, zeqiDistanceTransform_3x3_8u32f_C1R(s.ptr(), 5, d.ptr(), 22, {5, 3}, m));
    EXPECT_EQ(2.5f, d.at(2, 1));
    EXPECT_EQ(zeqStsStepAlign, zeqiDistanceTransform_3x3_8u32f_C1R(s.ptr(), 5, d.ptr(), 21, {5, 3}, m));
}

TEST(DistanceChecks, StatusesInOrderAndNothingWritten) {
    Image<Zeq8u> s(6, 4);
    Image<Zeq16u> d(6, 4);
    Image<Zeq8u> d8(6, 4);
    const auto before = d.snapshot();
    const int bad[3] = {1, 1, 0};
    const float nanf[3] = {1, NAN, 1};
    Zeq32f* df = reinterpret_cast<Zeq32f*>(d.ptr());
    EXPECT_EQ(zeqStsNullPtr, zeqiDistanceTransform_5x5_8u16u_C1R(s.ptr(), 6, d.ptr(), 12, {0, 0}, nullptr));
    EXPECT_EQ(zeqStsSize, zeqiDistanceTransform_3x3_8u16u_C1R(s.ptr(), 0, d.ptr(), 0, {0, 4}, bad));
    EXPECT_EQ(zeqStsStep, zeqiDistanceTransform_3x3_8u_C1R(s.ptr(), 5, d8.ptr(), 6, {6, 4}, bad));
    EXPECT_EQ(zeqStsStep, zeqiDistanceTransform_3x3_8u16u_C1R(s.ptr(), 6, d.ptr(), 11, {6, 4}, bad));
    EXPECT_EQ(zeqStsStepAlign, zeqiDistanceTransform_5x5_8u16u_C1R(s.ptr(), 6, d.ptr(), 13, {6, 4}, bad));
    EXPECT_EQ(zeqStsStepAlign, zeqiDistanceTransform_5x5_8u32f_C1R(s.ptr(), 6, df, 25, {6, 2}, nanf));
    EXPECT_EQ(zeqStsDistMetric, zeqiDistanceTransform_5x5_8u_C1R(s.ptr(), 6, d8.ptr(), 7, {6, 4}, bad));
    EXPECT_EQ(zeqStsDistMetric, zeqiDistanceTransform_3x3_8u32f_C1R(s.ptr(), 6, df, 24, {6, 2}, nanf));
    EXPECT_EQ(zeqStsOk, zeqiDistanceTransform_3x3_8u_C1R(s.ptr(), 6, d8.ptr(), 6, {6, 4}, bad));  // reads a, b only
    EXPECT_TRUE(d.unchangedSince(before));
}

TEST(DistanceMasks, TablesAndStatuses) {
    float f[4] = {-1, -1, -1, -1};
    int n[3] = {0, 0, 0};
    EXPECT_EQ(zeqStsOk, zeqiGetDistanceTransformMask_32f(5, 1, f));
    EXPECT_EQ((std::vector<float>{1, 2, -1, 3}), std::vector<float>(f, f + 4));
    EXPECT_EQ(zeqStsOk, zeqiGetDistanceTransformMask(32, f));
    EXPECT_EQ((std::vector<float>{0.955f, 1.3693f}), std::vector<float>(f, f + 2));
    EXPECT_EQ(zeqStsOk, zeqiGetDistanceTransformMask(52, f));
    EXPECT_EQ(2.1969f, f[2]);
    EXPECT_EQ(zeqStsOk, zeqiGetDistanceTransformMask_32s(5, 2, n));
    EXPECT_EQ((std::vector<int>{4, 6, 9}), std::vector<int>(n, n + 3));
    EXPECT_EQ(zeqStsNullPtr, zeqiGetDistanceTransformMask_32s(4, 7, nullptr));
    EXPECT_EQ(zeqStsBadArg, zeqiGetDistanceTransformMask_32s(4, 1, n));
    EXPECT_EQ(zeqStsBadArg, zeqiGetDistanceTransformMask_32f(3, 3, f));
    EXPECT_EQ(zeqStsBadArg, zeqiGetDistanceTransformMask(37, nullptr));
    EXPECT_EQ(zeqStsBadArg, zeqiGetDistanceTransformMask(42, f));
    EXPECT_EQ(zeqStsBadArg, zeqiGetDistanceTransformMask(-32, f));
    EXPECT_EQ(zeqStsNullPtr, zeqiGetDistanceTransformMask(32, nullptr));
}

}  // namespace
