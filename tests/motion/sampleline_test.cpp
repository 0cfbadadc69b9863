#include "zqtest.h"

#include <cstdlib>

namespace {

using zqt::Rng;

// The documented walk, as indices y * width + x of the points.
std::vector<int> referenceLine(ZeqiPoint a, ZeqiPoint b, int width) {
    const int dx = std::abs(b.x - a.x), dy = std::abs(b.y - a.y), sx = b.x < a.x ? -1 : 1, sy = b.y < a.y ? -1 : 1;
    const bool yMajor = dx <= dy;
    const int major = yMajor ? dy : dx, minor = yMajor ? dx : dy;
    std::vector<int> line;
    for (int i = 0, err = major; i <= major; ++i) {
        line.push_back(a.y * width + a.x);
        err -= 2 * minor;
        (yMajor ? a.y : a.x) += yMajor ? sy : sx;
        if (err < 0) (yMajor ? a.x : a.y) += yMajor ? sx : sy, err += 2 * major;
    }
    return line;
}

// Every line of a 16x16 image whose pixels hold their own index: every
// octant, tie and single point.
TEST(SampleLine, EveryLineOfASmallImage) {
    Zeq8u img[256], out[16];
    for (int i = 0; i < 256; ++i) img[i] = Zeq8u(i);
    // (0, 0) to (4, 1): the error goes 4, 2, 0, -2, so only the last move is diagonal.
    ASSERT_EQ(zeqStsOk, zeqiSampleLine_8u_C1R(img, 16, {16, 16}, out, {0, 0}, {4, 1}));
    EXPECT_EQ((std::vector<int>{0, 1, 2, 19, 20}), std::vector<int>(out, out + 5));
    for (int a = 0; a < 256; ++a)
        for (int b = 0; b < 256; ++b) {
            const auto want = referenceLine({a % 16, a / 16}, {b % 16, b / 16}, 16);
            ASSERT_EQ(zeqStsOk, zeqiSampleLine_8u_C1R(img, 16, {16, 16}, out, {a % 16, a / 16}, {b % 16, b / 16}));
            ASSERT_EQ(want, std::vector<int>(out, out + want.size())) << a << " to " << b;
        }
}

template <class TT, int CC, ZeqStatus (*F)(const TT*, int, ZeqiSize, TT*, ZeqiPoint, ZeqiPoint)>
struct Form { using T = TT; static constexpr int C = CC; static constexpr auto f = F; };
template <class P>
class SampleLineForm : public ::testing::Test {};
using Forms = ::testing::Types<Form<Zeq8u, 1, zeqiSampleLine_8u_C1R>, Form<Zeq8u, 3, zeqiSampleLine_8u_C3R>,
                               Form<Zeq16u, 1, zeqiSampleLine_16u_C1R>, Form<Zeq16u, 3, zeqiSampleLine_16u_C3R>,
                               Form<Zeq32f, 1, zeqiSampleLine_32f_C1R>, Form<Zeq32f, 3, zeqiSampleLine_32f_C3R>>;
TYPED_TEST_SUITE(SampleLineForm, Forms);

// Long lines in random directions (horizontal and vertical ones included)
// over padded and odd steps, pixels compared as bytes; the destination is guarded.
TYPED_TEST(SampleLineForm, MatchesReferenceOverRandomLayouts) {
    using T = typename TypeParam::T;
    constexpr int pixel = TypeParam::C * int(sizeof(T));
    Rng rng(pixel);
    for (int iter = 0; iter < 300; ++iter) {
        const int w = rng.uniform(1, 300), h = rng.uniform(1, 200), shift = rng.uniform(0, 15);
        const int step = w * pixel + rng.uniform(0, 9) * (std::is_same<T, float>::value ? 2 : 1);
        // The buffer ends with the bottom-right pixel, an end of some lines.
        std::vector<uint8_t> img(shift + size_t(h - 1) * step + w * pixel);
        for (auto& v : img) v = uint8_t(rng.uniform(0, 255));
        const uint8_t* src = img.data() + shift;
        ZeqiPoint a{rng.uniform(0, w - 1), rng.uniform(0, h - 1)}, b{rng.uniform(0, w - 1), rng.uniform(0, h - 1)};
        if (rng.chance(0.2)) b.x = a.x;
        else if (rng.chance(0.2)) b.y = a.y;
        else if (rng.chance(0.3)) (rng.chance(0.5) ? a : b) = {w - 1, h - 1};
        const auto want = referenceLine(a, b, w);
        zqt::Image<T> dst(int(want.size()), 1, TypeParam::C, 0, int(sizeof(T)) * rng.uniform(0, 15));
        ASSERT_EQ(zeqStsOk, TypeParam::f(reinterpret_cast<const T*>(src), step, {w, h}, dst.ptr(), a, b));
        for (size_t i = 0; i < want.size(); ++i)
            ASSERT_EQ(0, std::memcmp(reinterpret_cast<const uint8_t*>(dst.ptr()) + i * pixel,
                                     src + ptrdiff_t(want[i] / w) * step + want[i] % w * pixel, pixel))
                << "point " << i << " of (" << a.x << ", " << a.y << ") to (" << b.x << ", " << b.y << ")";
        ASSERT_TRUE(dst.outsideUntouched());
    }
}

TYPED_TEST(SampleLineForm, StatusesInOrderAndNothingWritten) {
    using T = typename TypeParam::T;
    const auto f = TypeParam::f;
    const int row = 6 * TypeParam::C * int(sizeof(T));
    const ZeqiSize roi{6, 4};
    zqt::Image<T> src(6, 4, TypeParam::C), dst(6, 1, TypeParam::C);
    const auto before = dst.snapshot();
    EXPECT_EQ(zeqStsNullPtr, f(nullptr, row, {-1, -1}, dst.ptr(), {0, 0}, {9, 9}));
    EXPECT_EQ(zeqStsNullPtr, f(src.ptr(), row, roi, nullptr, {0, 0}, {1, 1}));
    EXPECT_EQ(zeqStsSize, f(src.ptr(), -1, {-1, 4}, dst.ptr(), {0, 0}, {1, 1}));
    EXPECT_EQ(zeqStsStep, f(src.ptr(), row - 1, roi, dst.ptr(), {9, 9}, {1, 1}));
    const ZeqStatus oddStep = std::is_same<T, float>::value ? zeqStsStepAlign : zeqStsOutOfRange;
    EXPECT_EQ(oddStep, f(src.ptr(), row + 1, roi, dst.ptr(), {0, 0}, {6, 0}));
    EXPECT_EQ(zeqStsOutOfRange, f(src.ptr(), row, {0, 4}, dst.ptr(), {0, 0}, {0, 0}));  // empty: nothing inside
    for (ZeqiPoint p : {ZeqiPoint{6, 0}, ZeqiPoint{0, 4}, ZeqiPoint{-1, 0}, ZeqiPoint{0, -1}}) {
        EXPECT_EQ(zeqStsOutOfRange, f(src.ptr(), row, roi, dst.ptr(), p, {1, 1}));
        EXPECT_EQ(zeqStsOutOfRange, f(src.ptr(), row, roi, dst.ptr(), {1, 1}, p));
    }
    EXPECT_TRUE(dst.unchangedSince(before));
}

}  // namespace
