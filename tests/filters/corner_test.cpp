// Corner measures against a scalar reference of the formulas: Sobel
// derivatives and box sums over the whole image with replicated borders,
// float products, the eigen step in the documented precision. Where every
// product and partial box sum is an integer below 2^24, float sums are exact
// in any order and outputs must match bit for bit; otherwise eigenvalues
// agree within 2e-5 of the sums' magnitude and eigenvectors within 1e-3
// where the reference lies clearly inside one branch.
#include "zqtest.h"

#include <algorithm>
#include <climits>
#include <cmath>

namespace {

using zqt::Image;

template <class T>
using CornerFn = ZeqStatus (*)(const T*, int, Zeq32f*, int, ZeqiSize, int, int, Zeq8u*);
CornerFn<Zeq8u> fn(Zeq8u, bool vecs) { return vecs ? zeqiEigenValsVecs_8u32f_C1R : zeqiMinEigenVal_8u32f_C1R; }
CornerFn<Zeq8s> fn(Zeq8s, bool vecs) { return vecs ? zeqiEigenValsVecs_8s32f_C1R : zeqiMinEigenVal_8s32f_C1R; }
CornerFn<Zeq32f> fn(Zeq32f, bool vecs) { return vecs ? zeqiEigenValsVecs_32f_C1R : zeqiMinEigenVal_32f_C1R; }

// Results are held as bytes, since their rows may start at any even byte.
using Result = Image<Zeq8u>;
float valueAt(const Result& im, int x, int y, int c, int channels) {
    float v;
    std::memcpy(&v, im.row(y) + 4 * (x * channels + c), 4);
    return v;
}

// ---- reference ----

struct Sums {
    std::vector<float> xx, xy, yy;
    bool exact;
};

template <class T>
Sums referenceSums(const Image<T>& src, int ap, int win) {
    static const int smooth[3][7] = {{1, 2, 1}, {1, 4, 6, 4, 1}, {1, 6, 15, 20, 15, 6, 1}};
    static const int diff[3][7] = {{-1, 0, 1}, {-1, -2, 0, 2, 1}, {-1, -4, -5, 0, 5, 4, 1}};
    const int w = src.width(), h = src.height(), k2 = ap / 2, b2 = win / 2;
    auto cx = [&](int x) { return std::clamp(x, 0, w - 1); };
    auto cy = [&](int y) { return std::clamp(y, 0, h - 1); };
    auto deriv = [&](const int* hk, const int* vk, int x, int y) {  // hk along the row, vk across rows
        double s = 0;
        for (int j = 0; j < ap; ++j)
            for (int i = 0; i < ap; ++i) s += double(vk[j] * hk[i]) * double(src.at(cx(x + i - k2), cy(y + j - k2)));
        return float(std::is_same<T, Zeq32f>::value ? s : std::clamp(s, -32768.0, 32767.0));
    };
    const size_t n = size_t(w) * h;
    std::vector<float> p[3] = {std::vector<float>(n), std::vector<float>(n), std::vector<float>(n)};
    float maxP = 0;
    bool integral = true;
    for (size_t i = 0; i < n; ++i) {
        const int x = int(i % w), y = int(i / w);
        const float X = deriv(diff[k2 - 1], smooth[k2 - 1], x, y), Y = deriv(smooth[k2 - 1], diff[k2 - 1], x, y);
        p[0][i] = X * X, p[1][i] = X * Y, p[2][i] = Y * Y;
        maxP = std::max({maxP, p[0][i], p[2][i]});
        integral = integral && X == std::floor(X) && Y == std::floor(Y);
    }
    Sums s{std::vector<float>(n), std::vector<float>(n), std::vector<float>(n),
           integral && double(maxP) * (win + 1) * (win + 1) < 16777216.0};
    for (size_t i = 0; i < n; ++i) {
        double a = 0, b = 0, c = 0;
        for (int j = -b2; j <= b2; ++j)
            for (int k = -b2; k <= b2; ++k) {
                const size_t q = size_t(cy(int(i / w) + j)) * w + cx(int(i % w) + k);
                a += p[0][q], b += p[1][q], c += p[2][q];
            }
        s.xx[i] = float(a), s.xy[i] = float(b), s.yy[i] = float(c);
    }
    return s;
}

void eigenRef(float a, float b, float c, bool vecs, float o[6]) {
    std::fill(o, o + 6, 0.0f);
    if (!vecs) {
        o[0] = float((double(a + c) - std::sqrt(double(4.0f * b * b + (a - c) * (a - c)))) * 0.5);
        return;
    }
    const float mn = a < c ? a : c, mx = a > c ? a : c, eps = 0.01f * mx;
    const float d = std::sqrt(b * 4.0f * b + (a - c) * (a - c));
    const float l1 = (a + c + d) * 0.5f, l2 = (a + c - d) * 0.5f, u = l1 - a, v = l2 - a;
    if (mn < eps || a * c - b * b < eps) return;
    o[0] = l1, o[1] = l2;
    if (std::fabs(b) < eps) {
        o[2] = o[5] = 1.0f;
        return;
    }
    float r1 = std::sqrt(u * u + b * b), r2 = std::sqrt(b * b + v * v);
    r1 = r1 == 0.0f ? 1.1920929e-07f : r1, r2 = r2 == 0.0f ? 1.1920929e-07f : r2;
    o[2] = b * (1.0f / r1), o[3] = u * (1.0f / r1), o[4] = b * (1.0f / r2), o[5] = v * (1.0f / r2);
}

// ---- runs: source and result with padded rows and misaligned starts ----

template <class T>
Result run(const Image<T>& src, int ap, int win, bool vecs, int dstPad = 0, int dstMisalign = 0) {
    Result dst(src.width() * 4 * (vecs ? 6 : 1), src.height(), 1, dstPad, dstMisalign);
    int size = 0;
    EXPECT_EQ(zeqiEigenValsVecsGetSize(src.width(), ap, win, &size), zeqStsOk);
    std::vector<Zeq8u> buffer(size_t(size) + 3);
    Zeq32f* out = reinterpret_cast<Zeq32f*>(dst.ptr());
    EXPECT_EQ(fn(T(), vecs)(src.ptr(), src.step(), out, dst.step(), src.size(), ap, win, buffer.data() + 3), zeqStsOk);
    EXPECT_TRUE(dst.outsideUntouched());
    return dst;
}

template <class T>
::testing::AssertionResult matches(const Result& got, const Image<T>& src, int ap, int win, bool vecs) {
    const Sums s = referenceSums(src, ap, win);
    const float p = float(1 << (ap - 1)), q = float(win), scale = 1.0f / (255.0f * p * p * q * q);
    for (size_t i = 0; i < s.xx.size(); ++i) {
        const int x = int(i % src.width()), y = int(i / src.width());
        const float a = s.xx[i] * scale, b = s.xy[i] * scale, c = s.yy[i] * scale, eps = 0.01f * std::max(a, c);
        const float mag = std::fabs(a) + std::fabs(c) + 2 * std::fabs(b), tol = 2e-5f * mag + 1e-30f;
        const bool clear = std::fabs(std::min(a, c) - eps) > 1e-3f * mag &&
                           std::fabs(std::fabs(b) - eps) > 1e-3f * mag &&
                           std::fabs(a * c - b * b - eps) > 1e-3f * mag * (mag + 1);
        float want[6];
        eigenRef(a, b, c, vecs, want);
        for (int k = 0; k < (vecs ? 6 : 1); ++k) {
            const float g = valueAt(got, x, y, k, vecs ? 6 : 1);
            const bool ok = s.exact ? zqt::sameFloat(g, want[k])
                                    : k < 2 ? std::fabs(g - want[k]) <= tol : !clear || std::fabs(g - want[k]) <= 1e-3f;
            if (!ok)
                return ::testing::AssertionFailure() << src.width() << "x" << src.height() << " aperture " << ap
                                                     << " window " << win << " at (" << x << ", " << y << ") value "
                                                     << k << ": got " << g << ", want " << want[k]
                                                     << (s.exact ? " (exact)" : "");
        }
    }
    return ::testing::AssertionSuccess();
}

// Random sizes, sizes and types; half the images take values 0..3, which
// keeps more of the larger kernels exact.
template <class T>
void checkRandom(uint32_t seed) {
    zqt::Rng rng(seed);
    const bool isFloat = std::is_same<T, Zeq32f>::value, isSigned = std::is_same<T, Zeq8s>::value;
    for (int iter = 0; iter < 24; ++iter) {
        const int w = rng.chance(0.2) ? rng.uniform(1, 3) : rng.uniform(1, 70);
        const int h = rng.chance(0.3) ? rng.uniform(1, 9) : rng.uniform(1, 40);
        const int ap = 3 + 2 * rng.uniform(0, 2), win = 3 + 2 * rng.uniform(0, 2);
        const bool small = rng.chance(0.5), vecs = rng.chance(0.5);
        Image<T> src(w, h, 1, isFloat ? 4 * rng.uniform(0, 2) : rng.uniform(0, 5), isFloat ? 0 : rng.uniform(0, 3));
        src.fill([&](int, int, int) {
            const int lo = -128 * isSigned;
            return small ? rng.uniform(0, 3) : isFloat ? rng.uniformf(0, 255) : rng.uniform(lo, lo + 255);
        });
        EXPECT_TRUE(matches(run(src, ap, win, vecs, 2 * rng.uniform(0, 3), 2 * rng.uniform(0, 1)), src, ap, win, vecs));
    }
}

TEST(Corner, RandomImages8u) { checkRandom<Zeq8u>(1); }
TEST(Corner, RandomImages8s) { checkRandom<Zeq8s>(2); }
TEST(Corner, RandomImages32f) { checkRandom<Zeq32f>(3); }

// Every shape of first, middle and last strip (at most 7 rows: one strip);
// the full 8-bit range stays exact for aperture 3 and window 3.
TEST(Corner, EveryStripSplitExact) {
    zqt::Rng rng(4);
    for (int h : {1, 2, 6, 7, 8, 9, 10, 11, 13, 14, 15, 16, 21, 29, 64})
        for (bool vecs : {false, true}) {
            Image<Zeq8u> src(37, h, 1, 3, 1);
            src.fillRandom(rng);
            EXPECT_TRUE(matches(run(src, 3, 3, vecs, 6, 2), src, 3, 3, vecs));
        }
}

// Float sources are scaled by 1/255 as bytes are: the same values give the same results.
TEST(Corner, FloatSourceScaledLikeBytes) {
    zqt::Rng rng(5);
    for (int ap : {3, 5})
        for (bool vecs : {false, true}) {
            Image<Zeq8u> bytes(29, 23);
            bytes.fillRandom(rng);
            Image<Zeq32f> floats(29, 23);
            floats.fill([&](int x, int y, int) { return bytes.at(x, y); });
            EXPECT_TRUE(zqt::sameImage(run(floats, ap, 3, vecs), run(bytes, ap, 3, vecs)));
        }
}

// Constant images give 0; vertical stripes (Syy = Sxy = 0) six zeros, and a
// smaller eigenvalue that is 0 up to the rounding of a^2 in a - sqrt(a^2).
TEST(Corner, ConstantAndStripes) {
    for (int stripes : {0, 1})
        for (int ap : {3, 5, 7})
            for (bool vecs : {false, true}) {
                Image<Zeq8u> src(41, 19);
                src.fill([&](int x, int, int) { return stripes ? (x / 3) % 2 * 200 : 77; });
                const Result got = run(src, ap, 3 + 4 * vecs, vecs);
                for (int y = 0; y < 19; ++y)
                    for (int x = 0; x < 41 * (vecs ? 6 : 1); ++x) {
                        const float g = valueAt(got, 0, y, x, 1);
                        if (stripes && !vecs) ASSERT_LE(std::fabs(g), 1e-4f);
                        else ASSERT_EQ(zqt::bitsOf(g), 0u) << "stripes " << stripes << " at " << x << ", " << y;
                    }
            }
}

// ---- statuses, in order; a failed call writes nothing ----

TEST(Corner, StatusesInOrder) {
    struct Case {
        int nulls;  // 1 source, 2 result, 4 buffer
        ZeqiSize roi;
        int srcStepDelta, dstStepDelta, ap, win;
        ZeqStatus want;
    } const cases[] = {
        {1, {0, 0}, -1, -1, 4, 4, zeqStsNullPtr}, {2, {8, 8}, 0, 0, 3, 3, zeqStsNullPtr},
        {4, {8, 8}, 0, 0, 3, 3, zeqStsNullPtr},   {0, {0, 8}, -99, -99, 4, 4, zeqStsSize},
        {0, {8, 0}, 0, 0, 4, 4, zeqStsSize},      {0, {8, 8}, -1, 1, 4, 4, zeqStsStep},
        {0, {8, 8}, 0, -2, 4, 4, zeqStsStep},     {0, {8, 8}, 0, 1, 4, 4, zeqStsStepAlign},
        {0, {8, 8}, 0, 0, 4, 3, zeqStsSize},      {0, {8, 8}, 0, 0, 9, 3, zeqStsSize},
        {0, {8, 8}, 0, 0, 3, 1, zeqStsSize},      {0, {8, 8}, 0, 0, 5, 6, zeqStsSize},
    };
    auto check = [](auto type, bool vecs, const Case& c) {
        using T = decltype(type);
        Image<T> src(8, 8);
        Image<float> dst(8, 8, vecs ? 6 : 1, 8);
        std::vector<Zeq8u> buf(8 * 96);
        const auto before = dst.snapshot();
        EXPECT_EQ(fn(T(), vecs)(c.nulls & 1 ? nullptr : src.ptr(), 8 * int(sizeof(T)) + c.srcStepDelta,
                                   c.nulls & 2 ? nullptr : dst.ptr(), 8 * 4 * dst.channels() + c.dstStepDelta, c.roi,
                                   c.ap, c.win, c.nulls & 4 ? nullptr : buf.data()),
                  c.want);
        EXPECT_TRUE(dst.unchangedSince(before));
    };
    for (bool vecs : {false, true})
        for (const Case& c : cases) check(Zeq8u(), vecs, c), check(Zeq8s(), vecs, c), check(Zeq32f(), vecs, c);
}

// Both size queries refuse what they cannot size (their sizes at the edge of
// an int are the size-query suite's).
TEST(Corner, SizeQueries) {
    for (auto q : {zeqiMinEigenValGetSize, zeqiEigenValsVecsGetSize}) {
        int size = 7;
        EXPECT_EQ(q(0, 4, 4, nullptr), zeqStsNullPtr);
        for (int bad : {0, 1, 2, 4, 9}) {
            EXPECT_EQ(q(bad == 0 ? 0 : 8, bad ? bad : 3, 3, &size), zeqStsSize);
            EXPECT_EQ(q(8, 3, bad, &size), zeqStsSize);
        }
        EXPECT_EQ(size, 7);
    }
}

}  // namespace
