#include "zqtest.h"

namespace {

using zqt::Image;
using zqt::Rng;

using StripFn8 = ZeqStatus (*)(const Zeq8u*, int, Zeq8u*, int, ZeqiSize*, ZeqiMorphState*, int);
using StripFn32 = ZeqStatus (*)(const Zeq32f*, int, Zeq32f*, int, ZeqiSize*, ZeqiMorphState*, int);

// [dilate][form: mask, rect, cross, ellipse][channels 1, 3, 4]
const StripFn8 kStrip8[2][4][3] = {
    {{zeqiErodeStrip_8u_C1R, zeqiErodeStrip_8u_C3R, zeqiErodeStrip_8u_C4R},
     {zeqiErodeStrip_Rect_8u_C1R, zeqiErodeStrip_Rect_8u_C3R, zeqiErodeStrip_Rect_8u_C4R},
     {zeqiErodeStrip_Cross_8u_C1R, zeqiErodeStrip_Cross_8u_C3R, zeqiErodeStrip_Cross_8u_C4R},
     {zeqiErodeStrip_Ellipse_8u_C1R, zeqiErodeStrip_Ellipse_8u_C3R, zeqiErodeStrip_Ellipse_8u_C4R}},
    {{zeqiDilateStrip_8u_C1R, zeqiDilateStrip_8u_C3R, zeqiDilateStrip_8u_C4R},
     {zeqiDilateStrip_Rect_8u_C1R, zeqiDilateStrip_Rect_8u_C3R, zeqiDilateStrip_Rect_8u_C4R},
     {zeqiDilateStrip_Cross_8u_C1R, zeqiDilateStrip_Cross_8u_C3R, zeqiDilateStrip_Cross_8u_C4R},
     {zeqiDilateStrip_Ellipse_8u_C1R, zeqiDilateStrip_Ellipse_8u_C3R, zeqiDilateStrip_Ellipse_8u_C4R}}};
const StripFn32 kStrip32[2][4][3] = {
    {{zeqiErodeStrip_32f_C1R, zeqiErodeStrip_32f_C3R, zeqiErodeStrip_32f_C4R},
     {zeqiErodeStrip_Rect_32f_C1R, zeqiErodeStrip_Rect_32f_C3R, zeqiErodeStrip_Rect_32f_C4R},
     {zeqiErodeStrip_Cross_32f_C1R, zeqiErodeStrip_Cross_32f_C3R, zeqiErodeStrip_Cross_32f_C4R},
     {zeqiErodeStrip_Ellipse_32f_C1R, zeqiErodeStrip_Ellipse_32f_C3R, zeqiErodeStrip_Ellipse_32f_C4R}},
    {{zeqiDilateStrip_32f_C1R, zeqiDilateStrip_32f_C3R, zeqiDilateStrip_32f_C4R},
     {zeqiDilateStrip_Rect_32f_C1R, zeqiDilateStrip_Rect_32f_C3R, zeqiDilateStrip_Rect_32f_C4R},
     {zeqiDilateStrip_Cross_32f_C1R, zeqiDilateStrip_Cross_32f_C3R, zeqiDilateStrip_Cross_32f_C4R},
     {zeqiDilateStrip_Ellipse_32f_C1R, zeqiDilateStrip_Ellipse_32f_C3R, zeqiDilateStrip_Ellipse_32f_C4R}}};

template <class T>
auto stripFn(bool dilate, int form, int c) {
    if constexpr (sizeof(T) == 1) return kStrip8[dilate][form][c == 1 ? 0 : c - 2];
    else return kStrip32[dilate][form][c == 1 ? 0 : c - 2];
}

// The documented order: 8u as numbers, floats by the key of their bits.
int64_t orderKey(Zeq8u v) { return v; }
int64_t orderKey(float v) {
    const int32_t b = int32_t(zqt::bitsOf(v));
    return (b & 0x7fffffff) ^ (b >> 31);
}

const uint8_t* stateMask(const ZeqiMorphState* st) {
    const uint8_t* p;
    std::memcpy(&p, reinterpret_cast<const uint8_t*>(st) + (sizeof(void*) == 4 ? 28 : 32), sizeof p);
    return p;
}

// Direct definition: the extreme over the set elements (the anchor alone
// when none is set), coordinates clamped into the image.
template <class T>
void reference(const Image<T>& src, Image<T>& want, bool dilate, int mw, int mh, ZeqiPoint an,
               const uint8_t* mask) {
    const bool empty = mask && std::all_of(mask, mask + mw * mh, [](uint8_t v) { return v == 0; });
    const int w = src.width(), h = src.height();
    want.fill([&](int x, int y, int c) {
        bool have = false;
        T best{};
        for (int dy = 0; dy < mh; ++dy)
            for (int dx = 0; dx < mw; ++dx) {
                const bool set = !mask || (empty ? dx == an.x && dy == an.y : mask[dy * mw + dx] != 0);
                if (!set) continue;
                const T v = src.at(std::clamp(x + dx - an.x, 0, w - 1), std::clamp(y + dy - an.y, 0, h - 1), c);
                if (!have || (dilate ? orderKey(v) > orderKey(best) : orderKey(v) < orderKey(best))) best = v;
                have = true;
            }
        return best;
    });
}

template <class T>
bool sameBits(const Image<T>& got, const Image<T>& want) {
    for (int y = 0; y < want.height(); ++y)
        if (std::memcmp(got.row(y), want.row(y), size_t(want.width()) * want.channels() * sizeof(T))) return false;
    return true;
}

template <class T>
class MorphStrip : public ::testing::Test {};
using Types = ::testing::Types<Zeq8u, Zeq32f>;
TYPED_TEST_SUITE(MorphStrip, Types);

// Every form and layout over random sizes, masks up to 9x9 and anchors
// anywhere; the whole image, then random splits into first, middle and
// last strips, each equal to the reference bit for bit.
TYPED_TEST(MorphStrip, WholeAndSplitImagesMatchTheDefinition) {
    using T = TypeParam;
    constexpr int e = int(sizeof(T));
    const int dataType = e == 1 ? zeq8u : zeq32f;
    Rng rng(7 + e);
    static const int channels[] = {1, 3, 4}, types[] = {100, 0, 1, 2};
    static const double densities[] = {0.0, 0.3, 0.8};
    for (int iter = 0; iter < 400; ++iter) {
        const int form = iter % 4, c = channels[rng.uniform(0, 2)];
        const bool dilate = rng.chance(0.5);
        const int mw = rng.uniform(1, 9), mh = rng.uniform(1, 9);
        const ZeqiPoint an{rng.uniform(0, mw - 1), rng.uniform(0, mh - 1)};
        const int w = iter < 40 ? 1 + iter % 3 : rng.uniform(1, 130), h = rng.uniform(1, 24);
        const int maxWidth = w + rng.uniform(0, 5);
        std::vector<uint8_t> given(size_t(mw) * mh);
        const double density = densities[rng.uniform(0, 2)];
        for (auto& v : given) v = rng.chance(density) ? uint8_t(rng.uniform(1, 255)) : 0;
        const int type = types[form];
        ZeqiMorphState* st = nullptr;
        ASSERT_EQ(zeqStsOk, zeqiMorphologyInitAlloc(maxWidth, dataType, c, {mw, mh}, an, type, given.data(), &st));

        Image<T> src(w, h, c, rng.uniform(0, 3 * e), rng.uniform(0, 15) / e * e);  // odd steps too
        src.fill([&](int, int, int) {
            if constexpr (e == 1) return rng.chance(0.2) ? T(rng.uniform(0, 1) * 255) : T(rng.uniform(0, 255));
            else {
                static const float special[] = {0.0f, -0.0f, NAN, -NAN, INFINITY, -INFINITY, 1e-40f, -1e-40f};
                return rng.chance(0.3) ? special[rng.uniform(0, 7)] : rng.uniformf(-100, 100);
            }
        });
        Image<T> want(w, h, c);
        reference(src, want, dilate, mw, mh, an, form == 1 ? nullptr : stateMask(st));
        const auto fn = stripFn<T>(dilate, form, c);
        const int b = mh - an.y - 1;

        for (int split = 0; split < 3; ++split) {
            Image<T> dst(w, h, c, rng.uniform(0, 9 * e), rng.uniform(0, 15) / e * e);
            // Strip heights: one whole image, or a first of at least b rows,
            // middles and a last, each at least one row.
            std::vector<int> strips;
            if (split == 0 || h < std::max(b, 1) + 1) {
                strips = {h};
            } else {
                int left = h - (strips.emplace_back(rng.uniform(std::max(b, 1), h - 1)), strips[0]);
                while (left > 1 && rng.chance(0.6)) left -= strips.emplace_back(rng.uniform(1, left - 1));
                strips.push_back(left);
            }
            int in = 0, out = 0;
            for (size_t k = 0; k < strips.size(); ++k) {
                const int flag = strips.size() == 1 ? 0 : k == 0 ? 1 : k + 1 == strips.size() ? 2 : 4;
                ZeqiSize roi{w, strips[k]};
                ASSERT_EQ(zeqStsOk, fn(src.row(in), src.step(), dst.row(out), dst.step(), &roi, st, flag));
                const int produced = flag == 0 ? strips[k] : flag == 1 ? strips[k] - b : flag == 2 ? strips[k] + b
                                                                                                    : strips[k];
                ASSERT_EQ(produced, roi.height) << "flag " << flag;
                in += strips[k], out += produced;
            }
            ASSERT_EQ(h, out);
            ASSERT_TRUE(sameBits(dst, want)) << "form " << form << " dilate " << dilate << " " << w << "x" << h
                                             << "x" << c << " mask " << mw << "x" << mh << " anchor " << an.x << ","
                                             << an.y << " strips " << strips.size();
            ASSERT_TRUE(dst.outsideUntouched());
        }
        zeqiMorphologyFree(st);
    }
}

TYPED_TEST(MorphStrip, StatusesInOrderAndNothingWritten) {
    using T = TypeParam;
    constexpr int e = int(sizeof(T));
    const int dataType = e == 1 ? zeq8u : zeq32f, other = e == 1 ? zeq32f : zeq8u;
    ZeqiMorphState *mask3 = nullptr, *rect3 = nullptr, *wrongType = nullptr, *mask1 = nullptr;
    ASSERT_EQ(zeqStsOk, zeqiMorphologyInitAlloc(8, dataType, 3, {3, 3}, {1, 1}, 2, nullptr, &mask3));
    ASSERT_EQ(zeqStsOk, zeqiMorphologyInitAlloc(8, dataType, 3, {3, 3}, {1, 1}, 0, nullptr, &rect3));
    ASSERT_EQ(zeqStsOk, zeqiMorphologyInitAlloc(8, other, 3, {3, 3}, {1, 1}, 2, nullptr, &wrongType));
    ASSERT_EQ(zeqStsOk, zeqiMorphologyInitAlloc(8, dataType, 1, {3, 3}, {1, 1}, 2, nullptr, &mask1));
    Image<T> src(8, 4, 3), dst(8, 4, 3);
    const auto before = dst.snapshot();
    const int row = 24 * e;
    const auto f = stripFn<T>(true, 3, 3);
    auto call = [&](const T* s, T* d, ZeqiSize r, ZeqiSize* pr, ZeqiMorphState* st, int flag, int ss = -1) {
        if (ss < 0) ss = row;
        if (pr == nullptr) return f(s, ss, d, row, nullptr, st, flag);
        *pr = r;
        return f(s, ss, d, row, pr, st, flag);
    };
    ZeqiSize r;
    EXPECT_EQ(zeqStsNullPtr, call(nullptr, dst.ptr(), {0, 0}, &r, mask3, 9));
    EXPECT_EQ(zeqStsNullPtr, call(src.ptr(), nullptr, {0, 0}, &r, mask3, 9));
    EXPECT_EQ(zeqStsNullPtr, call(src.ptr(), dst.ptr(), {0, 0}, nullptr, mask3, 9));
    EXPECT_EQ(zeqStsNullPtr, call(src.ptr(), dst.ptr(), {0, 0}, &r, nullptr, 9));
    EXPECT_EQ(zeqStsSize, call(src.ptr(), dst.ptr(), {8, 0}, &r, wrongType, 9, 0));
    EXPECT_EQ(zeqStsStep, call(src.ptr(), dst.ptr(), {8, 4}, &r, wrongType, 9, row - 1));
    EXPECT_EQ(zeqStsContextMatch, call(src.ptr(), dst.ptr(), {8, 4}, &r, wrongType, 9));
    EXPECT_EQ(zeqStsContextMatch, call(src.ptr(), dst.ptr(), {8, 4}, &r, mask1, 9));
    EXPECT_EQ(zeqStsContextMatch, call(src.ptr(), dst.ptr(), {8, 4}, &r, rect3, 9));
    EXPECT_EQ(zeqStsContextMatch, stripFn<T>(false, 1, 3)(src.ptr(), row, dst.ptr(), row, &(r = {8, 4}), mask3, 0));
    EXPECT_EQ(zeqStsBadArg, call(src.ptr(), dst.ptr(), {8, 4}, &r, mask3, 3));
    EXPECT_TRUE(dst.unchangedSince(before));
    Image<T> wide(9, 4, 3), wideDst(9, 4, 3);
    EXPECT_EQ(zeqStsContextMatch, f(wide.ptr(), wide.step(), wideDst.ptr(), wideDst.step(), &(r = {9, 4}), mask3, 0));
    EXPECT_EQ(zeqStsOk, call(src.ptr(), dst.ptr(), {7, 4}, &r, mask3, 0));
    EXPECT_EQ(zeqStsOk, stripFn<T>(false, 1, 3)(src.ptr(), row, dst.ptr(), row, &(r = {8, 4}), rect3, 0));
    for (auto* st : {mask3, rect3, wrongType, mask1}) zeqiMorphologyFree(st);
}

}  // namespace

namespace {

// A megabyte of output with 16-byte aligned rows, the streamed stores,
// against the direct definition.
TYPED_TEST(MorphStrip, LargeAlignedDestinationsMatchTheDefinition) {
    using T = TypeParam;
    const int w = 1024, h = 1100 / int(sizeof(T)) + 3, dataType = sizeof(T) == 1 ? zeq8u : zeq32f;
    Rng rng(11);
    Image<T> src(w, h), dst(w, h), want(w, h);
    src.fillRandom(rng);
    ZeqiMorphState* st = nullptr;
    ASSERT_EQ(zeqStsOk, zeqiMorphologyInitAlloc(w, dataType, 1, {3, 4}, {1, 2}, 0, nullptr, &st));
    reference(src, want, true, 3, 4, {1, 2}, nullptr);
    ZeqiSize roi{w, h};
    ASSERT_EQ(zeqStsOk, stripFn<T>(true, 1, 1)(src.ptr(), src.step(), dst.ptr(), dst.step(), &roi, st, 0));
    EXPECT_TRUE(sameBits(dst, want));
    EXPECT_TRUE(dst.outsideUntouched());
    zeqiMorphologyFree(st);
}

}  // namespace
