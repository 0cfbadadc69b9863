#include "fft/zqcvfft2d.h"
#include "pack2d_ref.h"

namespace {

using zqt::Image;
using zqt::Rng;

// The partner of each element of a packed array of any size, by the layout
// rule: real columns (0, and W-1 for an even W) pair rows (2j-1, 2j) and leave
// row 0 (and row H-1 for an even H) alone; every other element pairs with its
// neighbour within the row, (2k-1, 2k).
struct Role {
    int px, py;  // the other part of the complex number, or the element itself when real
    bool real, imag;
};

Role roleOf(int x, int y, int w, int h) {
    const bool realColumn = x == 0 || (w % 2 == 0 && x == w - 1);
    if (realColumn) {
        if (y == 0 || (h % 2 == 0 && y == h - 1)) return {x, y, true, false};
        return y % 2 ? Role{x, y + 1, false, false} : Role{x, y - 1, false, true};
    }
    return x % 2 ? Role{x + 1, y, false, false} : Role{x - 1, y, false, true};
}

// The product by the documented formula, in single precision, element by element.
Image<float> ruleProduct(const Image<float>& d, const Image<float>& s) {
    Image<float> out(d.width(), d.height());
    out.fill([&](int x, int y, int) {
        const Role r = roleOf(x, y, d.width(), d.height());
        if (r.real) return d.at(x, y) * s.at(x, y);
        const float a = r.imag ? d.at(r.px, r.py) : d.at(x, y), b = r.imag ? d.at(x, y) : d.at(r.px, r.py);
        const float c = r.imag ? s.at(r.px, r.py) : s.at(x, y), e = r.imag ? s.at(x, y) : s.at(r.px, r.py);
        return r.imag ? a * e + b * c : a * c - b * e;
    });
    return out;
}

// Random sizes (odd ones too), padded steps, misaligned rows, and in place:
// bit for bit the formula, and nothing outside the region written.
TEST(MulPack, FollowsTheLayoutRuleAtAnySize) {
    Rng rng(21);
    for (int iter = 0; iter < 120; ++iter) {
        const int w = iter < 40 ? iter % 20 + 1 : rng.uniform(1, 70), h = iter < 40 ? iter / 2 % 7 + 1 : rng.uniform(1, 9);
        Image<float> s(w, h, 1, 4 * rng.uniform(0, 3), 4 * rng.uniform(0, 3));
        Image<float> d(w, h, 1, 4 * rng.uniform(0, 3), 4 * rng.uniform(0, 3));
        s.fillRandom(rng);
        d.fillRandom(rng);
        const Image<float> want = ruleProduct(d, s);
        if (iter % 3 == 2) {  // rows at odd addresses, odd steps apart
            pack2d::OddRows os(s, 1, 3), od(d, 3, 1);
            ASSERT_EQ(zeqStsOk, zeqiMulPack_32f_C1IR(os.ptr(), os.step, od.ptr(), od.step, s.size()));
            Image<float> got(w, h);
            od.back(got);
            ASSERT_TRUE(zqt::sameImage(got, want)) << "odd rows " << w << "x" << h;
        }
        ASSERT_EQ(zeqStsOk, zeqiMulPack_32f_C1IR(s.ptr(), s.step(), d.ptr(), d.step(), s.size()));
        ASSERT_TRUE(zqt::sameImage(d, want)) << w << "x" << h;
        ASSERT_TRUE(d.outsideUntouched());

        const Image<float> square = ruleProduct(s, s);
        ASSERT_EQ(zeqStsOk, zeqiMulPack_32f_C1IR(s.ptr(), s.step(), s.ptr(), s.step(), s.size()));
        ASSERT_TRUE(zqt::sameImage(s, square)) << "in place " << w << "x" << h;
    }
}

// For power-of-two sizes the packed product is the product of the spectra.
TEST(MulPack, MultipliesTheSpectra) {
    Rng rng(22);
    for (int oy = 0; oy <= 4; ++oy)
        for (int ox = 0; ox <= 5; ++ox) {
            const int w = 1 << ox, h = 1 << oy;
            Image<float> s(w, h), d(w, h, 1, 8);
            s.fill([&](int, int, int) { return rng.uniformf(-1, 1); });
            d.fill([&](int, int, int) { return rng.uniformf(-1, 1); });
            pack2d::Spectrum f = pack2d::unpack(d);
            const pack2d::Spectrum g = pack2d::unpack(s);
            for (size_t i = 0; i < f.v.size(); ++i) f.v[i] *= g.v[i];
            ASSERT_EQ(zeqStsOk, zeqiMulPack_32f_C1IR(s.ptr(), s.step(), d.ptr(), d.step(), s.size()));
            const pack2d::Error e = pack2d::compare(d, pack2d::pack(f));
            EXPECT_LE(e.maxErr, 1e-6) << w << "x" << h;
        }
}

TEST(MulPack, StatusesStepsBeforeSize) {
    Image<float> s(4, 4), d(4, 4);
    const auto before = d.snapshot();
    EXPECT_EQ(zeqStsNullPtr, zeqiMulPack_32f_C1IR(nullptr, 0, d.ptr(), 0, {0, 0}));
    EXPECT_EQ(zeqStsNullPtr, zeqiMulPack_32f_C1IR(s.ptr(), 16, nullptr, 16, {4, 4}));
    EXPECT_EQ(zeqStsStep, zeqiMulPack_32f_C1IR(s.ptr(), 0, d.ptr(), 0, {0, 0}));
    EXPECT_EQ(zeqStsStep, zeqiMulPack_32f_C1IR(s.ptr(), 16, d.ptr(), -4, {4, 4}));
    EXPECT_EQ(zeqStsSize, zeqiMulPack_32f_C1IR(s.ptr(), 16, d.ptr(), 16, {0, 4}));
    EXPECT_EQ(zeqStsSize, zeqiMulPack_32f_C1IR(s.ptr(), 16, d.ptr(), 16, {4, -1}));
    EXPECT_TRUE(d.unchangedSince(before));
}

// Conjugation negates exactly the imaginary parts, as 0 - x, at any size.
TEST(PackConj, NegatesImaginaryPartsOnly) {
    Rng rng(23);
    for (int h = 1; h <= 6; ++h)
        for (int w = 1; w <= 19; ++w) {
            Image<float> img(w, h, 1, 4 * (w % 3), 4 * (h % 4));
            img.fill([&](int x, int y, int) { return (x + y) % 5 == 0 ? 0.0f : rng.uniformf(-5, 5); });
            const Image<float> orig = img;
            owniRCPack2DConj_32f_C1IR(img.ptr(), img.step(), w, h);
            for (int y = 0; y < h; ++y)
                for (int x = 0; x < w; ++x) {
                    const float want = roleOf(x, y, w, h).imag ? 0.0f - orig.at(x, y) : orig.at(x, y);
                    ASSERT_TRUE(zqt::sameFloat(want, img.at(x, y))) << w << "x" << h << " at " << x << "," << y;
                }
            ASSERT_TRUE(img.outsideUntouched());
            owniRCPack2DConj_32f_C1IR(img.ptr(), img.step(), w, h);
            ASSERT_TRUE(zqt::sameImage(img, orig)) << "twice " << w << "x" << h;
        }
}

}  // namespace
