#include "stats_api.h"

#include <cfloat>

namespace {

using statst::Api;
using statst::Layout;
using zqt::Image;
using zqt::Rng;

struct Found {
    float lo, hi;
    ZeqiPoint loAt, hiAt;
};

bool operator==(const Found& a, const Found& b) {
    return a.lo == b.lo && a.hi == b.hi && a.loAt.x == b.loAt.x && a.loAt.y == b.loAt.y && a.hiAt.x == b.hiAt.x &&
           a.hiAt.y == b.hiAt.y;
}
std::ostream& operator<<(std::ostream& os, const Found& f) {
    return os << "min " << f.lo << " at (" << f.loAt.x << ", " << f.loAt.y << "), max " << f.hi << " at ("
              << f.hiAt.x << ", " << f.hiAt.y << ")";
}

// The two-phase definition, element by element: rows take over the running
// extremes (starting at the type's extremes) only when strictly better, then
// the winning rows give the first equal pixel; no pixel taking part: zeros.
template <class T>
Found reference(const void* base, int step, const Layout& l, ZeqiSize roi) {
    using V = typename std::conditional<std::is_same<T, Zeq32f>::value, float, int>::type;
    V lo = std::is_same<T, Zeq32f>::value ? V(FLT_MAX) : V(std::numeric_limits<T>::max());
    V hi = std::is_same<T, Zeq32f>::value ? V(-FLT_MAX) : V(std::numeric_limits<T>::min());
    int loY = 0, hiY = 0;
    bool any = false;
    for (int y = 0; y < roi.height; ++y) {
        V rowLo = lo, rowHi = hi;
        for (int x = 0; x < roi.width; ++x) {
            if (!statst::takesPart(l, x, y)) continue;
            any = true;
            const V v = statst::pixel<T>(base, step, l, x, y);
            if (v < rowLo) rowLo = v;
            if (v > rowHi) rowHi = v;
        }
        if (rowLo < lo) lo = rowLo, loY = y;
        if (rowHi > hi) hi = rowHi, hiY = y;
    }
    if (!any) return {0, 0, {0, 0}, {0, 0}};
    auto first = [&](int y, V v) {
        for (int x = 0; x < roi.width; ++x)
            if (statst::takesPart(l, x, y) && V(statst::pixel<T>(base, step, l, x, y)) == v) return x;
        return 0;
    };
    return {float(lo), float(hi), {first(loY, lo), loY}, {first(hiY, hi), hiY}};
}

template <class T>
Found call(const T* p, int step, const Layout& l, ZeqiSize roi, ZeqStatus want = zeqStsOk) {
    Found f{-7, -7, {-7, -7}, {-7, -7}};
    EXPECT_EQ(want, Api<T>::minMax(p, step, l, roi, &f.lo, &f.hi, &f.loAt, &f.hiAt));
    return f;
}

template <class T>
class MinMaxIndx : public ::testing::Test {};
TYPED_TEST_SUITE(MinMaxIndx, statst::Types);

// Narrow value ranges make ties and type extremes common.
TYPED_TEST(MinMaxIndx, MatchesReferenceOverRandomLayouts) {
    using T = TypeParam;
    Rng rng(33);
    for (int iter = 0; iter < 400; ++iter) {
        const statst::Case c = statst::randomCase<T>(rng, iter);
        Image<T> img(c.w, c.h, c.channels, c.pad, c.misalign);
        const int kind = rng.uniform(0, 2);
        const T lo = std::numeric_limits<T>::lowest(), hi = std::numeric_limits<T>::max();
        img.fill([&](int, int, int) {
            if (kind == 0) return rng.any<T>();
            if (kind == 1) return rng.chance(0.5) ? lo : hi;
            return T(rng.uniform(0, 2) * 20 + (std::is_same<T, Zeq8s>::value ? -20 : 0));
        });
        const Layout l = c.layout();
        const Found want = reference<T>(img.ptr(), img.step(), l, img.size());
        ASSERT_EQ(want, call<T>(img.ptr(), img.step(), l, img.size()))
            << c.w << "x" << c.h << " ch " << c.channels << " coi " << c.coi << (c.masked ? " masked" : "");
    }
}

// Image and mask pointers, size, steps (source, then mask), 32f step oddness,
// coi, in this order; a failed call writes no result.
TYPED_TEST(MinMaxIndx, StatusesInOrder) {
    using T = TypeParam;
    const int e = int(sizeof(T)), w = 6, h = 2, row1 = w * e, row3 = 3 * w * e;
    Image<T> img(w, h, 3);
    std::vector<Zeq8u> mask(size_t(w) * h, 1);
    const Zeq8u* m = mask.data();
    const Found untouched{-7, -7, {-7, -7}, {-7, -7}};
    EXPECT_EQ(untouched, call<T>(nullptr, row1, {1}, {0, 0}, zeqStsNullPtr));
    EXPECT_EQ(untouched, call<T>(img.ptr(), row3, {3, 0, nullptr, w, true}, {0, h}, zeqStsNullPtr));
    EXPECT_EQ(untouched, call<T>(img.ptr(), row3, {3, 0, m, w}, {w, 0}, zeqStsSize));
    EXPECT_EQ(untouched, call<T>(img.ptr(), 0, {1}, {0, h}, zeqStsSize));
    EXPECT_EQ(untouched, call<T>(img.ptr(), row3 - 1, {3, 0, m, w}, {w, h}, zeqStsStep));
    EXPECT_EQ(untouched, call<T>(img.ptr(), row1, {1, 1, m, w - 1}, {w, h}, zeqStsStep));
    if (std::is_same<T, Zeq32f>::value) {
        EXPECT_EQ(untouched, call<T>(img.ptr(), row1 + 1, {1}, {w, h}, zeqStsStepAlign));
        EXPECT_EQ(untouched, call<T>(img.ptr(), row3 + 3, {3, 0, m, w}, {w, h}, zeqStsStepAlign));
        call<T>(img.ptr(), row1 + 2, {1}, {w, h});
    }
    EXPECT_EQ(untouched, call<T>(img.ptr(), row3, {3, 0}, {w, h}, zeqStsCoi));
    EXPECT_EQ(untouched, call<T>(img.ptr(), row3, {3, 4, m, w}, {w, h}, zeqStsCoi));
}

TEST(MinMaxIndx32f, NanPixelsAreSkipped) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    Image<Zeq32f> img(13, 2);
    img.fill([&](int x, int y, int) { return x % 3 == 0 ? nan : float(x * (y + 1)); });
    EXPECT_EQ((Found{1, 22, {1, 0}, {11, 1}}), call(img.ptr(), img.step(), {1}, img.size()));
}

}  // namespace
