#include "zqtest.h"

#include <algorithm>
#include <array>
#include <string>

namespace {

using zqt::Image;
using zqt::Rng;

// Every member through one signature: (src, srcStep, dst, dstStep, origin, roi, scaleShift);
// members that do not take origin or scaleShift ignore them.
template <class Src, class Dst>
using Fn = ZeqStatus (*)(const Src*, int, Dst*, int, int, ZeqiSize, int);

#define PLAIN(f, S, D) [](const S* s, int ss, D* d, int ds, int, ZeqiSize r, int) { return f(s, ss, d, ds, r); }
#define ORIGIN(f, S, D) [](const S* s, int ss, D* d, int ds, int o, ZeqiSize r, int) { return f(s, ss, d, ds, o, r); }
#define SHIFT(f, S, D) [](const S* s, int ss, D* d, int ds, int, ZeqiSize r, int k) { return f(s, ss, d, ds, r, k); }
#define BOTH(f, S, D) [](const S* s, int ss, D* d, int ds, int o, ZeqiSize r, int k) { return f(s, ss, d, ds, o, r, k); }
#define FORMS(stem, ADAPT)                                                                     \
    ADAPT(zeqi##stem##_8u16s_C1R, Zeq8u, Zeq16s), ADAPT(zeqi##stem##_8s16s_C1R, Zeq8s, Zeq16s), \
        ADAPT(zeqi##stem##_32f_C1R, Zeq32f, Zeq32f)

using Taps = std::array<int, 3>;
constexpr Taps kDiff{-1, 0, 1}, kSecond{1, -2, 1}, kSmooth{1, 2, 1}, kScharr{3, 10, 3};

struct Member {
    const char* name;
    Taps h, v;
    bool origin, shift;
    Fn<Zeq8u, Zeq16s> f8u;
    Fn<Zeq8s, Zeq16s> f8s;
    Fn<Zeq32f, Zeq32f> f32f;

    template <class Src, class Dst>
    ZeqStatus call(const Src* s, int ss, Dst* d, int ds, int origin, ZeqiSize roi, int shift) const {
        if constexpr (std::is_same<Src, Zeq8u>::value) return f8u(s, ss, d, ds, origin, roi, shift);
        else if constexpr (std::is_same<Src, Zeq8s>::value) return f8s(s, ss, d, ds, origin, roi, shift);
        else return f32f(s, ss, d, ds, origin, roi, shift);
    }
};

const Member kMembers[] = {
    {"Sobel3x3_Dx", kDiff, kSmooth, false, false, FORMS(Sobel3x3_Dx, PLAIN)},
    {"Sobel3x3_Dy", kSmooth, kDiff, true, false, FORMS(Sobel3x3_Dy, ORIGIN)},
    {"Sobel3x3_D2x", kSecond, kSmooth, false, false, FORMS(Sobel3x3_D2x, PLAIN)},
    {"Sobel3x3_D2y", kSmooth, kSecond, false, false, FORMS(Sobel3x3_D2y, PLAIN)},
    {"Sobel3x3_DxDy", kDiff, kDiff, true, false, FORMS(Sobel3x3_DxDy, ORIGIN)},
    {"Scharr_Dx", kDiff, kScharr, false, true, FORMS(Scharr_Dx, SHIFT)},
    {"Scharr_Dy", kScharr, kDiff, true, true, FORMS(Scharr_Dy, BOTH)},
};

bool smoothing(const Taps& t) { return t[0] > 0 && t[1] > 0; }

// A factor in float, in the order the weights are written: (a + 2b) + c,
// (3a + 10b) + 3c, c - a, (a + c) - 2b.
float taps(const Taps& t, float a, float b, float c) {
    if (smoothing(t)) return (float(t[0]) * a + float(t[1]) * b) + float(t[2]) * c;
    if (t == kDiff) return c - a;
    return (a + c) - 2.0f * b;
}

// The filter from its definition: replicated borders, origin 1 reversing the
// vertical difference, differences summed before smoothing (DxDy: horizontal
// first). Integers use the exact weighted sum of the 3x3 kernel.
template <class Src, class At>
double reference(const Member& m, At src, int w, int h, int x, int y, int origin, int shift) {
    if ((!smoothing(m.h) && w == 1) || (!smoothing(m.v) && h == 1)) return 0;
    auto px = [&](int dx, int dy) { return src(std::clamp(x + dx, 0, w - 1), std::clamp(y + dy, 0, h - 1)); };
    const bool flip = origin == 1 && m.v == kDiff;
    if constexpr (std::is_same<Src, Zeq32f>::value) {
        auto vertical = [&](float a, float b, float c) { return flip ? a - c : taps(m.v, a, b, c); };
        float r;
        if (!smoothing(m.h)) {
            float t[3];
            for (int j = 0; j < 3; ++j) t[j] = taps(m.h, px(-1, j - 1), px(0, j - 1), px(1, j - 1));
            r = vertical(t[0], t[1], t[2]);
        } else {
            float c[3];
            for (int i = 0; i < 3; ++i) c[i] = vertical(px(i - 1, -1), px(i - 1, 0), px(i - 1, 1));
            r = taps(m.h, c[0], c[1], c[2]);
        }
        return r * (1.0f / float(int32_t(uint32_t(1) << (shift & 31))));
    } else {
        int sum = 0;
        for (int j = 0; j < 3; ++j)
            for (int i = 0; i < 3; ++i) sum += (flip ? -m.v[j] : m.v[j]) * m.h[i] * int(px(i - 1, j - 1));
        return sum >> std::min(shift, 31);
    }
}

template <class Src>
using DstOf = typename std::conditional<std::is_same<Src, Zeq32f>::value, Zeq32f, Zeq16s>::type;

template <class Src>
Src randomPixel(Rng& rng) {
    if constexpr (std::is_same<Src, Zeq32f>::value) return rng.uniformf(-100.f, 100.f);
    else return rng.any<Src>();
}

// What surrounds a region: NaN poisons any float result that reads it.
template <class Src>
Src garbage(Rng& rng) {
    if constexpr (std::is_same<Src, Zeq32f>::value) return std::numeric_limits<float>::quiet_NaN();
    else return rng.any<Src>();
}

// Runs every member on a w x h region placed inside a larger image whose
// surroundings hold other values (NaN for float), and compares with the reference.
template <class Src>
::testing::AssertionResult matchesReference(const Member& m, Rng& rng, int w, int h, int origin, int shift) {
    using Dst = DstOf<Src>;
    constexpr int e = int(sizeof(Src)), de = int(sizeof(Dst));
    Image<Src> big(w + 4, h + 4, 1, e * rng.uniform(0, 3) + (e == 1 ? rng.uniform(0, 1) : 0), e * rng.uniform(0, 5));
    big.fill([&](int x, int y, int) {
        const bool inside = x >= 2 && x < w + 2 && y >= 2 && y < h + 2;
        return inside ? randomPixel<Src>(rng) : garbage<Src>(rng);
    });
    const Src* src = big.addr(2, 2);
    Image<Dst> dst(w, h, 1, de * rng.uniform(0, 3), de * rng.uniform(0, 7));
    const ZeqStatus st = m.call(src, big.step(), dst.ptr(), dst.step(), origin, ZeqiSize{w, h}, shift);
    if (st != zeqStsOk) return ::testing::AssertionFailure() << "status " << st;
    auto at = [&](int x, int y) { return big.at(x + 2, y + 2); };
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            const Dst want = Dst(reference<Src>(m, at, w, h, x, y, origin, shift)), got = dst.at(x, y);
            bool same;
            if constexpr (std::is_same<Dst, Zeq32f>::value) same = zqt::sameFloat(got, want);
            else same = got == want;
            if (!same)
                return ::testing::AssertionFailure() << m.name << " " << w << "x" << h << " origin " << origin
                                                     << " shift " << shift << " at (" << x << ", " << y << "): got "
                                                     << +got << ", want " << +want;
        }
    return dst.outsideUntouched();
}

template <class T>
class Derivative3x3 : public ::testing::Test {};
using SourceTypes = ::testing::Types<Zeq8u, Zeq8s, Zeq32f>;
TYPED_TEST_SUITE(Derivative3x3, SourceTypes);

// Every size up to 20 x 20 (all the edge, one-row and one-column cases, each
// with a scale shift from no shift to far beyond the sums' bits) and some
// wide rows that run the register path with an overlapping last step.
TYPED_TEST(Derivative3x3, MatchesDefinitionForEverySize) {
    Rng rng(31);
    const int shifts[] = {0, 1, 2, 3, 13, 15, 16, 33, 1000};
    for (const Member& m : kMembers) {
        for (int h = 1; h <= 20; ++h)
            for (int w = 1; w <= 20; ++w)
                ASSERT_TRUE(matchesReference<TypeParam>(m, rng, w, h, m.origin ? (w + h) & 1 : 0,
                                                        m.shift ? shifts[(w + 3 * h) % 9] : 0));
        for (int w : {31, 32, 33, 67, 250})
            for (int h : {1, 2, 5})
                ASSERT_TRUE(matchesReference<TypeParam>(m, rng, w, h, m.origin ? h & 1 : 0, 0));
    }
}

// A difference across a single column (or row) is cleared without reading
// the source: NaN there still gives +0.
TEST(Derivative3x3Float, DegenerateDifferenceDoesNotReadSource) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    for (const Member& m : kMembers)
        for (ZeqiSize roi : {ZeqiSize{1, 9}, ZeqiSize{9, 1}}) {
            const bool cleared = roi.width == 1 ? !smoothing(m.h) : !smoothing(m.v);
            if (!cleared) continue;
            std::vector<float> src(9, nan), dst(9, -1.0f);
            const int step = 4 * roi.width;
            ASSERT_EQ(zeqStsOk, m.f32f(src.data(), step, dst.data(), step, 0, roi, 0));
            for (float v : dst) EXPECT_EQ(0u, zqt::bitsOf(v)) << m.name;
        }
}

// Float rows may start 2 bytes off an element boundary (only odd steps are
// rejected); the results equal those of the packed layout.
TEST(Derivative3x3Float, StepsOfHalfElements) {
    const int w = 29, h = 5, packed = 4 * w, odd = 4 * w + 2;
    Rng rng(17);
    std::vector<float> src(size_t(w) * h);
    for (float& v : src) v = rng.uniformf(-50.f, 50.f);
    std::vector<uint8_t> srcOdd(size_t(odd) * h + 2), dstOdd(size_t(odd) * h + 2);
    for (int y = 0; y < h; ++y) std::memcpy(&srcOdd[2 + size_t(y) * odd], &src[size_t(y) * w], 4 * size_t(w));
    for (const Member& m : kMembers) {
        std::vector<float> want(src.size());
        ASSERT_EQ(zeqStsOk, m.f32f(src.data(), packed, want.data(), packed, 1, {w, h}, 1));
        // Pointers 2 bytes past an element boundary, through byte buffers.
        const auto* s = reinterpret_cast<const Zeq32f*>(srcOdd.data() + 2);
        auto* d = reinterpret_cast<Zeq32f*>(dstOdd.data() + 2);
        ASSERT_EQ(zeqStsOk, m.f32f(s, odd, d, odd, 1, {w, h}, 1));
        for (int y = 0; y < h; ++y)
            ASSERT_EQ(0, std::memcmp(&dstOdd[2 + size_t(y) * odd], &want[size_t(y) * w], 4 * size_t(w))) << m.name;
    }
}

// Null, size, step, step alignment, then origin and scale shift; a failed check writes nothing.
TYPED_TEST(Derivative3x3, StatusesInOrderAndNothingWritten) {
    using Src = TypeParam;
    using Dst = DstOf<Src>;
    constexpr bool isFloat = std::is_same<Src, Zeq32f>::value;
    const int w = 8, h = 3, s = w * int(sizeof(Src)), d = w * int(sizeof(Dst));
    Image<Src> src(w, h, 1, 8);
    Image<Dst> dst(w, h, 1, 8);
    const auto before = dst.snapshot();
    const Src* ps = src.ptr();
    Dst* pd = dst.ptr();
    for (const Member& m : kMembers) {
        auto call = [&](const Src* a, int as, Dst* b, int bs, int origin, ZeqiSize roi, int shift) {
            return m.call(a, as, b, bs, origin, roi, shift);
        };
        const int badOrigin = m.origin ? 2 : 0, badShift = m.shift ? -1 : 0;
        SCOPED_TRACE(m.name);
        EXPECT_EQ(zeqStsNullPtr, call(nullptr, s, pd, d, badOrigin, {0, 0}, badShift));
        EXPECT_EQ(zeqStsNullPtr, call(ps, s, nullptr, d, 0, {w, h}, 0));
        EXPECT_EQ(zeqStsSize, call(ps, 0, pd, 0, badOrigin, {0, h}, badShift));
        EXPECT_EQ(zeqStsSize, call(ps, s, pd, d, 0, {w, -1}, 0));
        EXPECT_EQ(zeqStsStep, call(ps, s - 1, pd, d + 1, badOrigin, {w, h}, badShift));
        EXPECT_EQ(zeqStsStep, call(ps, s, pd, d - 2, badOrigin, {w, h}, badShift));
        EXPECT_EQ(zeqStsStepAlign, call(ps, s, pd, d + 1, badOrigin, {w, h}, badShift));
        if (isFloat) {
            EXPECT_EQ(zeqStsStepAlign, call(ps, s + 1, pd, d, badOrigin, {w, h}, badShift));
        }
        if (m.origin) {
            EXPECT_EQ(zeqStsBadArg, call(ps, s, pd, d, -1, {w, h}, 0));
            EXPECT_EQ(zeqStsBadArg, call(ps, s, pd, d, 2, {w, h}, 0));
        }
        if (m.shift) {
            EXPECT_EQ(zeqStsBadArg, call(ps, s, pd, d, 0, {w, h}, -1));
        }
        EXPECT_TRUE(dst.unchangedSince(before));
    }
    // An 8-bit source step may be odd.
    if (!isFloat) {
        Image<Src> oddRows = Image<Src>::withStep(w, h, 1, s + 3);
        for (const Member& m : kMembers)
            EXPECT_EQ(zeqStsOk, m.call(oddRows.ptr(), s + 3, pd, d, 0, {w, h}, 0)) << m.name;
    }
}

}  // namespace
