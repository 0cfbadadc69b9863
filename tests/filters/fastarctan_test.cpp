#include "zqtest.h"

#include <emmintrin.h>

#include <cmath>

namespace {

using zqt::Rng;

// One angle from the definition. The reciprocal estimate is the processor's,
// so the reference asks the same instruction for it.
float reference(float y, float x) {
    const float ax = std::fabs(x), ay = std::fabs(y);
    const float mx = std::max(std::max(ax, ay), 9.99999993922529e-09f), mn = std::min(ax, ay);
    const float r0 = _mm_cvtss_f32(_mm_rcp_ss(_mm_set_ss(mx)));
    const float r = 2.0f * r0 - mx * r0 * r0;
    const float t = mn * r;
    float a = (zqt::floatFromBits(0xC17D02D3) * t + zqt::floatFromBits(0x42746075)) * t + zqt::floatFromBits(0xBE0FDF57);
    if (ax < ay) a = 90.0f - a;
    if (x < 0) a = 180.0f - a;
    if (y < 0) a = 360.0f - a;
    return a;
}

float arctan(float y, float x) {
    float a = -1.0f;
    EXPECT_EQ(zeqStsOk, zeqibFastArctan_32f(&y, &x, &a, 1));
    return a;
}

TEST(FastArctan, DocumentedValues) {
    const float c = zqt::floatFromBits(0xBE0FDF57);  // the uncorrected constant term, -0.14050041
    EXPECT_EQ(zqt::bitsOf(c), zqt::bitsOf(arctan(0, 0)));
    EXPECT_EQ(zqt::bitsOf(c), zqt::bitsOf(arctan(0, 1)));
    EXPECT_EQ(zqt::bitsOf(c), zqt::bitsOf(arctan(-0.0f, -0.0f)));  // -0 counts as non-negative
    EXPECT_EQ(180.0f - c, arctan(0, -1));
    EXPECT_EQ(180.0f - c, arctan(-0.0f, -1));
    EXPECT_EQ(90.0f - c, arctan(1, 0));
    EXPECT_EQ(360.0f - (90.0f - c), arctan(-1, 0));
    EXPECT_NEAR(180.14050041, arctan(0, -1), 1e-5);
    EXPECT_NEAR(269.8595, arctan(-1, 0), 1e-4);
    EXPECT_NEAR(45.1405064, arctan(1, 1), 1e-4);
}

// Random vectors of every length up to 41 (tails of 1, 2, 3 included) and one
// long enough to be streamed (unaligned start and end), in arrays of exactly
// that length so a sanitizer sees any read past the end.
TEST(FastArctan, MatchesReferenceAndWritesOnlyLen) {
    Rng rng(12);
    for (int len = 1; len <= 42; ++len) {
        if (len == 42) len = (1 << 18) + 45;
        const int off = len % 3;
        std::vector<float> y(size_t(len + off)), x(size_t(len + off)), d(size_t(len) + 8, 7.0f);
        for (int i = 0; i < len + off; ++i) {
            const float scale = rng.chance(0.2) ? 1e-6f : 1e3f;
            y[i] = rng.uniformf(-scale, scale);
            x[i] = rng.chance(0.1) ? 0.0f : rng.uniformf(-scale, scale);
        }
        ASSERT_EQ(zeqStsOk, zeqibFastArctan_32f(y.data() + off, x.data() + off, d.data() + 1, len));
        EXPECT_EQ(7.0f, d[0]);
        for (int i = 0; i < len; ++i) {
            const float want = reference(y[off + i], x[off + i]);
            ASSERT_EQ(zqt::bitsOf(want), zqt::bitsOf(d[1 + i])) << "len " << len << " element " << i;
            if (std::max(std::fabs(y[off + i]), std::fabs(x[off + i])) < 1e-7f) continue;  // near the floor
            double exact = std::atan2(double(y[off + i]), double(x[off + i])) * 180.0 / M_PI;
            if (exact < 0) exact += 360.0;
            double err = std::fabs(d[1 + i] - exact);
            err = std::min(err, 360.0 - err);
            ASSERT_LT(err, 0.16) << y[off + i] << ", " << x[off + i];
        }
        for (size_t i = size_t(len) + 1; i < d.size(); ++i) ASSERT_EQ(7.0f, d[i]) << "len " << len;
    }
}

TEST(FastArctan, StatusesInOrderAndNothingWritten) {
    float y[4] = {1, 2, 3, 4}, x[4] = {1, 2, 3, 4}, d[4] = {5, 5, 5, 5};
    EXPECT_EQ(zeqStsNullPtr, zeqibFastArctan_32f(nullptr, x, d, 0));
    EXPECT_EQ(zeqStsNullPtr, zeqibFastArctan_32f(y, nullptr, d, 4));
    EXPECT_EQ(zeqStsNullPtr, zeqibFastArctan_32f(y, x, nullptr, 4));
    EXPECT_EQ(zeqStsSize, zeqibFastArctan_32f(y, x, d, 0));
    EXPECT_EQ(zeqStsSize, zeqibFastArctan_32f(y, x, d, -4));
    for (float v : d) EXPECT_EQ(5.0f, v);
}

}  // namespace
